// orvhost options: the option string each of the five tools gets for a
// target, and for one file with its own settings, exactly as the tool
// receives it. The plug-in computes them: orvhost opens its settings dialog
// on the project or the file and reads each tool's command line there.
#include <cstdio>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {

const char* const kTools[] = {"armasm", "armcc", "armcpp", "tcc", "tcpp"};

}  // namespace

int CommandOptions(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    Session s(platform);
    s.Open(project);
    const std::string target = ChosenTarget(s.root_.get(), project, args.Has("--target"), args.Value("--target"));
    ConfigNode* scope = s.root_.get();
    if (args.Has("--file")) {
        scope = FindFileNode(s.root_.get(), args.Value("--file"));
        if (scope == nullptr) Fail(project + ": no file '" + args.Value("--file") + "' in the project");
    }

    // Standard output is the five lines; what the plug-in says on the way
    // goes to standard error.
    std::string pane;
    s.host_.SetOutput(&pane);
    s.LoadPlugin();
    s.EnterProject();
    s.host_.table()->SetCurrentTarget(reinterpret_cast<AdsWord>(s.root_.get()), target.c_str());

    std::string lines;
    int status = 0;
    s.host_.SetSettingsRunner([&](const AdsSettingsDialog& dialog) {
        for (const char* tool : kTools) {
            const char* text = nullptr;
            if (dialog.CommandLine(dialog.self, tool, &text) == 0) status = 1;
            lines += std::string(tool) + "=" + (text != nullptr ? text : "") + "\n";
        }
        return static_cast<int>(kAdsIdCancel);
    });
    s.EnterProject();
    s.host_.table()->ShowSettings(scope);
    s.host_.SetSettingsRunner(nullptr);
    if (!pane.empty()) std::fputs(pane.c_str(), stderr);
    if (lines.empty()) Fail(project + ": the plug-in showed no settings", 1);
    std::fputs(lines.c_str(), stdout);
    return status;
}

}  // namespace ads::host
