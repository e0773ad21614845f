#include "options/effective_options.h"

#include "options/assembler_options.h"
#include "options/compiler_options.h"

namespace ads::options {

const char* ToolName(Tool tool) {
    switch (tool) {
        case Tool::kArmasm: return "armasm";
        case Tool::kArmcc: return "armcc";
        case Tool::kArmcpp: return "armcpp";
        case Tool::kTcc: return "tcc";
        case Tool::kTcpp: return "tcpp";
    }
    return "";
}

const char* ToolWideKey(Tool tool) {
    switch (tool) {
        case Tool::kArmasm: return config::kArmAsmParamsKey;
        case Tool::kArmcc: return config::kArmCcParamsKey;
        case Tool::kArmcpp: return config::kArmCppParamsKey;
        case Tool::kTcc: return config::kThumbCcParamsKey;
        case Tool::kTcpp: return config::kThumbCppParamsKey;
    }
    return "";
}

Family FamilyOf(Tool tool) {
    switch (tool) {
        case Tool::kArmasm: return Family::kArmAsm;
        case Tool::kArmcc: return Family::kArmC;
        case Tool::kArmcpp: return Family::kArmCpp;
        case Tool::kTcc: return Family::kThumbC;
        case Tool::kTcpp: return Family::kThumbCpp;
    }
    return Family::kArmC;
}

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
