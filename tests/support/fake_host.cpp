#include "support/fake_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "plugin_host.h"
#include "project_file.h"

namespace ads::testing {

namespace {
FakeHost* g_host = nullptr;

FakeHost& Current() {
    if (g_host == nullptr) {
        ADD_FAILURE() << "a host slot was called with no FakeHost alive";
        std::abort();
    }
    return *g_host;
}

// The slots as orvhost answers them, reaching the current fake.
AdsWord ADS_CALL SlotCommit(ConfigNode* node, ConfigNode* edited) {
    if (node == nullptr || edited == nullptr) return 0;
    Current().Commit(node, edited);
    return 1;
}
ConfigNode* ADS_CALL SlotFindSetting(ConfigNode* node, const char* key, const char* flag_key) {
    return Current().FindSettingNode(node, key, flag_key);
}
AdsWord ADS_CALL SlotRunTool(const char* command, AdsWord, char* buffer, int size, AdsWord* exit_code) {
    if (command == nullptr) return 0;
    config::ToolRun run = Current().RunTool(command, size);
    if (buffer != nullptr && size > 0) {
        std::memcpy(buffer, run.output.data(), run.output.size());
        buffer[run.output.size()] = '\0';
    }
    if (exit_code != nullptr) *exit_code = static_cast<AdsWord>(run.exit_code);
    return run.ok ? 1 : 0;
}
AdsWord ADS_CALL SlotWrite(const char* text, AdsWord pane) {
    if (text == nullptr) return 0;
    Current().panes.push_back(pane);
    Current().Write(text);
    return 1;
}
AdsWord ADS_CALL SlotCall23(AdsWord) { return 0; }
AdsWord ADS_CALL SlotRegister(const AdsToolchainRecord* record) {
    if (record == nullptr) return 0;
    Current().registrations.emplace_back(record->text, record->text + 15);
    return Current().register_answer;
}
int ADS_CALL SlotOutOfDate(const char* target, ConfigNode* file) {
    return Current().IsOutOfDate(target ? target : "", file) ? 1 : 0;
}
int ADS_CALL SlotTranslate(const char* target, ConfigNode* file) {
    return Current().TranslateFile(target ? target : "", file) ? 1 : 0;
}
int ADS_CALL SlotMake(const char* target, ConfigNode* project) {
    return Current().MakeTarget(target ? target : "", project) ? 1 : 0;
}
AdsWord ADS_CALL SlotCall34(AdsWord a, AdsWord b, AdsWord c, AdsWord d) {
    Current().call34 = {a, b, c, d};
    return Current().call34_answer;
}
}  // namespace

FakeHost::FakeHost() { g_host = this; }

FakeHost::~FakeHost() {
    if (g_host == this) g_host = nullptr;
}

void FakeHost::Write(const std::string& text) {
    if (pane_gone) throw std::runtime_error("pane is gone");
    pane += text;
}

void FakeHost::Watch(const ConfigNode* root) {
    watched_ = root;
    snapshot_ = root ? host::SerializeProject(*root) : std::string();
}

void FakeHost::CheckUntouched() {
    if (watched_ == nullptr) return;
    EXPECT_EQ(snapshot_, host::SerializeProject(*watched_)) << "the host's tree changed outside a host call";
}

void FakeHost::FillSlots(PluginInterface* table) {
    table->CommitNode = SlotCommit;
    table->FindSettingNode = SlotFindSetting;
    table->RunTool = SlotRunTool;
    table->WriteOutput = SlotWrite;
    table->HostCall23 = SlotCall23;
    table->RegisterToolchain = SlotRegister;
    table->IsOutOfDate = SlotOutOfDate;
    table->TranslateFile = SlotTranslate;
    table->MakeTarget = SlotMake;
    table->HostCall34 = SlotCall34;
}

std::function<ConfigNode*(ConfigNode*, const char*, const char*)> FakeHost::FindSettingNodeFn() {
    return [this](ConfigNode* node, const char* key, const char* flag_key) {
        return FindSettingNode(node, key, flag_key);
    };
}

std::function<void(ConfigNode*, ConfigNode*)> FakeHost::CommitNodeFn() {
    return [this](ConfigNode* node, ConfigNode* edited) { Commit(node, edited); };
}

void FakeHost::Commit(ConfigNode* node, ConfigNode* edited) {
    CheckUntouched();
    commits.push_back({node, std::shared_ptr<ConfigNode>(edited ? edited->Clone() : nullptr), edited == node});
    host::PluginHost::CommitNode(node, edited);
    Watch(watched_);
}

ConfigNode* FakeHost::FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) {
    CheckUntouched();
    settings_asked.push_back(std::string(key ? key : "") + "/" + (flag_key ? flag_key : ""));
    const bool existed = node != nullptr && key != nullptr && node->FindChild(key) != nullptr;
    ConfigNode* found = host::PluginHost::FindSettingNode(node, key, flag_key);
    if (found != nullptr && !existed) created.push_back(settings_asked.back());
    Watch(watched_);
    return found;
}

config::ToolRun FakeHost::RunTool(const std::string& command, int buffer_size) {
    runs.push_back(command);
    buffer_sizes.push_back(buffer_size);
    config::ToolRun run;
    run.ok = true;
    run.exit_code = 0;
    for (const auto& [key, answer] : answers) {
        if (command.find(key) != std::string::npos) {
            run = answer;
            break;
        }
    }
    const size_t limit = buffer_size > 1 ? static_cast<size_t>(buffer_size - 1) : 0;
    if (run.output.size() > limit) run.output.resize(limit);
    return run;
}

}  // namespace ads::testing
