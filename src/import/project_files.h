// The files below an export's folder, listed before the export is read:
// a file reference that names only a file is looked for among them.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace ads::platform {
class FileSystem;
}

namespace ads::import {

// Paths as Windows limits them: deeper entries cannot be named, and are not
// listed.
constexpr size_t kMaxPath = 260;

class ProjectFiles {
public:
    // Lists every file below `folder`, depth first: "." and "..", hidden
    // entries and paths of kMaxPath bytes or more left out, the entries of a
    // folder in case-blind order of their names, each sub-folder entered
    // where it stands. A link or junction to a folder is entered only after
    // every folder reached without one, and no folder is entered twice,
    // however many links lead to it: a link to a folder above ends there.
    // Full paths are the folder, "\" and the names.
    void Scan(platform::FileSystem& files, const std::string& folder);

    // The full path of the file listed under this name, compared without
    // regard to ASCII case as Windows compares names: of several, the one
    // fewest folders down, and of those the first listed. Null if none.
    const std::string* Find(const std::string& name) const;

    // A path of the scan made relative to the folder: "." and the rest when
    // the rest begins with a backslash, else ".\" and the rest.
    std::string Relative(const std::string& full_path) const;

    const std::string& folder() const { return folder_; }
    size_t size() const { return names_.size(); }
    const std::vector<std::string>& names() const { return names_; }
    const std::vector<std::string>& paths() const { return paths_; }

private:
    std::string folder_;
    std::vector<std::string> names_;  // parallel lists, in the order found
    std::vector<std::string> paths_;
    std::unordered_map<std::string, size_t> best_;  // lower-case name -> index Find answers
};


}  // namespace ads::import
