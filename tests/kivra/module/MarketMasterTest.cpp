// The local mandi master, driven through its grid and keys as the user drives it.
#include "support/DeskFixture.h"
#include "support/RecordingDb.h"

#include "kivra/masters/frmMarketMaster.h"
#include "kivra/module/mKivraModule.h"

using namespace qx;
using kivra::frmMarketMaster;
using Strings = std::vector<std::string>;

namespace {

class MarketMasterTest : public test::DeskFixture {
protected:
    void SetUp() override { OpenWithModule(); }

    frmMarketMaster& Open() {
        app.ClickMenu("MarketMaster");
        auto screen = std::dynamic_pointer_cast<frmMarketMaster>(app.OpenScreens().back());
        EXPECT_TRUE(screen);
        return *screen;
    }
    ui::Grid& GridOf(frmMarketMaster& screen) { return screen.Get<ui::Grid>("Grid"); }

    // Types a market into the empty last row and leaves the row, as a user does.
    bool TypeMarket(ui::Grid& grid, const Strings& cells) {
        int row = grid.Rows() - 1;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (!grid.MoveTo(row, frmMarketMaster::kColName + static_cast<int>(i))) return false;
            grid.Type(cells[i]);
        }
        return grid.MoveTo(grid.Rows() - 1, frmMarketMaster::kColName);
    }

    Strings StoredMarkets() {
        return Rows("SELECT MARKETID, MARKETNAME, SERIES FROM MARKETMASTER ORDER BY MARKETID");
    }
};

// A table of an older module gets its series column, keeping its markets; a complete table is
// left alone.
TEST(MarketTable, OlderTableWithoutSeriesIsUpgradedOnceKeepingItsMarkets) {
    test::TempFolder folder;
    desk::Session session;
    session.Create(folder.Path() / "c.kdb", "C");
    auto& db = session.Database();
    db.ExecuteSql("CREATE TABLE MARKETMASTER ( MARKETID INT NOT NULL, MARKETNAME VARCHAR(60) NOT NULL, "
                  "STATION VARCHAR(30), STATE VARCHAR(30), REMARKS VARCHAR(80), CONSTRAINT "
                  "PK_MARKETMASTER PRIMARY KEY (MARKETID) )");
    db.ExecuteSql("INSERT INTO MARKETMASTER (MARKETID, MARKETNAME) VALUES (1, 'KHANNA'), (2, 'JAGRAON')");
    kivra::CheckMarketTable(db);
    EXPECT_EQ(db.LookupValue("MARKETMASTER", "COUNT(*)", "SERIES=''").AsLong(), 2);
    EXPECT_EQ(db.LookupValue("MARKETMASTER", "MARKETNAME", "MARKETID=2").AsText(), "JAGRAON");
    test::RecordingDb recording(db);
    kivra::CheckMarketTable(recording);
    EXPECT_TRUE(recording.executed.empty());
}

TEST_F(MarketMasterTest, MarketsTypedInAreSavedOnLeavingTheRowAndSurviveReopening) {
    auto& grid = GridOf(Open());
    ASSERT_TRUE(TypeMarket(grid, {"KHANNA", "KHANNA", "PUNJAB", "KHN", "Main yard"}));
    EXPECT_EQ(grid.TextMatrix(1, frmMarketMaster::kColSerial), "1") << "serial shown at once";
    EXPECT_EQ(grid.TextMatrix(1, frmMarketMaster::kColId), "1") << "first id in an empty table";
    ASSERT_TRUE(TypeMarket(grid, {"D'SOUZA MANDI", "", "", "DS"}));
    ASSERT_TRUE(TypeMarket(grid, {"ਖੰਨਾ", "ਖੰਨਾ", "ਪੰਜਾਬ", "ਖੰਨਾ"}));
    EXPECT_EQ(StoredMarkets(), (Strings{"1|KHANNA|KHN", "2|D'SOUZA MANDI|DS", "3|ਖੰਨਾ|ਖੰਨਾ"}));
    EXPECT_EQ(Db().LookupValue("MARKETMASTER", "REMARKS", "MARKETID=1").AsText(), "Main yard");

    app.CloseCompany();
    app.OpenCompany(path);
    auto& screen = Open();
    auto& again = GridOf(screen);
    ASSERT_EQ(again.Rows(), 5);
    // Listed by name; the empty row for a new market comes last.
    EXPECT_EQ(again.TextMatrix(1, frmMarketMaster::kColName), "D'SOUZA MANDI");
    EXPECT_EQ(again.TextMatrix(3, frmMarketMaster::kColName), "ਖੰਨਾ");
    EXPECT_EQ(again.TextMatrix(4, frmMarketMaster::kColName), "");

    // The list printed holds the saved markets only, without the hidden id.
    ASSERT_TRUE(again.MoveTo(4, frmMarketMaster::kColName));
    again.Type("RAIKOT");
    screen.KeyDown({ui::Key::F8});
    ASSERT_EQ(frontend.Printed().size(), 1u);
    const auto& [job, mode] = frontend.Printed().back();
    EXPECT_EQ(mode, PrintMode::Preview);
    EXPECT_EQ(job.columns.size(), 6u);
    ASSERT_EQ(job.rows.size(), 3u);
    EXPECT_EQ(job.rows[1].cells[1], "KHANNA");
    screen.KeyDown({ui::Key::F9});
    EXPECT_EQ(frontend.Printed().back().second, PrintMode::Print);
}

