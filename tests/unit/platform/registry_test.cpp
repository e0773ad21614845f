// The registry backends: the ".reg" file (both builds) and, on Windows, the
// real registry under a key of its own that the test deletes afterwards.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/registry.h"
#include "support/fake_platform.h"
#include "support/temp_folder.h"

namespace ads::platform {
namespace {

using ads::testing::FakeEnvironment;

FileSystem& RealFiles() { return *System().files; }

std::string Slurp(const std::string& path) {
    std::string text;
    RealFiles().ReadFile(path, &text);
    return text;
}

void Put(const std::string& path, const std::string& text) {
    std::string error;
    ASSERT_TRUE(RealFiles().WriteFileAtomically(path, text, &error)) << error;
}

std::string RandomName() {
    std::mt19937_64 rng(static_cast<uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
    return std::to_string(rng() % 1000000000);
}

// ---------------------------------------------------------------------------
// One contract, every backend: a key of the test's own under
// HKEY_CURRENT_USER\Software\OrvaneTests.

struct Backend {
    virtual ~Backend() = default;
    virtual Registry& registry() = 0;
};

struct FileBackend : Backend {
    FileBackend() : file(RealFiles(), folder.path() + "/registry.reg") {}
    Registry& registry() override { return file; }
    test_support::TempFolder folder;
    RegistryFile file;
};

#ifdef _WIN32
struct Win32Backend : Backend {
    Registry& registry() override { return WindowsRegistry(); }
};
#endif

class RegistryContract : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
#ifdef _WIN32
        if (GetParam() == "win32") backend = std::make_unique<Win32Backend>();
#endif
        if (GetParam() == "file") backend = std::make_unique<FileBackend>();
        ASSERT_TRUE(backend);
        base = "Software\\OrvaneTests\\" + RandomName();
    }
    void TearDown() override { reg().DeleteKey(RegistryRoot::kCurrentUser, base); }
    Registry& reg() { return backend->registry(); }

