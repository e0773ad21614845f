// The simulated compilers: the messages that marker comments ask for, in
// the exact shapes of the real tools, the summary line, exit status, the
// object file, and the preprocessor that decides which lines count.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

const char kCompile[] = "-c \"src\\main.c\" -o \".\\Debug\\main.o\"";

class CompilerTest : public ToolTest {
protected:
    void SetUp() override { Write("Debug\\.keep", ""); }
};

struct DiagnosticRow {
    const char* name;
    std::string source;
    std::string header;  // src\board.h, when the row needs one
    std::string output;
    int exit_code;
    bool object_written;
};

TEST_F(CompilerTest, MarkersGiveEachDiagnosticShape) {
    const std::vector<DiagnosticRow> rows = {
        {"CleanCompilePrintsNothing", "int main(void) { return 0; }\n", "", "", 0, true},
        {"WarningKeepsTheObject",
         "int a;\nint b; /* FAKEADS: warning C2207W: inventing 'extern int f();' */\n", "",
         Lines({"\"src\\main.c\", line 2: Warning: C2207W: inventing 'extern int f();'",
                "src\\main.c: 1 warning, 0 errors, 0 serious errors"}),
         0, true},
        {"ErrorFailsTheCompile",
         "// FAKEADS: error C2456E: undeclared name, inventing 'extern int X'\n", "",
         Lines({"\"src\\main.c\", line 1: Error: C2456E: undeclared name, inventing 'extern int X'",
                "src\\main.c: 0 warnings, 1 error, 0 serious errors"}),
         1, false},
        {"SeriousErrorIsCountedApart", "\n\n// FAKEADS: serious C2432E: non-constant initialiser\n", "",
         Lines({"\"src\\main.c\", line 3: Serious error: C2432E: non-constant initialiser",
                "src\\main.c: 0 warnings, 0 errors, 1 serious error"}),
         1, false},
        {"FatalErrorAbandonsAndStopsReading",
         "// FAKEADS: warning C2207W: first\n// FAKEADS: fatal C3052U: out of memory\n"
         "// FAKEADS: error C2456E: never reached\n",
         "",
         Lines({"\"src\\main.c\", line 1: Warning: C2207W: first",
                "\"src\\main.c\", line 2: Fatal error: C3052U: out of memory", "Compilation abandoned."}),
         1, false},
        {"PrintMarkerIsALineOfItsOwn", "// FAKEADS: print some text the tool said\n", "",
         Lines({"some text the tool said"}), 0, true},
        {"HashErrorIsAnError", "#define A 1\n#error board not chosen\n", "",
         Lines({"\"src\\main.c\", line 2: Error: C2448E: #error board not chosen",
                "src\\main.c: 0 warnings, 1 error, 0 serious errors"}),
         1, false},
        {"UnknownMarkerWordIsReported", "// FAKEADS: warnign C2207W: typo\n", "",
         Lines({"\"src\\main.c\", line 1: Serious error: C2999E: FAKEADS marker not understood: 'warnign'",
                "src\\main.c: 0 warnings, 0 errors, 1 serious error"}),
         1, false},
        {"MarkerInSkippedCodeIsSilent", "#if 0\n// FAKEADS: error C2456E: skipped\n#error skipped too\n#endif\n", "",
         "", 0, true},
        {"MarkerInAHeaderNamesTheHeader",
         "#include \"board.h\"\n// FAKEADS: warning C2207W: in the source\n",
         "\n// FAKEADS: warning C2225W: in the header\n",
         Lines({"\"src\\board.h\", line 2: Warning: C2225W: in the header",
                "\"src\\main.c\", line 2: Warning: C2207W: in the source",
                "src\\main.c: 2 warnings, 0 errors, 0 serious errors"}),
         0, true},
        {"MissingLibraryHeaderIsLetPass", "#include <stdio.h>\nint main(void) { return 0; }\n", "", "", 0, true},
        {"WindowsLineEndsInTheSource", "int a;\r\n// FAKEADS: warning C2207W: crlf\r\n", "",
         Lines({"\"src\\main.c\", line 2: Warning: C2207W: crlf",
                "src\\main.c: 1 warning, 0 errors, 0 serious errors"}),
         0, true},
    };
    for (const DiagnosticRow& row : rows) {
        SCOPED_TRACE(row.name);
        Write("src\\main.c", row.source);
        Write("src\\board.h", row.header);
        Write("Debug\\main.o", "stale object");
        const ToolResult result = Run("armcc", kCompile);
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.exit_code, row.exit_code);
        const std::string object = Read("Debug\\main.o");
        if (row.object_written) {
            EXPECT_EQ(object.rfind("FAKEADS-OBJECT 1\n", 0), 0u) << object;
        } else {
            EXPECT_FALSE(Exists("Debug\\main.o")) << "a failed compile leaves no object behind";
        }
    }
}

