// The switches of the assembler armasm and its pages: reading an option
// string into page states, laying a target's states over them, writing the
// switches back in their fixed order, and the predefined variables. Each page
// is one table of rows, as for the compilers.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "options/compiler_options.h"
#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

// The pages of the property sheet, one table each, in tab order.

// "Target" (_Asm_Tar): the first two positions are the reverse of the
// compilers' "_Tar" page, on purpose.
enum AsmTargetPosition : int { kAsmTarFpu, kAsmTarProcessor, kAsmTarByteOrder, kAsmTarInitialState };
inline constexpr OptionChoice kInitialStateChoices[] = {{"ARM", ""}, {"Thumb", " -16"}, {}};
inline constexpr OptionRow kAsmTargetRows[] = {
    Combo("Architecture Or Processor", "", kAsmTarProcessor, ChoiceSource::kProcessors),
    Combo("Floating Point", "", kAsmTarFpu, ChoiceSource::kFpus),
    Radio("Byte Order", "", kAsmTarByteOrder, kByteOrderChoices),
    Radio("Initial state", "", kAsmTarInitialState, kInitialStateChoices),
};

// "ATPCS" (_Asm_Atpcs).
enum AsmAtpcsPosition : int {
    kAsmSoftwareStack, kAsmCallingStandard, kAsmRegNames, kAsmInterwork, kAsmRopi, kAsmRwpi };
inline constexpr char kAsmAtpcsGroup[] = "Procedure Call Standard Option";
inline constexpr OptionChoice kSoftwareStackChoices[] = {
    {"On", "/swst"}, {"Off", ""}, {"Not Applicable", "/swstna"}, {}};
inline constexpr OptionChoice kCallingStandardChoices[] = {{"ATPCS", ""}, {"None", " -apcs none"}, {}};
inline constexpr OptionChoice kRegNamesChoices[] = {{"ATPCS", ""}, {"None", " -regnames none"}, {}};
inline constexpr OptionRow kAsmAtpcsRows[] = {
    Radio("Software stack", kAsmAtpcsGroup, kAsmSoftwareStack, kSoftwareStackChoices),
    Radio("Calling Standard", kAsmAtpcsGroup, kAsmCallingStandard, kCallingStandardChoices),
    Radio("Predeclared Reg Names", kAsmAtpcsGroup, kAsmRegNames, kRegNamesChoices),
    Check("ARM/Thumb interworking", kAsmAtpcsGroup, kAsmInterwork, "/interwork"),
    Check("Read-only position independent", kAsmAtpcsGroup, kAsmRopi, "/ropi"),
    Check("Read-write position independent", kAsmAtpcsGroup, kAsmRwpi, "/rwpi"),
};

// "Option" (_Asm_Opt).
enum AsmOptionPosition : int { kAsmCheckRegList, kAsmNoWarn, kAsmDebug, kAsmKeep, kAsmNoEsc, kAsmSplitLdm };
inline constexpr OptionRow kAssemblerOptionRows[] = {
    Check("Check Register lists", "", kAsmCheckRegList, " -checkreglist"),
    Check("No Warnings", "", kAsmNoWarn, " -nowarn"),
    Check("Source Line Debug", "", kAsmDebug, " -g"),
    Check("Keep Symbols", "", kAsmKeep, " -keep"),
    Check("Ignore C_style escape chare", "", kAsmNoEsc, " -noesc"),
    Check("Fault Long running Load and Store Multiple", "", kAsmSplitLdm, " -split_ldm"),
};

// "Predefines" (_Asm_PDS) keeps the " -PD" switches; the fields under "Edit
// predefined variable" only build entries.
inline constexpr char kEditPredefineGroup[] = "Edit predefined variable";
inline constexpr OptionChoice kDirectiveChoices[] = {{"SETA", ""}, {"SETL", ""}, {"SETS", ""}, {}};
inline constexpr OptionChoice kLogicalChoices[] = {{"{TRUE}", ""}, {"{FALSE}", ""}, {}};
inline constexpr OptionRow kPredefinesRows[] = {
    TextRow(ControlKind::kTextList, "List Of Predefines", "", kAsmPds),
    TextRow(ControlKind::kEdit, "Variable", kEditPredefineGroup, -1),
    Combo("Directive", kEditPredefineGroup, kNoPosition, ChoiceSource::kListed, kDirectiveChoices),
    TextRow(ControlKind::kEdit, "Numeric", kEditPredefineGroup, -1),
    Radio("Logical", kEditPredefineGroup, kNoPosition, kLogicalChoices),
    Button("Add", kEditPredefineGroup),
    Button("Replace", kEditPredefineGroup),
    Button("Delete", kEditPredefineGroup),
};

