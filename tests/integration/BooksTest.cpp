// Mandi forms saved into the books through the desk's engine, with the demo's own series: each
// line's stock and J-Form factors and levies, the levies a local purchase posts in pairs, the
// questions about rates changed since a form was saved, and the day's consolidated "IJF"
// voucher, which every save, date change, cancellation and deletion builds again.
#include "DemoSeriesCompany.h"

#include "desk/cli/EnterDocuments.h"
#include "desk/documents/BooksCheck.h"

#include <fstream>
#include <sstream>

using namespace qx;
using test::Strings;

namespace {

class BooksTest : public test::DemoSeriesCompany {
protected:
    // Gurmeet Singh's paddy at Khanna: 5 quintals (10 bags) bought by the agent himself and 10
    // quintals (20 bags) sold to Pungrain, at 2,000.
    void SaveJForm101(const std::string& date) {
        auto& screen = OpenMenu("JForms");
        TypeHeader(screen, date, "gurmeet singh", "KHANNA", "12", "101");
        ASSERT_TRUE(TypeLine(screen, 1, JLine("paddy", "self", "50", "5", "2000")));
        ASSERT_TRUE(TypeLine(screen, 2, JLine("paddy", "pungrain", "50", "10", "2000")));
        ASSERT_TRUE(Press(screen, ui::Key::F10));
        ASSERT_TRUE(Messages().empty()) << Messages().front();
        app.CloseScreen(screen);
    }
    // Pungrain's I-Form: choosing him picks his 10 quintals pending, of which he takes 4; his
    // weighing finds 20 kg more.
    void SaveIForm501(const std::string& date) {
        auto& screen = NewIForm("KHANNA");
        TypeHeader(screen, date, "pungrain", "KHANNA", "3", "501");
        ASSERT_EQ(Line(screen, 1, {"PRODUCT_ID", "QUANTITY", "RATE"}),
                  (Strings{"PADDY", "10.00", "2,000.00"}));
        // The picked line's 20 bags stay as they are until the clerk counts his 8.
        Cells line = ILine("paddy", "50", "4", "20", "2000");
        line.emplace_back("NO_OF_BOXES", "8");
        ASSERT_TRUE(TypeLine(screen, 1, line));
        ASSERT_EQ(Line(screen, 1, {"TOTAL_WT", "DIFF_QTY", "AMOUNT"}),
                  (Strings{"4.20", "0.2", "8,400.00"}));
        ASSERT_TRUE(Press(screen, ui::Key::F10));
        ASSERT_TRUE(Messages().empty()) << Messages().front();
        app.CloseScreen(screen);
    }
    std::int32_t DocumentOf(const std::string& series, int form) {
        return Db()
            .LookupValue("DOCMAIN", "DOCUMENTID",
                         "DOCSERIES='" + series + "' AND FORMNO=" + std::to_string(form))
            .AsInt();
    }
    // Every table a save writes to, whole.
    Strings Company() {
        Strings all;
        for (const char* table :
             {"DOCMAIN", "DOCDATA", "DOCCHARGEDATA", "DOCCONFIG", "FADATA", "FADOCS", "FANAR"})
            for (const std::string& row : Rows(std::string("SELECT * FROM ") + table))
                all.push_back(std::string(table) + ": " + row);
        return all;
    }
};

const Strings kJForm101 = {
    "GURMEET SINGH|-29888|J-Form No. KHN 12/101",
    // The agent's own 5 quintals, with their levies (no purchase tax under GST) and the
    // labour on his 10 bags.
    "PURCHASE PADDY|10000|J-Form No. 1",
    "MARKET FEE : PADDY|200|J-Form No. 1",
    "MARKET FEE PAYABLE|-200|J-Form No. 1",
    "R.D.F. : PADDY|100|J-Form No. 1",
    "R.D.F. PAYABLE|-100|J-Form No. 1",
    "CANCER FUND : PADDY|50|J-Form No. 1",
    "CANCER FUND PAYABLE|-50|J-Form No. 1",
    "P.I.D.F. : PADDY|103.5|J-Form No. 1",
    "P.I.D.F. PAYABLE|-103.5|J-Form No. 1",
    "LABOUR (SELF) : PADDY|45|J-Form No. 1",
    "LABOUR PAYABLE|-45|J-Form No. 1",
    "LABOUR A/C (J-FORMS)|-112.5|As per J-Forms",
    "ROUND OFF|0.5|As per I/J-Forms",
    // Pungrain's 10 quintals wait for his I-Form.
    "J-FORM / I-FORM CONTROL A/C|20000|As per I/J-Forms",
};

// The day once Pungrain's I-Form has taken 4 of his 10 quintals, 20 kg more on his weighing.
const Strings kJForm101AndIForm501 = {"PUNGRAIN|8672|I-Form No. KHN 3/501",
                                      "GURMEET SINGH|-29888|J-Form No. KHN 12/101",
                                      "PURCHASE PADDY|10000|J-Form No. 1",
                                      "MARKET FEE : PADDY|200|J-Form No. 1",
                                      "MARKET FEE PAYABLE|-200|J-Form No. 1",
                                      "R.D.F. : PADDY|100|J-Form No. 1",
                                      "R.D.F. PAYABLE|-100|J-Form No. 1",
                                      "CANCER FUND : PADDY|50|J-Form No. 1",
                                      "CANCER FUND PAYABLE|-50|J-Form No. 1",
                                      "P.I.D.F. : PADDY|103.5|J-Form No. 1",
                                      "P.I.D.F. PAYABLE|-103.5|J-Form No. 1",
                                      "LABOUR (SELF) : PADDY|45|J-Form No. 1",
                                      "LABOUR PAYABLE|-45|J-Form No. 1",
                                      "PADDY MAL KHATA|-400|As per I-Forms",
                                      "DAMI A/C|-210|As per I-Forms",
                                      "LABOUR A/C (J-FORMS)|-112.5|As per J-Forms",
                                      "LABOUR A/C (I-FORMS)|-36|As per I-Forms",
                                      "LOADING A/C|-12.8|As per I-Forms",
                                      "STITCHING A/C|-8.8|As per I-Forms",
                                      "DHARAM A/C|-4.2|As per I-Forms",
                                      "ROUND OFF|0.7|As per I/J-Forms",
                                      "J-FORM / I-FORM CONTROL A/C|11999.6|As per I/J-Forms"};

TEST_F(BooksTest, TheDaysVoucherFollowsEveryFormOfTheDayThroughItsLife) {
    SaveJForm101("04/11/2024");
    EXPECT_EQ(Rows("SELECT CUSTOMERID, JFACTOR, STOCKFACTOR, iMarketFeeRate, iLabourRateIF, "
                   "iMarketFeeAmt, iRDFAmt, iCancerFundAmt, iPIDFAmt, iPurTaxAmt, iLabourAmtIF "
                   "FROM DOCDATA ORDER BY REFNO"),
              (Strings{"202|0|1|2|4.5|200|100|50|103.5|0|45", "201|1|0|0|0|0|0|0|0|0|0"}));
    EXPECT_EQ(DayVoucher("2024-11-04"), kJForm101);
    ExpectRebuildsTheSame("2024-11-04");

    // 4 of Pungrain's 10 quintals are taken over, 6 stay pending; the 20 kg his weighing found
    // more come out of the agent's stock, on a row that is saved but never shown.
    SaveIForm501("04/11/2024");
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY*JFACTOR) FROM DOCDATA WHERE CUSTOMERID=201"), Strings{"6"});
    const std::int32_t iForm = DocumentOf("IF", 501);
    EXPECT_EQ(Rows("SELECT REFNO, CUSTOMERID, QUANTITY, DIFFQTY, AMOUNT, SALEAMOUNT, JFACTOR, "
                   "STOCKFACTOR, ROWMARK FROM DOCDATA WHERE DOCUMENTID=" +
                   std::to_string(iForm) + " ORDER BY REFNO"),
              (Strings{"1|201|4|0.2|8400|0|-1|0|", "2|0|0.2|0|400|400|0|-1|*Hidden*"}));
    EXPECT_EQ(DayVoucher("2024-11-04"), kJForm101AndIForm501);
    ExpectRebuildsTheSame("2024-11-04");
    auto& iForms = OpenMenu("IForms");
    iForms.OpenDocument(iForm);
    EXPECT_EQ(iForms.Grid().Rows(), 3) << "the line, and the empty row for a new one";

