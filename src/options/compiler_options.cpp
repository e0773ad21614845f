#include "options/compiler_options.h"

#include "options/option_error.h"
#include "options/option_tables.h"

namespace ads::options {

const char kCompilerAtpcsGroup[] = "ARM/Thumb Procedure Call Standard Option";
const SwitchRow kCompilerAtpcsRows[4] = {
    {"ARM/Thumb interworking", "/interwork"},
    {"Software stack check", "/swst"},
    {"Read-only position independent", "/ropi"},
    {"Read-write position independent", "/rwpi"},
};

namespace {
constexpr char kCAndCpp[] = "Warn for (C and C++)";
constexpr char kCOnly[] = "Warn for (C Only)";
}  // namespace

const LetterRow kWarningRows[16] = {
    {"No Warnings", "", 0, false},
    {"Warn for all conditions", "", 0, false},
    {"Assignment in condition", kCAndCpp, 'a', true},
    {"ANSI C extensions", kCAndCpp, 'b', true},
    {"Header file not gurded", kCAndCpp, 'g', false},
    {"Unused declaration", kCAndCpp, 'x', true},
    {"Non-ANSI header", kCAndCpp, 'p', false},
    {"Padding inserted in struct", kCAndCpp, 's', false},
    {"C to C++ incompatibility", kCAndCpp, 'u', false},
    {"Lower precision in wider context", kCAndCpp, 'l', false},
    {"Implicit narrowing", kCAndCpp, 'n', false},
    {"Double to float", kCAndCpp, 'k', true},
    {"Member and base \ninits out for order", kCOnly, 'q', true},
    {"Implicit constructor", kCOnly, 't', false},
    {"Implicit virtal", kCOnly, 'i', false},
    {"Unused this in \nnon-static member function", kCOnly, 'r', true},
};

const LetterRow kErrorRows[7] = {
    {"Implicit  Pointer casts", "Enable for (C and C++)", 'c', true},
    {"Other dubious casts", "Enable for (C and C++)", 'f', true},
    {"Linkage conflicts", "Enable for (C and C++)", 'l', true},
    {"Junk at end of #endif/#else/#undef", "Enable for (C and C++)", 'p', true},
    {"Zero-length arrays", "Enable for (C and C++)", 'z', true},
    {"Access control violatition", "Enble  for (C Only)", 'a', true},
    {"Implicit 'int'", "Enble  for (C Only)", 'i', true},
};

const char kCodeGenGroup[] = "Code Generation Options";
const SwitchRow kCodeGenRows[5] = {
    {"Enum container always int", " -fy"},
    {"Plain char is signed", " -zc"},
    {"Split load and store multiple", " -split_ldm"},
    {"Narrow bouble constants to float constants", " -auto_float_constants"},
    {"One ELF section per function", " -zo"},
};

namespace {

// Write orders, which are not the pages' orders.
constexpr int kAtpcsWriteOrder[] = {3, 0, 2, 1};      // /rwpi /interwork /ropi /swst
constexpr int kCodeGenWriteOrder[] = {2, 4, 1, 3, 0};  // -split_ldm -zo -zc -auto_float_constants -fy
constexpr char kSuppressedWarningOrder[] = "abkrqx";
constexpr char kEnabledWarningOrder[] = "gtlnpsiu";
constexpr char kErrorOrder[] = "acfilpz";

template <size_t N>
int PositionOfLetter(const LetterRow (&rows)[N], char letter) {
    for (size_t i = 0; i < N; ++i) {
        if (rows[i].letter == letter) return static_cast<int>(i);
    }
    return -1;
}

bool HasLetter(const std::optional<std::string>& list, char letter) {
    return list && list->find(letter) != std::string::npos;
}

int ReadLanguage(const std::string& s, bool c_language) {
    if (c_language) return Contains(s, "-ansi -strict") ? 1 : 0;
    if (Contains(s, "-ansi -strict") && Contains(s, "-W+p")) return 1;
    if (Contains(s, "-ansi")) return 0;
    if (Contains(s, "-cpp -strict")) return 3;
    if (Contains(s, "-embeddedcplusplus")) return 4;
    return 2;
}

// Every " -D" with its value, in the order found. A value opening with a
// double quote runs to the closing quote, so a quoted definition with a
// blank comes through whole.
std::string ReadDefines(const std::string& s) {
    std::string defines;
    size_t at = s.find(" -D");
    while (at != std::string::npos) {
        size_t end = at + 3;
        ReadValue(s, end);
        defines += s.substr(at, end - at);
        at = s.find(" -D", end);
    }
    return defines;
}

}  // namespace

CompilerSettings::CompilerSettings() {
    target.fill(kUnset);
    atpcs.fill(kUnset);
    warnings.fill(kUnset);
    errors.fill(kUnset);
    debug_opt.fill(kUnset);
    code_gen.fill(kUnset);
}

bool CompilerSettings::operator==(const CompilerSettings& o) const {
    return target == o.target && atpcs == o.atpcs && warnings == o.warnings &&
           errors == o.errors && debug_opt == o.debug_opt && code_gen == o.code_gen &&
           preprocessor == o.preprocessor && extras == o.extras;
}

// The reading order of every page is here, top to bottom.
CompilerSettings ReadCompilerSettings(const std::string& s, bool c_language,
                                      const PathConverter& convert) {
    CompilerSettings r;

    // Target and Source
    r.target[kTarByteOrder] = Contains(s, " -bi") ? 0 : 1;
    r.target[kTarProcessor] = FindProcessor(ValueAfter(s, " -cpu ").value_or(kDefaultProcessorName));
    r.target[kTarFpu] = ReadFpu(s);
    r.target[kTarLanguage] = ReadLanguage(s, c_language);

    // ATPCS: the boxes count only when " -apcs " is there at all.
    const bool apcs = Contains(s, " -apcs ");
    for (int i = 0; i < 4; ++i) r.atpcs[i] = apcs && Contains(s, kCompilerAtpcsRows[i].text) ? 1 : 0;

    // Warnings: both switches need their trailing blank, so at the very end
    // of the string they are not seen; the letters come from the first " -W"
    // wherever it stands, and where the "+" stands in the list is not looked at.
    r.warnings[kWarnNone] = Contains(s, " -W ") ? 1 : 0;
    r.warnings[kWarnAll] = Contains(s, " -fx ") ? 1 : 0;
    const std::optional<std::string> warning_letters = ValueAfter(s, " -W");
    for (int i = 2; i < 16; ++i) {
        const bool listed = HasLetter(warning_letters, kWarningRows[i].letter);
        r.warnings[i] = kWarningRows[i].on_by_default ? (listed ? 0 : 1) : (listed ? 1 : 0);
    }

    // Errors
    const std::optional<std::string> error_letters = ValueAfter(s, " -E");
    for (int i = 0; i < 7; ++i) r.errors[i] = HasLetter(error_letters, kErrorRows[i].letter) ? 0 : 1;

    // Debug/Opt
    r.debug_opt[kDbgLevel] = Contains(s, "-O0") ? 0 : Contains(s, "-O1") ? 1 : Contains(s, "-O2") ? 2 : kUnset;
    r.debug_opt[kDbgCriterion] = Contains(s, " -Otime") ? 1 : 0;
    r.debug_opt[kDbgTables] = Contains(s, " -g+") ? 1 : 0;
    r.debug_opt[kDbgPreproSymbols] = Contains(s, " -gtp") ? 0 : 1;
    r.debug_opt[kDbgInline] = Contains(s, " -Ono_inline") ? 1 : 0;

    // Preprocessor
    r.preprocessor = ReadDefines(s);

    // Code Gen
    for (int i = 0; i < 5; ++i) r.code_gen[i] = Contains(s, kCodeGenRows[i].text) ? 1 : 0;

    // Extras
    r.extras = ReadViaText(s, convert);
    return r;
}

PageStateSet ReadCompilerOptions(const std::string& options, bool c_language,
                                 const PathConverter& convert) {
    return ToPageStates(ReadCompilerSettings(options, c_language, convert));
}

PageStateSet ToPageStates(const CompilerSettings& c) {
    PageStateSet states;
    states[kCcTar] = FormatPageState(c.target);
    states[kCcAtpcs] = FormatPageState(c.atpcs);
    states[kCcWarnings] = FormatPageState(c.warnings);
    states[kCcErrors] = FormatPageState(c.errors);
    states[kCcDebugOpt] = FormatPageState(c.debug_opt);
    states[kCcCodeGen] = FormatPageState(c.code_gen);
    states[kCcPrePro] = c.preprocessor;
    states[kCcExtras] = c.extras;
    return states;
}

CompilerSettings CompilerSettingsFromStates(const PageStateSet& states) {
    CompilerSettings c;
    c.target = PageValues<4>(states[kCcTar]);
    c.atpcs = PageValues<4>(states[kCcAtpcs]);
    c.warnings = PageValues<16>(states[kCcWarnings]);
    c.errors = PageValues<7>(states[kCcErrors]);
    c.debug_opt = PageValues<5>(states[kCcDebugOpt]);
    c.code_gen = PageValues<5>(states[kCcCodeGen]);
    c.preprocessor = states[kCcPrePro];
    c.extras = states[kCcExtras];
    return c;
}

CompilerSettings OverlayCompilerSettings(const CompilerSettings& wide, const CompilerSettings& target) {
    CompilerSettings c;
    c.target = OverlayValues(wide.target, target.target);
    c.atpcs = OverlayValues(wide.atpcs, target.atpcs);
    c.warnings = OverlayValues(wide.warnings, target.warnings);
    c.errors = OverlayValues(wide.errors, target.errors);
    c.debug_opt = OverlayValues(wide.debug_opt, target.debug_opt);
    c.code_gen = OverlayValues(wide.code_gen, target.code_gen);
    c.preprocessor = wide.preprocessor + target.preprocessor;
    c.extras = wide.extras + target.extras;
    return c;
}

CompilerSettings OverlayCompilerStates(const PageStateSet& wide, const PageStateSet& target) {
    return OverlayCompilerSettings(CompilerSettingsFromStates(wide), CompilerSettingsFromStates(target));
}

namespace {

template <size_t N>
bool AnyUnset(const std::array<int, N>& values) {
    for (int v : values) {
        if (v == kUnset) return true;
    }
    return false;
}

}  // namespace

// A check box counts as set for any value but 0; radio groups and combos
// select by exact index, and an index that names no entry writes nothing,
// except the processor, which must name one.
std::string WriteCompilerOptions(const CompilerSettings& c, bool c_language) {
    const int processor = c.target[kTarProcessor];
    if (AnyUnset(c.target) || AnyUnset(c.atpcs) || AnyUnset(c.warnings) || AnyUnset(c.errors) ||
        AnyUnset(c.debug_opt) || AnyUnset(c.code_gen) || processor < 0 || processor >= kProcessorCount) {
        throw OptionError(kCompilerOptionError);
    }
    std::string out;

    // 1. source language
    const int language = c.target[kTarLanguage];
    if (c_language) {
        if (language == 1) out += kCLanguages[1].switch_text;
    } else if (language >= 0 && language < kCppLanguageCount) {
        out += kCppLanguages[language].switch_text;
    }
    // 2. floating point
    const int fpu = c.target[kTarFpu];
    if (fpu >= 0 && fpu < kFpuCount) out += kFpus[fpu].switch_text;
    // 3. byte order
    if (c.target[kTarByteOrder] == 0) out += " -bi";
    // 4. processor, the default never written
    if (processor != kDefaultProcessor) out += std::string(" -cpu ") + kProcessors[processor];
    // 5. ATPCS
    std::string apcs;
    for (int i : kAtpcsWriteOrder) {
        if (c.atpcs[i] != 0) apcs += kCompilerAtpcsRows[i].text;
    }
    if (!apcs.empty()) out += " -apcs " + apcs;
    // 6. warnings off, or all conditions
    if (c.warnings[kWarnNone] != 0) {
        out += " -W";
    } else if (c.warnings[kWarnAll] != 0) {
        out += " -fx";
    }
    // 7. the warnings that differ from their defaults
    std::string suppressed, enabled;
    for (const char* l = kSuppressedWarningOrder; *l; ++l) {
        if (c.warnings[PositionOfLetter(kWarningRows, *l)] == 0) suppressed += *l;
    }
    for (const char* l = kEnabledWarningOrder; *l; ++l) {
        if (c.warnings[PositionOfLetter(kWarningRows, *l)] != 0) enabled += *l;
    }
    if (!suppressed.empty() || !enabled.empty()) {
        out += " -W" + suppressed;
        if (!enabled.empty()) out += "+" + enabled;
    }
    // 8. errors downgraded
    std::string downgraded;
    for (const char* l = kErrorOrder; *l; ++l) {
        if (c.errors[PositionOfLetter(kErrorRows, *l)] == 0) downgraded += *l;
    }
    if (!downgraded.empty()) out += " -E" + downgraded;
    // 9.-13. optimisation and debug
    const int level = c.debug_opt[kDbgLevel];
    if (level >= 0 && level <= 2) out += " -O" + std::to_string(level);
    if (c.debug_opt[kDbgCriterion] == 1) out += " -Otime";
    if (c.debug_opt[kDbgInline] != 0) out += " -Ono_inline";
    if (c.debug_opt[kDbgPreproSymbols] == 0) out += " -gtp";
    if (c.debug_opt[kDbgTables] != 0) out += " -g+";
    // 14. defines
    out += c.preprocessor;
    // 15. code generation
    for (int i : kCodeGenWriteOrder) {
        if (c.code_gen[i] != 0) out += kCodeGenRows[i].text;
    }
    // 16. via file
    out += c.extras;
    return out;
}

std::string EffectiveCompilerOptions(const std::string& tool_wide, const PageStateSet& target,
                                     bool c_language, const PathConverter& convert) {
    return WriteCompilerOptions(OverlayCompilerSettings(ReadCompilerSettings(tool_wide, c_language, convert),
                                                        CompilerSettingsFromStates(target)),
                                c_language);
}

}  // namespace ads::options
