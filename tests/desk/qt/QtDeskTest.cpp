// The desk with its Qt front end: the main window's menus, screens in sub-windows and modal
// dialogs, message boxes, the print preview, and the Kivra module's screens.
#include "DemoDesk.h"
#include "WidgetTestSupport.h"

#include "desk/core/DeskApp.h"
#include "desk/core/PeriodDialog.h"
#include "desk/qt/Pictures.h"
#include "desk/qt/PreviewDialog.h"
#include "desk/qt/PrintRenderer.h"
#include "desk/qt/QtFrontend.h"
#include "host/HostSelectDialog.h"
#include "desk/cli/Commands.h"
#include "desk/documents/DocumentScreen.h"
#include "desk/documents/HostDocuments.h"
#include "desk/masters/HostMasters.h"
#include "desk/vouchers/HostVouchers.h"
#include "desk/vouchers/VoucherScreen.h"
#include "support/BooksInOrder.h"
#include "support/Desk.h"
#include "support/DocumentTyping.h"
#include "support/InterestBooks.h"

#include <gmock/gmock.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>
#include <QTableWidget>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <sstream>

using namespace qx;

namespace {

// A host screen that counts what the desk does with it.
class NotesScreen : public ui::Screen {
public:
    NotesScreen() : Screen("frmNotes", "Notes") {
        bar.AddItem("Exit,Esc: Exit,Close");
        bar.OnClick = [this](const std::string&) { Close(); };
        buttons.OnClick = [this](int index) { Close(index == 0); };
    }
    ui::TextBox& note = Add<ui::TextBox>("txpNote", "Note");
    ui::ButtonBar& bar = Add<ui::ButtonBar>("BtnBar1");
    ui::StdButtons& buttons = Add<ui::StdButtons>("stdButtons");
    int firstActivations = 0;
    int unloads = 0;
    bool refuseClose = false;

protected:
    void FirstActivate() override { ++firstActivations; }
    void QueryUnload(bool& cancel) override { cancel = refuseClose; }
    void Unload() override { ++unloads; }
};

// Saves a picture of the widget under the test output, for a person to look at.
bool Shoot(QWidget& widget, const std::string& file) {
    return widget.grab().save(QString::fromStdString((test::OutputFolder() / file).string()));
}

class QtDesk : public testing::Test {
protected:
    static void SetUpTestSuite() { test::EnsureWidgetsApplication(); }

    void SetUp() override {
        app.RegisterHostScreen("Tools", "Notes", "Notes", [this] {
            notes = std::make_shared<NotesScreen>();
            return notes;
        });
        frontend.Window().show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frontend.Window(), 30000));
    }

    void OpenDemoCompany(const test::TempFolder& folder) { test::OpenDemoCompany(app, folder); }

    QAction* MenuAction(const QString& menuTitle, const QString& text) {
        for (QAction* menu : frontend.Window().menuBar()->actions())
            if (menu->text().remove(u'&') == menuTitle && menu->menu())
                for (QAction* action : menu->menu()->actions())
                    if (action->text().remove(u'&') == text) return action;
        return nullptr;
    }

    desk::QtFrontend frontend;
    desk::DeskApp app{frontend};
    std::shared_ptr<NotesScreen> notes;
};

