#include "make_engine.h"

#include <algorithm>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

#include "asm_includes.h"
#include "config/project_keys.h"
#include "platform/interrupt.h"
#include "platform/text.h"
#include "tool_detour.h"
#include "worker_pool.h"

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

// A line of orvhost's own in the pane, about a file or the target.
std::string PaneLine(const std::string& what, const std::string& text) {
    return "orvhost: " + what + ": " + text + "\r\n";
}

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
    std::string object;       // full path; empty when the file has no "Output"
    std::string object_name;  // as the user knows it: "Debug\main.o"
    std::string command;      // empty: the plug-in gave none
    platform::RunResult result;
    bool object_deleted = false;  // the failed command's object was removed
    // Parallel builds: the scans the first ask recorded, how many of them
    // still run, and whether the job is finished (guarded by their mutex).
    std::vector<RecordedRun> scans;
    size_t scans_left = 0;
    bool done = false;

    bool Succeeded() const { return !command.empty() && result.started && result.exit_code == 0; }
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

// A header that many sources include, and every object, is looked at once
// per decision.
bool MakeEngine::KnownTime(const std::string& path, int64_t* time) {
    std::string key = path;
    std::replace(key.begin(), key.end(), '\\', '/');
    auto known = times_.find(key);
    if (known == times_.end()) {
        int64_t t = 0;
        const bool exists = Time(path, &t);
        known = times_.emplace(std::move(key), std::make_pair(exists, t)).first;
    }
    *time = known->second.second;
    return known->second.first;
}

// Whatever goes wrong here is a command that could not start: a worker
// must not throw.
platform::RunResult MakeEngine::Run(const std::string& command, const std::string& directory, size_t limit) {
    try {
        Echo(command);
        return platform_.runner->Run(command, directory, limit);
    } catch (const std::exception& e) {
        platform::RunResult result;
        result.error = std::string("cannot run the command: ") + e.what();
        return result;
    }
}

void MakeEngine::Echo(const std::string& command) {
    if (!echo_) return;
    std::lock_guard<std::mutex> lock(echo_mutex_);
    echo_(command);
}

void MakeEngine::Parse(const std::string& output, int flags) { plugin_->ParseOutput(output.c_str(), flags); }

bool MakeEngine::OutOfDate(const std::string& target, ConfigNode* file, const TargetDependencies& record) {
    if (rebuild_) return true;
    const char* output = file->GetAttribute(config::kOutputKey);
    const char* source = file->GetAttribute(config::kRelativePathKey);
    if (output == nullptr || *output == '\0' || source == nullptr) return true;
    int64_t object_time = 0;
    int64_t time = 0;
    if (!KnownTime(ObjectPath(target, output), &object_time)) return true;
    if (!KnownTime(SourcePath(source), &time) || time > object_time) return true;
    auto set = record.sets.find(source);
    if (set == record.sets.end()) return false;
    for (const std::string& dependency : set->second) {
        if (!KnownTime(dependency, &time) || time > object_time) return true;
    }
    return false;
}

bool MakeEngine::IsOutOfDate(const std::string& target, ConfigNode* file) {
    if (file == nullptr) return false;
    times_.clear();
    const DependencyFile deps = LoadRecords();
    auto record = deps.targets.find(target);
    return OutOfDate(target, file, record != deps.targets.end() ? record->second : TargetDependencies());
}

// The image as "AppFile" names it, which the plug-in writes after a build;
// empty before the first.
std::string MakeEngine::ImagePath(const std::string& target, ConfigNode* project) const {
    ConfigNode* config = FindConfiguration(project, target);
    const std::string app = config ? Attribute(config, config::kAppFileKey) : std::string();
    return app.empty() ? app : SourcePath(app);
}

// Without an image known, a target whose last build succeeded is taken as
// made.
bool MakeEngine::TargetNeedsCommand(const std::string& target, ConfigNode* project,
                                    const std::vector<ConfigNode*>& files, const TargetDependencies& record) {
    if (rebuild_ || record.result != BuildResult::kSucceeded) return true;
    const std::string image = ImagePath(target, project);
    if (image.empty()) return false;
    int64_t image_time = 0;
    if (!Time(image, &image_time)) return true;
    for (ConfigNode* file : files) {
        const std::string output = Attribute(file, config::kOutputKey);
        int64_t object_time = 0;
        if (!output.empty() && KnownTime(ObjectPath(target, output), &object_time) && object_time > image_time) {
            return true;
        }
    }
    return false;
}

