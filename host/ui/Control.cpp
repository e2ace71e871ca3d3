#include "Control.h"

#include "Screen.h"

#include <algorithm>
#include <stdexcept>

namespace qx::ui {
namespace {

// MaxLength counts characters, not bytes: a Gurmukhi or Devanagari name must not be cut in
// the middle of a letter.
std::string_view FirstCharacters(std::string_view text, int count) {
    int seen = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool startsCharacter = (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80;
        if (startsCharacter && seen++ == count) return text.substr(0, i);
    }
    return text;
}

} // namespace

bool IsNumberBeingTyped(std::string_view text) {
    if (text.starts_with('-')) text.remove_prefix(1);
    const std::size_t point = text.find('.');
    auto digits = [](std::string_view part) {
        return std::all_of(part.begin(), part.end(), [](char c) { return c >= '0' && c <= '9'; });
    };
    if (point == std::string_view::npos) return digits(text);
    return digits(text.substr(0, point)) && digits(text.substr(point + 1));
}

void Control::SetCaption(std::string caption) {
    if (caption == caption_) return;
    caption_ = std::move(caption);
    Changed();
}

void Control::SetVisible(bool visible) {
    if (visible == visible_) return;
    visible_ = visible;
    Changed();
}

void Control::SetEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    Changed();
}

void Control::SetToolTip(std::string tip) {
    if (tip == toolTip_) return;
    toolTip_ = std::move(tip);
    Changed();
}

void Control::SetWidth(int twips) {
    if (twips == width_) return;
    width_ = twips;
    Changed();
}

void Control::SetFocus() {
    if (owner_) owner_->Focus(*this);
}

void Control::Changed() {
    if (owner_ && owner_->View()) owner_->View()->ControlChanged(*this);
}

Label::Label(std::string name, std::string text) : Control(ControlKind::Label, std::move(name)) {
    SetCaption(std::move(text));
}

TextBox::TextBox(std::string name, std::string caption)
    : Control(ControlKind::TextBox, std::move(name)) {
    SetCaption(std::move(caption));
}

void TextBox::SetText(std::string text) {
    if (text == text_) return;
    text_ = std::move(text);
    Changed();
    if (OnChange) OnChange();
}

bool TextBox::Type(std::string_view text) {
    if (NumericOnly && !IsNumberBeingTyped(text)) return false;
    if (MaxLength > 0) text = FirstCharacters(text, MaxLength);
    SetText(std::string(text));
    return true;
}

CheckBox::CheckBox(std::string name, std::string caption)
    : Control(ControlKind::CheckBox, std::move(name)) {
    SetCaption(std::move(caption));
}

void CheckBox::SetChecked(bool checked) {
    if (checked == checked_) return;
    checked_ = checked;
    Changed();
}

ComboBox::ComboBox(std::string name, std::string caption)
    : Control(ControlKind::ComboBox, std::move(name)) {
    SetCaption(std::move(caption));
}

void ComboBox::AddItem(std::string text, std::int64_t value) {
    items_.push_back({std::move(text), value});
    Changed();
}

void ComboBox::ClearItems() {
    items_.clear();
    selected_ = -1;
    Changed();
}

void ComboBox::SetSelectedIndex(int index) {
    if (index < -1 || index >= static_cast<int>(items_.size()))
        throw std::out_of_range("list " + Name() + " has no entry " + std::to_string(index));
    if (index == selected_) return;
    selected_ = index;
    Changed();
    if (OnChange) OnChange();
}

bool ComboBox::Choose(std::string_view text) {
    auto it = std::find_if(items_.begin(), items_.end(),
                           [&](const ListEntry& entry) { return entry.text == text; });
    if (it == items_.end()) return false;
    SetSelectedIndex(static_cast<int>(it - items_.begin()));
    return true;
}

const ListEntry* ComboBox::Selected() const {
    return selected_ >= 0 ? &items_[static_cast<std::size_t>(selected_)] : nullptr;
}

OptionGroup::OptionGroup(std::string name, std::vector<std::string> options)
    : Control(ControlKind::OptionGroup, std::move(name)), options_(std::move(options)) {}

void OptionGroup::SetSelectedIndex(int index) {
    if (index < 0 || index >= static_cast<int>(options_.size()))
        throw std::out_of_range("options " + Name() + " have no option " + std::to_string(index));
    if (index == selected_) return;
    selected_ = index;
    Changed();
}

Button::Button(std::string name, std::string caption)
    : Control(ControlKind::Button, std::move(name)) {
    SetCaption(std::move(caption));
}

} // namespace qx::ui
