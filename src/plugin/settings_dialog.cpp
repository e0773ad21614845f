#include "plugin/settings_dialog.h"

#include <exception>

namespace ads::plugin {

namespace {
constexpr char kCaption[] = "ADS ARM Settings";
}  // namespace

SettingsDialog::SettingsDialog(int scope, options::DialogContext context, const options::PageFactory& factory,
                               options::PathConverter via)
    : model_(scope, std::move(context), factory, std::move(via)) {}

void SettingsDialog::Message(const std::string& text) {
    if (ui_ != nullptr && ui_->Message != nullptr) ui_->Message(ui_->context, text.c_str(), kCaption);
}

// Called by the host from inside RunSettings: nothing may unwind into it.
template <typename Call>
int SettingsDialog::Answer(const char** error, Call call) {
    try {
        text_ = call();
    } catch (const std::exception& e) {
        text_ = e.what();
    } catch (...) {
        text_ = "unknown failure";
    }
    if (error != nullptr) *error = text_.c_str();
    return text_.empty() ? 1 : 0;
}

int ADS_CALL SettingsDialog::CommandLineEntry(void* self, const char* tool, const char** text) {
    auto* d = static_cast<SettingsDialog*>(self);
    bool resolved = false;
    d->Answer(nullptr, [&] {
        std::string line;
        resolved = d->model_.CommandLine(tool != nullptr ? tool : "", &line);
        return line;
    });
    if (text != nullptr) *text = d->text_.c_str();
    return resolved ? 1 : 0;
}

const char* ADS_CALL SettingsDialog::TreeEntry(void* self) {
    auto* d = static_cast<SettingsDialog*>(self);
    d->text_.clear();
    for (const options::TreeItem& t : d->model_.Tree()) {
        d->text_ += std::string(static_cast<size_t>(t.depth) * 2, ' ') + std::to_string(t.image) + " " + t.label + "\n";
    }
    return d->text_.c_str();
}

int ADS_CALL SettingsDialog::SelectEntry(void* self, const char* item, const char** error) {
    auto* d = static_cast<SettingsDialog*>(self);
    return d->Answer(error, [&] { return d->model_.Select(item != nullptr ? item : ""); });
}

int ADS_CALL SettingsDialog::SelectTabEntry(void* self, const char* tab, const char** error) {
    auto* d = static_cast<SettingsDialog*>(self);
    return d->Answer(error, [&] { return d->model_.SelectTab(tab != nullptr ? tab : ""); });
}

int ADS_CALL SettingsDialog::SetEntry(void* self, const char* label, const char* value, const char** error) {
    auto* d = static_cast<SettingsDialog*>(self);
    return d->Answer(error, [&] { return d->model_.Set(label != nullptr ? label : "", value != nullptr ? value : ""); });
}

int ADS_CALL SettingsDialog::PressEntry(void* self, int button, const char** error) {
    auto* d = static_cast<SettingsDialog*>(self);
    return d->Answer(error, [&]() -> std::string {
        if (button == kAdsButtonDefault) {
            d->model_.Default();
            return {};
        }
        if (button != kAdsButtonApply) return "no button " + std::to_string(button);
        const std::string refused = d->model_.Apply();
        if (!refused.empty()) d->Message(refused);
        return refused;
    });
}

const char* ADS_CALL SettingsDialog::ShowEntry(void* self) {
    auto* d = static_cast<SettingsDialog*>(self);
    d->Answer(nullptr, [&] { return d->model_.Show(); });
    return d->text_.c_str();
}

int SettingsDialog::RunHeadless(const AdsHostUi& ui) {
    if (ui.RunSettings == nullptr) return kAdsIdCancel;
    ui_ = &ui;
    const AdsSettingsDialog table{this,       &CommandLineEntry, &TreeEntry, &SelectEntry, &SelectTabEntry,
                                  &SetEntry, &PressEntry,       &ShowEntry};
    int answer = ui.RunSettings(ui.context, &table);
    if (answer == kAdsIdOk) {
        std::string refused;
        try {
            refused = model_.Apply();
        } catch (const std::exception& e) {
            refused = e.what();
        }
        if (!refused.empty()) {
            Message(refused);
            answer = kAdsIdCancel;
        }
    } else {
        answer = kAdsIdCancel;
    }
    ui_ = nullptr;
    return answer;
}

}  // namespace ads::plugin
