// The compiler and assembler records as tool-wide option strings. Each
// record is first turned into the pages' positions and texts, then written
// by the option codec itself, so what the import stores is exactly what the
// pages would have stored.
#include "import/panel_translators.h"

#include "config/defaults.h"
#include "import/panel_readers.h"
#include "import/panel_values.h"
#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/option_error.h"
#include "options/option_tables.h"
#include "options/option_text.h"
#include "options/pages.h"
#include "platform/platform.h"
#include "platform/text.h"

namespace ads::import {

namespace opt = ads::options;

// --- The carry-over table of the compilers' '=' switches -------------------

const CarryOver kCompilerEqualsSwitches[] = {
    {cc_row::kByteSex, ".bytesex", "-bi (big endian)", ""},
    {cc_row::kDebugTables, "-g=+", "-g+", ""},
    {cc_row::kOptLevel, "-O.level=", "-O0, -O1, -O2", ""},
    {cc_row::kSignedChar, ".schar", "-zc", ""},
    {cc_row::kAreaPerFunction, ".areaperfn", "-zo", ""},
    {cc_row::kSplitLdm, "-split_ldm", "-split_ldm", ""},
    {cc_row::kAutoFloat, "-auto_float_constants", "-auto_float_constants", ""},
    {cc_row::kNoWarnings, ".nowarn", "-W", ""},
    {cc_row::kInline, "-O.inline", "-Ono_inline (when off)", ""},
    {cc_row::kNoInline, "-Ono_inline", "-Ono_inline", ""},
    {cc_row::kVia, "-via", "-via", ""},
    {cc_row::kOptGoal, "-O.goal", "-Otime (-Ospace is the default)", ""},
    {cc_row::kNoPreproSymbols, ".gtp", "-gtp", ""},
    {cc_row::kEnumInt, ".enumint", "-fy", ""},
    {cc_row::kLanguage, ".lang", "-ansi, -strict, -cpp, -embeddedcplusplus", ""},
    {cc_row::kWarningLetters, "-W=", "-W letters", ""},
    {cc_row::kErrorLetters, "-E=", "-E letters", ""},
    {cc_row::kAllWarnings, ".fx", "",
     "-fx is not an ADS 1.2 compiler switch; warnings are chosen with the -W letters"},
    {cc_row::kPrefixFile, ".prefix", "", "armcc takes no prefix file; #include it from the sources"},
    {cc_row::kAssemblyOut, ".asmout", "",
     "-S does not make an object, and the build needs one for every source"},
};
const int kCompilerEqualsSwitchCount = sizeof kCompilerEqualsSwitches / sizeof kCompilerEqualsSwitches[0];

namespace {

// The switch rows that set one position of a compiler page.
enum class CcPage { kWarnings, kDebugOpt, kCodeGen };
struct CompilerFlagRow {
    int row;
    const char* on_switch;
    CcPage page;
    int position;
    int when_on;
    int when_off;  // also when the row is empty
};
const CompilerFlagRow kCompilerFlags[] = {
    {cc_row::kSignedChar, "-zc", CcPage::kCodeGen, 1, 1, 0},
    {cc_row::kAreaPerFunction, "-zo", CcPage::kCodeGen, 4, 1, 0},
    {cc_row::kSplitLdm, "-split_ldm", CcPage::kCodeGen, 2, 1, 0},
    {cc_row::kAutoFloat, "-auto_float_constants", CcPage::kCodeGen, 3, 1, 0},
    {cc_row::kEnumInt, "-fy", CcPage::kCodeGen, 0, 1, 0},
    {cc_row::kNoWarnings, "-W", CcPage::kWarnings, opt::kWarnNone, 1, 0},
    {cc_row::kNoInline, "-Ono_inline", CcPage::kDebugOpt, opt::kDbgInline, 1, 0},
    {cc_row::kNoPreproSymbols, "-gtp", CcPage::kDebugOpt, opt::kDbgPreproSymbols, 0, 1},
};

int& CompilerPosition(opt::CompilerSettings& s, CcPage page, int position) {
    switch (page) {
        case CcPage::kWarnings: return s.warnings[static_cast<size_t>(position)];
        case CcPage::kDebugOpt: return s.debug_opt[static_cast<size_t>(position)];
        default: return s.code_gen[static_cast<size_t>(position)];
    }
}

const char* RowName(PanelKind kind, int row) { return SpecOf(kind).rows[row].name; }

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

int ReadProcessor(const std::string& row, const NoteSink& notes) {
    const std::string name = SwitchValue(row, "-cpu");
    const int index = opt::FindProcessor(name);
    if (index >= 0) return index;
    notes.Add("processor " + Quoted(name) + " is not one the option pages offer; " +
              opt::kDefaultProcessorName + " is used");
    return opt::kDefaultProcessor;
}

int ReadFpuRow(const std::string& row, const NoteSink& notes) {
    if (row.empty()) return opt::kFpuSoftDefault;
    const std::string name = SwitchValue(row, "-fpu");
    if (name == "SoftVFP") return opt::kFpuSoftDefault;
    if (name == "SoftVFP+VFPv2") {
        // The pages read " -fpu SoftVFP+VFPv2" back as its prefix
        // " -fpu SoftVFP+VFP", so that is what they can keep.
        notes.Add("FPU SoftVFP+VFPv2 is taken over as SoftVFP+VFP, the nearest the option pages keep");
        return 5;
    }
    for (int i = 0; i < opt::kFpuCount; ++i) {
        if (*opt::kFpus[i].switch_text != '\0' && std::string(" -fpu ") + name == opt::kFpus[i].switch_text) return i;
    }
    notes.Add("FPU " + Quoted(name) + " is not known; the default (SoftVFP) is used");
    return opt::kFpuSoftDefault;
}

// 0 big endian, 1 little endian (the pages' byte order positions).
int ReadByteOrder(const std::string& value, const NoteSink& notes) {
    const std::string v = Trimmed(value);
    if (OneOf(v, {"big", "-bigend", "-bi", "bigend"})) return 0;
    if (v.empty() || OneOf(v, {"little", "-littleend", "-li", "littleend"})) return 1;
    notes.Add("byte order " + Quoted(v) + " is not known; little endian is used");
    return 1;
}

// An ATPCS qualifier row: 1 for `on`, 0 for its "no" form or nothing.
int ReadQualifier(const std::string& value, const char* on, const char* short_on, const char* off,
                  const char* short_off, const NoteSink& notes) {
    const std::string v = Trimmed(value);
    if (v == on || v == short_on) return 1;
    if (v == off || v == short_off) return 0;
    switch (ReadFlag(v)) {
        case Flag::kOn: return 1;
        case Flag::kUnset:
        case Flag::kOff: return 0;
        default: break;
    }
    notes.Add("ATPCS qualifier " + Quoted(v) + " is not known; left out");
    return 0;
}

int ReadLanguage(const std::string& value, bool c_language, const NoteSink& notes) {
    const std::string v = Trimmed(value);
    if (c_language) {
        if (v.empty() || v == "-ansi") return 0;
        if (OneOf(v, {"-ansi -strict", "-strict"})) return 1;
    } else {
        if (v.empty() || v == "-cpp") return 2;
        if (v == "-ansi") return 0;
        if (v == "-ansi -strict") return 1;
        if (OneOf(v, {"-cpp -strict", "-strict"})) return 3;
        if (v == "-embeddedcplusplus") return 4;
    }
    notes.Add("source language " + Quoted(v) + " is not one this compiler's page offers; the default is used");
    return c_language ? 0 : 2;
}

// "-W=ab+gl": letters before the '+' turn warnings off, letters after it on.
// The position of the check box that stands for a letter of a " -W" or
// " -E" list; -1 for a letter the page does not know.
template <size_t N>
int LetterPosition(const opt::OptionRow (&rows)[N], char letter) {
    for (const opt::OptionRow& row : rows) {
        if (row.letter != 0 && row.letter == letter) return row.position;
    }
    return -1;
}

void ReadWarningLetters(const std::string& value, opt::CompilerSettings& s, const NoteSink& notes) {
    std::string letters = Trimmed(value);
    if (letters.compare(0, 2, "-W") == 0) letters.erase(0, 2);
    bool enabling = false;
    for (char c : letters) {
        if (c == '+') {
            enabling = true;
            continue;
        }
        const int position = LetterPosition(opt::kWarningRows, c);
        if (position < 0) {
            notes.Add(std::string("warning letter '") + c + "' is not known; left out");
            continue;
        }
        s.warnings[static_cast<size_t>(position)] = enabling ? 1 : 0;
    }
}

void ReadErrorLetters(const std::string& value, opt::CompilerSettings& s, const NoteSink& notes) {
    std::string letters = Trimmed(value);
    if (letters.compare(0, 2, "-E") == 0) letters.erase(0, 2);
    for (char c : letters) {
        const int position = LetterPosition(opt::kErrorRows, c);
        if (position < 0) {
            notes.Add(std::string("error letter '") + c + "' is not known; left out");
            continue;
        }
        s.errors[static_cast<size_t>(position)] = 0;  // the error is downgraded
    }
}

int ReadOptLevel(const std::string& value, const NoteSink& notes) {
    const std::string v = Trimmed(value);
    if (OneOf(v, {"0", "-O0"})) return 0;
    if (OneOf(v, {"1", "-O1"})) return 1;
    // Without a level the compilers optimise at -O2.
    if (v.empty() || OneOf(v, {"2", "-O2"})) return 2;
    notes.Add("optimisation level " + Quoted(v) + " is not known; -O2 is used");
    return 2;
}

std::string ReadVia(const std::string& value, const std::string& folder, const NoteSink& notes) {
    const std::string file = InputFile(value, "via file", folder, notes);
    return file.empty() ? std::string() : opt::ViaText(file);
}

// The codec writes the positions; the string is then read and written again
// until it no longer changes, which is the form the pages keep. Texts the
// pages read switches out of (a via file named " -D..." or " -PD ...") may
// never settle: then the via file goes, and after it the definitions.
template <typename Settings, typename Read, typename Write>
std::string Canonical(Settings s, std::string Settings::*via, std::string Settings::*definitions, Read read,
                      Write write, const NoteSink& notes) {
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (attempt == 1) {
            notes.Add("'" + Trimmed(s.*via) + "' is left out: the option pages would read switches out of its name");
            (s.*via).clear();
        }
        if (attempt == 2) {
            notes.Add("'" + Trimmed(s.*definitions) + "' is left out: the option pages would read it differently");
            (s.*definitions).clear();
        }
        std::string out = write(s);
        for (int round = 0; round < 4; ++round) {
            std::string again = write(read(out));
            if (again == out) break;
            out = std::move(again);
        }
        if (write(read(out)) != out) continue;
        if (read(out) != s) notes.Add("the option pages read some settings differently; they keep" + out);
        return out;
    }
    throw opt::OptionError("unsettled");
}

std::string CanonicalCompiler(const opt::CompilerSettings& s, bool c_language, const NoteSink& notes) {
    return Canonical(
        s, &opt::CompilerSettings::extras, &opt::CompilerSettings::preprocessor,
        [c_language](const std::string& text) { return opt::ReadCompilerSettings(text, c_language); },
        [c_language](const opt::CompilerSettings& settings) { return opt::WriteCompilerOptions(settings, c_language); },
        notes);
}

std::string CanonicalAssembler(const opt::AssemblerSettings& a, const NoteSink& notes) {
    return Canonical(
        a, &opt::AssemblerSettings::extras, &opt::AssemblerSettings::predefines,
        [](const std::string& text) { return opt::ReadAssemblerSettings(text); },
        [](const opt::AssemblerSettings& settings) { return opt::WriteAssemblerOptions(settings); }, notes);
}

}  // namespace

