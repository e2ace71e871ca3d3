// The daily I/J-Form summary and the item summary of a day's forms saved through the desk's
// engine with the demo's series: each section's figures checked by hand against the forms.
#include "ReportDayCompany.h"

#include "desk/core/PeriodDialog.h"
#include "desk/core/ReportText.h"
#include "kivra/reports/DailySummary.h"
#include "kivra/reports/ItemSummary.h"
#include "kivra/reports/frmDailySummary.h"
#include "kivra/reports/frmItemSummary.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace qx;
using test::Strings;

namespace {

class DailySummaryTest : public test::ReportDayCompany {};

// Every section of the day, both markets. Figures by hand: Gurmeet Singh's 54 bags bear 202.50
// labour at 3.75 a bag, so he is credited 55,080.00 - 202.50 = 54,877.50, rounded 54,878.00;
// the agent's own 5 quintals bear market fee 2% (200), R.D.F. 1% (100), P.I.D.F. 1% of the value
// with its levies (103.50) and labour 4.50 a bag (45). Pungrain's 10 quintals of paddy weighed
// 50 kg more show as 10.50; Goyal Mills took 5 of his 6 quintals of maize, so 1 quintal at
// 2,050 waits, while Pungrain, who took all he was sold, waits for nothing. The maize
// Pungrain paid 2,100 for was sold at 2,090: 120.00 surplus; the paddy Goyal Mills paid 1,950
// for was sold at 2,000: 400.00 loss.
TEST_F(DailySummaryTest, TheDaysFormsInEverySection) {
    SaveTheDay();
    const PrintJob job = kivra::DailySummaryJob(*module.Context(), Day());
    EXPECT_EQ(job.title, "Daily Summary");
    EXPECT_EQ(job.title2, "Date: 04/11/2024 (Monday)");
    Strings captions;
    for (const PrintColumn& column : job.columns) captions.push_back(column.caption);
    EXPECT_EQ(captions, (Strings{"Date", "Book No.", "Form No.", "Market", "Party", "Item", "Bags", "Qty.",
                                 "Rate", "Quality Cut", "Amount", "Dami", "Labour", "Loading", "Stitching",
                                 "Dharam", "Round Off", "Total", "Labour (Self)", "Market Fee", "R.D.F.",
                                 "P.I.D.F.", "Purchase Tax"}));
    EXPECT_EQ(Lines(job), (Strings{
        "*headingfonts*blanklineafter*blanklinebefore* J-Forms",
        " 04-Nov-2024|12|101|KHANNA|GURMEET SINGH|PADDY|10|5.00|2,000.00||10,000.00||202.50||||0.50|54,878.00|45.00|200.00|100.00|103.50",
        " |||||PADDY|20|10.00|2,000.00||20,000.00",
        " |||||MAIZE|24|12.00|2,090.00||25,080.00",
        " 04-Nov-2024|7|201|JAGRAON|HARPAL SINGH|PADDY|16|8.00|2,000.00||16,000.00||105.00|||||28,195.00",
        " |||||MAIZE|12|6.00|2,050.00||12,300.00",
        "*hline1*",
        "*totals*totalreset* Sub Totals||||||82|41.00|||83,380.00||307.50||||0.50|83,073.00|45.00|200.00|100.00|103.50",
        "*headingfonts*blanklinebefore*blanklineafter* Purchase (Self)",
        " |||KHANNA||PADDY||5.00|||10,000.00",
        "*hline1*",
        "*hline1*totals*totalreset* Totals (J-Forms)|||||||5.00|||10,000.00",
        "*headingfonts*blanklinebefore*blanklineafter* I-Forms",
        " 04-Nov-2024|3|501|KHANNA|PUNGRAIN|MAIZE|24|12.00|2,100.00||25,200.00|1,155.00|176.00|61.60|44.00|23.10|0.30|47,660.00",
        " |||||PADDY|20|10.50|2,000.00||21,000.00",
        " 04-Nov-2024|4|601|JAGRAON|GOYAL MILLS|MAIZE|10|5.00|2,050.00||10,250.00|646.25|104.00|36.40|26.00|12.92|0.43|26,676.00",
        " |||||PADDY|16|8.00|1,950.00||15,600.00",
        "*hline1*",
        "*totals*totalreset* Sub Totals||||||70|35.50|||72,050.00|1,801.25|280.00|98.00|70.00|36.02|0.73|74,336.00",
        "*headingfonts*blanklinebefore*blanklineafter* Mal Khata",
        " |||KHANNA||PADDY||-0.50|||-1,000.00",
        "*headingfonts*blanklinebefore*blanklineafter* Mal Khata (Surplus)",
        " |||KHANNA||MAIZE|||||120.00",
        "*headingfonts*blanklinebefore*blanklineafter* Mal Khata (Loss)",
        " |||JAGRAON||PADDY|||||400.00",
        "*hline1*",
        "*hline1*totals*totalreset* Totals (I-Forms)|||||||-0.50|||-720.00",
        "*headingfonts*blanklinebefore*blanklineafter* Pending Items",
        " |||JAGRAON|GOYAL MILLS|MAIZE||1.00|2,050.00||2,050.00",
        "*hline1*",
        "*hline1*totals*totalreset* Totals (Pending Items)|||||||1.00|||2,050.00",
    }));
#ifdef QX_WITH_PDF
    // On paper, its twenty-three columns on one page across, every figure stands whole.
    const std::string paper = Printed(job, "daily-summary");
    for (const char* figure : {"54,878.00", "83,073.00", "74,336.00", "1,801.25", "47,660.00", "-1,000.00", "2,050.00"})
        EXPECT_NE(paper.find(figure), std::string::npos) << figure << " in\n" << paper;
    // A page's totals leave blank the columns nothing was added to, as the report's totals do.
    for (auto at = paper.find("Forward"); at != std::string::npos; at = paper.find("Forward", at + 1))
        EXPECT_EQ(paper.substr(at, paper.find('\n', at) - at).find(" 0.00"), std::string::npos) << paper;
#endif
}

// One market of the day, and a period of a firm that works in one market.
TEST_F(DailySummaryTest, OneMarketOrAPeriodOfAFirmInOneMarket) {
    SaveTheDay();
    const PrintJob jagraon = kivra::DailySummaryJob(*module.Context(), Day(2, "JAGRAON"));
    EXPECT_EQ(jagraon.title2, "Date: 04/11/2024 (Monday)    Market: JAGRAON");
    const Strings lines = Lines(jagraon);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.find("KHANNA") != std::string::npos; }),
              0);
    EXPECT_NE(std::find(lines.begin(), lines.end(),
                        "*totals*totalreset* Sub Totals||||||28|14.00|||28,300.00||105.00|||||28,195.00"),
              lines.end());
    EXPECT_EQ(std::find(lines.begin(), lines.end(), "*headingfonts*blanklinebefore*blanklineafter* Purchase (Self)"),
              lines.end())
        << "a section without lines is left out";

    app.DeskSession().SetOption(676, "No");
    const PrintJob one = kivra::DailySummaryJob(*module.Context(), Period("01/11/2024", "07/11/2024"));
    EXPECT_EQ(one.title2, "01/11/2024 to 07/11/2024");
    EXPECT_EQ(one.columns.size(), 22u);
    EXPECT_EQ(one.columns[3].caption, "Party") << "no market column";
    EXPECT_EQ(Lines(one)[1],
              " 04-Nov-2024|12|101|GURMEET SINGH|PADDY|10|5.00|2,000.00||10,000.00||202.50||||0.50|54,878.00|45.00|200.00|100.00|103.50");
    // Without markets the maize is one item, not settled while Goyal Mills' quintal waits: only
    // the paddy's loss shows, and the goods account moves by -1,000 + 400, as the day's voucher
    // posts it to the Mal Khata heads.
    const Strings all = Lines(one);
    const auto goods = std::find(all.begin(), all.end(), "*headingfonts*blanklinebefore*blanklineafter* Mal Khata");
    ASSERT_NE(goods, all.end());
    EXPECT_EQ(Strings(goods, goods + 6),
              (Strings{"*headingfonts*blanklinebefore*blanklineafter* Mal Khata", " ||||PADDY||-0.50|||-1,000.00",
                       "*headingfonts*blanklinebefore*blanklineafter* Mal Khata (Loss)", " ||||PADDY|||||400.00",
                       "*hline1*", "*hline1*totals*totalreset* Totals (I-Forms)||||||-0.50|||-600.00"}));
    EXPECT_EQ(Rows("SELECT SUM(D.DAMT) FROM FADATA D JOIN FAMASTER F ON F.MCD=D.DCD WHERE "
                   "D.DTRNTYPE='IJF' AND F.MHD LIKE '% MAL KHATA'"),
              Strings{"-600"});
    app.DeskSession().SetOption(676, "Yes"); // the books are checked as they were posted
}

