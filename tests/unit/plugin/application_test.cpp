#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <memory>
#include <string>
#include <vector>

#include "plugin/application.h"
#include "support/fake_host.h"
#include "support/fake_platform.h"

namespace ads::plugin {
namespace {

using ads::testing::FakeHost;
using ads::testing::FakePlatform;

// The table the service module's entry was called with.
AdsHostServices* g_entry_table = nullptr;

void ADS_CALL FakeServiceEntry(AdsHostServices* services) {
    g_entry_table = services;
    services->service[0] = 0xBEEF;
}

void* const kServiceHandle = reinterpret_cast<void*>(0x5000);

class PluginTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_entry_table = nullptr;
        fake.libraries.modules["Build\\OrvMake.dll"] = kServiceHandle;
        fake.libraries.symbols["OrvMakeEntry"] = reinterpret_cast<void*>(&FakeServiceEntry);
    }

    PluginInterface* Start() {
        app = std::make_unique<Application>(fake.platform);
        PluginInterface* t = app->GetInterface();
        host.FillSlots(t);
        return t;
    }

    // OrvaneProject with Configurations (Debug, Release) and Files.
    void MakeProject() {
        project = std::make_unique<ConfigNode>("OrvaneProject");
        project->SetAttribute("Name", "demo");
        auto* configs = new ConfigNode("Configurations");
        project->AppendChild(configs);
        for (const char* name : {"Debug", "Release"}) {
            auto* c = new ConfigNode("Configuration");
            c->SetAttribute("Name", name);
            configs->AppendChild(c);
        }
        files = new ConfigNode("Files");
        project->AppendChild(files);
        file = new ConfigNode("File");
        file->SetAttribute("RelativePath", "src\\main.c");
        file->SetAttributeInt("FileType", 1);
        files->AppendChild(file);
    }
    ConfigNode* Target(const char* name) { return config::FindCurrentConfiguration(project.get(), name); }

    FakeHost host;
    FakePlatform fake;
    std::unique_ptr<Application> app;
    std::unique_ptr<ConfigNode> project;
    ConfigNode* files = nullptr;
    ConfigNode* file = nullptr;
};

TEST_F(PluginTest, TheServiceModuleIsLoadedItsEntryCalledWithTheTableAndFreedAtUnload) {
    Start();
    ASSERT_EQ(1u, fake.libraries.loaded.size());
    EXPECT_EQ("Build\\OrvMake.dll", fake.libraries.loaded[0]);
    const AdsHostServices& s = app->services();
    EXPECT_EQ(&s, g_entry_table);
    EXPECT_STREQ("ADS", s.name);
    EXPECT_EQ(reinterpret_cast<AdsWord>(kServiceHandle), s.module[0]);
    EXPECT_EQ(reinterpret_cast<AdsWord>(kServiceHandle), s.module[1]);
    EXPECT_EQ(0xBEEFu, s.service[0]);  // the entry's own words
    EXPECT_TRUE(app->initialised());
    app.reset();
    EXPECT_EQ(std::vector<void*>{kServiceHandle}, fake.libraries.freed);
}

TEST_F(PluginTest, AMissingServiceModuleLeavesTheServiceTableZeroed) {
    fake.libraries.modules.clear();
    app = std::make_unique<Application>(fake.platform);
    AdsHostServices zero;
    std::memset(&zero, 0, sizeof zero);
    EXPECT_EQ(0, std::memcmp(&zero, &app->services(), sizeof zero));
    EXPECT_EQ(nullptr, g_entry_table);
    EXPECT_TRUE(app->initialised());
    // Unloading now ends the process (see the death tests); let this one live.
    fake.libraries.free_null_succeeds = true;
}

