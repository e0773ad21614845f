#include "options/compiler_options.h"

#include <gtest/gtest.h>

#include "options/option_error.h"

namespace ads::options {
namespace {

constexpr bool kC = true;
constexpr bool kCpp = false;

// Defaults of each page as a string without any switch of that page reads.
constexpr char kDefaultWarnings[] = "0,0,1,1,0,1,0,0,0,0,0,1,1,0,0,1";

struct ReadRow {
    const char* name;
    const char* options;
    bool c_language;
    int slot;
    const char* expected;
};

void CheckReads(const std::vector<ReadRow>& rows) {
    for (const ReadRow& row : rows) {
        EXPECT_EQ(ReadCompilerOptions(row.options, row.c_language)[row.slot], row.expected)
            << row.name << ": \"" << row.options << "\"";
    }
}

TEST(CompilerRead, TargetAndSourcePage) {
    CheckReads({
        {"defaults", " -O0 -g+", kC, kCcTar, "32,4,0,1"},
        {"big endian", " -bi -O0", kC, kCcTar, "32,4,0,0"},
        {"-bi is found as a prefix", " -bigend", kC, kCcTar, "32,4,0,0"},
        {"processor in the table", " -cpu ARM920T -O0", kC, kCcTar, "44,4,0,1"},
        {"processor at the very end", " -cpu XScale", kC, kCcTar, "14,4,0,1"},
        {"first and last table entries", " -cpu 3", kC, kCcTar, "0,4,0,1"},
        {"last table entry", " -cpu ARM10200E", kC, kCcTar, "61,4,0,1"},
        {"unknown processor stays -1", " -cpu ARM1176", kC, kCcTar, "-1,4,0,1"},
        {"names compare exactly", " -cpu arm920t", kC, kCcTar, "-1,4,0,1"},
        {"a second blank makes the name empty", " -cpu  ARM920T", kC, kCcTar, "-1,4,0,1"},
        {"only the first -cpu counts", " -cpu ARM920T -cpu ARM7", kC, kCcTar, "44,4,0,1"},
        {"fpu FPA", " -fpu FPA", kC, kCcTar, "32,0,0,1"},
        {"fpu VFPv1", " -fpu VFPv1", kC, kCcTar, "32,1,0,1"},
        {"fpu VFPv2", " -fpu VFPv2", kC, kCcTar, "32,2,0,1"},
        {"fpu SoftFPA", " -fpu SoftFPA", kC, kCcTar, "32,3,0,1"},
        {"fpu SoftVFP+VFP", " -fpu SoftVFP+VFP", kC, kCcTar, "32,5,0,1"},
        {"fpu None", " -fpu None", kC, kCcTar, "32,7,0,1"},
        {"fpu unknown is the soft default", " -fpu softvfp", kC, kCcTar, "32,4,0,1"},
        {"SoftFPA wins over FPA when both occur", " -fpu FPA -fpu SoftFPA", kC, kCcTar, "32,3,0,1"},
        {"C strict", " -ansi -strict", kC, kCcTar, "32,4,1,1"},
        {"C -ansi alone is standard C", " -ansi", kC, kCcTar, "32,4,0,1"},
        {"C++ ansi", " -ansi", kCpp, kCcTar, "32,4,0,1"},
        {"C++ strict ansi needs -W+p", " -ansi -strict -W+p", kCpp, kCcTar, "32,4,1,1"},
        {"C++ strict ansi without -W+p is ansi", " -ansi -strict", kCpp, kCcTar, "32,4,0,1"},
        {"C++ nothing is ISO C++", "", kCpp, kCcTar, "32,4,2,1"},
        {"C++ strict", " -cpp -strict", kCpp, kCcTar, "32,4,3,1"},
        {"C++ embedded", " -embeddedcplusplus", kCpp, kCcTar, "32,4,4,1"},
        {"C++ -ansi wins over -cpp -strict", " -cpp -strict -ansi", kCpp, kCcTar, "32,4,0,1"},
    });
}

TEST(CompilerRead, SoftVfpPlusVfpv2ReadsBackAsSoftVfpPlusVfp) {
    EXPECT_EQ(ReadCompilerOptions(" -fpu SoftVFP+VFPv2 -O0", kC)[kCcTar], "32,5,0,1");
    EXPECT_EQ(EffectiveCompilerOptions(" -fpu SoftVFP+VFPv2 -O0", {}, kC), " -fpu SoftVFP+VFP -O0");
}

TEST(CompilerRead, AtpcsWarningsAndErrorsPages) {
    CheckReads({
        {"no -apcs: all boxes off", " -O0 /interwork/ropi", kC, kCcAtpcs, "0,0,0,0"},
        {"interwork and rwpi", " -apcs /rwpi/interwork", kC, kCcAtpcs, "1,0,0,1"},
        {"all four", " -apcs /ropi/rwpi/interwork/swst", kC, kCcAtpcs, "1,1,1,1"},
        {"/noswst is not /swst", " -apcs /noswst", kC, kCcAtpcs, "0,0,0,0"},
        {"boxes anywhere once -apcs is there", " -apcs /ropi -DX/interwork", kC, kCcAtpcs, "1,0,1,0"},

        {"no warning switches", "", kC, kCcWarnings, kDefaultWarnings},
        {"no warnings", " -W -O0", kC, kCcWarnings, "1,0,1,1,0,1,0,0,0,0,0,1,1,0,0,1"},
        {"warn for all", " -fx -O0", kC, kCcWarnings, "0,1,1,1,0,1,0,0,0,0,0,1,1,0,0,1"},
        {"suppressed and enabled letters", " -Wax+gp", kC, kCcWarnings, "0,0,0,1,1,0,1,0,0,0,0,1,1,0,0,1"},
        {"every letter listed", " -Wabkrqx+gtlnpsiu", kC, kCcWarnings, "0,0,0,0,1,0,1,1,1,1,1,0,0,1,1,0"},
        {"the + is not looked at", " -Wgpa", kC, kCcWarnings, "0,0,0,1,1,1,1,0,0,0,0,1,1,0,0,1"},
        {"only the first -W gives letters", " -W -Wab", kC, kCcWarnings, "1,0,1,1,0,1,0,0,0,0,0,1,1,0,0,1"},

        {"no -E: every error on", "", kC, kCcErrors, "1,1,1,1,1,1,1"},
        {"two letters", " -Ecz", kC, kCcErrors, "0,1,1,1,0,1,1"},
        {"every letter", " -Eacfilpz", kC, kCcErrors, "0,0,0,0,0,0,0"},
    });
}

TEST(CompilerRead, NoWarningsAtTheVeryEndIsAnEmptyLetterList) {
    // Without its trailing blank " -W" is no "No Warnings", only an empty list.
    EXPECT_EQ(ReadCompilerOptions(" -O0 -W", kC)[kCcWarnings], kDefaultWarnings);
    EXPECT_EQ(EffectiveCompilerOptions(" -O0 -W", {}, kC), " -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -W -O0", {}, kC), " -W -O0");
}

TEST(CompilerRead, WarnForAllAtTheVeryEndIsNotSeen) {
    EXPECT_EQ(EffectiveCompilerOptions(" -O0 -fx", {}, kC), " -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -fx -O0", {}, kC), " -fx -O0");
}

