#include "win32/window_driver.h"

#include <commctrl.h>

#include <chrono>
#include <cstdio>
#include <thread>

namespace ads::testing {

namespace {

// A callback of the system's calling convention (a lambda is not one in the
// 32-bit build).
BOOL CALLBACK AddChild(HWND hwnd, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(hwnd);
    return TRUE;
}

std::vector<HWND> Children(HWND parent) {
    std::vector<HWND> out;
    EnumChildWindows(parent, AddChild, reinterpret_cast<LPARAM>(&out));
    return out;
}

std::string ClassOf(HWND hwnd) {
    char name[64] = {};
    GetClassNameA(hwnd, name, sizeof name);
    return name;
}

void Walk(HWND tree, HTREEITEM item, std::vector<std::pair<HTREEITEM, std::string>>* out) {
    for (; item != nullptr; item = TreeView_GetNextSibling(tree, item)) {
        char text[256] = {};
        TVITEMA it{};
        it.mask = TVIF_TEXT;
        it.hItem = item;
        it.pszText = text;
        it.cchTextMax = sizeof text;
        SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&it));
        out->emplace_back(item, text);
        Walk(tree, TreeView_GetChild(tree, item), out);
    }
}

std::vector<std::pair<HTREEITEM, std::string>> Items(HWND tree) {
    std::vector<std::pair<HTREEITEM, std::string>> out;
    if (tree != nullptr) Walk(tree, TreeView_GetRoot(tree), &out);
    return out;
}

}  // namespace

std::string WindowDriver::Text(HWND hwnd) {
    char text[4096] = {};
    SendMessageA(hwnd, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text));
    return text;
}

bool WindowDriver::Wait(const std::string& title, double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
        HWND hwnd = FindWindowA(nullptr, title.c_str());
        if (hwnd != nullptr && IsWindowVisible(hwnd)) {
            dialog_ = hwnd;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

HWND WindowDriver::Child(const char* window_class) const {
    for (HWND h : Children(dialog_)) {
        if (ClassOf(h) == window_class) return h;
    }
    return nullptr;
}

std::vector<std::string> WindowDriver::TreeItems() const {
    std::vector<std::string> out;
    for (const auto& [item, text] : Items(Child(WC_TREEVIEWA))) out.push_back(text);
    return out;
}

bool WindowDriver::SelectItem(const std::string& label) const {
    HWND tree = Child(WC_TREEVIEWA);
    for (const auto& [item, text] : Items(tree)) {
        if (text == label) return SendMessageA(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item)) != 0;
    }
    return false;
}

std::vector<std::string> WindowDriver::Tabs() const {
    std::vector<std::string> out;
    HWND tabs = Child(WC_TABCONTROLA);
    if (tabs == nullptr || !IsWindowVisible(tabs)) return out;
    const int n = TabCtrl_GetItemCount(tabs);
    for (int i = 0; i < n; ++i) {
        char text[128] = {};
        TCITEMA item{};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = sizeof text;
        SendMessageA(tabs, TCM_GETITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        out.push_back(text);
    }
    return out;
}

bool WindowDriver::SelectTab(const std::string& label) const {
    HWND tabs = Child(WC_TABCONTROLA);
    const std::vector<std::string> all = Tabs();
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i] != label) continue;
        TabCtrl_SetCurSel(tabs, static_cast<int>(i));
        NMHDR n{tabs, static_cast<UINT_PTR>(GetDlgCtrlID(tabs)), static_cast<UINT>(TCN_SELCHANGE)};
        SendMessageA(dialog_, WM_NOTIFY, n.idFrom, reinterpret_cast<LPARAM>(&n));
        return true;
    }
    return false;
}

HWND WindowDriver::Find(const std::string& text, const char* window_class) const {
    for (HWND h : Children(dialog_)) {
        if (!IsWindowVisible(h) || Text(h) != text) continue;
        if (window_class == nullptr || ClassOf(h) == window_class) return h;
    }
    return nullptr;
}

bool WindowDriver::Click(const std::string& text) const {
    HWND button = Find(text, "Button");
    if (button == nullptr || !IsWindowEnabled(button)) return false;
    SendMessageA(dialog_, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED), reinterpret_cast<LPARAM>(button));
    return true;
}

