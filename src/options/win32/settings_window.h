// The settings dialog as a window: the tree of the model's scope, the
// caption and tabs of the shown item, its page, "Equivalent Command Line"
// and the buttons. Free of <windows.h>, for the plug-in to call.
#pragma once

#include "options/settings_dialog_model.h"

namespace ads::options::win32 {

inline constexpr char kSettingsTitle[] = "ADS ARM Settings";

// Shows the dialog modally over `owner` (a HWND, may be null). Returns 1
// (OK) or 2 (Cancel); -1 when the window could not be made.
int RunSettingsWindow(void* owner, SettingsDialogModel& model);

}  // namespace ads::options::win32