// "Listing Control" (_Asm_LC) and its two "Page" fields, width (_Asm_LC_PG1)
// and length (_Asm_LC_PG2).
enum AsmListingPosition : int { kAsmListOn, kAsmTerse, kAsmXref, kAsmContinuous };
inline constexpr char kDefaultListingWidth[] = "79";
inline constexpr char kDefaultListingLength[] = "66";
inline constexpr OptionRow kListingRows[] = {
    Check("Listing on", "Miscellaneous", kAsmListOn, " -liston"),
    Check("Terse", "Miscellaneous", kAsmTerse, "", " -noterse"),
    Check("Cross-reference", "Miscellaneous", kAsmXref, " -xref"),
    Check("Continuous Page", "Dimensions", kAsmContinuous, " -length 0"),
    TextRow(ControlKind::kEdit, "Page", "Dimensions", kAsmLcPg1, kDefaultListingWidth),
    TextRow(ControlKind::kEdit, "Page", "Dimensions", kAsmLcPg2, kDefaultListingLength),
};

inline constexpr OptionRow kAsmExtrasRows[] = {
    TextRow(ControlKind::kEdit, "Via file Name", "", kAsmEts),
    Button("Choose..."),
};

enum class AssemblerPage : int { kTarget, kAtpcs, kOption, kPredefines, kListingControl, kExtras };
inline constexpr PageTable kAssemblerPages[] = {
    Page("Target", kAsmTar, kAsmTargetRows),
    Page("ATPCS", kAsmAtpcs, kAsmAtpcsRows),
    Page("Option", kAsmOpt, kAssemblerOptionRows),
    Page("Predefines", -1, kPredefinesRows),
    Page("Listing Control", kAsmLc, kListingRows),
    Page("Extras", -1, kAsmExtrasRows),
};
constexpr const PageTable& PageOf(AssemblerPage page) { return kAssemblerPages[static_cast<int>(page)]; }

constexpr int kAsmTargetPageSize = ValueCount(kAsmTargetRows);
constexpr int kAsmAtpcsPageSize = ValueCount(kAsmAtpcsRows);
constexpr int kAsmOptionPageSize = ValueCount(kAssemblerOptionRows);
constexpr int kListingPageSize = ValueCount(kListingRows);

struct AssemblerSettings {
    std::array<int, kAsmTargetPageSize> target;
    std::array<int, kAsmAtpcsPageSize> atpcs;
    std::array<int, kAsmOptionPageSize> option;
    std::array<int, kListingPageSize> listing;
    std::string width;       // _Asm_LC_PG1
    std::string length;      // _Asm_LC_PG2
    std::string predefines;  // " -PD" switches
    std::string extras;      // " -via " and the file name, or empty

    AssemblerSettings() { ClearPages(*this); }  // every position -1, texts empty
    bool operator==(const AssemblerSettings& other) const { return SamePages(*this, other); }
    bool operator!=(const AssemblerSettings& other) const { return !(*this == other); }

    // The width and length are single values: a target's non-empty text
    // replaces the tool-wide one.
    template <class Visit>
    static void ForEachPage(Visit&& visit) {
        visit(kAsmTar, &AssemblerSettings::target, Merge::kByPosition);
        visit(kAsmAtpcs, &AssemblerSettings::atpcs, Merge::kByPosition);
        visit(kAsmOpt, &AssemblerSettings::option, Merge::kByPosition);
        visit(kAsmLc, &AssemblerSettings::listing, Merge::kByPosition);
        visit(kAsmLcPg1, &AssemblerSettings::width, Merge::kTargetWhenSet);
        visit(kAsmLcPg2, &AssemblerSettings::length, Merge::kTargetWhenSet);
        visit(kAsmPds, &AssemblerSettings::predefines, Merge::kJoined);
        visit(kAsmEts, &AssemblerSettings::extras, Merge::kJoined);
    }
};

// Reads a tool-wide option string by substring search; only the processor
// may stay -1 (a name not in the table).
AssemblerSettings ReadAssemblerSettings(const std::string& options,
                                        const PathConverter& convert = {});
PageStateSet ReadAssemblerOptions(const std::string& options, const PathConverter& convert = {});

// The switches in their fixed order. Throws OptionError("GetArmAssOption
// Error") when a position is -1 or the processor index names no processor.
std::string WriteAssemblerOptions(const AssemblerSettings& settings);

std::string EffectiveAssemblerOptions(const std::string& tool_wide, const PageStateSet& target,
                                      const PathConverter& convert = {});

// --- Predefined variables ("Predefines" page) ---------------------------

enum class Directive : int { kSeta = 0, kSetl = 1, kSets = 2 };
inline constexpr char kVariableExistsMessage[] = "The variable already exists!";

const char* DirectiveText(Directive directive);        // "SETA", "SETL", "SETS"
const char* DirectiveValueLabel(Directive directive);  // "Numeric", "Logical", "String Value"

// The entry text "VAR SETA value".
std::string PredefineEntry(const std::string& variable, Directive directive,
                           const std::string& value);
// The switch of one entry: " -PD " and the entry, between double quotes when
// it holds a blank or a quote (every entry of the page holds blanks).
std::string PredefineSwitch(const std::string& entry);
std::string PredefinesText(const std::vector<std::string>& entries);
// The entries of a predefines text (or of any option string), in order.
std::vector<std::string> PredefineEntries(const std::string& text);

// The "Add" test: true when an entry holds the variable name followed by a
// blank anywhere in its text. A plain substring test, so "A" is refused
// beside "XA SETA 1": kept so on purpose.
bool VariableExists(const std::vector<std::string>& entries, const std::string& variable);

}  // namespace ads::options
