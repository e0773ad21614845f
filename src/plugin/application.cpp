#include "plugin/application.h"

#include <cstring>

#include "debug/arm_debug_page.h"
#include "debug/debug_options.h"
#include "options/target_pages.h"
#include "import/project_import.h"
#include "config/path_macros.h"
#include "platform/registry.h"
#include "plugin/settings_dialog.h"
#include "plugin/slots.h"
#include "build/tool_choice.h"
#ifdef _WIN32
#include "options/win32/settings_window.h"
#endif

namespace ads::plugin {

const char kServiceModule[] = "Build\\OrvMake.dll";
const char kServiceEntry[] = "OrvMakeEntry";

namespace {
Application* g_active = nullptr;
const char kInstallToolFailed[] = "\r\ninstall tool failed!\r\n";
const char kNoCurrentTarget[] = "\r\nplease setting the current target!\r\n";
// How the import's pane lines begin: what could not be taken over, and why
// an export could not be read.
const char kImportNote[] = "note: ";
const char kImportError[] = "error: ";

// One pane line of a text that came from a file: its line breaks and other
// control bytes become blanks.
std::string PaneLine(const char* prefix, std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    }
    return prefix + text + "\r\n";
}
}  // namespace

// The host's services, reached through the host slots of the table. The
// plug-in never tests these slots for null: the host fills them.
class Application::SlotHost : public config::HostApi {
public:
    explicit SlotHost(PluginInterface* table) : t_(table) {}

    void Commit(ConfigNode* node, ConfigNode* edited) override { t_->CommitNode(node, edited); }
    ConfigNode* FindSettingNode(ConfigNode* node, const char* key, const char* flag_key) override {
        return t_->FindSettingNode(node, key, flag_key);
    }
    config::ToolRun RunTool(const std::string& command, int buffer_size) override {
        std::vector<char> buffer(buffer_size > 0 ? static_cast<size_t>(buffer_size) : 1, '\0');
        AdsWord exit_code = 0;
        config::ToolRun run;
        run.ok = t_->RunTool(command.c_str(), 0, buffer.data(), buffer_size, &exit_code) != 0;
        run.exit_code = static_cast<int>(exit_code);
        buffer.back() = '\0';
        run.output = buffer.data();
        return run;
    }
    void Write(const std::string& text) override { t_->WriteOutput(text.c_str(), 0); }
    bool IsOutOfDate(const std::string& target, ConfigNode* file) override {
        return t_->IsOutOfDate(target.c_str(), file) != 0;
    }
    bool TranslateFile(const std::string& target, ConfigNode* file) override {
        return t_->TranslateFile(target.c_str(), file) != 0;
    }
    bool MakeTarget(const std::string& target, ConfigNode* project) override {
        return t_->MakeTarget(target.c_str(), project) != 0;
    }

private:
    PluginInterface* t_;
};

class Application::HostMessages : public platform::UserInterface {
public:
    explicit HostMessages(const AdsHostUi* ui) : ui_(ui) {}
    void ShowMessage(const std::string& text, const std::string& caption) override {
        ui_->Message(ui_->context, text.c_str(), caption.c_str());
    }

private:
    const AdsHostUi* ui_;
};

Application::Application(platform::Platform& platform)
    : platform_(platform), table_{}, services_{}, context_{}, toolchain_(&platform),
      engine_(nullptr, &platform, nullptr) {
    std::memset(&services_, 0, sizeof services_);
    host_ = std::make_unique<SlotHost>(&table_);
    engine_ = build::BuildEngine(host_.get(), &platform_, &parser_);
    std::memset(&services_, 0, sizeof services_);

    // The host's build-service module, found relative to the host's working
    // folder. A module without its entry is a broken installation: the entry
    // is called without a test, as the host expects.
    if (platform::LibraryHandle module = platform_.libraries->Load(kServiceModule)) {
        services_.module[0] = reinterpret_cast<AdsWord>(module);
        services_.module[1] = reinterpret_cast<AdsWord>(module);
        std::memset(services_.name, 0, sizeof services_.name);
        std::memcpy(services_.name, "ADS", 4);
        auto entry = reinterpret_cast<AdsServiceEntry>(platform_.libraries->Symbol(module, kServiceEntry));
        entry(&services_);
    }

    initialised_ = true;
    option_model_ = config::BuiltinDefaults();

    // Where the tools are: the host's preference module first, then the
    // installer's registry entries; the result goes to host slot 30.
    if (platform_.registry == nullptr) platform_.registry = &platform::SystemRegistry();
    toolchain_.SetCandidateSource([this] { return ReadPreferenceCandidates(*platform_.libraries); });
    toolchain_.SetHomeSource([this] { return ReadArmHomeFromRegistry(*platform_.registry); });
    toolchain_.SetRegistrar([this](const std::array<std::string, kAdsRecordCount>& texts) {
        AdsToolchainRecord record;
        for (size_t i = 0; i < texts.size(); ++i) record.text[i] = texts[i].c_str();
        return table_.RegisterToolchain(&record) != 0;
    });
}

