// orvhost's preference module, "opt\Preference.dll" (opt/Preference.so on
// Linux): tells the plug-in which folders may hold the ADS tools, from the
// "tools-dir" lines of orvhost's configuration.
#include <cstdio>
#include <cstring>

#include "ads/preference.h"
#include "host_config.h"

extern "C" ADS_EXPORT intptr_t ADS_CALL OrvListToolDirectories(const char* toolchain,
                                                               AdsToolDirectoryCallback callback,
                                                               void* context) {
    if (toolchain == nullptr || callback == nullptr || std::strcmp(toolchain, "ADS") != 0) return 0;
    try {
        ads::platform::Platform& system = ads::platform::System();
        const std::string path = ads::host::HostConfigPath(*system.environment);
        if (path.empty()) return 0;
        ads::host::HostConfig config;
        std::string error;
        if (!ads::host::LoadHostConfig(*system.files, path, &config, &error)) {
            std::fprintf(stderr, "orvhost: %s\n", error.c_str());
            return -1;
        }
        intptr_t count = 0;
        for (const std::string& directory : config.tool_directories) {
            ++count;
            if (callback(context, directory.c_str()) == 0) break;
        }
        return count;
    } catch (...) {
        return -1;
    }
}
