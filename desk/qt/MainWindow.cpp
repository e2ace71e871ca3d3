#include "MainWindow.h"

#include "ControlViews.h"
#include "FileDialogs.h"
#include "Mnemonics.h"
#include "Pictures.h"

#include "desk/core/DeskApp.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMenuBar>
#include <QSettings>
#include <QToolBar>

#include <cstdlib>

namespace qx::desk {

namespace {

const QString kGeometryKey = QStringLiteral("MainWindow/Geometry");

// A big button's caption under its picture: the module's spacing evened out, and a long
// caption in two lines broken at the space nearest its middle, so that a row of ten stays
// narrower than the screen.
QString ButtonCaption(const QString& caption) {
    QString text = caption.simplified();
    constexpr qsizetype kOneLine = 14;
    if (text.size() <= kOneLine) return text;
    qsizetype best = -1;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] == u' ' && (best < 0 || std::abs(i - text.size() / 2) < std::abs(best - text.size() / 2)))
            best = i;
    if (best > 0) text[best] = u'\n';
    return text;
}

} // namespace

MainWindow::MainWindow(DeskApp& app) : app_(app), area_(new QMdiArea(this)) {
    setCentralWidget(area_);
    resize(1200, 800);
    Refresh();
}

void MainWindow::ShowAsLeft(QSettings& settings) {
    settings_ = &settings;
    if (restoreGeometry(settings.value(kGeometryKey).toByteArray())) show();
    else showMaximized();
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

    std::vector<std::filesystem::path> pictureFolders;
    for (const LoadedModule& module : app_.Modules())
        if (!module.file.empty()) pictureFolders.push_back(module.file.parent_path() / module.file.stem());
    SetPictureFolders(std::move(pictureFolders));

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
        // Alt and the button's digit click a button of the first row from anywhere in the
        // window (Alt+0 the tenth); the digit alone does where no screen is open.
        const bool numbered = toolBars_.empty();
        int number = 0;
        for (const MenuButton& button : special->Buttons()) {
            const QString caption = ToQString(button.caption).simplified();
            QAction* action = menu->addAction(PictureIcon(button.icon), caption);
            action->setIconText(ButtonCaption(caption));
            action->setObjectName(ToQString(button.key));
            if (numbered && ++number <= 10) action->setShortcut(QKeySequence(Qt::ALT | (Qt::Key_0 + number % 10)));
            action->setToolTip(action->shortcut().isEmpty()
                                   ? caption
                                   : caption + QStringLiteral(" (%1)").arg(action->shortcut().toString(
                                                   QKeySequence::NativeText)));
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

    GiveMnemonics(menuBar()->actions());
    for (QMenu* menu : menus_) GiveMnemonics(menu->actions());

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
    if (settings_) settings_->setValue(kGeometryKey, saveGeometry());
    QMainWindow::closeEvent(event);
}

QAction* MainWindow::ButtonOfDigit(int key) const {
    if (key < Qt::Key_0 || key > Qt::Key_9) return nullptr;
    const int index = (key == Qt::Key_0 ? 10 : key - Qt::Key_0) - 1;
    if (toolBars_.empty() || index >= toolBars_.front()->actions().size()) return nullptr;
    return toolBars_.front()->actions().at(index);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    // A digit that no screen took clicks the first row's button of that number.
    if (event->modifiers() == Qt::NoModifier && !area_->activeSubWindow())
        if (QAction* button = ButtonOfDigit(event->key())) {
            button->trigger();
            return;
        }
    QMainWindow::keyPressEvent(event);
}

} // namespace qx::desk
