#include "project_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "ads/config_node.h"
#include "platform/platform.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ads::host {
namespace {

using platform::test_support::ReadNative;
using platform::test_support::WriteNative;

using Attributes = std::vector<std::pair<std::string, std::string>>;

// One node of a tree given in pre-order with its depth (0 = the root).
struct Row {
    size_t depth;
    std::string name;
    Attributes attributes;
};

std::unique_ptr<ConfigNode> Build(const std::vector<Row>& rows) {
    std::unique_ptr<ConfigNode> root;
    std::vector<ConfigNode*> path;
    for (const Row& row : rows) {
        auto* node = new ConfigNode(row.name);
        for (const auto& [name, value] : row.attributes) node->SetAttribute(name, value);
        path.resize(row.depth);
        if (row.depth == 0) {
            root.reset(node);
        } else {
            path.back()->AppendChild(node);
        }
        path.push_back(node);
    }
    return root;
}

std::string Quote(const std::string& text) {
    std::string out = "\"";
    for (const char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 0x20 || c >= 0x7F || c == '"' || c == '\\') {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        } else {
            out += ch;
        }
    }
    return out + "\"";
}

// Every node in pre-order with its depth, name and attributes in order, all
// bytes visible: two trees are equal when their dumps are. Walks by the
// links, so it copes with any depth.
std::string Dump(const ConfigNode& root) {
    std::string out;
    size_t depth = 0;
    const ConfigNode* n = &root;
    while (n != nullptr) {
        out += std::to_string(depth) + " " + Quote(n->Name());
        for (const auto* a = n->FirstAttribute(); a != nullptr; a = n->NextAttribute(a)) {
            out += " " + Quote(a->Name()) + "=" + Quote(a->Value());
        }
        out += "\n";
        if (n->FirstChild() != nullptr) {
            n = n->FirstChild();
            ++depth;
            continue;
        }
        while (n != &root && n->NextSibling() == nullptr) {
            n = n->Parent();
            --depth;
        }
        n = n == &root ? nullptr : n->NextSibling();
    }
    return out;
}

// Saves and loads the tree; checks that the loaded tree equals it and that
// saving the loaded tree gives the same text again.
void ExpectRoundTrip(const ConfigNode& tree) {
    const std::string text = SerializeProject(tree);
    std::string error;
    const std::unique_ptr<ConfigNode> loaded = ParseProject(text, &error);
    ASSERT_NE(loaded, nullptr) << error << "\n" << text;
    EXPECT_EQ(Dump(*loaded), Dump(tree));
    EXPECT_EQ(SerializeProject(*loaded), text);
}

// ---------------------------------------------------------------------------
// The format

TEST(ProjectFile, WritesDeclarationTwoBlankIndentationAndSelfClosedElements) {
    const auto tree = Build({
        {0, "OrvaneProject", {{"version", "1"}}},
        {1, "Target", {{"name", "Debug"}, {"processor", "ARM7TDMI"}}},
        {2, "Folder", {{"name", "src"}}},
        {3, "File", {{"name", "src\\main.c"}}},
        {2, "Settings", {}},
        {1, "Target", {{"name", "Release"}}},
    });
    EXPECT_EQ(SerializeProject(*tree),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
              "<OrvaneProject version=\"1\">\n"
              "  <Target name=\"Debug\" processor=\"ARM7TDMI\">\n"
              "    <Folder name=\"src\">\n"
              "      <File name=\"src\\main.c\"/>\n"
              "    </Folder>\n"
              "    <Settings/>\n"
              "  </Target>\n"
              "  <Target name=\"Release\"/>\n"
              "</OrvaneProject>\n");
}

TEST(ProjectFile, RootIsWrittenUnderItsOwnNameAndSubtreeAloneWhenGivenANode) {
    const auto tree = Build({
        {0, "OrvaneProject", {}},
        {1, "Workspace", {}},
        {2, "File", {}},
        {1, "After", {}},
    });
    // A node with a parent and later siblings: only it and its descendants.
    EXPECT_EQ(SerializeProject(*tree->FirstChild()),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
              "<Workspace>\n"
              "  <File/>\n"
              "</Workspace>\n");
}

TEST(ProjectFile, IndentationStopsGrowingPastTheMaximumLevel) {
    ConfigNode root("N");
    ConfigNode* n = &root;
    for (size_t i = 0; i < kMaxIndentLevel + 5; ++i) {
        auto* child = new ConfigNode("N");
        n->AppendChild(child);
        n = child;
    }
    const std::string text = SerializeProject(root);
    const std::string deepest(2 * kMaxIndentLevel, ' ');
    EXPECT_NE(text.find("\n" + deepest + "<N/>\n"), std::string::npos);
    EXPECT_EQ(text.find("\n" + deepest + " "), std::string::npos);
}