// A special menu is a menu and a row of buttons that open screens in sub-windows, from the
// keyboard too: Alt and a menu's letter open it, a button's digit clicks it while no screen
// is open, Alt and the digit wherever the focus is. A window asks its screen before it closes,
// and a modal screen runs until it closes itself.
TEST_F(QtDesk, MenusOpenScreensInWindowsAndModally) {
    SplMenu& menu = app.CreateSplMenu("Kivra", "Kivra");
    menu.AddButton("Notes", "1. Notes", "Notes");
    menu.AddButton("Nowhere", "2. Nowhere", "Books");
    menu.CreateButtons();
    frontend.MenusChanged();
    auto* bar = frontend.Window().findChild<QToolBar*>("SplMenu.Kivra");
    ASSERT_NE(bar, nullptr);
    EXPECT_TRUE(bar->isVisible());
    ASSERT_EQ(bar->actions().size(), 2);
    ASSERT_NE(MenuAction("Kivra", "2. Nowhere"), nullptr);
    QTest::keyClick(&frontend.Window(), Qt::Key_K, Qt::AltModifier);
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(popup, nullptr) << "Alt+K opens the Kivra menu";
    EXPECT_EQ(popup->title(), "&Kivra");
    popup->close();
    QTest::keyClick(&frontend.Window(), Qt::Key_1);
    ASSERT_TRUE(notes) << "the digit 1 clicks the first button";
    QPointer<QMdiSubWindow> window = frontend.WindowOf(*notes);
    ASSERT_TRUE(window);
    EXPECT_EQ(notes->firstActivations, 1);
    EXPECT_TRUE(Shoot(frontend.Window(), "main-window.png"));

    // A key the desk has no screen for is answered with a message, not a crash.
    QString seen;
    test::WhenModalOpens([&seen](QWidget& modal) {
        seen = dynamic_cast<QMessageBox&>(modal).text();
        dynamic_cast<QMessageBox&>(modal).button(QMessageBox::Ok)->click();
    });
    QTest::keyClick(window->widget()->findChild<QWidget*>("txpNote"), Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(seen, "This function is not available in this version of QX Desk.");
    EXPECT_EQ(notes->note.Text(), "") << "Alt+2 in a screen clicks the button, types nothing";

    notes->refuseClose = true;
    window->close();
    EXPECT_EQ(app.OpenScreens().size(), 1u);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(notes->unloads, 0);
    // Esc clicks the screen's "Esc: Exit", whose Close goes the same way.
    notes->refuseClose = false;
    QTest::keyClick(window->widget()->findChild<QWidget*>("txpNote"), Qt::Key_Escape);
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_EQ(notes->unloads, 1);
    EXPECT_EQ(frontend.WindowOf(*notes), nullptr);
    QTest::qWait(20);
    EXPECT_FALSE(window) << "the closed screen's window is gone";
    ASSERT_NE(MenuAction("Tools", "Notes"), nullptr) << "the desk's screens are in the menu";

    NotesScreen dialog;
    test::WhenModalOpens([](QWidget& modal) {
        for (auto* button : modal.findChildren<QPushButton*>())
            if (button->text() == "OK") button->click();
    });
    EXPECT_TRUE(app.ShowModal(dialog));
    EXPECT_EQ(dialog.firstActivations, 1);
    test::WhenModalOpens([](QWidget& modal) {
        QTest::keyClick(modal.findChild<QWidget*>("txpNote"), Qt::Key_Escape);
    });
    EXPECT_FALSE(app.ShowModal(dialog)) << "Esc closes without accepting";
}

// A report opened from the keyboard (9, its period, its market) takes the main window's area;
// its captions are whole and a heading row reads across the empty cells after it.
TEST_F(QtDesk, AReportUsesTheWindowAndShowsItsHeadingsWhole) {
    test::TempFolder folder;
    ASSERT_NO_FATAL_FAILURE(OpenDemoCompany(folder));
    frontend.Window().resize(1366, 740);
    test::WhenModalsOpen(2, [](QWidget& modal) { // the period, then the market
        QWidget* box = modal.focusWidget() ? modal.focusWidget() : modal.findChild<QLineEdit*>();
        QTest::keyClick(box ? box : &modal, modal.windowTitle() == "Period" ? Qt::Key_F10 : Qt::Key_Return);
    });
    QTest::keyClick(&frontend.Window(), Qt::Key_9);
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    QMdiSubWindow* window = frontend.WindowOf(*app.OpenScreens().back());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isMaximized());
    QApplication::processEvents();
    auto* grid = window->findChild<QTableWidget*>();
    ASSERT_NE(grid, nullptr);
    const QFontMetrics bold = [&] {
        QFont font = grid->horizontalHeader()->font();
        font.setBold(true);
        return QFontMetrics(font);
    }();
    for (int col = 0; col < grid->columnCount(); ++col) {
        if (grid->isColumnHidden(col)) continue;
        EXPECT_GT(grid->columnWidth(col), bold.horizontalAdvance(grid->horizontalHeaderItem(col)->text()))
            << grid->horizontalHeaderItem(col)->text().toStdString();
    }
    int headings = 0;
    for (int row = 0; row < grid->rowCount(); ++row)
        if (grid->item(row, 0) && grid->item(row, 0)->text().startsWith("Pending")) {
            ++headings;
            EXPECT_GT(grid->columnSpan(row, 0), 1);
        }
    EXPECT_EQ(headings, 1);
    EXPECT_TRUE(Shoot(frontend.Window(), "daily-summary.png"));
}

// The desk opens maximised the first time and as the user left it after that.
TEST_F(QtDesk, TheWindowOpensAsTheUserLeftIt) {
    test::TempFolder folder;
    QSettings settings(QString::fromStdString((folder.Path() / "desk.ini").string()), QSettings::IniFormat);
    {
        desk::QtFrontend first;
        desk::DeskApp firstApp{first};
        first.Window().ShowAsLeft(settings);
        EXPECT_TRUE(first.Window().isMaximized());
        first.Window().showNormal();
        first.Window().setGeometry(40, 50, 700, 500);
        first.Window().close();
    }
    desk::QtFrontend second;
    desk::DeskApp secondApp{second};
    second.Window().ShowAsLeft(settings);
    EXPECT_FALSE(second.Window().isMaximized());
    EXPECT_EQ(second.Window().size(), QSize(700, 500));
    second.Window().close();
}

