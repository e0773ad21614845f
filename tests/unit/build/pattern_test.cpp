#include "build/pattern.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace ads::build {
namespace {

std::string Repeat(const std::string& piece, size_t times) {
    std::string out;
    out.reserve(piece.size() * times);
    for (size_t i = 0; i < times; ++i) out += piece;
    return out;
}

// ---------------------------------------------------------------------------
// The dialect: what each construct matches.

struct DialectRow {
    const char* name;
    std::string pattern;
    bool plain_parentheses;
    std::string text;
    bool matches;
    size_t at;                        // where the match begins
    std::string whole;                // the matched text
    std::vector<std::string> groups;  // group 1, 2 ... as captured
};

const std::vector<DialectRow>& DialectRows() {
    static const std::vector<DialectRow> rows = {
        {"CharacterStandsForItself", "abc", true, "xxabcx", true, 2, "abc", {}},
        {"LeftmostMatchWins", "b", true, "abcb", true, 1, "b", {}},
        {"NoMatch", "abd", true, "abcabc", false, 0, "", {}},
        {"DotMatchesNewline", "a.c", true, "a\nc", true, 0, "a\nc", {}},
        {"DotMatchesZeroByte", "a.c", true, std::string("a\0c", 3), true, 0, std::string("a\0c", 3), {}},
        {"DotNeedsACharacter", "ab.", true, "ab", false, 0, "", {}},
        {"Class", "[xyz]", true, "abzc", true, 2, "z", {}},
        {"ClassRange", "[0-9]+", true, "ab123c", true, 2, "123", {}},
        {"NegatedClass", "[^a-z]+", true, "abc123def", true, 3, "123", {}},
        {"NegatedClassTakesHighBytesAndZero", "[^\"]+", true, std::string("\xff\x80\0\"", 4), true, 0,
         std::string("\xff\x80\0", 3), {}},
        {"HighByteRange", "[\x80-\xff]+", true, "ab\x80\xfe\xff" "c", true, 2, "\x80\xfe\xff", {}},
        {"BracketFirstIsLiteral", "[]a]+", true, "x]a]y", true, 1, "]a]", {}},
        {"DashFirstIsLiteral", "[-a]+", true, "x-a-y", true, 1, "-a-", {}},
        {"DashAfterNegationIsLiteral", "[^-]+", true, "--ab-", true, 2, "ab", {}},
        {"BracketAfterNegationIsLiteral", "[^]]+", true, "]]ab]", true, 2, "ab", {}},
        {"DashLastIsLiteral", "[a-]+", true, "xa-a-y", true, 1, "a-a-", {}},
        {"DashAfterRangeIsLiteral", "[a-c-e]+", true, "xa-eby", true, 1, "a-eb", {}},
        {"EscapedDashInClass", "[a\\-z]+", true, "m-zab", true, 1, "-za", {}},
        {"EscapedBracketInClass", "[\\]x]+", true, "a]x]b", true, 1, "]x]", {}},
        {"ControlEscapeInClass", "[\\t]+", true, "a\t\tb", true, 1, "\t\t", {}},
        {"ControlEscapeRangeInClass", "[\\a-\\r]+", true, "x\t\n\ry", true, 1, "\t\n\r", {}},
        {"BackslashInClass", "[\\\\]", true, "a\\b", true, 1, "\\", {}},
        {"ReversedRangeIsEmpty", "[z-a]", true, "az", false, 0, "", {}},
        {"StarTakesNone", "ab*c", true, "ac", true, 0, "ac", {}},
        {"StarTakesMany", "ab*c", true, "abbbc", true, 0, "abbbc", {}},
        {"PlusNeedsOne", "ab+c", true, "ac", false, 0, "", {}},
        {"PlusTakesMany", "ab+c", true, "abbc", true, 0, "abbc", {}},
        {"StarIsGreedyAndGivesBack", "a.*b", true, "a1b2b3", true, 0, "a1b2b", {}},
        {"PlusIsGreedyAndGivesBack", "x[0-9]+0", true, "x1200y", true, 0, "x1200", {}},
        {"ClosureOverClass", "\"[^\"]*\"", true, "say \"hi\" \"x\"", true, 4, "\"hi\"", {}},
        {"SecondStarIgnored", "ab**c", true, "ac", true, 0, "ac", {}},
        {"StarAfterPlusIgnored", "ab+*c", true, "ac", false, 0, "", {}},
        {"PlusAfterStarIgnored", "ab*+c", true, "ac", true, 0, "ac", {}},
        {"StartAnchor", "^ab", true, "abx", true, 0, "ab", {}},
        {"StartAnchorOnlyAtStart", "^ab", true, "xab", false, 0, "", {}},
        {"EndAnchor", "ab$", true, "abab", true, 2, "ab", {}},
        {"EndAnchorOnlyAtEnd", "ab$", true, "abx", false, 0, "", {}},
        {"CaretInsideIsLiteral", "a^b", true, "xa^b", true, 1, "a^b", {}},
        {"DollarInsideIsLiteral", "a$b", true, "a$b", true, 0, "a$b", {}},
        {"EscapedDollarLastIsLiteral", "a\\$", true, "xa$", true, 1, "a$", {}},
        {"StarOfLiteralCaret", "x^*y", true, "x^^y", true, 0, "x^^y", {}},
        {"BothAnchorsEmptyText", "^$", true, "", true, 0, "", {}},
        {"BothAnchorsNonEmptyText", "^$", true, "a", false, 0, "", {}},
        {"EmptyMatchAtStart", "x*", true, "abc", true, 0, "", {}},
        {"PlainGroups", "(a+)(b+)", true, "xaabbby", true, 1, "aabbb", {"aa", "bbb"}},
        {"NestedGroupsNumberedByOpening", "((a)b)", true, "ab", true, 0, "ab", {"ab", "a"}},
        {"GroupsGiveBackInOrder", "(a*)(a*)a", true, "aaa", true, 0, "aaa", {"aa", ""}},
        {"SplitBetweenGreedyClosures", "([a-z]+)([a-z]+)", true, "abc", true, 0, "abc", {"ab", "c"}},
        {"GroupClosesBeforeExcludedLiteral", "([1-9]*)0", true, "1230", true, 0, "1230", {"123"}},
        {"GroupClosesBeforeIncludedLiteral", "([0-9]*)0", true, "1200", true, 0, "1200", {"120"}},
        {"BackslashedGroupsWhenFlagClear", "\\(a+\\)b", false, "aab", true, 0, "aab", {"aa"}},
        {"ParenthesesLiteralWhenFlagClear", "(a)", false, "x(a)", true, 1, "(a)", {}},
        {"EscapedParenthesesLiteralWhenFlagSet", "\\(a\\)", true, "(a)", true, 0, "(a)", {}},
        {"NineGroups", "(a)(b)(c)(d)(e)(f)(g)(h)(i)", true, "abcdefghi", true, 0, "abcdefghi",
         {"a", "b", "c", "d", "e", "f", "g", "h", "i"}},
        {"BackReference", "(a+)b\\1", true, "aabaa", true, 0, "aabaa", {"aa"}},
        {"BackReferenceRetriesShorterGroup", "(a+)b\\1", true, "aaba", true, 1, "aba", {"a"}},
        {"BackReferenceToEmptyGroup", "([a-z]*)=\\1", true, "abc=ab", true, 3, "=", {""}},
        {"BackReferenceFlagClear", "\\(x\\)\\1", false, "axxb", true, 1, "xx", {"x"}},
        {"WordStart", "\\<ab", true, "cab ab", true, 4, "ab", {}},
        {"WordEnd", "ab\\>", true, "abc ab", true, 4, "ab", {}},
        {"UnderscoreIsAWordCharacter", "\\<ab\\>", true, "xab ab_ ab", true, 8, "ab", {}},
        {"WordStartAtTextStart", "\\<a", true, "a", true, 0, "a", {}},
        {"ControlEscapes", "\\a\\b\\f\\n\\r\\t\\v", true, "x\a\b\f\n\r\t\v", true, 1, "\a\b\f\n\r\t\v", {}},
        {"OtherEscapesAreLiteral", "\\.\\*\\[\\q", true, "x.*[q", true, 1, ".*[q", {}},
        {"EscapedZeroIsLiteral", "\\0", true, "a0", true, 1, "0", {}},
        {"EscapedStarCanBeRepeated", "\\**", true, "***", true, 0, "***", {}},
        {"LoneBackslashAtEndIsLiteral", "a\\", true, "a\\", true, 0, "a\\", {}},
        {"ClosureCrossesLines", "x[^;]*;", true, "x\n\n;", true, 0, "x\n\n;", {}},
        {"ManyClosuresBacktrack", "a*a*a*b", true, "aaab", true, 0, "aaab", {}},
        {"ManyClosuresFail", "a*a*a*b", true, "aaac", false, 0, "", {}},
        {"GivingBackMeetsAnEarlierRun", "[ab]*b*bc", true, "abc", true, 0, "abc", {}},
        {"ClosureBeforeOverlappingClass", "[a-c]*[c-e]", true, "abcd", true, 0, "abcd", {}},
        {"ClosureBeforeDisjointClass", "[a-c]*[d-f]", true, "abcd", true, 0, "abcd", {}},
        {"ClosureBeforeEndAnchor", "a*$", true, "baa", true, 1, "aa", {}},
    };
    return rows;
}

void PrintTo(const DialectRow& row, std::ostream* os) { *os << row.name; }

class PatternDialect : public ::testing::TestWithParam<DialectRow> {};

TEST_P(PatternDialect, MatchesAsTheDialectSays) {
    const DialectRow& row = GetParam();
    Pattern pattern;
    ASSERT_EQ(pattern.Compile(row.pattern, row.plain_parentheses), nullptr);
    MatchResult match;
    const bool found = pattern.Execute(row.text.data(), 0, row.text.size(), &match);
    ASSERT_EQ(found, row.matches);
    if (!found) return;
    EXPECT_EQ(match.whole.begin, row.at);
    EXPECT_EQ(row.text.substr(match.whole.begin, match.whole.length()), row.whole);
    ASSERT_EQ(pattern.groups(), static_cast<int>(row.groups.size()));
    for (size_t g = 0; g < row.groups.size(); ++g) {
        const Span& span = match.group[g + 1];
        ASSERT_NE(span.begin, Span::npos) << "group " << g + 1;
        EXPECT_EQ(row.text.substr(span.begin, span.length()), row.groups[g]) << "group " << g + 1;
    }
    for (size_t g = row.groups.size() + 1; g <= kPatternMaxGroups; ++g) {
        EXPECT_EQ(match.group[g].begin, Span::npos) << "group " << g;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, PatternDialect, ::testing::ValuesIn(DialectRows()),
                         [](const ::testing::TestParamInfo<DialectRow>& info) { return info.param.name; });

// ---------------------------------------------------------------------------
// Compile failures: each message, byte for byte.

struct CompileRow {
    const char* name;
    std::string pattern;
    bool plain_parentheses;
    const char* message;
};

const std::vector<CompileRow>& CompileRows() {
    static const std::vector<CompileRow> rows = {
        {"EmptyPatternFirst", "", true, "No previous regular expression"},
        {"TooLong", std::string(1004, 'a'), true, "Pattern too long"},
        {"ClassNotClosed", "[abc", true, "Missing ]"},
        {"BracketFirstLeavesClassOpen", "[]", true, "Missing ]"},
        {"NegatedBracketFirstLeavesClassOpen", "[^]", true, "Missing ]"},
        {"EscapedBracketLeavesClassOpen", "[a\\]", true, "Missing ]"},
        {"StarFirst", "*a", true, "Empty closure"},
        {"PlusFirst", "+a", true, "Empty closure"},
        {"StarAfterStartAnchor", "^*a", true, "Illegal closure"},
        {"PlusAfterStartAnchor", "^+", true, "Illegal closure"},
        {"StarAfterGroupOpening", "(*a)", true, "Illegal closure"},
        {"StarAfterGroupClosing", "(a)*", true, "Illegal closure"},
        {"PlusAfterBackslashedGroupClosing", "\\(a\\)+", false, "Illegal closure"},
        {"StarAfterWordStart", "\\<*a", true, "Illegal closure"},
        {"StarAfterWordEnd", "a\\>*", true, "Illegal closure"},
        {"StarAfterBackReference", "(a)\\1*", true, "Illegal closure"},
        {"EmptyWord", "\\<\\>", true, "Null pattern inside \\<\\>"},
        {"ReferenceInsideItsGroup", "(a\\1)", true, "Cyclical reference"},
        {"ReferenceInsideOuterGroup", "((a)b\\1)", true, "Cyclical reference"},
        {"ReferenceBeforeGroup", "\\1(a)", true, "Undetermined reference"},
        {"ReferenceToLaterGroup", "(a)\\2(b)", true, "Undetermined reference"},
        {"TenthBackslashedGroup", Repeat("\\(a\\)", 10), false, "Too many \\(\\) pairs"},
        {"EmptyBackslashedGroup", "a\\(\\)", false, "Null pattern inside \\(\\)"},
        {"BackslashedGroupNotClosed", "\\(a", false, "Unmatched \\("},
        {"BackslashedGroupNotOpened", "a\\)", false, "Unmatched \\)"},
        {"TenthGroup", Repeat("(a)", 10), true, "Too many () pairs"},
        {"EmptyGroup", "a()", true, "Null pattern inside ()"},
        {"GroupNotClosed", "((a)", true, "Unmatched ("},
        {"EscapedCloseDoesNotCloseWhenFlagSet", "(a\\)", true, "Unmatched ("},
        {"GroupNotOpened", "(a))", true, "Unmatched )"},
    };
    return rows;
}

void PrintTo(const CompileRow& row, std::ostream* os) { *os << row.name; }

class PatternCompileFailure : public ::testing::TestWithParam<CompileRow> {};

TEST_P(PatternCompileFailure, GivesItsMessageAndLeavesNoProgram) {
    const CompileRow& row = GetParam();
    Pattern pattern;
    const char* message = pattern.Compile(row.pattern, row.plain_parentheses);
    ASSERT_NE(message, nullptr);
    EXPECT_STREQ(message, row.message);
    EXPECT_FALSE(pattern.valid());
    const char text[] = "aaaa";
    EXPECT_FALSE(pattern.Execute(text, 0, 4, nullptr));
}

INSTANTIATE_TEST_SUITE_P(Rows, PatternCompileFailure, ::testing::ValuesIn(CompileRows()),
                         [](const ::testing::TestParamInfo<CompileRow>& info) { return info.param.name; });

TEST(PatternCompile, EmptyPatternReusesTheLastValidOne) {
    Pattern pattern;
    ASSERT_EQ(pattern.Compile("b+", true), nullptr);
    ASSERT_EQ(pattern.Compile("", true), nullptr);
    MatchResult match;
    ASSERT_TRUE(pattern.Execute("abbc", 0, 4, &match));
    EXPECT_EQ(match.whole.begin, 1u);
    EXPECT_EQ(match.whole.end, 3u);
}

TEST(PatternCompile, EmptyPatternAfterAFailureHasNothingToReuse) {
    Pattern pattern;
    ASSERT_EQ(pattern.Compile("b+", true), nullptr);
    ASSERT_NE(pattern.Compile("b(", true), nullptr);
    EXPECT_STREQ(pattern.Compile("", true), "No previous regular expression");
}

TEST(PatternCompile, ResetForgetsTheProgram) {
    Pattern pattern;
    ASSERT_EQ(pattern.Compile("b", true), nullptr);
    pattern.Reset();
    EXPECT_FALSE(pattern.Execute("b", 0, 1, nullptr));
    EXPECT_STREQ(pattern.Compile("", true), "No previous regular expression");
}

// ---------------------------------------------------------------------------
// The code area: 1,004 cells, the end cell included.

struct CellRow {
    const char* name;
    std::string pattern;
    size_t cells;  // 0: too long
};

const std::vector<CellRow>& CellRows() {
    static const std::vector<CellRow> rows = {
        {"CharacterAndEnd", "a", 2},
        {"StarAddsOneCell", "a*", 3},
        {"PlusRepeatsTheItem", "a+", 4},
        {"IgnoredClosureAddsNothing", "a+*", 4},
        {"ClassTakesSeventeen", "[ab]", 18},
        {"ClassPlusTakesThirtyFive", "[0-9]+", 36},
        {"AnchorsGroupsAndMarks", "^(\\<a\\>)\\1$", 9},
        {"CharactersAtTheLimit", std::string(1003, 'a'), 1004},
        {"CharactersOnePast", std::string(1004, 'a'), 0},
        {"ClassesAtTheLimit", Repeat("[ab]", 59), 1004},
        {"ClassesOnePast", Repeat("[ab]", 59) + "c", 0},
        {"StarAtTheLimit", std::string(1001, 'a') + "b*", 1004},
        {"StarOnePast", std::string(1002, 'a') + "b*", 0},
        {"ClassPlusAtTheLimit", std::string(968, 'a') + "[ab]+", 1004},
        {"ClassPlusOnePast", std::string(969, 'a') + "[ab]+", 0},
        {"GroupMarksAtTheLimit", std::string(1000, 'a') + "(b)", 1004},
        {"GroupMarksOnePast", std::string(1001, 'a') + "(b)", 0},
    };
    return rows;
}

void PrintTo(const CellRow& row, std::ostream* os) { *os << row.name; }

class PatternCells : public ::testing::TestWithParam<CellRow> {};

TEST_P(PatternCells, CountAgainstTheLimit) {
    const CellRow& row = GetParam();
    Pattern pattern;
    const char* message = pattern.Compile(row.pattern, true);
    if (row.cells == 0) {
        EXPECT_STREQ(message, "Pattern too long");
        return;
    }
    ASSERT_EQ(message, nullptr);
    EXPECT_EQ(pattern.cells(), row.cells);
}

INSTANTIATE_TEST_SUITE_P(Rows, PatternCells, ::testing::ValuesIn(CellRows()),
                         [](const ::testing::TestParamInfo<CellRow>& info) { return info.param.name; });

TEST(PatternCells, PatternAtTheLimitStillMatches) {
    Pattern pattern;
    const std::string text = std::string(968, 'a') + "bab";
    ASSERT_EQ(pattern.Compile(std::string(968, 'a') + "[ab]+", true), nullptr);
    MatchResult match;
    ASSERT_TRUE(pattern.Execute(text.data(), 0, text.size(), &match));
    EXPECT_EQ(match.whole.end, text.size());
}

// ---------------------------------------------------------------------------
// The subject is text[start, end): anchors, word marks, closures and back
// references see nothing outside it.

TEST(PatternExecute, SubjectIsTheGivenRange) {
    struct Row {
        const char* name;
        const char* pattern;
        const char* text;
        size_t start, end;
        bool found;
        size_t begin, match_end;
    };
    const Row rows[] = {
        {"StartAnchorAtTheGivenStart", "^ab", "xxabab", 2, 6, true, 2, 4},
        {"StartAnchorNowhereElse", "^ab", "xxabab", 1, 6, false, 0, 0},
        {"EndAnchorAtTheGivenEnd", "ab+$", "abbbbb", 0, 3, true, 0, 3},
        {"ClosureStopsAtTheGivenEnd", "b*", "abbbbb", 2, 4, true, 2, 4},
        {"WordStartAtTheGivenStart", "\\<b", "abc", 1, 3, true, 1, 2},
        {"WordEndAtTheGivenEnd", "b\\>", "abc", 0, 2, true, 1, 2},
        {"BackReferenceStopsAtTheGivenEnd", "(ab)\\1", "ababab", 0, 3, false, 0, 0},
        {"BackReferenceInsideTheRange", "(ab)\\1", "ababab", 1, 6, true, 2, 6},
        {"StartPastTheEnd", "a*", "aa", 3, 2, false, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Pattern pattern;
        ASSERT_EQ(pattern.Compile(row.pattern, std::strlen(row.pattern), true), nullptr);
        MatchResult match;
        ASSERT_EQ(pattern.Execute(row.text, row.start, row.end, &match), row.found);
        if (!row.found) continue;
        EXPECT_EQ(match.whole.begin, row.begin);
        EXPECT_EQ(match.whole.end, row.match_end);
    }
}

// A megabyte-long closure that gives back all of its run: the matcher keeps
// its place without recursion, so this neither overflows the stack nor
// takes long.
TEST(PatternExecute, LongClosureGivesBackWithoutRecursion) {
    Pattern pattern;
    ASSERT_EQ(pattern.Compile("^(.*)(x)", true), nullptr);
    const std::string text = "x" + std::string(1 << 20, 'a');
    MatchResult match;
    ASSERT_TRUE(pattern.Execute(text.data(), 0, text.size(), &match));
    EXPECT_EQ(match.group[1].length(), 0u);
    EXPECT_EQ(match.whole.end, 1u);
}

TEST(PatternExecute, StepLimitStopsABackReferenceBlowUp) {
    Pattern pattern;
    ASSERT_EQ(pattern.Compile("(a*)(a*)(a*)(a*)(a*)(a*)\\6b", true), nullptr);
    const std::string text(200, 'a');
    pattern.set_step_limit(100000);
    EXPECT_FALSE(pattern.Execute(text.data(), 0, text.size(), nullptr));
    EXPECT_TRUE(pattern.exhausted());
    EXPECT_LE(pattern.last_steps(), 100000u);

    // Within the limit the answer is the real one.
    const std::string short_text = "aaab";
    MatchResult match;
    ASSERT_TRUE(pattern.Execute(short_text.data(), 0, short_text.size(), &match));
    EXPECT_FALSE(pattern.exhausted());
    EXPECT_EQ(match.whole.length(), 4u);
}

// ---------------------------------------------------------------------------
// Work grows linearly with the text on inputs built to make a naive
// backtracker quadratic; the parser's own patterns meet hostile output in
// the parser's tests. Counted in matcher steps, not timed: the step count
// on 1,024,000 bytes must stay within 5% of 100 times that on 10,240 bytes.

struct LinearRow {
    const char* name;
    const char* pattern;
    std::string (*text)(size_t length);
};

std::string Letters(size_t n) { return std::string(n, 'a'); }
std::string SlashNumbers(size_t n) { return Repeat("/0/:", n / 4); }

const std::vector<LinearRow>& LinearRows() {
    static const std::vector<LinearRow> rows = {
        {"TemplateTypedAsAPattern", "^([^\"]*)/(([0-9]+)/):([^\n]*)\n", SlashNumbers},
        {"StackedClosures", "a*a*a*a*b", Letters},
        {"DotClosuresBeforeMissingCharacter", ".*.*=.*;", Letters},
    };
    return rows;
}

void PrintTo(const LinearRow& row, std::ostream* os) { *os << row.name; }

class PatternLinearWork : public ::testing::TestWithParam<LinearRow> {};

TEST_P(PatternLinearWork, StepsGrowLinearly) {
    const LinearRow& row = GetParam();
    Pattern pattern;
    ASSERT_EQ(pattern.Compile(row.pattern, std::strlen(row.pattern), true), nullptr);
    const std::string small = row.text(10240);
    const std::string large = row.text(1024000);
    // A super-linear matcher runs out of steps instead of hanging the test.
    pattern.set_step_limit(200 * large.size());
    EXPECT_FALSE(pattern.Execute(small.data(), 0, small.size(), nullptr));
    const uint64_t small_steps = pattern.last_steps();
    EXPECT_FALSE(pattern.Execute(large.data(), 0, large.size(), nullptr));
    const uint64_t large_steps = pattern.last_steps();
    ASSERT_FALSE(pattern.exhausted());
    EXPECT_LE(large_steps, small_steps * 105 + 1000) << "small " << small_steps << ", large " << large_steps;
}

INSTANTIATE_TEST_SUITE_P(Rows, PatternLinearWork, ::testing::ValuesIn(LinearRows()),
                         [](const ::testing::TestParamInfo<LinearRow>& info) { return info.param.name; });

}  // namespace
}  // namespace ads::build
