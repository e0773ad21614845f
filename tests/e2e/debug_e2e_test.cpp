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

TEST_F(DebugTest, DebugOptionsKeepOnlyARegisteredDriverLibrary) {
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    ASSERT_EQ(0, Orvhost({"add-target", "demo.orv", "Debug"}).status);
    const std::string packed = "0,AGDI 0,1,1,0,0,(" + Driver("agdi") + ")";
    ASSERT_EQ(0, Orvhost({"set", "demo.orv", "--target", "Debug", "ADS_OPTDBG", packed}).status);
    Outcome o = Orvhost({"debug-options", "demo.orv"});
    EXPECT_EQ(0, o.status) << o.output;
    EXPECT_NE(std::string::npos, o.output.find("\ndriver-library=\"\"\n")) << o.output;
    ASSERT_EQ(0, Orvhost({"drivers", "add", Driver("agdi")}).status);
    o = Orvhost({"debug-options", "demo.orv"});
    EXPECT_NE(std::string::npos, o.output.find("mode=0\noption3=1\noption4=1\noption5=0\noption6=0\ndriver=AGDI 0\n"
                                               "driver-library=" + Driver("agdi") + "\n"))
        << o.output;
}

}  // namespace
}  // namespace ads
