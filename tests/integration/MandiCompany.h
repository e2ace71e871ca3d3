#pragma once
// A Punjab commission agent's company as he would set it up: two mandis, wheat and paddy with
// their charge rates, farmers and buyers (SELF among them), and the four mandi series on the
// desk's own document engine, with the Kivra module plugged in and named as the documents'
// extension. Documents are typed through the real entry screen.

#include "support/BooksInOrder.h"
#include "support/DocumentTyping.h"
#include "support/DeskFixture.h"

#include "desk/core/SelectItemScreen.h"
#include "desk/documents/DocumentScreen.h"
#include "desk/documents/HostDocuments.h"
#include "kivra/documents/PendingJForms.h"
#include "kivra/module/mKivraModule.h"

#include <string>
#include <tuple>
#include <utility>
#include <vector>

using qx::test::Box;
using qx::test::Cell;
using qx::test::Cells;
using qx::test::TypeBox;
using qx::test::TypeLine;

namespace qx::test {

using Strings = std::vector<std::string>;

class MandiCompany : public DeskFixture {
protected:
    void SetUp() override {
        desk::RegisterHostDocuments(app);
        OpenWithModule("*KivraMenu*", {{676, "Yes"}}); // the firm works in two mandis
        app.DeskSession().SetFirmSetting("DocExtensions", "ckivradoc");
        kivra::CheckMarketTable(Db());
        kivra::CheckKivraFields(Db());
        // The rate columns the item charge-rates screen makes sure of.
        Db().AddFields("STKMASTER", "Decimal(12,4)",
                       {"qLabourJF", "qLabour", "qDamiIF", "qDami", "qDharamIF", "qLoadingIF",
                        "qLoading", "qStitchIF", "qStitch", "qDamping", "qCommission"});
        Db().AddFields("STKMASTER", "int", {"qVATRateCode"});
        MakeCompany();
    }

    // The firm's masters and series.
    virtual void MakeCompany() {
        for (const char* sql : kCompany)
            Db().ExecuteSql(sql);
    }

    // Whatever a test did, the books it leaves hold.
    void TearDown() override {
        if (!faultsPlanted)
            ExpectBooksInOrder(app);
    }
    bool faultsPlanted = false; // a test that plants faults in the books says so

    // The screen as a menu key of the module opens it.
    desk::DocumentScreen& OpenMenu(const std::string& key) {
        app.ClickMenu(key);
        return dynamic_cast<desk::DocumentScreen&>(*app.OpenScreens().back());
    }

