#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/shared_attributes.h"

namespace ads {
namespace {

std::vector<std::string> AttributeNames(const ConfigNode& n) {
    std::vector<std::string> names;
    for (auto* a = n.FirstAttribute(); a; a = n.NextAttribute(a)) names.push_back(a->Name());
    return names;
}

std::vector<std::string> ChildNames(const ConfigNode& n) {
    std::vector<std::string> names;
    for (auto* c = n.FirstChild(); c; c = c->NextSibling()) names.push_back(c->Name());
    return names;
}

// Counts destructions, to see that a removed node is really destroyed.
struct CountedNode : ConfigNode {
    explicit CountedNode(int* counter, const char* name = "Counted") : ConfigNode(name), counter_(counter) {}
    ~CountedNode() override { ++*counter_; }
    int* counter_;
};

TEST(ConfigNodeAttributes, AbsentReadsAsNullAndZeroWhilePresentEmptyReadsAsEmptyText) {
    ConfigNode n("Configuration");
    n.SetAttribute("Empty", "");
    int32_t i = 77;
    double d = 7.5;
    EXPECT_EQ(nullptr, n.GetAttribute("Missing"));
    EXPECT_EQ(nullptr, n.GetAttributeInt("Missing", &i));
    EXPECT_EQ(0, i);
    EXPECT_EQ(nullptr, n.GetAttributeDouble("Missing", &d));
    EXPECT_EQ(0.0, d);
    ASSERT_NE(nullptr, n.GetAttribute("Empty"));
    EXPECT_STREQ("", n.GetAttribute("Empty"));
    // A null pointer for the number is allowed; the text still comes back.
    n.SetAttribute("Clock", "12.5");
    EXPECT_STREQ("12.5", n.GetAttributeInt("Clock", nullptr));
    EXPECT_STREQ("12.5", n.GetAttributeDouble("Clock", nullptr));
}

TEST(ConfigNodeAttributes, NumbersAreReadLikeAtoiAndAtof) {
    struct Row {
        const char* text;
        int32_t as_int;
        double as_double;
    } rows[] = {
        {"1", 1, 1.0}, {"01", 1, 1.0}, {"-7", -7, -7.0}, {"12.000000", 12, 12.0},
        {"abc", 0, 0.0}, {"  42z", 42, 42.0}, {"", 0, 0.0},
    };
    for (const Row& r : rows) {
        ConfigNode n;
        n.SetAttribute("V", r.text);
        int32_t i = -1;
        double d = -1;
        n.GetAttributeInt("V", &i);
        n.GetAttributeDouble("V", &d);
        EXPECT_EQ(r.as_int, i) << r.text;
        EXPECT_DOUBLE_EQ(r.as_double, d) << r.text;
    }
}

TEST(ConfigNodeAttributes, SetterReplacesInPlaceAndAppendsNewNamesLast) {
    ConfigNode n("Configuration");
    n.SetAttribute("Name", "Debug");
    n.SetAttribute("ADS_ReBuild", "0");
    n.SetAttribute("CPU", "ARM7TDMI");
    n.SetAttributeInt("ADS_ReBuild", 1);
    EXPECT_EQ((std::vector<std::string>{"Name", "ADS_ReBuild", "CPU"}), AttributeNames(n));
    EXPECT_STREQ("1", n.GetAttribute("ADS_ReBuild"));
    n.SetAttributeInt("Other", -2147483647 - 1);
    EXPECT_EQ((std::vector<std::string>{"Name", "ADS_ReBuild", "CPU", "Other"}), AttributeNames(n));
    EXPECT_STREQ("-2147483648", n.GetAttribute("Other"));
    EXPECT_EQ(4u, n.AttributeCount());
}

TEST(ConfigNodeAttributes, NamesCompareExactlyAndCaseSensitively) {
    ConfigNode n;
    n.SetAttribute("Name", "a");
    EXPECT_EQ(nullptr, n.GetAttribute("name"));
    EXPECT_EQ(nullptr, n.GetAttribute("Name "));
    EXPECT_EQ(nullptr, n.GetAttribute(nullptr));
    n.SetAttribute("name", "b");
    EXPECT_STREQ("a", n.GetAttribute("Name"));
    EXPECT_STREQ("b", n.GetAttribute("name"));
}

TEST(ConfigNodeAttributes, AnEmptyNameIsStoredButNeverFound) {
    ConfigNode n;
    n.SetAttribute("", "first");
    n.SetAttribute("", "second");
    EXPECT_EQ(nullptr, n.GetAttribute(""));
    // Never found, so never replaced: each set appends another record.
    EXPECT_EQ(2u, n.AttributeCount());
    std::unique_ptr<ConfigNode> copy(n.Clone());
    EXPECT_EQ(2u, copy->AttributeCount());
}

std::string AttributeText(const ConfigNode& n) {
    std::string text;
    for (auto* a = n.FirstAttribute(); a; a = n.NextAttribute(a)) text += a->Name() + "=" + a->Value() + ";";
    return text;
}

// Copies share their attributes until one changes: the change stays in the
// node changed, and every pair goes when its last node does.
TEST(ConfigNodeAttributes, ACopyChangesAloneAndSharedPairsGoWithTheLastNode) {
    struct Row {
        const char* name;
        std::function<void(ConfigNode&)> change;
        const char* changed;
    } rows[] = {
        {"value replaced", [](ConfigNode& n) { n.SetAttribute("A", "9"); }, "A=9;B=2;"},
        {"name appended", [](ConfigNode& n) { n.SetAttribute("C", "3"); }, "A=1;B=2;C=3;"},
        {"value taken from its own attribute", [](ConfigNode& n) { n.SetAttribute("B", n.GetAttribute("A")); },
         "A=1;B=1;"},
        {"cleared", [](ConfigNode& n) { n.ClearAttributes(); }, ""},
        {"copied from another", [](ConfigNode& n) {
             ConfigNode other;
             other.SetAttribute("Z", "0");
             n.CopyAttributesFrom(other);
         }, "Z=0;"},
    };
    const size_t stored = detail::StoredAttributeCount();
    for (const Row& r : rows) {
        {
            ConfigNode original;
            original.SetAttribute("A", "1");
            original.SetAttribute("B", "2");
            std::unique_ptr<ConfigNode> first(original.Clone());
            std::unique_ptr<ConfigNode> second(first->Clone());
            EXPECT_EQ(stored + 2, detail::StoredAttributeCount()) << r.name << ": equal pairs are held once";
            r.change(*second);
            EXPECT_EQ(r.changed, AttributeText(*second)) << r.name;
            EXPECT_EQ("A=1;B=2;", AttributeText(*first)) << r.name;
            EXPECT_EQ("A=1;B=2;", AttributeText(original)) << r.name;
        }
        EXPECT_EQ(stored, detail::StoredAttributeCount()) << r.name << ": pairs outlive their nodes";
    }
}

TEST(ConfigNodeChildren, AppendFindAndOrder) {
    ConfigNode root("OrvaneProject");
    auto* a = new ConfigNode("Configurations");
    auto* b = new ConfigNode("Files");
    auto* c = new ConfigNode("Files");
    root.AppendChild(a);
    root.AppendChild(b);
    root.AppendChild(c);
    EXPECT_EQ((std::vector<std::string>{"Configurations", "Files", "Files"}), ChildNames(root));
    EXPECT_EQ(b, root.FindChild("Files"));  // the first in child order
    EXPECT_EQ(nullptr, root.FindChild("files"));
    EXPECT_EQ(nullptr, root.FindChild(""));
    EXPECT_EQ(&root, b->Parent());
    EXPECT_EQ(a, root.FirstChild());
    EXPECT_EQ(c, root.LastChild());
    EXPECT_EQ(nullptr, a->PrevSibling());
    EXPECT_EQ(nullptr, c->NextSibling());
}

TEST(ConfigNodeChildren, AppendingANodeOfAnotherParentMovesIt) {
    ConfigNode one("One"), two("Two");
    auto* x = new ConfigNode("X");
    one.AppendChild(x);
    two.AppendChild(x);
    EXPECT_EQ(nullptr, one.FirstChild());
    EXPECT_EQ(x, two.FirstChild());
    EXPECT_EQ(&two, x->Parent());
}

TEST(ConfigNodeChildren, RemoveChildRefusesAForeignNodeAndLeavesBothTreesAlone) {
    int destroyed = 0;
    ConfigNode mine("Mine"), theirs("Theirs");
    auto* own = new CountedNode(&destroyed, "Own");
    auto* foreign = new CountedNode(&destroyed, "Foreign");
    mine.AppendChild(own);
    theirs.AppendChild(foreign);
    EXPECT_FALSE(mine.RemoveChild(foreign));
    EXPECT_FALSE(mine.RemoveChild(nullptr));
    EXPECT_EQ(0, destroyed);
    EXPECT_EQ(foreign, theirs.FirstChild());
    EXPECT_EQ(own, mine.FirstChild());
    EXPECT_TRUE(mine.RemoveChild(own));
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(nullptr, mine.FirstChild());
    EXPECT_EQ(nullptr, mine.LastChild());
}

TEST(ConfigNodeChildren, RemovingAMiddleChildKeepsTheSiblingLinks) {
    ConfigNode root;
    ConfigNode* kids[3];
    for (int i = 0; i < 3; ++i) {
        kids[i] = new ConfigNode("K" + std::to_string(i));
        root.AppendChild(kids[i]);
    }
    ASSERT_TRUE(root.RemoveChild(kids[1]));
    EXPECT_EQ(kids[2], kids[0]->NextSibling());
    EXPECT_EQ(kids[0], kids[2]->PrevSibling());
    ASSERT_TRUE(root.RemoveChild(kids[2]));
    EXPECT_EQ(kids[0], root.LastChild());
}

TEST(ConfigNodeChildren, InsertBeforeAFirstChildMakesTheNewNodeFirst) {
    ConfigNode file("File");
    file.AppendChild(new ConfigNode("Other"));
    auto* settings = new ConfigNode("ADS_CParam");
    file.InsertChildBefore(settings, file.FirstChild());
    EXPECT_EQ((std::vector<std::string>{"ADS_CParam", "Other"}), ChildNames(file));
    file.InsertChildBefore(new ConfigNode("Last"), nullptr);
    EXPECT_EQ((std::vector<std::string>{"ADS_CParam", "Other", "Last"}), ChildNames(file));
}

TEST(ConfigNodeClone, CopiesThreeLevelsWithFreshParentLinks) {
    ConfigNode root("OrvaneProject");
    root.SetUserWord(0x1234);
    root.SetAttribute("Name", "demo");
    root.SetAttribute("Version", "3.00");
    auto* configs = new ConfigNode("Configurations");
    root.AppendChild(configs);
    auto* debug = new ConfigNode("Configuration");
    debug->SetAttribute("Name", "Debug");
    debug->SetAttribute("CPU", "ARM920T");
    debug->SetUserWord(7);
    configs->AppendChild(debug);
    auto* storage = new ConfigNode("StorageNode0");
    debug->AppendChild(storage);
    root.AppendChild(new ConfigNode("Files"));

    std::unique_ptr<ConfigNode> copy(root.Clone());
    EXPECT_EQ(nullptr, copy->Parent());
    EXPECT_EQ(0x1234u, copy->UserWord());
    EXPECT_EQ((std::vector<std::string>{"Name", "Version"}), AttributeNames(*copy));
    EXPECT_EQ((std::vector<std::string>{"Configurations", "Files"}), ChildNames(*copy));
    ConfigNode* c_configs = copy->FirstChild();
    ConfigNode* c_debug = c_configs->FirstChild();
    ConfigNode* c_storage = c_debug->FirstChild();
    EXPECT_NE(configs, c_configs);
    EXPECT_EQ(copy.get(), c_configs->Parent());
    EXPECT_EQ(c_configs, c_debug->Parent());
    EXPECT_EQ(c_debug, c_storage->Parent());
    EXPECT_EQ("StorageNode0", c_storage->Name());
    EXPECT_EQ(7u, c_debug->UserWord());
    EXPECT_EQ((std::vector<std::string>{"Name", "CPU"}), AttributeNames(*c_debug));

    // The copy is independent of the original.
    c_debug->SetAttribute("CPU", "ARM7TDMI");
    EXPECT_STREQ("ARM920T", debug->GetAttribute("CPU"));
}

TEST(ConfigNodeClone, ASubtreeCloneHasNoParentAndLeavesSiblingsOut) {
    ConfigNode root;
    auto* a = new ConfigNode("A");
    root.AppendChild(a);
    root.AppendChild(new ConfigNode("B"));
    a->AppendChild(new ConfigNode("A1"));
    std::unique_ptr<ConfigNode> copy(a->Clone());
    EXPECT_EQ(nullptr, copy->Parent());
    EXPECT_EQ(nullptr, copy->NextSibling());
    EXPECT_EQ((std::vector<std::string>{"A1"}), ChildNames(*copy));
}

TEST(ConfigNodeDepth, TenThousandNestedFoldersCloneAndDestroyWithoutRecursion) {
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* n = root.get();
    for (int i = 0; i < 10000; ++i) {
        auto* f = new ConfigNode("Filter");
        n->AppendChild(f);
        n = f;
    }
    n->AppendChild(new ConfigNode("File"));
    std::unique_ptr<ConfigNode> copy(root->Clone());
    int depth = 0;
    for (ConfigNode* c = copy.get(); c->FirstChild(); c = c->FirstChild()) ++depth;
    EXPECT_EQ(10001, depth);
    root.reset();
    copy.reset();
}

TEST(ConfigNodeDepth, DestroyingATreeDestroysEveryNode) {
    int destroyed = 0;
    {
        ConfigNode root;
        auto* a = new CountedNode(&destroyed);
        root.AppendChild(a);
        a->AppendChild(new CountedNode(&destroyed));
        a->AppendChild(new CountedNode(&destroyed));
        a->FirstChild()->AppendChild(new CountedNode(&destroyed));
        root.AppendChild(new CountedNode(&destroyed));
    }
    EXPECT_EQ(5, destroyed);
}

}  // namespace
}  // namespace ads
