#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "build/build_engine.h"
#include "build/tool_choice.h"
#include "support/fake_host.h"
#include "support/fake_platform.h"

namespace ads::build {
namespace {

using ads::testing::FakeHost;

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class EngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        root.SetAttribute("Name", "demo");
        auto* configs = new ConfigNode("Configurations");
        root.AppendChild(configs);
        target = new ConfigNode("Configuration");
        target->SetAttribute("Name", "Debug");
        target->SetAttribute("ADS_OUTPUT_DIR", "{Project}");
        target->SetAttribute("ADS_GArmCCParam", " -O1 -g+");
        target->SetAttribute("ADS_GArmAsmParam", " -keep -g");
        target->SetAttribute("ADS_PostLnk", "None");
        configs->AppendChild(target);
        files = new ConfigNode("Files");
        root.AppendChild(files);
        context.project_root = &root;
        context.configuration = target;
        context.target = "Debug";
        context.project_dir = "C:\\proj\\";
        const char* names[] = {"armasm", "armcc", "armcpp", "tcc", "tcpp", "armlink", "fromelf", "armar"};
        for (int i = 0; i < 8; ++i) context.tools.paths[i] = std::string("C:\\ADS\\Bin\\") + names[i] + ".exe";
        context.tools.found = true;
        context.tools.arm_home = "C:\\ADS";
    }

    ConfigNode* AddFile(const char* path, int type, const char* output) {
        auto* f = new ConfigNode("File");
        f->SetAttribute("RelativePath", path);
        f->SetAttributeInt("FileType", type);
        if (output) f->SetAttribute("Output", output);
        files->AppendChild(f);
        return f;
    }

    std::string Command(ConfigNode* node) {
        std::string text;
        engine.CommandFor(context, node, &text);
        return text;
    }

    ConfigNode root{"OrvaneProject"};
    ConfigNode* target = nullptr;
    ConfigNode* files = nullptr;
    FakeHost host;
    ads::testing::FakePlatform fake;
    OutputParser parser;
    BuildEngine engine{&host, &fake.platform, &parser};
    BuildContext context;
};

TEST_F(EngineTest, AnAssemblerFileGetsTheDefaultTemplateWrittenAndMinusG) {
    ConfigNode* s = AddFile("src\\start.s", 2, "start.o");
    EXPECT_EQ(nullptr, target->GetAttribute("ADS_AsmParam"));
    std::string command = Command(s);
    EXPECT_STREQ("$(ADS_PARAM) \"$(SOURCE)\" \"$(OBJ)\"", target->GetAttribute("ADS_AsmParam"));
    EXPECT_EQ("C:\\ADS\\Bin\\armasm.exe -g  -keep -g \"src\\start.s\" \".\\Debug\\start.o\"", command);
    EXPECT_EQ("compiling src\\start.s...\r\n", host.pane);
    // Assembler sources are never scanned for dependencies.
    EXPECT_TRUE(host.runs.empty());
    EXPECT_EQ("C:\\proj\\Debug", fake.files.created.at(0));
    EXPECT_FALSE(parser.link_step());
}

TEST_F(EngineTest, ACFileIsScannedAndCompiledWithMinusGPlus) {
    target->SetAttribute("SearchPath", " -I\"inc\"  -J\"{Compiler}Include\" ");
    ConfigNode* c = AddFile("src\\main.c", 1, "main.o");
    host.answers[" -M "] = config::ToolRun{true, 0, "main.o: src\\main.c\nmain.o: inc/board.h\nmain.o: inc\\with\\ blank.h\n"};
    std::string command = Command(c);
    ASSERT_EQ(1u, host.runs.size());
    EXPECT_EQ("C:\\ADS\\Bin\\armcc.exe -O1 -g+ -I\"C:\\proj\\inc\" -J\"C:\\ADS\\Include\" -M \"src\\main.c\"", host.runs[0]);
    EXPECT_EQ(8000, host.buffer_sizes[0]);
    EXPECT_EQ(0u, command.find("C:\\ADS\\Bin\\armcc.exe -g+  -I\"C:\\proj\\inc\" -J\"C:\\ADS\\Include\"")) << command;
    EXPECT_TRUE(Has(command, " -O1 -g+ -c \"src\\main.c\" -o \".\\Debug\\main.o\"")) << command;
    const std::set<std::string>* deps = engine.Dependencies("src\\main.c");
    ASSERT_NE(nullptr, deps);
    EXPECT_EQ((std::set<std::string>{"src\\main.c", "inc\\board.h", "inc\\with blank.h"}), *deps);
}