// The list dialog at the keyboard: letters typed move to the first entry that starts with
// them, and when none does nothing is chosen; a list opened on a box's text starts at it.
TEST_F(QtDesk, TypingInAListFindsTheEntryOrNothing) {
    auto choose = [&](const std::string& start, const QString& keys) {
        auto list = app.CreateSelectDialog();
        std::int64_t id = 0;
        for (const char* market : {"DORAHA", "JAGRAON", "KHANNA", "SAMRALA"})
            list->AddItem(market, ++id);
        list->SetStartText(start);
        test::WhenModalOpens([keys](QWidget& dialog) {
            auto* table = dialog.findChild<QTableWidget*>("List");
            if (!table) return dialog.close(), void();
            QTest::keyClicks(table, keys);
            QTest::keyClick(table, Qt::Key_Return);
            if (dialog.isVisible()) QTest::keyClick(table, Qt::Key_Escape);
        });
        return list->Show() ? list->SelectedText() : std::string("(none)");
    };
    EXPECT_EQ(choose("", "sa"), "SAMRALA");
    EXPECT_EQ(choose("", "KZ"), "(none)") << "nothing starts with KZ: Enter chooses nothing";
    EXPECT_EQ(choose("ja", ""), "JAGRAON");
    EXPECT_EQ(choose("X", ""), "(none)");
}

// The period dialog without the mouse: F2 opens the calendar on the day in the box, arrows
// move, Enter takes the day; Enter moves on, a To before the From is refused, and Enter in the
// last box accepts.
TEST_F(QtDesk, PeriodDialogAtTheKeyboardWithItsCalendar) {
    desk::PeriodDialog dialog(app, desk::PeriodDialog::Kind::Period,
                              {Date::FromYmd(2024, 11, 5), Date::FromYmd(2024, 11, 5)});
    test::WhenModalOpens([](QWidget& modal) {
        auto* from = modal.findChild<QLineEdit*>(desk::kPeriodFromBox);
        if (!from) return modal.close(), void();
        from->setFocus();
        QTest::keyClick(from, Qt::Key_F2);
        auto* calendar = modal.findChild<QCalendarWidget*>("Calendar");
        if (!calendar) return modal.close(), void();
        EXPECT_EQ(calendar->selectedDate(), QDate(2024, 11, 5));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
        Shoot(*calendar, "period-dialog-calendar.png");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        EXPECT_EQ(from->text(), QStringLiteral("04/11/2024"));
        QTest::keyClick(from, Qt::Key_Return);
        auto* to = modal.findChild<QLineEdit*>(desk::kPeriodToBox);
        // The dialog is active again only once the calendar's pop-up has gone, a moment later
        // on a loaded machine: focus reaches the box then, as the keys a clerk types next do.
        EXPECT_TRUE(QTest::qWaitFor([to] { return QApplication::focusWidget() == to; }, 30000));
        to->selectAll();
        QTest::keyClicks(to, "03/11/2024");
        test::WhenOpens<QMessageBox>([](QMessageBox& box) {
            EXPECT_EQ(box.text().toStdString(),
                      "The period cannot end before it starts: To (03/11/2024) is before From (04/11/2024).");
            box.accept();
        });
        QTest::keyClick(to, Qt::Key_Return);
        EXPECT_TRUE(modal.isVisible()) << "a refused period keeps the dialog open";
        to->selectAll();
        QTest::keyClicks(to, "10/11/2024");
        Shoot(modal, "period-dialog.png");
        QTest::keyClick(to, Qt::Key_Return);
    });
    ASSERT_TRUE(app.ShowModal(dialog));
    EXPECT_EQ(dialog.Result(), (Period{Date::FromYmd(2024, 11, 4), Date::FromYmd(2024, 11, 10)}));
}

TEST_F(QtDesk, PreviewShowsEveryPageOfTheJob) {
    PrintJob job;
    job.firmName = "Test Trading Company";
    job.title = "Stock Register";
    job.columns = {{"Date", 1200}, {"Receipt", 1200, Align::Right}, {"Sale", 1200, Align::Right}};
    for (int day = 1; day <= 120; ++day)
        job.rows.push_back({{std::to_string(day) + "/04/2024", "100.00", "75.50"}, ""});
    const auto pdf = test::OutputFolder() / "preview-pages.pdf"; // a name of its own: tests run at once
    print::WritePdf(job, pdf.string());

    desk::PreviewDialog preview(job);
    preview.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&preview));
    EXPECT_GE(preview.PageCount(), 2);
    EXPECT_EQ(preview.PageCount(), test::PdfPages(pdf)) << "preview and PDF are laid out alike";
    EXPECT_TRUE(Shoot(preview, "preview.png"));
}