Application::~Application() {
    if (g_active == this) g_active = nullptr;
    if (host_messages_ != nullptr) platform_.ui = system_ui_;
    // Deliberate: a service module that cannot be freed (also one that never
    // loaded) ends the process with the system's last error code.
    auto module = reinterpret_cast<platform::LibraryHandle>(services_.module[1]);
    if (!platform_.libraries->Free(module)) {
        platform_.process->Exit(platform_.libraries->LastError());
    }
}

Application* Application::Active() { return g_active; }

void Application::Write(const std::string& text) { host_->Write(text); }

void Application::Trace(const std::string& text) {
    if (ui_ != nullptr && ui_->Trace != nullptr) {
        ui_->Trace(ui_->context, text.c_str());
    } else {
        platform::DebugOutput(text);
    }
}

void Application::UseHostUi(const AdsHostUi* ui) {
    ui_ = ui;
    if (host_messages_ != nullptr) platform_.ui = system_ui_;
    host_messages_.reset();
    if (ui != nullptr && ui->Message != nullptr) {
        system_ui_ = platform_.ui;
        host_messages_ = std::make_unique<HostMessages>(ui);
        platform_.ui = host_messages_.get();
    }
}

build::BuildContext Application::Context() const {
    build::BuildContext c;
    c.project_root = project_root_;
    c.configuration = current_configuration_;
    c.target = current_target_;
    c.project_dir = project_dir_;
    for (int i = 0; i < kToolCount; ++i) c.tools.paths[static_cast<size_t>(i)] = toolchain_.path(static_cast<ToolIndex>(i));
    c.tools.found = toolchain_.found();
    c.tools.arm_home = toolchain_.FindArmHome();
    return c;
}

void Application::RememberProjectDirectory() {
    // The host calls with its working folder at the project's folder; the
    // tool search may change it afterwards, so it is taken first.
    std::string dir = platform_.files->CurrentDirectory();
    if (!dir.empty() && dir.back() != '\\' && dir.back() != '/') dir += '\\';
    project_dir_ = dir;
}

bool Application::SetUpToolchain() { return toolchain_.LocateTools(); }

void Application::FindCurrentConfiguration() {
    current_configuration_ = config::FindCurrentConfiguration(project_root_, current_target_);
}

int Application::Attach(const AdsHostContext* context) {
    if (context == nullptr) return 0;
    UseHostUi(context->ui);
    host_defaults_ = config::HostDefaults();
    if (const AdsHostDefaults* d = context->defaults) {
        if (d->vendor) host_defaults_.vendor = d->vendor;
        if (d->device) host_defaults_.device = d->device;
        for (const char* const* p = d->processors; p != nullptr && *p != nullptr; ++p) {
            host_defaults_.processors.emplace_back(*p);
        }
    }
    SetUpToolchain();
    context_ = *context;
    attached_ = true;
    return 1;
}

void Application::InstallTool(ConfigNode* node) {
    if (node == nullptr) return;
    RememberProjectDirectory();
    project_root_ = node->Root();
    if (!SetUpToolchain()) Write(kInstallToolFailed);
    FindCurrentConfiguration();
    WriteNodeDefaults(node);
}