TEST_F(EngineTest, SubFoldersOfTheSearchPathAreWalkedOncePerBuild) {
    target->SetAttribute("SearchPath", " -I\"src*\" ");
    fake.files.listings["C:\\proj\\src"] = {{"drivers", true, false}};
    fake.files.listings["C:\\proj\\src\\drivers"] = {};
    ConfigNode* a = AddFile("src\\a.c", 1, "a.o");
    ConfigNode* b = AddFile("src\\b.c", 1, "b.o");
    std::string first = Command(a);
    int walked = fake.files.lists;
    EXPECT_GT(walked, 0);
    EXPECT_TRUE(Has(first, " -I\"C:\\proj\\src\" -I\"C:\\proj\\src\\drivers\"")) << first;
    Command(b);
    EXPECT_EQ(walked, fake.files.lists);
    // A new folder counts from the next build on.
    fake.files.listings["C:\\proj\\src"].push_back({"more", true, false});
    fake.files.listings["C:\\proj\\src\\more"] = {};
    host.make = [](const std::string&, ConfigNode*) { return true; };
    engine.BuildTarget(context, 1);
    EXPECT_TRUE(Has(Command(a), "-I\"C:\\proj\\src\\more\"")) << Command(a);
}

TEST_F(EngineTest, AFailedScanLeavesNoDependencySet) {
    ConfigNode* c = AddFile("main.c", 1, "main.o");
    host.answers[" -M "] = config::ToolRun{true, 1, "\"main.c\", line 1: Error: C2225E: x\n"};
    EXPECT_FALSE(Command(c).empty());
    EXPECT_EQ(nullptr, engine.Dependencies("main.c"));
}

TEST_F(EngineTest, NoCommandForWhatCannotBeTranslated) {
    struct Row {
        const char* what;
        int type;
        const char* path;
    } rows[] = {{"a header", 0, "a.h"}, {"kind 4", 4, "a.x"}, {"no path", 1, nullptr}};
    for (const Row& row : rows) {
        auto* f = new ConfigNode("File");
        f->SetAttributeInt("FileType", row.type);
        if (row.path) f->SetAttribute("RelativePath", row.path);
        files->AppendChild(f);
        EXPECT_EQ("", Command(f)) << row.what;
    }
    EXPECT_EQ("", host.pane);
    context.configuration = nullptr;
    EXPECT_EQ("", Command(AddFile("b.c", 1, "b.o")));
}

TEST_F(EngineTest, UnresolvedOptionsGiveNoCommandAndSaySo) {
    target->SetAttribute("ADS_GArmCCParam", " -cpu NoSuchCore -O0");
    EXPECT_EQ("", Command(AddFile("main.c", 1, "main.o")));
    EXPECT_TRUE(Has(host.pane, "GetTempCCppOption Error")) << host.pane;
}

TEST_F(EngineTest, AFolderThatCannotBeCreatedIsReportedButTheCommandIsBuilt) {
    fake.files.create_error = platform::kErrorAccessDenied;
    EXPECT_FALSE(Command(AddFile("main.c", 1, "main.o")).empty());
    EXPECT_EQ(0u, host.pane.find("\r\ncreat target file failed!\r\n"));
}

TEST_F(EngineTest, TheLinkCommandListsObjectsAndNamesTheImage) {
    AddFile("src\\main.c", 1, "main.o");
    AddFile("lib\\prebuilt.o", 2, "lib\\prebuilt.o");  // a file that is its own object
    AddFile("inc\\a.h", 0, nullptr);
    std::string command = Command(&root);
    EXPECT_EQ("C:\\ADS\\Bin\\armlink.exe  \".\\Debug\\main.o\" \"lib\\prebuilt.o\"  -o \".\\Debug\\demo.axf\"", command);
    EXPECT_STREQ("$(OBJS) $(ADS_LNKPARAM) -o \"$(ELF)\"", target->GetAttribute("ADS_LinkParam"));
    EXPECT_EQ("\r\nLinking...\r\n", host.pane);
    EXPECT_TRUE(parser.link_step());
    EXPECT_EQ("C:\\proj\\Debug\\demo.axf", engine.application_file());
}