    std::unique_ptr<Backend> backend;
    std::string base;
};

std::vector<std::string> Backends() {
    std::vector<std::string> names{"file"};
#ifdef _WIN32
    names.push_back("win32");
#endif
    return names;
}

INSTANTIATE_TEST_SUITE_P(Backends, RegistryContract, ::testing::ValuesIn(Backends()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

TEST_P(RegistryContract, AMissingKeyDoesNotOpenAndTheErrorNamesIt) {
    EXPECT_EQ(nullptr, reg().OpenKey(RegistryRoot::kCurrentUser, base));
    EXPECT_NE(std::string::npos, reg().LastError().find(base)) << reg().LastError();
}

TEST_P(RegistryContract, WrittenTextsReadBackAndTheDefaultValueHasTheEmptyName) {
    auto key = reg().CreateKey(RegistryRoot::kCurrentUser, base + "\\Inner");
    ASSERT_TRUE(key) << reg().LastError();
    ASSERT_TRUE(key->WriteString("", "default text"));
    ASSERT_TRUE(key->WriteString("ARMHOME", "C:\\ARM\\ADSv1_2 \"quoted\""));
    ASSERT_TRUE(key->WriteString("Empty", ""));
    key.reset();

    auto again = reg().OpenKey(RegistryRoot::kCurrentUser, base + "\\Inner");
    ASSERT_TRUE(again) << reg().LastError();
    std::string value;
    ASSERT_TRUE(again->ReadString("", &value));
    EXPECT_EQ("default text", value);
    ASSERT_TRUE(again->ReadString("armhome", &value));  // names compare without case
    EXPECT_EQ("C:\\ARM\\ADSv1_2 \"quoted\"", value);
    ASSERT_TRUE(again->ReadString("Empty", &value));
    EXPECT_EQ("", value);
    EXPECT_FALSE(again->ReadString("Missing", &value));
    // The parent exists because its child does.
    EXPECT_TRUE(reg().OpenKey(RegistryRoot::kCurrentUser, base));
}

TEST_P(RegistryContract, ValuesListWithTheirLatestTexts) {
    auto key = reg().CreateKey(RegistryRoot::kCurrentUser, base);
    ASSERT_TRUE(key);
    ASSERT_TRUE(key->WriteString("First", "1"));
    ASSERT_TRUE(key->WriteString("Second", "2"));
    ASSERT_TRUE(key->WriteString("First", "one"));
    std::vector<RegistryValue> values;
    ASSERT_TRUE(key->ListValues(&values));
    std::map<std::string, std::string> seen;
    for (const RegistryValue& v : values) {
        EXPECT_TRUE(v.is_string) << v.name;
        seen[v.name] = v.data;
    }
    EXPECT_EQ((std::map<std::string, std::string>{{"First", "one"}, {"Second", "2"}}), seen);
}

TEST_P(RegistryContract, DeletingAValueOrAKeyTakesItAway) {
    auto key = reg().CreateKey(RegistryRoot::kCurrentUser, base + "\\A\\B");
    ASSERT_TRUE(key);
    ASSERT_TRUE(key->WriteString("X", "1"));
    EXPECT_TRUE(key->DeleteValue("x"));
    std::string value;
    EXPECT_FALSE(key->ReadString("X", &value));
    EXPECT_FALSE(key->DeleteValue("X"));
    key.reset();

    EXPECT_TRUE(reg().DeleteKey(RegistryRoot::kCurrentUser, base + "\\A"));
    EXPECT_FALSE(reg().OpenKey(RegistryRoot::kCurrentUser, base + "\\A\\B"));
    EXPECT_FALSE(reg().OpenKey(RegistryRoot::kCurrentUser, base + "\\A"));
    EXPECT_FALSE(reg().DeleteKey(RegistryRoot::kCurrentUser, base + "\\A"));
}

// ---------------------------------------------------------------------------
// The .reg file format.

class RegistryFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir = folder.path();
        path = dir + "/registry.reg";
    }
    std::string Read(RegistryRoot root, const std::string& key, const std::string& name) {
        RegistryFile file(RealFiles(), path);
        auto k = file.OpenKey(root, key);
        std::string value = "(no key)";
        if (k && !k->ReadString(name, &value)) value = "(no value)";
        return value;
    }
    test_support::TempFolder folder;
    std::string dir, path;
};

TEST_F(RegistryFileTest, BothHeadersAndEveryEncodingReadTheSameKeys) {
    const std::string body =
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion]\r\n"
        "@=\"v1.2\"\r\n";
    auto utf16 = [](const std::string& ascii) {
        std::string out = "\xFF\xFE";
        for (char c : ascii) out += std::string{c, '\0'};
        return out;
    };
    struct Row {
        const char* name;
        std::string text;
    } rows[] = {
        {"version 5", "Windows Registry Editor Version 5.00\r\n\r\n" + body},
        {"REGEDIT4", "REGEDIT4\r\n\r\n" + body},
        {"unix line ends", "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion]\n@=\"v1.2\""},
        {"UTF-8 byte-order mark", "\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n\r\n" + body},
        {"UTF-16 as regedit exports", utf16("Windows Registry Editor Version 5.00\r\n\r\n" + body)},
    };
    for (const Row& row : rows) {
        Put(path, row.text);
        EXPECT_EQ("v1.2", Read(RegistryRoot::kLocalMachine, "SOFTWARE\\ARM Limited\\ARM Developer Suite\\CurrentVersion", ""))
            << row.name;
    }
}

TEST_F(RegistryFileTest, EscapesInNamesAndValuesAreUndone) {
    Put(path,
        "REGEDIT4\r\n\r\n"
        "[HKEY_CURRENT_USER\\Software\\X]\r\n"
        "\"ARMHOME\"=\"C:\\\\ARM\\\\ADSv1_2\"\r\n"
        "\"say \\\"hi\\\"\"=\"a \\\"quoted\\\" word\"\r\n"
        "\"back\\\\slash\"=\"\\\\\\\\server\\\\share\"\r\n");
    EXPECT_EQ("C:\\ARM\\ADSv1_2", Read(RegistryRoot::kCurrentUser, "Software\\X", "ARMHOME"));
    EXPECT_EQ("a \"quoted\" word", Read(RegistryRoot::kCurrentUser, "Software\\X", "say \"hi\""));
    EXPECT_EQ("\\\\server\\share", Read(RegistryRoot::kCurrentUser, "Software\\X", "back\\slash"));
}

TEST_F(RegistryFileTest, ADoubledBackslashInAKeyTextStaysDoubled) {
    // The debugger's driver keys are named this way.
    const std::string doubled = "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\\\RDI";
    Put(path, "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\" + doubled + "]\r\n\"Dll\"=\"rdi.dll\"\r\n");
    EXPECT_EQ("rdi.dll", Read(RegistryRoot::kCurrentUser, doubled, "Dll"));
    EXPECT_EQ("(no key)", Read(RegistryRoot::kCurrentUser,
                               "Software\\Orvane\\Orvane3\\Debuggers\\ArmDebugger\\TargetDlls\\RDI", "Dll"));

    // Written back, and created anew, the key text is the one given.
    RegistryFile file(RealFiles(), path);
    ASSERT_TRUE(file.OpenKey(RegistryRoot::kCurrentUser, doubled)->WriteString("Dll", "new.dll"));
    ASSERT_TRUE(file.CreateKey(RegistryRoot::kCurrentUser, doubled + "\\\\JDI"));
    const std::string text = Slurp(path);
    EXPECT_NE(std::string::npos, text.find("[HKEY_CURRENT_USER\\" + doubled + "]\r\n\"Dll\"=\"new.dll\"\r\n"));
    EXPECT_NE(std::string::npos, text.find("[HKEY_CURRENT_USER\\" + doubled + "\\\\JDI]\r\n"));
}

