#include "build/output_parser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace ads::build {
namespace {

std::string Repeat(const std::string& piece, size_t times) {
    std::string out;
    out.reserve(piece.size() * times);
    for (size_t i = 0; i < times; ++i) out += piece;
    return out;
}

// Real tool output shapes, the way the ADS 1.2 tools print them.
const char kRingWarning[] =
    "\"..\\..\\services\\avs\\ring.c\", line 272: Warning: C2207W: inventing 'extern int "
    "HWIO_RINGER_MN_A_MDIV_OUT();'";
const char kRingWarningPane[] =
    "..\\..\\services\\avs\\ring.c(272): Warning: C2207W: inventing 'extern int "
    "HWIO_RINGER_MN_A_MDIV_OUT();'";
const char kEfuseError[] =
    "\"..\\..\\drivers\\efuse\\efuse.c\", line 121: Error: C2456E: undeclared name, inventing "
    "'extern int HWIO_EF_CONFIG_MSB_JTAG_EN_N_BMSK'";
const char kEfuseErrorPane[] =
    "..\\..\\drivers\\efuse\\efuse.c(121): Error: C2456E: undeclared name, inventing "
    "'extern int HWIO_EF_CONFIG_MSB_JTAG_EN_N_BMSK'";
const char kEfuseSerious[] =
    "\"..\\..\\drivers\\efuse\\efuse.c\", line 121: Serious error: C2432E: non-constant initialiser";
const char kEfuseSeriousPane[] = "..\\..\\drivers\\efuse\\efuse.c(121): Serious error: C2432E: non-constant initialiser";
const char kUndefinedSymbol[] = "Error: L6218E: Undefined symbol HWIO_MPM_PMIC_SBI_SEL_OUTM (referred from pm.o).";

struct OutputRow {
    const char* name;
    bool link_step;
    std::string text;
    std::string pane;
    int errors;
    int warnings;
};

std::string Lines(std::initializer_list<std::string> lines, const char* end = "\n") {
    std::string out;
    for (const std::string& line : lines) out += line + end;
    return out;
}

const std::vector<OutputRow>& OutputRows() {
    using S = std::string;
    static const std::vector<OutputRow> rows = {
        {"CompilerWarningWithSummary", false,
         Lines({kRingWarning, "..\\..\\services\\avs\\ring.c: 1 warning, 0 errors, 0 serious errors"}),
         Lines({kRingWarningPane}), 0, 1},
        {"CompilerWarningWithWindowsLineEnds", false,
         Lines({kRingWarning, "..\\..\\services\\avs\\ring.c: 1 warning, 0 errors, 0 serious errors"}, "\r\n"),
         Lines({kRingWarningPane}, "\r\n"), 0, 1},
        {"CompilerErrorsAndSeriousErrors", false,
         Lines({kEfuseError, kEfuseError, kEfuseSerious, "..\\..\\drivers\\efuse\\efuse.c: 0 warnings, 2 errors, 1 serious error"}),
         Lines({kEfuseErrorPane, kEfuseErrorPane, kEfuseSeriousPane}), 3, 0},
        {"WarningsAndErrorsMixed", false,
         Lines({kRingWarning, kEfuseError, kRingWarning, "ring.c: 2 warnings, 1 error, 0 serious errors"}, "\r\n"),
         Lines({kRingWarningPane, kEfuseErrorPane, kRingWarningPane}, "\r\n"), 1, 2},
        {"FatalErrorThenCompilationAbandoned", false,
         Lines({"\"main.c\", line 3: Fatal error: C3052U: couldn't write file 'main.o'", "Compilation abandoned."}),
         Lines({"main.c(3): Fatal error: C3052U: couldn't write file 'main.o'"}), 1, 0},
        {"AssemblerError", false,
         Lines({"\"start.s\", line 10: Error: A1163E: Unknown opcode FOO , expecting opcode or Macro"}),
         Lines({"start.s(10): Error: A1163E: Unknown opcode FOO , expecting opcode or Macro"}), 1, 0},
        {"FileNameWithSpacesAndLongLineNumber", false,
         Lines({"\"C:\\My Project\\src\\a b.c\", line 1234567: Warning: C2871W: static 'x' declared but not used"}),
         Lines({"C:\\My Project\\src\\a b.c(1234567): Warning: C2871W: static 'x' declared but not used"}), 0, 1},
        {"DiagnosticWithoutSeverityIsShownNotCounted", false,
         Lines({"\"a.c\", line 5: C2999: something to note"}), Lines({"a.c(5): C2999: something to note"}), 0, 0},
        {"LowerCaseSeverityIsNotCounted", false, Lines({"\"a.c\", line 5: warning: odd"}),
         Lines({"a.c(5): warning: odd"}), 0, 0},
        {"WarningInAFileNamedErrorCountsAsError", false,
         Lines({"\"ErrorHandler.c\", line 9: Warning: C2207W: inventing 'extern int f();'"}),
         Lines({"ErrorHandler.c(9): Warning: C2207W: inventing 'extern int f();'"}), 1, 0},
        {"EmptyMessageIsShown", false, Lines({"\"a.c\", line 5:"}), Lines({"a.c(5):"}), 0, 0},
        {"LastDiagnosticWithoutLineEndIsDropped", false,
         Lines({kRingWarning}) + kEfuseError, Lines({kRingWarningPane}), 0, 1},
        {"BannerAloneGivesEmptyPane", false, Lines({"ARM C Compiler, ADS1.2 [Build 848]"}), "", 0, 0},
        {"SummaryAloneGivesEmptyPane", false, Lines({"a.c: 0 warnings, 1 error, 0 serious errors"}), "", 0, 0},
        {"DependencyLinesGiveEmptyPane", false, Lines({"main.o: main.c", "main.o: .\\inc\\board.h"}), "", 0, 0},
        // Each search for the next diagnostic is anchored where the last one
        // ended, so the first line that is not a diagnostic ends the rewrite:
        // nothing after it is shown or counted.
        {"BannerBeforeDiagnosticsHidesThemAll", false,
         Lines({"ARM C Compiler, ADS1.2 [Build 848]", kEfuseError, kRingWarning}), "", 0, 0},
        {"DiagnosticsAfterCompilationAbandonedAreNotShown", false,
         Lines({"\"a.c\", line 3: Fatal error: C3052U: couldn't write file 'a.o'", "Compilation abandoned.",
                kEfuseError, kRingWarning}),
         Lines({"a.c(3): Fatal error: C3052U: couldn't write file 'a.o'"}), 1, 0},
        {"BlankLineBetweenDiagnosticsHidesTheRest", false, Lines({kEfuseError, "", kRingWarning}),
         Lines({kEfuseErrorPane}), 1, 0},
        {"LinkerErrorWithTotals", true,
         Lines({kUndefinedSymbol, "Finished: 0 information, 1 warning and 1 error messages."}),
         Lines({kUndefinedSymbol}), 1, 1},
        {"LinkerManyWarnings", true,
         Lines({"Warning: L6306W: '~PRES8' section x.o(.text) should not use the address of 'REQ8' function y",
                "Finished: 0 information, 129 warning and 0 error messages."}, "\r\n"),
         Lines({"Warning: L6306W: '~PRES8' section x.o(.text) should not use the address of 'REQ8' function y"}, "\r\n"),
         0, 129},
        {"LinkerFatalErrorCountsAsError", true,
         Lines({"Fatal error: L6002U: Could not open file main.o: No such file or directory",
                "Finished: 0 information, 0 warning, 0 error and 1 fatal error messages."}),
         Lines({"Fatal error: L6002U: Could not open file main.o: No such file or directory"}), 1, 0},
        {"LinkerBannerWithoutTotalsIsShownUnchanged", true, Lines({"ARM Linker, ADS1.2 [Build 848]"}, "\r\n"),
         Lines({"ARM Linker, ADS1.2 [Build 848]"}, "\r\n"), 0, 0},
        {"LinkStepDoesNotRewriteCompilerLines", true, Lines({kEfuseError}), Lines({kEfuseError}), 0, 0},
        {"LinkStepCleanLinkShowsNothing", true, S("Finished: 0 information, 0 warning and 0 error messages.\r\n"),
         "", 0, 0},
    };
    return rows;
}

void PrintTo(const OutputRow& row, std::ostream* os) { *os << row.name; }

class ToolOutput : public ::testing::TestWithParam<OutputRow> {};

TEST_P(ToolOutput, GivesPaneTextAndCounts) {
    const OutputRow& row = GetParam();
    OutputParser parser;
    if (row.link_step) parser.SetLinkStep();
    EXPECT_EQ(parser.Parse(row.text.data(), row.text.size()), row.pane);
    EXPECT_EQ(parser.errors(), row.errors);
    EXPECT_EQ(parser.warnings(), row.warnings);
}

INSTANTIATE_TEST_SUITE_P(Rows, ToolOutput, ::testing::ValuesIn(OutputRows()),
                         [](const ::testing::TestParamInfo<OutputRow>& info) { return info.param.name; });

// ---------------------------------------------------------------------------
// Deliberate behaviour, each as users see it.

TEST(OutputParserQuirks, MessageWithBothErrorAndWarningCountsAsError) {
    OutputParser parser;
    const std::string text = "\"a.c\", line 1: Warning: C2207W: Error_Count not declared\n";
    EXPECT_EQ(parser.Parse(text.data(), text.size()), "a.c(1): Warning: C2207W: Error_Count not declared\n");
    EXPECT_EQ(parser.errors(), 1);
    EXPECT_EQ(parser.warnings(), 0);
}

TEST(OutputParserQuirks, LinkerTotalsCountByTheWordAfterEachNumber) {
    OutputParser parser;
    parser.SetLinkStep();
    const std::string text =
        "Warning: L6305W: Image does not have an entry point.\n"
        "Finished: 0 information, 2 warning and 1 error messages.\n";
    EXPECT_EQ(parser.Parse(text.data(), text.size()), "Warning: L6305W: Image does not have an entry point.\n");
    EXPECT_EQ(parser.warnings(), 2);
    EXPECT_EQ(parser.errors(), 1);
}

TEST(OutputParserQuirks, CompilerOutputWithoutDiagnosticsGivesEmptyPane) {
    OutputParser parser;
    const std::string text = "ARM C Compiler, ADS1.2 [Build 848]\nsome other line\n";
    EXPECT_EQ(parser.Parse(text.data(), text.size()), "");
    const char diagnostic[] = "\"a.c\", line 1: Error: x\n";
    EXPECT_EQ(parser.Parse(diagnostic, 0), "");
    parser.SetLinkStep();
    EXPECT_EQ(parser.Parse(diagnostic, 0), "");
    EXPECT_EQ(parser.errors(), 0);
    EXPECT_EQ(parser.warnings(), 0);
}

// The output area is twice the tool's output; what does not fit ends the
// pane text, whatever the number of errors. Each rewritten line here is 40
// bytes, more than the 21 that the closing message needs.
const char kThreeErrors[] =
    "\"a.c\", line 1: Error: the first problem found!\n"
    "\"a.c\", line 2: Error: the other problem seen!!\n"
    "\"a.c\", line 3: Error: the third problem, too!!\n";
const std::string kPane1 = "a.c(1): Error: the first problem found!\n";
const std::string kPane2 = "a.c(2): Error: the other problem seen!!\n";
const std::string kPane3 = "a.c(3): Error: the third problem, too!!\n";
const char kFull[] = "too much errors...\r\n";

TEST(OutputParserQuirks, OutputThatDoesNotFitEndsWithTooMuchErrors) {
    struct Row {
        const char* name;
        size_t size;
        std::string expected;
        int errors;
    };
    const size_t line = kPane1.size();
    ASSERT_EQ(line, 40u);
    ASSERT_EQ(kPane2.size(), line);
    ASSERT_EQ(kPane3.size(), line);
    const Row rows[] = {
        {"MessageTakesThePlaceOfTheLineThatDoesNotFit", line + 30, kPane1 + kFull, 1},
        {"ExactlyTwentyOneBytesLeft", line + 21, kPane1 + kFull, 1},
        {"LastLineFitsButNotItsTerminator", 3 * line, kPane1 + kPane2 + kFull, 2},
        {"FewerBytesLeftCutAtTheLastByte", line + 20, kPane1 + kPane2.substr(0, 19), 1},
        {"NothingFitsButTheMessage", 21, kFull, 0},
        {"NotEvenTheMessageFits", 20, kPane1.substr(0, 19), 0},
        {"AllLinesFitWithTheTerminator", 3 * line + 1, kPane1 + kPane2 + kPane3, 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::vector<char> out(row.size, '#');  // the rewrite ends its own text
        Pattern matcher;
        RunCounts run;
        ASSERT_TRUE(RewriteMatches(kThreeErrors, 0, std::strlen(kThreeErrors), &matcher, kSourcePattern,
                                   kOutputTemplate, out.data(), out.size(), &run));
        const size_t length = static_cast<size_t>(std::find(out.begin(), out.end(), '\0') - out.begin());
        ASSERT_LT(length, out.size());
        EXPECT_EQ(std::string(out.data(), length), row.expected);
        EXPECT_EQ(run.errors, row.errors);
    }
}

TEST(OutputParserRewrite, PatternThatDoesNotCompileWritesAndCountsNothing) {
    std::vector<char> out(100, '\0');
    Pattern matcher;
    RunCounts run;
    EXPECT_FALSE(RewriteMatches(kThreeErrors, 0, std::strlen(kThreeErrors), &matcher, "(\"[^\"]*\"",
                                kOutputTemplate, out.data(), out.size(), &run));
    EXPECT_EQ(std::string(out.data(), out.size()), std::string(100, '\0'));
    EXPECT_EQ(run.errors, 0);
    EXPECT_EQ(run.warnings, 0);
}

TEST(OutputParserRewrite, EmptyMatchesStillMoveOn) {
    std::vector<char> out(100, '\0');
    Pattern matcher;
    RunCounts run;
    const char text[] = "xWarning";
    ASSERT_TRUE(RewriteMatches(text, 0, 8, &matcher, "(W*)", "[(W*)]", out.data(), out.size(), &run));
    EXPECT_EQ(std::string(out.data()), "[][W][][][][][][]");
}

// The template walk: literal text copied, "/" escaping, groups replaced.
TEST(OutputParserRewrite, TemplateWalk) {
    struct Row {
        const char* name;
        const char* output_template;
        const char* expected;
    };
    const Row rows[] = {
        {"TheRealTemplate", kOutputTemplate, "main.c(42): Error: bad\n"},
        {"GroupsInAnyOrderOfText", "<(x)> (y) (z)", "<main.c> 42  Error: bad"},
        {"SlashEscapesAnyCharacter", "//(x)/ /(", "/main.c (" },
        {"GroupsBeyondThePatternsAreEmpty", "(a)(b)(c)(d)!", "main.c42 Error: bad!"},
        {"ParenthesesInsideAClassDoNotEndTheGroup", "([)(]*)|(b)", "main.c|42"},
        {"NestedGroupsKeepTheNumbering", "((a)b)(c)", "main.c Error: bad"},
    };
    Pattern pattern;
    ASSERT_EQ(pattern.Compile(kSourcePattern, std::strlen(kSourcePattern), true), nullptr);
    const char text[] = "\"main.c\", line 42: Error: bad\n";
    MatchResult match;
    ASSERT_TRUE(pattern.Execute(text, 0, std::strlen(text), &match));
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        char out[128] = {};
        size_t written = 0;
        RewriteLine(text, match, row.output_template, out, sizeof out, 0, &written);
        EXPECT_EQ(std::string(out, written), row.expected);
    }
}

TEST(OutputParserRewrite, ClassifiesInOrder) {
    struct Row {
        std::string line;
        LineAnswer answer;
    };
    const Row rows[] = {
        {"a.c(1): Error: x", LineAnswer::kError},
        {"a.c(1): Serious error: C2432E: x", LineAnswer::kError},
        {"a.c(1): Fatal error: C3052U: x", LineAnswer::kError},
        {"a.c(1): Warning: x", LineAnswer::kWarning},
        {"a.c(1): Warning: an Error", LineAnswer::kError},
        {"a.c(1): Serious error without colon", LineAnswer::kOther},
        {"a.c(1): error: x", LineAnswer::kOther},
        {"a.c(1): warning: x", LineAnswer::kOther},
        {"a.c(1): x", LineAnswer::kOther},
        {"", LineAnswer::kOther},
        {std::string("a.c(1):\0 Error: x", 17), LineAnswer::kOther},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ClassifyLine(row.line.data(), row.line.size()), row.answer) << row.line;
    }
}

