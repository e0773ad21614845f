#include "options/win32/page_view.h"

#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>

#include <algorithm>

namespace ads::options::win32 {

namespace {

std::string WindowText(HWND hwnd) {
    const int n = GetWindowTextLengthA(hwnd);
    std::string text(static_cast<size_t>(n) + 1, '\0');
    GetWindowTextA(hwnd, text.data(), n + 1);
    text.resize(static_cast<size_t>(n));
    return text;
}

std::string ListText(HWND list, int index) {
    const LRESULT n = SendMessageA(list, LB_GETTEXTLEN, static_cast<WPARAM>(index), 0);
    if (n == LB_ERR) return {};
    std::string text(static_cast<size_t>(n) + 1, '\0');
    SendMessageA(list, LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<size_t>(n));
    return text;
}

}  // namespace

PageView::PageView(DialogWindow* owner, DialogPage* page, const PageLayout& layout, int x, int y, int* next_id,
                   HWND after)
    : owner_(owner), page_(page) {
    const PageDescription& d = page->Description();
    for (const Placed& p : layout.pieces) {
        const char* cls = "BUTTON";
        DWORD style = WS_TABSTOP;
        DWORD ex = 0;
        int h = p.h;
        switch (p.piece) {
            case Piece::kGroupBox: style = BS_GROUPBOX; break;
            case Piece::kLabel: cls = "STATIC"; style = SS_LEFT | SS_NOPREFIX; break;
            case Piece::kCheck: style |= BS_3STATE; break;
            case Piece::kRadio: style |= BS_RADIOBUTTON | (p.choice == 0 ? WS_GROUP : 0); break;
            case Piece::kCombo:
                cls = "COMBOBOX";
                style |= CBS_DROPDOWNLIST | WS_VSCROLL;
                h = 120;
                break;
            case Piece::kEdit:
            case Piece::kEntry:
                cls = "EDIT";
                style |= ES_AUTOHSCROLL;
                ex = WS_EX_CLIENTEDGE;
                break;
            case Piece::kList:
                cls = "LISTBOX";
                style |= LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | WS_VSCROLL | WS_HSCROLL;
                ex = WS_EX_CLIENTEDGE;
                break;
            case Piece::kAdd:
            case Piece::kReplace:
            case Piece::kDelete:
            case Piece::kButton: style |= BS_PUSHBUTTON; break;
            case Piece::kGrid:
                cls = WC_LISTVIEWA;
                style |= LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER;
                ex = WS_EX_CLIENTEDGE;
                break;
        }
        const int id = (*next_id)++;
        // A label broken over two lines in the page's data shows on one.
        std::string text;
        for (char ch : p.text) {
            if (ch != '\n' && ch != '\r') text += ch;
        }
        HWND hwnd = owner_->CreateControl(cls, text, style, x + p.x, y + p.y, p.w, h, id, ex);
        if (hwnd == nullptr) continue;
        windows_.push_back(hwnd);
        SetWindowPos(hwnd, after, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        after = hwnd;
        if (p.piece == Piece::kGrid) {
            ListView_SetExtendedListViewStyle(hwnd, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
            RECT area{};
            GetClientRect(hwnd, &area);
            const int width = (area.right - area.left) / std::max(1, p.choice);
            for (int k = 0; k < p.choice; ++k) {
                LVCOLUMNA column{};
                column.mask = LVCF_TEXT | LVCF_WIDTH;
                column.cx = width;
                column.pszText = const_cast<char*>(d.controls[static_cast<size_t>(p.control + k)].label.c_str());
                SendMessageA(hwnd, LVM_INSERTCOLUMNA, static_cast<WPARAM>(k), reinterpret_cast<LPARAM>(&column));
            }
        }
        if (p.piece == Piece::kCombo) {
            for (const Choice& c : d.controls[static_cast<size_t>(p.control)].choices) {
                SendMessageA(hwnd, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(c.label.c_str()));
            }
        }
        if (p.piece != Piece::kGroupBox && p.piece != Piece::kLabel) ids_[id] = Bound{p.piece, p.control, p.choice, hwnd};
    }
    Refresh();
}

PageView::~PageView() {
    EndCellEdit();
    for (HWND hwnd : windows_) DestroyWindow(hwnd);
}

void PageView::Show(bool visible) {
    if (!visible) EndCellEdit();
    for (HWND hwnd : windows_) ShowWindow(hwnd, visible ? SW_SHOW : SW_HIDE);
}

HWND PageView::Find(Piece piece, int control) const {
    for (const auto& [id, b] : ids_) {
        if (b.piece == piece && b.control == control) return b.hwnd;
    }
    return nullptr;
}

void PageView::Refresh() {
    refreshing_ = true;
    const PageDescription& d = page_->Description();
    for (const auto& [id, b] : ids_) {
        const Control& c = d.controls[static_cast<size_t>(b.control)];
        const std::string value = c.kind == ControlKind::kButton ? std::string() : page_->Get(b.control);
        switch (b.piece) {
            case Piece::kCheck:
                SendMessageA(b.hwnd, BM_SETCHECK,
                             value == "1" ? BST_CHECKED : value == "-1" ? BST_INDETERMINATE : BST_UNCHECKED, 0);
                break;
            case Piece::kRadio:
                SendMessageA(b.hwnd, BM_SETCHECK,
                             value == c.choices[static_cast<size_t>(b.choice)].label ? BST_CHECKED : BST_UNCHECKED, 0);
                break;
            case Piece::kCombo: {
                int index = -1;
                for (size_t k = 0; k < c.choices.size(); ++k) {
                    if (c.choices[k].label == value) index = static_cast<int>(k);
                }
                SendMessageA(b.hwnd, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
                break;
            }
            case Piece::kEdit:
                if (WindowText(b.hwnd) != value) SetWindowTextA(b.hwnd, value.c_str());
                break;
            case Piece::kList: {
                const std::vector<std::string> entries = SplitList(value);
                const LRESULT selected = SendMessageA(b.hwnd, LB_GETCURSEL, 0, 0);
                SendMessageA(b.hwnd, LB_RESETCONTENT, 0, 0);
                for (const std::string& e : entries) {
                    SendMessageA(b.hwnd, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(e.c_str()));
                }
                if (selected != LB_ERR && selected < static_cast<LRESULT>(entries.size())) {
                    SendMessageA(b.hwnd, LB_SETCURSEL, static_cast<WPARAM>(selected), 0);
                }
                break;
            }
            case Piece::kGrid:
                FillGrid(b);
                continue;  // enabled always: its rows are those in use
            default: break;
        }
        EnableWindow(b.hwnd, page_->Enabled(b.control) ? TRUE : FALSE);
    }
    refreshing_ = false;
}

// The grid shows the rows whose cells can be edited now, a row per item.
void PageView::FillGrid(const Bound& grid) {
    const PageDescription& d = page_->Description();
    const int columns = std::max(1, grid.choice);
    int row = 0;
    for (size_t first = static_cast<size_t>(grid.control);
         first + static_cast<size_t>(columns) <= d.controls.size() && page_->Enabled(static_cast<int>(first));
         first += static_cast<size_t>(columns), ++row) {
        if (row >= ListView_GetItemCount(grid.hwnd)) {
            LVITEMA item{};
            item.iItem = row;
            SendMessageA(grid.hwnd, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
        }
        for (int k = 0; k < columns; ++k) {
            const std::string text = page_->Get(static_cast<int>(first) + k);
            LVITEMA item{};
            item.iSubItem = k;
            item.pszText = const_cast<char*>(text.c_str());
            SendMessageA(grid.hwnd, LVM_SETITEMTEXTA, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
        }
    }
    while (ListView_GetItemCount(grid.hwnd) > row) ListView_DeleteItem(grid.hwnd, row);
}

bool PageView::Notify(const NMHDR& header) {
    const auto it = ids_.find(static_cast<int>(header.idFrom));
    if (it == ids_.end() || it->second.piece != Piece::kGrid || header.code != NM_DBLCLK) return false;
    EditCell(it->second, reinterpret_cast<const NMITEMACTIVATE&>(header).ptAction);
    return false;
}

// A field over the double-clicked cell takes its text; every change goes to
// the page as typed, so OK or a click elsewhere loses nothing.
void PageView::EditCell(const Bound& grid, POINT at) {
    EndCellEdit();
    LVHITTESTINFO hit{};
    hit.pt = at;
    if (ListView_SubItemHitTest(grid.hwnd, &hit) < 0 || hit.iItem < 0) return;
    const int cell = grid.control + hit.iItem * std::max(1, grid.choice) + hit.iSubItem;
    if (!page_->Enabled(cell)) return;
    RECT r{};
    ListView_GetSubItemRect(grid.hwnd, hit.iItem, hit.iSubItem, LVIR_LABEL, &r);
    MapWindowPoints(grid.hwnd, owner_->hwnd(), reinterpret_cast<POINT*>(&r), 2);
    if (cell_edit_id_ == 0) cell_edit_id_ = 0xF000 + GetDlgCtrlID(grid.hwnd) % 0x0FFF;
    cell_edit_ = CreateWindowExA(0, "EDIT", page_->Get(cell).c_str(), WS_CHILD | WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL,
                                 r.left, r.top, r.right - r.left, r.bottom - r.top, owner_->hwnd(),
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(cell_edit_id_)),
                                 GetModuleHandleA(nullptr), nullptr);
    if (cell_edit_ == nullptr) return;
    SendMessageA(cell_edit_, WM_SETFONT, SendMessageA(owner_->hwnd(), WM_GETFONT, 0, 0), FALSE);
    SetWindowPos(cell_edit_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    edited_cell_ = cell;
    SendMessageA(cell_edit_, EM_SETSEL, 0, -1);
    SetFocus(cell_edit_);
}

void PageView::EndCellEdit() {
    if (cell_edit_ == nullptr) return;
    HWND edit = cell_edit_;
    cell_edit_ = nullptr;
    edited_cell_ = -1;
    DestroyWindow(edit);
}

void PageView::SetValue(int control, const std::string& value) {
    page_->Set(control, value);  // a refused value leaves the control as it was: Refresh shows it
}

bool PageView::Command(int id, int code) {
    if (cell_edit_ != nullptr && id == cell_edit_id_) {
        if (code == EN_CHANGE) {
            SetValue(edited_cell_, WindowText(cell_edit_));
        } else if (code == EN_KILLFOCUS) {
            EndCellEdit();
            Refresh();
        }
        return true;
    }
    const auto it = ids_.find(id);
    if (it == ids_.end()) return false;
    if (refreshing_) return true;
    const Bound& b = it->second;
    const Control& c = page_->Description().controls[static_cast<size_t>(b.control)];
    switch (b.piece) {
        case Piece::kCheck: {
            if (code != BN_CLICKED) return true;
            const std::string now = page_->Get(b.control);
            if (now == "0") SetValue(b.control, "1");
            else if (now == "-1" || !page_->Set(b.control, "-1").empty()) SetValue(b.control, "0");
            break;
        }
        case Piece::kRadio:
            if (code != BN_CLICKED) return true;
            SetValue(b.control, c.choices[static_cast<size_t>(b.choice)].label);
            break;
        case Piece::kCombo: {
            if (code != CBN_SELCHANGE) return true;
            const LRESULT k = SendMessageA(b.hwnd, CB_GETCURSEL, 0, 0);
            if (k >= 0 && k < static_cast<LRESULT>(c.choices.size())) {
                SetValue(b.control, c.choices[static_cast<size_t>(k)].label);
            }
            break;
        }
        case Piece::kEdit:
            if (code != EN_CHANGE) return true;
            SetValue(b.control, WindowText(b.hwnd));
            // Refresh sets a field's text only where it differs: the caret stays.
            Refresh();
            return true;
        case Piece::kList:
            if (code == LBN_SELCHANGE) {
                const LRESULT k = SendMessageA(b.hwnd, LB_GETCURSEL, 0, 0);
                if (HWND entry = Find(Piece::kEntry, b.control)) {
                    refreshing_ = true;
                    SetWindowTextA(entry, ListText(b.hwnd, static_cast<int>(k)).c_str());
                    refreshing_ = false;
                }
            }
            return true;
        case Piece::kEntry: return true;
        case Piece::kAdd:
        case Piece::kReplace:
        case Piece::kDelete:
            if (code != BN_CLICKED) return true;
            EditList(b);
            break;
        case Piece::kButton:
            if (code != BN_CLICKED) return true;
            if (page_->Presses(b.control)) page_->Press(b.control);
            else Browse(b);
            break;
        default: return true;
    }
    Refresh();
    return true;
}

void PageView::EditList(const Bound& button) {
    HWND list = Find(Piece::kList, button.control);
    HWND entry = Find(Piece::kEntry, button.control);
    if (list == nullptr || entry == nullptr) return;
    std::vector<std::string> entries = SplitList(page_->Get(button.control));
    const LRESULT selected = SendMessageA(list, LB_GETCURSEL, 0, 0);
    const std::string text = WindowText(entry);
    const bool have = selected >= 0 && selected < static_cast<LRESULT>(entries.size());
    if (button.piece == Piece::kAdd && !text.empty()) entries.push_back(text);
    else if (button.piece == Piece::kReplace && have && !text.empty()) entries[static_cast<size_t>(selected)] = text;
    else if (button.piece == Piece::kDelete && have) entries.erase(entries.begin() + selected);
    else return;
    std::string value;
    for (const std::string& e : entries) value += (value.empty() ? "" : "\n") + e;
    SetValue(button.control, value);
}

void PageView::Browse(const Bound& button) {
    const PageDescription& d = page_->Description();
    const Control& c = d.controls[static_cast<size_t>(button.control)];
    // The field the button belongs to: the edit keeping the same value.
    int field = -1;
    for (size_t k = 0; k < d.controls.size(); ++k) {
        if (d.controls[k].kind == ControlKind::kEdit && d.controls[k].slot == c.slot) field = static_cast<int>(k);
    }
    if (field < 0 && button.control > 0 && d.controls[static_cast<size_t>(button.control) - 1].kind == ControlKind::kEdit) {
        field = button.control - 1;
    }
    if (field < 0) return;
    const std::string current = page_->Get(field);
    if (c.filter.empty() && c.label != "...") {
        // "Edit..." opens the named file.
        if (!current.empty()) ShellExecuteA(owner_->hwnd(), "open", current.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
        return;
    }
    std::string filter = c.filter.empty() ? std::string("All Files (*.*)|*.*||") : c.filter;
    std::replace(filter.begin(), filter.end(), '|', '\0');
    filter.push_back('\0');
    char file[MAX_PATH] = {};
    OPENFILENAMEA ofn{};
    ofn.lStructSize = sizeof ofn;
    ofn.hwndOwner = owner_->hwnd();
    ofn.lpstrFilter = filter.c_str();
    ofn.lpstrFile = file;
    ofn.nMaxFile = MAX_PATH;
    ofn.Flags = OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameA(&ofn)) return;
    std::string chosen = file;
    // A field without a filter names a folder: the chosen file's.
    if (c.filter.empty()) {
        const size_t slash = chosen.find_last_of("\\/");
        if (slash != std::string::npos) chosen.resize(slash);
    }
    SetValue(field, chosen);
}

}  // namespace ads::options::win32
