// The books as the accountant reads them, on a company whose vouchers are written through the
// host's voucher-row operation, every figure worked by hand below.
#include "support/Desk.h"
#include "support/PrintedReport.h"

#include "desk/cli/Commands.h"
#include "desk/cli/ScreenScript.h"
#include "desk/core/PartyPicker.h"
#include "desk/core/PeriodDialog.h"
#include "desk/documents/BooksCheck.h"
#include "desk/ledgers/LedgerScreens.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

using namespace qx;
using testing::HasSubstr;
using Strings = std::vector<std::string>;

namespace {

enum Account { kGurmeet = 101, kPungrain, kMarkfed, kCash, kCapital, kCommission };

struct Row {
    int account;
    const char* amount; // positive debit, negative credit
    const char* narration;
};

// The books of 2024-25 (vouchers in the order they are posted):
//   V1 01/04/2024 0B    Gurmeet Dr 1,50,000.00 (an advance brought forward), Capital Cr
//   V2 01/04/2024 0B    Cash Dr 5,00,000.00, Capital Cr
//   V3 15/10/2024 PYMT  Gurmeet Dr 25,000.50, Cash Cr
//   V4 04/11/2024 JRNL  Pungrain Dr 2,00,000.00, Gurmeet Cr (his paddy sold to Pungrain)
//   V5 04/11/2024 PYMT  Gurmeet Dr 20,000.00, Cash Cr (the same day, posted after)
//   V6 04/11/2024 MEM   Gurmeet Dr 999.00, Cash Cr (a memorandum: not in the accounts)
//   V7 10/11/2024 RCPT  Cash Dr 2,00,000.00, Pungrain Cr
//   V8 10/11/2024 0B    Gurmeet Dr 1,234.56, Capital Cr (an opening balance entered late)
//   V9 20/11/2024 JRNL  Markfed Dr 10,000.00, Commission Cr
//   V10 30/11/2024 PYMT Gurmeet Dr 5,000.25, Cash Cr (on the last day of November)
//   V11 05/12/2024 PYMT Gurmeet Dr 500.00, Cash Cr (after November)
class LedgersTest : public test::DeskFixtureBase {
protected:
    void SetUp() override {
        path = test::MakeCompany(folder, "");
        desk::RegisterHostLedgers(app);
        app.OpenCompany(path);
        for (const auto& [code, name, group] : std::vector<std::tuple<int, const char*, int>>{
                 {kGurmeet, "GURMEET SINGH", 180}, {kPungrain, "PUNGRAIN", 40}, {kMarkfed, "MARKFED", 40},
                 {kCash, "CASH", 10}, {kCapital, "CAPITAL", 150}, {kCommission, "COMMISSION", 72}})
            Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST, MBSHNO) VALUES (" + std::to_string(code) + ", '" +
                            name + "', '', " + std::to_string(group) + ")");
        Post("01/04/2024", "0B", {{kGurmeet, "150000", "Advance brought forward"}, {kCapital, "-150000", ""}});
        Post("01/04/2024", "0B", {{kCash, "500000", "Cash in hand"}, {kCapital, "-500000", ""}});
        Post("15/10/2024", "PYMT", {{kGurmeet, "25000.50", "Advance for seed"}, {kCash, "-25000.50", ""}});
        Post("04/11/2024", "JRNL", {{kPungrain, "200000", "Paddy 100 qtl"}, {kGurmeet, "-200000", "Paddy sold"}});
        Post("04/11/2024", "PYMT", {{kGurmeet, "20000", "Paid in cash"}, {kCash, "-20000", ""}});
        Post("04/11/2024", "MEM", {{kGurmeet, "999", "Promised"}, {kCash, "-999", ""}});
        Post("10/11/2024", "RCPT", {{kCash, "200000", "From Pungrain"}, {kPungrain, "-200000", "Cheque"}});
        Post("10/11/2024", "0B", {{kGurmeet, "1234.56", "Old balance"}, {kCapital, "-1234.56", ""}});
        Post("20/11/2024", "JRNL", {{kMarkfed, "10000", "Commission due"}, {kCommission, "-10000", ""}});
        Post("30/11/2024", "PYMT", {{kGurmeet, "5000.25", "Paid in cash"}, {kCash, "-5000.25", ""}});
        Post("05/12/2024", "PYMT", {{kGurmeet, "500", "Paid in cash"}, {kCash, "-500", ""}});
    }
    // The books are proven after every test, as `qx check` proves them.
    void TearDown() override { EXPECT_EQ(desk::CheckBooks(app).faults, Strings{}); }

