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

    auto noOption = Report({"daily-summary", "--option", "cmbOrder=Buyer wise", "--out", Out("x.txt").string()});
    EXPECT_EQ(noOption.status, 1);
    EXPECT_THAT(noOption.err, HasSubstr("The report has no option \"cmbOrder\""));
    EXPECT_FALSE(std::filesystem::exists(Out("x.txt")));

    // A binary format is not written to a terminal; a format not known is said.
    EXPECT_EQ(Report({"daily-summary", "--format", "xlsx"}).status, 2);
    EXPECT_EQ(Report({"daily-summary", "--format", "doc", "--out", Out("x.doc").string()}).status, 2);
}

// The same job in every format: text and CSV on the terminal or in a file, a workbook, a PDF.
TEST_F(QxReport, WritesTheReportInEachFormat) {
    auto text = Report({"daily-summary"});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_THAT(text.out, testing::StartsWith("Daily Summary\n"));

    auto csv = Report({"daily-summary", "--format", "csv"});
    ASSERT_EQ(csv.status, 0) << csv.err;
    EXPECT_THAT(csv.out, testing::StartsWith("Date,Book No.,Form No.,Market,Party,Item,Bags,Qty."));
    ASSERT_EQ(Report({"daily-summary", "--format", "csv", "--out", Out("summary.csv").string()}).status, 0);
    EXPECT_EQ(test::FileBytes(Out("summary.csv")), csv.out);

    ASSERT_EQ(Report({"daily-summary", "--format", "xlsx", "--out", Out("summary.xlsx").string()}).status, 0);
    EXPECT_EQ(test::FileBytes(Out("summary.xlsx")).substr(0, 2), "PK");
#ifdef QX_WITH_PDF
    auto pdf = Report({"daily-summary", "--format", "pdf", "--out", Out("summary.pdf").string()});
    ASSERT_EQ(pdf.status, 0) << pdf.err;
    EXPECT_EQ(test::FileBytes(Out("summary.pdf")).substr(0, 5), "%PDF-");
#endif
}

} // namespace
