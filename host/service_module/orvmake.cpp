// orvhost's build-service module, "Build\OrvMake.dll" (Build/OrvMake.so on
// Linux). The plug-in loads it when it is loaded itself and frees it when it
// is unloaded; orvhost's own make engine does the building, so the module
// only describes itself in the service words.
#include <cstring>

#include "ads/plugin_abi.h"

namespace {
constexpr AdsWord kServiceVersion = 0x0100;
}

extern "C" ADS_EXPORT void ADS_CALL OrvMakeEntry(AdsHostServices* services) {
    if (services == nullptr) return;
    services->service[0] = kServiceVersion;
    services->service[1] = sizeof(AdsHostServices);
    // Whether the caller named itself as the toolchain this module serves.
    services->service[2] = std::strncmp(services->name, "ADS", sizeof services->name) == 0 ? 1 : 0;
    for (int i = 3; i < 9; ++i) services->service[i] = 0;
}
