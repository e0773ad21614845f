// An option page as data: one row per control, in the order the page shows
// them. A row says what the control is (kind, label as shown, group box),
// where its value is kept (position in the page's integer state, or the slot
// of a text) and which switch it stands for (the text a check box writes
// when set or when clear, the text of each radio button, or its letter in a
// " -W" / " -E" list).
//
// The generic code walks these rows: it reads the plain switches, writes a
// control's switch, sizes the pages and describes them to a view. What the
// option rules make irregular (prefixes found before longer switches, the
// letter lists, the order in which the switches are written) stays in each
// tool's own reader and writer, beside its tables.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace ads::options {

enum class ControlKind { kCheckBox, kRadioGroup, kCombo, kTextList, kEdit, kButton };

// Where a combo box's entries come from when the row does not list them.
enum class ChoiceSource { kListed, kProcessors, kFpus, kLanguages };

// One radio button or listed combo entry and the switch it writes.
struct OptionChoice {
    const char* label;  // null ends a list
    const char* switch_text;
};

struct OptionRow {
    ControlKind kind;
    const char* label;           // as shown; "" when the control has no caption
    const char* group;           // caption of the group box around it, or ""
    int position;                // in the page's integer state; -1 when not kept there
    const char* set_switch;      // check box: written when set
    const char* clear_switch;    // check box: written when clear
    char letter;                 // its letter in a " -W" or " -E" list, or 0
    bool on_by_default;          // letters: the warning or error is on unless listed
    ChoiceSource source;
    const OptionChoice* choices; // radio buttons and listed combo entries
    int text_slot;               // text controls: the slot of the text; a button: of the field it serves
    const char* default_text;    // edits: shown when nothing was read
    const char* filter;          // a browse button: the file chooser's filter, else ""
};

constexpr int kNoPosition = -1;

constexpr OptionRow Check(const char* label, const char* group, int position, const char* set_switch,
                          const char* clear_switch = "") {
    return {ControlKind::kCheckBox, label, group, position, set_switch, clear_switch, 0, false,
            ChoiceSource::kListed, nullptr, -1, "", ""};
}
constexpr OptionRow Letter(const char* label, const char* group, int position, char letter, bool on_by_default) {
    return {ControlKind::kCheckBox, label, group, position, "", "", letter, on_by_default,
            ChoiceSource::kListed, nullptr, -1, "", ""};
}
constexpr OptionRow Radio(const char* label, const char* group, int position, const OptionChoice* choices) {
    return {ControlKind::kRadioGroup, label, group, position, "", "", 0, false,
            ChoiceSource::kListed, choices, -1, "", ""};
}
constexpr OptionRow Combo(const char* label, const char* group, int position, ChoiceSource source,
                          const OptionChoice* choices = nullptr) {
    return {ControlKind::kCombo, label, group, position, "", "", 0, false, source, choices, -1, "", ""};
}
constexpr OptionRow TextRow(ControlKind kind, const char* label, const char* group, int slot,
                            const char* default_text = "") {
    return {kind, label, group, kNoPosition, "", "", 0, false, ChoiceSource::kListed, nullptr, slot, default_text, ""};
}
// A button; one that serves a field (a browse or an edit button) names its slot.
constexpr OptionRow Button(const char* label, const char* group = "", int field_slot = -1) {
    return TextRow(ControlKind::kButton, label, group, field_slot);
}
// A button that fills the field in `field_slot` with a file chosen through `filter`.
constexpr OptionRow Browse(const char* label, const char* group, int field_slot, const char* filter) {
    return {ControlKind::kButton, label, group, kNoPosition, "", "", 0, false, ChoiceSource::kListed, nullptr,
            field_slot, "", filter};
}

// The number of values of a page's integer state: one past its last position.
template <size_t N>
constexpr int ValueCount(const OptionRow (&rows)[N]) {
    int count = 0;
    for (const OptionRow& row : rows) count = row.position >= count ? row.position + 1 : count;
    return count;
}

// A page in its tab: title, the slot of its integer state (-1 for a page
// that keeps text only) and its rows.
struct PageTable {
    const char* title;
    int slot;
    const OptionRow* rows;
    int row_count;
    int value_count;
};

template <size_t N>
constexpr PageTable Page(const char* title, int slot, const OptionRow (&rows)[N]) {
    return {title, slot, rows, static_cast<int>(N), ValueCount(rows)};
}

// The row kept at `position`, or null.
const OptionRow* RowAt(const PageTable& page, int position);

// The switch a control writes for `value`: a check box its set text for any
// value but 0 and its clear text for 0; a radio group or combo the text of
// the entry with that index, nothing for an index outside the entries. The
// processor combo writes nothing here (its writer names the processor).
std::string SwitchOf(const OptionRow& row, int value, bool c_language);

// Appends the switches of the given positions, in the order given.
template <size_t N, size_t M>
void AppendSwitches(std::string& out, const PageTable& page, const std::array<int, N>& values,
                    const int (&positions)[M], bool c_language = true) {
    for (int position : positions) out += SwitchOf(*RowAt(page, position), values[position], c_language);
}

// Reads the plain controls of a page out of an option string by substring
// search: a check box is set when its set text occurs (or, with only a clear
// text, when that does not occur); a radio group takes the first button
// whose text occurs, else the button that writes nothing. Other controls,
// and letters, are left to the page's own reader.
void ReadPlainRows(const PageTable& page, const std::string& options, int* values);
template <size_t N>
void ReadPlainRows(const PageTable& page, const std::string& options, std::array<int, N>& values) {
    ReadPlainRows(page, options, values.data());
}

// The letter rows of a page from the letters of a " -W" or " -E" list (none
// when the switch is absent): a row on by default is 0 when its letter is
// listed, a row off by default is 1 when listed.
void ReadLetterRows(const PageTable& page, const std::optional<std::string>& letters, int* values);

// The letters, taken in the order of `order`, of the rows whose value
// differs from their default: 0 for a row on by default, anything but 0 for
// a row off by default.
std::string ChangedLetters(const PageTable& page, const int* values, const char* order);

}  // namespace ads::options
