#include "options/pages.h"

#include <gtest/gtest.h>

#include "options/compiler_options.h"
#include "options/fromelf_options.h"
#include "options/linker_options.h"

namespace ads::options {
namespace {

const Family kAllFamilies[] = {Family::kArmC, Family::kThumbC, Family::kArmCpp, Family::kThumbCpp, Family::kArmAsm};

const Control& Find(const PageDescription& page, const std::string& label) {
    for (const Control& c : page.controls) {
        if (c.label == label) return c;
    }
    static const Control kMissing{ControlKind::kButton, "<missing>", "", -1, -1, {}, {}, {}};
    ADD_FAILURE() << page.title << " has no control " << label;
    return kMissing;
}

TEST(Pages, TabsAndSheetTitlesAreThoseTheUserSees) {
    const std::vector<std::string> compiler = {"Target and Source", "ATPCS",        "Warnings", "Errors",
                                               "Debug/Opt",         "Preprocessor", "Code Gen", "Extras"};
    const std::vector<std::string> assembler = {"Target", "ATPCS", "Option", "Predefines", "Listing Control", "Extras"};
    for (Family f : kAllFamilies) {
        std::vector<std::string> titles;
        for (const PageDescription& p : DescribePages(f, PageVariant::kToolWide)) titles.push_back(p.title);
        EXPECT_EQ(titles, f == Family::kArmAsm ? assembler : compiler);
    }
    EXPECT_STREQ(SheetTitle(Family::kThumbCpp), "ADS Tools Compiler Option--Thumb C++ Compiler");
    EXPECT_STREQ(SheetTitle(Family::kArmAsm), "ADS Tools Compiler Option--ARM Assembler");
}

// A position without a control, or with two, would lose or mix values.
TEST(Pages, EveryIntegerPositionHasExactlyOneControlAndOnlyPerTargetRadiosADefault) {
    for (Family family : kAllFamilies) {
        for (PageVariant variant : {PageVariant::kToolWide, PageVariant::kPerTarget}) {
            for (const PageDescription& page : DescribePages(family, variant)) {
                std::vector<int> controls_at(page.value_count, 0);
                for (const Control& c : page.controls) {
                    if (c.position >= 0) {
                        ASSERT_LT(c.position, page.value_count) << page.title;
                        ++controls_at[c.position];
                        EXPECT_EQ(c.slot, page.slot) << page.title;
                    }
                    const bool has_default = !c.choices.empty() && c.choices.back().label == kDefaultLastLevel &&
                                             c.choices.back().value == -1;
                    EXPECT_EQ(has_default,
                              variant == PageVariant::kPerTarget && c.kind == ControlKind::kRadioGroup && c.slot >= 0)
                        << page.title << " / " << c.label;
                }
                EXPECT_EQ(controls_at, std::vector<int>(page.value_count, 1)) << page.title;
            }
        }
    }
}

TEST(Pages, MisspelledLabelsAreKeptAsWritten) {
    const PageDescription w = DescribeCompilerPage(CompilerPage::kWarnings, true, PageVariant::kToolWide);
    const PageDescription e = DescribeCompilerPage(CompilerPage::kErrors, true, PageVariant::kToolWide);
    EXPECT_EQ(w.controls[4].label, "Header file not gurded");
    EXPECT_EQ(w.controls[12].label, "Member and base \ninits out for order");
    EXPECT_EQ(w.controls[12].group, "Warn for (C Only)");
    EXPECT_EQ(e.controls[0].label, "Implicit  Pointer casts");
    EXPECT_EQ(e.controls[5].group, "Enble  for (C Only)");
    Find(DescribeCompilerPage(CompilerPage::kCodeGen, true, PageVariant::kToolWide),
         "Narrow bouble constants to float constants");
    Find(DescribeAssemblerPage(AssemblerPage::kOption, PageVariant::kToolWide), "Ignore C_style escape chare");
    Find(SwitchPage(kLinkerRules[1]).Describe(), "Include debugging informat");
    Find(SwitchPage(kLinkerRules[3]).Describe(), "Section Cross-referer");
    EXPECT_EQ(SwitchPage(kLinkerRules[0]).Describe().controls[0].choices[0].label, "Partie");
    EXPECT_EQ(SwitchPage(kFromElfRules).Describe().controls[1].choices[6].label, "Text imformation");
}

TEST(Pages, TheAssemblerTargetPageKeepsFpuFirstAndTheCppLanguageComboHasFiveEntries) {
    const PageDescription a = DescribeAssemblerPage(AssemblerPage::kTarget, PageVariant::kPerTarget);
    EXPECT_EQ(Find(a, "Floating Point").position, 0);
    EXPECT_EQ(Find(a, "Architecture Or Processor").position, 1);
    EXPECT_EQ(Find(a, "Architecture Or Processor").choices.at(32).label, "ARM7TDMI");
    const auto language = [](bool c) {
        return Find(DescribeCompilerPage(CompilerPage::kTargetAndSource, c, PageVariant::kToolWide), "Source Language");
    };
    EXPECT_EQ(language(true).choices.size(), 2u);
    EXPECT_EQ(language(false).choices.at(4).label, "Embedded C++");
}

TEST(PageModel, LoadsStoresAndTellsWhetherItChanged) {
    PageModel page(DescribeAssemblerPage(AssemblerPage::kListingControl, PageVariant::kPerTarget));
    PageStateSet states;
    states[kAsmLc] = "1,-1";
    states[kAsmLcPg1] = "100";
    page.Load(states);
    EXPECT_EQ(page.Value(kAsmListOn), 1);
    EXPECT_EQ(page.Value(kAsmXref), -1) << "a short state leaves -1";
    EXPECT_EQ(page.Text(kAsmLcPg1), "100");
    EXPECT_FALSE(page.Changed());
    page.SetValue(kAsmXref, 1);
    EXPECT_TRUE(page.Changed());
    page.SetValue(kAsmXref, -1);
    EXPECT_FALSE(page.Changed()) << "back to what was loaded";
    page.SetText(kAsmLcPg2, "60");
    EXPECT_TRUE(page.Changed());

    PageStateSet out;
    out[kAsmPds] = "untouched";
    page.Store(out);
    EXPECT_EQ(out[kAsmLc], "1,-1,-1,-1");
    EXPECT_EQ(out[kAsmLcPg2], "60");
    EXPECT_EQ(out[kAsmPds], "untouched") << "a page stores only its own slots";
}

TEST(PageModel, ToolWidePagesCarryAnOptionStringThroughUnchanged) {
    const std::string options = " -ansi -fpu VFPv1 -bi -cpu ARM920T -apcs /interwork -Wa+n -Ec -O1 -g+ -DX -zo -via a.via";
    const PageStateSet read = ReadCompilerOptions(options, false);
    PageStateSet stored;
    for (PageModel& page : MakePages(Family::kArmCpp, PageVariant::kToolWide)) {
        page.Load(read);
        page.Store(stored);
    }
    EXPECT_EQ(stored, read);
    EXPECT_EQ(WriteCompilerOptions(FromPageStates<CompilerSettings>(stored), false), options);
}

TEST(ListPages, DefinesAndViaFilesConvertBothWays) {
    const std::vector<std::string> defines = {"DEBUG", "LEVEL=2", "MSG=hello world"};
    EXPECT_EQ(DefinesText(defines), " -DDEBUG -DLEVEL=2 -D\"MSG=hello world\"");
    EXPECT_EQ(DefineEntries(DefinesText(defines)), defines);
    EXPECT_EQ(ViaText("C:\\my dir\\o.via"), " -via \"C:\\my dir\\o.via\"");
    EXPECT_EQ(ViaFile(ViaText("C:\\my dir\\o.via")), "C:\\my dir\\o.via");
    EXPECT_EQ(ViaText(""), "");
}

TEST(PredefinesEditor, AddRefusesAnExistingVariableAndManagesItsButtons) {
    PredefinesEditor editor;
    editor.Load(" -PD \"XA SETA 1\"");
    EXPECT_EQ(editor.Add("A", Directive::kSeta, "2"), PredefinesEditor::AddResult::kExists);
    EXPECT_STREQ(kVariableExistsMessage, "The variable already exists!");
    EXPECT_FALSE(editor.AddEnabled());
    EXPECT_EQ(editor.List().Entries().size(), 1u);

    editor.VariableEdited();
    EXPECT_EQ(editor.Add("B", Directive::kSetl, "TRUE"), PredefinesEditor::AddResult::kInvalidValue);
    editor.VariableEdited();
    EXPECT_EQ(editor.Add("B", Directive::kSetl, "{TRUE}"), PredefinesEditor::AddResult::kAdded);
    EXPECT_FALSE(editor.AddEnabled());
    EXPECT_TRUE(editor.DeleteEnabled());
    EXPECT_EQ(editor.List().Selected(), 1);
    EXPECT_EQ(editor.Text(), " -PD \"XA SETA 1\" -PD \"B SETL {TRUE}\"");

    EXPECT_TRUE(editor.Replace("B", Directive::kSets, "on"));
    EXPECT_EQ(editor.List().Entries()[1], "B SETS on");
    EXPECT_TRUE(editor.Delete());
    EXPECT_FALSE(editor.DeleteEnabled());
    EXPECT_FALSE(editor.Delete()) << "nothing selected any more";
    EXPECT_EQ(editor.Text(), " -PD \"XA SETA 1\"");
    EXPECT_STREQ(DirectiveValueLabel(Directive::kSets), "String Value");
}

TEST(PredefinesEditor, ValuesMustSuitTheDirective) {
    const std::tuple<Directive, const char*, bool> rows[] = {
        {Directive::kSeta, "-3", true},   {Directive::kSeta, "0x1F", true}, {Directive::kSeta, "&ff", true},
        {Directive::kSeta, "-", false},   {Directive::kSeta, "0x", false},  {Directive::kSeta, "12a", false},
        {Directive::kSetl, "TRUE", false}, {Directive::kSets, "any text", true}};
    for (const auto& [directive, value, valid] : rows) {
        EXPECT_EQ(PredefinesEditor::ValidValue(directive, value), valid) << value;
    }
    EXPECT_FALSE(PredefinesEditor::ValidVariable("TWO WORDS"));
}

}  // namespace
}  // namespace ads::options