TEST(CompilerRead, WarningLettersInsideADefineAreReadAsWarnings) {
    const std::string options = " -O0 -D\"FLAGS= -Wax\"";
    EXPECT_EQ(ReadCompilerOptions(options, kC)[kCcWarnings], "0,0,0,1,0,0,0,0,0,0,0,1,1,0,0,1");
    EXPECT_EQ(EffectiveCompilerOptions(options, {}, kC), " -Wax -O0 -D\"FLAGS= -Wax\"");
}

TEST(CompilerRead, DebugOptPage) {
    CheckReads({
        {"defaults string", " -O0 -g+", kC, kCcDebugOpt, "1,1,0,0,0"},
        {"no level stays -1", " -g+", kC, kCcDebugOpt, "1,1,0,-1,0"},
        {"level 1", " -O1", kC, kCcDebugOpt, "0,1,0,1,0"},
        {"level 2", " -O2", kC, kCcDebugOpt, "0,1,0,2,0"},
        {"-O0 wins over -O2", " -O2 -O0", kC, kCcDebugOpt, "0,1,0,0,0"},
        {"level found without its blank", "-O1", kC, kCcDebugOpt, "0,1,0,1,0"},
        {"time", " -O2 -Otime", kC, kCcDebugOpt, "0,1,0,2,1"},
        {"no preprocessor symbols", " -O0 -gtp", kC, kCcDebugOpt, "0,0,0,0,0"},
        {"no inline", " -O0 -Ono_inline", kC, kCcDebugOpt, "0,1,1,0,0"},
        {"-g alone is not -g+", " -O0 -g", kC, kCcDebugOpt, "0,1,0,0,0"},
    });
}

