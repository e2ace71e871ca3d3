#pragma once
// Typing into the document entry screen as a user does.

#include "desk/documents/DocumentScreen.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx::test {

// Types into a box and leaves it as Enter does; false when the box kept the focus.
inline bool TypeBox(desk::DocumentScreen& screen, ui::TextBox& box, const std::string& text) {
    screen.Focus(box);
    box.Type(text);
    screen.FocusNext();
    return screen.Focused() != &box;
}

// The series' own header box of that name ("FORM_NO").
inline ui::TextBox& Box(desk::DocumentScreen& screen, const std::string& name) {
    for (ui::TextBox* box : screen.TXPUDI())
        if (box && box->ExtVal().GetValue("Name").AsText() == name) return *box;
    throw std::logic_error("no box " + name);
}

// A line's cells by column key ("QUANTITY"), in the order they are typed.
using Cells = std::vector<std::pair<std::string, std::string>>;

// Types a line cell by cell, by column key, leaving each cell as Enter does; false when a
// cell was refused.
inline bool TypeLine(desk::DocumentScreen& screen, int row, const Cells& cells) {
    auto& grid = screen.Grid();
    for (const auto& [key, text] : cells) {
        if (!grid.MoveTo(row, screen.Member("COL_" + key))) return false;
        grid.Type(text);
    }
    return grid.Commit();
}

inline const std::string& Cell(desk::DocumentScreen& screen, int row, const std::string& key) {
    return screen.Grid().TextMatrix(row, screen.Member("COL_" + key));
}

} // namespace qx::test
