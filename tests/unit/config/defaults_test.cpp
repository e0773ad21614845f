// The helpers behind a new node's defaults: the simulator clock's text, a
// file's kind by the mapping, its object name.
#include <gtest/gtest.h>

#include <string>

#include "config/defaults.h"

namespace ads::config {
namespace {

TEST(SimulatorClock, IsWrittenAsPercentLf) {
    EXPECT_EQ("12.000000", FormatSimulatorClock(kDefaultSimulatorClock));
    EXPECT_EQ("33.868800", FormatSimulatorClock(33.8688));
    EXPECT_EQ("0.000000", FormatSimulatorClock(0.0));
    EXPECT_EQ("-1.500000", FormatSimulatorClock(-1.5));
    EXPECT_EQ("100000000000000000000.000000", FormatSimulatorClock(1e20));
    const std::string huge = FormatSimulatorClock(1e300);
    EXPECT_EQ(301u + 7u, huge.size());
    EXPECT_EQ(".000000", huge.substr(huge.size() - 7));
}

TEST(SourceKindFromFileMap, ReadsEachGroupByItsToolWord) {
    struct Row {
        const char* map;
        const char* path;
        int kind;
    } rows[] = {
        {kDefaultFileMap, "main.c", kKindC},
        {kDefaultFileMap, "src\\start.s", kKindAsm},
        {kDefaultFileMap, "a/b.cpp", kKindCpp},
        {kDefaultFileMap, "b.cc", kKindCpp},
        {kDefaultFileMap, "UPPER.C", kKindC},
        {kDefaultFileMap, "x.h", kKindNone},
        {kDefaultFileMap, "Makefile", kKindNone},
        {kDefaultFileMap, "dir.c\\file", kKindNone},
        {"(.s&&.arm@armasm),(.c&&.h@tcc),(.cpp@tcpp)", "v.arm", kKindAsm},
        {"(.s&&.arm@armasm),(.c&&.h@tcc),(.cpp@tcpp)", "x.h", kKindC},
        {"(@armasm),(@tcc),(.c@tcpp)", "main.c", kKindCpp},
        {"(.c@armasm),(.c@armcc),()", "main.c", kKindAsm},
        {"(.s@armasm)", "main.c", kKindNone},
        // An imported map lists the compilers first and may begin with a comma.
        {",(.cpp@armcpp),(.c@tcc),(.s@armasm)", "main.c", kKindC},
        {"(.c@armcc),(.cpp@armcpp),(.s&&.a@armasm)", "start.s", kKindAsm},
        {"(.c@armcc),(.cpp@armcpp),(.s@armasm)", "util.cpp", kKindCpp},
        {"", "main.c", kKindNone},
    };
    for (const Row& row : rows) EXPECT_EQ(row.kind, SourceKindFromFileMap(row.map, row.path)) << row.map << " " << row.path;
}

TEST(ObjectFileName, IsTheBaseNameWithDotO) {
    struct Row {
        const char* path;
        const char* object;
    } rows[] = {
        {"main.c", "main.o"},
        {"src\\main.c", "main.o"},
        {"src/sub/util.cpp", "util.o"},
        {"two.dots.c", "two.dots.o"},
        {"noext", "noext.o"},
        {"dir.d\\noext", "noext.o"},
        {".hidden", ".hidden.o"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.object, ObjectFileName(row.path)) << row.path;
}

}  // namespace
}  // namespace ads::config