// The item summary: each item's forms added up, the forms' header charges shared in proportion
// to value (Gurmeet Singh's 202.50 labour on 55,080.00: 92.21 on his 25,080.00 of maize), and
// the forms behind a line.
TEST_F(DailySummaryTest, ItemSummaryAndTheFormsBehindALine) {
    SaveTheDay();
    const kivra::ItemSummary items = kivra::ItemSummaryJob(*module.Context(), Day());
    EXPECT_EQ(Lines(items.job), (Strings{
        "*headingfonts*blanklineafter*blanklinebefore* J-Forms (Self Purchase)",
        " PADDY|10|5.00|10,000.00||36.76|||45.00|200.00|100.00|103.50",
        "*hline1*",
        "*totals*totalreset* Sub Totals|10|5.00|10,000.00||36.76|||45.00|200.00|100.00|103.50",
        "*headingfonts*blanklineafter*blanklinebefore* J-Forms",
        " MAIZE|36|18.00|37,380.00||137.84",
        " PADDY|36|18.00|36,000.00||132.89",
        "*hline1*",
        "*totals*totalreset*hline1* Sub Totals|72|36.00|73,380.00||270.74",
        "*headingfonts*blanklinebefore*blanklineafter* I-Forms",
        " MAIZE|34|17.00|35,450.00|886.25|137.24|48.03|34.31",
        " PADDY|36|18.50|36,600.00|915.00|142.76|49.97|35.69",
        "*hline1*",
        "*totals*totalreset*hline1* Sub Totals|70|35.50|72,050.00|1,801.25|280.00|98.00|70.00",
    }));
    ASSERT_EQ(items.keys.size(), items.job.rows.size());
    EXPECT_EQ(items.keys[11].section, 'C');
    EXPECT_EQ(Lines(kivra::ItemDetailJob(*module.Context(), Day(), items.keys[11])), (Strings{
        "*headingfonts* Item: PADDY",
        "*headingfonts* Date: 04/11/2024 (Monday)",
        "*headingfonts*blanklineafter*    I-Form Details",
        " 04-Nov-2024|3|501|PUNGRAIN|20|10.50|21,000.00|525.00|80.00|28.00|20.00",
        " 04-Nov-2024|4|601|GOYAL MILLS|16|8.00|15,600.00|390.00|62.76|21.97|15.69",
        "*hline1*",
        "*totals* Totals||||36|18.50|36,600.00|915.00|142.76|49.97|35.69",
    })) << "the detail adds up to its summary line";
}

