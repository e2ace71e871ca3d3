// `qx report` on the demo company: the module's reports made through their own screens, as a
// user opens them, and saved as the accountant asks.
#include "support/QxRun.h"
#include "support/Desk.h"

#include "desk/cli/Commands.h"
#include "desk/qt/QtTestSupport.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

using namespace qx;
using testing::HasSubstr;
using testing::Not;

namespace {

using test::QxRun;

class QxReport : public testing::Test {
protected:
    // One demo company for every test: reports only read it.
    static void SetUpTestSuite() {
        folder_ = new test::TempFolder;
        company_ = (folder_->Path() / "demo.kdb").string();
        ASSERT_EQ(Run({"demo", company_}).status, 0);
    }
    static void TearDownTestSuite() { delete folder_; }

    static QxRun Run(const std::vector<std::string>& args) { return test::Qx(args); }
    static QxRun Report(std::vector<std::string> args) {
        args.insert(args.begin(), {"report", company_});
        return Run(args);
    }
    static std::filesystem::path Out(const std::string& name) { return folder_->Path() / name; }

    static inline test::TempFolder* folder_ = nullptr;
    static inline std::string company_;
};

// What cannot be made is refused with why, and no file is written.
TEST_F(QxReport, RefusesWhatItCannotMakeSayingWhy) {
    auto unknown = Report({"weekly-summary"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, HasSubstr("There is no report \"weekly-summary\": the reports are ledger, day-book, "
                                       "trial-balance, outstanding, daily-summary, item-summary, stock-register, "
                                       "form-m, daily-return, interest."));

    auto badDay = Report({"daily-summary", "--from", "31/02/2024"});
    EXPECT_EQ(badDay.status, 1);
    EXPECT_THAT(badDay.err, HasSubstr("--from: 31/02/2024 is not a date: February 2024 has 29 days."));

    const auto missing = Out("no-such-folder") / "summary.csv";
    auto unwritable = Report({"daily-summary", "--format", "csv", "--out", missing.string()});
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_THAT(unwritable.err, HasSubstr(missing.string() + " cannot be written: the folder " +
                                          missing.parent_path().string() + " does not exist."));
    EXPECT_FALSE(std::filesystem::exists(missing));

    // The screen's own refusal, in its words, ends the command before anything is written.
    auto backwards = Report({"stock-register", "--from", "06/11/2024", "--to", "04/11/2024", "--format", "csv",
                             "--out", Out("stock.csv").string()});
    EXPECT_EQ(backwards.status, 1);
    EXPECT_THAT(backwards.err, HasSubstr("[E] The period cannot end before it starts: To (04/11/2024) is before "
                                         "From (06/11/2024)."));
    EXPECT_FALSE(std::filesystem::exists(Out("stock.csv")));

    auto noMarket = Report({"form-m", "--market", "LUDHIANA"});
    EXPECT_EQ(noMarket.status, 1);
    EXPECT_THAT(noMarket.err, HasSubstr("There is no market \"LUDHIANA\" to choose: the list holds \"( All Markets )\", "
                                        "\"DORAHA\", \"JAGRAON\", \"KHANNA\""));

    auto noOption = Report({"daily-summary", "--option", "cmbOrder=Buyer wise", "--out", Out("x.txt").string()});
    EXPECT_EQ(noOption.status, 1);
    EXPECT_THAT(noOption.err, HasSubstr("The report has no option \"cmbOrder\""));
    EXPECT_FALSE(std::filesystem::exists(Out("x.txt")));

    // A binary format is not written to a terminal; a format not known is said.
    EXPECT_EQ(Report({"daily-summary", "--format", "xlsx"}).status, 2);
    EXPECT_EQ(Report({"daily-summary", "--format", "doc", "--out", Out("x.doc").string()}).status, 2);
}

// Each report of the demo through its own screen, compared whole with its golden file in
// tests/golden. A report that changes fails here; when the change is meant, write the files
// again with QX_UPDATE_GOLDEN=1 in the environment, and read the difference before committing.
//
// The demo's key figures, worked by hand from data/demo (rates per quintal or bag as its
// "Kivra Rates" set them; every bag of paddy 37.50 kg, of the rest 50 kg):
//
// daily-summary, 04/11/2024 to 06/11/2024, every market:
//   J-Form 12/101: 75 qtl x 2,320 = 1,74,000.00 for PUNGRAIN and the agent's own (SELF)
//     10.40 x 2,320 = 24,128.00 in 20 whole bags; labour 3.75 x (200 + 20) bags = 825.00; the
//     farmer's total 1,74,000 + 24,128 - 825 = 1,97,303.00. On the SELF line: labour (self)
//     4.50 x 20 = 90.00, market fee 3 % and R.D.F. 3 % of 24,128 = 723.84 each.
//   J-Form 12/103, SELF maize 8.30 x 2,090 = 17,347.00 in 16 bags: labour (self) 4.00 x 16 =
//     64.00, market fee and R.D.F. 2 % = 346.94 each.
//   J-Form 12/107: 18.75 x 2,340 = 43,875.00 less labour 3.75 x 50 = 187.50 is 43,687.50,
//     rounded to 43,688.00 with 0.50 round off.
//   I-Form 3/501 takes PUNGRAIN's 75 qtl with 15 kg more: 75.15 x 2,320 = 1,74,348.00; dami
//     2.5 % = 4,358.70, labour 4.50 x 200 = 900.00, loading 1.60 x 200 = 320.00, stitching
//     1.10 x 200 = 220.00, dharmada 0.05 % = 87.17; 1,80,233.87 rounded to 1,80,234.00 (0.13).
//   I-Form 3/502 takes Harjinder Kaur's 12 qtl of maize at the buyer's 2,080: 24,960.00 where
//     the J-Form gave the farmer 12 x 2,090 = 25,080.00: a loss of 120.00 on the goods account.
//   I-Form 9/601 takes Guru Kripa's basmati of J-Forms 7/201 (20 x 3,850 = 77,000) and 7/202
//     (16 x 3,900 = 62,400) as one line at the higher rate: 36 x 3,900 = 1,40,400.00, a surplus
//     of 1,40,400 - 1,39,400 = 1,000.00.
//   Mal Khata: 0.15 qtl given out on 3/501 (-348.00) less 0.10 taken back on 3/503 at 2,350
//     (+235.00): -0.05 qtl, -113.00; with the surplus and the loss the goods account closes at
//     -113 - 1,000 + 120 = -993.00.
//   Pending: PUNGRAIN's paddy 75 + 45 - 75 - 30 = 15 qtl; Guru Kripa's 30 + 18.75 - 30 = 18.75.
//     Their amounts over the period sum every line's amount with its sign, as the statement
//     does, so the 15 kg of 3/501 and the 10 kg of 3/503 stay in them: 34,800 - 348 =
//     34,452.00 and 43,875 + 235 = 44,110.00; the highest rate is 2,350 of form 12/102. On the
//     day alone (06/11/2024) they are 15 x 2,320 = 34,800.00 and 18.75 x 2,340 = 43,875.00.
// item-summary, the same period (CSV): labour of J-Form 12/101 shared by value, 825 x 24,128 /
//   1,98,128 = 100.47 on the SELF paddy and 825 x 1,74,000 / 1,98,128 = 724.53 on PUNGRAIN's; the
//   buyers' paddy labour 724.53 + 300 + 450 + 187.50 = 1,662.03; I-Form paddy 75.15 + 29.90 +
//   30 = 135.05 qtl, dami 4,358.70 + 1,756.62 (2.5 % of 70,265, half to even) + 1,740 = 7,855.32.
// stock-register, November 2024: paddy received on 04/11 75 + 30 + 10.40 = 115.40, sold on
//   the I-Forms 75.15 + 29.90 = 105.05, leaving 10.35; on 06/11 received 45 + 18.75 on J-Forms
//   and 12 bought at Doraha = 75.75, sold 30: 10.35 + 75.75 - 30 = 56.10, which is the agent's
//   own 10.35 + 12 and the 33.75 qtl still pending. Maize: 12 in and out on 04/11, 8.30 own on
//   05/11, 40 bought from outside on 06/11: 48.30.
// form-m, 04/11/2024 to 10/11/2024: market fee and R.D.F. 3 % of 12/101's 1,74,000 =
//   5,220.00; Khanna's fees 5,220 + 723.84 + 2,115 + 501.60 + 346.94 + 3,132 + 1,316.25 =
//   13,355.63; its farmers' J-Form amounts 1,97,303 + 70,200 + 25,002 + 17,295 + 1,03,950 +
//   43,688 = 4,57,438.00; the net payable to Balwinder Singh on 7/202 62,400 - 3.75 x 32 =
//   62,280.00, not yet paid (no UTR); Gurmeet Singh's 12/101 and 12/107 show the UTR of the one
//   payment that settles both, PUNBH24110798765 of 07/11/2024; the own purchases 10.40 + 8.30 +
//   the 12 qtl of the Doraha purchase = 30.70 qtl, 69,075.00, fees 1,898.78 each.
// daily-return, 05/11/2024: Khanna's one form, the SELF maize of 12/103 (17,295.00 net after
//   52.00 labour); Jagraon's basmati 20 + 16 = 36 qtl in 72 bags, 1,39,400.00, paid to the
//   farmers 76,850 + 62,280 = 1,39,130.00.
TEST_F(QxReport, EachReportOfTheDemoIsItsGoldenFile) {
    struct Case {
        std::string golden;
        std::vector<std::string> args;
    };
    const std::vector<Case> cases = {
        {"demo-daily-summary.txt", {"daily-summary", "--from", "04/11/2024", "--to", "06/11/2024", "--market", "all"}},
        {"demo-daily-summary-khanna-06-11.txt", {"daily-summary", "--from", "06/11/2024", "--market", "KHANNA"}},
        {"demo-item-summary.csv",
         {"item-summary", "--from", "04/11/2024", "--to", "06/11/2024", "--market", "all", "--format", "csv"}},
        {"demo-stock-register.txt", {"stock-register", "--from", "01/11/2024", "--to", "30/11/2024"}},
        {"demo-form-m.txt", {"form-m", "--from", "04/11/2024", "--to", "10/11/2024", "--market", "all"}},
        {"demo-daily-return.txt", {"daily-return", "--from", "05/11/2024", "--market", "all"}},
    };
    const bool update = std::getenv("QX_UPDATE_GOLDEN") != nullptr;
    for (const Case& report : cases) {
        SCOPED_TRACE(report.golden);
        const auto made = Report(report.args);
        ASSERT_EQ(made.status, 0) << made.err;
        // A week from Monday to Sunday, a day or a period of the other reports asks nothing.
        EXPECT_EQ(made.err, "");
        const auto golden = std::filesystem::path(QX_GOLDEN_DIR) / report.golden;
        if (update) std::ofstream(golden, std::ios::binary) << made.out;
        EXPECT_EQ(made.out, test::FileBytes(golden)) << "compare with " << golden.string();
    }
}

// A week from Tuesday: the Monday message only, and the return is made.
TEST_F(QxReport, AWeekFromTuesdayIsToldOnlyOfTheMonday) {
    auto tuesday = Report({"form-m", "--from", "05/11/2024", "--to", "11/11/2024", "--market", "KHANNA"});
    EXPECT_EQ(tuesday.status, 0);
    EXPECT_EQ(tuesday.err, "form-m: [Q] Starting day of report should be Monday.\r\nDo you want to continue?\n");
}

// The same job in every format: text on the terminal, CSV, a workbook, a PDF in a file.
TEST_F(QxReport, WritesTheReportInEachFormat) {
    const std::vector<std::string> day = {"daily-summary", "--from", "04/11/2024", "--market", "KHANNA"};
    auto with = [&](std::vector<std::string> more) {
        more.insert(more.begin(), day.begin(), day.end());
        return Report(more);
    };
    auto text = with({});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_THAT(text.out, testing::StartsWith("Guru Nanak Trading Company, Khanna\nDaily Summary\n"
                                              "Date: 04/11/2024 (Monday)    Market: KHANNA\n"));

    auto csv = with({"--format", "csv"});
    ASSERT_EQ(with({"--format", "csv", "--out", Out("summary.csv").string()}).status, 0);
    EXPECT_EQ(test::FileBytes(Out("summary.csv")), csv.out);
    ASSERT_EQ(with({"--format", "xlsx", "--out", Out("summary.xlsx").string()}).status, 0);
    EXPECT_EQ(test::FileBytes(Out("summary.xlsx")).substr(0, 2), "PK");
#ifdef QX_WITH_PDF
    auto pdf = with({"--format", "pdf", "--out", Out("summary.pdf").string()});
    ASSERT_EQ(pdf.status, 0) << pdf.err;
    EXPECT_EQ(test::FileBytes(Out("summary.pdf")).substr(0, 5), "%PDF-");
#endif
}

// Spaces run together, as a farmer reads a line whatever its columns' widths.
std::string Squeezed(const std::string& text) { return std::regex_replace(text, std::regex(" +"), " "); }

// The papers of the demo, as `qx print` makes them. J-Form 101 sold 75 qtl of paddy to PUNGRAIN
// and 10.40 qtl to the agent himself (SELF), both at 2,320: 1,74,000 + 24,128 = 1,98,128 less
// the labour of its bags, 825, is 1,97,303 to pay the farmer (the J-Form amount of Form M); the
// SELF line bears market fee and R.D.F. at 3% of 24,128, 723.84 each. I-Form 501 bills
// PUNGRAIN 75.15 qtl at 2,320 = 1,74,348 with dami 2.5% 4,358.70, labour, loading and
// stitching on 200 bags at 4.50, 1.60 and 1.10, and dharmada 0.05% 87.17: 1,80,233.87,
// 1,80,234 rounded.
TEST_F(QxReport, PrintsTheFarmersCopyAndTheBuyersBill) {
    const auto jForm = Run({"print", company_, "JF", "1"});
    ASSERT_EQ(jForm.status, 0) << jForm.err;
    for (const char* line :
         {"GURU NANAK TRADING COMPANY\nCommission Agents, Shop No. 14", "Licence No. KHN/CA/0147/2024-25",
          "\nJ-Form No. 101 (Farmer's Copy)\nMarket: KHANNA Book No. 12 Date: 04/11/2024\n"
          "Farmer: GURMEET SINGH S/O KARNAIL SINGH\n",
          " 1 PADDY PUNGRAIN 37.50 75.00 75.00 200 2,320.00 1,74,000.00\n",
          " 2 PADDY SELF 50.00 10.40 10.00 10.50 20 40.00 2,320.00 24,128.00\n",
          " Gross Amount 1,98,128.00\n Labour (per bag) -825.00\n Net Payable 1,97,303.00\n"
          "Rupees One Lakh Ninety Seven Thousand Three Hundred Three Only\n",
          " Levies on purchases for own account (SELF):\n M.Fee @ 3% on 24,128.00 723.84\n"
          " R.D.F. @ 3% on 24,128.00 723.84\n Total Levies 1,447.68\n",
          "For Guru Nanak Trading Company"})
        EXPECT_THAT(Squeezed(jForm.out), HasSubstr(line));

    const auto iForm = Run({"print", company_, "IF", "1"});
    ASSERT_EQ(iForm.status, 0) << iForm.err;
    for (const char* line :
         {"\nI-Form No. 501 (Buyer's Bill)\nMarket: KHANNA Book No. 3 Date: 04/11/2024\nBuyer: PUNGRAIN\n",
          " Gross Amount 1,74,348.00\n Dami % 4,358.70\n Labour (per bag) 900.00\n Loading (per bag) 320.00\n"
          " Stitching (per bag) 220.00\n Dharmada % 87.17\n Round Off 0.13\n Bill Amount 1,80,234.00\n"
          "Rupees One Lakh Eighty Thousand Two Hundred Thirty Four Only\n"})
        EXPECT_THAT(Squeezed(iForm.out), HasSubstr(line));
    EXPECT_THAT(iForm.out, Not(HasSubstr("Levies"))) << "a buyer's bill bears no levies of the agent's";

    const auto missing = Run({"print", company_, "JF", "99"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("JF has no document no. 99."));
    EXPECT_EQ(Run({"print", company_, "JF"}).status, 2);

#ifdef QX_WITH_PDF
    // On paper: one page each, nothing cut short, kept as PNG for a person to look at.
    for (const auto& [series, name] : {std::pair{"JF", "j-form-101"}, {"IF", "i-form-501"}, {"JF", "j-form-106"}}) {
        const auto pdf = test::OutputFolder() / (std::string(name) + ".pdf");
        const std::string number = std::string(name) == "j-form-106" ? "7" : "1";
        const auto written = Run({"print", company_, series, number, "--format", "pdf", "--out", pdf.string()});
        ASSERT_EQ(written.status, 0) << written.err;
        EXPECT_EQ(test::PdfPages(pdf), 1) << name;
        const std::string text = test::PdfPageText(pdf, 1);
        EXPECT_THAT(text, Not(HasSubstr("…"))) << name;
        EXPECT_THAT(text, HasSubstr(" Only")) << name;
        test::RunTool("pdftoppm -png -r 70 '" + pdf.string() + "' '" + (test::OutputFolder() / name).string() + "'");
    }
#endif
}

} // namespace
