// The option string a file's tool receives, the file's local-settings
// mark and the file-mapping page's model.
#pragma once

#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/file_tools.h"
#include "config/host_api.h"
#include "options/option_text.h"

namespace ads::build {

// Which tool takes a file and where the choice is kept live in config, where
// the project import reaches them too.
using config::AssignToolInTarget;
using config::AssignToolsOnAdd;
using config::BuildMappingString;
using config::MappingRow;
using config::ChooseTool;
using config::EnsureFileSettings;
using config::FileMapOf;
using config::FindFileSettings;
using config::kToolDisplayNames;
using config::SettingsNodeName;
using config::ToolNumber;
using config::kNoTool;
using config::kToolArmasm;
using config::kToolArmcc;
using config::kToolArmcpp;
using config::kToolTcc;
using config::kToolTcpp;

// The option string that replaces "$(ADS_PARAM)": the target's tool-wide
// string with the target's, the enclosing folders' and the file's own page
// states laid over it, as the settings dialog shows it for the file. Throws
// options::OptionError when a page position stays unresolved.
std::string FileOptionString(const ConfigNode* configuration, const ConfigNode* file,
                             const std::string& target, int tool,
                             const options::PathConverter& convert_via_path);

// "LocalConfigure" on the per-file settings node: 1 when the file's page
// states for the target differ from the defaults (it has any of its own),
// else 0. For a "Filter" every tool family is looked at and the results
// or-ed. Returns the value written.
bool RefreshLocalConfigure(config::HostApi& host, ConfigNode* node, const std::string& target);

}  // namespace ads::build
