#include "make_engine.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <exception>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "asm_includes.h"
#include "config/project_keys.h"
#include "platform/text.h"

namespace ads::host {

namespace {

// The first answer buffer for a dependency set, and the largest one tried.
constexpr size_t kFirstSetBuffer = size_t{64} << 10;
constexpr size_t kLargestSetBuffer = size_t{64} << 20;

std::string Attribute(const ConfigNode* node, const char* name) {
    const char* value = node->GetAttribute(name);
    return value ? value : "";
}

// Sets of sources that left the target are forgotten.
void ForgetRemovedSources(const std::vector<ConfigNode*>& files, TargetDependencies* record) {
    std::set<std::string> sources;
    for (ConfigNode* file : files) sources.insert(Attribute(file, config::kRelativePathKey));
    for (auto it = record->sets.begin(); it != record->sets.end();) {
        it = sources.count(it->first) ? std::next(it) : record->sets.erase(it);
    }
}

// Threads that run commands handed to them, each job once. The owner joins
// them whatever happens, so no thread outlives the build.
class WorkerPool {
public:
    using Work = std::function<void(size_t)>;

    WorkerPool(size_t threads, Work work) : work_(std::move(work)) {
        try {
            for (size_t i = 0; i < threads; ++i) threads_.emplace_back([this] { Loop(); });
        } catch (...) {
            Close();
            throw;
        }
    }
    ~WorkerPool() { Close(); }

    void Submit(size_t job) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            queue_.push_back(job);
        }
        wake_.notify_one();
    }

    // No more jobs: the threads finish the queue and end.
    void Close() {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            closing_ = true;
        }
        wake_.notify_all();
        for (std::thread& t : threads_) {
            if (t.joinable()) t.join();
        }
    }

private:
    void Loop() {
        for (;;) {
            size_t job;
            {
                std::unique_lock<std::mutex> lock(mutex_);
                wake_.wait(lock, [this] { return closing_ || !queue_.empty(); });
                if (queue_.empty()) return;
                job = queue_.front();
                queue_.pop_front();
            }
            work_(job);
        }
    }

    Work work_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<size_t> queue_;
    bool closing_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace

std::vector<ConfigNode*> TargetFiles(ConfigNode* root) {
    std::vector<ConfigNode*> files;
    ConfigNode* n = root;
    while (n != nullptr) {
        if (n->Name() == config::kFileNode && n->GetAttribute(config::kRelativePathKey) != nullptr) {
            int32_t type = 0;
            n->GetAttributeInt(config::kFileTypeKey, &type);
            if (type >= config::kKindC && type <= config::kKindCpp) files.push_back(n);
        }
        if (n->FirstChild() != nullptr) {
            n = n->FirstChild();
            continue;
        }
        while (n != root && n->NextSibling() == nullptr) n = n->Parent();
        n = n == root ? nullptr : n->NextSibling();
    }
    return files;
}

ConfigNode* FindConfiguration(ConfigNode* project, const std::string& target) {
    ConfigNode* configs = project ? project->FindChild(config::kConfigurationsNode) : nullptr;
    for (ConfigNode* c = configs ? configs->FirstChild() : nullptr; c; c = c->NextSibling()) {
        const char* name = c->GetAttribute(config::kNameKey);
        if (c->Name() == config::kConfigurationNode && name != nullptr && target == name) return c;
    }
    return nullptr;
}

std::string AskCommand(PluginInterface* plugin, ConfigNode* project, ConfigNode* node) {
    char empty[1] = {'\0'};
    const char* text = plugin->GetFileBuildText(empty, reinterpret_cast<AdsWord>(project), node, 1);
    return text != nullptr ? std::string(text) : std::string();
}

