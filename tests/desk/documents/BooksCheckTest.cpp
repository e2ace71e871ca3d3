// Proving the books as `qx check` does: a company as the engine leaves it passes, and each
// kind of fault, planted by SQL as a power cut or a careless program would leave it, is said
// in one line a clerk or his accountant reads.
#include "DocumentsFixture.h"

using namespace qx;
using test::Strings;

namespace {

class BooksCheckTest : public test::DocumentsFixture {
protected:
    // A sale of wheat and moong, with its voucher.
    void SaveSale() {
        auto& screen = OpenSeries();
        TypeWheatAndMoong(screen);
        ASSERT_TRUE(Press(screen, ui::Key::F10));
        faultsPlanted = true;
    }
    Strings Faults() { return desk::CheckBooks(app).faults; }
};

TEST_F(BooksCheckTest, EachFaultOfTheDesksBooksIsSaidInOneLine) {
    SaveSale();
    EXPECT_EQ(Faults(), Strings{});

    for (const char* plant : {
             // A voucher row changed, a figure of the first line, the round off, the header's
             // copy of the labour charge, the second line's item.
             "UPDATE FADATA SET DAMT=DAMT+100000 WHERE DSRNO=1",
             "UPDATE DOCDATA SET AMOUNT=AMOUNT+1 WHERE REFNO=1",
             "UPDATE DOCMAIN SET ROUNDOFFAMT=0.5",
             "UPDATE DOCMAIN SET LABOUR=71",
             "UPDATE DOCDATA SET PRODUCTID=9 WHERE REFNO=2",
             // A header without lines, whose party and voucher are gone.
             "INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, "
             "PARTYCODE, VOUCHERID) VALUES (9, 'SL', 1, 9, '2024-05-06', 55, 8)",
             // A ledger row of no registered voucher, no account and no document.
             "INSERT INTO FADATA (VOUCHERID, DSRNO, DCD, DVCHDATE, DAMT, DDOCUMENTID) VALUES "
             "(7, 1, 99, '2024-05-07', 0, 40)",
         })
        Db().ExecuteSql(plant);
    EXPECT_EQ(Faults(),
              (Strings{
                  "Voucher 1 of 05/05/2024 does not balance: debits 1,13,172.04, credits "
                  "13,172.04.",
                  "Voucher 7 of 07/05/2024 is not in the voucher register.",
                  "Voucher 7 of 07/05/2024 posts to account 99, which is not in the masters.",
                  "Voucher 7 of 07/05/2024 posts document 40, which is not in the company.",
                  "SL no. 9 of 06/05/2024 names voucher 8, but the books hold no voucher 8 of "
                  "this document.",
                  "SL no. 9 of 06/05/2024 has no lines.",
                  "SL no. 1 of 05/05/2024: its gross amount 13,001.95 is not the sum of its "
                  "lines, 13,002.95.",
                  "SL no. 1 of 05/05/2024: its grand total 12,912.00 is not its gross amount "
                  "with its charges and round off, 12,912.41.",
                  "SL no. 1 of 05/05/2024: its Labour is 70.00 but its header keeps 71.00.",
                  "SL no. 9 of 06/05/2024: its party, account 55, is not in the masters.",
                  "SL no. 1 of 05/05/2024, line 2: its item, code 9, is not in the masters.",
              }));
}

// A module answers for the automatic vouchers it vouches for, and adds its own faults and
// notes; books it could not check are not proven.
TEST_F(BooksCheckTest, ModulesAnswerForTheirOwnVouchersAndRules) {
    SaveSale();
    Db().ExecuteSql("UPDATE FADATA SET DAMT=DAMT+1 WHERE DSRNO=1");
    const std::string unbalanced =
        "Voucher 1 of 05/05/2024 does not balance: debits 13,173.04, credits 13,172.04.";
    module.vouchedTypes = "PUR, SAL";
    module.checkBooks = [](Value& faults, Value& notes) {
        faults = "The sale is not in its register.\n";
        notes = "Voucher 1 holds one rupee more on purpose.\n";
    };
    const desk::BooksReport report = desk::CheckBooks(app);
    EXPECT_EQ(report.faults, Strings{"The sale is not in its register."});
    EXPECT_EQ(report.notes, Strings{"Voucher 1 holds one rupee more on purpose."});

    // Only automatic vouchers are the modules' to vouch for.
    Db().ExecuteSql("UPDATE FADOCS SET ISAUTOVOUCHER=0");
    module.checkBooks = [](Value&, Value&) { throw DbError("the company is read-only"); };
    EXPECT_EQ(Faults(), (Strings{unbalanced, "The checks of the module TestDocuments could not be "
                                             "made: the company is read-only"}));
}

} // namespace
