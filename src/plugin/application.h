// The application object: owns everything the plug-in keeps between the
// host's calls. The module holds one static instance (module.cpp); tests
// build their own over a fake platform.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ads/plugin_abi.h"
#include "build/build_engine.h"
#include "build/output_parser.h"
#include "config/defaults.h"
#include "config/host_api.h"
#include "config/target_settings.h"
#include "platform/platform.h"
#include "plugin/toolchain.h"

namespace ads::plugin {

constexpr int kIdOk = kAdsIdOk;
constexpr int kIdCancel = kAdsIdCancel;

// The service module and its entry, relative to the host's working folder.
extern const char kServiceModule[];       // "Build\OrvMake.dll"
extern const char kServiceEntry[];        // "OrvMakeEntry"

// What the settings dialog reports when it closes.
struct DialogOutcome {
    int result = kIdCancel;
    bool changed = false;
};

class Application {
public:
    explicit Application(platform::Platform& platform);
    // Frees the service module; when that fails the whole process ends with
    // the system's last error code as its exit status.
    ~Application();

    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Writes the plug-in slots (never the host's) and makes this object the
    // one the slots reach.
    PluginInterface* GetInterface();
    static Application* Active();

    // The work of the plug-in slots; each is reached through slots.cpp,
    // which keeps exceptions inside the module.
    int Attach(const AdsHostContext* context);
    void InstallTool(ConfigNode* node);
    void SetCurrentTarget(AdsWord host_word, const char* target);
    int ShowSettings(ConfigNode* node);
    int ImportProject(const char* path, int arg);
    int BuildTarget(AdsWord arg);
    int CompileFile(ConfigNode* file);
    AdsWord ForwardHostCall34(AdsWord a, AdsWord b, AdsWord c, AdsWord d);
    void Clean();
    void OnEvent(int32_t code, const char* text);
    int GetDebugOptions(AdsDebugRequest* request);
    // The debugger's write-back callbacks (slot 10's debug block).
    void SetDebugDriverLibrary(const char* path);
    void SetDebugAppFile(const char* path);
    void SetDebuggerText(const char* text);
    int LookupKeyed(const char* key, AdsWord buffer, AdsWord size);
    AdsWord GetSearchPath(const char* text, int arg, AdsWord word);
    const char* GetFileBuildText(char* text, AdsWord project, ConfigNode* node, int flag);
    void ParseOutput(const char* text, int flags);

    // Writes a message to the build output pane (host slot 17).
    void Write(const std::string& text);
    // A line for the developer: the host's Trace callback when its context
    // gave a UI table, else the system's debug output.
    void Trace(const std::string& text);

    // The settings dialog, run modally for a node of a given kind. Without
    // one set here the host's UI table runs it, when the host gave one.
    using SettingsDialog = std::function<DialogOutcome(ConfigNode* node, int kind)>;
    void SetSettingsDialog(SettingsDialog dialog) { dialog_ = std::move(dialog); }

    // State, for the subsystems and for tests.
    bool initialised() const { return initialised_; }
    const AdsHostServices& services() const { return services_; }
    const AdsHostContext& context() const { return context_; }
    bool attached() const { return attached_; }
    const config::HostDefaults& host_defaults() const { return host_defaults_; }
    ConfigNode* project_root() const { return project_root_; }
    ConfigNode* current_configuration() const { return current_configuration_; }
    const std::string& current_target() const { return current_target_; }
    const std::string& project_dir() const { return project_dir_; }
    build::BuildEngine& engine() { return engine_; }
    const std::vector<config::TargetRecord>& targets() const { return targets_; }
    const config::OptionModel& option_model() const { return option_model_; }
    int settings_kind() const { return settings_kind_; }
    const std::string& settings_path() const { return settings_path_; }
    Toolchain& toolchain() { return toolchain_; }
    config::HostApi& host() { return *host_; }
    build::OutputParser& parser() { return parser_; }

private:
    class SlotHost;
    class HostMessages;

    bool SetUpToolchain();
    // The defaults of a node the host just made: a target's settings, or a
    // file's kind, object name and settings node.
    void WriteNodeDefaults(ConfigNode* node);
    void FindCurrentConfiguration();
    void RememberProjectDirectory();
    DialogOutcome RunSettingsDialog(ConfigNode* node);
    // Takes the host's UI table (null: none); its Message callback then
    // shows the subsystems' message boxes.
    void UseHostUi(const AdsHostUi* ui);
    build::BuildContext Context() const;

    platform::Platform& platform_;
    PluginInterface table_;
    AdsHostServices services_;
    AdsHostContext context_;
    // The host's UI table, taken as soon as Attach is called so that what
    // fails inside Attach is traced there too.
    const AdsHostUi* ui_ = nullptr;
    // The message boxes of the subsystems go to the host's Message callback
    // when it gave one; the platform's own otherwise.
    std::unique_ptr<HostMessages> host_messages_;
    platform::UserInterface* system_ui_ = nullptr;
    bool attached_ = false;
    bool initialised_ = false;

    std::unique_ptr<config::HostApi> host_;
    config::HostDefaults host_defaults_;
    ConfigNode* project_root_ = nullptr;
    ConfigNode* current_configuration_ = nullptr;
    std::string current_target_;
    std::string project_dir_;
    std::vector<config::TargetRecord> targets_;
    config::OptionModel option_model_;
    int settings_kind_ = 0;
    std::string settings_path_;
    Toolchain toolchain_;
    build::BuildEngine engine_;
    build::OutputParser parser_;
    SettingsDialog dialog_;
    std::string file_build_text_;
    // What slot 10 last handed the debugger; the plug-in's, as the host
    // reads it until the next request.
    std::unique_ptr<AdsDebugBlock> debug_block_;
};

}  // namespace ads::plugin
