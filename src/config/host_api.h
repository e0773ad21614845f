// The host's services as the plug-in's subsystems see them. The plug-in
// implements this over the host slots of its function table; tests put a
// recording fake in its place.
#pragma once

#include <string>

#include "ads/config_node.h"

namespace ads::config {

struct ToolRun {
    bool ok = false;        // the host reported success
    int exit_code = -1;
    std::string output;     // at most the buffer size asked for, less its terminator
};

class HostApi {
public:
    virtual ~HostApi() = default;
    // Node update: the node takes the edited copy's attributes and children.
    virtual void Commit(ConfigNode* node, ConfigNode* edited) = 0;
    // Finds, or creates tagged with flag_key, the settings child named key.
    virtual ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) = 0;
    // Runs a tool with a buffer of buffer_size bytes for its output.
    virtual ToolRun RunTool(const std::string& command, int buffer_size) = 0;
    // Writes to the build output pane.
    virtual void Write(const std::string& text) = 0;
    virtual bool IsOutOfDate(const std::string& target, ConfigNode* file) = 0;
    virtual bool TranslateFile(const std::string& target, ConfigNode* file) = 0;
    virtual bool MakeTarget(const std::string& target, ConfigNode* project) = 0;
};

// Clone, edit, commit, delete: the one way the plug-in changes a node.
template <typename Edit>
void EditNode(HostApi& host, ConfigNode* node, Edit edit) {
    if (node == nullptr) return;
    ConfigNode* clone = node->Clone();
    edit(clone);
    host.Commit(node, clone);
    delete clone;
}

}  // namespace ads::config