// Hands a finished command's outcome to the parser: its output, flagged as
// failed unless it ran and ended with exit code 0; a line of ours naming
// `what` when it did not start or failed without a word.
void MakeEngine::HandOver(const std::string& what, const platform::RunResult& run, int flags) {
    if (!run.started) {
        Parse(PaneLine(what, run.error), flags | kAdsParseFailed);
        return;
    }
    if (run.truncated) {
        Report("the output of the command for " + what + " was cut at " + std::to_string(output_limit_) + " bytes");
    }
    if (run.exit_code == 0) {
        Parse(run.output, flags);
    } else if (run.output.empty()) {
        Parse(PaneLine(what, "the command ended with exit code " + std::to_string(run.exit_code)),
              flags | kAdsParseFailed);
    } else {
        Parse(run.output, flags | kAdsParseFailed);
    }
}

void MakeEngine::Deliver(const Job& job) {
    if (job.command.empty()) {
        Parse(PaneLine(job.source, "the plug-in gave no command"), kAdsParseFailed);
        return;
    }
    HandOver(job.source, job.result, 0);
    if (job.object_deleted) Report("deleted '" + job.object_name + "', which the failed command left");
}

// Runs on any thread; calls nothing of the plug-in.
void MakeEngine::RunFileCommand(Job* job) {
    int64_t before = 0;
    const bool existed = !job->object.empty() && Time(job->object, &before);
    {
        std::unique_ptr<platform::InterruptGuard> guard;
        if (!job->object.empty()) {
            guard = std::make_unique<platform::InterruptGuard>(
                job->object, "orvhost: deleted '" + job->object_name + "', which an interrupted command was writing");
        }
        job->result = Run(job->command, folder_, output_limit_);
    }
    // As make's delete-on-error: what a failed command wrote is no object.
    // A command ended by an interruption is the interruption's to clean up.
    int64_t after = 0;
    if (job->result.started && job->result.exit_code != 0 && !job->object.empty() && !platform::Interrupted() &&
        Time(job->object, &after) && (!existed || after > before)) {
        std::string ignored;
        job->object_deleted = platform_.files->RemoveFile(job->object, &ignored) == 0;
    }
}

void MakeEngine::AskFileCommand(Job* job, size_t index, size_t count, ConfigNode* project) {
    if (progress_) progress_("[" + std::to_string(index + 1) + "/" + std::to_string(count) + "] ");
    job->command = AskCommand(plugin_, project, job->file);
}

void MakeEngine::RunFiles(std::vector<Job>* jobs, ConfigNode* project) {
    if (jobs_ <= 1 || jobs->size() <= 1) {
        for (size_t i = 0; i < jobs->size(); ++i) {
            Job& job = (*jobs)[i];
            AskFileCommand(&job, i, jobs->size(), project);
            if (!job.command.empty()) RunFileCommand(&job);
            Deliver(job);
        }
        return;
    }
    RunFilesInParallel(jobs, project);
}

// Every file is asked once with its scans recorded; the scans go to the
// workers. As a file's scans end, in file order, the file is asked again,
// its scans answered from their results, and its command goes to the
// workers ahead of the scans still waiting. Outputs go to the parser here,
// in file order, as soon as they and all before them are complete.
void MakeEngine::RunFilesInParallel(std::vector<Job>* jobs, ConfigNode* project) {
    const size_t count = jobs->size();
    size_t scans = 0;
    for (Job& job : *jobs) {
        ToolDetour record(plugin_, *platform_.files, ToolDetour::Mode::kRecord, &job.scans);
        AskCommand(plugin_, project, job.file);
        job.scans_left = job.scans.size();
        scans += job.scans.size();
    }

    std::mutex mutex;
    std::condition_variable changed;
    WorkerPool pool(std::min(count + scans, static_cast<size_t>(jobs_)));
    for (Job& job : *jobs) {
        for (RecordedRun& scan : job.scans) {
            pool.Submit([&, job_ptr = &job, scan_ptr = &scan] {
                platform::RunResult result = Run(scan_ptr->command, scan_ptr->directory, scan_ptr->limit);
                {
                    std::lock_guard<std::mutex> lock(mutex);
                    scan_ptr->result = std::move(result);
                    --job_ptr->scans_left;
                }
                changed.notify_all();
            });
        }
    }

    size_t asked = 0;
    size_t delivered = 0;
    std::unique_lock<std::mutex> lock(mutex);
    while (delivered < count) {
        if (asked < count && (*jobs)[asked].scans_left == 0) {
            Job& job = (*jobs)[asked];
            lock.unlock();
            {
                ToolDetour replay(plugin_, *platform_.files, ToolDetour::Mode::kReplay, &job.scans);
                AskFileCommand(&job, asked, count, project);
            }
            std::vector<RecordedRun>().swap(job.scans);  // their outputs are read
            if (!job.command.empty()) {
                pool.Submit(
                    [&, job_ptr = &job] {
                        RunFileCommand(job_ptr);
                        {
                            std::lock_guard<std::mutex> done_lock(mutex);
                            job_ptr->done = true;
                        }
                        changed.notify_all();
                    },
                    true);
            }
            lock.lock();
            if (job.command.empty()) job.done = true;
            ++asked;
        } else if ((*jobs)[delivered].done) {
            lock.unlock();
            Deliver((*jobs)[delivered]);
            ++delivered;
            lock.lock();
        } else {
            changed.wait(lock);
        }
    }
}

