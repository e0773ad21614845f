// A fresh folder for one test, removed with everything in it afterwards, and
// paths written the way the plug-in writes them: with backslashes, which the
// POSIX backend must turn into slashes itself.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace ads::platform::test_support {

#ifdef _WIN32
constexpr const char* kExecutableSuffix = ".exe";
#else
constexpr const char* kExecutableSuffix = "";
#endif

inline std::string Join(const std::string& folder, const std::string& name) {
    return folder + "\\" + name;
}

// Whole files in the system's own spelling, byte for byte.
inline std::string ReadNative(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
inline bool WriteNative(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream out(path, std::ios::binary);
    out << contents;
    return out.good();
}
// The entries of a folder by name, sorted.
inline std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class TempFolder {
public:
    TempFolder() {
        static std::atomic<unsigned> counter{0};
        const auto base = std::filesystem::temp_directory_path();
        for (;;) {
            path_ = base / ("ads_platform_" + std::to_string(Random()) + "_" +
                            std::to_string(counter.fetch_add(1)));
            if (std::filesystem::create_directory(path_)) break;
        }
    }
    ~TempFolder() {
        std::error_code ignored;
        // Read-only entries must become writable again before they can go.
        for (auto it = std::filesystem::recursive_directory_iterator(path_, ignored);
             it != std::filesystem::recursive_directory_iterator(); it.increment(ignored)) {
            std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                         std::filesystem::perm_options::add, ignored);
        }
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // The folder in the system's own spelling.
    const std::filesystem::path& native() const { return path_; }
    std::string path() const { return path_.string(); }
    // A name inside the folder, joined with a backslash.
    std::string operator/(const std::string& name) const { return Join(path(), name); }

private:
    static unsigned Random() {
        return static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count());
    }
    std::filesystem::path path_;
};

}  // namespace ads::platform::test_support
