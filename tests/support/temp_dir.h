// A fresh folder for a test, under the system's temporary folder.
#pragma once

#include <chrono>
#include <random>
#include <string>

#include "platform/platform.h"

namespace ads::testing {

inline std::string MakeTempDir(const std::string& prefix) {
    platform::Platform& p = platform::System();
    std::string base;
    for (const char* var : {"TMPDIR", "TEMP", "TMP"}) {
        if (p.environment->Get(var, &base) && !base.empty()) break;
        base.clear();
    }
    if (base.empty()) base = "/tmp";
    std::mt19937_64 rng(static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string dir = base + "/" + prefix + "-" + std::to_string(rng() % 100000000);
        if (p.files->CreateDirectory(dir) == 0) return dir;
    }
    return std::string();
}

}  // namespace ads::testing