TEST_F(EngineTest, ALibrarianTargetInAnyCaseIsArchived) {
    target->SetAttribute("ADS_LinkerName", "arm librarian");
    target->SetAttribute("ADS_USRAPPFILE", "util");
    AddFile("u.c", 1, "u.o");
    EXPECT_EQ("C:\\ADS\\Bin\\armar.exe -r \".\\Debug\\util.a\"  \".\\Debug\\u.o\"", Command(&root));
    EXPECT_EQ("\r\nlibrarian...\r\n", host.pane);
}

TEST_F(EngineTest, ImageNamesAndOutputFolders) {
    target->SetAttribute("ADS_USRAPPFILE", "app");
    target->SetAttribute("ADS_OUTPUT_DIR", "{Project}out");
    target->SetAttribute("ADS_LNKPARAM", " -scatter \"{Project}board.scf\" -map");
    std::string command = Command(&root);
    // The user's name gets ".axf" too; "{Project}" stands for the folder.
    EXPECT_TRUE(Has(command, "-o \"C:\\proj\\out\\app.axf\"")) << command;
    EXPECT_TRUE(Has(command, " -scatter \"C:\\proj\\board.scf\" -map")) << command;
}

TEST_F(EngineTest, ATargetWhoseFilesFailedIsNeverLinked) {
    parser.SetLinkStep();
    const char text[] = "Finished: 0 information, 0 warning and 1 error messages.\n";
    parser.Parse(text, sizeof text - 1);
    ASSERT_EQ(1, parser.errors());
    EXPECT_EQ("", Command(&root));
    EXPECT_EQ("Target not created\r\n", host.pane);
}

TEST(FromElfExtension, FirstSwitchInTheSearchOrderDecides) {
    struct Row {
        const char* switches;
        const char* extension;
    } rows[] = {
        {" -bin", "bin"}, {" -elf -bin", "bin"}, {" -aifbin", "aif"}, {" -vhx", "vhx"},
        {" -i32 -m32", "m32"}, {" -text -c", "text"}, {"", "text"}, {" -fieldoffsets", "fieldoffsets"},
    };
    for (const Row& row : rows) EXPECT_EQ(row.extension, FromElfExtension(row.switches)) << row.switches;
}

class BuildTargetTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        AddFile("main.c", 1, "main.o");
        // The host's make: every file's command, then the root's, each
        // output handed to the parser.
        host.make = [this](const std::string&, ConfigNode* project) {
            for (ConfigNode* f = files->FirstChild(); f; f = f->NextSibling()) {
                std::string command;
                if (engine.CommandFor(context, f, &command)) host.Write(parser.Parse(compile_output.data(), compile_output.size()));
            }
            std::string link;
            if (links && engine.CommandFor(context, project, &link)) host.Write(parser.Parse(link_output.data(), link_output.size()));
            return made;
        };
    }
    bool links = true;  // false: the make finds the image up to date
    bool made = true;   // what the make answers
    std::string compile_output;
    std::string link_output = "Finished: 0 information, 0 warning and 0 error messages.\n";
};

TEST_F(BuildTargetTest, ACleanBuildPrintsTheBannerAndTheSummaryAndRunsFromElf) {
    target->SetAttribute("ADS_PostLnk", "arm FROMELF");
    target->SetAttribute("ADS_FromELFParam", " -bin");
    EXPECT_EQ(1, engine.BuildTarget(context, 1));
    EXPECT_EQ(0u, host.pane.find("--------------------Configuration: demo - Debug--------------------\r\n\r\n"
                                 "build target 'ADS-Debug'\r\ncompiling main.c...\r\n"))
        << host.pane;
    EXPECT_TRUE(Has(host.pane, "\r\n\r\ndemo.axf created - 0 error(s), 0 warning(s)\n\nFromELF...")) << host.pane;
    ASSERT_FALSE(host.runs.empty());
    EXPECT_EQ("C:\\ADS\\Bin\\fromelf.exe  -bin -output \"C:\\proj\\Debug\\demo.bin\" \"C:\\proj\\Debug\\demo.axf\"",
              host.runs.back());
    EXPECT_TRUE(Has(host.pane, "\n\nTranslation to bin format successful.")) << host.pane;
    EXPECT_STREQ(".\\Debug\\demo.axf", target->GetAttribute("AppFile"));
}

