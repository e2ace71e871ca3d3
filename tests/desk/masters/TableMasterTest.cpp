// The grid master over a table of the test's own: the kinds of column no desk master has yet,
// and a record whose companion write fails.
#include "MastersFixture.h"

using namespace qx;
using Strings = std::vector<std::string>;

namespace {

class TableMasterTest : public test::MastersFixture {
protected:
    void SetUp() override {
        MastersFixture::SetUp();
        Db().ExecuteSql(
            "CREATE TABLE BROKERS (BROKERNO INTEGER NOT NULL PRIMARY KEY, BROKERNAME VARCHAR(40), "
            "ACTIVE INTEGER DEFAULT 0)");
        Db().ExecuteSql("CREATE TABLE BROKERNOTES (BROKERNO INTEGER, NOTE VARCHAR(40))");
    }

    // Every broker gets a note written with him; the note of a broker named NO NOTES fails
    // after the broker's own row is written.
    desk::TableMaster& OpenBrokers() {
        desk::MasterDefinition brokers{
            .key = "Brokers",
            .title = "Brokers",
            .table = "BROKERS",
            .noun = "broker",
            .keyColumn = {.field = "BROKERNO",
                          .caption = "Code",
                          .kind = desk::ColumnKind::WholeNumber},
            .nameColumn = {.field = "BROKERNAME", .caption = "Broker", .maxLength = 40},
            .columns = {{.field = "ACTIVE", .caption = "Active", .kind = desk::ColumnKind::YesNo}},
            .afterSave = [](CompanyDb& db, const desk::SavedRecord& broker) {
                if (broker.name == "NO NOTES")
                    throw DbError("the notes are locked");
                db.ExecuteSql("INSERT INTO BROKERNOTES (BROKERNO, NOTE) VALUES (" +
                              std::to_string(broker.code) + ", 'new')");
            }};
        auto screen = std::make_shared<desk::TableMaster>(app, std::move(brokers));
        app.ShowForm(screen);
        return *screen;
    }
};

TEST_F(TableMasterTest, YesNoColumnTakesYesOrNoAndShowsWhatIsStored) {
    auto& brokers = OpenBrokers();
    ASSERT_TRUE(TypeRow(brokers, {{"BROKERNAME", "mehta"}, {"ACTIVE", "y"}}));
    EXPECT_EQ(Cell(brokers, 1, "ACTIVE"), "Yes");
    EXPECT_FALSE(TypeCell(brokers, 2, "ACTIVE", "maybe"));
    EXPECT_EQ(TakeWarning(), "Active takes Yes or No.");
    GridOf(brokers).Type("NO");
    ASSERT_TRUE(TypeCell(brokers, 2, "BROKERNAME", "sharma"));
    ASSERT_TRUE(app.CloseScreen(brokers));
    EXPECT_EQ(Rows("SELECT BROKERNO, BROKERNAME, ACTIVE FROM BROKERS ORDER BY BROKERNO"),
              (Strings{"1|MEHTA|1", "2|SHARMA|0"}));

    auto& again = OpenBrokers();
    EXPECT_EQ(Cell(again, 1, "ACTIVE"), "Yes");
    EXPECT_EQ(Cell(again, 2, "ACTIVE"), "No");
}

TEST_F(TableMasterTest, ARecordIsStoredWholeOrNotAtAllAndItsNameCheckedAsItIsWritten) {
    auto& brokers = OpenBrokers();
    EXPECT_FALSE(TypeRow(brokers, {{"BROKERNAME", "no notes"}}));
    ASSERT_EQ(frontend.Transcript().size(), 1u);
    EXPECT_EQ(frontend.Transcript()[0].style, "E");
    EXPECT_EQ(frontend.Transcript()[0].prompt, "the notes are locked");
    EXPECT_TRUE(Rows("SELECT BROKERNO FROM BROKERS").empty()) << "all or nothing";
    EXPECT_EQ(Cell(brokers, 1, "BROKERNO"), "");

    frontend.ClearTranscript();
    ASSERT_TRUE(TypeCell(brokers, 1, "BROKERNAME", "patel"));
    ASSERT_TRUE(GridOf(brokers).MoveTo(2, brokers.ColumnOf("BROKERNAME")));
    EXPECT_EQ(Rows("SELECT B.BROKERNO, BROKERNAME, NOTE FROM BROKERS B JOIN BROKERNOTES N ON "
                   "B.BROKERNO=N.BROKERNO"),
              Strings{"1|PATEL|new"});
    EXPECT_EQ(Cell(brokers, 1, "BROKERNO"), "1");

    // Another program saves a broker of the same name while the user types one: the name is
    // checked again as the row is saved, under the lock that writes it.
    ASSERT_TRUE(TypeCell(brokers, 2, "BROKERNAME", "mehta"));
    desk::Session other;
    other.Open(path);
    other.Database().ExecuteSql("INSERT INTO BROKERS (BROKERNO, BROKERNAME) VALUES (2, 'MEHTA')");
    EXPECT_FALSE(GridOf(brokers).MoveTo(3, brokers.ColumnOf("BROKERNAME")));
    EXPECT_EQ(TakeWarning(), "MEHTA already exists.");
    EXPECT_EQ(Rows("SELECT BROKERNO, BROKERNAME FROM BROKERS"), (Strings{"1|PATEL", "2|MEHTA"}));
    EXPECT_EQ(Cell(brokers, 2, "BROKERNO"), "") << "the row stays new, as typed";
}

} // namespace