TEST(ProjectFile, ValuesAreWrittenWithEntitiesAndCharacterReferences) {
    const auto tree = Build({{0, "P", {{"v", "a\"b'c<d>e&f\tg\rh\ni\x01j\x1Fk\x7Fl\x80m\xE9n\xFF"}}}});
    EXPECT_EQ(SerializeProject(*tree),
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
              "<P v=\"a&quot;b'c&lt;d&gt;e&amp;f&#9;g&#13;h&#10;i&#x01;j&#x1F;k&#x7F;l\x80m\xE9n\xFF\"/>\n");
}

TEST(ProjectFile, NamesAreEscapedReadablyAndDecodeBack) {
    struct Case {
        const char* label;
        std::string name;
        std::string written;
    };
    const Case cases[] = {
        {"plain name", "OrvaneProject", "OrvaneProject"},
        {"digits, dot, dash and underscore later on", "a1.b-c_d", "a1.b-c_d"},
        {"underscore first", "_name", "_name"},
        {"blank", "Target 1", "Target_x20_1"},
        {"leading digit", "1st", "_x31_st"},
        {"leading dot and dash", ".-", "_x2E_-"},
        {"colon", "a:b", "a_x3A_b"},
        {"8-bit letters", "\xE9t\xE9", "_xE9_t_xE9_"},
        {"empty name", "", "_x_"},
        {"underscore before x", "_x41_", "_x5F_x41_"},
        {"underscore before x later on", "a_x", "a_x5F_x"},
        {"double underscore before x", "__x", "__x5F_x"},
        {"the empty name's escape as a name", "_x_", "_x5F_x_"},
        {"underscore before capital X stays", "_X", "_X"},
        {"trailing underscore", "x_", "x_"},
        {"NUL byte", std::string("a\0b", 3), "a_x00_b"},
        {"byte 0xFF", "\xFF", "_xFF_"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(EncodeName(c.name), c.written);
        EXPECT_EQ(DecodeName(c.written), c.name);
    }
}

TEST(ProjectFile, HandWrittenNamesThatAreNoEscapeReadAsWritten) {
    const std::pair<const char*, const char*> cases[] = {
        {"a:b", "a:b"},            // a colon is a name character of XML
        {"_xyz", "_xyz"},          // "_x" without two hex digits and '_'
        {"_x4_", "_x4_"},
        {"_x4G_", "_x4G_"},
        {"_x41", "_x41"},
        {"_x4a_", "J"},            // lower-case hex is read too
        {"x_x_", "x_x_"},          // "_x_" is the empty name only as a whole name
        {"\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"},  // bytes of a UTF-8 editor
    };
    for (const auto& [written, name] : cases) {
        EXPECT_EQ(DecodeName(written), name) << written;
    }
}

// ---------------------------------------------------------------------------
// Round trips

TEST(ProjectFile, RandomTreesSurviveSaveAndLoad) {
    // Texts drawn mostly from the characters that need care.
    const std::string tricky = "_x0aAZ:. -&;#<>\"'\t\r\n\x01\x7F\x80\xE9\xFF";
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        const auto pick = [&random](uint32_t n) {
            return static_cast<uint32_t>(std::uniform_int_distribution<uint32_t>(0, n - 1)(random));
        };
        const auto text = [&](bool nul_allowed, uint32_t max_length) {
            std::string s;
            for (uint32_t i = pick(max_length + 1); i > 0; --i) {
                if (pick(3) == 0) {
                    s.push_back(static_cast<char>(nul_allowed ? pick(256) : 1 + pick(255)));
                } else {
                    s.push_back(tricky[pick(static_cast<uint32_t>(tricky.size()))]);
                }
            }
            return s;
        };

        std::vector<ConfigNode*> nodes;
        ConfigNode root(text(true, 6));
        nodes.push_back(&root);
        for (uint32_t i = pick(40); i > 0; --i) {
            auto* node = new ConfigNode(text(true, 6));
            nodes[pick(static_cast<uint32_t>(nodes.size()))]->AppendChild(node);
            nodes.push_back(node);
        }
        for (ConfigNode* node : nodes) {
            for (uint32_t i = pick(5); i > 0; --i) node->SetAttribute(text(false, 4), text(false, 12));
        }
        ExpectRoundTrip(root);
        if (HasFatalFailure()) return;
    }
}

