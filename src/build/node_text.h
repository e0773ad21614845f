// Small readings of project nodes that every part of the build engine makes.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "ads/config_node.h"

namespace ads::build {

// An attribute's text, or "" when the node or the attribute is missing.
inline std::string Text(const ConfigNode* node, const char* key) {
    const char* value = node ? node->GetAttribute(key) : nullptr;
    return value ? value : "";
}

// "FileType" as an integer, 0 when absent.
inline int FileTypeOf(const ConfigNode* file) {
    int32_t type = 0;
    file->GetAttributeInt("FileType", &type);
    return type;
}

inline bool EqualsIgnoringCase(const std::string& a, const char* b) {
    if (a.size() != std::strlen(b)) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
        if (x != y) return false;
    }
    return true;
}

// Calls visit(relative_path, output, own_object) for every source of the
// project in tree order: each "File" with a "RelativePath" and a kind of 1,
// 2 or 3. A file whose "Output" is its own path is its own object; every
// other object lives in the target's folder. Linking and cleaning both
// walk this one list.
template <typename Visit>
void ForEachObject(ConfigNode* root, Visit visit) {
    WalkTree(root, [&](ConfigNode* n) {
        if (n->Name() != "File") return false;
        const char* relative = n->GetAttribute("RelativePath");
        int type = FileTypeOf(n);
        if (relative == nullptr || type < 1 || type > 3) return false;
        std::string output = Text(n, "Output");
        visit(std::string(relative), output, output == relative);
        return false;
    });
}

}  // namespace ads::build
