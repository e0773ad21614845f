// Drives the settings window from a second thread, as a user's clicks
// would reach it: tree and tab selections, clicks and typing are messages
// sent to the dialog and its controls.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace ads::testing {

class WindowDriver {
public:
    // Waits up to `seconds` for a visible top-level window titled `title`.
    bool Wait(const std::string& title, double seconds);
    HWND dialog() const { return dialog_; }

    // The tree's item texts, depth first.
    std::vector<std::string> TreeItems() const;
    bool SelectItem(const std::string& label) const;
    std::vector<std::string> Tabs() const;
    bool SelectTab(const std::string& label) const;
    // A visible control by its text (and window class, when given).
    HWND Find(const std::string& text, const char* window_class = nullptr) const;
    // A click as the control tells its parent.
    bool Click(const std::string& text) const;
    void Press(int id) const;
    // Types `text` into the visible edit that follows the label `label`.
    bool Type(const std::string& label, const std::string& text) const;
    // Double-clicks the cell of the visible grid (a list view) at `row` and
    // `column` and types `text` into the field that opens over it.
    bool TypeInCell(int row, int column, const std::string& text) const;
    // The read-only fields of "Equivalent Command Line", in order.
    std::vector<std::string> CommandLines() const;
    static std::string Text(HWND hwnd);

    // The dialog as a 24-bit BMP file.
    bool Capture(const std::string& path) const;

private:
    HWND Child(const char* window_class) const;

    HWND dialog_ = nullptr;
};

// "<scope>-<item>[-<tab>].bmp" with blanks and '/' as '_'.
std::string ShotName(const std::string& scope, const std::string& item, const std::string& tab);

}  // namespace ads::testing
