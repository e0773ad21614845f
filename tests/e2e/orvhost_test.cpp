// orvhost driven as a user drives it: a fresh folder, real files, the real
// plug-in module beside orvhost, and nothing but the command line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/orvhost_fixture.h"

namespace ads {
namespace {

using ads::testing::Outcome;

class OrvhostTest : public ads::testing::OrvhostFixture {};

TEST_F(OrvhostTest, NewAddTargetAddFileAndShow) {
    Outcome r = Orvhost({"new", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    ASSERT_TRUE(Exists("demo.orv"));
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Release \xE9t\xE9 \"2\""}).status);
    fs().MakeDir(Path("src"));
    Write("src/main.c", "int main(void) { return 0; }\n");
    Write("start.s", "  AREA x\n");
    r = Orvhost({"add-file", "demo.orv", "src/main.c", "--group", "Sources/C"});
    ASSERT_EQ(0, r.status) << r.output;
    ASSERT_EQ(0, Orvhost({"add-file", "demo.orv", Path("start.s")}).status);

    r = Orvhost({"show", "demo.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    const char* expected[] = {
        "project 'demo' (demo.orv)",
        "  Debug\n    Name = \"Debug\"",
        "  Release \xE9t\xE9 \"2\"",
        "  Sources/\n    C/\n      src\\main.c (C)",
        "  start.s (assembler)",
    };
    for (const char* text : expected) EXPECT_NE(std::string::npos, r.output.find(text)) << text << "\n" << r.output;

    r = Orvhost({"show", "demo.orv", "--target", "Release \xE9t\xE9 \"2\""});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_EQ(std::string::npos, r.output.find("  Debug\n"));
}

TEST_F(OrvhostTest, BadInputIsRefusedWithOneLineAndTheProjectUntouched) {
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
    Write("main.c", "\n");
    ASSERT_EQ(0, Orvhost({"add-file", "demo.orv", "main.c"}).status);

    ExpectRefused({"new", "demo.orv"}, "demo.orv: already exists");
    ExpectRefused({"add-target", "demo.orv", "Debug"}, "demo.orv: target 'Debug' exists already");
    ExpectRefused({"add-file", "demo.orv", "main.c"}, "'main.c' is in the project already");
    ExpectRefused({"add-file", "demo.orv", "nothere.c"}, "nothere.c: no such file");
    ExpectRefused({"show", "demo.orv", "--target", "Nope"}, "demo.orv: no target named 'Nope'");
    ExpectRefused({"add-target", "demo.orv"}, "usage: orvhost add-target");
    ExpectRefused({"frobnicate"}, "unknown command 'frobnicate'");
    ExpectRefused({"show", "missing.orv"}, "missing.orv");
}

TEST_F(OrvhostTest, AMalformedProjectIsNamedWithItsLineAndNeverRewritten) {
    const std::string broken = "<?xml version=\"1.0\"?>\n<OrvaneProject Name=\"x\">\n  <Files>\n</OrvaneProject>\n";
    Write("demo.orv", broken);
    ExpectRefused({"add-target", "demo.orv", "Debug"}, "demo.orv: line");
    ExpectRefused({"show", "demo.orv"}, "demo.orv: line");
    EXPECT_EQ(broken, Read("demo.orv"));
    Write("demo.orv", "<Other/>\n");
    ExpectRefused({"show", "demo.orv"}, "demo.orv: not an orvhost project");
}

TEST_F(OrvhostTest, HelpTellsTheCommands) {
    Outcome r = Orvhost({"--help"});
    EXPECT_EQ(0, r.status);
    for (const char* command : {"new PROJECT", "add-target PROJECT NAME", "add-file PROJECT PATH", "show PROJECT"}) {
        EXPECT_NE(std::string::npos, r.output.find(command)) << command;
    }
    EXPECT_EQ(2, Orvhost({}).status);

    // A command's own help comes from the same table as its parsing.
    const struct {
        std::vector<std::string> args;
        int status;
        const char* says;
    } rows[] = {
        {{"help", "build"}, 0, "  --rebuild "},
        {{"build", "--help"}, 0, "usage: orvhost build PROJECT [--target NAME] [-j N] [--rebuild] [--diagnostics FORMAT]\n"},
        {{"help", "config", "set-ads-home"}, 0, "  --version NAME "},
        {{"-v", "--help"}, 0, "  -v "},
        {{"help", "nope"}, 2, "unknown command 'nope'"},
        {{"help", "config", "nope"}, 2, "unknown config command 'nope'"},
    };
    for (const auto& row : rows) {
        r = Orvhost(row.args);
        EXPECT_EQ(row.status, r.status) << row.says << "\n" << r.output;
        EXPECT_NE(std::string::npos, r.output.find(row.says)) << r.output;
    }
}

}  // namespace
}  // namespace ads

