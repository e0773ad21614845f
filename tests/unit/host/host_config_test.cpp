// orvhost's configuration file: where it is, what it holds, and that a
// change keeps the rest of the file.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "host_config.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ads::host {
namespace {

platform::FileSystem& Files() { return *platform::System().files; }

std::string Slurp(const std::string& path) {
    std::string text;
    Files().ReadFile(path, &text);
    return text;
}

class HostConfigTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = folder.path();
        path = dir + "/orvhost.conf";
    }
    void Put(const std::string& text) {
        std::string error;
        ASSERT_TRUE(Files().WriteFileAtomically(path, text, &error)) << error;
    }
    platform::test_support::TempFolder folder;
    std::string dir, path;
};

TEST_F(HostConfigTest, ToolDirectoriesAreReadInOrderWithCommentsAndBlanksAround) {
    Put("# orvhost\r\n"
        "\n"
        "  tools-dir =  C:\\ARM\\ADSv1_2\\Bin  \r\n"
        "; another comment\n"
        "tools-dir=/opt/ads/bin\n"
        "tools-dir =\n");
    HostConfig config;
    std::string error;
    ASSERT_TRUE(LoadHostConfig(Files(), path, &config, &error)) << error;
    EXPECT_EQ((std::vector<std::string>{"C:\\ARM\\ADSv1_2\\Bin", "/opt/ads/bin"}), config.tool_directories);
}

TEST_F(HostConfigTest, AMalformedLineIsNamedAndTheFileIsNotRewritten) {
    struct Row {
        const char* text;
        const char* error;
    } rows[] = {
        {"# ok\ntools-dir /opt\n", ":2: expected NAME = VALUE"},
        {"tool-dir = /opt\n", ":1: unknown setting 'tool-dir' (known: tools-dir)"},
    };
    for (const Row& row : rows) {
        Put(row.text);
        HostConfig config;
        std::string error;
        EXPECT_FALSE(LoadHostConfig(Files(), path, &config, &error)) << row.text;
        EXPECT_EQ(path + row.error, error);
        error.clear();
        EXPECT_FALSE(SetToolDirectory(Files(), path, "/new", &error));
        EXPECT_EQ(path + row.error, error);
        EXPECT_EQ(row.text, Slurp(path));
    }
}

TEST_F(HostConfigTest, SettingTheToolDirectoryReplacesAllOthersAndKeepsTheRest) {
    Put("# mine\ntools-dir = /a\n\ntools-dir = /b\n; end\n");
    std::string error;
    ASSERT_TRUE(SetToolDirectory(Files(), path, "/opt/ads/Bin", &error)) << error;
    EXPECT_EQ("# mine\ntools-dir = /opt/ads/Bin\n\n; end\n", Slurp(path));
}

TEST_F(HostConfigTest, AMissingFileIsEmptyAndANewOneIsMadeWithItsFolders) {
    const std::string deep = dir + "/x/y/orvhost.conf";
    std::string error;
    HostConfig config;
    ASSERT_TRUE(LoadHostConfig(Files(), deep, &config, &error)) << error;
    EXPECT_TRUE(config.tool_directories.empty());
    ASSERT_TRUE(SetToolDirectory(Files(), deep, "C:\\ADS\\Bin", &error)) << error;
    ASSERT_TRUE(LoadHostConfig(Files(), deep, &config, &error)) << error;
    EXPECT_EQ(std::vector<std::string>{"C:\\ADS\\Bin"}, config.tool_directories);
    EXPECT_EQ(0u, Slurp(deep).find("# "));
}

TEST_F(HostConfigTest, ADirectoryTheFileCannotHoldIsRefused) {
    std::string error;
    for (const char* bad : {"", "two\nlines", " padded "}) {
        EXPECT_FALSE(SetToolDirectory(Files(), path, bad, &error)) << bad;
    }
    EXPECT_FALSE(Files().PathExists(path));
}

TEST(HostConfigPath, FollowsTheEnvironment) {
    struct Row {
        const char* name;
        std::map<std::string, std::string> vars;
        std::string path;
    } rows[] = {
        {"named outright", {{"ORVANE_CONFIG", "/x/o.conf"}, {"HOME", "/h"}}, "/x/o.conf"},
#ifdef _WIN32
        {"application data", {{"APPDATA", "C:\\Users\\u\\AppData\\Roaming"}, {"HOME", "/h"}},
         "C:\\Users\\u\\AppData\\Roaming\\Orvane\\orvhost.conf"},
#endif
        {"XDG folder", {{"XDG_CONFIG_HOME", "/cfg"}, {"HOME", "/h"}}, "/cfg/orvane/orvhost.conf"},
        {"home folder", {{"HOME", "/h"}}, "/h/.config/orvane/orvhost.conf"},
        {"nothing", {}, ""},
    };
    for (const Row& row : rows) {
        ads::testing::FakeEnvironment env;
        env.vars = row.vars;
        EXPECT_EQ(row.path, HostConfigPath(env)) << row.name;
    }
}

}  // namespace
}  // namespace ads::host