TEST_F(PluginTest, GetInterfaceLeavesEveryHostAndIdleSlotUntouched) {
    app = std::make_unique<Application>(fake.platform);
    PluginInterface* t = app->GetInterface();
    auto* words = reinterpret_cast<void**>(t);
    const int plugin_slots[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 20, 21, 22, 35, 36, 37};
    for (int i = 0; i < kSlotCount; ++i) words[i] = reinterpret_cast<void*>(static_cast<uintptr_t>(0xA000 + i));
    EXPECT_EQ(t, app->GetInterface());
    for (int i = 0; i < kSlotCount; ++i) {
        bool plugin = std::find(std::begin(plugin_slots), std::end(plugin_slots), i) != std::end(plugin_slots);
        void* marker = reinterpret_cast<void*>(static_cast<uintptr_t>(0xA000 + i));
        if (plugin) {
            EXPECT_NE(marker, words[i]) << "slot " << i;
            EXPECT_NE(nullptr, words[i]) << "slot " << i;
        } else {
            EXPECT_EQ(marker, words[i]) << "slot " << i;
        }
    }
}

TEST_F(PluginTest, AttachNeedsAContextAndKeepsACopyOfIt) {
    PluginInterface* t = Start();
    EXPECT_EQ(0, t->Attach(nullptr));
    EXPECT_FALSE(app->attached());
    EXPECT_TRUE(host.registrations.empty());

    const char* const processors[] = {"RAM(1)", "Cpu(ARM720T)", nullptr};
    AdsHostDefaults defaults = {"Vendor", "Device", 0, processors, 0};
    AdsHostContext context{};
    context.instance = 11;
    context.reserved8 = 99;
    context.defaults = &defaults;
    EXPECT_EQ(1, t->Attach(&context));
    EXPECT_TRUE(app->attached());
    EXPECT_EQ(0, std::memcmp(&context, &app->context(), sizeof context));
    EXPECT_EQ("Vendor", app->host_defaults().vendor);
    EXPECT_EQ("Device", app->host_defaults().device);
    EXPECT_EQ((std::vector<std::string>{"RAM(1)", "Cpu(ARM720T)"}), app->host_defaults().processors);

    AdsHostContext empty{};
    EXPECT_EQ(1, t->Attach(&empty));  // any context will do
}

TEST_F(PluginTest, InstallToolRemembersTheRootAndSaysWhenTheSetUpFails) {
    MakeProject();
    PluginInterface* t = Start();
    t->InstallTool(nullptr);
    EXPECT_EQ("", host.pane);
    t->InstallTool(file);
    EXPECT_EQ(project.get(), app->project_root());
    // No tools anywhere: nothing to register, and said so.
    EXPECT_EQ("\r\ninstall tool failed!\r\n", host.pane);
    EXPECT_EQ(std::vector<AdsWord>{0}, host.panes);

    app->toolchain().SetCandidateSource([] { return std::vector<std::string>{"C:\\ADS\\Bin"}; });
    fake.files.listings["C:\\ADS\\Bin"] = {{"armcc.exe", false, false}, {"zz.txt", false, false}};
    fake.files.files.insert("C:\\ADS\\Bin\\armasm.exe");
    host.pane.clear();
    t->InstallTool(project.get());
    EXPECT_EQ("", host.pane);
    host.register_answer = 0;  // the host refuses the record
    t->InstallTool(project.get());
    EXPECT_EQ("\r\ninstall tool failed!\r\n", host.pane);
}

TEST_F(PluginTest, SetCurrentTargetNeedsBothArguments) {
    MakeProject();
    PluginInterface* t = Start();
    t->InstallTool(project.get());
    t->SetCurrentTarget(0, "Debug");
    EXPECT_EQ("", app->current_target());
    t->SetCurrentTarget(1, nullptr);
    EXPECT_EQ("", app->current_target());
    t->SetCurrentTarget(1, "Release");
    EXPECT_EQ("Release", app->current_target());
    EXPECT_EQ(Target("Release"), app->current_configuration());
    t->SetCurrentTarget(7, "Nope");
    EXPECT_EQ("Nope", app->current_target());
    EXPECT_EQ(nullptr, app->current_configuration());
}

