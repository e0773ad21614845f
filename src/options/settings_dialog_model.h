// The settings dialog without its windows: the tree of the scope it was
// opened with, the page or tab set of the selected item, the buttons, and
// the "Equivalent Command Line" of each tool as the controls stand. A
// window shows it; a host without windows drives it by labels.
//
// What each scope edits:
//   - the whole target (opened on the project): the tool entries edit the
//     target's tool-wide strings ("ADS_GArmAsmParam", the four compiler
//     strings, "ADS_LNKPARAM", "ADS_FromELFParam") with the tool-wide pages;
//     "Default" reads the page from the new-target string;
//   - a file or a folder: the tool entries edit the node's own page states
//     with the per-target pages ("*Default last level"); "Default" sets every
//     position back to the level above. The scope's page-state group is
//     loaded for every target when the dialog opens and saved, with
//     "LocalConfigure", when changes are accepted.
// The other items' pages come from a factory (Target Settings, Access
// Paths, ...); an item without one shows an empty page.
//
// Buttons: Apply checks every page and saves what changed (nothing when a
// page refuses); OK is Apply and close; Cancel closes and keeps what Apply
// saved; Default puts the shown page back to its default.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "options/dialog_page.h"
#include "options/linker_options.h"
#include "options/option_text.h"
#include "options/page_state.h"
#include "options/settings_tree.h"

namespace ads::options {

using PageFactory = std::function<std::unique_ptr<StoredPage>(const std::string& item)>;

// The pages of "Select CPU", "Target Settings", "Access Paths", "File
// Mappings", "ARM Target" and "Property"; null for any other item (the
// plug-in's factory adds "ARM Debug" from the debug subsystem).
std::unique_ptr<StoredPage> MakeItemPage(const std::string& item);

class SettingsDialogModel {
public:
    // Loads every page from the project; `via` converts via-file names for
    // the "Equivalent Command Line" only.
    SettingsDialogModel(int scope, DialogContext context, const PageFactory& factory, PathConverter via = {});
    ~SettingsDialogModel();

    int Scope() const { return scope_; }
    const std::vector<TreeItem>& Tree() const { return tree_; }

    // A click on a tree item or a tab. Empty, or why it was refused (with
    // the valid choices).
    std::string Select(const std::string& item);
    std::string SelectTab(const std::string& tab);

    const std::string& SelectedItem() const { return selected_; }
    // The caption above the shown page; empty for a group or the root.
    std::string Caption() const;
    // The tabs of the shown tool entry (none for a single page).
    std::vector<std::string> Tabs() const;
    std::string SelectedTab() const;
    // The page shown, or null for a group or the root.
    DialogPage* ShownPage();

    // Sets the shown page's control named `label` (see ControlNames).
    std::string Set(const std::string& label, const std::string& value);
    // The names controls are set by: the label; a control without one by
    // its group's caption; "GROUP: LABEL" where a name occurs twice on the
    // page, and " #2", " #3" after a name that is still not unique. Empty
    // for buttons and for controls that keep nothing.
    static std::vector<std::string> ControlNames(const DialogPage& page);

    void Default();
    // Empty, or the message of the first page that refused (nothing saved).
    std::string Apply();
    // Whether a change was saved while the dialog was open.
    bool Saved() const { return saved_; }

    // The tools whose "Equivalent Command Line" the scope shows.
    std::vector<std::string> Tools() const;
    // The options of `tool` as the controls stand: true and the text, or
    // false and the error text (empty for a tool the scope does not show).
    bool CommandLine(const std::string& tool, std::string* text) const;

    // Every page of the tree, tab by tab, with each control's name, value
    // and whether it is enabled, then every "Equivalent Command Line".
    std::string Show() const;

private:
    struct Entry;

    Entry* Find(const std::string& item);
    const Entry* Find(const std::string& item) const;
    std::vector<DialogPage*> ShownTabs(const Entry& entry) const;
    PageStateSet CurrentStates(const Entry& entry) const;
    std::string FamilyText(const Entry& entry, std::string* error) const;
    std::string Validate(const Entry& entry) const;
    void Save(Entry& entry);

    int scope_;
    DialogContext context_;
    PathConverter via_;
    std::vector<TreeItem> tree_;
    std::vector<std::unique_ptr<Entry>> entries_;
    std::vector<TargetPageStates> states_;  // the scope's group, every target
    size_t current_ = 0;                    // the current target in states_
    LinkerPages linker_;
    SwitchPage fromelf_;
    std::string selected_;
    bool saved_ = false;
};

}  // namespace ads::options
