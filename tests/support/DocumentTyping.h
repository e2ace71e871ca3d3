#pragma once
// Typing into the document entry screen as a user does.

#include "desk/documents/DocumentScreen.h"

#include <stdexcept>
#include <string>

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
        if (box->ExtVal().GetValue("Name").AsText() == name) return *box;
    throw std::logic_error("no box " + name);
}

} // namespace qx::test
