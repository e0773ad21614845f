#include "build/build_engine.h"

namespace ads::build {

// Tool choice, the file and target commands, the single-file compile and
// cleaning arrive with the simulated toolchain; until then each entry only
// refuses what it cannot work on.

bool BuildEngine::UpdateNode(const BuildContext& /*context*/, ConfigNode* node) {
    (void)node;
    return false;
}

bool BuildEngine::CommandFor(const BuildContext& context, ConfigNode* node, std::string* text) {
    text->clear();
    if (node == nullptr || context.project_root == nullptr) return false;
    return false;
}

int BuildEngine::CompileFile(const BuildContext& /*context*/, ConfigNode* file) {
    if (file == nullptr) return 0;
    return 0;
}

int BuildEngine::BuildTarget(const BuildContext& /*context*/, uintptr_t /*arg*/) {
    return 0;
}

void BuildEngine::Clean(const BuildContext& /*context*/) {}

}  // namespace ads::build
