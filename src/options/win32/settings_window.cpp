#include "options/win32/settings_window.h"

#include <windows.h>
#include <commctrl.h>

#include <algorithm>
#include <map>
#include <memory>

#include "options/win32/dialog_window.h"
#include "options/win32/page_view.h"

namespace ads::options::win32 {

namespace {

// Dialog units.
constexpr int kMargin = 7;
constexpr int kTreeWidth = 120;
constexpr int kPageWidth = 290;
// A page taller than this in one column is laid out in two.
constexpr int kPageMaxHeight = 250;
constexpr int kTabHeader = 15;  // one row of tabs
constexpr int kTabRow = 13;     // each further row: the compilers' eight tabs take two
constexpr int kTabRows = 2;
constexpr int kToolRow = 14;
constexpr int kButtonWidth = 50;
constexpr int kButtonHeight = 14;

enum Id : int {
    kIdApply = 100,
    kIdDefault,
    kIdTree,
    kIdTabs,
    kIdCaption,
    kIdToolsGroup,
    kIdFirstTool = 110,
    kIdFirstPageControl = 1000
};

// The tree's images: a group (closed folder), a page, the root.
HIMAGELIST MakeImages() {
    HIMAGELIST list = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 3, 0);
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    const COLORREF fill[] = {RGB(240, 200, 80), RGB(255, 255, 255), RGB(70, 110, 200)};
    for (COLORREF color : fill) {
        HBITMAP bitmap = CreateCompatibleBitmap(screen, 16, 16);
        HGDIOBJ old = SelectObject(dc, bitmap);
        RECT all{0, 0, 16, 16};
        HBRUSH back = CreateSolidBrush(RGB(255, 0, 255));
        FillRect(dc, &all, back);
        DeleteObject(back);
        HBRUSH brush = CreateSolidBrush(color);
        HGDIOBJ old_brush = SelectObject(dc, brush);
        Rectangle(dc, 2, 3, 14, 14);
        SelectObject(dc, old_brush);
        DeleteObject(brush);
        SelectObject(dc, old);
        ImageList_AddMasked(list, bitmap, RGB(255, 0, 255));
        DeleteObject(bitmap);
    }
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return list;
}

class SettingsWindow : public DialogWindow {
public:
    explicit SettingsWindow(SettingsDialogModel& model) : model_(model) {}
    ~SettingsWindow() override {
        if (images_ != nullptr) ImageList_Destroy(images_);
    }

    // The tallest page decides the page area; every page that fits it in
    // one column is shown so.
    void Measure() {
        page_height_ = 120;
        const std::string selected = model_.SelectedItem();
        const std::string tab = model_.SelectedTab();
        for (const TreeItem& item : model_.Tree()) {
            if (!model_.Select(item.label).empty()) continue;
            std::vector<std::string> tabs = model_.Tabs();
            if (tabs.empty()) tabs.push_back({});
            for (const std::string& t : tabs) {
                if (!t.empty() && !model_.SelectTab(t).empty()) continue;
                if (DialogPage* page = model_.ShownPage()) {
                    page_height_ = std::max(page_height_,
                                            LayOutPage(page->Description(), kPageWidth - 12, kPageMaxHeight).height);
                }
            }
        }
        page_height_ = std::min(page_height_, kPageMaxHeight);
        if (!selected.empty()) model_.Select(selected);
        if (!tab.empty()) model_.SelectTab(tab);
    }