// ---------------------------------------------------------------------------
// Counters, the link-step flag and the line state.

TEST(OutputParserState, CountersAddUpAcrossRunsUntilReset) {
    OutputParser parser;
    const std::string compile = Lines({kEfuseError, kRingWarning});
    parser.Parse(compile.data(), compile.size());
    parser.Parse(compile.data(), compile.size());
    parser.SetLinkStep();
    const std::string link = "Finished: 0 information, 3 warning and 4 error messages.\n";
    parser.Parse(link.data(), link.size());
    EXPECT_EQ(parser.errors(), 6);
    EXPECT_EQ(parser.warnings(), 5);
    parser.ResetCounters();
    EXPECT_EQ(parser.errors(), 0);
    EXPECT_EQ(parser.warnings(), 0);
}

TEST(OutputParserState, LinkStepFlagChoosesTheMode) {
    OutputParser parser;
    const std::string text = Lines({kEfuseError}) + "Finished: 0 information, 0 warning and 2 error messages.\n";
    EXPECT_FALSE(parser.link_step());
    parser.SetLinkStep();
    EXPECT_TRUE(parser.link_step());
    EXPECT_EQ(parser.Parse(text.data(), text.size()), Lines({kEfuseError}));
    EXPECT_EQ(parser.errors(), 2);
    parser.ClearLinkStep();
    EXPECT_FALSE(parser.link_step());
    EXPECT_EQ(parser.Parse(text.data(), text.size()), Lines({kEfuseErrorPane}));
    EXPECT_EQ(parser.errors(), 3);
}

