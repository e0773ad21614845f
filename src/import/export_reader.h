// Reads a CodeWarrior XML project export into an ImportModel: the targets
// with their search paths, file mappings, linker setting and ADS panels, the
// target order, and the group tree with a path for every file it names.
//
// Failures (the read returns false and the model holds no target and no
// group, only `failure`): a file that cannot be read or is empty, a second
// line other than kExportVersionLine, XML that TinyXML does not parse and
// no PROJECT element. A target that fails to read (no SETTINGLIST, or a
// SETTING or PANELDATA without NAME text) ends the target list: the targets
// before it, the target order and the groups are read, and a note names the
// target and why. Missing panels, unknown settings, panels and elements are
// skipped; what a user would miss is said in `notes`.
#pragma once

#include <string>

#include "import/import_model.h"

namespace ads::platform {
class FileSystem;
}

namespace ads::import {

struct ReaderOptions {
    // For reading the export, listing its folder and looking files up on
    // disk; without it no file is found (only access paths give paths).
    platform::FileSystem* files = nullptr;
    // What "{Compiler}" stands for when a search path is tried on disk.
    std::string compiler_home;
};

// Lists the files below the export's folder, then reads the export.
bool ReadExport(const std::string& path, const ReaderOptions& options, ImportModel* model);

// The same for an export already in memory, whose folder is `export_folder`.
bool ReadExportText(const std::string& text, const std::string& export_folder, const ReaderOptions& options,
                    ImportModel* model);

}  // namespace ads::import
