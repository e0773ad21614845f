#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ads/config_node.h"

namespace ads {
namespace {

// The walk as it is defined, recursion and all; the production walk must
// visit exactly the same nodes in exactly the same order.
void ReferenceWalk(ConfigNode* node, const std::function<bool(ConfigNode*)>& callback) {
    for (ConfigNode* cur = node; cur != nullptr; cur = cur->FirstChild()) {
        if (callback(cur)) break;
        ReferenceWalk(cur->NextSibling(), callback);
    }
}

ConfigNode* Add(ConfigNode* parent, const std::string& name) {
    auto* n = new ConfigNode(name);
    parent->AppendChild(n);
    return n;
}

std::vector<std::string> Visit(ConfigNode* start, const std::set<std::string>& stop_at) {
    std::vector<std::string> seen;
    WalkTree(start, [&](ConfigNode* n) {
        seen.push_back(n->Name());
        return stop_at.count(n->Name()) > 0;
    });
    return seen;
}

// root
// +- A
// |  +- A1
// |  |  +- A1a
// |  +- A2
// +- B
//    +- B1
std::unique_ptr<ConfigNode> SampleTree() {
    auto root = std::make_unique<ConfigNode>("root");
    ConfigNode* a = Add(root.get(), "A");
    ConfigNode* a1 = Add(a, "A1");
    Add(a1, "A1a");
    Add(a, "A2");
    ConfigNode* b = Add(root.get(), "B");
    Add(b, "B1");
    return root;
}

TEST(WalkTree, VisitsANodeThenItsLaterSiblingsThenItsOwnDescendants) {
    auto root = SampleTree();
    EXPECT_EQ((std::vector<std::string>{"root", "A", "B", "B1", "A1", "A2", "A1a"}), Visit(root.get(), {}));
}

TEST(WalkTree, TrueAtADeepNodeEndsOnlyThatBranch) {
    auto root = SampleTree();
    // Stopping at A1 skips A1's later sibling walk (A2) and its children,
    // but the walks still open for A and B go on.
    EXPECT_EQ((std::vector<std::string>{"root", "A", "B", "B1", "A1"}), Visit(root.get(), {"A1"}));
    // Stopping at B1 still visits the children of B's earlier sibling A.
    EXPECT_EQ((std::vector<std::string>{"root", "A", "B", "B1", "A1", "A2", "A1a"}),
              Visit(root.get(), {"B1"}));
    // Stopping at A skips A's later siblings and its children entirely.
    EXPECT_EQ((std::vector<std::string>{"root", "A"}), Visit(root.get(), {"A"}));
    EXPECT_EQ((std::vector<std::string>{"root"}), Visit(root.get(), {"root"}));
}

TEST(WalkTree, StartingInsideATreeWalksTheStartsLaterSiblingsButNotEarlierOnes) {
    auto root = SampleTree();
    ConfigNode* a2 = root->FirstChild()->LastChild();
    EXPECT_EQ((std::vector<std::string>{"A2"}), Visit(a2, {}));
    ConfigNode* a1 = root->FirstChild()->FirstChild();
    EXPECT_EQ((std::vector<std::string>{"A1", "A2", "A1a"}), Visit(a1, {}));
}

TEST(WalkTree, NullStartDoesNothing) {
    int calls = 0;
    WalkTree(nullptr, [&](ConfigNode*) { return ++calls, false; });
    EXPECT_EQ(0, calls);
}

// Random trees and random stop sets against the definition.
TEST(WalkTree, MatchesTheRecursiveDefinitionOnRandomTreesAndStops) {
    std::mt19937 rng(20261121);
    for (int round = 0; round < 400; ++round) {
        auto root = std::make_unique<ConfigNode>("n0");
        std::vector<ConfigNode*> nodes{root.get()};
        int size = 1 + static_cast<int>(rng() % 40);
        for (int i = 1; i < size; ++i) {
            ConfigNode* parent = nodes[rng() % nodes.size()];
            nodes.push_back(Add(parent, "n" + std::to_string(i)));
        }
        std::set<ConfigNode*> stops;
        for (ConfigNode* n : nodes) {
            if (rng() % 5 == 0) stops.insert(n);
        }
        ConfigNode* start = nodes[rng() % nodes.size()];
        std::vector<ConfigNode*> expected, actual;
        ReferenceWalk(start, [&](ConfigNode* n) { return expected.push_back(n), stops.count(n) > 0; });
        WalkTree(start, [&](ConfigNode* n) { return actual.push_back(n), stops.count(n) > 0; });
        ASSERT_EQ(expected, actual) << "round " << round;
    }
}

TEST(WalkTree, AHundredThousandFilesAreWalkedOnceEach) {
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    Add(root.get(), "Configurations");
    ConfigNode* files = Add(root.get(), "Files");
    for (int i = 0; i < 100000; ++i) Add(files, "File");
    size_t visits = 0;
    WalkTree(root.get(), [&](ConfigNode*) { return ++visits, false; });
    EXPECT_EQ(100003u, visits);
}

TEST(WalkTree, TenThousandNestedFoldersAreWalkedToTheBottom) {
    auto root = std::make_unique<ConfigNode>("OrvaneProject");
    ConfigNode* n = root.get();
    for (int i = 0; i < 10000; ++i) {
        n = Add(n, "Filter");
        Add(n, "File");  // a sibling at every level on the way down
    }
    size_t visits = 0;
    ConfigNode* last = nullptr;
    WalkTree(root.get(), [&](ConfigNode* node) { return ++visits, last = node, false; });
    EXPECT_EQ(20001u, visits);
    EXPECT_EQ("File", last->Name());
    EXPECT_EQ(10000, [&] { int d = 0; for (ConfigNode* p = last->Parent(); p != root.get(); p = p->Parent()) ++d; return d; }());
}

}  // namespace
}  // namespace ads