TEST(CompilerRead, CodeGenPreprocessorAndExtrasPages) {
    CheckReads({
        {"each code generation switch", " -fy -zc -split_ldm -auto_float_constants -zo", kC, kCcCodeGen,
         "1,1,1,1,1"},
        {"none", " -O0", kC, kCcCodeGen, "0,0,0,0,0"},
        {"one", " -zo", kC, kCcCodeGen, "0,0,0,0,1"},

        {"defines in order, others dropped", " -DA -I..\\inc -DB=2 -O1 -DC", kC, kCcPrePro, " -DA -DB=2 -DC"},
        {"define at the end without value", " -O0 -D", kC, kCcPrePro, " -D"},
        {"quoted define with a blank stays whole", " -D\"MSG=a b\" -O0", kC, kCcPrePro, " -D\"MSG=a b\""},
        {"no define", " -O0", kC, kCcPrePro, ""},

        {"via file", " -O0 -via opts.via", kC, kCcExtras, " -via opts.via"},
        {"via name is the whole rest", " -via my file.via", kC, kCcExtras, " -via \"my file.via\""},
        {"quoted via name keeps one pair of quotes", " -via \"my file.via\"", kC, kCcExtras,
         " -via \"my file.via\""},
        {"no via", " -O0", kC, kCcExtras, ""},
    });
}

TEST(CompilerRead, ViaNameGoesThroughThePathConversion) {
    PathConverter convert = [](const std::string& name) { return "C:\\Proj dir\\" + name; };
    EXPECT_EQ(ReadCompilerOptions(" -via {Project}x.via", kC, convert)[kCcExtras],
              " -via \"C:\\Proj dir\\{Project}x.via\"");
    std::string seen;
    PathConverter record = [&seen](const std::string& name) {
        seen = name;
        return name;
    };
    ReadCompilerOptions(" -via \"a b.via\"", kC, record);
    EXPECT_EQ(seen, "a b.via") << "the converter sees the name without quotes";
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
        {"defaults write only the level", [](CompilerSettings&) {}, kC, " -O0"},
        {"the default processor is never written",
         [](CompilerSettings& s) { s.target[kTarProcessor] = 32; }, kC, " -O0"},
        {"another processor is", [](CompilerSettings& s) { s.target[kTarProcessor] = 44; }, kC,
         " -cpu ARM920T -O0"},
        {"soft fpu writes nothing", [](CompilerSettings& s) { s.target[kTarFpu] = 4; }, kC, " -O0"},
        {"fpu outside the table writes nothing", [](CompilerSettings& s) { s.target[kTarFpu] = 9; }, kC,
         " -O0"},
        {"C strict", [](CompilerSettings& s) { s.target[kTarLanguage] = 1; }, kC, " -ansi -strict -O0"},
        {"C: any other language index writes nothing",
         [](CompilerSettings& s) { s.target[kTarLanguage] = 3; }, kC, " -O0"},
        {"C++ ansi", [](CompilerSettings& s) { s.target[kTarLanguage] = 0; }, kCpp, " -ansi -O0"},
        {"C++ strict ansi", [](CompilerSettings& s) { s.target[kTarLanguage] = 1; }, kCpp,
         " -ansi -strict -W+p -O0"},
        {"C++ ISO", [](CompilerSettings& s) { s.target[kTarLanguage] = 2; }, kCpp, " -O0"},
        {"C++ strict ISO", [](CompilerSettings& s) { s.target[kTarLanguage] = 3; }, kCpp, " -cpp -strict -O0"},
        {"interwork with rwpi", [](CompilerSettings& s) { s.atpcs = {1, 0, 0, 1}; }, kC,
         " -apcs /rwpi/interwork -O0"},
        {"stack check alone", [](CompilerSettings& s) { s.atpcs = {0, 1, 0, 0}; }, kC, " -apcs /swst -O0"},
        {"no warnings hides warn for all",
         [](CompilerSettings& s) { s.warnings[kWarnNone] = 1, s.warnings[kWarnAll] = 1; }, kC, " -W -O0"},
        {"warn for all", [](CompilerSettings& s) { s.warnings[kWarnAll] = 1; }, kC, " -fx -O0"},
        {"suppressed a and x, enabled g and p",
         [](CompilerSettings& s) { s.warnings[2] = 0, s.warnings[5] = 0, s.warnings[4] = 1, s.warnings[6] = 1; },
         kC, " -Wax+gp -O0"},
        {"only enabled letters", [](CompilerSettings& s) { s.warnings[8] = 1; }, kC, " -W+u -O0"},
        {"errors in letter order", [](CompilerSettings& s) { s.errors[4] = 0, s.errors[5] = 0; }, kC,
         " -Eaz -O0"},
        {"level and time", [](CompilerSettings& s) { s.debug_opt[kDbgLevel] = 1, s.debug_opt[kDbgCriterion] = 1; },
         kC, " -O1 -Otime"},
        {"level outside the radios writes nothing", [](CompilerSettings& s) { s.debug_opt[kDbgLevel] = 3; },
         kC, ""},
        {"debug tables", [](CompilerSettings& s) { s.debug_opt[kDbgTables] = 1; }, kC, " -O0 -g+"},
        {"texts as they stand",
         [](CompilerSettings& s) { s.preprocessor = " -DA -DB", s.extras = " -via \"a b\""; }, kC,
         " -O0 -DA -DB -via \"a b\""},
    };
    for (const Row& row : rows) {
        CompilerSettings s = Defaults();
        row.edit(s);
        EXPECT_EQ(WriteCompilerOptions(s, row.c_language), row.expected) << row.name;
    }
}

