// Mandi forms typed on the desk's own entry screen with the Kivra extension: the bags and
// weights of a line, the charge rates of the first item, and the levies summary.
#include "MandiCompany.h"

using namespace qx;
using test::Strings;

namespace {

class EntryTest : public test::MandiCompany {
protected:
    // The screen as a module's key presets it to a series.
    desk::DocumentScreen& OpenSeries(const std::string& code) {
        auto screen = app.Forms().CreateForm("Documents");
        screen->Properties().SetValue("DocSeriesCode", code);
        app.ShowForm(screen);
        return dynamic_cast<desk::DocumentScreen&>(*app.OpenScreens().back());
    }
    // A series made as series `from` is (its columns, boxes and charges), but of its own type,
    // tags, sub-series and voucher factor, its columns changed (statements on DOCCOLUMNS whose
    // condition the series ends), opened on the screen.
    desk::DocumentScreen& SeriesLike(int from, const std::string& type, const std::string& tags,
                                     const std::string& subSeries, int voucherFactor = 0,
                                     const Strings& columnChanges = {}) {
        const std::string id = std::to_string(++lastSeries);
        Db().ExecuteSql("INSERT INTO DOCCONFIG (SERIESID, SERIESCODE, SERIESNAME, SUBSERIESNAME, "
                        "DOCTYPE, DOCPROPERTIES, DOCVOUCHERFACTOR) VALUES (" +
                        id + ", 'S" + id + "', 'Forms', " + SqlQuote(subSeries) + ", " +
                        SqlQuote(type) + ", " + SqlQuote(tags) + ", " +
                        std::to_string(voucherFactor) + ")");
        for (const std::string table : {"DOCCOLUMNS", "DOCBOXES", "DOCCHARGES"})
            for (const std::string& sql : {"CREATE TEMP TABLE COPIED AS SELECT * FROM " + table +
                                               " WHERE SERIESID=" + std::to_string(from),
                                           "UPDATE COPIED SET SERIESID=" + id,
                                           "INSERT INTO " + table + " SELECT * FROM COPIED",
                                           std::string("DROP TABLE COPIED")})
                Db().ExecuteSql(sql);
        for (const std::string& change : columnChanges)
            Db().ExecuteSql(change + " AND SERIESID=" + id);
        return OpenSeries("S" + id);
    }
    int lastSeries = 10;
};

const Strings kBagColumns = {"NO_OF_BOXES",  "PCS",      "QUANTITY", "REV_BAGS2",
                             "ADD_LESS_KGS", "TOTAL_WT", "REV_BAGS", "AMOUNT"};

TEST_F(EntryTest, JFormLineKeepsItsBagsAndWeightTogether) {
    auto& screen = OpenMenu("JForms");
    EXPECT_EQ(Charges(screen), Strings{"LABOUR  "});
    // 10.50 quintals fill 21 bags of 50 kg exactly; the charges take wheat's J-Form labour.
    ASSERT_TRUE(TypeLine(screen, 1, JLine("wheat", "bansal traders", "50", "10.50", "2125")));
    EXPECT_EQ(Charges(screen), Strings{"LABOUR 6.22 130.62"});
    EXPECT_EQ(Line(screen, 1, kBagColumns),
              (Strings{"21", "", "10.50", "21.00", "", "10.50", "21.00", "22,312.50"}));

    // 10.40 quintals weighed as 21 bags: the bags bring 10 kg more.
    ASSERT_TRUE(TypeLine(screen, 2, JLine("wheat", "self", "50", "10.40")));
    EXPECT_EQ(Line(screen, 2, kBagColumns),
              (Strings{"20", "40", "10.40", "20.80", "", "10.40", "20.80", ""}));
    ASSERT_TRUE(TypeLine(screen, 2, {{"REV_BAGS2", "21"}, {"RATE", "2125"}}));
    EXPECT_EQ(Line(screen, 2, kBagColumns),
              (Strings{"20", "40", "10.40", "21.00", "10", "10.50", "21.00", "22,100.00"}));
    EXPECT_EQ(Cell(screen, 2, "CUSTOMER_ID"), "SELF");
    EXPECT_EQ(screen.Get<ui::TextBox>("txtGross").Text(), "44,412.50");

    // Bags weighed must fit the quantity: 26.10 quintals are 52.2 bags of 50 kg.
    ASSERT_TRUE(TypeLine(screen, 3, JLine("paddy", "bansal traders", "50", "26.10")));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_FALSE(TypeLine(screen, 3, {{"REV_BAGS2", "54"}}));
    EXPECT_EQ(Messages(), Strings{"Bags must be either 52 or 53"});
    EXPECT_EQ(frontend.Transcript()[0].style, "W");
    EXPECT_EQ(screen.Grid().Col(), screen.Member("COL_REV_BAGS2")) << "the cursor stays";
    screen.Grid().Type("52.5");
    EXPECT_TRUE(screen.Grid().Commit());
    EXPECT_EQ(Line(screen, 3, {"REV_BAGS2", "ADD_LESS_KGS"}), (Strings{"52.50", ""}))
        << "fractional bags weighed leave the kilograms alone";

    // Counted exactly: 10 quintals fill 26 bags of 37.5 kg with 25 kg left; 9.20 quintals fill
    // 23 bags of 40 kg exactly, and 23 or 24 bags may be weighed.
    ASSERT_TRUE(TypeLine(screen, 4, JLine("paddy", "bansal traders", "37.5", "10")));
    EXPECT_EQ(Line(screen, 4, {"NO_OF_BOXES", "PCS", "REV_BAGS"}), (Strings{"26", "25", "26.67"}));
    ASSERT_TRUE(TypeLine(screen, 5, JLine("wheat", "bansal traders", "40", "9.20")));
    ASSERT_TRUE(TypeLine(screen, 5, {{"REV_BAGS2", "24"}}));
    EXPECT_EQ(Line(screen, 5, {"NO_OF_BOXES", "PCS", "ADD_LESS_KGS"}), (Strings{"23", "", ""}));
    EXPECT_EQ(Messages().size(), 1u);
    EXPECT_TRUE(Charges(screen)[0].starts_with("LABOUR 6.22 ")) << "paddy on later lines";
}

// The mode of a series follows its type, tags and sub-series in any letter case, the I-Form's tag
// before the J-Form's, and the first line's item fills the charge rates of that mode (a key in
// small letters only by a purchase); an outside purchase and a sale of a "Local" sub-series
// bear no levies.
TEST_F(EntryTest, TheSeriesModeFollowsTypeTagsAndSubSeriesInAnyCase) {
    Db().ExecuteSql("INSERT INTO DOCCHARGES (SERIESID, POSITION, CHARGEKEY, CAPTION, BASIS) VALUES "
                    "(1, 2, 'labour', 'Labour', 'B'), (4, 2, 'labour', 'Labour', 'B'), "
                    "(4, 3, 'DAMI', 'Dami', 'P'), (4, 4, 'MARKET_FEE', 'M. Fee', 'P'), "
                    "(4, 5, 'FREIGHT', 'Freight', 'F')");
    auto& both = SeriesLike(1, "Sale", "*jform**IFORM*", "");
    ASSERT_TRUE(TypeLine(both, 1, JLine("wheat", "bansal traders", "50", "10.50", "2125")));
    EXPECT_EQ(Charges(both), (Strings{"LABOUR 5.5 115.50", "labour  "})) << "I-Form's rates";
    EXPECT_TRUE(Summary(both).empty());
    auto& firstLineEmpty = SeriesLike(1, "J-Form", "*JForm*", "");
    ASSERT_TRUE(TypeLine(firstLineEmpty, 1, {{"CUSTOMER_ID", "bansal traders"}}));
    ASSERT_TRUE(TypeLine(firstLineEmpty, 1, JLine("wheat", "bansal traders", "50", "10.50")));
    EXPECT_EQ(Charges(firstLineEmpty), (Strings{"LABOUR  ", "labour  "}))
        << "a first line left without an item settles the rates";

    const Cells wheat = {
        {"PRODUCT_ID", "wheat"}, {"NO_OF_BOXES", "10"}, {"QUANTITY", "5"}, {"RATE", "2000"}};
    auto& outside = SeriesLike(4, "purchase", "", "Outside");
    ASSERT_TRUE(TypeLine(outside, 1, wheat));
    EXPECT_EQ(Charges(outside), (Strings{"LABOUR 4 40.00", "labour 4 40.00", "DAMI 2 200.00",
                                         "MARKET_FEE 2 200.00", "FREIGHT  "}));
    EXPECT_TRUE(Summary(outside).empty());
    auto& local = SeriesLike(3, "Purchase", "", "LOCAL Mandi");
    ASSERT_TRUE(TypeLine(local, 1, wheat));
    EXPECT_FALSE(Summary(local).empty());
    auto& sale = SeriesLike(3, "Sale", "", "Local");
    ASSERT_TRUE(TypeLine(sale, 1, wheat));
    EXPECT_TRUE(Summary(sale).empty());
}

// An item whose accounts a series of the tag AutoPostingKivra (in that case) that posts a voucher
// has not set up opens their set-up; once they are set up, it is not offered again.
TEST_F(EntryTest, AnItemWithoutAccountsForTheSeriesOpensTheirSetUp) {
    Strings opened;
    auto record = [&](ui::Screen& screen) {
        opened.push_back(screen.Name() + " " + screen.Get<ui::Label>("lblItem").Text());
    };
    frontend.QueueModal(record);
    const Cells wheat = {{"PRODUCT_ID", "wheat"}, {"QUANTITY", "5"}, {"RATE", "2000"}};
    EXPECT_TRUE(TypeLine(SeriesLike(4, "Purchase", "*autopostingkivra*", "Outside", -1), 1, wheat));
    EXPECT_TRUE(TypeLine(SeriesLike(4, "Purchase", "*AutoPostingKivra*", "Outside", 0), 1, wheat));
    EXPECT_TRUE(opened.empty());
    auto& screen = SeriesLike(4, "Purchase", "*AutoPostingKivra*", "Outside", -1);
    EXPECT_TRUE(TypeLine(screen, 1, wheat));
    EXPECT_EQ(opened, Strings{"frmDocAutoPostingItem WHEAT"});

    Db().ExecuteSql("INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO) VALUES (" +
                    std::to_string(lastSeries) + ", 1)");
    frontend.QueueModal(record);
    EXPECT_TRUE(TypeLine(screen, 2, wheat));
    EXPECT_EQ(opened.size(), 1u);
    frontend.DropModals();
}

TEST_F(EntryTest, AnIFormSeriesWithoutAWeightOrRateColumnKeepsTheAmountItHas) {
    const Cells line = {
        {"PRODUCT_ID", "wheat"}, {"QTY_PER_BOX", "50"}, {"QUANTITY", "10"}, {"ADD_LESS_KGS", "20"}};
    // Without a total weight the line is valued as the host values any line.
    auto& byQuantity = SeriesLike(2, "I-Form", "*IForm*", "", 0,
                                  {"DELETE FROM DOCCOLUMNS WHERE COLKEY='TOTAL_WT'"});
    ASSERT_TRUE(TypeLine(byQuantity, 1, line));
    ASSERT_TRUE(TypeLine(byQuantity, 1, {{"RATE", "2000"}}));
    EXPECT_EQ(Cell(byQuantity, 1, "AMOUNT"), "20,000.00");

    // Without a rate the amount is the one typed.
    auto& typed = SeriesLike(2, "I-Form", "*IForm*", "", 0,
                             {"DELETE FROM DOCCOLUMNS WHERE COLKEY='RATE'",
                              "UPDATE DOCCOLUMNS SET EDITABLE=1 WHERE COLKEY='AMOUNT'"});
    ASSERT_TRUE(TypeLine(typed, 1, line));
    ASSERT_TRUE(TypeLine(typed, 1, {{"AMOUNT", "20400"}}));
    EXPECT_EQ(Line(typed, 1, {"TOTAL_WT", "AMOUNT"}), (Strings{"10.20", "20,400.00"}));
}

TEST_F(EntryTest, TheLeviesOfTheAgentsOwnPurchasesShowUntilGst) {
    auto& screen = OpenMenu("JForms");
    ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "10/04/2017"));
    ASSERT_TRUE(TypeLine(screen, 1, JLine("wheat", "bansal traders", "50", "5", "2000")));
    EXPECT_TRUE(Summary(screen).empty()) << "nothing bought for the agent's own stock";

    ASSERT_TRUE(TypeLine(screen, 2, JLine("wheat", "self", "50", "10", "2000")));
    // Wheat: market fee 2, R.D.F. 3, cancer fund 0.5, P.I.D.F. 1 and, before GST, purchase
    // tax 4 on the value with its P.I.D.F.
    EXPECT_EQ(Summary(screen),
              (Strings{"Tax Type|Rate %|Charged on|Tax Amount", "M.Fee|2|20,000.00|400.00",
                       "R.D.F.|3|20,000.00|600.00", "Cancer Fund|0.5|20,000.00|100.00",
                       "P.I.D.F.|1|20,000.00|200.00", "Purchase Tax|4|20,200.00|808.00"}));

    // The next form shows nothing of this one's.
    frontend.QueueAnswer(kAnswerNo);
    ASSERT_TRUE(Press(screen, ui::Key::F5));
    EXPECT_TRUE(Summary(screen).empty());
    ASSERT_TRUE(TypeLine(screen, 1, {{"PRODUCT_ID", "paddy"}}));
    EXPECT_EQ(Charges(screen), Strings{"LABOUR 7.5 "}) << "the first item's rates taken again";
    frontend.ClearTranscript();

    // A local purchase bears them too; the date decides, and the summary follows it at once.
    auto& local = OpenMenu("PurchaseLocal");
    ASSERT_TRUE(TypeBox(local, local.TxpDocDate(), "30/06/2017"));
    ASSERT_TRUE(TypeLine(
        local, 1,
        {{"PRODUCT_ID", "wheat"}, {"QTY_PER_BOX", "50"}, {"QUANTITY", "5"}, {"RATE", "2000"}}));
    const Strings beforeGst = {"Tax Type|Rate %|Charged on|Tax Amount",
                               "M.Fee|2|10,000.00|200.00",
                               "R.D.F.|3|10,000.00|300.00",
                               "Cancer Fund|0.5|10,000.00|50.00",
                               "P.I.D.F.|1|10,000.00|100.00",
                               "Purchase Tax|4|10,100.00|404.00"};
    EXPECT_EQ(Summary(local), beforeGst);
    ASSERT_TRUE(TypeBox(local, local.TxpDocDate(), "01/07/2017"));
    EXPECT_EQ(Summary(local), Strings(beforeGst.begin(), beforeGst.end() - 1));
    ASSERT_TRUE(TypeBox(local, local.TxpDocDate(), "30/06/2017"));
    EXPECT_EQ(Summary(local), beforeGst);

    // An outside purchase bears none (TheSeriesModeFollowsTypeTagsAndSubSeriesInAnyCase).
    EXPECT_TRUE(Messages().empty()) << Messages().front();
}

} // namespace
