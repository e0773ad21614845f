#include "options/effective_options.h"

#include <gtest/gtest.h>

#include <memory>

#include "options/option_error.h"

namespace ads::options {
namespace {

// A project with two targets: tool-wide strings on the "Configuration"
// nodes, target-level page states under the root, and one C file with its
// own states.
struct Project {
    std::unique_ptr<ConfigNode> root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* debug = nullptr;
    ConfigNode* release = nullptr;
    ConfigNode* file = nullptr;

    Project() {
        auto* configurations = new ConfigNode("Configurations");
        root->AppendChild(configurations);
        debug = AddTarget(configurations, "Debug");
        release = AddTarget(configurations, "Release");
        release->SetAttribute("ADS_GArmCCParam", " -O2 -Otime -cpu ARM920T");

        auto* c_states = new ConfigNode("ADS_CParam");
        root->AppendChild(c_states);
        c_states->SetAttribute("Debug_ArmC_Tar", "-1,-1,1,0");
        c_states->SetAttribute("Debug_ThumbC_Debug_Opt", "-1,-1,-1,-1,1");
        c_states->SetAttribute("Debug_ArmCpp_PrePro", " -DCPP");
        c_states->SetAttribute("Release_ArmC_Tar", "43,-1,-1,-1");
        auto* asm_states = new ConfigNode("ADS_AsmParam");
        root->AppendChild(asm_states);
        asm_states->SetAttribute("Debug_Asm_Atpcs", "-1,-1,-1,1");

        file = new ConfigNode("File");
        file->SetAttribute("RelativePath", "src\\main.c");
        file->SetAttribute("FileType", "1");
        root->AppendChild(file);
        auto* per_file = new ConfigNode("ADS_CParam");
        file->AppendChild(per_file);
        per_file->SetAttribute("Debug", " -O0 -g+");
        per_file->SetAttribute("Debug_tool", "2");
        per_file->SetAttribute("Debug_ArmC_Code_Gen", "1,-1,-1,-1,-1");
        per_file->SetAttribute("Release_ArmC_Code_Gen", "-1,1,-1,-1,-1");
    }

    static ConfigNode* AddTarget(ConfigNode* configurations, const char* name) {
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

TEST(EffectiveOptions, EachToolOfATargetWithProjectLevelStates) {
    Project p;
    struct Row {
        Tool tool;
        const char* expected;
    };
    const Row rows[] = {
        {Tool::kArmasm, " -apcs /interwork -keep -split_ldm -g"},
        {Tool::kArmcc, " -ansi -strict -bi -O0 -g+"},
        {Tool::kTcc, " -O0 -Otime -g+"},
        {Tool::kArmcpp, " -O0 -g+ -DCPP"},
        {Tool::kTcpp, " -O0 -g+"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(EffectiveOptions(row.tool, p.debug, p.root.get(), "Debug"), row.expected) << ToolName(row.tool);
    }
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.release, p.root.get(), "Release"), " -cpu ARM9TDMI -O2 -Otime");
}

TEST(EffectiveOptions, AFileUsesItsOwnStatesOverTheToolWideString) {
    Project p;
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.file, "Debug"), " -O0 -g+ -fy")
        << "the project-level states of Debug take no part";
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.release, p.file, "Release"), " -cpu ARM920T -O2 -Otime -zc");
    EXPECT_EQ(EffectiveOptions(Tool::kTcc, p.debug, p.file, "Debug"), " -O0 -g+")
        << "states are per family: the file has none for tcc";
}

TEST(EffectiveOptions, MissingNodesMeanNoStatesAndAnEmptyToolWideString) {
    Project p;
    ConfigNode bare("File");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, &bare, "Debug"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, nullptr, "Debug"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.root.get(), "NoSuchTarget"), " -O0 -g+");
    EXPECT_EQ(EffectiveOptions(Tool::kArmasm, nullptr, nullptr, "Debug"), "")
        << "an empty assembler string resolves to the assembler's defaults";
    ConfigNode no_keys("Configuration");
    EXPECT_EQ(EffectiveOptions(Tool::kArmasm, &no_keys, p.root.get(), "Debug"), " -apcs /interwork");
}

TEST(EffectiveOptions, ErrorsCarryTheTextOfTheirToolFamily) {
    Project p;
    p.debug->SetAttribute("ADS_GArmAsmParam", " -cpu Nope");
    const Tool compilers[] = {Tool::kArmcc, Tool::kArmcpp, Tool::kTcc, Tool::kTcpp};
    for (Tool tool : compilers) {
        try {
            EffectiveOptions(tool, nullptr, nullptr, "Debug");  // no "-O" level anywhere
            ADD_FAILURE() << ToolName(tool);
        } catch (const OptionError& e) {
            EXPECT_STREQ(e.what(), "GetTempCCppOption Error") << ToolName(tool);
        }
    }
    try {
        EffectiveOptions(Tool::kArmasm, p.debug, p.root.get(), "Debug");
        ADD_FAILURE() << "armasm";
    } catch (const OptionError& e) {
        EXPECT_STREQ(e.what(), "GetArmAssOption Error");
    }
}

TEST(EffectiveOptions, OnlyTheToolWideViaNameIsConverted) {
    Project p;
    p.debug->SetAttribute("ADS_GArmCCParam", " -O0 -via {Project}wide.via");
    p.file->FirstChild()->SetAttribute("Debug_ArmC_Extras", " -via {Project}file.via");
    PathConverter expand = [](const std::string& name) {
        std::string out = name;
        size_t at = out.find("{Project}");
        if (at != std::string::npos) out.replace(at, 9, "C:\\Work\\");
        return out;
    };
    EXPECT_EQ(EffectiveOptions(Tool::kArmcc, p.debug, p.file, "Debug", expand),
              " -O0 -fy -via C:\\Work\\wide.via -via {Project}file.via");
}

TEST(EffectiveOptions, ToolTable) {
    struct Row {
        Tool tool;
        const char* key;
        Family family;
        bool c;
    };
    const Row rows[] = {
        {Tool::kArmasm, "ADS_GArmAsmParam", Family::kArmAsm, false},
        {Tool::kArmcc, "ADS_GArmCCParam", Family::kArmC, true},
        {Tool::kArmcpp, "ADS_GArmCppParam", Family::kArmCpp, false},
        {Tool::kTcc, "ADS_GThmCCParam", Family::kThumbC, true},
        {Tool::kTcpp, "ADS_GThmCppParam", Family::kThumbCpp, false},
    };
    for (const Row& row : rows) {
        EXPECT_STREQ(ToolWideKey(row.tool), row.key);
        EXPECT_EQ(FamilyOf(row.tool), row.family) << row.key;
        EXPECT_EQ(IsCCompiler(row.tool), row.c) << row.key;
    }
}

}  // namespace
}  // namespace ads::options
