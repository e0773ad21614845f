// The switches of the four ADS compilers (armcc, tcc, armcpp, tcpp) and their
// pages: reading an option string into page states, laying a target's states
// over them, and writing the switches back in their one fixed order.
//
// Each page is one table of rows below; the reader and the writer hold only
// what the tables cannot say. The C and C++ families differ only in the
// source-language combo; the `c_language` flag is set for armcc and tcc.
#pragma once

#include <array>
#include <string>

#include "options/option_rows.h"
#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

// The pages of the property sheet, one table each, in tab order. The
// position enums number the values of each page state in order; the rows
// are in the order the page shows them.

// "Target and Source" (_Tar).
enum TargetPosition : int { kTarProcessor, kTarFpu, kTarLanguage, kTarByteOrder };
inline constexpr OptionChoice kByteOrderChoices[] = {{"Big Endian", " -bi"}, {"Little Endian", ""}, {}};
inline constexpr OptionRow kTargetRows[] = {
    Combo("Architecture Or Processor", "", kTarProcessor, ChoiceSource::kProcessors),
    Combo("Floating Point", "", kTarFpu, ChoiceSource::kFpus),
    Radio("Byte Order", "", kTarByteOrder, kByteOrderChoices),
    Combo("Source Language", "", kTarLanguage, ChoiceSource::kLanguages),
};

// "ATPCS" (_Atpcs): the boxes are written together behind one " -apcs ".
enum CompilerAtpcsPosition : int { kAtpcsInterwork, kAtpcsSwst, kAtpcsRopi, kAtpcsRwpi };
inline constexpr char kCompilerAtpcsGroup[] = "ARM/Thumb Procedure Call Standard Option";
inline constexpr OptionRow kCompilerAtpcsRows[] = {
    Check("ARM/Thumb interworking", kCompilerAtpcsGroup, kAtpcsInterwork, "/interwork"),
    Check("Software stack check", kCompilerAtpcsGroup, kAtpcsSwst, "/swst"),
    Check("Read-only position independent", kCompilerAtpcsGroup, kAtpcsRopi, "/ropi"),
    Check("Read-write position independent", kCompilerAtpcsGroup, kAtpcsRwpi, "/rwpi"),
};

// "Warnings" (_Warnings): two switches, then one position per letter of the
// " -W" list. The labels are kept as the page shows them, misspellings too.
enum WarningPosition : int { kWarnNone, kWarnAll };
inline constexpr char kWarnCAndCpp[] = "Warn for (C and C++)";
inline constexpr char kWarnCOnly[] = "Warn for (C Only)";
inline constexpr OptionRow kWarningRows[] = {
    Check("No Warnings", "", kWarnNone, " -W"),
    Check("Warn for all conditions", "", kWarnAll, " -fx"),
    Letter("Assignment in condition", kWarnCAndCpp, 2, 'a', true),
    Letter("ANSI C extensions", kWarnCAndCpp, 3, 'b', true),
    Letter("Header file not gurded", kWarnCAndCpp, 4, 'g', false),
    Letter("Unused declaration", kWarnCAndCpp, 5, 'x', true),
    Letter("Non-ANSI header", kWarnCAndCpp, 6, 'p', false),
    Letter("Padding inserted in struct", kWarnCAndCpp, 7, 's', false),
    Letter("C to C++ incompatibility", kWarnCAndCpp, 8, 'u', false),
    Letter("Lower precision in wider context", kWarnCAndCpp, 9, 'l', false),
    Letter("Implicit narrowing", kWarnCAndCpp, 10, 'n', false),
    Letter("Double to float", kWarnCAndCpp, 11, 'k', true),
    Letter("Member and base \ninits out for order", kWarnCOnly, 12, 'q', true),
    Letter("Implicit constructor", kWarnCOnly, 13, 't', false),
    Letter("Implicit virtal", kWarnCOnly, 14, 'i', false),
    Letter("Unused this in \nnon-static member function", kWarnCOnly, 15, 'r', true),
};

// "Errors" (_Errors): every error is on; a listed letter downgrades it.
inline constexpr char kErrCAndCpp[] = "Enable for (C and C++)";
inline constexpr char kErrCOnly[] = "Enble  for (C Only)";
inline constexpr OptionRow kErrorRows[] = {
    Letter("Implicit  Pointer casts", kErrCAndCpp, 0, 'c', true),
    Letter("Other dubious casts", kErrCAndCpp, 1, 'f', true),
    Letter("Linkage conflicts", kErrCAndCpp, 2, 'l', true),
    Letter("Junk at end of #endif/#else/#undef", kErrCAndCpp, 3, 'p', true),
    Letter("Zero-length arrays", kErrCAndCpp, 4, 'z', true),
    Letter("Access control violatition", kErrCOnly, 5, 'a', true),
    Letter("Implicit 'int'", kErrCOnly, 6, 'i', true),
};

// "Debug/Opt" (_Debug_Opt).
enum DebugPosition : int { kDbgTables, kDbgPreproSymbols, kDbgInline, kDbgLevel, kDbgCriterion };
inline constexpr OptionChoice kLevelChoices[] = {{"Minimum (best debug view)", " -O0"},
                                                 {"Most (good debug view,good code)", " -O1"},
                                                 {"ALL (poor debug view,best code)", " -O2"},
                                                 {}};
