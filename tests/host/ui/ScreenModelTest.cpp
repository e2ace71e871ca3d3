// Small screens driven through their controls as a user drives them.

#include "host/ui/Screen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace qx;
using namespace qx::ui;

namespace {

using Log = std::vector<std::string>;

class RecordingView : public ScreenView {
public:
    void ControlChanged(Control& control) override { ++changes[control.Name()]; }
    void FocusChanged(Control& control) override { focus.push_back(control.Name()); }
    void CloseRequested() override { ++closeRequests; }
    std::map<std::string, int> changes;
    Log focus;
    int closeRequests = 0;
};

constexpr int kIdCol = 0, kSerialCol = 1, kNameCol = 2, kSeriesCol = 3;

// A market list edited in place, row by row.
class MarketsScreen : public Screen {
public:
    MarketsScreen() : Screen("frmMarkets", "Local Mandi Master") {}
    Grid& grid = Add<Grid>("Grid");
    ButtonBar& bar = Add<ButtonBar>("BtnBar1");
    Log log;
    bool refuseRowLeave = false;
    bool refuseClose = false;

protected:
    void Load() override {
        log.push_back("load");
        grid.AddColumn("", 0);
        grid.AddColumn("Sr. No.", 600, Align::Centre);
        grid.AddColumn("Market Name", 2500);
        grid.AddColumn("Form Series", 800, Align::Centre);
        grid.Column(kSerialCol).editable = false;
        grid.Editable = grid.GrowsRows = true;
        grid.SetRows(2);
        auto cell = [](int row, int col) { return std::to_string(row) + "," + std::to_string(col); };
        grid.OnCellBeforeLostFocus = [=, this](int row, int col, const std::string& value,
                                               bool& cancel) {
            log.push_back("check " + cell(row, col) + "=" + value);
            cancel = col == kSeriesCol && value.size() > 5;
        };
        grid.OnCellLostFocus = [=, this](int row, int col) { log.push_back("left " + cell(row, col)); };
        grid.OnRowLeave = [this](int row, bool& cancel) {
            log.push_back("row " + std::to_string(row));
            cancel = refuseRowLeave;
        };
        grid.OnRowAdded = [this](int row) {
            log.push_back("added " + std::to_string(row));
            grid.SetTextMatrix(row, kSerialCol, std::to_string(row));
        };
        for (auto item : {"Delete,F3: Delete,Delete", "F4", "Preview,F8: Preview,Preview",
                          "Exit,Esc: Exit,Close"})
            bar.AddItem(item);
        bar.SetItemEnabled("Preview", false);
        bar.OnClick = [this](const std::string& key) {
            log.push_back("click " + key);
            if (key == "Exit") Close();
        };
    }
    void FirstActivate() override { log.push_back("first activate"); }
    void Activate() override { log.push_back("activate"); }
    void QueryUnload(bool& cancel) override { cancel = refuseClose; }
};

struct MarketList : testing::Test {
    void SetUp() override {
        screen.SetView(&view);
        screen.RunLoad();
        screen.log.clear();
    }
    std::pair<int, int> Cursor() const { return {grid.Row(), grid.Col()}; }
    MarketsScreen screen;
    RecordingView view;
    Grid& grid = screen.grid;
};

// Leaving a cell checks it, then a row; a refusal keeps the cursor and the typed text, and the
// text is checked again however the cell is left next.
TEST_F(MarketList, LeavingCellsAndRowsRunsTheChecksInOrder) {
    grid.SetCurrent(1, kNameCol);
    grid.Type("Khanna");
    EXPECT_EQ(grid.TextMatrix(1, kNameCol), ""); // not taken until the cell is left
    ASSERT_TRUE(grid.MoveNext());
    grid.Type("KHANNA");
    EXPECT_FALSE(grid.MoveTo(2, kNameCol));
    EXPECT_EQ(Cursor(), std::pair(1, kSeriesCol));
    EXPECT_EQ(grid.TextMatrix(1, kSeriesCol), "KHANNA");
    EXPECT_FALSE(grid.Commit());
    grid.Type("KHN");
    EXPECT_TRUE(grid.Commit());

    screen.refuseRowLeave = true;
    EXPECT_FALSE(grid.MoveTo(2, kNameCol));
    EXPECT_EQ(Cursor(), std::pair(1, kSeriesCol));
    screen.refuseRowLeave = false;
    ASSERT_TRUE(grid.MoveTo(2, kNameCol));
    EXPECT_EQ(screen.log, (Log{"added 1", "check 1,2=Khanna", "left 1,2", "check 1,3=KHANNA",
                               "check 1,3=KHANNA", "check 1,3=KHN", "left 1,3", "check 1,3=KHN",
                               "left 1,3", "row 1", "check 1,3=KHN", "left 1,3", "row 1"}));
    EXPECT_EQ(grid.TextMatrix(1, kNameCol), "Khanna");
    EXPECT_EQ(grid.TextMatrix(1, kSerialCol), "1");
}

// Typing into the last row adds one fresh row; MoveNext skips hidden and fixed columns and,
// with no row to add, stays in the last cell, which is still taken.
TEST_F(MarketList, TheLastRowGrowsTheGridByOneRow) {
    grid.SetCurrent(1, kSerialCol); // a column the user cannot type into
    grid.Type("9");
    EXPECT_FALSE(grid.Editing());
    EXPECT_EQ(grid.Rows(), 2);

    grid.SetCurrent(1, kNameCol);
    grid.Type("Khanna");
    grid.Type("Khanna Mandi");
    ASSERT_TRUE(grid.MoveTo(2, kNameCol));
    grid.Type("Rajpura");
    EXPECT_EQ(grid.Rows(), 4);
    EXPECT_EQ(grid.TextMatrix(2, kSerialCol), "2");
    EXPECT_EQ(std::count(screen.log.begin(), screen.log.end(), "added 1"), 1);
    grid.SetCurrent(1, kSeriesCol);
    ASSERT_TRUE(grid.MoveNext());
    EXPECT_EQ(Cursor(), std::pair(2, kNameCol));

    grid.GrowsRows = false;
    ASSERT_TRUE(grid.MoveTo(3, kNameCol));
    grid.Type("Samrala");
    EXPECT_EQ(grid.Rows(), 4);
    grid.SetCurrent(3, kSeriesCol);
    grid.Type("SML");
    EXPECT_TRUE(grid.MoveNext());
    EXPECT_EQ(Cursor(), std::pair(3, kSeriesCol));
    EXPECT_EQ(grid.TextMatrix(3, kSeriesCol), "SML");
}

TEST_F(MarketList, RowsCutOrRemovedTakeTheirCellsAndLeaveTheCursorInTheGrid) {
    grid.SetTextMatrix(0, kNameCol, "Mandi");
    EXPECT_EQ(grid.Column(kNameCol).caption, "Mandi");
    EXPECT_THROW(grid.TextMatrix(2, 0), std::out_of_range);
    EXPECT_THROW(grid.TextMatrix(1, 4), std::out_of_range);

    grid.SetCurrent(1, kNameCol);
    EXPECT_FALSE(grid.MoveTo(0, kNameCol));
    EXPECT_FALSE(grid.MoveTo(2, kNameCol));
    EXPECT_TRUE(screen.log.empty());

    grid.SetTextMatrix(1, kNameCol, "Khanna");
    grid.SetRows(3);
    grid.SetCurrent(2, kNameCol);
    grid.SetRows(0);
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_EQ(grid.Row(), 1); // the cursor does not stay in a row that was cut
    grid.SetRows(2);
    EXPECT_EQ(grid.TextMatrix(1, kNameCol), ""); // a cut row comes back empty

    // A removed row takes its text with it; the rows below move up with their marks.
    grid.SetRows(4);
    for (int row = 1; row <= 3; ++row) grid.SetTextMatrix(row, kNameCol, "M" + std::to_string(row));
    grid.SetRowColour(3, 255);
    grid.SetRowMarks(3, "*totals*");
    grid.SetCurrent(3, kNameCol);
    grid.RemoveRow(2);
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.TextMatrix(2, kNameCol), "M3");
    EXPECT_EQ(grid.RowColour(2), 255);
    EXPECT_EQ(grid.RowMarks(2), "*totals*");
    EXPECT_EQ(grid.Row(), 2) << "the cursor stays on its row";

