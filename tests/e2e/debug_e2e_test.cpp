// The user's debugger drivers and a target's debug options through orvhost,
// with the real plug-in and driver libraries built for the test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/orvhost_fixture.h"

namespace ads {
namespace {

using ads::testing::Outcome;

class DebugTest : public ads::testing::OrvhostFixture {
protected:
    // Named as on Windows: elsewhere the loader finds the ".so" beside it.
    std::string Driver(const std::string& kind) {
        return fs().FullPath(fs().ExecutableDirectory() + "/test_driver_" + kind + ".dll");
    }
    std::string Listed() { return Orvhost({"drivers", "list"}).output; }
};

TEST_F(DebugTest, DriversAreNumberedByKindAndAFreedNumberIsTakenAgain) {
    struct Step {
        std::vector<std::string> args;
        int status;
        std::string printed;  // what the output begins with
    } steps[] = {
        {{"drivers", "add", Driver("rdi")}, 0, "RDI 0\t"},
        {{"drivers", "add", Driver("agdi_rdi")}, 0, "AGDI 0\t"},  // AG_Init is asked first
        {{"drivers", "add", Driver("agdi")}, 0, "AGDI 1\t"},
        {{"drivers", "add", Driver("jdi")}, 0, "JDI 0\t"},
        {{"drivers", "add", Driver("none")}, 1, ""},
        {{"drivers", "remove", "AGDI", "0", "--path", Driver("agdi")}, 1, ""},  // not the library it names
        {{"drivers", "remove", "AGDI", "0"}, 0, ""},
        {{"drivers", "add", Driver("agdi")}, 0, "AGDI 0\t"},
    };
    for (const Step& step : steps) {
        const Outcome o = Orvhost(step.args);
        EXPECT_EQ(step.status, o.status) << step.args[1] << " " << step.args[2] << "\n" << o.output;
        EXPECT_EQ(0u, o.output.rfind(step.printed, 0)) << o.output;
    }
    EXPECT_EQ("RDI 0\t" + Driver("rdi") + "\nAGDI 1\t" + Driver("agdi") + "\nAGDI 0\t" + Driver("agdi") +
                  "\nJDI 0\t" + Driver("jdi") + "\n",
              Listed());
    // The list is where the debugger reads it, the doubled backslash kept.
    EXPECT_NE(std::string::npos, Read("registry.reg").find("ArmDebugger\\TargetDlls\\\\AGDIs]"));
}

// What the "ARM Debug" page sets up is what the debugger receives; what it
// refuses leaves the project as it was.
TEST_F(DebugTest, TheArmDebugPageSetsUpWhatDebugOptionsGiveBack) {
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
    ASSERT_EQ(0, Orvhost({"drivers", "add", Driver("jdi")}).status);
    const auto settings = [&](std::vector<std::string> sets) {
        std::vector<std::string> args{"settings", "demo.orv", "--page", "ARM Debug"};
        for (const std::string& set : sets) args.insert(args.end(), {"--set", set});
        return Orvhost(args);
    };
    Outcome o = settings({"Debug mode:=Hardware Emulation", "Target driver:=JDI 0", "config=", "flash=", "Emulator init script:=emu.ini",
                          "Simulator init script:=sim.ini", "Simulation clock:=12", "Storage rows:=3",
                          "Row 0: Start Address=20000000", "Row 1: Type=RAM", "Row 1: Size=0x400",
                          "Row 1: Download?=No", "Row 2: Load File=d:\\img.bin", "Storage rows:=2"});
    ASSERT_EQ(0, o.status) << o.output;
    const std::string expected =
        "mode=0\noption3=1\noption4=0\noption5=1\noption6=0\ndriver=JDI 0\ndriver-library=" + Driver("jdi") +
        "\napp-file=\ninit-script=emu.ini\ndebugger-text=\nupdate-before-debug=1\n"
        "storage0=ROM 0x20000000 0x8000 Yes c:\\Data.bin\nstorage1=RAM 0x20000000 0x400 No c:\\Data.bin\nclock=12\n";
    o = Orvhost({"debug-options", "demo.orv"});
    // Standard error (the plug-in's pane lines) may come before or after.
    EXPECT_EQ(expected, o.output.substr(o.output.find("mode="), expected.size())) << o.output;

    const std::string before = Read("demo.orv");
    const struct {
        const char* set;
        const char* message;
    } refusals[] = {
        {"Row 0: Size=zz", "Wrong Number Input!"},
        {"Storage rows:=33", "Too much definitions of storage, please merge them!"},
        {"Simulation clock:=fast", "Simulation Clock input error!"},
        {"Row 2: Size=10", "disabled"},  // past the rows there are
    };
    for (const auto& r : refusals) {
        o = settings({r.set});
        EXPECT_EQ(2, o.status) << r.set;
        EXPECT_NE(std::string::npos, o.output.find(r.message)) << o.output;
    }
    EXPECT_EQ(before, Read("demo.orv"));
    // Back to simulation: the other init script, and the rows deleted.
    ASSERT_EQ(0, settings({"Debug mode:=Software Simulation", "Storage rows:=0"}).status);
    o = Orvhost({"debug-options", "demo.orv"});
    EXPECT_NE(std::string::npos, o.output.find("mode=1\n")) << o.output;
    EXPECT_NE(std::string::npos, o.output.find("init-script=sim.ini\n")) << o.output;
    EXPECT_EQ(std::string::npos, o.output.find("storage")) << o.output;
}

}  // namespace
}  // namespace ads