inline constexpr OptionChoice kCriterionChoices[] = {{"For space ", ""}, {"For time", " -Otime"}, {}};
inline constexpr OptionRow kDebugOptRows[] = {
    Check("Enable debug table generation", "", kDbgTables, " -g+"),
    Check("Include preprocessor symbol", "", kDbgPreproSymbols, "", " -gtp"),
    Check("Enable debug of inline function", "", kDbgInline, " -Ono_inline"),
    Radio("", "Optimization Level", kDbgLevel, kLevelChoices),
    Radio("", "Optimization Criterion", kDbgCriterion, kCriterionChoices),
};

// "Preprocessor" (_PrePro) keeps the " -D" switches as they stand.
inline constexpr OptionRow kPreprocessorRows[] = {
    TextRow(ControlKind::kTextList, "List of #DEFINEs", "", kCcPrePro),
    Button("Add"),
    Button("Replace"),
    Button("Delete"),
};

// "Code Gen" (_Code_Gen).
enum CodeGenPosition : int { kGenEnumInt, kGenSignedChar, kGenSplitLdm, kGenFloatConstants, kGenSections };
inline constexpr char kCodeGenGroup[] = "Code Generation Options";
inline constexpr OptionRow kCodeGenRows[] = {
    Check("Enum container always int", kCodeGenGroup, kGenEnumInt, " -fy"),
    Check("Plain char is signed", kCodeGenGroup, kGenSignedChar, " -zc"),
    Check("Split load and store multiple", kCodeGenGroup, kGenSplitLdm, " -split_ldm"),
    Check("Narrow bouble constants to float constants", kCodeGenGroup, kGenFloatConstants,
          " -auto_float_constants"),
    Check("One ELF section per function", kCodeGenGroup, kGenSections, " -zo"),
};

// "Extras" (_Extras): " -via " and the file name.
inline constexpr OptionRow kCompilerExtrasRows[] = {
    TextRow(ControlKind::kEdit, "Via file Name", "", kCcExtras),
    Button("Choose..."),
};

// Tabs in the order the property sheets show them.
enum class CompilerPage : int {
    kTargetAndSource, kAtpcs, kWarnings, kErrors, kDebugOpt, kPreprocessor, kCodeGen, kExtras
};
inline constexpr PageTable kCompilerPages[] = {
    Page("Target and Source", kCcTar, kTargetRows),
    Page("ATPCS", kCcAtpcs, kCompilerAtpcsRows),
    Page("Warnings", kCcWarnings, kWarningRows),
    Page("Errors", kCcErrors, kErrorRows),
    Page("Debug/Opt", kCcDebugOpt, kDebugOptRows),
    Page("Preprocessor", -1, kPreprocessorRows),
    Page("Code Gen", kCcCodeGen, kCodeGenRows),
    Page("Extras", -1, kCompilerExtrasRows),
};
constexpr const PageTable& PageOf(CompilerPage page) { return kCompilerPages[static_cast<int>(page)]; }

constexpr int kTargetPageSize = ValueCount(kTargetRows);
constexpr int kCompilerAtpcsPageSize = ValueCount(kCompilerAtpcsRows);
constexpr int kWarningsPageSize = ValueCount(kWarningRows);
constexpr int kErrorsPageSize = ValueCount(kErrorRows);
constexpr int kDebugOptPageSize = ValueCount(kDebugOptRows);
constexpr int kCodeGenPageSize = ValueCount(kCodeGenRows);

struct CompilerSettings {
    std::array<int, kTargetPageSize> target;
    std::array<int, kCompilerAtpcsPageSize> atpcs;
    std::array<int, kWarningsPageSize> warnings;
    std::array<int, kErrorsPageSize> errors;
    std::array<int, kDebugOptPageSize> debug_opt;
    std::array<int, kCodeGenPageSize> code_gen;
    std::string preprocessor;  // " -D" switches as they stand
    std::string extras;        // " -via " and the file name, or empty

    CompilerSettings() { ClearPages(*this); }  // every position -1, texts empty
    bool operator==(const CompilerSettings& other) const { return SamePages(*this, other); }
    bool operator!=(const CompilerSettings& other) const { return !(*this == other); }

    // Each page with its slot and how a target's page lays over the tool-wide one.
    template <class Visit>
    static void ForEachPage(Visit&& visit) {
        visit(kCcTar, &CompilerSettings::target, Merge::kByPosition);
        visit(kCcAtpcs, &CompilerSettings::atpcs, Merge::kByPosition);
        visit(kCcWarnings, &CompilerSettings::warnings, Merge::kByPosition);
        visit(kCcErrors, &CompilerSettings::errors, Merge::kByPosition);
        visit(kCcDebugOpt, &CompilerSettings::debug_opt, Merge::kByPosition);
        visit(kCcCodeGen, &CompilerSettings::code_gen, Merge::kByPosition);
        visit(kCcPrePro, &CompilerSettings::preprocessor, Merge::kJoined);
        visit(kCcExtras, &CompilerSettings::extras, Merge::kJoined);
    }
};

// Reads a tool-wide option string by substring search. Every position gets a
// value except the processor (a name not in the table) and the optimisation
// level (no "-O0", "-O1" or "-O2"), which may stay -1.
CompilerSettings ReadCompilerSettings(const std::string& options, bool c_language,
                                      const PathConverter& convert = {});
PageStateSet ReadCompilerOptions(const std::string& options, bool c_language,
                                 const PathConverter& convert = {});

// The switches in their fixed order. Throws OptionError("GetTempCCppOption
// Error") when a position is -1 or the processor index names no processor.
std::string WriteCompilerOptions(const CompilerSettings& settings, bool c_language);

// Read, overlay, write.
std::string EffectiveCompilerOptions(const std::string& tool_wide, const PageStateSet& target,
                                     bool c_language, const PathConverter& convert = {});

}  // namespace ads::options
