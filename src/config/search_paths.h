// A target's "SearchPath": the quoted entries of user (-I) and system (-J)
// include paths, what each entry expands to, and the linker's -libpath.
#pragma once

#include <string>

#include "config/path_macros.h"

namespace ads::platform {
class FileSystem;
}

namespace ads::config {

// The default of a new target: one leading blank, two between the entries,
// one trailing blank.
extern const char kDefaultSearchPath[];  // ` -I".*"  -J"{Compiler}Include*"  -J"{Compiler}Lib*" `

// The switch texts built from a "SearchPath" value: each entry as
// ` -I"path" ` or ` -J"path" ` (its closing quote and one blank), paths as
// written, macros included.
struct SearchPathSwitches {
    std::string include;         // the -I entries
    std::string system_include;  // the -J entries
};
SearchPathSwitches ParseSearchPath(const std::string& value);

// The directories one entry's path stands for, each followed by ";". A "*"
// cuts the path and asks for the directory and every folder below it
// (hidden folders left out, names in case-blind order, depth first, paths
// shorter than MAX_PATH); one macro kind is replaced; a path that is not
// absolute is taken from the project directory.
std::string ExpandSearchPathEntry(const std::string& entry, const PathMacros& macros,
                                  platform::FileSystem& files);

// ` -libpath "a,b,"` from "a;b;": every piece that a ";" follows, then a
// closing quote; empty for an empty list. A last piece without its ";" is
// dropped, deliberately.
std::string LibraryPathSwitch(const std::string& directories);

}  // namespace ads::config
