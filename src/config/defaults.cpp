#include "config/defaults.h"

namespace ads::config {

const char kDefaultFileMap[] = "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)";
const char kDefaultOutputDir[] = "{Project}";
const char kDefaultLinkerName[] = "ARM Linker";
const char kDefaultPostLink[] = "ARM fromELF";
const char kDefaultBatchFile[] = "0,()";
// The leading blanks are deliberate: these texts are appended directly
// behind other switches.
const char kDefaultAsmParams[] = " -keep -split_ldm -g";
const char kDefaultCompilerParams[] = " -O0 -g+";
const char kDefaultFromElfParams[] = " -elf";

OptionModel BuiltinDefaults() {
    OptionModel m;
    m.output_dir = kDefaultOutputDir;
    m.linker_name = kDefaultLinkerName;
    m.file_map = kDefaultFileMap;
    m.post_link = kDefaultPostLink;
    m.batch_file_params = kDefaultBatchFile;
    m.armasm_params = kDefaultAsmParams;
    m.armcc_params = m.armcpp_params = m.tcc_params = m.tcpp_params = kDefaultCompilerParams;
    m.fromelf_params = kDefaultFromElfParams;
    m.has_user_app_file = false;
    return m;
}

}  // namespace ads::config