// Two items of 600 and 400 share a form's labour of 50 as 30 and 20; a form without a gross
// amount shares out nothing. The forms are written straight into the company, without a day's
// voucher.
TEST_F(DailySummaryTest, HeaderChargesAreSharedByValue) {
    faultsPlanted = true;
    Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, "
                    "PARTYCODE, GROSSAMT, LABOUR, MARKETID) VALUES (901, 'JF', 1, 901, '2024-11-06', "
                    "101, 1000, 50, 1), (902, 'JF', 1, 902, '2024-11-06', 101, 0, 50, 1)");
    Db().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, QUANTITY, "
                    "NOOFBOXES, AMOUNT, STOCKFACTOR, JFACTOR) VALUES (901, 1, 1, 201, 0.3, 1, 600, 0, "
                    "1), (901, 2, 2, 201, 0.2, 1, 400, 0, 1), (902, 1, 1, 201, 0.1, 1, 200, 0, 1)");
    EXPECT_EQ(Lines(kivra::ItemSummaryJob(*module.Context(), Period("06/11/2024", "06/11/2024")).job),
              (Strings{"*headingfonts*blanklineafter*blanklinebefore* J-Forms", " MAIZE|1|0.20|400.00||20.00",
                       " PADDY|2|0.40|800.00||30.00", "*hline1*",
                       "*totals*totalreset*hline1* Sub Totals|3|0.60|1,200.00||50.00"}));
}

