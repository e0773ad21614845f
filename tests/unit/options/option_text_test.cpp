#include "options/option_text.h"

#include <gtest/gtest.h>

namespace ads::options {
namespace {

TEST(Quoting, ValuesAreQuotedTheWayTheToolsCommandLinesReadThem) {
    struct Row {
        const char* name;
        const char* value;
        const char* quoted;
    };
    const Row rows[] = {
        {"plain", "opts.via", "opts.via"},
        {"backslashes alone need no quotes", "C:\\dir\\o.via", "C:\\dir\\o.via"},
        {"blank", "my file.via", "\"my file.via\""},
        {"trailing backslash is doubled", "C:\\my dir\\", "\"C:\\my dir\\\\\""},
        {"quote inside", "say \"hi\"", "\"say \\\"hi\\\"\""},
        {"backslash before a quote", "a\\\"b", "\"a\\\\\\\"b\""},
        {"backslash inside stays single", "a b\\c", "\"a b\\c\""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(QuoteIfNeeded(row.value), row.quoted) << row.name;
        const std::string text = std::string(row.quoted) + " next";
        size_t pos = 0;
        EXPECT_EQ(ReadValue(text, pos), row.value) << row.name;
        EXPECT_EQ(text.substr(pos), " next") << row.name;
        EXPECT_EQ(Unquote(row.quoted), row.value) << row.name;
    }
}

TEST(Quoting, UnquoteLeavesTextThatIsNotOneQuotedPiece) {
    EXPECT_EQ(Unquote("\"a\" b\""), "\"a\" b\"");
    EXPECT_EQ(Unquote("\""), "\"");
    EXPECT_EQ(Unquote("plain"), "plain");
    EXPECT_EQ(Unquote("\"\""), "");
}

TEST(Quoting, AnUnclosedQuoteRunsToTheEnd) {
    size_t pos = 0;
    EXPECT_EQ(ReadValue("\"a b", pos), "a b");
    EXPECT_EQ(pos, 4u);
}

TEST(SwitchValues, RunToTheNextBlank) {
    EXPECT_EQ(ValueAfter(" -cpu ARM920T -O0", " -cpu "), "ARM920T");
    EXPECT_EQ(ValueAfter(" -cpu ARM920T", " -cpu "), "ARM920T");
    EXPECT_EQ(ValueAfter(" -cpu  X", " -cpu "), "");
    EXPECT_FALSE(ValueAfter(" -O0", " -cpu ").has_value());
    EXPECT_EQ(SpacedValueAfter(" -width   100 -g", " -width"), "100");
    EXPECT_EQ(SpacedValueAfter(" -width", " -width"), "");
}

}  // namespace
}  // namespace ads::options