void Application::WriteNodeDefaults(ConfigNode* node) {
    if (node->Name() == config::kConfigurationNode) {
        double clock = config::kDefaultSimulatorClock;
        if (context_.simulator != nullptr && context_.simulator->has_clock) clock = context_.simulator->clock;
        config::EditNode(*host_, node, [clock](ConfigNode* c) { config::WriteTargetDefaults(c, clock); });
        // Every file gets its entries for the new target.
        build::BuildContext c = Context();
        c.configuration = node;
        const char* name = node->GetAttribute(config::kNameKey);
        c.target = name ? name : "";
        WalkTree(project_root_, [&](ConfigNode* n) { return engine_.UpdateNode(c, n); });
        return;
    }
    if (node->Name() != config::kFileNode) return;
    const char* path = node->GetAttribute(config::kRelativePathKey);
    if (path == nullptr) return;
    // The current target's mapping decides; an extension it does not list
    // keeps the kind the host gave the file.
    const char* map = current_configuration_ ? current_configuration_->GetAttribute(config::kFileMapKey) : nullptr;
    int kind = config::SourceKindFromFileMap(map ? map : config::kDefaultFileMap, path);
    if (kind == config::kKindNone) node->GetAttributeInt(config::kFileTypeKey, &kind);
    if (kind != config::kKindC && kind != config::kKindAsm && kind != config::kKindCpp) return;
    const std::string object = config::DistinctObjectFileName(path, config::ObjectsOfSources(node->Root(), node));
    config::EditNode(*host_, node, [&](ConfigNode* c) {
        c->SetAttributeInt(config::kFileTypeKey, kind);
        c->SetAttribute(config::kOutputKey, object);
    });
    // The per-file settings node; the host creates it in its own tree, so
    // after the commit, which would otherwise drop it again.
    if (kind != config::kKindAsm) host_->FindSettingNode(node, config::kCParamKey, config::kSettingsFlagKey);
    // Its tool and option text for every target.
    if (project_root_ != nullptr) build::AssignToolsOnAdd(*host_, node, project_root_->FindChild(config::kConfigurationsNode));
}

void Application::SetCurrentTarget(AdsWord host_word, const char* target) {
    if (host_word == 0 || target == nullptr) return;
    RememberProjectDirectory();
    SetUpToolchain();
    current_target_ = target;
    FindCurrentConfiguration();
    if (project_root_ == nullptr) return;
    if (ConfigNode* files = project_root_->FindChild(config::kFilesNode)) {
        build::BuildContext c = Context();
        WalkTree(files, [&](ConfigNode* n) { return engine_.UpdateNode(c, n); });
    }
}

int Application::ShowSettings(ConfigNode* node) {
    if (node == nullptr) return -1;
    int32_t kind = 0;
    node->GetAttributeInt(config::kFileTypeKey, &kind);
    if (kind == config::kKindNone) {
        if (node->Name() == config::kProjectNode) kind = config::kKindProject;
        else if (node->Name() == config::kFilterNode) kind = config::kKindFolder;
    }
    settings_kind_ = kind;
    const char* path = node->GetAttribute(config::kRelativePathKey);
    settings_path_ = path ? path : "";

    config::TargetSettingsReader reader(&targets_, current_target_, &host_defaults_, kind);
    WalkTree(project_root_, [&](ConfigNode* n) { return reader(n); });
    bool have_current = false;
    for (const config::TargetRecord& r : targets_) {
        if (r.current) {
            have_current = true;
            break;
        }
    }
    if (!have_current) {
        Write(kNoCurrentTarget);
        return 0;
    }

    DialogOutcome outcome = dialog_ ? dialog_(node, kind) : RunSettingsDialog(node);
    if (outcome.changed) {
        // The next build rebuilds everything.
        FindCurrentConfiguration();
        config::EditNode(*host_, current_configuration_,
                         [](ConfigNode* c) { c->SetAttributeInt(config::kRebuildKey, 1); });
    }
    return outcome.result;
}

DialogOutcome Application::RunSettingsDialog(ConfigNode* node) {
    // A windowless host drives the dialog through its table; the IDE gets
    // the dialog's window (on Windows; elsewhere there is none to show).
#ifndef _WIN32
    if (ui_ == nullptr) return DialogOutcome{};
#endif
    FindCurrentConfiguration();
    options::DialogContext context;
    context.project = project_root_;
    context.configuration = current_configuration_;
    context.node = node;
    context.target = current_target_;
    context.processors = host_defaults_.processors;
    context.host = host_.get();
    const config::PathMacros macros = config::MakePathMacros(project_dir_, toolchain_.FindArmHome(), *platform_.files);
    options::PathConverter via = [macros](const std::string& name) { return config::ConvertViaFilePath(name, macros); };
    options::PageFactory pages = [this](const std::string& item) {
        return item == options::kArmDebugItem ? debug::MakeArmDebugPage(platform_, context_) : options::MakeItemPage(item);
    };
    plugin::SettingsDialog dialog(settings_kind_, std::move(context), pages, std::move(via));
#ifdef _WIN32
    if (ui_ == nullptr) {
        const int answer = options::win32::RunSettingsWindow(reinterpret_cast<void*>(context_.main_window),
                                                             dialog.Model());
        return DialogOutcome{answer == kAdsIdOk ? kAdsIdOk : kAdsIdCancel, dialog.Model().Saved()};
    }
#endif
    const int result = dialog.RunHeadless(*ui_);
    return DialogOutcome{result, dialog.Model().Saved()};
}

