// Filling I-Forms from the J-Form lines pending for their buyer, through the desk's engine with
// the Kivra extension: the list of pending J-Forms a new I-Form opens with, the buyer's lines
// of the day picked when the party is chosen, and an older day of the market still pending
// stopping it. Pending lines are written as saved J-Forms and I-Forms leave them (J factor +1
// and -1).
#include "MandiCompany.h"

using namespace qx;
using test::Strings;

namespace {

const char* const kOlderPending =
    "Certain J-Forms are still pending before this Date (14/04/2024). You should make I-Forms "
    "of pending J-Forms before making I-Forms in this date.\r\nCan't continue";

class PickingTest : public test::MandiCompany {
protected:
    void SetUp() override {
        MandiCompany::SetUp();
        // An I-Form is of a market: a new one asks for it first.
        Db().ExecuteSql("UPDATE DOCBOXES SET REQUIRED=1 WHERE SERIESID=2 AND BOXNAME='MARKET'");
        Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (203, 'GOYAL MILLS', '')");
    }

    static Strings Lines(desk::DocumentScreen& screen) {
        Strings lines;
        for (int row = 1; row < screen.Grid().Rows(); ++row) {
            std::string line;
            for (const char* key : {"PRODUCT_ID", "QTY_PER_BOX", "QUANTITY", "NO_OF_BOXES", "RATE", "AMOUNT"})
                line += (line.empty() ? "" : " ") + Cell(screen, row, key);
            if (line.find_first_not_of(' ') != std::string::npos) lines.push_back(line);
        }
        return lines;
    }
};

// Bansal Traders bought wheat at Khanna on 15/04 at 2000 and at 2100; an I-Form took 4 of the
// 10 quintals at 2000 already. Doraha's forms are listed apart. Goyal Mills' 7 quintals at 2050
// were taken over at 2100: his wheat is settled, but not rate by rate.
TEST_F(PickingTest, TheChosenBuyerGetsHisPendingLinesOfThatDayFromTheList) {
    SavedForm(1, "JF", "2024-04-15", 1,
              {{1, 201, "10", "2000", 1}, {1, 201, "5", "2100", 1}, {2, 201, "3", "1900", 1},
               {1, 202, "2", "2000", 0}, {1, 203, "7", "2050", 1}});
    SavedForm(2, "IF", "2024-04-15", 1, {{1, 201, "4", "2000", -1}});
    SavedForm(3, "JF", "2024-04-15", 2, {{1, 201, "8", "2000", 1}});
    SavedForm(4, "IF", "2024-04-15", 1, {{1, 203, "7", "2100", -1}});

    auto& screen = NewIForm("KHANNA", {{"BANSAL TRADERS", "WHEAT"}});
    EXPECT_EQ(listed, (Strings{"Doc Date|Party|Item|Qty", "15/04/2024|BANSAL TRADERS|PADDY|3.00",
                               "15/04/2024|BANSAL TRADERS|WHEAT|11.00"}))
        << "Khanna's pending quantities by day, buyer and item; the firm's own and Doraha's apart";
    EXPECT_EQ(screen.TxpDocDate().Text(), "15/04/2024");
    EXPECT_EQ(screen.TxpCustomer().Text(), "BANSAL TRADERS");
    EXPECT_EQ(screen.Document().PartyID(), 201);
    // Without option 637 the item's lines of the day are one, at the highest rate.
    EXPECT_EQ(Lines(screen), Strings{"WHEAT 50.00 11.00 22 2,100.00 23,100.00"});
    EXPECT_EQ(Charges(screen), (Strings{"DAMI 2.5 577.50", "LABOUR 5.5 121.00", "LOADING 3 66.00",
                                        "STITCHING 1.5 33.00", "DHARMADA 0.1 23.10"}))
        << "wheat's I-Form rates";
    EXPECT_NE(screen.Focused(), &screen.TxpCustomer()) << "the cursor moved on past the party";
    EXPECT_TRUE(Summary(screen).empty()) << "an I-Form bears no levies";
    EXPECT_TRUE(Messages().empty()) << Messages().front();

    // With option 637 lines of different rates stay apart, in the list and on the form.
    frontend.QueueAnswer(kAnswerNo); // the filled form is not saved
    ASSERT_TRUE(app.CloseScreen(screen));
    app.DeskSession().SetOption(637, "Yes");
    auto& byRate = NewIForm("KHANNA", {{"BANSAL TRADERS", "WHEAT", "2,100.00"}});
    EXPECT_EQ(listed, (Strings{"Doc Date|Party|Item|Rate|Qty",
                               "15/04/2024|BANSAL TRADERS|PADDY|1,900.00|3.00",
                               "15/04/2024|BANSAL TRADERS|WHEAT|2,000.00|6.00",
                               "15/04/2024|BANSAL TRADERS|WHEAT|2,100.00|5.00",
                               "15/04/2024|GOYAL MILLS|WHEAT|2,050.00|7.00",
                               "15/04/2024|GOYAL MILLS|WHEAT|2,100.00|-7.00"}));
    EXPECT_EQ(Lines(byRate), (Strings{"WHEAT 50.00 6.00 12 2,000.00 12,000.00",
                                      "WHEAT 50.00 5.00 10 2,100.00 10,500.00"}));
}

// The market's forms are settled day by day: an I-Form of the 15th waits until the 14th of its
// market is picked; another market's day does not hold it up. The company is of an older
// version, without the pending J-Forms kept: the first form opened keeps them.
TEST_F(PickingTest, AnOlderPendingDayOfTheMarketStopsThePicking) {
    SavedForm(1, "JF", "2024-04-14", 1, {{1, 203, "2", "2000", 1}});
    SavedForm(2, "JF", "2024-04-15", 1, {{1, 201, "10", "2000", 1}});
    SavedForm(3, "JF", "2024-04-13", 2, {{1, 203, "9", "2000", 1}});
    Db().ExecuteSql("DROP TABLE JFORMPENDING");

    auto& screen = NewIForm("KHANNA");
    EXPECT_EQ(listed.size(), 3u) << "both days of Khanna are listed";
    ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "15/04/2024"));
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "bansal traders"));
    EXPECT_EQ(Messages(), Strings{kOlderPending});
    EXPECT_TRUE(Lines(screen).empty());

    // Once the 14th is taken over, the 15th is picked; Doraha's 13th is left to Doraha.
    SavedForm(4, "IF", "2024-04-14", 1, {{1, 203, "2", "2000", -1}});
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "goyal mills"));
    EXPECT_EQ(Messages(), Strings{"No Pending J-Form Items found for\r\nParty: GOYAL MILLS\r\n"
                                  "Date: 15/04/2024"});
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "bansal traders"));
    EXPECT_EQ(Lines(screen), Strings{"WHEAT 50.00 10.00 20 2,000.00 20,000.00"});

    // A saved I-Form keeps its lines whoever its party becomes; emptied, it is offered its
    // party's pending lines (its own taken back).
    screen.OpenDocument(4);
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "bansal traders"));
    EXPECT_EQ(Lines(screen), Strings{"WHEAT 50.00 2.00  2,000.00 "}) << "as it was saved";
    screen.Focus(screen.Grid());
    screen.Grid().SetCurrent(1, screen.Member("COL_QUANTITY"));
    ASSERT_TRUE(screen.KeyDown({.key = ui::Key::Delete, .ctrl = true}));
    frontend.ClearTranscript();
    frontend.QueueAnswer(kAnswerYes);
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "goyal mills"));
    EXPECT_EQ(Messages(), Strings{"Do you want to pick items from J-Form?"});
    EXPECT_EQ(Lines(screen), Strings{"WHEAT 50.00 2.00 4 2,000.00 4,000.00"});
}