std::string InputFile(const std::string& row, const char* what, const std::string& folder, const NoteSink& notes) {
    const std::string named = opt::Unquote(Trimmed(row));
    if (named.empty() || folder.empty() || platform::IsAbsolutePath(named) || named[0] == '\\' || named[0] == '/' ||
        named[0] == '{') {
        return named;
    }
    const std::string file = platform::JoinPath(folder, named);
    notes.Add(std::string(what) + " " + Quoted(named) + " is taken as " + Quoted(file) + ", from the export's folder");
    return file;
}

std::string TranslateCompiler(const PanelRecord& r, bool c_language, const std::string& folder,
                              const NoteSink& notes) {
    const auto row = [&r](int i) -> const std::string& { return r.rows[static_cast<size_t>(i)]; };
    const PanelKind kind = c_language ? kPanelArmC : kPanelArmCpp;
    opt::CompilerSettings s;

    // Target and Source
    s.target[opt::kTarProcessor] = ReadProcessor(row(cc_row::kCpu), notes);
    s.target[opt::kTarFpu] = ReadFpuRow(row(cc_row::kFpu), notes);
    s.target[opt::kTarByteOrder] = ReadByteOrder(row(cc_row::kByteSex), notes);
    s.target[opt::kTarLanguage] = ReadLanguage(row(cc_row::kLanguage), c_language, notes);

    // ATPCS, in the page's order: interwork, swst, ropi, rwpi
    s.atpcs[opt::kAtpcsInterwork] = ReadQualifier(row(cc_row::kInterwork), "/interwork", "/inter", "/nointerwork", "/nointer", notes);
    if (Trimmed(row(cc_row::kSwst)) == "/swstna") {
        notes.Add("ATPCS qualifier /swstna is an assembler one; the compiler checks no stack");
        s.atpcs[opt::kAtpcsSwst] = 0;
    } else {
        s.atpcs[opt::kAtpcsSwst] = ReadQualifier(row(cc_row::kSwst), "/swst", "/swst", "/noswst", "/noswst", notes);
    }
    s.atpcs[opt::kAtpcsRopi] = ReadQualifier(row(cc_row::kRopi), "/ropi", "/ropi", "/noropi", "/noropi", notes);
    s.atpcs[opt::kAtpcsRwpi] = ReadQualifier(row(cc_row::kRwpi), "/rwpi", "/rwpi", "/norwpi", "/norwpi", notes);

    // Warnings and errors start from the pages' defaults.
    for (const opt::OptionRow& r : opt::kWarningRows) s.warnings[static_cast<size_t>(r.position)] = r.on_by_default ? 1 : 0;
    s.errors.fill(1);
    s.debug_opt = {0, 1, 0, 0, 0};
    s.code_gen.fill(0);

    for (const CompilerFlagRow& f : kCompilerFlags) {
        const Flag flag = ReadFlag(row(f.row), f.on_switch);
        if (flag == Flag::kUnknown) {
            notes.Add(std::string(RowName(kind, f.row)) + " " + Quoted(row(f.row)) + " is neither on nor off; left off");
        }
        CompilerPosition(s, f.page, f.position) = flag == Flag::kOn ? f.when_on : f.when_off;
    }
    if (s.warnings[opt::kWarnNone] == 1) {
        // With every warning off the letters are not written at all.
        if (!Trimmed(row(cc_row::kWarningLetters)).empty()) notes.Add("warning letters are left out: warnings are off");
    } else {
        ReadWarningLetters(row(cc_row::kWarningLetters), s, notes);
    }
    // Strict ANSI C on a C++ compiler writes " -W+p", which turns on the
    // non-ANSI header warning as the page reads it.
    if (!c_language && s.target[opt::kTarLanguage] == 1 && s.warnings[opt::kWarnNone] == 0) {
        s.warnings[static_cast<size_t>(LetterPosition(opt::kWarningRows, 'p'))] = 1;
    }
    ReadErrorLetters(row(cc_row::kErrorLetters), s, notes);

    // Debug/Opt. The debug row defaults to "1" when the panel lacks it, so
    // such a panel compiles with debug tables.
    const std::string tables = Trimmed(row(cc_row::kDebugTables));
    s.debug_opt[opt::kDbgTables] = tables == "1" || (!tables.empty() && tables[0] == '+') ? 1 : 0;
    s.debug_opt[opt::kDbgLevel] = ReadOptLevel(row(cc_row::kOptLevel), notes);
    const std::string goal = Trimmed(row(cc_row::kOptGoal));
    if (OneOf(goal, {"time", "-Otime"})) {
        s.debug_opt[opt::kDbgCriterion] = 1;
    } else if (!goal.empty() && !OneOf(goal, {"space", "-Ospace"})) {
        notes.Add("optimisation goal " + Quoted(goal) + " is not known; -Ospace is used");
    }
    if (ReadFlag(row(cc_row::kInline), "", "-Ono_inline") == Flag::kOff) s.debug_opt[opt::kDbgInline] = 1;

    // Preprocessor
    std::vector<std::string> defines;
    for (size_t i = 0; i < r.definitions.size(); ++i) {
        const std::string& copy = r.definitions[i];
        if (i < r.definition_lines.size() && r.definition_lines[i] != copy) {
            notes.Add("definition " + Quoted(r.definition_lines[i]) + " is cut at its first '.' or '?': " +
                      Quoted(copy) + " is taken over");
        }
        const std::string define = copy.substr(2);
        if (define.empty()) {
            notes.Add("a definition without a name is left out");
        } else {
            defines.push_back(define);
        }
    }
    s.preprocessor = opt::DefinesText(defines);

    // Extras
    s.extras = ReadVia(row(cc_row::kVia), folder, notes);

    for (int i = 0; i < kCompilerEqualsSwitchCount; ++i) {
        const CarryOver& c = kCompilerEqualsSwitches[i];
        if (*c.not_carried == '\0') continue;
        const Flag flag = ReadFlag(row(c.row));
        if (flag != Flag::kUnset && flag != Flag::kOff) {
            notes.Add(std::string(c.panel_switch) + " " + Quoted(row(c.row)) + " is not taken over: " + c.not_carried);
        }
    }

    try {
        return CanonicalCompiler(s, c_language, notes);
    } catch (const opt::OptionError&) {
        // Every position is set above; kept as a guard for the pages' rules.
        notes.Add("the options could not be written; the defaults are used");
        return config::kDefaultCompilerParams;
    }
}

