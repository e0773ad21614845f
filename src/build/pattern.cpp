#include "build/pattern.h"

#include <algorithm>
#include <cstring>

namespace ads::build {

namespace {

// Opcodes of the code area.
enum Op : uint8_t {
    kEnd = 0,
    kChar,        // operand: the character
    kAny,
    kClass,       // followed by 16 cells holding the 256-bit set
    kBol,
    kEol,
    kGroupOpen,   // operand: group number
    kGroupClose,  // operand: group number
    kBackRef,     // operand: group number
    kWordStart,
    kWordEnd,
    kClosure,     // followed by its item; operand 1 when it never gives back
};

constexpr size_t kClassSetCells = 16;
constexpr uint8_t kNoGiveBack = 1;

// Scratch for the visited (closure, offset) states: at most 8 MiB. Past it
// execution goes on without the memo, slower but just as right.
constexpr size_t kMemoMaxWords = size_t{1} << 20;

const char kNoPrevious[] = "No previous regular expression";
const char kTooLong[] = "Pattern too long";
const char kMissingBracket[] = "Missing ]";
const char kEmptyClosure[] = "Empty closure";
const char kIllegalClosure[] = "Illegal closure";
const char kNullWord[] = "Null pattern inside \\<\\>";
const char kCyclical[] = "Cyclical reference";
const char kUndetermined[] = "Undetermined reference";

struct GroupMessages {
    const char* too_many;
    const char* null_group;
    const char* unmatched_open;
    const char* unmatched_close;
};
const GroupMessages kPlainGroups = {
    "Too many () pairs", "Null pattern inside ()", "Unmatched (", "Unmatched )"};
const GroupMessages kBackslashedGroups = {
    "Too many \\(\\) pairs", "Null pattern inside \\(\\)", "Unmatched \\(", "Unmatched \\)"};

unsigned char ControlEscape(unsigned char c) {
    switch (c) {
        case 'a': return '\a';
        case 'b': return '\b';
        case 'f': return '\f';
        case 'n': return '\n';
        case 'r': return '\r';
        case 't': return '\t';
        case 'v': return '\v';
        default: return c;
    }
}

bool IsWordChar(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

size_t CellsOf(uint8_t op) { return op == kClass ? 1 + kClassSetCells : 1; }

}  // namespace

Pattern::Pattern() {
    std::memset(code_, 0, sizeof code_);
    std::memset(closure_number_, 0, sizeof closure_number_);
    std::fill(std::begin(group_begin_), std::end(group_begin_), Span::npos);
    std::fill(std::begin(group_end_), std::end(group_end_), Span::npos);
}

const char* Pattern::Fail(const char* message) {
    valid_ = false;
    cells_ = 0;
    groups_ = 0;
    return message;
}

// One cell; the last cell of the area is kept for the end cell.
bool Pattern::Emit(uint8_t op, uint8_t arg) {
    if (cells_ + 1 > kPatternMaxCells - 1) return false;
    code_[2 * cells_] = op;
    code_[2 * cells_ + 1] = arg;
    ++cells_;
    return true;
}

// Reads a pattern text left to right and writes its cells into the program.
// Every step answers nullptr or the message that ends the compile.
class Pattern::Compiler {
public:
    Compiler(Pattern& program, const char* text, size_t length, bool plain_parentheses)
        : program_(program),
          text_(reinterpret_cast<const unsigned char*>(text)),
          length_(length),
          plain_parentheses_(plain_parentheses),
          messages_(plain_parentheses ? kPlainGroups : kBackslashedGroups) {}

    const char* Run() {
        while (i_ < length_) {
            Step step;
            if (const char* error = Next(&step)) return error;
            last_ = step.last;
            just_opened_ = step.opened;
        }
        if (depth_ > 0) return messages_.unmatched_open;
        return nullptr;
    }

private:
    // What came last decides what a following "*" or "+" means.
    enum class Last { kNothing, kItem, kClosure, kOther };
    struct Step {
        Last last = Last::kOther;
        bool opened = false;  // a group opening: ")" right after it is an empty group
    };

