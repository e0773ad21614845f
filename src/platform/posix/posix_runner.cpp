// Runs a Windows command line on POSIX: the line is split by the C runtime's
// rules, the program is looked up the way CreateProcess would see it (a
// relative path counts from our own current directory, not the child's), and a
// Windows program (its file starts with "MZ") runs under wine. Several threads
// may run programs at once: nothing here changes process-wide state, and every
// descriptor we open is close-on-exec, so a child started by one thread never
// holds the pipe of another.
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/posix/posix_backend.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace ads::platform {
namespace {

// What a child that could not start writes back before it ends.
struct StartFailure {
    enum Step : int { kWorkingDirectory = 1, kExec = 2 } step;
    int error;
};

bool IsExecutableFile(const std::string& path) {
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

// The folders of $PATH, in order.
std::vector<std::string> SearchPath() {
    const char* variable = std::getenv("PATH");
    const std::string path = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
    std::vector<std::string> folders;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find(':', start);
        if (end == std::string::npos) end = path.size();
        folders.push_back(end == start ? "." : path.substr(start, end - start));
        start = end + 1;
    }
    return folders;
}

std::string FindIn(const std::vector<std::string>& folders, const std::string& name) {
    for (const std::string& folder : folders) {
        if (folder.empty()) continue;
        const std::string candidate = folder + "/" + name;
        if (IsExecutableFile(candidate)) return candidate;
    }
    return std::string();
}

std::string CurrentFolder() {
    char* current = ::getcwd(nullptr, 0);
    if (current == nullptr) return std::string();
    std::string folder = current;
    std::free(current);
    return folder;
}

// A read that a signal does not cut short.
ssize_t ReadOnce(int fd, void* buffer, size_t size) {
    ssize_t count;
    do {
        count = ::read(fd, buffer, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

bool IsWindowsProgram(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    char magic[2] = {};
    const ssize_t count = ReadOnce(fd, magic, sizeof magic);
    ::close(fd);
    return count == 2 && magic[0] == 'M' && magic[1] == 'Z';
}

std::string CannotRun(const std::string& program, int error) { return platform::CannotRun(program, ErrnoText(error)); }

[[noreturn]] void GiveUp(int report, StartFailure::Step step) {
    const StartFailure failure{step, errno};
    ssize_t ignored = ::write(report, &failure, sizeof failure);
    (void)ignored;
    ::_exit(127);
}

// The child of vfork: it shares our memory until it execs, and the parent
// may have other threads, one of which may hold a lock. Only
// async-signal-safe calls from here to exec, and nothing written that the
// parent reads, but the report pipe.
[[noreturn]] void StartChild(const char* program, char* const* argv, const char* directory,
                             int input, int output, int report) {
    interrupt::RestoreDefaultSignals();
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);

    if (::dup2(input, 0) < 0 || ::dup2(output, 1) < 0 || ::dup2(output, 2) < 0) {
        GiveUp(report, StartFailure::kExec);
    }
    if (directory != nullptr && ::chdir(directory) != 0) {
        GiveUp(report, StartFailure::kWorkingDirectory);
    }
    ::execv(program, argv);
    GiveUp(report, StartFailure::kExec);
}

// A descriptor that is closed when it goes out of scope, so that no early
// return leaks one.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    Descriptor(Descriptor&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~Descriptor() { Close(); }

    bool OpenForReading(const char* path) {
        *this = Descriptor(::open(path, O_RDONLY | O_CLOEXEC));
        return valid();
    }
    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    void Close() {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
    }

private:
    int fd_ = -1;
};

struct Pipe {
    Descriptor read;
    Descriptor write;

    bool Open() {
        int ends[2] = {-1, -1};
        if (::pipe2(ends, O_CLOEXEC) != 0) return false;
        read = Descriptor(ends[0]);
        write = Descriptor(ends[1]);
        return true;
    }
};

// What execv runs and the argv it gets.
struct Invocation {
    std::string program;
    std::vector<std::string> arguments;
};

// Where the program is, found the way CreateProcess would find it; empty,
// with `error` set, when it is not there.
std::string LocateProgram(const std::string& word, const std::string& name, std::string* error) {
    if (name.find('/') == std::string::npos) {
        // A bare name is looked for where CreateProcess looks: our own
        // program's folder, our current folder, then the search path.
        std::vector<std::string> folders = {ExecutableFolder(), CurrentFolder()};
        const std::vector<std::string> path = SearchPath();
        folders.insert(folders.end(), path.begin(), path.end());
        std::string program = FindIn(folders, name);
        if (program.empty()) *error = CannotRun(word, ENOENT);
        return program;
    }
    if (name[0] == '/') return name;
    const std::string current = CurrentFolder();
    if (current.empty()) {
        *error = CannotRun(word, errno);
        return std::string();
    }
    return current + "/" + name;
}

bool PrepareInvocation(const std::vector<std::string>& words, Invocation* invocation, std::string* error) {
    // Only the program's own path is ours to translate; the arguments are
    // the tool's business and pass as written.
    const std::string name = SystemPath(words[0]);
    std::string program = LocateProgram(words[0], name, error);
    if (program.empty()) return false;
    if (IsWindowsProgram(program)) {
        const std::string wine = FindIn(SearchPath(), "wine");
        if (wine.empty()) {
            *error = "cannot run the Windows program " + words[0] + ": wine is not installed";
            return false;
        }
        // wine starts in the working directory: give it the resolved path.
        invocation->arguments = {wine, program};
        invocation->program = wine;
    } else {
        invocation->arguments = {name};
        invocation->program = program;
    }
    invocation->arguments.insert(invocation->arguments.end(), words.begin() + 1, words.end());
    return true;
}

// The parent's ends of a started child.
struct Child {
    pid_t pid = -1;
    Descriptor output;  // its standard output and error
    Descriptor report;  // a StartFailure, or end of file once the exec succeeded
    int slot = -1;      // in interrupt::RunningChildren(), -1 for none

    // Once it has been waited for, an interruption no longer looks for it.
    void Forget() {
        if (slot >= 0) interrupt::RunningChildren().Release(slot);
        slot = -1;
    }
};

// Starts the child with no input; answers 0, or the errno of what failed.
int Spawn(Invocation& invocation, const std::string& directory, Child* child) {
    std::vector<char*> argv;
    for (std::string& argument : invocation.arguments) argv.push_back(&argument[0]);
    argv.push_back(nullptr);

    Pipe output;
    Pipe report;
    Descriptor input;
    if (!output.Open() || !report.Open() || !input.OpenForReading("/dev/null")) return errno;
    // An interruption either finds the slot, and waits for the pid to be in
    // it, or has been noticed here: no command starts after it.
    interrupt::BlockedSignals blocked;
    child->slot = interrupt::RunningChildren().Claim(interrupt::kChildStarting);
    if (interrupt::Interrupted().load()) {
        child->Forget();
        return EINTR;
    }
    // vfork, not fork: a large host with many threads copies no page tables
    // for a child that only execs.
    const pid_t pid = ::vfork();
    if (pid < 0) {
        const int error = errno;
        child->Forget();
        return error;
    }
    if (pid == 0) {
        StartChild(invocation.program.c_str(), argv.data(), directory.empty() ? nullptr : directory.c_str(),
                   input.get(), output.write.get(), report.write.get());
    }
    if (child->slot >= 0) interrupt::RunningChildren().Set(child->slot, pid);
    // The write ends close here: the output pipe then ends when the child does.
    child->pid = pid;
    child->output = std::move(output.read);
    child->report = std::move(report.read);
    return 0;
}

// The report pipe closes at a successful exec; anything in it means the
// child ended before it became the program.
bool ChildFailedToStart(Child* child, StartFailure* failure) {
    const ssize_t count = ReadOnce(child->report.get(), failure, sizeof *failure);
    child->report.Close();
    return count == static_cast<ssize_t>(sizeof *failure);
}

// Reads to the end; what passes the limit is read and dropped, so the child
// never blocks on a full pipe.
void ReadOutput(int fd, size_t limit, RunResult* result) {
    char buffer[65536];
    for (;;) {
        const ssize_t count = ReadOnce(fd, buffer, sizeof buffer);
        if (count <= 0) break;
        const size_t room = limit - result->output.size();
        const size_t size = static_cast<size_t>(count);
        if (size > room) result->truncated = true;
        result->output.append(buffer, size < room ? size : room);
    }
}

// The exit code, 128 + the signal for a child that a signal ended, -1 when
// it cannot be known.
int WaitForExit(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) return -1;
    }
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

}  // namespace

RunResult PosixProcessRunner::Run(const std::string& command_line,
                                  const std::string& working_directory, size_t limit) {
    RunResult result;
    const std::vector<std::string> words = SplitCommandLine(command_line);
    if (words.empty() || words[0].empty()) {
        result.error = NoProgramIn(command_line);
        return result;
    }
    Invocation invocation;
    if (!PrepareInvocation(words, &invocation, &result.error)) return result;

    Child child;
    if (const int error = Spawn(invocation, SystemPath(working_directory), &child)) {
        result.error = CannotRun(words[0], error);
        return result;
    }
    StartFailure failure{};
    if (ChildFailedToStart(&child, &failure)) {
        child.output.Close();
        WaitForExit(child.pid);
        child.Forget();
        result.error = failure.step == StartFailure::kWorkingDirectory
                           ? CannotRun(words[0] + " in the folder " + working_directory, failure.error)
                           : CannotRun(words[0], failure.error);
        return result;
    }

    result.started = true;
    ReadOutput(child.output.get(), limit, &result);
    child.output.Close();
    result.exit_code = WaitForExit(child.pid);
    child.Forget();
    return result;
}

}  // namespace ads::platform
