// orvhost import: a CodeWarrior export becomes a new orvhost project. The
// plug-in does the import through its import slot, as it does for the IDE,
// and says in the output pane what it could not take over and why an export
// could not be read.
#include <cstdio>
#include <memory>

#include "cli_commands.h"
#include "cli_support.h"

namespace ads::host {

namespace {

// The pane line in which the plug-in says why it could not read an export.
const char kPaneError[] = "error: ";

// Takes the reason out of the pane text: it becomes orvhost's own failure
// line. Empty when the pane names none.
std::string TakeReason(std::string* pane) {
    const std::string prefix = kPaneError;
    for (size_t begin = 0; begin < pane->size();) {
        size_t end = pane->find('\n', begin);
        end = end == std::string::npos ? pane->size() : end + 1;
        if (pane->compare(begin, prefix.size(), prefix) == 0) {
            std::string reason = pane->substr(begin + prefix.size(), end - begin - prefix.size());
            while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r')) reason.pop_back();
            pane->erase(begin, end - begin);
            return reason;
        }
        begin = end;
    }
    return std::string();
}

std::vector<std::string> PathParts(const std::string& path) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find_first_of("/\\", start);
        if (end == std::string::npos) end = path.size();
        if (end > start) parts.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

bool SamePart(const std::string& a, const std::string& b) {
#ifdef _WIN32
    return platform::EqualsIgnoringCase(a, b);
#else
    return a == b;
#endif
}

// `full` relative to the folder `base` (both absolute and normalised), with
// ".." where it lies outside; `full` itself when they share no root.
std::string RelativeTo(const std::string& base, const std::string& full) {
    const std::vector<std::string> from = PathParts(base);
    const std::vector<std::string> to = PathParts(full);
    const bool rooted_alike = (base.rfind('/', 0) == 0) == (full.rfind('/', 0) == 0);
    size_t common = 0;
    while (common < from.size() && common < to.size() && SamePart(from[common], to[common])) ++common;
    if (!rooted_alike || (common == 0 && !from.empty() && from[0].find(':') != std::string::npos)) return full;
    std::string relative;
    for (size_t i = common; i < from.size(); ++i) relative += "..\\";
    for (size_t i = common; i < to.size(); ++i) relative += to[i] + (i + 1 < to.size() ? "\\" : "");
    return relative.rfind("..", 0) == 0 ? relative : ".\\" + relative;
}

// The import writes file paths from the export's folder; a project kept in
// another folder gets them from its own. Returns the number changed.
int RebaseFilePaths(ConfigNode* root, const std::string& export_dir, const std::string& project_dir,
                    platform::FileSystem& fs) {
    int changed = 0;
    WalkTree(root, [&](ConfigNode* n) {
        const char* path = n->GetAttribute(config::kRelativePathKey);
        if (n->Name() != config::kFileNode || path == nullptr) return false;
        if (platform::IsAbsolutePath(path) || path[0] == '\\') return false;
        const std::string moved = RelativeTo(project_dir, fs.FullPath(export_dir + "\\" + path));
        n->SetAttribute(config::kRelativePathKey, moved.c_str());
        ++changed;
        return false;
    });
    return changed;
}

}  // namespace

int CommandImport(const Arguments& args, platform::Platform& platform) {
    const std::string& export_path = args[0];
    const std::string& project = args[1];
    platform::FileSystem& fs = *platform.files;
    if (fs.PathExists(project)) Fail(project + ": already exists; not overwritten");
    if (fs.IsDirectory(export_path)) Fail(export_path + ": is a folder, not a CodeWarrior export");
    if (!fs.FileExists(export_path)) Fail(export_path + ": no such file");
    std::string text;
    if (!fs.ReadFile(export_path, &text)) Fail(export_path + ": cannot read the file");

    // Full paths first: the plug-in moves the working folder while it looks
    // for the tools.
    const std::string full_export = fs.FullPath(export_path);
    Session s(platform);
    s.path_ = project;
    s.full_path_ = fs.FullPath(project);
    s.project_dir_ = DirectoryOf(s.full_path_);
    if (!s.project_dir_.empty() && !fs.IsDirectory(s.project_dir_)) Fail(project + ": its folder does not exist");
    s.root_ = NewProjectTree(platform::StemOf(project));

    // What the plug-in writes while it loads goes nowhere; what it writes
    // while it imports is shown.
    std::string pane;
    s.host_.SetOutput(&pane);
    s.LoadPlugin();
    pane.clear();
    s.EnterProject();
    const int imported = s.host_.table()->ImportProject(full_export.c_str(), 1);
    const std::string reason = TakeReason(&pane);
    // A refused export is bad input: its one line says why, and the pane's
    // own failure text would only repeat it.
    if (imported == 0) {
        Fail(export_path + ": not imported: " + (reason.empty() ? "the plug-in did not take it" : reason));
    }
    std::fputs(pane.c_str(), stdout);

    const std::string export_dir = DirectoryOf(full_export);
    const bool moved = !SamePart(export_dir, s.project_dir_) && RebaseFilePaths(s.root_.get(), export_dir, s.project_dir_, fs) > 0;
    s.Save();

    int targets = 0, files = 0;
    WalkTree(s.root_.get(), [&](ConfigNode* n) {
        targets += n->Name() == config::kConfigurationNode;
        files += n->Name() == config::kFileNode;
        return false;
    });
    std::printf("imported %d target%s and %d file%s from %s into %s\n", targets, targets == 1 ? "" : "s", files,
                files == 1 ? "" : "s", export_path.c_str(), project.c_str());
    if (moved) {
        std::printf("note: the project is not in the export's folder: file paths now start from %s, "
                    "and {Project} in search paths means that folder\n",
                    s.project_dir_.c_str());
    }
    return 0;
}

}  // namespace ads::host
