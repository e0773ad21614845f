#include "options/win32/page_layout.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace ads::options::win32 {

namespace {

constexpr int kRowGap = 3;
constexpr int kLabelHeight = 8;
constexpr int kCheckHeight = 10;
constexpr int kFieldHeight = 12;
constexpr int kButtonHeight = 14;
constexpr int kListHeight = 44;
constexpr int kBoxTop = 11;
constexpr int kBoxSide = 6;
constexpr int kBoxBottom = 5;
constexpr int kColumnGap = 6;
constexpr int kGridMinHeight = 60;
constexpr Piece kListPieces[] = {Piece::kAdd, Piece::kReplace, Piece::kDelete};
constexpr const char* kListButtons[] = {"Add", "Replace", "Delete"};

int ButtonWidth(const std::string& text) {
    if (text == "...") return 16;
    return std::max(34, static_cast<int>(text.size()) * 4 + 12);
}

// A run of controls laid out at a width: pieces relative to the run's top.
struct Block {
    std::vector<Placed> pieces;
    int height = 0;
};

class Builder {
public:
    // A page's own "Add", "Replace" and "Delete" after a list (before the
    // next one) edit that list.
    explicit Builder(const PageDescription& page) : page_(page) {
        int list = -1;
        for (size_t i = 0; i < page.controls.size(); ++i) {
            const Control& c = page.controls[i];
            if (c.kind == ControlKind::kTextList) {
                list = static_cast<int>(i);
                own_[i] = {-1, -1, -1};
            }
            if (c.kind != ControlKind::kButton || list < 0) continue;
            for (size_t k = 0; k < 3; ++k) {
                auto& slot = own_[static_cast<size_t>(list)][k];
                if (c.label == kListButtons[k] && slot < 0) {
                    slot = static_cast<int>(i);
                    list_of_[i] = {list, kListPieces[k]};
                }
            }
        }
    }

    // The controls [first, last) as one block `width` wide.
    Block Run(size_t first, size_t last, int width) const {
        Block b;
        for (size_t i = first; i < last;) {
            const Control& c = page_.controls[i];
            const int index = static_cast<int>(i);
            int y = b.height == 0 ? 0 : b.height + kRowGap;
            auto add = [&](Piece p, int choice, const std::string& text, int x, int yy, int w, int h) {
                b.pieces.push_back(Placed{p, index, choice, text, x, yy, w, h});
            };
            switch (c.kind) {
                case ControlKind::kCheckBox:
                    add(Piece::kCheck, -1, c.label, 0, y, width, kCheckHeight);
                    y += kCheckHeight;
                    break;
                case ControlKind::kRadioGroup: {
                    const std::string caption = c.label.empty() ? c.group : c.label;
                    const int n = static_cast<int>(c.choices.size());
                    const int columns = n > 6 ? 2 : 1;
                    const int rows = (n + columns - 1) / columns;
                    const int inner = width - 2 * kBoxSide;
                    const int cw = (inner - (columns - 1) * kColumnGap) / columns;
                    const int h = kBoxTop + rows * kCheckHeight + kBoxBottom;
                    add(Piece::kGroupBox, -1, caption, 0, y, width, h);
                    for (int k = 0; k < n; ++k) {
                        add(Piece::kRadio, k, c.choices[static_cast<size_t>(k)].label,
                            kBoxSide + (k / rows) * (cw + kColumnGap), y + kBoxTop + (k % rows) * kCheckHeight, cw,
                            kCheckHeight);
                    }
                    y += h;
                    break;
                }
                case ControlKind::kCombo:
                    if (!c.label.empty()) {
                        const int lw = width * 2 / 5;
                        add(Piece::kLabel, -1, c.label, 0, y + 2, lw - 4, kLabelHeight);
                        add(Piece::kCombo, -1, {}, lw, y, width - lw, kFieldHeight);
                    } else {
                        add(Piece::kCombo, -1, {}, 0, y, width, kFieldHeight);
                    }
                    y += kFieldHeight;
                    break;
                case ControlKind::kEdit: {
                    if (!c.label.empty()) {
                        add(Piece::kLabel, -1, c.label, 0, y, width, kLabelHeight);
                        y += kLabelHeight + 1;
                    }
                    // The buttons of the same value stand right of the field.
                    size_t j = i + 1;
                    int right = width;
                    std::vector<Placed> buttons;
                    for (; j < last && page_.controls[j].kind == ControlKind::kButton && c.slot >= 0 &&
                           page_.controls[j].slot == c.slot;
                         ++j) {
                        const int w = ButtonWidth(page_.controls[j].label);
                        right -= w + 2;
                        buttons.push_back(Placed{Piece::kButton, static_cast<int>(j), -1, page_.controls[j].label, 0,
                                                 y - 1, w, kButtonHeight});
                    }
                    int x = right + 2;
                    for (Placed& button : buttons) {
                        button.x = x;
                        x += button.w + 2;
                    }
                    add(Piece::kEdit, -1, {}, 0, y, right, kFieldHeight);
                    b.pieces.insert(b.pieces.end(), buttons.begin(), buttons.end());
                    y += buttons.empty() ? kFieldHeight : kButtonHeight - 1;
                    b.height = y;
                    i = j;
                    continue;
                }
                case ControlKind::kTextList: {
                    if (!c.label.empty()) {
                        add(Piece::kLabel, -1, c.label, 0, y, width, kLabelHeight);
                        y += kLabelHeight + 1;
                    }
                    add(Piece::kList, -1, {}, 0, y, width, kListHeight);
                    y += kListHeight + 2;
                    // The list's buttons that the page does not show itself.
                    const int bw = 34;
                    const auto& shown = own_.at(i);
                    const int missing = static_cast<int>(std::count(shown.begin(), shown.end(), -1));
                    int x = width - missing * (bw + 2);
                    add(Piece::kEntry, -1, {}, 0, y + 1, x, kFieldHeight);
                    for (int k = 0; k < 3; ++k) {
                        if (shown[static_cast<size_t>(k)] >= 0) continue;
                        add(kListPieces[k], -1, kListButtons[k], x + 2, y, bw, kButtonHeight);
                        x += bw + 2;
                    }
                    y += kButtonHeight;
                    break;
                }
                case ControlKind::kButton: {
                    const int w = ButtonWidth(c.label);
                    const auto list = list_of_.find(i);
                    if (list != list_of_.end()) {
                        b.pieces.push_back(Placed{list->second.second, list->second.first, index, c.label, 0, y, w,
                                                  kButtonHeight});
                    } else {
                        add(Piece::kButton, -1, c.label, 0, y, w, kButtonHeight);
                    }
                    y += kButtonHeight;
                    break;
                }
            }
            b.height = y;
            ++i;
        }
        return b;
    }

