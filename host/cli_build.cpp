// orvhost build | compile | clean | export-compile-commands: the commands
// that run the plug-in's build entries over orvhost's make engine.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "cli_commands.h"
#include "cli_support.h"
#include "compile_commands.h"
#include "gnu_diagnostics.h"
#include "make_engine.h"

namespace ads::host {

namespace {

const char kCompileCommandsFile[] = "compile_commands.json";
// What the plug-in's cleaning writes for a file it could not delete.
const char kCleanError[] = "Error: Could not delete file ";
constexpr int kMaxJobs = 1024;

// "[n/N]" lines are for a person watching, not for a log.
bool ShowProgress() { return platform::StandardOutputIsTerminal(); }

// What the build commands take from their arguments.
struct Request {
    std::string project;
    std::string file;
    std::string target;
    bool have_target = false;
};

Request RequestOf(const Arguments& args) {
    Request r;
    r.project = args[0];
    if (args.positional.size() > 1) r.file = args[1];
    r.target = args.Value("--target");
    r.have_target = args.Has("--target");
    return r;
}

int ParseJobs(const std::string& text) {
    if (text.empty() || text.size() > 6 || text.find_first_not_of("0123456789") != std::string::npos) {
        Fail("-j needs a number of jobs from 1 to " + std::to_string(kMaxJobs) + ", not '" + text + "'");
    }
    int jobs = std::atoi(text.c_str());
    if (jobs < 1 || jobs > kMaxJobs) {
        Fail("-j needs a number of jobs from 1 to " + std::to_string(kMaxJobs) + ", not '" + text + "'");
    }
    return jobs;
}

// How build and compile print the output pane's diagnostics.
enum class DiagnosticsFormat { kPane, kGnu };

DiagnosticsFormat DiagnosticsOf(const Arguments& args) {
    const std::string format = args.Has("--diagnostics") ? args.Value("--diagnostics") : "pane";
    if (format == "gnu") return DiagnosticsFormat::kGnu;
    if (format != "pane") Fail("--diagnostics takes gnu or pane, not '" + format + "'");
    return DiagnosticsFormat::kPane;
}

// One command's work on one project: the project, the plug-in with the
// make engine behind its host slots, and the target made current.
class BuildSession {
public:
    explicit BuildSession(platform::Platform& platform)
        : s(platform), current_folder_(platform.files->CurrentDirectory()) {}
    ~BuildSession() { s.host_.SetMakeEngine(nullptr); }

    // Everything that can be refused is checked here, before the plug-in
    // has a chance to write anything.
    void Open(const Request& a) {
        s.Open(a.project);
        ConfigNode* configs = s.root_->FindChild(config::kConfigurationsNode);
        for (ConfigNode* c = configs ? configs->FirstChild() : nullptr; c; c = c->NextSibling()) {
            const char* name = c->GetAttribute(config::kNameKey);
            if (c->Name() != config::kConfigurationNode || name == nullptr) continue;
            if (!a.have_target || a.target == name) {
                target_node_ = c;
                target_ = name;
                break;
            }
        }
        if (target_node_ == nullptr) {
            if (a.have_target) Fail(a.project + ": no target named '" + a.target + "'");
            Fail(a.project + ": no target to build (add one with add-target)");
        }
    }

    // The file named as the user gave it, or as the project stores it.
    ConfigNode* FindFile(const std::string& given) {
        platform::FileSystem& fs = *s.platform_.files;
        const std::string as_given = ComparablePath(given);
        const std::string full = ComparablePath(fs.FullPath(given));
        ConfigNode* by_path = nullptr;
        for (ConfigNode* file : TargetFiles(s.root_.get())) {
            const std::string stored = file->GetAttribute(config::kRelativePathKey);
            if (ComparablePath(stored) == as_given) return file;
            if (by_path == nullptr && ComparablePath(fs.FullPath(SourcePath(stored))) == full) by_path = file;
        }
        if (by_path == nullptr) Fail(s.path_ + ": no source file '" + given + "' in the project");
        return by_path;
    }

    std::string SourcePath(const std::string& relative) const {
        return platform::IsAbsolutePath(relative) ? relative : s.project_dir_ + "\\" + relative;
    }

    void LoadPlugin(DiagnosticsFormat format = DiagnosticsFormat::kPane) {
        s.LoadPlugin(true);
        engine_ = std::make_unique<MakeEngine>(s.platform_, s.host_.table(), s.full_path_);
        engine_->SetEcho(&PluginHost::EchoCommand);
        s.host_.SetMakeEngine(engine_.get());
        if (format == DiagnosticsFormat::kGnu) {
            gnu_ = std::make_unique<GnuDiagnostics>(*s.platform_.files, s.project_dir_, current_folder_);
        }
        if (gnu_) s.host_.SetPaneRewrite([this](const char* text) { return gnu_->Rewrite(text); });
        s.host_.SetPaneObserver([this](const char* text) {
            if (std::strstr(text, kCleanError) != nullptr) clean_failed_ = true;
        });
        s.EnterProject();
        s.host_.table()->SetCurrentTarget(reinterpret_cast<AdsWord>(s.root_.get()), target_.c_str());
        // Choosing the target may look for the tools elsewhere.
        s.EnterProject();
    }

    PluginInterface* plugin() { return s.host_.table(); }

