#include "options/assembler_options.h"

#include <gtest/gtest.h>

#include "options/option_error.h"

namespace ads::options {
namespace {

struct ReadRow {
    const char* name;
    const char* options;
    int slot;
    const char* expected;
};

void CheckReads(const std::vector<ReadRow>& rows) {
    for (const ReadRow& row : rows) {
        EXPECT_EQ(ReadAssemblerOptions(row.options)[row.slot], row.expected)
            << row.name << ": \"" << row.options << "\"";
    }
}

TEST(AssemblerRead, TargetPageHasFpuFirstAndProcessorSecond) {
    CheckReads({
        {"defaults", " -keep -split_ldm -g", kAsmTar, "4,32,1,0"},
        {"processor", " -cpu ARM920T", kAsmTar, "4,44,1,0"},
        {"fpu", " -fpu VFPv2", kAsmTar, "2,32,1,0"},
        {"soft vfp v2 reads as soft vfp", " -fpu SoftVFP+VFPv2", kAsmTar, "5,32,1,0"},
        {"big endian", " -bi", kAsmTar, "4,32,0,0"},
        {"thumb", " -16", kAsmTar, "4,32,1,1"},
        {"unknown processor", " -cpu Cortex", kAsmTar, "4,-1,1,0"},
    });
}

TEST(AssemblerRead, AtpcsPage) {
    CheckReads({
        {"no -apcs: stack off, boxes off", " -keep /ropi", kAsmAtpcs, "1,0,0,0,0,0"},
        {"swst", " -apcs /swst", kAsmAtpcs, "0,0,0,0,0,0"},
        {"swstna is tested before swst", " -apcs /swstna", kAsmAtpcs, "2,0,0,0,0,0"},
        {"noswst is neither", " -apcs /noswst", kAsmAtpcs, "1,0,0,0,0,0"},
        {"boxes", " -apcs /rwpi/interwork/ropi", kAsmAtpcs, "1,0,0,1,1,1"},
        {"calling standard none", " -apcs none", kAsmAtpcs, "1,1,0,0,0,0"},
        {"register names none", " -regnames none", kAsmAtpcs, "1,0,1,0,0,0"},
    });
}

TEST(AssemblerRead, OptionAndListingPages) {
    CheckReads({
        {"default tool-wide string", " -keep -split_ldm -g", kAsmOpt, "0,0,1,1,0,1"},
        {"every box", " -checkreglist -nowarn -g -keep -noesc -split_ldm", kAsmOpt, "1,1,1,1,1,1"},
        {"none", "", kAsmOpt, "0,0,0,0,0,0"},

        {"listing defaults", "", kAsmLc, "0,1,0,0"},
        {"listing switches", " -liston -noterse -xref", kAsmLc, "1,0,1,0"},
        {"continuous page", " -length 0", kAsmLc, "0,1,0,1"},
        {"another length is no continuous page", " -length 60", kAsmLc, "0,1,0,0"},

        {"width default", "", kAsmLcPg1, "79"},
        {"width value", " -width 100 -xref", kAsmLcPg1, "100"},
        {"width at the end without value", " -width", kAsmLcPg1, ""},
        {"length default", "", kAsmLcPg2, "66"},
        {"length value", " -length 60", kAsmLcPg2, "60"},
        {"continuous length", " -length 0", kAsmLcPg2, "0"},
    });
}

TEST(AssemblerRead, PredefinesAndExtrasPages) {
    CheckReads({
        {"quoted entries", " -PD \"A SETA 1\" -PD \"B SETL {TRUE}\"", kAsmPds,
         " -PD \"A SETA 1\" -PD \"B SETL {TRUE}\""},
        {"unquoted entry", " -PD X", kAsmPds, " -PD X"},
        {"quoted entry without blank loses its quotes", " -PD \"X\"", kAsmPds, " -PD X"},
        {"entry runs to its closing quote", " -PD \"S SETS a -PD b\" -g", kAsmPds, " -PD \"S SETS a -PD b\""},
        {"-PD at the end is no entry", " -g -PD", kAsmPds, ""},
        {"via", " -g -via a.via", kAsmEts, " -via a.via"},
        {"via with blank", " -via C:\\my dir\\a.via", kAsmEts, " -via \"C:\\my dir\\a.via\""},
    });
}

AssemblerSettings Defaults() { return ReadAssemblerSettings(""); }

TEST(AssemblerWrite, EveryItemInItsFixedOrder) {
    AssemblerSettings a = Defaults();
    a.target = {2, 44, 0, 1};
    a.atpcs = {2, 0, 1, 1, 1, 1};
    a.option = {1, 1, 1, 1, 1, 1};
    a.listing = {1, 0, 1, 1};
    a.width = "100";
    a.length = "60";
    a.predefines = " -PD \"A SETA 1\"";
    a.extras = " -via x.via";
    EXPECT_EQ(WriteAssemblerOptions(a),
              " -bi -16 -cpu ARM920T -fpu VFPv2 -regnames none -apcs /rwpi/interwork/ropi/swstna"
              " -keep -split_ldm -nowarn -noesc -checkreglist -g -PD \"A SETA 1\" -length 0"
              " -liston -noterse -xref -width 100 -via x.via");
}

TEST(AssemblerWrite, SingleItems) {
    struct Row {
        const char* name;
        void (*edit)(AssemblerSettings&);
        const char* expected;
    };
    const Row rows[] = {
        {"defaults write nothing", [](AssemblerSettings&) {}, ""},
        {"software stack off alone writes no -apcs",
         [](AssemblerSettings& a) { a.atpcs[kAsmSoftwareStack] = 1; }, ""},
        {"software stack on", [](AssemblerSettings& a) { a.atpcs[kAsmSoftwareStack] = 0; }, " -apcs /swst"},
        {"not applicable", [](AssemblerSettings& a) { a.atpcs[kAsmSoftwareStack] = 2; }, " -apcs /swstna"},
        {"interwork with stack off", [](AssemblerSettings& a) { a.atpcs[kAsmInterwork] = 1; },
         " -apcs /interwork"},
        {"-apcs none wins over every other box",
         [](AssemblerSettings& a) { a.atpcs = {0, 1, 0, 1, 1, 1}; }, " -apcs none"},
        {"register names come before -apcs none",
         [](AssemblerSettings& a) { a.atpcs = {1, 1, 1, 0, 0, 0}; }, " -regnames none -apcs none"},
        {"width 79 is the assembler's own default", [](AssemblerSettings& a) { a.width = "79"; }, ""},
        {"width 100", [](AssemblerSettings& a) { a.width = "100"; }, " -width 100"},
        {"empty width", [](AssemblerSettings& a) { a.width = ""; }, ""},
        {"initial state other than 1 writes nothing",
         [](AssemblerSettings& a) { a.target[kAsmTarInitialState] = 2; }, ""},
        {"default processor not written, fpu is",
         [](AssemblerSettings& a) { a.target = {0, 32, 1, 0}; }, " -fpu FPA"},
    };
    for (const Row& row : rows) {
        AssemblerSettings a = Defaults();
        row.edit(a);
        EXPECT_EQ(WriteAssemblerOptions(a), row.expected) << row.name;
    }
}

TEST(AssemblerWrite, PageLengthIsNeverWrittenOnlyTheContinuousPage) {
    AssemblerSettings a = Defaults();
    a.length = "60";
    EXPECT_EQ(WriteAssemblerOptions(a), "");
    a.listing[kAsmContinuous] = 1;
    EXPECT_EQ(WriteAssemblerOptions(a), " -length 0");
    EXPECT_EQ(EffectiveAssemblerOptions(" -length 60 -g", {}), " -g");
}

TEST(AssemblerWrite, TerseOffWritesNoTerse) {
    AssemblerSettings a = Defaults();
    a.listing[kAsmTerse] = 0;
    EXPECT_EQ(WriteAssemblerOptions(a), " -noterse");
}

TEST(AssemblerWrite, AnyUnresolvedPositionRaisesTheAssemblerError) {
    for (int slot : {kAsmTar, kAsmAtpcs, kAsmOpt, kAsmLc}) {
        PageStateSet states = ToPageStates(Defaults());
        states[slot] = "-1" + states[slot].substr(states[slot].find(','));
        try {
            WriteAssemblerOptions(AssemblerSettingsFromStates(states));
            ADD_FAILURE() << "slot " << slot << " with -1 was written";
        } catch (const OptionError& e) {
            EXPECT_STREQ(e.what(), "GetArmAssOption Error");
        }
    }
    AssemblerSettings a = Defaults();
    a.target[kAsmTarProcessor] = 62;
    EXPECT_THROW(WriteAssemblerOptions(a), OptionError);
}

TEST(AssemblerEffective, TargetStatesUseTheAssemblerLayout) {
    PageStateSet target;
    target[kAsmTar] = "0,44,-1,-1";  // FPA, ARM920T
    target[kAsmLcPg1] = "120";
    target[kAsmPds] = " -PD \"T SETA 2\"";
    target[kAsmEts] = " -via t.via";
    EXPECT_EQ(EffectiveAssemblerOptions(" -16 -width 100 -PD \"W SETL {TRUE}\" -via w.via", target),
              " -16 -cpu ARM920T -fpu FPA -PD \"W SETL {TRUE}\" -PD \"T SETA 2\" -width 120"
              " -via w.via -via t.via");
}

TEST(AssemblerEffective, EmptyTargetWidthKeepsTheToolWideWidth) {
    EXPECT_EQ(EffectiveAssemblerOptions(" -width 100", {}), " -width 100");
    PageStateSet target;
    target[kAsmLcPg1] = "79";
    EXPECT_EQ(EffectiveAssemblerOptions(" -width 100", target), "");
}

TEST(AssemblerEffective, UnknownProcessorFailsWithTheAssemblerText) {
    try {
        EffectiveAssemblerOptions(" -cpu Cortex", {});
        ADD_FAILURE() << "unknown processor accepted";
    } catch (const OptionError& e) {
        EXPECT_STREQ(e.what(), "GetArmAssOption Error");
    }
}

TEST(AssemblerEffective, ReadingAgainChangesNothing) {
    const char* inputs[] = {
        " -keep -split_ldm -g",
        " -bi -16 -cpu ARM920T -fpu SoftVFP+VFPv2 -apcs /interwork/swstna -regnames none",
        " -apcs none/ropi -PD \"A SETA 1\" -PD \"B SETS x y\" -length 60 -width 132 -xref",
        " -liston -noterse -length 0 -via \"C:\\a b\\c.via\"",
    };
    for (const char* input : inputs) {
        const std::string once = EffectiveAssemblerOptions(input, {});
        EXPECT_EQ(EffectiveAssemblerOptions(once, {}), once) << input;
    }
}

TEST(Predefines, EntriesAreQuotedWhenTheyHoldABlankOrAQuote) {
    EXPECT_EQ(PredefineEntry("DEBUG", Directive::kSetl, "{TRUE}"), "DEBUG SETL {TRUE}");
    EXPECT_EQ(PredefineSwitch("DEBUG SETL {TRUE}"), " -PD \"DEBUG SETL {TRUE}\"");
    EXPECT_EQ(PredefineSwitch("X"), " -PD X");
    EXPECT_EQ(PredefineSwitch("S SETS \"hi\""), " -PD \"S SETS \\\"hi\\\"\"");
    const std::vector<std::string> entries = {"A SETA 0x10", "S SETS \"hi there\"", "L SETL {FALSE}"};
    EXPECT_EQ(PredefineEntries(PredefinesText(entries)), entries);
}

TEST(Predefines, AddRefusesAVariableContainedInAnyEntry) {
    const std::vector<std::string> entries = {"XA SETA 1", "FLAG SETL {TRUE}"};
    struct Row {
        const char* variable;
        bool exists;
    };
    const Row rows[] = {
        {"XA", true},
        {"A", true},  // inside "XA SETA 1": the test is a plain substring test
        {"FLAG", true},
        {"LAG", true},
        {"X", false},  // "X" is followed by "A", not by a blank
        {"SETA", true},
        {"NEW", false},
    };
    for (const Row& row : rows) EXPECT_EQ(VariableExists(entries, row.variable), row.exists) << row.variable;
}

}  // namespace
}  // namespace ads::options