// The day's voucher opens the summary of its day, asking nothing; F7 shows that voucher, F4
// asks another period, whose day without a voucher says so; F6 opens the item summary of the
// same market, which asks its own period, where Enter on a product line lists its forms and Esc
// goes back; F8 and F9 print what is shown. From the menu the summary asks its period and
// market, and a cancelled period closes it.
TEST_F(DailySummaryTest, TheScreensFromTheDaysVoucherAndTheMenu) {
    SaveTheDay();
    EventArgs edit;
    edit.Parameters.SetValue("TrnType", "IJF");
    edit.Parameters.SetValue("VchDate", *Date::ParseDisplay("04/11/2024"));
    app.RaiseCustomEvent("EditVch", edit);
    EXPECT_TRUE(edit.Handled);
    auto summary = std::dynamic_pointer_cast<kivra::frmDailySummary>(app.OpenScreens().back());
    ASSERT_TRUE(summary) << "handed its day, it asks nothing";
    EXPECT_EQ(summary->Get<ui::Label>("lblPeriod").Text(), "Date: 04/11/2024 (Monday)");
    const auto& grid = summary->Get<ui::Grid>("Grid");
    ASSERT_EQ(grid.Rows(), static_cast<int>(summary->Report().rows.size()) + 1);
    EXPECT_EQ(grid.TextMatrix(2, 17), "54,878.00");
    EXPECT_EQ(grid.RowMarks(1), "*headingfonts*blanklineafter*blanklinebefore*");
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F8}));
    ASSERT_EQ(frontend.Printed().size(), 1u);
    EXPECT_EQ(frontend.Printed()[0].first.title, "Daily Summary");
    EXPECT_EQ(frontend.Printed()[0].second, PrintMode::Preview);

    std::string voucher;
    frontend.QueueModal([&](ui::Screen& list) { voucher = list.Caption(); });
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F7}));
    EXPECT_EQ(voucher, "Voucher " + Rows("SELECT DISTINCT VOUCHERID FROM FADATA WHERE DTRNTYPE='IJF'")[0] +
                           " of 04/11/2024");
    frontend.QueueModal(desk::TypePeriod("05/11/2024", "05/11/2024"));
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F4}));
    EXPECT_EQ(summary->Get<ui::Label>("lblPeriod").Text(), "Date: 05/11/2024 (Tuesday)");
    EXPECT_EQ(grid.Rows(), 1) << "a day without forms";
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F7}));
    EXPECT_EQ(Messages(), Strings{"There is no daily voucher of 05/11/2024."});
    frontend.ClearTranscript();
    frontend.QueueModal(desk::TypePeriod("04/11/2024", "05/11/2024"));
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F4}));
    frontend.QueueModal(desk::TypeDate("04/11/2024"));
    frontend.QueueModal([&](ui::Screen& list) { voucher = list.Caption(); });
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F7}));
    EXPECT_THAT(voucher, testing::EndsWith(" of 04/11/2024")) << "a summary of two days asks which day's";

    frontend.QueueModal(desk::TypePeriod("04/11/2024", "04/11/2024"));
    ASSERT_TRUE(summary->KeyDown({.key = ui::Key::F6}));
    auto items = std::dynamic_pointer_cast<kivra::frmItemSummary>(app.OpenScreens().back());
    ASSERT_TRUE(items);
    EXPECT_EQ(items->CallingForm, summary);
    EXPECT_TRUE(Messages().empty()) << "the market was handed over: no list of markets";
    auto& lines = items->Get<ui::Grid>("Grid");
    EXPECT_EQ(lines.TextMatrix(12, 0), "PADDY");
    items->Focus(lines);
    lines.SetCurrent(12, 0);
    ASSERT_TRUE(items->KeyDown({.key = ui::Key::Enter}));
    EXPECT_EQ(lines.TextMatrix(1, 0), "Item: PADDY");
    EXPECT_EQ(lines.TextMatrix(4, 3), "PUNGRAIN");
    ASSERT_TRUE(items->KeyDown({.key = ui::Key::F9}));
    EXPECT_EQ(frontend.Printed().back().first.rows[2].cells[0], "   I-Form Details");
    EXPECT_EQ(frontend.Printed().back().second, PrintMode::Print);
    ASSERT_TRUE(items->KeyDown({.key = ui::Key::Escape}));
    EXPECT_EQ(lines.TextMatrix(12, 0), "PADDY") << "back to the summary";
    frontend.QueueModal(desk::TypePeriod("05/11/2024", "05/11/2024"));
    ASSERT_TRUE(items->KeyDown({.key = ui::Key::F6}));
    EXPECT_EQ(lines.Rows(), 1) << "the period asked again";
    ASSERT_TRUE(items->KeyDown({.key = ui::Key::Escape}));
    EXPECT_NE(app.OpenScreens().back(), items) << "closed";

    frontend.QueueModal(desk::TypePeriod("04/11/2024", "04/11/2024"));
    ChooseInNextList("JAGRAON");
    app.ClickMenu("KvDailySummary");
    auto jagraon = std::dynamic_pointer_cast<kivra::frmDailySummary>(app.OpenScreens().back());
    ASSERT_TRUE(jagraon);
    EXPECT_FALSE(frontend.ModalPending());
    EXPECT_EQ(jagraon->Get<ui::Label>("lblPeriod").Text(), "Date: 04/11/2024 (Monday)    Market: JAGRAON");
    const std::size_t open = app.OpenScreens().size();
    app.ClickMenu("KvDailySummary"); // the period dialog cancelled
    EXPECT_EQ(app.OpenScreens().size(), open) << "no period, no report";
}

} // namespace
