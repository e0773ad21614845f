// Where the ADS tools are: the tool directory, the path of each of the
// eight tools, and the registration of the toolchain with the host.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/platform.h"

namespace ads::plugin {

enum ToolIndex {
    kArmAsm = 0, kArmCc, kArmCpp, kTcc, kTcpp, kArmLink, kFromElf, kArmAr, kToolCount
};

// The executables in their fixed order.
extern const char* const kToolExecutables[kToolCount];

class Toolchain {
public:
    // Candidate tool directories, in order (the host's preference module).
    using CandidateSource = std::function<std::vector<std::string>()>;
    // The installer's "ARMHOME" entry; empty when there is none.
    using HomeSource = std::function<std::string()>;
    // Hands the fifteen texts to the host; false when it refuses them.
    using Registrar = std::function<bool(const std::array<std::string, 15>&)>;

    explicit Toolchain(platform::Platform* platform) : platform_(platform) {}

    void SetCandidateSource(CandidateSource source) { candidates_ = std::move(source); }
    void SetHomeSource(HomeSource source) { home_ = std::move(source); }

    // Finds the tools and derives every path; registers the toolchain when
    // every text of its record is non-empty. True when the host accepted it.
    bool Setup(const Registrar& registrar);

    std::string FindArmHome() const;
    void LocateTools();

    const std::string& directory() const { return directory_; }
    void set_directory(std::string dir) { directory_ = std::move(dir); }
    const std::string& path(ToolIndex tool) const { return paths_[tool]; }
    bool found() const { return found_ != 0; }
    std::array<std::string, 15> Record() const;

private:
    platform::Platform* platform_;
    CandidateSource candidates_;
    HomeSource home_;
    std::string directory_;
    std::array<std::string, kToolCount> paths_;
    int32_t found_ = 0;
};

}  // namespace ads::plugin
