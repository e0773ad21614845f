// Import of a project exported by the CodeWarrior IDE: the export's targets
// become "Configuration" nodes with the plug-in's keys, its groups and files
// "Filter" and "File" nodes under "Files", all written through the host's
// node services.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ads/config_node.h"
#include "config/host_api.h"
#include "import/export_reader.h"
#include "import/import_model.h"

namespace ads::import {

// What the output pane shows when the export cannot be read.
inline constexpr char kImportFailed[] = "import project failed!\n";
// The project keys an import writes.
inline constexpr char kBuildToolValue[] = "13";
inline constexpr char kVersionValue[] = "3.00";
inline constexpr char kAuthorValue[] = "Imported from a CodeWarrior project";

// The plug-in's current device settings; each key is written only when its
// text is not empty.
struct DeviceSettings {
    std::string device;          // DEVICE
    std::string vendor;          // VENDOR
    std::string family;          // FAMINY (the key's spelling)
    std::string cpu;             // CPU
    std::string simulator_dll;   // SIMDL
    std::string monitor_dll;     // MONDL
    std::string rgf;             // RGF
    std::string simulator_clock; // SIMCLK
};

struct ImportRequest {
    std::string export_path;
    // The project's "Name"; empty: the export's file name up to its first dot.
    std::string project_name;
    DeviceSettings device;
    ReaderOptions reader;
};

// Writes the project keys, creates "Configurations" and "Files" when the
// project lacks them, reads the export (on failure kImportFailed goes to the
// output pane and nothing more is added), adds one configuration per target
// (a name taken already gets a number, with a note) and the group and file
// tree, and gives every new source file its tool in every target. 1 when
// the export was imported; 0 when the project is null, its lists cannot be
// made or the export cannot be read. `model` receives what was read.
int ImportProject(config::HostApi& host, ConfigNode* project, const ImportRequest& request,
                  ImportModel* model = nullptr);

using Attributes = std::vector<std::pair<std::string, std::string>>;

// The keys of one target's "Configuration" node, in the order they are
// written; relative paths of its panels start from `folder`. What cannot be
// taken over is added to `notes` (may be null).
Attributes ConfigurationKeys(const ImportTarget& target, const std::string& folder, const DeviceSettings& device,
                             std::vector<std::string>* notes);

// The mappings as a mapping string: one group per tool that has extensions,
// in the order armcc, armcpp, tcc, tcpp, armasm, the armcc group opening
// with "(" and every other with ",(" (so a string without C extensions
// begins with a comma); the default mapping when there are no mappings.
std::string MappingString(const std::vector<FileMapping>& mappings);

// ` -I"path" ` for each user path, then ` -J"path" ` for each system path.
std::string SearchPathText(const ImportTarget& target);

// The file kind ("FileType") of a path: by the mappings of the export's
// targets (the first that lists the extension), else by the usual
// extensions; 0 for other files.
int FileKindOf(const std::string& path, const ImportModel& model);

// Everything an import of `model` cannot take over: the reader's notes, then
// each target's.
std::vector<std::string> ImportNotes(const ImportModel& model);

}  // namespace ads::import
