#include "Screen.h"

#include <stdexcept>

namespace qx::ui {
namespace {

bool IsFunctionKey(Key key) {
    return static_cast<int>(key) >= static_cast<int>(Key::F1) &&
           static_cast<int>(key) <= static_cast<int>(Key::F12);
}

// Leaving a control runs its checks; false keeps the focus where it is.
bool LetsFocusGo(Control& control) {
    if (auto* grid = dynamic_cast<Grid*>(&control)) return grid->Commit();
    if (auto* box = dynamic_cast<TextBox*>(&control); box && box->OnValidate) {
        bool cancel = false;
        box->OnValidate(cancel);
        return !cancel;
    }
    return true;
}

} // namespace

Screen::Screen(std::string name, std::string caption)
    : name_(std::move(name)), caption_(std::move(caption)) {}

Screen::~Screen() = default;

void Screen::SetCaption(std::string caption) {
    if (caption == caption_) return;
    caption_ = std::move(caption);
    if (view_) view_->CaptionChanged();
}

void Screen::Adopt(std::unique_ptr<Control> control) {
    if (!control->Name().empty() && Find(control->Name()))
        throw std::invalid_argument("screen " + name_ + " already has a control " +
                                    control->Name());
    control->SetOwner(this);
    // Until the screen lays out its controls itself, each shows on a row of its own.
    if (!layoutDefined_) {
        if (layout_.empty()) layout_.emplace_back();
        layout_.front().rows.push_back({{control.get()}});
    }
    controls_.push_back(std::move(control));
}

Control* Screen::Find(std::string_view name) const {
    for (const auto& control : controls_)
        if (control->Name() == name) return control.get();
    return nullptr;
}

void Screen::BeginGroup(std::string caption, bool sideBySide) {
    // The first group the screen defines replaces the default layout.
    if (!layoutDefined_) layout_.clear();
    layoutDefined_ = true;
    layout_.push_back({.caption = std::move(caption), .rows = {}, .sideBySide = sideBySide});
}

void Screen::AddRow(std::vector<Control*> controls) {
    for (const Control* control : controls)
        if (!control || control->Owner() != this)
            throw std::invalid_argument("screen " + name_ + " lays out a control it does not have");
    if (!layoutDefined_) BeginGroup();
    layout_.back().rows.push_back({std::move(controls)});
}

void Screen::RunLoad() {
    if (loaded_) return;
    Load();
    loaded_ = true;
}

void Screen::RunActivate() {
    if (!activated_) {
        activated_ = true;
        FirstActivate();
    }
    Activate();
}

bool Screen::RunQueryUnload() {
    bool cancel = false;
    QueryUnload(cancel);
    return !cancel;
}

void Screen::RunUnload() { Unload(); }

bool Screen::KeyDown(const KeyPress& key) {
    if (key.key == Key::Tab && key.shift && !key.ctrl && !key.alt) {
        if (auto* grid = dynamic_cast<Grid*>(focused_); grid && !grid->AtFirstCell())
            grid->MovePrevious();
        else
            FocusPrevious();
        return true;
    }
    if (!key.Plain()) return false;
    // F2 in an input box with a look-up opens the look-up, before any bar item of F2.
    if (auto* box = dynamic_cast<TextBox*>(focused_); key.key == Key::F2 && box && box->OnLookup) {
        box->OnLookup();
        return true;
    }
    if (IsFunctionKey(key.key) || key.key == Key::Escape) {
        // By index: a click may add controls to the screen.
        for (std::size_t i = 0; i < controls_.size(); ++i)
            if (auto* bar = dynamic_cast<ButtonBar*>(controls_[i].get()); bar && bar->PressKey(key.key))
                return true;
        return false;
    }
    if (auto* box = dynamic_cast<TextBox*>(focused_); key.key == Key::Enter && box && box->MultiLine)
        return false;
    if (key.key == Key::Enter || key.key == Key::Tab) {
        if (auto* grid = dynamic_cast<Grid*>(focused_))
            key.key == Key::Enter ? grid->EnterNext() : grid->MoveNext();
        else
            FocusNext();
        return true;
    }
    return false;
}

void Screen::Focus(Control& control) {
    if (control.Owner() != this)
        throw std::invalid_argument("screen " + name_ + " cannot focus " + control.Name());
    if (&control == focused_) return;
    if (focused_ && !LetsFocusGo(*focused_)) return;
    focused_ = &control;
    if (view_) view_->FocusChanged(control);
}

void Screen::FocusNext() { FocusStep(1); }

void Screen::FocusPrevious() { FocusStep(-1); }

// The next control that takes the focus in that direction, round past either end.
void Screen::FocusStep(int step) {
    const auto count = static_cast<std::ptrdiff_t>(controls_.size());
    if (count == 0) return;
    std::ptrdiff_t at = step > 0 ? -1 : 0; // with nothing focused: the first, or the last
    for (std::ptrdiff_t i = 0; i < count; ++i)
        if (controls_[static_cast<std::size_t>(i)].get() == focused_) at = i;
    for (std::ptrdiff_t moved = 1; moved <= count; ++moved) {
        const std::ptrdiff_t index = ((at + moved * step) % count + count) % count;
        Control& candidate = *controls_[static_cast<std::size_t>(index)];
        if (candidate.TakesFocus()) {
            Focus(candidate);
            return;
        }
    }
}

void Screen::Close(bool accepted) {
    accepted_ = accepted;
    if (view_) view_->CloseRequested();
}

} // namespace qx::ui