namespace {

// The switch rows of the assembler pages.
enum class AsmPage { kOption, kListing };
struct AssemblerFlagRow {
    int row;
    const char* on_switch;
    const char* off_switch;
    AsmPage page;
    int position;
    int when_on;
    int when_off;
    int when_unset;
};
const AssemblerFlagRow kAssemblerFlags[] = {
    {asm_row::kDebug, "-g", "", AsmPage::kOption, 2, 1, 0, 0},
    {asm_row::kSplitLdm, "-split_ldm", "", AsmPage::kOption, 5, 1, 0, 0},
    {asm_row::kKeep, "-keep", "", AsmPage::kOption, 3, 1, 0, 0},
    {asm_row::kWarn, "", "-nowarn", AsmPage::kOption, 1, 0, 1, 0},
    {asm_row::kCheckRegisters, "-checkreglist", "", AsmPage::kOption, 0, 1, 0, 0},
    {asm_row::kEscapes, "", "-noesc", AsmPage::kOption, 4, 0, 1, 0},
    {asm_row::kTerse, "-terse", "-noterse", AsmPage::kListing, opt::kAsmTerse, 1, 0, 1},
    {asm_row::kXref, "-xref", "", AsmPage::kListing, opt::kAsmXref, 1, 0, 0},
};

}  // namespace

