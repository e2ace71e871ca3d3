// The generic renderer on a screen of every control kind, driven with real key presses on
// its widgets as a user drives it.
#include "WidgetTestSupport.h"

#include "desk/qt/ScreenWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include <algorithm>

using namespace qx;
using namespace qx::ui;

namespace {

constexpr int kColId = 0, kColSerial = 1, kColItem = 2, kColBags = 3, kColAmount = 4;

class EveryControlScreen : public Screen {
public:
    EveryControlScreen() : Screen("frmEveryControl", "Every Control") {
        heading.Heading = true;
        amount.NumericOnly = true;
        amount.OnLookup = [this] { log.push_back("lookup amount"); };
        party.OnValidate = [this](bool& cancel) { cancel = partyRequired && party.Text().empty(); };
        market.AddItem("Khanna", 1);
        market.AddItem("Rajpura", 2);
        market.SetSelectedIndex(1);
        mode.SetSelectedIndex(1);
        for (auto item : {"Delete,F3: Delete,Delete", "F4", "Preview,F8: Preview,Preview",
                          "Exit,Esc: Exit,Close"})
            bar.AddItem(item);
        bar.SetItemEnabled("F4", false);
        bar.OnClick = [this](const std::string& key) { log.push_back("click " + key); };
        cube.AddButton("JForms", "1. J-Forms", "Wheat");
        cube.AddButton("IForms", "2. I-Forms", "Truck");
        cube.AddButton("MarketMaster", "10. Local Mandi Master", "Books");
        cube.OnClick = [this](const std::string& key) { log.push_back("cube " + key); };
        period.SetPeriod(Date::FromYmd(2024, 4, 1), Date::FromYmd(2025, 3, 31));
        SetUpGrid();

        BeginGroup("Party");
        AddRow({&heading});
        AddRow({&party, &amount});
        AddRow({&cash, &market});
        AddRow({&mode});
        BeginGroup("Menu", true);
        AddRow({&cube});
        BeginGroup();
        AddRow({&grid});
        AddRow({&period, &refresh});
        AddRow({&bar});
        AddRow({&buttons});
    }

    Label& heading = Add<Label>("lblHeading", "Every Control");
    TextBox& party = Add<TextBox>("txpParty", "Party");
    TextBox& amount = Add<TextBox>("txpAmount", "Amount");
    CheckBox& cash = Add<CheckBox>("chkCash", "Cash sale");
    ComboBox& market = Add<ComboBox>("cmbMarket", "Market");
    OptionGroup& mode = Add<OptionGroup>("optMode", std::vector<std::string>{"J-Form", "I-Form"});
    ButtonCube& cube = Add<ButtonCube>("cube");
    Grid& grid = Add<Grid>("Grid");
    PeriodBox& period = Add<PeriodBox>("period");
    Button& refresh = Add<Button>("btnRefresh", "Refresh");
    ButtonBar& bar = Add<ButtonBar>("BtnBar1");
    StdButtons& buttons = Add<StdButtons>("stdButtons");
    std::vector<std::string> log;
    bool partyRequired = false;

private:
    void SetUpGrid() {
        grid.AddColumn("", 0);
        grid.AddColumn("Sr. No.", 600, Align::Centre);
        grid.AddColumn("Item", 2500);
        grid.AddColumn("Bags", 800, Align::Right);
        grid.AddColumn("Amount", 1440, Align::Default);
        grid.Column(kColSerial).editable = false;
        grid.Editable = grid.GrowsRows = true;
        grid.SetRows(4);
        const std::vector<std::vector<std::string>> rows = {
            {"7", "1", "ਕਣਕ (Wheat)", "50", "58,750.00"},
            {"9", "2", "धान (Paddy)", "30", "61,200.00"}};
        for (int row = 1; row <= 2; ++row)
            for (int col = 0; col < 5; ++col) grid.SetTextMatrix(row, col, rows[row - 1][col]);
        grid.SetTextMatrix(3, kColSerial, "3");
        grid.SetRowColour(2, 255);
        grid.SetRowMarks(2, "*totals*");
        grid.OnCellBeforeLostFocus = [this](int row, int col, const std::string& value, bool& cancel) {
            log.push_back("check " + std::to_string(row) + "," + std::to_string(col) + "=" + value);
            cancel = value == "bad";
        };
        grid.OnRowAdded = [this](int row) { grid.SetTextMatrix(row + 1, kColSerial, std::to_string(row + 1)); };
    }
};

class QtScreen : public testing::Test {
protected:
    static void SetUpTestSuite() { test::EnsureWidgetsApplication(); }

    void SetUp() override {
        widget = std::make_unique<desk::ScreenWidget>(screen);
        widget->resize(1100, 720);
        widget->show();
        widget->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(widget.get(), 30000));
    }

