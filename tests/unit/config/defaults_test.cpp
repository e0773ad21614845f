// The helpers behind a new node's defaults: the simulator clock's text, a
// file's kind by the mapping, its object name.
#include <gtest/gtest.h>

#include <string>

#include "config/defaults.h"
#include "config/project_keys.h"

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

// The option model the settings dialog starts a new target from says what a
// new target's keys say.
TEST(BuiltinDefaults, AgreeWithTheKeysOfANewTarget) {
    const OptionModel m = BuiltinDefaults();
    const struct {
        const char* key;
        const std::string& value;
    } rows[] = {
        {kOutputDirKey, m.output_dir},          {kLinkerNameKey, m.linker_name},
        {kFileMapKey, m.file_map},              {kPostLinkKey, m.post_link},
        {kBatchFileParamsKey, m.batch_file_params}, {kArmAsmParamsKey, m.armasm_params},
        {kArmCcParamsKey, m.armcc_params},      {kArmCppParamsKey, m.armcpp_params},
        {kThumbCcParamsKey, m.tcc_params},      {kThumbCppParamsKey, m.tcpp_params},
        {kFromElfParamsKey, m.fromelf_params},  {kUserAppFileKey, m.user_app_file},
    };
    for (const auto& row : rows) {
        const TargetDefault* d = kTargetDefaults;
        while (d != kTargetDefaults + kTargetDefaultCount && std::string(d->key) != row.key) ++d;
        ASSERT_NE(d, kTargetDefaults + kTargetDefaultCount) << row.key;
        EXPECT_EQ(row.value, d->value) << row.key;
    }
    EXPECT_FALSE(m.has_user_app_file);
}

}  // namespace
}  // namespace ads::config
