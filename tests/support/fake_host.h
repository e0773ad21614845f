// A host for the plug-in's tests that keeps the tree as orvhost does: a
// commit replaces the node's attributes and merges its children in place, a
// missing settings child is created first among the node's children and
// tagged with the flag key. The output pane is a string, tool runs are
// answered from a script, and every call is recorded. The same host is
// reachable as a config::HostApi, as the options' node functions and as the
// host slots of a function table.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "ads/plugin_abi.h"
#include "config/host_api.h"

namespace ads::testing {

class FakeHost : public config::HostApi {
public:
    struct Committed {
        ConfigNode* node;
        std::shared_ptr<ConfigNode> edited;  // a copy of what the plug-in handed over
        bool edited_is_node;                 // the plug-in handed the node itself
    };

    // The slot functions reach the host constructed last.
    FakeHost();
    ~FakeHost() override;
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // The tree under `root` must change only inside this host's calls; a
    // change made between two of them (or before CheckUntouched) fails the test.
    void Watch(const ConfigNode* root);
    void CheckUntouched();

    // Writes this host's functions into the host slots of `table`.
    void FillSlots(PluginInterface* table);
    // The node services in the form the options code takes them.
    std::function<ConfigNode*(ConfigNode*, const char*, const char*)> FindSettingNodeFn();
    std::function<void(ConfigNode*, ConfigNode*)> CommitNodeFn();

    void Commit(ConfigNode* node, ConfigNode* edited) override;
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) override;
    config::ToolRun RunTool(const std::string& command, int buffer_size) override;
    void Write(const std::string& text) override;
    bool IsOutOfDate(const std::string&, ConfigNode*) override { return out_of_date; }
    bool TranslateFile(const std::string&, ConfigNode*) override { return translate; }
    bool MakeTarget(const std::string& target, ConfigNode* project) override {
        return make ? make(target, project) : true;
    }

    std::vector<Committed> commits;
    std::vector<std::string> settings_asked;  // "key/flag_key" per request
    std::vector<std::string> created;         // "key/flag_key" per child created

    std::string pane;
    bool pane_gone = false;  // every write throws, as a broken host would
    std::vector<AdsWord> panes;  // the pane word of each write through the slot

    // The answer to a command: the first whose key the command contains;
    // without one the tool ran and exited with 0, printing nothing.
    std::map<std::string, config::ToolRun> answers;
    std::vector<std::string> runs;  // command lines, in order
    std::vector<int> buffer_sizes;

    bool out_of_date = true;
    bool translate = true;
    std::function<bool(const std::string&, ConfigNode*)> make;

    AdsWord register_answer = 1;
    std::vector<std::vector<std::string>> registrations;  // the fifteen texts of each
    AdsWord call34_answer = 0;
    std::vector<AdsWord> call34;  // the words of the last call

private:
    const ConfigNode* watched_ = nullptr;
    std::string snapshot_;
};

}  // namespace ads::testing
