// `qx voucher`: vouchers typed from a file through the voucher screen, on the demo company
// (whose opening balances, receipts and payments come in the same way).
#include "support/QxRun.h"
#include "support/Desk.h"

#include "desk/cli/Commands.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

using namespace qx;

namespace {

using test::Qx;
using test::QxRun;

class QxVoucher : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(Qx({"demo", path}).status, 0); }

    QxRun Enter(const std::string& vouchers) {
        const auto file = folder.Path() / ("vouchers" + std::to_string(++files_) + ".json");
        std::ofstream(file) << R"({"vouchers": [)" << vouchers << "]}";
        return Qx({"voucher", path, file.string()});
    }

    std::string Sql(const std::string& statement) { return Qx({"sql", path, statement}).out; }

    // Every voucher leaves books that `qx check` proves.
    void ExpectBooksInOrder() {
        const auto check = Qx({"check", path});
        EXPECT_EQ(check.status, 0) << check.out;
    }

    test::TempFolder folder;
    std::string path = (folder.Path() / "demo.kdb").string();
    int files_ = 0;
};

// What the ledger holds: every voucher's rows, narrations and register entries.
constexpr const char* kLedger =
    "SELECT (SELECT COUNT(*) FROM FADATA) || '/' || (SELECT COUNT(*) FROM FADOCS) || '/' || "
    "(SELECT COUNT(*) FROM FANAR) || '/' || (SELECT COUNT(*) FROM FASETTLED)";

// A voucher that does not balance, a contra through a party and a receipt into no cash or bank
// are refused with their reasons; nothing of them is written, and the vouchers around them are.
TEST_F(QxVoucher, AVoucherThatDoesNotBalanceIsRefusedAndNothingOfItIsWritten) {
    const std::string before = Sql(kLedger);
    const auto run = Enter(R"(
        {"book": "Journal", "date": "08/11/2024", "rows": [
            {"account": "CASH", "debit": "1,00,000", "narration": "Typed short"},
            {"account": "CAPITAL A/C", "credit": "99,999.50"}]},
        {"book": "Contra", "date": "08/11/2024", "rows": [
            {"account": "CASH", "debit": "500"}, {"account": "PUNGRAIN", "credit": "500"}]},
        {"book": "Receipt", "date": "08/11/2024", "rows": [
            {"account": "PUNSUP", "credit": "500"}, {"account": "CAPITAL A/C", "debit": "500"}]},
        {"book": "Journal", "date": "08/11/2024", "rows": [
            {"account": "CASH", "debit": "12.345"}, {"account": "CAPITAL A/C", "credit": "12.345"}]})");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "voucher 1 (Journal of 08/11/2024): not saved: saving: The voucher does not balance: debits "
              "1,00,000.00, credits 99,999.50, a difference of 0.50 Dr. Nothing was saved.\n"
              "voucher 2 (Contra of 08/11/2024): not saved: saving: A contra voucher moves money between cash "
              "and bank accounts: Row 2 (PUNGRAIN) is neither.\n"
              "voucher 3 (Receipt of 08/11/2024): not saved: saving: A receipt brings money in: debit a cash or "
              "bank account.\n"
              "voucher 4 (Journal of 08/11/2024): not saved: row 1 amount: Row 1, Amount: Amounts are in rupees "
              "and paise: at most two decimals.\n");
    EXPECT_EQ(Sql(kLedger), before);
    ExpectBooksInOrder();
}

