// "Property": the page of the dialog opened on a file or a folder.
//
// "Tool:" (a "File" only) the tool that translates the file in the current
// target, chosen from the tools of its kind: "ARM C Compiler" or "Thumb C
// Compiler" for C, "ARM C++ Compiler" or "Thumb C++ Compiler" for C++,
// "ARM Assembler" alone for assembler sources. It shows the tool the build
// takes: the number stored for the target, else the one the target's file
// mapping gives; "Default" goes back to the mapping's. The page owns, on the
// file's settings child ("ADS_CParam" or "ADS_AsmParam", asked from the
// host when missing), the attribute target name + "_tool".
//
// "Keep own settings": whether the file or folder has option settings of
// its own in the current target. A file or folder has them exactly when
// its settings child holds page states under the target's name (target
// name + family + page keys): the build lays those over the target's and
// the enclosing folders' (see effective_options.h), and "LocalConfigure"
// on the settings child marks the same thing. Settings of one's own are made
// on the language pages; this box only gives them up: cleared and saved, it
// removes the target's page states of the node's kinds (C and C++ families
// for a C or C++ file, the assembler's for an assembler file, all five for a
// folder) from the settings children and writes "LocalConfigure" 0, so the
// node follows the levels above again. Those keys are otherwise the language
// pages' own: the dialog saves this page after them (or does not save theirs
// for the node) when the box was cleared.
//
// On any other node both controls are disabled and nothing is written.
#pragma once

#include <memory>

#include "options/dialog_page.h"

namespace ads::options {

inline constexpr char kPropertyItem[] = "Property";

std::unique_ptr<StoredPage> MakePropertyPage();

}  // namespace ads::options