    const char* Next(Step* step) {
        const unsigned char c = text_[i_];
        if (c == '^' && i_ == 0) {
            ++i_;
            return Emit(kBol);
        }
        if (c == '$' && i_ == length_ - 1) {
            ++i_;
            return Emit(kEol);
        }
        if (c == '*' || c == '+') {
            ++i_;
            step->last = Last::kClosure;
            return Closure(c == '*');
        }
        if (c == '.') {
            ++i_;
            step->last = Last::kItem;
            item_ = program_.cells_;
            return Emit(kAny);
        }
        if (c == '[') {
            step->last = Last::kItem;
            return Class();
        }
        if (plain_parentheses_ && (c == '(' || c == ')')) {
            ++i_;
            step->opened = c == '(';
            return c == '(' ? OpenGroup() : CloseGroup();
        }
        if (c == '\\' && i_ + 1 < length_) {
            const unsigned char e = text_[i_ + 1];
            i_ += 2;
            return Escape(e, step);
        }
        // Any other character, a lone backslash at the end included.
        ++i_;
        step->last = Last::kItem;
        return Literal(c);
    }

    // The character after a backslash.
    const char* Escape(unsigned char e, Step* step) {
        if (!plain_parentheses_ && (e == '(' || e == ')')) {
            step->opened = e == '(';
            return e == '(' ? OpenGroup() : CloseGroup();
        }
        if (e >= '1' && e <= '9') return BackReference(e - '0');
        if (e == '<') {
            if (i_ + 1 < length_ && text_[i_] == '\\' && text_[i_ + 1] == '>') return kNullWord;
            return Emit(kWordStart);
        }
        if (e == '>') return Emit(kWordEnd);
        step->last = Last::kItem;
        return Literal(ControlEscape(e));
    }

    const char* Closure(bool zero_or_more) {
        if (last_ == Last::kNothing) return kEmptyClosure;
        if (last_ == Last::kOther) return kIllegalClosure;
        if (last_ == Last::kClosure) return nullptr;  // "a**" is "a*"
        return zero_or_more ? StarBeforeItem() : PlusAfterItem();
    }

    // The closure cell goes in front of its item.
    const char* StarBeforeItem() {
        uint8_t* code = program_.code_;
        const size_t size = program_.cells_ - item_;
        if (!Fits(1)) return kTooLong;
        std::memmove(&code[2 * (item_ + 1)], &code[2 * item_], 2 * size);
        code[2 * item_] = kClosure;
        code[2 * item_ + 1] = 0;
        ++program_.cells_;
        return nullptr;
    }

    // "x+" is "xx*".
    const char* PlusAfterItem() {
        uint8_t* code = program_.code_;
        const size_t size = program_.cells_ - item_;
        if (!Fits(1 + size)) return kTooLong;
        const size_t copy = program_.cells_ + 1;
        program_.Emit(kClosure, 0);
        std::memcpy(&code[2 * copy], &code[2 * item_], 2 * size);
        program_.cells_ += size;
        return nullptr;
    }

    const char* Class() {
        uint8_t set[2 * kClassSetCells] = {};
        if (!ReadClass(set)) return kMissingBracket;
        if (!Fits(1 + kClassSetCells)) return kTooLong;
        item_ = program_.cells_;
        program_.Emit(kClass, 0);
        std::memcpy(&program_.code_[2 * program_.cells_], set, sizeof set);
        program_.cells_ += kClassSetCells;
        return nullptr;
    }

    // From "[" to its "]", leaving i_ after it; false when the "]" is missing.
    bool ReadClass(uint8_t* set) {
        size_t j = i_ + 1;
        const bool negate = j < length_ && text_[j] == '^';
        if (negate) ++j;
        bool first = true;  // "]" or "-" here is literal
        for (;;) {
            if (j >= length_) return false;
            if (text_[j] == ']' && !first) break;
            first = false;
            const unsigned char low = ClassChar(&j);
            unsigned char high = low;
            // A "-" before the closing "]" is literal, not a range.
            if (j + 1 < length_ && text_[j] == '-' && text_[j + 1] != ']') {
                ++j;
                high = ClassChar(&j);
            }
            for (unsigned v = low; v <= high; ++v) set[v >> 3] |= static_cast<uint8_t>(1u << (v & 7));
        }
        i_ = j + 1;
        if (negate) {
            for (size_t b = 0; b < 2 * kClassSetCells; ++b) set[b] = static_cast<uint8_t>(~set[b]);
        }
        return true;
    }

    // One character of a class, a backslash escape taken whole.
    unsigned char ClassChar(size_t* j) {
        const unsigned char c = text_[(*j)++];
        return c == '\\' && *j < length_ ? ControlEscape(text_[(*j)++]) : c;
    }

