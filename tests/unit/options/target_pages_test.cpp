// The target's own pages and "Property": what they show of a project, what
// they refuse, and that a save commits exactly the keys the user changed.
#include <gtest/gtest.h>

#include <algorithm>

#include "options/access_paths_page.h"
#include "options/file_mapping_page.h"
#include "options/property_page.h"
#include "options/target_pages.h"
#include "support/fake_host.h"

namespace ads::options {
namespace {

using Attributes = std::vector<std::pair<std::string, std::string>>;
using Sets = std::vector<std::pair<std::string, std::string>>;
using Factory = std::unique_ptr<StoredPage> (*)();

const Attributes kTarget = {{"Name", "Debug"},
                            {"ADS_LinkerName", "ARM Linker"},
                            {"ADS_PostLnk", "ARM fromELF"},
                            {"ADS_BatchFileParam", "0,()"},
                            {"ADS_OUTPUT_DIR", "{Project}"},
                            {"SearchPath", " -I\".*\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" "},
                            {"ADS_FileMap", "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"},
                            {"CPU", "ARM7TDMI"},
                            {"AppFile", ".\\Debug\\proj.axf"},
                            {"ADS_USRAPPFILE", ""}};

// A project "proj" with the target "Debug" and a folder holding one file.
struct Project {
    ConfigNode root{"OrvaneProject"};
    ConfigNode* configuration = new ConfigNode("Configuration");
    ConfigNode* folder = new ConfigNode("Filter");
    ConfigNode* file = new ConfigNode("File");
    testing::FakeHost host;
    DialogContext context;

    Project(const Attributes& target, int file_type, const Attributes& file_settings) {
        root.SetAttribute("Name", "proj");
        auto* configurations = new ConfigNode("Configurations");
        root.AppendChild(configurations);
        configurations->AppendChild(configuration);
        for (const auto& [k, v] : target) configuration->SetAttribute(k, v);
        root.AppendChild(folder);
        folder->AppendChild(file);
        file->SetAttributeInt("FileType", file_type);
        if (!file_settings.empty()) {
            auto* settings = new ConfigNode(file_type == 2 ? "ADS_AsmParam" : "ADS_CParam");
            for (const auto& [k, v] : file_settings) settings->SetAttribute(k, v);
            file->AppendChild(settings);
        }
        context = {&root, configuration, file, "Debug", {"ARM7TDMI", "CPU ARM920T", "ARM9E"}, &host};
    }
};

std::string Dump(const ConfigNode* node) {
    std::string text;
    for (auto* a = node ? node->FirstAttribute() : nullptr; a != nullptr; a = node->NextAttribute(a)) {
        text += a->Name() + "=" + a->Value() + ";";
    }
    return text;
}

int ControlOf(const DialogPage& page, const std::string& label) {
    const auto& controls = page.Description().controls;
    for (size_t i = 0; i < controls.size(); ++i) {
        if (controls[i].label == label) return static_cast<int>(i);
    }
    ADD_FAILURE() << page.Description().title << " has no control " << label;
    return -1;
}

Attributes With(Attributes attributes, const Attributes& changes) {
    for (const auto& [k, v] : changes) {
        auto at = std::find_if(attributes.begin(), attributes.end(), [&](auto& a) { return a.first == k; });
        if (at != attributes.end()) at->second = v; else attributes.emplace_back(k, v);
    }
    return attributes;
}

struct SaveRow {
    const char* what;
    Factory page;
    Attributes target;
    bool press_default;
    Sets sets;
    Attributes expected;  // the target's attributes after the save; empty: no commit at all
};

TEST(TargetPages, ASaveCommitsExactlyTheChangedKeysThroughOneClone) {
    const SaveRow rows[] = {
        {"a library target", MakeTargetSettingsPage, kTarget, false, {{"Linker:", "ARM Librarian"}},
         With(kTarget, {{"ADS_LinkerName", "ARM Librarian"}})},
        {"the batch file runner and its command", MakeTargetSettingsPage, kTarget, false,
         {{"Post-linker:", "Batch File Runner"}, {"Run batch file", "1"}, {"Batch file command:", "post.bat a b"}},
         With(kTarget, {{"ADS_PostLnk", "Batch File Runner"}, {"ADS_BatchFileParam", "1,(post.bat a b)"}})},
        {"a librarian written in lower case is not rewritten",
         MakeTargetSettingsPage, With(kTarget, {{"ADS_LinkerName", "arm librarian"}}), false,
         {{"Linker:", "ARM Librarian"}}, {}},
        {"Default brings back a new target's settings",
         MakeTargetSettingsPage,
         With(kTarget, {{"ADS_LinkerName", "ARM Librarian"}, {"ADS_PostLnk", "None"}, {"ADS_OUTPUT_DIR", "out"}}),
         true, {}, kTarget},
        {"a user path added between the others", MakeAccessPathsPage, kTarget, false,
         {{"User Paths", ".*;{Project}inc"}},
         With(kTarget, {{"SearchPath", " -I\".*\"  -I\"{Project}inc\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" "}})},
        {"system paths reordered, user paths removed", MakeAccessPathsPage, kTarget, false,
         {{"User Paths", ""}, {"System Paths", "{Compiler}Lib*\n{Compiler}Include*"}},
         With(kTarget, {{"SearchPath", " -J\"{Compiler}Lib*\"  -J\"{Compiler}Include*\" "}})},
        {"a second assembler extension", MakeFileMappingsPage, kTarget, false,
         {{"Mappings", ".s=ARM Assembler;.asm=ARM Assembler;.c=ARM C Compiler;.cc=ARM C++ Compiler;.cpp=ARM C++ Compiler"}},
         With(kTarget, {{"ADS_FileMap", "(.s&&.asm@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"}})},
        {"the default map set in another order with blanks is no change", MakeFileMappingsPage, kTarget, false,
         {{"Mappings", ".c = ARM C Compiler;.cc=ARM C++ Compiler;.cpp=ARM C++ Compiler;.s=ARM Assembler"}}, {}},
        {"C to Thumb and no C++ extension left", MakeFileMappingsPage, kTarget, false,
         {{"Mappings", ".s=ARM Assembler;.c=Thumb C Compiler"}},
         With(kTarget, {{"ADS_FileMap", "(.s@armasm),(.c@tcc),(@tcpp)"}})},
        {"a target without a map stores one once changed", MakeFileMappingsPage,
         Attributes(kTarget.begin(), kTarget.begin() + 6), false, {{"Mappings", ".s=ARM Assembler"}},
         With(Attributes(kTarget.begin(), kTarget.begin() + 6), {{"ADS_FileMap", "(.s@armasm),(@tcc),(@tcpp)"}})},
        {"a processor of the list", MakeSelectCpuPage, kTarget, false, {{"CPU:", "ARM9E"}},
         With(kTarget, {{"CPU", "ARM9E"}})},
        {"a target without CPU takes the host's default only when saved changed", MakeSelectCpuPage,
         Attributes(kTarget.begin(), kTarget.begin() + 7), false, {{"CPU:", "1"}}, {}},
        {"an output name of its own", MakeArmTargetPage, kTarget, false, {{"Output file name:", "boot"}},
         With(kTarget, {{"ADS_USRAPPFILE", "boot"}})},
        {"the project's name again follows the project", MakeArmTargetPage,
         With(kTarget, {{"ADS_USRAPPFILE", "boot"}}), false, {{"Output file name:", "proj"}}, kTarget},
        {"the debugger's application file", MakeArmTargetPage, kTarget, false,
         {{"Application file:", "D:\\img\\rom.axf"}}, With(kTarget, {{"AppFile", "D:\\img\\rom.axf"}})},
    };
    for (const SaveRow& row : rows) {
        Project project(row.target, 1, {});
        std::unique_ptr<StoredPage> page = row.page();
        page->Load(project.context);
        EXPECT_FALSE(page->Changed()) << row.what;
        if (row.press_default) page->Default();
        for (const auto& [label, value] : row.sets) {
            EXPECT_EQ(page->Set(ControlOf(*page, label), value), "") << row.what << ": " << label;
        }
        EXPECT_EQ(page->Changed(), !row.expected.empty()) << row.what;
        EXPECT_EQ(page->Validate(), "") << row.what;
        page->Save(project.context);
        EXPECT_EQ(project.host.commits.size(), row.expected.empty() ? 0u : 1u) << row.what;
        ConfigNode expected("Configuration");
        for (const auto& [k, v] : row.expected.empty() ? row.target : row.expected) expected.SetAttribute(k, v);
        EXPECT_EQ(Dump(project.configuration), Dump(&expected)) << row.what;
        EXPECT_FALSE(page->Changed()) << row.what << ": saved";
    }
}

struct RefusalRow {
    const char* what;
    Factory page;
    Attributes target;
    Sets sets;          // accepted first
    const char* label;  // then this one is refused, or Validate fails when null
    const char* value;
    const char* reason;  // a part of the message
};

TEST(TargetPages, RefusesWhatTheBuildWouldMisreadWithTheMessageShown) {
    const RefusalRow rows[] = {
        {"a processor the host does not list", MakeSelectCpuPage, kTarget, {}, "CPU:", "ARM1136", "takes one of"},
        {"a stored processor the host no longer lists", MakeSelectCpuPage, With(kTarget, {{"CPU", "ARM1136"}}), {},
         nullptr, nullptr, "\"ARM1136\" is not in the list"},
        {"a batch command with a parenthesis", MakeTargetSettingsPage, kTarget,
         {{"Post-linker:", "Batch File Runner"}}, "Batch file command:", "run (x)", "can't hold ')'"},
        {"a batch command without the batch file runner", MakeTargetSettingsPage, kTarget, {},
         "Batch file command:", "post.bat", "disabled"},
        {"a batch file runner without a command", MakeTargetSettingsPage, kTarget,
         {{"Post-linker:", "Batch File Runner"}, {"Run batch file", "1"}}, nullptr, nullptr, "Enter the command"},
        {"an output directory with a stray colon", MakeTargetSettingsPage, kTarget,
         {{"Output Directory:", "{Project}out:x"}}, nullptr, nullptr, "can't hold ':'"},
        {"C files to two compilers", MakeFileMappingsPage, kTarget, {}, "Mappings",
         ".c=ARM C Compiler;.h=Thumb C Compiler", "one compiler"},
        {"C++ files to two compilers", MakeFileMappingsPage, kTarget, {}, "Mappings",
         ".cpp=ARM C++ Compiler;.cc=Thumb C++ Compiler", "one compiler"},
        {"a tool by its command name", MakeFileMappingsPage, kTarget, {}, "Mappings", ".c=armcc", "the tool is one of"},
        {"one extension twice, case aside", MakeFileMappingsPage, kTarget, {}, "Mappings",
         ".s=ARM Assembler;.S=ARM Assembler", "mapped twice"},
        {"an extension without its dot", MakeFileMappingsPage, kTarget, {}, "Mappings", "c=ARM C Compiler",
         "a dot and a name"},
        {"a stored map naming a tool of another maker", MakeFileMappingsPage,
         With(kTarget, {{"ADS_FileMap", "(.s@armasm),(.c@gcc),(@tcpp)"}}), {}, nullptr, nullptr, "the tool is one of"},
        {"a search path with two macro kinds", MakeAccessPathsPage, kTarget, {}, "User Paths",
         ".*;{Project}{Compiler}x", "mixes two macros"},
        {"a search path with a star inside", MakeAccessPathsPage, kTarget, {}, "System Paths", "a*b", "can't hold '*'"},
        {"a search path with a quote", MakeAccessPathsPage, kTarget, {}, "User Paths", "a\"b", "can't hold '\"'"},
        {"an empty output name", MakeArmTargetPage, kTarget, {{"Output file name:", ""}}, nullptr, nullptr,
         "can't be empty"},
        {"an output name with its extension", MakeArmTargetPage, kTarget, {{"Output file name:", "boot.AXF"}},
         nullptr, nullptr, "without \".axf\""},
        {"an output name with a folder", MakeArmTargetPage, kTarget, {{"Output file name:", "out\\boot"}}, nullptr,
         nullptr, "can't hold a folder"},
        {"a library's name with its extension", MakeArmTargetPage,
         With(kTarget, {{"ADS_LinkerName", "ARM Librarian"}}), {{"Output file name:", "libx.a"}}, nullptr, nullptr,
         "without \".a\""},
    };
    for (const RefusalRow& row : rows) {
        Project project(row.target, 1, {});
        std::unique_ptr<StoredPage> page = row.page();
        page->Load(project.context);
        for (const auto& [label, value] : row.sets) EXPECT_EQ(page->Set(ControlOf(*page, label), value), "") << row.what;
        if (row.label != nullptr) {
            const int control = ControlOf(*page, row.label);
            const std::string before = page->Get(control);
            EXPECT_NE(page->Set(control, row.value).find(row.reason), std::string::npos) << row.what;
            EXPECT_EQ(page->Get(control), before) << row.what << ": the control stays";
        } else {
            EXPECT_NE(page->Validate().find(row.reason), std::string::npos) << row.what << ": " << page->Validate();
        }
    }
}

struct ShownRow {
    const char* what;
    Factory page;
    Attributes target;
    const char* label;
    const char* shown;
    bool enabled;
};

TEST(TargetPages, ShowTheStoredValuesAsTheBuildReadsThem) {
    const ShownRow rows[] = {
        {"a librarian in lower case", MakeTargetSettingsPage, With(kTarget, {{"ADS_LinkerName", "arm librarian"}}),
         "Linker:", "ARM Librarian", true},
        {"no linker name links", MakeTargetSettingsPage, {{"Name", "Debug"}}, "Linker:", "ARM Linker", true},
        {"an unknown post-linker runs nothing", MakeTargetSettingsPage, With(kTarget, {{"ADS_PostLnk", "Lint"}}),
         "Post-linker:", "None", true},
        {"the batch command between its parentheses", MakeTargetSettingsPage,
         With(kTarget, {{"ADS_PostLnk", "batch file runner"}, {"ADS_BatchFileParam", "1,(make -C out)"}}),
         "Batch file command:", "make -C out", true},
        {"the batch controls wait for the batch file runner", MakeTargetSettingsPage,
         With(kTarget, {{"ADS_BatchFileParam", "1,(x)"}}), "Run batch file", "1", false},
        {"search paths of both kinds in their stored order", MakeAccessPathsPage,
         With(kTarget, {{"SearchPath", " -J\"s1\"  -I\"u1*\" -J\"{System}s2\" "}}), "System Paths", "s1\n{System}s2",
         true},
        {"the default file mapping", MakeFileMappingsPage, {{"Name", "Debug"}}, "Mappings",
         ".s=ARM Assembler\n.c=ARM C Compiler\n.cc=ARM C++ Compiler\n.cpp=ARM C++ Compiler", true},
        {"the project's name while the target has none of its own", MakeArmTargetPage, kTarget, "Output file name:",
         "proj", true},
    };
    for (const ShownRow& row : rows) {
        Project project(row.target, 1, {});
        std::unique_ptr<StoredPage> page = row.page();
        page->Load(project.context);
        const int control = ControlOf(*page, row.label);
        EXPECT_EQ(page->Get(control), row.shown) << row.what;
        EXPECT_EQ(page->Enabled(control), row.enabled) << row.what;
    }
}

// The stored texts come back byte for byte through the page's reading and writing.
TEST(TargetPages, StoredFormatsRoundTrip) {
    for (const char* map : {"(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)", "(@armasm),(.c&&.h@tcc),(.cpp@tcpp)",
                            "(.s&&.asm&&.a79@armasm),(@tcc),(.cxx@armcpp)"}) {
        EXPECT_EQ(MappingString(MappingList(map)), map);
    }
    for (const char* paths : {" -I\".*\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" ", " -J\"D:\\lib\" ", ""}) {
        EXPECT_EQ(WriteSearchPathLists(ReadSearchPathLists(paths)), paths);
    }
    for (const char* batch : {"0,()", "1,(make all)", "1,(d:\\tools\\post.bat -q)"}) {
        EXPECT_EQ(WriteBatchFile(ReadBatchFile(batch)), batch);
    }
    // What the build would not run reads as nothing to run.
    for (const char* broken : {"", "1", "x,(cmd)", "1,"}) {
        EXPECT_EQ(WriteBatchFile(ReadBatchFile(broken)), "0,()") << broken;
    }
}

struct PropertyRow {
    const char* what;
    int file_type;
    Attributes settings;  // the file's settings child; empty: none
    Sets sets;
    const char* tool_shown;
    const char* own_shown;
    const char* settings_after;  // the settings child's attributes after the save
};

TEST(PropertyPage, ToolAndOwnSettingsOfAFileOrFolder) {
    const PropertyRow rows[] = {
        {"a C file follows the map until it is given a tool", 1, {}, {{"Tool:", "Thumb C Compiler"}},
         "ARM C Compiler", "0", "ADS_CfgFlag=1;Debug_tool=4;"},
        {"the stored tool wins over the map", 3, {{"Debug_tool", "5"}}, {}, "Thumb C++ Compiler", "0",
         "Debug_tool=5;"},
        {"giving up own settings drops only this target's states", 1,
         {{"Debug", " -O0"}, {"Debug_tool", "2"}, {"Debug_ArmC_Tar", "1,2"}, {"Release_ArmC_Tar", "3"},
          {"Debug_ThumbC_Atpcs", "0"}, {"LocalConfigure", "1"}},
         {{"Keep own settings", "0"}}, "ARM C Compiler", "1",
         "Debug= -O0;Debug_tool=2;Release_ArmC_Tar=3;LocalConfigure=0;"},
        {"an assembler file has one tool", 2, {{"Debug_Asm_Tar", "1"}}, {}, "ARM Assembler", "1",
         "Debug_Asm_Tar=1;"},
    };
    for (const PropertyRow& row : rows) {
        Project project(kTarget, row.file_type, row.settings);
        std::unique_ptr<StoredPage> page = MakePropertyPage();
        page->Load(project.context);
        EXPECT_EQ(page->Get(0), row.tool_shown) << row.what;
        EXPECT_EQ(page->Enabled(0), row.file_type != 2) << row.what;
        EXPECT_EQ(page->Get(1), row.own_shown) << row.what;
        for (const auto& [label, value] : row.sets) EXPECT_EQ(page->Set(ControlOf(*page, label), value), "") << row.what;
        page->Save(project.context);
        EXPECT_EQ(Dump(project.file->FirstChild()), row.settings_after) << row.what;
    }
}

TEST(PropertyPage, AFolderHasNoToolAndGivesUpTheStatesOfEveryFamily) {
    Project project(kTarget, 1, {});
    auto* c_states = new ConfigNode("ADS_CParam");
    c_states->SetAttribute("Debug_ArmCpp_Warnings", "1");
    auto* asm_states = new ConfigNode("ADS_AsmParam");
    asm_states->SetAttribute("Debug_Asm_Tar", "1");
    asm_states->SetAttribute("Release_Asm_Tar", "2");
    project.folder->AppendChild(c_states);
    project.folder->AppendChild(asm_states);
    project.context.node = project.folder;
    std::unique_ptr<StoredPage> page = MakePropertyPage();
    page->Load(project.context);
    EXPECT_EQ(page->Get(0), "");
    EXPECT_FALSE(page->Enabled(0));
    EXPECT_EQ(page->Set(1, "0"), "");
    page->Save(project.context);
    EXPECT_EQ(Dump(c_states), "LocalConfigure=0;");
    EXPECT_EQ(Dump(asm_states), "Release_Asm_Tar=2;LocalConfigure=0;");
    EXPECT_NE(page->Set(1, "1"), "") << "own settings are made on the language pages";
}

}  // namespace
}  // namespace ads::options
