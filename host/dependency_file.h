// What orvhost remembers between builds, kept beside the project file in
// "<project file>.deps": per target, how its last build ended and the
// dependency sets the plug-in collected for its sources.
//
//   orvhost dependencies 1
//   target Debug
//   result ok
//   source src\main.c
//     C:\work\demo\src\main.c
//     C:\work\demo\inc\board.h
//   source src\start.s
//   target Release 2
//   result failed
//
// One "target" block per target, its "result" line ("ok" or "failed",
// absent when unknown) before its sources, one "source" block per source
// (the file's "RelativePath") with one dependency per line, indented by two
// blanks. A value is everything after its keyword and one blank, so names
// keep their blanks; '%', the control bytes and DEL are written "%HH" and
// every other byte stands for itself.
//
// A missing file means nothing is known; a file that breaks any of these
// rules is ignored as a whole, since half of it may be wrong.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace ads::platform {
class FileSystem;
}

namespace ads::host {

enum class BuildResult { kUnknown, kSucceeded, kFailed };

struct TargetDependencies {
    BuildResult result = BuildResult::kUnknown;
    // source ("RelativePath") -> dependencies, full paths as the plug-in gave them
    std::map<std::string, std::vector<std::string>> sets;

    bool operator==(const TargetDependencies& other) const { return result == other.result && sets == other.sets; }
};

struct DependencyFile {
    std::map<std::string, TargetDependencies> targets;

    bool operator==(const DependencyFile& other) const { return targets == other.targets; }
};

// "<project file>.deps".
std::string DependencyFilePath(const std::string& project_file);

std::string SerializeDependencies(const DependencyFile& file);
// False, leaving *file empty, when the text is not such a file.
bool ParseDependencies(const std::string& text, DependencyFile* file);

// A missing, unreadable or malformed file gives an empty record; false then.
bool LoadDependencies(platform::FileSystem& files, const std::string& path, DependencyFile* file);
// Written whole or not at all. On failure *error names the path and reason.
bool SaveDependencies(platform::FileSystem& files, const std::string& path, const DependencyFile& file,
                      std::string* error);

}  // namespace ads::host
