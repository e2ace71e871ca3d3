#pragma once
// The widgets that show one control of a screen model. A view shows the model's state when
// told to (Refresh) and hands what the user does to the model through its screen widget;
// it never changes the model's state on its own.

#include "host/ui/Commands.h"

#include <QString>
#include <memory>
#include <string>

class QLabel;
class QWidget;

namespace qx::desk {

class ScreenWidget;

class ControlView {
public:
    ControlView(ui::Control& control, ScreenWidget& screen) : control_(control), screen_(screen) {}
    virtual ~ControlView() = default;
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;

    ui::Control& Model() const { return control_; }
    // The widget placed in the screen's layout.
    virtual QWidget* Widget() const = 0;
    // The widget that holds the keyboard focus for the control.
    virtual QWidget* FocusWidget() const { return Widget(); }
    // Whether the control takes the spare room of the screen (a grid does).
    virtual bool Expands() const { return false; }
    // Shows the model's state.
    void Refresh();
    // A screen key that the screen's KeyDown left alone; true when the control used it.
    virtual bool DefaultKey(const ui::KeyPress& /*key*/) { return false; }
    // Hands text still open in an editor to the model, before a key or a click acts on it.
    virtual void CommitTyping() {}
    // The label that shows the control's caption beside it, if it has one.
    virtual QLabel* CaptionLabel() const { return nullptr; }

protected:
    virtual void RefreshContent() = 0;
    ScreenWidget& Screen() const { return screen_; }

private:
    ui::Control& control_;
    ScreenWidget& screen_;
};

// The view for any control kind, its widgets made children of parent.
std::unique_ptr<ControlView> MakeControlView(ui::Control& control, ScreenWidget& screen,
                                             QWidget* parent);

QString ToQString(const std::string& utf8);
// Twips (1440 to the inch) to the widget's pixels.
int TwipsToPixels(int twips, const QWidget& widget);

} // namespace qx::desk
