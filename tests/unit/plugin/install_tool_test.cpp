// What InstallTool writes on the nodes the host creates: every default of a
// new target, byte for byte and in order, and a new file's kind, object
// name and settings node; all of it through clone, edit and commit.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/defaults.h"
#include "plugin/application.h"
#include "support/fake_host.h"
#include "support/fake_platform.h"

namespace ads::plugin {
namespace {

using ads::testing::FakeHost;
using ads::testing::FakePlatform;
using Attributes = std::vector<std::pair<std::string, std::string>>;

Attributes AttributesOf(const ConfigNode& node) {
    Attributes out;
    for (const auto* a = node.FirstAttribute(); a; a = node.NextAttribute(a)) out.emplace_back(a->Name(), a->Value());
    return out;
}

// Every key of a new target after "Name", with its exact text.
Attributes NewTargetDefaults(const std::string& simclk) {
    return {
        {"SIMCLK", simclk},
        {"ADS_AsmParam", "$(ADS_PARAM) \"$(SOURCE)\" \"$(OBJ)\""},
        {"ADS_CParam", "$(ADS_PARAM) -c \"$(SOURCE)\" -o \"$(OBJ)\""},
        {"ADS_LinkParam", "$(OBJS) $(ADS_LNKPARAM) -o \"$(ELF)\""},
        {"ADS_OPTDBG", "1,RDI 0,1,0,1,0,(\"\")"},
        {"ADS_OUTPUT_DIR", "{Project}"},
        {"ADS_LinkerName", "ARM Linker"},
        {"ADS_FileMap", "(.s@armasm),(.c@armcc),(.cc&&.cpp@armcpp)"},
        {"ADS_USRAPPFILE", ""},
        {"SearchPath", " -I\".*\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" "},
        {"ADS_LNKPARAM", ""},
        {"AppFile", ""},
        {"ADS_GArmAsmParam", " -keep -split_ldm -g"},
        {"ADS_GArmCCParam", " -O0 -g+"},
        {"ADS_GArmCppParam", " -O0 -g+"},
        {"ADS_GThmCCParam", " -O0 -g+"},
        {"ADS_GThmCppParam", " -O0 -g+"},
        {"ADS_FromELFParam", " -elf"},
        {"ADS_PostLnk", "ARM fromELF"},
        {"UpdateTgtBeforeDbg", "1"},
        {"ServeDebugOptions", ""},
        {"ADS_BatchFileParam", "0,()"},
    };
}

class InstallToolTest : public ::testing::Test {
protected:
    void SetUp() override {
        fake.libraries.free_null_succeeds = true;  // no service module here
        app = std::make_unique<Application>(fake.platform);
        table = app->GetInterface();
        host.FillSlots(table);

        project = std::make_unique<ConfigNode>("OrvaneProject");
        configurations = new ConfigNode("Configurations");
        project->AppendChild(configurations);
        files = new ConfigNode("Files");
        project->AppendChild(files);
    }
    void TearDown() override { app.reset(); }

    ConfigNode* AddTarget(const char* name) {
        auto* c = new ConfigNode("Configuration");
        c->SetAttribute("Name", name);
        configurations->AppendChild(c);
        return c;
    }
    ConfigNode* AddFile(const char* path, int type) {
        auto* f = new ConfigNode("File");
        if (path) f->SetAttribute("RelativePath", path);
        if (type >= 0) f->SetAttributeInt("FileType", type);
        files->AppendChild(f);
        return f;
    }
    void AttachWith(const AdsHostSimulator* simulator) {
        AdsHostContext context{};
        context.simulator = simulator;
        ASSERT_EQ(1, table->Attach(&context));
    }

    FakeHost host;
    FakePlatform fake;
    std::unique_ptr<Application> app;
    PluginInterface* table = nullptr;
    std::unique_ptr<ConfigNode> project;
    ConfigNode* configurations = nullptr;
    ConfigNode* files = nullptr;
};

TEST_F(InstallToolTest, ANewTargetGetsEveryDefaultByteForByteInOrder) {
    AttachWith(nullptr);
    ConfigNode* debug = AddTarget("Debug");
    table->InstallTool(debug);
    Attributes expected{{"Name", "Debug"}};
    for (auto& kv : NewTargetDefaults("12.000000")) expected.push_back(kv);
    EXPECT_EQ(expected, AttributesOf(*debug));
    EXPECT_EQ(1u, host.commits.size());
}

TEST_F(InstallToolTest, TheSimulatorClockComesFromTheHostWhenItHasOne) {
    struct Row {
        const char* name;
        bool have_simulator;
        AdsHostSimulator simulator;
        const char* simclk;
    } rows[] = {
        {"no simulator", false, {0, 0.0}, "12.000000"},
        {"a simulator without a clock", true, {0, 50.0}, "12.000000"},
        {"a simulator's clock", true, {1, 33.8688}, "33.868800"},
        {"a zero clock is a clock", true, {1, 0.0}, "0.000000"},
    };
    for (const Row& row : rows) {
        AttachWith(row.have_simulator ? &row.simulator : nullptr);
        ConfigNode* target = AddTarget(row.name);
        table->InstallTool(target);
        EXPECT_STREQ(row.simclk, target->GetAttribute("SIMCLK")) << row.name;
    }
}

TEST_F(InstallToolTest, AnExistingTargetIsResetInPlaceAndKeepsItsOtherKeys) {
    ConfigNode* t = AddTarget("Release");
    t->SetAttribute("CPU", "ARM920T");
    t->SetAttribute("ADS_GArmCCParam", " -O2");
    t->SetAttribute("SIMCLK", "99.0");
    t->SetAttribute("MyKey", "mine");
    table->InstallTool(t);
    const Attributes attributes = AttributesOf(*t);
    ASSERT_GE(attributes.size(), 5u);
    EXPECT_EQ((Attributes{{"Name", "Release"}, {"CPU", "ARM920T"}, {"ADS_GArmCCParam", " -O0 -g+"},
                          {"SIMCLK", "12.000000"}, {"MyKey", "mine"}}),
              Attributes(attributes.begin(), attributes.begin() + 5));
    EXPECT_EQ(5u + NewTargetDefaults("").size() - 2, attributes.size());
}

TEST_F(InstallToolTest, DefaultsReachTheNodeOnlyThroughTheCommit) {
    ConfigNode* t = AddTarget("Debug");
    ConfigNode* f = AddFile("main.c", 1);
    host.Watch(project.get());
    table->InstallTool(t);
    table->InstallTool(f);
    host.CheckUntouched();
    // The target's defaults, the file's kind and object, and the file's tool
    // entries: all commits.
    EXPECT_GE(host.commits.size(), 3u);
    EXPECT_STREQ("main.o", f->GetAttribute("Output"));
}

TEST_F(InstallToolTest, ANewFileGetsItsKindObjectNameAndSettingsNode) {
    struct Row {
        const char* path;
        int host_type;  // -1: none
        const char* file_type;
        const char* output;
        bool settings;  // the "ADS_CParam" node
    } rows[] = {
        {"src\\main.c", 1, "1", "main.o", true},
        {"boot\\Startup.S", 0, "2", "Startup.o", false},
        {"lib/util.cpp", -1, "3", "util.o", true},
        // Objects share one folder: a base name taken goes on with a number.
        {"b\\UTIL.c", 1, "1", "UTIL_2.o", true},
        {"x.CC", 1, "3", "x.o", true},
        {"two.dots.c", 1, "1", "two.dots.o", true},
        // An extension the mapping does not list keeps the host's kind.
        {"vectors.asm", 2, "2", "vectors.o", false},
    };
    for (const Row& row : rows) {
        host.settings_asked.clear();
        ConfigNode* f = AddFile(row.path, row.host_type);
        table->InstallTool(f);
        EXPECT_STREQ(row.file_type, f->GetAttribute("FileType")) << row.path;
        EXPECT_STREQ(row.output, f->GetAttribute("Output")) << row.path;
        ConfigNode* settings = f->FindChild("ADS_CParam");
        EXPECT_EQ(row.settings, settings != nullptr) << row.path;
        if (settings) {
            EXPECT_STREQ("1", settings->GetAttribute("ADS_CfgFlag")) << row.path;
        }
        EXPECT_EQ(row.settings ? std::vector<std::string>{"ADS_CParam/ADS_CfgFlag"} : std::vector<std::string>{},
                  host.settings_asked)
            << row.path;
    }
}

TEST_F(InstallToolTest, FilesThatAreNoSourcesAndOtherNodesAreLeftAlone) {
    ConfigNode* header = AddFile("inc\\led.h", 0);
    ConfigNode* nameless = AddFile(nullptr, 1);
    for (ConfigNode* node : {header, nameless, project.get(), files}) table->InstallTool(node);
    EXPECT_TRUE(host.commits.empty());
    EXPECT_EQ(nullptr, header->GetAttribute("Output"));
    EXPECT_EQ(nullptr, nameless->GetAttribute("Output"));
    EXPECT_EQ(nullptr, header->FirstChild());
    EXPECT_EQ(0u, project->AttributeCount());
}

TEST_F(InstallToolTest, TheCurrentTargetsFileMappingClassifiesNewFiles) {
    ConfigNode* t = AddTarget("Thumb");
    table->InstallTool(t);
    config::EditNode(app->host(), t, [](ConfigNode* c) {
        c->SetAttribute("ADS_FileMap", "(.s&&.arm@armasm),(.c&&.h@tcc),(.cpp@tcpp)");
    });
    table->SetCurrentTarget(1, "Thumb");
    ConfigNode* arm = AddFile("a.ARM", 1);
    ConfigNode* header = AddFile("b.h", 0);
    ConfigNode* cc = AddFile("c.cc", 0);  // no longer mapped: keeps the host's 0
    for (ConfigNode* f : {arm, header, cc}) table->InstallTool(f);
    EXPECT_STREQ("2", arm->GetAttribute("FileType"));
    EXPECT_STREQ("1", header->GetAttribute("FileType"));
    EXPECT_STREQ("b.o", header->GetAttribute("Output"));
    EXPECT_STREQ("0", cc->GetAttribute("FileType"));
    EXPECT_EQ(nullptr, cc->GetAttribute("Output"));
}

}  // namespace
}  // namespace ads::plugin
