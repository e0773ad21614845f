// The simulated linker and librarian: objects in, an image or an archive
// out; the link messages that sources carry in their objects, printed in
// the linker's shape with its closing "Finished:" line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

class LinkerTest : public ToolTest {
protected:
    void SetUp() override { Write("Debug\\.keep", ""); }

    // Compiles a C source into .\Debug\<name>.o.
    void Compile(const std::string& name, const std::string& source, const std::string& switches = "") {
        Write("src\\" + name + ".c", source);
        const ToolResult result =
            Run("armcc", switches + " -c \"src\\" + name + ".c\" -o \".\\Debug\\" + name + ".o\"");
        ASSERT_EQ(result.exit_code, 0) << result.output;
    }

    void Assemble(const std::string& name, const std::string& source, const std::string& switches = "") {
        Write("src\\" + name + ".s", source);
        const ToolResult result = Run("armasm", "-g " + switches + " \"src\\" + name + ".s\" \".\\Debug\\" + name + ".o\"");
        ASSERT_EQ(result.exit_code, 0) << result.output;
    }
};

const char kStartup[] =
    "        AREA    Reset, CODE, READONLY\n        EXPORT  Reset\n        IMPORT  main\n"
    "Reset   LDR     sp, =0x40004000\n        BL      main\nstop    B       stop\n        END\n";

TEST_F(LinkerTest, LinksObjectsIntoAnImage) {
    ASSERT_NO_FATAL_FAILURE(Assemble("start", kStartup));
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void)\n{\n    return 0;\n}\n"));
    const ToolResult result = Run("armlink", "\".\\Debug\\start.o\" \".\\Debug\\main.o\"  -o \".\\Debug\\blinky.axf\"");
    EXPECT_EQ(result.output, "") << "a clean link prints nothing";
    EXPECT_EQ(result.exit_code, 0);
    const std::string image = Read("Debug\\blinky.axf");
    EXPECT_EQ(image.rfind("FAKEADS-IMAGE 1\n", 0), 0u) << image;
    EXPECT_NE(image.find(" .\\Debug\\start.o\n"), std::string::npos) << image;
    EXPECT_NE(image.find(" .\\Debug\\main.o\n"), std::string::npos) << image;
    // The startup code comes first: Reset sits at the default base.
    EXPECT_NE(image.find("symbol 0x00008000 Reset .\\Debug\\start.o\n"), std::string::npos) << image;
}

struct LinkMessageRow {
    const char* name;
    std::vector<std::string> sources;  // one object each, linked in this order
    std::string output;
    int exit_code;
    bool image_written;
};