std::vector<std::string> AskDependencies(PluginInterface* plugin, const std::string& source) {
    std::vector<std::string> set;
    for (size_t size = kFirstSetBuffer;; size *= 4) {
        std::vector<char> buffer(size, '\0');
        int count = plugin->LookupKeyed(source.c_str(), reinterpret_cast<AdsWord>(buffer.data()),
                                        static_cast<AdsWord>(size), 0);
        if (count <= 0) return {};
        buffer.back() = '\0';
        set.clear();
        // Only whole lines: a set that does not fit is cut at a line end,
        // and counted either whole or as far as it fits. A text that fills
        // half the buffer may have lost lines: ask again with more room.
        const char* text = buffer.data();
        for (const char* end; (end = std::strchr(text, '\n')) != nullptr; text = end + 1) {
            if (end > text) set.emplace_back(text, end);
        }
        const size_t used = std::strlen(buffer.data());
        const bool complete = set.size() >= static_cast<size_t>(count) && used < size / 2;
        if (complete || size >= kLargestSetBuffer) return set;
    }
}

struct MakeEngine::Job {
    ConfigNode* file = nullptr;
    std::string source;
    std::string command;  // empty: the plug-in gave none
    platform::RunResult result;
};

MakeEngine::MakeEngine(platform::Platform& platform, PluginInterface* plugin, const std::string& project_file)
    : platform_(platform), plugin_(plugin) {
    const std::string folder = platform::DirectoryOf(project_file);
    folder_ = platform_.files->FullPath(folder.empty() ? "." : folder);
    deps_path_ = DependencyFilePath(platform_.files->FullPath(project_file));
    diagnostics_ = [](const std::string& line) {
        std::fflush(stdout);
        std::fputs(line.c_str(), stderr);
        std::fflush(stderr);
    };
}

void MakeEngine::Report(const std::string& line) {
    if (diagnostics_) diagnostics_("orvhost: " + line + "\n");
}

std::string MakeEngine::SourcePath(const std::string& relative) const {
    return platform::IsAbsolutePath(relative) ? relative : folder_ + "\\" + relative;
}

std::string MakeEngine::ObjectPath(const std::string& target, const std::string& output) const {
    return folder_ + "\\" + target + "\\" + output;
}

bool MakeEngine::Time(const std::string& path, int64_t* time) const {
    return platform_.files->ModificationTime(path, time);
}

platform::RunResult MakeEngine::Run(const std::string& command) {
    return platform_.runner->Run(command, folder_, output_limit_);
}

void MakeEngine::Parse(const std::string& output) {
    plugin_->ParseOutput(output.c_str(), 0);
}

bool MakeEngine::OutOfDate(const std::string& target, ConfigNode* file, const TargetDependencies& record) {
    if (rebuild_) return true;
    const char* output = file->GetAttribute(config::kOutputKey);
    const char* source = file->GetAttribute(config::kRelativePathKey);
    if (output == nullptr || *output == '\0' || source == nullptr) return true;
    int64_t object_time = 0;
    int64_t time = 0;
    if (!Time(ObjectPath(target, output), &object_time)) return true;
    if (!Time(SourcePath(source), &time) || time > object_time) return true;
    auto set = record.sets.find(source);
    if (set == record.sets.end()) return false;
    for (const std::string& dependency : set->second) {
        if (!Time(dependency, &time) || time > object_time) return true;
    }
    return false;
}

bool MakeEngine::IsOutOfDate(const std::string& target, ConfigNode* file) {
    if (file == nullptr) return false;
    const DependencyFile deps = LoadRecords();
    auto record = deps.targets.find(target);
    return OutOfDate(target, file, record != deps.targets.end() ? record->second : TargetDependencies());
}

// The image is known from "AppFile", which the plug-in writes after a
// build; without it a target whose last build succeeded is taken as made.
bool MakeEngine::TargetNeedsCommand(const std::string& target, ConfigNode* project,
                                    const std::vector<ConfigNode*>& files, const TargetDependencies& record) {
    if (rebuild_ || record.result != BuildResult::kSucceeded) return true;
    ConfigNode* config = FindConfiguration(project, target);
    const std::string app = config ? Attribute(config, config::kAppFileKey) : std::string();
    if (app.empty()) return false;
    int64_t image_time = 0;
    if (!Time(SourcePath(app), &image_time)) return true;
    for (ConfigNode* file : files) {
        const std::string output = Attribute(file, config::kOutputKey);
        int64_t object_time = 0;
        if (!output.empty() && Time(ObjectPath(target, output), &object_time) && object_time > image_time) {
            return true;
        }
    }
    return false;
}

