// The make engine against a plug-in of the test's own: its command slot
// answers from a table, its parser records what it is handed, its keyed
// lookup answers dependency sets, and every call notes its thread. The
// commands run ads_test_child, built beside this program, in a fresh
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
    std::map<std::string, std::string> scans;     // run through RunTool while asked, as -M scans are
    std::string target_command;
    std::map<std::string, std::vector<std::string>> sets;
    std::vector<std::string> log;     // "ask src\a.c", "ask target", "parse ...", "lookup ...", "scan ..."
    std::vector<std::string> parsed;  // texts handed to the parser, in order
    std::vector<int> flags;           // the flags they came with
    std::vector<AdsWord> project_handles;
    std::string result;
    PluginInterface* table = nullptr;
    std::string pane;  // what reached the host's WriteOutput
    std::vector<std::string> host_ran;  // commands the host's RunTool ran
};

FakePlugin* g_fake = nullptr;

AdsWord ADS_CALL HostRunTool(const char* command, AdsWord, char* buffer, int size, AdsWord* exit_code) {
    g_fake->host_ran.emplace_back(command);
    platform::RunResult run = platform::System().runner->Run(command, "", static_cast<size_t>(size - 1));
    std::memcpy(buffer, run.output.c_str(), run.output.size() + 1);
    *exit_code = static_cast<AdsWord>(run.exit_code);
    return run.started ? 1 : 0;
}

AdsWord ADS_CALL HostWriteOutput(const char* text, AdsWord) {
    g_fake->pane += text;
    return 1;
}

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
        g_fake->table->WriteOutput(("compiling " + source + "\n").c_str(), 0);
        auto scan = g_fake->scans.find(source);
        if (scan != g_fake->scans.end()) {
            char buffer[100] = "";
            AdsWord exit_code = 99;
            const AdsWord ran = g_fake->table->RunTool(scan->second.c_str(), 0, buffer, sizeof buffer, &exit_code);
            g_fake->log.push_back("scan " + (ran ? std::to_string(exit_code) + " " + buffer : "not run"));
        }
        auto it = g_fake->commands.find(source);
        g_fake->result = it == g_fake->commands.end() ? std::string() : it->second;
    } else {
        g_fake->log.push_back("ask target");
        g_fake->result = g_fake->target_command;
    }
    return g_fake->result.c_str();
}