    // The market box: F2 lists the mandis, the user picks one.
    void ChooseMarket(desk::DocumentScreen& screen, const std::string& market) {
        ChooseInNextList(market);
        screen.Focus(Box(screen, "MARKET"));
        screen.KeyDown({.key = ui::Key::F2});
    }
    // The header of a form: date, farmer, mandi, book and form number.
    void TypeHeader(desk::DocumentScreen& screen, const std::string& date, const std::string& party,
                    const std::string& market, const std::string& book, const std::string& form) {
        ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), date));
        ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), party));
        ChooseMarket(screen, market);
        ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_BOOK_NO"), book));
        ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), form));
    }

    // A J-Form line: the item, its buyer, the bag weight, the quantity and, if given, the rate.
    static Cells JLine(const std::string& item, const std::string& buyer, const std::string& kg,
                       const std::string& quantity, const std::string& rate = "") {
        Cells cells{{"PRODUCT_ID", item},
                    {"CUSTOMER_ID", buyer},
                    {"QTY_PER_BOX", kg},
                    {"QUANTITY", quantity}};
        if (!rate.empty())
            cells.emplace_back("RATE", rate);
        return cells;
    }

    // Form 12 of book 7 at Khanna: Gurmeet Singh's wheat sold to Bansal Traders, in bags of
    // 50 kg: 10.50 quintals are 21 bags.
    desk::DocumentScreen& TypeForm12(const std::string& quantity = "10.50") {
        auto& screen = OpenMenu("JForms");
        TypeHeader(screen, "15/04/2024", "gurmeet singh", "KHANNA", "7", "12");
        EXPECT_TRUE(TypeLine(screen, 1, JLine("wheat", "bansal traders", "50", quantity, "2125")));
        return screen;
    }
    // Ten bags of wheat, 5 quintals, bought locally from Gurmeet Singh.
    desk::DocumentScreen& TypeLocalPurchase() {
        auto& screen = OpenMenu("PurchaseLocal");
        EXPECT_TRUE(TypeBox(screen, screen.TxpDocDate(), "15/04/2024"));
        EXPECT_TRUE(TypeBox(screen, screen.TxpCustomer(), "gurmeet singh"));
        EXPECT_TRUE(TypeLine(screen, 1,
                             {{"PRODUCT_ID", "wheat"},
                              {"NO_OF_BOXES", "10"},
                              {"QTY_PER_BOX", "50"},
                              {"QUANTITY", "5"},
                              {"RATE", "2125"}}));
        return screen;
    }

    // The cells of a line, by column key.
    static Strings Line(desk::DocumentScreen& screen, int row, const Strings& keys) {
        Strings cells;
        for (const std::string& key : keys)
            cells.push_back(Cell(screen, row, key));
        return cells;
    }
    // Charges grid rows as "key rate amount".
    static Strings Charges(desk::DocumentScreen& screen) {
        Strings rows;
        const auto& charges = screen.GridTot2();
        for (int row = 1; row < charges.Rows(); ++row)
            rows.push_back(charges.TextMatrix(row, desk::DocumentScreen::kChargeKeyCol) + " " +
                           charges.TextMatrix(row, desk::DocumentScreen::kChargeRateCol) + " " +
                           charges.TextMatrix(row, desk::DocumentScreen::kChargeAmountCol));
        return rows;
    }
    // A grid's row from a column on, cells joined by "|".
    static std::string Joined(const ui::Grid& grid, int row, int firstCol = 0) {
        std::string line;
        for (int col = firstCol; col < grid.Cols(); ++col)
            line += (col > firstCol ? "|" : "") + grid.TextMatrix(row, col);
        return line;
    }
    // The summary grid as shown; empty while it is hidden or empty.
    static Strings Summary(desk::DocumentScreen& screen) {
        Strings rows;
        const auto& grid = screen.GridInfo();
        if (!screen.ShowGridinfo() || !screen.PicGridInfo().Visible() || !grid.Visible() ||
            grid.Cols() == 0)
            return rows;
        for (int row = 0; row < grid.Rows(); ++row)
            rows.push_back(Joined(grid, row));
        return rows;
    }

    // A saved form: its market and date, its lines as "item buyer quantity rate jfactor", and
    // its day's pending J-Forms kept as a save keeps them.
    void SavedForm(int id, const std::string& series, const std::string& isoDate, int market,
                   const std::vector<std::tuple<int, int, const char*, const char*, int>>& lines) {
        Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, "
                        "DOCDATE, PARTYCODE, MARKETID) VALUES (" +
                        std::to_string(id) + ", '" + series + "', " + (series == "JF" ? "1" : "2") +
                        ", " + std::to_string(id) + ", '" + isoDate + "', 101, " +
                        std::to_string(market) + ")");
        int refNo = 0;
        for (const auto& [item, buyer, quantity, rate, jFactor] : lines)
            Db().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, "
                            "QUANTITY, FREEQUANTITY, QTYPERBOX, RATE, JFACTOR) VALUES (" +
                            std::to_string(id) + ", " + std::to_string(++refNo) + ", " +
                            std::to_string(item) + ", " + std::to_string(buyer) + ", " + quantity +
                            ", 0, 50, " + rate + ", " + std::to_string(jFactor) + ")");
        kivra::KeepPendingOf(Db(), *Date::ParseIso(isoDate));
    }

    // A new I-Form: its market chosen first, then the pending J-Forms listed (kept in listed);
    // take is the rows the user takes from the list (none: he presses Esc).
    desk::DocumentScreen& NewIForm(const std::string& market, std::vector<Strings> take = {}) {
        ChooseInNextList(market);
        frontend.QueueModal([this, take](ui::Screen& list) {
            const auto& grid = list.Get<ui::Grid>(desk::kSelectItemGrid);
            listed.clear();
            for (int row = 0; row < grid.Rows(); ++row)
                listed.push_back(Joined(grid, row, 1));
            if (!take.empty()) {
                EXPECT_TRUE(desk::TakeRows(list, take));
            }
        });
        return OpenMenu("IForms");
    }
    Strings listed;

    static bool Press(desk::DocumentScreen& screen, ui::Key key) {
        return screen.KeyDown({.key = key});
    }

