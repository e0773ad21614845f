// orvhost's simulator library ("SArm.dll", "SArm.so" on Linux) in its own
// folder: the plug-in hands it a target driver to configure. A host without
// windows opens no driver dialog, so the configuration stays as it is given.
#include "ads/plugin_abi.h"

extern "C" ADS_EXPORT int ADS_CALL ConfigXDI(int32_t kind, int32_t mode, AdsDriverConfigRequest* request) {
    (void)kind;
    (void)mode;
    return request != nullptr ? 1 : 0;
}