MakeEngine::Job MakeEngine::MakeJob(const std::string& target, ConfigNode* file) const {
    Job job;
    job.file = file;
    job.source = Attribute(file, config::kRelativePathKey);
    const std::string output = Attribute(file, config::kOutputKey);
    if (!output.empty()) {
        job.object = ObjectPath(target, output);
        job.object_name = target + "\\" + output;
    }
    return job;
}

std::vector<MakeEngine::Job> MakeEngine::OutOfDateJobs(const std::string& target, const std::vector<ConfigNode*>& files,
                                                       const TargetDependencies& record) {
    std::vector<Job> jobs;
    for (ConfigNode* file : files) {
        if (OutOfDate(target, file, record)) jobs.push_back(MakeJob(target, file));
    }
    return jobs;
}

// The link or archive command, asked also after files failed (the plug-in
// then says that the target is not made) but run only when they all
// succeeded; true when it ran and succeeded.
bool MakeEngine::RunTargetCommand(const std::string& target, ConfigNode* project, bool files_made) {
    const std::string command = AskCommand(plugin_, project, project);
    if (command.empty() || !files_made) return false;
    const std::string image = ImagePath(target, project);
    platform::RunResult run;
    {
        std::unique_ptr<platform::InterruptGuard> guard;
        if (!image.empty()) {
            guard = std::make_unique<platform::InterruptGuard>(
                image, "orvhost: deleted '" + image + "', which an interrupted command was writing");
        }
        run = Run(command, folder_, output_limit_);
    }
    HandOver("target " + target, run, kAdsParseLinkStep);
    linked_ = run.started;
    return run.started && run.exit_code == 0;
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
    const DependencyFile loaded = LoadRecords();
    DependencyFile deps = loaded;
    TargetDependencies& record = deps.targets[target];

    times_.clear();
    const std::vector<ConfigNode*> files = TargetFiles(project);
    std::vector<Job> jobs = OutOfDateJobs(target, files, record);
    if (!jobs.empty()) times_.clear();
    RunFiles(&jobs, project);
    bool files_made = true;
    for (const Job& job : jobs) {
        if (job.result.started) ++compiled_;
        files_made = files_made && job.Succeeded();
    }

    bool ok = files_made;
    if (!jobs.empty() || TargetNeedsCommand(target, project, files, record)) {
        ok = RunTargetCommand(target, project, files_made) && ok;
    }

    for (const Job& job : jobs) {
        if (!job.command.empty()) LearnDependencies(job.file, job.command, &record);
    }
    ForgetRemovedSources(files, &record);
    record.result = ok ? BuildResult::kSucceeded : BuildResult::kFailed;
    if (!(deps == loaded)) SaveRecords(deps);

    if (!ok) failed_ = true;
    return ok;
}

bool MakeEngine::TranslateFile(const std::string& target, ConfigNode* file) {
    if (plugin_ == nullptr || file == nullptr) return false;
    Job job = MakeJob(target, file);
    job.command = AskCommand(plugin_, file->Root(), file);
    if (!job.command.empty()) RunFileCommand(&job);
    Deliver(job);
    if (!job.Succeeded()) failed_ = true;

    if (!job.command.empty()) {
        DependencyFile deps = LoadRecords();
        LearnDependencies(file, job.command, &deps.targets[target]);
        SaveRecords(deps);
    }
    return true;
}

}  // namespace ads::host
