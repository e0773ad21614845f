#include "platform/platform.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace ads::platform {
namespace {

namespace fs = std::filesystem;
using test_support::Join;
using test_support::NamesIn;
using test_support::ReadNative;
using test_support::WriteNative;
using test_support::TempFolder;

#ifdef _WIN32
constexpr char kSeparator = '\\';
#else
constexpr char kSeparator = '/';
#endif

void MakeReadOnly(const fs::path& path) {
    fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
}

class FileSystemTest : public ::testing::Test {
protected:
    void SetUp() override {
        WriteNative(folder_.native() / "file.txt", "text");
        fs::create_directory(folder_.native() / "sub");
    }

    FileSystem& files_ = *System().files;
    TempFolder folder_;
};

TEST_F(FileSystemTest, TellsFilesFoldersAndMissingPathsApart) {
    const struct {
        const char* name;
        std::string path;
        bool file_exists;
        bool path_exists;
        bool is_directory;
    } rows[] = {
        {"regular file", folder_ / "file.txt", true, true, false},
        {"folder", folder_ / "sub", false, true, true},
        {"missing file", folder_ / "missing.txt", false, false, false},
        {"file inside a missing folder", folder_ / "missing\\file.txt", false, false, false},
        {"empty path", "", false, false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(files_.FileExists(row.path), row.file_exists) << row.name;
        EXPECT_EQ(files_.PathExists(row.path), row.path_exists) << row.name;
        EXPECT_EQ(files_.IsDirectory(row.path), row.is_directory) << row.name;
    }
}

TEST_F(FileSystemTest, CreateDirectoryReportsWhatStoppedIt) {
    EXPECT_EQ(files_.MakeDir(folder_ / "new"), 0u);
    EXPECT_TRUE(fs::is_directory(folder_.native() / "new"));
    EXPECT_EQ(files_.MakeDir(folder_ / "new"), kErrorAlreadyExists);
    EXPECT_EQ(files_.MakeDir(folder_ / "file.txt"), kErrorAlreadyExists);
    // ERROR_PATH_NOT_FOUND: the parent folder is missing.
    EXPECT_EQ(files_.MakeDir(folder_ / "missing\\new"), 3u);
}

// A refusal gives the Windows error code and the system's text, ending in
// "\r\n" as the system's own texts do.
TEST_F(FileSystemTest, DeleteFileRemovesOrSaysWhyNot) {
    const struct {
        const char* name;
        bool read_only;
        unsigned code;
        bool file_left;
        const char* text;  // on POSIX, where the text is ours
    } rows[] = {
        {"file.txt", false, 0, false, nullptr},
        {"missing.txt", false, kErrorFileNotFound, true, nullptr},
        {"file.txt", true, kErrorAccessDenied, true, "Access is denied.\r\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.name) + (row.read_only ? " read-only" : ""));
        WriteNative(folder_.native() / "file.txt", "text");
        if (row.read_only) MakeReadOnly(folder_.native() / "file.txt");
        std::string message = "stale";
        EXPECT_EQ(files_.RemoveFile(folder_ / row.name, &message), row.code);
        EXPECT_EQ(fs::exists(folder_.native() / "file.txt"), row.file_left);
        if (row.code == 0) continue;
        ASSERT_GT(message.size(), 2u);
        EXPECT_EQ(message.substr(message.size() - 2), "\r\n");
#ifndef _WIN32
        if (row.text) {
            EXPECT_EQ(message, row.text);
        }
#endif
    }
}

TEST_F(FileSystemTest, ListsEntriesWithoutDotsAndMarksHiddenOnes) {
    WriteNative(folder_.native() / ".hidden", "");
    fs::create_directory(folder_.native() / ".config");
    std::vector<DirectoryEntry> entries = {{"stale", false, false}};
    ASSERT_TRUE(files_.ListDirectory(folder_.path(), &entries));
    std::sort(entries.begin(), entries.end(),
              [](const DirectoryEntry& a, const DirectoryEntry& b) { return a.name < b.name; });
    const struct {
        const char* name;
        bool is_directory;
        bool is_hidden;
    } expected[] = {
        {".config", true, true},
        {".hidden", false, true},
        {"file.txt", false, false},
        {"sub", true, false},
    };
    ASSERT_EQ(entries.size(), std::size(expected));
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(entries[i].name, expected[i].name);
        EXPECT_EQ(entries[i].is_directory, expected[i].is_directory) << expected[i].name;
        EXPECT_EQ(entries[i].is_hidden, expected[i].is_hidden) << expected[i].name;
    }
}

TEST_F(FileSystemTest, ListingAnEmptyFolderSucceedsAndAMissingOneFails) {
    std::vector<DirectoryEntry> entries = {{"stale", false, false}};
    EXPECT_TRUE(files_.ListDirectory(folder_ / "sub", &entries));
    EXPECT_TRUE(entries.empty());
    EXPECT_FALSE(files_.ListDirectory(folder_ / "missing", &entries));
    EXPECT_FALSE(files_.ListDirectory(folder_ / "file.txt", &entries));
    EXPECT_FALSE(files_.ListDirectory("", &entries));
}

TEST_F(FileSystemTest, CurrentDirectoryFollowsSetCurrentDirectory) {
    const std::string before = files_.CurrentDirectory();
    ASSERT_FALSE(before.empty());
    ASSERT_TRUE(files_.ChangeDir(folder_ / "sub"));
    const std::string inside = files_.CurrentDirectory();
    EXPECT_FALSE(files_.ChangeDir(folder_ / "missing"));
    const std::string after_failure = files_.CurrentDirectory();
    ASSERT_TRUE(files_.ChangeDir(before));
    EXPECT_TRUE(fs::equivalent(inside, folder_.native() / "sub")) << inside;
    EXPECT_EQ(after_failure, inside);
}

TEST_F(FileSystemTest, FullPathResolvesDotsAgainstTheCurrentDirectory) {
    const std::string before = files_.CurrentDirectory();
    ASSERT_TRUE(files_.ChangeDir(folder_.path()));
    const std::string base = files_.CurrentDirectory();
    auto under = [&](const std::string& tail) {
        std::string path = base + kSeparator + tail;
        std::replace(path.begin(), path.end(), '\\', kSeparator);
        return path;
    };
    const struct {
        const char* name;
        std::string path;
        std::string full;
    } rows[] = {
        {"relative name", "main.c", under("main.c")},
        {"missing parts need not exist", "no\\such\\file.c", under("no\\such\\file.c")},
        {"dot parts go", ".\\src\\.\\main.c", under("src\\main.c")},
        {"dot-dot removes the part before", "src\\lib\\..\\main.c", under("src\\main.c")},
        {"dot-dot climbs out of the current folder", "..\\x.c",
         (fs::path(base).parent_path() / "x.c").string()},
        {"current folder itself", ".", base},
        {"empty path", "", ""},
    };
    std::vector<std::string> got;
    for (const auto& row : rows) got.push_back(files_.FullPath(row.path));
    ASSERT_TRUE(files_.ChangeDir(before));
    for (size_t i = 0; i < got.size(); ++i) EXPECT_EQ(got[i], rows[i].full) << rows[i].name;
}

#ifndef _WIN32
TEST_F(FileSystemTest, FullPathOfAbsolutePosixPathsOnlyNormalises) {
    const struct {
        std::string path;
        std::string full;
    } rows[] = {
        {"/usr/./lib/../include", "/usr/include"},
        {"\\usr\\lib", "/usr/lib"},
        {"/..", "/"},
        {"/../../etc", "/etc"},
        {"//usr///lib", "/usr/lib"},
        {"/usr/lib/", "/usr/lib/"},
    };
    for (const auto& row : rows) EXPECT_EQ(files_.FullPath(row.path), row.full) << row.path;
}

TEST_F(FileSystemTest, WindowsDirectoryComesFromTheEnvironment) {
    const char* saved = std::getenv("ORVANE_SYSTEM_DIR");
    const std::string saved_value = saved ? saved : "";
    ::setenv("ORVANE_SYSTEM_DIR", "/opt/windows", 1);
    EXPECT_EQ(files_.WindowsDirectory(), "/opt/windows");
    ::unsetenv("ORVANE_SYSTEM_DIR");
    EXPECT_EQ(files_.WindowsDirectory(), "");
    if (saved) ::setenv("ORVANE_SYSTEM_DIR", saved_value.c_str(), 1);
}
#else
TEST_F(FileSystemTest, WindowsDirectoryIsAFolder) {
    const std::string windows = files_.WindowsDirectory();
    EXPECT_TRUE(files_.IsDirectory(windows)) << windows;
}
#endif

TEST_F(FileSystemTest, ModificationTimeIsInNanoseconds) {
    WriteNative(folder_.native() / "newer.txt", "");
    // Both set, in whole seconds: some libraries read times only to the second.
    const auto base = std::chrono::time_point_cast<std::chrono::seconds>(
        fs::last_write_time(folder_.native() / "file.txt"));
    fs::last_write_time(folder_.native() / "file.txt", base);
    fs::last_write_time(folder_.native() / "newer.txt", base + std::chrono::seconds(10));
    int64_t older = 0;
    int64_t newer = 0;
    ASSERT_TRUE(files_.ModificationTime(folder_ / "file.txt", &older));
    ASSERT_TRUE(files_.ModificationTime(folder_ / "newer.txt", &newer));
    EXPECT_NEAR(static_cast<double>(newer - older), 10e9, 1e6);
    int64_t untouched = 7;
    EXPECT_FALSE(files_.ModificationTime(folder_ / "missing.txt", &untouched));
}

TEST_F(FileSystemTest, ReadFileGivesEveryByte) {
    std::string bytes = "line\r\nnext\n";
    bytes += '\0';
    bytes += "\x1a\xff tail";
    bytes += std::string(200000, 'x');  // past any one read
    WriteNative(folder_.native() / "binary.dat", bytes);
    std::string contents;
    ASSERT_TRUE(files_.ReadFile(folder_ / "binary.dat", &contents));
    EXPECT_EQ(contents, bytes);
}

TEST_F(FileSystemTest, ReadFileFailsForMissingFilesAndFolders) {
    std::string contents = "unchanged";
    EXPECT_FALSE(files_.ReadFile(folder_ / "missing.txt", &contents));
    EXPECT_FALSE(files_.ReadFile(folder_ / "sub", &contents));
    EXPECT_FALSE(files_.ReadFile("", &contents));
    EXPECT_EQ(contents, "unchanged");
}

TEST_F(FileSystemTest, WriteFileAtomicallyCreatesAndReplacesWithoutLeftovers) {
    std::string error;
    ASSERT_TRUE(files_.WriteFileAtomically(folder_ / "new.txt", "first", &error)) << error;
    EXPECT_EQ(ReadNative(folder_.native() / "new.txt"), "first");
    const std::string big(3 << 20, 'b');
    ASSERT_TRUE(files_.WriteFileAtomically(folder_ / "file.txt", big, &error)) << error;
    EXPECT_EQ(ReadNative(folder_.native() / "file.txt"), big);
    ASSERT_TRUE(files_.WriteFileAtomically(folder_ / "file.txt", "", &error)) << error;
    EXPECT_EQ(ReadNative(folder_.native() / "file.txt"), "");
    EXPECT_EQ(NamesIn(folder_.native()), (std::vector<std::string>{"file.txt", "new.txt", "sub"}));
}

TEST_F(FileSystemTest, FailedAtomicWriteKeepsTheOldStateAndNamesThePath) {
    MakeReadOnly(folder_.native() / "file.txt");
    const struct {
        const char* name;
        std::string path;
    } rows[] = {
        {"target is a folder", folder_ / "sub"},
        {"folder is missing", folder_ / "missing\\new.txt"},
        {"target is read-only", folder_ / "file.txt"},
    };
    for (const auto& row : rows) {
        std::string error;
        EXPECT_FALSE(files_.WriteFileAtomically(row.path, "new contents", &error)) << row.name;
        EXPECT_NE(error.find(row.path), std::string::npos) << row.name << ": " << error;
        EXPECT_GT(error.size(), row.path.size() + 4) << row.name << ": no reason in " << error;
    }
    EXPECT_EQ(ReadNative(folder_.native() / "file.txt"), "text");
    EXPECT_TRUE(fs::is_directory(folder_.native() / "sub"));
    EXPECT_TRUE(fs::is_empty(folder_.native() / "sub"));
    EXPECT_EQ(NamesIn(folder_.native()), (std::vector<std::string>{"file.txt", "sub"}));
}

#ifndef _WIN32
TEST_F(FileSystemTest, AtomicWriteKeepsThePermissionsOfTheFileItReplaces) {
    const fs::perms mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(folder_.native() / "file.txt", mode);
    std::string error;
    ASSERT_TRUE(files_.WriteFileAtomically(folder_ / "file.txt", "new", &error)) << error;
    EXPECT_EQ(fs::status(folder_.native() / "file.txt").permissions(), mode);
}

// Windows lets anyone create files in a read-only folder; POSIX does not,
// except for root, who may write anywhere.
TEST_F(FileSystemTest, FailedAtomicWriteInAReadOnlyFolderKeepsTheOldFile) {
    MakeReadOnly(folder_.native());
    if (std::ofstream(folder_.native() / "probe")) {
        fs::remove(folder_.native() / "probe");
        GTEST_SKIP() << "this user writes into read-only folders (root)";
    }
    std::string error;
    EXPECT_FALSE(files_.WriteFileAtomically(folder_ / "file.txt", "new", &error));
    EXPECT_NE(error.find("file.txt"), std::string::npos) << error;
    EXPECT_EQ(ReadNative(folder_.native() / "file.txt"), "text");
    EXPECT_EQ(NamesIn(folder_.native()), (std::vector<std::string>{"file.txt", "sub"}));
}
#endif

TEST(ExecutableDirectoryTest, HoldsTheRunningTestProgram) {
    FileSystem& files = *System().files;
    const std::string folder = files.ExecutableDirectory();
    ASSERT_FALSE(folder.empty());
    EXPECT_NE(folder.back(), '/');
    EXPECT_NE(folder.back(), '\\');
    EXPECT_TRUE(files.FileExists(Join(folder, std::string("ads_platform_test") + test_support::kExecutableSuffix)))
        << folder;
}

}  // namespace
}  // namespace ads::platform