    // The J-Form moves to the next day: both days are posted again.
    auto& jForms = OpenMenu("JForms");
    jForms.OpenDocument(DocumentOf("JF", 101));
    ASSERT_TRUE(TypeBox(jForms, jForms.TxpDocDate(), "05/11/2024"));
    ASSERT_TRUE(Press(jForms, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(DayVoucher("2024-11-05"), kJForm101);
    EXPECT_EQ(DayVoucher("2024-11-04"),
              (Strings{"PUNGRAIN|8672|I-Form No. KHN 3/501", "PADDY MAL KHATA|-400|As per I-Forms",
                       "DAMI A/C|-210|As per I-Forms", "LABOUR A/C (I-FORMS)|-36|As per I-Forms",
                       "LOADING A/C|-12.8|As per I-Forms", "STITCHING A/C|-8.8|As per I-Forms",
                       "DHARAM A/C|-4.2|As per I-Forms", "ROUND OFF|0.2|As per I/J-Forms",
                       "J-FORM / I-FORM CONTROL A/C|-8000.4|As per I/J-Forms"}));
    ExpectRebuildsTheSame("2024-11-04");
    ExpectRebuildsTheSame("2024-11-05");

    // A day whose only form is cancelled, and one whose only form is deleted, have no voucher.
    jForms.OpenDocument(DocumentOf("JF", 101));
    ASSERT_TRUE(jForms.CancelDocument());
    iForms.OpenDocument(iForm);
    frontend.QueueAnswer(kAnswerYes);
    ASSERT_TRUE(Press(iForms, ui::Key::F3));
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM FADATA WHERE DTRNTYPE='IJF'"), Strings{"0"});
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM FADOCS"), Strings{"0"});
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY*JFACTOR), SUM(QUANTITY*STOCKFACTOR) FROM DOCDATA"),
              Strings{"0|0"})
        << "a cancelled form moves nothing";
}

