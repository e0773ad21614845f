// The host's preference module, "opt\Preference.dll" in the host's folder
// (opt/Preference.so on Linux). The plug-in asks it where a toolchain's
// tools may be: it names the toolchain ("ADS") and the module answers with
// candidate tool directories, one call of the plug-in's callback per
// directory, in the order the plug-in should try them.
#pragma once

#include "ads/plugin_abi.h"

extern "C" {

// Receives one candidate directory (a zero-terminated text that is valid only
// during the call). Returning 0 asks the module to stop listing.
typedef intptr_t (ADS_CALL *AdsToolDirectoryCallback)(void* context, const char* directory);

// The module's one entry, exported under the name in kAdsPreferenceEntry.
// Calls `callback` with `context` for each candidate directory of the named
// toolchain and returns how many it reported: 0 for a toolchain it knows
// nothing about, -1 when its own settings cannot be read.
typedef intptr_t (ADS_CALL *AdsListToolDirectoriesFn)(const char* toolchain, AdsToolDirectoryCallback callback,
                                                     void* context);

}  // extern "C"

#define ADS_PREFERENCE_ENTRY "OrvListToolDirectories"
