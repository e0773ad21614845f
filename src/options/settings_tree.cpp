#include "options/settings_tree.h"

#include <cstring>

namespace ads::options {

namespace {

struct ItemSpec {
    const char* label;
    int image;
};

constexpr ItemSpec kTargetTree[] = {
    {"Target", kImageRoot},           {"Select CPU", kImagePage},         {"Target Settings", kImagePage},
    {"Access Paths", kImagePage},     {"File Mappings", kImagePage},      {"ARM Target", kImagePage},
    {"Language Setting", kImageGroup}, {"ARM Assembler", kImagePage},     {"ARM C Compiler", kImagePage},
    {"ARM C++ Compiler", kImagePage}, {"Thumb C Compiler", kImagePage},   {"Thumb C++ Compiler", kImagePage},
    {"Linker", kImageGroup},          {"ARM Linker", kImagePage},         {"ARM FromELF", kImagePage},
    {"Debuger", kImageGroup},         {"ARM Debug", kImagePage},          {nullptr, 0}};
constexpr ItemSpec kAllTree[] = {
    {"Target", kImageRoot},           {"Property", kImagePage},           {"Language Setting", kImageGroup},
    {"ARM Assembler", kImagePage},    {"ARM C Compiler", kImagePage},     {"ARM C++ Compiler", kImagePage},
    {"Thumb C Compiler", kImagePage}, {"Thumb C++ Compiler", kImagePage}, {nullptr, 0}};
constexpr ItemSpec kCTree[] = {{"Target", kImageRoot},           {"Property", kImagePage},
                               {"Language Setting", kImageGroup}, {"ARM C Compiler", kImagePage},
                               {"Thumb C Compiler", kImagePage},  {nullptr, 0}};
constexpr ItemSpec kCppTree[] = {{"Target", kImageRoot},            {"Property", kImagePage},
                                 {"Language Setting", kImageGroup},  {"ARM C++ Compiler", kImagePage},
                                 {"Thumb C++ Compiler", kImagePage}, {nullptr, 0}};
constexpr ItemSpec kAssemblerTree[] = {{"Target", kImageRoot},
                                       {"Property", kImagePage},
                                       {"Language Setting", kImageGroup},
                                       {"ARM Assembler", kImagePage},
                                       {nullptr, 0}};
constexpr ItemSpec kOtherTree[] = {{"Target", kImageRoot}, {"Property", kImagePage}, {nullptr, 0}};

// The page names in the order a selected item's text is compared with them.
constexpr const char* kCaptions[][2] = {
    {"Target Settings", "ADS Tools Target Settings"},
    {"Access Paths", "ADS Tools Access Paths"},
    {"Build Extras", "ADS Tools Build Extras"},
    {"Runtime Settings", "ADS Tools Runtime Settings"},
    {"File Mappings", "ADS Tools File Mappings"},
    {"Source Trees", "ADS Tools Source Trees"},
    {"ARM Target", "ADS Tools ARM Target"},
    {"ARM Assembler", "ADS Tools Compiler Option--ARM Assembler"},
    {"ARM C Compiler", "ADS Tools Compiler Option--ARM C Compiler"},
    {"ARM C++ Compiler", "ADS Tools Compiler Option--ARM C++ Compiler"},
    {"Thumb C Compiler", "ADS Tools Compiler Option--Thumb C Compiler"},
    {"Thumb C++ Compiler", "ADS Tools Compiler Option--Thumb C++ Compiler"},
    {"ARM Linker", "ADS Tools Compiler Option--ARM Linker"},
    {"ARM FromELF", "ADS Tools ARM FromELF"},
    {"ARM Debug", "ADS Tools ARM Debug"},
    {"Select CPU", "ADS Tools Select CPU"},
    {"Property", "ADS Tools Property"},
};

}  // namespace

const char* const kAssemblerTabs[] = {"Target", "ATPCS", "Option", "Predefines", "Listing Control", "Extras",
                                      nullptr};
const char* const kCompilerTabs[] = {"Target and Source", "ATPCS", "Warnings", "Errors", "Debug/Opt",
                                     "Preprocessor", "Code Gen", "Extras", nullptr};
const char* const kLinkerTabs[] = {"Output", "Option", "Layout", "Listing", "Extras", nullptr};

std::vector<TreeItem> SettingsTree(int scope) {
    const ItemSpec* spec = kOtherTree;
    switch (scope) {
        case kScopeTarget: spec = kTargetTree; break;
        case kScopeAll: spec = kAllTree; break;
        case kScopeC: spec = kCTree; break;
        case kScopeCpp: spec = kCppTree; break;
        case kScopeAssembler: spec = kAssemblerTree; break;
        default: break;
    }
    std::vector<TreeItem> items;
    for (; spec->label != nullptr; ++spec) items.push_back({spec->label, spec->image, spec->image == kImagePage ? 1 : 0});
    return items;
}

const char* PageCaption(const std::string& item) {
    for (const auto& entry : kCaptions) {
        if (item == entry[0]) return entry[1];
    }
    return nullptr;
}

}  // namespace ads::options