    template <class W> W& Find(const char* name) const {
        W* found = widget->findChild<W*>(QString::fromUtf8(name));
        if (!found) throw std::runtime_error(std::string("no widget ") + name);
        return *found;
    }
    QTableWidget& Table() const { return Find<QTableWidget>("Grid"); }
    bool Logged(const std::string& entry) const {
        return std::find(screen.log.begin(), screen.log.end(), entry) != screen.log.end();
    }
    // Opens the cell's editor as a user starts typing into it, and returns the editor.
    QLineEdit& EditCell(int row, int col) {
        screen.grid.SetCurrent(row, col);
        Table().setFocus();
        Table().editItem(Table().item(row - 1, col));
        auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
        if (!editor) throw std::runtime_error("no cell editor opened");
        editor->selectAll();
        return *editor;
    }

    EveryControlScreen screen;
    std::unique_ptr<desk::ScreenWidget> widget;
};

// Every control kind shown from the model, and what the program changes afterwards.
TEST_F(QtScreen, RendersEveryControlKindFromTheModel) {
    const auto shot = test::OutputFolder() / "every-control.png";
    ASSERT_TRUE(widget->grab().save(QString::fromStdString(shot.string())));
    QTableWidget& table = Table();
    EXPECT_EQ(table.rowCount(), 3); // the caption row is the header
    EXPECT_TRUE(table.isColumnHidden(kColId));
    EXPECT_EQ(table.columnWidth(kColAmount), table.logicalDpiX()); // 1440 twips: an inch
    EXPECT_EQ(table.item(1, kColItem)->background().color(), QColor(Qt::red));
    EXPECT_TRUE(table.item(1, kColItem)->font().bold()); // a totals row
    EXPECT_FALSE(table.item(0, kColSerial)->flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(table.item(0, kColItem)->flags() & Qt::ItemIsEditable);
    EXPECT_FALSE(Find<QPushButton>("BtnBar1.F4").isEnabled());
    // Only a box with a look-up has the look-up button.
    EXPECT_TRUE(Find<QLineEdit>("txpAmount").parentWidget()->findChild<QToolButton*>()->isVisible());
    EXPECT_FALSE(Find<QLineEdit>("txpParty").parentWidget()->findChild<QToolButton*>()->isVisible());
    EXPECT_EQ(Find<QComboBox>("cmbMarket").currentText(), "Rajpura");
    EXPECT_EQ(Find<QDateEdit>("period.From").text(), "01/04/2024");

    screen.party.SetText("Harbans Lal");
    screen.bar.SetItemEnabled("Delete", false);
    screen.amount.SetVisible(false);
    screen.grid.SetTextMatrix(1, kColBags, "55");
    screen.grid.SetRows(6);
    screen.market.ClearItems();
    screen.market.AddItem("Samrala");
    QCoreApplication::processEvents(); // the widgets catch up once, not at every change
    EXPECT_EQ(Find<QLineEdit>("txpParty").text(), "Harbans Lal");
    EXPECT_FALSE(Find<QPushButton>("BtnBar1.Delete").isEnabled());
    EXPECT_FALSE(Find<QLineEdit>("txpAmount").isVisibleTo(widget.get()));
    EXPECT_EQ(Table().item(0, kColBags)->text(), "55");
    EXPECT_EQ(Table().rowCount(), 5);
    EXPECT_EQ(Find<QComboBox>("cmbMarket").currentIndex(), -1);
}

TEST_F(QtScreen, FunctionKeysAndEscClickTheBarWhereverTheFocusIs) {
    QLineEdit& party = Find<QLineEdit>("txpParty");
    party.setFocus();
    QTest::keyClick(&party, Qt::Key_F3);
    QTest::keyClick(&party, Qt::Key_F4);                       // switched off
    QTest::keyClick(&party, Qt::Key_F8, Qt::ShiftModifier);    // not the plain key
    QTest::keyClick(&Table(), Qt::Key_Escape);
    EXPECT_EQ(screen.log, (std::vector<std::string>{"click Delete", "click Exit"}));

    // Pressed while typing in a cell, the key acts with what was typed.
    QLineEdit& editor = EditCell(1, kColItem);
    QTest::keyClicks(&editor, "Maize");
    QTest::keyClick(&editor, Qt::Key_F8);
    EXPECT_TRUE(Logged("click Preview"));
    EXPECT_EQ(screen.grid.Editing(), std::optional<std::string>("Maize"));

    // A click on the bar and on the cube reach the model as their own clicks.
    QTest::mouseClick(&Find<QPushButton>("BtnBar1.Delete"), Qt::LeftButton);
    QTest::mouseClick(Find<QWidget>("cube").findChildren<QToolButton*>().at(2), Qt::LeftButton);
    EXPECT_EQ(std::count(screen.log.begin(), screen.log.end(), "click Delete"), 2);
    EXPECT_TRUE(Logged("cube MarketMaster"));
}

TEST_F(QtScreen, TypingAndEnterGoThroughTheModel) {
    QLineEdit& amount = Find<QLineEdit>("txpAmount");
    amount.setFocus();
    QTest::keyClicks(&amount, "12a5.5.0");
    EXPECT_EQ(screen.amount.Text(), "125.50"); // a numeric box takes no letters, one point
    QTest::keyClick(&amount, Qt::Key_F2);
    EXPECT_TRUE(Logged("lookup amount"));

    QTest::keyClick(&amount, Qt::Key_Return);
    EXPECT_EQ(screen.Focused(), &screen.cash);
    EXPECT_EQ(QApplication::focusWidget(), &Find<QCheckBox>("chkCash"));

    // The party's check refuses an empty box: Enter keeps the user in it.
    screen.partyRequired = true;
    QLineEdit& party = Find<QLineEdit>("txpParty");
    party.setFocus();
    ASSERT_EQ(screen.Focused(), &screen.party);
    QTest::keyClick(&party, Qt::Key_Return);
    EXPECT_EQ(screen.Focused(), &screen.party);
    EXPECT_EQ(QApplication::focusWidget(), &party);
    // So does a click elsewhere.
    amount.setFocus();
    EXPECT_EQ(screen.Focused(), &screen.party);
    EXPECT_EQ(QApplication::focusWidget(), &party);

    // Gurmukhi as a Punjabi keyboard sends it: letters with no key code of their own.
    for (const QChar letter : QString::fromUtf8("ਗੁਰਪ੍ਰੀਤ")) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
        QApplication::sendEvent(&party, &press);
    }
    EXPECT_EQ(screen.party.Text(), "ਗੁਰਪ੍ਰੀਤ");
    QTest::keyClick(&party, Qt::Key_Tab);
    EXPECT_EQ(screen.Focused(), &screen.amount);
    EXPECT_EQ(QApplication::focusWidget(), &amount);
}

