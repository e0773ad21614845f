// The option text of a CodeWarrior tool panel: the hex dump of a
// PANELDATA's VALUE decoded, split into option lines, and each switch of the
// panel looked up in them.
#pragma once

#include <string>
#include <vector>

namespace ads::import {

// Decodes a PANELDATA VALUE text: the text after the hex panel name, with
// the zero fill and the blanks behind the name skipped, the blanks dropped,
// one '0' put in front of an odd number of digits, and each pair of digits
// turned into a byte ('0' to '9' count their value, any other character its
// code less the code of '7', so only upper-case hex reads right). The text
// ends at its first zero byte. Empty when the name is not found or nothing
// follows it.
std::string DecodePanelText(const std::string& value, const std::string& hex_name);

// The option lines of a panel text: split at each "\n", empty lines left out.
std::vector<std::string> SplitOptionLines(const std::string& text);

// The value of a switch: the first line that begins with `name` (compared
// case-sensitively over the name's length) gives what follows its first
// `separator`, or `default_text` when it has none. No such line gives
// `default_text`, except for "-fpu", which then gives the empty text.
std::string LookupSwitch(const std::vector<std::string>& lines, const std::string& name, char separator,
                         const std::string& default_text);

// Every line that begins with `prefix` ("-D", "-PD").
std::vector<std::string> DefinitionLines(const std::vector<std::string>& lines, const std::string& prefix);
// The same lines, each cut before its first '?' or '.' (the compilers'
// definitions; the assembler's predefines stay whole).
std::vector<std::string> DefinitionCopies(const std::vector<std::string>& lines, const std::string& prefix);
// The copies joined, each followed by one blank.
std::string JoinDefinitions(const std::vector<std::string>& copies);

// The ASCII text as upper-case hex digits ("ARM" -> "41524D").
std::string HexOf(const std::string& text);

}  // namespace ads::import
