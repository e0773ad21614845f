// The POSIX backend of the platform services. Paths inside the plug-in keep
// the Windows text they were built with; each function here turns "\" into
// "/" at the moment the path reaches the system, and nowhere else. Error
// codes are the Windows codes that callers test for.
#include <algorithm>

#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/posix/posix_backend.h"
#include "platform/text.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace ads::platform {
namespace {

// Windows codes without a name in platform.h.
constexpr uint32_t kErrorPathNotFound = 3;
constexpr uint32_t kErrorInvalidHandle = 6;
constexpr uint32_t kErrorGenFailure = 31;
constexpr uint32_t kErrorDiskFull = 112;
constexpr uint32_t kErrorModNotFound = 126;
constexpr uint32_t kErrorProcNotFound = 127;
constexpr uint32_t kErrorBadExeFormat = 193;
constexpr uint32_t kErrorFilenameTooLong = 206;

const char kAccessDeniedText[] = "Access is denied.\r\n";

// strerror_r comes in two shapes (GNU returns the text, XSI fills the buffer).
[[maybe_unused]] std::string ErrorTextOf(int result, const char* buffer) {
    return result == 0 ? std::string(buffer) : std::string("Unknown error");
}
[[maybe_unused]] std::string ErrorTextOf(const char* text, const char*) { return text; }

uint32_t WindowsCode(int error, uint32_t not_found) {
    switch (error) {
        case 0: return 0;
        case EEXIST: return kErrorAlreadyExists;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ENOTEMPTY:
        case EBUSY: return kErrorAccessDenied;
        case ENOENT: return not_found;
        case ENOTDIR: return kErrorPathNotFound;
        case ENAMETOOLONG: return kErrorFilenameTooLong;
        case ENOSPC: return kErrorDiskFull;
        default: return kErrorGenFailure;
    }
}

bool StatPath(const std::string& path, struct stat* info) {
    return !path.empty() && ::stat(SystemPath(path).c_str(), info) == 0;
}

bool HasSuffixIgnoringCase(const std::string& text, const std::string& suffix) {
    if (text.size() < suffix.size()) return false;
    for (size_t i = 0; i < suffix.size(); ++i) {
        char c = text[text.size() - suffix.size() + i];
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c != suffix[i]) return false;
    }
    return true;
}

class PosixLibraries final : public Libraries {
public:
    LibraryHandle Load(const std::string& name) override {
        const std::string path = SystemPath(name);
        if (path.empty()) {
            last_error_ = kErrorModNotFound;
            return nullptr;
        }
        // LoadLibraryA looks in the program's own folder before anywhere
        // else, then where the system would (for dlopen: the current folder
        // for a path, the library path for a bare name).
        std::vector<std::string> candidates;
        if (path[0] != '/') {
            const std::string folder = ExecutableFolder();
            if (!folder.empty()) AddSpellings(folder + "/" + path, &candidates);
        }
        AddSpellings(path, &candidates);
        for (const std::string& candidate : candidates) {
            if (void* handle = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL)) {
                last_error_ = 0;
                return handle;
            }
        }
        // A file that is there but will not load is not a missing module.
        bool exists = false;
        for (const std::string& candidate : candidates) {
            exists = exists || (candidate.find('/') != std::string::npos &&
                                ::access(candidate.c_str(), F_OK) == 0);
        }
        last_error_ = exists ? kErrorBadExeFormat : kErrorModNotFound;
        return nullptr;
    }

    void* Symbol(LibraryHandle library, const char* name) override {
        if (library == nullptr || name == nullptr) {
            last_error_ = kErrorInvalidHandle;
            return nullptr;
        }
        void* symbol = ::dlsym(library, name);
        if (symbol == nullptr) last_error_ = kErrorProcNotFound;
        return symbol;
    }

    bool Free(LibraryHandle library) override {
        if (library == nullptr || ::dlclose(library) != 0) {
            last_error_ = kErrorInvalidHandle;
            return false;
        }
        return true;
    }

    uint32_t LastError() override { return last_error_; }

private:
    // The name as given, and "x.so" for "x.dll".
    static void AddSpellings(const std::string& path, std::vector<std::string>* candidates) {
        candidates->push_back(path);
        if (HasSuffixIgnoringCase(path, ".dll")) {
            candidates->push_back(path.substr(0, path.size() - 4) + ".so");
        }
    }

    // Per thread, like GetLastError.
    static thread_local uint32_t last_error_;
};

thread_local uint32_t PosixLibraries::last_error_ = 0;

class PosixProcess final : public Process {
public:
    [[noreturn]] void Exit(uint32_t code) override {
        // No destructors and no atexit handlers, but what was printed is kept.
        std::fflush(nullptr);
        ::_exit(static_cast<int>(code));
    }
};

