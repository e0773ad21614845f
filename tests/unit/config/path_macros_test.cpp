// What "{Project}", "{Compiler}" and "{System}" stand for, and the via file
// names of the "Extras" pages.
#include <gtest/gtest.h>

#include <string>

#include "config/path_macros.h"
#include "support/fake_platform.h"

namespace ads::config {
namespace {

TEST(PathMacroValues, EachEndsInOneBackslash) {
    struct Row {
        const char* home;
        const char* compiler;
    } rows[] = {
        {"C:\\ARM\\ADSv1_2", "C:\\ARM\\ADSv1_2\\"},
        {"C:\\ARM\\ADSv1_2\\", "C:\\ARM\\ADSv1_2\\"},
        {"C:\\ARM\\ADSv1_2  \t ", "C:\\ARM\\ADSv1_2\\"},
        {"C:\\ARM\\ADSv1_2\\  ", "C:\\ARM\\ADSv1_2\\"},
        {"", "\\"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.compiler, CompilerMacroValue(row.home)) << row.home;
}

TEST(PathMacroValues, TheWindowsDirectoryMustFitIts512ByteBuffer) {
    ads::testing::FakeFiles files;
    files.windows_directory = "C:\\WINDOWS";
    EXPECT_EQ("C:\\WINDOWS\\", SystemMacroValue(files));
    files.windows_directory = std::string(511, 'w');
    EXPECT_EQ(std::string(511, 'w') + "\\", SystemMacroValue(files));
    files.windows_directory = std::string(512, 'w');
    EXPECT_EQ("\\", SystemMacroValue(files));
    files.windows_directory = "";  // no $ORVANE_SYSTEM_DIR on POSIX
    EXPECT_EQ("\\", SystemMacroValue(files));
}

TEST(ViaFilePath, GoesThroughTheMacroRules) {
    PathMacros m;
    m.project = "D:\\work\\demo\\";
    m.compiler = "C:\\ADS\\";
    m.system = "C:\\WINDOWS\\";
    struct Row {
        const char* name;
        const char* converted;
    } rows[] = {
        {"opts.via", "D:\\work\\demo\\opts.via"},
        {"cfg\\opts.via", "D:\\work\\demo\\cfg\\opts.via"},
        {"{Project}opts.via", "D:\\work\\demo\\opts.via"},
        {"{Compiler}Lib\\x.via", "C:\\ADS\\Lib\\x.via"},
        {"{System}x.via", "C:\\WINDOWS\\x.via"},
        {"{Project}{System}x.via", "D:\\work\\demo\\{System}x.via"},
        {"E:\\shared\\opts.via", "E:\\shared\\opts.via"},
        {"\"my opts.via\"", "D:\\work\\demo\\my opts.via"},
        {"\"E:\\a b\\o.via\"", "E:\\a b\\o.via"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.converted, ConvertViaFilePath(row.name, m)) << row.name;
}

}  // namespace
}  // namespace ads::config
