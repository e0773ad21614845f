#include "build/tool_choice.h"

#include "build/node_text.h"
#include "config/project_keys.h"
#include "options/effective_options.h"
#include "options/page_state.h"

namespace ads::build {

std::string FileOptionString(const ConfigNode* configuration, const ConfigNode* file,
                             const std::string& target, int tool,
                             const options::PathConverter& convert_via_path) {
    if (tool < kToolArmasm || tool > kToolTcpp) return std::string();
    return options::EffectiveOptions(static_cast<options::Tool>(tool), configuration, file, target,
                                     convert_via_path);
}

bool RefreshLocalConfigure(config::HostApi& host, ConfigNode* node, const std::string& target) {
    if (node == nullptr) return false;
    auto own_states = [&](const ConfigNode* owner, options::Family family) {
        options::PageStateSet set;
        options::LoadPageStates(owner, target, family, set);
        for (const std::string& slot : set) {
            if (!slot.empty()) return true;
        }
        return false;
    };
    bool local = false;
    if (node->Name() == config::kFileNode) {
        int type = FileTypeOf(node);
        if (type == config::kKindAsm) {
            local = own_states(node, options::Family::kArmAsm);
        } else if (type == config::kKindC) {
            local = own_states(node, options::Family::kArmC) || own_states(node, options::Family::kThumbC);
        } else if (type == config::kKindCpp) {
            local = own_states(node, options::Family::kArmCpp) || own_states(node, options::Family::kThumbCpp);
        }
    } else if (node->Name() == config::kFilterNode) {
        for (options::Family f : {options::Family::kArmAsm, options::Family::kArmC, options::Family::kThumbC,
                                  options::Family::kArmCpp, options::Family::kThumbCpp}) {
            local = own_states(node, f) || local;
        }
    } else {
        return false;
    }
    ConfigNode* settings = FindFileSettings(node);
    if (settings == nullptr) return local;
    config::EditNode(host, settings,
                     [&](ConfigNode* edit) { edit->SetAttributeInt(config::kLocalConfigureKey, local ? 1 : 0); });
    return local;
}

std::string BuildMappingString(const std::vector<MappingRow>& rows) {
    std::string groups[6] = {"", "@armasm", "@armcc", "@armcpp", "@tcc", "@tcpp"};
    for (const MappingRow& row : rows) {
        if (!row.checked) continue;
        for (int tool = kToolArmasm; tool <= kToolTcpp; ++tool) {
            if (row.tool != kToolDisplayNames[tool]) continue;
            std::string& group = groups[tool];
            // The later row's extension goes first.
            if (group[0] != '@') group.insert(0, "&&");
            group.insert(0, row.extension);
        }
    }
    std::string map = "(" + groups[kToolArmasm] + "),(";
    map += groups[kToolArmcc] == "@armcc" ? groups[kToolTcc] : groups[kToolArmcc];
    map += "),(";
    map += groups[kToolArmcpp] == "@armcpp" ? groups[kToolTcpp] : groups[kToolArmcpp];
    map += ")";
    return map;
}

}  // namespace ads::build
