#include "config/search_paths.h"

#include <algorithm>
#include <vector>

#include "platform/platform.h"
#include "platform/text.h"

namespace ads::config {

const char kDefaultSearchPath[] = " -I\".*\"  -J\"{Compiler}Include*\"  -J\"{Compiler}Lib*\" ";

namespace {

// Longer paths than this are out of reach of the ANSI file functions; the
// limit also ends a walk that a link back up the tree would make endless.
constexpr size_t kMaxPath = 260;

}  // namespace

SearchPathSwitches ParseSearchPath(const std::string& value) {
    SearchPathSwitches out;
    std::string s = value;
    for (;;) {
        const size_t q1 = s.find('"');
        if (q1 == std::string::npos) break;
        const size_t q2 = s.find('"', q1 + 1);
        if (q2 == std::string::npos) break;
        // Deliberate: only "-I" before the quote makes a user entry;
        // anything else there (also "-i" or no switch at all) counts as -J.
        const size_t dash_i = s.find("-I");
        const bool user = dash_i != std::string::npos && dash_i < q1;
        (user ? out.include : out.system_include) +=
            std::string(user ? " -I\"" : " -J\"") + s.substr(q1 + 1, q2 - q1 - 1) + "\" ";
        // Keep the last size - q2 - 2 characters: the entry, its closing
        // quote and one separator go, whatever that separator is.
        s = s.size() >= q2 + 2 ? s.substr(q2 + 2) : std::string();
    }
    return out;
}

std::string ExpandSearchPathEntry(const std::string& entry, const PathMacros& macros,
                                  platform::FileSystem& files) {
    std::string path = entry;
    const size_t star = path.find('*');
    const bool subfolders = star != std::string::npos;
    if (subfolders) path.resize(star);
    path = ResolveAgainstProject(ReplaceOneMacroKind(path, macros), macros);
    if (!subfolders) return path + ";";

    std::string out;
    std::vector<std::string> pending{path};
    while (!pending.empty()) {
        const std::string directory = pending.back();
        pending.pop_back();
        out += directory + ";";
        std::vector<platform::DirectoryEntry> entries;
        if (!files.ListDirectory(directory, &entries)) continue;
        std::vector<std::string> children;
        for (const platform::DirectoryEntry& e : entries) {
            if (!e.is_directory || e.is_hidden) continue;
            std::string child = platform::JoinPath(directory, e.name);
            if (child.size() < kMaxPath) children.push_back(std::move(child));
        }
        std::sort(children.begin(), children.end(), platform::LessIgnoringCase);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return out;
}

std::string LibraryPathSwitch(const std::string& directories) {
    if (directories.empty()) return std::string();
    std::string out = " -libpath \"";
    for (size_t start = 0;;) {
        const size_t semicolon = directories.find(';', start);
        if (semicolon == std::string::npos) break;
        out += directories.substr(start, semicolon - start) + ",";
        start = semicolon + 1;
    }
    return out + "\"";
}

}  // namespace ads::config
