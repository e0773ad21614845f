// The switches of the four ADS compilers (armcc, tcc, armcpp, tcpp) and their
// pages: reading an option string into page states, laying a target's states
// over them, and writing the switches back in their one fixed order.
//
// The C and C++ families differ only in the source-language combo; the
// `c_language` flag is set for armcc and tcc.
#pragma once

#include <array>
#include <string>

#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

// "Target and Source" (_Tar).
enum TargetPosition : int { kTarProcessor = 0, kTarFpu = 1, kTarLanguage = 2, kTarByteOrder = 3 };
// "Warnings" (_Warnings): two switches, then one position per letter.
enum WarningPosition : int { kWarnNone = 0, kWarnAll = 1 };
// "Debug/Opt" (_Debug_Opt).
enum DebugPosition : int {
    kDbgTables = 0,         // 1 = " -g+"
    kDbgPreproSymbols = 1,  // 0 = " -gtp"
    kDbgInline = 2,         // 1 = " -Ono_inline"
    kDbgLevel = 3,          // " -O0", " -O1", " -O2"
    kDbgCriterion = 4,      // 1 = " -Otime"
};

// A check box that writes `text` when it is set.
struct SwitchRow {
    const char* label;
    const char* text;
};
// A check box that stands for one letter of a " -W" or " -E" list.
struct LetterRow {
    const char* label;
    const char* group;
    char letter;  // 0 for the two warning switches
    bool on_by_default;
};

extern const char kCompilerAtpcsGroup[];
extern const SwitchRow kCompilerAtpcsRows[4];
extern const LetterRow kWarningRows[16];
extern const LetterRow kErrorRows[7];
extern const char kCodeGenGroup[];
extern const SwitchRow kCodeGenRows[5];

struct CompilerSettings {
    std::array<int, 4> target;
    std::array<int, 4> atpcs;
    std::array<int, 16> warnings;
    std::array<int, 7> errors;
    std::array<int, 5> debug_opt;
    std::array<int, 5> code_gen;
    std::string preprocessor;  // " -D" switches as they stand
    std::string extras;        // " -via " and the file name, or empty

    CompilerSettings();  // every position -1, texts empty
    bool operator==(const CompilerSettings& other) const;
    bool operator!=(const CompilerSettings& other) const { return !(*this == other); }
};

// Reads a tool-wide option string by substring search. Every position gets a
// value except the processor (a name not in the table) and the optimisation
// level (no "-O0", "-O1" or "-O2"), which may stay -1.
CompilerSettings ReadCompilerSettings(const std::string& options, bool c_language,
                                      const PathConverter& convert = {});
PageStateSet ReadCompilerOptions(const std::string& options, bool c_language,
                                 const PathConverter& convert = {});

PageStateSet ToPageStates(const CompilerSettings& settings);
// Positions not in a state stay -1.
CompilerSettings CompilerSettingsFromStates(const PageStateSet& states);

// The target's states over the tool-wide ones: integer pages position by
// position, text pages joined (tool-wide text first).
CompilerSettings OverlayCompilerStates(const PageStateSet& tool_wide, const PageStateSet& target);
CompilerSettings OverlayCompilerSettings(const CompilerSettings& tool_wide, const CompilerSettings& target);

// The switches in their fixed order. Throws OptionError("GetTempCCppOption
// Error") when a position is -1 or the processor index names no processor.
std::string WriteCompilerOptions(const CompilerSettings& settings, bool c_language);

// Read, overlay, write.
std::string EffectiveCompilerOptions(const std::string& tool_wide, const PageStateSet& target,
                                     bool c_language, const PathConverter& convert = {});

}  // namespace ads::options