    // The page as blocks: a group box around controls that share a caption
    // (a radio group alone in its caption has only its own box).
    std::vector<Block> Blocks(int width) const {
        std::vector<Block> blocks;
        const auto& cs = page_.controls;
        for (size_t i = 0; i < cs.size();) {
            size_t j = i + 1;
            const std::string& group = cs[i].group;
            if (!group.empty()) {
                while (j < cs.size() && cs[j].group == group) ++j;
            } else if (cs[i].kind == ControlKind::kEdit) {
                // The field's own buttons stay in its block.
                while (j < cs.size() && cs[j].kind == ControlKind::kButton && cs[j].slot == cs[i].slot &&
                       cs[i].slot >= 0) {
                    ++j;
                }
            }
            const bool own_box = j == i + 1 && cs[i].kind == ControlKind::kRadioGroup &&
                                 (cs[i].label.empty() || cs[i].label == group);
            if (group.empty() || own_box) {
                blocks.push_back(Run(i, j, width));
            } else {
                Block inner = Run(i, j, width - 2 * kBoxSide);
                Block outer;
                outer.height = kBoxTop + inner.height + kBoxBottom;
                outer.pieces.push_back(Placed{Piece::kGroupBox, -1, -1, group, 0, 0, width, outer.height});
                for (Placed p : inner.pieces) {
                    p.x += kBoxSide;
                    p.y += kBoxTop;
                    outer.pieces.push_back(p);
                }
                blocks.push_back(std::move(outer));
            }
            i = j;
        }
        return blocks;
    }

private:
    const PageDescription& page_;
    std::map<size_t, std::array<int, 3>> own_;              // list -> its buttons on the page
    std::map<size_t, std::pair<int, Piece>> list_of_;        // button -> its list, what it does
};

int Stacked(const std::vector<Block>& blocks, size_t first, size_t last) {
    int h = 0;
    for (size_t i = first; i < last; ++i) h += (i > first ? kRowGap + 2 : 0) + blocks[i].height;
    return h;
}

void Place(PageLayout* out, const std::vector<Block>& blocks, size_t first, size_t last, int x) {
    int y = 0;
    for (size_t i = first; i < last; ++i) {
        for (Placed p : blocks[i].pieces) {
            p.x += x;
            p.y += y;
            out->pieces.push_back(p);
        }
        y += blocks[i].height + kRowGap + 2;
    }
}

}  // namespace

PageLayout LayOutPage(const PageDescription& page, int width, int preferred_height) {
    const auto first_cell = std::find_if(page.controls.begin(), page.controls.end(),
                                         [](const Control& c) { return c.cell_row >= 0; });
    if (first_cell != page.controls.end()) {
        PageDescription head = page;
        head.controls.resize(static_cast<size_t>(first_cell - page.controls.begin()));
        PageLayout out = LayOutPage(head, width, preferred_height - kGridMinHeight - kRowGap - 2);
        const int columns = static_cast<int>(std::count_if(first_cell, page.controls.end(), [&](const Control& c) {
            return c.cell_row == first_cell->cell_row;
        }));
        const int top = out.height == 0 ? 0 : out.height + kRowGap + 2;
        const int h = std::max(kGridMinHeight, preferred_height - top);
        out.pieces.push_back(Placed{Piece::kGrid, static_cast<int>(first_cell - page.controls.begin()), columns, {}, 0,
                                    top, width, h});
        out.height = top + h;
        return out;
    }
    const Builder builder(page);
    PageLayout out;
    const std::vector<Block> one = builder.Blocks(width);
    const int single = Stacked(one, 0, one.size());
    if (single <= preferred_height || one.size() < 2) {
        Place(&out, one, 0, one.size(), 0);
        out.height = single;
        return out;
    }
    const int half = (width - kColumnGap) / 2;
    const std::vector<Block> two = builder.Blocks(half);
    // The split that makes the taller column the shortest.
    size_t best = 1;
    int best_height = single;
    for (size_t split = 1; split < two.size(); ++split) {
        const int h = std::max(Stacked(two, 0, split), Stacked(two, split, two.size()));
        if (h < best_height) {
            best_height = h;
            best = split;
        }
    }
    Place(&out, two, 0, best, 0);
    Place(&out, two, best, two.size(), half + kColumnGap);
    out.height = best_height;
    return out;
}

}  // namespace ads::options::win32
