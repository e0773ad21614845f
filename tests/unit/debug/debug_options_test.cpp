#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "debug/debug_options.h"
#include "support/fake_platform.h"

namespace ads::debug {
namespace {

using platform::RegistryRoot;

struct OptionsRow {
    const char* name;
    const char* packed;        // null: no "ADS_OPTDBG"
    bool found;
    int mode;
    std::array<int, 4> options;
    const char* driver;
    const char* library;
};

// "C:\drv\rdi.dll" is the one registered driver library.
const OptionsRow kOptionsRows[] = {
    {"new target default", "1,RDI 0,1,0,1,0,(\"\")", true, 1, {1, 0, 1, 0}, "RDI 0", "\"\""},
    {"registered library kept", "0,AGDI 2,0,1,0,1,(C:\\drv\\rdi.dll)", true, 0, {0, 1, 0, 1}, "AGDI 2",
     "C:\\drv\\rdi.dll"},
    {"unregistered library becomes two quotes", "0,RDI 0,1,1,1,1,(C:\\other.dll)", true, 0, {1, 1, 1, 1},
     "RDI 0", "\"\""},
    {"empty parentheses become two quotes", "1,RDI 0,1,0,1,0,()", true, 1, {1, 0, 1, 0}, "RDI 0", "\"\""},
    {"three fields fill mode and option 3 only", "0,JDI 1,7", true, 0, {7, 0, 0, 0}, "JDI 1", "\"\""},
    {"a comma cuts field 7", "1,RDI 0,1,0,1,0,(C:\\drv\\rdi.dll,x)", true, 1, {1, 0, 1, 0}, "RDI 0", "\"\""},
    {"text that is no number reads 0", "sim,RDI 0,a,b,c,d,()", true, 0, {0, 0, 0, 0}, "RDI 0", "\"\""},
    {"no packed options fails", nullptr, false, 0, {0, 0, 0, 0}, "", ""},
};

class DebugOptionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        fake.registry.Set(RegistryRoot::kCurrentUser, KindKey(DriverKind::kRdi), "0", "C:\\drv\\rdi.dll");
    }
    testing::FakePlatform fake;
    DriverList drivers{fake.registry, fake.ui};
    ConfigNode target{"Configuration"};
};

TEST_F(DebugOptionsTest, PackedFieldsAsTheDebuggerGetsThem) {
    for (const OptionsRow& row : kOptionsRows) {
        SCOPED_TRACE(row.name);
        ConfigNode node("Configuration");
        node.SetAttribute("SIMCLK", "12.5");
        if (row.packed != nullptr) node.SetAttribute("ADS_OPTDBG", row.packed);
        DebugOptions got;
        EXPECT_EQ(row.found, ReadDebugOptions(node, drivers, &got));
        EXPECT_DOUBLE_EQ(12.5, got.clock);  // read before the packed options
        EXPECT_EQ(row.mode, got.mode);
        EXPECT_EQ(row.options, got.options);
        EXPECT_EQ(row.driver, got.driver);
        EXPECT_EQ(row.library, got.driver_library);
    }
}

TEST_F(DebugOptionsTest, ModeChoosesTheInitScriptAndUpdateFlagNeedsExactlyOne) {
    struct Row {
        const char* mode;
        const char* update;  // null: missing
        const char* script;
        int flag;
    } rows[] = {{"0", "1", "emu.ini", 1}, {"1", "yes", "sim.ini", 0}, {"5", "1 ", "sim.ini", 0},
                {"1", nullptr, "sim.ini", 0}};
    for (const Row& row : rows) {
        ConfigNode node("Configuration");
        node.SetAttribute("ADS_OPTDBG", std::string(row.mode) + ",RDI 0,1,0,1,0,()");
        node.SetAttribute("InitScriptForEmu", "emu.ini");
        node.SetAttribute("InitScriptForSim", "sim.ini");
        if (row.update != nullptr) node.SetAttribute("UpdateTgtBeforeDbg", row.update);
        DebugOptions got;
        ASSERT_TRUE(ReadDebugOptions(node, drivers, &got));
        EXPECT_EQ(row.script, got.init_script) << row.mode;
        EXPECT_EQ(row.flag, got.update_before_debug) << (row.update ? row.update : "missing");
    }
}

TEST_F(DebugOptionsTest, StorageNodesAreReadByIndexSkippingGapsButNeverPast31) {
    target.SetAttribute("ADS_OPTDBG", "1,RDI 0,1,0,1,0,()");
    // name, size, download; a size that does not read is 0.
    const char* const nodes[][3] = {{"StorageNode0", "zz", "Yes"}, {"StorageNode5", "8000", "yEs"},
                                    {"StorageNode31", "10", "No"}, {"StorageNode32", "10", "Yes"}};
    for (const auto& n : nodes) {
        auto* node = new ConfigNode(n[0]);
        node->SetAttribute("Size", n[1]);
        node->SetAttribute("ShouldDownLoad", n[2]);
        target.AppendChild(node);
    }
    DebugOptions got;
    ASSERT_TRUE(ReadDebugOptions(target, drivers, &got));
    std::vector<std::string> present;
    for (size_t i = 0; i < got.has_storage.size(); ++i) {
        if (got.has_storage[i]) present.push_back(std::to_string(i) + ":" + std::to_string(got.storage[i].size) + ":" +
                                                  std::to_string(got.storage[i].download));
    }
    EXPECT_EQ((std::vector<std::string>{"0:0:1", "5:32768:1", "31:16:0"}), present);
}

}  // namespace
}  // namespace ads::debug
