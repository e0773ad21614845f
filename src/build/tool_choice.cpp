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

}  // namespace ads::build
