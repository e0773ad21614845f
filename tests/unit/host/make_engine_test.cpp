// The make engine against a plug-in of the test's own: its command slot
// answers from a table, its parser records what it is handed, its keyed
// lookup answers dependency sets, and every call notes its thread. The
// commands run ads_make_test_tool, built beside this program, in a fresh
// project folder whose file times the test sets.
#include "make_engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "dependency_file.h"
#include "platform/platform.h"
#include "support/temp_folder.h"

namespace ads::host {
namespace {

namespace fs = std::filesystem;

struct FakePlugin {
    std::thread::id main_thread;
    int calls_off_main_thread = 0;
    std::map<std::string, std::string> commands;  // by "RelativePath"; absent: none
    std::string target_command;
    std::map<std::string, std::vector<std::string>> sets;
    std::vector<std::string> log;     // "ask src\a.c", "ask target", "parse ...", "lookup ..."
    std::vector<std::string> parsed;  // texts handed to the parser, in order
    std::vector<AdsWord> project_handles;
    std::string result;
};

FakePlugin* g_fake = nullptr;

void NoteThread() {
    if (std::this_thread::get_id() != g_fake->main_thread) ++g_fake->calls_off_main_thread;
}

const char* ADS_CALL FakeBuildText(char* text, AdsWord project, ConfigNode* node, int flag) {
    NoteThread();
    if (flag == 0 || project == 0 || node == nullptr) return text;
    g_fake->project_handles.push_back(project);
    if (node->Name() == "File") {
        const std::string source = node->GetAttribute("RelativePath");
        g_fake->log.push_back("ask " + source);
        auto it = g_fake->commands.find(source);
        g_fake->result = it == g_fake->commands.end() ? std::string() : it->second;
    } else {
        g_fake->log.push_back("ask target");
        g_fake->result = g_fake->target_command;
    }
    return g_fake->result.c_str();
}

void ADS_CALL FakeParse(const char* text, int /*flags*/) {
    NoteThread();
    g_fake->parsed.emplace_back(text);
    g_fake->log.push_back("parse " + g_fake->parsed.back());
}

// Answers as the plug-in does: whole lines that fit, their number.
int ADS_CALL FakeLookup(const char* key, AdsWord buffer, AdsWord size, AdsWord) {
    NoteThread();
    g_fake->log.push_back(std::string("lookup ") + key);
    auto it = g_fake->sets.find(key);
    if (it == g_fake->sets.end()) return 0;
    char* out = reinterpret_cast<char*>(buffer);
    size_t used = 0;
    int count = 0;
    for (const std::string& dep : it->second) {
        if (used + dep.size() + 2 > size) break;
        std::memcpy(out + used, dep.data(), dep.size());
        used += dep.size();
        out[used++] = '\n';
        ++count;
    }
    out[used] = '\0';
    return count;
}

// A project folder with a Debug target, the fake plug-in and an engine.
class Scene {
public:
    Scene() {
        dir = folder.path();
        project_file = dir + "/demo.orv";
        base = fs::file_time_type::clock::now() - std::chrono::hours(1);
        for (const char* sub : {"src", "inc", "Debug", "meet"}) fs::create_directories(fs::path(dir) / sub);

        root = std::make_unique<ConfigNode>("OrvaneProject");
        root->SetAttribute("Name", "demo");
        auto* configs = new ConfigNode("Configurations");
        root->AppendChild(configs);
        debug = new ConfigNode("Configuration");
        debug->SetAttribute("Name", "Debug");
        configs->AppendChild(debug);
        files = new ConfigNode("Files");
        root->AppendChild(files);

        fake.main_thread = std::this_thread::get_id();
        g_fake = &fake;
        table.GetFileBuildText = FakeBuildText;
        table.ParseOutput = FakeParse;
        table.LookupKeyed = FakeLookup;
        engine = std::make_unique<MakeEngine>(platform::System(), &table, project_file);
        engine->SetDiagnostics([this](const std::string& line) { diagnostics += line; });
        fake.target_command = Command("--out linked");
    }
    ~Scene() { g_fake = nullptr; }

