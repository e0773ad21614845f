// Which of the five tools translates a file in a target, and where that
// choice is kept: the file's per-file settings child, which holds for each
// target the tool number (target name + "_tool") and the option text
// (target name).
#pragma once

#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/host_api.h"

namespace ads::config {

enum ToolNumber : int { kNoTool = 0, kToolArmasm = 1, kToolArmcc = 2, kToolArmcpp = 3, kToolTcc = 4, kToolTcpp = 5 };

// The file-mapping page's name of each tool; index = tool number, [0] unused.
extern const char* const kToolDisplayNames[6];

// The name of a file's per-file settings node for its kind.
const char* SettingsNodeName(int file_type);
// The first child named "ADS_AsmParam" or "ADS_CParam", or null.
ConfigNode* FindFileSettings(const ConfigNode* file);
// The same, asking the host to create it when it is missing.
ConfigNode* EnsureFileSettings(HostApi& host, ConfigNode* file);

// The target's mapping string, or the default when it has none.
std::string FileMapOf(const ConfigNode* configuration);

// The tool for a file in a target: the number stored for the target, else
// by "FileType" and the mere presence of "@armcc" / "@armcpp" in the map.
int ChooseTool(const ConfigNode* file, const std::string& target, const ConfigNode* configuration);

// Gives the file its option text and tool for every target of the
// "Configurations" node. False, changing nothing, for any other node.
bool AssignToolsOnAdd(HostApi& host, ConfigNode* file, ConfigNode* configurations);
// The same for one target, without looking at the map: C to armcc, C++ to
// armcpp, assembler to armasm. Nothing unless the node is a "File".
void AssignToolInTarget(HostApi& host, ConfigNode* file, const std::string& target, const ConfigNode* configuration);

// The file-mapping page's rows of (extension, tool display name,
// checked) and the mapping string they make.
struct MappingRow {
    std::string extension;   // with its dot: ".s"
    std::string tool;        // "ARM Assembler", "ARM C Compiler", ...
    bool checked = false;
};
std::string BuildMappingString(const std::vector<MappingRow>& rows);

// The rows a mapping string lists, group by group, each group's extensions
// in the order written; a group whose tool word is none of the five gives
// rows with tool "". BuildMappingString of the rows in reverse order gives
// back every string it can make; a group without extensions it cannot make
// but as "@armasm", "@tcc" or "@tcpp".
std::vector<MappingRow> MappingRows(const std::string& map);

}  // namespace ads::config