TEST(OutputParserState, LineStateResetKeepsCountersFlagAndResult) {
    OutputParser parser;
    const std::string text = Lines({kEfuseError, kRingWarning});
    const std::string first = parser.Parse(text.data(), text.size());
    parser.ResetLineState();
    EXPECT_EQ(parser.errors(), 1);
    EXPECT_EQ(parser.warnings(), 1);
    EXPECT_EQ(parser.Parse(text.data(), text.size()), first);
    EXPECT_EQ(parser.errors(), 2);
    parser.SetLinkStep();
    parser.ResetLineState();
    EXPECT_TRUE(parser.link_step());
}

TEST(OutputParserState, HugeLinkerTotalsSaturate) {
    OutputParser parser;
    parser.SetLinkStep();
    const std::string text = "Finished: 99999999999999999999 error and 2147483647 warning messages.\n";
    parser.Parse(text.data(), text.size());
    parser.Parse(text.data(), text.size());
    EXPECT_EQ(parser.errors(), 2147483647);
    EXPECT_EQ(parser.warnings(), 2147483647);
}

TEST(OutputParserState, PaneTextEndsAtAZeroByteInAMessage) {
    OutputParser parser;
    const std::string text = std::string("\"a.c\", line 1: Warning: x\0y\n", 28) + Lines({kEfuseError});
    EXPECT_EQ(parser.Parse(text.data(), text.size()), "a.c(1): Warning: x");
    EXPECT_EQ(parser.warnings(), 1);
    EXPECT_EQ(parser.errors(), 1);
}

