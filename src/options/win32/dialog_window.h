// A small dialog layer: one dialog procedure for every dialog of the
// plug-in, the object kept in the window's DWLP_USER, and hooks a dialog
// overrides. The dialog comes from an in-memory template that carries only
// its frame and font; the controls are created at run time in dialog units,
// so everything scales with the dialog's font.
#pragma once

#include <windows.h>

#include <string>

namespace ads::options::win32 {

class DialogWindow {
public:
    virtual ~DialogWindow() = default;

    // Shows the dialog modally over `owner`, `width` by `height` dialog
    // units; returns IDOK or IDCANCEL (-1 when no window could be made).
    INT_PTR RunModal(HWND owner, const std::string& title, int width, int height);
    HWND hwnd() const { return hwnd_; }

    // A child control at dialog-unit coordinates, in the dialog's font.
    HWND CreateControl(const char* window_class, const std::string& text, DWORD style, int x, int y, int w, int h,
                       int id, DWORD ex_style = 0);
    RECT ToPixels(int x, int y, int w, int h) const;

protected:
    virtual void OnInit() {}
    // A WM_COMMAND other than IDOK and IDCANCEL.
    virtual void OnCommand(int id, int code, HWND control) {
        (void)id;
        (void)code;
        (void)control;
    }
    virtual LRESULT OnNotify(const NMHDR& header) {
        (void)header;
        return 0;
    }
    // OK: the dialog closes only when this accepts.
    virtual bool OnApply() { return true; }

private:
    static INT_PTR CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam);

    HWND hwnd_ = nullptr;
};

// A page host: one page view shown in an area, the others hidden.
class PageHost {
public:
    virtual ~PageHost() = default;
    virtual void Show(bool visible) = 0;
};

}  // namespace ads::options::win32