void ADS_CALL FakeParse(const char* text, int flags) {
    NoteThread();
    g_fake->parsed.emplace_back(text);
    g_fake->flags.push_back(flags);
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
        table.RunTool = HostRunTool;
        table.WriteOutput = HostWriteOutput;
        fake.table = &table;
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
        std::string tool = platform::System().files->ExecutableDirectory() + "/ads_test_child" +
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

// Two scans that can only end together (each waits for the other to
// start): they run at once on the workers, and the plug-in, asked again,
// reads their results. The first ask's pane text is dropped.
TEST(MakeEngine, ScansRunTogetherOnTheWorkersAndThePluginReadsTheirResults) {
    Scene s;
    for (const std::string name : {"a", "b"}) {
        s.AddSource(name);
        s.Touch("src/" + name + ".c", 0);
        s.fake.scans["src\\" + name + ".c"] = s.Command("--meet " + s.Full("meet") + " " + name + " 2 --out " + name + ".o:h.h");
    }
    s.engine->SetJobs(2);
    ASSERT_TRUE(s.Make()) << s.diagnostics;
    std::vector<std::string> scans;
    for (const std::string& entry : s.fake.log) {
        if (entry.rfind("scan ", 0) == 0) scans.push_back(entry);
    }
    EXPECT_EQ((std::vector<std::string>{"scan not run", "scan not run", "scan 0 a.o:h.h\n", "scan 0 b.o:h.h\n"}),
              scans);
    EXPECT_EQ(std::vector<std::string>{}, s.fake.host_ran);
    EXPECT_EQ("compiling src\\a.c\ncompiling src\\b.c\n", s.fake.pane);
    EXPECT_EQ((std::vector<std::string>{"output of a\n", "output of b\n", "linked\n"}), s.fake.parsed);
    EXPECT_EQ(0, s.fake.calls_off_main_thread);
}

// With one job the plug-in runs its scans through the host itself, which
// shows them.
TEST(MakeEngine, EveryCommandTheEngineRunsIsEchoed) {
    for (int jobs : {1, 2}) {
        Scene s;
        std::vector<std::string> echoed;
        s.engine->SetEcho([&](const std::string& command) { echoed.push_back(command); });
        std::vector<std::string> expected = {s.fake.target_command};
        for (const std::string name : {"a", "b"}) {
            s.AddSource(name);
            s.Touch("src/" + name + ".c", 0);
            s.fake.scans["src\\" + name + ".c"] = s.Command("--out " + name + ".o:h.h");
            expected.push_back(s.fake.commands["src\\" + name + ".c"]);
            if (jobs > 1) expected.push_back(s.fake.scans["src\\" + name + ".c"]);
        }
        s.engine->SetJobs(jobs);
        ASSERT_TRUE(s.Make()) << s.diagnostics;
        std::sort(expected.begin(), expected.end());
        std::sort(echoed.begin(), echoed.end());
        EXPECT_EQ(expected, echoed) << "-j " << jobs;
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

// b.c builds; a.c fails in each way a command can. The pane gets what
// happened flagged as a failure, the target is still asked for (the
// plug-in then says it is not made) but never linked.
TEST(MakeEngine, EveryFailedFileReachesTheParserFlaggedAndNothingIsLinked) {
    struct Row {
        const char* name;
        std::function<std::string(Scene&)> command;
        const char* parsed;  // the start of what the parser gets for a.c
    };
    const Row rows[] = {
        {"exit code with output", [](Scene& s) { return s.Command("--out \"a.c: broken\" --exit 2"); }, "a.c: broken\n"},
        {"exit code without a word", [](Scene& s) { return s.Command("--exit 3"); },
         "orvhost: src\\a.c: the command ended with exit code 3\r\n"},
        {"a program that is not there", [](Scene& s) { return s.dir + "/no-such-tool.exe -c src\\a.c"; },
         "orvhost: src\\a.c: cannot run "},
        {"no command", [](Scene&) { return std::string(); }, "orvhost: src\\a.c: the plug-in gave no command\r\n"},
    };
    for (const Row& row : rows) {
        for (int jobs : {1, 2}) {
            Scene s;
            s.AddSource("a");
            s.AddSource("b");
            s.Touch("src/a.c", 0), s.Touch("src/b.c", 0);
            s.fake.commands["src\\a.c"] = row.command(s);
            s.fake.target_command = s.Command("--write Debug\\demo.axf");
            s.engine->SetJobs(jobs);
            EXPECT_FALSE(s.Make()) << row.name;
            EXPECT_TRUE(s.engine->failed()) << row.name;
            ASSERT_EQ(2u, s.fake.parsed.size()) << row.name << ", -j " << jobs;
            EXPECT_EQ(0u, s.fake.parsed[0].rfind(row.parsed, 0)) << row.name << ": " << s.fake.parsed[0];
            EXPECT_EQ((std::vector<int>{kAdsParseFailed, 0}), s.fake.flags) << row.name;
            EXPECT_EQ("output of b\n", s.fake.parsed[1]) << row.name;
            EXPECT_EQ("target", s.Asked().back()) << row.name;
            EXPECT_FALSE(s.Exists("Debug/demo.axf")) << row.name;
            EXPECT_EQ("", s.diagnostics) << row.name;
            EXPECT_EQ(BuildResult::kFailed, s.Recorded().targets["Debug"].result) << row.name;
        }
    }
}

TEST(MakeEngine, TheTargetCommandsOutputIsReadAsALinkStep) {
    struct Row {
        const char* name;
        std::function<std::string(Scene&)> command;
        int flags;
        const char* parsed;  // its start
    };
    const Row rows[] = {
        {"linked", [](Scene& s) { return s.Command("--out linked"); }, kAdsParseLinkStep, "linked\n"},
        {"failed", [](Scene& s) { return s.Command("--out \"Error: L6218E: Undefined symbol x\" --exit 1"); },
         kAdsParseLinkStep | kAdsParseFailed, "Error: L6218E: Undefined symbol x\n"},
        {"not started", [](Scene& s) { return s.dir + "/no-such-linker.exe"; }, kAdsParseLinkStep | kAdsParseFailed,
         "orvhost: target Debug: cannot run "},
    };
    for (const Row& row : rows) {
        Scene s;
        s.AddSource("a");
        s.Touch("src/a.c", 0);
        s.fake.target_command = row.command(s);
        EXPECT_EQ(row.flags == kAdsParseLinkStep, s.Make()) << row.name;
        EXPECT_EQ(row.flags, s.fake.flags.back()) << row.name;
        EXPECT_EQ(0u, s.fake.parsed.back().rfind(row.parsed, 0)) << row.name << ": " << s.fake.parsed.back();
        EXPECT_EQ(row.flags == kAdsParseLinkStep ? BuildResult::kSucceeded : BuildResult::kFailed,
                  s.Recorded().targets["Debug"].result)
            << row.name;
    }
}

// As make's delete-on-error: a failed command's object must not look up to
// date to the next build.
TEST(MakeEngine, AFailedCommandsFreshObjectIsDeleted) {
    struct Row {
        const char* name;
        const char* script;
        bool old_object;
        bool object_stays;
    };
    const Row rows[] = {
        {"written, then failed", "--write Debug\\a.o --exit 2", false, false},
        {"rewritten, then failed", "--write Debug\\a.o --exit 2", true, false},
        {"failed without touching the old object", "--exit 2", true, true},
        {"written and succeeded", "--write Debug\\a.o", false, true},
    };
    for (const Row& row : rows) {
        Scene s;
        ConfigNode* a = s.AddSource("a");
        if (row.old_object) s.Touch("Debug/a.o", 0);
        s.Touch("src/a.c", 10);
        s.fake.commands["src\\a.c"] = s.Command(row.script);
        s.engine->TranslateFile("Debug", a);
        EXPECT_EQ(row.object_stays, s.Exists("Debug/a.o")) << row.name;
        EXPECT_EQ(row.object_stays ? "" : "orvhost: deleted 'Debug\\a.o', which the failed command left\n",
                  s.diagnostics)
            << row.name;
    }
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

// The plug-in prints its summary after a translation it was answered 1
// for: a failure is handed over flagged and answered 1 too.
TEST(MakeEngine, TranslatingHandsEveryFailureToTheParser) {
    Scene probe;
    for (const std::string& command :
         {std::string(), probe.dir + "/no-such-tool.exe", probe.Command("--out \"a.c: broken\" --exit 1")}) {
        Scene s;
        ConfigNode* a = s.AddSource("a");
        s.fake.commands["src\\a.c"] = command;
        EXPECT_TRUE(s.engine->TranslateFile("Debug", a)) << command;
        EXPECT_TRUE(s.engine->failed()) << command;
        EXPECT_EQ(std::vector<int>{kAdsParseFailed}, s.fake.flags) << command;
        EXPECT_EQ("", s.diagnostics) << command;
    }
}

}  // namespace
}  // namespace ads::host
