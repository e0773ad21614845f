// Where orvhost and its plug-in find the ADS tools, driven from the command
// line: a registry file and a configuration file of the test's own, an ADS
// installation whose Bin folder holds the eight tools as empty files.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/registry.h"
#include "support/orvhost_fixture.h"

namespace ads {
namespace {

const char* const kTools[] = {"armasm.exe", "armcc.exe", "armcpp.exe", "tcc.exe",
                              "tcpp.exe",   "armlink.exe", "fromelf.exe", "armar.exe"};

using ads::testing::Outcome;

std::string RegText(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    return out;
}

class OrvhostConfigTest : public ads::testing::OrvhostFixture {
protected:
    // A folder holding the eight tools as empty files.
    void MakeTools(const std::string& folder) {
        for (const char* tool : kTools) Write(folder + "/" + tool, "");
    }

    // ADS/Bin with the tools, recorded in the registry as the installer does.
    std::string InstallAds() {
        const std::string home = Path("ADS");
        EXPECT_EQ(0u, fs().MakeDir(home));
        EXPECT_EQ(0u, fs().MakeDir(home + "/Bin"));
        MakeTools(home + "/Bin");
        Write(registry,
              "REGEDIT4\r\n\r\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion]\r\n"
              "@=\"v1.2\"\r\n\r\n"
              "[HKEY_LOCAL_MACHINE\\SOFTWARE\\ARM Limited\\ARM Developer Suite\\v1.2]\r\n"
              "\"ARMHOME\"=\"" + RegText(home) + "\"\r\n");
        return home;
    }

    void ExpectToolsIn(const Outcome& r, const std::string& directory) {
        EXPECT_NE(std::string::npos, r.output.find("  tool directory: " + directory + "\n")) << r.output;
        EXPECT_NE(std::string::npos, r.output.find("  found: yes\n")) << r.output;
        for (const char* tool : kTools) {
            const std::string line = std::string("  ") + tool + ": " + directory + "\\" + tool + "\n";
            EXPECT_NE(std::string::npos, r.output.find(line)) << line << r.output;
        }
    }
};

TEST_F(OrvhostConfigTest, ShowFindsTheToolsOfTheInstallationTheRegistryRecords) {
    const std::string home = InstallAds();
    Outcome r = Orvhost({"config", "show"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("  ARMHOME: " + home + "\n")) << r.output;
    ExpectToolsIn(r, home + "\\Bin");
}

TEST_F(OrvhostConfigTest, WithNothingRecordedShowSaysNotFound) {
    Outcome r = Orvhost({"config", "show"});
    EXPECT_EQ(1, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("  ARMHOME: (none)\n")) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("  found: no\n")) << r.output;
    EXPECT_FALSE(fs().PathExists(registry));  // looking never writes
    EXPECT_FALSE(fs().PathExists(config));
}

TEST_F(OrvhostConfigTest, SetAdsHomeRecordsTheInstallationAsTheInstallerWould) {
    ASSERT_EQ(0u, fs().MakeDir(Path("ADS")));
    ASSERT_EQ(0u, fs().MakeDir(Path("ADS/Bin")));
    MakeTools(Path("ADS/Bin"));
    Outcome r = Orvhost({"config", "set-ads-home", "ADS"});
    ASSERT_EQ(0, r.status) << r.output;

    const std::string home = fs().FullPath(Path("ADS"));
    platform::RegistryFile file(fs(), registry);
    std::string version, armhome;
    auto current = file.OpenKey(platform::RegistryRoot::kLocalMachine,
                                "SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion");
    ASSERT_TRUE(current) << file.LastError();
    ASSERT_TRUE(current->ReadString("", &version));
    EXPECT_EQ("1.2", version);
    auto installed =
        file.OpenKey(platform::RegistryRoot::kLocalMachine, "SOFTWARE\\ARM Limited\\ARM Developer Suite\\1.2");
    ASSERT_TRUE(installed) << file.LastError();
    ASSERT_TRUE(installed->ReadString("ARMHOME", &armhome));
    EXPECT_EQ(home, armhome);

    r = Orvhost({"config", "show"});
    EXPECT_EQ(0, r.status) << r.output;
    ExpectToolsIn(r, home + "\\Bin");
}

TEST_F(OrvhostConfigTest, SetAdsHomeKeepsTheRecordedVersionUnlessToldOtherwise) {
    InstallAds();
    ASSERT_EQ(0u, fs().MakeDir(Path("Other")));
    ASSERT_EQ(0, Orvhost({"config", "set-ads-home", "Other"}).status);
    EXPECT_NE(std::string::npos, Read(registry).find("ARM Developer Suite\\v1.2]\r\n\"ARMHOME\"=\"" +
                                                     RegText(fs().FullPath(Path("Other"))) + "\""))
        << Read(registry);
    ASSERT_EQ(0, Orvhost({"config", "set-ads-home", "Other", "--version", "ADS1.2"}).status);
    EXPECT_NE(std::string::npos, Read(registry).find("@=\"ADS1.2\"")) << Read(registry);
}

TEST_F(OrvhostConfigTest, SetToolsDirMakesTheFolderTheFirstCandidate) {
    InstallAds();  // the registry's installation loses to the configured folder
    ASSERT_EQ(0u, fs().MakeDir(Path("Tools")));
    MakeTools(Path("Tools"));
    // Two names hold "armcc.exe": whichever the system lists last, the other
    // one is examined.
    Write(Path("Tools/armcc.exe.txt"), "");
    Outcome r = Orvhost({"config", "set-tools-dir", "Tools"});
    ASSERT_EQ(0, r.status) << r.output;
    const std::string tools = fs().FullPath(Path("Tools"));
    EXPECT_NE(std::string::npos, Read(config).find("tools-dir = " + tools + "\n")) << Read(config);

    r = Orvhost({"config", "show"});
    EXPECT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos, r.output.find("  tools-dir: " + tools + "\n")) << r.output;
    ExpectToolsIn(r, tools);
}

TEST_F(OrvhostConfigTest, AMalformedRegistryFileIsNamedWithItsLineAndLeftAlone) {
    const std::string broken =
        "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion]\r\n"
        "@=\"C:\\ARM\"\r\n";
    Write(registry, broken);
    ASSERT_EQ(0u, fs().MakeDir(Path("ADS")));
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"config", "show"}, std::vector<std::string>{"config", "set-ads-home", "ADS"}}) {
        Outcome r = Orvhost(args);
        EXPECT_EQ(2, r.status) << r.output;
        EXPECT_NE(std::string::npos, r.output.find("registry.reg:4: ")) << r.output;
        EXPECT_EQ(broken, Read(registry));
    }
}

