#include "options/settings_dialog_model.h"

#include <gtest/gtest.h>

#include <memory>

#include "config/defaults.h"
#include "support/fake_host.h"
#include "options/effective_options.h"

namespace ads::options {
namespace {

std::string Attr(const ConfigNode* node, const char* key) {
    const char* v = node != nullptr ? node->GetAttribute(key) : nullptr;
    return v != nullptr ? v : "<none>";
}

// A target "Debug" with the new-target strings, a folder "drv" holding the
// C file "drv\a.c" (with its settings child, as adding a file makes it).
struct Project {
    std::unique_ptr<ConfigNode> root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* configuration = new ConfigNode("Configuration");
    ConfigNode* folder = new ConfigNode("Filter");
    ConfigNode* file = new ConfigNode("File");
    testing::FakeHost host;

    Project() {
        auto* all = new ConfigNode("Configurations");
        root->AppendChild(all);
        all->AppendChild(configuration);
        configuration->SetAttribute("Name", "Debug");
        const config::OptionModel d = config::BuiltinDefaults();
        configuration->SetAttribute("ADS_GArmCCParam", d.armcc_params);
        configuration->SetAttribute("ADS_GThmCCParam", d.tcc_params);
        configuration->SetAttribute("ADS_GArmAsmParam", d.armasm_params);
        configuration->SetAttribute("ADS_LNKPARAM", "");
        configuration->SetAttribute("ADS_FromELFParam", d.fromelf_params);
        auto* files = new ConfigNode("Files");
        root->AppendChild(files);
        files->AppendChild(folder);
        folder->SetAttribute("Name", "drv");
        folder->AppendChild(file);
        file->SetAttribute("RelativePath", "drv\\a.c");
        file->SetAttribute("FileType", "1");
        file->AppendChild(new ConfigNode("ADS_CParam"));
    }

