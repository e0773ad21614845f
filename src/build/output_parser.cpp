#include "build/output_parser.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/text.h"

namespace ads::build {

const char kSourcePattern[] = "^\"([^\"]*)\", line ([0-9]+):([^\n]*)\n";
const char kOutputTemplate[] = "^([^\"]*)/(([0-9]+)/):([^\n]*)\n";
const char kOutputFullText[] = "too much errors...\r\n";

namespace {

constexpr char kFinished[] = "Finished:";

void AddSaturated(int32_t* counter, int64_t amount) {
    const int64_t sum = static_cast<int64_t>(*counter) + amount;
    *counter = static_cast<int32_t>(std::min<int64_t>(sum, std::numeric_limits<int32_t>::max()));
}

bool Contains(std::string_view line, const char* word) {
    return line.find(word) != std::string_view::npos;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Past the end of the group that opens at template[t] ("(" included); the
// groups nested in it are counted into *group, so that numbering stays in
// step with the pattern's.
size_t SkipGroup(const char* output_template, size_t t, int* group) {
    int depth = 1;
    ++t;
    while (output_template[t] != '\0' && depth > 0) {
        const char c = output_template[t];
        if (c == '/' && output_template[t + 1] != '\0') {
            t += 2;
        } else if (c == '[') {
            ++t;
            if (output_template[t] == '^') ++t;
            if (output_template[t] == ']') ++t;
            while (output_template[t] != '\0' && output_template[t] != ']') {
                if (output_template[t] == '\\' && output_template[t + 1] != '\0') ++t;
                ++t;
            }
            if (output_template[t] != '\0') ++t;
        } else {
            if (c == '(') {
                ++depth;
                ++*group;
            } else if (c == ')') {
                --depth;
            }
            ++t;
        }
    }
    return t;
}

}  // namespace

LineAnswer ClassifyLine(const char* line, size_t length) {
    const std::string_view text(line, std::find(line, line + length, '\0') - line);
    if (Contains(text, "Error")) return LineAnswer::kError;
    if (Contains(text, "Serious error:")) return LineAnswer::kError;
    if (Contains(text, "Fatal error:")) return LineAnswer::kError;
    if (Contains(text, "Warning")) return LineAnswer::kWarning;
    return LineAnswer::kOther;
}

LineAnswer RewriteLine(const char* text, const MatchResult& match, const char* output_template,
                       char* out, size_t size, size_t pos, size_t* written) {
    const size_t line_start = pos;
    *written = 0;
    // The last byte of the area is the terminator's.
    auto put = [&](char c) {
        if (pos + 1 >= size) return false;
        out[pos++] = c;
        return true;
    };

    size_t t = output_template[0] == '^' ? 1 : 0;
    int group = 0;
    while (output_template[t] != '\0') {
        const char c = output_template[t];
        if (c == '/' && output_template[t + 1] != '\0') {
            if (!put(output_template[t + 1])) return LineAnswer::kOutputFull;
            t += 2;
        } else if (c == '(') {
            const int number = ++group;
            t = SkipGroup(output_template, t, &group);
            if (number <= kPatternMaxGroups) {
                const Span& span = match.group[number];
                for (size_t i = 0; i < span.length(); ++i) {
                    if (!put(text[span.begin + i])) return LineAnswer::kOutputFull;
                }
            }
        } else {
            if (!put(c)) return LineAnswer::kOutputFull;
            ++t;
        }
    }
    *written = pos - line_start;
    return ClassifyLine(out + line_start, *written);
}

bool RewriteMatches(const char* text, size_t start, size_t end, Pattern* matcher, const char* pattern,
                    const char* output_template, char* out, size_t size, RunCounts* run) {
    if (matcher->Compile(pattern, std::strlen(pattern), true) != nullptr) return false;
    if (size == 0) return true;  // not even a terminator fits

    size_t out_pos = 0;
    size_t pos = start;
    MatchResult match;
    while (pos < end) {
        const bool found = matcher->Execute(text, pos, end, &match);
        run->matcher_steps += matcher->last_steps();
        if (!found) break;
        size_t written = 0;
        switch (RewriteLine(text, match, output_template, out, size, out_pos, &written)) {
            case LineAnswer::kError:
                AddSaturated(&run->errors, 1);
                break;
            case LineAnswer::kWarning:
                AddSaturated(&run->warnings, 1);
                break;
            case LineAnswer::kOther:
                break;
            case LineAnswer::kOutputFull:
                // The size of the area, twice the tool's output, is the limit,
                // not a count of errors.
                if (size - out_pos >= sizeof kOutputFullText) {
                    std::memcpy(out + out_pos, kOutputFullText, sizeof kOutputFullText);
                } else {
                    out[size - 1] = '\0';
                }
                return true;
        }
        out_pos += written;
        // An empty match would find itself again: step over one byte.
        pos = match.whole.end > pos ? match.whole.end : pos + 1;
    }
    out[out_pos] = '\0';  // out_pos never passes the last byte
    return true;
}

std::string OutputParser::Parse(const char* text, size_t length) {
    matcher_steps_ = 0;
    if (text == nullptr || length == 0) return std::string();
    if (link_step_) return ParseLinkStep(text, length);

    // Compiler or assembler output. The area is twice the tool's output
    // (length 0 returned above, so its 256-byte size for an empty run is
    // never needed). The rewrite terminates what it writes, so the area need
    // not be cleared first: its untouched pages are never even mapped in.
    const size_t size = std::min(length, std::numeric_limits<size_t>::max() / 2) * 2;
    const std::unique_ptr<char[]> out(new char[size]);
    RunCounts run;
    const bool ok = RewriteMatches(text, 0, length, &matcher_, kSourcePattern, kOutputTemplate,
                                   out.get(), size, &run);
    matcher_steps_ = run.matcher_steps;
    if (!ok) return std::string();
    AddSaturated(&errors_, run.errors);
    AddSaturated(&warnings_, run.warnings);
    return std::string(out.get());  // the pane's text ends at the first zero
}

std::string OutputParser::ParseRun(const char* text, size_t length, bool failed) {
    const int32_t errors_before = errors_;
    std::string pane = Parse(text, length);
    if (failed && errors_ == errors_before) {
        CountFailedCommand();
        // Link output is shown as it stands already.
        if (!link_step_ && length > 0) pane.append(text, length);
        if (!pane.empty() && pane.back() != '\n') pane += "\r\n";
    }
    return pane;
}

// The linker closes with "Finished: 0 information, 1 warning and 1 error
// messages." Each number counts by the word after it: e(rror) and f(atal)
// are errors, w(arning) warnings; information is not counted.
std::string OutputParser::ParseLinkStep(const char* text, size_t length) {
    const std::string_view all(text, length);
    const size_t at = all.find(kFinished);
    if (at == std::string_view::npos) return std::string(all);

    const std::string_view tail = all.substr(at + sizeof kFinished - 1);
    size_t i = 0;
    while (i < tail.size()) {
        if (!IsDigit(tail[i])) {
            ++i;
            continue;
        }
        int64_t number = 0;
        for (; i < tail.size() && IsDigit(tail[i]); ++i) {
            number = std::min<int64_t>(number * 10 + (tail[i] - '0'), std::numeric_limits<int32_t>::max());
        }
        while (i < tail.size() && !platform::IsWhitespace(tail[i])) ++i;
        while (i < tail.size() && platform::IsWhitespace(tail[i])) ++i;
        if (i == tail.size()) break;
        if (tail[i] == 'e' || tail[i] == 'f') {
            AddSaturated(&errors_, number);
        } else if (tail[i] == 'w') {
            AddSaturated(&warnings_, number);
        }
    }
    return std::string(all.substr(0, at));
}

}  // namespace ads::build
