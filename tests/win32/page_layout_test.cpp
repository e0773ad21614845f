#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "options/linker_options.h"
#include "options/settings_dialog_model.h"
#include "options/win32/page_layout.h"

namespace ads::options::win32 {
namespace {

constexpr int kWidth = 278;

bool Overlap(const Placed& a, const Placed& b) {
    return a.x < b.x + b.w && b.x < a.x + a.w && a.y < b.y + b.h && b.y < a.y + a.h;
}
bool Inside(const Placed& in, const Placed& box) {
    return in.x >= box.x && in.y >= box.y && in.x + in.w <= box.x + box.w && in.y + in.h <= box.y + box.h;
}

// Nothing outside the page, no two controls on each other, no control
// across a group box's frame, every control (every radio choice) placed.
void CheckLayout(const PageDescription& page, int preferred) {
    SCOPED_TRACE(page.title);
    const PageLayout layout = LayOutPage(page, kWidth, preferred);
    std::set<std::pair<int, int>> placed;
    for (const Placed& p : layout.pieces) {
        EXPECT_TRUE(p.x >= 0 && p.y >= 0 && p.w > 0 && p.h > 0 && p.x + p.w <= kWidth && p.y + p.h <= layout.height)
            << p.text << " at " << p.x << "," << p.y << " " << p.w << "x" << p.h << " in " << kWidth << "x"
            << layout.height;
        const bool list_button = p.piece == Piece::kAdd || p.piece == Piece::kReplace || p.piece == Piece::kDelete;
        if (p.control >= 0) placed.insert({p.control, list_button ? -1 : p.choice});
        if (list_button && p.choice >= 0) placed.insert({p.choice, -1});
        for (const Placed& q : layout.pieces) {
            if (&p == &q) continue;
            if (p.piece != Piece::kGroupBox && q.piece != Piece::kGroupBox) {
                EXPECT_FALSE(Overlap(p, q)) << p.text << " / " << q.text;
            } else if (p.piece != Piece::kGroupBox && q.piece == Piece::kGroupBox && Overlap(p, q)) {
                EXPECT_TRUE(Inside(p, q)) << p.text << " across the box " << q.text;
            }
        }
    }
    for (size_t i = 0; i < page.controls.size(); ++i) {
        const Control& c = page.controls[i];
        if (c.kind == ControlKind::kRadioGroup) {
            for (size_t k = 0; k < c.choices.size(); ++k) {
                EXPECT_TRUE(placed.count({static_cast<int>(i), static_cast<int>(k)})) << c.label << " " << k;
            }
        } else {
            EXPECT_TRUE(placed.count({static_cast<int>(i), -1})) << c.label;
        }
    }
}

Control Make(ControlKind kind, const std::string& label, const std::string& group, int slot, int choices = 0) {
    Control c{kind, label, group, slot, -1, {}, {}, {}};
    for (int k = 0; k < choices; ++k) c.choices.push_back({"choice " + std::to_string(k), k});
    return c;
}

TEST(PageLayoutTest, EveryPageAndTheEdgesOfTheLayoutFitWithoutOverlap) {
    std::vector<PageDescription> pages;
    for (int f = 0; f < kFamilyCount; ++f) {
        for (PageVariant v : {PageVariant::kToolWide, PageVariant::kPerTarget}) {
            for (const PageDescription& d : DescribePages(static_cast<Family>(f), v)) pages.push_back(d);
        }
    }
    LinkerPages linker;
    for (LinkerPage t : linker.Tabs()) pages.push_back(linker.Page(t).Describe());
    for (const char* item : {"Select CPU", "Target Settings", "Access Paths", "File Mappings", "ARM Target",
                             "ARM Debug", "Property"}) {
        if (auto page = MakeItemPage(item)) pages.push_back(page->Description());
    }
    // Rows a real page may grow into: a radio group in two columns, a field
    // with its browse and edit buttons in a shared group, a list, a page
    // taller than the preferred height (two columns).
    PageDescription edges{"edges", -1, 0, {}};
    edges.controls = {Make(ControlKind::kRadioGroup, "Nine", "", -1, 9),
                      Make(ControlKind::kEdit, "File", "Scatter", 3),
                      Make(ControlKind::kButton, "...", "Scatter", 3),
                      Make(ControlKind::kButton, "Edit...", "Scatter", 3),
                      Make(ControlKind::kCheckBox, "Alone", "Scatter", -1),
                      Make(ControlKind::kTextList, "Entries", "", 4),
                      Make(ControlKind::kButton, "Delete", "", -1),
                      Make(ControlKind::kButton, "Add", "", -1),
                      Make(ControlKind::kButton, "Other", "", -1),
                      Make(ControlKind::kCombo, "Pick", "Two", 5, 3),
                      Make(ControlKind::kRadioGroup, "", "Two", 6, 2)};
    pages.push_back(edges);
    for (const PageDescription& page : pages) {
        CheckLayout(page, 190);
        CheckLayout(page, 40);  // forces two columns wherever the page has two blocks
    }
}

TEST(PageLayoutTest, AFieldSharesItsRowWithItsButtonsInTheirOrder) {
    PageDescription page{"row", -1, 0, {}};
    page.controls = {Make(ControlKind::kEdit, "", "", 2), Make(ControlKind::kButton, "...", "", 2),
                     Make(ControlKind::kButton, "Edit...", "", 2), Make(ControlKind::kButton, "Other", "", 7)};
    const PageLayout layout = LayOutPage(page, kWidth, 190);
    ASSERT_EQ(4u, layout.pieces.size());
    const Placed& edit = layout.pieces[0];
    const Placed& browse = layout.pieces[1];
    const Placed& open = layout.pieces[2];
    EXPECT_EQ(Piece::kEdit, edit.piece);
    EXPECT_EQ(1, browse.control);
    EXPECT_EQ(2, open.control);
    EXPECT_TRUE(edit.x + edit.w <= browse.x && browse.x + browse.w <= open.x && open.x + open.w == kWidth);
    EXPECT_LT(browse.y - edit.y, edit.h);
    // A button of another value starts a row of its own.
    EXPECT_GT(layout.pieces[3].y, edit.y + edit.h);
}

}  // namespace
}  // namespace ads::options::win32
