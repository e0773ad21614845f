#include "platform/platform.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace ads::platform {
namespace {

using test_support::Join;
using test_support::TempFolder;

// The test module is built beside the test program. It is named with ".dll"
// on every system, as the plug-in names its modules: on POSIX the loader
// must find the ".so" of the same name.
std::string TestModulePath(const std::string& spelling = "ads_test_module.dll") {
    return Join(System().files->ExecutableDirectory(), spelling);
}

TEST(LibrariesTest, LoadsAModuleNamedTheWindowsWayAndFindsItsFunction) {
    Libraries& libraries = *System().libraries;
    for (const char* spelling : {"ads_test_module.dll", "ads_test_module.DLL"}) {
        LibraryHandle module = libraries.Load(TestModulePath(spelling));
        ASSERT_NE(module, nullptr) << spelling << ": error " << libraries.LastError();
        using Answer = int (*)();
        auto answer = reinterpret_cast<Answer>(libraries.Symbol(module, "ads_test_module_answer"));
        ASSERT_NE(answer, nullptr) << spelling;
        EXPECT_EQ(answer(), 42) << spelling;

        EXPECT_EQ(libraries.Symbol(module, "no_such_function"), nullptr);
        EXPECT_NE(libraries.LastError(), 0u);
        EXPECT_TRUE(libraries.Free(module)) << spelling;
    }
}

// As LoadLibraryA does, a relative name is looked for in the program's own
// folder first, wherever the current folder is.
TEST(LibrariesTest, ARelativeNameIsFoundInTheProgramsFolder) {
    Libraries& libraries = *System().libraries;
    FileSystem& files = *System().files;
    TempFolder elsewhere;
    const std::string ours = files.CurrentDirectory();
    ASSERT_TRUE(files.ChangeDir(elsewhere.path()));
    LibraryHandle module = libraries.Load("ads_test_module.dll");
    ASSERT_TRUE(files.ChangeDir(ours));
    ASSERT_NE(module, nullptr) << "error " << libraries.LastError();
    EXPECT_NE(libraries.Symbol(module, "ads_test_module_answer"), nullptr);
    EXPECT_TRUE(libraries.Free(module));
}

TEST(LibrariesTest, LoadFailuresLeaveAnErrorCode) {
    Libraries& libraries = *System().libraries;
    TempFolder folder;
    std::ofstream(folder.native() / "not_a_module.dll") << "plain text, not a module";
    const struct {
        const char* name;
        std::string path;
    } rows[] = {
        {"missing module", folder / "no_such_module.dll"},
        {"missing folder", folder / "missing\\no_such_module.dll"},
        {"file that is no module", folder / "not_a_module.dll"},
        {"empty name", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(libraries.Load(row.path), nullptr) << row.name;
        EXPECT_NE(libraries.LastError(), 0u) << row.name;
    }
}

TEST(LibrariesTest, FreeOfANullHandleFails) {
    EXPECT_FALSE(System().libraries->Free(nullptr));
}

}  // namespace
}  // namespace ads::platform
