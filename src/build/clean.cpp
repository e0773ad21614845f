// Cleaning a target: every object the build put in the target's folder and
// the linked image or archive. A file that is not there is not an error.
#include "build/build_engine.h"
#include "build/node_text.h"
#include "config/project_keys.h"

namespace ads::build {

void BuildEngine::Clean(const BuildContext& c) {
    if (c.project_root == nullptr) return;
    std::string project = Text(c.project_root, config::kNameKey);
    std::string report = Format(kCleanBanner, project.c_str(), c.target.c_str());
    platform_->files->ChangeDir(c.project_dir);
    auto remove = [&](const std::string& path) {
        if (!platform_->files->PathExists(path)) return;
        std::string message;
        if (platform_->files->RemoveFile(path, &message) == 0) return;
        report += Format(kDeleteFailed, path.c_str()) + message;
    };
    // An object that is its own source file is not the build's to delete.
    ForEachObject(c.project_root, [&](ConfigNode*, const std::string&, const std::string& output, bool own) {
        if (!own) remove(c.target + "\\" + output);
    });
    // The image or the archive, named as the link command named it.
    remove(Location(c).command_path);
    Write(Format("%s", report.c_str()));
}

}  // namespace ads::build
