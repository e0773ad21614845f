// libFuzzer target of the settings dialog's model: a project whose option
// strings and stored page states are arbitrary bytes, opened on the project,
// a folder or a file, and a random run of clicks on tree items and tabs,
// control changes, Default and Apply, ended by OK.
//
// Besides not crashing, it checks: a refused change leaves the shown value
// as it was; and after OK every tool's effective string at the file
// resolves, unless it did not resolve when the dialog opened.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "config/host_api.h"
#include "options/effective_options.h"
#include "options/option_error.h"
#include "options/settings_dialog_model.h"

namespace {

using namespace ads;
using namespace ads::options;

void Require(bool condition) {
    if (!condition) std::abort();
}

// Keeps the tree as orvhost does: a commit takes the edited attributes.
class Host : public config::HostApi {
public:
    void Commit(ConfigNode* node, ConfigNode* edited) override {
        node->ClearAttributes();
        for (auto* a = edited->FirstAttribute(); a != nullptr; a = edited->NextAttribute(a)) {
            node->SetAttribute(a->Name().c_str(), a->Value());
        }
    }
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char*) override {
        if (ConfigNode* c = node->FindChild(key)) return c;
        auto* c = new ConfigNode(key);
        node->AppendChild(c);
        return c;
    }
    config::ToolRun RunTool(const std::string&, int) override { return {}; }
    void Write(const std::string&) override {}
    bool IsOutOfDate(const std::string&, ConfigNode*) override { return false; }
    bool TranslateFile(const std::string&, ConfigNode*) override { return false; }
    bool MakeTarget(const std::string&, ConfigNode*) override { return false; }
};

constexpr Tool kTools[] = {Tool::kArmasm, Tool::kArmcc, Tool::kArmcpp, Tool::kTcc, Tool::kTcpp};
const char* const kStateKeys[] = {"Debug_ArmC_Tar", "Debug_ArmC_Debug_Opt", "Debug_ArmC_PrePro", "Debug_ThumbC_Code_Gen",
                                  "Debug_ArmCpp_Warnings", "Debug_Asm_Tar", "Debug_Asm_PDS", "Debug_Asm_LC_PG1"};

void FillStates(FuzzedDataProvider& in, ConfigNode* owner) {
    for (const char* name : {"ADS_CParam", "ADS_AsmParam"}) {
        if (!in.ConsumeBool()) continue;
        auto* child = new ConfigNode(name);
        owner->AppendChild(child);
        for (const char* key : kStateKeys) {
            if (in.ConsumeBool()) child->SetAttribute(key, in.ConsumeRandomLengthString(24));
        }
    }
}

std::vector<bool> Resolves(const ConfigNode* configuration, const ConfigNode* file) {
    std::vector<bool> ok;
    for (Tool t : kTools) {
        try {
            EffectiveOptions(t, configuration, file, "Debug");
            ok.push_back(true);
        } catch (const OptionError&) {
            ok.push_back(false);
        }
    }
    return ok;
}

template <typename T>
const T& Pick(FuzzedDataProvider& in, const std::vector<T>& from) {
    return from[in.ConsumeIntegralInRange<size_t>(0, from.size() - 1)];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    Host host;
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    auto* all = new ConfigNode("Configurations");
    root->AppendChild(all);
    auto* configuration = new ConfigNode("Configuration");
    all->AppendChild(configuration);
    configuration->SetAttribute("Name", "Debug");
    for (const char* key : {"ADS_GArmAsmParam", "ADS_GArmCCParam", "ADS_GArmCppParam", "ADS_GThmCCParam",
                            "ADS_GThmCppParam", "ADS_LNKPARAM", "ADS_FromELFParam"}) {
        configuration->SetAttribute(key, in.ConsumeRandomLengthString(64));
    }
    auto* files = new ConfigNode("Files");
    root->AppendChild(files);
    auto* folder = new ConfigNode("Filter");
    files->AppendChild(folder);
    auto* file = new ConfigNode("File");
    folder->AppendChild(file);
    FillStates(in, root.get());
    FillStates(in, folder);
    FillStates(in, file);

    const std::vector<bool> before = Resolves(configuration, file);
    const int scopes[] = {8, 7, 1, 2, 3};
    const int scope = scopes[in.ConsumeIntegralInRange(0, 4)];
    ConfigNode* node = scope == 8 ? root.get() : scope == 7 ? folder : file;
    DialogContext context{root.get(), configuration, node, "Debug", {"ARM7TDMI"}, &host};
    SettingsDialogModel dialog(scope, context, &MakeItemPage);

    std::vector<std::string> items;
    for (const TreeItem& t : dialog.Tree()) items.push_back(t.label);
    while (in.remaining_bytes() > 0) {
        switch (in.ConsumeIntegralInRange(0, 5)) {
            case 0: Require(dialog.Select(Pick(in, items)).empty()); break;
            case 1: {
                const std::vector<std::string> tabs = dialog.Tabs();
                if (!tabs.empty()) Require(dialog.SelectTab(Pick(in, tabs)).empty());
                break;
            }
            case 2:
            case 3: {
                DialogPage* page = dialog.ShownPage();
                if (page == nullptr) break;
                const std::vector<std::string> names = SettingsDialogModel::ControlNames(*page);
                const size_t control = in.ConsumeIntegralInRange<size_t>(0, names.size());
                if (control >= names.size() || names[control].empty()) break;
                std::vector<std::string> values = {"0", "1", "-1", "7", in.ConsumeRandomLengthString(16)};
                for (const Choice& c : page->Description().controls[control].choices) values.push_back(c.label);
                const std::string before_set = page->Get(static_cast<int>(control));
                if (!dialog.Set(names[control], Pick(in, values)).empty()) {
                    Require(page->Get(static_cast<int>(control)) == before_set);
                }
                break;
            }
            case 4: dialog.Default(); break;
            case 5: dialog.Apply(); break;
        }
    }
    if (!dialog.Apply().empty()) return 0;
    const std::vector<bool> after = Resolves(configuration, file);
    for (size_t i = 0; i < after.size(); ++i) Require(after[i] || !before[i]);
    std::string text;
    for (const std::string& tool : dialog.Tools()) dialog.CommandLine(tool, &text);
    dialog.Show();
    return 0;
}