// Before 1 April 2019 labour goes to one head; from then the J-Forms' and the I-Forms' to
// heads of their own, and the old head is no longer needed. A settled day leaves nothing on
// the control head, even when the buyer took more than the farmers gave.
TEST_F(BooksTest, LabourIsPostedToTheHeadsOfItsDay) {
    for (const std::string day : {"31/03/2019", "01/04/2019"}) {
        auto& jForm = OpenMenu("JForms");
        TypeHeader(jForm, day, "harpal singh", "KHANNA", "1", day == "31/03/2019" ? "1" : "2");
        ASSERT_TRUE(TypeLine(jForm, 1, JLine("paddy", "pungrain", "50", "10", "2000")));
        ASSERT_TRUE(Press(jForm, ui::Key::F10));
        auto& iForm = NewIForm("KHANNA");
        TypeHeader(iForm, day, "pungrain", "KHANNA", "1", day == "31/03/2019" ? "1" : "2");
        // The second buyer's weighing finds 20 kg more, which the agent has none of.
        ASSERT_TRUE(TypeLine(iForm, 1,
                             ILine("paddy", "50", "10", day == "31/03/2019" ? "0" : "20", "2000")));
        ASSERT_TRUE(Press(iForm, ui::Key::F10));
    }
    EXPECT_EQ(Messages(), Strings{"Negative stock after issuing item : PADDY"})
        << "a warning: the form is saved";
    // 20 bags at 3.75 on the J-Form, at 4.50 on the I-Form.
    EXPECT_EQ(
        Ledger("F.MHD LIKE 'LABOUR A/C%' OR F.MHD LIKE 'J-FORM%'"),
        (Strings{"LABOUR A/C|-165|As per I/J-Forms", "LABOUR A/C (J-FORMS)|-75|As per J-Forms",
                 "LABOUR A/C (I-FORMS)|-90|As per I-Forms"}));

    // Without the old head, the later day still posts; the earlier cannot.
    Db().ExecuteSql("DELETE FROM FAMASTER WHERE MHD='LABOUR A/C'");
    for (const std::string day : {"01/04/2019", "31/03/2019"}) {
        frontend.ClearTranscript();
        auto& jForm = OpenMenu("JForms");
        TypeHeader(jForm, day, "harpal singh", "KHANNA", "1", day == "31/03/2019" ? "3" : "4");
        ASSERT_TRUE(TypeLine(jForm, 1, JLine("paddy", "pungrain", "50", "1", "2000")));
        ASSERT_TRUE(Press(jForm, ui::Key::F10));
    }
    EXPECT_EQ(Messages(),
              Strings{"A/c Head: 'LABOUR A/C' not found in master.\r\nCan't pass voucher entry."});
    EXPECT_EQ(frontend.Transcript()[0].style, "E");
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM FADATA WHERE DVCHDATE='2019-03-31'"), Strings{"0"});
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM DOCMAIN"), Strings{"6"}) << "the forms are saved";
    ExpectRebuildsTheSame("2019-04-01");
}