void WindowDriver::Press(int id) const {
    SendMessageA(dialog_, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(dialog_, id)));
}

bool WindowDriver::Type(const std::string& label, const std::string& text) const {
    bool after = false;
    for (HWND h : Children(dialog_)) {
        if (!IsWindowVisible(h)) continue;
        if (Text(h) == label && ClassOf(h) == "Static") after = true;
        else if (after && ClassOf(h) == "Edit") {
            // WM_SETTEXT makes the field tell its parent EN_CHANGE.
            SendMessageA(h, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
            return true;
        }
    }
    return false;
}

bool WindowDriver::TypeInCell(int row, int column, const std::string& text) const {
    HWND grid = nullptr;
    for (HWND h : Children(dialog_)) {
        if (IsWindowVisible(h) && ClassOf(h) == "SysListView32") grid = h;
    }
    if (grid == nullptr) return false;
    RECT r{};
    r.top = column;
    r.left = LVIR_LABEL;
    if (!SendMessageA(grid, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&r))) return false;
    const LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    SendMessageA(grid, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(grid, WM_LBUTTONUP, 0, at);
    SendMessageA(grid, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
    SendMessageA(grid, WM_LBUTTONUP, 0, at);
    // The field belongs to the window's thread: ask that thread for its focus.
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    HWND field = GetGUIThreadInfo(GetWindowThreadProcessId(dialog_, nullptr), &info) ? info.hwndFocus : nullptr;
    if (field == nullptr || ClassOf(field) != "Edit") return false;
    SendMessageA(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    return true;
}

std::vector<std::string> WindowDriver::CommandLines() const {
    std::vector<std::string> out;
    for (HWND h : Children(dialog_)) {
        if (ClassOf(h) == "Edit" && (GetWindowLongA(h, GWL_STYLE) & ES_READONLY) != 0) out.push_back(Text(h));
    }
    return out;
}

bool WindowDriver::Capture(const std::string& path) const {
    // The client area: without a window manager the frame is not drawn.
    RECT r;
    GetClientRect(dialog_, &r);
    MapWindowPoints(dialog_, nullptr, reinterpret_cast<POINT*>(&r), 2);
    const int w = r.right - r.left, h = r.bottom - r.top;
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = w;
    info.bmiHeader.biHeight = h;  // bottom-up, as a BMP file keeps its rows
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP dib = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bool ok = dib != nullptr;
    if (ok) {
        HGDIOBJ old = SelectObject(dc, dib);
        // The screen as it shows the dialog: a printed window leaves out
        // its child controls here. The dialog's thread paints first.
        RedrawWindow(dialog_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
        SendMessageA(dialog_, WM_NULL, 0, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        BitBlt(dc, 0, 0, w, h, screen, r.left, r.top, SRCCOPY);
        GdiFlush();
        const DWORD stride = ((static_cast<DWORD>(w) * 3 + 3) & ~3u);
        const DWORD size = stride * static_cast<DWORD>(h);
        BITMAPFILEHEADER file{};
        file.bfType = 0x4D42;  // "BM"
        file.bfOffBits = sizeof file + sizeof info.bmiHeader;
        file.bfSize = file.bfOffBits + size;
        FILE* out = std::fopen(path.c_str(), "wb");
        ok = out != nullptr;
        if (ok) {
            ok = std::fwrite(&file, sizeof file, 1, out) == 1 &&
                 std::fwrite(&info.bmiHeader, sizeof info.bmiHeader, 1, out) == 1 &&
                 std::fwrite(bits, 1, size, out) == size;
            ok = std::fclose(out) == 0 && ok;
        }
        SelectObject(dc, old);
        DeleteObject(dib);
    }
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return ok;
}

std::string ShotName(const std::string& scope, const std::string& item, const std::string& tab) {
    std::string name = scope + "-" + item + (tab.empty() ? "" : "-" + tab);
    for (char& c : name) {
        if (c == ' ' || c == '/') c = '_';
    }
    return name + ".bmp";
}

}  // namespace ads::testing