// The preview saves from the keyboard (Alt and the underlined letter) through the desk's file
// dialog; a file that cannot be written is said, and the preview stays.
TEST_F(QtDesk, PreviewSavesAsExcelAndCsvFromTheKeyboard) {
    PrintJob job;
    job.title = "Stock Register";
    job.columns = {{"Date", 1200}, {"Receipt", 1200, Align::Right}};
    job.rows.push_back({{"15/04/2024", "1,00,000.00"}, ""});
    namespace fs = std::filesystem;
    test::TempFolder dir;
    desk::PreviewDialog preview(job);
    preview.show();
    // Alt and a letter click the button a moment later, as a click shows.
    auto saveWith = [&](Qt::Key key, const fs::path& path) {
        auto suggested = std::make_shared<QString>();
        test::WhenOpens<QFileDialog>([suggested, path](QFileDialog& dialog) {
            *suggested = QFileInfo(dialog.selectedFiles().value(0)).fileName();
            dialog.selectFile(QString::fromStdString(path.string()));
            static_cast<QDialog&>(dialog).accept();
        });
        preview.activateWindow(); // back from the last file dialog
        EXPECT_TRUE(QTest::qWaitForWindowActive(&preview, 30000));
        QTest::keyClick(&preview, key, Qt::AltModifier);
        for (int wait = 0; wait < 3000 && suggested->isEmpty(); ++wait) QTest::qWait(10);
        return *suggested;
    };
    EXPECT_EQ(saveWith(Qt::Key_E, dir.Path() / "stock.xlsx"), "Stock Register.xlsx");
    EXPECT_EQ(test::FileBytes(dir.Path() / "stock.xlsx").substr(0, 2), "PK");
    EXPECT_EQ(saveWith(Qt::Key_C, dir.Path() / "stock.csv"), "Stock Register.csv");
    EXPECT_EQ(test::FileBytes(dir.Path() / "stock.csv"), "Date,Receipt\n15/04/2024,\"1,00,000.00\"\n");

    QString said;
    test::WhenOpens<QMessageBox>([&](QMessageBox& box) {
        said = box.text();
        box.accept();
    });
    saveWith(Qt::Key_D, dir.Path() / "gone" / "stock.pdf");
    // (The file dialog takes a path into a missing folder as under the working folder.)
    EXPECT_THAT(said.toStdString(), testing::MatchesRegex(".*/gone/stock.pdf cannot be written: "
                                                          "the folder .*/gone does not exist."));
    EXPECT_TRUE(preview.isVisible());
}

