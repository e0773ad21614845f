// The option string each tool is run with, for one target and, optionally,
// one file.
//
// Where things are kept:
//   - the tool-wide option strings are attributes of the target's
//     "Configuration" node: "ADS_GArmAsmParam", "ADS_GArmCCParam",
//     "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam";
//   - the target-level page states are in the "ADS_CParam" / "ADS_AsmParam"
//     child of the project root, keyed by target name + family + page;
//   - a folder ("Filter") with settings of its own and a file ("File") keep
//     theirs in the same-named child of their own node, under the same keys.
// What a file is compiled with is every one of them, laid over one another
// in that order: the tool-wide string, the target's states, the states of
// each enclosing folder from the outermost in, the file's own. A position
// that a layer leaves at -1 keeps what the layers before it made; the texts
// (defines, via files) of all layers are joined in the same order. The
// settings dialog shows exactly this string for the node it was opened on,
// and the build runs with it.
#pragma once

#include <string>
#include <vector>

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

// The nodes whose page states apply at `node`, in the order they are laid
// over the tool-wide string: the root of its tree (the target-level
// states), every enclosing "Filter" from the outermost in, and `node` itself
// when it is a "Filter" or a "File". None for null.
std::vector<const ConfigNode*> StateOwners(const ConfigNode* node);

// The effective option string of `tool` at `node` (the project root, a
// folder or a file). `configuration` is the target's "Configuration" node
// (a missing one, or a missing key, is an empty tool-wide string). Throws
// OptionError with "GetTempCCppOption Error" (compilers) or
// "GetArmAssOption Error" (assembler) when a position stays unresolved.
std::string EffectiveOptions(Tool tool, const ConfigNode* configuration, const ConfigNode* node,
                             const std::string& target_name, const PathConverter& convert_via_path = {});

// The same from a tool-wide string and page-state sets, laid over it in order.
std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const std::vector<PageStateSet>& layers,
                             const PathConverter& convert_via_path = {});
std::string EffectiveOptions(Tool tool, const std::string& tool_wide, const PageStateSet& states,
                             const PathConverter& convert_via_path = {});

}  // namespace ads::options
