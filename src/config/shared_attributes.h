// Attributes held once per module: a project's file nodes repeat the same
// few hundred name/value pairs ("Debug_tool" = "2", the same option text)
// tens of thousands of times, so a node keeps pointers to counted, immutable
// pairs and equal pairs are one block.
//
// Each module (host, plug-in) has its own store. A pair remembers the store
// that made it and goes back to it when its last user lets go, whichever
// module's code does that; a module only ever shares pairs of its own store,
// so nothing it keeps points into another module's. A store is locked and
// the counts are atomic: nodes on different threads may share pairs.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ads/config_node.h"

namespace ads::detail {

class TextStore;

struct SharedAttribute {
    mutable std::atomic<uint32_t> users{1};
    TextStore* store = nullptr;
    std::string name;
    std::string value;
};

// A node's whole attribute list, frozen: copies of nodes (commits, clones)
// share equal lists, as a project's files mostly carry the same settings.
struct SharedList {
    mutable std::atomic<uint32_t> users{1};
    TextStore* store = nullptr;
    size_t hash = 0;
    std::vector<ConfigNode::Attribute> items;  // one user of each pair
};

// This module's pair equal to name = value, with one more user.
const SharedAttribute* AcquireAttribute(std::string_view name, std::string_view value);
// One more user of `shared` if it is this module's, else this module's equal
// pair: what a copy of a node keeps.
const SharedAttribute* ShareAttribute(const SharedAttribute* shared);
// One user fewer; the last one frees the pair. Null is ignored.
void ReleaseAttribute(const SharedAttribute* shared);
// This module's list of the same pairs as `items` (each taken over with its
// user: the list keeps it or lets it go), with one more user.
const SharedList* AcquireList(std::vector<ConfigNode::Attribute>* items);
// One more user of `shared` if it is this module's, else null.
const SharedList* ShareList(const SharedList* shared);
// One user fewer; the last one frees the list and lets its pairs go.
void ReleaseList(const SharedList* shared);
// How many different pairs this module's store holds.
size_t StoredAttributeCount();

}  // namespace ads::detail
