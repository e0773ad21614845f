#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>

namespace ads::platform {
namespace {

// Each row is a path on which two of the readings could be mixed up.
struct PathRow {
    const char* name;
    std::string path, file_name, stem, first_stem, extension, directory;
};

TEST(PathHelpersTest, EachNameHasOneMeaning) {
    const PathRow rows[] = {
        {"bare name has no folder", "main.c", "main.c", "main", "main", ".c", ""},
        {"either separator cuts", "a/b\\c.s", "c.s", "c", "c", ".s", "a/b"},
        {"several dots", "src\\a.b.c", "a.b.c", "a.b", "a", ".c", "src"},
        {"a leading dot is no extension to cut", "x\\.s", ".s", ".s", ".s", ".s", "x"},
        {"a dot in a folder is not the file's", "dir.x\\name", "name", "name", "name", "", "dir.x"},
        {"the root stays a folder", "/proj.xml", "proj.xml", "proj", "proj", ".xml", "/"},
        {"a trailing separator leaves an empty name", "out\\", "", "", "", "", "out"},
    };
    for (const PathRow& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(FileName(r.path), r.file_name);
        EXPECT_EQ(StemOf(r.path), r.stem);
        EXPECT_EQ(StemBeforeFirstDot(r.path), r.first_stem);
        EXPECT_EQ(ExtensionOf(r.path), r.extension);
        EXPECT_EQ(DirectoryOf(r.path), r.directory);
    }
}

TEST(TextHelpersTest, BlanksAndCase) {
    EXPECT_EQ(Trim("\v\f \t\r\nx y\r\n"), "x y");
    EXPECT_EQ(TrimSpaceOrTab(" \tx\r\n"), "x\r\n");
    EXPECT_EQ(Lower("AbZ\xC4@["), "abz\xC4@[");  // only ASCII letters change
    EXPECT_TRUE(EqualsIgnoringCase("ARM Librarian", "arm librarian"));
    EXPECT_FALSE(EqualsIgnoringCase("abc", "abcd"));
    EXPECT_TRUE(StartsWithIgnoringCase("cpu(ARM7TDMI)", "CPU"));
    EXPECT_FALSE(StartsWithIgnoringCase("CP", "CPU"));
    // Ordering: case ignored first, then shorter first, then by bytes.
    EXPECT_TRUE(LessIgnoringCase("a", "B"));
    EXPECT_TRUE(LessIgnoringCase("b", "B2"));
    EXPECT_TRUE(LessIgnoringCase("ABC", "abc"));
    EXPECT_FALSE(LessIgnoringCase("abc", "ABC"));
    EXPECT_TRUE(LessIgnoringCase("z", "\xC4"));  // 8-bit bytes after ASCII
}

TEST(TextHelpersTest, JoinPathAddsOneBackslashAtMost) {
    EXPECT_EQ(JoinPath("", "a.c"), "a.c");
    EXPECT_EQ(JoinPath("src/", "a.c"), "src/a.c");
    EXPECT_EQ(JoinPath("src", "a.c"), "src\\a.c");
}

}  // namespace
}  // namespace ads::platform
