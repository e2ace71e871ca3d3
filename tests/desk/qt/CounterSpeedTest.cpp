// A clerk at the counter in the season: J-Forms typed from the paper, every key counted, in the
// desktop window of the demo company.
#include "DemoDesk.h"
#include "WidgetTestSupport.h"

#include "desk/documents/DocumentScreen.h"
#include "desk/qt/QtFrontend.h"
#include "support/DocumentTyping.h"

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QMdiSubWindow>
#include <QTableWidget>
#include <QTest>


using namespace qx;

namespace {

QWidget* List(QWidget& modal) {
    auto* table = modal.findChild<QTableWidget*>("List");
    EXPECT_NE(table, nullptr) << "a list opens";
    return table ? static_cast<QWidget*>(table) : &modal;
}

// The keys the clerk presses, each into whatever has the keyboard, as many as he presses.
class Clerk {
public:
    void Type(const std::string& text) {
        for (char key : text) Press(key);
    }
    void Press(char key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        Count();
    }
    void Press(Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i) {
            QTest::keyClick(QApplication::focusWidget(), key);
            Count();
        }
    }
    // A name typed in part, F2, and Enter on the first name of the list that opens there.
    void LookUp(const std::string& start) {
        Type(start);
        test::WhenModalOpens([this](QWidget& list) {
            QTest::keyClick(List(list), Qt::Key_Return);
            ++keys;
        });
        Press(Qt::Key_F2);
    }
    int keys = 0;

private:
    void Count() {
        ++keys;
        QApplication::processEvents();
    }
};

class CounterSpeed : public testing::Test {
protected:
    static void SetUpTestSuite() { test::EnsureWidgetsApplication(); }

    void SetUp() override {
        frontend.Window().resize(1366, 768);
        frontend.Window().show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&frontend.Window(), 30000));
        test::OpenDemoCompany(app, folder);
    }
    void TearDown() override { app.CloseCompany(); }

    // The J-Forms window, maximised, with the market of the first form chosen.
    desk::DocumentScreen& OpenJForms() {
        test::WhenModalOpens([](QWidget& markets) {
            QTest::keyClicks(List(markets), "KHANNA");
            QTest::keyClick(List(markets), Qt::Key_Return);
        });
        app.ClickMenu("JForms");
        auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.OpenScreens().back());
        EXPECT_NE(screen, nullptr);
        frontend.WindowOf(*screen)->showMaximized();
        QApplication::processEvents();
        return *screen;
    }

    test::TempFolder folder;
    desk::QtFrontend frontend;
    desk::DeskApp app{frontend};
};