TEST_F(PluginTest, OnEventHandlesOnlyTheTargetChange) {
    MakeProject();
    PluginInterface* t = Start();
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Debug");
    t->OnEvent(2, nullptr);
    EXPECT_EQ("Debug", app->current_target());
    for (int code : {0, 1, 3, -2, 200}) {
        t->OnEvent(code, "Release");
        EXPECT_EQ("Debug", app->current_target()) << code;
    }
    t->OnEvent(2, "Release");
    EXPECT_EQ("Release", app->current_target());
}

TEST_F(PluginTest, ShowSettingsWithoutACurrentTargetSaysSoAndOpensNothing) {
    MakeProject();
    PluginInterface* t = Start();
    int dialogs = 0;
    app->SetSettingsDialog([&](ConfigNode*, int) { return ++dialogs, DialogOutcome{kIdOk, true}; });
    t->InstallTool(project.get());
    host.pane.clear();
    host.commits.clear();
    EXPECT_EQ(-1, t->ShowSettings(nullptr));
    EXPECT_EQ(0, t->ShowSettings(project.get()));
    EXPECT_EQ("\r\nplease setting the current target!\r\n", host.pane);
    EXPECT_TRUE(host.commits.empty());
    t->SetCurrentTarget(1, "Missing");
    host.pane.clear();
    host.commits.clear();  // the walk of the target change stores the files' tools
    EXPECT_EQ(0, t->ShowSettings(file));
    EXPECT_EQ("\r\nplease setting the current target!\r\n", host.pane);
    EXPECT_EQ(0, dialogs);
    EXPECT_TRUE(host.commits.empty());
}

TEST_F(PluginTest, ShowSettingsClassifiesTheNodeForTheDialog) {
    MakeProject();
    PluginInterface* t = Start();
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Debug");
    auto* folder = new ConfigNode("Filter");
    files->AppendChild(folder);
    auto* typed_folder = new ConfigNode("Filter");
    typed_folder->SetAttributeInt("FileType", 3);
    files->AppendChild(typed_folder);
    auto* other = new ConfigNode("Group");
    files->AppendChild(other);
    struct Row {
        ConfigNode* node;
        int kind;
    } rows[] = {{project.get(), 8}, {folder, 7}, {file, 1}, {typed_folder, 3}, {other, 0}};
    int seen = -1;
    for (const Row& row : rows) {
        seen = -1;
        app->SetSettingsDialog([&](ConfigNode*, int kind) { return seen = kind, DialogOutcome{}; });
        EXPECT_EQ(kIdCancel, t->ShowSettings(row.node));
        EXPECT_EQ(row.kind, seen) << row.node->Name();
        EXPECT_EQ(row.kind, app->settings_kind());
    }
    t->ShowSettings(file);
    EXPECT_EQ("src\\main.c", app->settings_path());
    // The reader ran: both targets are known and Debug is the current one.
    ASSERT_EQ(2u, app->targets().size());
    EXPECT_TRUE(app->targets()[0].current);
    EXPECT_FALSE(app->targets()[1].current);
}

int ADS_CALL UiCancel(void*, const AdsSettingsDialog*) { return kIdCancel; }

TEST_F(PluginTest, ShowSettingsCancelledChangesNothing) {
    MakeProject();
    PluginInterface* t = Start();
    // Answered by a windowless host: on Windows the IDE's dialog is a window.
    const AdsHostUi ui = {nullptr, UiCancel, nullptr, nullptr};
    AdsHostContext context{};
    context.ui = &ui;
    ASSERT_EQ(1, t->Attach(&context));
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Debug");
    host.commits.clear();
    EXPECT_EQ(kIdCancel, t->ShowSettings(project.get()));
    EXPECT_TRUE(host.commits.empty());
    EXPECT_EQ(nullptr, Target("Debug")->GetAttribute("ADS_ReBuild"));
}