    // A C source "src\<name>.c" with the object "<name>.o", its command
    // writing the object and printing "output of <name>".
    ConfigNode* AddSource(const std::string& name, ConfigNode* parent = nullptr) {
        auto* file = new ConfigNode("File");
        const std::string relative = "src\\" + name + ".c";
        file->SetAttribute("RelativePath", relative.c_str());
        file->SetAttributeInt("FileType", 1);
        file->SetAttribute("Output", (name + ".o").c_str());
        (parent ? parent : files)->AppendChild(file);
        fake.commands[relative] = Command("--out \"output of " + name + "\" --write Debug\\" + name + ".o");
        return file;
    }

    // Creates the file when missing and sets its time to `seconds` after
    // the scene's base time.
    void Touch(const std::string& relative, int seconds) {
        const fs::path path = fs::path(dir) / relative;
        if (!fs::exists(path)) std::ofstream(path) << relative;
        fs::last_write_time(path, base + std::chrono::seconds(seconds));
    }
    void Remove(const std::string& relative) { fs::remove(fs::path(dir) / relative); }
    bool Exists(const std::string& relative) const { return fs::exists(fs::path(dir) / relative); }
    // The full path the plug-in would give for a dependency.
    std::string Full(const std::string& relative) const { return dir + "/" + relative; }

    std::string Command(const std::string& script) const {
        std::string tool = platform::System().files->ExecutableDirectory() + "/ads_make_test_tool" +
                           platform::test_support::kExecutableSuffix;
        return platform::QuoteArgument(tool) + " " + script;
    }

    void Record(BuildResult result, std::map<std::string, std::vector<std::string>> sets = {},
                const std::string& target = "Debug") {
        DependencyFile deps;
        deps.targets[target].result = result;
        deps.targets[target].sets = std::move(sets);
        std::string error;
        ASSERT_TRUE(SaveDependencies(*platform::System().files, engine->dependency_file(), deps, &error)) << error;
    }
    void WriteDependencyFile(const std::string& text) {
        std::ofstream(fs::path(engine->dependency_file()), std::ios::binary) << text;
    }
    DependencyFile Recorded() const {
        DependencyFile deps;
        LoadDependencies(*platform::System().files, engine->dependency_file(), &deps);
        return deps;
    }

    std::vector<std::string> Asked() const {
        std::vector<std::string> asked;
        for (const std::string& entry : fake.log) {
            if (entry.rfind("ask ", 0) == 0) asked.push_back(entry.substr(4));
        }
        return asked;
    }
    bool Make() { return engine->MakeTarget("Debug", root.get()); }