    int Width() const { return kMargin + kTreeWidth + 6 + kPageWidth + kMargin; }
    // A page starts below the rows of tabs shown above it; the window leaves
    // room for the most rows any tool has.
    int PageTop(int rows = kTabRows) const { return kMargin + 12 + kTabHeader + (rows - 1) * kTabRow + 4; }
    int ToolsTop() const { return PageTop() + page_height_ + 8; }
    int ButtonsTop() const {
        return ToolsTop() + 11 + static_cast<int>(model_.Tools().size()) * kToolRow + 6 + 6;
    }
    int Height() const { return ButtonsTop() + kButtonHeight + kMargin; }

protected:
    void OnInit() override {
        const int left = kMargin + kTreeWidth + 6;
        tree_ = CreateControl(WC_TREEVIEWA, "",
                              WS_VISIBLE | WS_TABSTOP | WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                                  TVS_SHOWSELALWAYS,
                              kMargin, kMargin, kTreeWidth, ToolsTop() - 4 - kMargin, kIdTree);
        CreateControl("STATIC", "", WS_VISIBLE | SS_LEFT | SS_NOPREFIX, left, kMargin + 1, kPageWidth, 9, kIdCaption);
        tabs_ = CreateControl(WC_TABCONTROLA, "", WS_TABSTOP | WS_CLIPSIBLINGS | TCS_MULTILINE, left, kMargin + 12,
                              kPageWidth, ToolsTop() - 4 - (kMargin + 12), kIdTabs);
        const std::vector<std::string> tools = model_.Tools();
        const int tools_height = 11 + static_cast<int>(tools.size()) * kToolRow + 6;
        CreateControl("BUTTON", "Equivalent Command Line", WS_VISIBLE | BS_GROUPBOX, kMargin, ToolsTop(),
                      Width() - 2 * kMargin, tools_height, kIdToolsGroup);
        for (size_t i = 0; i < tools.size(); ++i) {
            const int y = ToolsTop() + 11 + static_cast<int>(i) * kToolRow;
            CreateControl("STATIC", tools[i], WS_VISIBLE | SS_LEFT | SS_NOPREFIX, kMargin + 6, y + 2, 40, 9, 0);
            CreateControl("EDIT", "", WS_VISIBLE | WS_TABSTOP | ES_READONLY | ES_AUTOHSCROLL, kMargin + 48, y,
                          Width() - 2 * kMargin - 54, 12, kIdFirstTool + static_cast<int>(i), WS_EX_CLIENTEDGE);
        }
        const char* const labels[] = {"OK", "Cancel", "Apply", "Default"};
        const int ids[] = {IDOK, IDCANCEL, kIdApply, kIdDefault};
        int x = Width() - kMargin - 4 * kButtonWidth - 3 * 4;
        for (int i = 0; i < 4; ++i) {
            CreateControl("BUTTON", labels[i],
                          WS_VISIBLE | WS_TABSTOP | (ids[i] == IDOK ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), x,
                          ButtonsTop(), kButtonWidth, kButtonHeight, ids[i]);
            x += kButtonWidth + 4;
        }
        images_ = MakeImages();
        TreeView_SetImageList(tree_, images_, TVSIL_NORMAL);
        FillTree();
        ShowSelection();
        SetFocus(tree_);
    }

    void OnCommand(int id, int code, HWND) override {
        if (id == kIdApply) {
            Apply();
        } else if (id == kIdDefault) {
            model_.Default();
            Changed();
        } else if (shown_ != nullptr && shown_->Command(id, code)) {
            UpdateCommandLines();
        }
    }

    LRESULT OnNotify(const NMHDR& header) override {
        if (header.idFrom == kIdTree && header.code == TVN_SELCHANGEDA) {
            const auto& n = reinterpret_cast<const NMTREEVIEWA&>(header);
            const auto it = labels_.find(n.itemNew.hItem);
            if (it != labels_.end() && !filling_) {
                model_.Select(it->second);
                ShowSelection();
            }
        } else if (header.idFrom == kIdTabs && header.code == TCN_SELCHANGE) {
            const int k = TabCtrl_GetCurSel(tabs_);
            const std::vector<std::string> tabs = model_.Tabs();
            if (k >= 0 && k < static_cast<int>(tabs.size())) {
                model_.SelectTab(tabs[static_cast<size_t>(k)]);
                ShowSelection();
            }
        } else if (shown_ != nullptr && shown_->Notify(header)) {
            UpdateCommandLines();
        }
        return 0;
    }

    bool OnApply() override { return Apply(); }

private:
    bool Apply() {
        const std::string refused = model_.Apply();
        Changed();
        if (refused.empty()) return true;
        MessageBoxA(hwnd(), refused.c_str(), kSettingsTitle, MB_OK | MB_ICONWARNING);
        return false;
    }

    void Changed() {
        if (shown_ != nullptr) shown_->Refresh();
        UpdateCommandLines();
    }

