// ads_test_child: the program the runner's and the make engine's tests
// start. Its arguments are a little script, done in order:
//   --args          print every later argument as "arg=[...]", one a line
//   --out TEXT      print TEXT and a line end on standard output
//   --err TEXT      print TEXT and a line end on standard error
//   --bytes N       print N bytes ("0123456789" over and over)
//   --cwd           print the working directory as "cwd=..."
//   --sleep MS      wait MS milliseconds
//   --wait-for FILE MS  wait until FILE exists, at most MS milliseconds; print
//                   "released" or "timed out"
//   --write PATH    create or overwrite PATH with "object\n" ("\" counts as "/")
//   --meet DIR NAME N   create DIR/NAME, then wait until DIR holds N entries;
//                   after 20 s print "nobody came" and end with code 3
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
#include <fstream>
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

std::filesystem::path PathOf(std::string text) {
#ifndef _WIN32
    for (char& c : text) {
        if (c == '\\') c = '/';
    }
#endif
    return std::filesystem::path(text);
}

size_t Entries(const std::filesystem::path& dir) {
    std::error_code ignored;
    size_t n = 0;
    for (auto it = std::filesystem::directory_iterator(dir, ignored); it != std::filesystem::directory_iterator();
         it.increment(ignored)) {
        ++n;
    }
    return n;
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
        } else if (verb == "--write" && has_value) {
            std::ofstream out(PathOf(argv[++i]), std::ios::binary | std::ios::trunc);
            out << "object\n";
            if (!out) return 4;
        } else if (verb == "--meet" && i + 3 < argc) {
            const std::filesystem::path dir = PathOf(argv[i + 1]);
            const std::string name = argv[i + 2];
            const size_t count = static_cast<size_t>(std::atol(argv[i + 3]));
            i += 3;
            std::ofstream(dir / name) << name;
            const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (Entries(dir) < count) {
                if (std::chrono::steady_clock::now() > give_up) {
                    Write(stdout, "nobody came\n");
                    return 3;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
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
