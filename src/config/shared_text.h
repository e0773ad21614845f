// Attribute names and values held once per module: a project's file nodes
// repeat the same few hundred names ("Debug_tool") and values ("2", the same
// option text) tens of thousands of times, so a node keeps pointers to
// counted, immutable texts and equal texts are one block.
//
// Each module (host, plug-in) has its own store. A text remembers the store
// that made it and goes back to it when its last user lets go, whichever
// module's code does that; a module only ever shares texts of its own store,
// so nothing it keeps points into another module's.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ads::detail {

class TextStore;

struct SharedText {
    mutable std::atomic<uint32_t> users{1};
    TextStore* store = nullptr;
    std::string text;
};

// This module's text equal to `text`, with one more user.
const SharedText* AcquireText(std::string_view text);
// One more user of `shared` if it is this module's, else this module's equal
// text: what a copy of a node keeps.
const SharedText* ShareText(const SharedText* shared);
// One user fewer; the last one frees the text. Null is ignored.
void ReleaseText(const SharedText* shared);
// How many different texts this module's store holds (for tests).
size_t StoredTextCount();

}  // namespace ads::detail
