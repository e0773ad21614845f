#include "options/option_page_views.h"

#include "options/assembler_options.h"
#include "options/option_text.h"

namespace ads::options {

namespace {

bool IsVia(const Control& c, bool assembler) {
    return c.kind == ControlKind::kEdit && c.position < 0 && c.slot == (assembler ? static_cast<int>(kAsmEts) : static_cast<int>(kCcExtras));
}

// The editor fields of a list (the predefines' "Variable", "Directive"...)
// keep nothing: the list itself is set.
bool Kept(const Control& c) { return c.position >= 0 || (c.slot >= 0 && c.kind != ControlKind::kButton); }

std::string CheckText(int value) { return value == kUnset ? "-1" : value != 0 ? "1" : "0"; }

}  // namespace

StatePageView::StatePageView(PageDescription description, PageVariant variant, bool assembler,
                             PageStateSet defaults)
    : model_(std::move(description)), variant_(variant), assembler_(assembler), defaults_(std::move(defaults)) {}

std::string StatePageView::Get(int control) const {
    const auto& controls = Description().controls;
    if (control < 0 || control >= static_cast<int>(controls.size())) return {};
    const Control& c = controls[static_cast<size_t>(control)];
    if (!Kept(c)) return {};
    switch (c.kind) {
        case ControlKind::kCheckBox: return CheckText(model_.Value(c.position));
        case ControlKind::kRadioGroup:
        case ControlKind::kCombo: return ChoiceLabel(c.choices, model_.Value(c.position));
        case ControlKind::kTextList: {
            const std::string& text = model_.Text(c.slot);
            return JoinList(assembler_ ? PredefineEntries(text) : DefineEntries(text));
        }
        case ControlKind::kEdit: return IsVia(c, assembler_) ? ViaFile(model_.Text(c.slot)) : model_.Text(c.slot);
        case ControlKind::kButton: break;
    }
    return {};
}

std::string StatePageView::Set(int control, const std::string& value) {
    const auto& controls = Description().controls;
    if (control < 0 || control >= static_cast<int>(controls.size())) return "no such control";
    const Control& c = controls[static_cast<size_t>(control)];
    if (!Kept(c)) return "is not kept: set the list it edits";
    int number = 0;
    std::string refused;
    switch (c.kind) {
        case ControlKind::kCheckBox:
            refused = ParseCheck(value, variant_ == PageVariant::kPerTarget, &number);
            if (refused.empty()) model_.SetValue(c.position, number);
            return refused;
        case ControlKind::kRadioGroup:
        case ControlKind::kCombo:
            refused = ParseChoice(c.choices, value, &number);
            if (refused.empty()) model_.SetValue(c.position, number);
            return refused;
        case ControlKind::kTextList: {
            std::vector<std::string> entries = SplitList(value);
            if (assembler_) {
                model_.SetText(c.slot, PredefinesText(entries));
            } else {
                model_.SetText(c.slot, DefinesText(entries));
            }
            return {};
        }
        case ControlKind::kEdit:
            model_.SetText(c.slot, IsVia(c, assembler_) ? ViaText(value) : value);
            return {};
        case ControlKind::kButton: break;
    }
    return "is a button";
}

bool StatePageView::Enabled(int control) const {
    const auto& controls = Description().controls;
    return control >= 0 && control < static_cast<int>(controls.size()) &&
           Kept(controls[static_cast<size_t>(control)]);
}

void StatePageView::Default() {
    const PageDescription& d = Description();
    if (variant_ == PageVariant::kPerTarget) {
        for (int p = 0; p < d.value_count; ++p) model_.SetValue(p, kUnset);
        for (const Control& c : d.controls) {
            if (c.position < 0 && c.slot >= 0) model_.SetText(c.slot, std::string());
        }
        return;
    }
    PageModel fresh(d);
    fresh.Load(defaults_);
    for (int p = 0; p < d.value_count; ++p) model_.SetValue(p, fresh.Value(p));
    for (const Control& c : d.controls) {
        if (c.position < 0 && c.slot >= 0) model_.SetText(c.slot, fresh.Text(c.slot));
    }
}

SwitchPageView::SwitchPageView(SwitchPage* page, std::string defaults)
    : page_(page), description_(page->Describe()), defaults_(std::move(defaults)) {}

std::string SwitchPageView::Get(int control) const {
    if (control < 0 || control >= static_cast<int>(description_.controls.size())) return {};
    const Control& c = description_.controls[static_cast<size_t>(control)];
    switch (c.kind) {
        case ControlKind::kCheckBox: return CheckText(page_->Value(c.position));
        case ControlKind::kRadioGroup:
        case ControlKind::kCombo: return ChoiceLabel(c.choices, page_->Value(c.position));
        case ControlKind::kEdit:
        case ControlKind::kTextList: return page_->Text(c.slot);
        case ControlKind::kButton: break;
    }
    return {};
}

std::string SwitchPageView::Set(int control, const std::string& value) {
    if (control < 0 || control >= static_cast<int>(description_.controls.size())) return "no such control";
    const Control& c = description_.controls[static_cast<size_t>(control)];
    int number = 0;
    std::string refused;
    switch (c.kind) {
        case ControlKind::kCheckBox:
            refused = ParseCheck(value, false, &number);
            if (refused.empty()) page_->SetValue(c.position, number);
            return refused;
        case ControlKind::kRadioGroup:
        case ControlKind::kCombo:
            refused = ParseChoice(c.choices, value, &number);
            if (refused.empty()) page_->SetValue(c.position, number);
            return refused;
        case ControlKind::kEdit:
        case ControlKind::kTextList: page_->SetText(c.slot, value); return {};
        case ControlKind::kButton: break;
    }
    return "is a button";
}

bool SwitchPageView::Enabled(int control) const {
    if (control < 0 || control >= static_cast<int>(description_.controls.size())) return false;
    return description_.controls[static_cast<size_t>(control)].kind != ControlKind::kButton &&
           page_->Enabled(control);
}

void SwitchPageView::Default() {
    SwitchPage fresh = *page_;
    fresh.Open(defaults_);
    for (const Control& c : description_.controls) {
        if (c.kind == ControlKind::kButton) continue;
        if (c.position >= 0) page_->SetValue(c.position, fresh.Value(c.position));
        if (c.position < 0 && c.slot >= 0) page_->SetText(c.slot, fresh.Text(c.slot));
    }
}

}  // namespace ads::options
