#include "config/target_settings.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ads::config {

namespace {

std::string Text(const ConfigNode& node, const char* key) {
    const char* value = node.GetAttribute(key);
    return value ? value : "";
}

bool EqualsIgnoringCase(const char* a, const char* b) {
    for (; *a && *b; ++a, ++b) {
        unsigned char ca = static_cast<unsigned char>(*a), cb = static_cast<unsigned char>(*b);
        if (ca >= 'A' && ca <= 'Z') ca = static_cast<unsigned char>(ca - 'A' + 'a');
        if (cb >= 'A' && cb <= 'Z') cb = static_cast<unsigned char>(cb - 'A' + 'a');
        if (ca != cb) return false;
    }
    return *a == *b;
}

uint32_t Hex(const ConfigNode& node, const char* key) {
    unsigned int value = 0;
    if (const char* text = node.GetAttribute(key)) std::sscanf(text, "%x", &value);
    return value;
}

}  // namespace

std::string DefaultProcessor(const HostDefaults& host) {
    for (const std::string& entry : host.processors) {
        if (entry.size() >= 3 && EqualsIgnoringCase(entry.substr(0, 3).c_str(), "CPU")) return entry;
    }
    return std::string();
}

TargetRecord TargetSettingsReader::ReadTarget(const ConfigNode& c) const {
    TargetRecord r;
    if (const char* name = c.GetAttribute("Name")) {
        r.name = name;
        r.current = r.name == current_;
    }
    r.linker_params = Text(c, "ADS_LNKPARAM");
    r.debug_options = Text(c, "ADS_OPTDBG");
    if (const char* cpu = c.GetAttribute("CPU")) {
        r.cpu = cpu;
    } else if (host_ != nullptr) {
        r.cpu = DefaultProcessor(*host_);
    }
    if (const char* device = c.GetAttribute("DEVICE")) {
        r.device = device;
    } else if (host_ != nullptr) {
        r.device = host_->device;
    }
    if (const char* vendor = c.GetAttribute("VENDOR")) {
        r.vendor = vendor;
    } else if (host_ != nullptr) {
        r.vendor = host_->vendor;
    }
    r.app_file = Text(c, "AppFile");
    r.user_app_file = Text(c, "ADS_USRAPPFILE");
    r.has_user_app_file = !r.user_app_file.empty();
    r.output_dir = Text(c, "ADS_OUTPUT_DIR");
    r.linker_name = Text(c, "ADS_LinkerName");
    r.file_map = Text(c, "ADS_FileMap");
    r.armasm_params = Text(c, "ADS_GArmAsmParam");
    r.armcc_params = Text(c, "ADS_GArmCCParam");
    r.armcpp_params = Text(c, "ADS_GArmCppParam");
    r.tcc_params = Text(c, "ADS_GThmCCParam");
    r.tcpp_params = Text(c, "ADS_GThmCppParam");
    r.init_script_sim = Text(c, "InitScriptForSim");
    r.init_script_emu = Text(c, "InitScriptForEmu");
    r.fromelf_params = Text(c, "ADS_FromELFParam");
    r.post_link = Text(c, "ADS_PostLnk");
    // Only "1" sets the flag ("01" does not); a target without the key keeps
    // the flag clear.
    if (const char* update = c.GetAttribute("UpdateTgtBeforeDbg")) {
        r.update_before_debug = std::strcmp(update, "1") == 0;
    }
    r.serve_debug_options = Text(c, "ServeDebugOptions");
    r.batch_file_params = Text(c, "ADS_BatchFileParam");
    r.search_path = Text(c, "SearchPath");

    if ((kind_ == kKindAsm || kind_ == kKindFolder) && c.GetAttribute("ADS_ArmAsm_Tar") != nullptr) {
        static const char* const kAsmKeys[6] = {"ADS_ArmAsm_Tar", "ADS_ArmAsm_Atpcs", "ADS_ArmAsm_Opt",
                                                "ADS_ArmAsm_PDS", "ADS_ArmAsm_LC",    "ADS_ArmAsm_Ets"};
        r.has_asm_states = true;
        for (int i = 0; i < 6; ++i) r.asm_states[i] = Text(c, kAsmKeys[i]);
    }
    if (kind_ == kKindC || kind_ == kKindFolder) r.armc_target_state = Text(c, "ADS_ArmC_Tar");
    if (kind_ == kKindCpp || kind_ == kKindFolder) r.armcpp_target_state = Text(c, "ADS_ArmCpp_Tar");

    c.GetAttributeDouble("SIMCLK", &r.sim_clock);

    for (int i = 0; i < kMaxStorageNodes; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "%s%d", "StorageNode", i);
        const ConfigNode* s = c.FindChild(name);
        if (s == nullptr) continue;  // a gap in the numbering is skipped
        StorageEntry e;
        e.type = Hex(*s, "Type");
        e.start_address = Hex(*s, "StartAddress");
        e.size = Hex(*s, "Size");
        e.load_file = Text(*s, "LoadFile");
        const char* download = s->GetAttribute("ShouldDownLoad");
        e.should_download = download != nullptr && EqualsIgnoringCase(download, "Yes");
        r.storage.push_back(e);
    }
    return r;
}

void TargetSettingsReader::ReadFile(const ConfigNode& file) {
    int32_t type = 0;
    file.GetAttributeInt("FileType", &type);
    const ConfigNode* s = file.FirstChild();
    if (s == nullptr) return;
    if (type != kKindC && type != kKindAsm && type != kKindCpp) return;
    for (TargetRecord& r : *records_) {
        int32_t tool = 0;
        s->GetAttributeInt((r.name + "_tool").c_str(), &tool);
        const char* text = s->GetAttribute(r.name.c_str());
        if (text == nullptr) continue;
        switch (type) {
            case kKindC:
                if (tool == 2) r.file_armcc = text;
                else if (tool == 4) r.file_tcc = text;
                break;
            case kKindCpp:
                if (tool == 3) r.file_armcpp = text;
                else if (tool == 5) r.file_tcpp = text;
                break;
            case kKindAsm:
                r.file_armasm = text;
                break;
        }
    }
}

bool TargetSettingsReader::operator()(ConfigNode* node) {
    if (node == nullptr || node->Name().empty()) return false;
    if (node->Name() == "File") {
        ReadFile(*node);
        return false;
    }
    if (node->Name() == "Configurations") {
        records_->clear();
        for (ConfigNode* c = node->FirstChild(); c != nullptr; c = c->NextSibling()) {
            records_->push_back(ReadTarget(*c));
        }
        return true;
    }
    return false;
}

ConfigNode* FindCurrentConfiguration(ConfigNode* root, const std::string& target) {
    ConfigNode* found = nullptr;
    WalkTree(root, [&](ConfigNode* node) {
        if (node->Name() != "Configuration") return false;
        const char* name = node->GetAttribute("Name");
        if (name == nullptr || target != name) return false;
        found = node;
        return true;
    });
    return found;
}

}  // namespace ads::config