// A mandi firm's desk: the module's row of buttons, its market master, its own menu (a digit
// typed on its buttons clicks the button of that number), and the Kivra rates screen the item
// master opens for an item.
TEST_F(QtDesk, TheKivraScreensOfAMandiFirm) {
    test::TempFolder folder;
    const auto company = test::MakeCompany(folder);
    {
        desk::Session session;
        session.Open(company);
        session.SetFirmSetting("ItemForms", "kivrarates=Kivra Rates");
        auto& db = session.Database();
        db.ExecuteSql("INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'WHEAT'), (2, 'PADDY')");
        db.ExecuteSql("INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO, QUNIT) VALUES "
                      "(1, 'WHEAT', 1, 'QTL'), (2, 'PADDY', 2, 'QTL'), (3, 'ਬਾਸਮਤੀ', 2, 'QTL')");
    }
    desk::RegisterHostMasters(app);
    app.LoadModules(std::getenv("QX_MODULES_DIR"));
    app.OpenCompany(company);

    // Opening the company rebuilt the menus: one row of the module's buttons, on screen, the
    // ten of them within a screen of 1366 pixels, each with a picture drawn for it.
    const auto bars = frontend.Window().findChildren<QToolBar*>("SplMenu.Kivra");
    auto visible = [](QToolBar* b) { return b->isVisible(); };
    ASSERT_EQ(std::count_if(bars.begin(), bars.end(), visible), 1);
    QToolBar* bar = *std::find_if(bars.begin(), bars.end(), visible);
    ASSERT_EQ(bar->actions().size(), 10);
    EXPECT_LE(bar->sizeHint().width(), 1366 - 40);
    for (const auto& button : app.SpecialMenus().front()->Buttons())
        EXPECT_TRUE(desk::HasPicture(button.icon)) << button.icon;
    QTest::keyClick(&frontend.Window(), Qt::Key_0, Qt::AltModifier); // the tenth button
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    QMdiSubWindow* window = frontend.WindowOf(*app.OpenScreens().back());
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), "Local Mandi Master");
    window->resize(1000, 520);
    auto* grid = window->findChild<QTableWidget*>("Grid");
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->rowCount(), 1); // an empty master: the row for a new market
    EXPECT_TRUE(Shoot(frontend.Window(), "market-master.png"));
    ASSERT_TRUE(app.CloseScreen(*app.OpenScreens().back()));

    app.ClickMenu("Kivra");
    window = frontend.WindowOf(*app.OpenScreens().back());
    ASSERT_NE(window, nullptr);
    auto buttons = window->findChildren<QToolButton*>();
    ASSERT_EQ(buttons.size(), 10);
    for (QToolButton* button : buttons) EXPECT_TRUE(desk::HasPicture(button->toolTip().toStdString()));
    buttons.front()->setFocus();
    QString caption;
    test::WhenModalOpens([&](QWidget& dialog) {
        caption = dialog.windowTitle();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QTest::keyClick(buttons.front(), Qt::Key_8); // "8. Form-M": the report chooser
    EXPECT_EQ(caption, "Kivra Reports");
    ASSERT_TRUE(app.CloseScreen(*app.OpenScreens().back()));

    app.ClickMenu("StkMaster");
    window = frontend.WindowOf(*app.OpenScreens().back());
    ASSERT_NE(window, nullptr);
    window->resize(900, 420);
    grid = window->findChild<QTableWidget*>("Grid");
    ASSERT_NE(grid, nullptr);
    grid->setCurrentCell(0, 1); // PADDY, listed first by name
    EXPECT_TRUE(Shoot(frontend.Window(), "item-master.png"));
    auto* rates = window->findChild<QPushButton*>("btnkivrarates");
    ASSERT_NE(rates, nullptr);
    bool shot = false;
    test::WhenModalOpens([&](QWidget& dialog) {
        caption = dialog.windowTitle();
        shot = Shoot(dialog, "kivra-rates.png");
        auto* cancel = dialog.findChild<QPushButton*>("btnOKCancel.1");
        if (cancel) cancel->click();
        else dialog.close();
    });
    rates->click();
    EXPECT_EQ(caption, "Kivra Rates");
    EXPECT_TRUE(shot);
    app.CloseCompany();
}

// The demo company's J-Forms and I-Forms on the entry screen, as the agent sees them at the
// counter, and a J-Form typed at the keyboard: each cell takes the keys typed after Enter.
TEST_F(QtDesk, JFormsAndIFormsOnTheEntryScreen) {
    test::TempFolder folder;
    ASSERT_NO_FATAL_FAILURE(OpenDemoCompany(folder));
    frontend.Window().resize(1440, 860);
    // A new form asks for its market, and a new I-Form then lists the pending J-Forms: Esc
    // leaves both.
    auto escape = [](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); };
    auto shoot = [&](const std::string& menuKey, std::int32_t documentId, const std::string& file) {
        test::WhenModalsOpen(menuKey == "IForms" ? 2 : 1, escape);
        app.ClickMenu(menuKey);
        auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.OpenScreens().back());
        ASSERT_NE(screen, nullptr);
        screen->OpenDocument(documentId);
        QMdiSubWindow* window = frontend.WindowOf(*screen);
        ASSERT_NE(window, nullptr);
        window->showMaximized();
        QApplication::processEvents();
        EXPECT_TRUE(Shoot(frontend.Window(), file));
        EXPECT_EQ(screen->Grid().TextMatrix(1, screen->Member("COL_PRODUCT_ID")), "PADDY");
        // The keyboard is in the date box: no grid shows a highlighted cell until it comes.
        auto* grid = window->findChild<QTableWidget*>("Grid");
        ASSERT_NE(grid, nullptr);
        auto cursorColour = [grid] {
            const QRect cell = grid->visualItemRect(grid->currentItem());
            return grid->viewport()->grab().toImage().pixelColor(cell.topLeft() + QPoint(3, 3));
        };
        // The style shades its highlight a little.
        auto highlighted = [](QColor painted) {
            const QColor highlight = QApplication::palette().color(QPalette::Active, QPalette::Highlight);
            return std::abs(painted.red() - highlight.red()) + std::abs(painted.green() - highlight.green()) +
                       std::abs(painted.blue() - highlight.blue()) < 30;
        };
        EXPECT_FALSE(highlighted(cursorColour()));
        grid->setFocus();
        QApplication::processEvents();
        EXPECT_TRUE(highlighted(cursorColour()));
        app.CloseScreen(*screen);
    };
    shoot("JForms", 1, "j-form.png"); // GURMEET SINGH: a line to PUNGRAIN and one to SELF
    shoot("IForms", 4, "i-form.png"); // PUNGRAIN takes over the paddy

    test::WhenModalOpens(escape);
    app.ClickMenu("JForms");
    auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.OpenScreens().back());
    ASSERT_NE(screen, nullptr);
    QApplication::processEvents();
    auto type = [](const std::string& text) {
        for (char key : text) QTest::keyClick(QApplication::focusWidget(), key);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QApplication::processEvents();
    };
    screen->Focus(screen->Grid());
    screen->Grid().SetCurrent(1, screen->Member("COL_PRODUCT_ID"));
    QApplication::processEvents();
    for (const char* text : {"PADDY", "SELF", "50", "10.40"}) type(text);
    EXPECT_EQ(screen->Grid().TextMatrix(1, screen->Member("COL_PRODUCT_ID")), "PADDY");
    EXPECT_EQ(screen->Grid().TextMatrix(1, screen->Member("COL_CUSTOMER_ID")), "SELF");
    EXPECT_EQ(screen->Grid().TextMatrix(1, screen->Member("COL_QUANTITY")), "10.40");

    // Enter passed the bags and weights worked out from the quantity; Shift+Tab goes back cell
    // by cell through them, and out of the grid only from its first cell, into the last box of
    // the header (the day of the farmer's payment) with its text as it was: what is typed next
    // goes after it.
    EXPECT_EQ(screen->Grid().Col(), screen->Member("COL_RATE"));
    auto back = [] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        QApplication::processEvents();
    };
    ui::TextBox& paidOn = test::Box(*screen, "UTR_DATE");
    paidOn.SetText("05/11/202");
    back();
    EXPECT_EQ(screen->Grid().Col(), screen->Member("COL_PCS"));
    EXPECT_EQ(screen->Focused(), &screen->Grid());
    for (int cell = 0; cell < 8; ++cell) back();
    EXPECT_EQ(screen->Grid().Col(), screen->Member("COL_PRODUCT_ID"));
    back();
    EXPECT_EQ(screen->Focused(), &paidOn);
    auto* box = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), "05/11/202");
    EXPECT_FALSE(box->hasSelectedText());
    EXPECT_EQ(box->cursorPosition(), 9);
    QTest::keyClick(box, Qt::Key_4);
    EXPECT_EQ(paidOn.Text(), "05/11/2024");
    // The save question cancelled (Esc) gives the keyboard back to the box as it was.
    test::WhenModalOpens([](QWidget& question) { QTest::keyClick(&question, Qt::Key_Escape); });
    EXPECT_FALSE(app.CloseScreen(*screen));
    QTest::qWait(50);
    EXPECT_EQ(QApplication::focusWidget(), box);
    EXPECT_FALSE(box->hasSelectedText());
    test::WhenModalOpens(escape); // the market of the new form
    screen->NewDocument();
    app.CloseCompany();
}