// Where the I-Form has a batch column the list is by batch; the batches marked in it are
// picked, each a line of its own.
TEST_F(PickingTest, BatchesMarkedInTheListArePickedEachOnALine) {
    Db().ExecuteSql("INSERT INTO DOCCOLUMNS (SERIESID, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, "
                    "EDITABLE, FIELD) VALUES (2, 10, 'BATCH_NO', 'Lot', 800, '', 1, '')");
    SavedForm(1, "JF", "2024-04-15", 1,
              {{1, 201, "10", "2000", 1}, {1, 201, "5", "2100", 1}, {1, 201, "3", "2100", 1}});
    Db().ExecuteSql("UPDATE DOCDATA SET BATCHNO=CASE REFNO WHEN 1 THEN 'L1' WHEN 2 THEN 'O''NEIL' "
                    "ELSE 'L3' END");
    kivra::KeepPendingOf(Db(), *Date::ParseIso("2024-04-15"));

    auto& screen = NewIForm("KHANNA", {{"O'NEIL"}, {"L3"}});
    EXPECT_EQ(listed, (Strings{"Doc Date|Party|Item|Batch No|Rate|Qty",
                               "15/04/2024|BANSAL TRADERS|WHEAT|L1|2,000.00|10.00",
                               "15/04/2024|BANSAL TRADERS|WHEAT|L3|2,100.00|3.00",
                               "15/04/2024|BANSAL TRADERS|WHEAT|O'NEIL|2,100.00|5.00"}));
    EXPECT_EQ(Lines(screen), (Strings{"WHEAT 50.00 3.00 6 2,100.00 6,300.00",
                                      "WHEAT 50.00 5.00 10 2,100.00 10,500.00"}));
    EXPECT_EQ(Cell(screen, 1, "BATCH_NO") + " " + Cell(screen, 2, "BATCH_NO"), "L3 O'NEIL");
}

} // namespace
