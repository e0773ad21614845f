// One page of the settings dialog as a view sees it, whatever keeps the
// page's values: its controls (from its description) and each control's
// value as text. A window binds its controls to this; a host without windows
// sets and reads the same values by label. Nothing here knows a window.
//
// Values as text:
//   - check box: "0" or "1"; on a per-target page also "-1" (the level above
//     decides);
//   - radio group and combo: the label of the chosen entry ("" for none); a
//     value may name the entry by its label or by its index;
//   - edit field: its text;
//   - list: its entries, one per line ('\n'); a value separates them by ';'
//     or by '\n';
//   - button: nothing (a button is pressed, not set); a button the page acts
//     on itself (Presses) is pressed by setting it to any value.
#pragma once

#include <string>
#include <vector>

#include "ads/config_node.h"
#include "config/host_api.h"
#include "options/pages.h"

namespace ads::options {

class DialogPage {
public:
    virtual ~DialogPage() = default;

    // The tab's or tree item's text, the controls in the order shown.
    virtual const PageDescription& Description() const = 0;

    virtual std::string Get(int control) const = 0;
    // Takes `value` as the control would from a user. Returns empty, or why
    // the value was refused ("takes 0 or 1", "takes one of: ..."), leaving
    // the control as it was.
    virtual std::string Set(int control, const std::string& value) = 0;
    // Whether the user can change the control now.
    virtual bool Enabled(int control) const {
        (void)control;
        return true;
    }

    // A button the page acts on itself (not a chooser of a file or a folder
    // for a field): Press does what a click does and returns empty, or why
    // nothing was done.
    virtual bool Presses(int control) const {
        (void)control;
        return false;
    }
    virtual std::string Press(int control) {
        (void)control;
        return "cannot be pressed";
    }

    // The "Default" button on this page.
    virtual void Default() = 0;
    // Whether anything differs from what the page was loaded with (or last
    // saved).
    virtual bool Changed() const = 0;
    // Checks the page before it is saved: empty, or the message the page
    // shows (the save is refused).
    virtual std::string Validate() const { return {}; }
};

// Where a page reads its values and how it writes them back.
struct DialogContext {
    ConfigNode* project = nullptr;        // the project root ("OrvaneProject")
    ConfigNode* configuration = nullptr;  // the current target's "Configuration"
    ConfigNode* node = nullptr;           // the node the dialog was opened on
    std::string target;                   // the current target's name
    std::vector<std::string> processors;  // the host's processor list
    config::HostApi* host = nullptr;      // every write: clone, edit, commit
};

// A page that keeps its values in attributes of the project's nodes (the
// target's pages, "Property"): it reads them when the dialog opens and
// writes what changed when the user's changes are accepted.
class StoredPage : public DialogPage {
public:
    virtual void Load(const DialogContext& context) = 0;
    // Writes the changed values through context.host and takes them as the
    // loaded ones. Called only when Validate() is empty.
    virtual void Save(const DialogContext& context) = 0;
};

// Helpers that pages share for the text form of values. Each returns empty
// or the reason the text is refused.
std::string ParseCheck(const std::string& value, bool allow_unset, int* out);
// An entry by its label, or by its index among `choices`.
std::string ParseChoice(const std::vector<Choice>& choices, const std::string& value, int* out);
const std::string& ChoiceLabel(const std::vector<Choice>& choices, int value);
// List entries from ';' or '\n' separated text (empty pieces dropped), and back.
std::vector<std::string> SplitList(const std::string& value);
std::string JoinList(const std::vector<std::string>& entries);

}  // namespace ads::options
