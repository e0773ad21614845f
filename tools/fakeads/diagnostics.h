// The tools' messages, in the two shapes the ADS tools print them.
//
// Compilers and assembler, one line per diagnostic and one summary line:
//   "src\main.c", line 12: Warning: C2207W: inventing 'extern int f();'
//   src\main.c: 1 warning, 0 errors, 0 serious errors
// Linker, librarian and fromelf, no file or line, and the linker's closing line:
//   Error: L6218E: Undefined symbol x (referred from main.o).
//   Finished: 0 information, 0 warning and 1 error messages.
#pragma once

#include <string>

namespace fakeads {

enum class Severity { kWarning, kError, kSerious, kFatal };

// "Warning", "Error", "Serious error", "Fatal error".
const char* SeverityWord(Severity severity);

// "1 warning", "0 warnings", "2 warnings": singular only for exactly one.
std::string CountOf(int count, const std::string& noun);

// The messages of one run of a tool, written to `out` as they come, with
// their counts.
class Report {
public:
    explicit Report(std::string* out) : out_(out) {}

    // "file", line N: Word: message
    void AtLine(const std::string& file, int line, Severity severity, const std::string& message);
    // Word: message
    void General(Severity severity, const std::string& message);
    // A line of its own, counted as nothing.
    void Line(const std::string& text);

    int warnings() const { return warnings_; }
    int errors() const { return errors_; }
    int serious() const { return serious_; }
    int fatal() const { return fatal_; }
    bool Failed() const { return errors_ + serious_ + fatal_ > 0; }
    bool Empty() const { return warnings_ + errors_ + serious_ + fatal_ == 0; }

    // "<file>: W warning(s), E error(s), S serious error(s)", or nothing at
    // all when the three counts are 0 (a clean compile prints nothing).
    std::string SummaryLine(const std::string& file) const;
    // "Finished: 0 information, W warning and E error messages.", with
    // ", E error and F fatal error" when there was a fatal one. The nouns
    // stay singular whatever the count; "messages" is always plural.
    std::string FinishedLine() const;

private:
    void Count(Severity severity);

    std::string* out_;
    int warnings_ = 0;
    int errors_ = 0;
    int serious_ = 0;
    int fatal_ = 0;
};

}  // namespace fakeads
