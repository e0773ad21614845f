// "SearchPath": the -I and -J switch texts, one entry's directories, and the
// linker's -libpath switch.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "config/search_paths.h"
#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ads::config {
namespace {

using ads::testing::FakeFiles;
using platform::DirectoryEntry;

TEST(ParseSearchPath, TheDefaultGivesOneUserEntryAndTwoSystemEntries) {
    const SearchPathSwitches s = ParseSearchPath(kDefaultSearchPath);
    EXPECT_EQ(" -I\".*\" ", s.include);
    EXPECT_EQ(" -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" ", s.system_include);
}

TEST(ParseSearchPath, SplitsEntriesByTheRulesOfTheText) {
    struct Row {
        const char* name;
        std::string value, include, system_include;
    } rows[] = {
        {"empty", "", "", ""},
        {"no quote at all", " -I C:\\inc ", "", ""},
        {"an unclosed quote is dropped", " -I\"a\" -I\"b", " -I\"a\" ", ""},
        {"user and system in any order", " -J\"sys\" -I\"usr\" -J\"sys2\" ", " -I\"usr\" ",
         " -J\"sys\"  -J\"sys2\" "},
        {"paths stay as written, macros included", " -I\"{Project}src\" ", " -I\"{Project}src\" ", ""},
        {"an entry whose closing quote ends the text", " -I\"a\"", " -I\"a\" ", ""},
        {"an empty path", " -I\"\" ", " -I\"\" ", ""},
        {"a path holding -I is still a system entry", " -J\"C:\\x-Inc\" ", "", " -J\"C:\\x-Inc\" "},
    };
    for (const Row& row : rows) {
        const SearchPathSwitches s = ParseSearchPath(row.value);
        EXPECT_EQ(row.include, s.include) << row.name;
        EXPECT_EQ(row.system_include, s.system_include) << row.name;
    }
}

TEST(ParseSearchPath, AnythingButCapitalDashIBeforeTheQuoteMakesASystemEntry) {
    const SearchPathSwitches s = ParseSearchPath(" -i\"lower\"  -X\"other\"  \"bare\" ");
    EXPECT_EQ("", s.include);
    EXPECT_EQ(" -J\"lower\"  -J\"other\"  -J\"bare\" ", s.system_include);
}

TEST(ParseSearchPath, AnEntryGluedToThePreviousOneLosesItsDash) {
    // The character after a closing quote is dropped whatever it is: here the
    // "-" of the second switch, so "I" is left and the entry counts as -J.
    const SearchPathSwitches s = ParseSearchPath(" -I\"a\"-I\"b\" ");
    EXPECT_EQ(" -I\"a\" ", s.include);
    EXPECT_EQ(" -J\"b\" ", s.system_include);
}

class ExpandEntry : public ::testing::Test {
protected:
    ExpandEntry() {
        macros.project = "C:\\proj\\";
        macros.compiler = "C:\\ARM\\ADS\\";
        macros.system = "C:\\WINDOWS\\";
    }
    std::string Expand(const std::string& entry) { return ExpandSearchPathEntry(entry, macros, files); }
    static DirectoryEntry Dir(const char* name, bool hidden = false) { return {name, true, hidden}; }
    static DirectoryEntry File(const char* name) { return {name, false, false}; }

    PathMacros macros;
    FakeFiles files;
};

TEST_F(ExpandEntry, OneMacroKindIsReplacedAndRelativePathsStartAtTheProject) {
    struct Row {
        const char* entry;
        const char* directories;
    } rows[] = {
        {"{Project}src", "C:\\proj\\src;"},
        {"{Project}a;{Project}b", "C:\\proj\\a;C:\\proj\\b;"},
        {"{Compiler}Include", "C:\\ARM\\ADS\\Include;"},
        {"{System}system32", "C:\\WINDOWS\\system32;"},
        {"inc", "C:\\proj\\inc;"},
        {".", "C:\\proj\\.;"},
        {"D:\\abs\\inc", "D:\\abs\\inc;"},
        {"/usr/include", "/usr/include;"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.directories, Expand(row.entry)) << row.entry;
}

TEST_F(ExpandEntry, OnlyTheFirstMacroKindFoundIsReplaced) {
    EXPECT_EQ("C:\\proj\\{Compiler}x;", Expand("{Project}{Compiler}x"));
    // The kinds are tried in a fixed order, whatever their order in the text.
    EXPECT_EQ("{System}C:\\ARM\\ADS\\;", Expand("{System}{Compiler}"));
}

TEST_F(ExpandEntry, AStarListsTheFolderAndEveryFolderBelowItInOrder) {
    files.listings["C:\\ARM\\ADS\\Include"] = {Dir("zeta"), File("stdio.h"), Dir("Alpha"), Dir(".svn", true),
                                              Dir("beta")};
    files.listings["C:\\ARM\\ADS\\Include\\Alpha"] = {Dir("deep")};
    files.listings["C:\\ARM\\ADS\\Include\\zeta"] = {};
    EXPECT_EQ("C:\\ARM\\ADS\\Include;"
              "C:\\ARM\\ADS\\Include\\Alpha;C:\\ARM\\ADS\\Include\\Alpha\\deep;"
              "C:\\ARM\\ADS\\Include\\beta;C:\\ARM\\ADS\\Include\\zeta;",
              Expand("{Compiler}Include*"));
    // Whatever follows the star is cut off with it.
    EXPECT_EQ(Expand("{Compiler}Include*"), Expand("{Compiler}Include*\\ignored"));
}

TEST_F(ExpandEntry, TheDefaultDotStarIsTheProjectWithItsFolders) {
    files.listings["C:\\proj\\."] = {Dir("src"), File("main.c")};
    EXPECT_EQ("C:\\proj\\.;C:\\proj\\.\\src;", Expand(".*"));
}

TEST_F(ExpandEntry, AFolderThatCannotBeListedIsStillNamed) {
    EXPECT_EQ("C:\\proj\\missing;", Expand("missing*"));
}

TEST_F(ExpandEntry, TheWalkStopsShortOfMaxPath) {
    // A folder that holds itself, as a link can make it, ends at 260 bytes.
    std::string dir = "C:\\proj\\loop";
    while (dir.size() < 300) {
        files.listings[dir] = {Dir("loop")};
        dir += "\\loop";
    }
    const std::string out = Expand("loop*");
    size_t longest = 0;
    for (size_t start = 0, end; (end = out.find(';', start)) != std::string::npos; start = end + 1) {
        longest = std::max(longest, end - start);
    }
    EXPECT_LT(longest, 260u);
    EXPECT_GT(longest, 250u);
}

TEST(ExpandEntryOnDisk, WalksARealTreeInTheSameOrder) {
    platform::FileSystem& fs = *platform::System().files;
    platform::test_support::TempFolder folder;
    const std::string root = folder.path();
    for (const char* sub : {"/b", "/A", "/A/x", "/c"}) ASSERT_EQ(0u, fs.MakeDir(root + sub));
    PathMacros m;
    m.project = root + "/";
    EXPECT_EQ(root + "/;" + root + "/A;" + root + "/A\\x;" + root + "/b;" + root + "/c;",
              ExpandSearchPathEntry("{Project}*", m, fs));
}

TEST(LibraryPathSwitch, TakesEveryPieceThatASemicolonEnds) {
    struct Row {
        const char* list;
        const char* expected;
    } rows[] = {
        {"", ""},
        {"a;b;", " -libpath \"a,b,\""},
        {"a;", " -libpath \"a,\""},
        {"C:\\ADS\\Lib;C:\\ADS\\Lib\\armlib;", " -libpath \"C:\\ADS\\Lib,C:\\ADS\\Lib\\armlib,\""},
        {"a;;b;", " -libpath \"a,,b,\""},
    };
    for (const Row& row : rows) EXPECT_EQ(row.expected, LibraryPathSwitch(row.list)) << row.list;
}

TEST(LibraryPathSwitch, ALastDirectoryWithoutItsSemicolonIsLeftOut) {
    EXPECT_EQ(" -libpath \"\"", LibraryPathSwitch("a"));
    EXPECT_EQ(" -libpath \"a,\"", LibraryPathSwitch("a;b"));
}

}  // namespace
}  // namespace ads::config
