#include "plugin/tool_path_dialog_page.h"

namespace ads::plugin {

ToolPathDialogPage::ToolPathDialogPage(Toolchain* toolchain)
    : toolchain_(toolchain), page_(toolchain), opened_(page_.field()) {
    description_.title = kToolPathTitle;
    options::Control field;
    field.kind = options::ControlKind::kEdit;
    field.label = kToolPathLabel;
    field.group = kToolPathGroup;
    options::Control browse;
    browse.kind = options::ControlKind::kButton;
    browse.label = kToolPathBrowseButton;
    browse.group = kToolPathGroup;
    description_.controls = {field, browse};
}

std::string ToolPathDialogPage::Get(int control) const {
    return control == kDirectory ? page_.field() : std::string();
}

std::string ToolPathDialogPage::Set(int control, const std::string& value) {
    if (control == kBrowse) return "is a button: it is pressed, not set";
    if (control != kDirectory) return "no such control";
    page_.SetField(value);
    return {};
}

void ToolPathDialogPage::Default() {
    const std::string home = toolchain_->FindArmHome();
    if (!home.empty()) page_.SetField(home + "\\Bin");
}

std::string ToolPathDialogPage::Validate() const {
    const std::string& folder = page_.field();
    if (folder.empty()) return "Choose the folder of the ADS tools.";
    if (!toolchain_->FileExists(folder + "\\armasm.exe")) {
        return "\"" + folder + "\" holds no armasm.exe: choose the folder of the ADS tools.";
    }
    return {};
}

bool ToolPathDialogPage::Accept() {
    const bool located = page_.Accept();
    opened_ = page_.field();
    return located;
}

}  // namespace ads::plugin