TEST_F(RegistryFileTest, AMalformedFileNamesItsLineAndIsNeverRewritten) {
    struct Row {
        const char* name;
        std::string text;
        int line;
    } rows[] = {
        {"no header", "[HKEY_CURRENT_USER\\Software\\X]\r\n", 1},
        {"a single backslash in a value", "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\X]\r\n\"A\"=\"C:\\ARM\"\r\n", 4},
        {"an unclosed quote", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"A\"=\"open\r\n", 3},
        {"a value before any key", "REGEDIT4\r\n\"A\"=\"1\"\r\n", 2},
        {"a line that is nothing", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\nA=1\r\n", 3},
        {"an unknown root", "REGEDIT4\r\n\r\n\r\n[HKEY_NOWHERE\\X]\r\n", 4},
        {"a key line without its bracket", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X\r\n", 2},
        {"a bad dword", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"D\"=dword:xyz\r\n", 3},
        {"bad hex bytes", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"H\"=hex:01,2,03\r\n", 3},
        {"text after the closing quote", "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"A\"=\"1\" 2\r\n", 3},
        {"a key deletion", "REGEDIT4\r\n[-HKEY_CURRENT_USER\\X]\r\n", 2},
    };
    for (const Row& row : rows) {
        Put(path, row.text);
        RegistryFile file(RealFiles(), path);
        const std::string where = path + ":" + std::to_string(row.line) + ": ";
        EXPECT_EQ(nullptr, file.OpenKey(RegistryRoot::kCurrentUser, "X")) << row.name;
        EXPECT_EQ(0u, file.LastError().find(where)) << row.name << ": " << file.LastError();
        EXPECT_EQ(nullptr, file.CreateKey(RegistryRoot::kCurrentUser, "Y")) << row.name;
        EXPECT_FALSE(file.DeleteKey(RegistryRoot::kCurrentUser, "X")) << row.name;
        EXPECT_EQ(0u, file.LastError().find(where)) << row.name;
        EXPECT_EQ(row.text, Slurp(path)) << row.name;
    }
}

TEST_F(RegistryFileTest, AChangeRewritesOnlyItsOwnLine) {
    const std::string before =
        "REGEDIT4\n"
        "; kept: a comment\n"
        "\n"
        "[HKEY_LOCAL_MACHINE\\SOFTWARE\\A]\n"
        "\"Keep\"=\"as it was\"\n"
        "\"Count\"=dword:0000002a\n"
        "\"Blob\"=hex:01,02,\\\n"
        "  03,04\n"
        "\"Change\"=\"old\"\n"
        "\n"
        "[HKEY_CURRENT_USER\\Other]\n"
        "@=\"x\"\n";
    Put(path, before);
    RegistryFile file(RealFiles(), path);
    auto key = file.OpenKey(RegistryRoot::kLocalMachine, "SOFTWARE\\A");
    ASSERT_TRUE(key) << file.LastError();
    ASSERT_TRUE(key->WriteString("change", "new"));
    ASSERT_TRUE(key->WriteString("Added", "C:\\x"));
    std::string expected = before;
    expected.replace(expected.find("\"Change\"=\"old\"\n"), 15, "\"Change\"=\"new\"\n\"Added\"=\"C:\\\\x\"\n");
    EXPECT_EQ(expected, Slurp(path));

    // Values of other types are listed but are no texts.
    std::vector<RegistryValue> values;
    ASSERT_TRUE(key->ListValues(&values));
    ASSERT_EQ(5u, values.size());
    EXPECT_EQ("Count", values[1].name);
    EXPECT_FALSE(values[1].is_string);
    std::string text;
    EXPECT_FALSE(key->ReadString("Blob", &text));
}

TEST_F(RegistryFileTest, ANewFileGetsTheVersion5HeaderAndItsFolders) {
    const std::string deep = dir + "/a/b/registry.reg";
    RegistryFile file(RealFiles(), deep);
    EXPECT_EQ(nullptr, file.OpenKey(RegistryRoot::kLocalMachine, "SOFTWARE\\X"));  // no file: no keys
    EXPECT_TRUE(file.OpenKey(RegistryRoot::kLocalMachine, ""));                   // but the root is there
    auto key = file.CreateKey(RegistryRoot::kLocalMachine, "SOFTWARE\\X");
    ASSERT_TRUE(key) << file.LastError();
    ASSERT_TRUE(key->WriteString("", "v"));
    EXPECT_EQ("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\X]\r\n@=\"v\"\r\n\r\n",
              Slurp(deep));
    ASSERT_TRUE(file.CreateKey(RegistryRoot::kCurrentUser, "Y")->WriteString("N", "1"));
    EXPECT_EQ("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\X]\r\n@=\"v\"\r\n\r\n"
              "[HKEY_CURRENT_USER\\Y]\r\n\"N\"=\"1\"\r\n\r\n",
              Slurp(deep));
}

TEST_F(RegistryFileTest, AUtf16FileStaysUtf16) {
    std::string text = "\xFF\xFE";
    for (char c : std::string("Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\X]\r\n")) {
        text += std::string{c, '\0'};
    }
    Put(path, text);
    RegistryFile file(RealFiles(), path);
    ASSERT_TRUE(file.OpenKey(RegistryRoot::kCurrentUser, "X")->WriteString("N", "\xC3\xA9"));  // é in UTF-8
    const std::string after = Slurp(path);
    ASSERT_EQ(0u, after.find(text));
    EXPECT_EQ(std::string("\"\0N\0\"\0=\0\"\0\xE9\0\"\0\r\0\n\0", 18), after.substr(text.size()));
    EXPECT_EQ("\xC3\xA9", Read(RegistryRoot::kCurrentUser, "X", "N"));
}

TEST_F(RegistryFileTest, ALineEndCannotBeStored) {
    RegistryFile file(RealFiles(), path);
    auto key = file.CreateKey(RegistryRoot::kCurrentUser, "X");
    ASSERT_TRUE(key);
    const std::string before = Slurp(path);
    EXPECT_FALSE(key->WriteString("N", "two\nlines"));
    EXPECT_EQ(before, Slurp(path));
}

TEST(RegistryFileWrites, GoWholeThroughTheAtomicWriteAndAFailureLeavesTheOldFile) {
    ads::testing::FakeFiles files;
    const std::string old = "REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"N\"=\"old\"\r\n";
    files.Add("/r.reg", old);
    RegistryFile file(files, "/r.reg");
    auto key = file.OpenKey(RegistryRoot::kCurrentUser, "X");
    ASSERT_TRUE(key);
    std::string value;
    ASSERT_TRUE(key->ReadString("N", &value));
    EXPECT_TRUE(files.writes.empty());  // reading never writes

    files.write_failure = "cannot write /r.reg: disk full";
    EXPECT_FALSE(key->WriteString("N", "new"));
    EXPECT_EQ("cannot write /r.reg: disk full", file.LastError());
    EXPECT_EQ(old, files.contents["/r.reg"]);

    files.write_failure.clear();
    EXPECT_TRUE(key->WriteString("N", "new"));
    EXPECT_EQ((std::vector<std::string>{"/r.reg", "/r.reg"}), files.writes);
    EXPECT_EQ("REGEDIT4\r\n[HKEY_CURRENT_USER\\X]\r\n\"N\"=\"new\"\r\n", files.contents["/r.reg"]);
}

TEST(RegistryFileLocation, FollowsTheEnvironment) {
    struct Row {
        const char* name;
        std::map<std::string, std::string> vars;
        std::string path;
    } rows[] = {
        {"named outright", {{"ORVANE_REGISTRY", "/x/r.reg"}, {"HOME", "/home/u"}}, "/x/r.reg"},
        {"XDG folder", {{"XDG_CONFIG_HOME", "/cfg"}, {"HOME", "/home/u"}}, "/cfg/orvane/registry.reg"},
        {"home folder", {{"HOME", "/home/u"}}, "/home/u/.config/orvane/registry.reg"},
        {"empty values count as unset", {{"ORVANE_REGISTRY", ""}, {"XDG_CONFIG_HOME", ""}, {"HOME", "/h"}},
         "/h/.config/orvane/registry.reg"},
        {"nothing", {}, ""},
    };
    for (const Row& row : rows) {
        FakeEnvironment env;
        env.vars = row.vars;
        EXPECT_EQ(row.path, DefaultRegistryFilePath(env)) << row.name;
    }
}

}  // namespace
}  // namespace ads::platform