    grid.MoveTo(2, kNameCol);
    grid.Type("typed");
    grid.RemoveRow(2);
    EXPECT_FALSE(grid.Editing()) << "typing goes with the removed row";
    EXPECT_EQ(grid.TextMatrix(grid.Row(), kNameCol), "");
    EXPECT_THROW(grid.RemoveRow(0), std::out_of_range);
}

TEST_F(MarketList, FunctionKeysClickTheEnabledBarItemAndLifecycleStepsRunOnce) {
    EXPECT_TRUE(screen.KeyDown({.key = Key::F3}));
    EXPECT_FALSE(screen.KeyDown({.key = Key::F8})); // switched off
    EXPECT_FALSE(screen.KeyDown({.key = Key::F4})); // its caption names no key
    EXPECT_FALSE(screen.KeyDown({.key = Key::F3, .shift = true}));
    EXPECT_TRUE(screen.KeyDown({.key = Key::Escape}));
    EXPECT_EQ(screen.log, (Log{"click Delete", "click Exit"}));
    EXPECT_EQ(view.closeRequests, 1);

    screen.bar.SetEnabled(false); // a bar switched off takes no keys
    EXPECT_FALSE(screen.KeyDown({.key = Key::F3}));

    // Load runs once; Activate each time, the first time after FirstActivate.
    screen.log.clear();
    screen.RunLoad();
    screen.RunActivate();
    screen.RunActivate();
    EXPECT_EQ(screen.log, (Log{"first activate", "activate", "activate"}));
    screen.refuseClose = true;
    EXPECT_FALSE(screen.RunQueryUnload());
}

