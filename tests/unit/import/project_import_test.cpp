// An export imported into a project tree through the host's node services:
// the project keys, one configuration per target with its keys in order, the
// group and file tree with the files' tool entries, and the failure text.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "import/panel_readers.h"
#include "import/project_import.h"
#include "import_test_support.h"
#include "support/fake_host.h"
#include "support/fake_platform.h"

namespace ads::import {
namespace {

using namespace test;
using ads::testing::FakeFiles;
using ads::testing::FakeHost;

const char kExportPath[] = "C:\\proj\\blinky.mcp.xml";

std::vector<std::string> KeysOf(const ConfigNode& node) {
    std::vector<std::string> keys;
    for (const auto* a = node.FirstAttribute(); a != nullptr; a = node.NextAttribute(a)) keys.push_back(a->Name());
    return keys;
}

std::string Attr(const ConfigNode* node, const char* key) {
    const char* value = node != nullptr ? node->GetAttribute(key) : nullptr;
    return value != nullptr ? value : "<absent>";
}

// All panels of a target, as CodeWarrior stores them.
std::string AllPanels() {
    return PanelData("Panel_for_armasm", "ARM Assembler", ".keep=on\n") +
           PanelData("Panel_for_armcc", "ARM C Compiler", "-O.level=1\n") +
           PanelData("Panel_for_armcpp", "ARM C++ Compiler", "-O.level=0\n") +
           PanelData("Panel_for_tcc", "Thumb C Compiler", "-DTHUMB\n") +
           PanelData("Panel_for_tcpp", "Thumb C++ Compiler", "") +
           PanelData("Panel_for_armlink", "ARM Linker", "-entry#0x0\n") +
           PanelData("Panel_for_fromelf", "ARM fromELF", ".format=-bin\n-output=out.bin\n");
}

class ProjectImportTest : public ::testing::Test {
protected:
    ProjectImportTest() : root(new ConfigNode("OrvaneProject")) {
        request.export_path = kExportPath;
        request.project_name = "blinky";
        request.reader.files = &files;
    }

    int Import(const std::string& export_text) {
        files.Add(kExportPath, export_text);
        host.pane.clear();
        host.Watch(root.get());
        const int result = ImportProject(host, root.get(), request, &model);
        host.CheckUntouched();
        return result;
    }

    ConfigNode* Configuration(size_t index) {
        ConfigNode* c = root->FindChild("Configurations") ? root->FindChild("Configurations")->FirstChild() : nullptr;
        for (size_t i = 0; i < index && c != nullptr; ++i) c = c->NextSibling();
        return c;
    }