// A new I-Form at the keyboard: its market, then the pending J-Forms of the market; arrows and
// Enter take one, the buyer's lines fill the form and the cursor moves on past the party.
TEST_F(QtDesk, APendingJFormIsPickedFromTheListAtTheKeyboard) {
    test::TempFolder folder;
    ASSERT_NO_FATAL_FAILURE(OpenDemoCompany(folder));
    frontend.Window().resize(1440, 860);
    // Two buyers' lines of a J-Form of 01/11/2024 at Khanna, before the demo's days.
    auto& db = app.DeskSession().Database();
    db.ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, "
                  "MARKETID) SELECT 900, 'JF', SERIESID, 900, '2024-11-01', (SELECT MARKETID "
                  "FROM MARKETMASTER WHERE MARKETNAME='KHANNA') FROM DOCCONFIG WHERE SERIESCODE='JF'");
    db.ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, QUANTITY, "
                  "FREEQUANTITY, QTYPERBOX, RATE, JFACTOR) SELECT 900, QMCD, QMCD, MCD, 10, 0, 50, "
                  "2275, 1 FROM STKMASTER, FAMASTER WHERE QMHD='WHEAT' AND MHD='PUNGRAIN' OR "
                  "QMHD='PADDY' AND MHD='MARKFED'");
    // And the day's pending J-Forms, which a save keeps for the I-Forms' list.
    db.ExecuteSql("INSERT INTO JFORMPENDING (MARKETID, DOCDATE, CUSTOMERID, PRODUCTID, RATE, "
                  "QUANTITY, RATEPENDING, ITEMPENDING) SELECT b.MARKETID, b.DOCDATE, a.CUSTOMERID, "
                  "a.PRODUCTID, a.RATE, a.QUANTITY, 1, 1 FROM DOCDATA a JOIN DOCMAIN b ON "
                  "b.DOCUMENTID=a.DOCUMENTID WHERE a.DOCUMENTID=900");

    auto choose = [](QWidget& list, const char* keys, int downs) {
        auto* table = list.findChild<QTableWidget*>("List");
        ASSERT_NE(table, nullptr);
        QTest::keyClicks(table, keys);
        for (int down = 0; down < downs; ++down) QTest::keyClick(table, Qt::Key_Down);
        QTest::keyClick(table, Qt::Key_Return);
    };
    bool listShot = false;
    QString marketShown;
    test::WhenModalOpens([&](QWidget& markets) {
        test::WhenModalOpens([&](QWidget& pending) {
            if (auto* market = frontend.Window().findChild<QLineEdit*>("TXPUDI1"))
                marketShown = market->text();
            pending.resize(900, 400);
            QApplication::processEvents();
            listShot = Shoot(pending, "pending-j-forms.png");
            choose(pending, "", 1); // Markfed's paddy first, then Pungrain's wheat
        });
        choose(markets, "KHANNA", 0);
    });
    app.ClickMenu("IForms");
    auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.OpenScreens().back());
    ASSERT_NE(screen, nullptr);
    QApplication::processEvents();
    EXPECT_TRUE(listShot);
    EXPECT_EQ(marketShown, "KHANNA") << "the list opens over the form as it is";
    EXPECT_EQ(screen->TxpCustomer().Text(), "PUNGRAIN");
    EXPECT_EQ(test::Cell(*screen, 1, "PRODUCT_ID") + "|" + test::Cell(*screen, 2, "PRODUCT_ID"),
              "WHEAT|")
        << "his line, and the empty row for the next";
    auto* focused = QApplication::focusWidget();
    EXPECT_TRUE(focused && focused->objectName() == "TXPSALETYPE") << "moved on past the party";
    frontend.WindowOf(*screen)->showMaximized();
    QApplication::processEvents();
    EXPECT_TRUE(Shoot(frontend.Window(), "i-form-picked.png"));

    test::WhenModalOpens([](QWidget& question) { QTest::keyClick(&question, Qt::Key_N); });
    EXPECT_TRUE(app.CloseScreen(*screen));
    app.CloseCompany();
}

