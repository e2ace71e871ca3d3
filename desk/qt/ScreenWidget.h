#pragma once
// The one renderer of screen models: builds widgets for a screen's controls and layout, shows
// every change the model reports, and hands the user's typing, clicks, focus moves and screen
// keys (function keys, Esc, Enter and Tab) to the model.

#include "ControlViews.h"

#include "host/ui/Screen.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QKeyEvent;
class QLabel;

namespace qx::desk {

// The model's key for a Qt key event, for the keys the screen decides about.
std::optional<ui::KeyPress> ScreenKey(const QKeyEvent& event);

class ScreenWidget : public QWidget, public ui::ScreenView {
public:
    explicit ScreenWidget(ui::Screen& screen, QWidget* parent = nullptr);
    ~ScreenWidget() override;

    ui::Screen& Model() const { return screen_; }

    // ScreenView
    void ControlChanged(ui::Control& control) override;
    void FocusChanged(ui::Control& control) override;
    void CloseRequested() override;

    // Runs something the user did against the model. The model's handlers may throw (a
    // database error, say): the user is shown the error and the program goes on. False when
    // the action failed.
    bool Act(const std::function<void()>& action);
    // Whether an action of the user is running against the model, so that the model's code
    // is on the stack and the screen must outlive the current event.
    bool Acting() const { return acting_ > 0; }
    // A click on a button or a screen key: text still open in an editor reaches the model
    // first, as it does when the user leaves the cell.
    bool Command(const std::function<void()>& action);
    // A screen key pressed in one of the screen's widgets; true when it was used.
    bool HandleKey(const QKeyEvent& event);
    // Lets the screen see the keys pressed in a widget of one of its controls.
    void WatchKeys(QWidget* widget);
    // Shows what changed in the model and is not shown yet (while an action runs, the widgets
    // wait for its end): a dialog opened by the action then stands over the screen as it is.
    void ShowChanges();

    // What the window does when the model asks it to close (ui::Screen::Close).
    std::function<void()> OnCloseWanted;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void Build();
    // Gives the captions of each group's one-control rows one width (after their texts are set).
    void AlignCaptions();
    ControlView& AddView(ui::Control& control, QWidget* parent);
    ControlView* ViewOf(const ui::Control& control) const;
    ControlView* ViewHolding(const QWidget* widget) const;
    void FocusMoved(QWidget* now);
    void FocusModelControl();

    ui::Screen& screen_;
    std::vector<std::unique_ptr<ControlView>> views_;
    std::vector<std::vector<QLabel*>> captionColumns_;
    // Set while focus is moved to follow the model, so that the move is not sent back to it.
    bool followingModel_ = false;
    // Set while Shift+Tab is handled: the control it brings the focus to is entered backwards.
    bool movingBack_ = false;
    int acting_ = 0;
    // Views whose controls changed and are not shown as they are yet.
    std::vector<ControlView*> changed_;
    bool showScheduled_ = false;
};

} // namespace qx::desk