TEST_F(BuildTargetTest, ErrorsStopTheLinkAndThePostLinkStep) {
    target->SetAttribute("ADS_PostLnk", "ARM fromELF");
    compile_output = "\"main.c\", line 3: Error: C2225E: declaration expected\nmain.c: 0 warnings, 1 error, 0 serious errors\n";
    EXPECT_EQ(0, engine.BuildTarget(context, 1));
    EXPECT_TRUE(Has(host.pane, "main.c(3): Error: C2225E: declaration expected\nTarget not created\r\n")) << host.pane;
    EXPECT_TRUE(Has(host.pane, "demo.axf created - 1 error(s), 0 warning(s)")) << host.pane;
    EXPECT_FALSE(Has(host.pane, "FromELF"));
}

TEST_F(BuildTargetTest, AnUnforcedBuildConsumesThePendingRebuildRequest) {
    target->SetAttribute("ADS_ReBuild", "1");
    engine.BuildTarget(context, 1);
    EXPECT_STREQ("1", target->GetAttribute("ADS_ReBuild"));
    engine.BuildTarget(context, 0);
    EXPECT_STREQ("0", target->GetAttribute("ADS_ReBuild"));
}

TEST_F(BuildTargetTest, RefusalsWithoutToolsOrProject) {
    context.tools.found = false;
    EXPECT_EQ(0, engine.BuildTarget(context, 1));
    EXPECT_EQ(std::vector<std::string>{"Couldn't find ADS compiler tools, fail to build!!"}, fake.ui.messages);
    context.tools.found = true;
    root.SetAttribute("Name", "");
    EXPECT_EQ(0, engine.BuildTarget(context, 1));
    EXPECT_EQ("current Project Name and current target can't be none!\n", host.pane);
}

TEST_F(BuildTargetTest, ALibraryIsSummarisedAsOneNeverConvertedAndCleanedAway) {
    target->SetAttribute("ADS_LinkerName", "ARM Librarian");
    target->SetAttribute("ADS_PostLnk", "ARM fromELF");
    EXPECT_EQ(1, engine.BuildTarget(context, 1));
    EXPECT_TRUE(Has(host.pane, "\r\n\r\ndemo.a created - 0 error(s), 0 warning(s)\n\nFromELF skipped: demo.a is")) << host.pane;
    EXPECT_FALSE(Has(host.runs.back(), "fromelf")) << host.runs.back();
    EXPECT_STREQ(".\\Debug\\demo.a", target->GetAttribute("AppFile"));
    fake.files.files = {".\\Debug\\demo.a"};
    engine.Clean(context);
    EXPECT_TRUE(fake.files.files.empty());
}

TEST_F(BuildTargetTest, TheUserCommandRunsOnlyWhenEnabledAndHidesAFailuresOutput) {
    target->SetAttribute("ADS_PostLnk", "Batch File Runner");
    struct Row {
        const char* value;
        int exit_code;
        const char* expected;  // null: nothing runs
    } rows[] = {
        {"1,(post.bat arg)", 0, "\n\nUser Command:post.bat arg\r\nall done\n"},
        {"1,(post.bat)", 3, "\n\nUser Command:post.bat\r\n--- Error: User command terminated, Exit code = 3\r\n"},
        {"0,(post.bat)", 0, nullptr},
        // The text after the comma is taken from its second character on,
        // where the page's "(" stands.
        {"1,post.bat", 0, "\n\nUser Command:ost.bat\r\n"},
        {"", 0, nullptr},
    };
    for (const Row& row : rows) {
        target->SetAttribute("ADS_BatchFileParam", row.value);
        host.pane.clear();
        host.runs.clear();
        host.answers.clear();
        host.answers["post.bat"] = config::ToolRun{true, row.exit_code, "all done\n"};
        EXPECT_EQ(row.exit_code == 0 ? 1 : 0, engine.BuildTarget(context, 1)) << row.value;
        std::string tail = host.pane.substr(host.pane.find("warning(s)") + 10);
        EXPECT_EQ(row.expected ? row.expected : "", tail) << row.value;
    }
}

