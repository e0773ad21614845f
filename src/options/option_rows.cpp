#include "options/option_rows.h"

#include "options/option_tables.h"
#include "options/option_text.h"
#include "options/page_state.h"

namespace ads::options {

namespace {

int ChoiceCount(const OptionChoice* choices) {
    int count = 0;
    while (choices != nullptr && choices[count].label != nullptr) ++count;
    return count;
}

const OptionRow* RowOfLetter(const PageTable& page, char letter) {
    for (int i = 0; i < page.row_count; ++i) {
        if (page.rows[i].letter == letter) return &page.rows[i];
    }
    return nullptr;
}

}  // namespace

const OptionRow* RowAt(const PageTable& page, int position) {
    for (int i = 0; i < page.row_count; ++i) {
        if (page.rows[i].position == position && position != kNoPosition) return &page.rows[i];
    }
    return nullptr;
}

std::string SwitchOf(const OptionRow& row, int value, bool c_language) {
    if (row.kind == ControlKind::kCheckBox) return value != 0 ? row.set_switch : row.clear_switch;
    if (value < 0) return std::string();
    switch (row.source) {
        case ChoiceSource::kListed:
            return value < ChoiceCount(row.choices) ? row.choices[value].switch_text : "";
        case ChoiceSource::kFpus:
            return value < kFpuCount ? kFpus[value].switch_text : "";
        case ChoiceSource::kLanguages:
            if (c_language) return value < kCLanguageCount ? kCLanguages[value].switch_text : "";
            return value < kCppLanguageCount ? kCppLanguages[value].switch_text : "";
        case ChoiceSource::kProcessors:
            break;
    }
    return std::string();
}

void ReadPlainRows(const PageTable& page, const std::string& options, int* values) {
    for (int i = 0; i < page.row_count; ++i) {
        const OptionRow& row = page.rows[i];
        if (row.position == kNoPosition) continue;
        if (row.kind == ControlKind::kCheckBox && row.letter == 0) {
            values[row.position] = *row.set_switch != '\0' ? Contains(options, row.set_switch)
                                                            : !Contains(options, row.clear_switch);
        } else if (row.kind == ControlKind::kRadioGroup && row.source == ChoiceSource::kListed) {
            int silent = kUnset;
            int found = kUnset;
            for (int c = 0; c < ChoiceCount(row.choices) && found == kUnset; ++c) {
                if (*row.choices[c].switch_text == '\0') {
                    if (silent == kUnset) silent = c;
                } else if (Contains(options, row.choices[c].switch_text)) {
                    found = c;
                }
            }
            values[row.position] = found != kUnset ? found : silent;
        }
    }
}

void ReadLetterRows(const PageTable& page, const std::optional<std::string>& letters, int* values) {
    for (int i = 0; i < page.row_count; ++i) {
        const OptionRow& row = page.rows[i];
        if (row.letter == 0) continue;
        const bool listed = letters && letters->find(row.letter) != std::string::npos;
        values[row.position] = listed != row.on_by_default ? 1 : 0;
    }
}

std::string ChangedLetters(const PageTable& page, const int* values, const char* order) {
    std::string letters;
    for (const char* l = order; *l != '\0'; ++l) {
        const OptionRow* row = RowOfLetter(page, *l);
        if (row != nullptr && (values[row->position] == 0) == row->on_by_default) letters += *l;
    }
    return letters;
}

}  // namespace ads::options
