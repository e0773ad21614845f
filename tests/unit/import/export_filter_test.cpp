// The line filter in front of TinyXML: which exports are taken, and what of
// them TinyXML gets to see.
#include <gtest/gtest.h>

#include <string>

#include "import/export_filter.h"

namespace ads::import {
namespace {

const std::string kDecl = "<?xml version=\"1.0\"?>";
const std::string kPi = kExportVersionLine;

struct SecondLineCase {
    const char* name;
    std::string second_line;
    bool accepted;
};

TEST(ExportFilter, OnlyTheExactProcessingInstructionIsTaken) {
    const SecondLineCase cases[] = {
        {"exact", kPi, true},
        {"another IDE version", "<?codewarrior exportversion=\"1.0.1\" ideversion=\"5.0\" ?>", false},
        {"another export version", "<?codewarrior exportversion=\"1.0.2\" ideversion=\"4.2\" ?>", false},
        {"one blank less", "<?codewarrior exportversion=\"1.0.1\" ideversion=\"4.2\"?>", false},
        {"a trailing blank", kPi + " ", false},
        {"single quotes", "<?codewarrior exportversion='1.0.1' ideversion='4.2' ?>", false},
        {"a comment first", "<!--", false},
        {"empty", "", false},
    };
    for (const SecondLineCase& c : cases) {
        FilteredExport out;
        std::string failure;
        const bool taken = FilterExport(kDecl + "\n" + c.second_line + "\n<PROJECT/>\n", &out, &failure);
        EXPECT_EQ(c.accepted, taken) << c.name;
        if (!c.accepted) {
            EXPECT_NE(std::string::npos, failure.find("line 2")) << c.name << ": " << failure;
        }
    }
}

TEST(ExportFilter, AnEmptyFileOrOneLineIsRefused) {
    FilteredExport out;
    std::string failure;
    EXPECT_FALSE(FilterExport("", &out, &failure));
    EXPECT_EQ("the file is empty", failure);
    EXPECT_FALSE(FilterExport(kDecl, &out, &failure));
    EXPECT_NE(std::string::npos, failure.find("one line"));
    EXPECT_FALSE(FilterExport(kDecl + "\n", &out, &failure)) << "a line break alone gives no second line";
}

struct FilterCase {
    const char* name;
    std::string body;      // the lines after the version line
    std::string expected;  // what follows the declaration in the buffer
};

TEST(ExportFilter, TheDoctypeBlockAndEveryClosingLineAreDropped) {
    const FilterCase cases[] = {
        {"declaration joined to the next kept line", "<PROJECT>\n</PROJECT>\n", "<PROJECT>\n</PROJECT>\n"},
        {"a DTD over many lines", "\n<!DOCTYPE PROJECT [\n<!ELEMENT A (B)>\n<!ELEMENT B (#PCDATA)>\n]>\n<P/>\n",
         "\n<P/>\n"},
        {"a closing line outside a DTD", "<P>\n]>\n</P>\n", "<P>\n</P>\n"},
        {"only whole lines count", "<P>\n ]>\n<!DOCTYPE PROJECT [ \n</P>\n", "<P>\n ]>\n<!DOCTYPE PROJECT [ \n</P>\n"},
        {"a DTD that never closes drops the rest", "<P/>\n<!DOCTYPE PROJECT [\n<A/>\n", "<P/>\n"},
        {"the last line without a line break", "<P/>", "<P/>\n"},
        {"CR LF line ends", "<P>\r\n<!DOCTYPE PROJECT [\r\n<!ELEMENT A (B)>\r\n]>\r\n</P>\r\n", "<P>\n</P>\n"},
    };
    for (const FilterCase& c : cases) {
        FilteredExport out;
        std::string failure;
        ASSERT_TRUE(FilterExport(kDecl + "\n" + kPi + "\n" + c.body, &out, &failure)) << c.name;
        EXPECT_EQ(kDecl + c.expected, out.text) << c.name;
    }
}

TEST(ExportFilter, AWindowsExportIsTakenLikeAUnixOne) {
    FilteredExport out;
    std::string failure;
    EXPECT_TRUE(FilterExport(kDecl + "\r\n" + kPi + "\r\n<P/>\r\n", &out, &failure)) << failure;
    EXPECT_EQ(kDecl + "<P/>\n", out.text);
}

TEST(ExportFilter, KeptLinesRememberWhereTheyStoodInTheExport) {
    FilteredExport out;
    std::string failure;
    ASSERT_TRUE(FilterExport(kDecl + "\n" + kPi + "\n<!DOCTYPE PROJECT [\n<!X>\n]>\n<P>\n<Q/>\n</P>\n", &out, &failure));
    // Buffer lines: "<?xml?><P>" (line 6), "<Q/>" (7), "</P>" (8).
    EXPECT_EQ((std::vector<int>{6, 7, 8}), out.source_lines);
}

struct DepthCase {
    const char* name;
    std::string xml;
    int depth;
};

TEST(ExportFilter, NestingIsCountedAsAParserOpensElements) {
    const DepthCase cases[] = {
        {"flat", "<a/><b></b>", 1},
        {"nested", "<a><b><c/></b></a>", 2},
        {"quoted '>' and '/>' inside a value", "<a x=\"/>\"><b y='>'></b></a>", 2},
        {"comments, declarations, CDATA", "<?xml?><!DOCTYPE x><a><!-- <b> --><![CDATA[<c><d>]]></a>", 1},
        {"closing tags never go below zero", "</a></b><c><d/></c>", 1},
    };
    for (const DepthCase& c : cases) EXPECT_EQ(c.depth, ElementDepth(c.xml, 1000)) << c.name;
}

TEST(ExportFilter, CountingStopsPastTheLimitOnDeepInput) {
    std::string deep;
    for (int i = 0; i < 1000000; ++i) deep += "<a>";
    EXPECT_GT(ElementDepth(deep, kMaxElementDepth), kMaxElementDepth);
    std::string ok;
    for (int i = 0; i < kMaxElementDepth; ++i) ok += "<a>";
    EXPECT_EQ(kMaxElementDepth, ElementDepth(ok, kMaxElementDepth));
}

}  // namespace
}  // namespace ads::import