    // One voucher, its rows written through the host's voucher-row operation and registered, in
    // one unit of work; a book's code is also its rows' transaction type.
    void Post(const char* date, const char* book, const std::vector<Row>& rows) {
        CompanyDb& db = Db();
        const Date day = *Date::ParseDisplay(date);
        Transaction unit(db);
        const std::int32_t id = app.Vouchers().NextVoucherId(db);
        auto ledger = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
        int serial = 0;
        for (const Row& row : rows)
            app.Vouchers().AddVoucherRow(db, *ledger, {book, book, "", "", ++serial, day, row.account, id,
                                                       *Amount::Parse(row.amount), row.narration});
        db.ExecuteSql("INSERT INTO FADOCS (VOUCHERID, ISAUTOVOUCHER, VCHDATE, TRNTYPE) VALUES (" +
                      std::to_string(id) + ", 0, " + db.DateLiteral(day) + ", '" + book + "')");
        unit.Commit();
    }

    static Date Day(const char* text) { return *Date::ParseDisplay(text); }
    static std::string Run(const std::vector<std::string>& args, int expectedStatus) {
        std::ostringstream out, err;
        EXPECT_EQ(cli::Run(args, out, err), expectedStatus) << err.str();
        return expectedStatus == 0 ? out.str() : err.str();
    }
};

// Opening: V1 1,50,000.00 + V3 25,000.50 (before the From) + V8 1,234.56 (an opening entry,
// dated inside November) = 1,76,235.06 Dr. Then 04/11 Cr 2,00,000.00 leaves 23,764.94 Cr,
// Dr 20,000.00 leaves 3,764.94 Cr, 30/11 Dr 5,000.25 leaves 1,235.31 Dr. The memorandum and
// December are out. Debits 1,76,235.06 + 20,000.00 + 5,000.25 = 2,01,235.31, credits
// 2,00,000.00: their difference is the closing balance.
const Strings kGurmeetsNovember = {
    " 01/11/2024|||Opening Balance|1,76,235.06||1,76,235.06 Dr",
    " 04/11/2024|JRNL|4|Paddy sold||2,00,000.00|23,764.94 Cr",
    " 04/11/2024|PYMT|5|Paid in cash|20,000.00||3,764.94 Cr",
    " 30/11/2024|PYMT|10|Paid in cash|5,000.25||1,235.31 Dr",
    "*hline1*totals* |||Totals|2,01,235.31|2,00,000.00",
    "*headingfonts* |||Closing Balance|||1,235.31 Dr",
};

// The ledger screen: the period asked on opening, the party typed in any letter case (or a
// name of no account, refused in its box), the ledger shown in the grid as it prints.
TEST_F(LedgersTest, PartyLedgerOfAPeriodOnItsScreen) {
    frontend.QueueModal(desk::TypePeriod("01/11/2024", "30/11/2024"));
    app.ClickMenu(desk::kPartyLedgerKey);
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    ui::Screen& screen = *app.OpenScreens().back();
    auto& party = screen.Get<ui::TextBox>(desk::kPartyBox);
    EXPECT_EQ(screen.Focused(), &party);

    EXPECT_THROW(cli::TypeAndLeave(screen, party, "GURMIT SINGH", frontend), std::runtime_error);
    EXPECT_EQ(Messages(), Strings{"There is no account named \"GURMIT SINGH\"."});
    EXPECT_EQ(screen.Focused(), &party);

    cli::TypeAndLeave(screen, party, " gurmeet singh ", frontend);
    EXPECT_EQ(party.Text(), "GURMEET SINGH");
    const PrintJob& job = dynamic_cast<ReportSource&>(screen).Report();
    EXPECT_EQ(test::JobLines(job), kGurmeetsNovember);
    EXPECT_EQ(job.title2, "GURMEET SINGH   01/11/2024 to 30/11/2024");
    const auto& grid = screen.Get<ui::Grid>("Grid");
    EXPECT_EQ(grid.TextMatrix(2, 6), "23,764.94 Cr");
    EXPECT_EQ(grid.RowMarks(5), "*hline1*totals*");

    // F2: the host's party picker, opened at what was typed, every balance of the books with the
    // memorandum left out (Gurmeet 1,735.31 Dr: V1, V3, V4, V5, V8, V10 and V11); the ledger
    // becomes the one chosen.
    Strings balances;
    frontend.QueueModal([&balances](ui::Screen& picker) {
        auto& list = picker.Get<ui::Grid>(desk::kPartyPickerGrid);
        for (int row = 1; row < list.Rows(); ++row)
            balances.push_back(list.TextMatrix(row, 0) + "|" + list.TextMatrix(row, 2));
        EXPECT_EQ(list.TextMatrix(list.Row(), 0), "MARKFED") << "opens at what was typed";
        picker.KeyDown({ui::Key::Enter});
    });
    party.Type("MAR");
    ASSERT_TRUE(screen.KeyDown({ui::Key::F2}));
    EXPECT_EQ(balances, (Strings{"CAPITAL|6,51,234.56 Cr", "CASH|6,49,499.25 Dr", "COMMISSION|10,000.00 Cr",
                                 "GURMEET SINGH|1,735.31 Dr", "MARKFED|10,000.00 Dr", "PUNGRAIN|0.00"}));
    EXPECT_EQ(party.Text(), "MARKFED");
    EXPECT_EQ(job.title2, "MARKFED   01/11/2024 to 30/11/2024");
    // A balance of a fraction of a paisa is none, not "0.00 Dr".
    EXPECT_EQ(desk::BalanceText(*Amount::Parse("0.004")), "0.00");
    EXPECT_EQ(desk::BalanceText(*Amount::Parse("-0.0051")), "0.01 Cr");
    cli::TypeAndLeave(screen, party, "GURMEET SINGH", frontend);

    // A period before any entry of his but the opening ones: V1 and V8 are his opening.
    frontend.QueueModal(desk::TypePeriod("01/04/2024", "30/09/2024"));
    ASSERT_TRUE(screen.KeyDown({ui::Key::F6}));
    EXPECT_EQ(test::JobLines(job), (Strings{" 01/04/2024|||Opening Balance|1,51,234.56||1,51,234.56 Dr",
                                            "*hline1*totals* |||Totals|1,51,234.56|0.00",
                                            "*headingfonts* |||Closing Balance|||1,51,234.56 Dr"}));

#ifdef QX_WITH_PDF
    frontend.QueueModal(desk::TypePeriod("01/11/2024", "30/11/2024"));
    ASSERT_TRUE(screen.KeyDown({ui::Key::F6}));
    PrintJob printed = job;
    printed.firmName = "Test Trading Company";
    const std::string text = test::PrintedText(printed, "party-ledger");
    EXPECT_THAT(text, HasSubstr("1,76,235.06 Dr"));
    EXPECT_THAT(text, HasSubstr("Closing Balance"));
#endif
}