TEST_F(LinkerTest, MarkersBecomeLinkMessages) {
    const std::vector<LinkMessageRow> rows = {
        {"LinkError",
         {"// FAKEADS: link-error L6218E: Undefined symbol HWIO_MPM_PMIC_SBI_SEL_OUTM (referred from pm.o).\n"},
         Lines({"Error: L6218E: Undefined symbol HWIO_MPM_PMIC_SBI_SEL_OUTM (referred from pm.o).",
                "Finished: 0 information, 0 warning and 1 error messages."}),
         1, false},
        {"LinkWarningKeepsTheImage",
         {"/* FAKEADS: link-warning L6306W: '~PRES8' section main.o(.text) should not use the address of 'f'. */\n"},
         Lines({"Warning: L6306W: '~PRES8' section main.o(.text) should not use the address of 'f'.",
                "Finished: 0 information, 1 warning and 0 error messages."}),
         0, true},
        {"NounsStaySingularForAnyCount",
         {"// FAKEADS: link-warning L6306W: one\n// FAKEADS: link-error L6218E: two\n",
          "// FAKEADS: link-warning L6307W: three\n// FAKEADS: link-error L6218E: four\n"},
         Lines({"Warning: L6306W: one", "Error: L6218E: two", "Warning: L6307W: three", "Error: L6218E: four",
                "Finished: 0 information, 2 warning and 2 error messages."}),
         1, false},
        {"FatalEndsTheReport",
         {"// FAKEADS: link-warning L6306W: before\n// FAKEADS: link-fatal L6000U: out of memory\n",
          "// FAKEADS: link-error L6218E: never reported\n"},
         Lines({"Warning: L6306W: before", "Fatal error: L6000U: out of memory",
                "Finished: 0 information, 1 warning, 0 error and 1 fatal error messages."}),
         1, false},
        {"CompileTimeMarkersStayWithTheCompiler",
         {"// FAKEADS: warning C2207W: not the linker's\n"}, "", 0, true},
        {"LinkMarkersOfSkippedCodeAreDropped",
         {"#ifdef NEVER\n// FAKEADS: link-error L6218E: skipped\n#endif\n"}, "", 0, true},
    };
    for (const LinkMessageRow& row : rows) {
        SCOPED_TRACE(row.name);
        std::string objects;
        for (size_t i = 0; i < row.sources.size(); ++i) {
            const std::string name = "part" + std::to_string(i);
            ASSERT_NO_FATAL_FAILURE(Compile(name, row.sources[i]));
            objects += " \".\\Debug\\" + name + ".o\"";
        }
        Write("Debug\\app.axf", "stale image");
        const ToolResult result = Run("armlink", objects + " -o \".\\Debug\\app.axf\"");
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.exit_code, row.exit_code);
        if (row.image_written) {
            EXPECT_EQ(Read("Debug\\app.axf").rfind("FAKEADS-IMAGE 1\n", 0), 0u);
        } else {
            EXPECT_FALSE(Exists("Debug\\app.axf")) << "a failed link leaves no image behind";
        }
    }
}

// What the linker cannot read ends the link: one fatal error in the real
// tool's shape (its words are the simulator's own) and the real closing count.
TEST_F(LinkerTest, InputsThatAreMissingOrNotOurs) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void) { return 0; }\n"));
    Write("notes.o", "just some text\n");
    Write("cut.o", "FAKEADS-OBJECT 1\ntool armcc\n");
    for (const char* arguments : {"\".\\Debug\\main.o\" \".\\Debug\\gone.o\" -o a.axf",
                                  "\".\\Debug\\main.o\" notes.o -o a.axf", "cut.o -o a.axf", "-o a.axf"}) {
        SCOPED_TRACE(arguments);
        const ToolResult result = Run("armlink", arguments);
        EXPECT_EQ(result.output.rfind("Fatal error: L6", 0), 0u) << result.output;
        EXPECT_NE(result.output.find("\nFinished: 0 information, 0 warning, 0 error and 1 fatal error messages.\n"),
                  std::string::npos)
            << result.output;
        EXPECT_EQ(result.exit_code, 1);
        EXPECT_FALSE(Exists("a.axf"));
    }
}

TEST_F(LinkerTest, ObjectsOfTheOtherByteOrderDoNotLink) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void) { return 0; }\n"));
    ASSERT_NO_FATAL_FAILURE(Assemble("start", kStartup, "-bi"));
    const ToolResult result = Run("armlink", "\".\\Debug\\main.o\" \".\\Debug\\start.o\" -o a.axf");
    EXPECT_EQ(result.output,
              Lines({"Error: L6242E: Cannot link object start.o as its attributes are incompatible with the image "
                     "attributes.",
                     "Finished: 0 information, 0 warning and 1 error messages."}));
    EXPECT_EQ(result.exit_code, 1);
}

