// The operating-system services the plug-in and the host use, one small
// interface per service. The Win32 backend calls the real API; the POSIX
// backend maps "\" to "/" at the moment a path reaches the OS and nowhere
// else. Code outside src/platform/ never includes <windows.h> or POSIX
// headers: it reaches the OS through these interfaces, and a test can put a
// fake in place of any of them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ads::platform {

// Windows system error codes that callers test for.
constexpr uint32_t kErrorFileNotFound = 2;
constexpr uint32_t kErrorAccessDenied = 5;
constexpr uint32_t kErrorAlreadyExists = 183;

using LibraryHandle = void*;

class Registry;  // platform/registry.h

class Libraries {
public:
    virtual ~Libraries() = default;
    // LoadLibraryA. On POSIX a name ending in ".dll" is tried as given and
    // then with the platform's own suffix ("Build\OrvMake.dll" finds
    // "Build/OrvMake.so"). Null on failure.
    virtual LibraryHandle Load(const std::string& name) = 0;
    virtual void* Symbol(LibraryHandle library, const char* name) = 0;
    // FreeLibrary: false on failure, also for a null handle.
    virtual bool Free(LibraryHandle library) = 0;
    // The last error of this service (GetLastError on Windows).
    virtual uint32_t LastError() = 0;
};

class Process {
public:
    virtual ~Process() = default;
    // Ends the whole process at once, without running destructors.
    [[noreturn]] virtual void Exit(uint32_t code) = 0;
};

struct DirectoryEntry {
    std::string name;
    bool is_directory = false;  // also a link or junction to a folder
    bool is_hidden = false;
    bool is_link = false;       // a symbolic link, junction or other reparse point
};

class FileSystem {
public:
    virtual ~FileSystem() = default;
    // True when the file can be opened for reading (share mode read and
    // write, open-existing); false for an empty path.
    virtual bool FileExists(const std::string& path) = 0;
    // True when the path exists at all (file or directory).
    virtual bool PathExists(const std::string& path) = 0;
    virtual bool IsDirectory(const std::string& path) = 0;
    // 0 on success, else the system error code (kErrorAlreadyExists when
    // the directory is there already).
    virtual uint32_t MakeDir(const std::string& path) = 0;
    // 0 on success, else the system error code; *message receives the
    // system's own text for it, line end included.
    virtual uint32_t RemoveFile(const std::string& path, std::string* message) = 0;
    virtual bool ChangeDir(const std::string& path) = 0;
    virtual std::string CurrentDirectory() = 0;
    // GetFullPathNameA: the absolute form of the path, "." and ".." removed.
    virtual std::string FullPath(const std::string& path) = 0;
    // The entries of a directory in the order the system lists them ("."
    // and ".." left out). False when the directory cannot be listed.
    virtual bool ListDirectory(const std::string& path, std::vector<DirectoryEntry>* entries) = 0;
    // A text naming the file or folder itself rather than a path to it: two
    // paths that reach the same folder, through links and junctions or not,
    // give the same text (the volume and the file index). Empty when the
    // path cannot be opened.
    virtual std::string FileIdentity(const std::string& path) = 0;
    // The Windows directory; on POSIX $ORVANE_SYSTEM_DIR, else empty.
    virtual std::string WindowsDirectory() = 0;
    // Modification time in nanoseconds since an arbitrary epoch; false when
    // the file does not exist.
    virtual bool ModificationTime(const std::string& path, int64_t* time) = 0;
    virtual bool ReadFile(const std::string& path, std::string* contents) = 0;
    // Writes the file whole or not at all: a temporary file beside it, then a
    // rename over the old one. On failure *error names the reason.
    virtual bool WriteFileAtomically(const std::string& path, const std::string& contents,
                                     std::string* error) = 0;
    // The folder of the running executable, without a trailing separator.
    virtual std::string ExecutableDirectory() = 0;
};

class UserInterface {
public:
    virtual ~UserInterface() = default;
    // A message box with an OK button. When the environment variable
    // ORVANE_HEADLESS is set, and always on POSIX, the text goes to standard
    // error instead.
    virtual void ShowMessage(const std::string& text, const std::string& caption) = 0;
};

class Environment {
public:
    virtual ~Environment() = default;
    // False when the variable is not set.
    virtual bool Get(const std::string& name, std::string* value) = 0;
    virtual void Set(const std::string& name, const std::string& value) = 0;
};

struct RunResult {
    bool started = false;   // false when the program could not be started
    int exit_code = -1;
    std::string output;     // standard output and standard error, interleaved
    bool truncated = false; // more output came than the limit allowed
    std::string error;      // why it could not be started
};

class ProcessRunner {
public:
    virtual ~ProcessRunner() = default;
    // Runs a command line written by Windows rules (the first word is the
    // executable, quoting as the Microsoft C runtime parses it) in the given
    // working directory (empty: the current one) and captures up to `limit`
    // bytes of its output; the rest is read and dropped. On POSIX the
    // executable's backslashes become slashes and the arguments are passed as
    // parsed. Safe to call from several threads at once.
    virtual RunResult Run(const std::string& command_line, const std::string& working_directory,
                          size_t limit) = 0;
};

// Splits a command line by the rules of the Microsoft C runtime: blanks and
// tabs separate words, double quotes group, 2n backslashes before a quote
// give n backslashes and the quote's meaning, 2n+1 give n and a literal
// quote, other backslashes are literal. The first word (the program name)
// ends at the first blank outside quotes and takes no escapes.
std::vector<std::string> SplitCommandLine(const std::string& command_line);
// Quotes one argument so that SplitCommandLine gives it back unchanged.
std::string QuoteArgument(const std::string& argument);

// Makes the standard streams pass bytes unchanged: on Windows output would
// otherwise turn every "\n" into "\r\n" (the plug-in's messages carry
// their own "\r\n"), and input would lose the "\r" of a tool's "\r\n".
void UseBinaryStandardStreams();

// A line for a developer watching the process, not for its user:
// OutputDebugStringA on Windows (a debugger or DebugView shows it), standard
// error elsewhere. A line end is added when the text has none.
void DebugOutput(const std::string& text);

// Whether standard output goes to a terminal (a console on Windows), for
// progress lines that only a person watching wants.
bool StandardOutputIsTerminal();

// The largest resident size the process has had so far, in bytes (0 when
// the system does not tell).
uint64_t PeakMemoryBytes();

// A path holding ":" or starting with "/" counts as absolute.
bool IsAbsolutePath(const std::string& path);

// The services of the machine the code runs on.
struct Platform {
    Libraries* libraries;
    FileSystem* files;
    UserInterface* ui;
    Process* process;
    Environment* environment;
    ProcessRunner* runner;
    // Null until someone fills it (SystemRegistry() for the real one, see
    // platform/registry.h).
    Registry* registry = nullptr;
};

// The real backends of this operating system.
Platform& System();

}  // namespace ads::platform
