#include "cli.h"

#include <cstdio>
#include <memory>

#include "cli_build.h"
#include "cli_config.h"
#include "cli_support.h"
#include "plugin_host.h"
#include "project_file.h"

namespace ads::host {

namespace {

const char kUsage[] =
    "usage: orvhost COMMAND [ARGS]\n"
    "\n"
    "A headless host for the ADS toolchain plug-in: it keeps projects in its\n"
    "own XML format and drives the plug-in the way the IDE does.\n"
    "\n"
    "commands:\n"
    "  new PROJECT                      create an empty project file; its name is\n"
    "                                   the file's base name\n"
    "  add-target PROJECT NAME          add a build target with the plug-in's defaults\n"
    "  add-file PROJECT PATH [--group GROUP]\n"
    "                                   add a source file, optionally in a group\n"
    "                                   (nested groups as A/B)\n"
    "  show PROJECT [--target NAME]     print the project's targets and files\n"
    "  set PROJECT --target NAME KEY VALUE\n"
    "                                   change one setting of a target (the next build\n"
    "                                   of it rebuilds everything)\n"
    "  options PROJECT [--target NAME] [--file PATH]\n"
    "                                   print the option string each tool gets (armasm,\n"
    "                                   armcc, armcpp, tcc, tcpp), for the target or the\n"
    "                                   file; exit status 1 when one cannot be made\n"
    "  build PROJECT [--target NAME] [-j N] [--rebuild]\n"
    "                                   build a target (default: the first): the files\n"
    "                                   that changed, then the image or library; -j runs\n"
    "                                   N file commands at once\n"
    "  compile PROJECT FILE [--target NAME]\n"
    "                                   compile or assemble one file when it changed\n"
    "  clean PROJECT [--target NAME]    delete a target's objects and image\n"
    "  export-compile-commands PROJECT [--target NAME]\n"
    "                                   write compile_commands.json beside the project,\n"
    "                                   the C and C++ commands as clangd understands them\n"
    "  import EXPORT PROJECT            make a new project from a CodeWarrior XML export\n"
    "                                   (the targets, their tool options and the files),\n"
    "                                   saying what could not be taken over\n"
    "  config set-tools-dir DIR         look for the ADS tools in DIR first\n"
    "  config set-ads-home DIR [--version NAME]\n"
    "                                   record DIR as the ADS installation (DIR\\Bin\n"
    "                                   holds the tools), as the ADS installer does\n"
    "  config show                      print where the plug-in finds the tools\n"
    "  --help                           print this text\n"
    "\n"
    "exit status: 0 done, 1 errors in the work, 2 bad input.\n"
    "environment: ORVANE_PLUGIN names another plug-in module to load;\n"
    "ORVANE_CONFIG names orvhost's configuration file; ORVANE_REGISTRY names\n"
    "the .reg file that holds the registry (on Windows instead of the real one).\n";

int CommandNew(const std::vector<std::string>& args, platform::Platform& platform) {
    if (args.size() != 2) Fail("usage: orvhost new PROJECT");
    const std::string& path = args[1];
    if (platform.files->PathExists(path)) Fail(path + ": already exists; not overwritten");
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    root->SetAttribute("Name", BaseName(path).c_str());
    root->AppendChild(new ConfigNode("Configurations"));
    root->AppendChild(new ConfigNode("Files"));
    std::string error;
    if (!SaveProject(*platform.files, path, *root, &error)) Fail(error);
    std::printf("created project '%s' in %s\n", BaseName(path).c_str(), path.c_str());
    return 0;
}

int CommandAddTarget(const std::vector<std::string>& args, platform::Platform& platform) {
    if (args.size() != 3) Fail("usage: orvhost add-target PROJECT NAME");
    Session s(platform);
    s.Open(args[1]);
    const std::string& name = args[2];
    if (name.empty()) Fail(args[1] + ": a target needs a name");
    if (s.FindTarget(name) != nullptr) Fail(args[1] + ": target '" + name + "' exists already");
    s.LoadPlugin(false);
    auto* config = new ConfigNode("Configuration");
    config->SetAttribute("Name", name.c_str());
    s.Child("Configurations")->AppendChild(config);
    s.EnterProject();
    s.host_.table()->InstallTool(config);
    s.Save();
    std::printf("added target '%s'\n", name.c_str());
    return 0;
}

int CommandAddFile(const std::vector<std::string>& args, platform::Platform& platform) {
    std::string project, file, group;
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--group") {
            if (i + 1 >= args.size()) Fail("--group needs a name");
            group = args[++i];
        } else if (project.empty()) {
            project = args[i];
        } else if (file.empty()) {
            file = args[i];
        } else {
            Fail("usage: orvhost add-file PROJECT PATH [--group GROUP]");
        }
    }
    if (project.empty() || file.empty()) Fail("usage: orvhost add-file PROJECT PATH [--group GROUP]");
    Session s(platform);
    s.Open(project);
    platform::FileSystem& fs = *platform.files;
    if (!fs.FileExists(file)) Fail(file + ": no such file");

    // Stored relative to the project's folder when it lies below it, in the
    // Windows form the tools get.
    std::string full = fs.FullPath(file);
    std::string base = fs.FullPath(DirectoryOf(fs.FullPath(project)).empty() ? "." : DirectoryOf(fs.FullPath(project)));
    std::string relative = full;
    if (full.size() > base.size() + 1 && full.compare(0, base.size(), base) == 0 &&
        (full[base.size()] == '/' || full[base.size()] == '\\')) {
        relative = full.substr(base.size() + 1);
    }
    relative = ToBackslashes(relative);

