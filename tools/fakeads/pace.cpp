#include "pace.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "paths.h"

namespace fakeads {

namespace {

void Wait(long ms) {
    if (ms > 0) std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// A number of milliseconds from `text` at *at; false when none is there.
bool ReadMs(const char* text, size_t* at, long* ms) {
    char* end = nullptr;
    const long value = std::strtol(text + *at, &end, 10);
    if (end == text + *at || value < 0) return false;
    *at = static_cast<size_t>(end - text);
    *ms = value;
    return true;
}

}  // namespace

Pace PaceFromEnvironment() {
    Pace pace;
    const char* text = std::getenv("FAKEADS_DELAY_MS");
    if (text == nullptr) return pace;
    size_t at = 0;
    long scan = 0, compile = 0;
    if (!ReadMs(text, &at, &scan)) return pace;
    compile = scan;
    if (text[at] == ',') {
        ++at;
        if (!ReadMs(text, &at, &compile)) return pace;
    }
    if (text[at] != '\0') return pace;
    pace.scan_ms = scan;
    pace.compile_ms = compile;
    return pace;
}

PacedCommand::~PacedCommand() { Wait(left_ms_); }

bool PacedCommand::WriteFile(const std::string& path, const std::string& contents) {
    if (left_ms_ <= 0) return fakeads::WriteFile(path, contents);
    std::ofstream out(std::filesystem::u8path(SystemPath(path)), std::ios::binary | std::ios::trunc);
    if (!out) return false;
    const size_t half = contents.size() / 2;
    out.write(contents.data(), static_cast<std::streamsize>(half));
    out.flush();
    Wait(left_ms_);
    left_ms_ = 0;
    out.write(contents.data() + half, static_cast<std::streamsize>(contents.size() - half));
    out.close();
    return static_cast<bool>(out);
}

}  // namespace fakeads
