#include "paths.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace fakeads {
namespace fs = std::filesystem;

namespace {

size_t LastSeparator(const std::string& path) { return path.find_last_of("\\/"); }

fs::path OsPath(const std::string& path) { return fs::u8path(SystemPath(path)); }

}  // namespace

std::string SystemPath(const std::string& path) {
#ifdef _WIN32
    return path;
#else
    std::string out = path;
    std::replace(out.begin(), out.end(), '\\', '/');
    return out;
#endif
}

std::string DirectoryPart(const std::string& path) {
    const size_t slash = LastSeparator(path);
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

bool FileExists(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::is_regular_file(OsPath(path), error);
}

bool DirectoryExists(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::is_directory(OsPath(path), error);
}

std::vector<std::string> DirectoryTree(const std::string& directory) {
    std::vector<std::string> out;
    if (!DirectoryExists(directory)) return out;
    out.push_back(directory);
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(OsPath(directory), error), end; !error && it != end;
         it.increment(error)) {
        // Linked folders are left out: a link back up would never end.
        std::error_code kind_error;
        if (it->is_directory(kind_error) && !it->is_symlink(kind_error)) {
            names.push_back(it->path().filename().u8string());
        }
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        for (std::string& below : DirectoryTree(JoinPath(directory, name))) out.push_back(std::move(below));
    }
    return out;
}

bool ReadFile(const std::string& path, std::string* contents) {
    if (!FileExists(path)) return false;
    std::ifstream in(OsPath(path), std::ios::binary);
    if (!in) return false;
    std::ostringstream text;
    text << in.rdbuf();
    *contents = text.str();
    return !in.bad();
}

bool WriteFile(const std::string& path, const std::string& contents) {
    std::ofstream out(OsPath(path), std::ios::binary | std::ios::trunc);
    if (!out) return false;
    out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    out.close();
    return static_cast<bool>(out);
}

void RemoveFile(const std::string& path) {
    std::error_code ignored;
    fs::remove(OsPath(path), ignored);
}

uint64_t Fingerprint(const std::string& data) {
    uint64_t hash = 14695981039346656037ull;
    for (unsigned char c : data) {
        hash ^= c;
        hash *= 1099511628211ull;
    }
    return hash;
}

std::string Hex64(uint64_t value) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(value));
    return text;
}

std::string Hex32(uint32_t value) {
    char text[11];
    std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(value));
    return text;
}

}  // namespace fakeads
