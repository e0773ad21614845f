// The debug options the host's debugger asks for before a session.
#pragma once

#include "ads/config_node.h"

namespace ads::debug {

// The target's debug option record for the host, or null when there is none.
void* GetDebugOptions(ConfigNode* node);

}  // namespace ads::debug
