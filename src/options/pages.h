// The tool option pages as models, without any user interface: what controls
// a page has (kind, label as shown, choices, where each keeps its value) and
// the conversion between the page and its page states. A dialog binds its
// controls to these models and does nothing else with page states.
//
// Every page exists in two variants: the tool-wide one, filled from the
// option string read into page states, and the per-target one (also used for
// folders and files), whose radio groups carry one more choice,
// "*Default last level", that stores -1.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "options/assembler_options.h"
#include "options/compiler_options.h"
#include "options/page_state.h"

namespace ads::options {

enum class PageVariant { kToolWide, kPerTarget };

inline constexpr char kDefaultLastLevel[] = "*Default last level";

struct Choice {
    std::string label;
    int value;
};

struct Control {
    ControlKind kind;
    std::string label;          // as shown; empty when the control has no caption
    std::string group;          // caption of the group box around it, or empty
    int slot = -1;              // page-state slot that keeps the value; -1: not kept
    int position = -1;          // position in an integer state; -1 for text
    std::vector<Choice> choices;// radio buttons and combo entries
    std::string default_text;   // edits: the text shown when nothing is read
    std::string filter;         // a browse button: the file chooser's filter
    int cell_row = -1;          // a cell of a grid: its row (its label names the column)
};

struct PageDescription {
    std::string title;  // the tab's text
    int slot = -1;      // slot of the integer state, -1 for a text-only page
    int value_count = 0;
    std::vector<Control> controls;
};

// A page's controls generated from its table: a radio group kept in the
// page state gets "*Default last level" in the per-target variant; the
// language combo lists the C or the C++ languages.
PageDescription DescribePage(const PageTable& page, bool c_language, PageVariant variant);
PageDescription DescribeCompilerPage(CompilerPage page, bool c_language, PageVariant variant);
PageDescription DescribeAssemblerPage(AssemblerPage page, PageVariant variant);
// All pages of a family's property sheet, in tab order.
std::vector<PageDescription> DescribePages(Family family, PageVariant variant);
// "ADS Tools Compiler Option--ARM C Compiler" ...
const char* SheetTitle(Family family);

// One page's values. Load takes them from a page-state set, Store puts them
// back; Changed tells whether anything differs from what was loaded.
class PageModel {
public:
    explicit PageModel(PageDescription description);

    const PageDescription& Description() const { return description_; }

    void Load(const PageStateSet& states);
    void Store(PageStateSet& states) const;
    bool Changed() const;

    int Value(int position) const;
    void SetValue(int position, int value);
    const std::string& Text(int slot) const;
    void SetText(int slot, const std::string& text);

private:
    PageDescription description_;
    std::vector<int> values_;
    std::vector<int> loaded_values_;
    PageStateSet texts_;
    PageStateSet loaded_texts_;
};

// The models of all pages of a family, in tab order.
std::vector<PageModel> MakePages(Family family, PageVariant variant);

// --- The list pages --------------------------------------------------------

// The defines of a "Preprocessor" text: one " -D" switch each, a definition
// holding a blank written between double quotes.
std::vector<std::string> DefineEntries(const std::string& text);
std::string DefinesText(const std::vector<std::string>& definitions);

// A list of entries with a selection, as the list pages edit them.
class EntryList {
public:
    explicit EntryList(std::vector<std::string> entries = {}) : entries_(std::move(entries)) {}

    const std::vector<std::string>& Entries() const { return entries_; }
    int Selected() const { return selected_; }
    void Select(int index);
    // Appends and selects the entry.
    void Add(const std::string& entry);
    // Replaces the selected entry; false without a selection.
    bool Replace(const std::string& entry);
    // Deletes the selected entry; false without a selection.
    bool Delete();

private:
    std::vector<std::string> entries_;
    int selected_ = -1;
};

// The "Predefines" page's editor: the list, the fields under "Edit predefined
// variable" and the state of its buttons.
class PredefinesEditor {
public:
    enum class AddResult { kAdded, kExists, kInvalidValue };

    void Load(const std::string& text);
    std::string Text() const { return PredefinesText(list_.Entries()); }
    const EntryList& List() const { return list_; }

    // Refuses a variable that an entry already holds (the message is
    // kVariableExistsMessage) and a value that does not suit the directive;
    // "Add" is disabled afterwards either way.
    AddResult Add(const std::string& variable, Directive directive, const std::string& value);
    bool Replace(const std::string& variable, Directive directive, const std::string& value);
    bool Delete();
    void Select(int index);
    // Editing the variable field enables "Add" again.
    void VariableEdited() { add_enabled_ = true; }

    bool AddEnabled() const { return add_enabled_; }
    bool DeleteEnabled() const { return delete_enabled_; }

    // Values the directive takes: a number for SETA (decimal, 0x or &
    // hexadecimal, optionally negative), {TRUE} or {FALSE} for SETL, any
    // text for SETS; a variable is one word.
    static bool ValidVariable(const std::string& variable);
    static bool ValidValue(Directive directive, const std::string& value);

private:
    EntryList list_;
    bool add_enabled_ = true;
    bool delete_enabled_ = false;
};

}  // namespace ads::options