// Each voucher of the day under its date, number and book; the memorandum left out; an
// opening entry shown on its day. 04/11: V4 2,00,000.00 a side, V5 20,000.00 a side; to 10/11
// V7 2,00,000.00 and V8 1,234.56 more: 4,21,234.56 a side.
TEST_F(LedgersTest, DayBookShowsEveryVoucherAndItsTotalsAgree) {
    EXPECT_EQ(test::JobLines(desk::DayBookJob(Db(), {Day("04/11/2024"), Day("04/11/2024")})),
              (Strings{" 04/11/2024|4|JRNL|PUNGRAIN|Paddy 100 qtl|2,00,000.00",
                       " |||GURMEET SINGH|Paddy sold||2,00,000.00",
                       "*blanklinebefore* 04/11/2024|5|PYMT|GURMEET SINGH|Paid in cash|20,000.00",
                       " |||CASH|||20,000.00",
                       "*hline1*totals* |||Totals||2,20,000.00|2,20,000.00"}));
    const PrintJob week = desk::DayBookJob(Db(), {Day("04/11/2024"), Day("10/11/2024")});
    EXPECT_EQ(week.title2, "04/11/2024 to 10/11/2024");
    EXPECT_EQ(test::JobLines(week).back(), "*hline1*totals* |||Totals||4,21,234.56|4,21,234.56");
}

