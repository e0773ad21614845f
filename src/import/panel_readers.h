// The eight panel readers: which switches each ADS panel of a CodeWarrior
// target carries, how each is looked up, and the record a reader fills.
#pragma once

#include <string>
#include <vector>

#include "import/import_model.h"

namespace ads::import {

// "Panel_for_armasm" ..., by PanelKind.
extern const char* const kPanelDataNames[kPanelCount];
// "ARM Assembler" ..., by PanelKind; the first seven are the tool table.
extern const char* const kPanelToolNames[kPanelCount];
// The tool names as the dump holds them: upper-case hex of the ASCII text.
extern const char* const kPanelHexNames[kPanelCount];

// "Panel_for_debugchoice": decoded and kept as the target's debug choice.
extern const char kDebugChoicePanel[];
extern const char kDebugChoiceHexName[];  // "ARM Debugger"

// How one row of a panel record is found in the option lines.
enum class RowKind {
    kValue,        // the looked-up value as it stands
    kCpu,          // "-cpu " + value
    kFpu,          // "-fpu " + value, empty when no value
    kLinkType,     // "-partial" when the line ".linktype=-partial" is there, else the value
    kProjectName,  // " --no_useprojectname" when the value says no
    kOutputName,   // "-outputname " + value, empty when no value
    kDefinitions,  // the definition lines with `name` as their prefix, each cut at its first '.' or '?'
    kPredefines,   // the same, whole
};

struct RowSpec {
    const char* name;
    char separator;
    const char* default_text;
    RowKind kind;
};

struct PanelSpec {
    const RowSpec* rows;
    int count;
};

// The rows of a panel kind, in the order of its record.
PanelSpec SpecOf(PanelKind kind);

// Fills one record from a panel's decoded option text. Lines that no row of
// the panel names are kept in `unknown`.
PanelRecord ReadPanel(PanelKind kind, const std::string& panel_text);

// The PanelKind of a PANELDATA name, or kPanelCount when it names none.
PanelKind PanelOfName(const std::string& name);

}  // namespace ads::import
