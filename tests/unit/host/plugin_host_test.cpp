// orvhost's node services, the other side of the plug-in's clone, edit and
// commit protocol.
#include <gtest/gtest.h>

#include <cstring>
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
    for (auto* a = n.FirstAttribute(); a; a = n.NextAttribute(a)) out += a->Name() + "=" + a->Value() + ";";
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

namespace ads::host {
namespace {

// Host slot 16 with a real program: the caller's buffer receives at most
// its size less the terminator, the word receives the exit code.
class RunToolTest : public ::testing::Test {
protected:
    void SetUp() override {
        child = platform::System().files->ExecutableDirectory() + "/ads_test_child";
#ifdef _WIN32
        child += ".exe";
#endif
        ASSERT_TRUE(platform::System().files->FileExists(child)) << child;
    }
    // The executable as the plug-in writes it: a Windows path.
    std::string Command(const std::string& args) {
        std::string exe = child;
        for (char& c : exe) {
            if (c == '/') c = '\\';
        }
        return platform::QuoteArgument(exe) + " " + args;
    }
    std::string child;
    PluginHost host{platform::System()};
};

TEST_F(RunToolTest, CapturesOutputAndTheExitCode) {
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    AdsWord exit_code = 99;
    EXPECT_EQ(1u, PluginHost::RunTool(Command("--out \"a b\" --err \"c\\\"d\" --exit 3").c_str(), 0,
                                      buffer, sizeof buffer, &exit_code));
    EXPECT_EQ(3u, exit_code);
    std::string text(buffer);
    EXPECT_NE(std::string::npos, text.find("a b")) << text;
    EXPECT_NE(std::string::npos, text.find("c\"d")) << text;
}

TEST_F(RunToolTest, OutputStopsAtTheBufferSizeWithItsTerminator) {
    char buffer[16];
    std::memset(buffer, 'x', sizeof buffer);
    AdsWord exit_code = 99;
    EXPECT_EQ(1u, PluginHost::RunTool(Command("--bytes 100").c_str(), 0, buffer, sizeof buffer, &exit_code));
    EXPECT_EQ(0u, exit_code);
    EXPECT_EQ(15u, std::strlen(buffer));
    EXPECT_EQ(std::string("012345678901234"), buffer);
}

TEST_F(RunToolTest, AProgramThatCannotStartReportsFailure) {
    char buffer[16] = "unchanged";
    AdsWord exit_code = 0;
    EXPECT_EQ(0u, PluginHost::RunTool("C:\\no\\such\\armcc.exe -c x.c", 0, buffer, sizeof buffer, &exit_code));
    EXPECT_EQ(0u, PluginHost::RunTool(nullptr, 0, buffer, sizeof buffer, &exit_code));
}

TEST(WriteOutput, AppendsThePaneTextUnchanged) {
    PluginHost host(platform::System());
    std::string pane;
    host.SetOutput(&pane);
    EXPECT_EQ(1u, PluginHost::WriteOutput("\r\nLinking...\r\n", 0));
    EXPECT_EQ(1u, PluginHost::WriteOutput("x", 0));
    EXPECT_EQ(0u, PluginHost::WriteOutput(nullptr, 0));
    EXPECT_EQ("\r\nLinking...\r\nx", pane);
}

}  // namespace
}  // namespace ads::host
