// The plug-in's own pattern matcher: a small regular-expression engine of
// the compile-then-execute kind. The output parser uses it to find the
// tools' diagnostic lines; no regular-expression library is involved.
//
// Dialect: a character stands for itself; "." any byte; "[...]" a class
// ("^" first negates, "a-z" ranges, a range written backwards adds nothing,
// "-" or "]" first and "-" last are literal, backslash escapes work inside);
// "*" zero or more and "+" one or more of the item before it (a second "*"
// or "+" right after is ignored); "^" first and "$" last anchor; groups are
// "(" ")" when compiled with plain parentheses, "\(" "\)" otherwise, at
// most 9; "\1".."\9" back references; "\<" "\>" word start and end (word
// characters: letters, digits, "_"); "\a \b \f \n \r \t \v" control
// characters; a backslash before any other character makes it literal (a
// lone backslash at the very end stands for itself).
//
// Code area: at most 1,004 two-byte cells (opcode, operand), the closing
// end cell included. Each item costs:
//   character, ".", "^", "$", group start or end, back reference,
//   word start or end, end of program          1 cell
//   class "[...]"                               17 cells: the class cell and
//                                               16 cells holding its 256-bit
//                                               set (two bytes each)
//   "*"                                         1 closure cell, put before
//                                               the item
//   "+"                                         the closure cell and a second
//                                               copy of the item
// so "a+" takes 3 cells and "[0-9]+" 35.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ads::build {

constexpr size_t kPatternMaxCells = 1004;
constexpr int kPatternMaxGroups = 9;

// Bounds of a match or of one group, as byte offsets into the text handed
// to Execute: [begin, end). A group of the pattern always has bounds after
// a match; bounds of groups the pattern does not have stay npos.
struct Span {
    static constexpr size_t npos = static_cast<size_t>(-1);
    size_t begin = npos;
    size_t end = npos;
    size_t length() const { return begin == npos ? 0 : end - begin; }
};

struct MatchResult {
    Span whole;
    Span group[kPatternMaxGroups + 1];  // group[1] .. group[9]; group[0] unused
};

class Pattern {
public:
    Pattern();

    // Compiles a pattern. Returns nullptr on success, else the message that
    // says what is wrong; a failed compile leaves no valid program. An empty
    // pattern keeps the program compiled last, if there is one.
    const char* Compile(const char* pattern, size_t length, bool plain_parentheses);
    const char* Compile(const std::string& pattern, bool plain_parentheses) {
        return Compile(pattern.data(), pattern.size(), plain_parentheses);
    }

    // Looks for the leftmost match in text[start, end), trying each start
    // position in turn (only `start` when the pattern begins with "^").
    // The matcher sees text[start, end) as its whole subject: "^" and a word
    // start may hold at `start`, "$" and a word end at `end`. Closures are
    // greedy and give characters back on failure. Nothing outside
    // text[start, end) is read.
    bool Execute(const char* text, size_t start, size_t end, MatchResult* result);

    // Drops the program, its capture bounds and the scratch memory of
    // execution; the next Compile starts afresh.
    void Reset();

    bool valid() const { return valid_; }
    size_t cells() const { return valid_ ? cells_ : 0; }  // end cell included
    int groups() const { return valid_ ? groups_ : 0; }

    // Execution can be slow only for patterns with back references (no
    // memo is possible for them) or on texts too long for the memo's 8 MiB
    // (see Execute in pattern.cpp). A caller that feeds arbitrary patterns
    // may bound the work: past `limit` steps Execute gives up and reports
    // no match, with exhausted() true. 0, the default, means no limit.
    void set_step_limit(uint64_t limit) { step_limit_ = limit; }
    bool exhausted() const { return exhausted_; }

    // Test hook: the work of the last Execute, counted in matcher steps
    // (one per cell executed, per character a closure takes or gives back).
    uint64_t last_steps() const { return steps_; }

private:
    struct Frame {
        uint16_t cell;     // the closure cell
        bool give_back;    // false: only the longest run can be followed
        size_t low;        // where the closure started
        size_t run_end;    // the continuation being tried starts here
    };
    class Compiler;

    const char* Fail(const char* message);
    bool Emit(uint8_t op, uint8_t arg);
    void Finish();
    bool ItemMatches(size_t cell, unsigned char c) const;
    void SetOf(size_t cell, uint8_t* set) const;
    size_t RunOf(size_t item, const unsigned char* s, size_t pos, size_t end) const;
    bool RunFrom(const char* text, size_t start, size_t end, size_t from);
    bool Visited(size_t closure, size_t offset) const;
    void Mark(size_t closure, size_t offset);
    void ClearMemo();

    uint8_t code_[2 * kPatternMaxCells];  // cell i: code_[2i] opcode, code_[2i+1] operand
    size_t cells_ = 0;
    int groups_ = 0;
    bool valid_ = false;
    bool has_back_reference_ = false;
    bool anchored_ = false;
    size_t closures_ = 0;
    bool all_closures_possessive_ = true;
    uint16_t closure_number_[kPatternMaxCells];  // closure cell -> 0, 1, 2 ...

    // Execution state.
    std::vector<Frame> frames_;
    size_t group_begin_[kPatternMaxGroups + 1];
    size_t group_end_[kPatternMaxGroups + 1];
    size_t match_end_ = 0;
    bool use_memo_ = false;
    std::vector<uint64_t> memo_;  // visited (closure, offset) states
    size_t memo_touched_ = 0;     // words of memo_ to clear after a call
    uint64_t steps_ = 0;
    uint64_t step_limit_ = 0;
    bool exhausted_ = false;
};

}  // namespace ads::build
