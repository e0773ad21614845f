#include "plugin/toolchain.h"

#include "ads/preference.h"
#include "platform/registry.h"

namespace ads::plugin {

const char kPreferenceModule[] = "opt\\Preference.dll";
const char kPreferenceToolchain[] = "ADS";

namespace {

// RegQueryValueExA into a buffer of this many bytes, terminator included.
constexpr size_t kRegistryBuffer = 260;

bool ReadLimited(platform::RegistryKey& key, const std::string& name, std::string* value) {
    std::string text;
    if (!key.ReadString(name, &text) || text.size() + 1 > kRegistryBuffer) return false;
    *value = text;
    return true;
}

intptr_t ADS_CALL CollectDirectory(void* context, const char* directory) {
    if (directory != nullptr) static_cast<std::vector<std::string>*>(context)->emplace_back(directory);
    return 1;
}

}  // namespace

std::string ReadArmHomeFromRegistry(platform::Registry& registry) {
    std::string version;
    {
        auto key = registry.OpenKey(platform::RegistryRoot::kLocalMachine, kAdsCurrentVersionKey);
        if (!key || !ReadLimited(*key, "", &version)) return std::string();
    }
    auto key = registry.OpenKey(platform::RegistryRoot::kLocalMachine, kAdsVersionKeyPrefix + version);
    std::string home;
    if (!key || !ReadLimited(*key, kAdsHomeValue, &home)) return std::string();
    return home;
}

std::vector<std::string> ReadPreferenceCandidates(platform::Libraries& libraries) {
    std::vector<std::string> directories;
    platform::LibraryHandle module = libraries.Load(kPreferenceModule);
    if (module == nullptr) return directories;
    auto list = reinterpret_cast<AdsListToolDirectoriesFn>(libraries.Symbol(module, ADS_PREFERENCE_ENTRY));
    if (list != nullptr) list(kPreferenceToolchain, &CollectDirectory, &directories);
    libraries.Free(module);
    return directories;
}

std::string Toolchain::FindArmHome() const {
    std::string home = home_ ? home_() : std::string();
    if (home.empty() && !directory_.empty()) {
        // A tool directory ending in "\Bin" gives its parent. A folder
        // named the POSIX way ("/opt/ads/Bin") is cut at its last "/".
        size_t cut = directory_.rfind('\\');
        if (cut == std::string::npos) cut = directory_.rfind('/');
        home = cut == std::string::npos ? std::string() : directory_.substr(0, cut);
    }
    return home;
}

bool Toolchain::FileExists(const std::string& path) const {
    return !path.empty() && platform_->files->FileExists(path);
}

bool Toolchain::LocateTools() {
    platform::FileSystem& files = *platform_->files;
    std::string candidate;
    for (const std::string& dir : candidates_ ? candidates_() : std::vector<std::string>()) {
        // The directory stays the current one, also when the search goes on.
        files.ChangeDir(dir);
        std::vector<platform::DirectoryEntry> entries;
        if (!files.ListDirectory(dir, &entries)) continue;
        // Deliberate: the listing's last entry is never examined; it is the
        // one that comes with the answer that no more files follow.
        bool hit = false;
        for (size_t i = 0; i + 1 < entries.size() && !hit; ++i) {
            hit = entries[i].name.find("armcc.exe") != std::string::npos;
        }
        if (hit) {
            candidate = dir;
            break;
        }
    }

    // The found flag says that the assembler was found by this search, in
    // the candidate directory or in the registry's installation alike: the
    // build engine refuses to build without it ("Could't find ADS compiler
    // tools!"), and tools the user configured must build. A search that finds
    // nothing clears it.
    if (FileExists(candidate + "\\" + kAdsToolExecutables[kArmAsm])) {
        directory_ = candidate;
        found_ = 1;
    } else {
        found_ = 0;
        const std::string home = FindArmHome();
        if (!home.empty() && FileExists(home + "\\Bin\\" + kAdsToolExecutables[kArmAsm])) {
            found_ = 1;
            directory_ = home + "\\Bin";
        } else {
            directory_ = candidate;
        }
    }
    for (int i = 0; i < kToolCount; ++i) paths_[i] = directory_ + "\\" + kAdsToolExecutables[i];

    const std::array<std::string, kAdsRecordCount> record = Record();
    for (const std::string& text : record) {
        if (text.empty()) return false;
    }
    return registrar_ && registrar_(record);
}

std::array<std::string, kAdsRecordCount> Toolchain::Record() const {
    std::array<std::string, kAdsRecordCount> r;
    r[kAdsRecordName] = kPreferenceToolchain;
    r[kAdsRecordDirectory] = directory_;
    for (int i = 0; i < kToolCount; ++i) r[kAdsRecordFirstTool + i] = paths_[i];
    r[kAdsRecordSuite] = "ARM Developer Suite";
    r[kAdsRecordVersion] = "1.2";
    r[kAdsRecordFound] = found_ ? "1" : "0";
    r[kAdsRecordObjectExt] = ".o";
    r[kAdsRecordImageExt] = ".axf";
    return r;
}

}  // namespace ads::plugin
