// orvhost's make engine: what the host does behind its slots MakeTarget,
// TranslateFile and IsOutOfDate.
//
// A target's files are the "File" nodes of a C, assembler or C++ kind with a
// "RelativePath", in the order of the tree. A file is translated when its
// object (".\<target>\<Output>" under the project folder) is missing, when
// its source or one of its dependencies is newer than the object, when a
// dependency is gone, when it has no "Output", or when a full rebuild was
// asked. The dependency sets are the ones the plug-in collected in earlier
// builds (dependency_file.h), for assembler sources the files they GET or
// INCLUDE (asm_includes.h); a source without a set is judged by its own
// time.
//
// The plug-in is called from the calling thread only, one call at a time:
// the commands are asked there, run on worker threads, and their outputs go
// back to the plug-in's parser in the order of the files. With more than
// one job the -M scans that the plug-in runs while it gives a file's
// command run on the workers too (tool_detour.h). After the files comes the
// target's own command (link or archive) when something changed; never
// after a file failed.
//
// Every command's outcome reaches the parser (slot 37), a failure flagged
// kAdsParseFailed: a non-zero exit code, a command that could not start, a
// file without a command. The output of the target's command is flagged
// kAdsParseLinkStep. A file command that fails and leaves its object newer
// than before has the object deleted: it must not look up to date. An
// interruption deletes the objects being written (platform/interrupt.h).
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ads/config_node.h"
#include "ads/plugin_abi.h"
#include "dependency_file.h"
#include "platform/platform.h"

namespace ads::host {

// A command's output beyond this many bytes is read and dropped.
constexpr size_t kCommandOutputLimit = size_t{16} << 20;

// The files of a target in tree order, found without recursion.
std::vector<ConfigNode*> TargetFiles(ConfigNode* root);

// The target (a "Configuration" node) of that name, null when the project
// has none.
ConfigNode* FindConfiguration(ConfigNode* project, const std::string& target);

// The command the plug-in gives for a node (slot 36), copied at once; empty
// when it gives none.
std::string AskCommand(PluginInterface* plugin, ConfigNode* project, ConfigNode* node);

// The dependencies the plug-in holds for a source (slot 20), empty when it
// holds none.
std::vector<std::string> AskDependencies(PluginInterface* plugin, const std::string& source);

class MakeEngine {
public:
    using Sink = std::function<void(const std::string&)>;

    // The project folder is the folder of `project_file`, made absolute; the
    // dependency sets are kept beside the file.
    MakeEngine(platform::Platform& platform, PluginInterface* plugin, const std::string& project_file);

    // How many file commands may run at once (at least 1).
    void SetJobs(int jobs) { jobs_ = jobs < 1 ? 1 : jobs; }
    // Every file counts as out of date.
    void SetRebuild(bool rebuild) { rebuild_ = rebuild; }
    // Receives "[n/N] " before each file's command is asked; none when null.
    void SetProgress(Sink progress) { progress_ = std::move(progress); }
    // Receives orvhost's own lines (standard error by default), each ended
    // by "\n".
    void SetDiagnostics(Sink diagnostics) { diagnostics_ = std::move(diagnostics); }
    // Receives every command line the engine runs, as it starts it; called
    // from worker threads, one call at a time. None when null.
    void SetEcho(Sink echo) { echo_ = std::move(echo); }
    void SetOutputLimit(size_t limit) { output_limit_ = limit; }

    // Host slot 33: the out-of-date files' commands, then the target's own
    // command when needed. True when every command that ran succeeded and
    // the target is complete.
    bool MakeTarget(const std::string& target, ConfigNode* project);
    // Host slot 32: runs the file's command and hands its outcome to the
    // parser, a failure included (failed() tells).
    bool TranslateFile(const std::string& target, ConfigNode* file);
    // Host slot 31.
    bool IsOutOfDate(const std::string& target, ConfigNode* file);

    // Whether anything failed since the engine was made: a command that
    // could not start or ended with a non-zero exit code, a file without a
    // command, a target left unbuilt.
    bool failed() const { return failed_; }
    // How many file commands ran in the last MakeTarget, and whether the
    // target's own command ran.
    int compiled() const { return compiled_; }
    bool linked() const { return linked_; }

    const std::string& project_folder() const { return folder_; }
    const std::string& dependency_file() const { return deps_path_; }

private:
    struct Job;

    bool OutOfDate(const std::string& target, ConfigNode* file, const TargetDependencies& record);
    std::string ImagePath(const std::string& target, ConfigNode* project) const;
    bool TargetNeedsCommand(const std::string& target, ConfigNode* project,
                            const std::vector<ConfigNode*>& files, const TargetDependencies& record);
    Job MakeJob(const std::string& target, ConfigNode* file) const;
    std::vector<Job> OutOfDateJobs(const std::string& target, const std::vector<ConfigNode*>& files,
                                   const TargetDependencies& record);
    void AskFileCommand(Job* job, size_t index, size_t count, ConfigNode* project);
    void RunFiles(std::vector<Job>* jobs, ConfigNode* project);
    void RunFilesInParallel(std::vector<Job>* jobs, ConfigNode* project);
    void RunFileCommand(Job* job);
    bool RunTargetCommand(const std::string& target, ConfigNode* project, bool files_made);
    void HandOver(const std::string& what, const platform::RunResult& run, int flags);
    void Deliver(const Job& job);
    DependencyFile LoadRecords() const;
    void SaveRecords(const DependencyFile& deps);
    void LearnDependencies(ConfigNode* file, const std::string& command, TargetDependencies* record);
    platform::RunResult Run(const std::string& command, const std::string& directory, size_t limit);
    void Echo(const std::string& command);
    void Parse(const std::string& output, int flags);
    void Report(const std::string& line);
    std::string SourcePath(const std::string& relative) const;
    std::string ObjectPath(const std::string& target, const std::string& output) const;
    bool Time(const std::string& path, int64_t* time) const;
    bool KnownTime(const std::string& path, int64_t* time);

    platform::Platform& platform_;
    PluginInterface* plugin_;
    std::string folder_;
    std::string deps_path_;
    int jobs_ = 1;
    bool rebuild_ = false;
    size_t output_limit_ = kCommandOutputLimit;
    Sink progress_;
    Sink diagnostics_;
    Sink echo_;
    std::mutex echo_mutex_;
    // File times read while deciding what to make, by path ("/" for "\"):
    // whether the file is there, and its time. Emptied once commands ran.
    std::unordered_map<std::string, std::pair<bool, int64_t>> times_;
    bool failed_ = false;
    int compiled_ = 0;
    bool linked_ = false;
};

}  // namespace ads::host