// `qx check` posts every day again in a unit of work it undoes, and says how a day's voucher
// differs from what the day's forms make: a row changed by hand, a form moved to another day
// behind the engine's back, which also leaves the pending J-Forms kept for I-Forms behind.
TEST_F(BooksTest, TheCheckFindsADayVoucherThatIsNotWhatItsFormsMake) {
    SaveJForm101("04/11/2024");
    SaveIForm501("04/11/2024");
    ASSERT_EQ(desk::CheckBooks(app).faults, Strings{});
    faultsPlanted = true;
    Db().ExecuteSql("UPDATE FADATA SET DAMT=DAMT+10 WHERE DTRNTYPE='IJF' AND DSRNO=1");
    const Strings before = Company();
    const Strings changedRow = {
        "The day voucher (IJF) of 04/11/2024 does not balance: debits 31,180.80, credits "
        "31,170.80.",
        "The day voucher (IJF) of 04/11/2024 is not what the day's forms make: row 1 is PUNGRAIN "
        "Dr 8,682.00 (\"I-Form No. KHN 3/501\"), the forms make PUNGRAIN Dr 8,672.00 (\"I-Form "
        "No. KHN 3/501\")."};
    EXPECT_EQ(desk::CheckBooks(app).faults, changedRow);
    EXPECT_EQ(Company(), before) << "the check writes nothing";
    Db().ExecuteSql("UPDATE DOCMAIN SET DOCDATE='2024-11-05' WHERE DOCSERIES='JF'");
    Strings moved = changedRow;
    const std::string putRight = ": saving a form of that day again puts it right.";
    moved.insert(moved.begin(),
                 {"The I-Forms of PUNGRAIN take 4.00 quintals more PADDY than the J-Forms of "
                  "04/11/2024 left pending.",
                  "The pending J-Forms kept for I-Forms hold 6.00 quintals of PADDY at 2,000.00 "
                  "for PUNGRAIN on 04/11/2024, which the day's forms do not leave" + putRight,
                  "The J-Forms of 04/11/2024 leave -4.00 quintals of PADDY at 2,000.00 for "
                  "PUNGRAIN pending, which the pending J-Forms kept for I-Forms do not hold" +
                      putRight,
                  "The J-Forms of 05/11/2024 leave 10.00 quintals of PADDY at 2,000.00 for "
                  "PUNGRAIN pending, which the pending J-Forms kept for I-Forms do not hold" +
                      putRight});
    moved.push_back("The day voucher (IJF) of 05/11/2024 is not what the day's forms make: there "
                    "is none, but the day's forms make one of 15 rows.");
    EXPECT_EQ(desk::CheckBooks(app).faults, moved);
}