    platform::test_support::TempFolder folder;
    std::string dir;
    std::string project_file;
    fs::file_time_type base;
    std::unique_ptr<ConfigNode> root;
    ConfigNode* debug = nullptr;
    ConfigNode* files = nullptr;
    FakePlugin fake;
    PluginInterface table{};
    std::unique_ptr<MakeEngine> engine;
    std::string diagnostics;
};

TEST(MakeEngine, UpToDateDecisions) {
    struct Row {
        const char* name;
        std::function<void(Scene&, ConfigNode* file)> arrange;
        bool out_of_date;
    };
    const auto header_set = [](Scene& s) {
        return std::map<std::string, std::vector<std::string>>{{"src\\a.c", {s.Full("src/a.c"), s.Full("inc/h.h")}}};
    };
    const Row rows[] = {
        {"object missing", [](Scene& s, ConfigNode*) { s.Touch("src/a.c", 0); }, true},
        {"object newer than the source",
         [](Scene& s, ConfigNode*) { s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10); }, false},
        {"source newer than the object",
         [](Scene& s, ConfigNode*) { s.Touch("src/a.c", 20), s.Touch("Debug/a.o", 10); }, true},
        {"source as old as the object",
         [](Scene& s, ConfigNode*) { s.Touch("src/a.c", 10), s.Touch("Debug/a.o", 10); }, false},
        {"source gone", [](Scene& s, ConfigNode*) { s.Touch("Debug/a.o", 10); }, true},
        {"dependency newer than the object",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 20);
             s.Record(BuildResult::kSucceeded, header_set(s));
         },
         true},
        {"dependency older than the object",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 5);
             s.Record(BuildResult::kSucceeded, header_set(s));
         },
         false},
        {"dependency gone",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10);
             s.Record(BuildResult::kSucceeded, header_set(s));
         },
         true},
        {"no dependency file: the source's own time",
         [](Scene& s, ConfigNode*) { s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 20); },
         false},
        {"a corrupt dependency file counts as none",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 20);
             s.WriteDependencyFile("orvhost dependencies 7\ntarget Debug\nsource src\\a.c\n  " + s.Full("inc/h.h") + "\n");
         },
         false},
        {"a dependency file broken half-way counts as none",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 20);
             s.WriteDependencyFile("orvhost dependencies 1\ntarget Debug\nsource src\\a.c\n  " + s.Full("inc/h.h") +
                                   "\nsomething else\n");
         },
         false},
        {"another target's set does not count",
         [&](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("inc/h.h", 20);
             s.Record(BuildResult::kSucceeded, header_set(s), "Release");
         },
         false},
        {"no Output: always",
         [](Scene& s, ConfigNode* file) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10);
             file->SetAttribute("Output", "");
         },
         true},
        {"full rebuild",
         [](Scene& s, ConfigNode*) {
             s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10);
             s.engine->SetRebuild(true);
         },
         true},
    };
    for (const Row& row : rows) {
        Scene s;
        ConfigNode* file = s.AddSource("a");
        row.arrange(s, file);
        EXPECT_EQ(row.out_of_date, s.engine->IsOutOfDate("Debug", file)) << row.name;
    }
}

TEST(MakeEngine, AnUpToDateFileIsNotAskedForItsCommand) {
    Scene s;
    s.AddSource("a");
    s.AddSource("b");
    s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("src/b.c", 0);
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ((std::vector<std::string>{"src\\b.c", "target"}), s.Asked());
    EXPECT_EQ(1, s.engine->compiled());
    for (AdsWord handle : s.fake.project_handles) EXPECT_EQ(reinterpret_cast<AdsWord>(s.root.get()), handle);
}

TEST(MakeEngine, FilesOfNestedGroupsAreMadeInTreeOrder) {
    Scene s;
    auto* outer = new ConfigNode("Filter");
    auto* inner = new ConfigNode("Filter");
    s.AddSource("a");
    s.files->AppendChild(outer);
    s.AddSource("b", outer);
    outer->AppendChild(inner);
    s.AddSource("c", inner);
    s.AddSource("d", outer);
    s.AddSource("e");
    auto* other = new ConfigNode("File");  // not a source the tools take
    other->SetAttribute("RelativePath", "readme.txt");
    s.files->AppendChild(other);
    for (const char* name : {"a", "b", "c", "d", "e"}) s.Touch(std::string("src/") + name + ".c", 0);
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ((std::vector<std::string>{"src\\a.c", "src\\b.c", "src\\c.c", "src\\d.c", "src\\e.c", "target"}),
              s.Asked());
}

// Four commands that can only finish together (each waits for all four to
// have started) and that end in the reverse order of the files.
TEST(MakeEngine, CommandsRunTogetherAndTheirOutputsReachTheParserInFileOrder) {
    Scene s;
    const int count = 4;
    for (int i = 0; i < count; ++i) {
        const std::string name = "f" + std::to_string(i);
        s.AddSource(name);
        s.Touch("src/" + name + ".c", 0);
        s.fake.commands["src\\" + name + ".c"] =
            s.Command("--meet meet " + name + " " + std::to_string(count) + " --sleep " +
                      std::to_string((count - i) * 150) + " --out \"output of " + name + "\" --write Debug\\" + name +
                      ".o");
    }
    s.engine->SetJobs(count);
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ((std::vector<std::string>{"output of f0\n", "output of f1\n", "output of f2\n", "output of f3\n",
                                        "linked\n"}),
              s.fake.parsed);
    EXPECT_EQ(0, s.fake.calls_off_main_thread);
    EXPECT_EQ("", s.diagnostics);
}

