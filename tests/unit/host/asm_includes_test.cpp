#include "asm_includes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/temp_folder.h"

namespace ads::host {
namespace {

TEST(AssemblerIncludes, FindsWhatTheAssemblerWouldReadAndNothingElse) {
    platform::test_support::TempFolder folder;
    platform::FileSystem& fs = *platform::System().files;
    const std::string project = fs.FullPath(folder.path());
    auto write = [&](const std::string& name, const std::string& text) {
        std::filesystem::create_directories((folder.native() / name).parent_path());
        std::string error;
        ASSERT_TRUE(fs.WriteFileAtomically(folder / name, text, &error)) << error;
    };
    for (const char* name : {"src/near.s", "top.s", "inc/deep.s", "src/sub/m.s"}) write(name, "X EQU 1\n");
    write("src/sub/n.s", "  GET m.s\n  GET ..\\start.s\n  GET n.s\n");

    struct Row { const char* name; const char* source; std::vector<std::string> expected; };
    const Row rows[] = {
        {"a label before the directive", "start GET near.s\n", {"src/near.s"}},
        {"capitals or small letters, never mixed", "  get near.s\n  Include top.s\n", {"src/near.s"}},
        {"a quoted name in the project folder, a comment after it", "  INCLUDE \"top.s\" ; GET near.s\n", {"top.s"}},
        {"a label named GET, a GET behind ';', a name found nowhere", "GET near.s\n; GET top.s\n  GET no.s\n", {}},
        {"a folder of the command line", "  GET deep.s\n", {"inc/deep.s"}},
        {"nested, beside the includer, each file once", "  GET sub/n.s\r\n", {"src/sub/m.s", "src/sub/n.s"}},
        {"nothing after END", "  GET near.s\r\n  END\r\n  GET top.s\r\n", {"src/near.s"}},
    };
    for (const Row& row : rows) {
        write("src/start.s", row.source);
        std::vector<std::string> found = AssemblerIncludes(fs, folder / "src\\start.s", project,
                                                           "armasm.exe -g -I\"none;inc\" -keep \"src\\start.s\" x.o");
        std::vector<std::string> expected;
        for (const std::string& name : row.expected) expected.push_back(fs.FullPath(folder / name));
        std::sort(found.begin(), found.end());
        EXPECT_EQ(expected, found) << row.name;
    }
}

}  // namespace
}  // namespace ads::host