// ---------------------------------------------------------------------------
// Size

TEST(ProjectFile, ProjectNestedOneHundredThousandFoldersDeepLoadsAndSaves) {
    // Ten times the depth we promise: a reader or writer that recursed once
    // per level would need megabytes of stack, more than a Windows main
    // thread has.
    constexpr size_t kDepth = 100000;
    ConfigNode root("OrvaneProject");
    ConfigNode* n = &root;
    for (size_t i = 0; i < kDepth; ++i) {
        auto* folder = new ConfigNode("Folder");
        folder->SetAttribute("name", "f" + std::to_string(i));
        n->AppendChild(folder);
        n = folder;
    }
    n->AppendChild(new ConfigNode("File"));

    const std::string text = SerializeProject(root);
    std::string error;
    const auto loaded = ParseProject(text, &error);
    ASSERT_NE(loaded, nullptr) << error;
    size_t depth = 0;
    const ConfigNode* deepest = loaded.get();
    while (deepest->FirstChild() != nullptr) {
        deepest = deepest->FirstChild();
        ++depth;
        ASSERT_EQ(deepest->NextSibling(), nullptr);
    }
    EXPECT_EQ(depth, kDepth + 1);
    EXPECT_EQ(deepest->Name(), "File");
    EXPECT_STREQ(deepest->Parent()->GetAttribute("name"), ("f" + std::to_string(kDepth - 1)).c_str());
    EXPECT_EQ(SerializeProject(*loaded), text);
}

// ---------------------------------------------------------------------------
// Reading hand-written files

