#include "plugin/settings_dialog.h"

#include <exception>

#include "options/effective_options.h"
#include "options/option_error.h"

namespace ads::plugin {

namespace {
constexpr options::Tool kTools[] = {options::Tool::kArmasm, options::Tool::kArmcc, options::Tool::kArmcpp,
                                    options::Tool::kTcc, options::Tool::kTcpp};
}  // namespace

bool SettingsDialog::CommandLine(const std::string& tool, std::string* text) const {
    text->clear();
    for (options::Tool t : kTools) {
        if (tool != options::ToolName(t)) continue;
        const config::PathMacros& macros = scope_.macros;
        options::PathConverter via = [&macros](const std::string& name) {
            return config::ConvertViaFilePath(name, macros);
        };
        try {
            *text = options::EffectiveOptions(t, scope_.configuration, scope_.owner, scope_.target, via);
            return true;
        } catch (const options::OptionError& e) {
            *text = e.what();
            return false;
        }
    }
    return false;
}

int ADS_CALL SettingsDialog::CommandLineEntry(void* self, const char* tool, const char** text) {
    auto* dialog = static_cast<SettingsDialog*>(self);
    // Called by the host from inside RunSettings: nothing may unwind into
    // it, and what went wrong is the answer's text.
    bool resolved = false;
    try {
        resolved = dialog->CommandLine(tool != nullptr ? tool : "", &dialog->text_);
    } catch (const std::exception& e) {
        dialog->text_ = e.what();
    } catch (...) {
        dialog->text_ = "unknown failure";
    }
    if (text != nullptr) *text = dialog->text_.c_str();
    return resolved ? 1 : 0;
}

int SettingsDialog::RunHeadless(const AdsHostUi& ui) {
    if (ui.RunSettings == nullptr) return kAdsIdCancel;
    AdsSettingsDialog dialog{};
    dialog.self = this;
    dialog.CommandLine = &SettingsDialog::CommandLineEntry;
    return ui.RunSettings(ui.context, &dialog);
}

}  // namespace ads::plugin
