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

std::vector<const ConfigNode*> StateOwners(const ConfigNode* node) {
    std::vector<const ConfigNode*> owners;
    for (const ConfigNode* n = node; n != nullptr; n = n->Parent()) {
        const bool own = n == node && n->Name() == config::kFileNode;
        if (own || n->Name() == config::kFilterNode || n->Parent() == nullptr) owners.push_back(n);
    }
    return {owners.rbegin(), owners.rend()};
}

std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const std::vector<PageStateSet>& layers,
                             const PathConverter& convert_via_path) {
    if (tool == Tool::kArmasm) {
        return WriteAssemblerOptions(OverlayLayers(ReadAssemblerSettings(tool_wide, convert_via_path), layers));
    }
    const bool c_language = IsCCompiler(tool);
    return WriteCompilerOptions(OverlayLayers(ReadCompilerSettings(tool_wide, c_language, convert_via_path), layers),
                                c_language);
}

std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const PageStateSet& states,
                             const PathConverter& convert_via_path) {
    return EffectiveOptions(tool, tool_wide, std::vector<PageStateSet>{states}, convert_via_path);
}

std::string EffectiveOptions(Tool tool, const ConfigNode* configuration, const ConfigNode* node,
                             const std::string& target_name, const PathConverter& convert_via_path) {
    std::string tool_wide;
    if (configuration != nullptr) {
        if (const char* text = configuration->GetAttribute(ToolWideKey(tool))) tool_wide = text;
    }
    std::vector<PageStateSet> layers;
    for (const ConfigNode* owner : StateOwners(node)) {
        LoadPageStates(owner, target_name, FamilyOf(tool), layers.emplace_back());
    }
    return EffectiveOptions(tool, tool_wide, layers, convert_via_path);
}

}  // namespace ads::options