// Where the regions go: the base switches (their value after one or more
// blanks), a scatter description, or the defaults.
TEST_F(LinkerTest, RegionBasesFollowTheLayoutSwitches) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void)\n{\n    return 0;\n}\n"));
    Write("rom.scf", "; boot from ROM\nLR_ROM 0x00100000 0x80000\n{\n  ER_RO +0 { *(+RO) }\n}\n");
    Write("bad.scf", "LR_ROM 0x0 {\n");
    const struct {
        const char* name;
        const char* switches;
        const char* ro_region;
        const char* rw_region;
    } rows[] = {
        {"Defaults", "", "region ER_RO 0x00008000 16 ", "region ER_RW 0x00008010 "},
        {"ReadOnlyBase", "-ro-base 0x0", "region ER_RO 0x00000000 ", "region ER_RW 0x00000010 "},
        {"BothBasesWithTwoBlanks", "-ro-base 0x0 -rw-base  0x40000000", "region ER_RO 0x00000000 ",
         "region ER_RW 0x40000000 "},
        {"DecimalAndArmHex", "-ro-base 4096 -rw-base &2000", "region ER_RO 0x00001000 ", "region ER_RW 0x00002000 "},
        {"Relocatable", "-reloc", "region ER_RO 0x00000000 ", "region ER_RW 0x00000010 "},
        {"Scatter", "-scatter \"rom.scf\"", "region ER_RO 0x00100000 ", "region ER_RW 0x00100010 "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ToolResult result = Run("armlink", std::string("\".\\Debug\\main.o\" ") + row.switches + " -o a.axf");
        ASSERT_EQ(result.exit_code, 0) << result.output;
        const std::string image = Read("a.axf");
        EXPECT_NE(image.find(row.ro_region), std::string::npos) << image;
        EXPECT_NE(image.find(row.rw_region), std::string::npos) << image;
    }
    const ToolResult bad = Run("armlink", "\".\\Debug\\main.o\" -scatter bad.scf -o a.axf");
    EXPECT_EQ(bad.output, Lines({"Error: L6004E: Scatter description bad.scf is not well formed.",
                                 "Finished: 0 information, 0 warning and 1 error messages."}));
    EXPECT_EQ(bad.exit_code, 1);
}

TEST_F(LinkerTest, PartialLinkCarriesLinkMessagesToTheFinalLink) {
    ASSERT_NO_FATAL_FAILURE(Compile("a", "int a(void) { return 1; }\n// FAKEADS: link-warning L6306W: from a\n"));
    ASSERT_NO_FATAL_FAILURE(Compile("b", "int b(void) { return 2; }\n"));
    const ToolResult partial = Run("armlink", "-partial \".\\Debug\\a.o\" \".\\Debug\\b.o\" -o \".\\Debug\\ab.o\"");
    EXPECT_EQ(partial.output, "");
    EXPECT_EQ(partial.exit_code, 0);
    const ToolResult final_link = Run("armlink", "\".\\Debug\\ab.o\" -o a.axf");
    EXPECT_EQ(final_link.output, Lines({"Warning: L6306W: from a", "Finished: 0 information, 1 warning and 0 error messages."}));
    EXPECT_EQ(final_link.exit_code, 0);
    EXPECT_NE(Read("a.axf").find(" b .\\Debug\\ab.o\n"), std::string::npos) << "symbols of both parts";
}

