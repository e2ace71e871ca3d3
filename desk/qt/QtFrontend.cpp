#include "QtFrontend.h"

#include "Pictures.h"
#include "PreviewDialog.h"
#include "ScreenWidget.h"

#include "desk/core/DeskApp.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>
#include <stdexcept>

namespace qx::desk {

// A screen's sub-window. Its close button (and the screen's own Close) asks the application,
// which asks the screen (QueryUnload); once the screen agreed the application takes the
// window down through QtFrontend::Closed.
class ScreenWindow : public QMdiSubWindow {
public:
    ScreenWindow(std::shared_ptr<ui::Screen> screen, DeskApp& app)
        : screen_(std::move(screen)), app_(app), view_(new ScreenWidget(*screen_)) {
        setWidget(view_);
        setWindowTitle(ToQString(screen_->Caption()));
        setWindowIcon(PictureIcon(screen_->Icon));
        view_->OnCloseWanted = [this] { close(); };
    }
    // The view goes first: it lets go of the screen, which this window keeps alive.
    ~ScreenWindow() override { delete view_; }

    ScreenWidget& View() const { return *view_; }
    ui::Screen& Model() const { return *screen_; }
    // The screen's code may be in a module that the desk unloads next (when it shuts down):
    // the window, which keeps the screen alive, goes at once unless the screen's own handler
    // (its Exit, say) is still running.
    void TakeDown() {
        closed_ = true;
        hide();
        if (view_->Acting()) deleteLater();
        else delete this;
    }

protected:
    void closeEvent(QCloseEvent* event) override {
        if (closed_) {
            QMdiSubWindow::closeEvent(event);
            return;
        }
        event->ignore();
        view_->Act([this] { app_.CloseScreen(*screen_); });
    }

private:
    std::shared_ptr<ui::Screen> screen_;
    DeskApp& app_;
    ScreenWidget* view_;
    bool closed_ = false;
};

namespace {

// A screen run modally. Esc or the close button cancel it as the screen's own Close(false)
// would; the dialog ends when the screen closes.
class ScreenDialog : public QDialog {
public:
    ScreenDialog(ui::Screen& screen, QWidget* parent)
        : QDialog(parent), screen_(screen), view_(new ScreenWidget(screen, this)) {
        setWindowTitle(ToQString(screen.Caption()));
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(view_);
        view_->OnCloseWanted = [this] { done(screen_.Accepted() ? Accepted : Rejected); };
    }
    ScreenWidget& View() const { return *view_; }
    void reject() override {
        view_->Act([this] { screen_.Close(false); });
    }

private:
    ui::Screen& screen_;
    ScreenWidget* view_;
};

} // namespace

QtFrontend::QtFrontend() = default;

QtFrontend::~QtFrontend() = default;

MainWindow& QtFrontend::Window() {
    if (window_) return *window_;
    if (!app_) throw std::logic_error("the desk's main window needs its application attached");
    window_ = std::make_unique<MainWindow>(*app_);
    QObject::connect(&window_->Area(), &QMdiArea::subWindowActivated, window_.get(),
                     [this](QMdiSubWindow* activated) {
                         // A screen activates when the user comes to it from another screen,
                         // not each time a message box over it closes.
                         auto* window = dynamic_cast<ScreenWindow*>(activated);
                         if (!window || window == lastActive_) return;
                         lastActive_ = window;
                         window->View().Act([window] { window->Model().RunActivate(); });
                     });
    return *window_;
}

QMdiSubWindow* QtFrontend::WindowOf(const ui::Screen& screen) const {
    auto it = windows_.find(&screen);
    return it == windows_.end() ? nullptr : it->second;
}

void QtFrontend::Show(std::shared_ptr<ui::Screen> screen) {
    const ui::Screen* key = screen.get();
    auto* window = new ScreenWindow(std::move(screen), *app_);
    windows_[key] = window;
    Window().Area().addSubWindow(window);
    // A screen of rows (a document, a report, a master) takes the whole area, as the window
    // it replaces on paper would take the desk; a menu or a small form keeps its own size.
    const auto& controls = window->Model().Controls();
    const bool rows = std::any_of(controls.begin(), controls.end(),
                                  [](const auto& control) { return control->Kind() == ui::ControlKind::Grid; });
    if (rows) window->showMaximized();
    else window->show();
    Window().Area().setActiveSubWindow(window);
}

namespace {

// The window and control that had the keyboard before a dialog take it back when the dialog
// closes; a window manager does this for the window, but not every desktop has one (a kiosk,
// a remote X session), and the control would be lost with it.
class KeyboardComesBack {
public:
    KeyboardComesBack() : window_(QApplication::activeWindow()), widget_(QApplication::focusWidget()) {}
    ~KeyboardComesBack() {
        if (window_) window_->activateWindow();
        if (widget_) widget_->setFocus(Qt::ActiveWindowFocusReason); // as it was, not re-entered
    }
    KeyboardComesBack(const KeyboardComesBack&) = delete;
    KeyboardComesBack& operator=(const KeyboardComesBack&) = delete;

private:
    QPointer<QWidget> window_;
    QPointer<QWidget> widget_;
};

} // namespace

void QtFrontend::ShowChangesOfWindows() {
    for (const auto& [screen, window] : windows_) window->View().ShowChanges();
}

void QtFrontend::RunModal(ui::Screen& screen) {
    ShowChangesOfWindows();
    KeyboardComesBack back;
    ScreenDialog dialog(screen, DialogParent());
    dialog.View().Act([&] { screen.RunActivate(); });
    dialog.exec();
}

void QtFrontend::Closed(ui::Screen& screen) {
    auto it = windows_.find(&screen);
    if (it == windows_.end()) return;
    ScreenWindow* window = it->second;
    windows_.erase(it);
    if (lastActive_ == window) lastActive_ = nullptr;
    screen.SetView(nullptr);
    window->TakeDown();
}

int QtFrontend::Message(const std::string& prompt, const std::string& options,
                        const std::string& style) {
    QMessageBox::Icon icon = QMessageBox::Information;
    if (style == "E") icon = QMessageBox::Critical;
    else if (style == "W") icon = QMessageBox::Warning;
    else if (style == "Q") icon = QMessageBox::Question;
    const bool cancel = options == kYesNoCancel;
    const bool question = cancel || options == kYesNo;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    if (question) buttons = QMessageBox::Yes | QMessageBox::No;
    if (cancel) buttons |= QMessageBox::Cancel;
    ShowChangesOfWindows();
    KeyboardComesBack back;
    QMessageBox box(icon, QStringLiteral("QX Desk"), ToQString(prompt), buttons, DialogParent());
    box.setDefaultButton(question ? QMessageBox::Yes : QMessageBox::Ok);
    if (cancel) box.setEscapeButton(QMessageBox::Cancel);
    switch (box.exec()) {
    case QMessageBox::No:
        return kAnswerNo;
    case QMessageBox::Cancel:
        return kAnswerCancel;
    default:
        return kAnswerYes;
    }
}

void QtFrontend::Print(const PrintJob& job, PrintMode mode) {
    if (mode == PrintMode::Print) {
        PrintWithDialog(job, DialogParent());
        return;
    }
    PreviewDialog preview(job, DialogParent());
    preview.exec();
}

void QtFrontend::MenusChanged() { Window().Refresh(); }

ui::Screen* QtFrontend::ActiveWindow() {
    if (!window_) return nullptr;
    auto* active = dynamic_cast<ScreenWindow*>(window_->Area().activeSubWindow());
    return active ? &active->Model() : nullptr;
}

void QtFrontend::Activate(ui::Screen& screen) {
    if (QMdiSubWindow* window = WindowOf(screen)) Window().Area().setActiveSubWindow(window);
}

void QtFrontend::ProcessEvents() {
    ShowChangesOfWindows();
    QApplication::processEvents();
}

QWidget* QtFrontend::DialogParent() {
    if (QWidget* active = QApplication::activeWindow()) return active;
    return window_.get();
}

} // namespace qx::desk
