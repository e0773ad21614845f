// The "ARM Debug" page of the settings dialog, as the headless dialog and a
// window both drive it. Hardware emulation: the debug mode, the target
// driver chosen from the user's driver list (the "Target Driver DLL:" field
// shows its library followed by a tab, or "Invalid drive" when it is not
// listed or does not load), the buttons "config" and "flash" that open the
// driver's own dialog through the host's simulator library, the driver
// configuration it leaves ("Driver configuration:", shown only) and the
// emulator init script. Software
// simulation: the clock, the simulator init script and the storage grid, a
// count of rows ("Storage rows:", 32 at most) and each cell addressed as
// "Row N: COLUMN" (N from 0; "Type", "Start Address", "Size", "Load File",
// "Download?"), the cells of rows past the count disabled.
//
// It writes "ADS_OPTDBG" (field 1 the mode, field 2 the chosen driver,
// field 7 that driver's library when it is listed), "ServeDebugOptions" (the
// driver configuration), "InitScriptForEmu",
// "InitScriptForSim", "SIMCLK" and the "StorageNode" children, rows
// deleted too.
#pragma once

#include <memory>

#include "ads/plugin_abi.h"
#include "options/dialog_page.h"
#include "platform/platform.h"
#include "platform/registry.h"

namespace ads::debug {

// `host` (whose installation folder holds the simulator library that the
// "config" and "flash" buttons call) must outlive the page.
std::unique_ptr<options::StoredPage> MakeArmDebugPage(platform::Platform& platform, const AdsHostContext& host);

}  // namespace ads::debug