// ---------------------------------------------------------------------------
// The parser's work is linear in its input, on real and on hostile output.
// Counted in matcher steps, not timed.

struct ParserLinearRow {
    const char* name;
    std::string (*text)(size_t length);
};

std::string DenseDiagnostics(size_t n) {
    const std::string line = std::string(kEfuseError) + "\r\n";
    return Repeat(line, n / line.size());
}
std::string AllQuotes(size_t n) { return std::string(n, '"'); }
std::string UnclosedQuote(size_t n) { return "\"" + std::string(n - 1, 'x'); }
std::string HugeLineWithoutEnd(size_t n) {
    const std::string head = "\"a.c\", line 7: Error: ";
    return head + std::string(n - head.size(), 'x');
}
std::string DiagnosticsThenHugeLine(size_t n) {
    const std::string body = DenseDiagnostics(n / 2);
    return body + HugeLineWithoutEnd(n - body.size());
}

TEST(OutputParserWork, StepsGrowLinearly) {
    const ParserLinearRow rows[] = {
        {"DenseDiagnostics", DenseDiagnostics},
        {"AllQuotes", AllQuotes},
        {"UnclosedQuote", UnclosedQuote},
        {"HugeLineWithoutEnd", HugeLineWithoutEnd},
        {"DiagnosticsThenHugeLine", DiagnosticsThenHugeLine},
    };
    for (const ParserLinearRow& row : rows) {
        SCOPED_TRACE(row.name);
        OutputParser parser;
        const std::string small = row.text(10240);
        const std::string large = row.text(1024000);
        parser.Parse(small.data(), small.size());
        const uint64_t small_steps = parser.matcher_steps();
        parser.Parse(large.data(), large.size());
        const uint64_t large_steps = parser.matcher_steps();
        EXPECT_GT(small_steps, 0u);
        EXPECT_LE(large_steps, small_steps * 105 + 1000) << "small " << small_steps << ", large " << large_steps;
    }
}

TEST(OutputParserWork, DenseDiagnosticsAllReachThePane) {
    OutputParser parser;
    const std::string text = DenseDiagnostics(1 << 20);
    const size_t lines = text.size() / (std::strlen(kEfuseError) + 2);
    const std::string pane = parser.Parse(text.data(), text.size());
    EXPECT_EQ(pane, Repeat(std::string(kEfuseErrorPane) + "\r\n", lines));
    EXPECT_EQ(parser.errors(), static_cast<int>(lines));
}

}  // namespace
}  // namespace ads::build