TEST_F(PluginTest, AChangedSettingAsksTheNextBuildToRebuildThroughACommit) {
    MakeProject();
    PluginInterface* t = Start();
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Release");
    app->SetSettingsDialog([](ConfigNode*, int) { return DialogOutcome{kIdOk, true}; });
    // The node itself is the host's: only the commit may change it.
    host.Watch(project.get());
    host.commits.clear();
    EXPECT_EQ(kIdOk, t->ShowSettings(file));
    host.CheckUntouched();
    ASSERT_EQ(1u, host.commits.size());
    EXPECT_EQ(Target("Release"), host.commits[0].node);
    EXPECT_STREQ("1", Target("Release")->GetAttribute("ADS_ReBuild"));
}

bool g_dialog_gone = false;
std::vector<std::string> g_traces;
int ADS_CALL UiRunSettings(void*, const AdsSettingsDialog*) {
    if (g_dialog_gone) throw std::runtime_error("dialog is gone");
    return kIdOk;
}
void ADS_CALL UiTrace(void*, const char* text) { g_traces.emplace_back(text); }

TEST_F(PluginTest, ASlotWhoseWorkThrowsTracesItAndAnswersItsFailureValue) {
    const AdsHostUi ui = {nullptr, UiRunSettings, nullptr, UiTrace};
    struct Row {
        const char* trace;
        int failure;
        std::function<int(PluginInterface*)> call;
    } rows[] = {
        {"ads_plugin: slot 1 InstallTool: pane is gone", 0,
         [this](PluginInterface* t) { return t->InstallTool(project.get()), 0; }},
        {"ads_plugin: slot 3 ShowSettings: dialog is gone", 0,
         [this](PluginInterface* t) { return t->ShowSettings(file); }},
        {"ads_plugin: slot 4 ImportProject: pane is gone", 0,
         [](PluginInterface* t) { return t->ImportProject("missing.xml", 1); }},
        {"ads_plugin: slot 37 ParseOutput: pane is gone", 0,
         [](PluginInterface* t) { return t->ParseOutput("x\n", 0), 0; }},
    };
    for (const Row& row : rows) {
        MakeProject();
        PluginInterface* t = Start();
        AdsHostContext context{};
        context.ui = &ui;
        ASSERT_EQ(1, t->Attach(&context));
        t->InstallTool(project.get());
        t->SetCurrentTarget(1, "Debug");
        g_traces.clear();
        host.pane_gone = g_dialog_gone = true;
        EXPECT_EQ(row.failure, row.call(t)) << row.trace;
        EXPECT_EQ(std::vector<std::string>{row.trace}, g_traces);
        host.pane_gone = g_dialog_gone = false;
    }
}

#ifndef _WIN32
TEST_F(PluginTest, WithoutAUiTableTheTraceGoesToStandardError) {
    PluginInterface* t = Start();
    host.pane_gone = true;
    ::testing::internal::CaptureStderr();
    t->ParseOutput("x\n", 0);
    host.pane_gone = false;
    EXPECT_EQ("ads_plugin: slot 37 ParseOutput: pane is gone\n", ::testing::internal::GetCapturedStderr());
}
#endif

TEST_F(PluginTest, Slot7ForwardsItsArgumentsToHostSlot34) {
    PluginInterface* t = Start();
    host.call34_answer = 1010;
    EXPECT_EQ(1010u, t->HostCall34Forward(1, 2, 3, 4));
    EXPECT_EQ((std::vector<AdsWord>{1, 2, 3, 4}), host.call34);
}

