#pragma once
// A screen: controls, a layout of rows (optionally in captioned groups), and handlers.
// The host shows it as a child window (or a modal dialog) and routes keys to it.

#include "Commands.h"
#include "Control.h"
#include "Grid.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace qx::ui {

// What shows a screen: the desktop's window, or the scripted host of tests and `qx`.
class ScreenView {
public:
    virtual ~ScreenView() = default;
    virtual void ControlChanged(Control& control) = 0;
    virtual void FocusChanged(Control& control) = 0;
    virtual void CloseRequested() = 0;
    virtual void CaptionChanged() {}
};

struct LayoutRow {
    std::vector<Control*> controls;
};

struct LayoutGroup {
    std::string caption; // empty: no frame
    std::vector<LayoutRow> rows;
    bool sideBySide = false; // placed to the right of the previous group
};

class Screen : public Object, public std::enable_shared_from_this<Screen> {
public:
    Screen(std::string name, std::string caption);
    ~Screen() override;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    void SetCaption(std::string caption);
    // The picture the host shows with the window's title ("Books").
    std::string Icon;

    // Controls, in the order they were added (which is also the order Enter moves in).
    template <class T, class... Args> T& Add(Args&&... args) {
        auto control = std::make_unique<T>(std::forward<Args>(args)...);
        T& ref = *control;
        Adopt(std::move(control));
        return ref;
    }
    Control* Find(std::string_view name) const;
    template <class T> T& Get(std::string_view name) const {
        auto* control = dynamic_cast<T*>(Find(name));
        if (!control) throw std::invalid_argument("no control " + std::string(name));
        return *control;
    }
    const std::vector<std::unique_ptr<Control>>& Controls() const { return controls_; }

    // Layout: groups of rows of controls. A screen that sets none shows one control a row.
    void BeginGroup(std::string caption = {}, bool sideBySide = false);
    void AddRow(std::vector<Control*> controls);
    const std::vector<LayoutGroup>& Layout() const { return layout_; }

    // Presets a caller gives before showing (a document screen's "DocType", ...).
    PropertyBag& Properties() { return properties_; }
    std::shared_ptr<Screen> CallingForm;

    // Lifecycle, run by the host: Load before the screen is first shown, Activate each time
    // it becomes the active window (FirstActivate once), QueryUnload before it closes.
    void RunLoad();
    void RunActivate();
    bool RunQueryUnload(); // false when the screen refused to close
    void RunUnload();
    bool Loaded() const { return loaded_; }

    // A key pressed on the screen. By default F2 opens the look-up of the focused input
    // box, function keys and Esc click the command-bar item whose caption names them, Enter
    // moves on as Tab does (in a grid passing computed cells by), and Shift+Tab moves back
    // (in a grid cell by cell, out of it from its first cell). True when consumed.
    virtual bool KeyDown(const KeyPress& key);

    // Focus.
    Control* Focused() const { return focused_; }
    void Focus(Control& control);
    void FocusNext();
    void FocusPrevious();

    // Closing: the screen asks its host; a modal screen reports whether it was accepted.
    void Close(bool accepted = false);
    bool Accepted() const { return accepted_; }

    void SetView(ScreenView* view) { view_ = view; }
    ScreenView* View() const { return view_; }

protected:
    virtual void Load() {}
    virtual void FirstActivate() {}
    virtual void Activate() {}
    virtual void QueryUnload(bool& /*cancel*/) {}
    virtual void Unload() {}

private:
    void Adopt(std::unique_ptr<Control> control);
    void FocusStep(int step);

    std::string name_;
    std::string caption_;
    std::vector<std::unique_ptr<Control>> controls_;
    std::vector<LayoutGroup> layout_;
    PropertyBag properties_;
    Control* focused_ = nullptr;
    ScreenView* view_ = nullptr;
    bool layoutDefined_ = false; // the screen laid out its controls itself
    bool loaded_ = false;
    bool activated_ = false;
    bool accepted_ = false;
};

} // namespace qx::ui