TEST(ProjectFile, ReadsHandWrittenFiles) {
    struct Case {
        const char* label;
        std::string text;
        std::vector<Row> tree;
    };
    const Case cases[] = {
        {"comments, instructions, single quotes and free layout",
         "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?>\n"
         "<!-- written by hand -->\n"
         "<?orvane keep?>\n"
         "<OrvaneProject\n"
         "    version = '1'\n"
         "\tnote=\"it's\">\n"
         "  <!-- a <Target> in a comment is not an element -->\n"
         "  <Target name='Debug' processor=\"ARM9\" >\n"
         "    <File name=\"a.c\"></File>\n"
         "\t<File name='b.c' />\n"
         "  </Target   >\n"
         "  <?ignored?>\n"
         "</OrvaneProject>\n"
         "<!-- trailing comment -->\n",
         {{0, "OrvaneProject", {{"version", "1"}, {"note", "it's"}}},
          {1, "Target", {{"name", "Debug"}, {"processor", "ARM9"}}},
          {2, "File", {{"name", "a.c"}}},
          {2, "File", {{"name", "b.c"}}}}},
        {"predefined entities and character references",
         "<P a='&lt;&amp;&gt;&quot;&apos;' b=\"&#65;&#x41;&#x4a;&#0065;&#xE9;&#255;\" "
         "c='\"' d=\"'\" e='&#9;&#10;&#13;&#x7f;'/>",
         {{0, "P",
           {{"a", "<&>\"'"}, {"b", "AAJA\xE9\xFF"}, {"c", "\""}, {"d", "'"}, {"e", "\t\n\r\x7F"}}}}},
        {"raw tabs and line ends in a value read as blanks",
         "<P v='one\r\ntwo\nthree\rfour\tfive'/>",
         {{0, "P", {{"v", "one two three four five"}}}}},
        {"escaped and colon names",
         "<Target_x20_1 a:b='1' _x_='e' _x_='f' _x31_st='2'/>",
         {{0, "Target 1", {{"a:b", "1"}, {"", "e"}, {"", "f"}, {"1st", "2"}}}}},
        {"8-bit text as it stands", "<P v='\xE9t\xE9'/>", {{0, "P", {{"v", "\xE9t\xE9"}}}}},
        {"CR LF line ends between elements", "<A>\r\n  <B/>\r\n</A>\r\n", {{0, "A", {}}, {1, "B", {}}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        std::string error;
        const auto loaded = ParseProject(c.text, &error);
        ASSERT_NE(loaded, nullptr) << error;
        EXPECT_EQ(Dump(*loaded), Dump(*Build(c.tree)));
    }
}

TEST(ProjectFile, ReportsTheLineAndTheReasonOfAnError) {
    struct Case {
        const char* label;
        std::string text;
        const char* error;
    };
    const Case cases[] = {
        {"empty file", "", "line 1: not a project file (no root element)"},
        {"not XML at all", "int main;\n", "line 1: not a project file (no root element)"},
        {"only a declaration and a comment", "<?xml version=\"1.0\"?>\n<!-- none -->\n",
         "line 3: not a project file (no root element)"},
        {"unquoted value", "<A>\n  <B x=1/>\n</A>\n", "line 2: attribute value is not quoted"},
        {"element not closed", "<A>\n  <B>\n    <C/>\n", "line 2: element 'B' is not closed"},
        {"mismatched end tag", "<A>\n  <B>\n  </A>\n</B>\n",
         "line 3: end tag 'A' does not match start tag 'B' (line 2)"},
        {"end tag compared as written", "<_x41_></A>",
         "line 1: end tag 'A' does not match start tag '_x41_' (line 1)"},
        {"second root", "<A/>\n<B/>\n", "line 2: second root element 'B'"},
        {"text after the root", "<A/>\ntrailing\n", "line 2: text after the root element"},
        {"end tag after the root", "<A/>\n</A>\n", "line 2: end tag 'A' after the root element"},
        {"end tag before any element", "</A>", "line 1: end tag 'A' has no start tag"},
        {"text inside an element", "<A>\n  hello\n</A>", "line 2: text is not allowed inside element 'A'"},
        {"entity reference as text", "<A>&amp;</A>", "line 1: text is not allowed inside element 'A'"},
        {"unknown entity", "<A\n x='&nbsp;'/>", "line 2: unknown entity '&nbsp;'"},
        {"decimal reference above 255", "<A x='&#256;'/>",
         "line 1: character reference '&#256;' is out of range"},
        {"hex reference above 255", "<A x='&#x100;'/>",
         "line 1: character reference '&#x100;' is out of range"},
        {"reference to NUL", "<A x='&#0;'/>", "line 1: character reference '&#0;' is out of range"},
        {"reference past any integer", "<A x='&#99999999999999999999;'/>",
         "line 1: character reference '&#99999999999999999999;' is out of range"},
        {"malformed hex reference", "<A x='&#xZZ;'/>", "line 1: malformed character reference '&#xZZ;'"},
        {"reference without digits", "<A x='&#;'/>", "line 1: malformed character reference '&#;'"},
        {"upper-case X in a reference", "<A x='&#X41;'/>", "line 1: malformed character reference '&#X41;'"},
        {"bare ampersand", "<A x='a & b'/>", "line 1: '&' does not start an entity or character reference"},
        {"reference without ';'", "<A x='&amp'/>", "line 1: '&' does not start an entity or character reference"},
        {"'<' in a value", "<A x='a<b'/>", "line 1: '<' is not allowed in an attribute value"},
        {"raw NUL in a value", std::string("<A x='a\0b'/>", 12), "line 1: NUL byte in an attribute value"},
        {"comment not closed", "<A/>\n<!-- forgot\n\n", "line 2: comment is not closed"},
        {"comment that closes nothing", "<!-->\n<A/>", "line 1: comment is not closed"},
        {"declaration not closed", "<?xml version='1.0'\n<A/>", "line 1: processing instruction is not closed"},
        {"value not closed before the next tag", "<A>\n<B x='1/>\n</A>\n", "line 2: attribute value is not closed"},
        {"value not closed at the end", "<A>\n<B x='1/>\n", "line 2: attribute value is not closed"},
        {"tag not closed", "<A\n x='1'", "line 1: tag 'A' is not closed"},
        {"attribute without value", "<A x/>", "line 1: attribute 'x' has no value"},
        {"attribute repeated", "<A x='1' x='2'/>", "line 1: attribute 'x' is repeated"},
        {"attribute repeated once decoded", "<A _x41_='1' A='2'/>", "line 1: attribute 'A' is repeated"},
        {"NUL in an attribute name", "<A a_x00_b='1'/>", "line 1: attribute name 'a_x00_b' holds a NUL byte"},
        {"attributes run together", "<A x='1'y='2'/>", "line 1: attributes must be separated by blanks"},
        {"blank after '<'", "< A/>", "line 1: '<' is not followed by an element name"},
        {"'/' not followed by '>'", "<A / >", "line 1: '/' is not followed by '>' in tag 'A'"},
        {"quote where a name belongs", "<A \"x\"/>", "line 1: unexpected character '\"' in tag 'A'"},
        {"end tag not closed", "<A>\n</A\n", "line 2: end tag 'A' is not closed"},
        {"end tag without a name", "<A></>", "line 1: '</' is not followed by an element name"},
        {"CDATA", "<A><![CDATA[x]]></A>", "line 1: CDATA sections are not supported"},
        {"document type", "<!DOCTYPE A>\n<A/>", "line 1: document type declarations are not supported"},
        {"other '<!' markup", "<A/>\n<!ELEMENT A>", "line 2: '<!' does not start a comment"},
        {"CR LF ends one line", "<A>\r\n<B>\r\n</A>\r\n",
         "line 3: end tag 'A' does not match start tag 'B' (line 2)"},
        {"lone CR ends a line", "<A>\r<B>\r</A>", "line 3: end tag 'A' does not match start tag 'B' (line 2)"},
        {"line ends inside a value count", "<A x='1\n2\r\n3' y=4/>", "line 3: attribute value is not quoted"},
        {"line ends inside a comment count", "<!--\n\n-->\n<A>", "line 4: element 'A' is not closed"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        std::string error;
        EXPECT_EQ(ParseProject(c.text, &error), nullptr);
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(ParseProject(c.text, nullptr), nullptr);
    }
}

// ---------------------------------------------------------------------------
// Load and save through the file system

TEST(ProjectFile, LoadErrorsNameTheFile) {
    ads::testing::FakeFiles fs;
    fs.Add("broken.orv", "<OrvaneProject>\n  <File name=x/>\n</OrvaneProject>\n");
    const std::pair<const char*, const char*> cases[] = {
        {"missing.orv", "missing.orv: cannot read the project file"},
        {"broken.orv", "broken.orv: line 2: attribute value is not quoted"},
    };
    for (const auto& [path, message] : cases) {
        std::string error;
        EXPECT_EQ(LoadProject(fs, path, &error), nullptr);
        EXPECT_EQ(error, message);
    }
}

TEST(ProjectFile, FailedSaveLeavesTheOldFileAndSaysWhy) {
    const auto tree = Build({{0, "OrvaneProject", {{"version", "2"}}}});
    const std::string old_text = "<OrvaneProject version=\"1\"/>\n";
    struct Case {
        const char* label;
        const char* path;
        const char* write_failure;
        const char* error;
    };
    const Case cases[] = {
        {"the disk is full", "demo.orv", "no space left on device",
         "demo.orv: cannot write the project file: no space left on device"},
        {"the path is a directory", "dir", "", "dir: cannot write the project file: is a directory"},
        {"a reason that names the path is the whole message", "demo.orv",
         "cannot write demo.orv: Access is denied.", "cannot write demo.orv: Access is denied."},
        {"a reason that holds the path only as a word", "demo",
         "demo mode is read-only", "demo: cannot write the project file: demo mode is read-only"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        ads::testing::FakeFiles fs;
        fs.Add("demo.orv", old_text);
        fs.listings["dir"];
        fs.write_failure = c.write_failure;
        std::string error;
        EXPECT_FALSE(SaveProject(fs, c.path, *tree, &error));
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(fs.contents, (std::map<std::string, std::string>{{"demo.orv", old_text}}));
        EXPECT_TRUE(fs.created.empty());
    }
}

// The same through the system's own file system, in a fresh folder.
class ProjectFileOnDisk : public ::testing::Test {
protected:
    std::vector<std::string> NamesInFolder() const { return platform::test_support::NamesIn(folder_.native()); }

    platform::FileSystem& files_ = *platform::System().files;
    platform::test_support::TempFolder folder_;
};

TEST_F(ProjectFileOnDisk, SaveReplacesTheFileAndLoadReadsItBack) {
    WriteNative(folder_.native() / "demo.orv", "<OrvaneProject version=\"1\"/>\n");
    const auto tree = Build({
        {0, "OrvaneProject", {{"version", "2"}}},
        {1, "Target", {{"name", "Debug \xE9t\xE9"}, {"note", "a\r\nb"}}},
    });
    std::string error;
    ASSERT_TRUE(SaveProject(files_, folder_ / "demo.orv", *tree, &error)) << error;
    // Byte for byte, with no line-end translation on the way.
    EXPECT_EQ(ReadNative(folder_.native() / "demo.orv"), SerializeProject(*tree));
    EXPECT_EQ(NamesInFolder(), std::vector<std::string>{"demo.orv"});
    const auto loaded = LoadProject(files_, folder_ / "demo.orv", &error);
    ASSERT_NE(loaded, nullptr) << error;
    EXPECT_EQ(Dump(*loaded), Dump(*tree));
}

}  // namespace
}  // namespace ads::host
