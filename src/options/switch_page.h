// A page that keeps no page state: the linker's pages and the fromELF page.
// It reads its controls out of the tool's option string and, after every
// change, builds its part of that string from them; the string is what the
// target stores. A page is one table of rows plus three small functions of
// its own: what the plain rows cannot read, the writer, and which controls
// are enabled.
#pragma once

#include <string>
#include <vector>

#include "options/option_rows.h"
#include "options/pages.h"

namespace ads::options {

// The controls' values: check boxes and combos by position, edit fields by
// text slot.
struct PageValues {
    std::vector<int> values;
    std::vector<std::string> texts;

    int Value(int position) const;
    bool Checked(int position) const { return Value(position) != 0; }
    const std::string& Text(int slot) const;
};

struct SwitchPageRules {
    const PageTable* table;
    // Runs after the plain rows were read (ReadPlainRows): the combos, the
    // edit fields and whatever the option rules make irregular.
    void (*read)(const std::string& options, PageValues& values);
    std::string (*write)(const PageValues& values);
    // Whether the control of row `row` can be used; null: every control.
    bool (*enabled)(const PageValues& values, int row);
};

class SwitchPage {
public:
    explicit SwitchPage(const SwitchPageRules& rules);

    const PageTable& Table() const { return *rules_->table; }
    PageDescription Describe() const;

    // Fills the controls from `options` and takes the text they build as the
    // text the page was opened with.
    void Open(const std::string& options);

    int Value(int position) const { return values_.Value(position); }
    const std::string& Text(int slot) const { return values_.Text(slot); }
    // Each change rebuilds the page's text. Positions and slots the page
    // does not have are ignored.
    void SetValue(int position, int value);
    void SetText(int slot, const std::string& text);

    // The text built last, and whether it differs from the one opened with.
    const std::string& Built() const { return built_; }
    bool Changed() const { return built_ != opened_; }
    bool Enabled(int row) const;

private:
    const SwitchPageRules* rules_;
    PageValues values_;
    std::string opened_;
    std::string built_;
};

}  // namespace ads::options
