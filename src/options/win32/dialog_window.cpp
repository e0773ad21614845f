#include "options/win32/dialog_window.h"

#include <cstring>
#include <vector>

namespace ads::options::win32 {

namespace {

// DLGTEMPLATE, then the menu, class and title arrays, then the font.
std::vector<WORD> Template(const std::string& title, int width, int height) {
    std::vector<WORD> t(sizeof(DLGTEMPLATE) / sizeof(WORD), 0);
    DLGTEMPLATE header{};
    header.style = DS_SETFONT | DS_MODALFRAME | DS_CENTER | WS_POPUP | WS_CAPTION | WS_SYSMENU;
    header.dwExtendedStyle = WS_EX_CONTROLPARENT;
    header.cdit = 0;
    header.cx = static_cast<short>(width);
    header.cy = static_cast<short>(height);
    std::memcpy(t.data(), &header, sizeof header);
    t.push_back(0);  // no menu
    t.push_back(0);  // the dialog class
    for (char c : title) t.push_back(static_cast<unsigned char>(c));
    t.push_back(0);
    t.push_back(8);  // point size
    for (char c : std::string("MS Shell Dlg")) t.push_back(static_cast<unsigned char>(c));
    t.push_back(0);
    return t;
}

}  // namespace

INT_PTR DialogWindow::RunModal(HWND owner, const std::string& title, int width, int height) {
    const std::vector<WORD> t = Template(title, width, height);
    return DialogBoxIndirectParamA(GetModuleHandleA(nullptr), reinterpret_cast<const DLGTEMPLATE*>(t.data()), owner,
                                   &Procedure, reinterpret_cast<LPARAM>(this));
}

RECT DialogWindow::ToPixels(int x, int y, int w, int h) const {
    RECT r{x, y, x + w, y + h};
    MapDialogRect(hwnd_, &r);
    return r;
}

HWND DialogWindow::CreateControl(const char* window_class, const std::string& text, DWORD style, int x, int y, int w,
                                 int h, int id, DWORD ex_style) {
    const RECT r = ToPixels(x, y, w, h);
    HWND control = CreateWindowExA(ex_style, window_class, text.c_str(), WS_CHILD | style, r.left, r.top,
                                   r.right - r.left, r.bottom - r.top, hwnd_,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr),
                                   nullptr);
    if (control != nullptr) SendMessageA(control, WM_SETFONT, SendMessageA(hwnd_, WM_GETFONT, 0, 0), FALSE);
    return control;
}

INT_PTR CALLBACK DialogWindow::Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(hwnd, DWLP_USER, lparam);
        auto* self = reinterpret_cast<DialogWindow*>(lparam);
        self->hwnd_ = hwnd;
        self->OnInit();
        return TRUE;
    }
    auto* self = reinterpret_cast<DialogWindow*>(GetWindowLongPtrA(hwnd, DWLP_USER));
    if (self == nullptr) return FALSE;
    switch (message) {
        case WM_COMMAND: {
            const int id = LOWORD(wparam);
            if (id == IDOK) {
                if (self->OnApply()) EndDialog(hwnd, IDOK);
            } else if (id == IDCANCEL) {
                EndDialog(hwnd, IDCANCEL);
            } else {
                self->OnCommand(id, HIWORD(wparam), reinterpret_cast<HWND>(lparam));
            }
            return TRUE;
        }
        case WM_NOTIFY:
            SetWindowLongPtrA(hwnd, DWLP_MSGRESULT, self->OnNotify(*reinterpret_cast<const NMHDR*>(lparam)));
            return TRUE;
        case WM_DESTROY:
            SetWindowLongPtrA(hwnd, DWLP_USER, 0);
            self->hwnd_ = nullptr;
            return FALSE;
    }
    return FALSE;
}

}  // namespace ads::options::win32
