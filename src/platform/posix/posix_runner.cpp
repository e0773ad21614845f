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

bool IsWindowsProgram(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    char magic[2] = {};
    ssize_t count;
    do {
        count = ::read(fd, magic, sizeof magic);
    } while (count < 0 && errno == EINTR);
    ::close(fd);
    return count == 2 && magic[0] == 'M' && magic[1] == 'Z';
}

void CloseIfOpen(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

[[noreturn]] void GiveUp(int report, StartFailure::Step step) {
    const StartFailure failure{step, errno};
    ssize_t ignored = ::write(report, &failure, sizeof failure);
    (void)ignored;
    ::_exit(127);
}

// Only async-signal-safe calls from here to exec: the parent may have other
// threads, and one of them may have held a lock at the moment of fork.
[[noreturn]] void StartChild(const char* program, char* const* argv, const char* directory,
                             int input, int output, int report) {
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

}  // namespace

RunResult PosixProcessRunner::Run(const std::string& command_line,
                                  const std::string& working_directory, size_t limit) {
    RunResult result;
    std::vector<std::string> words = SplitCommandLine(command_line);
    if (words.empty() || words[0].empty()) {
        result.error = NoProgramIn(command_line);
        return result;
    }

    // Only the program's own path is ours to translate; the arguments are
    // the tool's business and pass as written.
    const std::string name = SystemPath(words[0]);
    std::string program;
    if (name.find('/') == std::string::npos) {
        // A bare name is looked for where CreateProcess looks: our own
        // program's folder, our current folder, then the search path.
        std::vector<std::string> folders = {ExecutableFolder(), CurrentFolder()};
        const std::vector<std::string> path = SearchPath();
        folders.insert(folders.end(), path.begin(), path.end());
        program = FindIn(folders, name);
        if (program.empty()) {
            result.error = CannotRun(words[0], ErrnoText(ENOENT));
            return result;
        }
    } else if (name[0] != '/') {
        const std::string current = CurrentFolder();
        if (current.empty()) {
            result.error = CannotRun(words[0], ErrnoText(errno));
            return result;
        }
        program = current + "/" + name;
    } else {
        program = name;
    }

    std::vector<std::string> arguments;
    if (IsWindowsProgram(program)) {
        const std::string wine = FindIn(SearchPath(), "wine");
        if (wine.empty()) {
            result.error = "cannot run the Windows program " + words[0] + ": wine is not installed";
            return result;
        }
        // wine starts in the working directory: give it the resolved path.
        arguments = {wine, program};
        program = wine;
    } else {
        arguments = {name};
    }
    arguments.insert(arguments.end(), words.begin() + 1, words.end());

    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(&argument[0]);
    argv.push_back(nullptr);

    const std::string directory = SystemPath(working_directory);

    int output[2] = {-1, -1};
    int report[2] = {-1, -1};
    int input = -1;
    auto close_all = [&] {
        CloseIfOpen(output[0]);
        CloseIfOpen(output[1]);
        CloseIfOpen(report[0]);
        CloseIfOpen(report[1]);
        CloseIfOpen(input);
    };
    if (::pipe2(output, O_CLOEXEC) != 0 || ::pipe2(report, O_CLOEXEC) != 0 ||
        (input = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) < 0) {
        result.error = CannotRun(words[0], ErrnoText(errno));
        close_all();
        return result;
    }

    const pid_t pid = ::fork();
    if (pid < 0) {
        result.error = CannotRun(words[0], ErrnoText(errno));
        close_all();
        return result;
    }
    if (pid == 0) {
        StartChild(program.c_str(), argv.data(), directory.empty() ? nullptr : directory.c_str(),
                   input, output[1], report[1]);
    }

    CloseIfOpen(output[1]);
    CloseIfOpen(report[1]);
    CloseIfOpen(input);

    auto wait_for_child = [pid]() {
        int status = 0;
        while (::waitpid(pid, &status, 0) < 0) {
            if (errno != EINTR) return -1;
        }
        if (WIFEXITED(status)) return WEXITSTATUS(status);
        if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
        return -1;
    };

    // The report pipe closes at a successful exec; anything in it means the
    // child ended before it became the program.
    StartFailure failure{};
    ssize_t count;
    do {
        count = ::read(report[0], &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    CloseIfOpen(report[0]);
    if (count == static_cast<ssize_t>(sizeof failure)) {
        CloseIfOpen(output[0]);
        wait_for_child();
        if (failure.step == StartFailure::kWorkingDirectory) {
            result.error = CannotRun(words[0] + " in the folder " + working_directory, ErrnoText(failure.error));
        } else {
            result.error = CannotRun(words[0], ErrnoText(failure.error));
        }
        return result;
    }

    result.started = true;
    char buffer[65536];
    for (;;) {
        count = ::read(output[0], buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        const size_t room = limit - result.output.size();
        const size_t size = static_cast<size_t>(count);
        if (size > room) result.truncated = true;
        result.output.append(buffer, size < room ? size : room);
    }
    CloseIfOpen(output[0]);
    result.exit_code = wait_for_child();
    return result;
}

}  // namespace ads::platform
