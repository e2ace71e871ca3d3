#pragma once
// The screen model: a screen is a set of controls with a simple layout and handlers. The
// module's screens and the desk's own are written with it; the desktop renders any screen
// with one generic renderer, and tests drive a screen through its controls as a user would.
//
// A control keeps its state; every change made through a setter is reported to the
// screen's view (the renderer), so that what the user sees follows the model.

#include "../Object.h"
#include "../PropertyBag.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::ui {

class Screen;

enum class ControlKind {
    Label, TextBox, CheckBox, ComboBox, OptionGroup, Button, ButtonBar, ButtonCube,
    StdButtons, Period, Grid
};

class Control : public Object {
public:
    Control(ControlKind kind, std::string name) : kind_(kind), name_(std::move(name)) {}
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    ControlKind Kind() const { return kind_; }
    const std::string& Name() const { return name_; }

    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    const std::string& ToolTip() const { return toolTip_; }
    void SetToolTip(std::string tip);
    // Width hint in twips (0: the renderer decides).
    int Width() const { return width_; }
    void SetWidth(int twips);

    // Named extra values of the control (an input box's "Name", say).
    PropertyBag& ExtVal() { return extVal_; }

    Screen* Owner() const { return owner_; }
    void SetOwner(Screen* owner) { owner_ = owner; }

    // Puts the focus into this control.
    void SetFocus();
    // Whether the control takes the focus when Enter moves on.
    virtual bool TakesFocus() const { return false; }

protected:
    void Changed();

private:
    ControlKind kind_;
    std::string name_;
    std::string caption_;
    std::string toolTip_;
    bool visible_ = true;
    bool enabled_ = true;
    int width_ = 0;
    PropertyBag extVal_;
    Screen* owner_ = nullptr;
};

class Label : public Control {
public:
    explicit Label(std::string name, std::string text = {});
    const std::string& Text() const { return Caption(); }
    void SetText(std::string text) { SetCaption(std::move(text)); }
    bool Heading = false; // shown larger, as a title
};

// Whether a numeric box can hold the text as the user types it: a plain number or the start
// of one ("", "-", "12.", "-0.5"): a minus sign only first, digits, at most one point. So
// "1.2.3" never stands in a box to be read later as 1.2.
bool IsNumberBeingTyped(std::string_view text);

class TextBox : public Control {
public:
    explicit TextBox(std::string name, std::string caption = {});
    const std::string& Text() const { return text_; }
    // Sets the text as the program does; OnChange runs as it would for the user.
    void SetText(std::string text);
    // The user types: replaces the text, refusing letters where the box is numeric only.
    bool Type(std::string_view text);
    // Selects the whole text, so that what the user types next replaces it (a day the program
    // proposes in the box the cursor stays in). The view selects it each time Selections grows.
    void SelectAll() {
        ++selections_;
        Changed();
    }
    int Selections() const { return selections_; }
    bool TakesFocus() const override { return Visible() && Enabled(); }

    bool NumericOnly = false;
    // A day, typed as dd/MM/yyyy; the desktop offers a calendar (F2).
    bool DateEntry = false;
    // Several lines: Enter starts a new line instead of moving on.
    bool MultiLine = false;
    int MaxLength = 0; // 0: no limit
    // A look-up the user opens with F2 or the box's button; empty: none.
    std::function<void()> OnLookup;
    std::function<void()> OnChange;
    // Leaving the box; set cancel to keep the focus in it.
    std::function<void(bool& cancel)> OnValidate;

private:
    std::string text_;
    int selections_ = 0;
};

class CheckBox : public Control {
public:
    CheckBox(std::string name, std::string caption);
    bool Checked() const { return checked_; }
    void SetChecked(bool checked);
    void Click() { SetChecked(!checked_); if (OnClick) OnClick(); }
    bool TakesFocus() const override { return Visible() && Enabled(); }
    std::function<void()> OnClick;

private:
    bool checked_ = false;
};

struct ListEntry {
    std::string text;
    std::int64_t value = 0;
};

class ComboBox : public Control {
public:
    ComboBox(std::string name, std::string caption = {});
    void AddItem(std::string text, std::int64_t value = 0);
    void ClearItems();
    const std::vector<ListEntry>& Items() const { return items_; }
    int SelectedIndex() const { return selected_; } // -1: none
    void SetSelectedIndex(int index);
    // The user picks an entry by its text; false when there is none.
    bool Choose(std::string_view text);
    const ListEntry* Selected() const;
    bool TakesFocus() const override { return Visible() && Enabled(); }
    std::function<void()> OnChange;

private:
    std::vector<ListEntry> items_;
    int selected_ = -1;
};

class OptionGroup : public Control {
public:
    OptionGroup(std::string name, std::vector<std::string> options);
    const std::vector<std::string>& Options() const { return options_; }
    int SelectedIndex() const { return selected_; }
    void SetSelectedIndex(int index);
    void Click(int index) { SetSelectedIndex(index); if (OnClick) OnClick(index); }
    bool TakesFocus() const override { return Visible() && Enabled(); }
    std::function<void(int index)> OnClick;

private:
    std::vector<std::string> options_;
    int selected_ = 0;
};

class Button : public Control {
public:
    Button(std::string name, std::string caption);
    void Click() { if (Enabled() && OnClick) OnClick(); }
    bool TakesFocus() const override { return Visible() && Enabled(); }
    std::function<void()> OnClick;
};

} // namespace qx::ui
