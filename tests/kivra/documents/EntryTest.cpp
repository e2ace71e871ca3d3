// A mandi form while it is typed: the series mode, the charge rates filled from the first
// line's item, the item's account set-up, each line's bags and weights, and the summary.
#include "KivraDocFixture.h"

using namespace qx;

namespace {

class EntryTest : public test::KivraDocFixture {
protected:
    void SetUp() override { Open(); }

    // The user types an item code into a line and moves on.
    void TypeItem(int row, const std::string& code) {
        auto& grid = doc->Grid();
        grid.SetCurrent(row, doc->Col("COL_STK_CODE"));
        grid.Type(code);
        grid.MoveNext();
    }

    // Charges grid rows: key and the rate the host set.
    void Charges(const std::vector<std::string>& keys) {
        auto& charges = doc->GridTot2();
        charges.SetRows(static_cast<int>(keys.size()) + 1);
        for (int row = 1; row < charges.Rows(); ++row) {
            charges.SetTextMatrix(row, 17, keys[row - 1]);
            charges.SetTextMatrix(row, 3, "9");
        }
    }
    std::vector<std::string> ChargeRates() const {
        std::vector<std::string> rates;
        for (int row = 1; row < doc->GridTot2().Rows(); ++row)
            rates.push_back(doc->GridTot2().TextMatrix(row, 3));
        return rates;
    }

    std::string Recalc(int row, const std::map<std::string, std::string>& cells,
                       const std::string& shown) {
        Line(row, cells);
        doc->RecalcGridRow(row);
        return doc->Get(row, shown);
    }
};

TEST_F(EntryTest, BindsToTheDocumentAndLetsGo) {
    EXPECT_EQ(doc->Listeners(), 1u);
    kivra->Terminate();
    EXPECT_EQ(doc->Listeners(), 0u);
}

TEST_F(EntryTest, SeriesModeFollowsTypeTagsAndSubSeries) {
    struct Case {
        const char* docType;
        const char* properties;
        const char* subSeries;
        bool jForm, iForm, purchase, local;
    };
    const Case cases[] = {
        {"Sale", "*JForm*", "", true, false, false, false},
        {"Sale", "*jform**IFORM*", "", false, true, false, false},
        {"Sale", "", "Local", false, false, false, false},
        {"purchase", "*JForm**IForm*", "Outside", false, false, true, false},
        {"Purchase", "", "LOCAL Mandi", false, false, true, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.docType) + " " + c.properties + " " + c.subSeries);
        SelectSeries(c.docType, c.properties, c.subSeries);
        const auto& mode = kivra->Mode();
        EXPECT_EQ(mode.jForm, c.jForm);
        EXPECT_EQ(mode.iForm, c.iForm);
        EXPECT_EQ(mode.purchase, c.purchase);
        EXPECT_EQ(mode.localPurchase, c.local);
        EXPECT_EQ(doc->ShowGridinfo(), c.jForm || c.local);
    }
}

// A new document loading them again, and a saved one keeping its own, are worked through the
// entry screen in integration/EntryTest and integration/SaveTest.
TEST_F(EntryTest, TheFirstItemFillsTheRatesOfTheSeriesModeOnce) {
    struct Case {
        const char *docType, *properties, *subSeries;
        std::vector<std::string> rates;
    };
    // LABOUR in small letters is filled only by the general look-up.
    for (const Case& c :
         std::vector<Case>{{"Sale", "*JForm*", "", {"11", "9", "9", "9", "9", "9"}},
                           {"Sale", "*IForm*", "", {"12", "9", "14", "16", "9", "9"}},
                           {"Purchase", "", "Outside", {"13", "13", "15", "9", "1.5", "9"}}}) {
        Charges({"LABOUR", "labour", "DAMI", "DHARMADA", "MARKET_FEE", "FREIGHT"});
        SelectSeries(c.docType, c.properties, c.subSeries);
        TypeItem(1, "1");
        EXPECT_EQ(ChargeRates(), c.rates) << c.properties << c.subSeries;
    }

    Charges({"LABOUR"});
    SelectSeries("Sale", "*JForm*");
    TypeItem(1, "");
    TypeItem(1, "1");
    EXPECT_EQ(ChargeRates()[0], "9") << "a first line left without an item settles the rates";
}