// As on 30/11/2024: Cash 5,00,000.00 - 25,000.50 - 20,000.00 + 2,00,000.00 - 5,000.25 =
// 6,49,999.25 Dr; Pungrain nil (left out, and so is his group); Markfed 10,000.00 Dr; Capital
// 1,50,000.00 + 5,00,000.00 + 1,234.56 = 6,51,234.56 Cr; Commission 10,000.00 Cr; Gurmeet
// 1,235.31 Dr, as his ledger closes. Debits 6,49,999.25 + 10,000.00 + 1,235.31 = 6,61,234.56,
// the credits' sum.
TEST_F(LedgersTest, TrialBalanceByGroupAgrees) {
    const PrintJob november = desk::TrialBalanceJob(Db(), Day("30/11/2024"));
    EXPECT_EQ(november.title2, "As on 30/11/2024");
    EXPECT_EQ(test::JobLines(november), (Strings{
                                            "*headingfonts* CASH-IN-HAND",
                                            " CASH|6,49,999.25",
                                            "*hline1*totals*totalreset* Sub Totals|6,49,999.25|0.00",
                                            "*headingfonts* SUNDRY DEBTORS",
                                            " MARKFED|10,000.00",
                                            "*hline1*totals*totalreset* Sub Totals|10,000.00|0.00",
                                            "*headingfonts* SALES ACCOUNTS",
                                            " COMMISSION||10,000.00",
                                            "*hline1*totals*totalreset* Sub Totals|0.00|10,000.00",
                                            "*headingfonts* CAPITAL ACCOUNT",
                                            " CAPITAL||6,51,234.56",
                                            "*hline1*totals*totalreset* Sub Totals|0.00|6,51,234.56",
                                            "*headingfonts* SUNDRY CREDITORS",
                                            " GURMEET SINGH|1,235.31",
                                            "*hline1*totals*totalreset* Sub Totals|1,235.31|0.00",
                                            "*bhline1*totals* Grand Totals|6,61,234.56|6,61,234.56",
                                        }));

    // As on 31/10/2024 the late opening entry V8 (10/11) counts already: Gurmeet 1,50,000.00 +
    // 25,000.50 + 1,234.56 = 1,76,235.06 Dr, Cash 4,74,999.50 Dr, Capital 6,51,234.56 Cr.
    const Strings october = test::JobLines(desk::TrialBalanceJob(Db(), Day("31/10/2024")));
    EXPECT_THAT(october, testing::Contains(" GURMEET SINGH|1,76,235.06"));
    EXPECT_EQ(october.back(), "*bhline1*totals* Grand Totals|6,51,234.56|6,51,234.56");

    // Books that do not balance show their difference on the short side.
    Db().ExecuteSql("UPDATE FADATA SET DAMT=DAMT+1 WHERE VOUCHERID=9 AND DAMT>0");
    EXPECT_EQ(test::JobLines(desk::TrialBalanceJob(Db(), Day("30/11/2024"))).back(),
              "*headingfonts* Difference||1.00");
    Db().ExecuteSql("UPDATE FADATA SET DAMT=DAMT-1 WHERE VOUCHERID=9 AND DAMT>0");
}

// As on 25/11/2024: Markfed 10,000.00 Dr since 20/11 (5 days); Gurmeet 1,76,235.06 -
// 2,00,000.00 + 20,000.00 = 3,764.94 Cr, his last entry the opening entry of 10/11 (15 days).
TEST_F(LedgersTest, OutstandingPartiesWithTheDaysSinceTheirLastEntry) {
    EXPECT_EQ(test::JobLines(desk::OutstandingJob(Db(), Day("25/11/2024"))),
              (Strings{"*headingfonts* SUNDRY DEBTORS", " MARKFED|10,000.00||20/11/2024|5",
                       "*hline1*totals*totalreset* Sub Totals|10,000.00|0.00", "*headingfonts* SUNDRY CREDITORS",
                       " GURMEET SINGH||3,764.94|10/11/2024|15",
                       "*hline1*totals*totalreset* Sub Totals|0.00|3,764.94",
                       "*bhline1*totals* Grand Totals|10,000.00|3,764.94"}));
}

// `qx report` makes the desk's reports by their names, and refuses what it cannot make.
TEST_F(LedgersTest, QxReportMakesTheBooksAndRefusesWhatItCannot) {
    const std::string company = path.string();
    const std::string csv = Run({"report", company, "ledger", "--party", "Gurmeet Singh", "--from", "01/11/2024",
                                 "--to", "30/11/2024", "--format", "csv"},
                                0);
    EXPECT_THAT(csv, HasSubstr("30/11/2024,PYMT,10,Paid in cash,\"5,000.25\",,\"1,235.31 Dr\""));
    EXPECT_THAT(Run({"report", company, "trial-balance", "--to", "30/11/2024"}, 0), HasSubstr("6,61,234.56"));
    EXPECT_THAT(Run({"report", company, "day-book", "--from", "04/11/2024"}, 0), HasSubstr("2,20,000.00"));
    EXPECT_THAT(Run({"report", company, "outstanding", "--to", "25/11/2024"}, 0), HasSubstr("3,764.94"));

    const std::vector<std::pair<Strings, std::string>> refused = {
        {{"ledger", "--party", "NOBODY", "--from", "01/11/2024"},
         "The report ledger was not made: There is no account named \"NOBODY\"."},
        {{"ledger", "--from", "01/11/2024"}, "A ledger is of one party: give it with --party NAME."},
        {{"ledger", "--party", "CASH", "--from", "31/11/2024"}, "--from: 31/11/2024 is not a date"},
        {{"trial-balance", "--from", "01/11/2024", "--to", "30/11/2024"},
         "The report trial-balance asks for one day: give it as --to."},
        {{"day-book", "--to", "30/11/2024"}, "The report day-book asks for a period: --to needs --from."},
        {{"day-book", "--party", "CASH", "--from", "04/11/2024"},
         "The report day-book takes no --party."},
    };
    for (const auto& [args, message] : refused) {
        Strings command{"report", company};
        command.insert(command.end(), args.begin(), args.end());
        EXPECT_THAT(Run(command, 1), HasSubstr(message));
    }
}

} // namespace