    std::unique_ptr<ConfigNode> root;
    FakeFiles files;
    FakeHost host;
    ImportRequest request;
    ImportModel model;
};

TEST_F(ProjectImportTest, WritesTheProjectKeysAndOneConfigurationPerTargetInOrder) {
    const std::string debug = Target("Debug", SearchPaths("UserSearchPaths", {{"src", "Project", false}}) +
                                                  SearchPaths("SystemSearchPaths", {{"Include", "CodeWarrior", true}}) +
                                                  Linker("ARM Linker", "ARM fromELF") +
                                                  Mappings({{"TEXT", ".c", "ARM C Compiler"}}) + AllPanels());
    ASSERT_EQ(1, Import(Export(debug + Target("Release", ""))));
    EXPECT_EQ("", host.pane);

    EXPECT_EQ((std::vector<std::string>{"Name", "BuildTool", "Version", "Author"}), KeysOf(*root));
    EXPECT_EQ("blinky", Attr(root.get(), "Name"));
    EXPECT_EQ("13", Attr(root.get(), "BuildTool"));
    EXPECT_EQ("3.00", Attr(root.get(), "Version"));
    EXPECT_EQ(kAuthorValue, Attr(root.get(), "Author"));
    ASSERT_NE(nullptr, root->FindChild("Files"));

    ConfigNode* c = Configuration(0);
    ASSERT_NE(nullptr, c);
    EXPECT_EQ((std::vector<std::string>{"Name", "ADS_CParam", "ADS_AsmParam", "ADS_LinkParam", "ADS_OPTDBG",
                                        "ADS_USRAPPFILE", "SearchPath", "ADS_LNKPARAM", "ADS_FileMap",
                                        "ADS_LinkerName", "ADS_OUTPUT_DIR", "ADS_PostLnk", "ADS_FromELFParam",
                                        "ADS_GArmAsmParam", "ADS_GArmCCParam", "ADS_GArmCppParam", "ADS_GThmCCParam",
                                        "ADS_GThmCppParam", "ServeDebugOptions", "InitScriptForSim",
                                        "InitScriptForEmu"}),
              KeysOf(*c));
    const struct {
        const char* key;
        const char* value;
    } expected[] = {
        {"Name", "Debug"},
        {"ADS_CParam", "$(ADS_PARAM) -c \"$(SOURCE)\" -o \"$(OBJ)\""},
        {"ADS_AsmParam", "$(ADS_PARAM) \"$(SOURCE)\" \"$(OBJ)\""},
        {"ADS_LinkParam", "$(OBJS) $(ADS_LNKPARAM) -o \"$(ELF)\""},
        {"ADS_OPTDBG", "1,RDI 0,1,0,1,0,(\"\")"},
        {"ADS_USRAPPFILE", ""},
        {"SearchPath", " -I\"{Project}\\src\"  -J\"{Compiler}\\Include\" "},
        {"ADS_LNKPARAM", " -entry 0x0"},
        {"ADS_FileMap", "(.c@armcc)"},
        {"ADS_LinkerName", "ARM Linker"},
        {"ADS_OUTPUT_DIR", "{Project}"},
        {"ADS_PostLnk", "ARM fromELF"},
        {"ADS_FromELFParam", " -bin -output \"out.bin\""},
        {"ADS_GArmAsmParam", " -keep"},
        {"ADS_GArmCCParam", " -O1 -g+"},
        {"ADS_GArmCppParam", " -O0 -g+"},
        {"ADS_GThmCCParam", " -O2 -g+ -DTHUMB"},
        {"ADS_GThmCppParam", " -O2 -g+"},
        {"ServeDebugOptions", ""},
    };
    for (const auto& e : expected) EXPECT_EQ(e.value, Attr(c, e.key)) << e.key;

    // A target without settings keeps only what does not come from them.
    ConfigNode* release = Configuration(1);
    ASSERT_NE(nullptr, release);
    EXPECT_EQ((std::vector<std::string>{"Name", "ADS_CParam", "ADS_AsmParam", "ADS_LinkParam", "ADS_OPTDBG",
                                        "ADS_USRAPPFILE", "SearchPath", "ADS_FileMap", "ADS_LinkerName",
                                        "ADS_OUTPUT_DIR", "ADS_PostLnk", "ADS_GArmAsmParam", "ADS_GArmCCParam",
                                        "ADS_GArmCppParam", "ADS_GThmCCParam", "ADS_GThmCppParam",
                                        "ServeDebugOptions", "InitScriptForSim", "InitScriptForEmu"}),
              KeysOf(*release));
    EXPECT_EQ("(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)", Attr(release, "ADS_FileMap")) << "no mappings: the default";
    EXPECT_EQ(" -keep -split_ldm -g", Attr(release, "ADS_GArmAsmParam")) << "no panel: a new target's options";
    EXPECT_EQ(" -O0 -g+", Attr(release, "ADS_GThmCppParam")) << "no panel: a new target's options";
    EXPECT_EQ("", Attr(release, "ADS_LinkerName"));
    EXPECT_EQ("", Attr(release, "SearchPath"));
    EXPECT_EQ(nullptr, Configuration(2));
}

TEST_F(ProjectImportTest, DeviceKeysComeFirstAndOnlyWhenTheyHoldText) {
    request.device.device = "LPC2106";
    request.device.vendor = "Philips";
    request.device.cpu = "CPU(ARM7TDMI)";
    request.device.rgf = "";
    request.device.simulator_clock = "12.000000";
    ASSERT_EQ(1, Import(Export(Target("T", ""))));
    const std::vector<std::string> keys = KeysOf(*Configuration(0));
    ASSERT_GE(keys.size(), 5u);
    EXPECT_EQ((std::vector<std::string>{"DEVICE", "VENDOR", "CPU", "SIMCLK", "Name"}),
              std::vector<std::string>(keys.begin(), keys.begin() + 5));
    EXPECT_EQ("Philips", Attr(Configuration(0), "VENDOR"));
    request.device.family = "LPC2000";
    ASSERT_EQ(1, Import(Export(Target("U", ""))));
    EXPECT_EQ("LPC2000", Attr(Configuration(1), "FAMINY")) << "the key keeps its spelling";
}

TEST_F(ProjectImportTest, AFailedReadPrintsTheFailureTextAndAddsNoConfiguration) {
    files.Add("C:\\proj\\a.c");
    const std::string text = Export(Target("T", ""), GroupXml("G", FileRefXml("a.c")),
                                    "<?codewarrior exportversion=\"1.0.1\" ideversion=\"4.3\" ?>");
    EXPECT_EQ(0, Import(text));
    EXPECT_EQ("import project failed!\n", host.pane);
    EXPECT_EQ(nullptr, Configuration(0));
    EXPECT_EQ(nullptr, root->FindChild("Files")->FirstChild()) << "no group, no file";
    EXPECT_EQ("13", Attr(root.get(), "BuildTool")) << "the project keys are written already";
    EXPECT_EQ(0u, model.target_count);
}

TEST_F(ProjectImportTest, AMalformedExportAddsNoTargetAndAFailedTargetEndsTheTargetList) {
    files.Add("C:\\proj\\a.c");
    const std::string good = Target("Good", ""), group = GroupXml("G", FileRefXml("a.c"));
    const struct {
        std::string text;
        const char* note;  // null: the export is refused
    } cases[] = {
        {Export(good, group).substr(0, 400), nullptr},
        {Export(good + Target("Bad", "<SETTING><VALUE>1</VALUE></SETTING>"), group),
         "target 2 ('Bad'): a SETTING without NAME; the target list ends there: it is left out"},
        {Export(good + Target("Bad", "<PANELDATA><VALUE>00</VALUE></PANELDATA>"), group),
         "target 2 ('Bad'): a PANELDATA without NAME; the target list ends there: it is left out"},
        {Export(good + "<TARGET><NAME>Bad</NAME></TARGET>" + Target("Later", ""), group),
         "target 2 ('Bad') has no SETTINGLIST; the target list ends there: it and the 1 target(s) after it are left out"},
    };
    for (const auto& c : cases) {
        root.reset(new ConfigNode("OrvaneProject"));
        EXPECT_EQ(c.note != nullptr ? 1 : 0, Import(c.text));
        EXPECT_EQ(c.note != nullptr ? "" : "import project failed!\n", host.pane);
        EXPECT_EQ(c.note != nullptr ? "Good" : "<absent>", Attr(Configuration(0), "Name"));
        EXPECT_EQ(nullptr, Configuration(1));
        EXPECT_EQ(c.note != nullptr ? "G" : "<absent>", Attr(root->FindChild("Files")->FirstChild(), "Name"));
        EXPECT_EQ(std::string(c.note != nullptr ? c.note : ""), model.notes.empty() ? "" : model.notes[0]);
    }
}

TEST_F(ProjectImportTest, TheMappingStringGroupsExtensionsByTool) {
    const struct {
        const char* name;
        std::vector<Mapping> mappings;
        std::string expected;
    } cases[] = {
        {"no mappings at all: the default", {}, "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"},
        {"every tool, in the string's order",
         {{"", ".s", "ARM Assembler"},
          {"", ".cpp", "Thumb C++ Compiler"},
          {"", ".c", "ARM C Compiler"},
          {"", ".tc", "Thumb C Compiler"},
          {"", ".cc", "ARM C++ Compiler"}},
         "(.c@armcc),(.cc@armcpp),(.tc@tcc),(.cpp@tcpp),(.s@armasm)"},
        {"several extensions of one tool", {{"", ".c", "ARM C Compiler"}, {"", ".C", "arm c compiler"}}, "(.c&&.C@armcc)"},
        {"mappings of other tools only", {{"", ".r", "Rez"}, {"", ".h", ""}}, ""},
    };
    for (const auto& c : cases) {
        std::vector<FileMapping> mappings;
        for (const Mapping& m : c.mappings) mappings.push_back({m.type, m.extension, m.compiler});
        EXPECT_EQ(c.expected, MappingString(mappings)) << c.name;
    }
}

TEST_F(ProjectImportTest, AnExportWithOnlyAssemblerMappingsGetsAMapThatStartsWithAComma) {
    EXPECT_EQ(",(.s&&.asm@armasm)", MappingString({{"", ".s", "ARM Assembler"}, {"", ".asm", "ARM Assembler"}}));
    EXPECT_EQ(",(.c@tcc),(.s@armasm)", MappingString({{"", ".c", "Thumb C Compiler"}, {"", ".s", "ARM Assembler"}}));
}

TEST_F(ProjectImportTest, ThePostLinkStepFollowsTheExport) {
    const struct {
        const char* post;
        const char* expected;
    } cases[] = {{"ARM fromELF", "ARM fromELF"}, {"", "ARM fromELF"}, {"None", "None"},
                 {"Batch File Runner", "Batch File Runner"}};
    size_t index = 0;
    for (const auto& c : cases) {
        ASSERT_EQ(1, Import(Export(Target("T", Linker("ARM Linker", c.post)))));
        EXPECT_EQ(c.expected, Attr(Configuration(index++), "ADS_PostLnk")) << "'" << c.post << "'";
    }
}

TEST_F(ProjectImportTest, GroupsAndFilesBecomeFiltersAndFilesWithTheirToolInEveryTarget) {
    files.Add("C:\\proj\\src\\main.c");
    files.Add("C:\\proj\\src\\util.cpp");
    files.Add("C:\\proj\\src\\led.h");
    files.Add("C:\\proj\\start.s");
    files.Add("C:\\proj\\main.arm");
    const std::string arm = Target("ARM", Mappings({{"", ".c", "ARM C Compiler"},
                                                    {"", ".cpp", "ARM C++ Compiler"},
                                                    {"", ".s", "ARM Assembler"},
                                                    {"", ".arm", "ARM Assembler"}}) +
                                              AllPanels());
    const std::string thumb = Target("Thumb", Mappings({{"", ".c", "Thumb C Compiler"},
                                                        {"", ".cpp", "Thumb C++ Compiler"},
                                                        {"", ".s", "ARM Assembler"}}) +
                                                  AllPanels());
    files.Add("C:\\proj\\src\\uart.c");
    const std::string groups = GroupXml("Sources", FileRefXml("main.c") + FileRefXml("util.cpp") + FileRefXml("led.h") +
                                                       GroupXml("Drivers", FileRefXml("uart.c"))) +
                               FileRefXml("start.s") + GroupXml("Empty", "") + FileRefXml("main.arm");
    ASSERT_EQ(1, Import(Export(arm + thumb, groups)));

    ConfigNode* files_node = root->FindChild("Files");
    ConfigNode* sources = files_node->FirstChild();
    ASSERT_NE(nullptr, sources);
    EXPECT_EQ("Filter", sources->Name());
    EXPECT_EQ("Sources", Attr(sources, "Name"));

    struct Expected {
        const char* path;
        const char* type;
        const char* output;
        const char* arm_tool;
        const char* thumb_tool;
    };
    const Expected in_group[] = {
        {".\\src\\main.c", "1", "main.o", "2", "4"},
        {".\\src\\util.cpp", "3", "util.o", "3", "5"},
        {".\\src\\led.h", "0", "<absent>", "<absent>", "<absent>"},
    };
    ConfigNode* file = sources->FirstChild();
    for (const Expected& e : in_group) {
        ASSERT_NE(nullptr, file) << e.path;
        EXPECT_EQ("File", file->Name());
        EXPECT_EQ(e.path, Attr(file, "RelativePath"));
        EXPECT_EQ(e.type, Attr(file, "FileType")) << e.path;
        EXPECT_EQ(e.output, Attr(file, "Output")) << e.path;
        EXPECT_EQ("Sources", Attr(file, "Group")) << e.path;
        ConfigNode* settings = file->FirstChild();
        EXPECT_EQ(e.arm_tool, Attr(settings, "ARM_tool")) << e.path;
        EXPECT_EQ(e.thumb_tool, Attr(settings, "Thumb_tool")) << e.path;
        file = file->NextSibling();
    }
    ASSERT_NE(nullptr, file);
    EXPECT_EQ("Drivers", Attr(file, "Name")) << "a group inside a group is a filter inside the filter";
    EXPECT_EQ("Sources/Drivers", Attr(file->FirstChild(), "Group"));
    EXPECT_EQ("4", Attr(file->FirstChild() ? file->FirstChild()->FirstChild() : nullptr, "Thumb_tool"));
    EXPECT_EQ(nullptr, file->NextSibling());

    ConfigNode* start = sources->NextSibling();
    ASSERT_NE(nullptr, start);
    EXPECT_EQ("File", start->Name());
    EXPECT_EQ(".\\start.s", Attr(start, "RelativePath"));
    EXPECT_EQ("<absent>", Attr(start, "Group"));
    ASSERT_NE(nullptr, start->FirstChild());
    EXPECT_EQ("ADS_AsmParam", start->FirstChild()->Name());
    EXPECT_EQ(" -keep", Attr(start->FirstChild(), "ARM")) << "the target's assembler options";
    EXPECT_EQ("1", Attr(start->FirstChild(), "Thumb_tool"));

    ConfigNode* empty = start->NextSibling();
    ASSERT_NE(nullptr, empty);
    EXPECT_EQ("Empty", Attr(empty, "Name"));
    EXPECT_EQ(nullptr, empty->FirstChild());
    ConfigNode* boot = empty->NextSibling();
    ASSERT_NE(nullptr, boot);
    EXPECT_EQ("2", Attr(boot, "FileType")) << "an extension the export maps to the assembler";
    EXPECT_EQ("main_2.o", Attr(boot, "Output")) << "a base name src\\main.c took first";
}

TEST_F(ProjectImportTest, WhatTheProjectHadStaysAndNewFilesJoinItsTargets) {
    auto* configurations = new ConfigNode("Configurations");
    auto* old_target = new ConfigNode("Configuration");
    old_target->SetAttribute("Name", "Old");
    old_target->SetAttribute("ADS_FileMap", "(.s@armasm),(.c@armcc)");
    configurations->AppendChild(old_target);
    root->AppendChild(configurations);
    auto* files_node = new ConfigNode("Files");
    auto* old_file = new ConfigNode("File");
    old_file->SetAttribute("RelativePath", "old.c");
    files_node->AppendChild(old_file);
    root->AppendChild(files_node);
    files.Add("C:\\proj\\new.c");

    ASSERT_EQ(1, Import(Export(Target("New", AllPanels()), FileRefXml("new.c"))));
    EXPECT_EQ("Old", Attr(Configuration(0), "Name"));
    EXPECT_EQ("New", Attr(Configuration(1), "Name"));
    ConfigNode* first = root->FindChild("Files")->FirstChild();
    EXPECT_EQ("old.c", Attr(first, "RelativePath"));
    EXPECT_EQ(nullptr, first->FirstChild()) << "files already there are left alone";
    ConfigNode* added = first->NextSibling();
    ASSERT_NE(nullptr, added);
    EXPECT_EQ("2", Attr(added->FirstChild(), "Old_tool"));
    EXPECT_EQ("2", Attr(added->FirstChild(), "New_tool"));
}

TEST_F(ProjectImportTest, WithoutANameTheProjectIsNamedAfterTheExport) {
    request.project_name.clear();
    ASSERT_EQ(1, Import(Export(Target("T", ""))));
    EXPECT_EQ("blinky", Attr(root.get(), "Name"));
    EXPECT_EQ(0, ImportProject(host, nullptr, request));
}

TEST_F(ProjectImportTest, TheNotesSayWhatATargetCannotTakeOver) {
    const std::string settings = SearchPaths("UserSearchPaths", {{"src", "Project", true}}) +
                                 Linker("MacOS PPC Linker", "Rez") + Mappings({{"", ".r", "Rez"}}) +
                                 PanelData("Panel_for_armcc", "ARM C Compiler", ".fx=on\n") +
                                 PanelData("Panel_for_armtarget", "ARM Target", "-outputname#app.axf\n") +
                                 PanelData("Panel_for_debugchoice", "ARM Debugger", "RDI");
    ASSERT_EQ(1, Import(Export(Target("T", settings) + Target("T", Linker("ARM Linker", "batch file runner")))));
    EXPECT_EQ("T (2)", Attr(Configuration(1), "Name"));
    const std::vector<std::string> notes = ImportNotes(model);
    const char* expected[] = {
        "target 'T' is imported as 'T (2)': the name is taken by a target before it",
        "target 'T (2)': the export has no panel for armasm, armcc, armcpp, tcc, tcpp; those tools get the options of "
        "a new target",
        "target 'T (2)': the export holds no command for the post-linker 'batch file runner': nothing runs after the "
        "link until one is set in ADS_BatchFileParam",
        "target 'T': 1 recursive search path(s) are taken over without their sub-folders",
        "target 'T': no file mapping names an ADS tool",
        "target 'T': linker 'MacOS PPC Linker' is not an ADS tool",
        "target 'T': post-linker 'Rez' is not one the plug-in runs",
        "target 'T', ARM C Compiler: .fx 'on' is not taken over",
        "target 'T': the export has no panel for armasm, armcpp, tcc, tcpp",
        "target 'T': output name 'app.axf' is not taken over",
        "target 'T': the debugger choice is not taken over",
    };
    for (const char* text : expected) {
        bool found = false;
        for (const std::string& note : notes) found = found || note.find(text) == 0;
        EXPECT_TRUE(found) << text;
    }
    EXPECT_EQ(sizeof expected / sizeof expected[0], notes.size());
}

}  // namespace
}  // namespace ads::import