TEST_F(EntryTest, ItemWithoutAccountsForTheSeriesOpensTheirSetUp) {
    doc->seriesInfo.SetValue("SeriesID", 5);
    Db().ExecuteSql("INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO) VALUES (6, 1)");
    auto rows = Db().OpenRecordset("SELECT * FROM STKMASTER WHERE QMCD=1");
    PropertyBag wheat;
    for (int i = 0; i < rows->FieldCount(); ++i) wheat.SetValue(rows->FieldName(i), rows->Field(i));

    std::vector<std::string> opened;
    auto chooseItem = [&](bool flag, int codeSale, int voucherFactor,
                          const std::string& properties) {
        doc->seriesInfo.SetValue("DocCodeSale", codeSale);
        doc->seriesInfo.SetValue("DocVoucherFactor", voucherFactor);
        doc->seriesInfo.SetValue("DocProperties", properties);
        if (!frontend.ModalPending())
            frontend.QueueModal([&](ui::Screen& screen) {
                opened.push_back(screen.Name() + " " + screen.Get<ui::Label>("lblItem").Text());
            });
        doc->Raise([&](DocumentEvents& e) { e.FillStkInfo(1, flag, wheat); });
        return opened.size();
    };
    EXPECT_EQ(chooseItem(false, 0, 1, "*JForm**AutoPostingKivra*"), 1u);
    EXPECT_EQ(opened[0], "frmDocAutoPostingItem WHEAT");
    EXPECT_EQ(chooseItem(true, 0, 1, "*AutoPostingKivra*"), 1u);
    EXPECT_EQ(chooseItem(false, 1, 1, "*AutoPostingKivra*"), 1u);
    EXPECT_EQ(chooseItem(false, 0, 0, "*AutoPostingKivra*"), 1u);
    EXPECT_EQ(chooseItem(false, 0, -1, "*autopostingkivra*"), 1u);
    EXPECT_EQ(chooseItem(false, 0, -1, "*AutoPostingKivra*"), 2u);

    Db().ExecuteSql("INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO) VALUES (5, 1)");
    EXPECT_EQ(chooseItem(false, 0, 1, "*AutoPostingKivra*"), 2u);
}

// The bags and weights of whole lines are worked through the entry screen in
// integration/EntryTest; here, what the screen cannot type.
TEST_F(EntryTest, FractionalBagsWeighedOrNoBagWeightLeaveTheLineAlone) {
    SelectSeries("Sale", "*JForm*");
    Line(1, {{"COL_QTY_PER_BOX", "50"}});
    EXPECT_EQ(Recalc(1, {{"COL_QUANTITY", "10.30"}, {"REV_BAGS2", "20.6"}}, "COL_NO_OF_BOXES"),
              "20");
    EXPECT_EQ(doc->Get(1, "COL_PCS"), "30");
    EXPECT_EQ(doc->Get(1, "ADD_LESS_KGS"), "") << "fractional bags weighed leave add/less alone";

    // Only the bags weighed are checked against the quantity.
    auto& grid = doc->Grid();
    grid.SetCurrent(1, doc->Col("REV_BAGS"));
    grid.Type("54");
    EXPECT_TRUE(grid.MoveNext());
    EXPECT_TRUE(Messages().empty());

    EXPECT_EQ(Recalc(1, {{"COL_QTY_PER_BOX", "0"}}, "REV_BAGS"), "") << "no bag weight";
}

// The levies of a J-Form's SELF lines are worked through the entry screen in
// integration/EntryTest; other forms leave the host's own summary as it is.
TEST_F(EntryTest, OtherFormsLeaveTheSummaryAlone) {
    auto& summary = doc->GridInfo();
    summary.AddColumn("Host's own", 1000);
    summary.SetRows(2);
    summary.SetTextMatrix(1, 0, "kept");
    for (const auto& [docType, properties, subSeries] :
         {std::tuple{"Sale", "*IForm*", ""}, {"Purchase", "", "Outside"}, {"Sale", "", ""}}) {
        SelectSeries(docType, properties, subSeries);
        Line(1, {{"COL_STK_CODE", "1"}, {"COL_CUSTOMER_ID", "SELF"}, {"COL_AMOUNT", "10,000.00"}});
        doc->Raise([](DocumentEvents& e) { e.UpdateTotals2(); });
        EXPECT_EQ(summary.Cols(), 1) << docType << properties << subSeries;
        EXPECT_EQ(summary.TextMatrix(1, 0), "kept");
    }
}

} // namespace
