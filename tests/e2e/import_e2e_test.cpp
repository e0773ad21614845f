// orvhost import as a user runs it: the example CodeWarrior export of the
// blinky project becomes an orvhost project whose option strings read back
// and which builds with the simulated tools (when they are there).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support/orvhost_fixture.h"

namespace ads {
namespace {

namespace stdfs = std::filesystem;
using ads::testing::Count;
using ads::testing::Outcome;

class ImportTest : public ads::testing::OrvhostFixture {
protected:
    // The example's sources and its export, side by side, as a user who
    // exported the project from its own folder has them.
    void CopyExample() {
        stdfs::copy(stdfs::path(examples) / "blinky" / "src", stdfs::path(dir) / "src");
        stdfs::copy_file(stdfs::path(examples) / "codewarrior" / "blinky.mcp.xml", stdfs::path(dir) / "blinky.mcp.xml");
    }

    // Each tool's line of `orvhost options`, none of them an error.
    void ExpectOptionsRead(const std::string& target) {
        Outcome r = Orvhost({"options", "blinky.orv", "--target", target});
        EXPECT_EQ(0, r.status) << r.output;
        for (const char* tool : {"armasm=", "armcc=", "armcpp=", "tcc=", "tcpp="}) {
            EXPECT_NE(std::string::npos, r.output.find(tool)) << target << " " << tool << "\n" << r.output;
        }
        EXPECT_EQ(std::string::npos, r.output.find("Error")) << r.output;
    }

