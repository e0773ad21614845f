#include "options/switch_page.h"

namespace ads::options {

int PageValues::Value(int position) const {
    return position >= 0 && position < static_cast<int>(values.size()) ? values[position] : kUnset;
}

const std::string& PageValues::Text(int slot) const {
    static const std::string kNone;
    return slot >= 0 && slot < static_cast<int>(texts.size()) ? texts[slot] : kNone;
}

namespace {

// One past the highest text slot that an edit field of the page keeps.
int TextCount(const PageTable& page) {
    int count = 0;
    for (int i = 0; i < page.row_count; ++i) {
        const OptionRow& row = page.rows[i];
        if (row.kind != ControlKind::kButton && row.text_slot >= count) count = row.text_slot + 1;
    }
    return count;
}

}  // namespace

SwitchPage::SwitchPage(const SwitchPageRules& rules) : rules_(&rules) { Open(std::string()); }

PageDescription SwitchPage::Describe() const { return DescribePage(Table(), true, PageVariant::kToolWide); }

void SwitchPage::Open(const std::string& options) {
    values_.values.assign(static_cast<size_t>(Table().value_count), 0);
    values_.texts.assign(static_cast<size_t>(TextCount(Table())), std::string());
    ReadPlainRows(Table(), options, values_.values.data());
    rules_->read(options, values_);
    built_ = opened_ = rules_->write(values_);
}

void SwitchPage::SetValue(int position, int value) {
    if (position < 0 || position >= static_cast<int>(values_.values.size())) return;
    values_.values[position] = value;
    built_ = rules_->write(values_);
}

void SwitchPage::SetText(int slot, const std::string& text) {
    if (slot < 0 || slot >= static_cast<int>(values_.texts.size())) return;
    values_.texts[slot] = text;
    built_ = rules_->write(values_);
}

bool SwitchPage::Enabled(int row) const {
    if (row < 0 || row >= Table().row_count) return false;
    return rules_->enabled == nullptr || rules_->enabled(values_, row);
}

}  // namespace ads::options
