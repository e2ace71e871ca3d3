// The interest statements of the books of support/InterestBooks.h, worked out by hand, through
// the two screens as a user drives them and through `qx report`. Every figure of interest below
// is amount x rate / 100 / year x days, rounded half to even to two places.
#include "support/DeskFixture.h"
#include "support/InterestBooks.h"

#include "desk/cli/Commands.h"
#include "desk/core/PartyPicker.h"
#include "desk/core/PeriodDialog.h"
#include "desk/core/ReportFile.h"
#include "desk/qt/QtTestSupport.h"
#include "kivra/interest/InterestGrid.h"
#include "kivra/interest/frmKivraInterest2.h"

#include <gmock/gmock.h>

#include <sstream>

using namespace qx;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using Strings = std::vector<std::string>;

namespace {

// GURMEET SINGH on the first screen: the opening entry of 10/04 is in the opening balance
// (10,000 + 1,000 = 11,000 Dr); the memoranda and the "zzz" rebate are left out.
// Method 1, year 365, 12 %:
//   opening 11,000 from 01/04 to 01/05: 30 days: 11,000 x 12 / 100 / 365 x 30 = 108.4931 -> 108.49
//   4,000 Cr on 01/05, the same day as the next entry: 0 days, no interest
//   1,500 Dr on 01/05: balance 8,500 to 30/06: 60 days: 1,020 / 365 x 60 = 167.6712 -> 167.67
//   9,000 Cr on 30/06: balance -500 for the To date itself, 1 day: -60 / 365 = -0.1644 -> -0.16
//   interest 108.49 + 167.67 - 0.16 = 276.00
//   grace on credit entries (13,000) for 15 days: 1,560 / 365 x 15 = 64.1096 -> 64.11
//   interest after grace 276.00 - 64.11 = 211.89; closing -500 + 211.89 = -288.11: 288.11Cr
const Strings kFirstMethod1 = {
    "|01/04/2024|0B|Opening Balance|11,000.00||11,000.00|30|108.49",
    "1|01/05/2024|JF|J-Form 101 paddy||4,000.00|7,000.00|0",
    "2|01/05/2024|CB|Cash for diesel|1,500.00||8,500.00|60|167.67",
    "3|30/06/2024|JF|J-Form 245 wheat||9,000.00|-500.00|1|-0.16",
    "|||Total|12,500.00|13,000.00|||276.00",
    "||||||Grace Days|15|64.11",
    "||||||Interest @|12%|211.89",
    "||||||Closing Bal||-500.00",
    "|||||||After Inter.|288.11Cr",
};

// Method 2, year 360: each entry's own amount to the To date; the opening balance earns none.
//   4,000 Cr from 01/05 to 30/06, 60 days: 480 / 360 x 60 = 80.00 Cr
//   1,500 Dr, 60 days: 180 / 360 x 60 = 30.00 Dr
//   9,000 Cr on 30/06: 0 days, 0.00; its Days then show 1 (the To date counted)
//   Balance(Cr-Dr) 80.00 - 30.00 = 50.00
//   grace: 1,560 / 360 x 15 = 65.00 (hidden with the Interest column: see the statement)
const Strings kFirstMethod2 = {
    "|01/04/2024|0B|Opening Balance|11,000.00||11,000.00",
    "1|01/05/2024|JF|J-Form 101 paddy||4,000.00|7,000.00|60||80.00",
    "2|01/05/2024|CB|Cash for diesel|1,500.00||8,500.00|60|30.00",
    "3|30/06/2024|JF|J-Form 245 wheat||9,000.00|-500.00|1||0.00",
    "|||Total|12,500.00|13,000.00|||30.00|80.00",
    "||||Total Debit|Balance(Cr-Dr)|||30.00|50.00",
    "||||||Grace Days|15",
    "||||||Interest @|12%",
    "||||||Closing Bal",
    "|||||||After Inter.",
};

// GURMEET SINGH on the second screen, Total Days 365, Method 1: the opening balance is what
// lies before 01/04 but the memorandum (10,000, book "OB"); every row of the period shows.
//   10,000 from 01/04 to 10/04,  9 days: 1,200 / 365 x  9 =  29.5890 ->  29.59
//   11,000 from 10/04 to 01/05, 21 days: 1,320 / 365 x 21 =  75.9452 ->  75.95
//    7,000 on 01/05, 0 days
//    8,500 from 01/05 to 15/05, 14 days: 1,020 / 365 x 14 =  39.1233 ->  39.12
//    8,800 from 15/05 to 20/05,  5 days: 1,056 / 365 x  5 =  14.4658 ->  14.47
//    8,600 from 20/05 to 30/06, 41 days: 1,032 / 365 x 41 = 115.9233 -> 115.92
//     -400 on 30/06, 1 day:                 -48 / 365      =  -0.1315 ->  -0.13
//   interest 274.92; grace on credits 13,200 for 15 days: 1,584 / 365 x 15 = 65.0959 -> 65.10
//   after grace 209.82; closing -400 + 209.82 = -190.18: 190.18Cr
const Strings kSecondMethod1 = {
    "|01/04/2024|OB|Opening Balance|10,000.00||10,000.00|9|29.59",
    "1|10/04/2024|0B|Opening balance of the old books|1,000.00||11,000.00|21|75.95",
    "2|01/05/2024|JF|J-Form 101 paddy||4,000.00|7,000.00|0",
    "3|01/05/2024|CB|Cash for diesel|1,500.00||8,500.00|14|39.12",
    "4|15/05/2024|MEM|Memo: bags lent|300.00||8,800.00|5|14.47",
    "5|20/05/2024|JV|Rebate (zzz)||200.00|8,600.00|41|115.92",
    "6|30/06/2024|JF|J-Form 245 wheat||9,000.00|-400.00|1|-0.13",
    "|||Total|12,800.00|13,200.00|||274.92",
    "||||||Grace Days|15|65.10",
    "||||||Interest @|12%|209.82",
    "||||||Closing Bal||-400.00",
    "|||||||After Inter.|190.18Cr",
};

// The grid as the screen shows it: each row's visible cells joined by "|" up to the last one
// filled.
Strings Shown(const PrintJob& job) {
    Strings lines;
    for (const PrintRow& row : job.rows) {
        std::size_t filled = row.cells.size();
        while (filled > 0 && row.cells[filled - 1].empty()) --filled;
        std::string line;
        for (std::size_t c = 0; c < filled; ++c) line += (c ? "|" : "") + row.cells[c];
        lines.push_back(line);
    }
    return lines;
}

class InterestTest : public test::DeskFixture {
protected:
    void SetUp() override {
        OpenWithModule();
        test::PostInterestBooks(Db());
        app.RefreshMenus();
    }

