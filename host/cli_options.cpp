// orvhost options: the option string each of the five tools gets for a
// target, and for one file with its own settings, exactly as the tool
// receives it.
#include <cstdio>

#include "cli_support.h"
#include "config/path_macros.h"
#include "options/effective_options.h"
#include "options/option_error.h"

namespace ads::host {

namespace {
const char kUsageOptions[] = "usage: orvhost options PROJECT [--target NAME] [--file PATH]";

ConfigNode* FindFile(ConfigNode* root, const std::string& path) {
    std::string wanted = Lower(ToBackslashes(path));
    while (wanted.rfind(".\\", 0) == 0) wanted.erase(0, 2);
    ConfigNode* found = nullptr;
    WalkTree(root, [&](ConfigNode* n) {
        const char* p = n->GetAttribute("RelativePath");
        if (found == nullptr && n->Name() == "File" && p != nullptr) {
            // Imported projects store their paths from ".\".
            std::string stored = Lower(p);
            while (stored.rfind(".\\", 0) == 0) stored.erase(0, 2);
            if (stored == wanted) found = n;
        }
        return false;
    });
    return found;
}
}  // namespace

int CommandOptions(const std::vector<std::string>& args, platform::Platform& platform) {
    std::string project, target, file;
    bool have_target = false, have_file = false;
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--target" || args[i] == "--file") {
            if (i + 1 >= args.size()) Fail(args[i] + " needs a value");
            (args[i] == "--target" ? target : file) = args[i + 1];
            (args[i] == "--target" ? have_target : have_file) = true;
            ++i;
        } else if (project.empty()) {
            project = args[i];
        } else {
            Fail(kUsageOptions);
        }
    }
    if (project.empty()) Fail(kUsageOptions);
    Session s(platform);
    s.Open(project);
    ConfigNode* configuration = nullptr;
    if (have_target) {
        configuration = s.FindTarget(target);
        if (configuration == nullptr) Fail(project + ": no target named '" + target + "'");
    } else {
        ConfigNode* configs = s.root_->FindChild("Configurations");
        configuration = configs ? configs->FirstChild() : nullptr;
        if (configuration == nullptr) Fail(project + ": the project has no target");
        const char* name = configuration->GetAttribute("Name");
        target = name ? name : "";
    }
    ConfigNode* owner = s.root_.get();
    if (have_file) {
        owner = FindFile(s.root_.get(), file);
        if (owner == nullptr) Fail(project + ": no file '" + file + "' in the project");
    }

    // Via files go through the path macros; "{Compiler}" is the ADS home
    // the plug-in located (the parent of its tool folder).
    // Standard output is the five lines; what the plug-in says on the way
    // goes to standard error.
    std::string pane;
    s.host_.SetOutput(&pane);
    s.LoadPlugin();
    if (!pane.empty()) std::fputs(pane.c_str(), stderr);
    std::string home;
    if (s.host_.toolchain().size() > 1) {
        const std::string& tools = s.host_.toolchain()[1];
        size_t cut = tools.rfind('\\');
        if (cut != std::string::npos) home = tools.substr(0, cut);
    }
    std::string project_dir = DirectoryOf(platform.files->FullPath(project));
    config::PathMacros macros = config::MakePathMacros(project_dir, home, *platform.files);
    options::PathConverter via = [&](const std::string& name) { return config::ConvertViaFilePath(name, macros); };

    int status = 0;
    for (options::Tool tool : {options::Tool::kArmasm, options::Tool::kArmcc, options::Tool::kArmcpp,
                               options::Tool::kTcc, options::Tool::kTcpp}) {
        std::string line;
        try {
            line = options::EffectiveOptions(tool, configuration, owner, target, via);
        } catch (const options::OptionError& e) {
            line = e.what();
            status = 1;
        }
        std::printf("%s=%s\n", options::ToolName(tool), line.c_str());
    }
    return status;
}

}  // namespace ads::host