// A payment at the keyboard: Enter moves on, a new row proposes what balances the voucher, F10
// refuses a voucher that does not balance, Enter on the empty row leaves the rows, the UTR takes
// the voucher's day, F2 lists the party's J-Forms to settle (Space marks, Enter takes), and F10
// saves the rows and the UTR of the J-Form.
TEST_F(QtDesk, APaymentIsTypedAtTheKeyboardOnTheVoucherScreen) {
    test::TempFolder folder;
    ASSERT_NO_FATAL_FAILURE(OpenDemoCompany(folder));
    desk::RegisterHostVouchers(app);
    frontend.Window().resize(1440, 860);
    app.ClickMenu(desk::kVoucherEntryKey);
    auto screen = std::dynamic_pointer_cast<desk::VoucherScreen>(app.OpenScreens().back());
    ASSERT_NE(screen, nullptr);
    frontend.WindowOf(*screen)->showMaximized();
    QApplication::processEvents();
    auto key = [](Qt::Key pressed) {
        QTest::keyClick(QApplication::focusWidget(), pressed);
        QApplication::processEvents();
    };
    auto type = [&](const std::string& text) {
        for (char typed : text) QTest::keyClick(QApplication::focusWidget(), typed);
        key(Qt::Key_Return);
    };
    auto& grid = screen->Get<ui::Grid>("Grid");
    auto cell = [&](int row, int col) { return grid.TextMatrix(row, col); };

    type("08/11/2024");
    key(Qt::Key_Return); // the book, Payment as proposed
    type("BALWINDER SINGH GREWAL");
    EXPECT_EQ(cell(1, desk::VoucherScreen::kBalanceCol), "72,480.00 Cr") << "his J-Forms less his advance";
    EXPECT_EQ(cell(1, desk::VoucherScreen::kSideCol), "Dr") << "a payment pays the party first";
    type("10,200");
    key(Qt::Key_Return);
    type("Paid by NEFT");
    std::string refusal;
    test::WhenOpens<QMessageBox>([&](QMessageBox& box) {
        refusal = box.text().toStdString();
        QTest::keyClick(&box, Qt::Key_Return);
    });
    key(Qt::Key_F10);
    EXPECT_EQ(refusal, "The voucher does not balance: debits 10,200.00, credits 0.00, a difference of 10,200.00 Dr. "
                       "Nothing was saved.");
    type("PUNJAB NATIONAL BANK");
    EXPECT_EQ(cell(2, desk::VoucherScreen::kAmountCol) + " " + cell(2, desk::VoucherScreen::kSideCol) + " " +
                  cell(2, desk::VoucherScreen::kNarrationCol),
              "10,200.00 Cr Paid by NEFT");
    for (int proposed = 0; proposed < 3; ++proposed) key(Qt::Key_Return);
    key(Qt::Key_Return); // the empty row: the rows are done
    EXPECT_EQ(screen->Focused(), &screen->Get<ui::TextBox>("txpUtrNo"));
    type("PUNBH24110811111");
    EXPECT_EQ(screen->Get<ui::TextBox>("txpUtrDate").Text(), "08/11/2024");
    key(Qt::Key_Return);
    test::WhenModalOpens([](QWidget& list) {
        auto* table = list.findChild<QTableWidget*>("List");
        ASSERT_NE(table, nullptr);
        QTest::keyClick(table, Qt::Key_Space);
        QTest::keyClick(table, Qt::Key_Return);
    });
    key(Qt::Key_F2);
    EXPECT_EQ(screen->Get<ui::TextBox>("txpSettles").Text(), "JF 2") << "his cancelled J-Form is not listed";
    EXPECT_TRUE(Shoot(frontend.Window(), "voucher.png"));

    key(Qt::Key_F10);
    EXPECT_EQ(screen->LastSaved(), 14);
    auto& db = app.DeskSession().Database();
    EXPECT_EQ(db.LookupValue("DOCMAIN", "UTRNO", "DOCSERIES='JF' AND DOCNUMBER=2").AsText(), "PUNBH24110811111");
    EXPECT_EQ(db.LookupValue("FADATA", "COUNT(*)", "VOUCHERID=14 AND ABS(DAMT)=10200").AsInt(), 2);
    test::ExpectBooksInOrder(app);
    app.CloseScreen(*screen);
    app.CloseCompany();
}