// A failure anywhere in posting the day (here the ledger refuses the day's third row) undoes
// the whole save: the form, its lines and both days' vouchers stay as they were, and the
// screen keeps what was typed.
TEST_F(BooksTest, ASaveThatFailsInTheDaysVoucherLeavesTheCompanyAsItWas) {
    SaveJForm101("04/11/2024");
    SaveIForm501("04/11/2024");
    Db().ExecuteSql("CREATE TRIGGER LEDGER_FAILS BEFORE INSERT ON FADATA WHEN "
                    "NEW.DTRNTYPE='IJF' AND NEW.DSRNO=3 BEGIN SELECT RAISE(ABORT, 'the ledger "
                    "is damaged'); END");
    const Strings before = Company();

    auto& screen = OpenMenu("JForms");
    TypeHeader(screen, "04/11/2024", "harpal singh", "KHANNA", "12", "102");
    ASSERT_TRUE(TypeLine(screen, 1, JLine("paddy", "pungrain", "50", "3", "2010")));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    ASSERT_EQ(Messages().size(), 1u);
    EXPECT_NE(Messages()[0].find("PostDailyVoucher: "), std::string::npos) << Messages()[0];
    EXPECT_EQ(Company(), before);
    EXPECT_EQ(Cell(screen, 1, "QUANTITY"), "3.00");

    screen.OpenDocument(DocumentOf("JF", 101));
    ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "06/11/2024"));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Company(), before);
    EXPECT_EQ(screen.TxpDocDate().Text(), "06/11/2024");
    // The ledger mended, the books left behind are proven whole.
    Db().ExecuteSql("DROP TRIGGER LEDGER_FAILS");
}

// An edited J-Form keeps the levy rates it was saved with (a line of the same item sold to a
// buyer after it takes none of them away), unless the user takes the item's new rate, asked
// rate by rate; purchase tax is never asked about.
TEST_F(BooksTest, AnEditedJFormAsksWhetherToReviseEachChangedRateAsPerMaster) {
    SaveJForm101("04/11/2024");
    Db().ExecuteSql("UPDATE STKMASTER SET qMarketFee=2.5, qPIDF=1.5, qPurTax=5, qLabourIF=5, "
                    "qCancerFund=0 WHERE QMCD=1");
    auto& screen = OpenMenu("JForms");
    screen.OpenDocument(DocumentOf("JF", 101));
    for (int answer : {kAnswerYes, kAnswerNo, kAnswerYes, kAnswerNo})
        frontend.QueueAnswer(answer);
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    const std::string revise = "\r\nDo you want to revise as per master?";
    EXPECT_EQ(
        Messages(),
        (Strings{"Market fee as per J-Form is: 2\r\nMarket Fee as per master is: 2.5" + revise,
                 "P.I.D.F. as per J-Form is: 1\r\nP.I.D.F. as per master is: 1.5" + revise,
                 "Labour rate as per J-Form is: 4.5\r\nLabour Rate (I-Form) as per master "
                 "is: 5" +
                     revise,
                 "Cancer Fund rate as per J-Form is: 0.5\r\nCancer Fund rate as per master "
                 "is: 0" +
                     revise}));
    EXPECT_EQ(frontend.Transcript()[0].style, "W");
    EXPECT_EQ(Rows("SELECT iMarketFeeRate, iRDFRate, iPIDFRate, iPurTaxRate, iLabourRateIF, "
                   "iCancerFundRate, iMarketFeeAmt, iPIDFAmt, iCancerFundAmt, iLabourAmtIF FROM "
                   "DOCDATA WHERE STOCKFACTOR=1"),
              Strings{"2.5|1|1|4|5|0.5|250|104|50|50"});
    ExpectRebuildsTheSame("2024-11-04");
}

