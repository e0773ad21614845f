// How long the compilers take, so that a benchmark can show how a build
// overlaps its commands. The environment variable FAKEADS_DELAY_MS holds
// "SCAN,COMPILE" in milliseconds (one number: both; unset or unreadable:
// no delay). A -M scan waits SCAN ms before it answers. A compile spends
// COMPILE ms writing its object: the first half of the object is on disk
// while it waits, as with a real tool stopped half-way through its output;
// a compile that writes no object waits the time all the same.
#pragma once

#include <string>

namespace fakeads {

struct Pace {
    long scan_ms = 0;
    long compile_ms = 0;
};

Pace PaceFromEnvironment();

// The wait of one command; what was not spent writing an object is spent
// when the command ends.
class PacedCommand {
public:
    explicit PacedCommand(long ms) : left_ms_(ms) {}
    ~PacedCommand();
    PacedCommand(const PacedCommand&) = delete;
    PacedCommand& operator=(const PacedCommand&) = delete;

    // Writes the file in two halves with the wait between them.
    bool WriteFile(const std::string& path, const std::string& contents);

private:
    long left_ms_;
};

}  // namespace fakeads
