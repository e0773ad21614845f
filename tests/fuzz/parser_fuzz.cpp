// Fuzzes the tool-output parser: any bytes, parsed as compiler output and
// as linker output. The text is copied into a buffer of its exact size, so
// that a read past it is caught by the address sanitizer.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "build/output_parser.h"

namespace {

void Check(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using ads::build::OutputParser;
    const std::vector<char> text(data, data + size);

    OutputParser parser;
    const std::string pane = parser.Parse(text.data(), text.size());
    // Rewritten lines are shorter than the tools' lines and the pane text
    // ends at its first zero byte.
    Check(pane.size() <= size);
    Check(pane.find('\0') == std::string::npos);
    Check(parser.errors() >= 0 && parser.warnings() >= 0);
    const int32_t errors = parser.errors();
    const int32_t warnings = parser.warnings();

    // The same run again, after a line-state reset, gives the same text.
    parser.ResetLineState();
    Check(parser.Parse(text.data(), text.size()) == pane);
    Check(parser.errors() >= errors && parser.warnings() >= warnings);

    parser.ResetCounters();
    parser.SetLinkStep();
    const std::string linked = parser.Parse(text.data(), text.size());
    // The linker's text is shown up to "Finished:", unchanged.
    Check(linked.size() <= size);
    Check(linked.empty() || std::memcmp(linked.data(), text.data(), linked.size()) == 0);
    Check(parser.errors() >= 0 && parser.warnings() >= 0);
    if (linked.size() < size) Check(std::memcmp(text.data() + linked.size(), "Finished:", 9) == 0);
    return 0;
}