    const std::string examples = ADS_EXAMPLES_DIR;
};

TEST_F(ImportTest, TheExampleExportBecomesAProjectThatBuilds) {
    CopyExample();
    Outcome r = Orvhost({"import", "blinky.mcp.xml", "blinky.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("imported 2 targets and 5 files from blinky.mcp.xml into blinky.orv"))
        << r.output;
    EXPECT_EQ(0u, Count(r.output, "note:")) << "the example carries nothing the import drops\n" << r.output;

    r = Orvhost({"show", "blinky.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    const char* expected[] = {
        "project 'blinky' (blinky.orv)",
        "  Debug\n",
        "    ADS_FileMap = \"(.c@armcc),(.cpp@armcpp),(.s@armasm)\"",
        "    ADS_GArmCCParam = \" -apcs /interwork -W+g -O1 -g+ -DBOARD=2 -zo\"",
        "    ADS_LNKPARAM = \" -ro-base 0x00000000 -rw-base  0x40000000 -entry 0x00000000 -first startup.o(Reset)",
        "    ADS_FromELFParam = \" -bin -output \"blinky.bin\"\"",
        "  ThumbLib\n",
        "    ADS_FileMap = \",(.c@tcc),(.cpp@tcpp),(.s@armasm)\"",
        "    ADS_LinkerName = \"ARM Librarian\"",
        "    ADS_PostLnk = \"None\"",
        "  Startup/\n    .\\src\\startup.s (assembler)",
        "  Sources/\n    .\\src\\main.c (C)\n    .\\src\\led.c (C)\n    .\\src\\util.cpp (C++)\n    .\\src\\led.h (other)",
    };
    for (const char* text : expected) EXPECT_NE(std::string::npos, r.output.find(text)) << text << "\n" << r.output;

    ExpectOptionsRead("Debug");
    ExpectOptionsRead("ThumbLib");
    r = Orvhost({"options", "blinky.orv", "--target", "Debug"});
    EXPECT_NE(std::string::npos, r.output.find("armasm= -apcs /interwork -keep -split_ldm -g -PD \"BOARD SETA 2\"\n"))
        << r.output;

    if (!HaveTools()) GTEST_SKIP() << "no simulated tools in " << tools;
    ASSERT_EQ(0, Orvhost({"config", "set-tools-dir", tools}).status);
    r = Orvhost({"build", "blinky.orv", "--target", "Debug"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("blinky.axf created - 0 error(s), 1 warning(s)")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("Translation to bin format successful.")) << r.output;
    EXPECT_TRUE(Exists("Debug/blinky.axf"));
    EXPECT_TRUE(Exists("Debug/blinky.bin")) << "a bare -output name goes to the target's folder";
    r = Orvhost({"build", "blinky.orv", "--target", "ThumbLib"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("blinky.a created - 0 error(s), 1 warning(s)")) << r.output;
    EXPECT_EQ(std::string::npos, r.output.find("FromELF")) << "no post-link step for the library";
    EXPECT_TRUE(Exists("ThumbLib/blinky.a"));
}

TEST_F(ImportTest, AnExportInAnotherFolderFindsItsSourcesOnItsSearchPaths) {
    const std::string export_path = examples + "/codewarrior/blinky.mcp.xml";
    Outcome r = Orvhost({"import", export_path, "far.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("5 files")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("note: the project is not in the export's folder")) << r.output;

    // Every path of the project names the example's file, from the project's
    // folder.
    r = Orvhost({"show", "far.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    for (const char* name : {"main.c", "led.c", "util.cpp", "led.h", "startup.s"}) {
        const size_t at = r.output.find(std::string("src\\") + name);
        ASSERT_NE(std::string::npos, at) << name << "\n" << r.output;
        const size_t begin = r.output.rfind("    ", at) + 4;
        const std::string relative = r.output.substr(begin, at + 4 + std::string(name).size() - begin);
        // On another drive (Windows) the path stays absolute.
        const std::string path = platform::IsAbsolutePath(relative) ? relative : dir + "/" + relative;
        EXPECT_EQ(Read(examples + "/blinky/src/" + name), Read(path)) << relative;
    }
}

TEST_F(ImportTest, BadInputIsRefusedWithOneLineAndNothingWritten) {
    CopyExample();
    Write("taken.orv", "<OrvaneProject/>\n");
    std::string v5 = Read(Path("blinky.mcp.xml"));
    const size_t at = v5.find("ideversion=\"4.2\"");
    ASSERT_NE(std::string::npos, at);
    Write("v5.xml", v5.replace(at, 16, "ideversion=\"5.0\""));
    const struct {
        std::vector<std::string> args;
        const char* says;
    } cases[] = {
        {{"import", "blinky.mcp.xml", "taken.orv"}, "taken.orv: already exists; not overwritten"},
        {{"import", "nothere.xml", "new.orv"}, "nothere.xml: no such file"},
        {{"import", "src", "new.orv"}, "src: is a folder"},
        {{"import", "blinky.mcp.xml"}, "usage: orvhost import EXPORT PROJECT"},
        {{"import", "blinky.mcp.xml", "nofolder/new.orv"}, "nofolder/new.orv: its folder does not exist"},
        {{"import", "v5.xml", "new.orv"}, "v5.xml: not imported: line 2 is"},
    };
    for (const auto& c : cases) ExpectRefused(c.args, c.says, "taken.orv");
    EXPECT_EQ("<OrvaneProject/>\n", Read(Path("taken.orv")));
    EXPECT_FALSE(Exists("new.orv"));
}

TEST_F(ImportTest, WhatCannotBeTakenOverIsPrinted) {
    CopyExample();
    std::string text = Read(Path("blinky.mcp.xml"));
    // A group of files the export names but the folder lacks.
    const size_t at = text.find("<GROUP><NAME>Sources</NAME>");
    ASSERT_NE(std::string::npos, at);
    text.insert(at, "<GROUP><NAME>Gone</NAME><FILEREF><PATHTYPE>Name</PATHTYPE><PATH>gone.c</PATH></FILEREF></GROUP>\n");
    Write("more.xml", text);
    Outcome r = Orvhost({"import", "more.xml", "more.orv"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos,
              r.output.find("note: file 'gone.c' in group 'Gone' is neither below the export's folder nor on a user "
                            "search path; left out"))
        << r.output;
    EXPECT_TRUE(Exists("more.orv"));
}

}  // namespace
}  // namespace ads