// Hands a finished command's output to the plug-in's parser; false when the
// command did not start. `what` names the command in the line about a cut.
bool MakeEngine::HandOver(const std::string& command, const platform::RunResult& run, const std::string& what) {
    if (!run.started) {
        Report(run.error + " (command: " + command + ")");
        return false;
    }
    if (run.truncated) {
        Report("the output of the command for " + what + " was cut at " + std::to_string(output_limit_) + " bytes");
    }
    Parse(run.output);
    return true;
}

void MakeEngine::Deliver(Job* job) {
    if (job->command.empty()) return;
    HandOver(job->command, job->result, "'" + job->source + "'");
}

void MakeEngine::AskFileCommand(Job* job, size_t index, size_t count, ConfigNode* project) {
    if (progress_) progress_("[" + std::to_string(index + 1) + "/" + std::to_string(count) + "] ");
    job->command = AskCommand(plugin_, project, job->file);
    if (job->command.empty()) Report("the plug-in gave no command for '" + job->source + "'");
}

void MakeEngine::RunFiles(std::vector<Job>* jobs, ConfigNode* project) {
    if (jobs_ <= 1 || jobs->size() <= 1) {
        for (size_t i = 0; i < jobs->size(); ++i) {
            Job& job = (*jobs)[i];
            AskFileCommand(&job, i, jobs->size(), project);
            if (job.command.empty()) continue;
            job.result = Run(job.command);
            Deliver(&job);
        }
        return;
    }
    RunFilesInParallel(jobs, project);
}

// Commands are asked here and run by the workers meanwhile; every output
// goes to the parser here, in file order, as soon as it and all before it
// are complete.
void MakeEngine::RunFilesInParallel(std::vector<Job>* jobs, ConfigNode* project) {
    const size_t count = jobs->size();
    std::mutex mutex;
    std::condition_variable finished;
    std::vector<char> done(count, 0);
    auto mark_done = [&](size_t i) {
        {
            std::lock_guard<std::mutex> lock(mutex);
            done[i] = 1;
        }
        finished.notify_all();
    };
    WorkerPool pool(std::min(count, static_cast<size_t>(jobs_)), [&](size_t i) {
        Job& job = (*jobs)[i];
        platform::RunResult result;
        try {
            result = Run(job.command);
        } catch (const std::exception& e) {
            result.started = false;
            result.error = std::string("cannot run the command: ") + e.what();
        }
        {
            std::lock_guard<std::mutex> lock(mutex);
            job.result = std::move(result);
        }
        mark_done(i);
    });

    size_t next = 0;
    auto deliver_ready = [&](bool wait) {
        while (next < count) {
            {
                std::unique_lock<std::mutex> lock(mutex);
                if (wait) {
                    finished.wait(lock, [&] { return done[next] != 0; });
                } else if (done[next] == 0) {
                    return;
                }
            }
            Deliver(&(*jobs)[next]);
            ++next;
        }
    };
    for (size_t i = 0; i < count; ++i) {
        AskFileCommand(&(*jobs)[i], i, count, project);
        if ((*jobs)[i].command.empty()) {
            mark_done(i);
        } else {
            pool.Submit(i);
        }
        deliver_ready(false);
    }
    deliver_ready(true);
    pool.Close();
}

std::vector<MakeEngine::Job> MakeEngine::OutOfDateJobs(const std::string& target, const std::vector<ConfigNode*>& files,
                                                       const TargetDependencies& record) {
    std::vector<Job> jobs;
    for (ConfigNode* file : files) {
        if (!OutOfDate(target, file, record)) continue;
        Job job;
        job.file = file;
        job.source = Attribute(file, config::kRelativePathKey);
        jobs.push_back(std::move(job));
    }
    return jobs;
}

// A file without a command or whose command did not start leaves nothing to
// link: false then. A command that failed leaves an object that must not be
// linked either: the first such file is `*failed_file`.
bool MakeEngine::CountFileCommands(const std::vector<Job>& jobs, const Job** failed_file) {
    bool all_ran = true;
    *failed_file = nullptr;
    for (const Job& job : jobs) {
        if (job.command.empty() || !job.result.started) {
            all_ran = false;
        } else {
            ++compiled_;
            if (job.result.exit_code != 0 && *failed_file == nullptr) *failed_file = &job;
        }
    }
    return all_ran;
}

