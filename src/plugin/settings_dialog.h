// The settings dialog of one node (the project's target, a folder or a
// file), as far as a host without windows drives it today: what each tool's
// "Equivalent Command Line" reads on the dialog's scope.
#pragma once

#include <string>

#include "ads/config_node.h"
#include "ads/plugin_abi.h"
#include "config/path_macros.h"

namespace ads::plugin {

// Where the dialog's settings come from.
struct SettingsScope {
    const ConfigNode* configuration = nullptr;  // the current target's "Configuration"
    const ConfigNode* owner = nullptr;          // the node opened on: its states and those above it apply
    std::string target;                         // the current target's name
    config::PathMacros macros;                  // for the via files of the "Extras" pages
};

class SettingsDialog {
public:
    explicit SettingsDialog(SettingsScope scope) : scope_(std::move(scope)) {}

    // The options `tool` ("armasm", "armcc", "armcpp", "tcc", "tcpp") is run
    // with on the dialog's scope: true and the options, or false and the
    // error text (empty for a name that is no tool).
    bool CommandLine(const std::string& tool, std::string* text) const;

    // Hands the dialog to a windowless host and returns its answer
    // (kAdsIdCancel when the table has no RunSettings).
    int RunHeadless(const AdsHostUi& ui);

private:
    static int ADS_CALL CommandLineEntry(void* self, const char* tool, const char** text);

    SettingsScope scope_;
    std::string text_;  // the last answer handed to the host
};

}  // namespace ads::plugin