    // Saves what the plug-in committed; a project that cannot be written
    // makes the command fail.
    int Finish(int status) {
        if (!s.host_.TakeModified()) return status;
        try {
            s.Save();
        } catch (CliFailure& f) {
            f.status = 1;  // the work is done; only keeping it failed
            throw;
        }
        return status;
    }

    // After a build or compile entry of the plug-in, which answered
    // `handled`: failed when it handled nothing, when the plug-in counted an
    // error, or when a command of the build failed. Its summary line has no
    // line end of its own.
    int FinishBuild(int handled) {
        BuildCounts counts;
        const bool counted_errors = ReadBuildCounts(plugin(), &counts) && counts.errors > 0;
        const bool failed = handled == 0 || counted_errors || engine_->failed();
        std::fputs("\n", stdout);
        return Finish(failed ? 1 : 0);
    }

    bool RebuildRequested() const {
        int32_t rebuild = 0;
        target_node_->GetAttributeInt(config::kRebuildKey, &rebuild);
        return rebuild != 0;
    }

    std::unique_ptr<GnuDiagnostics> gnu_;  // outlives the plug-in, which writes through it
    Session s;
    const std::string current_folder_;  // where orvhost was started
    std::unique_ptr<MakeEngine> engine_;
    ConfigNode* target_node_ = nullptr;
    std::string target_;
    bool clean_failed_ = false;
};

}  // namespace

int CommandBuild(const Arguments& args, platform::Platform& platform) {
    const Request a = RequestOf(args);
    const int jobs = args.Has("-j") ? ParseJobs(args.Value("-j")) : 1;
    const DiagnosticsFormat format = DiagnosticsOf(args);
    BuildSession b(platform);
    b.Open(a);
    // Read before the build consumes the request.
    const bool rebuild = args.Has("--rebuild") || b.RebuildRequested();
    b.LoadPlugin(format);
    b.engine_->SetJobs(jobs);
    b.engine_->SetRebuild(rebuild);
    if (ShowProgress()) {
        b.engine_->SetProgress([](const std::string& text) {
            std::fputs(text.c_str(), stdout);
            std::fflush(stdout);
        });
    }
    return b.FinishBuild(b.plugin()->BuildTarget(0));
}

int CommandCompile(const Arguments& args, platform::Platform& platform) {
    const Request a = RequestOf(args);
    const DiagnosticsFormat format = DiagnosticsOf(args);
    BuildSession b(platform);
    b.Open(a);
    ConfigNode* file = b.FindFile(a.file);
    const bool rebuild = b.RebuildRequested();
    b.LoadPlugin(format);
    b.engine_->SetRebuild(rebuild);
    return b.FinishBuild(b.plugin()->CompileFile(file));
}

int CommandClean(const Arguments& args, platform::Platform& platform) {
    const Request a = RequestOf(args);
    BuildSession b(platform);
    b.Open(a);
    b.LoadPlugin();
    b.plugin()->Clean();
    return b.Finish(b.clean_failed_ ? 1 : 0);
}

int CommandExportCompileCommands(const Arguments& args, platform::Platform& platform) {
    const Request a = RequestOf(args);
    BuildSession b(platform);
    b.Open(a);
    // What the plug-in says while it answers ("compiling ...") is not news here.
    std::string pane;
    b.s.host_.SetOutput(&pane);
    b.LoadPlugin();

    PathStyle style;
#ifndef _WIN32
    style.posix = true;
#endif
    std::vector<ConfigNode*> sources;
    for (ConfigNode* file : TargetFiles(b.s.root_.get())) {
        int32_t type = 0;
        file->GetAttributeInt(config::kFileTypeKey, &type);
        if (type == config::kKindC || type == config::kKindCpp) sources.push_back(file);
    }
    const bool progress = ShowProgress();
    bool failed = false;
    std::vector<CompileCommand> commands;
    for (size_t i = 0; i < sources.size(); ++i) {
        ConfigNode* file = sources[i];
        const std::string relative = file->GetAttribute(config::kRelativePathKey);
        if (progress) {
            std::printf("[%s/%s] %s\n", std::to_string(i + 1).c_str(), std::to_string(sources.size()).c_str(),
                        relative.c_str());
        }
        const std::string command = AskCommand(b.plugin(), b.s.root_.get(), file);
        if (command.empty()) {
            std::fflush(stdout);
            std::fprintf(stderr, "orvhost: the plug-in gave no command for '%s'\n", relative.c_str());
            failed = true;
            continue;
        }
        int32_t type = 0;
        file->GetAttributeInt(config::kFileTypeKey, &type);
        CompileCommand c;
        c.directory = b.s.project_dir_;
        c.file = b.SourcePath(relative);
        if (style.posix) {
            for (char& ch : c.file) {
                if (ch == '\\') ch = '/';
            }
        }
        const SourceLanguage language = type == config::kKindC ? SourceLanguage::kC : SourceLanguage::kCpp;
        c.arguments = ClangdArguments(command, language, c.file, style);
        commands.push_back(std::move(c));
    }

    const std::string out = b.s.project_dir_ + "/" + kCompileCommandsFile;
    std::string error;
    if (!platform.files->WriteFileAtomically(out, CompileCommandsJson(commands), &error)) {
        b.Finish(1);
        Fail(out + ": cannot write: " + error, 1);
    }
    std::printf("wrote %s (%s %s)\n", out.c_str(), std::to_string(commands.size()).c_str(),
                commands.size() == 1 ? "entry" : "entries");
    return b.Finish(failed ? 1 : 0);
}

}  // namespace ads::host
