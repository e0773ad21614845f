#include "options/assembler_options.h"

#include <gtest/gtest.h>

namespace ads::options {
namespace {

TEST(AssemblerRead, EachPageBySubstringSearch) {
    struct Row {
        const char* name;
        const char* options;
        int slot;
        const char* expected;
    };
    const Row rows[] = {
        {"defaults", " -keep -split_ldm -g", kAsmTar, "4,32,1,0"},
        {"fpu first, processor second", " -cpu ARM920T -fpu VFPv2", kAsmTar, "2,44,1,0"},
        {"big endian, thumb", " -bi -16", kAsmTar, "4,32,0,1"},
        {"unknown processor", " -cpu Cortex", kAsmTar, "4,-1,1,0"},

        {"no -apcs: stack off", " -keep /ropi", kAsmAtpcs, "1,0,0,0,0,0"},
        {"/swstna is tested before /swst", " -apcs /swstna", kAsmAtpcs, "2,0,0,0,0,0"},
        {"/noswst is neither", " -apcs /noswst", kAsmAtpcs, "1,0,0,0,0,0"},
        {"boxes", " -apcs /rwpi/interwork/ropi", kAsmAtpcs, "1,0,0,1,1,1"},
        {"none", " -regnames none -apcs none", kAsmAtpcs, "1,1,1,0,0,0"},

        {"default string", " -keep -split_ldm -g", kAsmOpt, "0,0,1,1,0,1"},
        {"listing defaults", "", kAsmLc, "0,1,0,0"},
        {"listing switches", " -liston -noterse -xref -length 0", kAsmLc, "1,0,1,1"},
        {"another length is no continuous page", " -length 60", kAsmLc, "0,1,0,0"},
        {"width value", " -width 100 -xref", kAsmLcPg1, "100"},
        {"length value", " -length 60", kAsmLcPg2, "60"},

        {"quoted entries", " -PD \"A SETA 1\" -PD \"B SETL {TRUE}\"", kAsmPds, " -PD \"A SETA 1\" -PD \"B SETL {TRUE}\""},
        {"entry without blank loses its quotes", " -PD \"X\"", kAsmPds, " -PD X"},
        {"an entry runs to its closing quote", " -PD \"S SETS a -PD b\" -g", kAsmPds, " -PD \"S SETS a -PD b\""},
        {"-PD at the end is no entry", " -g -PD", kAsmPds, ""},
        {"via with blank", " -via C:\\my dir\\a.via", kAsmEts, " -via \"C:\\my dir\\a.via\""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(ReadAssemblerOptions(row.options)[row.slot], row.expected) << row.name << ": \"" << row.options << "\"";
    }
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
        {"defaults", [](AssemblerSettings&) {}, ""},
        {"software stack off alone writes no -apcs", [](AssemblerSettings& a) { a.atpcs[kAsmSoftwareStack] = 1; }, ""},
        {"interwork, stack off", [](AssemblerSettings& a) { a.atpcs[kAsmInterwork] = 1; }, " -apcs /interwork"},
        {"-apcs none wins over every other box", [](AssemblerSettings& a) { a.atpcs = {0, 1, 0, 1, 1, 1}; }, " -apcs none"},
        {"width 79 is the assembler's own default", [](AssemblerSettings& a) { a.width = "79"; }, ""},
        {"width 100", [](AssemblerSettings& a) { a.width = "100"; }, " -width 100"},
        {"the page length alone is never written", [](AssemblerSettings& a) { a.length = "60"; }, ""},
        {"fpu written, default processor not", [](AssemblerSettings& a) { a.target = {0, 32, 1, 0}; }, " -fpu FPA"},
    };
    for (const Row& row : rows) {
        AssemblerSettings a = Defaults();
        row.edit(a);
        EXPECT_EQ(WriteAssemblerOptions(a), row.expected) << row.name;
    }
}

TEST(AssemblerEffective, TargetStatesUseTheAssemblerLayout) {
    PageStateSet target;
    target[kAsmTar] = "0,44";  // FPA, ARM920T
    target[kAsmLcPg1] = "120";
    target[kAsmPds] = " -PD \"T SETA 2\"";
    target[kAsmEts] = " -via t.via";
    EXPECT_EQ(EffectiveAssemblerOptions(" -16 -width 100 -PD \"W SETL {TRUE}\" -via w.via", target),
              " -16 -cpu ARM920T -fpu FPA -PD \"W SETL {TRUE}\" -PD \"T SETA 2\" -width 120 -via w.via -via t.via");
    EXPECT_EQ(EffectiveAssemblerOptions(" -width 100", {}), " -width 100") << "an empty width takes the tool-wide one";
}

TEST(Predefines, EntriesAreQuotedAndReadBack) {
    EXPECT_EQ(PredefineSwitch(PredefineEntry("DEBUG", Directive::kSetl, "{TRUE}")), " -PD \"DEBUG SETL {TRUE}\"");
    EXPECT_EQ(PredefineSwitch("X"), " -PD X");
    const std::vector<std::string> entries = {"A SETA 0x10", "S SETS \"hi there\"", "L SETL {FALSE}"};
    EXPECT_EQ(PredefineEntries(PredefinesText(entries)), entries);
}

TEST(Predefines, AddRefusesAVariableContainedInAnyEntry) {
    const std::vector<std::string> entries = {"XA SETA 1", "FLAG SETL {TRUE}"};
    const std::pair<const char*, bool> rows[] = {
        {"XA", true}, {"A", true} /* inside "XA SETA 1": a plain substring test */, {"LAG", true},
        {"SETA", true}, {"X", false} /* followed by "A", not by a blank */, {"NEW", false}};
    for (const auto& [variable, exists] : rows) EXPECT_EQ(VariableExists(entries, variable), exists) << variable;
}

}  // namespace
}  // namespace ads::options
