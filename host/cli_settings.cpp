// orvhost settings: the plug-in's settings dialog, clicked through from the
// command line as a user would click through it: tree items, tabs, controls
// by their labels, the Default and Apply buttons, then OK or Cancel. The
// dialog runs on the project, a group or a file. Anything the dialog refuses,
// or a message box it shows, ends the command with the project file exactly
// as it was.
#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {

// A refusal names the valid choices; past this many, the rest is elided.
constexpr size_t kChoicesShown = 12;

std::string ChoiceList(const std::vector<std::string>& names) {
    std::string list;
    for (size_t i = 0; i < names.size() && i < kChoicesShown; ++i) list += (i == 0 ? "'" : ", '") + names[i] + "'";
    if (names.size() > kChoicesShown) list += ", ...";
    return list.empty() ? "none" : list;
}

// The options that click something in the dialog, in the order given.
bool IsStep(const std::string& option) {
    return option == "--page" || option == "--tab" || option == "--set" || option == "--default" ||
           option == "--apply";
}

// What the dialog made of the steps.
struct DialogRun {
    bool ran = false;
    int answer = kAdsIdCancel;
    std::string refused;                // the refused call's error
    std::vector<std::string> messages;  // the message boxes shown
    std::string shown;                  // what --show prints
};

// One step: 1 when the dialog took it; 0 with *error set when it refused
// it (or has no such call).
int Click(const AdsSettingsDialog& d, const std::pair<std::string, std::string>& step, const char** error) {
    const std::string& option = step.first;
    const char* value = step.second.c_str();
    if (option == "--page" && d.Select != nullptr) return d.Select(d.self, value, error);
    if (option == "--tab" && d.SelectTab != nullptr) return d.SelectTab(d.self, value, error);
    if (option == "--set" && d.Set != nullptr) {
        const size_t equals = step.second.find('=');
        return d.Set(d.self, step.second.substr(0, equals).c_str(), step.second.substr(equals + 1).c_str(), error);
    }
    if (option == "--default" && d.Press != nullptr) return d.Press(d.self, kAdsButtonDefault, error);
    if (option == "--apply" && d.Press != nullptr) return d.Press(d.self, kAdsButtonApply, error);
    return 0;
}

// The steps in order; the first refusal, or a message box, ends the dialog
// with Cancel.
int Drive(const AdsSettingsDialog& dialog, const std::vector<std::pair<std::string, std::string>>& steps,
          bool show, bool cancel, DialogRun* run) {
    run->ran = true;
    for (const auto& step : steps) {
        const char* error = nullptr;
        if (Click(dialog, step, &error) == 0) {
            const std::string given = step.first + (step.second.empty() ? "" : " " + step.second);
            run->refused = error != nullptr && *error != '\0' ? error : "the settings dialog refused " + given;
        }
        if (!run->refused.empty() || !run->messages.empty()) return run->answer = kAdsIdCancel;
    }
    if (show) {
        const char* text = dialog.Show != nullptr ? dialog.Show(dialog.self) : nullptr;
        if (text == nullptr) run->refused = "the settings dialog shows nothing";
        run->shown = text != nullptr ? text : "";
    }
    const bool keep = !cancel && run->refused.empty() && run->messages.empty();
    return run->answer = keep ? kAdsIdOk : kAdsIdCancel;
}

// The target made current: the one named, else the project's first.
std::string ChooseTarget(ConfigNode* root, const std::string& project, const Arguments& args) {
    std::vector<std::string> names;
    ConfigNode* configs = root->FindChild(config::kConfigurationsNode);
    for (ConfigNode* c = configs ? configs->FirstChild() : nullptr; c; c = c->NextSibling()) {
        const char* name = c->GetAttribute(config::kNameKey);
        if (c->Name() == config::kConfigurationNode && name != nullptr) names.emplace_back(name);
    }
    if (!args.Has("--target")) {
        if (names.empty()) Fail(project + ": the project has no target (add one with add-target)");
        return names.front();
    }
    const std::string wanted = args.Value("--target");
    for (const std::string& name : names) {
        if (name == wanted) return name;
    }
    Fail(project + ": no target named '" + wanted + "' (targets: " + ChoiceList(names) + ")");
}

