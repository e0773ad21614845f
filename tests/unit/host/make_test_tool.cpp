// ads_make_test_tool: the program the make engine's tests give as a file's
// or a target's command. Its arguments are a little script, done in order:
//   --out TEXT          print TEXT and a line end
//   --sleep MS          wait MS milliseconds
//   --write PATH        create or overwrite the file PATH ("\" counts as "/")
//   --meet DIR NAME N   create DIR/NAME, then wait until DIR holds N entries;
//                       after 20 s print "nobody came" and end with code 3
//   --exit N            end with exit code N
// Every write is flushed at once.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

void Print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
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
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    for (int i = 1; i < argc; ++i) {
        const std::string verb = argv[i];
        const int left = argc - i - 1;
        if (verb == "--out" && left >= 1) {
            Print(std::string(argv[++i]) + "\n");
        } else if (verb == "--sleep" && left >= 1) {
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atol(argv[++i])));
        } else if (verb == "--write" && left >= 1) {
            std::ofstream out(PathOf(argv[++i]), std::ios::binary | std::ios::trunc);
            out << "object\n";
            if (!out) return 4;
        } else if (verb == "--meet" && left >= 3) {
            const std::filesystem::path dir = PathOf(argv[i + 1]);
            const std::string name = argv[i + 2];
            const size_t count = static_cast<size_t>(std::atol(argv[i + 3]));
            i += 3;
            std::ofstream(dir / name) << name;
            const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (Entries(dir) < count) {
                if (std::chrono::steady_clock::now() > give_up) {
                    Print("nobody came\n");
                    return 3;
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            }
        } else if (verb == "--exit" && left >= 1) {
            return std::atoi(argv[++i]);
        } else {
            Print("ads_make_test_tool: unknown step " + verb + "\n");
            return 100;
        }
    }
    return 0;
}