    bool duplicate = false;
    WalkTree(s.root_.get(), [&](ConfigNode* n) {
        const char* p = n->GetAttribute("RelativePath");
        if (n->Name() == "File" && p != nullptr && Lower(p) == Lower(relative)) duplicate = true;
        return false;
    });
    if (duplicate) Fail(project + ": '" + relative + "' is in the project already");

    s.LoadPlugin(false);
    ConfigNode* parent = s.Child("Files");
    size_t start = 0;
    while (!group.empty() && start <= group.size()) {
        size_t slash = group.find('/', start);
        std::string part = group.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
        start = slash == std::string::npos ? group.size() + 1 : slash + 1;
        if (part.empty()) continue;
        ConfigNode* found = nullptr;
        for (ConfigNode* c = parent->FirstChild(); c; c = c->NextSibling()) {
            const char* n = c->GetAttribute("Name");
            if (c->Name() == "Filter" && n != nullptr && part == n) found = c;
        }
        if (found == nullptr) {
            found = new ConfigNode("Filter");
            found->SetAttribute("Name", part.c_str());
            parent->AppendChild(found);
        }
        parent = found;
    }
    auto* node = new ConfigNode("File");
    node->SetAttribute("RelativePath", relative.c_str());
    node->SetAttributeInt("FileType", FileTypeFor(relative));
    parent->AppendChild(node);
    s.EnterProject();
    s.host_.table()->InstallTool(node);
    s.Save();
    std::printf("added %s file '%s'\n", KindName(FileTypeFor(relative)), relative.c_str());
    return 0;
}

void PrintAttributes(const ConfigNode& node, const char* indent) {
    for (const auto* a = node.FirstAttribute(); a; a = node.NextAttribute(a)) {
        std::printf("%s%s = \"%s\"\n", indent, Printable(a->name).c_str(), Printable(a->value).c_str());
    }
}

int CommandShow(const std::vector<std::string>& args, platform::Platform& platform) {
    std::string project, target;
    bool have_target = false;
    for (size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--target") {
            if (i + 1 >= args.size()) Fail("--target needs a name");
            target = args[++i];
            have_target = true;
        } else if (project.empty()) {
            project = args[i];
        } else {
            Fail("usage: orvhost show PROJECT [--target NAME]");
        }
    }
    if (project.empty()) Fail("usage: orvhost show PROJECT [--target NAME]");
    Session s(platform);
    s.Open(project);
    if (have_target && s.FindTarget(target) == nullptr) Fail(project + ": no target named '" + target + "'");

    const char* name = s.root_->GetAttribute("Name");
    std::printf("project '%s' (%s)\n", name ? Printable(name).c_str() : "", project.c_str());
    std::printf("targets:\n");
    ConfigNode* configs = s.root_->FindChild("Configurations");
    int count = 0;
    for (ConfigNode* c = configs ? configs->FirstChild() : nullptr; c; c = c->NextSibling()) {
        const char* n = c->GetAttribute("Name");
        if (have_target && (n == nullptr || target != n)) continue;
        ++count;
        std::printf("  %s\n", n ? Printable(n).c_str() : "(unnamed)");
        PrintAttributes(*c, "    ");
        for (ConfigNode* k = c->FirstChild(); k; k = k->NextSibling()) {
            std::printf("    <%s>\n", Printable(k->Name()).c_str());
            PrintAttributes(*k, "      ");
        }
    }
    if (count == 0) std::printf("  (none)\n");
    if (have_target) return 0;

    std::printf("files:\n");
    ConfigNode* files = s.root_->FindChild("Files");
    if (files == nullptr || files->FirstChild() == nullptr) {
        std::printf("  (none)\n");
        return 0;
    }
    // Depth-first, without recursion: groups nest as deep as the user made them.
    ConfigNode* n = files->FirstChild();
    int depth = 1;
    while (n != nullptr) {
        std::string indent(static_cast<size_t>(depth) * 2, ' ');
        if (n->Name() == "Filter") {
            const char* g = n->GetAttribute("Name");
            std::printf("%s%s/\n", indent.c_str(), g ? Printable(g).c_str() : "");
        } else if (n->Name() == "File") {
            const char* p = n->GetAttribute("RelativePath");
            int32_t type = 0;
            n->GetAttributeInt("FileType", &type);
            std::printf("%s%s (%s)\n", indent.c_str(), p ? Printable(p).c_str() : "", KindName(type));
        }
        if (n->Name() == "Filter" && n->FirstChild() != nullptr) {
            n = n->FirstChild();
            ++depth;
            continue;
        }
        while (n != files && n->NextSibling() == nullptr) {
            n = n->Parent();
            --depth;
        }
        n = n == files ? nullptr : n->NextSibling();
    }
    return 0;
}

}  // namespace

int RunCli(const std::vector<std::string>& args, platform::Platform& platform) {
    if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
        std::fputs(kUsage, stdout);
        return args.empty() ? 2 : 0;
    }
    try {
        const std::string& command = args[0];
        if (command == "new") return CommandNew(args, platform);
        if (command == "add-target") return CommandAddTarget(args, platform);
        if (command == "add-file") return CommandAddFile(args, platform);
        if (command == "show") return CommandShow(args, platform);
        if (command == "options") return CommandOptions(args, platform);
        if (command == "set") return CommandSet(args, platform);
        if (command == "import") return CommandImport(args, platform);
        if (command == "config") return RunConfigCommand(args, platform);
        if (IsBuildCommand(command)) return RunBuildCommand(args, platform);
        Fail("unknown command '" + command + "' (see orvhost --help)");
    } catch (const CliFailure& f) {
        std::fflush(stdout);
        std::fprintf(stderr, "orvhost: %s\n", f.message.c_str());
        return f.status;
    }
}

}  // namespace ads::host
