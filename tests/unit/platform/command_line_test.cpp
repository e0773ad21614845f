#include "platform/platform.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace ads::platform {
namespace {

using Words = std::vector<std::string>;

struct SplitRow {
    const char* name;
    std::string line;
    Words words;
};

TEST(SplitCommandLineTest, FollowsTheCRuntimeRules) {
    const SplitRow rows[] = {
        {"empty line has no words", "", {}},
        {"program alone", "prog", {"prog"}},
        {"blanks and tabs separate words", "prog a\tb  c", {"prog", "a", "b", "c"}},
        {"trailing blanks add no word", "prog a \t ", {"prog", "a"}},
        {"leading blank gives an empty program name", " a b", {"", "a", "b"}},
        {"quoted program keeps blanks and backslashes", "\"C:\\Program Files\\x.exe\" -a",
         {"C:\\Program Files\\x.exe", "-a"}},
        {"program name takes no escapes", "C:\\dir\\\"x y\" z", {"C:\\dir\\x y", "z"}},
        {"program name ends at a blank outside quotes", "ab\"c d\"e f", {"abc de", "f"}},
        {"quotes group blanks", "p \"a b\" c", {"p", "a b", "c"}},
        {"quoted tab is kept", "p \"a\tb\"", {"p", "a\tb"}},
        {"empty quotes give an empty argument", "p \"\" x", {"p", "", "x"}},
        {"empty quotes at the end", "p \"\"", {"p", ""}},
        {"a lone quote gives an empty argument", "p \"", {"p", ""}},
        {"quotes inside a word join its parts", "p a\"b c\"d", {"p", "ab cd"}},
        {"unclosed quote runs to the end", "p \"a b", {"p", "a b"}},
        {"backslashes not before a quote are literal", "p a\\b\\\\c\\", {"p", "a\\b\\\\c\\"}},
        {"UNC path passes unchanged", "p \\\\server\\share", {"p", "\\\\server\\share"}},
        {"one backslash escapes a quote", "p \\\"", {"p", "\""}},
        {"2n backslashes give n and the quote opens", "p a\\\\\"b c\"", {"p", "a\\b c"}},
        {"2n+1 backslashes give n and a literal quote", "p a\\\\\\\"b", {"p", "a\\\"b"}},
        {"escaped quote inside quotes", "p \"a \\\"b\\\" c\"", {"p", "a \"b\" c"}},
        {"backslashes before a closing quote", "p \"a\\\\\" b", {"p", "a\\", "b"}},
        {"doubled quote inside quotes is a quote and quoting goes on", "p \"a\"\"b c\"",
         {"p", "a\"b c"}},
        {"three quotes open, give a quote, stay open", "p \"\"\"a b\"", {"p", "\"a b"}},
        {"doubled quote outside quotes is nothing", "p a\"\"b", {"p", "ab"}},
        {"define with a quoted value", "armcc -DNAME=\\\"a b\\\" x.c",
         {"armcc", "-DNAME=\"a", "b\"", "x.c"}},
    };
    for (const SplitRow& row : rows) {
        EXPECT_EQ(SplitCommandLine(row.line), row.words) << row.name << ": [" << row.line << "]";
    }
}

struct QuoteRow {
    const char* name;
    std::string argument;
    std::string quoted;
};

TEST(QuoteArgumentTest, QuotesOnlyWhatNeedsIt) {
    const QuoteRow rows[] = {
        {"plain word unchanged", "-O2", "-O2"},
        {"backslashes without quotes unchanged", "C:\\dir\\", "C:\\dir\\"},
        {"UNC path unchanged", "\\\\server\\share", "\\\\server\\share"},
        {"empty argument", "", "\"\""},
        {"blank", "a b", "\"a b\""},
        {"tab", "a\tb", "\"a\tb\""},
        {"quote is escaped", "a\"b", "\"a\\\"b\""},
        {"backslash before a quote doubles and escapes", "a\\\"b", "\"a\\\\\\\"b\""},
        {"trailing backslashes double before the closing quote", "C:\\my dir\\",
         "\"C:\\my dir\\\\\""},
        {"inner backslashes stay single", "a\\b c", "\"a\\b c\""},
        {"lone quote", "\"", "\"\\\"\""},
    };
    for (const QuoteRow& row : rows) {
        EXPECT_EQ(QuoteArgument(row.argument), row.quoted) << row.name;
    }
}

// Any argument vector, quoted and joined, splits back into itself.
TEST(QuoteArgumentTest, RandomArgumentsSplitBackUnchanged) {
    const char alphabet[] = {'a', 'b', ' ', '\t', '"', '\\', '-', ':'};
    std::mt19937 random(20240607);
    std::uniform_int_distribution<int> letter(0, sizeof alphabet - 1);
    std::uniform_int_distribution<int> length(0, 7);
    std::uniform_int_distribution<int> count(0, 5);
    for (int round = 0; round < 5000; ++round) {
        Words expected = {"C:\\Program Files\\tool.exe"};
        std::string line = QuoteArgument(expected[0]);
        const int arguments = count(random);
        for (int i = 0; i < arguments; ++i) {
            std::string argument;
            const int size = length(random);
            for (int k = 0; k < size; ++k) argument += alphabet[letter(random)];
            expected.push_back(argument);
            line += ' ';
            line += QuoteArgument(argument);
        }
        ASSERT_EQ(SplitCommandLine(line), expected) << "line: [" << line << "]";
    }
}

TEST(IsAbsolutePathTest, ColonOrLeadingSlashMakesAPathAbsolute) {
    const struct {
        const char* path;
        bool absolute;
    } rows[] = {
        {"C:\\Keil\\ARM", true},
        {"c:", true},
        {"C:relative", true},  // holds a colon: counted as absolute
        {"/usr/lib", true},
        {"/", true},
        {"", false},
        {"Build\\OrvMake.dll", false},
        {"..\\src\\main.c", false},
        {"\\rooted\\without\\drive", false},
        {"\\\\server\\share", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(IsAbsolutePath(row.path), row.absolute) << "[" << row.path << "]";
    }
}

}  // namespace
}  // namespace ads::platform
