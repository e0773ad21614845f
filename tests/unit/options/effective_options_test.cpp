#include "options/effective_options.h"

#include <gtest/gtest.h>

#include <memory>

#include "options/option_error.h"

namespace ads::options {
namespace {

// Two targets with tool-wide strings on their "Configuration" nodes,
// target-level states under the root, and a C file with its own states.
struct Project {
    std::unique_ptr<ConfigNode> root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* debug = AddTarget("Debug");
    ConfigNode* release = AddTarget("Release");
    ConfigNode* file = new ConfigNode("File");

    Project() {
        release->SetAttribute("ADS_GArmCCParam", " -O2 -Otime -cpu ARM920T");
        auto* c = new ConfigNode("ADS_CParam");
        root->AppendChild(c);
        c->SetAttribute("Debug_ArmC_Tar", "-1,-1,1,0");
        c->SetAttribute("Debug_ThumbC_Debug_Opt", "-1,-1,-1,-1,1");
        c->SetAttribute("Debug_ArmCpp_PrePro", " -DCPP");
        c->SetAttribute("Release_ArmC_Tar", "43");
        auto* a = new ConfigNode("ADS_AsmParam");
        root->AppendChild(a);
        a->SetAttribute("Debug_Asm_Atpcs", "-1,-1,-1,1");

        root->AppendChild(file);
        auto* own = new ConfigNode("ADS_CParam");
        file->AppendChild(own);
        own->SetAttribute("Debug", " -O0 -g+");
        own->SetAttribute("Debug_tool", "2");
        own->SetAttribute("Debug_ArmC_Code_Gen", "1");
        own->SetAttribute("Release_ArmC_Code_Gen", "-1,1");
    }

    ConfigNode* AddTarget(const char* name) {
        ConfigNode* configurations = root->FindChild("Configurations");
        if (configurations == nullptr) root->AppendChild(configurations = new ConfigNode("Configurations"));
        auto* c = new ConfigNode("Configuration");
        c->SetAttribute("Name", name);
        c->SetAttribute("ADS_GArmAsmParam", " -keep -split_ldm -g");
        for (const char* key : {"ADS_GArmCCParam", "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam"}) {
            c->SetAttribute(key, " -O0 -g+");
        }
        configurations->AppendChild(c);
        return c;
    }
};

TEST(EffectiveOptions, EachToolOfATargetWithTargetLevelStates) {
    Project p;
    const std::pair<Tool, const char*> rows[] = {
        {Tool::kArmasm, " -apcs /interwork -keep -split_ldm -g"},
        {Tool::kArmcc, " -ansi -strict -bi -O0 -g+"},
        {Tool::kTcc, " -O0 -Otime -g+"},
        {Tool::kArmcpp, " -O0 -g+ -DCPP"},
        {Tool::kTcpp, " -O0 -g+"},
    };
    for (const auto& [tool, expected] : rows) {
        EXPECT_EQ(EffectiveOptions(tool, p.debug, p.root.get(), "Debug"), expected) << ToolName(tool);
    }
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.release, p.root.get(), "Release"), " -cpu ARM9TDMI -O2 -Otime");
}

TEST(EffectiveOptions, AFilesOwnStatesLieOverTheTargetsOverTheToolWideString) {
    Project p;
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.file, "Debug"), " -ansi -strict -bi -O0 -g+ -fy");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.release, p.file, "Release"), " -cpu ARM9TDMI -O2 -Otime -zc");
    EXPECT_EQ(EffectiveOptions(Tool::kTcc, p.debug, p.file, "Debug"), " -O0 -Otime -g+") << "the target's states alone";
}

TEST(EffectiveOptions, MissingNodesMeanNoStatesAndAnEmptyToolWideString) {
    Project p;
    ConfigNode bare("File");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, &bare, "Debug"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, nullptr, "Debug"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.root.get(), "Other"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmasm, nullptr, nullptr, "Debug"), "");
    ConfigNode no_keys("Configuration");
    EXPECT_EQ(EffectiveOptions(Tool::kArmasm, &no_keys, p.root.get(), "Debug"), " -apcs /interwork");
}

TEST(EffectiveOptions, ErrorsCarryTheTextOfTheirToolFamily) {
    Project p;
    p.debug->SetAttribute("ADS_GArmAsmParam", " -cpu Nope");
    for (Tool tool : {Tool::kArmcc, Tool::kArmcpp, Tool::kTcc, Tool::kTcpp, Tool::kArmasm}) {
        try {
            // No configuration: the compilers find no "-O" level.
            EffectiveOptions(tool, tool == Tool::kArmasm ? p.debug : nullptr, nullptr, "Debug");
            ADD_FAILURE() << ToolName(tool);
        } catch (const OptionError& e) {
            EXPECT_STREQ(e.what(), tool == Tool::kArmasm ? "GetArmAssOption Error" : "GetTempCCppOption Error");
        }
    }
}

// The texts of all layers are joined, tool-wide first and the file's last.
TEST(EffectiveOptions, OnlyTheToolWideViaNameIsConverted) {
    Project p;
    p.debug->SetAttribute("ADS_GArmCCParam", " -O0 -via {Project}wide.via");
    p.root->FindChild("ADS_CParam")->SetAttribute("Debug_ArmC_Extras", " -via {Project}target.via");
    p.file->FirstChild()->SetAttribute("Debug_ArmC_Extras", " -via {Project}file.via");
    PathConverter expand = [](std::string name) { return name.replace(name.find("{Project}"), 9, "C:\\Work\\"); };
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.file, "Debug", expand),
              " -ansi -strict -bi -O0 -fy -via C:\\Work\\wide.via -via {Project}target.via -via {Project}file.via");
}

TEST(EffectiveOptions, EachToolReadsItsOwnToolWideKey) {
    Project p;
    const char* keys[] = {"ADS_GArmAsmParam", "ADS_GArmCCParam", "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam"};
    for (int t = 1; t <= 5; ++t) {
        const Tool tool = static_cast<Tool>(t);
        const std::string own = tool == Tool::kArmasm ? " -xref" : std::string(" -O1 -D") + ToolName(tool);
        p.release->SetAttribute(keys[t - 1], own);
        EXPECT_EQ(EffectiveOptions(tool, p.release, nullptr, "Release"), own) << keys[t - 1];
    }
}

}  // namespace
}  // namespace ads::options