int Application::ImportProject(const char* path, int arg) {
    if (path == nullptr || arg == 0) return 0;
    import::ImportRequest request;
    request.export_path = path;
    const char* name = project_root_ != nullptr ? project_root_->GetAttribute(config::kNameKey) : nullptr;
    request.project_name = name != nullptr ? name : "";
    // The device of the current target, else what the host offers.
    import::DeviceSettings& d = request.device;
    if (const ConfigNode* c = current_configuration_) {
        auto text = [c](const char* key) {
            const char* value = c->GetAttribute(key);
            return std::string(value != nullptr ? value : "");
        };
        d.device = text(config::kDeviceKey);
        d.vendor = text(config::kVendorKey);
        d.family = text("FAMINY");
        d.cpu = text(config::kCpuKey);
        d.simulator_dll = text("SIMDL");
        d.monitor_dll = text("MONDL");
        d.rgf = text("RGF");
        d.simulator_clock = text(config::kSimClockKey);
    } else {
        d.device = host_defaults_.device;
        d.vendor = host_defaults_.vendor;
        d.cpu = config::DefaultProcessor(host_defaults_);
        double clock = config::kDefaultSimulatorClock;
        if (context_.simulator != nullptr && context_.simulator->has_clock) clock = context_.simulator->clock;
        d.simulator_clock = config::FormatSimulatorClock(clock);
    }
    request.reader.files = platform_.files;
    request.reader.compiler_home = toolchain_.FindArmHome();
    import::ImportModel model;
    const int imported = import::ImportProject(*host_, project_root_, request, &model);
    if (imported == 0 && !model.failure.empty()) Write(PaneLine(kImportError, model.failure));
    if (imported != 0) {
        for (const std::string& note : import::ImportNotes(model)) Write(PaneLine(kImportNote, note));
    }
    return imported;
}

int Application::BuildTarget(AdsWord arg) { return engine_.BuildTarget(Context(), arg); }

int Application::CompileFile(ConfigNode* file) {
    if (file == nullptr) return 0;
    return engine_.CompileFile(Context(), file);
}

AdsWord Application::ForwardHostCall34(AdsWord a, AdsWord b, AdsWord c, AdsWord d) {
    return table_.HostCall34(a, b, c, d);
}

void Application::Clean() { engine_.Clean(Context()); }

void Application::OnEvent(int32_t code, const char* text) {
    if (text == nullptr) return;
    if (code != 2) return;  // only "the current target changed" is handled
    current_target_ = text;
    build::BuildContext c = Context();
    WalkTree(project_root_, [&](ConfigNode* n) { return engine_.UpdateNode(c, n); });
}

namespace {
// Copies a text into a fixed field, cut to leave room for its terminator.
template <size_t N>
void CopyField(char (&field)[N], const std::string& text) {
    const size_t n = text.size() < N - 1 ? text.size() : N - 1;
    std::memcpy(field, text.data(), n);
    field[n] = '\0';
}
}  // namespace