TEST(MakeEngine, EveryPluginCallIsMadeOnTheCallingThread) {
    for (int jobs : {1, 3}) {
        Scene s;
        for (int i = 0; i < 7; ++i) {
            const std::string name = "f" + std::to_string(i);
            s.AddSource(name);
            s.Touch("src/" + name + ".c", 0);
            s.fake.sets["src\\" + name + ".c"] = {s.Full("src/" + name + ".c")};
        }
        s.engine->SetJobs(jobs);
        ASSERT_TRUE(s.Make()) << s.diagnostics;
        EXPECT_EQ(8u + 8u + 7u, s.fake.log.size()) << "asks, parses and lookups, -j " << jobs;
        EXPECT_EQ(0, s.fake.calls_off_main_thread) << "-j " << jobs;
    }
}

TEST(MakeEngine, TheTargetCommandRunsOnlyWhenSomethingChanged) {
    struct Row {
        const char* name;
        std::function<void(Scene&)> arrange;
        bool asked;
    };
    // a.c compiled at 10, the image linked at 20, the last build recorded.
    const auto made = [](Scene& s) {
        s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10), s.Touch("Debug/demo.axf", 20);
        s.debug->SetAttribute("AppFile", s.Full("Debug/demo.axf").c_str());
        s.Record(BuildResult::kSucceeded);
    };
    const Row rows[] = {
        {"nothing changed", made, false},
        {"a file was compiled", [&](Scene& s) { made(s), s.Touch("src/a.c", 30); }, true},
        {"the image is gone", [&](Scene& s) { made(s), s.Remove("Debug/demo.axf"); }, true},
        {"an object is newer than the image", [&](Scene& s) { made(s), s.Touch("Debug/a.o", 25), s.Touch("src/a.c", 0); },
         true},
        {"the last build failed", [&](Scene& s) { made(s), s.Record(BuildResult::kFailed); }, true},
        {"a relative image path counts from the project folder",
         [&](Scene& s) { made(s), s.debug->SetAttribute("AppFile", ".\\Debug\\demo.axf"); }, false},
        {"no image known, the last build succeeded", [&](Scene& s) { made(s), s.debug->SetAttribute("AppFile", ""); },
         false},
        {"no image known, nothing recorded",
         [&](Scene& s) { made(s), s.debug->SetAttribute("AppFile", ""), s.Remove("demo.orv.deps"); }, true},
        {"full rebuild", [&](Scene& s) { made(s), s.engine->SetRebuild(true); }, true},
    };
    for (const Row& row : rows) {
        Scene s;
        s.AddSource("a");
        row.arrange(s);
        EXPECT_TRUE(s.Make()) << row.name << ": " << s.diagnostics;
        const std::vector<std::string> asked = s.Asked();
        EXPECT_EQ(row.asked, !asked.empty() && asked.back() == "target") << row.name;
        EXPECT_EQ(row.asked, s.engine->linked()) << row.name;
    }
}

TEST(MakeEngine, DependencySetsOfOneBuildDecideTheNext) {
    Scene s;
    s.AddSource("a");
    s.AddSource("b");
    s.Touch("src/a.c", 0), s.Touch("src/b.c", 0), s.Touch("inc/h.h", 0);
    s.fake.sets["src\\a.c"] = {s.Full("src/a.c"), s.Full("inc/h.h")};
    ASSERT_TRUE(s.Make()) << s.diagnostics;

    DependencyFile deps = s.Recorded();
    EXPECT_EQ(BuildResult::kSucceeded, deps.targets["Debug"].result);
    EXPECT_EQ(s.fake.sets["src\\a.c"], deps.targets["Debug"].sets["src\\a.c"]);
    EXPECT_EQ(0u, deps.targets["Debug"].sets.count("src\\b.c"));

    // The header changes: a.c again, b.c not; the set read this time stays.
    fs::last_write_time(fs::path(s.dir) / "inc/h.h", fs::file_time_type::clock::now() + std::chrono::seconds(5));
    s.fake.log.clear();
    s.fake.sets.clear();
    s.fake.sets["src\\a.c"] = {s.Full("inc/h.h")};
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ((std::vector<std::string>{"src\\a.c", "target"}), s.Asked());
    EXPECT_EQ(std::vector<std::string>{s.Full("inc/h.h")}, s.Recorded().targets["Debug"].sets["src\\a.c"]);
}