TEST(CompilerWrite, AnyUnresolvedPositionRaisesTheCompilerError) {
    for (int slot = kCcTar; slot <= kCcCodeGen; ++slot) {
        PageStateSet states = ToPageStates(Defaults());
        std::string& state = states[slot];
        state.replace(0, state.find(','), "-1");
        try {
            WriteCompilerOptions(CompilerSettingsFromStates(states), kC);
            ADD_FAILURE() << "slot " << slot << " with -1 was written";
        } catch (const OptionError& e) {
            EXPECT_STREQ(e.what(), "GetTempCCppOption Error");
        }
    }
}

TEST(CompilerWrite, ProcessorOutsideTheTableRaisesTheCompilerError) {
    for (int processor : {62, 1000, -2}) {
        CompilerSettings s = Defaults();
        s.target[kTarProcessor] = processor;
        EXPECT_THROW(WriteCompilerOptions(s, kC), OptionError) << processor;
    }
}

TEST(CompilerEffective, UnknownToolWideProcessorFailsUnlessTheTargetSetsOne) {
    PageStateSet target;
    EXPECT_THROW(EffectiveCompilerOptions(" -cpu ARM1176 -O0", target, kC), OptionError);
    target[kCcTar] = "44,-1,-1,-1";
    EXPECT_EQ(EffectiveCompilerOptions(" -cpu ARM1176 -O0", target, kC), " -cpu ARM920T -O0");
}

TEST(CompilerEffective, NoOptimisationLevelFailsUnlessTheTargetSetsOne) {
    PageStateSet target;
    try {
        EffectiveCompilerOptions(" -g+", target, kCpp);
        ADD_FAILURE() << "no level was accepted";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "GetTempCCppOption Error");
    }
    target[kCcDebugOpt] = "-1,-1,-1,2";
    EXPECT_EQ(EffectiveCompilerOptions(" -g+", target, kCpp), " -O2 -g+");
}

TEST(CompilerEffective, ShortTargetStateTakesTheRestFromTheToolWideString) {
    PageStateSet target;
    target[kCcTar] = "-1,1";
    EXPECT_EQ(EffectiveCompilerOptions(" -bi -cpu ARM920T -O0", target, kC),
              " -fpu VFPv1 -bi -cpu ARM920T -O0");
}

TEST(CompilerEffective, TargetStatesOverrideOnlyWhatTheySet) {
    PageStateSet target;
    target[kCcAtpcs] = "-1,1,-1,-1";
    target[kCcErrors] = "0,-1,-1,-1,-1,-1,-1";
    target[kCcPrePro] = " -DTARGET";
    target[kCcExtras] = " -via t.via";
    EXPECT_EQ(EffectiveCompilerOptions(" -apcs /interwork -O1 -DWIDE -via w.via", target, kC),
              " -apcs /interwork/swst -Ec -O1 -DWIDE -DTARGET -via w.via -via t.via");
}

TEST(CompilerEffective, ArmProcessorDefaultVanishesAndOthersStay) {
    EXPECT_EQ(EffectiveCompilerOptions(" -cpu ARM7TDMI -O0", {}, kC), " -O0");
    EXPECT_EQ(EffectiveCompilerOptions(" -cpu ARM920T -O0", {}, kC), " -cpu ARM920T -O0");
}

TEST(CompilerEffective, UnknownSwitchesAreDroppedExceptDefinesAndVia) {
    EXPECT_EQ(EffectiveCompilerOptions(" -I..\\inc -O1 -zq -DX -J{Compiler}Include -via a.via", {}, kC),
              " -O1 -DX -via a.via");
}

TEST(CompilerEffective, ReadingAgainChangesNothing) {
    const char* inputs[] = {
        " -O0 -g+",
        " -g+ -O2 -Otime -cpu ARM920T -fpu VFPv2 -bi -apcs /interwork/rwpi -Wb+n -Ecz -DA=1",
        " -ansi -strict -W+p -fpu SoftVFP+VFPv2 -Wax -O1 -zo -fy -via \"x y.via\"",
        " -embeddedcplusplus -W -fx -O0 -gtp -Ono_inline -split_ldm",
        " -cpp -strict -fx -Wq -O2 -auto_float_constants -zc -D\"M=a b\" -DN",
    };
    for (const char* input : inputs) {
        for (bool c_language : {kC, kCpp}) {
            const std::string once = EffectiveCompilerOptions(input, {}, c_language);
            EXPECT_EQ(EffectiveCompilerOptions(once, {}, c_language), once) << input;
        }
    }
}

}  // namespace
}  // namespace ads::options
