// Default settings: the built-in defaults of the option model, used where a
// target's record has not been read yet.
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "ads/config_node.h"
#include "config/path_macros.h"
#include "config/project_keys.h"
#include "config/target_settings.h"

namespace ads::config {

extern const char kDefaultFileMap[];       // "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"
inline constexpr const char* kDefaultOutputDir = kProjectMacro;
inline constexpr const char* kDefaultLinkerName = kLinkerArmlink;
inline constexpr const char* kDefaultPostLink = kPostLinkFromElf;
extern const char kDefaultBatchFile[];     // "0,()"
extern const char kDefaultAsmParams[];     // " -keep -split_ldm -g"
extern const char kDefaultCompilerParams[];// " -O0 -g+"
extern const char kDefaultFromElfParams[]; // " -elf"

// The option model of a target that has not been read: "{Project}" output
// directory, "ARM Linker", the default file mapping, "ARM fromELF", the
// default tool switches and an empty user output file.
struct OptionModel {
    std::string output_dir;
    std::string linker_name;
    std::string file_map;
    std::string post_link;
    std::string batch_file_params;
    std::string armasm_params;
    std::string armcc_params;
    std::string armcpp_params;
    std::string tcc_params;
    std::string tcpp_params;
    std::string spare_params;   // one further text, left empty
    std::string fromelf_params;
    std::string user_app_file;
    bool has_user_app_file = false;
};

OptionModel BuiltinDefaults();

// The command templates and the debug options of a new target.
extern const char kDefaultAsmTemplate[];    // `$(ADS_PARAM) "$(SOURCE)" "$(OBJ)"`
extern const char kDefaultCTemplate[];      // `$(ADS_PARAM) -c "$(SOURCE)" -o "$(OBJ)"`
extern const char kDefaultLinkTemplate[];   // `$(OBJS) $(ADS_LNKPARAM) -o "$(ELF)"`
extern const char kDefaultDebugOptions[];   // `1,RDI 0,1,0,1,0,("")`

// The simulator clock of a target whose host names none, in MHz.
constexpr double kDefaultSimulatorClock = 12.0;
// "SIMCLK": the clock as "%lf" writes it ("12.000000").
std::string FormatSimulatorClock(double clock);

// The settings of a new "Configuration" node after "SIMCLK", in the order
// they are written. Values are exact texts, leading blanks included.
struct TargetDefault {
    const char* key;
    const char* value;
};
extern const TargetDefault kTargetDefaults[];
extern const size_t kTargetDefaultCount;

// Writes "SIMCLK" and then every key of kTargetDefaults, in order, with
// SetAttribute: keys the node has keep their place and take the default,
// the others are appended; keys outside the table are left alone.
void WriteTargetDefaults(ConfigNode* node, double simulator_clock);

// The source kind (kKindAsm, kKindC, kKindCpp) that a file mapping
// "(asm),(c),(c++)" gives the path's extension, compared without regard to
// case; kKindNone when no group lists it.
int SourceKindFromFileMap(const std::string& file_map, const std::string& path);

// The object file of a source: its base name with ".o" in place of its
// extension ("src\main.c" gives "main.o").
std::string ObjectFileName(const std::string& relative_path);

// Every object lives in the target's one folder, so two sources may not
// share one. The object of a source is ObjectFileName unless `taken` holds
// it; then the stem gets "_2", "_3" and so on, the first that is free
// ("b\util.c" beside "a\util.c" gives "util_2.o"). Names are compared
// without regard to case, as Windows compares file names: `taken` holds
// them lowered (platform::Lower).
std::string DistinctObjectFileName(const std::string& relative_path, const std::set<std::string>& taken);

// The lowered "Output" of every source of the project ("File" nodes of kind
// 1, 2 or 3) but `except`.
std::set<std::string> ObjectsOfSources(ConfigNode* root, const ConfigNode* except);

}  // namespace ads::config
