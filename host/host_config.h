// orvhost's own settings: a small text file of "name = value" lines ("#"
// or ";" starts a comment). The one setting so far is
//
//   tools-dir = DIR     a folder that holds the ADS tools; may be given more
//                       than once, the folders are tried in order
//
// which orvhost's preference module lists to the plug-in.
#pragma once

#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::host {

struct HostConfig {
    std::vector<std::string> tool_directories;
};

// $ORVANE_CONFIG; else on Windows %APPDATA%\Orvane\orvhost.conf, elsewhere
// $XDG_CONFIG_HOME/orvane/orvhost.conf or $HOME/.config/orvane/orvhost.conf.
// Empty when none of them is set.
std::string HostConfigPath(platform::Environment& environment);

// A missing file is an empty configuration. A malformed one fails with
// *error naming the file and the line.
bool LoadHostConfig(platform::FileSystem& files, const std::string& path, HostConfig* config,
                    std::string* error);

// Makes `directory` the one tool directory, keeping every other line of the
// file; creates the file and its folders when missing. A malformed file is
// left as it is. Written whole or not at all.
bool SetToolDirectory(platform::FileSystem& files, const std::string& path, const std::string& directory,
                      std::string* error);

}  // namespace ads::host