TEST_F(LinkerTest, SideFilesAndListings) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void)\n{\n    return 0;\n}\n"));
    ASSERT_NO_FATAL_FAILURE(Assemble("start", kStartup, "-16"));
    const ToolResult result = Run("armlink", "\".\\Debug\\main.o\" \".\\Debug\\start.o\" -symdefs syms.txt -info sizes -o a.axf");
    ASSERT_EQ(result.exit_code, 0) << result.output;
    const std::string symdefs = Read("syms.txt");
    EXPECT_EQ(symdefs.rfind("#<SYMDEFS># ARM Linker, ADS1.2 [Build 848]: Last Updated: ", 0), 0u) << symdefs;
    EXPECT_NE(symdefs.find("\n0x00008000 A main\n"), std::string::npos) << symdefs;
    EXPECT_NE(symdefs.find("\n0x00008010 T Reset\n"), std::string::npos) << "Thumb code is marked T\n" << symdefs;
    EXPECT_NE(result.output.find("Image component sizes"), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("   main.o\n"), std::string::npos) << result.output;

    // -list takes the listings, -errors the messages.
    ASSERT_NO_FATAL_FAILURE(Compile("warn", "// FAKEADS: link-warning L6306W: noted\n"));
    const ToolResult redirected =
        Run("armlink", "\".\\Debug\\warn.o\" -map -list map.txt -errors errors.txt -o b.axf");
    EXPECT_EQ(redirected.output, "");
    EXPECT_EQ(redirected.exit_code, 0);
    EXPECT_EQ(Read("errors.txt"),
              Lines({"Warning: L6306W: noted", "Finished: 0 information, 1 warning and 0 error messages."}));
    EXPECT_EQ(Read("map.txt").rfind("Memory Map of the image", 0), 0u);
}

TEST_F(LinkerTest, LibrarianBuildsListsAndEditsArchives) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void) { return 0; }\n"));
    ASSERT_NO_FATAL_FAILURE(Assemble("start", kStartup));
    const ToolResult create = Run("armar", "-r \".\\Debug\\blinky.a\" \".\\Debug\\main.o\" \".\\Debug\\start.o\"");
    EXPECT_EQ(create.output, "");
    EXPECT_EQ(create.exit_code, 0);
    EXPECT_EQ(Run("armar", "-t \".\\Debug\\blinky.a\"").output, Lines({"main.o", "start.o"}));

    // Replacing keeps the order; -v says what happened.
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void) { return 1; }\n"));
    const std::string changed = Read("Debug\\main.o");
    EXPECT_EQ(Run("armar", "-rv \".\\Debug\\blinky.a\" \".\\Debug\\main.o\"").output, Lines({"r - main.o"}));
    EXPECT_EQ(Run("armar", "-t \".\\Debug\\blinky.a\"").output, Lines({"main.o", "start.o"}));

    // A member comes back out byte for byte.
    EXPECT_EQ(Run("armar", "-x \".\\Debug\\blinky.a\" main.o").exit_code, 0);
    EXPECT_EQ(Read("main.o"), changed);

    EXPECT_EQ(Run("armar", "-d \".\\Debug\\blinky.a\" start.o").exit_code, 0);
    EXPECT_EQ(Run("armar", "-t \".\\Debug\\blinky.a\"").output, Lines({"main.o"}));
    const ToolResult absent = Run("armar", "-d \".\\Debug\\blinky.a\" start.o");
    EXPECT_EQ(absent.output, Lines({"Warning: L6807W: start.o is not a member of .\\Debug\\blinky.a.",
                                    "Finished: 0 information, 1 warning and 0 error messages."}));
    EXPECT_EQ(absent.exit_code, 0);

    // The linker takes an archive among its inputs.
    EXPECT_EQ(Run("armlink", "\".\\Debug\\start.o\" \".\\Debug\\blinky.a\" -o a.axf").exit_code, 0);
}

TEST_F(LinkerTest, LibrarianRefusesWhatIsNotThere) {
    ASSERT_NO_FATAL_FAILURE(Compile("main", "int main(void) { return 0; }\n"));
    Write("text.o", "not an object\n");
    Write("text.a", "not an archive\n");
    for (const char* arguments : {"-r lib.a \".\\Debug\\gone.o\"", "-r lib.a text.o", "-t nowhere.a",
                                  "-r text.a \".\\Debug\\main.o\"", "-r"}) {
        SCOPED_TRACE(arguments);
        const ToolResult result = Run("armar", arguments);
        EXPECT_EQ(result.output.rfind("Fatal error: L6", 0), 0u) << result.output;
        EXPECT_EQ(result.exit_code, 1);
    }
    EXPECT_FALSE(Exists("lib.a"));
}

}  // namespace
}  // namespace ads::fakeads_test
