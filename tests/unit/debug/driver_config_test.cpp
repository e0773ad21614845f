// Configuring a driver through the simulator library: what ConfigXDI is
// handed and what becomes of the text, with the test libraries built beside
// this program (each named "SArm" in a folder of its own).
#include <gtest/gtest.h>

#include <string>

#include "debug/driver_config.h"
#include "platform/platform.h"

namespace ads::debug {
namespace {

TEST(DriverConfigTest, TheSimulatorLibraryGetsTheDriverAndRewritesItsConfiguration) {
    const struct Row {
        const char* name;
        const char* folder;  // beside ADS_TEST_SIMULATORS; "absent": no library there
        DriverKind kind;
        int mode;
        bool ran;
        const char* text;  // what the configuration then is
    } rows[] = {
        {"config", "recording", DriverKind::kRdi, 0, true, "kind 0 mode 0 request 0/0 library C:\\drv\\a.dll was old"},
        {"flash", "recording", DriverKind::kAgdi, 1, true, "kind 2 mode 1 request 2/1 library C:\\drv\\a.dll was old"},
        {"no ConfigXDI", "none", DriverKind::kRdi, 0, false, "old"},
        {"no library", "absent", DriverKind::kRdi, 0, false, "old"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string folder = std::string(ADS_TEST_SIMULATORS) + row.folder + "/";
        AdsHostContext host{};
        host.install_dir = folder.c_str();
        std::string text = "old";
        EXPECT_EQ(row.ran, ConfigureDriver(*platform::System().libraries, host,
                                           DriverEntry{row.kind, 0, "C:\\drv\\a.dll"}, row.mode, &text));
        EXPECT_EQ(row.text, text);
    }
}

}  // namespace
}  // namespace ads::debug