namespace ads {
namespace {

// A hand-written project: tool-wide strings on the target, target-level page
// states on the project's settings child, a file with states of its own.
const char kOptionsProject[] =
    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
    "<OrvaneProject Name=\"opts\">\n"
    "  <Configurations>\n"
    "    <Configuration Name=\"Debug\" ADS_GArmAsmParam=\" -keep -g\" ADS_GArmCCParam=\" -O2 -cpu ARM920T\"\n"
    "        ADS_GArmCppParam=\" -O0 -g+\" ADS_GThmCCParam=\" -O1\" ADS_GThmCppParam=\" -cpu NoSuchCore\"/>\n"
    "    <Configuration Name=\"Release\" ADS_GArmCCParam=\" -O1 -bi\"/>\n"
    "  </Configurations>\n"
    "  <Files>\n"
    "    <File RelativePath=\"src\\main.c\" FileType=\"1\">\n"
    "      <ADS_CParam Debug=\" -O2\" Debug_tool=\"2\" Debug_ArmC_Debug_Opt=\"-1,-1,-1,0,1\"/>\n"
    "    </File>\n"
    "  </Files>\n"
    "</OrvaneProject>\n";

TEST_F(OrvhostTest, OptionsPrintsEachToolsStringAsTheToolGetsIt) {
    Write("opts.orv", kOptionsProject);
    Outcome r = Orvhost({"options", "opts.orv"});
    // The Thumb C++ string names a processor the pages do not know.
    EXPECT_EQ(1, r.status) << r.output;
    const char* lines[] = {
        "armasm= -keep -g\n",
        "armcc= -cpu ARM920T -O2\n",
        "armcpp= -O0 -g+\n",
        "tcc= -O1\n",
        "tcpp=GetTempCCppOption Error\n",
    };
    for (const char* line : lines) EXPECT_NE(std::string::npos, r.output.find(line)) << line << r.output;

    // The file's own states: optimisation level 0, for time.
    r = Orvhost({"options", "opts.orv", "--file", "src/main.c"});
    EXPECT_NE(std::string::npos, r.output.find("armcc= -cpu ARM920T -O0 -Otime\n")) << r.output;

    r = Orvhost({"options", "opts.orv", "--target", "Release"});
    EXPECT_NE(std::string::npos, r.output.find("armcc= -bi -O1\n")) << r.output;
}

TEST_F(OrvhostTest, OptionsRefusesAnUnknownTargetOrFile) {
    Write("demo.orv", kOptionsProject);
    ExpectRefused({"options", "demo.orv", "--target", "Nope"}, "demo.orv: no target named 'Nope'");
    ExpectRefused({"options", "demo.orv", "--file", "src/other.c"}, "demo.orv: no file 'src/other.c'");
}

}  // namespace
}  // namespace ads

namespace ads {
namespace {

TEST_F(OrvhostTest, SetChangesOneTargetSettingAndAsksForARebuild) {
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Lib"}).status);
    Outcome r = Orvhost({"set", "demo.orv", "--target", "Lib", "ADS_LinkerName", "ARM Librarian"});
    ASSERT_EQ(0, r.status) << r.output;
    r = Orvhost({"show", "demo.orv", "--target", "Lib"});
    EXPECT_NE(std::string::npos, r.output.find("ADS_LinkerName = \"ARM Librarian\"")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("ADS_ReBuild = \"1\"")) << r.output;
    ExpectRefused({"set", "demo.orv", "--target", "Nope", "CPU", "x"}, "demo.orv: no target named 'Nope'");
    ExpectRefused({"set", "demo.orv", "--target", "Lib", "Name", "x"}, "'Name' cannot be set this way");
    ExpectRefused({"set", "demo.orv", "CPU", "x"}, "usage: orvhost set");
    // A value may start with a dash: a number as it is, a switch after "--".
    ExpectRefused({"set", "demo.orv", "--target", "Lib", "ADS_GArmCCParam", "-O2"}, "goes after '--'");
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "--target", "Lib", "SIMCLK", "-1"}).status);
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "--target", "Lib", "--", "ADS_GArmCCParam", "-O2"}).status);
    r = Orvhost({"show", "demo.orv", "--target", "Lib"});
    EXPECT_NE(std::string::npos, r.output.find("SIMCLK = \"-1\"")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("ADS_GArmCCParam = \"-O2\"")) << r.output;
}

}  // namespace
}  // namespace ads
