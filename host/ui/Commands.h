#pragma once
// Command controls: the command bar whose captions name their function keys, the cube of
// large menu buttons, and the OK/Cancel pair.

#include "Control.h"
#include "../Date.h"

#include <optional>
#include <vector>

namespace qx::ui {

enum class Key {
    None, Enter, Tab, Escape, Delete, Backspace, Up, Down, Left, Right, PageUp, PageDown,
    F1, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12, Character
};

struct KeyPress {
    Key key = Key::None;
    char32_t character = 0; // for Key::Character
    bool shift = false;
    bool ctrl = false;
    bool alt = false;
    bool Plain() const { return !shift && !ctrl && !alt; }
};

// The key a caption names before its colon: "F3: Delete" -> F3, "Esc: Exit" -> Escape,
// "F6: &Period" -> F6; Key::None when the caption names none.
Key KeyOfCaption(std::string_view caption);
std::string KeyName(Key key); // "F3", "Esc", "Enter", ...
// The keys of a key string as a program sends them: "{TAB}", "{ENTER}" (or "~"), "{ESC}",
// "{F2}" and the other names KeyName gives, in braces and in any letter case; "+", "^" and "%"
// before a key hold Shift, Ctrl and Alt; any other character is typed as it is.
// std::invalid_argument for a name no key has, or a string that ends inside a key.
std::vector<KeyPress> ParseKeyString(std::string_view keys);

struct BarItem {
    std::string key;
    std::string caption;
    std::string toolTip;
    std::string icon;
    bool enabled = true;
};

class ButtonBar : public Control {
public:
    explicit ButtonBar(std::string name);
    // "key,caption,tooltip" as the host's bar items are written ("Delete,F3: Delete,Delete");
    // a lone key ("F4") makes an item whose caption is the key.
    void AddItem(std::string_view definition, std::string icon = {});
    const std::vector<BarItem>& Items() const { return items_; }
    void SetItemEnabled(std::string_view key, bool enabled);
    void SetItemCaption(std::string_view key, std::string caption);
    const BarItem* Item(std::string_view key) const;
    // Clicks an enabled item; false when there is none of that key or it is off.
    bool Click(std::string_view key);
    // Clicks the enabled item whose caption names the key; false when none does.
    bool PressKey(Key key);
    std::function<void(const std::string& key)> OnClick;

private:
    std::vector<BarItem> items_;
};

struct CubeButton {
    std::string key;
    std::string caption;
    std::string picture;
};

class ButtonCube : public Control {
public:
    explicit ButtonCube(std::string name);
    void AddButton(std::string key, std::string caption, std::string picture);
    const std::vector<CubeButton>& Buttons() const { return buttons_; }
    void Click(std::size_t index); // 0-based
    bool TakesFocus() const override { return true; }
    std::function<void(const std::string& key)> OnClick;

private:
    std::vector<CubeButton> buttons_;
};

// OK and Cancel (index 0 and 1), with an optional third "Close" button.
class StdButtons : public Control {
public:
    explicit StdButtons(std::string name, std::vector<std::string> captions = {"OK", "Cancel"});
    const std::vector<std::string>& Captions() const { return captions_; }
    void Click(int index);
    std::function<void(int index)> OnClick;

private:
    std::vector<std::string> captions_;
};

// A from/to pair of days.
class PeriodBox : public Control {
public:
    explicit PeriodBox(std::string name);
    std::optional<Date> From() const { return from_; }
    std::optional<Date> To() const { return to_; }
    void SetPeriod(std::optional<Date> from, std::optional<Date> to);
    bool TakesFocus() const override { return Visible() && Enabled(); }

private:
    std::optional<Date> from_;
    std::optional<Date> to_;
};

} // namespace qx::ui