    const char* OpenGroup() {
        if (program_.groups_ == kPatternMaxGroups) return messages_.too_many;
        const int group = ++program_.groups_;
        open_[depth_++] = group;
        return Emit(kGroupOpen, static_cast<uint8_t>(group));
    }

    const char* CloseGroup() {
        if (depth_ == 0) return messages_.unmatched_close;
        if (just_opened_) return messages_.null_group;
        return Emit(kGroupClose, static_cast<uint8_t>(open_[--depth_]));
    }

    // Only a group that is already closed has a text to refer to.
    const char* BackReference(int group) {
        if (group > program_.groups_) return kUndetermined;
        if (std::find(open_, open_ + depth_, group) != open_ + depth_) return kCyclical;
        program_.has_back_reference_ = true;
        return Emit(kBackRef, static_cast<uint8_t>(group));
    }

    const char* Literal(unsigned char c) {
        item_ = program_.cells_;
        return Emit(kChar, c);
    }

    const char* Emit(uint8_t op, uint8_t arg = 0) { return program_.Emit(op, arg) ? nullptr : kTooLong; }

    // Room for `cells` more, the end cell still to come.
    bool Fits(size_t cells) const { return program_.cells_ + cells <= kPatternMaxCells - 1; }

    Pattern& program_;
    const unsigned char* text_;
    const size_t length_;
    const bool plain_parentheses_;
    const GroupMessages& messages_;
    size_t i_ = 0;
    Last last_ = Last::kNothing;
    bool just_opened_ = false;
    size_t item_ = 0;  // first cell of the last item
    int open_[kPatternMaxGroups] = {};
    int depth_ = 0;
};

const char* Pattern::Compile(const char* pattern, size_t length, bool plain_parentheses) {
    if (pattern == nullptr || length == 0) return valid_ ? nullptr : kNoPrevious;

    valid_ = false;
    cells_ = 0;
    groups_ = 0;
    has_back_reference_ = false;
    if (const char* error = Compiler(*this, pattern, length, plain_parentheses).Run()) return Fail(error);
    code_[2 * cells_] = kEnd;  // always fits: the body stops one cell short
    code_[2 * cells_ + 1] = 0;
    ++cells_;
    Finish();
    valid_ = true;
    return nullptr;
}

// The characters an item takes, as a 256-bit set.
void Pattern::SetOf(size_t cell, uint8_t* set) const {
    switch (code_[2 * cell]) {
        case kChar:
            std::memset(set, 0, 2 * kClassSetCells);
            set[code_[2 * cell + 1] >> 3] = static_cast<uint8_t>(1u << (code_[2 * cell + 1] & 7));
            break;
        case kClass:
            std::memcpy(set, &code_[2 * (cell + 1)], 2 * kClassSetCells);
            break;
        default:
            std::memset(set, 0xff, 2 * kClassSetCells);
            break;
    }
}

bool Pattern::ItemMatches(size_t cell, unsigned char c) const {
    switch (code_[2 * cell]) {
        case kChar: return code_[2 * cell + 1] == c;
        case kAny: return true;
        case kClass: return (code_[2 * (cell + 1) + (c >> 3)] >> (c & 7)) & 1;
        default: return false;
    }
}

// Numbers the closures and marks those that can never usefully give a
// character back: when the next thing that takes a character (group marks
// take none) is a character or class that shares nothing with the
// closure's item, every character the closure took is one the next cell
// refuses, so only the longest run can be followed. The same holds before
// "$" and the end of the program.
void Pattern::Finish() {
    anchored_ = code_[0] == kBol;
    closures_ = 0;
    all_closures_possessive_ = true;
    for (size_t cell = 0; cell < cells_; cell += CellsOf(code_[2 * cell])) {
        if (code_[2 * cell] != kClosure) continue;
        closure_number_[cell] = static_cast<uint16_t>(closures_++);
        const size_t item = cell + 1;
        size_t next = item + CellsOf(code_[2 * item]);
        while (code_[2 * next] == kGroupOpen || code_[2 * next] == kGroupClose) ++next;
        bool possessive = false;
        const uint8_t op = code_[2 * next];
        if (op == kEol || op == kEnd) {
            possessive = true;
        } else if (op == kChar || op == kClass) {
            uint8_t taken[2 * kClassSetCells];
            uint8_t wanted[2 * kClassSetCells];
            SetOf(item, taken);
            SetOf(next, wanted);
            possessive = true;
            for (size_t b = 0; b < sizeof taken; ++b) {
                if ((taken[b] & wanted[b]) != 0) possessive = false;
            }
        }
        code_[2 * cell + 1] = possessive ? kNoGiveBack : 0;
        if (!possessive) all_closures_possessive_ = false;
    }
    frames_.reserve(closures_);
}

void Pattern::Reset() {
    valid_ = false;
    cells_ = 0;
    groups_ = 0;
    closures_ = 0;
    has_back_reference_ = false;
    std::vector<Frame>().swap(frames_);
    std::vector<uint64_t>().swap(memo_);
    memo_touched_ = 0;
    std::fill(std::begin(group_begin_), std::end(group_begin_), Span::npos);
    std::fill(std::begin(group_end_), std::end(group_end_), Span::npos);
    steps_ = 0;
    exhausted_ = false;
}

// Worst-case time. Closures take single characters only and the code has no
// loops, so one attempt walks the cells in order and backtracking only
// resumes a closure's frame with a shorter run. Two devices bound the work:
//
// 1. Closures that never give back (see Finish) follow only their longest
//    run. The parser's source pattern "^\"([^\"]*)\", line ([0-9]+):([^\n]*)\n"
//    is anchored and all its closures are of this kind ([^"] before '"',
//    [0-9] before ':', [^\n] before '\n'), so an execute runs each cell at
//    most once and each closure reads its run once: the work is the length of
//    the match (the rewrite goes on from its end), or, when there is no
//    match, at most the rest of the text once, after which the rewrite
//    stops. Over a whole tool output that is linear, whatever the bytes.
//
// 2. For every other pattern without back references, execution marks each
//    (closure, position) state it enters. Whatever follows a state does not
//    depend on how it was reached, so a state entered again has failed
//    before: a closure does not start there, and its run stops before it
//    (the continuations beyond were all tried). Each state is entered once,
//    so an execute costs at most (cells x (length + 1)) steps, across all
//    start positions. The marks take closures x (length + 1) bits, cleared
//    after each execute over the range it touched, up to 8 MiB; past that
//    positions go unmarked (slower, still right). The parser's other fixed
//    string, its output template "^([^\"]*)/(([0-9]+)/):([^\n]*)\n", is only
//    walked, never executed; run as a pattern it would be of this kind
//    ([^"] may give a '/' back) and linear too.
//
// Back references make the outcome depend on captured text, so patterns
// with them run without the memo: still no recursion and no memory growth
// (one frame per closure of the pattern), but possibly slow; the step limit
// bounds them for callers that need it.
bool Pattern::Execute(const char* text, size_t start, size_t end, MatchResult* result) {
    steps_ = 0;
    exhausted_ = false;
    if (!valid_ || text == nullptr || start > end) return false;

    std::fill(std::begin(group_begin_), std::end(group_begin_), Span::npos);
    std::fill(std::begin(group_end_), std::end(group_end_), Span::npos);
    use_memo_ = !has_back_reference_ && closures_ > 0 && !(anchored_ && all_closures_possessive_);

    const bool first_is_char = code_[0] == kChar;
    size_t from = start;
    bool found = false;
    for (;;) {
        if (first_is_char) {
            // Only a start on that character can match.
            const void* hit = from < end ? std::memchr(text + from, code_[1], end - from) : nullptr;
            if (hit == nullptr) break;
            from = static_cast<size_t>(static_cast<const char*>(hit) - text);
        }
        if (RunFrom(text, start, end, from)) {
            found = true;
            break;
        }
        if (anchored_ || exhausted_ || from == end) break;
        ++from;
    }
    if (use_memo_) ClearMemo();
    if (!found) return false;
    if (result != nullptr) {
        *result = MatchResult();
        result->whole = {from, match_end_};
        for (int g = 1; g <= groups_; ++g) result->group[g] = {group_begin_[g], group_end_[g]};
    }
    return true;
}

bool Pattern::RunFrom(const char* text, size_t start, size_t end, size_t from) {
    const unsigned char* s = reinterpret_cast<const unsigned char*>(text);
    frames_.clear();
    size_t cell = 0;
    size_t pos = from;
    for (;;) {
        if (step_limit_ != 0 && steps_ >= step_limit_) {
            exhausted_ = true;
            return false;
        }
        ++steps_;
        const uint8_t op = code_[2 * cell];
        const uint8_t arg = code_[2 * cell + 1];
        bool ok = true;
        switch (op) {
            case kEnd:
                match_end_ = pos;
                return true;
            case kChar:
            case kAny:
            case kClass:
                ok = pos < end && ItemMatches(cell, s[pos]);
                if (ok) {
                    ++pos;
                    cell += CellsOf(op);
                }
                break;
            case kBol:
                ok = pos == start;
                ++cell;
                break;
            case kEol:
                ok = pos == end;
                ++cell;
                break;
            case kGroupOpen:
                group_begin_[arg] = pos;
                ++cell;
                break;
            case kGroupClose:
                group_end_[arg] = pos;
                ++cell;
                break;
            case kBackRef: {
                const size_t length = group_end_[arg] - group_begin_[arg];
                ok = end - pos >= length && std::memcmp(s + pos, s + group_begin_[arg], length) == 0;
                steps_ += length;
                if (ok) {
                    pos += length;
                    ++cell;
                }
                break;
            }
            case kWordStart:
                ok = pos < end && IsWordChar(s[pos]) && (pos == start || !IsWordChar(s[pos - 1]));
                ++cell;
                break;
            case kWordEnd:
                ok = pos > start && IsWordChar(s[pos - 1]) && (pos == end || !IsWordChar(s[pos]));
                ++cell;
                break;
            case kClosure: {
                const size_t item = cell + 1;
                const size_t k = closure_number_[cell];
                const bool give_back = arg != kNoGiveBack;
                if (use_memo_ && Visited(k, pos - start)) {
                    ok = false;
                    break;
                }
                size_t run_end = pos;
                bool cut = false;  // stopped at a state entered before
                if (!use_memo_) {
                    run_end = RunOf(item, s, pos, end);
                    steps_ += run_end - pos;
                } else {
                    for (;;) {
                        Mark(k, run_end - start);
                        if (run_end >= end || !ItemMatches(item, s[run_end])) break;
                        ++steps_;
                        if (Visited(k, run_end + 1 - start)) {
                            cut = true;
                            break;
                        }
                        ++run_end;
                    }
                }
                // The longest run's continuation has been tried and failed.
                if (cut && !give_back) {
                    ok = false;
                    break;
                }
                frames_.push_back({static_cast<uint16_t>(cell), give_back, pos, run_end});
                cell = item + CellsOf(code_[2 * item]);
                pos = run_end;
                break;
            }
            default:
                ok = false;
                break;
        }
        if (ok) continue;

        // Back to the innermost closure that can give a character back.
        for (;;) {
            if (frames_.empty()) return false;
            Frame& frame = frames_.back();
            if (frame.give_back && frame.run_end > frame.low) {
                --frame.run_end;
                ++steps_;
                const size_t item = frame.cell + 1;
                cell = item + CellsOf(code_[2 * item]);
                pos = frame.run_end;
                break;
            }
            frames_.pop_back();
        }
    }
}

// Where the run of an item's characters from `pos` ends.
size_t Pattern::RunOf(size_t item, const unsigned char* s, size_t pos, size_t end) const {
    switch (code_[2 * item]) {
        case kAny:
            return end;
        case kChar: {
            const unsigned char c = code_[2 * item + 1];
            while (pos < end && s[pos] == c) ++pos;
            return pos;
        }
        default: {
            const uint8_t* set = &code_[2 * (item + 1)];
            while (pos < end && ((set[s[pos] >> 3] >> (s[pos] & 7)) & 1) != 0) ++pos;
            return pos;
        }
    }
}

bool Pattern::Visited(size_t closure, size_t offset) const {
    const size_t bit = offset * closures_ + closure;
    const size_t word = bit / 64;
    return word < memo_.size() && ((memo_[word] >> (bit % 64)) & 1) != 0;
}

void Pattern::Mark(size_t closure, size_t offset) {
    const size_t bit = offset * closures_ + closure;
    const size_t word = bit / 64;
    if (word >= memo_.size()) {
        if (word >= kMemoMaxWords) return;
        memo_.resize(std::min(kMemoMaxWords, std::max({word + 1, 2 * memo_.size(), size_t{1024}})));
    }
    memo_[word] |= uint64_t{1} << (bit % 64);
    memo_touched_ = std::max(memo_touched_, word + 1);
}

void Pattern::ClearMemo() {
    std::fill(memo_.begin(), memo_.begin() + static_cast<std::ptrdiff_t>(memo_touched_), 0);
    memo_touched_ = 0;
}

}  // namespace ads::build
