// orvhost's commands on the project file itself: new, add-target,
// add-file, show.
#include <cstdio>
#include <memory>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {
void PrintAttributes(const ConfigNode& node, const char* indent) {
    for (const auto* a = node.FirstAttribute(); a; a = node.NextAttribute(a)) {
        std::printf("%s%s = \"%s\"\n", indent, Printable(a->Name()).c_str(), Printable(a->Value()).c_str());
    }
}
}  // namespace

int CommandNew(const Arguments& args, platform::Platform& platform) {
    const std::string& path = args[0];
    if (platform.files->PathExists(path)) Fail(path + ": already exists; not overwritten");
    const std::unique_ptr<ConfigNode> root = NewProjectTree(platform::StemOf(path));
    std::string error;
    if (!SaveProject(*platform.files, path, *root, &error)) Fail(error);
    std::printf("created project '%s' in %s\n", platform::StemOf(path).c_str(), path.c_str());
    return 0;
}

int CommandAddTarget(const Arguments& args, platform::Platform& platform) {
    Session s(platform);
    s.Open(args[0]);
    const std::string& name = args[1];
    if (name.empty()) Fail(args[0] + ": a target needs a name");
    if (FindConfiguration(s.root_.get(), name) != nullptr) Fail(args[0] + ": target '" + name + "' exists already");
    s.LoadPlugin(false);
    auto* target = new ConfigNode(config::kConfigurationNode);
    target->SetAttribute(config::kNameKey, name.c_str());
    s.Child(config::kConfigurationsNode)->AppendChild(target);
    s.EnterProject();
    s.host_.table()->InstallTool(target);
    s.Save();
    std::printf("added target '%s'\n", name.c_str());
    return 0;
}

int CommandAddFile(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    const std::string& file = args[1];
    const std::string group = args.Value("--group");
    Session s(platform);
    s.Open(project);
    platform::FileSystem& fs = *platform.files;
    if (!fs.FileExists(file)) Fail(file + ": no such file");

    // Stored relative to the project's folder when it lies below it, in the
    // Windows form the tools get.
    std::string full = fs.FullPath(file);
    const std::string base = fs.FullPath(s.project_dir_.empty() ? "." : s.project_dir_);
    std::string relative = full;
    if (full.size() > base.size() + 1 && full.compare(0, base.size(), base) == 0 &&
        (full[base.size()] == '/' || full[base.size()] == '\\')) {
        relative = full.substr(base.size() + 1);
    }
    relative = ToBackslashes(relative);

    bool duplicate = false;
    WalkTree(s.root_.get(), [&](ConfigNode* n) {
        const char* p = n->GetAttribute(config::kRelativePathKey);
        if (n->Name() == config::kFileNode && p != nullptr && platform::EqualsIgnoringCase(p, relative)) {
            duplicate = true;
        }
        return false;
    });
    if (duplicate) Fail(project + ": '" + relative + "' is in the project already");

    s.LoadPlugin(false);
    ConfigNode* parent = s.Child(config::kFilesNode);
    size_t start = 0;
    while (!group.empty() && start <= group.size()) {
        size_t slash = group.find('/', start);
        std::string part = group.substr(start, slash == std::string::npos ? std::string::npos : slash - start);
        start = slash == std::string::npos ? group.size() + 1 : slash + 1;
        if (part.empty()) continue;
        ConfigNode* found = nullptr;
        for (ConfigNode* c = parent->FirstChild(); c; c = c->NextSibling()) {
            const char* n = c->GetAttribute(config::kNameKey);
            if (c->Name() == config::kFilterNode && n != nullptr && part == n) found = c;
        }
        if (found == nullptr) {
            found = new ConfigNode(config::kFilterNode);
            found->SetAttribute(config::kNameKey, part.c_str());
            parent->AppendChild(found);
        }
        parent = found;
    }
    auto* node = new ConfigNode(config::kFileNode);
    node->SetAttribute(config::kRelativePathKey, relative.c_str());
    node->SetAttributeInt(config::kFileTypeKey, FileTypeFor(relative));
    parent->AppendChild(node);
    s.EnterProject();
    s.host_.table()->InstallTool(node);
    s.Save();
    // The object is the plug-in's choice, made while it installed the node.
    const char* object = node->GetAttribute(config::kOutputKey);
    const std::string chosen = object != nullptr && *object != '\0' ? std::string(" (object ") + object + ")" : "";
    std::printf("added %s file '%s'%s\n", KindName(FileTypeFor(relative)), relative.c_str(), chosen.c_str());
    return 0;
}

int CommandShow(const Arguments& args, platform::Platform& platform) {
    const std::string& project = args[0];
    const std::string target = args.Value("--target");
    const bool have_target = args.Has("--target");
    Session s(platform);
    s.Open(project);
    if (have_target && FindConfiguration(s.root_.get(), target) == nullptr) {
        Fail(project + ": no target named '" + target + "'");
    }

    const char* name = s.root_->GetAttribute(config::kNameKey);
    std::printf("project '%s' (%s)\n", name ? Printable(name).c_str() : "", project.c_str());
    std::printf("targets:\n");
    ConfigNode* configs = s.root_->FindChild(config::kConfigurationsNode);
    int count = 0;
    for (ConfigNode* c = configs ? configs->FirstChild() : nullptr; c; c = c->NextSibling()) {
        const char* n = c->GetAttribute(config::kNameKey);
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
    ConfigNode* files = s.root_->FindChild(config::kFilesNode);
    if (files == nullptr || files->FirstChild() == nullptr) {
        std::printf("  (none)\n");
        return 0;
    }
    // Depth-first, without recursion: groups nest as deep as the user made them.
    ConfigNode* n = files->FirstChild();
    int depth = 1;
    while (n != nullptr) {
        std::string indent(static_cast<size_t>(depth) * 2, ' ');
        if (n->Name() == config::kFilterNode) {
            const char* g = n->GetAttribute(config::kNameKey);
            std::printf("%s%s/\n", indent.c_str(), g ? Printable(g).c_str() : "");
        } else if (n->Name() == config::kFileNode) {
            const char* p = n->GetAttribute(config::kRelativePathKey);
            int32_t type = 0;
            n->GetAttributeInt(config::kFileTypeKey, &type);
            std::printf("%s%s (%s)\n", indent.c_str(), p ? Printable(p).c_str() : "", KindName(type));
        }
        if (n->Name() == config::kFilterNode && n->FirstChild() != nullptr) {
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

}  // namespace ads::host