// What the simulated compiler cannot read is one serious error at its line;
// its words are the simulator's own.
TEST_F(CompilerTest, UnreadableSourceIsOneSeriousError) {
    const struct {
        const char* name;
        const char* source;
        int line;
    } rows[] = {
        {"MarkerWithoutTextIsReported", "// FAKEADS: error\n", 1},
        {"MissingQuotedHeaderIsSerious", "#include \"nowhere.h\"\n", 1},
        {"UnterminatedIfIsReportedAtTheIf", "int a;\n#ifdef X\nint b;\n", 2},
        {"EndifWithoutIf", "#endif\n", 1},
        {"BadIfExpression", "#if 1 +\n#endif\n", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Write("src\\main.c", row.source);
        const ToolResult result = Run("armcc", kCompile);
        EXPECT_EQ(result.output.rfind("\"src\\main.c\", line " + std::to_string(row.line) + ": Serious error: ", 0), 0u)
            << result.output;
        EXPECT_NE(result.output.find("src\\main.c: 0 warnings, 0 errors, 1 serious error\n"), std::string::npos);
        EXPECT_EQ(result.exit_code, 1);
    }
}

TEST_F(CompilerTest, SummaryNounIsSingularOnlyForOne) {
    const struct {
        int warnings, errors, serious;
        const char* summary;
    } rows[] = {
        {1, 0, 0, "src\\main.c: 1 warning, 0 errors, 0 serious errors"},
        {2, 1, 0, "src\\main.c: 2 warnings, 1 error, 0 serious errors"},
        {0, 2, 1, "src\\main.c: 0 warnings, 2 errors, 1 serious error"},
        {0, 0, 2, "src\\main.c: 0 warnings, 0 errors, 2 serious errors"},
        {0, 4, 4, "src\\main.c: 0 warnings, 4 errors, 4 serious errors"},
        {11, 0, 0, "src\\main.c: 11 warnings, 0 errors, 0 serious errors"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.summary);
        std::string source;
        for (int i = 0; i < row.warnings; ++i) source += "// FAKEADS: warning C2207W: w\n";
        for (int i = 0; i < row.errors; ++i) source += "// FAKEADS: error C2456E: e\n";
        for (int i = 0; i < row.serious; ++i) source += "// FAKEADS: serious C2432E: s\n";
        Write("src\\main.c", source);
        const ToolResult result = Run("armcc", kCompile);
        const size_t last_line = result.output.rfind('\n', result.output.size() - 2);
        EXPECT_EQ(result.output.substr(last_line + 1), std::string(row.summary) + "\n");
        EXPECT_EQ(result.exit_code, row.errors + row.serious == 0 ? 0 : 1);
        size_t diagnostic_lines = 0;
        for (size_t at = result.output.find(", line "); at != std::string::npos; at = result.output.find(", line ", at + 1)) {
            ++diagnostic_lines;
        }
        EXPECT_EQ(diagnostic_lines, static_cast<size_t>(row.warnings + row.errors + row.serious));
    }
}

TEST_F(CompilerTest, FileNameIsQuotedAsTheCommandLineSpellsIt) {
    Write("src\\main.c", "// FAKEADS: warning C2207W: here\n");
    const ToolResult result = Run("armcc", "-c \"src/../src\\main.c\" -o main.o");
    EXPECT_EQ(result.output, Lines({"\"src/../src\\main.c\", line 1: Warning: C2207W: here",
                                    "src/../src\\main.c: 1 warning, 0 errors, 0 serious errors"}));
}

// Which branch of a conditional counts follows the -D and -U switches in
// their order and the source's own #define and #undef.
TEST_F(CompilerTest, ConditionalsFollowTheDefinitions) {
    const struct {
        const char* name;
        const char* switches;
        const char* source;
        bool error_expected;
    } rows[] = {
        {"IfndefWithoutDefine", "", "#ifndef FOO\n#error x\n#endif\n", true},
        {"AttachedDefine", "-DFOO", "#ifndef FOO\n#error x\n#endif\n", false},
        {"DefineAsItsOwnWord", "-D FOO", "#ifndef FOO\n#error x\n#endif\n", false},
        {"DefineWithValue", "-DLEVEL=2", "#if LEVEL >= 2\n#else\n#error x\n#endif\n", false},
        {"DefineWithLowerValue", "-DLEVEL=1", "#if LEVEL >= 2\n#else\n#error x\n#endif\n", true},
        {"PlainDefineIsOne", "-DON", "#if ON == 1\n#else\n#error x\n#endif\n", false},
        {"UndefineAfterDefine", "-DFOO -UFOO", "#ifdef FOO\n#else\n#error x\n#endif\n", true},
        {"DefineAfterUndefine", "-UFOO -DFOO", "#ifdef FOO\n#else\n#error x\n#endif\n", false},
        {"DefinedOperator", "-DA", "#if defined(A) && !defined B\n#error x\n#endif\n", true},
        {"ElifTakesTheFirstTrueBranchOnly", "-DX=2",
         "#if X == 1\n#error one\n#elif X == 2\n#define HIT\n#elif X >= 2\n#error three\n#else\n#error four\n#endif\n"
         "#ifndef HIT\n#error missed\n#endif\n",
         false},
        {"SourceDefinesCount", "", "#define N 3\n#if N * 2 == 6 && (N << 1) == 6\n#else\n#error x\n#endif\n", false},
        {"SourceUndefineCounts", "-DFOO", "#undef FOO\n#ifdef FOO\n#else\n#error x\n#endif\n", true},
        {"NestedSkippedConditionalsStaySkipped", "",
         "#if 0\n#if 1\n#error inner\n#else\n#error inner else\n#endif\n#endif\n", false},
        {"ElseAfterSkippedIf", "", "#if 0\n#else\n#error x\n#endif\n", true},
        {"BlockCommentHidesADirective", "", "/*\n#error x\n*/\nint a;\n", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Write("src\\main.c", row.source);
        const ToolResult result = Run("armcc", std::string(row.switches) + " " + kCompile);
        EXPECT_EQ(result.output.find("C2448E") != std::string::npos, row.error_expected) << result.output;
        EXPECT_EQ(result.exit_code, row.error_expected ? 1 : 0) << result.output;
    }
}

TEST_F(CompilerTest, MissingSourceIsFatal) {
    const ToolResult result = Run("armcc", "-c \"src\\nowhere.c\" -o main.o");
    EXPECT_EQ(result.output, Lines({"Fatal error: C3051U: Could not open source file \"src\\nowhere.c\".",
                                    "Compilation abandoned."}));
    EXPECT_EQ(result.exit_code, 1);
}

TEST_F(CompilerTest, BannerOnlyWithVsn) {
    const struct {
        const char* tool;
        const char* banner;
    } rows[] = {
        {"armcc", "ARM C Compiler, ADS1.2 [Build 848]"},
        {"tcc", "Thumb C Compiler, ADS1.2 [Build 848]"},
        {"armcpp", "ARM C++ Compiler, ADS1.2 [Build 848]"},
        {"tcpp", "Thumb C++ Compiler, ADS1.2 [Build 848]"},
        {"armasm", "ARM Assembler, ADS1.2 [Build 848]"},
        {"armlink", "ARM Linker, ADS1.2 [Build 848]"},
        {"armar", "ARM Librarian, ADS1.2 [Build 848]"},
        {"fromelf", "ARM FromELF, ADS1.2 [Build 848]"},
    };
    Write("src\\main.c", "int main(void) { return 0; }\n");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tool);
        const ToolResult alone = Run(row.tool, "-vsn");
        EXPECT_EQ(alone.output, Lines({row.banner}));
        EXPECT_EQ(alone.exit_code, 0);
    }
    EXPECT_EQ(Run("armcc", std::string("-vsn ") + kCompile).output, Lines({"ARM C Compiler, ADS1.2 [Build 848]"}));
    EXPECT_EQ(Run("armcc", kCompile).output, "");
}

