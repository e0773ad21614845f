#include "options/effective_options.h"

#include "options/assembler_options.h"
#include "options/compiler_options.h"

namespace ads::options {

namespace {

struct ToolEntry {
    Tool tool;
    const char* name;
    const char* tool_wide_key;
    Family family;
};
constexpr ToolEntry kTools[] = {
    {Tool::kArmasm, "armasm", config::kArmAsmParamsKey, Family::kArmAsm},
    {Tool::kArmcc, "armcc", config::kArmCcParamsKey, Family::kArmC},
    {Tool::kArmcpp, "armcpp", config::kArmCppParamsKey, Family::kArmCpp},
    {Tool::kTcc, "tcc", config::kThumbCcParamsKey, Family::kThumbC},
    {Tool::kTcpp, "tcpp", config::kThumbCppParamsKey, Family::kThumbCpp},
};

// A number that names no tool has no name and no tool-wide key.
const ToolEntry& EntryOf(Tool tool) {
    static constexpr ToolEntry kNoTool = {Tool{}, "", "", Family::kArmC};
    for (const ToolEntry& entry : kTools) {
        if (entry.tool == tool) return entry;
    }
    return kNoTool;
}

}  // namespace

const char* ToolName(Tool tool) { return EntryOf(tool).name; }
const char* ToolWideKey(Tool tool) { return EntryOf(tool).tool_wide_key; }
Family FamilyOf(Tool tool) { return EntryOf(tool).family; }

bool IsCCompiler(Tool tool) { return tool == Tool::kArmcc || tool == Tool::kTcc; }

std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const PageStateSet& states,
                             const PathConverter& convert_via_path) {
    if (tool == Tool::kArmasm) return EffectiveAssemblerOptions(tool_wide, states, convert_via_path);
    return EffectiveCompilerOptions(tool_wide, states, IsCCompiler(tool), convert_via_path);
}

std::string EffectiveOptions(Tool tool, const ConfigNode* configuration,
                             const ConfigNode* states_owner, const std::string& target_name,
                             const PathConverter& convert_via_path) {
    std::string tool_wide;
    if (configuration != nullptr) {
        if (const char* text = configuration->GetAttribute(ToolWideKey(tool))) tool_wide = text;
    }
    PageStateSet states;
    LoadPageStates(states_owner, target_name, FamilyOf(tool), states);
    return EffectiveOptions(tool, tool_wide, states, convert_via_path);
}

}  // namespace ads::options