// The demo's payments show their UTR on the J-Forms they settle. A payment to Balwinder settles
// his J-Form 2 with its UTR; corrected, the form shows the new UTR; settling nothing, it shows
// none; deleted, its rows are gone. A form another payment settles is refused.
TEST_F(QxVoucher, APaymentWritesItsUtrToTheDocumentsItSettlesThroughEditAndDelete) {
    const std::string settled = "SELECT DOCSERIES, DOCNUMBER, UTRNO, UTRDATE FROM DOCMAIN WHERE UTRNO<>'' ORDER BY 1, 2";
    EXPECT_EQ(Sql(settled), "DOCSERIES,DOCNUMBER,UTRNo,UTRDate\n"
                            "JF,1,PUNBH24110798765,07/11/2024\nJF,3,PUNBH24110612345,06/11/2024\n"
                            "JF,4,PUNBH24110700871,07/11/2024\nJF,5,PUNBH24110612345,06/11/2024\n"
                            "JF,8,PUNBH24110798765,07/11/2024\n");
    // Opening balances are book and type 0B, which interest statements open an account with.
    EXPECT_EQ(Sql("SELECT D.DBOOK, D.DTRNTYPE, D.DAMT FROM FADATA D JOIN FAMASTER M ON M.MCD=D.DCD WHERE "
                  "M.MHD='GURMEET SINGH S/O KARNAIL SINGH' AND D.DBOOK<>'IJF' ORDER BY D.DVCHDATE"),
              "DBOOK,DTRNTYPE,DAMT\n0B,0B,150000\nPYMT,PYMT,25000\nPYMT,PYMT,65991\n");

    auto run = Enter(R"({"book": "Payment", "date": "08/11/2024", "rows": [
        {"account": "BALWINDER SINGH GREWAL", "debit": "10,200", "narration": "Paid by NEFT, J-Form 12/102"},
        {"account": "PUNJAB NATIONAL BANK", "credit": "10,200"}],
        "utrNo": "PUNBH24110811111", "utrDate": "08/11/2024",
        "settles": [{"series": "JF", "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "12", "FORM_NO": "102"}}]})");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "voucher 1 (Payment of 08/11/2024): saved as no. 14\n");
    const std::string form2 = "SELECT UTRNO, UTRDATE FROM DOCMAIN WHERE DOCSERIES='JF' AND DOCNUMBER=2";
    EXPECT_EQ(Sql(form2), "UTRNo,UTRDate\nPUNBH24110811111,08/11/2024\n");
    const auto formM = Qx({"report", path, "form-m", "--from", "04/11/2024", "--to", "10/11/2024", "--market", "KHANNA"});
    EXPECT_THAT(formM.out, testing::HasSubstr("PUNBH24110811111")) << formM.err;
    EXPECT_EQ(Sql("SELECT M.MHD, DAMT, DBOOK, N.NARRATION FROM (FADATA D JOIN FANAR N ON "
                  "N.NARRATIONID=D.NARRATIONID) JOIN FAMASTER M ON M.MCD=D.DCD WHERE VOUCHERID=14 ORDER BY DSRNO"),
              "MHD,DAMT,DBOOK,NARRATION\nBALWINDER SINGH GREWAL,10200,PYMT,\"Paid by NEFT, J-Form 12/102\"\n"
              "PUNJAB NATIONAL BANK,-10200,PYMT,\"Paid by NEFT, J-Form 12/102\"\n")
        << "the bank's row takes the narration of the row above";
    ExpectBooksInOrder();

    run = Enter(R"({"open": "14", "utrNo": "PUNBH24110822222", "utrDate": "09/11/2024"},
                   {"book": "Payment", "date": "08/11/2024", "rows": [
                       {"account": "GURMEET SINGH S/O KARNAIL SINGH", "debit": "1"},
                       {"account": "CASH", "credit": "1"}], "settles": [{"series": "JF", "number": "1"}]})");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "voucher 2 (Payment of 08/11/2024): not saved: saving: JF 1 is settled by voucher 13 already.\n");
    EXPECT_EQ(Sql(form2), "UTRNo,UTRDate\nPUNBH24110822222,09/11/2024\n");
    ExpectBooksInOrder();

    ASSERT_EQ(Enter(R"({"open": "14", "settles": []})").status, 0);
    EXPECT_EQ(Sql(form2), "UTRNo,UTRDate\n,\n");
    EXPECT_EQ(Sql("SELECT UTRNO FROM FADOCS WHERE VOUCHERID=14"), "UTRNO\nPUNBH24110822222\n")
        << "the payment keeps its own reference";
    ExpectBooksInOrder();

    run = Enter(R"({"open": "14", "action": "delete"}, {"open": "5", "action": "delete"})");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "voucher 1 (no. 14), deleting: [Q] Do you want to delete voucher no. 14?\n"
                       "voucher 1 (no. 14): deleted\n");
    EXPECT_THAT(run.err, testing::HasSubstr("Voucher no. 5 is posted by a document: change the document instead."));
    EXPECT_EQ(Sql("SELECT COUNT(*) FROM FADATA WHERE VOUCHERID=14"), "COUNT(*)\n0\n");
    ExpectBooksInOrder();
}

} // namespace