TEST_F(BuildTargetTest, ThePostLinkStepFollowsOnlyAGoodMakeThatLinkedOrLeftTheConversionOld) {
    const std::string image = "C:\\proj\\Debug\\demo.axf", binary = "C:\\proj\\Debug\\demo.bin";
    target->SetAttribute("ADS_FromELFParam", " -bin");
    target->SetAttribute("ADS_OUTPUT_DIR", "");  // the target's folder, as "{Project}"
    struct Row {
        const char *what, *post_link;
        bool made, links;
        int64_t image_time, output_time;  // -1: no such file
        int tool_exit, runs, built;
    } rows[] = {
        {"after a link", "ARM fromELF", true, true, 10, 20, 0, true, 1},
        {"conversion newer than the image", "ARM fromELF", true, false, 10, 20, 0, false, 1},
        {"conversion older than the image", "ARM fromELF", true, false, 20, 10, 0, true, 1},
        {"no conversion yet", "ARM fromELF", true, false, 20, -1, 0, true, 1},
        {"no image", "ARM fromELF", true, false, -1, -1, 0, false, 1},
        {"a failed conversion", "ARM fromELF", true, true, 10, -1, 2, true, 0},
        {"a failed make without a parsed error", "ARM fromELF", false, true, 10, -1, 0, false, 0},
        {"a user command without a link", "Batch File Runner", true, false, 20, -1, 0, false, 1},
    };
    for (const Row& row : rows) {
        target->SetAttribute("ADS_PostLnk", row.post_link);
        target->SetAttribute("ADS_BatchFileParam", "1,(post.bat)");
        made = row.made;
        links = row.links;
        fake.files.times.clear();
        if (row.image_time >= 0) fake.files.times[image] = row.image_time;
        if (row.output_time >= 0) fake.files.times[binary] = row.output_time;
        host.answers = {{"fromelf", config::ToolRun{true, row.tool_exit, ""}}};
        host.runs.clear();
        EXPECT_EQ(row.built, engine.BuildTarget(context, 1)) << row.what;
        EXPECT_EQ(row.made ? 0 : 1, parser.errors()) << row.what;
        EXPECT_EQ(row.runs, Has(host.runs.back(), "fromelf") || Has(host.runs.back(), "post.bat")) << row.what;
    }
}

TEST_F(BuildTargetTest, EveryUseOfTheOutputFolderReadsItTheSameWay) {
    target->SetAttribute("ADS_OUTPUT_DIR", "{Project}\\sub\\out\\");
    target->SetAttribute("ADS_USRAPPFILE", "app");
    target->SetAttribute("ADS_PostLnk", "ARM fromELF");
    target->SetAttribute("ADS_FromELFParam", " -bin -output x.bin");
    EXPECT_EQ(1, engine.BuildTarget(context, 1));
    EXPECT_EQ((std::vector<std::string>{"C:\\proj", "C:\\proj\\sub", "C:\\proj\\sub\\out", "C:\\proj\\Debug"}),
              fake.files.created);
    EXPECT_EQ("C:\\ADS\\Bin\\fromelf.exe  -bin -output \"C:\\proj\\sub\\out\\x.bin\" \"C:\\proj\\sub\\out\\app.axf\"",
              host.runs.back());
    EXPECT_STREQ("C:\\proj\\sub\\out\\app.axf", target->GetAttribute("AppFile"));
    fake.files.files = {"C:\\proj\\sub\\out\\app.axf"};
    engine.Clean(context);
    EXPECT_TRUE(fake.files.files.empty());
}

TEST_F(BuildTargetTest, ALaterSourceSharingAnObjectGetsItsOwn) {
    AddFile("a\\util.c", 1, "util.o");
    AddFile("util_2.c", 1, "util_2.o");
    ConfigNode* later = AddFile("b\\UTIL.c", 1, "Util.o");
    engine.BuildTarget(context, 1);
    EXPECT_STREQ("UTIL_3.o", later->GetAttribute("Output"));
    EXPECT_TRUE(Has(host.pane, "note: b\\UTIL.c shared the object Util.o with a\\util.c; it now writes UTIL_3.o\r\n"));
}