TEST(ButtonBar, ItemDefinitionsAndKeyCaptions) {
    ButtonBar bar("BtnBar1");
    bar.AddItem("Delete,F3: Delete,Delete");
    bar.AddItem("Period,F6: &Period", "Calendar");
    EXPECT_THROW(bar.SetItemEnabled("Print", false), std::invalid_argument);

    // Two items may name one key while only one of them is on.
    bar.AddItem("Search,F6: Search");
    bar.SetItemEnabled("Period", false);
    std::string clicked;
    bar.OnClick = [&](const std::string& key) { clicked = key; };
    EXPECT_TRUE(bar.PressKey(Key::F6));
    EXPECT_EQ(clicked, "Search");

    EXPECT_EQ(KeyOfCaption("&F2: Period"), Key::F2);
    EXPECT_EQ(KeyOfCaption("F12: Options"), Key::F12);
    EXPECT_EQ(KeyOfCaption("Recalculate: Dr/Cr"), Key::None);
    for (Key key : {Key::Enter, Key::Tab, Key::Escape, Key::F1, Key::F10})
        EXPECT_EQ(KeyOfCaption(KeyName(key) + ": x"), key) << KeyName(key);
}

// Header boxes above an item grid, in the order Enter walks through them.
struct EntryForm : testing::Test {
    EntryForm() {
        party.OnValidate = [this](bool& cancel) { cancel = party.Text().empty(); };
        remarks.SetEnabled(false);
        grid.AddColumn("Item", 2000);
        grid.AddColumn("Bags", 800);
        grid.Editable = true;
        grid.SetRows(2);
        grid.OnCellBeforeLostFocus = [](int, int, const std::string& value, bool& cancel) {
            cancel = value == "0";
        };
        screen.SetView(&view);
    }
    Screen screen{"frmEntry", "Entry"};
    RecordingView view;
    Label& heading = screen.Add<Label>("lblHeading", "J-Form");
    TextBox& party = screen.Add<TextBox>("txpParty", "Party");
    TextBox& remarks = screen.Add<TextBox>("txpRemarks", "Remarks");
    Grid& grid = screen.Add<Grid>("Grid");
};

