#include "import/project_files.h"

#include <algorithm>
#include <deque>
#include <unordered_set>

#include "platform/platform.h"
#include "platform/text.h"

namespace ads::import {

namespace {

size_t Depth(const std::string& path) { return static_cast<size_t>(std::count(path.begin(), path.end(), '\\')); }

}  // namespace

void ProjectFiles::Scan(platform::FileSystem& files, const std::string& folder) {
    folder_ = folder;
    names_.clear();
    paths_.clear();
    best_.clear();

    // One frame per open folder: its path, its sorted entries and the next
    // one to visit. A sub-folder is entered where it stands in the list; a
    // linked one waits until the stack is empty.
    struct Frame {
        std::string path;
        std::vector<platform::DirectoryEntry> entries;
        size_t next = 0;
    };
    std::unordered_set<std::string> entered;  // identities of the folders listed
    auto open = [&](const std::string& path, std::vector<Frame>& stack) {
        const std::string identity = files.FileIdentity(path);
        if (!identity.empty() && !entered.insert(identity).second) return;
        Frame frame{path, {}, 0};
        if (!files.ListDirectory(path, &frame.entries)) return;
        std::stable_sort(frame.entries.begin(), frame.entries.end(),
                         [](const platform::DirectoryEntry& a, const platform::DirectoryEntry& b) {
                             return platform::Lower(a.name) < platform::Lower(b.name);
                         });
        stack.push_back(std::move(frame));
    };
    std::vector<Frame> stack;
    std::deque<std::string> linked;
    open(folder, stack);
    while (!stack.empty() || !linked.empty()) {
        if (stack.empty()) {
            open(linked.front(), stack);
            linked.pop_front();
            continue;
        }
        Frame& top = stack.back();
        if (top.next >= top.entries.size()) {
            stack.pop_back();
            continue;
        }
        const platform::DirectoryEntry entry = top.entries[top.next++];
        if (entry.name.empty() || entry.name == "." || entry.name == ".." || entry.is_hidden) continue;
        std::string path = platform::JoinPath(top.path, entry.name);
        if (path.size() >= kMaxPath) continue;
        if (entry.is_directory) {
            if (entry.is_link) {
                linked.push_back(std::move(path));
            } else {
                open(path, stack);  // `top` may move: not used after this
            }
            continue;
        }
        auto [best, added] = best_.emplace(platform::Lower(entry.name), names_.size());
        if (!added && Depth(path) < Depth(paths_[best->second])) best->second = names_.size();
        names_.push_back(entry.name);
        paths_.push_back(std::move(path));
    }
}

const std::string* ProjectFiles::Find(const std::string& name) const {
    auto it = best_.find(platform::Lower(name));
    return it == best_.end() ? nullptr : &paths_[it->second];
}

std::string ProjectFiles::Relative(const std::string& full_path) const {
    std::string rest = full_path.compare(0, folder_.size(), folder_) == 0 ? full_path.substr(folder_.size()) : full_path;
    return !rest.empty() && rest[0] == '\\' ? "." + rest : ".\\" + rest;
}

}  // namespace ads::import
