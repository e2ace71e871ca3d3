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
    void FocusChanged(Control&) override {}
    void CloseRequested() override {}
    std::map<std::string, int> changes;
};

constexpr int kNameCol = 2, kSeriesCol = 3;

// A market list edited in place, row by row.
class MarketsScreen : public Screen {
public:
    MarketsScreen() : Screen("frmMarkets", "Local Mandi Master") {}
    Grid& grid = Add<Grid>("Grid");
    Log log;

protected:
    void Load() override {
        grid.AddColumn("", 0);
        grid.AddColumn("Sr. No.", 600, Align::Centre);
        grid.AddColumn("Market Name", 2500);
        grid.AddColumn("Form Series", 800, Align::Centre);
        grid.Editable = grid.GrowsRows = true;
        grid.SetRows(2);
        grid.OnRowAdded = [this](int row) { log.push_back("added " + std::to_string(row)); };
    }
};

struct MarketList : testing::Test {
    void SetUp() override {
        screen.SetView(&view);
        screen.RunLoad();
    }
    std::pair<int, int> Cursor() const { return {grid.Row(), grid.Col()}; }
    MarketsScreen screen;
    RecordingView view;
    Grid& grid = screen.grid;
};

// Typing into the last row adds one fresh row; with no row to add, MoveNext stays in the
// last cell, which is still taken.
TEST_F(MarketList, TheLastRowGrowsTheGridByOneRow) {
    grid.SetCurrent(1, kNameCol);
    grid.Type("Khanna");
    grid.Type("Khanna Mandi");
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(std::count(screen.log.begin(), screen.log.end(), "added 1"), 1);

    grid.GrowsRows = false;
    grid.SetCurrent(2, kSeriesCol);
    grid.Type("SML");
    EXPECT_TRUE(grid.MoveNext());
    EXPECT_EQ(Cursor(), std::pair(2, kSeriesCol));
    EXPECT_EQ(grid.TextMatrix(2, kSeriesCol), "SML");
    EXPECT_EQ(grid.Rows(), 3);
}

// Enter passes a computed column by and Tab stops in it. A repeating column's empty cell
// proposes the one above: leaving it by Enter or Tab takes it as typed (and the last row grows
// as with typing), leaving it otherwise, or typing, does not.
TEST_F(MarketList, EnterPassesComputedCellsAndTakesTheLineAbove) {
    for (int col : {1, kSeriesCol}) grid.Column(col).computed = true; // Sr. No. and series
    grid.Column(kNameCol).repeats = true;
    grid.SetCurrent(1, kNameCol);
    grid.Type("Khanna");
    ASSERT_TRUE(grid.EnterNext());
    EXPECT_EQ(Cursor(), std::pair(2, kNameCol));
    EXPECT_EQ(grid.Proposal(2, kNameCol), "Khanna");
    EXPECT_EQ(grid.Proposal(2, kSeriesCol), "") << "only a repeating column proposes";
    ASSERT_TRUE(grid.Commit());
    EXPECT_EQ(grid.TextMatrix(2, kNameCol), "") << "the cursor has not moved on";
    ASSERT_TRUE(grid.MoveNext());
    EXPECT_EQ(Cursor(), std::pair(2, kSeriesCol));
    EXPECT_EQ(grid.TextMatrix(2, kNameCol), "Khanna");
    EXPECT_EQ(grid.Rows(), 4);

    grid.SetCurrent(3, kNameCol);
    grid.Type("Doraha");
    ASSERT_TRUE(grid.MoveTo(3, kSeriesCol));
    EXPECT_EQ(grid.TextMatrix(3, kNameCol), "Doraha");
    EXPECT_EQ(grid.Proposal(3, kNameCol), "") << "a cell that holds text proposes nothing";
}

TEST_F(MarketList, RowsCutOrRemovedTakeTheirCellsAndLeaveTheCursorInTheGrid) {
    grid.SetCurrent(1, kNameCol);
    EXPECT_FALSE(grid.MoveTo(2, kNameCol));
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

TEST(ButtonBar, ItemDefinitionsAndKeyCaptions) {
    ButtonBar bar("BtnBar1");
    bar.AddItem("Delete,F3: Delete,Delete");
    bar.AddItem("Period,F6: &Period", "Calendar");
    // Two items may name one key while only one of them is on.
    bar.AddItem("Search,F6: Search");
    bar.SetItemEnabled("Period", false);
    std::string clicked;
    bar.OnClick = [&](const std::string& key) { clicked = key; };
    EXPECT_TRUE(bar.PressKey(Key::F6));
    EXPECT_EQ(clicked, "Search");

    EXPECT_EQ(KeyOfCaption("&F12: Options"), Key::F12);
    EXPECT_EQ(KeyOfCaption("Recalculate: Dr/Cr"), Key::None);
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

// Shift+Tab walks back cell by cell, through the checks, and leaves the grid backwards only
// from its first cell.
TEST_F(EntryForm, ShiftTabWalksBackThroughTheGridsCells) {
    party.Type("Gurmeet Singh");
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

} // namespace
