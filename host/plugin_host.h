// orvhost's side of the plug-in boundary: loads the plug-in module the way
// the IDE does, fills the host slots of its table and keeps the project tree
// the plug-in works on.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ads/config_node.h"
#include "ads/plugin_abi.h"
#include "platform/platform.h"

namespace ads::host {

class MakeEngine;

class PluginHost {
public:
    explicit PluginHost(platform::Platform& platform);
    ~PluginHost();

    // Loads the plug-in from `module_path` (default: beside orvhost), with
    // the working folder set to the module's folder while it loads so that
    // the plug-in finds the service module in its Build folder. Fills the
    // host slots and attaches. False with *error set on failure.
    bool Load(const std::string& module_path, std::string* error);
    // Frees the plug-in module (its application object goes with it).
    void Unload();

    PluginInterface* table() const { return table_; }
    bool loaded() const { return table_ != nullptr; }

    // The project the plug-in works on; the host keeps ownership. The
    // plug-in learns the root from the first node installed (InstallTool):
    // introduce it here unless the caller installs a node of it anyway.
    void SetProject(ConfigNode* root, bool introduce = true);
    ConfigNode* project() const { return project_; }
    // Whether a host slot changed the project since the last call.
    bool TakeModified();

    // What the plug-in registered through host slot 30.
    const std::vector<std::string>& toolchain() const { return toolchain_; }

    // Where the plug-in's output-pane text goes; standard output by default.
    void SetOutput(std::string* capture) { capture_ = capture; }
    // Also shows every pane text to `observer` (none when null).
    void SetPaneObserver(std::function<void(const char*)> observer) { observer_ = std::move(observer); }
    // Shows every pane text as `rewrite` returns it (as written when null).
    void SetPaneRewrite(std::function<std::string(const char*)> rewrite) { rewrite_ = std::move(rewrite); }

    // The engine behind host slots 31 to 33; the host keeps ownership. Without
    // one every file counts as out of date and nothing is translated or made.
    void SetMakeEngine(MakeEngine* engine) { make_ = engine; }

    // What orvhost does when the plug-in runs its settings dialog (the UI
    // table of the host context); without one the dialog is cancelled.
    using SettingsRunner = std::function<int(const AdsSettingsDialog& dialog)>;
    void SetSettingsRunner(SettingsRunner runner) { settings_ = std::move(runner); }
    // Where the plug-in's message boxes go instead of standard error (none
    // when null).
    using MessageSink = std::function<void(const std::string& caption, const std::string& text)>;
    void SetMessageSink(MessageSink sink) { messages_ = std::move(sink); }
    // orvhost -v, for every host of the process: the plug-in's trace lines
    // go to standard error, and every command line that RunTool or the make
    // engine runs to standard output (EchoCommand).
    static void SetTracing(bool on);
    // Prints the command line and a line end on standard output when
    // tracing is on.
    static void EchoCommand(const std::string& command);

    // The host slots, also used directly by the host's own code.
    static AdsWord ADS_CALL CommitNode(ConfigNode* node, ConfigNode* edited);
    static ConfigNode* ADS_CALL FindSettingNode(ConfigNode* node, const char* key, const char* flag_key);
    static AdsWord ADS_CALL RunTool(const char* command, AdsWord handle, char* buffer, int size,
                                    AdsWord* exit_code);
    static AdsWord ADS_CALL WriteOutput(const char* text, AdsWord pane);
    static AdsWord ADS_CALL HostCall23(AdsWord word);
    static AdsWord ADS_CALL RegisterToolchain(const AdsToolchainRecord* record);
    static int ADS_CALL IsOutOfDate(const char* target, ConfigNode* file);
    static int ADS_CALL TranslateFile(const char* target, ConfigNode* file);
    static int ADS_CALL MakeTarget(const char* target, ConfigNode* project);
    static AdsWord ADS_CALL HostCall34(AdsWord a, AdsWord b, AdsWord c, AdsWord d);
    // The UI table's callbacks.
    static int ADS_CALL RunSettings(void* context, const AdsSettingsDialog* dialog);
    static void ADS_CALL Message(void* context, const char* text, const char* caption);
    static void ADS_CALL Trace(void* context, const char* text);

    // The processor list and defaults orvhost offers to the plug-in.
    static const AdsHostDefaults& Defaults();

private:
    platform::Platform& platform_;
    platform::LibraryHandle module_ = nullptr;
    PluginInterface* table_ = nullptr;
    ConfigNode* project_ = nullptr;
    bool modified_ = false;
    std::vector<std::string> toolchain_;
    std::string* capture_ = nullptr;
    std::function<void(const char*)> observer_;
    std::function<std::string(const char*)> rewrite_;
    MakeEngine* make_ = nullptr;
    SettingsRunner settings_;
    MessageSink messages_;
    AdsHostUi ui_{};
    std::string install_dir_;
    std::string executable_;
    AdsHostContext context_{};
};

// Makes `node` take the attributes and children of `edited`. Children whose
// names match position by position are updated in place, so pointers into
// the tree stay valid; the others are replaced by copies owned by the host.
void CommitEdit(ConfigNode* node, const ConfigNode& edited);

}  // namespace ads::host
