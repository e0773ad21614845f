#include "options/pages.h"

#include <gtest/gtest.h>

#include <set>

#include "options/compiler_options.h"

namespace ads::options {
namespace {

const Family kAllFamilies[] = {Family::kArmC, Family::kThumbC, Family::kArmCpp, Family::kThumbCpp,
                               Family::kArmAsm};

std::vector<std::string> Titles(const std::vector<PageDescription>& pages) {
    std::vector<std::string> titles;
    for (const PageDescription& p : pages) titles.push_back(p.title);
    return titles;
}

const Control* Find(const PageDescription& page, const std::string& label) {
    for (const Control& c : page.controls) {
        if (c.label == label) return &c;
    }
    return nullptr;
}

TEST(Pages, TabsAndSheetTitlesAreThoseTheUserSees) {
    const std::vector<std::string> compiler = {"Target and Source", "ATPCS", "Warnings", "Errors",
                                               "Debug/Opt", "Preprocessor", "Code Gen", "Extras"};
    for (Family f : {Family::kArmC, Family::kThumbC, Family::kArmCpp, Family::kThumbCpp}) {
        EXPECT_EQ(Titles(DescribePages(f, PageVariant::kToolWide)), compiler);
    }
    EXPECT_EQ(Titles(DescribePages(Family::kArmAsm, PageVariant::kPerTarget)),
              (std::vector<std::string>{"Target", "ATPCS", "Option", "Predefines", "Listing Control", "Extras"}));
    EXPECT_STREQ(SheetTitle(Family::kArmC), "ADS Tools Compiler Option--ARM C Compiler");
    EXPECT_STREQ(SheetTitle(Family::kThumbC), "ADS Tools Compiler Option--Thumb C Compiler");
    EXPECT_STREQ(SheetTitle(Family::kArmCpp), "ADS Tools Compiler Option--ARM C++ Compiler");
    EXPECT_STREQ(SheetTitle(Family::kThumbCpp), "ADS Tools Compiler Option--Thumb C++ Compiler");
    EXPECT_STREQ(SheetTitle(Family::kArmAsm), "ADS Tools Compiler Option--ARM Assembler");
}

// Each position of a page's integer state belongs to exactly one control,
// and a control's slot is its page's slot: a page that forgot a position or
// kept two controls on one would lose or mix values.
TEST(Pages, EveryIntegerPositionHasExactlyOneControl) {
    for (Family family : kAllFamilies) {
        for (const PageDescription& page : DescribePages(family, PageVariant::kPerTarget)) {
            std::multiset<int> positions;
            for (const Control& c : page.controls) {
                if (c.position < 0) continue;
                positions.insert(c.position);
                EXPECT_EQ(c.slot, page.slot) << page.title;
            }
            EXPECT_EQ(static_cast<int>(positions.size()), page.value_count) << page.title;
            for (int p = 0; p < page.value_count; ++p) EXPECT_EQ(positions.count(p), 1u) << page.title << " " << p;
        }
    }
}

TEST(Pages, OnlyPerTargetRadioGroupsOfferTheDefaultLastLevel) {
    for (Family family : kAllFamilies) {
        for (PageVariant variant : {PageVariant::kToolWide, PageVariant::kPerTarget}) {
            for (const PageDescription& page : DescribePages(family, variant)) {
                for (const Control& c : page.controls) {
                    bool has_default = false;
                    for (const Choice& choice : c.choices) {
                        if (choice.label == kDefaultLastLevel) {
                            has_default = true;
                            EXPECT_EQ(choice.value, -1);
                            EXPECT_EQ(&choice, &c.choices.back()) << "the last button";
                        }
                    }
                    const bool wanted = variant == PageVariant::kPerTarget &&
                                        c.kind == ControlKind::kRadioGroup && c.slot >= 0;
                    EXPECT_EQ(has_default, wanted) << page.title << " / " << c.label;
                }
            }
        }
    }
}

TEST(Pages, LabelsAreKeptAsWrittenMisspellingsIncluded) {
    const PageDescription warnings = DescribeCompilerPage(CompilerPage::kWarnings, true, PageVariant::kToolWide);
    ASSERT_EQ(warnings.controls.size(), 16u);
    EXPECT_EQ(warnings.controls[4].label, "Header file not gurded");
    EXPECT_EQ(warnings.controls[12].label, "Member and base \ninits out for order");
    EXPECT_EQ(warnings.controls[14].label, "Implicit virtal");
    EXPECT_EQ(warnings.controls[15].label, "Unused this in \nnon-static member function");
    EXPECT_EQ(warnings.controls[2].group, "Warn for (C and C++)");
    EXPECT_EQ(warnings.controls[11].group, "Warn for (C and C++)");
    EXPECT_EQ(warnings.controls[12].group, "Warn for (C Only)");

    const PageDescription errors = DescribeCompilerPage(CompilerPage::kErrors, true, PageVariant::kToolWide);
    EXPECT_EQ(errors.controls[0].label, "Implicit  Pointer casts");
    EXPECT_EQ(errors.controls[5].label, "Access control violatition");
    EXPECT_EQ(errors.controls[5].group, "Enble  for (C Only)");
    EXPECT_EQ(errors.controls[4].group, "Enable for (C and C++)");

    const PageDescription code = DescribeCompilerPage(CompilerPage::kCodeGen, true, PageVariant::kToolWide);
    EXPECT_NE(Find(code, "Narrow bouble constants to float constants"), nullptr);
    const PageDescription debug = DescribeCompilerPage(CompilerPage::kDebugOpt, true, PageVariant::kToolWide);
    EXPECT_EQ(debug.controls[4].choices[0].label, "For space ");
    const PageDescription option = DescribeAssemblerPage(AssemblerPage::kOption, PageVariant::kToolWide);
    EXPECT_NE(Find(option, "Ignore C_style escape chare"), nullptr);
}

TEST(Pages, CombosListTheTablesOfTheirFamily) {
    const PageDescription c = DescribeCompilerPage(CompilerPage::kTargetAndSource, true, PageVariant::kPerTarget);
    const PageDescription cpp = DescribeCompilerPage(CompilerPage::kTargetAndSource, false, PageVariant::kPerTarget);
    const Control* processor = Find(c, "Architecture Or Processor");
    ASSERT_NE(processor, nullptr);
    ASSERT_EQ(processor->choices.size(), 62u);
    EXPECT_EQ(processor->choices[32].label, "ARM7TDMI");
    EXPECT_EQ(processor->choices[61].label, "ARM10200E");
    EXPECT_EQ(Find(c, "Floating Point")->choices[6].label, "VFPv2 with softvfp calling");
    EXPECT_EQ(Find(c, "Source Language")->choices.size(), 2u);
    ASSERT_EQ(Find(cpp, "Source Language")->choices.size(), 5u);
    EXPECT_EQ(Find(cpp, "Source Language")->choices[4].label, "Embedded C++");

    const PageDescription asm_target = DescribeAssemblerPage(AssemblerPage::kTarget, PageVariant::kPerTarget);
    EXPECT_EQ(Find(asm_target, "Floating Point")->position, 0);
    EXPECT_EQ(Find(asm_target, "Architecture Or Processor")->position, 1);
    const PageDescription listing = DescribeAssemblerPage(AssemblerPage::kListingControl, PageVariant::kToolWide);
    EXPECT_EQ(listing.controls[4].default_text, "79");
    EXPECT_EQ(listing.controls[5].default_text, "66");
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
    EXPECT_EQ(out[kAsmLcPg1], "100");
    EXPECT_EQ(out[kAsmLcPg2], "60");
    EXPECT_EQ(out[kAsmPds], "untouched") << "a page stores only its own slots";
}

TEST(PageModel, ToolWidePagesCarryAnOptionStringThroughUnchanged) {
    const std::string options =
        " -ansi -fpu VFPv1 -bi -cpu ARM920T -apcs /interwork -Wa+n -Ec -O1 -g+ -DX -zo -via a.via";
    const PageStateSet read = ReadCompilerOptions(options, false);
    PageStateSet stored;
    std::vector<PageModel> pages = MakePages(Family::kArmCpp, PageVariant::kToolWide);
    for (PageModel& page : pages) {
        page.Load(read);
        page.Store(stored);
    }
    EXPECT_EQ(stored, read);
    EXPECT_EQ(WriteCompilerOptions(CompilerSettingsFromStates(stored), false), options);
}

TEST(Defines, ListAndTextConvertBothWays) {
    const std::vector<std::string> defines = {"DEBUG", "LEVEL=2", "MSG=hello world"};
    EXPECT_EQ(DefinesText(defines), " -DDEBUG -DLEVEL=2 -D\"MSG=hello world\"");
    EXPECT_EQ(DefineEntries(DefinesText(defines)), defines);
    EXPECT_TRUE(DefineEntries("").empty());
}

TEST(PredefinesEditor, AddRefusesAnExistingVariableAndDisablesAdd) {
    PredefinesEditor editor;
    editor.Load(" -PD \"XA SETA 1\"");
    EXPECT_EQ(editor.Add("A", Directive::kSeta, "2"), PredefinesEditor::AddResult::kExists);
    EXPECT_STREQ(kVariableExistsMessage, "The variable already exists!");
    EXPECT_FALSE(editor.AddEnabled());
    EXPECT_EQ(editor.List().Entries().size(), 1u);

    editor.VariableEdited();
    EXPECT_TRUE(editor.AddEnabled());
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
}

TEST(PredefinesEditor, ValuesMustSuitTheDirective) {
    struct Row {
        Directive directive;
        const char* value;
        bool valid;
    };
    const Row rows[] = {
        {Directive::kSeta, "12", true},      {Directive::kSeta, "-3", true},
        {Directive::kSeta, "0x1F", true},    {Directive::kSeta, "&ff", true},
        {Directive::kSeta, "", false},       {Directive::kSeta, "-", false},
        {Directive::kSeta, "0x", false},     {Directive::kSeta, "12a", false},
        {Directive::kSetl, "{TRUE}", true},  {Directive::kSetl, "{FALSE}", true},
        {Directive::kSetl, "TRUE", false},   {Directive::kSets, "any text", true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(PredefinesEditor::ValidValue(row.directive, row.value), row.valid) << row.value;
    }
    EXPECT_FALSE(PredefinesEditor::ValidVariable("TWO WORDS"));
    EXPECT_FALSE(PredefinesEditor::ValidVariable(""));
    EXPECT_STREQ(DirectiveValueLabel(Directive::kSeta), "Numeric");
    EXPECT_STREQ(DirectiveValueLabel(Directive::kSetl), "Logical");
    EXPECT_STREQ(DirectiveValueLabel(Directive::kSets), "String Value");
}

TEST(Extras, ViaTextQuotesANameWithABlank) {
    EXPECT_EQ(ViaText("opts.via"), " -via opts.via");
    EXPECT_EQ(ViaText("C:\\my dir\\o.via"), " -via \"C:\\my dir\\o.via\"");
    EXPECT_EQ(ViaText(""), "");
    EXPECT_EQ(ViaFile(ViaText("C:\\my dir\\o.via")), "C:\\my dir\\o.via");
    EXPECT_EQ(ViaFile(""), "");
}

}  // namespace
}  // namespace ads::options