TEST_F(PluginTest, NullArgumentsAndReservedSlotsReturnAtOnce) {
    PluginInterface* t = Start();
    t->Reserved11();
    EXPECT_EQ(0, t->Reserved22(1, 2, 3) + t->Reserved35());
    EXPECT_EQ(0, t->ImportProject(nullptr, 1));
    EXPECT_EQ(0, t->ImportProject("x.xml", 0));
    EXPECT_EQ(0, t->CompileFile(nullptr));
    EXPECT_EQ(1, t->GetDebugOptions(nullptr));  // a null request is done at once
    EXPECT_EQ(0, t->LookupKeyed(nullptr, 0, 0, 0));
    EXPECT_EQ(0u, t->GetSearchPath(nullptr, 0, 0));
    t->ParseOutput(nullptr, 5);
    t->Clean();
    EXPECT_EQ(0, t->BuildTarget(0));
    EXPECT_EQ("", host.pane);
    EXPECT_TRUE(host.commits.empty());
}

TEST_F(PluginTest, FileBuildTextFollowsItsArgumentRules) {
    MakeProject();
    PluginInterface* t = Start();
    char buffer[] = "caller's text";
    const char* empty = t->GetFileBuildText(buffer, 1, file, 0);
    ASSERT_NE(nullptr, empty);
    EXPECT_STREQ("", empty);
    EXPECT_NE(buffer, empty);
    EXPECT_EQ(buffer, t->GetFileBuildText(buffer, 0, file, 1));
    EXPECT_EQ(buffer, t->GetFileBuildText(buffer, 1, nullptr, 1));
    EXPECT_STREQ("caller's text", buffer);
    // With everything given the plug-in answers from its own text.
    const char* text = t->GetFileBuildText(buffer, 1, file, 1);
    EXPECT_NE(buffer, text);
}

// The states of the target (under the project), of each folder and of the
// file reach the file's command, each layer over the ones before it, and the
// dialog's "Equivalent Command Line" on the file reads the same.
std::vector<std::string> g_command_lines;
int ADS_CALL UiReadArmcc(void*, const AdsSettingsDialog* dialog) {
    const char* text = nullptr;
    dialog->CommandLine(dialog->self, "armcc", &text);
    g_command_lines.emplace_back(text != nullptr ? text : "");
    return kIdCancel;
}

TEST_F(PluginTest, AFilesCommandCarriesTheTargetsTheFoldersAndItsOwnStates) {
    MakeProject();
    Target("Debug")->SetAttribute("ADS_GArmCCParam", " -O1 -g+");
    auto* outer = new ConfigNode("Filter");
    auto* inner = new ConfigNode("Filter");
    files->AppendChild(outer);
    outer->AppendChild(inner);
    files->RemoveChild(file);  // the file goes into the inner folder
    inner->AppendChild(file = new ConfigNode("File"));
    file->SetAttribute("RelativePath", "src\\drv.c");
    file->SetAttributeInt("FileType", 1);
    ConfigNode* owners[] = {project.get(), outer, inner, file};
    for (ConfigNode* owner : owners) owner->AppendChild(new ConfigNode("ADS_CParam"));

    const AdsHostUi ui = {nullptr, UiReadArmcc, nullptr, nullptr};
    AdsHostContext context{};
    context.ui = &ui;
    PluginInterface* t = Start();
    ASSERT_EQ(1, t->Attach(&context));
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Debug");

    // "Debug/Opt" states of the project, the outer and the inner folder and
    // the file ("" = none); the tool-wide string sets level 1.
    const struct {
        const char* what;
        const char* states[4];
        const char* options;
    } rows[] = {
        {"the target's", {"-1,-1,-1,2", "", "", ""}, " -O2 -g+"},
        {"a folder's", {"", "-1,-1,-1,0", "", ""}, " -O0 -g+"},
        {"the inner folder over the outer", {"", "-1,-1,-1,2", "-1,-1,-1,0", ""}, " -O0 -g+"},
        {"each layer by position", {"-1,-1,-1,2,1", "-1,-1,-1,0", "", "-1,-1,1"}, " -O0 -Otime -Ono_inline -g+"},
        {"the file over all", {"-1,-1,-1,2", "-1,-1,-1,2", "-1,-1,-1,2", "-1,-1,-1,0"}, " -O0 -g+"},
    };
    for (const auto& row : rows) {
        for (int i = 0; i < 4; ++i) owners[i]->FindChild("ADS_CParam")->SetAttribute("Debug_ArmC_Debug_Opt", row.states[i]);
        char buffer[] = "";
        const std::string command = t->GetFileBuildText(buffer, 1, file, 1);
        EXPECT_NE(std::string::npos, command.find(std::string(row.options) + " -c \"src\\drv.c\""))
            << row.what << ": " << command;
        g_command_lines.clear();
        t->ShowSettings(file);
        EXPECT_EQ(std::vector<std::string>{row.options}, g_command_lines) << row.what;
    }
}

