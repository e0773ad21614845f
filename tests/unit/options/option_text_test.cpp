#include "options/option_text.h"

#include <gtest/gtest.h>

namespace ads::options {
namespace {

TEST(Quoting, ValuesAreQuotedTheWayTheToolsCommandLinesReadThem) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"plain", "opts.via", "opts.via"},
        {"backslashes alone need no quotes", "C:\\dir\\o.via", "C:\\dir\\o.via"},
        {"blank", "my file.via", "\"my file.via\""},
        {"trailing backslash is doubled", "C:\\my dir\\", "\"C:\\my dir\\\\\""},
        {"quote inside", "say \"hi\"", "\"say \\\"hi\\\"\""},
        {"backslash before a quote", "a\\\"b", "\"a\\\\\\\"b\""},
        {"backslash inside stays single", "a b\\c", "\"a b\\c\""},
    };
    for (const auto& [name, value, quoted] : rows) {
        EXPECT_EQ(QuoteIfNeeded(value), quoted) << name;
        const std::string text = std::string(quoted) + " next";
        size_t pos = 0;
        EXPECT_EQ(ReadValue(text, pos), value) << name;
        EXPECT_EQ(text.substr(pos), " next") << name;
        EXPECT_EQ(Unquote(quoted), value) << name;
    }
    EXPECT_EQ(Unquote("\"a\" b\""), "\"a\" b\"") << "not one quoted piece";
    size_t pos = 0;
    EXPECT_EQ(ReadValue("\"a b", pos), "a b") << "an unclosed quote runs to the end";
}

TEST(SwitchValues, RunToTheNextBlank) {
    EXPECT_EQ(ValueAfter(" -cpu ARM920T -O0", " -cpu "), "ARM920T");
    EXPECT_EQ(ValueAfter(" -cpu  X", " -cpu "), "");
    EXPECT_FALSE(ValueAfter(" -O0", " -cpu ").has_value());
    EXPECT_EQ(SpacedValueAfter(" -width   100 -g", " -width"), "100");
    EXPECT_EQ(SpacedValueAfter(" -width", " -width"), "");
}

}  // namespace
}  // namespace ads::options
