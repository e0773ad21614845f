// orvhost settings against a plug-in of the test's own, whose dialog records
// every call and refuses some: the steps' order, what ends the dialog, and
// when the project file is written.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ads/plugin_abi.h"
#include "cli.h"
#include "project_file.h"
#include "support/fake_platform.h"

namespace ads::host {
namespace {

PluginInterface g_table;
const AdsHostUi* g_ui = nullptr;
std::string g_log;
std::map<std::string, std::string> g_pending;  // what Set took, until Apply or OK

void Log(const std::string& line) { g_log += (g_log.empty() ? "" : "|") + line; }
int Refuse(const char** error, const char* text) { return *error = text, 0; }

void Commit(ConfigNode* root) {
    ConfigNode* config = root->FindChild("Configurations")->FirstChild();
    std::unique_ptr<ConfigNode> edited(config->Clone());
    for (const auto& [label, value] : g_pending) edited->SetAttribute(label.c_str(), value.c_str());
    g_pending.clear();
    g_table.CommitNode(config, edited.get());
}

int ADS_CALL Select(void*, const char* item, const char** error) {
    Log(std::string("Select ") + item);
    return std::string(item) == "Nope" ? Refuse(error, "no tree item 'Nope' (items: 'ARM Linker')") : 1;
}
int ADS_CALL SelectTab(void*, const char* tab, const char**) { return Log(std::string("Tab ") + tab), 1; }
int ADS_CALL Set(void*, const char* label, const char* value, const char** error) {
    Log(std::string("Set ") + label + "=" + value);
    if (std::string(label) == "Nope") return Refuse(error, "no control 'Nope'");
    if (std::string(label) == "Loud") g_ui->Message(g_ui->context, "Stack out of range", "Page");
    return g_pending[label] = value, 1;
}
ConfigNode* g_root = nullptr;
int ADS_CALL Press(void*, int button, const char**) {
    Log("Press " + std::to_string(button));
    if (button == kAdsButtonApply) Commit(g_root);
    return 1;
}
const char* ADS_CALL Show(void*) { return Log("Show"), "pages\n"; }

int ADS_CALL Attach(const AdsHostContext* context) { return g_ui = context->ui, 1; }
void ADS_CALL InstallTool(AdsNode* node) { g_root = node->Root(); }
void ADS_CALL SetCurrentTarget(AdsWord, const char* target) { Log(std::string("target ") + target); }
int ADS_CALL ShowSettings(AdsNode* node) {
    const char* path = node->GetAttribute("RelativePath");
    const char* name = node->GetAttribute("Name");
    Log("on " + node->Name() + " " + (path ? path : name ? name : ""));
    AdsSettingsDialog dialog{nullptr, nullptr, nullptr, Select, SelectTab, Set, Press, Show};
    const int answer = g_ui->RunSettings(g_ui->context, &dialog);
    if (answer == kAdsIdOk) Commit(g_root);
    return answer;
}
PluginInterface* ADS_CALL GetInterface() { return &g_table; }

const char kProject[] = "C:\\work\\p.orv";

struct Row {
    const char* name;
    std::vector<std::string> args;
    int status;
    const char* log;
    const char* error;  // standard error, whole
    const char* saved;  // an attribute the saved file holds; null: not written
};

const Row kRows[] = {
    {"steps run in the order given", {"--page", "ARM Linker", "--tab", "Output", "--set", "Ropi=1=2", "--default",
      "--apply", "--set", "Map=1", "--show"}, 0,
     "target Debug|on OrvaneProject p|Select ARM Linker|Tab Output|Set Ropi=1=2|Press 2|Press 1|Set Map=1|Show", "",
     "Map=\"1\""},
    {"the named target, a nested group", {"--target", "Rel", "--folder", "G/H", "--set", "A=1"}, 0,
     "target Rel|on Filter H|Set A=1", "", "A=\"1\""},
    {"a file as stored", {"--file", "src/a.c", "--set", "A=1"}, 0, "target Debug|on File src\\a.c|Set A=1", "",
     "A=\"1\""},
    {"cancel keeps what Apply saved", {"--set", "A=1", "--apply", "--set", "B=2", "--cancel"}, 0,
     "target Debug|on OrvaneProject p|Set A=1|Press 1|Set B=2", "", "A=\"1\""},
    {"OK without a change writes nothing", {"--show"}, 0, "target Debug|on OrvaneProject p|Show", "", nullptr},
    {"a refusal ends the steps", {"--set", "A=1", "--apply", "--page", "Nope", "--set", "B=2"}, 2,
     "target Debug|on OrvaneProject p|Set A=1|Press 1|Select Nope",
     "orvhost: no tree item 'Nope' (items: 'ARM Linker')\n", nullptr},
    {"a message box ends the steps", {"--set", "Loud=9", "--set", "B=2"}, 2,
     "target Debug|on OrvaneProject p|Set Loud=9", "orvhost: Page: Stack out of range\n", nullptr},
    {"unknown target", {"--target", "X"}, 2, "",
     "orvhost: C:\\work\\p.orv: no target named 'X' (targets: 'Debug', 'Rel')\n", nullptr},
    {"unknown group", {"--folder", "H"}, 2, "", "orvhost: C:\\work\\p.orv: no group 'H' in the project (groups: 'G', "
     "'G/H')\n", nullptr},
    {"unknown file", {"--file", "a.c"}, 2, "", "orvhost: C:\\work\\p.orv: no file 'a.c' in the project (files: "
     "'src\\a.c')\n", nullptr},
    {"a setting without a value", {"--set", "A"}, 2, "", "orvhost: --set needs LABEL=VALUE, not 'A'\n", nullptr},
};

TEST(SettingsCommand, DrivesTheDialogAndSavesOnlyWhatOkChanged) {
    const std::string project =
        "<OrvaneProject Name=\"p\"><Configurations><Configuration Name=\"Debug\"/><Configuration Name=\"Rel\"/>"
        "</Configurations><Files><Filter Name=\"G\"><Filter Name=\"H\"><File RelativePath=\"src\\a.c\" FileType=\"1\"/>"
        "</Filter></Filter></Files></OrvaneProject>";
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        testing::FakePlatform fake;
        fake.files.Add(kProject, project);
        fake.environment.vars["ORVANE_PLUGIN"] = "C:\\Orvane\\plugin.dll";
        fake.libraries.modules["C:\\Orvane\\plugin.dll"] = &g_table;
        fake.libraries.symbols["GetInterface"] = reinterpret_cast<void*>(&GetInterface);
        g_table = PluginInterface{};
        g_table.Attach = Attach;
        g_table.InstallTool = InstallTool;
        g_table.SetCurrentTarget = SetCurrentTarget;
        g_table.ShowSettings = ShowSettings;
        g_log.clear();
        g_pending.clear();
        std::vector<std::string> args{"settings", kProject};
        args.insert(args.end(), row.args.begin(), row.args.end());
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(row.status, RunCli(args, fake.platform));
        EXPECT_EQ(row.error, ::testing::internal::GetCapturedStderr());
        EXPECT_EQ(row.log, g_log);
        if (row.saved == nullptr) {
            EXPECT_TRUE(fake.files.writes.empty());
        } else {
            const std::string& saved = fake.files.contents[kProject];
            EXPECT_NE(std::string::npos, saved.find(row.saved)) << saved;
        }
    }
}

}  // namespace
}  // namespace ads::host
