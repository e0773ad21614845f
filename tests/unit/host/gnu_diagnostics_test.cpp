#include "gnu_diagnostics.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/temp_folder.h"

namespace ads::host {
namespace {

TEST(GnuDiagnostics, DiagnosticLinesNameTheFileAsSeenFromTheCurrentFolder) {
    platform::test_support::TempFolder folder;
    platform::FileSystem& fs = *platform::System().files;
    const std::string top = fs.FullPath(folder.path());
    // orvhost started in top/work on the project top/work/demo.
    const GnuDiagnostics gnu(fs, fs.FullPath(folder / "work\\demo"), fs.FullPath(folder / "work"));
    const char separator = top.find('\\') != std::string::npos ? '\\' : '/';
    auto native = [&](std::string path) {
        std::replace(path.begin(), path.end(), '/', separator);
        return path;
    };
    struct Row { const char* name; std::string pane, expected; };
    const Row rows[] = {
        {"an error", "src\\a.c(12): Error: C2456E: undeclared name\r\n",
         native("demo/src/a.c") + ":12: error: C2456E: undeclared name\r\n"},
        {"a warning, brackets in the folder", "lib (2)\\b.h(3): Warning: C2207W: w\n",
         native("demo/lib (2)/b.h") + ":3: warning: C2207W: w\n"},
        {"serious and fatal errors", "a.c(1): Serious error: C2432E: s\r\na.c(2): Fatal error: C3900U: f",
         native("demo/a.c") + ":1: error: C2432E: s\r\n" + native("demo/a.c") + ":2: error: C3900U: f"},
        {"a file outside the current folder", "..\\..\\x.c(7): Error: e\n", native(top + "/x.c") + ":7: error: e\n"},
        {"other lines", "a.c(1): no severity\r\ncompiling a.c...\r\nError: L6218E: Undefined symbol f.\n",
         "a.c(1): no severity\r\ncompiling a.c...\r\nError: L6218E: Undefined symbol f.\n"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.expected, gnu.Rewrite(row.pane)) << row.name;
}

}  // namespace
}  // namespace ads::host