    kivra::InterestForm& Open(const std::string& key) {
        app.ClickMenu(key);
        return dynamic_cast<kivra::InterestForm&>(*app.OpenScreens().back());
    }
    static ui::TextBox& Box(kivra::InterestForm& screen, const char* name) { return screen.Get<ui::TextBox>(name); }
    // Types into a box and leaves it as Enter does.
    static void Type(kivra::InterestForm& screen, const char* box, const std::string& text) {
        screen.Focus(Box(screen, box));
        Box(screen, box).Type(text);
        screen.KeyDown({ui::Key::Enter});
    }
    static void Method(kivra::InterestForm& screen, int index) { screen.Get<ui::OptionGroup>("optInterest").Click(index); }
    // F6 and the host's period dialog.
    void PeriodByDialog(kivra::InterestForm& screen, const char* from = "01/04/2024", const char* to = "30/06/2024") {
        frontend.QueueModal([=](ui::Screen& dialog) {
            dialog.Get<ui::TextBox>(desk::kPeriodFromBox).Type(from);
            dialog.Get<ui::TextBox>(desk::kPeriodToBox).Type(to);
            dialog.Get<ui::StdButtons>("OKCancel").Click(0);
        });
        screen.KeyDown({ui::Key::F6});
    }
    // F2 opens the period panel; its OK works the statement out.
    static void PeriodOnPanel(kivra::InterestForm& screen) {
        screen.KeyDown({ui::Key::F2});
        screen.Get<ui::PeriodBox>("CPeriod1").SetPeriod(Date::FromYmd(2024, 4, 1), Date::FromYmd(2024, 6, 30));
        screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
    }
};

TEST_F(InterestTest, TheFirstScreenByBothMethodsAndRecalculate) {
    EXPECT_EQ(app.MiscMenu().size(), 2u);
    auto& screen = Open("KVINT");
    EXPECT_EQ(screen.Caption(), "Kivra Interest Calc.");
    Type(screen, "txpParty", "gurmeet singh");
    EXPECT_EQ(Box(screen, "txpParty").Text(), "GURMEET SINGH");
    EXPECT_EQ(Box(screen, "txpCreditDays").Text(), "15") << "filled from the account";
    EXPECT_EQ(Box(screen, "txpInterestRate").Text(), "12");
    EXPECT_EQ(screen.Get<ui::Label>("lblPartyInfo").Text(), "Balance: 700.00Cr");
    PeriodByDialog(screen);
    EXPECT_EQ(screen.Get<ui::Label>("lblHeading").Text(), "Period: 01/04/2024 to 30/06/2024");
    EXPECT_THAT(Shown(screen.Report()), ElementsAreArray(kFirstMethod1));
    EXPECT_EQ(screen.Report().title2, "Party: GURMEET SINGH");
#ifdef QX_WITH_PDF
    // Printed for the party: interest-statement.pdf, its page kept as interest-statement-1.png.
    const auto pdf = test::OutputFolder() / "interest-statement.pdf";
    desk::SaveReport(screen.Report(), desk::ReportFormat::Pdf, pdf);
    const std::string printed = test::PdfPageText(pdf, 1);
    for (const char* text : {"Period: 01/04/2024 to 30/06/2024", "Party: GURMEET SINGH", "108.49", "Grace Days", "288.11Cr"})
        EXPECT_THAT(printed, HasSubstr(text));
    test::RunTool("pdftoppm -png -r 60 -f 1 -l 1 '" + pdf.string() + "' '" +
                  (test::OutputFolder() / "interest-statement").string() + "'");
#endif

    Method(screen, 1);
    EXPECT_FALSE(screen.Get<ui::OptionGroup>("optGrace").Visible()) << "grace is chosen for Method 1";
    screen.KeyDown({ui::Key::F7});
    EXPECT_THAT(Shown(screen.Report()), ElementsAreArray(kFirstMethod2));
    const auto& totals = screen.Statement()->totals;
    EXPECT_EQ(totals.graceInterest, *Amount::Parse("65.00"));
    EXPECT_EQ(totals.afterGrace, *Amount::Parse("-65.00")) << "Method 2 has no Interest: 0 - 65.00";
    EXPECT_EQ(totals.afterInterest, *Amount::Parse("-565.00"));

    // Only Days and Rate take typing in Method 2. The 1,500 Dr for 90 days at 18 % (the Rate
    // column is hidden: set as the program sets it): 270 / 360 x 90 = 67.50; Recalculate
    // also works the To date's 9,000 Cr on its shown 1 day: 1,080 / 360 = 3.00 Cr.
    auto& grid = screen.Get<ui::Grid>("Grid");
    ASSERT_TRUE(grid.MoveTo(3, kivra::kDebitCol));
    grid.Type("9");
    EXPECT_FALSE(grid.Editing()) << "Debit is not for typing in Method 2";
    ASSERT_TRUE(grid.MoveTo(3, kivra::kDaysCol));
    grid.Type("90");
    ASSERT_TRUE(grid.Commit());
    grid.SetTextMatrix(3, kivra::kRateCol, "18");
    screen.Get<ui::Button>("btnRecalculate").Click();
    const Strings recalculated = Shown(screen.Report());
    EXPECT_EQ(recalculated[2], "2|01/05/2024|CB|Cash for diesel|1,500.00||8,500.00|90|67.50");
    EXPECT_EQ(recalculated[3], "3|30/06/2024|JF|J-Form 245 wheat||9,000.00|-500.00|1||3.00");
    EXPECT_EQ(recalculated[4], "|||Total|12,500.00|13,000.00|||67.50|83.00");
    EXPECT_EQ(recalculated[5], "||||Total Debit|Balance(Cr-Dr)|||67.50|15.50");
}

TEST_F(InterestTest, TheSecondScreenShowsEveryRowAndCountsItsTotalDays) {
    auto& screen = Open("KVIN2");
    EXPECT_EQ(screen.Caption(), "Kivra Interest Calculation");
    Type(screen, "txpParty", "GURMEET SINGH");
    Type(screen, "txpTotalDays", "365");
    PeriodOnPanel(screen);
    EXPECT_EQ(screen.Get<ui::Label>("lblHeading").Text(),
              "Interest Calculation A/c GURMEET SINGH From 01/04/2024 To 30/06/2024");
    EXPECT_THAT(Shown(screen.Report()), ElementsAreArray(kSecondMethod1));
    EXPECT_EQ(screen.Report().columns[0].caption, "SNo.");

    // "Insert Row On Top" does nothing; closing with the period panel open is refused.
    screen.Get<ui::Button>("btnInsertRow").Click();
    EXPECT_THAT(Shown(screen.Report()), ElementsAreArray(kSecondMethod1));
    screen.KeyDown({ui::Key::F2});
    EXPECT_FALSE(screen.Get<ui::ButtonBar>("BtnBarTop").Enabled());
    EXPECT_FALSE(app.CloseScreen(screen));
    screen.Get<ui::StdButtons>("TarStdButtons1").Click(2);
    EXPECT_EQ(app.OpenScreens().size(), 1u);
    screen.Get<ui::StdButtons>("btnOKCancel").Click(1);
    EXPECT_TRUE(app.CloseScreen(screen));

    // A year of no days cannot be worked with.
    auto& again = Open("KVIN2");
    Type(again, "txpParty", "GURMEET SINGH");
    PeriodOnPanel(again);
    EXPECT_EQ(Messages().back(), "Total Days must be a whole number from 1 to 9999.");
    EXPECT_FALSE(again.Statement());
}

// PUNGRAIN has no opening entry, memorandum or "zzz" in the period: the second screen on 365
// and 360 days gives the first screen's figures (its opening row's book aside), and the first
// screen gives the same statement as GURMEET SINGH's, whose 11,000 came partly as an opening
// entry inside the period.
TEST_F(InterestTest, TotalDaysOf365And360ReproduceTheFirstScreen) {
    auto sameBook = [](Strings lines) {
        for (auto& line : lines)
            if (auto at = line.find("|OB|"); at != std::string::npos) line.replace(at, 4, "|0B|");
        return lines;
    };
    auto& first = Open("KVINT");
    Type(first, "txpParty", "PUNGRAIN");
    PeriodByDialog(first);
    EXPECT_THAT(Shown(first.Report()), ElementsAreArray(kFirstMethod1));
    Method(first, 1);
    first.KeyDown({ui::Key::F7});
    EXPECT_THAT(Shown(first.Report()), ElementsAreArray(kFirstMethod2));

    auto& second = Open("KVIN2");
    Type(second, "txpParty", "PUNGRAIN");
    Type(second, "txpTotalDays", "365");
    PeriodOnPanel(second);
    EXPECT_THAT(sameBook(Shown(second.Report())), ElementsAreArray(kFirstMethod1));
    Method(second, 1);
    Type(second, "txpTotalDays", "360");
    second.KeyDown({ui::Key::F7});
    Strings method2 = kFirstMethod2;
    method2[5] = "||||Total Debit|Balance(Cr-Dr)|Total Dr(Intr)|Balance|30.00|50.00";
    EXPECT_THAT(sameBook(Shown(second.Report())), ElementsAreArray(method2));
}

// HARPAL SINGH: 5,000 Cr before the period, 2,000 Dr on 11/06, no credit days.
//   -5,000 from 01/04 to 11/06, 71 days: -600 / 365 x 71 = -116.7123 -> -116.71
//   -3,000 from 11/06 to 30/06 and the To date, 20 days: -360 / 365 x 20 = -19.7260 -> -19.73
//   interest -136.44; grace 0 days: 0.00; closing -3,000 - 136.44: 3,136.44Cr
// On the second screen (360 days, 10 credit days typed) the credit opening row is in the grace
// base: 5,000 x 12 / 100 / 360 x 10 = 16.6667 -> 16.67; interest -600 / 360 x 71 = -118.33 and
// -20.00 = -138.33, after grace -121.66.
// NIL SINGH has no rows: 0.00 shows as a credit, for 91 days from 01/04 to 30/06 inclusive.
TEST_F(InterestTest, ACreditBalanceNoGraceDaysAndAPartyWithoutRows) {
    auto& first = Open("KVINT");
    Type(first, "txpParty", "HARPAL SINGH");
    PeriodByDialog(first);
    EXPECT_THAT(Shown(first.Report()),
                ElementsAre("|01/04/2024|0B|Opening Balance||5,000.00|-5,000.00|71|-116.71",
                            "1|11/06/2024|CB|Cash advance|2,000.00||-3,000.00|20|-19.73",
                            "|||Total|2,000.00|5,000.00|||-136.44", "||||||Grace Days|0|0.00",
                            "||||||Interest @|12%|-136.44", "||||||Closing Bal||-3,000.00",
                            "|||||||After Inter.|3,136.44Cr"));

    auto& second = Open("KVIN2");
    Type(second, "txpParty", "HARPAL SINGH");
    Type(second, "txpCreditDays", "10");
    Type(second, "txpTotalDays", "360");
    PeriodOnPanel(second);
    const auto& totals = second.Statement()->totals;
    EXPECT_EQ(totals.graceBase, *Amount::Parse("5000"));
    EXPECT_EQ(totals.interest, *Amount::Parse("-138.33"));
    EXPECT_EQ(totals.graceInterest, *Amount::Parse("16.67"));
    EXPECT_EQ(totals.afterGrace, *Amount::Parse("-121.66"));
    EXPECT_EQ(Shown(second.Report()).back(), "|||||||After Inter.|3,121.66Cr");

    Type(first, "txpParty", "NIL SINGH");
    first.KeyDown({ui::Key::F7});
    EXPECT_EQ(Shown(first.Report()).front(), "|01/04/2024|0B|Opening Balance||0.00|0.00|91|0.00");
}

// A name that is no account opens the party picker at it, with every account's balance.
TEST_F(InterestTest, ThePartyPickerShowsBalances) {
    auto& screen = Open("KVINT");
    Strings rows;
    frontend.QueueModal([&rows](ui::Screen& picker) {
        const auto& list = picker.Get<ui::Grid>(desk::kPartyPickerGrid);
        for (int row = 1; row < list.Rows(); ++row)
            rows.push_back(list.TextMatrix(row, 0) + "|" + list.TextMatrix(row, 2));
        EXPECT_EQ(list.TextMatrix(list.Row(), 0), "HARPAL SINGH") << "opens at what was typed";
        picker.KeyDown({ui::Key::Enter});
    });
    Type(screen, "txpParty", "HAR");
    EXPECT_THAT(rows, ElementsAre("CASH|4,200.00 Dr", "GURMEET SINGH|700.00 Cr", "HARPAL SINGH|3,000.00 Cr",
                                  "NIL SINGH|0.00", "PUNGRAIN|500.00 Cr"));
    EXPECT_EQ(Box(screen, "txpParty").Text(), "HARPAL SINGH");
    EXPECT_EQ(Box(screen, "txpCreditDays").Text(), "0");
}

// `qx report ... interest` makes the statement through the screens, the second one when
// --total-days is given.
TEST_F(InterestTest, QxReportMakesTheStatementOfEitherScreen) {
    auto run = [this](std::vector<std::string> args) {
        args.insert(args.begin(), {"report", path.string(), "interest"});
        std::ostringstream out, err;
        const int status = cli::Run(args, out, err);
        return std::pair(status, out.str() + err.str());
    };
    const auto [status, text] = run({"--party", "Gurmeet Singh", "--from", "01/04/2024", "--to", "30/06/2024",
                                     "--method", "2", "--rate", "12", "--credit-days", "15", "--grace", "cr"});
    EXPECT_EQ(status, 0) << text;
    EXPECT_THAT(text, HasSubstr("Party: GURMEET SINGH"));
    EXPECT_THAT(text, HasSubstr("Balance(Cr-Dr)"));
    EXPECT_THAT(text, HasSubstr("50.00"));
    const auto second = run({"--party", "GURMEET SINGH", "--from", "01/04/2024", "--to", "30/06/2024",
                             "--method", "1", "--total-days", "365", "--format", "csv"});
    EXPECT_EQ(second.first, 0) << second.second;
    EXPECT_THAT(second.second, HasSubstr("Rebate (zzz)"));
    EXPECT_THAT(second.second, HasSubstr("190.18Cr"));

    EXPECT_THAT(run({"--party", "NOBODY", "--from", "01/04/2024"}).second, HasSubstr("There is no account \"NOBODY\"."));
    EXPECT_THAT(run({"--party", "PUNGRAIN", "--method", "3"}).second, HasSubstr("--method is 1 or 2, not \"3\"."));
    EXPECT_THAT(run({"--party", "PUNGRAIN", "--to", "30/06/2024"}).second,
                HasSubstr("The report interest asks for a period: --to needs --from."));
    EXPECT_THAT(run({"--from", "01/04/2024"}).second, HasSubstr("An interest statement is of one party: give --party NAME."));
    EXPECT_THAT(run({"--party", "PUNGRAIN", "--colour", "red"}).second, HasSubstr("takes no --colour: it takes --party"));
}

// Half to even at the second place, after the product is carried in fixed point.
TEST(InterestOn, RoundsHalfToEven) {
    EXPECT_EQ(kivra::InterestOn(*Amount::Parse("100"), *Amount::Parse("9"), 360, Amount::FromInt(5)),
              *Amount::Parse("0.12")); // 900 / 100 / 360 x 5 = 0.125
    EXPECT_EQ(kivra::InterestOn(*Amount::Parse("270"), *Amount::Parse("9"), 360, Amount::FromInt(2)),
              *Amount::Parse("0.14")); // 2,430 / 100 / 360 x 2 = 0.135
    EXPECT_EQ(kivra::InterestOn(*Amount::Parse("-365"), *Amount::Parse("2.5"), 365, Amount::FromInt(5)),
              *Amount::Parse("-0.12")); // -912.5 / 100 / 365 x 5 = -0.125
}

} // namespace
