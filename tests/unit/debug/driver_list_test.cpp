#include <gtest/gtest.h>

#include <string>
#include <map>
#include <vector>

#include "debug/driver_list.h"
#include "support/fake_platform.h"

namespace ads::debug {
namespace {

using platform::RegistryRoot;

int g_export = 0;
void* const kExport = &g_export;

class DriverListTest : public ::testing::Test {
protected:
    // A library that loads and exports the given names.
    void Library(const std::string& path, std::vector<std::string> exports) {
        fake.libraries.modules[path] = reinterpret_cast<void*>(0x100 + fake.libraries.modules.size());
        exports_[path] = std::move(exports);
    }
    DriverKind Probe(const std::string& path) {
        fake.libraries.symbols.clear();
        for (const std::string& name : exports_[path]) fake.libraries.symbols[name] = kExport;
        return ProbeDriver(fake.libraries, path);
    }
    bool Add(const std::string& path, DriverEntry* added) {
        fake.libraries.symbols.clear();
        for (const std::string& name : exports_[path]) fake.libraries.symbols[name] = kExport;
        return list.Add(fake.libraries, path, added);
    }
    std::string Listed() {
        std::string text;
        for (const DriverEntry& e : list.Enumerate()) text += FormatChosenDriver(e.kind, e.number) + "=" + e.path + ";";
        return text;
    }

    testing::FakePlatform fake;
    DriverList list{fake.registry, fake.ui};
    std::map<std::string, std::vector<std::string>> exports_;
};

TEST_F(DriverListTest, ProbeAsksAgdiThenRdiThenJdi) {
    Library("agdi_rdi.dll", {"WinRDI_GetRDIProcVec", "AG_Init"});
    Library("rdi_jdi.dll", {"GetJDI", "WinRDI_GetRDIProcVec"});
    Library("jdi.dll", {"GetJDI"});
    Library("none.dll", {"DllMain"});
    const std::pair<const char*, DriverKind> rows[] = {
        {"agdi_rdi.dll", DriverKind::kAgdi}, {"rdi_jdi.dll", DriverKind::kRdi}, {"jdi.dll", DriverKind::kJdi},
        {"none.dll", DriverKind::kUnknown},  {"missing.dll", DriverKind::kUnknown}, {"", DriverKind::kUnknown},
    };
    for (const auto& row : rows) EXPECT_EQ(row.second, Probe(row.first)) << row.first;
    // Every library that loaded was freed again.
    EXPECT_EQ(4u, fake.libraries.freed.size());
}

TEST_F(DriverListTest, NumbersTakeTheSmallestFreeOneAndRemovalNeedsTheSamePath) {
    Library("a.dll", {"WinRDI_GetRDIProcVec"});
    Library("b.dll", {"WinRDI_GetRDIProcVec"});
    Library("c.dll", {"WinRDI_GetRDIProcVec"});
    Library("x.dll", {});
    DriverEntry added;
    ASSERT_TRUE(Add("a.dll", &added));
    ASSERT_TRUE(Add("b.dll", &added));
    EXPECT_EQ(1, added.number);
    EXPECT_FALSE(list.Remove(DriverKind::kRdi, 0, "b.dll"));  // the stored path differs
    EXPECT_TRUE(list.Remove(DriverKind::kRdi, 0, "a.dll"));
    ASSERT_TRUE(Add("c.dll", &added));
    EXPECT_EQ(0, added.number);
    EXPECT_FALSE(Add("x.dll", &added));
    EXPECT_EQ((std::vector<std::string>{kDriverTypeUnknown}), fake.ui.messages);
    EXPECT_EQ("RDI 1=b.dll;RDI 0=c.dll;", Listed());
}

TEST_F(DriverListTest, KeysKeepTheirDoubledBackslashAndKindsListRdiAgdiJdi) {
    const std::string base = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\\\";
    fake.registry.Set(RegistryRoot::kCurrentUser, base + "JDIs", "0", "j.dll");
    fake.registry.Set(RegistryRoot::kCurrentUser, base + "AGDIs", "name", "g.dll");
    fake.registry.Set(RegistryRoot::kCurrentUser, base + "RDIs", "3", "r.dll");
    EXPECT_EQ("RDI 3=r.dll;AGDI 0=g.dll;JDI 0=j.dll;", Listed());
}

TEST(ChosenDriverTest, ParsesKindAndNumberOrLeavesTheSelection) {
    const std::pair<const char*, std::pair<DriverKind, int>> rows[] = {
        {"AGDI 12", {DriverKind::kAgdi, 12}}, {"XYZ 3", {DriverKind::kUnknown, 3}},
        {" 3", {DriverKind::kRdi, 9}}, {"RDI", {DriverKind::kRdi, 9}}};  // no blank after a kind: unchanged
    for (const auto& row : rows) {
        std::pair<DriverKind, int> got{DriverKind::kRdi, 9};
        ParseChosenDriver(row.first, &got.first, &got.second);
        EXPECT_EQ(row.second, got) << row.first;
    }
}

}  // namespace
}  // namespace ads::debug