// The group "A/B": the "Filter" named B inside the one named A.
ConfigNode* FindGroup(ConfigNode* root, const std::string& project, const std::string& group) {
    ConfigNode* files = root->FindChild(config::kFilesNode);
    ConfigNode* node = files;
    size_t start = 0;
    while (node != nullptr && start <= group.size()) {
        const size_t slash = std::min(group.find('/', start), group.size());
        const std::string part = group.substr(start, slash - start);
        start = slash + 1;
        if (part.empty()) continue;  // "A//B" is "A/B", as add-file reads it
        ConfigNode* found = nullptr;
        for (ConfigNode* c = node->FirstChild(); c != nullptr && found == nullptr; c = c->NextSibling()) {
            const char* name = c->GetAttribute(config::kNameKey);
            if (c->Name() == config::kFilterNode && name != nullptr && part == name) found = c;
        }
        node = found;
    }
    if (node != nullptr && node != files && !group.empty()) return node;

    // Every group as add-file names it, in the order the tree holds them.
    std::vector<std::string> names;
    std::vector<std::pair<ConfigNode*, std::string>> work;
    for (ConfigNode* c = files ? files->LastChild() : nullptr; c; c = c->PrevSibling()) work.emplace_back(c, "");
    while (!work.empty()) {
        auto [n, prefix] = work.back();
        work.pop_back();
        const char* name = n->GetAttribute(config::kNameKey);
        if (n->Name() != config::kFilterNode || name == nullptr) continue;
        names.push_back(prefix + name);
        for (ConfigNode* c = n->LastChild(); c; c = c->PrevSibling()) work.emplace_back(c, names.back() + "/");
    }
    Fail(project + ": no group '" + group + "' in the project (groups: " + ChoiceList(names) + ")");
}

ConfigNode* FindFile(ConfigNode* root, const std::string& project, const std::string& path) {
    if (ConfigNode* file = FindFileNode(root, path)) return file;
    std::vector<std::string> names;
    for (ConfigNode* file : TargetFiles(root)) names.emplace_back(file->GetAttribute(config::kRelativePathKey));
    Fail(project + ": no file '" + path + "' in the project (files: " + ChoiceList(names) + ")");
}

}  // namespace

int CommandSettings(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    if (args.Has("--file") && args.Has("--folder")) Fail("--file and --folder name two scopes: give one");
    std::vector<std::pair<std::string, std::string>> steps;
    for (const auto& step : args.sequence) {
        if (step.first == "--set" && step.second.find('=') == std::string::npos) {
            Fail("--set needs LABEL=VALUE, not '" + step.second + "'");
        }
        if (IsStep(step.first)) steps.push_back(step);
    }
    const bool show = args.Has("--show");
    const bool cancel = args.Has("--cancel");

    Session s(platform);
    s.Open(project);
    const std::string target = ChooseTarget(s.root_.get(), project, args);
    ConfigNode* scope = s.root_.get();
    if (args.Has("--file")) scope = FindFile(s.root_.get(), project, args.Value("--file"));
    if (args.Has("--folder")) scope = FindGroup(s.root_.get(), project, args.Value("--folder"));
    const std::string before = SerializeProject(*s.root_);

    // What the plug-in writes to its pane goes to standard error: standard
    // output is what --show prints.
    std::string pane;
    s.host_.SetOutput(&pane);
    s.LoadPlugin();
    s.EnterProject();
    s.host_.table()->SetCurrentTarget(reinterpret_cast<AdsWord>(s.root_.get()), target.c_str());

    DialogRun run;
    s.host_.SetMessageSink([&run](const std::string& caption, const std::string& text) {
        run.messages.push_back(caption.empty() ? text : caption + ": " + text);
    });
    s.host_.SetSettingsRunner(
        [&](const AdsSettingsDialog& dialog) { return Drive(dialog, steps, show, cancel, &run); });
    s.EnterProject();
    s.host_.table()->ShowSettings(scope);
    s.host_.SetSettingsRunner(nullptr);
    s.host_.SetMessageSink(nullptr);
    if (!pane.empty()) std::fputs(pane.c_str(), stderr);

    // A refusal is the command's one line, after the message boxes it does
    // not tell itself; without one, the last message box is that line.
    std::vector<std::string> lines;
    for (const std::string& message : run.messages) {
        if (run.refused.find(message) == std::string::npos) lines.push_back(message);
    }
    std::string failure = run.refused;
    if (failure.empty() && !lines.empty()) {
        failure = lines.back();
        lines.pop_back();
    }
    for (const std::string& line : lines) std::fprintf(stderr, "orvhost: %s\n", line.c_str());
    if (!failure.empty()) Fail(failure);
    if (!run.ran) Fail(project + ": the plug-in showed no settings dialog", 1);

    if (show && !run.shown.empty()) {
        std::fputs(run.shown.c_str(), stdout);
        if (run.shown.back() != '\n') std::fputs("\n", stdout);
    }
    // Cancel keeps what Apply saved: the tree is written whenever it changed.
    if (SerializeProject(*s.root_) != before) {
        try {
            s.Save();
        } catch (CliFailure& f) {
            f.status = 1;  // the dialog did its work; only keeping it failed
            throw;
        }
        std::printf("%s: settings of target '%s' saved\n", project.c_str(), target.c_str());
    }
    return 0;
}

}  // namespace ads::host
