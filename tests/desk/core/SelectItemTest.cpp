// The host's item selection as a module uses it: created by name, the rows of a query shown
// without their codes, worked at the keyboard, and the taken rows' fields read back; and the
// keys a module sends to the control that has the keyboard.
#include "support/Desk.h"

#include "desk/core/SelectItemScreen.h"
#include "host/SelectItemForm.h"

using namespace qx;

namespace {

using Strings = std::vector<std::string>;

class SelectItemTest : public test::DeskFixtureBase {
protected:
    void SetUp() override {
        path = test::MakeCompany(folder, "");
        app.OpenCompany(path);
        Db().ExecuteSql("CREATE TABLE PENDING (DOCDATE DATE, PARTY VARCHAR(40), QTY DECIMAL(16,4), "
                        "BATCHNO VARCHAR(10), CUSTOMERID INTEGER)");
        Db().ExecuteSql("INSERT INTO PENDING VALUES ('2024-04-15', 'BANSAL TRADERS', 6, 'B1', 201), "
                        "('2024-04-15', 'GOYAL MILLS', 1234.5, 'B2', 202), "
                        "('2024-04-16', 'BANSAL TRADERS', 10, 'B3', 201)");
    }

    // Creates the screen by name, as a module does, and shows the rows; keys is what the user
    // presses on it.
    SelectItemForm& Show(bool pickPending, bool firstRow, std::vector<ui::KeyPress> keys) {
        screen_ = app.Forms().CreateForm("SelectItem");
        auto& form = dynamic_cast<SelectItemForm&>(*screen_);
        form.SetPickPendingMode(pickPending);
        form.SetSelectFirstRow(firstRow);
        form.SetListType("J-Form");
        frontend.QueueModal([this, keys](ui::Screen& list) {
            shown_ = Grid(list);
            for (const auto& key : keys) list.KeyDown(key);
        });
        form.SelectItem(Db(), "SELECT DOCDATE AS DocDate, PARTY, QTY, BATCHNO, CUSTOMERID FROM "
                              "PENDING ORDER BY DOCDATE, PARTY", " Pending Parties of J-Form");
        return form;
    }
    static Strings Grid(ui::Screen& list) {
        Strings rows;
        const auto& grid = list.Get<ui::Grid>(desk::kSelectItemGrid);
        for (int row = 0; row < grid.Rows(); ++row) {
            std::string line;
            for (int col = 0; col < grid.Cols(); ++col) line += (col ? "|" : "") + grid.TextMatrix(row, col);
            rows.push_back(line);
        }
        return rows;
    }
    static Strings Taken(const SelectItemForm& form) {
        Strings taken;
        for (int i = 0; i < form.SelectionCount(); ++i)
            taken.push_back(form.Selected(i, "party").AsText() + " " +
                            form.Selected(i, "BatchNo").AsText() + " " +
                            std::to_string(form.Selected(i, "CustomerID").AsInt()));
        return taken;
    }
    static ui::KeyPress Key(ui::Key key) { return {.key = key}; }
    static ui::KeyPress Char(char32_t c) { return {.key = ui::Key::Character, .character = c}; }

    std::shared_ptr<ui::Screen> screen_;
    Strings shown_;
};

TEST_F(SelectItemTest, ArrowsSpaceAndEnterTakeTheMarkedRowsWithTheirCodes) {
    auto& form = Show(true, true, {Key(ui::Key::Down), Char(U' '), Key(ui::Key::Down), Char(U' '),
                                   Key(ui::Key::Up), Char(U' '), Char(U' '), Key(ui::Key::Enter)});
    EXPECT_EQ(shown_, (Strings{"|Doc Date|PARTY|QTY|BATCHNO", "|15/04/2024|BANSAL TRADERS|6.00|B1",
                               "|15/04/2024|GOYAL MILLS|1,234.50|B2",
                               "|16/04/2024|BANSAL TRADERS|10.00|B3"}))
        << "codes are the caller's, not shown";
    ASSERT_FALSE(form.Cancelled());
    EXPECT_EQ(Taken(form), (Strings{"GOYAL MILLS B2 202", "BANSAL TRADERS B3 201"}))
        << "a row marked twice is unmarked";
    EXPECT_THROW(form.Selected(0, "ITEM"), std::invalid_argument);

    // Unmarked, Enter takes the row the cursor is on; letters find a row by its cells.
    EXPECT_EQ(Taken(Show(true, true, {Key(ui::Key::PageDown), Key(ui::Key::Enter)})),
              Strings{"BANSAL TRADERS B3 201"});
    EXPECT_EQ(Taken(Show(false, false, {Char(U'g'), Char(U'o'), Key(ui::Key::Enter)})),
              Strings{"GOYAL MILLS B2 202"});

    // Nothing is taken without a row (not told to start on the first, or a search that finds
    // none), nor when the user cancels.
    EXPECT_TRUE(Show(true, false, {Key(ui::Key::Enter)}).Cancelled());
    EXPECT_TRUE(Show(true, true, {Char(U'x'), Key(ui::Key::Enter)}).Cancelled());
    auto& cancelled = Show(true, true, {Char(U' '), Key(ui::Key::Escape)});
    EXPECT_TRUE(cancelled.Cancelled());
    EXPECT_EQ(cancelled.SelectionCount(), 0);
}

// A module moves the cursor on with "{TAB}", sent to the screen that has the keyboard: the
// modal one on top, else the window the user works in. Ctrl+Tab passed to the host goes to
// the next window.
TEST_F(SelectItemTest, KeysSentByAModuleReachTheScreenThatHasTheKeyboard) {
    auto make = [](const std::string& name) {
        auto screen = std::make_shared<ui::Screen>(name, name);
        screen->Add<ui::TextBox>("first");
        screen->Add<ui::TextBox>("second");
        return screen;
    };
    auto orders = make("orders");
    auto rates = make("rates");
    app.ShowForm(orders);
    app.ShowForm(rates);
    rates->Focus(rates->Get<ui::TextBox>("first"));
    app.SendKeys("{tab}ab+{TAB}");
    EXPECT_EQ(rates->Get<ui::TextBox>("second").Text(), "ab");
    EXPECT_EQ(rates->Focused()->Name(), "first");
    EXPECT_THROW(app.SendKeys("{TABB}"), std::invalid_argument);

    ui::KeyPress next{.key = ui::Key::Tab, .ctrl = true};
    app.HandleShortcutKey(next, *rates);
    EXPECT_EQ(next.key, ui::Key::None) << "the host took the key";
    EXPECT_EQ(app.KeyboardScreen(), orders.get());

    ui::Screen dialog("dialog", "Dialog");
    dialog.Add<ui::TextBox>("only");
    frontend.QueueModal([&](ui::Screen& shown) {
        app.SendKeys("x");
        EXPECT_EQ(shown.Get<ui::TextBox>("only").Text(), "x");
    });
    dialog.Focus(dialog.Get<ui::TextBox>("only"));
    app.ShowModal(dialog);
}

} // namespace
