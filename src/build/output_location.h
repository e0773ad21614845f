// Where a target's image or archive goes. "ADS_OUTPUT_DIR" is read here and
// nowhere else: the folder the build creates, the link command's $(ELF),
// "AppFile", fromelf's output and cleaning all take this one answer.
#pragma once

#include <string>

#include "ads/config_node.h"
#include "config/path_macros.h"

namespace ads::build {

struct OutputLocation {
    std::string folder;        // a full path; no trailing backslash unless a root ("C:\")
    std::string command_path;  // the file as the link command and "AppFile" name it
    std::string full_path;     // the file as a full path
};

// True when the target archives ("ADS_LinkerName" is "ARM Librarian", case
// ignored) instead of linking.
bool IsLibraryTarget(const ConfigNode* configuration);

// The file is "ADS_USRAPPFILE" when set, else the project's name, always
// with ".a" for a library and ".axf" otherwise. An empty "ADS_OUTPUT_DIR"
// or "{Project}" means the target's own folder, which the command names as
// ".\TARGET\NAME.axf". Any other folder has its macro replaced ("{Project}",
// "{Compiler}", "{System}"), is taken from the project folder when
// relative, and is named in full.
OutputLocation LocateOutput(const ConfigNode* configuration, const std::string& project_name,
                            const std::string& target, const config::PathMacros& macros);

}  // namespace ads::build
