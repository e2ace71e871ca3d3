#pragma once
// QX Desk's main window: the company menu, the desk's main menu by group, one menu and one
// row of large buttons for each module's special menu, and the screens as sub-windows.

#include <QMainWindow>

#include <vector>

class QMdiArea;
class QMenu;
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

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QMenu* MenuOfGroup(const QString& group);

    DeskApp& app_;
    QMdiArea* area_;
    std::vector<QMenu*> menus_;
    std::vector<QToolBar*> toolBars_;
};

} // namespace qx::desk