// The link or archive command; true when it ran and succeeded.
bool MakeEngine::RunTargetCommand(const std::string& target, ConfigNode* project, bool all_ran,
                                  const Job* failed_file) {
    // The plug-in answers with no command (and says so itself) when the
    // files brought errors.
    const std::string command = all_ran ? AskCommand(plugin_, project, project) : std::string();
    if (command.empty()) return false;
    if (failed_file != nullptr) {
        Report(target + ": not linked: the command for '" + failed_file->source + "' ended with exit code " +
               std::to_string(failed_file->result.exit_code));
        return false;
    }
    const platform::RunResult run = Run(command);
    if (!HandOver(command, run, "target '" + target + "'")) return false;
    linked_ = true;
    return run.exit_code == 0;
}

DependencyFile MakeEngine::LoadRecords() const {
    DependencyFile deps;
    LoadDependencies(*platform_.files, deps_path_, &deps);
    return deps;
}

void MakeEngine::SaveRecords(const DependencyFile& deps) {
    std::string error;
    if (!SaveDependencies(*platform_.files, deps_path_, deps, &error)) Report(error);
}

// What the plug-in learnt about a source whose command it gave; for an
// assembler source, which the plug-in does not scan, what it includes.
void MakeEngine::LearnDependencies(ConfigNode* file, const std::string& command, TargetDependencies* record) {
    const std::string source = Attribute(file, config::kRelativePathKey);
    int32_t type = 0;
    file->GetAttributeInt(config::kFileTypeKey, &type);
    std::vector<std::string> set = type == config::kKindAsm
                                       ? AssemblerIncludes(*platform_.files, SourcePath(source), folder_, command)
                                       : AskDependencies(plugin_, source);
    if (set.empty()) {
        record->sets.erase(source);
    } else {
        record->sets[source] = std::move(set);
    }
}

bool MakeEngine::MakeTarget(const std::string& target, ConfigNode* project) {
    compiled_ = 0;
    linked_ = false;
    if (plugin_ == nullptr || project == nullptr) {
        failed_ = true;
        return false;
    }
    DependencyFile deps = LoadRecords();
    TargetDependencies& record = deps.targets[target];

    const std::vector<ConfigNode*> files = TargetFiles(project);
    std::vector<Job> jobs = OutOfDateJobs(target, files, record);
    RunFiles(&jobs, project);
    const Job* failed_file = nullptr;
    const bool all_ran = CountFileCommands(jobs, &failed_file);

    bool ok = all_ran && failed_file == nullptr;
    if (!jobs.empty() || TargetNeedsCommand(target, project, files, record)) {
        ok = RunTargetCommand(target, project, all_ran, failed_file) && ok;
    }

    for (const Job& job : jobs) {
        if (!job.command.empty()) LearnDependencies(job.file, job.command, &record);
    }
    ForgetRemovedSources(files, &record);
    record.result = ok ? BuildResult::kSucceeded : BuildResult::kFailed;
    SaveRecords(deps);

    if (!ok) failed_ = true;
    return ok;
}

bool MakeEngine::TranslateFile(const std::string& target, ConfigNode* file) {
    if (plugin_ == nullptr || file == nullptr) return false;
    const std::string source = Attribute(file, config::kRelativePathKey);
    const std::string command = AskCommand(plugin_, file->Root(), file);
    if (command.empty()) {
        Report("the plug-in gave no command for '" + source + "'");
        failed_ = true;
        return false;
    }
    const platform::RunResult run = Run(command);
    if (!HandOver(command, run, "'" + source + "'")) {
        failed_ = true;
        return false;
    }
    if (run.exit_code != 0) failed_ = true;

    DependencyFile deps = LoadRecords();
    LearnDependencies(file, command, &deps.targets[target]);
    SaveRecords(deps);
    return true;
}

}  // namespace ads::host
