// The project file of orvhost: the project tree as an XML document.
//
//   <?xml version="1.0" encoding="ISO-8859-1"?>
//   <OrvaneProject version="1">
//     <Target name="Debug">
//       <File name="src\main.c"/>
//     </Target>
//   </OrvaneProject>
//
// One element per node, named after the node; the node's attributes become
// the element's attributes in their order, its children become child elements
// in their order. Two blanks of indentation per level (the indentation stops
// growing past kMaxIndentLevel, so that the size of the file stays linear in
// the size of the tree however deep it is); elements without children are
// self-closed. The user word of a node is not stored.
//
// Texts are 8-bit and the file is declared ISO-8859-1, so every byte of a text
// is one character of the file.
//
// Values. Any value survives a save and a load exactly: '&', '<', '>' and '"'
// are written as the predefined entities; tab, CR and LF as "&#9;", "&#13;"
// and "&#10;" (a reader would otherwise turn them into blanks); the other
// control bytes 0x01-0x1F and 0x7F as "&#xHH;"; bytes 0x80-0xFF as they are.
//
// Names. Node and attribute names are arbitrary texts (target names hold
// blanks, 8-bit letters, colons, may start with a digit, may be empty, and a
// node may carry several attributes with the empty name), while an XML name
// may not. So every name is written through this escape:
//   - a letter or '_' at the start, and a letter, digit, '.', '-' or '_'
//     later on, stands for itself;
//   - every other byte is written "_xHH_", HH its value in upper-case hex
//     ("Target 1" -> "Target_x20_1", "1st" -> "_x31_st", "a:b" -> "a_x3A_b");
//   - a '_' that is followed by an 'x' is written "_x5F_" ("_x41_" ->
//     "_x5F_x41_"), so that every "_x" in the file starts an escape;
//   - the empty name is written "_x_".
// Reading takes every "_xHH_" (either case of hex digit) as the byte HH, a
// whole name "_x_" as the empty name, and every other character as itself,
// so names that need no escape read back unchanged in hand-written files.
//
// The reader is a small XML reader of its own: declaration, comments,
// processing instructions and whitespace between elements are skipped;
// attribute values may be quoted with '"' or '\''; the five predefined
// entities and character references up to 255 are decoded. Text content,
// CDATA sections and document type declarations are errors. It works with an
// explicit stack of open elements, and the writer walks the tree by its
// links, so neither depth nor width of the tree grows the call stack.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "ads/config_node.h"

namespace ads::platform {
class FileSystem;
}

namespace ads::host {

// Levels past this one are indented like it.
constexpr size_t kMaxIndentLevel = 64;

// The whole file: declaration, then the tree under root (root included).
std::string SerializeProject(const ConfigNode& root);

// The tree of a project file. On failure null, and *error (when not null)
// says where and why: "line 12: attribute value is not quoted".
std::unique_ptr<ConfigNode> ParseProject(const std::string& text, std::string* error);

// Reads and parses a project file; errors start with the path:
// "<path>: line 3: element 'File' is not closed".
std::unique_ptr<ConfigNode> LoadProject(platform::FileSystem& files, const std::string& path,
                                        std::string* error);

// Writes the file whole or not at all (an atomic replace), so a failed save
// leaves the old file as it was. False on failure, with *error naming the
// path and the reason: the file system's own text when that names the path
// followed by ':' ("cannot write <path>: Access is denied."), else
// "<path>: cannot write the project file: <reason>".
bool SaveProject(platform::FileSystem& files, const std::string& path, const ConfigNode& root,
                 std::string* error);

// The name escape described above.
std::string EncodeName(std::string_view name);
std::string DecodeName(std::string_view text);

}  // namespace ads::host
