#include "tool_detour.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace ads::host {

namespace {
ToolDetour* g_active = nullptr;

// As the host's RunTool fills the plug-in's buffer: at most size - 1 bytes
// and a terminator.
size_t Room(int size) { return size > 1 ? static_cast<size_t>(size - 1) : 0; }
}  // namespace

ToolDetour::ToolDetour(PluginInterface* table, platform::FileSystem& files, Mode mode,
                       std::vector<RecordedRun>* runs)
    : table_(table),
      files_(files),
      mode_(mode),
      runs_(runs),
      host_run_tool_(table->RunTool),
      host_write_output_(table->WriteOutput) {
    g_active = this;
    table_->RunTool = &ToolDetour::RunTool;
    table_->WriteOutput = &ToolDetour::WriteOutput;
}

ToolDetour::~ToolDetour() {
    table_->RunTool = host_run_tool_;
    table_->WriteOutput = host_write_output_;
    g_active = nullptr;
}

AdsWord ToolDetour::RunTool(const char* command, AdsWord handle, char* buffer, int size, AdsWord* exit_code) {
    if (g_active == nullptr || command == nullptr) return 0;
    // Nothing may unwind into the plug-in.
    try {
        return g_active->Answer(command, handle, buffer, size, exit_code);
    } catch (const std::exception&) {
        return 0;
    }
}

AdsWord ToolDetour::WriteOutput(const char* text, AdsWord pane) {
    if (g_active == nullptr) return 0;
    if (g_active->mode_ == Mode::kRecord) return 1;
    return g_active->host_write_output_ != nullptr ? g_active->host_write_output_(text, pane) : 0;
}

AdsWord ToolDetour::Answer(const char* command, AdsWord handle, char* buffer, int size, AdsWord* exit_code) {
    const platform::RunResult* result = nullptr;
    platform::RunResult not_started;
    if (mode_ == Mode::kRecord) {
        RecordedRun run;
        run.command = command;
        run.directory = files_.CurrentDirectory();
        run.limit = Room(size);
        runs_->push_back(std::move(run));
        result = &not_started;
    } else {
        for (RecordedRun& run : *runs_) {
            if (!run.answered && run.command == command) {
                run.answered = true;
                result = &run.result;
                break;
            }
        }
        if (result == nullptr) {
            return host_run_tool_ != nullptr ? host_run_tool_(command, handle, buffer, size, exit_code) : 0;
        }
    }
    if (buffer != nullptr && size > 0) {
        const size_t n = std::min(result->output.size(), Room(size));
        std::memcpy(buffer, result->output.data(), n);
        buffer[n] = '\0';
    }
    if (exit_code != nullptr) *exit_code = static_cast<AdsWord>(result->exit_code);
    return result->started ? 1 : 0;
}

}  // namespace ads::host
