// Small readings of project nodes that every part of the build engine makes.
#pragma once

#include <string>

#include "ads/config_node.h"
#include "config/node_text.h"
#include "platform/text.h"

namespace ads::build {

using config::FileTypeOf;
using config::Text;
using platform::EqualsIgnoringCase;

// Calls visit(node, relative_path, output, own_object) for every source of the
// project in tree order: each "File" with a "RelativePath" and a kind of 1,
// 2 or 3. A file whose "Output" is its own path is its own object; every
// other object lives in the target's folder. Linking and cleaning both
// walk this one list.
template <typename Visit>
void ForEachObject(ConfigNode* root, Visit visit) {
    WalkTree(root, [&](ConfigNode* n) {
        if (n->Name() != config::kFileNode) return false;
        const char* relative = n->GetAttribute(config::kRelativePathKey);
        int type = FileTypeOf(n);
        if (relative == nullptr || type < config::kKindC || type > config::kKindCpp) return false;
        std::string output = Text(n, config::kOutputKey);
        visit(n, std::string(relative), output, output == relative);
        return false;
    });
}

}  // namespace ads::build
