// The plug-in runs its -M scans itself, through host slot 16, while it
// builds a file's command (slot 36): one at a time, on the thread that asked.
// To run them in parallel the make engine asks twice. In the first pass a
// ToolDetour records each command instead of running it; the engine's
// workers run what was recorded; in the second pass a ToolDetour answers
// the plug-in from those results, so that the plug-in learns the file's
// dependencies as if it had run the scans itself.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "ads/plugin_abi.h"
#include "platform/platform.h"

namespace ads::host {

struct RecordedRun {
    std::string command;
    std::string directory;  // the current folder when the plug-in asked
    size_t limit = 0;       // the output the plug-in's buffer takes
    platform::RunResult result;
    bool answered = false;
};

// While it lives, the plug-in's calls of slots 16 (RunTool) and 17
// (WriteOutput) come here instead of to the host's own functions. The
// engine calls the plug-in from one thread: one detour at a time.
class ToolDetour {
public:
    enum class Mode {
        // Every command is added to *runs and answered as one that could
        // not start (the plug-in then keeps what it knew); the pane text of
        // the pass is dropped, as it is written again in the second.
        kRecord,
        // A command of *runs is answered from its result, each once; any
        // other goes on to the host. The pane text goes on to the host.
        kReplay,
    };

    ToolDetour(PluginInterface* table, platform::FileSystem& files, Mode mode, std::vector<RecordedRun>* runs);
    ~ToolDetour();
    ToolDetour(const ToolDetour&) = delete;
    ToolDetour& operator=(const ToolDetour&) = delete;

private:
    static AdsWord ADS_CALL RunTool(const char* command, AdsWord handle, char* buffer, int size,
                                    AdsWord* exit_code);
    static AdsWord ADS_CALL WriteOutput(const char* text, AdsWord pane);
    AdsWord Answer(const char* command, AdsWord handle, char* buffer, int size, AdsWord* exit_code);

    PluginInterface* table_;
    platform::FileSystem& files_;
    Mode mode_;
    std::vector<RecordedRun>* runs_;
    decltype(PluginInterface::RunTool) host_run_tool_;
    decltype(PluginInterface::WriteOutput) host_write_output_;
};

}  // namespace ads::host
