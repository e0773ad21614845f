// Finding the ADS tools: the preference module's candidates, the listing
// that never shows its last entry, the installer's registry entries, the
// found flag and the record handed to the host; the tool-path page.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ads/preference.h"
#include "plugin/tool_path_dialog_page.h"
#include "plugin/tool_path_page.h"
#include "plugin/toolchain.h"
#include "support/fake_platform.h"

namespace ads::plugin {
namespace {

using ads::testing::FakePlatform;
using platform::DirectoryEntry;
using platform::RegistryRoot;

const char kVersionKey[] = "SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion";

std::vector<DirectoryEntry> Listing(std::initializer_list<const char*> names) {
    std::vector<DirectoryEntry> entries;
    for (const char* n : names) entries.push_back({n, false, false});
    return entries;
}

// What the installer writes: CurrentVersion's default value names the
// version, whose key holds ARMHOME.
void Install(platform::Registry& registry, const std::string& version, const std::string& home) {
    registry.CreateKey(RegistryRoot::kLocalMachine, kVersionKey)->WriteString("", version);
    registry.CreateKey(RegistryRoot::kLocalMachine, std::string("SOFTWARE\\ARM Limited\\ARM Developer Suite\\") + version)
        ->WriteString("ARMHOME", home);
}

class ToolchainTest : public ::testing::Test {
protected:
    ToolchainTest() : toolchain(&fake.platform) {
        toolchain.SetCandidateSource([this] { return candidates; });
        toolchain.SetHomeSource([this] { return ReadArmHomeFromRegistry(fake.registry); });
        toolchain.SetRegistrar([this](const std::array<std::string, kAdsRecordCount>& record) {
            registered.push_back(record);
            return accept;
        });
    }