TEST_F(EngineTest, CleaningDeletesObjectsAndTheImageAndReportsRefusals) {
    AddFile("main.c", 1, "main.o");
    AddFile("util.c", 1, "util.o");
    AddFile("lib\\own.o", 2, "lib\\own.o");
    target->SetAttribute("ADS_USRAPPFILE", "app");
    fake.files.files = {"Debug\\main.o", "Debug\\util.o", ".\\Debug\\app.axf", "lib\\own.o"};
    fake.files.read_only = {"Debug\\util.o"};
    engine.Clean(context);
    EXPECT_EQ("--------------Deleting intermediate files: demo - Debug-------------\r\n"
              "Error: Could not delete file \"Debug\\util.o\" : Access is denied.\r\n",
              host.pane);
    EXPECT_EQ((std::set<std::string>{"Debug\\util.o", "lib\\own.o"}), fake.files.files);
    host.pane.clear();
    fake.files.read_only.clear();
    engine.Clean(context);
    engine.Clean(context);
    EXPECT_EQ("--------------Deleting intermediate files: demo - Debug-------------\r\n"
              "--------------Deleting intermediate files: demo - Debug-------------\r\n",
              host.pane);
}

TEST_F(EngineTest, CompilingAnUpToDateFilePrintsExactlyThreeLines) {
    ConfigNode* f = AddFile("main.c", 1, "main.o");
    host.out_of_date = false;
    EXPECT_EQ(1, engine.CompileFile(context, f));
    EXPECT_EQ("--------------------Configuration: demo - Debug--------------------\r\n"
              "Compiling main...\r\nskipping ... (no relevant changes detected)\r\n"
              "\r\nmain.o - 0 error(s), 0 warning(s)",
              host.pane);
    context.tools.found = false;
    EXPECT_EQ(0, engine.CompileFile(context, f));
    EXPECT_EQ(std::vector<std::string>{"Could't find ADS compiler tools!"}, fake.ui.messages);
}

TEST_F(EngineTest, ASingleFileCompileThatFailsCountsAnErrorAndShowsWhy) {
    ConfigNode* s = AddFile("start.s", 2, "start.o");
    struct Row {
        bool started;
        int exit_code;
        const char *output, *shown;
    } rows[] = {
        {true, 1, "Fatal error: A3900U: Unrecognized option '-zz'.", "Fatal error: A3900U: Unrecognized option '-zz'.\r\n"},
        {true, 3, "", "start.s: exit code 3\r\n"},
        {false, -1, "", "start.s: the assembler could not be run\r\n"},
    };
    for (const Row& row : rows) {
        host.pane.clear();
        host.answers["armasm.exe"] = config::ToolRun{row.started, row.exit_code, row.output};
        engine.CompileFile(context, s);
        EXPECT_TRUE(Has(host.pane, std::string(row.shown) + "\r\nCreate start.o - 1 error(s)")) << host.pane;
    }
    host.translate = false;
    EXPECT_EQ(0, engine.CompileFile(context, AddFile("main.c", 1, "main.o")));
    EXPECT_TRUE(Has(host.pane, "Create main.o - 1 error(s)")) << host.pane;
}

TEST_F(EngineTest, AnAssemblerFileIsAssembledHereThroughASmallBuffer) {
    ConfigNode* s = AddFile("start.s", 2, "start.o");
    std::string big = "\"start.s\", line 2: Error: A1163E: Unknown opcode FOO , expecting opcode or Macro\n";
    while (big.size() < 3000) big += big;
    host.answers["armasm.exe"] = config::ToolRun{true, 1, big};
    EXPECT_EQ(1, engine.CompileFile(context, s));
    ASSERT_EQ(1u, host.runs.size());
    EXPECT_EQ(1024, host.buffer_sizes[0]);
    EXPECT_TRUE(Has(host.pane, "Assembling start...\r\nstart.s(2): Error: A1163E")) << host.pane;
    // 1023 bytes hold 12 whole diagnostics of 82 bytes.
    EXPECT_EQ(12, parser.errors());
    EXPECT_TRUE(Has(host.pane, "\r\nCreate start.o - 12 error(s), 0 warning(s)")) << host.pane;
}

}  // namespace
}  // namespace ads::build