// A two-line J-Form from F5 to F10: Enter walks only what the clerk types from the paper, a
// look-up moves on after the choice, and the second line starts with the first one's item,
// buyer and bag weight. The same form took 94 keys before (the date had to be selected, and
// Enter stopped in every computed cell). The next form then starts where this one ended.
TEST_F(CounterSpeed, ATwoLineJFormFromF5ToF10AndTheNextOne) {
    desk::DocumentScreen& screen = OpenJForms();
    CompanyDb& db = screen.Document().Database();
    const auto column = [&] { return screen.Grid().Col(); };
    Clerk clerk;
    clerk.Press(Qt::Key_F5);
    clerk.Type("06/11/2024");
    clerk.Press(Qt::Key_Return, 2); // date, number
    clerk.LookUp("GUR");
    EXPECT_EQ(screen.TxpCustomer().Text(), "GURMEET SINGH S/O KARNAIL SINGH");
    EXPECT_EQ(screen.Focused(), &screen.TXPSALETYPE()) << "the look-up moved on";
    clerk.Press(Qt::Key_Return, 2); // sale type, market
    clerk.Type("12");
    clerk.Press(Qt::Key_Return);
    clerk.Type("108");
    clerk.Press(Qt::Key_Return, 3); // form number, U.T.R. number and date
    clerk.Type("PADDY");
    clerk.Press(Qt::Key_Return);
    clerk.LookUp("PUN");
    EXPECT_EQ(column(), screen.Member("COL_QTY_PER_BOX")) << "the look-up moved on";
    clerk.Type("37.5");
    clerk.Press(Qt::Key_Return);
    clerk.Type("75");
    clerk.Press(Qt::Key_Return);
    EXPECT_EQ(column(), screen.Member("COL_RATE")) << "past the bags and weights worked out";
    clerk.Type("2320");
    clerk.Press(Qt::Key_Return);
    EXPECT_EQ(screen.Grid().Row(), 2) << "past the amount";
    EXPECT_EQ(screen.Grid().Proposal(2, column()), "PADDY");
    clerk.Press(Qt::Key_Return); // the item of the line above
    clerk.Type("SELF");          // replaces the buyer above
    clerk.Press(Qt::Key_Return, 2); // and the bag weight above
    clerk.Type("10.50");
    clerk.Press(Qt::Key_Return);
    clerk.Type("2320");
    clerk.Press(Qt::Key_F10);
    EXPECT_EQ(clerk.keys, 71);

    const std::string saved = "DOCSERIES='JF' AND FORMNO=108";
    EXPECT_EQ(db.LookupValue("DOCMAIN", "FORMBOOKNO", saved).AsInt(), 12);
    EXPECT_EQ(db.LookupValue("DOCMAIN", "DOCDATE", saved).AsDate().ToDisplay(), "06/11/2024");
    const std::int32_t number = db.LookupValue("DOCMAIN", "DOCNUMBER", saved).AsInt();
    const std::string id = std::to_string(db.LookupValue("DOCMAIN", "DOCUMENTID", saved).AsInt());
    EXPECT_EQ(db.LookupValue("DOCDATA", "COUNT(*)", "DOCUMENTID=" + id).AsInt(), 2);
    EXPECT_EQ(db.LookupValue("DOCDATA", "SUM(QUANTITY)", "DOCUMENTID=" + id).AsAmount(),
              TextToAmount("85.5"));
    EXPECT_EQ(db.LookupValue("DOCDATA", "SUM(AMOUNT)", "DOCUMENTID=" + id).AsAmount(),
              TextToAmount("198360")) << "75 and 10.50 quintals at 2,320";
    const Amount payable = db.LookupValue("DOCMAIN", "GRANDTOTAL", saved).AsAmount();

    // The status line names the form just saved; the next one carries its day, book and
    // market, proposes the next form number, and takes a new day typed over the selected one.
    EXPECT_EQ(screen.Get<ui::Label>("lblStatus").Text(),
              "J-Form " + std::to_string(number) + " saved: form 12/108, " +
                  FormatAmount(payable, "c2"));
    EXPECT_EQ(screen.Caption(), "J-Forms \u2014 new");
    EXPECT_EQ(test::Box(screen, "MARKET").Text(), "KHANNA");
    EXPECT_EQ(test::Box(screen, "FORM_BOOK_NO").Text(), "12");
    EXPECT_EQ(test::Box(screen, "FORM_NO").Text(), "109");
    auto* date = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(date, nullptr);
    QTest::qWait(20);
    EXPECT_EQ(date->selectedText(), "06/11/2024");
    frontend.Window().grab().save(
        QString::fromStdString((test::OutputFolder() / "j-form-after-save.png").string()));
    clerk.Type("07/11/2024");
    test::WhenOpens<QMessageBox>([](QMessageBox& question) { // not saved
        question.button(QMessageBox::No)->click();
    });
    clerk.Press(Qt::Key_F5);
    EXPECT_EQ(screen.TxpDocDate().Text(), "07/11/2024");
    EXPECT_EQ(test::Box(screen, "FORM_NO").Text(), "109") << "108 is the last one saved";

    screen.OpenDocument(std::stoi(id));
    EXPECT_EQ(screen.Caption(), "J-Forms \u2014 No. " + std::to_string(number));
    app.CloseScreen(screen);
}

} // namespace