TEST(MakeEngine, ADependencySetLargerThanTheFirstAnswerBufferIsReadWhole) {
    Scene s;
    s.AddSource("a");
    s.Touch("src/a.c", 0);
    std::vector<std::string>& set = s.fake.sets["src\\a.c"];
    for (int i = 0; i < 3000; ++i) set.push_back(s.Full("inc/header_with_a_long_name_number_" + std::to_string(i) + ".h"));
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ(set, s.Recorded().targets["Debug"].sets["src\\a.c"]);
}

TEST(MakeEngine, SetsOfSourcesThatLeftTheTargetAreForgotten) {
    Scene s;
    s.AddSource("a");
    s.Touch("src/a.c", 0), s.Touch("Debug/a.o", 10);
    s.Record(BuildResult::kSucceeded, {{"src\\a.c", {s.Full("src/a.c")}}, {"src\\gone.c", {s.Full("src/gone.c")}}});
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    DependencyFile deps = s.Recorded();
    EXPECT_EQ(1u, deps.targets["Debug"].sets.count("src\\a.c"));
    EXPECT_EQ(0u, deps.targets["Debug"].sets.count("src\\gone.c"));
}

TEST(MakeEngine, ACommandThatCannotStartFailsTheBuildAndIsNamed) {
    for (int jobs : {1, 2}) {
        Scene s;
        s.AddSource("a");
        s.AddSource("b");
        s.Touch("src/a.c", 0), s.Touch("src/b.c", 0);
        const std::string missing = s.dir + "/no-such-tool.exe -c src\\a.c";
        s.fake.commands["src\\a.c"] = missing;
        s.engine->SetJobs(jobs);
        EXPECT_FALSE(s.Make());
        EXPECT_TRUE(s.engine->failed());
        EXPECT_NE(std::string::npos, s.diagnostics.find("orvhost: ")) << s.diagnostics;
        EXPECT_NE(std::string::npos, s.diagnostics.find(missing)) << s.diagnostics;
        EXPECT_EQ(1, std::count(s.diagnostics.begin(), s.diagnostics.end(), '\n')) << s.diagnostics;
        EXPECT_EQ(std::vector<std::string>{"output of b\n"}, s.fake.parsed) << "-j " << jobs;
        EXPECT_EQ((std::vector<std::string>{"src\\a.c", "src\\b.c"}), s.Asked()) << "-j " << jobs;
        EXPECT_EQ(BuildResult::kFailed, s.Recorded().targets["Debug"].result);
    }
}

TEST(MakeEngine, AFileWithoutACommandFailsTheBuild) {
    Scene s;
    s.AddSource("a");
    s.Touch("src/a.c", 0);
    s.fake.commands["src\\a.c"] = "";
    EXPECT_FALSE(s.Make());
    EXPECT_EQ("orvhost: the plug-in gave no command for 'src\\a.c'\n", s.diagnostics);
    EXPECT_EQ(std::vector<std::string>{"src\\a.c"}, s.Asked());
}

