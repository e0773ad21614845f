// Default settings: the built-in defaults of the option model, used where a
// target's record has not been read yet.
#pragma once

#include "config/target_settings.h"

namespace ads::config {

extern const char kDefaultFileMap[];       // "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"
extern const char kDefaultOutputDir[];     // "{Project}"
extern const char kDefaultLinkerName[];    // "ARM Linker"
extern const char kDefaultPostLink[];      // "ARM fromELF"
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

}  // namespace ads::config
