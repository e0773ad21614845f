// Where each control of a page goes, in dialog units from the page's top
// left corner. A window creates one child per piece; nothing here knows a
// window, so the layout is checked without one.
//
// A page is laid out in one column; when that is taller than the preferred
// height, in two columns of half the width. Controls that share a group
// caption stand in one group box; a radio group has a box of its own; an
// edit field and the buttons of the same value share a row; a list gets a
// field for one entry and "Add", "Replace" and "Delete" under it. The cells
// of a grid, which end a page, make one grid below the rest, the whole width
// wide, in the height that is left.
#pragma once

#include <string>
#include <vector>

#include "options/pages.h"

namespace ads::options::win32 {

enum class Piece { kGroupBox, kLabel, kCheck, kRadio, kCombo, kEdit, kList, kEntry, kAdd, kReplace, kDelete, kButton, kGrid };

struct Placed {
    Piece piece;
    int control;      // index in the description; -1 for a box or label of a group
    int choice;       // radio button: index among the choices; a list's button:
                      // the page's button it stands for; a grid (whose control
                      // is its first cell): its number of columns; else -1
    std::string text; // caption, label or button text
    int x, y, w, h;
};

struct PageLayout {
    std::vector<Placed> pieces;
    int height = 0;
};

PageLayout LayOutPage(const PageDescription& page, int width, int preferred_height);

}  // namespace ads::options::win32
