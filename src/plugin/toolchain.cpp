#include "plugin/toolchain.h"

namespace ads::plugin {

const char* const kToolExecutables[kToolCount] = {
    "armasm.exe", "armcc.exe", "armcpp.exe", "tcc.exe",
    "tcpp.exe",   "armlink.exe", "fromelf.exe", "armar.exe",
};

std::string Toolchain::FindArmHome() const {
    std::string home = home_ ? home_() : std::string();
    if (home.empty() && !directory_.empty()) {
        // A tool directory ending in "\Bin" gives its parent.
        size_t cut = directory_.rfind('\\');
        home = cut == std::string::npos ? std::string() : directory_.substr(0, cut);
    }
    return home;
}

void Toolchain::LocateTools() {
    std::string candidate;
    if (candidates_) {
        for (const std::string& dir : candidates_()) {
            platform_->files->SetCurrentDirectory(dir);
            std::vector<platform::DirectoryEntry> entries;
            if (!platform_->files->ListDirectory(dir, &entries)) continue;
            // The listing's last entry is never examined: it comes with the
            // answer that no more files follow.
            bool hit = false;
            for (size_t i = 0; i + 1 < entries.size(); ++i) {
                if (entries[i].name.find("armcc.exe") != std::string::npos) {
                    hit = true;
                    break;
                }
            }
            if (hit) {
                candidate = dir;
                break;
            }
        }
    }
    if (platform_->files->FileExists(candidate + "\\" + "armasm.exe")) {
        directory_ = candidate;
    } else {
        found_ = 0;
        std::string home = FindArmHome();
        if (!home.empty() && platform_->files->FileExists(home + "\\Bin\\" + "armasm.exe")) {
            found_ = 1;
            directory_ = home + "\\Bin";
        } else {
            directory_ = candidate;
        }
    }
    for (int i = 0; i < kToolCount; ++i) paths_[i] = directory_ + "\\" + kToolExecutables[i];
}

std::array<std::string, 15> Toolchain::Record() const {
    std::array<std::string, 15> r;
    r[0] = "ADS";
    r[1] = directory_;
    for (int i = 0; i < kToolCount; ++i) r[2 + i] = paths_[i];
    r[10] = "ARM Developer Suite";
    r[11] = "1.2";
    r[12] = ".o";
    r[13] = ".axf";
    r[14] = ".a";
    return r;
}

bool Toolchain::Setup(const Registrar& registrar) {
    LocateTools();
    std::array<std::string, 15> record = Record();
    for (const std::string& text : record) {
        if (text.empty()) return false;
    }
    return registrar(record);
}

}  // namespace ads::plugin
