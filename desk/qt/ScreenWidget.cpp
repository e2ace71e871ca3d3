#include "ScreenWidget.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qx::desk {

std::optional<ui::KeyPress> ScreenKey(const QKeyEvent& event) {
    ui::KeyPress press;
    const int key = event.key();
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12)
        press.key = static_cast<ui::Key>(static_cast<int>(ui::Key::F1) + (key - Qt::Key_F1));
    else if (key == Qt::Key_Escape)
        press.key = ui::Key::Escape;
    else if (key == Qt::Key_Return || key == Qt::Key_Enter)
        press.key = ui::Key::Enter;
    else if (key == Qt::Key_Tab || key == Qt::Key_Backtab)
        press.key = ui::Key::Tab;
    else if (key == Qt::Key_Delete && event.modifiers().testFlag(Qt::ControlModifier))
        press.key = ui::Key::Delete; // plain Delete is the editor's
    else
        return std::nullopt;
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    press.shift = modifiers.testFlag(Qt::ShiftModifier) || key == Qt::Key_Backtab;
    press.ctrl = modifiers.testFlag(Qt::ControlModifier);
    press.alt = modifiers.testFlag(Qt::AltModifier);
    return press;
}

namespace {

// A printable character or Backspace, as the model takes them.
std::optional<ui::KeyPress> TypedKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    ui::KeyPress press{.key = ui::Key::Backspace,
                       .character = 0,
                       .shift = modifiers.testFlag(Qt::ShiftModifier),
                       .ctrl = modifiers.testFlag(Qt::ControlModifier),
                       .alt = modifiers.testFlag(Qt::AltModifier)};
    if (event.key() == Qt::Key_Backspace) return press;
    const QString text = event.text();
    if (text.size() != 1 || !text.at(0).isPrint()) return std::nullopt;
    press.key = ui::Key::Character;
    press.character = text.at(0).unicode();
    return press;
}

} // namespace

ScreenWidget::ScreenWidget(ui::Screen& screen, QWidget* parent)
    : QWidget(parent), screen_(screen) {
    setObjectName(ToQString(screen.Name()));
    setWindowTitle(ToQString(screen.Caption()));
    Build();
    for (const auto& view : views_) view->Refresh();
    AlignCaptions();
    screen_.SetView(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* now) { FocusMoved(now); });
    FocusModelControl();
}

ScreenWidget::~ScreenWidget() {
    // QWidget's destructor hides the widget, which moves the focus: by then this is no longer
    // a ScreenWidget, so the focus must not reach FocusMoved.
    disconnect(qApp, nullptr, this, nullptr);
    if (screen_.View() == this) screen_.SetView(nullptr);
}

void ScreenWidget::Build() {
    auto* screenLayout = new QVBoxLayout(this);
    QHBoxLayout* band = nullptr;
    bool anyExpands = false;
    for (const auto& group : screen_.Layout()) {
        QWidget* frame = group.caption.empty()
                             ? new QWidget(this)
                             : new QGroupBox(ToQString(group.caption), this);
        auto* rows = new QVBoxLayout(frame);
        if (group.caption.empty()) rows->setContentsMargins(0, 0, 0, 0);
        bool groupExpands = false;
        // Captions of the controls that stand alone on their rows line up in one column.
        std::vector<QLabel*> alignedCaptions;
        for (const auto& row : group.rows) {
            auto* line = new QHBoxLayout;
            bool rowExpands = false;
            for (ui::Control* control : row.controls) {
                ControlView& view = AddView(*control, frame);
                line->addWidget(view.Widget(), view.Expands() ? 1 : 0);
                rowExpands = rowExpands || view.Expands();
                if (row.controls.size() == 1 && view.CaptionLabel())
                    alignedCaptions.push_back(view.CaptionLabel());
            }
            if (!rowExpands) line->addStretch();
            rows->addLayout(line, rowExpands ? 1 : 0);
            groupExpands = groupExpands || rowExpands;
        }
        captionColumns_.push_back(std::move(alignedCaptions));
        if (!band || !group.sideBySide) {
            band = new QHBoxLayout;
            screenLayout->addLayout(band);
        }
        band->addWidget(frame, groupExpands ? 1 : 0);
        if (groupExpands) screenLayout->setStretchFactor(band, 1);
        anyExpands = anyExpands || groupExpands;
    }
    // Without a grid to take the room, the controls stay at the top of the window.
    if (!anyExpands) screenLayout->addStretch();
}

void ScreenWidget::AlignCaptions() {
    for (const auto& column : captionColumns_) {
        int width = 0;
        for (QLabel* caption : column) width = std::max(width, caption->sizeHint().width());
        for (QLabel* caption : column) caption->setMinimumWidth(width);
    }
}

ControlView& ScreenWidget::AddView(ui::Control& control, QWidget* parent) {
    views_.push_back(MakeControlView(control, *this, parent));
    return *views_.back();
}

ControlView* ScreenWidget::ViewOf(const ui::Control& control) const {
    for (const auto& view : views_)
        if (&view->Model() == &control) return view.get();
    return nullptr;
}

ControlView* ScreenWidget::ViewHolding(const QWidget* widget) const {
    if (!widget) return nullptr;
    for (const auto& view : views_)
        if (view->Widget() == widget || view->Widget()->isAncestorOf(widget)) return view.get();
    return nullptr;
}

// A program that fills a grid cell by cell reports every cell: the widgets catch up once,
// when the user's action is done or, for a change the program makes by itself, when the
// event loop next runs.
void ScreenWidget::ControlChanged(ui::Control& control) {
    ControlView* view = ViewOf(control);
    if (!view) return;
    if (std::find(changed_.begin(), changed_.end(), view) == changed_.end())
        changed_.push_back(view);
    if (acting_ > 0 || showScheduled_) return;
    showScheduled_ = true;
    QTimer::singleShot(0, this, [this] { ShowChanges(); });
}