    FakePlatform fake;
    Toolchain toolchain;
    std::vector<std::string> candidates;
    std::vector<std::array<std::string, kAdsRecordCount>> registered;
    bool accept = true;
};

TEST(ArmHomeFromRegistry, FollowsCurrentVersionToItsArmHome) {
    struct Row {
        const char* name;
        std::function<void(platform::Registry&)> setup;
        std::string home;
    } rows[] = {
        {"installed", [](platform::Registry& r) { Install(r, "v1.2", "C:\\ARM\\ADSv1_2"); }, "C:\\ARM\\ADSv1_2"},
        {"nothing installed", [](platform::Registry&) {}, ""},
        {"CurrentVersion without its default value",
         [](platform::Registry& r) {
             r.CreateKey(RegistryRoot::kLocalMachine, kVersionKey)->WriteString("Other", "v1.2");
             r.CreateKey(RegistryRoot::kLocalMachine, "SOFTWARE\\ARM Limited\\ARM Developer Suite\\v1.2")
                 ->WriteString("ARMHOME", "C:\\ADS");
         },
         ""},
        {"version key missing",
         [](platform::Registry& r) { r.CreateKey(RegistryRoot::kLocalMachine, kVersionKey)->WriteString("", "v9"); },
         ""},
        {"version key without ARMHOME",
         [](platform::Registry& r) {
             Install(r, "v1.2", "C:\\ADS");
             r.OpenKey(RegistryRoot::kLocalMachine, "SOFTWARE\\ARM Limited\\ARM Developer Suite\\v1.2")
                 ->DeleteValue("ARMHOME");
         },
         ""},
        {"a home of 259 bytes fits the 260-byte buffer",
         [](platform::Registry& r) { Install(r, "v1.2", std::string(259, 'h')); }, std::string(259, 'h')},
        {"a home of 260 bytes does not",
         [](platform::Registry& r) { Install(r, "v1.2", std::string(260, 'h')); }, ""},
        {"a version name of 260 bytes does not either",
         [](platform::Registry& r) { Install(r, std::string(260, 'v'), "C:\\ADS"); }, ""},
    };
    for (const Row& row : rows) {
        ads::testing::FakeRegistry registry;
        row.setup(registry);
        EXPECT_EQ(row.home, ReadArmHomeFromRegistry(registry)) << row.name;
    }
}

TEST_F(ToolchainTest, LocatesTheDirectoryByTheRulesOfTheSearch) {
    struct Row {
        const char* name;
        std::vector<std::string> candidates;
        std::map<std::string, std::vector<DirectoryEntry>> listings;
        std::vector<std::string> files;
        std::string registry_home;  // empty: no installation recorded
        std::string directory;
        bool found;
    } rows[] = {
        {"a candidate with both tools",
         {"C:\\ADS\\Bin"}, {{"C:\\ADS\\Bin", Listing({"armasm.exe", "armcc.exe", "tcc.exe"})}},
         {"C:\\ADS\\Bin\\armasm.exe"}, "", "C:\\ADS\\Bin", true},
        {"the first candidate that shows armcc.exe wins",
         {"C:\\Empty", "C:\\One", "C:\\Two"},
         {{"C:\\Empty", Listing({"readme.txt", "x"})},
          {"C:\\One", Listing({"armcc.exe", "z"})},
          {"C:\\Two", Listing({"armcc.exe", "z"})}},
         {"C:\\One\\armasm.exe", "C:\\Two\\armasm.exe"}, "", "C:\\One", true},
        {"a name that holds armcc.exe counts",
         {"C:\\Old"}, {{"C:\\Old", Listing({"old-armcc.exe.bak", "z"})}},
         {"C:\\Old\\armasm.exe"}, "", "C:\\Old", true},
        {"a candidate that cannot be listed is passed over",
         {"C:\\Gone", "C:\\ADS\\Bin"}, {{"C:\\ADS\\Bin", Listing({"armcc.exe", "z"})}},
         {"C:\\ADS\\Bin\\armasm.exe"}, "", "C:\\ADS\\Bin", true},
        {"a candidate without armasm.exe gives way to the registry's installation",
         {"C:\\Half"}, {{"C:\\Half", Listing({"armcc.exe", "z"})}},
         {"D:\\ARM\\ADSv1_2\\Bin\\armasm.exe"}, "D:\\ARM\\ADSv1_2", "D:\\ARM\\ADSv1_2\\Bin", true},
        {"without an installation the candidate stays, not found",
         {"C:\\Half"}, {{"C:\\Half", Listing({"armcc.exe", "z"})}}, {}, "", "C:\\Half", false},
        {"an installation without Bin\\armasm.exe is not taken",
         {}, {}, {"D:\\ADS\\armasm.exe"}, "D:\\ADS", "", false},
        {"no candidates: the registry alone",
         {}, {}, {"D:\\ADS\\Bin\\armasm.exe"}, "D:\\ADS", "D:\\ADS\\Bin", true},
    };
    for (const Row& row : rows) {
        FakePlatform fake;
        Toolchain t(&fake.platform);
        t.SetCandidateSource([&] { return row.candidates; });
        t.SetHomeSource([&] { return ReadArmHomeFromRegistry(fake.registry); });
        fake.files.listings = row.listings;
        fake.files.files.insert(row.files.begin(), row.files.end());
        if (!row.registry_home.empty()) Install(fake.registry, "v1.2", row.registry_home);
        t.LocateTools();
        EXPECT_EQ(row.directory, t.directory()) << row.name;
        EXPECT_EQ(row.found, t.found()) << row.name;
        EXPECT_EQ(row.directory + "\\armlink.exe", t.path(kArmLink)) << row.name;
    }
}

TEST_F(ToolchainTest, AToolFolderWhoseListingEndsWithArmccIsNotTaken) {
    // The listing's last entry is never examined: a folder that lists
    // armcc.exe last is passed over although it holds every tool.
    fake.files.files.insert("C:\\Last\\armasm.exe");
    fake.files.files.insert("C:\\Lone\\armasm.exe");
    fake.files.listings["C:\\Last"] = Listing({"armasm.exe", "tcc.exe", "armcc.exe"});
    fake.files.listings["C:\\Lone"] = Listing({"armcc.exe"});
    for (const char* dir : {"C:\\Last", "C:\\Lone"}) {
        candidates = {dir};
        toolchain.LocateTools();
        EXPECT_EQ("", toolchain.directory()) << dir;
        EXPECT_FALSE(toolchain.found()) << dir;
    }
    // One more entry behind it, and the same folder is found.
    fake.files.listings["C:\\Last"].push_back({"zz.txt", false, false});
    candidates = {"C:\\Last"};
    toolchain.LocateTools();
    EXPECT_EQ("C:\\Last", toolchain.directory());
    EXPECT_TRUE(toolchain.found());
}

TEST_F(ToolchainTest, EachCandidateExaminedBecomesTheCurrentDirectoryAndTheLastOneStays) {
    candidates = {"C:\\A", "C:\\B", "C:\\C"};
    fake.files.listings["C:\\A"] = Listing({"x", "y"});
    fake.files.listings["C:\\B"] = Listing({"armcc.exe", "y"});
    fake.files.listings["C:\\C"] = Listing({"armcc.exe", "y"});
    toolchain.LocateTools();
    EXPECT_EQ((std::vector<std::string>{"C:\\A", "C:\\B"}), fake.files.cwd_history);
    EXPECT_EQ("C:\\B", fake.files.cwd);
}

TEST_F(ToolchainTest, TheFoundFlagFollowsTheLatestSearch) {
    candidates = {"C:\\ADS\\Bin"};
    fake.files.listings["C:\\ADS\\Bin"] = Listing({"armcc.exe", "z"});
    fake.files.files.insert("C:\\ADS\\Bin\\armasm.exe");
    toolchain.LocateTools();
    EXPECT_TRUE(toolchain.found());
    fake.files.files.clear();  // the tools went away
    toolchain.LocateTools();
    EXPECT_FALSE(toolchain.found());
}

TEST_F(ToolchainTest, FindArmHomePrefersTheRegistryThenCutsTheStoredDirectory) {
    toolchain.set_directory("D:\\ADS\\Bin");
    EXPECT_EQ("D:\\ADS", toolchain.FindArmHome());
    toolchain.set_directory("NoBackslash");
    EXPECT_EQ("", toolchain.FindArmHome());
    Install(fake.registry, "v1.2", "C:\\ARM\\ADSv1_2");
    toolchain.set_directory("D:\\ADS\\Bin");
    EXPECT_EQ("C:\\ARM\\ADSv1_2", toolchain.FindArmHome());
}

TEST_F(ToolchainTest, TheRecordNamesTheToolchainItsDirectoryAndTheEightToolsInOrder) {
    Install(fake.registry, "v1.2", "C:\\ADS");
    fake.files.files.insert("C:\\ADS\\Bin\\armasm.exe");
    EXPECT_TRUE(toolchain.LocateTools());
    ASSERT_EQ(1u, registered.size());
    const std::array<std::string, kAdsRecordCount> expected = {
        "ADS", "C:\\ADS\\Bin",
        "C:\\ADS\\Bin\\armasm.exe", "C:\\ADS\\Bin\\armcc.exe", "C:\\ADS\\Bin\\armcpp.exe",
        "C:\\ADS\\Bin\\tcc.exe", "C:\\ADS\\Bin\\tcpp.exe", "C:\\ADS\\Bin\\armlink.exe",
        "C:\\ADS\\Bin\\fromelf.exe", "C:\\ADS\\Bin\\armar.exe",
        "ARM Developer Suite", "1.2", "1", ".o", ".axf"};
    EXPECT_EQ(expected, registered[0]);

    accept = false;  // the host's refusal is the set-up's failure
    EXPECT_FALSE(toolchain.LocateTools());
    EXPECT_EQ(2u, registered.size());
}

TEST_F(ToolchainTest, ToolsNotFoundAreStillRegisteredWhenADirectoryIsKnown) {
    candidates = {"C:\\Half"};
    fake.files.listings["C:\\Half"] = Listing({"armcc.exe", "z"});
    EXPECT_TRUE(toolchain.LocateTools());
    ASSERT_EQ(1u, registered.size());
    EXPECT_EQ("C:\\Half", registered[0][kAdsRecordDirectory]);
    EXPECT_EQ("0", registered[0][kAdsRecordFound]);
}

// ---------------------------------------------------------------------------
// The preference module, as the plug-in asks it.

std::vector<std::string> g_asked;
intptr_t ADS_CALL FakeList(const char* toolchain, AdsToolDirectoryCallback callback, void* context) {
    g_asked.push_back(toolchain);
    if (std::strcmp(toolchain, "ADS") != 0) return 0;
    if (callback(context, "C:\\First") == 0) return 1;
    callback(context, "D:\\Second");
    return 2;
}

TEST(PreferenceModule, IsAskedForAdsAndFreedAfterwards) {
    ads::testing::FakeLibraries libraries;
    void* const handle = reinterpret_cast<void*>(0x77);
    libraries.modules["opt\\Preference.dll"] = handle;
    libraries.symbols[ADS_PREFERENCE_ENTRY] = reinterpret_cast<void*>(&FakeList);
    g_asked.clear();
    EXPECT_EQ((std::vector<std::string>{"C:\\First", "D:\\Second"}), ReadPreferenceCandidates(libraries));
    EXPECT_EQ(std::vector<std::string>{"ADS"}, g_asked);
    EXPECT_EQ(std::vector<std::string>{"opt\\Preference.dll"}, libraries.loaded);
    EXPECT_EQ(std::vector<void*>{handle}, libraries.freed);
}

TEST(PreferenceModule, AMissingModuleOrEntryGivesNoCandidates) {
    ads::testing::FakeLibraries libraries;
    EXPECT_TRUE(ReadPreferenceCandidates(libraries).empty());
    EXPECT_TRUE(libraries.freed.empty());

    void* const handle = reinterpret_cast<void*>(0x78);
    libraries.modules["opt\\Preference.dll"] = handle;
    EXPECT_TRUE(ReadPreferenceCandidates(libraries).empty());
    EXPECT_EQ(std::vector<void*>{handle}, libraries.freed);
}

// ---------------------------------------------------------------------------
// The tool-path page.

TEST(ToolPathPageTexts, ThePromptsColonIsFullWidthInTheGbkCodePage) {
    const std::string prompt = kToolPathPrompt;
    const std::string expected = std::string("Please Choose Tools Path(eg") + '\xA3' + '\xBA' + "D:\\ADSv1_2\\Bin):";
    EXPECT_EQ(expected, prompt);
}

TEST_F(ToolchainTest, TheBrowserStartsAtTheDriveRootAndACancelKeepsTheField) {
    toolchain.set_directory("C:\\Old\\Bin");
    ToolPathPage page(&toolchain);
    EXPECT_EQ("C:\\Old\\Bin", page.field());
    std::string start, prompt;
    page.Browse([&](const std::string& s, const std::string& p, std::string*) {
        start = s;
        prompt = p;
        return false;
    });
    EXPECT_EQ("C:\\", start);
    EXPECT_EQ(kToolPathPrompt, prompt);
    EXPECT_EQ("C:\\Old\\Bin", page.field());
    page.Browse([](const std::string&, const std::string&, std::string* chosen) {
        *chosen = "D:\\ADSv1_2\\Bin";
        return true;
    });
    EXPECT_EQ("D:\\ADSv1_2\\Bin", page.field());
}

TEST_F(ToolchainTest, OkMakesTheChosenBinFolderTheToolDirectoryWhenTheRegistryNamesNone) {
    ToolPathPage page(&toolchain);
    page.SetField("D:\\Nothing\\Bin");  // holds no tools: nothing found
    EXPECT_FALSE(page.Accept());
    EXPECT_EQ("", toolchain.directory());
    EXPECT_FALSE(toolchain.found());

    fake.files.files.insert("D:\\ADSv1_2\\Bin\\armasm.exe");
    page.SetField("D:\\ADSv1_2\\Bin");
    EXPECT_TRUE(page.Accept());
    EXPECT_EQ("D:\\ADSv1_2\\Bin", toolchain.directory());
    EXPECT_TRUE(toolchain.found());
    EXPECT_EQ("D:\\ADSv1_2\\Bin\\fromelf.exe", toolchain.path(kFromElf));
    ASSERT_EQ(1u, registered.size());
    EXPECT_EQ("D:\\ADSv1_2\\Bin", registered[0][kAdsRecordDirectory]);
}

// The page as the dialog shows it: set by its label, checked before OK.
TEST_F(ToolchainTest, TheToolPathDialogPageRefusesAFolderWithoutTheAssembler) {
    fake.files.files.insert("D:\\ADS\\Bin\\armasm.exe");
    Install(fake.registry, "1.2", "D:\\ADS");
    struct Row {
        const char* field;
        const char* problem;  // a part of the message; "" when accepted
    } rows[] = {{"D:\\ADS\\Bin", ""}, {"D:\\ADS", "holds no armasm.exe"}, {"", "Choose the folder"}};
    for (const Row& row : rows) {
        toolchain.set_directory("C:\\Old");
        ToolPathDialogPage page(&toolchain);
        const auto& controls = page.Description().controls;
        ASSERT_EQ(2u, controls.size());
        EXPECT_EQ("BIN:", controls[0].label);
        EXPECT_EQ("ADS-ARM tools", controls[0].group);
        EXPECT_NE("", page.Set(ToolPathDialogPage::kBrowse, "x")) << "a button is pressed";
        EXPECT_EQ("", page.Set(ToolPathDialogPage::kDirectory, row.field));
        EXPECT_EQ(page.Changed(), std::string(row.field) != "C:\\Old");
        const std::string problem = page.Validate();
        EXPECT_EQ(std::string(row.problem).empty(), problem.empty()) << row.field << ": " << problem;
        EXPECT_NE(std::string::npos, problem.find(row.problem)) << row.field;
    }
    ToolPathDialogPage page(&toolchain);
    page.Default();
    EXPECT_EQ("D:\\ADS\\Bin", page.Get(ToolPathDialogPage::kDirectory)) << "the installation's Bin folder";
    EXPECT_TRUE(page.Accept());
    EXPECT_FALSE(page.Changed());
    EXPECT_EQ("D:\\ADS\\Bin", toolchain.directory());
}

}  // namespace
}  // namespace ads::plugin
