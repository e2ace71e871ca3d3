#pragma once
// The desk shown with Qt: screens as sub-windows of the main window or as modal dialogs,
// messages as message boxes, print jobs in the preview or on a printer.

#include "MainWindow.h"

#include "desk/core/Frontend.h"

#include <map>
#include <memory>

class QMdiSubWindow;

namespace qx::desk {

class ScreenWindow;

class QtFrontend : public Frontend {
public:
    QtFrontend();
    ~QtFrontend() override;

    // The main window; made when first asked for, once the application is attached.
    MainWindow& Window();
    // The sub-window that shows a screen; null when the screen is not shown.
    QMdiSubWindow* WindowOf(const ui::Screen& screen) const;

    void Show(std::shared_ptr<ui::Screen> screen) override;
    void RunModal(ui::Screen& screen) override;
    void Closed(ui::Screen& screen) override;
    int Message(const std::string& prompt, const std::string& options,
                const std::string& style) override;
    void Print(const PrintJob& job, PrintMode mode) override;
    void MenusChanged() override;
    ui::Screen* ActiveWindow() override;
    void Activate(ui::Screen& screen) override;
    void ProcessEvents() override;

private:
    QWidget* DialogParent();
    void ShowChangesOfWindows();

    std::unique_ptr<MainWindow> window_;
    std::map<const ui::Screen*, ScreenWindow*> windows_;
    const ScreenWindow* lastActive_ = nullptr;
};

} // namespace qx::desk
