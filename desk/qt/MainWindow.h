#pragma once
// QX Desk's main window: the company menu, the desk's main menu by group, one menu and one
// row of large buttons for each module's special menu, and the screens as sub-windows.

#include <QMainWindow>

#include <vector>

class QMdiArea;
class QMenu;
class QSettings;
class QToolBar;

namespace qx::desk {

class DeskApp;

class MainWindow : public QMainWindow {
public:
    explicit MainWindow(DeskApp& app);

    QMdiArea& Area() const { return *area_; }
    // Builds the menus and the title again from the application's menus and company.
    void Refresh();
    // Opens a company as the Company menu does, telling the user when it cannot be opened.
    void OpenCompany(const QString& path);
    // Shows the window as the user left it the last time (kept in `settings`, which must
    // outlive the window), maximised the first time; its place is kept there when it closes.
    void ShowAsLeft(QSettings& settings);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QMenu* MenuOfGroup(const QString& group);
    QAction* ButtonOfDigit(int key) const;

    DeskApp& app_;
    QMdiArea* area_;
    QSettings* settings_ = nullptr;
    std::vector<QMenu*> menus_;
    std::vector<QToolBar*> toolBars_;
};

} // namespace qx::desk