TEST_F(PluginTest, ParseOutputCountsWhatItShowsAndTheCountsAreReadBack) {
    const char kLink[] = "Error: L6218E: Undefined symbol x (referred from a.o).\n"
                         "Finished: 0 information, 2 warning and 1 error messages.\n";
    const char kCompile[] = "\"a.c\", line 3: Error: C2456E: undeclared name\n";
    const char kFatal[] = "Fatal error: C3900U: Unrecognized option '-zz'.\n";
    struct Row {
        const char* name;
        bool link_step_before;
        const char* text;
        int flags;
        const char* pane;
        const char* counts;
    } rows[] = {
        {"link output after the target's command", true, kLink, 0,
         "Error: L6218E: Undefined symbol x (referred from a.o).\n", "errors=1 warnings=2\n"},
        {"link output named by the host", false, kLink, kAdsParseLinkStep,
         "Error: L6218E: Undefined symbol x (referred from a.o).\n", "errors=1 warnings=2\n"},
        {"failed compile with a known error counts it once", false, kCompile, kAdsParseFailed,
         "a.c(3): Error: C2456E: undeclared name\n", "errors=1 warnings=0\n"},
        {"failed compile the parser cannot read is shown whole", false, kFatal, kAdsParseFailed, kFatal,
         "errors=1 warnings=0\n"},
        {"failure without output ends its line", false, "a.c: exit code 3", kAdsParseFailed,
         "a.c: exit code 3\r\n", "errors=1 warnings=0\n"},
        {"unreadable output of a command that succeeded", false, kFatal, 0, "", "errors=0 warnings=0\n"},
        {"failed link output is shown once", false, "L6000U: out of memory\n", kAdsParseLinkStep | kAdsParseFailed,
         "L6000U: out of memory\n", "errors=1 warnings=0\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        PluginInterface* t = Start();
        app->parser().ResetCounters();
        if (row.link_step_before) app->parser().SetLinkStep();
        host.pane.clear();
        t->ParseOutput(row.text, row.flags);
        EXPECT_EQ(row.pane, host.pane);
        EXPECT_EQ(row.link_step_before, app->parser().link_step());
        char counts[64] = "";
        EXPECT_EQ(1, t->LookupKeyed(kAdsCountsKey, reinterpret_cast<AdsWord>(counts), sizeof counts, 0));
        EXPECT_STREQ(row.counts, counts);
    }
}

TEST_F(PluginTest, NoSlotReachesAnApplicationThatIsGone) {
    PluginInterface copy;
    {
        PluginInterface* t = Start();
        copy = *t;
        app.reset();
    }
    EXPECT_EQ(0, copy.Attach(nullptr));
    AdsHostContext context{};
    EXPECT_EQ(0, copy.Attach(&context));
    EXPECT_EQ(-1, copy.ShowSettings(nullptr));
}

// The real process exit: the application object ends the process with the
// system's last error code when the service module cannot be freed, also
// when it never loaded.
void UnloadWith(bool module_loads) {
    ads::testing::FakeLibraries libraries;
    if (module_loads) libraries.modules["Build\\OrvMake.dll"] = kServiceHandle;
    libraries.symbols["OrvMakeEntry"] = reinterpret_cast<void*>(&FakeServiceEntry);
    libraries.free_succeeds = false;
    platform::Platform real = platform::System();
    real.libraries = &libraries;
    { Application doomed(real); }
    std::exit(0);
}

TEST(PluginUnloadDeathTest, AServiceModuleThatCannotBeFreedEndsTheProcessWithTheLastError) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(UnloadWith(true), ::testing::ExitedWithCode(5), "");
    EXPECT_EXIT(UnloadWith(false), ::testing::ExitedWithCode(6), "");
}

