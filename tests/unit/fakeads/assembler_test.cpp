// The simulated assembler: marker messages in the compilers' shape, GET
// and END, the listing switches and the object it writes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tool_run.h"

namespace ads::fakeads_test {
namespace {

class AssemblerTest : public ToolTest {
protected:
    void SetUp() override { Write("Debug\\.keep", ""); }
};

const char kAssemble[] = "-g \"src\\start.s\" \".\\Debug\\start.o\"";

TEST_F(AssemblerTest, MarkersGiveEachDiagnosticShape) {
    const struct {
        const char* name;
        std::string source;
        std::string switches;
        std::string output;
        int exit_code;
    } rows[] = {
        {"Clean", "        AREA    Reset, CODE\n        END\n", "", "", 0},
        {"UnknownOpcodeOfRealLogs",
         "        AREA    Reset, CODE\n        FOO     r0 ; FAKEADS: error A1163E: Unknown opcode FOO , expecting opcode or Macro\n",
         "",
         Lines({"\"src\\start.s\", line 2: Error: A1163E: Unknown opcode FOO , expecting opcode or Macro",
                "src\\start.s: 0 warnings, 1 error, 0 serious errors"}),
         1},
        {"Warning", "; FAKEADS: warning A1581W: Added 2 bytes of padding at address 0x6\n", "",
         Lines({"\"src\\start.s\", line 1: Warning: A1581W: Added 2 bytes of padding at address 0x6",
                "src\\start.s: 1 warning, 0 errors, 0 serious errors"}),
         0},
        {"NoWarnSilencesWarnings", "; FAKEADS: warning A1581W: padding\n", "-nowarn", "", 0},
        {"FatalStops", "; FAKEADS: fatal A1017U: out of memory\n; FAKEADS: error A1163E: not reached\n", "",
         Lines({"\"src\\start.s\", line 1: Fatal error: A1017U: out of memory"}), 1},
        {"NothingAfterEnd", "        END\n; FAKEADS: error A1163E: after END\n", "", "", 0},
        {"MissingGetFile", "        GET     missing.s\n", "",
         Lines({"\"src\\start.s\", line 1: Error: A1023E: File \"missing.s\" could not be opened",
                "src\\start.s: 0 warnings, 1 error, 0 serious errors"}),
         1},
        {"MarkerInAGetFile", "        GET     regs.s\n", "",
         Lines({"\"src\\regs.s\", line 2: Warning: A1581W: in the included file",
                "src\\start.s: 1 warning, 0 errors, 0 serious errors"}),
         0},
        {"UnknownMarkerWord", "; FAKEADS: mistake A1W: x\n", "",
         Lines({"\"src\\start.s\", line 1: Serious error: A2999E: FAKEADS marker not understood: 'mistake'",
                "src\\start.s: 0 warnings, 0 errors, 1 serious error"}),
         1},
    };
    Write("src\\regs.s", "r_base  EQU     0\n; FAKEADS: warning A1581W: in the included file\n");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Write("src\\start.s", row.source);
        Write("Debug\\start.o", "stale");
        const ToolResult result = Run("armasm", row.switches + " " + kAssemble);
        EXPECT_EQ(result.output, row.output);
        EXPECT_EQ(result.exit_code, row.exit_code);
        EXPECT_EQ(Read("Debug\\start.o").rfind("FAKEADS-OBJECT 1\n", 0) == 0, row.exit_code == 0);
    }
}

TEST_F(AssemblerTest, ObjectRecordsStatePredefinesAndExports) {
    Write("src\\start.s", "        AREA    Reset, CODE\n        EXPORT  Reset\n        GLOBAL  Vectors\nReset   B Reset\n        END\n");
    ASSERT_EQ(Run("armasm", "-16 -bigend -PD \"DEBUG SETL {TRUE}\" \"src\\start.s\"").exit_code, 0);
    const std::string object = Read("start.o");  // no object named: the source's name in the current folder
    for (const char* line : {"tool armasm\n", "state thumb\n", "byte-order big\n", "define DEBUG SETL {TRUE}\n",
                             "symbol Reset\n", "symbol Vectors\n", "attribute debug off\n"}) {
        EXPECT_NE(object.find(line), std::string::npos) << line << " in\n" << object;
    }
    ASSERT_EQ(Run("armasm", "-g -o \"Debug\\named.o\" \"src\\start.s\"").exit_code, 0);
    EXPECT_NE(Read("Debug\\named.o").find("state arm\n"), std::string::npos);
}

TEST_F(AssemblerTest, MissingSourceIsFatal) {
    const ToolResult result = Run("armasm", "\"src\\nowhere.s\" x.o");
    EXPECT_EQ(result.output, Lines({"Fatal error: A1903U: Could not open source file \"src\\nowhere.s\"."}));
    EXPECT_EQ(result.exit_code, 1);
}

// Listing pages: -length lines a page (0: one page), lines cut at -width,
// labels listed with -xref.
TEST_F(AssemblerTest, ListingFollowsTheListingSwitches) {
    std::string source = "start   MOV     r0, #0 ; a comment long enough to be cut at a narrow width\n";
    for (int i = 0; i < 9; ++i) source += "        MOV     r1, r0\n";
    source += "        END\n";
    Write("src\\start.s", source);
    const struct {
        const char* name;
        const char* switches;
        size_t pages;
        size_t longest_line;
        bool cross_reference;
    } rows[] = {
        {"Defaults", "-list out.lst", 1, 79, false},
        {"ShortPages", "-list out.lst -length 6", 3, 79, false},
        {"ContinuousPage", "-list out.lst -length 0", 1, 79, false},
        {"NarrowLines", "-list out.lst -width 30", 1, 30, false},
        {"CrossReference", "-list out.lst -xref", 1, 79, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(Run("armasm", std::string(row.switches) + " \"src\\start.s\" start.o").exit_code, 0);
        const std::string listing = Read("out.lst");
        size_t pages = 0, longest = 0;
        std::istringstream lines(listing);
        std::string line;
        while (std::getline(lines, line)) {
            if (line.find("ARM Macro Assembler    Page ") != std::string::npos) ++pages;
            if (line.find("Cross reference") == std::string::npos) longest = std::max(longest, line.size());
        }
        EXPECT_EQ(pages, row.pages) << listing;
        EXPECT_EQ(longest, row.longest_line) << listing;
        EXPECT_EQ(listing.find("start  defined at line 1") != std::string::npos, row.cross_reference) << listing;
        EXPECT_NE(listing.find("    2 00000004         MOV"), std::string::npos) << "line number and address\n" << listing;
    }
}

}  // namespace
}  // namespace ads::fakeads_test
