// ads_test_child: the program the runner tests start. Its arguments are a
// little script, done in order:
//   --args          print every later argument as "arg=[...]", one a line
//   --out TEXT      print TEXT and a line end on standard output
//   --err TEXT      print TEXT and a line end on standard error
//   --bytes N       print N bytes ("0123456789" over and over)
//   --cwd           print the working directory as "cwd=..."
//   --sleep MS      wait MS milliseconds
//   --wait-for FILE MS  wait until FILE exists, at most MS milliseconds; print
//                   "released" or "timed out"
//   --signal        end by SIGTERM (POSIX only)
//   --exit N        end with exit code N
// Every write is flushed at once, so the order in the shared pipe is the order
// of the script.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <thread>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

void Write(std::FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

}  // namespace

int main(int argc, char** argv) {
#ifdef _WIN32
    // Bytes as written: no "\r" added before "\n".
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    for (int i = 1; i < argc; ++i) {
        const std::string verb = argv[i];
        const bool has_value = i + 1 < argc;
        if (verb == "--args") {
            for (++i; i < argc; ++i) Write(stdout, std::string("arg=[") + argv[i] + "]\n");
        } else if (verb == "--out" && has_value) {
            Write(stdout, std::string(argv[++i]) + "\n");
        } else if (verb == "--err" && has_value) {
            Write(stderr, std::string(argv[++i]) + "\n");
        } else if (verb == "--bytes" && has_value) {
            const long count = std::atol(argv[++i]);
            std::string block;
            for (long n = 0; n < count; ++n) block += static_cast<char>('0' + n % 10);
            Write(stdout, block);
        } else if (verb == "--cwd") {
            Write(stdout, "cwd=" + std::filesystem::current_path().string() + "\n");
        } else if (verb == "--sleep" && has_value) {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(argv[++i])));
        } else if (verb == "--wait-for" && i + 2 < argc) {
            const std::filesystem::path file = argv[++i];
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::atol(argv[++i]));
            while (!std::filesystem::exists(file) && std::chrono::steady_clock::now() < end) {
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            }
            Write(stdout, std::filesystem::exists(file) ? "released\n" : "timed out\n");
        } else if (verb == "--signal") {
            std::raise(SIGTERM);
        } else if (verb == "--exit" && has_value) {
            return std::atoi(argv[++i]);
        } else {
            Write(stderr, "ads_test_child: unknown step " + verb + "\n");
            return 100;
        }
    }
    return 0;
}
