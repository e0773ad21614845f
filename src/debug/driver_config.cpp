#include "debug/driver_config.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace ads::debug {

namespace {

void CopyText(char* to, size_t size, const std::string& from) {
    const size_t n = std::min(from.size(), size - 1);
    std::memcpy(to, from.data(), n);
    to[n] = '\0';
}

}  // namespace

bool ConfigureDriver(platform::Libraries& libraries, const AdsHostContext& host, const DriverEntry& driver, int mode,
                     std::string* text) {
    // The folder text is taken as the host gives it, the name right after it.
    const std::string path = std::string(host.install_dir != nullptr ? host.install_dir : "") + kSimulatorLibrary;
    platform::LibraryHandle library = libraries.Load(path);
    if (library == nullptr) return false;
    auto configure = reinterpret_cast<AdsConfigXdi>(libraries.Symbol(library, kConfigureDriverExport));
    bool ran = false;
    if (configure != nullptr) {
        // Large enough that it does not belong on the stack.
        auto request = std::make_unique<AdsDriverConfigRequest>();
        request->kind = static_cast<int32_t>(driver.kind);
        request->mode = mode;
        CopyText(request->library, sizeof request->library, driver.path);
        CopyText(request->text, sizeof request->text, *text);
        request->instance = host.instance;
        request->main_window = host.main_window;
        request->install_dir = host.install_dir;
        request->executable = host.executable;
        configure(request->kind, mode, request.get());
        request->text[sizeof request->text - 1] = '\0';
        *text = request->text;
        ran = true;
    }
    libraries.Free(library);
    return ran;
}

}  // namespace ads::debug