TEST_F(EntryForm, EnterWalksTheControlsThatTakeFocusAndMovesWithinTheGrid) {
    party.Type("Gurmeet Singh");
    party.SetFocus();
    EXPECT_TRUE(screen.KeyDown({.key = Key::Enter}));
    EXPECT_EQ(screen.Focused(), &grid);
    grid.SetCurrent(1, 0);
    EXPECT_TRUE(screen.KeyDown({.key = Key::Enter}));
    EXPECT_EQ(grid.Col(), 1);
    screen.FocusNext(); // wraps past the label and the switched-off box
    EXPECT_EQ(view.focus, (Log{"txpParty", "Grid", "txpParty"}));

    // Shift+Tab walks back cell by cell, through the checks, and leaves the grid backwards
    // only from its first cell.
    const KeyPress back{.key = Key::Tab, .shift = true};
    grid.SetRows(3);
    grid.SetFocus();
    grid.SetCurrent(2, 1);
    EXPECT_TRUE(screen.KeyDown(back));
    EXPECT_EQ(std::pair(grid.Row(), grid.Col()), std::pair(2, 0));
    EXPECT_TRUE(screen.KeyDown(back));
    EXPECT_EQ(std::pair(grid.Row(), grid.Col()), std::pair(1, 1));
    grid.Type("0");
    EXPECT_TRUE(screen.KeyDown(back));
    EXPECT_EQ(std::pair(grid.Row(), grid.Col()), std::pair(1, 1)) << "the refused cell keeps it";
    grid.Type("5");
    EXPECT_TRUE(screen.KeyDown(back));
    EXPECT_EQ(screen.Focused(), &grid);
    EXPECT_TRUE(screen.KeyDown(back));
    EXPECT_EQ(screen.Focused(), &party) << "past the switched-off box";
}

// Leaving a control runs its checks first; F2 opens the look-up of the focused box only.
TEST_F(EntryForm, LeavingAControlRunsItsChecksFirst) {
    party.SetFocus();
    grid.SetFocus();
    EXPECT_EQ(screen.Focused(), &party); // an empty party is refused

    int lookups = 0;
    party.OnLookup = [&] { ++lookups; };
    EXPECT_TRUE(screen.KeyDown({.key = Key::F2}));
    party.Type("Gurmeet Singh");
    grid.SetFocus();
    EXPECT_FALSE(screen.KeyDown({.key = Key::F2})) << "the grid has no look-up of the box";
    EXPECT_EQ(lookups, 1);
    grid.SetCurrent(1, 1);
    grid.Type("0");
    party.SetFocus();
    EXPECT_EQ(screen.Focused(), &grid);
    grid.Type("52");
    party.SetFocus();
    EXPECT_EQ(screen.Focused(), &party);
    EXPECT_EQ(grid.TextMatrix(1, 1), "52");
}

TEST_F(EntryForm, ViewIsToldOfChangesGridRedrawIsBatchedAndBoxesKeepTheirLimits) {
    heading.SetText("I-Form");
    heading.SetText("I-Form");
    EXPECT_EQ(view.changes["lblHeading"], 1);

    grid.SetRedraw(false);
    grid.SetRows(40);
    for (int row = 1; row < 40; ++row) grid.SetTextMatrix(row, 0, "Wheat");
    EXPECT_EQ(view.changes["Grid"], 0);
    grid.SetRedraw(true);
    EXPECT_EQ(view.changes["Grid"], 1);
    grid.SetTextMatrix(1, 1, "20");
    EXPECT_EQ(view.changes["Grid"], 2);

    party.MaxLength = 3;
    EXPECT_TRUE(party.Type("ਗੁਰਮੀਤ")); // cut by letters, not bytes
    EXPECT_EQ(party.Text(), "ਗੁਰ");
    party.NumericOnly = true;
    EXPECT_FALSE(party.Type("12a"));
    EXPECT_FALSE(party.Type("1.2.3")); // it would be read later as 1.2
    EXPECT_FALSE(party.Type("3-"));
    EXPECT_EQ(party.Text(), "ਗੁਰ");
}

TEST(ScreenLayout, DefaultIsOneControlARowUntilTheScreenLaysOutItsOwn) {
    Screen screen("frmRates", "Rates");
    auto& a = screen.Add<Label>("a");
    auto& b = screen.Add<Label>("b");
    ASSERT_EQ(screen.Layout().size(), 1u);
    EXPECT_EQ(screen.Layout()[0].rows[1].controls, std::vector<Control*>{&b});

    // Controls added while the screen lays them out do not fall back to the default.
    screen.AddRow({&a});
    screen.AddRow({&screen.Add<Label>("c"), &b});
    screen.BeginGroup("Rates", true);
    screen.AddRow({&screen.Add<Label>("d")});
    ASSERT_EQ(screen.Layout().size(), 2u);
    EXPECT_EQ(screen.Layout()[0].rows.size(), 2u);
    EXPECT_TRUE(screen.Layout()[1].sideBySide);
    EXPECT_THROW(screen.Add<Label>("a"), std::invalid_argument);
    Label stranger("x");
    EXPECT_THROW(screen.AddRow({&stranger}), std::invalid_argument);
}

} // namespace