    std::unique_ptr<SettingsDialogModel> Open(int scope, ConfigNode* node) {
        DialogContext c{root.get(), configuration, node, "Debug", {}, &host};
        return std::make_unique<SettingsDialogModel>(scope, c, &MakeItemPage);
    }
};

TEST(SettingsDialogModel, EachScopeBuildsItsTree) {
    struct Row {
        int scope;
        const char* tree;  // image, label; a page is indented
    } rows[] = {
        {8, "2 Target| 1 Select CPU| 1 Target Settings| 1 Access Paths| 1 File Mappings| 1 ARM Target|"
            "0 Language Setting| 1 ARM Assembler| 1 ARM C Compiler| 1 ARM C++ Compiler| 1 Thumb C Compiler|"
            " 1 Thumb C++ Compiler|0 Linker| 1 ARM Linker| 1 ARM FromELF|0 Debuger| 1 ARM Debug|"},
        {7, "2 Target| 1 Property|0 Language Setting| 1 ARM Assembler| 1 ARM C Compiler| 1 ARM C++ Compiler|"
            " 1 Thumb C Compiler| 1 Thumb C++ Compiler|"},
        {1, "2 Target| 1 Property|0 Language Setting| 1 ARM C Compiler| 1 Thumb C Compiler|"},
        {3, "2 Target| 1 Property|0 Language Setting| 1 ARM C++ Compiler| 1 Thumb C++ Compiler|"},
        {2, "2 Target| 1 Property|0 Language Setting| 1 ARM Assembler|"},
        {0, "2 Target| 1 Property|"},
        {5, "2 Target| 1 Property|"},
    };
    for (const Row& row : rows) {
        std::string tree;
        for (const TreeItem& t : SettingsTree(row.scope)) {
            tree += std::string(t.depth, ' ') + std::to_string(t.image) + " " + t.label + "|";
        }
        EXPECT_EQ(tree, row.tree) << "scope " << row.scope;
    }
}

TEST(SettingsDialogModel, SelectionShowsCaptionAndTabs) {
    Project p;
    auto d = p.Open(8, p.root.get());
    struct Row {
        const char* item;
        const char* caption;
        const char* tabs;
    } rows[] = {
        {"ARM Linker", "ADS Tools Compiler Option--ARM Linker", "Output|Option|Layout|Listing|Extras|"},
        {"ARM Assembler", "ADS Tools Compiler Option--ARM Assembler",
         "Target|ATPCS|Option|Predefines|Listing Control|Extras|"},
        {"Thumb C Compiler", "ADS Tools Compiler Option--Thumb C Compiler",
         "Target and Source|ATPCS|Warnings|Errors|Debug/Opt|Preprocessor|Code Gen|Extras|"},
        {"ARM FromELF", "ADS Tools ARM FromELF", ""},
        {"ARM Debug", "ADS Tools ARM Debug", ""},
        {"Linker", "", ""},
        {"Target", "", ""},
    };
    for (const Row& row : rows) {
        ASSERT_EQ(d->Select(row.item), "");
        std::string tabs;
        for (const std::string& t : d->Tabs()) tabs += t + "|";
        EXPECT_EQ(d->Caption(), row.caption) << row.item;
        EXPECT_EQ(tabs, row.tabs) << row.item;
        EXPECT_EQ(d->ShownPage() == nullptr, std::string(row.caption).empty()) << row.item;
    }
    // "Layout" is a tab only while the link type is "Simple"; a hidden
    // selected tab gives way to the first.
    ASSERT_EQ(d->Select("ARM Linker"), "");
    ASSERT_EQ(d->SelectTab("Layout"), "");
    ASSERT_EQ(d->SelectTab("Output"), "");
    ASSERT_EQ(d->Set("Link type", "Partie"), "");
    EXPECT_NE(d->SelectTab("Layout"), "");
    EXPECT_EQ(d->Tabs().size(), 4u);
}

TEST(SettingsDialogModel, WholeTargetEditsTheToolWideStrings) {
    Project p;
    auto d = p.Open(8, p.root.get());
    const std::pair<const char*, const char*> steps[] = {
        {"ARM Linker", ""}, {"#Output", ""}, {"Ropi", "1"}, {"#Option", ""}, {"Image entry point", "0x100"},
        {"#Listing", ""}, {"Image map", "1"}, {"ARM FromELF", ""}, {"Include debug sections in object", "0"},
        {"Output Format", "Plain binary"}};
    for (const auto& [what, value] : steps) {
        std::string refused;
        if (*value != 0) refused = d->Set(what, value);
        else if (*what == '#') refused = d->SelectTab(what + 1);
        else refused = d->Select(what);
        ASSERT_EQ(refused, "") << what;
    }
    std::string linker;
    ASSERT_TRUE(d->CommandLine("armlink", &linker));
    EXPECT_EQ(Attr(p.configuration, "ADS_LNKPARAM"), "") << "nothing is saved before Apply";
    ASSERT_EQ(d->Apply(), "");
    const std::string saved = Attr(p.configuration, "ADS_LNKPARAM");
    EXPECT_EQ(saved, linker);
    const size_t ropi = saved.find(" -ropi"), entry = saved.find(" -entry 0x100"), map = saved.find(" -map");
    EXPECT_TRUE(ropi < entry && entry < map && map != std::string::npos) << saved;
    EXPECT_EQ(Attr(p.configuration, "ADS_FromELFParam"), " -nodebug -bin");
    EXPECT_TRUE(d->Saved());

    // A compiler page of the whole target rewrites the tool-wide string;
    // Default reads the page from the new-target string again.
    ASSERT_EQ(d->Select("ARM C Compiler"), "");
    ASSERT_EQ(d->SelectTab("Debug/Opt"), "");
    ASSERT_EQ(d->Set("Optimization Level", "ALL (poor debug view,best code)"), "");
    std::string armcc;
    ASSERT_TRUE(d->CommandLine("armcc", &armcc));
    EXPECT_NE(armcc.find(" -O2"), std::string::npos) << armcc;
    d->Default();
    ASSERT_TRUE(d->CommandLine("armcc", &armcc));
    EXPECT_NE(armcc.find(" -O0"), std::string::npos) << armcc;
    ASSERT_EQ(d->Set("Optimization Level", "1"), "");
    ASSERT_EQ(d->Apply(), "");
    EXPECT_NE(Attr(p.configuration, "ADS_GArmCCParam").find(" -O1"), std::string::npos);
    EXPECT_EQ(Attr(p.configuration, "ADS_GThmCCParam"), config::BuiltinDefaults().tcc_params)
        << "a family that did not change is not rewritten";
}

TEST(SettingsDialogModel, AFileOrFolderKeepsItsOwnStates) {
    struct Row {
        const char* name;
        int scope;
        bool on_file;
    } rows[] = {{"file", 1, true}, {"folder", 7, false}};
    for (const Row& row : rows) {
        Project p;
        ConfigNode* node = row.on_file ? p.file : p.folder;
        auto d = p.Open(row.scope, node);
        ASSERT_EQ(d->Select("ARM C Compiler"), "");
        ASSERT_EQ(d->SelectTab("Code Gen"), "");
        ASSERT_EQ(d->Set("Plain char is signed", "1"), "");
        std::string shown;
        ASSERT_TRUE(d->CommandLine("armcc", &shown));
        EXPECT_NE(shown.find(" -zc"), std::string::npos) << row.name << ": " << shown;
        ASSERT_EQ(d->Apply(), "");
        const ConfigNode* states = node->FindChild("ADS_CParam");
        ASSERT_NE(states, nullptr) << row.name;
        EXPECT_EQ(Attr(states, "Debug_ArmC_Code_Gen"), "-1,1,-1,-1,-1") << row.name;
        EXPECT_EQ(Attr(states, "LocalConfigure"), "1") << row.name;
        // The build computes the same string from what was saved.
        EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.configuration, p.file, "Debug"), shown) << row.name;
        // Default puts the page back to the level above.
        d->Default();
        EXPECT_EQ(d->ShownPage()->Get(1), "-1") << row.name;
    }
}

