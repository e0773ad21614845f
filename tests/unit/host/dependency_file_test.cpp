#include "dependency_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/platform.h"
#include "support/temp_folder.h"

namespace ads::host {
namespace {

bool Same(const DependencyFile& a, const DependencyFile& b) {
    if (a.targets.size() != b.targets.size()) return false;
    for (const auto& [name, target] : a.targets) {
        auto other = b.targets.find(name);
        if (other == b.targets.end() || other->second.result != target.result || other->second.sets != target.sets) {
            return false;
        }
    }
    return true;
}

TEST(DependencyFile, NamesOfAnyBytesSurviveARoundTrip) {
    struct Row {
        const char* name;
        std::string text;
    };
    const Row rows[] = {
        {"plain", "src\\main.c"},
        {"blanks inside and around", " my target  2 "},
        {"percent signs", "100% done %41"},
        {"line ends and tabs", "a\nb\r\nc\td"},
        {"other control bytes and DEL", std::string("x\x01y\x1fz\x7f", 6)},
        {"8-bit letters", "\xE9t\xE9\\caf\xE9.c"},
        {"a keyword inside", "target source result"},
        {"empty", ""},
    };
    for (const Row& row : rows) {
        DependencyFile file;
        TargetDependencies& target = file.targets[row.text];
        target.result = BuildResult::kFailed;
        target.sets[row.text] = {row.text, "C:\\inc\\" + row.text};
        target.sets["other.c"] = {};
        file.targets["second"].result = BuildResult::kUnknown;
        file.targets["third"].result = BuildResult::kSucceeded;

        const std::string text = SerializeDependencies(file);
        DependencyFile back;
        ASSERT_TRUE(ParseDependencies(text, &back)) << row.name << "\n" << text;
        EXPECT_TRUE(Same(file, back)) << row.name << "\n" << text;
        // One line per entry: nothing the file holds breaks its lines.
        EXPECT_EQ(10, std::count(text.begin(), text.end(), '\n')) << row.name << "\n" << text;
    }
}

TEST(DependencyFile, ALayoutAsDocumentedIsRead) {
    const std::string text =
        "orvhost dependencies 1\n"
        "target Debug\n"
        "result ok\n"
        "source src\\main.c\n"
        "  C:\\work\\demo\\src\\main.c\n"
        "  C:\\work\\demo\\inc\\board.h\n"
        "source src\\start.s\n"
        "target Release 2\r\n"
        "result failed\n";
    DependencyFile file;
    ASSERT_TRUE(ParseDependencies(text, &file));
    ASSERT_EQ(2u, file.targets.size());
    EXPECT_EQ(BuildResult::kSucceeded, file.targets["Debug"].result);
    EXPECT_EQ((std::vector<std::string>{"C:\\work\\demo\\src\\main.c", "C:\\work\\demo\\inc\\board.h"}),
              file.targets["Debug"].sets["src\\main.c"]);
    EXPECT_TRUE(file.targets["Debug"].sets["src\\start.s"].empty());
    EXPECT_EQ(BuildResult::kFailed, file.targets["Release 2"].result);
}

TEST(DependencyFile, AnyBrokenRuleRejectsTheWholeFile) {
    struct Row {
        const char* name;
        std::string text;
    };
    const std::string header = "orvhost dependencies 1\n";
    const Row rows[] = {
        {"empty text", ""},
        {"no header", "target Debug\n"},
        {"another version", "orvhost dependencies 2\n"},
        {"last line without its end", header + "target Debug"},
        {"source outside a target", header + "source a.c\n"},
        {"dependency outside a source", header + "target Debug\n  C:\\a.h\n"},
        {"result twice", header + "target Debug\nresult ok\nresult ok\n"},
        {"result after a source", header + "target Debug\nsource a.c\nresult ok\n"},
        {"result of no known kind", header + "target Debug\nresult maybe\n"},
        {"a target twice", header + "target Debug\ntarget Debug\n"},
        {"a source twice", header + "target Debug\nsource a.c\nsource a.c\n"},
        {"an unknown line", header + "target Debug\nsomething\n"},
        {"an empty line", header + "target Debug\n\n"},
        {"an escape with a bad digit", header + "target De%G1bug\n"},
        {"an escape cut short", header + "target Debug%4\n"},
        {"a raw control byte", header + "target De\x01" "bug\n"},
    };
    for (const Row& row : rows) {
        DependencyFile file;
        file.targets["left over"].result = BuildResult::kFailed;
        EXPECT_FALSE(ParseDependencies(row.text, &file)) << row.name;
        EXPECT_TRUE(file.targets.empty()) << row.name;
    }
}

TEST(DependencyFile, AMissingOrUnreadableFileIsAnEmptyRecordAndSavingReplacesIt) {
    platform::test_support::TempFolder folder;
    platform::FileSystem& fs = *platform::System().files;
    const std::string path = DependencyFilePath(folder.path() + "/demo.orv");
    EXPECT_EQ(folder.path() + "/demo.orv.deps", path);

    DependencyFile file;
    EXPECT_FALSE(LoadDependencies(fs, path, &file));
    EXPECT_TRUE(file.targets.empty());

    file.targets["Debug"].sets["a.c"] = {"C:\\a.h"};
    std::string error;
    ASSERT_TRUE(SaveDependencies(fs, path, file, &error)) << error;
    DependencyFile back;
    ASSERT_TRUE(LoadDependencies(fs, path, &back));
    EXPECT_TRUE(Same(file, back));

    // A folder where the file should be: cannot be written, and says where.
    const std::string blocked = folder.path() + "/blocked.orv";
    ASSERT_EQ(0u, fs.MakeDir(DependencyFilePath(blocked)));
    EXPECT_FALSE(SaveDependencies(fs, DependencyFilePath(blocked), file, &error));
    EXPECT_NE(std::string::npos, error.find(DependencyFilePath(blocked))) << error;
    EXPECT_FALSE(LoadDependencies(fs, DependencyFilePath(blocked), &back));
}

}  // namespace
}  // namespace ads::host
