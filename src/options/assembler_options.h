// The switches of the assembler armasm and its pages: reading an option
// string into page states, laying a target's states over them, writing the
// switches back in their fixed order, and the predefined variables.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "options/compiler_options.h"
#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

// "Target" (_Asm_Tar): the first two positions are the reverse of the
// compilers' "_Tar" page, on purpose.
enum AsmTargetPosition : int {
    kAsmTarFpu = 0,
    kAsmTarProcessor = 1,
    kAsmTarByteOrder = 2,   // 0 = big endian (" -bi")
    kAsmTarInitialState = 3 // 1 = Thumb (" -16")
};
// "ATPCS" (_Asm_Atpcs).
enum AsmAtpcsPosition : int {
    kAsmSoftwareStack = 0,  // 0 "/swst", 1 nothing, 2 "/swstna"
    kAsmCallingStandard = 1,// 1 = " -apcs none"
    kAsmRegNames = 2,       // 1 = " -regnames none"
    kAsmInterwork = 3,
    kAsmRopi = 4,
    kAsmRwpi = 5,
};
// "Listing Control" (_Asm_LC).
enum AsmListingPosition : int {
    kAsmListOn = 0,       // " -liston"
    kAsmTerse = 1,        // 0 = " -noterse"
    kAsmXref = 2,         // " -xref"
    kAsmContinuous = 3,   // " -length 0"
};

inline constexpr char kDefaultListingWidth[] = "79";
inline constexpr char kDefaultListingLength[] = "66";

extern const SwitchRow kAssemblerOptionRows[6];

struct AssemblerSettings {
    std::array<int, 4> target;
    std::array<int, 6> atpcs;
    std::array<int, 6> option;
    std::array<int, 4> listing;
    std::string width;       // _Asm_LC_PG1
    std::string length;      // _Asm_LC_PG2
    std::string predefines;  // " -PD" switches
    std::string extras;      // " -via " and the file name, or empty

    AssemblerSettings();  // every position -1, texts empty
    bool operator==(const AssemblerSettings& other) const;
    bool operator!=(const AssemblerSettings& other) const { return !(*this == other); }
};

// Reads a tool-wide option string by substring search; only the processor
// may stay -1 (a name not in the table).
AssemblerSettings ReadAssemblerSettings(const std::string& options,
                                        const PathConverter& convert = {});
PageStateSet ReadAssemblerOptions(const std::string& options, const PathConverter& convert = {});

PageStateSet ToPageStates(const AssemblerSettings& settings);
AssemblerSettings AssemblerSettingsFromStates(const PageStateSet& states);

// Integer pages position by position; predefines and extras joined with the
// tool-wide text first; the width and length texts are single values, so a
// target's non-empty text replaces the tool-wide one.
AssemblerSettings OverlayAssemblerStates(const PageStateSet& tool_wide, const PageStateSet& target);
AssemblerSettings OverlayAssemblerSettings(const AssemblerSettings& tool_wide, const AssemblerSettings& target);

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
