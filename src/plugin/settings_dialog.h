// The settings dialog of one node (the project's target, a folder or a
// file) handed to a host without windows: the dialog's model behind the
// host's callback table (AdsSettingsDialog). The host selects, sets and
// presses; its answer OK saves, Cancel keeps what Apply saved.
#pragma once

#include <memory>
#include <string>

#include "ads/plugin_abi.h"
#include "options/settings_dialog_model.h"

namespace ads::plugin {

class SettingsDialog {
public:
    SettingsDialog(int scope, options::DialogContext context, const options::PageFactory& factory,
                   options::PathConverter via);

    options::SettingsDialogModel& Model() { return model_; }

    // Hands the dialog to a windowless host; OK saves (a page that refuses
    // is shown through ui.Message and the answer becomes Cancel). Returns
    // the answer, kAdsIdCancel when the table has no RunSettings.
    int RunHeadless(const AdsHostUi& ui);

private:
    static int ADS_CALL CommandLineEntry(void* self, const char* tool, const char** text);
    static const char* ADS_CALL TreeEntry(void* self);
    static int ADS_CALL SelectEntry(void* self, const char* item, const char** error);
    static int ADS_CALL SelectTabEntry(void* self, const char* tab, const char** error);
    static int ADS_CALL SetEntry(void* self, const char* label, const char* value, const char** error);
    static int ADS_CALL PressEntry(void* self, int button, const char** error);
    static const char* ADS_CALL ShowEntry(void* self);

    // Runs one call of the host: its refusal (or a failure) becomes *error.
    template <typename Call>
    int Answer(const char** error, Call call);
    void Message(const std::string& text);

    options::SettingsDialogModel model_;
    const AdsHostUi* ui_ = nullptr;
    std::string text_;  // the last text handed to the host
};

}  // namespace ads::plugin