TEST_F(OrvhostConfigTest, BadInputIsRefusedWithOneLine) {
    struct Row {
        std::vector<std::string> args;
        const char* names;
    } rows[] = {
        {{"config"}, "usage: orvhost config"},
        {{"config", "frob"}, "unknown config command 'frob'"},
        {{"config", "set-tools-dir"}, "usage: orvhost config set-tools-dir DIR"},
        {{"config", "set-tools-dir", "nowhere"}, "nowhere: no such folder"},
        {{"config", "set-ads-home", "nowhere"}, "nowhere: no such folder"},
        {{"config", "set-ads-home", "a", "b"}, "usage: orvhost config set-ads-home"},
        {{"config", "show", "x"}, "usage: orvhost config show"},
    };
    for (const Row& row : rows) ExpectRefused(row.args, row.names);
    EXPECT_FALSE(fs().PathExists(registry));
    EXPECT_FALSE(fs().PathExists(config));
}

// Every default byte for byte is the plug-in's test; here the host's part:
// the new target comes through whole, and the tools were found.
TEST_F(OrvhostConfigTest, AddTargetCarriesTheDefaultsThroughTheHost) {
    InstallAds();
    ASSERT_EQ(0, Orvhost({"new", "demo.orv"}).status);
    Outcome r = Orvhost({"add-target", "demo.orv", "Debug"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_EQ("added target 'Debug'\n", r.output);  // no complaint

    r = Orvhost({"show", "demo.orv", "--target", "Debug"});
    ASSERT_EQ(0, r.status) << r.output;
    EXPECT_NE(std::string::npos,
              r.output.find("targets:\n  Debug\n    Name = \"Debug\"\n    SIMCLK = \"12.000000\"\n"))
        << r.output;
    EXPECT_NE(std::string::npos, r.output.find("    ADS_BatchFileParam = \"0,()\"\n")) << r.output;
}

}  // namespace
}  // namespace ads
