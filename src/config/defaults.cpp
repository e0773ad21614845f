#include "config/defaults.h"

#include <cstdio>

#include "config/node_text.h"
#include "config/search_paths.h"
#include "platform/text.h"
#include "config/project_keys.h"

namespace ads::config {

const char kDefaultFileMap[] = "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)";
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

const char kDefaultAsmTemplate[] = "$(ADS_PARAM) \"$(SOURCE)\" \"$(OBJ)\"";
const char kDefaultCTemplate[] = "$(ADS_PARAM) -c \"$(SOURCE)\" -o \"$(OBJ)\"";
const char kDefaultLinkTemplate[] = "$(OBJS) $(ADS_LNKPARAM) -o \"$(ELF)\"";
const char kDefaultDebugOptions[] = "1,RDI 0,1,0,1,0,(\"\")";

const TargetDefault kTargetDefaults[] = {
    {kAsmParamKey, kDefaultAsmTemplate},
    {kCParamKey, kDefaultCTemplate},
    {kLinkParamKey, kDefaultLinkTemplate},
    {kDebugOptionsKey, kDefaultDebugOptions},
    {kOutputDirKey, kDefaultOutputDir},
    {kLinkerNameKey, kDefaultLinkerName},
    {kFileMapKey, kDefaultFileMap},
    {kUserAppFileKey, ""},
    {kSearchPathKey, kDefaultSearchPath},
    {kLinkerParamsKey, ""},
    {kAppFileKey, ""},
    {kArmAsmParamsKey, kDefaultAsmParams},
    {kArmCcParamsKey, kDefaultCompilerParams},
    {kArmCppParamsKey, kDefaultCompilerParams},
    {kThumbCcParamsKey, kDefaultCompilerParams},
    {kThumbCppParamsKey, kDefaultCompilerParams},
    {kFromElfParamsKey, kDefaultFromElfParams},
    {kPostLinkKey, kDefaultPostLink},
    {kUpdateBeforeDebugKey, "1"},
    {kServeDebugOptionsKey, ""},
    {kBatchFileParamsKey, kDefaultBatchFile},
};
const size_t kTargetDefaultCount = sizeof kTargetDefaults / sizeof kTargetDefaults[0];

std::string FormatSimulatorClock(double clock) {
    char buffer[64];
    int n = std::snprintf(buffer, sizeof buffer, "%lf", clock);
    if (n >= 0 && static_cast<size_t>(n) < sizeof buffer) return std::string(buffer, static_cast<size_t>(n));
    std::string big(static_cast<size_t>(n) + 1, '\0');  // a clock beyond 10^55 MHz, still whole
    std::snprintf(&big[0], big.size(), "%lf", clock);
    big.resize(static_cast<size_t>(n));
    return big;
}

void WriteTargetDefaults(ConfigNode* node, double simulator_clock) {
    node->SetAttribute(kSimClockKey, FormatSimulatorClock(simulator_clock));
    for (const TargetDefault& d : kTargetDefaults) node->SetAttribute(d.key, d.value);
}

int SourceKindFromFileMap(const std::string& file_map, const std::string& path) {
    const std::string extension = platform::Lower(platform::ExtensionOf(path));
    if (extension.empty()) return kKindNone;
    // A group's kind follows its tool word; a group without a known one
    // takes its place in the written order: assembler, C, C++. (Imported
    // maps list the compilers first.)
    const int by_place[] = {kKindAsm, kKindC, kKindCpp};
    size_t open = file_map.find('(');
    for (int group = 0; open != std::string::npos; ++group) {
        const size_t close = file_map.find(')', open);
        const std::string text = file_map.substr(open + 1, close == std::string::npos ? std::string::npos : close - open - 1);
        const size_t at = text.find('@');
        const std::string tool = at == std::string::npos ? std::string() : platform::Lower(text.substr(at + 1));
        int kind = group < 3 ? by_place[group] : kKindNone;
        if (tool == "armasm") kind = kKindAsm;
        else if (tool == "armcc" || tool == "tcc") kind = kKindC;
        else if (tool == "armcpp" || tool == "tcpp") kind = kKindCpp;
        const std::string extensions = text.substr(0, at);
        for (size_t start = 0; start <= extensions.size() && kind != kKindNone;) {
            size_t end = extensions.find("&&", start);
            if (end == std::string::npos) end = extensions.size();
            if (platform::Lower(extensions.substr(start, end - start)) == extension) return kind;
            start = end + 2;
        }
        if (close == std::string::npos) break;
        open = file_map.find('(', close);
    }
    return kKindNone;
}

std::string ObjectFileName(const std::string& relative_path) {
    return platform::StemOf(relative_path) + ".o";
}

std::string DistinctObjectFileName(const std::string& relative_path, const std::set<std::string>& taken) {
    const std::string stem = platform::StemOf(relative_path);
    std::string name = stem + ".o";
    for (int n = 2; taken.count(platform::Lower(name)) != 0; ++n) name = stem + "_" + std::to_string(n) + ".o";
    return name;
}

std::set<std::string> ObjectsOfSources(ConfigNode* root, const ConfigNode* except) {
    std::set<std::string> objects;
    WalkTree(root, [&](ConfigNode* n) {
        const int kind = n->Name() == kFileNode ? FileTypeOf(n) : kKindNone;
        if (n != except && kind >= kKindC && kind <= kKindCpp) objects.insert(platform::Lower(Text(n, kOutputKey)));
        return false;
    });
    return objects;
}

}  // namespace ads::config
