#pragma once
// A list the user works at the keyboard, the base of the desk's list dialogs: Up and Down
// (Page Up, Page Down) move, letters typed find the first row one of whose cells starts with
// them, letter case aside (Backspace takes one back; when no row does, none is current), Enter
// takes, Esc cancels.

#include "host/ui/Screen.h"

#include <string>

namespace qx::desk {

class ListScreen : public ui::Screen {
public:
    bool KeyDown(const ui::KeyPress& key) override;

protected:
    // Cells from firstSearchedCol on are searched; the controls "Find" and listName come first.
    ListScreen(std::string name, std::string caption, const std::string& listName,
               int firstSearchedCol);
    // Moves to the first row that shows the text; to none when no row does.
    void Find(std::string text);
    const std::string& Typed() const { return typed_; }
    // Enter, OK or a double-click.
    virtual void Take() = 0;

    ui::Label& find_;
    ui::Grid& list_;

private:
    void MoveBy(int rows);

    int firstSearchedCol_;
    std::string typed_;
};

} // namespace qx::desk
