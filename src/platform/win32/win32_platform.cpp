// The Win32 backend of the platform services: the ANSI functions, called with
// the paths exactly as the plug-in built them.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/registry.h"
#include "platform/win32/win32_backend.h"

#include <atomic>
#include <cstdio>

namespace ads::platform {
namespace {

class Win32Libraries final : public Libraries {
public:
    LibraryHandle Load(const std::string& name) override {
        HMODULE module = ::LoadLibraryA(name.c_str());
        last_error_ = module ? 0 : ::GetLastError();
        return reinterpret_cast<LibraryHandle>(module);
    }

    void* Symbol(LibraryHandle library, const char* name) override {
        FARPROC symbol = ::GetProcAddress(static_cast<HMODULE>(library), name);
        if (symbol == nullptr) last_error_ = ::GetLastError();
        return reinterpret_cast<void*>(symbol);
    }

    bool Free(LibraryHandle library) override {
        if (library == nullptr) {
            last_error_ = ERROR_INVALID_HANDLE;
            return false;
        }
        if (!::FreeLibrary(static_cast<HMODULE>(library))) {
            last_error_ = ::GetLastError();
            return false;
        }
        return true;
    }

    // Kept at the failure, per thread, so that later calls cannot overwrite it.
    uint32_t LastError() override { return last_error_; }

private:
    static thread_local uint32_t last_error_;
};

thread_local uint32_t Win32Libraries::last_error_ = 0;

class Win32Process final : public Process {
public:
    [[noreturn]] void Exit(uint32_t code) override {
        // No destructors and no atexit handlers, but what was printed is kept.
        std::fflush(nullptr);
        ::ExitProcess(code);
    }
};

class Win32FileSystem final : public FileSystem {
public:
    bool FileExists(const std::string& path) override {
        if (path.empty()) return false;
        HANDLE file = ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        ::CloseHandle(file);
        return true;
    }

