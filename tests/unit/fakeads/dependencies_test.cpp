// -M: the dependencies instead of an object, one "object: dependency" line
// each, the source first, then every file it includes, in the order met.
#include <gtest/gtest.h>

#include <string>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

using DependencyTest = ToolTest;

TEST_F(DependencyTest, NestedIncludesAreListedOnceInTheOrderMet) {
    Write("src\\main.c",
          "#include \"led.h\"\n#include <sys.h>\n#include \"led.h\"\n#include \"missing.h\"\nint main(void) { return 0; }\n");
    Write("src\\led.h", "#ifndef LED_H\n#define LED_H\n#include \"drivers/gpio.h\"\n#endif\n");
    Write("src\\drivers\\gpio.h", "#include \"board.h\"\n");  // found through -I, not beside gpio.h
    Write("inc\\board.h", "#include \"pins.h\"\n");          // found beside board.h
    Write("inc\\pins.h", "");
    Write("sys\\sys.h", "");
    const ToolResult result = Run("armcc", "-O0 -g+ -cpu ARM920T -I\".\\inc\" -J\"sys\" -M \"src\\main.c\"");
    EXPECT_EQ(result.output, Lines({
                                 "main.o: src\\main.c",
                                 "main.o: src\\led.h",
                                 "main.o: src\\drivers/gpio.h",
                                 "main.o: .\\inc\\board.h",
                                 "main.o: .\\inc\\pins.h",
                                 "main.o: sys\\sys.h",
                             }));
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_FALSE(Exists("main.o")) << "-M compiles nothing";
}

// The same header name in several places: which one is found.
TEST_F(DependencyTest, SearchOrderOfQuotedAndAngleIncludes) {
    const struct {
        const char* name;
        const char* include;
        bool beside_source;
        const char* found;
    } rows[] = {
        {"QuotedFindsTheIncludersFolderFirst", "#include \"cfg.h\"", true, "src\\cfg.h"},
        {"QuotedThenUserPathsBeforeSystemPaths", "#include \"cfg.h\"", false, "user\\cfg.h"},
        {"AngleSearchesSystemPathsFirst", "#include <cfg.h>", true, "system\\cfg.h"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Write("src\\main.c", std::string(row.include) + "\n");
        if (row.beside_source) Write("src\\cfg.h", "");
        Write("user\\cfg.h", "");
        Write("system\\cfg.h", "");
        const ToolResult result = Run("armcc", "-Iuser -J system -M \"src\\main.c\"");
        EXPECT_EQ(result.output, Lines({"main.o: src\\main.c", std::string("main.o: ") + row.found}));
        std::filesystem::remove(Native("src\\cfg.h"));
    }
}

TEST_F(DependencyTest, WildcardDirectorySearchesItsSubfolders) {
    Write("src\\main.c", "#include \"board.h\"\n");
    Write("inc\\arm7\\board.h", "");
    const ToolResult result = Run("armcc", "-I\".*\" -J\"{Compiler}Include*\" -M \"src\\main.c\"");
    EXPECT_EQ(result.output, Lines({"main.o: src\\main.c", "main.o: .\\inc\\arm7\\board.h"}));
}

TEST_F(DependencyTest, ObjectNameComesFromDashOAndBlanksAreEscaped) {
    Write("my src\\main.c", "#include \"my header.h\"\n");
    Write("my src\\my header.h", "");
    EXPECT_EQ(Run("armcc", "-M \"my src\\main.c\"").output,
              Lines({"main.o: my\\ src\\main.c", "main.o: my\\ src\\my\\ header.h"}));
    EXPECT_EQ(Run("armcc", "-M \"my src\\main.c\" -o \"Debug\\out.o\"").output,
              Lines({"Debug\\out.o: my\\ src\\main.c", "Debug\\out.o: my\\ src\\my\\ header.h"}));
}

TEST_F(DependencyTest, OnlyTheKeptBranchesIncludes) {
    Write("src\\main.c", "#ifdef USE_A\n#include \"a.h\"\n#else\n#include \"b.h\"\n#endif\n");
    Write("src\\a.h", "");
    Write("src\\b.h", "");
    EXPECT_EQ(Run("armcc", "-DUSE_A -M \"src\\main.c\"").output, Lines({"main.o: src\\main.c", "main.o: src\\a.h"}));
    EXPECT_EQ(Run("armcc", "-M \"src\\main.c\"").output, Lines({"main.o: src\\main.c", "main.o: src\\b.h"}));
}

TEST_F(DependencyTest, AssemblerFollowsGetAndInclude) {
    Write("src\\start.s",
          "; startup\n        GET     macros.s\n        INCLUDE regs.s ; the registers\n"
          "        GET     missing.s\n        END\n        GET     after_end.s\n");
    Write("src\\macros.s", "        GET     nested.s\n");
    Write("src\\nested.s", "");
    Write("asm\\regs.s", "");
    Write("src\\after_end.s", "");
    const ToolResult result = Run("armasm", "-I asm -M \"src\\start.s\"");
    EXPECT_EQ(result.output, Lines({"start.o: src\\start.s", "start.o: src\\macros.s", "start.o: src\\nested.s",
                                    "start.o: asm\\regs.s"}));
    EXPECT_EQ(result.exit_code, 0);
}

TEST_F(DependencyTest, MissingSourceIsAnError) {
    const ToolResult result = Run("armcc", "-M \"src\\nowhere.c\"");
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.output.rfind("Fatal error: C3051U:", 0), 0u) << result.output;
}

}  // namespace
}  // namespace ads::fakeads_test
