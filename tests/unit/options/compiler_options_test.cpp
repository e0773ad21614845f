#include "options/compiler_options.h"

#include <gtest/gtest.h>

#include "options/assembler_options.h"
#include "options/option_error.h"
#include "options/option_tables.h"
#include "options/pages.h"

namespace ads::options {
namespace {

constexpr bool kC = true;
constexpr bool kCpp = false;
constexpr char kDefaultWarnings[] = "0,0,1,1,0,1,0,0,0,0,0,1,1,0,0,1";

struct ReadRow {
    const char* name;
    const char* options;
    bool c_language;
    int slot;
    const char* expected;
};

TEST(CompilerRead, EachPageBySubstringSearch) {
    const ReadRow rows[] = {
        {"defaults", " -O0 -g+", kC, kCcTar, "32,4,0,1"},
        {"-bi found as a prefix", " -bigend", kC, kCcTar, "32,4,0,0"},
        {"processor", " -cpu ARM920T -O0", kC, kCcTar, "44,4,0,1"},
        {"processor at the very end", " -cpu ARM10200E", kC, kCcTar, "61,4,0,1"},
        {"unknown processor stays -1", " -cpu arm920t", kC, kCcTar, "-1,4,0,1"},
        {"a second blank makes the name empty", " -cpu  ARM920T", kC, kCcTar, "-1,4,0,1"},
        {"SoftFPA is tried before FPA", " -fpu FPA -fpu SoftFPA", kC, kCcTar, "32,3,0,1"},
        {"unknown fpu is the soft default", " -fpu softvfp", kC, kCcTar, "32,4,0,1"},
        {"C strict", " -ansi -strict", kC, kCcTar, "32,4,1,1"},
        {"C: -ansi alone is standard C", " -ansi", kC, kCcTar, "32,4,0,1"},
        {"C++ strict ansi needs -W+p", " -ansi -strict", kCpp, kCcTar, "32,4,0,1"},
        {"C++ strict ansi", " -ansi -strict -W+p", kCpp, kCcTar, "32,4,1,1"},
        {"C++ nothing is ISO C++", "", kCpp, kCcTar, "32,4,2,1"},
        {"C++ -ansi wins over -cpp -strict", " -cpp -strict -ansi", kCpp, kCcTar, "32,4,0,1"},

        {"boxes need -apcs", " -O0 /interwork/ropi", kC, kCcAtpcs, "0,0,0,0"},
        {"boxes anywhere once -apcs is there", " -apcs /rwpi -DX/interwork", kC, kCcAtpcs, "1,0,0,1"},
        {"/noswst is not /swst", " -apcs /noswst", kC, kCcAtpcs, "0,0,0,0"},

        {"no warnings", " -W -Wab", kC, kCcWarnings, "1,0,1,1,0,1,0,0,0,0,0,1,1,0,0,1"},
        {"warn for all", " -fx -O0", kC, kCcWarnings, "0,1,1,1,0,1,0,0,0,0,0,1,1,0,0,1"},
        {"letters", " -Wax+gp", kC, kCcWarnings, "0,0,0,1,1,0,1,0,0,0,0,1,1,0,0,1"},
        {"the + is not looked at", " -Wgpa", kC, kCcWarnings, "0,0,0,1,1,1,1,0,0,0,0,1,1,0,0,1"},
        {"errors", " -Ecz", kC, kCcErrors, "0,1,1,1,0,1,1"},

        {"no level stays -1", " -g+", kC, kCcDebugOpt, "1,1,0,-1,0"},
        {"-O0 wins, found without its blank", "-O2 -O0", kC, kCcDebugOpt, "0,1,0,0,0"},
        {"time, no preprocessor symbols, no inline", " -O1 -Otime -gtp -Ono_inline", kC, kCcDebugOpt, "0,0,1,1,1"},
        {"-g alone is not -g+", " -O0 -g", kC, kCcDebugOpt, "0,1,0,0,0"},

        {"defines in order, others dropped", " -DA -I..\\inc -DB=2 -O1 -D", kC, kCcPrePro, " -DA -DB=2 -D"},
        {"quoted define with a blank stays whole", " -D\"M=a b\" -O0", kC, kCcPrePro, " -D\"M=a b\""},
        {"via", " -O0 -via opts.via", kC, kCcExtras, " -via opts.via"},
        {"via name is the whole rest", " -via my file.via", kC, kCcExtras, " -via \"my file.via\""},
        {"a quoted via name is not quoted twice", " -via \"my file.via\"", kC, kCcExtras, " -via \"my file.via\""},
    };
    for (const ReadRow& row : rows) {
        EXPECT_EQ(ReadCompilerOptions(row.options, row.c_language)[row.slot], row.expected)
            << row.name << ": \"" << row.options << "\"";
    }
}

TEST(CompilerRead, SoftVfpPlusVfpv2ReadsBackAsSoftVfpPlusVfp) {
    EXPECT_EQ(ReadCompilerOptions(" -fpu SoftVFP+VFPv2 -O0", kC)[kCcTar], "32,5,0,1");
    EXPECT_EQ(EffectiveCompilerOptions(" -fpu SoftVFP+VFPv2 -O0", {}, kC), " -fpu SoftVFP+VFP -O0");
}

TEST(CompilerRead, NoWarningsAndWarnForAllAtTheVeryEndAreNotSeen) {
    EXPECT_EQ(ReadCompilerOptions(" -O0 -W", kC)[kCcWarnings], kDefaultWarnings);
    EXPECT_EQ(EffectiveCompilerOptions(" -O0 -W", {}, kC), " -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -W -O0", {}, kC), " -W -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -O0 -fx", {}, kC), " -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -fx -O0", {}, kC), " -fx -O0");
}

