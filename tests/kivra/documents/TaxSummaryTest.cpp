// The levies summary under the item grid: what the agent's own purchases on a J-Form, or a
// local purchase, bear in market fee, R.D.F., cancer fund, P.I.D.F. and, before GST, purchase
// tax.
#include "KivraDocFixture.h"

using namespace qx;

namespace {

using SummaryRows = std::vector<std::vector<std::string>>;

class TaxSummaryTest : public test::KivraDocFixture {
protected:
    void SetUp() override { Open(); }

    SummaryRows Summary() {
        doc->Raise([](DocumentEvents& e) { e.UpdateTotals2(); });
        const auto& grid = doc->GridInfo();
        SummaryRows rows;
        for (int row = 0; row < grid.Rows(); ++row) {
            auto& cells = rows.emplace_back();
            for (int col = 0; col < grid.Cols(); ++col) cells.push_back(grid.TextMatrix(row, col));
        }
        return rows;
    }
};

// Item 1: market fee 1.5, R.D.F. 2, cancer fund 0.5, P.I.D.F. 1, purchase tax 4.
const SummaryRows kOnTenThousand = {
    {"Tax Type", "Rate %", "Charged on", "Tax Amount"},
    {"M.Fee", "1.5", "10,000.00", "150.00"},
    {"R.D.F.", "2", "10,000.00", "200.00"},
    {"Cancer Fund", "0.5", "10,000.00", "50.00"},
    {"P.I.D.F.", "1", "10,000.00", "100.00"},
    {"Purchase Tax", "4", "10,100.00", "404.00"},
};

TEST_F(TaxSummaryTest, JFormBearsTheLeviesOfItsSelfLinesOnly) {
    SelectSeries("Sale", "*JForm*");
    Line(1, {{"COL_STK_CODE", "1"}, {"COL_CUSTOMER_ID", "SELF"}, {"COL_AMOUNT", "10,000.00"}});
    Line(2, {{"COL_STK_CODE", "1"}, {"COL_CUSTOMER_ID", "RAM LAL"}, {"COL_AMOUNT", "5,000.00"}});
    Line(3, {{"COL_CUSTOMER_ID", "SELF"}, {"COL_AMOUNT", "999"}});
    Line(4, {{"COL_STK_CODE", "1"}, {"COL_CUSTOMER_ID", "Self"}, {"COL_AMOUNT", "999"}});
    doc->PicGridInfo().SetVisible(false);
    EXPECT_EQ(Summary(), kOnTenThousand);
    EXPECT_TRUE(doc->ShowGridinfo());
    EXPECT_TRUE(doc->PicGridInfo().Visible());

    Line(1, {{"COL_CUSTOMER_ID", "SHAM"}});
    Summary();
    EXPECT_FALSE(doc->ShowGridinfo());
    EXPECT_FALSE(doc->PicGridInfo().Visible());
}

// Purchase tax ending with GST is worked through the entry screen in integration/EntryTest.
TEST_F(TaxSummaryTest, OtherFormsLeaveTheSummaryAlone) {
    auto& summary = doc->GridInfo();
    summary.AddColumn("Host's own", 1000);
    summary.SetRows(2);
    summary.SetTextMatrix(1, 0, "kept");
    for (const auto& [docType, properties, subSeries] :
         {std::tuple{"Sale", "*IForm*", ""}, {"Purchase", "", "Outside"}, {"Sale", "", ""}}) {
        SelectSeries(docType, properties, subSeries);
        Line(1, {{"COL_STK_CODE", "1"}, {"COL_CUSTOMER_ID", "SELF"}, {"COL_AMOUNT", "10,000.00"}});
        EXPECT_EQ(Summary(), (SummaryRows{{"Host's own"}, {"kept"}}))
            << docType << properties << subSeries;
    }
}

} // namespace
