#include "options/page_state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "support/fake_host.h"

namespace ads::options {
namespace {

using ads::testing::FakeHost;

std::string Attr(const ConfigNode* node, const char* name) {
    const char* value = node ? node->GetAttribute(name) : nullptr;
    return value ? value : "<absent>";
}

TEST(PageState, EachSizeIsWrittenWithPlainCommasAndScansBack) {
    for (int count : {4, 5, 6, 7, 16}) {
        std::vector<int> values(count), back(count, 99);
        for (int i = 0; i < count; ++i) values[i] = (i * 7) % 5 - 1;
        const std::string text = FormatPageState(values.data(), count);
        EXPECT_EQ(std::count(text.begin(), text.end(), ','), count - 1);
        EXPECT_EQ(ScanPageState(text, back.data(), count), count);
        EXPECT_EQ(back, values) << text;
    }
    const int four[] = {-1, 1, -1, -1};
    EXPECT_EQ(FormatPageState(four, 4), "-1,1,-1,-1");
}

TEST(PageState, ScansLikeAFormattedScanAndKeepsWhatItDoesNotReach) {
    struct Row {
        const char* name;
        const char* text;
        int read;
        std::array<int, 4> expected;  // starting from 7,7,7,7
    };
    const Row rows[] = {
        {"full state", "1,0,-1,3", 4, {1, 0, -1, 3}},
        {"short state keeps the rest", "2,5", 2, {2, 5, 7, 7}},
        {"empty text", "", 0, {7, 7, 7, 7}},
        {"white space before a number", " 1,\t2,\n3, 4", 4, {1, 2, 3, 4}},
        {"a blank before the comma stops", "1 ,2,3,4", 1, {1, 7, 7, 7}},
        {"signs", "+3,-0,0,0", 4, {3, 0, 0, 0}},
        {"a lone sign stops", "1,-,3,4", 1, {1, 7, 7, 7}},
        {"no number", "x,1,2,3", 0, {7, 7, 7, 7}},
        {"trailing text ignored", "1,2,3,4,5,junk", 4, {1, 2, 3, 4}},
        {"an empty position stops", "1,,3,4", 1, {1, 7, 7, 7}},
        {"clamped to 32 bits", "99999999999,-99999999999,1,1", 4, {2147483647, -2147483647 - 1, 1, 1}},
    };
    for (const Row& row : rows) {
        std::array<int, 4> values = {7, 7, 7, 7};
        EXPECT_EQ(ScanPageState(row.text, values), row.read) << row.name;
        EXPECT_EQ(values, row.expected) << row.name;
    }
}

std::vector<std::string> Keys(const std::string& target, Family family) {
    std::vector<std::string> keys;
    for (int slot = 0; slot < kSlotCount; ++slot) keys.push_back(PageStateKey(target, family, slot));
    return keys;
}

TEST(PageState, KeysJoinTargetFamilyAndPageWithoutSeparators) {
    const std::vector<std::string> unused(8, "");
    std::vector<std::string> c = {"Debug_ArmC_Tar",       "Debug_ArmC_Atpcs",     "Debug_ArmC_Warnings",
                                  "Debug_ArmC_Errors",    "Debug_ArmC_Debug_Opt", "Debug_ArmC_Code_Gen",
                                  "Debug_ArmC_PrePro",    "Debug_ArmC_Extras"};
    c.insert(c.end(), unused.begin(), unused.end());
    EXPECT_EQ(Keys("Debug", Family::kArmC), c);
    std::vector<std::string> a = {"Debug_Asm_Tar",     "Debug_Asm_Atpcs",   "Debug_Asm_Opt",
                                  "Debug_Asm_LC",      "Debug_Asm_LC_PG1",  "Debug_Asm_LC_PG2",
                                  "Debug_Asm_PDS",     "Debug_Asm_Ets"};
    a.insert(a.end(), unused.begin(), unused.end());
    EXPECT_EQ(Keys("Debug", Family::kArmAsm), a);
    EXPECT_EQ(PageStateKey("", Family::kArmC, kCcTar), "_ArmC_Tar");
    EXPECT_EQ(PageStateKey("R", Family::kThumbC, kCcTar), "R_ThumbC_Tar");
    EXPECT_EQ(PageStateKey("R", Family::kArmCpp, kCcTar), "R_ArmCpp_Tar");
    EXPECT_EQ(PageStateKey("R", Family::kThumbCpp, kCcTar), "R_ThumbCpp_Tar");
}

TEST(PageState, LoadReadsPresentKeysOfTheSettingsChildOnly) {
    ConfigNode project("OrvaneProject");
    project.SetAttribute("Debug_ArmC_Atpcs", "1,1,1,1");  // on the owner itself: not read
    auto* states = new ConfigNode("ADS_CParam");
    project.AppendChild(states);
    states->SetAttribute("Debug_ArmC_Tar", "44,-1,-1,-1");
    states->SetAttribute("Debug_ArmC_Errors", "");
    states->SetAttribute("Debug_ThumbC_Warnings", "2");
    states->SetAttribute("_ArmC_Tar", "3,3,3,3");

    PageStateSet set;
    set.fill("kept");
    LoadPageStates(&project, "Debug", Family::kArmC, set);
    EXPECT_EQ(set[kCcTar], "44,-1,-1,-1");
    EXPECT_EQ(set[kCcErrors], "") << "stored empty reads empty";
    EXPECT_EQ(set[kCcAtpcs], "kept") << "an absent key leaves its slot";
    EXPECT_EQ(set[kCcWarnings], "kept") << "another family's key";

    LoadPageStates(&project, "", Family::kArmC, set);
    EXPECT_EQ(set[kCcTar], "3,3,3,3") << "a target without a name";

    PageStateSet untouched;
    untouched.fill("kept");
    LoadPageStates(&project, "Debug", Family::kArmAsm, untouched);  // no ADS_AsmParam child
    LoadPageStates(nullptr, "Debug", Family::kArmC, untouched);
    EXPECT_EQ(std::count(untouched.begin(), untouched.end(), "kept"), kSlotCount);
}

TEST(PageState, LanguageGroupsNameTheirFamilies) {
    using F = Family;
    EXPECT_EQ(FamiliesOf(LanguageGroup::kC), (std::vector<F>{F::kArmC, F::kThumbC}));
    EXPECT_EQ(FamiliesOf(LanguageGroup::kAssembler), (std::vector<F>{F::kArmAsm}));
    EXPECT_EQ(FamiliesOf(LanguageGroup::kCpp), (std::vector<F>{F::kArmCpp, F::kThumbCpp}));
    EXPECT_EQ(FamiliesOf(LanguageGroup::kAll).size(), 5u);
}

std::vector<TargetPageStates> OneTarget() {
    std::vector<TargetPageStates> targets(1);
    targets[0].name = "Debug";
    targets[0].Of(Family::kArmC)[kCcTar] = "44,-1,-1,-1";
    targets[0].Of(Family::kThumbCpp)[kCcExtras] = " -via x.via";
    targets[0].Of(Family::kArmAsm)[kAsmLcPg1] = "100";
    return targets;
}

TEST(PageState, SavingAllLanguagesCreatesMissingChildrenAndCommitsClones) {
    ConfigNode folder("Filter");
    FakeHost host;
    ASSERT_TRUE(SavePageStates(&folder, LanguageGroup::kAll, OneTarget(), host.FindSettingNodeFn(), host.CommitNodeFn()));
    EXPECT_EQ(host.created, (std::vector<std::string>{"ADS_CParam/ADS_CfgFlag", "ADS_AsmParam/ADS_CfgFlag"}));
    const ConfigNode* c = folder.FindChild("ADS_CParam");
    const ConfigNode* a = folder.FindChild("ADS_AsmParam");
    ASSERT_EQ(host.commits.size(), 2u);
    EXPECT_EQ(host.commits[0].node, c);
    EXPECT_EQ(host.commits[1].node, a);
    EXPECT_FALSE(host.commits[0].edited_is_node || host.commits[1].edited_is_node) << "never edited in place";
    EXPECT_EQ(Attr(c, "Debug_ArmC_Tar"), "44,-1,-1,-1");
    EXPECT_EQ(Attr(c, "Debug_ThumbCpp_Extras"), " -via x.via");
    EXPECT_EQ(Attr(c, "Debug_ArmC_Warnings"), "") << "empty slots are written too";
    EXPECT_EQ(Attr(a, "Debug_Asm_LC_PG1"), "100");
    EXPECT_EQ(c->AttributeCount(), 1u + 4u * 8u) << "the host's flag and eight pages of four families";
    EXPECT_EQ(a->AttributeCount(), 1u + 8u);

    std::vector<TargetPageStates> loaded(1);
    loaded[0].name = "Debug";
    LoadPageStates(&folder, LanguageGroup::kAll, loaded);
    EXPECT_EQ(loaded[0].sets, OneTarget()[0].sets);
}

TEST(PageState, SavingOneLanguageWritesOnlyAnExistingChild) {
    ConfigNode file("File");
    FakeHost host;
    EXPECT_FALSE(SavePageStates(&file, LanguageGroup::kC, OneTarget(), host.FindSettingNodeFn(), host.CommitNodeFn()));
    EXPECT_TRUE(host.created.empty() && host.commits.empty());
    EXPECT_EQ(file.FirstChild(), nullptr);

    auto* child = new ConfigNode("ADS_CParam");
    file.AppendChild(child);
    child->SetAttribute("Debug", " -O1");
    EXPECT_TRUE(SavePageStates(&file, LanguageGroup::kC, OneTarget(), host.FindSettingNodeFn(), host.CommitNodeFn()));
    EXPECT_EQ(Attr(child, "Debug"), " -O1");
    EXPECT_EQ(Attr(child, "Debug_ArmC_Tar"), "44,-1,-1,-1");
    EXPECT_EQ(Attr(child, "Debug_ThumbC_Tar"), "");
    EXPECT_EQ(Attr(child, "Debug_ArmCpp_Tar"), "<absent>") << "group 1 is the C families only";
}

TEST(PageState, LocalConfigureIsTheOrOfThePagesChangedFlags) {
    const std::pair<std::vector<bool>, const char*> rows[] = {
        {{false, false}, "0"}, {{false, true, false}, "1"}, {{}, "0"}};
    for (const auto& [changed, stored] : rows) {
        ConfigNode node("ADS_CParam");
        node.SetAttribute("LocalConfigure", "7");
        FakeHost host;
        EXPECT_EQ(CommitLocalConfigure(&node, changed, host.CommitNodeFn()), stored[0] == '1');
        ASSERT_EQ(host.commits.size(), 1u);
        EXPECT_FALSE(host.commits[0].edited_is_node);
        EXPECT_EQ(Attr(&node, "LocalConfigure"), stored);
    }
}

}  // namespace
}  // namespace ads::options
