// Where the ADS tools are: the tool directory, the path of each of the
// eight tools, and the registration of the toolchain with the host.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ads/ads_install.h"
#include "ads/plugin_abi.h"
#include "platform/platform.h"

namespace ads::platform {
class Registry;
}

namespace ads::plugin {

enum ToolIndex {
    kArmAsm = 0, kArmCc, kArmCpp, kTcc, kTcpp, kArmLink, kFromElf, kArmAr, kToolCount
};

static_assert(kToolCount == kAdsToolCount, "the tools of the installation");

// The host's preference module, relative to the host's folder, and the
// toolchain name it is asked about.
extern const char kPreferenceModule[];      // "opt\Preference.dll"
extern const char kPreferenceToolchain[];   // "ADS"

// The ARMHOME the installer recorded: the CurrentVersion key's default value
// names the version, whose key holds "ARMHOME". Each value is read into a
// 260-byte buffer, so a text of 260 bytes or more reads as missing. Empty
// when anything is missing; nothing is reported.
std::string ReadArmHomeFromRegistry(platform::Registry& registry);

// The candidate tool directories that the host's preference module lists
// for the toolchain, in its order; none when the module or its entry is
// missing. The module is loaded for the question and freed afterwards.
std::vector<std::string> ReadPreferenceCandidates(platform::Libraries& libraries);


class Toolchain {
public:
    // Candidate tool directories, in order (the host's preference module).
    using CandidateSource = std::function<std::vector<std::string>()>;
    // The installer's "ARMHOME" entry; empty when there is none.
    using HomeSource = std::function<std::string()>;
    // Hands the fifteen texts to the host; false when it refuses them.
    using Registrar = std::function<bool(const std::array<std::string, kAdsRecordCount>&)>;

    explicit Toolchain(platform::Platform* platform) : platform_(platform) {}

    void SetCandidateSource(CandidateSource source) { candidates_ = std::move(source); }
    void SetHomeSource(HomeSource source) { home_ = std::move(source); }
    void SetRegistrar(Registrar registrar) { registrar_ = std::move(registrar); }

    // The installation's home: the registry's ARMHOME, else the stored tool
    // directory cut at its last backslash ("D:\ADS\Bin" gives "D:\ADS").
    std::string FindArmHome() const;
    // True when the file can be opened for reading; false for an empty path.
    bool FileExists(const std::string& path) const;
    // Finds the tool directory, derives the eight paths and registers the
    // toolchain when every text of its record is non-empty. True when the
    // host accepted the record; false when it refused it or was not asked.
    bool LocateTools();

    const std::string& directory() const { return directory_; }
    void set_directory(std::string dir) { directory_ = std::move(dir); }
    const std::string& path(ToolIndex tool) const { return paths_[tool]; }
    // Whether the assembler was found by the last search: what the build
    // engine asks before it builds anything.
    bool found() const { return found_ != 0; }
    std::array<std::string, kAdsRecordCount> Record() const;

private:
    platform::Platform* platform_;
    CandidateSource candidates_;
    HomeSource home_;
    Registrar registrar_;
    std::string directory_;
    std::array<std::string, kToolCount> paths_;
    int32_t found_ = 0;
};

}  // namespace ads::plugin
