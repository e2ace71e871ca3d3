#include "MainWindow.h"

#include "ControlViews.h"
#include "FileDialogs.h"
#include "Pictures.h"

#include "desk/core/DeskApp.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMenuBar>
#include <QToolBar>

namespace qx::desk {

MainWindow::MainWindow(DeskApp& app) : app_(app), area_(new QMdiArea(this)) {
    setCentralWidget(area_);
    resize(1200, 800);
    Refresh();
}

void MainWindow::OpenCompany(const QString& path) {
    app_.Guard([&] { app_.OpenCompany(path.toStdString()); });
}

QMenu* MainWindow::MenuOfGroup(const QString& group) {
    for (QMenu* menu : menus_)
        if (menu->title() == group) return menu;
    menus_.push_back(menuBar()->addMenu(group));
    return menus_.back();
}

void MainWindow::Refresh() {
    // The menus may be rebuilt from inside one of their own actions (Open... opens a company,
    // whose modules then build their menus): the old ones go once that action is done.
    menuBar()->clear();
    for (QMenu* menu : menus_) menu->deleteLater();
    menus_.clear();
    for (QToolBar* bar : toolBars_) {
        removeToolBar(bar);
        bar->deleteLater();
    }
    toolBars_.clear();

    QMenu* company = MenuOfGroup(QStringLiteral("Company"));
    company->addAction(QStringLiteral("Open..."), this, [this] {
        const QString path =
            AskFileName(this, {FileQuestion::Kind::Open, QStringLiteral("Open Company"), {},
                               QStringLiteral("QX Desk companies (*.kdb)")});
        if (!path.isEmpty()) OpenCompany(path);
    });
    company->addAction(QStringLiteral("Close"), this, [this] { app_.Guard([this] { app_.CloseCompany(); }); })
        ->setEnabled(app_.DeskSession().HasCompany());

    for (const MainMenuEntry& entry : app_.MainMenu())
        MenuOfGroup(ToQString(entry.group))
            ->addAction(ToQString(entry.caption), this, [this, key = entry.key] { app_.ClickMenu(key); });
    for (const MiscMenuEntry& entry : app_.MiscMenu())
        MenuOfGroup(QStringLiteral("Miscellaneous"))
            ->addAction(ToQString(entry.caption), this, [this, key = entry.key] { app_.ClickMenu(key); });
    company->addSeparator();
    company->addAction(QStringLiteral("Exit"), this, &QWidget::close);

    for (const auto& special : app_.SpecialMenus()) {
        QMenu* menu = MenuOfGroup(ToQString(special->Caption()));
        auto* bar = new QToolBar(ToQString(special->Caption()), this);
        bar->setObjectName(ToQString("SplMenu." + special->Key()));
        bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        bar->setIconSize(QSize(40, 40));
        for (const MenuButton& button : special->Buttons()) {
            QAction* action = menu->addAction(PictureIcon(button.icon), ToQString(button.caption));
            action->setObjectName(ToQString(button.key));
            action->setToolTip(ToQString(button.icon));
            connect(action, &QAction::triggered, this, [this, key = button.key] { app_.ClickMenu(key); });
            bar->addAction(action);
        }
        // Each module's buttons stand in a row of their own.
        addToolBarBreak();
        addToolBar(Qt::TopToolBarArea, bar);
        bar->show(); // the window may be on screen already
        toolBars_.push_back(bar);
    }

    QMenu* windows = MenuOfGroup(QStringLiteral("Window"));
    windows->addAction(QStringLiteral("Cascade"), area_, &QMdiArea::cascadeSubWindows);
    windows->addAction(QStringLiteral("Tile"), area_, &QMdiArea::tileSubWindows);

    const auto& session = app_.DeskSession();
    setWindowTitle(session.HasCompany()
                       ? QStringLiteral("QX Desk - %1").arg(QString::fromStdString(session.Path().string()))
                       : QStringLiteral("QX Desk"));
}

void MainWindow::closeEvent(QCloseEvent* event) {
    // Every screen is asked; one that refuses keeps the desk open.
    area_->closeAllSubWindows();
    if (!app_.OpenScreens().empty()) {
        event->ignore();
        return;
    }
    QMainWindow::closeEvent(event);
}

} // namespace qx::desk