TEST(CompilerRead, WarningLettersInsideADefineAreReadAsWarnings) {
    EXPECT_EQ(EffectiveCompilerOptions(" -O0 -D\"FLAGS= -Wax\"", {}, kC), " -Wax -O0 -D\"FLAGS= -Wax\"");
}

TEST(CompilerRead, ViaNameGoesThroughThePathConversionWithoutItsQuotes) {
    std::string seen;
    PathConverter convert = [&seen](const std::string& name) {
        seen = name;
        return "C:\\Proj dir\\" + name;
    };
    EXPECT_EQ(ReadCompilerOptions(" -via \"a.via\"", kC, convert)[kCcExtras], " -via \"C:\\Proj dir\\a.via\"");
    EXPECT_EQ(seen, "a.via");
}

CompilerSettings Defaults() { return ReadCompilerSettings(" -O0", kC); }

TEST(CompilerWrite, EveryItemInItsFixedOrder) {
    CompilerSettings s = Defaults();
    s.target = {44, 0, 4, 0};
    s.atpcs = {1, 1, 1, 1};
    s.warnings = {1, 1, 0, 0, 1, 0, 1, 1, 1, 1, 1, 0, 0, 1, 1, 0};
    s.errors = {0, 0, 0, 0, 0, 0, 0};
    s.debug_opt = {1, 0, 1, 2, 1};
    s.code_gen = {1, 1, 1, 1, 1};
    s.preprocessor = " -DX=1";
    s.extras = " -via v.via";
    EXPECT_EQ(WriteCompilerOptions(s, kCpp),
              " -embeddedcplusplus -fpu FPA -bi -cpu ARM920T -apcs /rwpi/interwork/ropi/swst -W"
              " -Wabkrqx+gtlnpsiu -Eacfilpz -O2 -Otime -Ono_inline -gtp -g+ -DX=1"
              " -split_ldm -zo -zc -auto_float_constants -fy -via v.via");
}

TEST(CompilerWrite, SingleItems) {
    struct Row {
        const char* name;
        void (*edit)(CompilerSettings&);
        bool c_language;
        const char* expected;
    };
    const Row rows[] = {
        {"defaults", [](CompilerSettings&) {}, kC, " -O0"},
        {"fpu outside the table", [](CompilerSettings& s) { s.target[kTarFpu] = 9; }, kC, " -O0"},
        {"C: other language indexes write nothing", [](CompilerSettings& s) { s.target[kTarLanguage] = 3; }, kC, " -O0"},
        {"C++ strict ansi", [](CompilerSettings& s) { s.target[kTarLanguage] = 1; }, kCpp, " -ansi -strict -W+p -O0"},
        {"no warnings hides warn for all",
         [](CompilerSettings& s) { s.warnings[kWarnNone] = 1, s.warnings[kWarnAll] = 1; }, kC, " -W -O0"},
        {"a and x suppressed, g and p enabled",
         [](CompilerSettings& s) { s.warnings[2] = 0, s.warnings[5] = 0, s.warnings[4] = 1, s.warnings[6] = 1; },
         kC, " -Wax+gp -O0"},
        {"only enabled letters", [](CompilerSettings& s) { s.warnings[8] = 1; }, kC, " -W+u -O0"},
        {"level outside the radios", [](CompilerSettings& s) { s.debug_opt[kDbgLevel] = 3; }, kC, ""},
    };
    for (const Row& row : rows) {
        CompilerSettings s = Defaults();
        row.edit(s);
        EXPECT_EQ(WriteCompilerOptions(s, row.c_language), row.expected) << row.name;
    }
}