// The two interest screens from the miscellaneous menu, each with a statement worked out, for a
// person to look at: every caption, box and column readable, nothing clipped.
TEST_F(QtDesk, TheInterestScreensFromTheMiscellaneousMenu) {
    test::TempFolder folder;
    const auto company = test::MakeCompany(folder);
    {
        desk::Session session;
        session.Open(company);
        test::PostInterestBooks(session.Database());
        session.SetFirmSetting("Period.KivraInterest", "01/04/2024 to 30/06/2024");
    }
    app.LoadModules(std::getenv("QX_MODULES_DIR"));
    app.OpenCompany(company);
    frontend.Window().resize(1280, 820);
    QAction* first = MenuAction("Miscellaneous", "Interest Calcuations (Kivra)");
    ASSERT_NE(first, nullptr);
    auto shoot = [&](QAction* entry, int method, const std::string& file, const std::function<void(ui::Screen&)>& period) {
        entry->trigger();
        ui::Screen& screen = *app.OpenScreens().back();
        QMdiSubWindow* window = frontend.WindowOf(screen);
        ASSERT_NE(window, nullptr);
        window->showMaximized();
        auto& party = screen.Get<ui::TextBox>("txpParty");
        screen.Focus(party);
        party.Type("GURMEET SINGH");
        screen.KeyDown({ui::Key::Enter});
        screen.Get<ui::OptionGroup>("optInterest").Click(method);
        period(screen);
        QTest::qWait(50); // the heading's new width laid out
        EXPECT_TRUE(Shoot(frontend.Window(), file));
        auto* grid = window->findChild<QTableWidget*>("Grid");
        ASSERT_NE(grid, nullptr);
        EXPECT_GT(grid->rowCount(), 5);
        app.CloseScreen(screen);
    };
    shoot(first, 0, "interest.png", [](ui::Screen& screen) { screen.KeyDown({ui::Key::F7}); });
    shoot(MenuAction("Miscellaneous", "Interest Calcuations-2 (Kivra)"), 1, "interest-2.png", [](ui::Screen& screen) {
        screen.Get<ui::TextBox>("txpTotalDays").SetText("360");
        screen.KeyDown({ui::Key::F2});
        QApplication::processEvents();
        screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
    });
    app.CloseCompany();
}

} // namespace
