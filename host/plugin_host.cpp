#include "plugin_host.h"

#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>

#include "make_engine.h"
#include "platform/text.h"

namespace ads::host {

namespace {
PluginHost* g_host = nullptr;
bool g_tracing = false;
// Whether the pane text on standard output ends inside a line ("FromELF..."
// has no line end until the tool has run): a command echoed then starts a
// line of its own.
std::atomic<bool> g_pane_line_open{false};

const char* const kProcessors[] = {"CPU(ARM7TDMI)", "CLOCK(12000000)", nullptr};
const AdsHostDefaults kDefaults = {"ARM", "ARM7TDMI", 0, kProcessors, 0};

// The make engine's work must not unwind through the plug-in, which called
// the slots: whatever it throws is a failure, answered with `failure`. The
// reason goes to standard error when `report` is set.
template <typename Work>
int Guarded(int failure, bool report, Work work) {
    try {
        return work() ? 1 : 0;
    } catch (const std::exception& e) {
        if (report) std::fprintf(stderr, "orvhost: %s\n", e.what());
        return failure;
    } catch (...) {
        return failure;
    }
}
}  // namespace

void CommitEdit(ConfigNode* node, const ConfigNode& edited) {
    std::vector<std::pair<ConfigNode*, const ConfigNode*>> work{{node, &edited}};
    while (!work.empty()) {
        auto [n, e] = work.back();
        work.pop_back();
        n->CopyAttributesFrom(*e);
        n->SetUserWord(e->UserWord());
        ConfigNode* nc = n->FirstChild();
        for (const ConfigNode* ec = e->FirstChild(); ec != nullptr; ec = ec->NextSibling()) {
            if (nc != nullptr && nc->Name() == ec->Name()) {
                work.emplace_back(nc, ec);
                nc = nc->NextSibling();
            } else {
                n->InsertChildBefore(ec->Clone(), nc);
            }
        }
        while (nc != nullptr) {
            ConfigNode* next = nc->NextSibling();
            n->RemoveChild(nc);
            nc = next;
        }
    }
}

PluginHost::PluginHost(platform::Platform& platform) : platform_(platform) { g_host = this; }

PluginHost::~PluginHost() {
    Unload();
    if (g_host == this) g_host = nullptr;
}

const AdsHostDefaults& PluginHost::Defaults() { return kDefaults; }

bool PluginHost::Load(const std::string& module_path, std::string* error) {
    platform::FileSystem& fs = *platform_.files;
    std::string previous = fs.CurrentDirectory();
    const std::string module_dir = platform::DirectoryOf(module_path);
    // The plug-in loads "Build\OrvMake.dll" relative to the working folder:
    // the module's folder, which for a bare name is the current one.
    if (!module_dir.empty()) fs.ChangeDir(module_dir);
    module_ = platform_.libraries->Load(module_path);
    uint32_t load_error = module_ ? 0 : platform_.libraries->LastError();
    fs.ChangeDir(previous);
    if (module_ == nullptr) {
        *error = module_path + ": cannot load the plug-in (system error " + std::to_string(load_error) + ")";
        return false;
    }
    auto get = reinterpret_cast<GetInterfaceFn>(platform_.libraries->Symbol(module_, "GetInterface"));
    if (get == nullptr) {
        *error = module_path + ": not a toolchain plug-in (no GetInterface)";
        platform_.libraries->Free(module_);
        module_ = nullptr;
        return false;
    }
    table_ = get();
    table_->CommitNode = &PluginHost::CommitNode;
    table_->FindSettingNode = &PluginHost::FindSettingNode;
    table_->RunTool = &PluginHost::RunTool;
    table_->WriteOutput = &PluginHost::WriteOutput;
    table_->HostCall23 = &PluginHost::HostCall23;
    table_->RegisterToolchain = &PluginHost::RegisterToolchain;
    table_->IsOutOfDate = &PluginHost::IsOutOfDate;
    table_->TranslateFile = &PluginHost::TranslateFile;
    table_->MakeTarget = &PluginHost::MakeTarget;
    table_->HostCall34 = &PluginHost::HostCall34;

    executable_ = fs.ExecutableDirectory();
    // The plug-in puts a file name right after the folder ("SArm.dll").
#ifdef _WIN32
    install_dir_ = executable_ + "\\";
#else
    install_dir_ = executable_ + "/";
#endif
    context_ = AdsHostContext{};
    context_.install_dir = install_dir_.c_str();
    context_.executable = executable_.c_str();
    context_.simulator = nullptr;
    context_.defaults = &kDefaults;
    // No windows here: the plug-in's dialogs and messages come to these.
    ui_ = AdsHostUi{this, &PluginHost::RunSettings, &PluginHost::Message, &PluginHost::Trace};
    context_.ui = &ui_;
    table_->Attach(&context_);
    return true;
}

void PluginHost::Unload() {
    if (module_ != nullptr) {
        table_ = nullptr;
        platform_.libraries->Free(module_);
        module_ = nullptr;
    }
}

void PluginHost::SetProject(ConfigNode* root, bool introduce) {
    project_ = root;
    if (introduce && table_ != nullptr && root != nullptr) table_->InstallTool(root);
}

bool PluginHost::TakeModified() { return std::exchange(modified_, false); }

void PluginHost::SetTracing(bool on) { g_tracing = on; }

void PluginHost::EchoCommand(const std::string& command) {
    if (!g_tracing) return;
    const std::string line = (g_pane_line_open.exchange(false) ? "\n" : "") + command + "\n";
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

int PluginHost::RunSettings(void* context, const AdsSettingsDialog* dialog) {
    auto* host = static_cast<PluginHost*>(context);
    if (host == nullptr || dialog == nullptr || !host->settings_) return kAdsIdCancel;
    try {
        return host->settings_(*dialog);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "orvhost: %s\n", e.what());
        return kAdsIdCancel;
    }
}

// Nobody is there to press OK: the text goes to standard error.
void PluginHost::Message(void* context, const char* text, const char* caption) {
    auto* host = static_cast<PluginHost*>(context);
    if (host != nullptr && host->messages_) {
        try {
            host->messages_(caption != nullptr ? caption : "", text != nullptr ? text : "");
        } catch (...) {
            // Nothing unwinds into the plug-in.
        }
        return;
    }
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", caption != nullptr ? caption : "", text != nullptr ? text : "");
}

void PluginHost::Trace(void*, const char* text) {
    if (!g_tracing || text == nullptr) return;
    std::fflush(stdout);
    std::fprintf(stderr, "%s\n", text);
}

AdsWord PluginHost::CommitNode(ConfigNode* node, ConfigNode* edited) {
    if (node == nullptr || edited == nullptr) return 0;
    CommitEdit(node, *edited);
    if (g_host) g_host->modified_ = true;
    return 1;
}

ConfigNode* PluginHost::FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) {
    if (node == nullptr || key == nullptr || *key == '\0') return nullptr;
    if (ConfigNode* found = node->FindChild(key)) return found;
    // A node's own settings are its first child.
    auto* created = new ConfigNode(key);
    if (flag_key != nullptr && *flag_key != '\0') created->SetAttributeInt(flag_key, 1);
    node->InsertChildBefore(created, node->FirstChild());
    if (g_host) g_host->modified_ = true;
    return created;
}

