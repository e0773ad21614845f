// The plug-in's in-memory view of a project's targets: one record per
// "Configuration" node, read from the host's tree by a tree-walk callback.
// The records are rebuilt from the tree whenever they are needed and are
// never written back by themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/project_keys.h"

namespace ads::config {

// One download area of the simulator ("StorageNode0" .. "StorageNode31").
struct StorageEntry {
    uint32_t type = 0;           // 0 ROM, 1 RAM
    uint32_t start_address = 0;
    uint32_t size = 0;
    std::string load_file;
    bool should_download = false;
};

constexpr int kMaxStorageNodes = 32;

struct TargetRecord {
    std::string name;
    bool current = false;

    std::string linker_params;        // ADS_LNKPARAM
    std::string debug_options;        // ADS_OPTDBG
    std::string cpu;                  // CPU
    std::string device;               // DEVICE
    std::string vendor;               // VENDOR
    std::string app_file;             // AppFile
    std::string user_app_file;        // ADS_USRAPPFILE
    bool has_user_app_file = false;
    std::string output_dir;           // ADS_OUTPUT_DIR
    std::string linker_name;          // ADS_LinkerName
    std::string file_map;             // ADS_FileMap
    std::string armasm_params;        // ADS_GArmAsmParam
    std::string armcc_params;         // ADS_GArmCCParam
    std::string armcpp_params;        // ADS_GArmCppParam
    std::string tcc_params;           // ADS_GThmCCParam
    std::string tcpp_params;          // ADS_GThmCppParam
    std::string init_script_sim;      // InitScriptForSim
    std::string init_script_emu;      // InitScriptForEmu
    std::string fromelf_params;       // ADS_FromELFParam
    std::string post_link;            // ADS_PostLnk
    bool update_before_debug = false; // UpdateTgtBeforeDbg == "1"
    std::string serve_debug_options;  // ServeDebugOptions
    std::string batch_file_params;    // ADS_BatchFileParam
    std::string search_path;          // SearchPath, as stored

    // Page states read for the settings scope; empty means the page's
    // defaults.
    bool has_asm_states = false;
    std::string asm_states[6];        // _Tar, _Atpcs, _Opt, _PDS, _LC, _Ets
    std::string armc_target_state;    // ADS_ArmC_Tar
    std::string armcpp_target_state;  // ADS_ArmCpp_Tar

    double sim_clock = 0.0;           // SIMCLK
    std::vector<StorageEntry> storage;

    // The per-file switch texts of the file last given to the reader.
    std::string file_armasm;
    std::string file_armcc;
    std::string file_armcpp;
    std::string file_tcc;
    std::string file_tcpp;
};

// What the host says about its devices, copied from the host context.
struct HostDefaults {
    std::string vendor;
    std::string device;
    std::vector<std::string> processors;
};

// The target-settings reader, a WalkTree callback to run from the project
// root. Reading a "Configurations" node rebuilds the records; reading a
// "File" node fills the records' per-file texts.
class TargetSettingsReader {
public:
    TargetSettingsReader(std::vector<TargetRecord>* records, std::string current_target,
                         const HostDefaults* host, int settings_kind)
        : records_(records), current_(std::move(current_target)), host_(host),
          kind_(settings_kind) {}

    bool operator()(ConfigNode* node);

    // Builds one record from a "Configuration" node.
    TargetRecord ReadTarget(const ConfigNode& configuration) const;

private:
    void ReadFile(const ConfigNode& file);

    std::vector<TargetRecord>* records_;
    std::string current_;
    const HostDefaults* host_;
    int kind_;
};

// Walks from the root and returns the "Configuration" node whose "Name" is
// the target's, or null.
ConfigNode* FindCurrentConfiguration(ConfigNode* root, const std::string& target);

// The processor text the host offers by default: the whole text of the
// first entry that begins with "CPU", compared without regard to case.
std::string DefaultProcessor(const HostDefaults& host);

}  // namespace ads::config