TEST_F(MarketMasterTest, DuplicateNameIsRefusedButAMarketKeepsItsOwnName) {
    auto& grid = GridOf(Open());
    ASSERT_TRUE(TypeMarket(grid, {"D'SOUZA"}));
    ASSERT_TRUE(TypeMarket(grid, {"JAGRAON"}));
    ASSERT_FALSE(TypeMarket(grid, {"D'SOUZA"}));
    EXPECT_EQ(Messages().back(), "This Market Name already exists.");
    EXPECT_EQ(frontend.Transcript().back().style, "W");
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.Col(), frmMarketMaster::kColName) << "the cursor stays in the cell";
    EXPECT_EQ(StoredMarkets().size(), 2u);

    // The refused row is emptied; then the first market is given its own name again.
    frontend.ClearTranscript();
    grid.Type("");
    ASSERT_TRUE(grid.MoveTo(1, frmMarketMaster::kColName));
    grid.Type("D'SOUZA");
    EXPECT_TRUE(grid.MoveTo(2, frmMarketMaster::kColName));
    EXPECT_TRUE(Messages().empty());

    // Another program saves markets while the user types one: the row is checked again as it
    // is saved, under the lock that writes it, and takes an id that is free then.
    const int row = grid.Rows() - 1;
    ASSERT_TRUE(grid.MoveTo(row, frmMarketMaster::kColName));
    grid.Type("KHANNA");
    ASSERT_TRUE(grid.MoveTo(row, frmMarketMaster::kColStation)) << "no KHANNA yet";
    desk::Session other;
    other.Open(path);
    other.Database().ExecuteSql(
        "INSERT INTO MARKETMASTER (MARKETID, MARKETNAME, SERIES) VALUES (3, 'KHANNA', 'KHN')");
    EXPECT_FALSE(grid.MoveTo(grid.Rows() - 1, frmMarketMaster::kColName));
    EXPECT_EQ(Messages(), Strings{"This Market Name already exists."});

    ASSERT_TRUE(grid.MoveTo(row, frmMarketMaster::kColName));
    grid.Type("DORAHA");
    ASSERT_TRUE(grid.MoveTo(row, frmMarketMaster::kColStation));
    other.Database().ExecuteSql(
        "INSERT INTO MARKETMASTER (MARKETID, MARKETNAME, SERIES) VALUES (4, 'SAMRALA', 'SML')");
    ASSERT_TRUE(grid.MoveTo(grid.Rows() - 1, frmMarketMaster::kColName));
    EXPECT_EQ(StoredMarkets(), (Strings{"1|D'SOUZA|", "2|JAGRAON|", "3|KHANNA|KHN",
                                        "4|SAMRALA|SML", "5|DORAHA|"}));
}

TEST_F(MarketMasterTest, DeletingAsksForSavedMarketsOnly) {
    auto& screen = Open();
    auto& grid = GridOf(screen);
    ASSERT_TRUE(TypeMarket(grid, {"DORAHA"}));
    ASSERT_TRUE(TypeMarket(grid, {"KHANNA"}));

    // The empty new row goes without a question and without a write.
    ASSERT_TRUE(grid.MoveTo(3, frmMarketMaster::kColName));
    EXPECT_TRUE(screen.KeyDown({ui::Key::F3}));
    EXPECT_TRUE(Messages().empty());
    EXPECT_EQ(grid.Rows(), 4) << "an empty row for a new market is always there";

    ASSERT_TRUE(grid.MoveTo(1, frmMarketMaster::kColName));
    frontend.QueueAnswer(kAnswerNo);
    screen.KeyDown({ui::Key::F3});
    EXPECT_EQ(Messages(), Strings{"Do you want to remove this row ?"});
    EXPECT_EQ(grid.RowColour(1), 0) << "colour restored after No";
    EXPECT_EQ(StoredMarkets().size(), 2u);

    frontend.QueueAnswer(kAnswerYes);
    screen.KeyDown({ui::Key::F3});
    EXPECT_EQ(StoredMarkets(), Strings{"2|KHANNA|"});
    EXPECT_EQ(grid.TextMatrix(1, frmMarketMaster::kColName), "KHANNA");
    EXPECT_EQ(grid.TextMatrix(1, frmMarketMaster::kColSerial), "1") << "serials follow the rows";
}

// A row left without a name is never saved; a series of six characters is refused; Esc saves
// the row being typed.
TEST_F(MarketMasterTest, EscKeepsATypedRowButNeverOneWithoutAName) {
    auto& screen = Open();
    auto& grid = GridOf(screen);
    ASSERT_TRUE(grid.MoveTo(1, frmMarketMaster::kColStation));
    grid.Type("KHANNA");
    ASSERT_TRUE(grid.MoveTo(2, frmMarketMaster::kColName));
    EXPECT_TRUE(StoredMarkets().empty());
    grid.Type("SAMRALA");
    ASSERT_TRUE(grid.MoveTo(2, frmMarketMaster::kColSeries));
    grid.Type("SAMRAL");
    EXPECT_FALSE(grid.MoveTo(2, frmMarketMaster::kColRemarks));
    EXPECT_EQ(Messages(), Strings{"Maximum 5 characters allowed in Series."});
    EXPECT_EQ(frontend.Transcript().back().style, "E");
    EXPECT_EQ(grid.Col(), frmMarketMaster::kColSeries);
    grid.Type("SMRLA");
    EXPECT_TRUE(screen.KeyDown({ui::Key::Escape}));
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_EQ(StoredMarkets(), Strings{"1|SAMRALA|SMRLA"});
}

} // namespace