private:
    static constexpr const char* kCompany[] = {
        "INSERT INTO MARKETMASTER (MARKETID, MARKETNAME, STATION, STATE, SERIES) VALUES "
        "(1, 'KHANNA', 'KHANNA', 'PUNJAB', 'JF'), (2, 'DORAHA', 'DORAHA', 'PUNJAB', 'JF')",
        "INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'FOOD GRAINS')",
        // Wheat and paddy with their J-Form, I-Form, purchase and levy rates.
        "INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO, qLabourJF, qLabourIF, qDamiIF, qStitchIF, "
        "qDharamIF, qLoadingIF, qLabour, qDami, qLoading, qStitch, qMarketFee, qRDF, qPIDF, "
        "qPurTax, qCancerFund) VALUES "
        "(1, 'WHEAT', 1, 6.22, 5.5, 2.5, 1.5, 0.1, 3, 4, 2, 2.25, 1.25, 2, 3, 1, 4, 0.5), "
        "(2, 'PADDY', 1, 7.5, 6, 2.5, 1.75, 0.1, 3.5, 4.5, 2, 2.5, 1.5, 2, 3, 1, 4, 0.5)",
        "INSERT INTO FAMASTER (MCD, MHD, MST) VALUES "
        "(101, 'GURMEET SINGH', 'RAIPUR'), (102, 'HARPAL SINGH', 'BIJA'), "
        "(201, 'BANSAL TRADERS', 'KHANNA'), (202, 'SELF', ''), "
        "(301, 'LABOUR A/C', ''), (302, 'DAMI A/C', ''), (303, 'LABOUR I-FORM A/C', ''), "
        "(304, 'LOADING A/C', ''), (305, 'STITCHING A/C', ''), (306, 'DHARMADA A/C', ''), "
        "(310, 'PURCHASE FOOD GRAINS', ''), (399, 'ROUND OFF', '')",
        // The heads of the day's consolidated voucher and of the agent's own purchases.
        "INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (320, 'DHARAM A/C', ''), "
        "(321, 'J-FORM / I-FORM CONTROL A/C', ''), (322, 'LABOUR A/C (J-FORMS)', ''), "
        "(323, 'LABOUR A/C (I-FORMS)', ''), (324, 'FOOD GRAINS MAL KHATA', ''), "
        "(325, 'MARKET FEE : FOOD GRAINS', ''), (326, 'MARKET FEE PAYABLE', ''), "
        "(327, 'R.D.F. : FOOD GRAINS', ''), (328, 'R.D.F. PAYABLE', ''), "
        "(329, 'P.I.D.F. : FOOD GRAINS', ''), (330, 'P.I.D.F. PAYABLE', ''), "
        "(331, 'CANCER FUND : FOOD GRAINS', ''), (332, 'CANCER FUND PAYABLE', ''), "
        "(333, 'LABOUR (SELF) : FOOD GRAINS', ''), (334, 'LABOUR PAYABLE', ''), "
        "(335, 'LABOUR : FOOD GRAINS', '')",
        // The purchases post their own vouchers; the forms go into the day's voucher.
        "INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO, SALEPOSTINGCODE) VALUES "
        "(3, 1, 310), (4, 1, 310)",
        "INSERT INTO DOCCONFIG (SERIESID, SERIESCODE, SERIESNAME, SUBSERIESNAME, DOCTYPE, "
        "DOCPROPERTIES, DOCVOUCHERFACTOR, NARRATION, NEXTNUMBER, TRNTYPE, BOOK) VALUES "
        "(1, 'JF', 'J-Forms', '', 'J-Form', '*JForm*', 0, '', 1, 'JF', 'JF'), "
        "(2, 'IF', 'I-Forms', '', 'I-Form', '*IForm*', 0, '', 1, 'IF', 'IF'), "
        "(3, 'PL', 'Purchase', 'Local', 'Purchase', '', -1, 'Local purchase ##', 1, 'PUR', "
        "'PB'), "
        "(4, 'POU', 'Purchase', 'Outside', 'Purchase', '', -1, 'Purchase ##', 1, 'PUR', 'PB')",
        // J-Form: the buyer of each line, bags of their weight and loose kilograms, the
        // quantity in quintals, the bags as weighed and the kilograms they add or take off.
        "INSERT INTO DOCCOLUMNS (SERIESID, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, EDITABLE, "
        "FIELD) VALUES "
        "(1, 1, 'PRODUCT_ID', 'Item', 1800, '', 1, ''), "
        "(1, 2, 'CUSTOMER_ID', 'Buyer', 2200, '', 1, ''), "
        "(1, 3, 'NO_OF_BOXES', 'Bags', 700, '', 1, ''), "
        "(1, 4, 'QTY_PER_BOX', 'Kg./Bag', 700, 'n2', 1, ''), "
        "(1, 5, 'PCS', 'Loose Kgs', 700, '', 1, ''), "
        "(1, 6, 'QUANTITY', 'Qty (Qtl.)', 900, 'n2', 1, ''), "
        "(1, 7, 'REV_BAGS2', 'Bags Weighed', 900, 'n2', 1, ''), "
        "(1, 8, 'ADD_LESS_KGS', 'Add/Less Kgs', 900, 'n2', 1, 'AddLessKgs'), "
        "(1, 9, 'TOTAL_WT', 'Total Wt.', 900, 'n2', 0, ''), "
        "(1, 10, 'REV_BAGS', 'Rev. Bags', 800, 'n2', 0, ''), "
        "(1, 11, 'RATE', 'Rate', 900, 'n2', 1, ''), "
        "(1, 12, 'AMOUNT', 'Amount', 1200, '', 0, ''), "
        "(1, 13, 'STK_CODE', 'Code', 0, '', 0, '')",
        // I-Form: the buyer's goods, valued on their weight.
        "INSERT INTO DOCCOLUMNS (SERIESID, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, EDITABLE, "
        "FIELD) SELECT 2, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, EDITABLE, FIELD FROM "
        "DOCCOLUMNS WHERE SERIESID=1 AND COLKEY NOT IN ('CUSTOMER_ID', 'REV_BAGS2', 'REV_BAGS', "
        "'STK_CODE')",
        "INSERT INTO DOCCOLUMNS (SERIESID, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, EDITABLE, "
        "FIELD) VALUES "
        "(3, 1, 'PRODUCT_ID', 'Item', 1800, '', 1, ''), (3, 2, 'NO_OF_BOXES', 'Bags', 700, '', 1, "
        "''), (3, 3, 'QTY_PER_BOX', 'Kg./Bag', 700, 'n2', 1, ''), "
        "(3, 4, 'QUANTITY', 'Qty (Qtl.)', 900, 'n2', 1, ''), (3, 5, 'RATE', 'Rate', 900, 'n2', 1, "
        "''), (3, 6, 'AMOUNT', 'Amount', 1200, '', 0, ''), "
        "(4, 1, 'PRODUCT_ID', 'Item', 1800, '', 1, ''), (4, 2, 'NO_OF_BOXES', 'Bags', 700, '', 1, "
        "''), (4, 3, 'QUANTITY', 'Qty (Qtl.)', 900, 'n2', 1, ''), "
        "(4, 4, 'RATE', 'Rate', 900, 'n2', 1, ''), (4, 5, 'AMOUNT', 'Amount', 1200, '', 0, '')",
        // A line needs its quantity, bag weight and rate; add/less kilograms deduct when
        // negative.
        "UPDATE DOCCOLUMNS SET FIGURES='positive' WHERE COLKEY IN ('QTY_PER_BOX', 'QUANTITY', "
        "'RATE')",
        "UPDATE DOCCOLUMNS SET FIGURES='signed' WHERE COLKEY='ADD_LESS_KGS'",
        "INSERT INTO DOCBOXES (SERIESID, POSITION, BOXNAME, CAPTION, FIELD, NUMERIC, LOOKUP, "
        "LOOKUPTEXT) VALUES "
        "(1, 1, 'MARKET', 'Mandi', 'MarketID', 0, 'SelectMarket', 'GetMarketName'), "
        "(1, 2, 'FORM_BOOK_NO', 'Book No.', 'FormBookNo', 1, '', ''), "
        "(1, 3, 'FORM_NO', 'Form No.', 'FormNo', 1, '', ''), "
        "(2, 1, 'MARKET', 'Mandi', 'MarketID', 0, 'SelectMarket', 'GetMarketName'), "
        "(2, 2, 'FORM_BOOK_NO', 'Book No.', 'FormBookNo', 1, '', ''), "
        "(2, 3, 'FORM_NO', 'Form No.', 'FormNo', 1, '', '')",
        // The farmer bears the labour of a J-Form; the buyer pays the agent's charges of an
        // I-Form on top of the goods.
        "INSERT INTO DOCCHARGES (SERIESID, POSITION, CHARGEKEY, CAPTION, RATE, BASIS, SIGN, "
        "HEADCODE, FIELD) VALUES "
        "(1, 1, 'LABOUR', 'Labour', 0, 'B', -1, 301, 'LABOUR'), "
        "(2, 1, 'DAMI', 'Dami', 0, 'P', 1, 302, 'DamiAmt'), "
        "(2, 2, 'LABOUR', 'Labour', 0, 'B', 1, 303, 'LABOUR'), "
        "(2, 3, 'LOADING', 'Loading', 0, 'B', 1, 304, 'LOADING'), "
        "(2, 4, 'STITCHING', 'Stitching', 0, 'B', 1, 305, 'StitchAmt'), "
        "(2, 5, 'DHARMADA', 'Dharmada', 0, 'P', 1, 306, 'DharmadaAmt'), "
        "(3, 1, 'LABOUR', 'Labour', 0, 'B', -1, 301, 'LABOUR'), "
        "(4, 1, 'LABOUR', 'Labour', 0, 'B', -1, 301, 'LABOUR')",
    };
};

} // namespace qx::test
