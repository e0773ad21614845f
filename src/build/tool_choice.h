// Which of the five tools translates a file in a target, where that choice
// is kept on the file, and the option string the tool receives.
#pragma once

#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/host_api.h"
#include "options/option_text.h"

namespace ads::build {

enum ToolNumber : int { kNoTool = 0, kToolArmasm = 1, kToolArmcc = 2, kToolArmcpp = 3, kToolTcc = 4, kToolTcpp = 5 };

extern const char kSettingsFlagKey[];   // "ADS_CfgFlag"
extern const char kAsmSettings[];       // "ADS_AsmParam"
extern const char kCSettings[];         // "ADS_CParam"

// The name of a file's per-file settings node for its kind.
const char* SettingsNodeName(int file_type);
// The first child named "ADS_AsmParam" or "ADS_CParam", or null.
ConfigNode* FindFileSettings(const ConfigNode* file);
// The same, asking the host to create it when it is missing.
ConfigNode* EnsureFileSettings(config::HostApi& host, ConfigNode* file);

// The target's mapping string, or the default when it has none.
std::string FileMapOf(const ConfigNode* configuration);

// The tool for a file in a target: the number stored for the target, else
// by "FileType" and the mere presence of "@armcc" / "@armcpp" in the map.
int ChooseTool(const ConfigNode* file, const std::string& target, const ConfigNode* configuration);

// Gives the file its option text and tool for every target of the
// "Configurations" node. False, changing nothing, for any other node.
bool AssignToolsOnAdd(config::HostApi& host, ConfigNode* file, ConfigNode* configurations);
// The same for one target, without looking at the map: C to armcc, C++ to
// armcpp, assembler to armasm. Nothing unless the node is a "File".
void AssignToolInTarget(config::HostApi& host, ConfigNode* file, const std::string& target,
                        const ConfigNode* configuration);

// The option string that replaces "$(ADS_PARAM)": the target's tool-wide
// string with the file's own page states laid over it. Throws
// options::OptionError when a page position stays unresolved.
std::string FileOptionString(const ConfigNode* configuration, const ConfigNode* file,
                             const std::string& target, int tool,
                             const options::PathConverter& convert_via_path);

// "LocalConfigure" on the per-file settings node: 1 when the file's page
// states for the target differ from the defaults (it has any of its own),
// else 0. For a "Filter" every tool family is looked at and the results
// or-ed. Returns the value written.
bool RefreshLocalConfigure(config::HostApi& host, ConfigNode* node, const std::string& target);

// The file-mapping page as a model: rows of (extension, tool display name,
// checked) and the mapping string they make.
struct MappingRow {
    std::string extension;   // with its dot: ".s"
    std::string tool;        // "ARM Assembler", "ARM C Compiler", ...
    bool checked = false;
};
extern const char* const kToolDisplayNames[6];  // index = tool number; [0] unused
std::string BuildMappingString(const std::vector<MappingRow>& rows);

}  // namespace ads::build
