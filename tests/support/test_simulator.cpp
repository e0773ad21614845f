// A simulator library for the tests ("SArm"): its ConfigXDI writes what it
// was given into the configuration text, so a test reads the call back
// from what the plug-in keeps. Built without the export too.
#include <cstdio>
#include <string>

#include "ads/plugin_abi.h"

#ifdef EXPORT_CONFIG_XDI
extern "C" ADS_EXPORT int ADS_CALL ConfigXDI(int32_t kind, int32_t mode, AdsDriverConfigRequest* request) {
    const std::string text = "kind " + std::to_string(kind) + " mode " + std::to_string(mode) + " request " +
                             std::to_string(request->kind) + "/" + std::to_string(request->mode) + " library " +
                             request->library + " was " + request->text;
    std::snprintf(request->text, sizeof request->text, "%s", text.c_str());
    return 1;
}
#endif
extern "C" ADS_EXPORT int TestSimulatorVersion(void) { return 1; }