int Application::GetDebugOptions(AdsDebugRequest* request) {
    if (request == nullptr) return 1;
    if (debug_block_ == nullptr) debug_block_ = std::make_unique<AdsDebugBlock>();
    AdsDebugBlock* block = debug_block_.get();
    std::memset(block, 0, sizeof *block);
    WriteDebugCallbacks(block);
    FindCurrentConfiguration();
    if (current_configuration_ == nullptr) return 0;

    debug::DriverList drivers(*platform_.registry, *platform_.ui);
    debug::DebugOptions options;
    const bool found = debug::ReadDebugOptions(*current_configuration_, drivers, &options);
    if (request->clock != nullptr) *request->clock = options.clock;
    if (!found) return 0;

    request->mode = options.mode;
    for (size_t i = 0; i < options.options.size(); ++i) request->options[i] = options.options[i];
    CopyField(block->driver, options.driver);
    CopyField(request->driver_library, options.driver_library);
    CopyField(request->app_file, options.app_file);
    CopyField(block->init_script, options.init_script);
    CopyField(block->debugger_text, options.debugger_text);
    block->update_before_debug = options.update_before_debug;
    request->block = block;
    for (size_t i = 0; i < options.storage.size(); ++i) {
        if (!options.has_storage[i]) continue;
        const debug::StorageRow& row = options.storage[i];
        AdsStorageEntry& entry = block->storage[i];
        entry.type = row.type;
        entry.start = row.start;
        entry.size = row.size;
        CopyField(entry.load_file, row.load_file);
        entry.download = row.download;
    }
    return 1;
}

void Application::SetDebugDriverLibrary(const char* path) {
    if (path == nullptr) return;
    FindCurrentConfiguration();
    config::EditNode(*host_, current_configuration_, [&](ConfigNode* c) {
        const char* packed = c->GetAttribute(config::kDebugOptionsKey);
        c->SetAttribute(config::kDebugOptionsKey, debug::WithDriverLibrary(packed ? packed : "", path));
    });
}

void Application::SetDebugAppFile(const char* path) {
    if (path == nullptr) return;
    FindCurrentConfiguration();
    config::EditNode(*host_, current_configuration_, [&](ConfigNode* c) { c->SetAttribute(config::kAppFileKey, path); });
}

void Application::SetDebuggerText(const char* text) {
    if (text == nullptr || project_root_ == nullptr) return;
    FindCurrentConfiguration();
    config::EditNode(*host_, current_configuration_,
                     [&](ConfigNode* c) { c->SetAttribute(config::kServeDebugOptionsKey, text); });
}

int Application::LookupKeyed(const char* key, AdsWord buffer, AdsWord size) {
    if (key == nullptr) return 0;
    if (std::strcmp(key, kAdsCountsKey) == 0) {
        const std::string counts = "errors=" + std::to_string(parser_.errors()) +
                                   " warnings=" + std::to_string(parser_.warnings()) + "\n";
        char* out = reinterpret_cast<char*>(buffer);
        if (out == nullptr || static_cast<size_t>(size) <= counts.size()) return 0;
        std::memcpy(out, counts.c_str(), counts.size() + 1);
        return 1;
    }
    const std::set<std::string>* deps = engine_.Dependencies(key);
    if (deps == nullptr) return 0;
    char* out = reinterpret_cast<char*>(buffer);
    size_t room = static_cast<size_t>(size);
    size_t used = 0;
    int count = 0;
    for (const std::string& dep : *deps) {
        // Whole lines only, and room for the terminator.
        if (out == nullptr || used + dep.size() + 2 > room) break;
        std::memcpy(out + used, dep.data(), dep.size());
        used += dep.size();
        out[used++] = '\n';
        ++count;
    }
    if (out != nullptr && room > 0) out[used < room ? used : room - 1] = '\0';
    return count;
}

AdsWord Application::GetSearchPath(const char* text, int /*arg*/, AdsWord /*word*/) {
    if (text == nullptr) return 0;
    return 0;
}

const char* Application::GetFileBuildText(char* text, AdsWord project, ConfigNode* node, int flag) {
    if (flag == 0) {
        file_build_text_.clear();
        return file_build_text_.c_str();
    }
    if (project == 0 || node == nullptr) return text;
    if (!engine_.CommandFor(Context(), node, &file_build_text_)) file_build_text_.clear();
    return file_build_text_.c_str();
}

void Application::ParseOutput(const char* text, int flags) {
    if (text == nullptr) return;
    const bool was_link_step = parser_.link_step();
    if ((flags & kAdsParseLinkStep) != 0) parser_.SetLinkStep();
    std::string pane = parser_.ParseRun(text, std::strlen(text), (flags & kAdsParseFailed) != 0);
    if (!was_link_step) parser_.ClearLinkStep();
    table_.WriteOutput(pane.c_str(), 0);
}

PluginInterface* Application::GetInterface() {
    g_active = this;
    WritePluginSlots(&table_);
    return &table_;
}

}  // namespace ads::plugin
