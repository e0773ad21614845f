// The option string each tool is run with, for one target and, optionally,
// one file.
//
// Where things are kept:
//   - the tool-wide option strings are attributes of the target's
//     "Configuration" node: "ADS_GArmAsmParam", "ADS_GArmCCParam",
//     "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam";
//   - the target-level page states are in the "ADS_CParam" / "ADS_AsmParam"
//     child of the project root, keyed by target name + family + page;
//   - a file's own page states are in the same-named child of its "File"
//     node, under the same keys.
// The states owner passed in is one of those nodes (a "Filter" with its own
// settings works the same way). A file's string is its tool-wide string with
// the file's own states laid over it; the project-level states do not take
// part in it.
#pragma once

#include <string>

#include "ads/config_node.h"
#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

// Tool numbers as they are stored on files ("_tool").
enum class Tool : int { kArmasm = 1, kArmcc = 2, kArmcpp = 3, kTcc = 4, kTcpp = 5 };

const char* ToolName(Tool tool);        // "armasm" ...
const char* ToolWideKey(Tool tool);     // "ADS_GArmAsmParam" ...
Family FamilyOf(Tool tool);
bool IsCCompiler(Tool tool);            // armcc and tcc

// The effective option string of `tool`. `configuration` is the target's
// "Configuration" node (a missing one, or a missing key, is an empty
// tool-wide string); `states_owner` holds the page states (null: none).
// Throws OptionError with "GetTempCCppOption Error" (compilers) or
// "GetArmAssOption Error" (assembler) when a position stays unresolved.
std::string EffectiveOptions(Tool tool, const ConfigNode* configuration,
                             const ConfigNode* states_owner, const std::string& target_name,
                             const PathConverter& convert_via_path = {});

// The same from a tool-wide string and the target's page-state set.
std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const PageStateSet& states,
                             const PathConverter& convert_via_path = {});

}  // namespace ads::options
