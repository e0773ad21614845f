// The host's node services as the host implements them, recording each call.
#pragma once

#include <string>
#include <vector>

#include "ads/config_node.h"
#include "options/page_state.h"

namespace ads::options::testing {

struct FakeHost {
    struct Commit {
        ConfigNode* node;
        std::string edited_name;
        bool edited_is_node;  // the plug-in handed the node itself, not a copy
    };
    std::vector<std::string> created;  // "key/flag_key" per creation
    std::vector<Commit> commits;

    FindSettingNodeFn FindSettingNode() {
        return [this](ConfigNode* node, const char* key, const char* flag_key) {
            if (ConfigNode* found = node->FindChild(key)) return found;
            auto* child = new ConfigNode(key);
            child->SetAttribute(flag_key, "1");
            node->AppendChild(child);
            created.push_back(std::string(key) + "/" + flag_key);
            return child;
        };
    }

    CommitNodeFn CommitNode() {
        return [this](ConfigNode* node, ConfigNode* edited) {
            commits.push_back({node, edited->Name(), edited == node});
            node->ClearAttributes();
            for (auto* a = edited->FirstAttribute(); a != nullptr; a = edited->NextAttribute(a)) {
                node->SetAttribute(a->name, a->value);
            }
        };
    }
};

inline std::string Attr(const ConfigNode* node, const char* name) {
    const char* value = node ? node->GetAttribute(name) : nullptr;
    return value ? value : "<absent>";
}

}  // namespace ads::options::testing
