// Reads the captured output of one tool run for the output pane. Compiler
// and assembler output: each diagnostic line
//     "..\src\ring.c", line 272: Warning: C2207W: inventing ...
// becomes the short form the host can jump from
//     ..\src\ring.c(272): Warning: C2207W: inventing ...
// and is counted as an error or a warning; nothing else is shown. Linker
// and librarian output: the text before the closing "Finished:" line is
// shown as it is, and the totals on that line are counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "build/pattern.h"

namespace ads::build {

// The tools' diagnostic line, and what the rewrite makes of it: the groups
// of the template stand for what the same groups of the pattern captured,
// "/" makes the character after it literal.
extern const char kSourcePattern[];   // "^\"([^\"]*)\", line ([0-9]+):([^\n]*)\n"
extern const char kOutputTemplate[];  // "^([^\"]*)/(([0-9]+)/):([^\n]*)\n"
// Ends the output when the rewritten lines do not fit.
extern const char kOutputFullText[];  // "too much errors...\r\n"

// What the line rewriter says about one match.
enum class LineAnswer { kError = 1, kWarning = 2, kOther = 3, kOutputFull = 4 };

// A written line is an error when it holds "Error", "Serious error:" or
// "Fatal error:", else a warning when it holds "Warning" (tested in that
// order, so a line with both words is an error). The line ends at its
// first zero byte, as the text the pane receives does.
LineAnswer ClassifyLine(const char* line, size_t length);

// Writes one match through the template into out[pos, size) and sets
// *written to the bytes written. Answers kOutputFull, leaving the line
// unfinished, when a byte would have to go to out[size - 1], which is kept
// for the terminator; otherwise classifies the line.
LineAnswer RewriteLine(const char* text, const MatchResult& match, const char* output_template,
                       char* out, size_t size, size_t pos, size_t* written);

// The counts of one rewrite run.
struct RunCounts {
    int32_t errors = 0;
    int32_t warnings = 0;
    uint64_t matcher_steps = 0;  // work of the matcher, for tests
};

// Compiles `pattern` (plain parentheses as groups) into `matcher` and
// rewrites every match found in text[start, end) into `out`, an area of
// `size` bytes, each execution starting where the last match ended, and
// ends the text written with a zero byte. Text between matches is not
// copied. When the area is full, the output ends with kOutputFullText if at
// least its 21 bytes (terminator included) are left at the unfinished line,
// else it is cut at the last byte. Returns false, having written and
// counted nothing, when the pattern does not compile.
bool RewriteMatches(const char* text, size_t start, size_t end, Pattern* matcher, const char* pattern,
                    const char* output_template, char* out, size_t size, RunCounts* run);

class OutputParser {
public:
    // The text for the output pane. Counts go to the build counters.
    std::string Parse(const char* text, size_t length);

    // Build counters: reset by the build entries, raised only by Parse.
    // They saturate instead of overflowing.
    int32_t errors() const { return errors_; }
    int32_t warnings() const { return warnings_; }
    void ResetCounters() {
        errors_ = 0;
        warnings_ = 0;
    }

    // The pane text of one command's output. `failed`: the command failed
    // (non-zero exit, could not start, or there was no command). When its
    // output holds no error the parser knows, one error is counted and the
    // output is shown as it stands, with a line end: the tool's own words
    // are all the user gets of such a failure.
    std::string ParseRun(const char* text, size_t length, bool failed);

    // A failed command whose output held no error counts as one.
    void CountFailedCommand() {
        if (errors_ < INT32_MAX) ++errors_;
    }

    // Set while a link or librarian command is the last one built.
    void SetLinkStep() { link_step_ = true; }
    void ClearLinkStep() { link_step_ = false; }
    bool link_step() const { return link_step_; }

    // The line state is what the parser keeps of its matcher between runs:
    // the compiled program, the bounds of the last match and the scratch
    // memory of execution. Resetting it drops all three. Parsing never
    // depends on it: every compiler run compiles the source pattern afresh
    // and starts at the text's first byte, so a run sees nothing of the one
    // before (and a diagnostic split across two calls is not joined). The
    // counters and the link-step flag are not line state.
    void ResetLineState() { matcher_.Reset(); }

    // Test hook: matcher steps of the last Parse.
    uint64_t matcher_steps() const { return matcher_steps_; }

private:
    std::string ParseLinkStep(const char* text, size_t length);

    int32_t errors_ = 0;
    int32_t warnings_ = 0;
    bool link_step_ = false;
    Pattern matcher_;
    uint64_t matcher_steps_ = 0;
};

}  // namespace ads::build
