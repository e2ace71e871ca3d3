// `qx report` on the demo company: the module's reports made through their own screens, as a
// user opens them, and saved as the accountant asks.
#include "support/Desk.h"

#include "desk/cli/Commands.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace qx;
using testing::HasSubstr;

namespace {

struct QxRun {
    int status;
    std::string out;
    std::string err;
};

class QxReport : public testing::Test {
protected:
    // One demo company for every test: reports only read it.
    static void SetUpTestSuite() {
        folder_ = new test::TempFolder;
        company_ = (folder_->Path() / "demo.kdb").string();
        ASSERT_EQ(Run({"demo", company_}).status, 0);
    }
    static void TearDownTestSuite() { delete folder_; }

    static QxRun Run(const std::vector<std::string>& args) {
        std::ostringstream out, err;
        const int status = cli::Run(args, out, err);
        return {status, out.str(), err.str()};
    }
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
    EXPECT_THAT(unknown.err, HasSubstr("There is no report \"weekly-summary\": the reports are daily-summary, "
                                       "item-summary, stock-register, form-m, daily-return."));

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

// Each report through its own screen, its opening dialogs answered from the command line; one
// figure of each worked by hand from the demo's forms.
TEST_F(QxReport, EachReportShowsTheDemosFormsThroughItsScreen) {
    // 04/11/2024 in Khanna: I-Form 3/501 takes PUNGRAIN's 75 quintals of paddy at 2,320 and its
    // weighing finds 15 kg more: 75.15 quintals, 1,74,348.00. The agent's own 10.40 quintals
    // (24,128.00) bear 3 % market fee and 3 % R.D.F. The goods account keeps the 0.15 quintal
    // given out on 3/501 less the 0.10 taken back on 3/503 (at 2,350): -0.05, -113.00.
    auto summary = Report({"daily-summary", "--from", "04/11/2024", "--market", "KHANNA", "--format", "csv"});
    ASSERT_EQ(summary.status, 0) << summary.err;
    EXPECT_THAT(summary.out, HasSubstr("04-Nov-2024,3,501,KHANNA,PUNGRAIN,PADDY,200,75.15,\"2,320.00\",,\"1,74,348.00\""));
    EXPECT_THAT(summary.out, HasSubstr("PADDY,20,10.40,\"2,320.00\",,\"24,128.00\",,,,,,,,90.00,723.84,723.84,"));
    EXPECT_THAT(summary.out, HasSubstr("KHANNA,,PADDY,,-0.05,,,-113.00,"));

    // The buyers' J-Forms of paddy that day: 75 quintals at 2,320 and 30 at 2,350.
    auto items = Report({"item-summary", "--from", "04/11/2024", "--market", "KHANNA", "--format", "csv"});
    ASSERT_EQ(items.status, 0) << items.err;
    EXPECT_THAT(items.out, HasSubstr("PADDY,280,105.00,\"2,44,500.00\","));

    // Paddy on 04/11/2024: received 75 + 30 waiting for their buyers and 10.40 bought, sold
    // 75.15 + 29.90 on the I-Forms: 10.35 left for the next day.
    auto stock = Report({"stock-register", "--from", "04/11/2024", "--to", "06/11/2024", "--format", "csv"});
    ASSERT_EQ(stock.status, 0) << stock.err;
    EXPECT_THAT(stock.out, HasSubstr("04/11/2024,0.00,115.40,115.40,105.05,10.35,"));

    // The week's return: 3 % of the 1,74,000.00 of J-Form 12/101 as market fee and as R.D.F.
    auto week = Report({"form-m", "--from", "04/11/2024", "--to", "10/11/2024", "--market", "all", "--format", "csv"});
    ASSERT_EQ(week.status, 0) << week.err;
    EXPECT_EQ(week.err, "") << "a week from Monday to Sunday asks nothing";
    EXPECT_THAT(week.out, HasSubstr("\"M.Fee\nR.D.F.\",\"5,220.00\n5,220.00\",75.00,\"2,320.00\",\"1,74,000.00\""));
    // A week from Tuesday: the Monday message only, and the return is made.
    auto tuesday = Report({"form-m", "--from", "05/11/2024", "--to", "11/11/2024", "--market", "KHANNA"});
    EXPECT_EQ(tuesday.status, 0);
    EXPECT_EQ(tuesday.err, "form-m: [Q] Starting day of report should be Monday.\r\nDo you want to continue?\n");

    // The daily return of the agent's own purchases, chosen in its list: his 10.40 quintals only.
    auto own = Report({"daily-return", "--from", "04/11/2024", "--market", "KHANNA", "--option",
                       "cmbFilter=Self Purchase Only", "--format", "csv"});
    ASSERT_EQ(own.status, 0) << own.err;
    EXPECT_THAT(own.out, HasSubstr(",20,10.40,\"2,320.00\",\"24,128.00\","));
    EXPECT_THAT(own.out, testing::Not(HasSubstr("75.00")));
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
    EXPECT_THAT(text.out, testing::StartsWith("Daily Summary\nDate: 04/11/2024 (Monday)    Market: KHANNA\n"));

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

} // namespace