std::string TranslateAssembler(const PanelRecord& r, const std::string& folder, const NoteSink& notes) {
    const auto row = [&r](int i) -> const std::string& { return r.rows[static_cast<size_t>(i)]; };
    opt::AssemblerSettings a;

    // Target
    a.target[opt::kAsmTarFpu] = ReadFpuRow(row(asm_row::kFpu), notes);
    a.target[opt::kAsmTarProcessor] = ReadProcessor(row(asm_row::kCpu), notes);
    a.target[opt::kAsmTarByteOrder] = ReadByteOrder(row(asm_row::kByteSex), notes);
    const std::string size = Trimmed(row(asm_row::kCodeSize));
    a.target[opt::kAsmTarInitialState] = OneOf(size, {"16", "-16", "thumb"}) ? 1 : 0;
    if (!size.empty() && !OneOf(size, {"16", "-16", "thumb", "32", "-32", "arm"})) {
        notes.Add("code size " + Quoted(size) + " is not known; ARM state is used");
    }

    // ATPCS
    const std::string swst = Trimmed(row(asm_row::kSwst));
    a.atpcs[opt::kAsmSoftwareStack] = swst == "/swstna" ? 2 : ReadQualifier(swst, "/swst", "/swst", "/noswst", "/noswst", notes) == 1 ? 0 : 1;
    a.atpcs[opt::kAsmCallingStandard] = 0;
    a.atpcs[opt::kAsmRegNames] = 0;
    a.atpcs[opt::kAsmInterwork] = ReadQualifier(row(asm_row::kInterwork), "/interwork", "/inter", "/nointerwork", "/nointer", notes);
    a.atpcs[opt::kAsmRopi] = ReadQualifier(row(asm_row::kRopi), "/ropi", "/ropi", "/noropi", "/noropi", notes);
    a.atpcs[opt::kAsmRwpi] = ReadQualifier(row(asm_row::kRwpi), "/rwpi", "/rwpi", "/norwpi", "/norwpi", notes);

    // Option and Listing Control
    a.option.fill(0);
    a.listing = {0, 1, 0, 0};
    for (const AssemblerFlagRow& f : kAssemblerFlags) {
        const Flag flag = ReadFlag(row(f.row), f.on_switch, f.off_switch);
        if (flag == Flag::kUnknown) {
            notes.Add(std::string(RowName(kPanelAssembler, f.row)) + " " + Quoted(row(f.row)) +
                      " is neither on nor off; the default is used");
        }
        const int value = flag == Flag::kOn ? f.when_on : flag == Flag::kOff ? f.when_off : f.when_unset;
        if (f.page == AsmPage::kOption) {
            a.option[static_cast<size_t>(f.position)] = value;
        } else {
            a.listing[static_cast<size_t>(f.position)] = value;
        }
    }
    const std::string list = Trimmed(row(asm_row::kList));
    const Flag list_flag = ReadFlag(list, "-list");
    if (list_flag == Flag::kUnknown) {
        // A file name: the listing is on; the pages keep no listing file.
        notes.Add("listing file " + Quoted(list) + " is not taken over; the listing goes beside the object");
    }
    a.listing[opt::kAsmListOn] = list_flag == Flag::kOn || list_flag == Flag::kUnknown ? 1 : 0;
    a.width = opt::kDefaultListingWidth;
    a.length = opt::kDefaultListingLength;

    // Predefines: "-PD" and the entry, with or without quotes.
    std::vector<std::string> entries;
    for (const std::string& copy : r.definitions) {
        const std::string entry = opt::Unquote(Trimmed(copy.substr(3)));
        if (entry.empty()) {
            notes.Add("a predefine without text is left out");
        } else {
            entries.push_back(entry);
        }
    }
    a.predefines = opt::PredefinesText(entries);

    a.extras = ReadVia(row(asm_row::kVia), folder, notes);

    try {
        return CanonicalAssembler(a, notes);
    } catch (const opt::OptionError&) {
        notes.Add("the options could not be written; the defaults are used");
        return config::kDefaultAsmParams;
    }
}

}  // namespace ads::import
