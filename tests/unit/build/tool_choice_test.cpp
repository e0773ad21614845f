#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "build/tool_choice.h"
#include "support/fake_host.h"

namespace ads::build {
namespace {

using ads::testing::FakeHost;

struct Project {
    ConfigNode root{"OrvaneProject"};
    ConfigNode* configs = nullptr;
    ConfigNode* files = nullptr;
    Project() {
        configs = new ConfigNode("Configurations");
        root.AppendChild(configs);
        files = new ConfigNode("Files");
        root.AppendChild(files);
    }
    ConfigNode* Target(const char* name, const char* map = nullptr) {
        auto* c = new ConfigNode("Configuration");
        if (name) c->SetAttribute("Name", name);
        if (map) c->SetAttribute("ADS_FileMap", map);
        c->SetAttribute("ADS_GArmCCParam", " -O1");
        c->SetAttribute("ADS_GArmCppParam", " -O2");
        c->SetAttribute("ADS_GArmAsmParam", " -keep");
        c->SetAttribute("ADS_GThmCCParam", " -Othumb");
        configs->AppendChild(c);
        return c;
    }
    ConfigNode* File(int type) {
        auto* f = new ConfigNode("File");
        f->SetAttribute("RelativePath", "x");
        if (type >= 0) f->SetAttributeInt("FileType", type);
        files->AppendChild(f);
        return f;
    }
};

TEST(ChooseTool, ByKindAndTheMarkersOfTheMap) {
    struct Row {
        const char* what;
        int type;
        const char* map;  // null: the target has none
        int tool;
    } rows[] = {
        {"no map: C goes to armcc", 1, nullptr, kToolArmcc},
        {"no map: C++ goes to armcpp", 3, nullptr, kToolArmcpp},
        {"assembler always to armasm", 2, "(.s@tcc),(.c@tcc),(.cpp@tcpp)", kToolArmasm},
        {"Thumb map: C to tcc", 1, "(.s@armasm),(.c@tcc),(.cpp@tcpp)", kToolTcc},
        {"Thumb map: C++ to tcpp", 3, "(.s@armasm),(.c@tcc),(.cpp@tcpp)", kToolTcpp},
        {"@armcc in another group still counts", 1, "(.s@armcc),(.c@tcc),(.cpp@tcpp)", kToolArmcc},
        {"@armcpp is not @armcc: C goes to tcc", 1, "(.s@armasm),(.c@tcc),(.cpp@armcpp)", kToolTcc},
        {"an empty map sends C to tcc", 1, "", kToolTcc},
        {"kind 0 has no tool", 0, nullptr, kNoTool},
        {"kind 4 has no tool", 4, nullptr, kNoTool},
        {"no kind has no tool", -1, nullptr, kNoTool},
    };
    for (const Row& row : rows) {
        Project p;
        ConfigNode* t = p.Target("T", row.map);
        EXPECT_EQ(row.tool, ChooseTool(p.File(row.type), "T", t)) << row.what;
    }
}

TEST(ChooseTool, AStoredToolWinsUntilItIsAssignedAgain) {
    Project p;
    ConfigNode* t = p.Target("T");
    ConfigNode* f = p.File(1);
    auto* s = new ConfigNode("ADS_CParam");
    s->SetAttributeInt("T_tool", 4);
    f->AppendChild(s);
    EXPECT_EQ(kToolTcc, ChooseTool(f, "T", t));
    EXPECT_EQ(kToolArmcc, ChooseTool(f, "Other", t));
    FakeHost host;
    AssignToolInTarget(host, f, "T", t);
    EXPECT_EQ(kToolArmcc, ChooseTool(f, "T", t));
    EXPECT_STREQ(" -O1", s->GetAttribute("T"));
}

TEST(AssignToolsOnAdd, EveryNamedTargetGetsItsToolAndOptionText) {
    Project p;
    p.Target("Arm");
    p.Target("Thumb", "(.s@armasm),(.c@tcc),(.cpp@tcpp)");
    p.Target(nullptr);  // skipped
    p.Target("NoAsm", "(.s@tcc),(.c@armcc),(.cpp@armcpp)");
    FakeHost host;
    ConfigNode* c = p.File(1);
    ConfigNode* cpp = p.File(3);
    ConfigNode* s = p.File(2);
    for (ConfigNode* f : {c, cpp, s}) ASSERT_TRUE(AssignToolsOnAdd(host, f, p.configs));

    ConfigNode* cs = FindFileSettings(c);
    ASSERT_NE(nullptr, cs);
    EXPECT_EQ("ADS_CParam", cs->Name());
    EXPECT_STREQ("2", cs->GetAttribute("Arm_tool"));
    EXPECT_STREQ("4", cs->GetAttribute("Thumb_tool"));
    // The Thumb compiler still starts from the ARM key's text.
    EXPECT_STREQ(" -O1", cs->GetAttribute("Thumb"));
    EXPECT_EQ(nullptr, cs->GetAttribute("_tool"));
    EXPECT_STREQ("5", FindFileSettings(cpp)->GetAttribute("Thumb_tool"));
    EXPECT_STREQ(" -O2", FindFileSettings(cpp)->GetAttribute("Thumb"));

    ConfigNode* ss = FindFileSettings(s);
    EXPECT_EQ("ADS_AsmParam", ss->Name());
    EXPECT_STREQ("1", ss->GetAttribute("Arm_tool"));
    EXPECT_STREQ(" -keep", ss->GetAttribute("NoAsm"));
    // A map without "@armasm" stores no tool; the file is still assembled.
    EXPECT_EQ(nullptr, ss->GetAttribute("NoAsm_tool"));
    EXPECT_EQ(kToolArmasm, ChooseTool(s, "NoAsm", p.configs->LastChild()));
}

TEST(AssignToolsOnAdd, OnlyTheConfigurationsNodeIsAccepted) {
    Project p;
    p.Target("T");
    FakeHost host;
    ConfigNode* f = p.File(1);
    EXPECT_FALSE(AssignToolsOnAdd(host, f, p.files));
    EXPECT_FALSE(AssignToolsOnAdd(host, f, nullptr));
    EXPECT_EQ(nullptr, FindFileSettings(f));
    EXPECT_TRUE(host.commits.empty());
}

TEST(MappingPage, BuildsTheThreeGroups) {
    struct Row {
        const char* what;
        std::vector<MappingRow> rows;
        const char* map;
    } rows[] = {
        {"nothing checked", {{".s", "ARM Assembler", false}}, "(@armasm),(@tcc),(@tcpp)"},
        {"the usual mapping",
         {{".s", "ARM Assembler", true}, {".c", "ARM C Compiler", true}, {".cc", "ARM C++ Compiler", true},
          {".cpp", "ARM C++ Compiler", true}},
         "(.s@armasm),(.c@armcc),(.cpp&&.cc@armcpp)"},
        {"the later row's extension comes first",
         {{".s", "ARM Assembler", true}, {".asm", "ARM Assembler", true}},
         "(.asm&&.s@armasm),(@tcc),(@tcpp)"},
        {"Thumb compilers", {{".c", "Thumb C Compiler", true}, {".cpp", "Thumb C++ Compiler", true}},
         "(@armasm),(.c@tcc),(.cpp@tcpp)"},
        {"armcc wins over tcc", {{".c", "Thumb C Compiler", true}, {".cx", "ARM C Compiler", true}},
         "(@armasm),(.cx@armcc),(@tcpp)"},
        {"unchecked rows are left out", {{".c", "ARM C Compiler", false}, {".s", "ARM Assembler", true}},
         "(.s@armasm),(@tcc),(@tcpp)"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.map, BuildMappingString(row.rows)) << row.what;
}

TEST(LocalConfigure, MarksAFileWithStatesOfItsOwn) {
    Project p;
    p.Target("T");
    FakeHost host;
    ConfigNode* f = p.File(1);
    AssignToolsOnAdd(host, f, p.configs);
    EXPECT_FALSE(RefreshLocalConfigure(host, f, "T"));
    EXPECT_STREQ("0", FindFileSettings(f)->GetAttribute("LocalConfigure"));
    FindFileSettings(f)->SetAttribute("T_ThumbC_Debug_Opt", "-1,-1,-1,2,-1");
    EXPECT_TRUE(RefreshLocalConfigure(host, f, "T"));
    EXPECT_STREQ("1", FindFileSettings(f)->GetAttribute("LocalConfigure"));
    EXPECT_FALSE(RefreshLocalConfigure(host, f, "Other"));
}

}  // namespace
}  // namespace ads::build
