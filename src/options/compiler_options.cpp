#include "options/compiler_options.h"

#include "options/option_error.h"
#include "options/option_tables.h"

namespace ads::options {

namespace {

// The orders in which switches are written, where they are not the pages'.
constexpr int kTargetWriteOrder[] = {kTarLanguage, kTarFpu, kTarByteOrder};
constexpr int kAtpcsWriteOrder[] = {kAtpcsRwpi, kAtpcsInterwork, kAtpcsRopi, kAtpcsSwst};
constexpr int kDebugWriteOrder[] = {kDbgLevel, kDbgCriterion, kDbgInline, kDbgPreproSymbols, kDbgTables};
constexpr int kCodeGenWriteOrder[] = {kGenSplitLdm, kGenSections, kGenSignedChar, kGenFloatConstants, kGenEnumInt};
constexpr char kSuppressedWarningOrder[] = "abkrqx";
constexpr char kEnabledWarningOrder[] = "gtlnpsiu";
constexpr char kErrorOrder[] = "acfilpz";

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

// The plain switches come from the tables; what follows them is what the
// option rules make irregular.
CompilerSettings ReadCompilerSettings(const std::string& s, bool c_language, const PathConverter& convert) {
    CompilerSettings r;
    ReadPlainRows(PageOf(CompilerPage::kTargetAndSource), s, r.target);
    r.target[kTarProcessor] = FindProcessor(ValueAfter(s, " -cpu ").value_or(kDefaultProcessorName));
    r.target[kTarFpu] = ReadFpu(s);
    r.target[kTarLanguage] = ReadLanguage(s, c_language);

    // ATPCS: the boxes count only when " -apcs " is there at all.
    ReadPlainRows(PageOf(CompilerPage::kAtpcs), s, r.atpcs);
    if (!Contains(s, " -apcs ")) r.atpcs.fill(0);

    // Warnings: both switches need their trailing blank, so at the very end
    // of the string they are not seen; the letters come from the first " -W"
    // wherever it stands, and where the "+" stands in the list is not looked at.
    r.warnings[kWarnNone] = Contains(s, " -W ") ? 1 : 0;
    r.warnings[kWarnAll] = Contains(s, " -fx ") ? 1 : 0;
    ReadLetterRows(PageOf(CompilerPage::kWarnings), ValueAfter(s, " -W"), r.warnings.data());
    ReadLetterRows(PageOf(CompilerPage::kErrors), ValueAfter(s, " -E"), r.errors.data());

    // Debug/Opt: the level is found without its blank, the lowest first, and
    // stays -1 without one.
    ReadPlainRows(PageOf(CompilerPage::kDebugOpt), s, r.debug_opt);
    r.debug_opt[kDbgLevel] = Contains(s, "-O0") ? 0 : Contains(s, "-O1") ? 1 : Contains(s, "-O2") ? 2 : kUnset;

    r.preprocessor = ReadDefines(s);
    ReadPlainRows(PageOf(CompilerPage::kCodeGen), s, r.code_gen);
    r.extras = ReadViaText(s, convert);
    return r;
}

PageStateSet ReadCompilerOptions(const std::string& options, bool c_language, const PathConverter& convert) {
    return ToPageStates(ReadCompilerSettings(options, c_language, convert));
}

// A check box counts as set for any value but 0; radio groups and combos
// select by exact index, and an index that names no entry writes nothing,
// except the processor, which must name one.
std::string WriteCompilerOptions(const CompilerSettings& c, bool c_language) {
    const int processor = c.target[kTarProcessor];
    if (AnyUnset(c) || processor < 0 || processor >= kProcessorCount) throw OptionError(kCompilerOptionError);
    std::string out;

    AppendSwitches(out, PageOf(CompilerPage::kTargetAndSource), c.target, kTargetWriteOrder, c_language);
    if (processor != kDefaultProcessor) out += std::string(" -cpu ") + kProcessors[processor];

    std::string apcs;
    AppendSwitches(apcs, PageOf(CompilerPage::kAtpcs), c.atpcs, kAtpcsWriteOrder);
    if (!apcs.empty()) out += " -apcs " + apcs;

    // " -W" (no warnings) hides " -fx"; then the warnings that differ from
    // their defaults, suppressed ones first and "+" before the enabled ones.
    if (c.warnings[kWarnNone] != 0) {
        out += kWarningRows[kWarnNone].set_switch;
    } else if (c.warnings[kWarnAll] != 0) {
        out += kWarningRows[kWarnAll].set_switch;
    }
    const PageTable& warnings = PageOf(CompilerPage::kWarnings);
    const std::string suppressed = ChangedLetters(warnings, c.warnings.data(), kSuppressedWarningOrder);
    const std::string enabled = ChangedLetters(warnings, c.warnings.data(), kEnabledWarningOrder);
    if (!suppressed.empty() || !enabled.empty()) {
        out += " -W" + suppressed;
        if (!enabled.empty()) out += "+" + enabled;
    }
    const std::string downgraded = ChangedLetters(PageOf(CompilerPage::kErrors), c.errors.data(), kErrorOrder);
    if (!downgraded.empty()) out += " -E" + downgraded;

    AppendSwitches(out, PageOf(CompilerPage::kDebugOpt), c.debug_opt, kDebugWriteOrder);
    out += c.preprocessor;
    AppendSwitches(out, PageOf(CompilerPage::kCodeGen), c.code_gen, kCodeGenWriteOrder);
    out += c.extras;
    return out;
}

std::string EffectiveCompilerOptions(const std::string& tool_wide, const PageStateSet& target, bool c_language,
                                     const PathConverter& convert) {
    return WriteCompilerOptions(OverlayPages(ReadCompilerSettings(tool_wide, c_language, convert),
                                             FromPageStates<CompilerSettings>(target)),
                                c_language);
}

}  // namespace ads::options