    void FillTree() {
        filling_ = true;
        HTREEITEM parent = TVI_ROOT;
        HTREEITEM select = nullptr;
        for (const TreeItem& item : model_.Tree()) {
            TVINSERTSTRUCTA in{};
            in.hParent = item.depth == 0 ? TVI_ROOT : parent;
            in.hInsertAfter = TVI_LAST;
            in.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
            in.item.pszText = const_cast<char*>(item.label.c_str());
            in.item.iImage = in.item.iSelectedImage = item.image;
            HTREEITEM h = TreeView_InsertItem(tree_, &in);
            labels_[h] = item.label;
            if (item.depth == 0) parent = h;
            if (item.label == model_.SelectedItem() && select == nullptr) select = h;
        }
        for (const auto& [h, label] : labels_) TreeView_Expand(tree_, h, TVE_EXPAND);
        if (select != nullptr) TreeView_SelectItem(tree_, select);
        filling_ = false;
    }

    void ShowSelection() {
        SetDlgItemTextA(hwnd(), kIdCaption, model_.Caption().c_str());
        const std::vector<std::string> tabs = model_.Tabs();
        if (tabs != tab_labels_) {
            TabCtrl_DeleteAllItems(tabs_);
            for (size_t i = 0; i < tabs.size(); ++i) {
                TCITEMA t{};
                t.mask = TCIF_TEXT;
                t.pszText = const_cast<char*>(tabs[i].c_str());
                SendMessageA(tabs_, TCM_INSERTITEMA, i, reinterpret_cast<LPARAM>(&t));
            }
            tab_labels_ = tabs;
        }
        const auto selected = std::find(tabs.begin(), tabs.end(), model_.SelectedTab());
        if (selected != tabs.end()) TabCtrl_SetCurSel(tabs_, static_cast<int>(selected - tabs.begin()));
        ShowWindow(tabs_, tabs.empty() ? SW_HIDE : SW_SHOW);

        DialogPage* page = model_.ShownPage();
        if (shown_ != nullptr) shown_->Show(false);
        shown_ = nullptr;
        if (page != nullptr) {
            auto& view = views_[page];
            if (!view) {
                const int left = kMargin + kTreeWidth + 6 + 6;
                PageLayout layout = LayOutPage(page->Description(), kPageWidth - 12, page_height_);
                // A page taller than the area even in two columns (the debugger's
                // 32 storage rows) shows what fits: the window never outgrows the screen.
                layout.pieces.erase(std::remove_if(layout.pieces.begin(), layout.pieces.end(),
                                                   [this](const Placed& p) { return p.y + p.h > page_height_; }),
                                    layout.pieces.end());
                const int rows = tabs.empty() ? 1 : std::clamp(TabCtrl_GetRowCount(tabs_), 1, kTabRows);
                view = std::make_unique<PageView>(this, page, std::move(layout), left, PageTop(rows), &next_id_,
                                                  tabs_);
            }
            shown_ = view.get();
            shown_->Refresh();
            shown_->Show(true);
        }
        UpdateCommandLines();
    }

    void UpdateCommandLines() {
        const std::vector<std::string> tools = model_.Tools();
        for (size_t i = 0; i < tools.size(); ++i) {
            std::string text;
            model_.CommandLine(tools[i], &text);
            SetDlgItemTextA(hwnd(), kIdFirstTool + static_cast<int>(i), text.c_str());
        }
    }

    SettingsDialogModel& model_;
    int page_height_ = 120;
    HWND tree_ = nullptr;
    HWND tabs_ = nullptr;
    HIMAGELIST images_ = nullptr;
    std::map<HTREEITEM, std::string> labels_;
    std::vector<std::string> tab_labels_;
    std::map<DialogPage*, std::unique_ptr<PageView>> views_;
    PageView* shown_ = nullptr;
    int next_id_ = kIdFirstPageControl;
    bool filling_ = false;
};

}  // namespace

int RunSettingsWindow(void* owner, SettingsDialogModel& model) {
    INITCOMMONCONTROLSEX icc{sizeof icc, ICC_TREEVIEW_CLASSES | ICC_TAB_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&icc);
    SettingsWindow window(model);
    window.Measure();
    const INT_PTR answer = window.RunModal(static_cast<HWND>(owner), kSettingsTitle, window.Width(), window.Height());
    return answer == IDOK ? 1 : answer == IDCANCEL ? 2 : -1;
}

}  // namespace ads::options::win32
