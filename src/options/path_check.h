// What the pages accept as a folder or file path: Windows path characters,
// a drive's colon only after its letter, and at most one kind of directory
// macro ("{Project}", "{Compiler}", "{System}"), because the build replaces
// only the first kind a path holds and would leave the second as text.
#pragma once

#include <string>

namespace ads::options {

enum class PathUse {
    kFolder,      // a folder; macros allowed
    kSearchPath,  // a search-path entry: macros and one final "*" (all subfolders)
    kFile,        // a file path; macros allowed
    kFileName,    // a bare file name: no folder, no macro
};

// Empty, or the message the page shows about `path` (named `what`).
std::string PathProblem(const std::string& path, PathUse use, const std::string& what);

}  // namespace ads::options