TEST(MakeEngine, AFailedFileIsNeverLinked) {
    struct Row {
        const char* name;
        bool plugin_gives_target_command;
        const char* diagnostics;
    };
    const Row rows[] = {
        {"the plug-in refuses the target", false, ""},
        {"the plug-in gives the command all the same", true,
         "orvhost: Debug: not linked: the command for 'src\\a.c' ended with exit code 2\n"},
    };
    for (const Row& row : rows) {
        Scene s;
        s.AddSource("a");
        s.AddSource("b");
        s.Touch("src/a.c", 0), s.Touch("src/b.c", 0);
        s.fake.commands["src\\a.c"] = s.Command("--out \"a.c: broken\" --exit 2");
        s.fake.target_command = row.plugin_gives_target_command ? s.Command("--write Debug\\demo.axf") : "";
        EXPECT_FALSE(s.Make()) << row.name;
        EXPECT_EQ((std::vector<std::string>{"a.c: broken\n", "output of b\n"}), s.fake.parsed) << row.name;
        EXPECT_EQ((std::vector<std::string>{"src\\a.c", "src\\b.c", "target"}), s.Asked()) << row.name;
        EXPECT_FALSE(s.Exists("Debug/demo.axf")) << row.name;
        EXPECT_FALSE(s.engine->linked()) << row.name;
        EXPECT_EQ(row.diagnostics, s.diagnostics) << row.name;
    }
}

TEST(MakeEngine, AFailedTargetCommandFailsTheBuild) {
    Scene s;
    s.AddSource("a");
    s.Touch("src/a.c", 0);
    s.fake.target_command = s.Command("--out \"Error: L6218E: Undefined symbol x\" --exit 1");
    EXPECT_FALSE(s.Make());
    EXPECT_EQ("Error: L6218E: Undefined symbol x\n", s.fake.parsed.back());
    EXPECT_EQ(BuildResult::kFailed, s.Recorded().targets["Debug"].result);
}

TEST(MakeEngine, ProgressComesBeforeEachFilesCommandIsAsked) {
    Scene s;
    s.AddSource("a");
    s.AddSource("b");
    s.Touch("src/a.c", 0), s.Touch("src/b.c", 0);
    s.engine->SetProgress([&](const std::string& text) { s.fake.log.push_back("progress " + text); });
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    EXPECT_EQ((std::vector<std::string>{"progress [1/2] ", "ask src\\a.c", "parse output of a\n", "progress [2/2] ",
                                        "ask src\\b.c", "parse output of b\n", "ask target", "parse linked\n",
                                        "lookup src\\a.c", "lookup src\\b.c"}),
              s.fake.log);
}

TEST(MakeEngine, TranslatingOneFileRunsItsCommandInTheProjectFolderAndKeepsItsSet) {
    Scene s;
    ConfigNode* a = s.AddSource("a");
    s.Touch("src/a.c", 0);
    s.fake.sets["src\\a.c"] = {s.Full("src/a.c")};
    EXPECT_TRUE(s.engine->TranslateFile("Debug", a)) << s.diagnostics;
    EXPECT_TRUE(s.Exists("Debug/a.o"));
    EXPECT_EQ(std::vector<std::string>{"output of a\n"}, s.fake.parsed);
    EXPECT_EQ(s.fake.sets["src\\a.c"], s.Recorded().targets["Debug"].sets["src\\a.c"]);
    EXPECT_FALSE(s.engine->IsOutOfDate("Debug", a));
    EXPECT_FALSE(s.engine->failed());
}

TEST(MakeEngine, TranslatingRefusesWhatCannotRun) {
    struct Row {
        const char* name;
        std::string command;
        bool translated;
    };
    Scene probe;
    const Row rows[] = {
        {"no command", "", false},
        {"a program that is not there", probe.dir + "/no-such-tool.exe", false},
        {"a command that reports errors", probe.Command("--out \"a.c: broken\" --exit 1"), true},
    };
    for (const Row& row : rows) {
        Scene s;
        ConfigNode* a = s.AddSource("a");
        s.fake.commands["src\\a.c"] = row.command;
        EXPECT_EQ(row.translated, s.engine->TranslateFile("Debug", a)) << row.name;
        EXPECT_TRUE(s.engine->failed()) << row.name;
        EXPECT_EQ(row.translated, !s.fake.parsed.empty()) << row.name;
        EXPECT_EQ(row.translated, s.diagnostics.empty()) << row.name << ": " << s.diagnostics;
    }
}

}  // namespace
}  // namespace ads::host
