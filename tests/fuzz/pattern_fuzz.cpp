// Fuzzes the pattern matcher. Input: a byte of flags (bit 0: plain
// parentheses), a byte that chooses where execution starts and how large
// the rewrite's output area is, then the pattern, a zero byte and the text.
// Pattern and text are copied into buffers of their exact size, so that a
// read past either is caught by the address sanitizer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "build/output_parser.h"
#include "build/pattern.h"

namespace {

void Check(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace ads::build;
    if (size < 2) return 0;
    const bool plain = (data[0] & 1) != 0;
    const size_t hint = data[1];
    data += 2;
    size -= 2;
    const uint8_t* zero = static_cast<const uint8_t*>(std::memchr(data, 0, size));
    const size_t pattern_length = zero ? static_cast<size_t>(zero - data) : size;
    const std::vector<char> pattern(data, data + pattern_length);
    const std::vector<char> text(zero ? data + pattern_length + 1 : data + size, data + size);

    Pattern matcher;
    matcher.set_step_limit(size_t{1} << 20);
    const char* message = matcher.Compile(pattern.data(), pattern.size(), plain);
    if (message != nullptr) {
        Check(*message != '\0');
        Check(!matcher.valid());
        Check(!matcher.Execute(text.data(), 0, text.size(), nullptr));
        return 0;
    }
    Check(matcher.cells() >= 1 && matcher.cells() <= kPatternMaxCells);
    Check(matcher.groups() >= 0 && matcher.groups() <= kPatternMaxGroups);

    const size_t end = text.size();
    const size_t start = std::min(hint, end);
    MatchResult match;
    if (matcher.Execute(text.data(), start, end, &match)) {
        Check(start <= match.whole.begin && match.whole.begin <= match.whole.end && match.whole.end <= end);
        for (int g = 1; g <= kPatternMaxGroups; ++g) {
            const Span& span = match.group[g];
            if (g > matcher.groups()) {
                Check(span.begin == Span::npos && span.end == Span::npos);
                continue;
            }
            Check(match.whole.begin <= span.begin && span.begin <= span.end && span.end <= match.whole.end);
        }
    }
    // Nothing of one execution leaks into the next: the same call gives the
    // same answer.
    if (!matcher.exhausted()) {
        MatchResult again;
        const bool found = match.whole.begin != Span::npos;
        Check(matcher.Execute(text.data(), start, end, &again) == found);
        if (found) {
            Check(again.whole.begin == match.whole.begin && again.whole.end == match.whole.end);
            for (int g = 1; g <= kPatternMaxGroups; ++g) {
                Check(again.group[g].begin == match.group[g].begin && again.group[g].end == match.group[g].end);
            }
        }
    }

    // The rewrite, with the pattern as its own template, into a small area.
    const std::string zero_terminated(pattern.begin(), pattern.end());
    std::vector<char> out(hint % 97, '#');
    matcher.set_step_limit(size_t{1} << 14);
    RunCounts run;
    if (RewriteMatches(text.data(), 0, text.size(), &matcher, zero_terminated.c_str(), zero_terminated.c_str(),
                       out.data(), out.size(), &run)) {
        // The text written is terminated inside the area.
        if (!out.empty()) Check(std::memchr(out.data(), 0, out.size()) != nullptr);
        Check(run.errors >= 0 && run.warnings >= 0);
    }
    return 0;
}