TEST_F(CompilerTest, ObjectRecordsSourceDefinesStateAndHeaderContents) {
    Write("src\\main.c", "#include \"board.h\"\nint main(void) { return 0; }\nstatic int helper(void) { return 1; }\n");
    Write("src\\board.h", "#define BOARD 1\n");
    ASSERT_EQ(Run("tcc", std::string("-DDEBUG -DLEVEL=2 -bi ") + kCompile).exit_code, 0);
    const std::string object = Read("Debug\\main.o");
    for (const char* line : {"tool tcc\n", "source src\\main.c\n", "state thumb\n", "byte-order big\n",
                             "define DEBUG\n", "define LEVEL=2\n", "symbol main\n"}) {
        EXPECT_NE(object.find(line), std::string::npos) << line << " in\n" << object;
    }
    EXPECT_EQ(object.find("symbol helper"), std::string::npos) << "static functions are not global";

    // The object changes with the header's contents, as a real one would
    // with the code the header gives.
    Write("src\\board.h", "#define BOARD 2\n");
    ASSERT_EQ(Run("tcc", std::string("-DDEBUG -DLEVEL=2 -bi ") + kCompile).exit_code, 0);
    EXPECT_NE(Read("Debug\\main.o"), object);
}

TEST_F(CompilerTest, WithoutDashCTheCompilerLinksToo) {
    Write("src\\main.c", "int main(void) { return 0; }\n");
    const ToolResult result = Run("armcc", "\"src\\main.c\"");
    EXPECT_EQ(result.exit_code, 0) << result.output;
    EXPECT_TRUE(Exists("main.o"));
    EXPECT_EQ(Read("__image.axf").rfind("FAKEADS-IMAGE 1\n", 0), 0u);
}

TEST_F(CompilerTest, PreprocessOnlyPrintsTheKeptLines) {
    Write("src\\main.c", "#ifdef A\nint a; /* kept */\n#else\nint b;\n#endif\n");
    const ToolResult result = Run("armcc", "-E -DA \"src\\main.c\"");
    EXPECT_EQ(result.output, Lines({"#line 2 \"src\\main.c\"", "int a;"}));
    EXPECT_FALSE(Exists("main.o"));
}

}  // namespace
}  // namespace ads::fakeads_test