// The worked figures of a local purchase before GST: each levy is posted as a pair, the
// category's expense head against the payable head, after the host's own rows; the form
// number stands in the narration for "##".
const Strings kLocalPurchase41 = {"HARPAL SINGH|-10000|Purchase vide Form No. 41",
                                  "PURCHASE MAIZE|10000|Purchase vide Form No. 41",
                                  "MARKET FEE : MAIZE|200|Purchase vide Form No. 41",
                                  "MARKET FEE PAYABLE|-200|Purchase vide Form No. 41",
                                  "R.D.F. : MAIZE|100|Purchase vide Form No. 41",
                                  "R.D.F. PAYABLE|-100|Purchase vide Form No. 41",
                                  "P.I.D.F. : MAIZE|103|Purchase vide Form No. 41",
                                  "P.I.D.F. PAYABLE|-103|Purchase vide Form No. 41",
                                  "PURCHASE TAX : MAIZE|416.12|Purchase vide Form No. 41",
                                  "PURCHASE TAX PAYABLE|-416.12|Purchase vide Form No. 41"};

TEST_F(BooksTest, ALocalPurchasePostsItsLeviesInPairs) {
    auto& screen = OpenMenu("PurchaseLocal");
    ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "31/03/2017"));
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "harpal singh"));
    ChooseMarket(screen, "KHANNA");
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "41"));
    ASSERT_TRUE(TypeLine(screen, 1, {{"PRODUCT_ID", "maize"}, {"QTY_PER_BOX", "50"},
                                     {"QUANTITY", "5"}, {"RATE", "2000"}}));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(Ledger("D.DTRNTYPE='PUR'"), kLocalPurchase41);
}

// The same figures from a file: `qx enter` types a file of forms through the entry screen: the local purchase, J-Form 101, and
// Pungrain's I-Form picked from the list of pending J-Forms post the figures above.
TEST_F(BooksTest, AFileOfFormsPostsTheLocalPurchasesLeviesInPairsAndTheDaysVoucher) {
    const std::filesystem::path file = folder.Path() / "forms.json";
    std::ofstream(file) << R"({"documents": [
      {"series": "PL", "date": "31/03/2017", "party": "HARPAL SINGH",
       "boxes": {"MARKET": "KHANNA", "FORM_NO": "41"},
       "lines": [{"PRODUCT_ID": "MAIZE", "QTY_PER_BOX": "50", "QUANTITY": "5", "RATE": "2000"}]},
      {"series": "JF", "date": "04/11/2024", "party": "GURMEET SINGH",
       "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "12", "FORM_NO": "101"},
       "lines": [{"PRODUCT_ID": "PADDY", "CUSTOMER_ID": "SELF", "QTY_PER_BOX": "50", "QUANTITY": "5", "RATE": "2000"},
                 {"PRODUCT_ID": "PADDY", "CUSTOMER_ID": "PUNGRAIN", "QTY_PER_BOX": "50", "QUANTITY": "10", "RATE": "2000"}]},
      {"series": "IF", "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "3", "FORM_NO": "501"},
       "pick": [{"Party": "PUNGRAIN", "Item": "PADDY"}],
       "lines": [{"line": "1", "QUANTITY": "4", "NO_OF_BOXES": "8", "ADD_LESS_KGS": "20"}]}
    ]})";
    std::ostringstream log, refused;
    ASSERT_TRUE(cli::EnterDocuments(app, frontend, file, log, refused)) << refused.str();
    EXPECT_EQ(Ledger("D.DTRNTYPE='PUR'"), kLocalPurchase41);
    EXPECT_EQ(DayVoucher("2024-11-04"), kJForm101AndIForm501);
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY*JFACTOR) FROM DOCDATA WHERE CUSTOMERID=201"), Strings{"6"});
}

} // namespace