// "." and ".." resolved by text, without asking whether the parts exist.
std::string NormalisedAbsolutePath(const std::string& path, const std::string& current) {
    std::string whole = path;
    if (whole.empty() || whole[0] != '/') whole = current + "/" + whole;

    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= whole.size()) {
        size_t end = whole.find('/', start);
        if (end == std::string::npos) end = whole.size();
        const std::string part = whole.substr(start, end - start);
        if (part == "..") {
            if (!parts.empty()) parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        start = end + 1;
    }

    std::string result;
    for (const std::string& part : parts) result += "/" + part;
    if (result.empty()) return "/";
    // Like GetFullPathNameA, a trailing separator stays.
    if (path.back() == '/') result += '/';
    return result;
}

class PosixFileSystem final : public FileSystem {
public:
    bool FileExists(const std::string& path) override {
        if (path.empty()) return false;
        const int fd = ::open(SystemPath(path).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        if (fd < 0) return false;
        struct stat info;
        const bool regular = ::fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
        ::close(fd);
        return regular;
    }

    bool PathExists(const std::string& path) override {
        struct stat info;
        return StatPath(path, &info);
    }

    bool IsDirectory(const std::string& path) override {
        struct stat info;
        return StatPath(path, &info) && S_ISDIR(info.st_mode);
    }

    uint32_t MakeDir(const std::string& path) override {
        if (path.empty()) return kErrorPathNotFound;
        if (::mkdir(SystemPath(path).c_str(), 0777) == 0) return 0;
        // mkdir reports a missing parent folder: a path, not a file.
        return WindowsCode(errno, kErrorPathNotFound);
    }

    uint32_t RemoveFile(const std::string& path, std::string* message) override {
        const std::string system_path = SystemPath(path);
        struct stat info;
        // Windows will not delete a read-only file; unlink would.
        if (::lstat(system_path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
            (info.st_mode & S_IWUSR) == 0) {
            if (message) *message = kAccessDeniedText;
            return kErrorAccessDenied;
        }
        if (::unlink(system_path.c_str()) == 0) {
            if (message) message->clear();
            return 0;
        }
        const int error = errno;
        if (message) *message = ErrnoText(error) + "\r\n";
        return WindowsCode(error, kErrorFileNotFound);
    }

    bool ChangeDir(const std::string& path) override {
        return !path.empty() && ::chdir(SystemPath(path).c_str()) == 0;
    }

    std::string CurrentDirectory() override {
        std::string buffer(256, '\0');
        for (;;) {
            if (::getcwd(&buffer[0], buffer.size()) != nullptr) {
                buffer.resize(std::strlen(buffer.c_str()));
                return buffer;
            }
            if (errno != ERANGE) return std::string();
            buffer.resize(buffer.size() * 2);
        }
    }

    std::string FullPath(const std::string& path) override {
        if (path.empty()) return std::string();  // GetFullPathNameA fails too
        return NormalisedAbsolutePath(SystemPath(path), CurrentDirectory());
    }

    bool ListDirectory(const std::string& path, std::vector<DirectoryEntry>* entries) override {
        entries->clear();
        if (path.empty()) return false;
        const std::string directory = SystemPath(path);
        DIR* stream = ::opendir(directory.c_str());
        if (stream == nullptr) return false;
        while (const dirent* entry = ::readdir(stream)) {
            const std::string name = entry->d_name;
            if (name == "." || name == "..") continue;
            DirectoryEntry item;
            item.name = name;
            item.is_hidden = name[0] == '.';
            if (entry->d_type == DT_DIR) {
                item.is_directory = true;
            } else if (entry->d_type == DT_UNKNOWN || entry->d_type == DT_LNK) {
                // A link to a folder lists as a folder, as a junction does.
                const std::string full = directory + "/" + name;
                struct stat info;
                item.is_directory = ::stat(full.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
                item.is_link = entry->d_type == DT_LNK || (::lstat(full.c_str(), &info) == 0 && S_ISLNK(info.st_mode));
            }
            entries->push_back(std::move(item));
        }
        ::closedir(stream);
        // In name order, case ignored, as Windows lists an NTFS folder, so
        // that a listing is the same on every machine.
        std::sort(entries->begin(), entries->end(), [](const DirectoryEntry& a, const DirectoryEntry& b) {
            return LessIgnoringCase(a.name, b.name);
        });
        return true;
    }

    std::string FileIdentity(const std::string& path) override {
        struct stat info;
        if (!StatPath(path, &info)) return std::string();
        return std::to_string(static_cast<unsigned long long>(info.st_dev)) + ":" +
               std::to_string(static_cast<unsigned long long>(info.st_ino));
    }

    std::string WindowsDirectory() override {
        const char* value = std::getenv("ORVANE_SYSTEM_DIR");
        return value ? std::string(value) : std::string();
    }

    bool ModificationTime(const std::string& path, int64_t* time) override {
        struct stat info;
        if (!StatPath(path, &info)) return false;
        *time = static_cast<int64_t>(info.st_mtim.tv_sec) * 1000000000 + info.st_mtim.tv_nsec;
        return true;
    }

    bool ReadFile(const std::string& path, std::string* contents) override {
        if (path.empty()) return false;
        const int fd = ::open(SystemPath(path).c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0) return false;
        std::string data;
        char buffer[65536];
        bool ok = true;
        for (;;) {
            const ssize_t count = ::read(fd, buffer, sizeof buffer);
            if (count > 0) {
                data.append(buffer, static_cast<size_t>(count));
            } else if (count == 0) {
                break;
            } else if (errno != EINTR) {
                ok = false;  // a folder ends here too (EISDIR)
                break;
            }
        }
        ::close(fd);
        if (ok) *contents = std::move(data);
        return ok;
    }

    bool WriteFileAtomically(const std::string& path, const std::string& contents,
                             std::string* error) override {
        const std::string target = SystemPath(path);
        auto fail = [&](const std::string& reason) {
            if (error) *error = CannotWrite(path, reason);
            return false;
        };
        if (target.empty()) return fail(kEmptyFileName);

        // Windows will not replace a read-only file; rename would.
        struct stat info;
        const bool replacing = ::stat(target.c_str(), &info) == 0 && S_ISREG(info.st_mode);
        if (replacing && (info.st_mode & S_IWUSR) == 0) return fail("Access is denied.");

        static std::atomic<unsigned> counter{0};
        std::string temporary;
        int fd = -1;
        for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
            temporary = target + ".tmp" + std::to_string(::getpid()) + "-" +
                        std::to_string(counter.fetch_add(1));
            fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (fd < 0 && errno != EEXIST) break;
        }
        if (fd < 0) return fail(NoTemporaryFile(ErrnoText(errno)));

        // Any failure from here on leaves the old file as it was.
        auto abandon = [&](int reason) {
            if (fd >= 0) ::close(fd);
            ::unlink(temporary.c_str());
            return fail(ErrnoText(reason));
        };
        // The new file keeps the old one's permissions.
        if (replacing && ::fchmod(fd, info.st_mode & 07777) != 0) return abandon(errno);
        size_t written = 0;
        while (written < contents.size()) {
            const ssize_t count = ::write(fd, contents.data() + written, contents.size() - written);
            if (count < 0) {
                if (errno == EINTR) continue;
                return abandon(errno);
            }
            written += static_cast<size_t>(count);
        }
        if (::fsync(fd) != 0) return abandon(errno);
        const int closed = ::close(fd);
        fd = -1;
        if (closed != 0) return abandon(errno);
        if (::rename(temporary.c_str(), target.c_str()) != 0) return abandon(errno);

        // Make the rename itself durable; the new file is in place either way.
        const size_t slash = target.rfind('/');
        const std::string folder = slash == std::string::npos ? std::string(".")
                                   : slash == 0               ? std::string("/")
                                                              : target.substr(0, slash);
        const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (directory >= 0) {
            ::fsync(directory);
            ::close(directory);
        }
        return true;
    }

    std::string ExecutableDirectory() override { return ExecutableFolder(); }
};

class StandardErrorUserInterface final : public UserInterface {
public:
    void ShowMessage(const std::string& text, const std::string& caption) override {
        const std::string line = caption + ": " + text + "\n";
        std::fwrite(line.data(), 1, line.size(), stderr);
        std::fflush(stderr);
    }
};

class PosixEnvironment final : public Environment {
public:
    bool Get(const std::string& name, std::string* value) override {
        const char* text = std::getenv(name.c_str());
        if (text == nullptr) return false;
        *value = text;
        return true;
    }

    void Set(const std::string& name, const std::string& value) override {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
};

}  // namespace

std::string SystemPath(const std::string& path) {
    std::string result = path;
    for (char& c : result) {
        if (c == '\\') c = '/';
    }
    return result;
}

std::string ExecutableFolder() {
    std::string buffer(4096, '\0');
    const ssize_t size = ::readlink("/proc/self/exe", &buffer[0], buffer.size());
    if (size <= 0 || static_cast<size_t>(size) >= buffer.size()) return std::string();
    buffer.resize(static_cast<size_t>(size));
    const size_t slash = buffer.rfind('/');
    if (slash == std::string::npos) return std::string();
    return slash == 0 ? std::string("/") : buffer.substr(0, slash);
}

std::string ErrnoText(int error) {
    char buffer[256] = {};
    return ErrorTextOf(strerror_r(error, buffer, sizeof buffer), buffer);
}

Platform& System() {
    // Function statics: the plug-in's application object asks for these
    // while the module's own static objects are being built.
    static PosixLibraries libraries;
    static PosixFileSystem files;
    static StandardErrorUserInterface ui;
    static PosixProcess process;
    static PosixEnvironment environment;
    static PosixProcessRunner runner;
    static Platform platform{&libraries, &files, &ui, &process, &environment, &runner, &SystemRegistry()};
    return platform;
}

void DebugOutput(const std::string& text) {
    const std::string line = text.empty() || text.back() != '\n' ? text + "\n" : text;
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

}  // namespace ads::platform
