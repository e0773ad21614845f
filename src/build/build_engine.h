// The build engine: per-file tool choice, the command of every node, the
// single-file compile, the target build and cleaning. The plug-in's slots
// call into it; it reaches the host only through HostApi.
#pragma once

#include <string>

#include "ads/config_node.h"
#include "config/host_api.h"

namespace ads::build {

// What the engine needs of the plug-in's state for one call.
struct BuildContext {
    ConfigNode* project_root = nullptr;
    ConfigNode* configuration = nullptr;  // the current target's node
    std::string target;                   // the current target's name
};

class BuildEngine {
public:
    explicit BuildEngine(config::HostApi* host) : host_(host) {}

    // The per-node update run over the tree when the current target
    // changes: gives "File" nodes their entries for that target.
    bool UpdateNode(const BuildContext& context, ConfigNode* node);
    // The command for a node into *text; false when there is none.
    bool CommandFor(const BuildContext& context, ConfigNode* node, std::string* text);
    int CompileFile(const BuildContext& context, ConfigNode* file);
    int BuildTarget(const BuildContext& context, uintptr_t arg);
    void Clean(const BuildContext& context);

private:
    config::HostApi* host_;
};

}  // namespace ads::build