TEST(SettingsDialogModel, RefusalsNameWhatWasRefusedAndChangeNothing) {
    Project p;
    auto d = p.Open(8, p.root.get());
    struct Row {
        const char* item;
        const char* tab;
        const char* label;
        const char* value;
        const char* reason;  // a part of the refusal
    } rows[] = {
        {"Nowhere", nullptr, nullptr, nullptr, "no item \"Nowhere\" in the tree (items: \"Target\", \"Select CPU\""},
        {"ARM Linker", "Map", nullptr, nullptr, "no tab \"Map\" on \"ARM Linker\" (tabs: \"Output\""},
        {"ARM Linker", "Output", "Rope", "1", "no control \"Rope\" on \"ARM Linker\" tab \"Output\""},
        {"ARM Linker", "Output", "Ropi", "yes", "takes 0 or 1"},
        {"ARM Linker", "Output", "Link type", "Complex", "takes one of: \"Partie\", \"Simple\", \"Scattered\""},
        {"ARM FromELF", nullptr, "Verbose", "1", "\"Verbose\" on \"ARM FromELF\" is disabled"},
        {"Linker", nullptr, "Ropi", "1", "\"Linker\" shows no page"},
        {"ARM Assembler", "Listing Control", "Page", "10", "no control \"Page\""},
    };
    for (const Row& row : rows) {
        std::string refused = d->Select(row.item);
        if (refused.empty() && row.tab != nullptr) refused = d->SelectTab(row.tab);
        if (refused.empty() && row.label != nullptr) refused = d->Set(row.label, row.value);
        EXPECT_NE(refused.find(row.reason), std::string::npos) << refused;
    }
    ASSERT_EQ(d->Apply(), "");
    EXPECT_TRUE(p.host.commits.empty());
    EXPECT_FALSE(d->Saved());
}

}  // namespace
}  // namespace ads::options
