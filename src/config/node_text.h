// The two readings of a project node that every subsystem makes.
#pragma once

#include <cstdint>
#include <string>

#include "ads/config_node.h"
#include "config/project_keys.h"

namespace ads::config {

// An attribute's text, or "" when the node or the attribute is missing.
inline std::string Text(const ConfigNode* node, const char* key) {
    const char* value = node ? node->GetAttribute(key) : nullptr;
    return value ? value : "";
}
inline std::string Text(const ConfigNode& node, const char* key) { return Text(&node, key); }

// "FileType" as an integer, 0 when absent.
inline int FileTypeOf(const ConfigNode* file) {
    int32_t type = 0;
    file->GetAttributeInt(kFileTypeKey, &type);
    return type;
}

}  // namespace ads::config
