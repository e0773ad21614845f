#include "debug/debug_options.h"

namespace ads::debug {

// The driver selection and the download list come with the debugger
// support; until then no target has a record to hand over.
void* GetDebugOptions(ConfigNode* node) {
    (void)node;
    return nullptr;
}

}  // namespace ads::debug
