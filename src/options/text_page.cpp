#include "options/text_page.h"

namespace ads::options {

TextPage::TextPage(PageDescription description)
    : description_(std::move(description)),
      values_(description_.controls.size()),
      loaded_(description_.controls.size()) {}

std::string TextPage::Get(int control) const {
    if (control < 0 || control >= static_cast<int>(values_.size())) return {};
    return values_[static_cast<size_t>(control)];
}

std::string TextPage::Set(int control, const std::string& value) {
    if (control < 0 || control >= static_cast<int>(description_.controls.size())) return "no such control";
    if (!Enabled(control)) return "is disabled";
    const Control& c = description_.controls[static_cast<size_t>(control)];
    std::string text;
    switch (c.kind) {
        case ControlKind::kCheckBox: {
            int checked = 0;
            if (std::string reason = ParseCheck(value, false, &checked); !reason.empty()) return reason;
            text = checked != 0 ? "1" : "0";
            break;
        }
        case ControlKind::kCombo:
        case ControlKind::kRadioGroup: {
            int chosen = 0;
            if (std::string reason = ParseChoice(c.choices, value, &chosen); !reason.empty()) return reason;
            text = ChoiceLabel(c.choices, chosen);
            break;
        }
        case ControlKind::kTextList: text = JoinList(SplitList(value)); break;
        case ControlKind::kEdit: text = value; break;
        case ControlKind::kButton: return "is a button: it is pressed, not set";
    }
    if (std::string reason = Check(control, text); !reason.empty()) return reason;
    Put(control, std::move(text));
    return {};
}

void CommitAttributes(config::HostApi* host, ConfigNode* node,
                      const std::vector<std::pair<const char*, std::string>>& attributes) {
    if (host == nullptr || attributes.empty()) return;
    config::EditNode(*host, node, [&](ConfigNode* edit) {
        for (const auto& [key, value] : attributes) edit->SetAttribute(key, value.c_str());
    });
}

Control EditControl(const char* label, const char* group) {
    Control c;
    c.kind = ControlKind::kEdit;
    c.label = label;
    c.group = group;
    return c;
}

Control ListControl(const char* label, const char* group) {
    Control c;
    c.kind = ControlKind::kTextList;
    c.label = label;
    c.group = group;
    return c;
}

Control CheckControl(const char* label, const char* group) {
    Control c;
    c.kind = ControlKind::kCheckBox;
    c.label = label;
    c.group = group;
    return c;
}

Control ComboControl(const char* label, const std::vector<std::string>& labels, const char* group) {
    Control c;
    c.kind = ControlKind::kCombo;
    c.label = label;
    c.group = group;
    for (size_t i = 0; i < labels.size(); ++i) c.choices.push_back({labels[i], static_cast<int>(i)});
    return c;
}

}  // namespace ads::options