TEST_F(QtScreen, GridEditReachesTheModelAndTheCursorIsTheModels) {
    QLineEdit& editor = EditCell(1, kColItem);
    QTest::keyClicks(&editor, "Maize");
    QTest::keyClick(&editor, Qt::Key_Return);
    EXPECT_TRUE(Logged("check 1,2=Maize"));
    EXPECT_EQ(screen.grid.TextMatrix(1, kColItem), "Maize");
    EXPECT_EQ(screen.grid.Col(), kColBags); // Enter moved on to the next editable column
    EXPECT_EQ(Table().currentColumn(), kColBags);
    EXPECT_EQ(Table().item(0, kColItem)->text(), "Maize");
    // At the counter the user just goes on typing: the next cell takes the keys.
    for (char key : std::string("12")) QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_EQ(Table().currentColumn(), kColBags);

    // Moving the cursor with the keyboard moves the model's cursor (and leaves the cell).
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(screen.grid.TextMatrix(1, kColBags), "12");
    EXPECT_EQ(screen.grid.Row(), 2);
    EXPECT_EQ(screen.grid.Col(), kColBags);
}

TEST_F(QtScreen, RefusedCellKeepsTheCursorAndTheTypedText) {
    QLineEdit& editor = EditCell(1, kColBags);
    QTest::keyClicks(&editor, "bad");
    QTest::keyClick(&editor, Qt::Key_Return);
    EXPECT_EQ(screen.grid.Row(), 1);
    EXPECT_EQ(screen.grid.Col(), kColBags);
    EXPECT_EQ(Table().currentRow(), 0);
    EXPECT_EQ(Table().currentColumn(), kColBags);
    EXPECT_EQ(Table().item(0, kColBags)->text(), "bad");

    // The user is put back into the cell's editor with what he typed.
    QTest::qWait(20);
    auto* reopened = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(reopened->text(), "bad");

    // A click on another cell is refused the same way.
    Table().setCurrentCell(1, kColItem);
    EXPECT_EQ(screen.grid.Row(), 1);
    EXPECT_EQ(Table().currentRow(), 0);
    EXPECT_EQ(Table().currentColumn(), kColBags);

    QLineEdit& fixed = EditCell(1, kColBags);
    QTest::keyClicks(&fixed, "60");
    QTest::keyClick(&fixed, Qt::Key_Return);
    EXPECT_EQ(screen.grid.TextMatrix(1, kColBags), "60");
    EXPECT_EQ(screen.grid.Col(), kColAmount);
}

} // namespace