AdsWord PluginHost::RunTool(const char* command, AdsWord /*handle*/, char* buffer, int size,
                            AdsWord* exit_code) {
    if (command == nullptr || g_host == nullptr) return 0;
    size_t limit = size > 1 ? static_cast<size_t>(size - 1) : 0;
    EchoCommand(command);
    platform::RunResult run = g_host->platform_.runner->Run(command, std::string(), limit);
    if (buffer != nullptr && size > 0) {
        size_t n = run.output.size() < limit ? run.output.size() : limit;
        std::memcpy(buffer, run.output.data(), n);
        buffer[n] = '\0';
    }
    if (exit_code != nullptr) *exit_code = static_cast<AdsWord>(run.exit_code);
    if (!run.started) {
        std::fprintf(stderr, "orvhost: cannot run %s: %s\n", command, run.error.c_str());
    }
    return run.started ? 1 : 0;
}

AdsWord PluginHost::WriteOutput(const char* text, AdsWord /*pane*/) {
    if (text == nullptr) return 0;
    if (g_host != nullptr && g_host->observer_) g_host->observer_(text);
    std::string rewritten;
    if (g_host != nullptr && g_host->rewrite_) {
        rewritten = g_host->rewrite_(text);
        text = rewritten.c_str();
    }
    if (g_host != nullptr && g_host->capture_ != nullptr) {
        g_host->capture_->append(text);
    } else if (*text != '\0') {
        std::fputs(text, stdout);
        std::fflush(stdout);
        g_pane_line_open = text[std::strlen(text) - 1] != '\n';
    }
    return 1;
}

// orvhost has no debugger: the calls the plug-in forwards to it are
// answered with 0.
AdsWord PluginHost::HostCall23(AdsWord) { return 0; }
AdsWord PluginHost::HostCall34(AdsWord, AdsWord, AdsWord, AdsWord) { return 0; }

AdsWord PluginHost::RegisterToolchain(const AdsToolchainRecord* record) {
    if (record == nullptr || g_host == nullptr) return 0;
    g_host->toolchain_.clear();
    for (const char* text : record->text) {
        if (text == nullptr || *text == '\0') return 0;
        g_host->toolchain_.emplace_back(text);
    }
    return 1;
}

// A file whose check fails counts as out of date, so that it is
// translated again.
int PluginHost::IsOutOfDate(const char* target, ConfigNode* file) {
    if (file == nullptr) return 0;
    if (g_host == nullptr || g_host->make_ == nullptr || target == nullptr) return 1;
    return Guarded(1, false, [&] { return g_host->make_->IsOutOfDate(target, file); });
}

int PluginHost::TranslateFile(const char* target, ConfigNode* file) {
    if (g_host == nullptr || g_host->make_ == nullptr || target == nullptr || file == nullptr) return 0;
    return Guarded(0, true, [&] { return g_host->make_->TranslateFile(target, file); });
}

int PluginHost::MakeTarget(const char* target, ConfigNode* project) {
    if (g_host == nullptr || g_host->make_ == nullptr || target == nullptr || project == nullptr) return 0;
    return Guarded(0, true, [&] { return g_host->make_->MakeTarget(target, project); });
}

}  // namespace ads::host