    bool PathExists(const std::string& path) override {
        return !path.empty() && ::GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    bool IsDirectory(const std::string& path) override {
        if (path.empty()) return false;
        const DWORD attributes = ::GetFileAttributesA(path.c_str());
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
    }

    uint32_t MakeDir(const std::string& path) override {
        return ::CreateDirectoryA(path.c_str(), nullptr) ? 0 : ::GetLastError();
    }

    uint32_t RemoveFile(const std::string& path, std::string* message) override {
        if (::DeleteFileA(path.c_str())) {
            if (message) message->clear();
            return 0;
        }
        const DWORD code = ::GetLastError();
        if (message) *message = SystemMessage(code);
        return code;
    }

    bool ChangeDir(const std::string& path) override {
        return ::SetCurrentDirectoryA(path.c_str()) != 0;
    }

    std::string CurrentDirectory() override {
        std::string buffer(MAX_PATH, '\0');
        for (;;) {
            const DWORD size = ::GetCurrentDirectoryA(static_cast<DWORD>(buffer.size()), &buffer[0]);
            if (size == 0) return std::string();
            if (size < buffer.size()) {
                buffer.resize(size);
                return buffer;
            }
            buffer.resize(size);  // the size asked for counts the terminator
        }
    }

    std::string FullPath(const std::string& path) override {
        if (path.empty()) return std::string();
        std::string buffer(MAX_PATH, '\0');
        for (;;) {
            const DWORD size =
                ::GetFullPathNameA(path.c_str(), static_cast<DWORD>(buffer.size()), &buffer[0], nullptr);
            if (size == 0) return std::string();
            if (size < buffer.size()) {
                buffer.resize(size);
                return buffer;
            }
            buffer.resize(size);
        }
    }

    bool ListDirectory(const std::string& path, std::vector<DirectoryEntry>* entries) override {
        entries->clear();
        if (path.empty()) return false;  // "*" alone would list the current folder
        std::string pattern = path;
        if (!pattern.empty() && pattern.back() != '\\' && pattern.back() != '/') pattern += '\\';
        pattern += '*';
        WIN32_FIND_DATAA data;
        HANDLE find = ::FindFirstFileA(pattern.c_str(), &data);
        if (find == INVALID_HANDLE_VALUE) {
            // The root of a drive has no "." entry and can be empty.
            return ::GetLastError() == ERROR_FILE_NOT_FOUND;
        }
        do {
            const std::string name = data.cFileName;
            if (name == "." || name == "..") continue;
            DirectoryEntry entry;
            entry.name = name;
            entry.is_directory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            entry.is_hidden = (data.dwFileAttributes & FILE_ATTRIBUTE_HIDDEN) != 0 || name[0] == '.';
            entry.is_link = (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
            entries->push_back(std::move(entry));
        } while (::FindNextFileA(find, &data));
        ::FindClose(find);
        return true;
    }

    std::string FileIdentity(const std::string& path) override {
        if (path.empty()) return std::string();
        // Backup semantics open a folder too; a link or junction is followed.
        HANDLE handle = ::CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (handle == INVALID_HANDLE_VALUE) return std::string();
        BY_HANDLE_FILE_INFORMATION info;
        const BOOL ok = ::GetFileInformationByHandle(handle, &info);
        ::CloseHandle(handle);
        if (!ok) return std::string();
        return std::to_string(info.dwVolumeSerialNumber) + ":" + std::to_string(info.nFileIndexHigh) + ":" +
               std::to_string(info.nFileIndexLow);
    }

    std::string WindowsDirectory() override {
        char buffer[MAX_PATH + 1];
        const UINT size = ::GetWindowsDirectoryA(buffer, sizeof buffer);
        if (size == 0 || size >= sizeof buffer) return std::string();
        return std::string(buffer, size);
    }

    bool ModificationTime(const std::string& path, int64_t* time) override {
        WIN32_FILE_ATTRIBUTE_DATA data;
        if (path.empty() || !::GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) {
            return false;
        }
        // FILETIME counts 100 ns from 1601; counted from 1970 the nanoseconds
        // fit in 64 bits.
        constexpr int64_t k1601To1970 = 116444736000000000LL;
        const int64_t ticks = static_cast<int64_t>(
            (static_cast<uint64_t>(data.ftLastWriteTime.dwHighDateTime) << 32) |
            data.ftLastWriteTime.dwLowDateTime);
        *time = (ticks - k1601To1970) * 100;
        return true;
    }

    bool ReadFile(const std::string& path, std::string* contents) override {
        if (path.empty()) return false;
        HANDLE file = ::CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        std::string data;
        char buffer[65536];
        bool ok = true;
        for (;;) {
            DWORD count = 0;
            if (!::ReadFile(file, buffer, sizeof buffer, &count, nullptr)) {
                ok = false;
                break;
            }
            if (count == 0) break;
            data.append(buffer, count);
        }
        ::CloseHandle(file);
        if (ok) *contents = std::move(data);
        return ok;
    }

    bool WriteFileAtomically(const std::string& path, const std::string& contents,
                             std::string* error) override {
        auto fail = [&](const std::string& reason) {
            if (error) *error = CannotWrite(path, reason);
            return false;
        };
        if (path.empty()) return fail(kEmptyFileName);
        // MoveFileExA refuses a read-only target on Windows but not under
        // every emulation of it; ask first so that both behave alike.
        const DWORD attributes = ::GetFileAttributesA(path.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) &&
            !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
            return fail(SystemMessageLine(ERROR_ACCESS_DENIED));
        }

        static std::atomic<unsigned> counter{0};
        std::string temporary;
        HANDLE file = INVALID_HANDLE_VALUE;
        for (int attempt = 0; attempt < 100 && file == INVALID_HANDLE_VALUE; ++attempt) {
            temporary = path + ".tmp" + std::to_string(::GetCurrentProcessId()) + "-" +
                        std::to_string(counter.fetch_add(1));
            file = ::CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
            if (file == INVALID_HANDLE_VALUE && ::GetLastError() != ERROR_FILE_EXISTS) break;
        }
        if (file == INVALID_HANDLE_VALUE) {
            return fail(NoTemporaryFile(SystemMessageLine(::GetLastError())));
        }

        // Any failure from here on leaves the old file as it was.
        auto abandon = [&](DWORD reason) {
            if (file != INVALID_HANDLE_VALUE) ::CloseHandle(file);
            ::DeleteFileA(temporary.c_str());
            return fail(SystemMessageLine(reason));
        };
        size_t written = 0;
        while (written < contents.size()) {
            const size_t left = contents.size() - written;
            const DWORD chunk = left > 0x40000000 ? 0x40000000 : static_cast<DWORD>(left);
            DWORD count = 0;
            if (!::WriteFile(file, contents.data() + written, chunk, &count, nullptr)) {
                return abandon(::GetLastError());
            }
            written += count;
        }
        if (!::FlushFileBuffers(file)) return abandon(::GetLastError());
        const BOOL closed = ::CloseHandle(file);
        file = INVALID_HANDLE_VALUE;
        if (!closed) return abandon(::GetLastError());
        if (!::MoveFileExA(temporary.c_str(), path.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            return abandon(::GetLastError());
        }
        return true;
    }

    std::string ExecutableDirectory() override {
        std::string buffer(MAX_PATH, '\0');
        for (;;) {
            const DWORD size = ::GetModuleFileNameA(nullptr, &buffer[0], static_cast<DWORD>(buffer.size()));
            if (size == 0) return std::string();
            if (size < buffer.size()) {
                buffer.resize(size);
                break;
            }
            buffer.resize(buffer.size() * 2);  // cut short: try a larger buffer
        }
        const size_t separator = buffer.find_last_of("\\/");
        return separator == std::string::npos ? std::string() : buffer.substr(0, separator);
    }
};

bool Headless() { return ::GetEnvironmentVariableA("ORVANE_HEADLESS", nullptr, 0) != 0; }

class Win32UserInterface final : public UserInterface {
public:
    void ShowMessage(const std::string& text, const std::string& caption) override {
        if (Headless()) {
            const std::string line = caption + ": " + text + "\n";
            std::fwrite(line.data(), 1, line.size(), stderr);
            std::fflush(stderr);
            return;
        }
        ::MessageBoxA(nullptr, text.c_str(), caption.c_str(), MB_OK);
    }
};

class Win32Environment final : public Environment {
public:
    bool Get(const std::string& name, std::string* value) override {
        std::string buffer(256, '\0');
        for (;;) {
            ::SetLastError(0);
            const DWORD size = ::GetEnvironmentVariableA(name.c_str(), &buffer[0],
                                                         static_cast<DWORD>(buffer.size()));
            if (size == 0) {
                // Zero is also the length of a variable set to nothing.
                if (::GetLastError() == ERROR_ENVVAR_NOT_FOUND) return false;
                value->clear();
                return true;
            }
            if (size < buffer.size()) {
                buffer.resize(size);
                *value = std::move(buffer);
                return true;
            }
            buffer.resize(size);  // the size asked for counts the terminator
        }
    }

    void Set(const std::string& name, const std::string& value) override {
        ::SetEnvironmentVariableA(name.c_str(), value.c_str());
    }
};

}  // namespace

std::string SystemMessage(uint32_t code) {
    char* text = nullptr;
    const DWORD size = ::FormatMessageA(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, 0, reinterpret_cast<char*>(&text), 0, nullptr);
    std::string message = size ? std::string(text, size) : "Error " + std::to_string(code) + ".\r\n";
    if (text) ::LocalFree(text);
    return message;
}

std::string SystemMessageLine(uint32_t code) {
    std::string message = SystemMessage(code);
    while (!message.empty() && (message.back() == '\n' || message.back() == '\r')) message.pop_back();
    return message;
}

Platform& System() {
    // Function statics: the plug-in's application object asks for these
    // while the module's own static objects are being built.
    static Win32Libraries libraries;
    static Win32FileSystem files;
    static Win32UserInterface ui;
    static Win32Process process;
    static Win32Environment environment;
    static Win32ProcessRunner runner;
    static Platform platform{&libraries, &files, &ui, &process, &environment, &runner, &SystemRegistry()};
    return platform;
}

void DebugOutput(const std::string& text) {
    const std::string line = text.empty() || text.back() != '\n' ? text + "\r\n" : text;
    OutputDebugStringA(line.c_str());
}

}  // namespace ads::platform
