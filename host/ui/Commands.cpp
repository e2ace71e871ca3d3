#include "Commands.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace qx::ui {
namespace {

// The names printed on the keys, as captions and the desk's shortcuts write them.
constexpr std::array<std::pair<Key, std::string_view>, 22> kKeyNames{{
    {Key::Enter, "Enter"}, {Key::Tab, "Tab"},     {Key::Escape, "Esc"},  {Key::Delete, "Del"},
    {Key::Up, "Up"},       {Key::Down, "Down"},   {Key::Left, "Left"},   {Key::Right, "Right"},
    {Key::PageUp, "PgUp"}, {Key::PageDown, "PgDn"}, {Key::F1, "F1"},     {Key::F2, "F2"},
    {Key::F3, "F3"},       {Key::F4, "F4"},       {Key::F5, "F5"},       {Key::F6, "F6"},
    {Key::F7, "F7"},       {Key::F8, "F8"},       {Key::F9, "F9"},       {Key::F10, "F10"},
    {Key::F11, "F11"},     {Key::F12, "F12"},
}};

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        return lower(x) == lower(y);
    });
}

template <class Items> auto FindItem(Items& items, std::string_view key) {
    return std::find_if(items.begin(), items.end(),
                        [&](const BarItem& item) { return item.key == key; });
}

// The program names items it defined itself: a missing key is a slip in the screen's code.
BarItem& DefinedItem(std::vector<BarItem>& items, std::string_view key, const std::string& bar) {
    auto it = FindItem(items, key);
    if (it == items.end()) throw std::invalid_argument("no item " + std::string(key) + " on " + bar);
    return *it;
}

std::string_view Trimmed(std::string_view text) {
    auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

Key KeyOfCaption(std::string_view caption) {
    auto colon = caption.find(':');
    if (colon == std::string_view::npos) return Key::None;
    // The hot-key marker may sit in the key's part too ("&F6: Period").
    std::string name;
    for (char c : Trimmed(caption.substr(0, colon)))
        if (c != '&') name += c;
    for (const auto& [key, keyName] : kKeyNames)
        if (EqualsIgnoringCase(name, keyName)) return key;
    return Key::None;
}

std::string KeyName(Key key) {
    for (const auto& [named, name] : kKeyNames)
        if (named == key) return std::string(name);
    return {};
}

std::vector<KeyPress> ParseKeyString(std::string_view keys) {
    std::vector<KeyPress> presses;
    KeyPress next;
    for (std::size_t at = 0; at < keys.size(); ++at) {
        const char c = keys[at];
        if (c == '+' || c == '^' || c == '%') {
            (c == '+' ? next.shift : c == '^' ? next.ctrl : next.alt) = true;
            continue;
        }
        if (c == '~') {
            next.key = Key::Enter;
        } else if (c == '{') {
            const auto close = keys.find('}', at + 1);
            if (close == std::string_view::npos)
                throw std::invalid_argument("The key string " + std::string(keys) +
                                            " ends inside a key.");
            const std::string_view name = keys.substr(at + 1, close - at - 1);
            for (const auto& [key, keyName] : kKeyNames)
                if (EqualsIgnoringCase(name, keyName)) next.key = key;
            if (EqualsIgnoringCase(name, "Escape")) next.key = Key::Escape;
            if (EqualsIgnoringCase(name, "BS") || EqualsIgnoringCase(name, "Backspace"))
                next.key = Key::Backspace;
            if (next.key == Key::None)
                throw std::invalid_argument("No key is named {" + std::string(name) + "}.");
            at = close;
        } else if (static_cast<unsigned char>(c) >= 0x80) {
            throw std::invalid_argument("A key string types only plain (ASCII) characters.");
        } else {
            next.key = Key::Character;
            next.character = static_cast<unsigned char>(c);
        }
        presses.push_back(std::exchange(next, KeyPress{}));
    }
    if (next.shift || next.ctrl || next.alt)
        throw std::invalid_argument("The key string " + std::string(keys) + " ends inside a key.");
    return presses;
}

ButtonBar::ButtonBar(std::string name) : Control(ControlKind::ButtonBar, std::move(name)) {}

void ButtonBar::AddItem(std::string_view definition, std::string icon) {
    BarItem item;
    item.icon = std::move(icon);
    auto firstComma = definition.find(',');
    item.key = definition.substr(0, firstComma);
    if (firstComma == std::string_view::npos) {
        item.caption = item.key;
    } else {
        // The tooltip is the rest after the second comma, commas and all.
        auto rest = definition.substr(firstComma + 1);
        auto secondComma = rest.find(',');
        item.caption = rest.substr(0, secondComma);
        if (secondComma != std::string_view::npos) item.toolTip = rest.substr(secondComma + 1);
    }
    items_.push_back(std::move(item));
    Changed();
}

const BarItem* ButtonBar::Item(std::string_view key) const {
    auto it = FindItem(items_, key);
    return it == items_.end() ? nullptr : &*it;
}

void ButtonBar::SetItemEnabled(std::string_view key, bool enabled) {
    BarItem& item = DefinedItem(items_, key, Name());
    if (item.enabled == enabled) return;
    item.enabled = enabled;
    Changed();
}

void ButtonBar::SetItemCaption(std::string_view key, std::string caption) {
    BarItem& item = DefinedItem(items_, key, Name());
    if (item.caption == caption) return;
    item.caption = std::move(caption);
    Changed();
}

bool ButtonBar::Click(std::string_view key) {
    const BarItem* item = Item(key);
    if (!Enabled() || !item || !item->enabled) return false;
    // The handler may redefine the bar, which would leave the item behind.
    std::string clicked = item->key;
    if (OnClick) OnClick(clicked);
    return true;
}

bool ButtonBar::PressKey(Key key) {
    if (key == Key::None) return false;
    auto it = std::find_if(items_.begin(), items_.end(), [&](const BarItem& item) {
        return item.enabled && KeyOfCaption(item.caption) == key;
    });
    return it != items_.end() && Click(it->key);
}

ButtonCube::ButtonCube(std::string name) : Control(ControlKind::ButtonCube, std::move(name)) {}

void ButtonCube::AddButton(std::string key, std::string caption, std::string picture) {
    buttons_.push_back({std::move(key), std::move(caption), std::move(picture)});
    Changed();
}

void ButtonCube::Click(std::size_t index) {
    if (index >= buttons_.size())
        throw std::out_of_range(Name() + " has no button " + std::to_string(index));
    if (!Enabled()) return;
    std::string clicked = buttons_[index].key;
    if (OnClick) OnClick(clicked);
}

StdButtons::StdButtons(std::string name, std::vector<std::string> captions)
    : Control(ControlKind::StdButtons, std::move(name)), captions_(std::move(captions)) {}

void StdButtons::Click(int index) {
    if (index < 0 || index >= static_cast<int>(captions_.size()))
        throw std::out_of_range(Name() + " has no button " + std::to_string(index));
    if (Enabled() && OnClick) OnClick(index);
}

PeriodBox::PeriodBox(std::string name) : Control(ControlKind::Period, std::move(name)) {}

void PeriodBox::SetPeriod(std::optional<Date> from, std::optional<Date> to) {
    if (from == from_ && to == to_) return;
    from_ = from;
    to_ = to;
    Changed();
}

} // namespace qx::ui