// Slot 10 as a debugger uses it: the host owns the request, the plug-in
// fills it from the current target and the callbacks write back through
// the host's commit.
TEST_F(PluginTest, DebugOptionsFillTheHostsRequestAndTheCallbacksCommit) {
    MakeProject();
    fake.registry.Set(platform::RegistryRoot::kCurrentUser,
                      "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\\\AGDIs", "1", "C:\\a.dll");
    ConfigNode* debug = Target("Debug");
    debug->SetAttribute("ADS_OPTDBG", "0,AGDI 1,1,0,1,1,(C:\\a.dll)");
    debug->SetAttribute("SIMCLK", "0.12");
    debug->SetAttribute("AppFile", std::string(300, 'f'));
    auto* storage = new ConfigNode("StorageNode5");
    storage->SetAttribute("StartAddress", "20000000");
    storage->SetAttribute("LoadFile", "c:\\Data.bin");
    storage->SetAttribute("ShouldDownLoad", "Yes");
    debug->AppendChild(storage);
    PluginInterface* t = Start();
    t->InstallTool(project.get());
    t->SetCurrentTarget(1, "Debug");

    auto request = std::make_unique<AdsDebugRequest>();
    std::memset(request.get(), 0x55, sizeof *request);
    double clock = -1;
    request->clock = &clock;
    ASSERT_EQ(1, t->GetDebugOptions(request.get()));
    EXPECT_EQ(0, request->mode);
    EXPECT_EQ(0x55555555, request->reserved);  // never written
    EXPECT_EQ(1, request->options[0]);
    EXPECT_EQ(1, request->options[3]);
    EXPECT_STREQ("C:\\a.dll", request->driver_library);
    EXPECT_EQ(std::string(259, 'f'), request->app_file);  // cut to its field
    EXPECT_DOUBLE_EQ(0.12, clock);
    AdsDebugBlock* block = request->block;
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(0x20000000u, block->storage[5].start);
    EXPECT_EQ(1, block->storage[5].download);

    const size_t commits_before = host.commits.size();
    block->SetDriverLibrary("C:\\b.dll");
    block->SetAppFile("out.axf");
    block->SetDebuggerText(nullptr);
    block->SetDebuggerText("speed=9");
    ASSERT_EQ(commits_before + 3, host.commits.size());
    EXPECT_STREQ("0,AGDI 1,1,0,1,1,(C:\\b.dll)", debug->GetAttribute("ADS_OPTDBG"));
    EXPECT_STREQ("out.axf", debug->GetAttribute("AppFile"));
    EXPECT_STREQ("speed=9", debug->GetAttribute("ServeDebugOptions"));
    EXPECT_NE(nullptr, debug->FindChild("StorageNode5"));  // the rest of the target stays

    // Without packed options the request fails, the clock already written.
    debug->SetAttribute("SIMCLK", "12");
    Target("Release")->SetAttribute("SIMCLK", "3");
    t->SetCurrentTarget(1, "Release");
    EXPECT_EQ(0, t->GetDebugOptions(request.get()));
    EXPECT_DOUBLE_EQ(3, clock);
}

}  // namespace
}  // namespace ads::plugin
