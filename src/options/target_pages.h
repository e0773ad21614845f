// The pages of the target's own settings in the dialog's "Target" group,
// each over attributes of the target's "Configuration" node. Each page
// writes only the keys listed with it (no other page writes them), and only
// those whose value the user changed.
//
// "Target Settings" owns "ADS_LinkerName", "ADS_PostLnk",
//   "ADS_BatchFileParam" and "ADS_OUTPUT_DIR":
//   - "Linker:" "ARM Linker" or "ARM Librarian" (a library target); a value
//     other than the librarian, read without regard to case, is the linker,
//     as the build takes it;
//   - "Post-linker:" "None", "ARM fromELF" or "Batch File Runner" (read
//     without regard to case; anything else, or nothing, runs nothing after
//     the link and shows as "None");
//   - "Run batch file" and "Batch file command:", enabled only with the
//     "Batch File Runner": "ADS_BatchFileParam" is "%d,(%s)" (flag,
//     command) and is read back as the build reads it, so a command holds no
//     ")";
//   - "Output Directory:": empty or "{Project}" for the target's folder in
//     the project folder, else a folder (relative to the project folder
//     unless it names a drive).
// "Select CPU" owns "CPU": the combo lists the host's processors; a target
//   without "CPU" shows the host's default, the first entry that begins
//   with "CPU". A processor the host does not list is refused. "DEVICE" and
//   "VENDOR" stay as the host's device chooser set them.
// "ARM Target" owns "ADS_USRAPPFILE" and "AppFile":
//   - "Output file name:" the image's name without folder or extension (the
//     build appends ".axf", or ".a" for a library); it shows the project's
//     name while "ADS_USRAPPFILE" is empty, and a name equal to the
//     project's is stored as "" so that the image follows the project;
//   - "Application file:" the image the debugger loads. Each successful
//     build writes the image it made here; until the next one a user may
//     point the debugger at another file.
// "ARM Debug" is the debug subsystem's page (debug/arm_debug_page.h).
#pragma once

#include <memory>

#include "options/dialog_page.h"

namespace ads::options {

std::unique_ptr<StoredPage> MakeTargetSettingsPage();
std::unique_ptr<StoredPage> MakeSelectCpuPage();
std::unique_ptr<StoredPage> MakeArmTargetPage();

// The tree items' texts, which are also the pages' titles.
inline constexpr char kTargetSettingsItem[] = "Target Settings";
inline constexpr char kSelectCpuItem[] = "Select CPU";
inline constexpr char kArmTargetItem[] = "ARM Target";
inline constexpr char kArmDebugItem[] = "ARM Debug";
inline constexpr char kPostLinkNone[] = "None";

// "ADS_BatchFileParam" read as the build reads it: false (flag 0, no
// command) unless both fields are there.
struct BatchFile {
    int flag = 0;
    std::string command;
};
BatchFile ReadBatchFile(const std::string& value);
std::string WriteBatchFile(const BatchFile& batch);

}  // namespace ads::options
