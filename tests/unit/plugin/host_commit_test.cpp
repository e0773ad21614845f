// orvhost's node services, the other side of the plug-in's clone, edit and
// commit protocol.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "plugin_host.h"

namespace ads::host {
namespace {

ConfigNode* Add(ConfigNode* parent, const char* name) {
    auto* n = new ConfigNode(name);
    parent->AppendChild(n);
    return n;
}

std::string Dump(const ConfigNode& n) {
    std::string out = n.Name() + "{";
    for (auto* a = n.FirstAttribute(); a; a = n.NextAttribute(a)) out += a->name + "=" + a->value + ";";
    for (auto* c = n.FirstChild(); c; c = c->NextSibling()) out += Dump(*c);
    return out + "}";
}

TEST(CommitNode, TheNodeTakesTheEditedAttributesAndChildren) {
    ConfigNode root("OrvaneProject");
    ConfigNode* config = Add(&root, "Configuration");
    config->SetAttribute("Name", "Debug");
    config->SetAttribute("Old", "x");
    ConfigNode* storage = Add(config, "StorageNode0");
    storage->SetAttribute("Size", "8000");
    Add(config, "StorageNode1");

    std::unique_ptr<ConfigNode> edit(config->Clone());
    edit->SetAttribute("ADS_ReBuild", "1");
    edit->FirstChild()->SetAttribute("Size", "4000");
    edit->RemoveChild(edit->LastChild());
    Add(edit.get(), "StorageNode5");
    std::string expected = Dump(*edit);

    EXPECT_EQ(1u, PluginHost::CommitNode(config, edit.get()));
    EXPECT_EQ(expected, Dump(*config));
    // A child whose name stayed at its place is the same node, updated.
    EXPECT_EQ(storage, config->FirstChild());
    EXPECT_STREQ("4000", storage->GetAttribute("Size"));
    EXPECT_EQ(config, config->LastChild()->Parent());
    // The edited copy is the caller's and is left as it was.
    EXPECT_EQ(expected, Dump(*edit));
}

TEST(CommitNode, RemovedAttributesAreGoneAndOrderFollowsTheEdit) {
    ConfigNode node("Configuration");
    node.SetAttribute("A", "1");
    node.SetAttribute("B", "2");
    ConfigNode edit("Configuration");
    edit.SetAttribute("B", "3");
    edit.SetAttribute("C", "4");
    PluginHost::CommitNode(&node, &edit);
    EXPECT_EQ("Configuration{B=3;C=4;}", Dump(node));
}

TEST(CommitNode, NullArgumentsAreRefused) {
    ConfigNode node("X");
    EXPECT_EQ(0u, PluginHost::CommitNode(nullptr, &node));
    EXPECT_EQ(0u, PluginHost::CommitNode(&node, nullptr));
}

TEST(CommitNode, ADeepEditIsCommittedWithoutRecursion) {
    ConfigNode root("OrvaneProject");
    ConfigNode* n = &root;
    for (int i = 0; i < 10000; ++i) n = Add(n, "Filter");
    std::unique_ptr<ConfigNode> edit(root.Clone());
    ConfigNode* deepest = edit.get();
    while (deepest->FirstChild()) deepest = deepest->FirstChild();
    deepest->SetAttribute("Name", "bottom");
    PluginHost::CommitNode(&root, edit.get());
    EXPECT_STREQ("bottom", n->GetAttribute("Name"));
}

TEST(FindSettingNode, FindsOrCreatesTheSettingsChildAsTheFirstChild) {
    ConfigNode file("File");
    Add(&file, "Other");
    ConfigNode* created = PluginHost::FindSettingNode(&file, "ADS_CParam", "ADS_CfgFlag");
    ASSERT_NE(nullptr, created);
    EXPECT_EQ(created, file.FirstChild());
    EXPECT_EQ("ADS_CParam", created->Name());
    EXPECT_STREQ("1", created->GetAttribute("ADS_CfgFlag"));
    EXPECT_EQ(created, PluginHost::FindSettingNode(&file, "ADS_CParam", "ADS_CfgFlag"));
    EXPECT_EQ(2, [&] { int n = 0; for (auto* c = file.FirstChild(); c; c = c->NextSibling()) ++n; return n; }());
    EXPECT_EQ(nullptr, PluginHost::FindSettingNode(nullptr, "ADS_CParam", "ADS_CfgFlag"));
    EXPECT_EQ(nullptr, PluginHost::FindSettingNode(&file, nullptr, "ADS_CfgFlag"));
}

TEST(RegisterToolchain, KeepsTheTextsOnlyWhenAllFifteenAreThere) {
    platform::Platform& real = platform::System();
    PluginHost host(real);
    AdsToolchainRecord record;
    std::vector<std::string> texts;
    for (int i = 0; i < 15; ++i) texts.push_back("t" + std::to_string(i));
    for (int i = 0; i < 15; ++i) record.text[i] = texts[i].c_str();
    EXPECT_EQ(1u, PluginHost::RegisterToolchain(&record));
    EXPECT_EQ(texts, host.toolchain());
    record.text[14] = "";
    EXPECT_EQ(0u, PluginHost::RegisterToolchain(&record));
    EXPECT_EQ(0u, PluginHost::RegisterToolchain(nullptr));
}

}  // namespace
}  // namespace ads::host