void ScreenWidget::ShowChanges() {
    showScheduled_ = false;
    const std::vector<ControlView*> changed = std::move(changed_);
    changed_.clear();
    QWidget* before = QApplication::focusWidget();
    const bool following = std::exchange(followingModel_, true);
    for (ControlView* view : changed) view->Refresh();
    // A widget that took the focus while the views were redrawn (a table whose cell editor
    // closed with its row) took it by the program's doing: it goes back where the model has it.
    ControlView* focused = screen_.Focused() ? ViewOf(*screen_.Focused()) : nullptr;
    if (QApplication::focusWidget() != before && focused &&
        ViewHolding(QApplication::focusWidget()) != focused)
        focused->FocusWidget()->setFocus(Qt::OtherFocusReason);
    followingModel_ = following;
}

void ScreenWidget::FocusChanged(ui::Control& /*control*/) { FocusModelControl(); }

void ScreenWidget::CloseRequested() {
    if (OnCloseWanted) OnCloseWanted();
}

void ScreenWidget::FocusModelControl() {
    ShowChanges(); // a control made visible by the same action can take the focus
    ui::Control* focused = screen_.Focused();
    ControlView* view = focused ? ViewOf(*focused) : nullptr;
    if (!view) return;
    // Already inside the control (in a cell's editor, say): leave the user where he is.
    if (ViewHolding(QApplication::focusWidget()) == view) return;
    followingModel_ = true;
    view->FocusWidget()->setFocus(movingBack_ ? Qt::BacktabFocusReason : Qt::OtherFocusReason);
    followingModel_ = false;
}

// The user moved the focus (a click, Shift+Tab): the model is asked, and the control being
// left may keep it (a refused cell, a box whose check failed).
void ScreenWidget::FocusMoved(QWidget* now) {
    if (followingModel_) return;
    ControlView* view = ViewHolding(now);
    if (!view) return; // outside this screen: another window, a message box
    ui::Control& target = view->Model();
    if (screen_.Focused() == &target) return;
    followingModel_ = true;
    Act([&] { screen_.Focus(target); });
    followingModel_ = false;
    if (screen_.Focused() != &target) FocusModelControl();
}

bool ScreenWidget::Act(const std::function<void()>& action) {
    bool done = true;
    ++acting_;
    try {
        action();
    } catch (const std::exception& error) {
        done = false;
        QMessageBox::critical(window(), QStringLiteral("QX Desk"), QString::fromUtf8(error.what()));
    }
    if (--acting_ == 0) ShowChanges();
    return done;
}

bool ScreenWidget::Command(const std::function<void()>& action) {
    for (const auto& view : views_) view->CommitTyping();
    return Act(action);
}

bool ScreenWidget::HandleKey(const QKeyEvent& event) {
    const std::optional<ui::KeyPress> press = ScreenKey(event);
    if (!press) return false;
    bool used = false;
    movingBack_ = press->key == ui::Key::Tab && press->shift;
    Command([&] {
        used = screen_.KeyDown(*press);
        if (used) return;
        if (ControlView* view = screen_.Focused() ? ViewOf(*screen_.Focused()) : nullptr)
            used = view->DefaultKey(*press);
    });
    movingBack_ = false;
    return used;
}

void ScreenWidget::WatchKeys(QWidget* widget) { widget->installEventFilter(this); }

bool ScreenWidget::eventFilter(QObject* watched, QEvent* event) {
    // A box the keyboard or the program brings the focus to going forward has its text
    // selected, so that typing replaces it (the date a new document proposes, say). Going back
    // (Shift+Tab) the box keeps its text with the cursor at its end, so that nothing typed
    // replaces it unseen. Coming back to it (a message closed) or a click leaves it as it was.
    if (event->type() == QEvent::FocusIn)
        if (auto* edit = qobject_cast<QLineEdit*>(watched)) {
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason == Qt::BacktabFocusReason)
                QTimer::singleShot(0, edit, [edit] { edit->end(false); });
            else if (reason == Qt::TabFocusReason || reason == Qt::OtherFocusReason)
                QTimer::singleShot(0, edit, [edit] { edit->selectAll(); });
        }
    // A letter or digit typed on a button (a menu cube's number, say) or on a list (its
    // type-ahead), and Backspace there, are the screen's to act on; in a box or a cell's editor
    // they are typing. What the screen leaves alone goes on to the widget (a cell opens to it).
    if (event->type() == QEvent::KeyPress &&
        (qobject_cast<QAbstractButton*>(watched) || qobject_cast<QAbstractItemView*>(watched)))
        if (const auto press = TypedKey(static_cast<const QKeyEvent&>(*event))) {
            bool used = false;
            Command([&] { used = screen_.KeyDown(*press); });
            if (used) return true;
        }
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto& key = static_cast<const QKeyEvent&>(*event);
        if (ScreenKey(key)) {
            // The screen's keys are the screen's: no menu shortcut of the window takes them.
            if (event->type() == QEvent::ShortcutOverride) {
                event->accept();
                return true;
            }
            return HandleKey(key);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ScreenWidget::keyPressEvent(QKeyEvent* event) {
    // Keys from the controls' own widgets were offered to the screen as they were pressed.
    if (!ViewHolding(QApplication::focusWidget()) && HandleKey(*event)) return;
    QWidget::keyPressEvent(event);
}

} // namespace qx::desk
