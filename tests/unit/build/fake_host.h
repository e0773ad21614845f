// A host for the build engine's tests: it applies commits, creates settings
// children, answers tool runs from a script and records what it was asked.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "config/host_api.h"

namespace ads::build {

class FakeHost : public config::HostApi {
public:
    std::string pane;
    int commits = 0;
    std::vector<std::string> runs;                  // command lines, in order
    std::vector<int> buffer_sizes;
    // The answer to a command: the first whose key the command contains.
    std::map<std::string, config::ToolRun> answers;
    bool out_of_date = true;
    bool translate = true;
    std::function<bool(const std::string&, ConfigNode*)> make;

    void Commit(ConfigNode* node, ConfigNode* edited) override {
        ++commits;
        node->ClearAttributes();
        for (auto* a = edited->FirstAttribute(); a; a = edited->NextAttribute(a)) {
            node->SetAttribute(a->name.c_str(), a->value.c_str());
        }
        node->ClearChildren();
        for (auto* c = edited->FirstChild(); c; c = c->NextSibling()) node->AppendChild(c->Clone());
    }
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) override {
        if (ConfigNode* found = node->FindChild(key)) return found;
        auto* created = new ConfigNode(key);
        created->SetAttributeInt(flag_key, 1);
        node->InsertChildBefore(created, node->FirstChild());
        return created;
    }
    config::ToolRun RunTool(const std::string& command, int buffer_size) override {
        runs.push_back(command);
        buffer_sizes.push_back(buffer_size);
        for (auto& kv : answers) {
            if (command.find(kv.first) != std::string::npos) {
                config::ToolRun run = kv.second;
                if (run.output.size() >= static_cast<size_t>(buffer_size)) run.output.resize(buffer_size - 1);
                return run;
            }
        }
        config::ToolRun ok;
        ok.ok = true;
        ok.exit_code = 0;
        return ok;
    }
    void Write(const std::string& text) override { pane += text; }
    bool IsOutOfDate(const std::string&, ConfigNode*) override { return out_of_date; }
    bool TranslateFile(const std::string&, ConfigNode*) override { return translate; }
    bool MakeTarget(const std::string& target, ConfigNode* project) override {
        return make ? make(target, project) : true;
    }
};

}  // namespace ads::build