// Each position of each integer page, left -1, stops its family's writer
// with the family's text.
template <class Settings, class Write>
void ExpectEveryUnsetPositionFails(const Settings& resolved, Family family, const char* text, Write write) {
    for (const PageDescription& page : DescribePages(family, PageVariant::kToolWide)) {
        for (int position = 0; position < page.value_count; ++position) {
            PageStateSet states = ToPageStates(resolved);
            std::vector<int> values(page.value_count);
            ScanPageState(states[page.slot], values.data(), page.value_count);
            values[position] = kUnset;
            states[page.slot] = FormatPageState(values.data(), page.value_count);
            try {
                write(FromPageStates<Settings>(states));
                ADD_FAILURE() << page.title << " position " << position;
            } catch (const OptionError& e) {
                EXPECT_STREQ(e.what(), text);
            }
        }
    }
}

TEST(Write, AnUnresolvedPositionRaisesTheFamilysError) {
    ExpectEveryUnsetPositionFails(Defaults(), Family::kArmC, "GetTempCCppOption Error",
                                  [](const CompilerSettings& s) { WriteCompilerOptions(s, kC); });
    ExpectEveryUnsetPositionFails(ReadAssemblerSettings(""), Family::kArmAsm, "GetArmAssOption Error",
                                  [](const AssemblerSettings& a) { WriteAssemblerOptions(a); });
    CompilerSettings s = Defaults();
    s.target[kTarProcessor] = kProcessorCount;
    EXPECT_THROW(WriteCompilerOptions(s, kC), OptionError) << "a processor index outside the table";
    EXPECT_THROW(EffectiveAssemblerOptions(" -cpu Cortex", {}), OptionError) << "an unknown tool-wide processor";
}

TEST(CompilerEffective, TargetStatesOverTheToolWideString) {
    struct Row {
        const char* name;
        const char* tool_wide;
        int slot;
        const char* target;
        const char* expected;
    };
    const Row rows[] = {
        {"never stored: tool-wide switches, canonical order", " -g+ -cpu ARM920T -O1 -bi", kCcTar, "",
         " -bi -cpu ARM920T -O1 -g+"},
        {"one control overridden", " -apcs /interwork -O0", kCcAtpcs, "-1,1,-1,-1", " -apcs /interwork/swst -O0"},
        {"short state takes the rest", " -bi -cpu ARM920T -O0", kCcTar, "-1,1", " -fpu VFPv1 -bi -cpu ARM920T -O0"},
        {"target sets the processor", " -cpu Unknown -O0", kCcTar, "43", " -cpu ARM9TDMI -O0"},
        {"target sets the level", " -g+", kCcDebugOpt, "-1,-1,-1,2", " -O2 -g+"},
        {"default processor vanishes", " -cpu ARM7TDMI -O0", kCcTar, "", " -O0"},
        {"unknown switches dropped", " -I..\\inc -O1 -zq -DX -J{Compiler}Include -via a.via", kCcTar, "",
         " -O1 -DX -via a.via"},
        {"defines joined tool-wide first", " -O0 -DW", kCcPrePro, " -DT", " -O0 -DW -DT"},
        {"via texts joined tool-wide first", " -O0 -via w.via", kCcExtras, " -via t.via", " -O0 -via w.via -via t.via"},
    };
    for (const Row& row : rows) {
        PageStateSet target;
        target[row.slot] = row.target;
        EXPECT_EQ(EffectiveCompilerOptions(row.tool_wide, target, kC), row.expected) << row.name;
    }
}

TEST(CompilerEffective, UnresolvedToolWideValuesFailWhenTheTargetLeavesThem) {
    for (const char* tool_wide : {" -cpu ARM1176 -O0", " -g+", ""}) {
        try {
            EffectiveCompilerOptions(tool_wide, {}, kCpp);
            ADD_FAILURE() << tool_wide;
        } catch (const std::runtime_error& e) {
            EXPECT_STREQ(e.what(), "GetTempCCppOption Error") << tool_wide;
        }
    }
}

}  // namespace
}  // namespace ads::options
