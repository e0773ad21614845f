// The window of any DialogPage, laid out from its description: each change
// of a control goes to DialogPage::Set; Refresh shows the page's values and
// which controls are enabled.
#pragma once

#include <map>
#include <vector>

#include "options/dialog_page.h"
#include "options/win32/dialog_window.h"
#include "options/win32/page_layout.h"

namespace ads::options::win32 {

class PageView : public PageHost {
public:
    // Creates the controls in `owner` with ids from *next_id on, the page's
    // top left corner at (x, y) dialog units; in the tab order right after
    // `after`.
    PageView(DialogWindow* owner, DialogPage* page, const PageLayout& layout, int x, int y, int* next_id,
             HWND after);
    ~PageView() override;

    void Show(bool visible) override;
    void Refresh();
    // A WM_COMMAND for one of this view's controls: true when it was one
    // (the page may have changed).
    bool Command(int id, int code);
    // A WM_NOTIFY from one of this view's controls (a double click on a grid
    // cell opens a field over it): true when the page may have changed.
    bool Notify(const NMHDR& header);

private:
    struct Bound {
        Piece piece;
        int control;
        int choice;
        HWND hwnd;
    };

    void SetValue(int control, const std::string& value);
    void Browse(const Bound& button);
    void EditList(const Bound& button);
    HWND Find(Piece piece, int control) const;
    void FillGrid(const Bound& grid);
    void EditCell(const Bound& grid, POINT at);  // `at`: in the grid's client area
    void EndCellEdit();

    DialogWindow* owner_;
    DialogPage* page_;
    std::map<int, Bound> ids_;
    std::vector<HWND> windows_;
    bool refreshing_ = false;
    HWND cell_edit_ = nullptr;  // the field over the grid cell being edited
    int cell_edit_id_ = 0;
    int edited_cell_ = -1;
};

}  // namespace ads::options::win32
