// The stock register and the Form-M returns of the demo's day of forms saved through the
// desk's engine: each figure checked by hand against the forms.
#include "ReportDayCompany.h"

#include "desk/core/PeriodDialog.h"
#include "desk/core/PrintDesigns.h"
#include "desk/core/ReportFile.h"
#include "desk/core/SelectItemScreen.h"
#include "kivra/reports/FormM.h"
#include "kivra/reports/StockRegister.h"
#include "kivra/reports/frmFormM.h"
#include "kivra/reports/frmStockRegister.h"

#include "desk/qt/QtTestSupport.h"

#include <algorithm>

using namespace qx;
using test::Strings;

namespace {

class StockFormMTest : public test::ReportDayCompany {
protected:
    // 05/11/2024: Gurmeet Singh sells the agent 3 more quintals of paddy at Khanna.
    void SaveTheNextDay() {
        auto& jForm = OpenMenu("JForms");
        TypeHeader(jForm, "05/11/2024", "gurmeet singh", "KHANNA", "12", "102");
        ASSERT_TRUE(TypeLine(jForm, 1, JLine("paddy", "self", "50", "3", "2000")));
        Save(jForm);
    }
    // Gurmeet Singh's particulars and bank, and the UTR of his payment for form 12/101.
    void GiveParticulars() {
        kivra::CheckUtrFields(Db());
        Db().ExecuteSql("UPDATE FAMASTER SET MHDA1='VPO RAIPUR', MCELLNO='9876543210', MAADHARNO='123456789012', "
                        "MPANNO='ABCPS1234K', MBANKACNO='0123456789', MIFSCCODE='PUNB0012300', "
                        "MBANKNAME='PUNJAB NATIONAL BANK' WHERE MCD=101");
        Db().ExecuteSql("UPDATE DOCMAIN SET UTRNO='PUNBH24310001', UTRDATE='2024-11-06' WHERE FORMNO=101");
    }
    kivra::FormMOptions Weekly() const { return {}; }
    kivra::FormMOptions Daily() const {
        kivra::FormMOptions options;
        options.daily = true;
        return options;
    }
};

// By hand: paddy came in as the agent's own 5 quintals and the 10 and 8 quintals waiting for
// Pungrain and Goyal Mills (23); out went the 10 and 8 the buyers took on their I-Forms and
// the 50 kg more Pungrain's weighing found, taken from the agent's stock (18.50), leaving his
// 4.50. Maize: 12 + 6 in, 12 + 5 out, Goyal Mills' 1 quintal still waiting. On 05/11 the agent
// buys 3 more quintals of paddy; maize does not move and is left out.
TEST_F(StockFormMTest, StockRegisterDayByDayWithTheBalanceCarried) {
    SaveTheDay();
    SaveTheNextDay();
    const PrintJob both = kivra::StockRegisterJob(*module.Context(), Period("04/11/2024", "05/11/2024"), "");
    EXPECT_EQ(both.title, "Stock Register");
    EXPECT_EQ(both.title2, "04/11/2024 to 05/11/2024");
    EXPECT_EQ(Lines(both), (Strings{
        "*headingfonts*blanklinebefore*blanklineafter* PADDY",
        " 04/11/2024|0.00|23.00|23.00|18.50|4.50",
        " 05/11/2024|4.50|3.00|7.50||7.50",
        "*hline1*",
        "*hline1*totals*totalreset* Totals||26.00||18.50",
        "*headingfonts*blanklinebefore*blanklineafter* MAIZE",
        " 04/11/2024|0.00|18.00|18.00|17.00|1.00",
        "*hline1*",
        "*hline1*totals*totalreset* Totals||18.00||17.00",
    }));
    EXPECT_EQ(Lines(kivra::StockRegisterJob(*module.Context(), Period("05/11/2024", "05/11/2024"), "")),
              (Strings{"*headingfonts*blanklinebefore*blanklineafter* PADDY", " 05/11/2024|4.50|3.00|7.50||7.50",
                       "*hline1*", "*hline1*totals*totalreset* Totals||3.00"}))
        << "the balance brought from before the period; maize, with a balance but no movement, left out";
    const Strings maize = Lines(kivra::StockRegisterJob(*module.Context(), Period("04/11/2024", "05/11/2024"), "s.qmcd IN (2)"));
    ASSERT_FALSE(maize.empty());
    EXPECT_EQ(maize[0], "*headingfonts*blanklinebefore*blanklineafter* MAIZE");
    EXPECT_EQ(maize.size(), 4u) << "only the items chosen";
#ifdef QX_WITH_PDF
    const std::string paper = Printed(both, "stock-register");
    for (const char* line : {"04/11/2024", "05/11/2024", "26.00", "18.50", "18.00", "17.00"})
        EXPECT_NE(paper.find(line), std::string::npos) << line << " in\n" << paper;
#endif
}

// The weekly return of one market, forms in date order. By hand, at the items' rates (paddy:
// market fee 2%, R.D.F. 1%, cancer fund 0.5%; maize the same without cancer fund): the
// agent's own 10,000.00 of paddy bears 200.00, 100.00 and 50.00 and stands under the
// purchase columns; Pungrain's 20,000.00 of paddy 400.00, 200.00, 100.00 and his 25,080.00 of
// maize 501.60 and 250.80, both under the sale columns. The summary holds the agent's own
// purchases.
TEST_F(StockFormMTest, WeeklyReturnOfOneMarket) {
    SaveTheDay();
    GiveParticulars();
    kivra::FormMOptions options = Weekly();
    options.sellerAddress = true;
    const PrintJob job = kivra::FormMJob(*module.Context(), Period("04/11/2024", "10/11/2024", 1, "KHANNA"), options);
    EXPECT_EQ(job.title, "Form M");
    EXPECT_EQ(job.title2, "04/11/2024 to 10/11/2024    Market: KHANNA");
    EXPECT_EQ(job.options.GetValue("Wrap").AsText(), "3");
    Strings sections;
    for (const auto* named : {&job.headSections, &job.footSections})
        for (const DesignSection& section : *named) sections.push_back(section.design + "." + section.section);
    EXPECT_EQ(sections, (Strings{"FormM_Head.MainHeadForm1", "FormM_Head.MainHeadForm2", "FormM_Footer.SUBFORM6",
                                 "FormM_Footer.BFTotals", "FormM_Footer.CFTotals", "FormM_Footer.BottomLine"}));
    Strings captions;
    for (const PrintColumn& column : job.columns) captions.push_back(column.caption);
    EXPECT_EQ(captions, (Strings{"Date", "Item", "Book / J.F. No.", "Name of farmer / seller", "Bank Details",
                                 "Qty.(Qtl)", "Rate", "Amount", "J-Form Amount", "Buyer", "Fee Applicable",
                                 "Fee Amount", "Sale Qty.", "Rate", "Amount", "U.T.R. No.", "U.T.R. Date"}));
    EXPECT_EQ(Lines(job), (Strings{
        "*headingfonts*blanklineafter* 04/11/2024 to 10/11/2024    Market: KHANNA",
        "*headingfonts* |||||Purchase Qty.",
        " 04-Nov-2024|PADDY|12 / 101|GURMEET SINGH\nVPO RAIPUR\nRAIPUR\nMobile: 9876543210\nAadhaar: "
        "123456789012\nPAN: ABCPS1234K|A/c No: 0123456789\nIFSC Code: PUNB0012300\nPUNJAB NATIONAL BANK|5.00|"
        "2,000.00|10,000.00|54,878.00|SELF|M.Fee\nR.D.F.\nC.Fund|200.00\n100.00\n50.00||||PUNBH24310001|06-Nov-2024",
        " |PADDY||||||||PUNGRAIN\nCHANDIGARH|M.Fee\nR.D.F.\nC.Fund|400.00\n200.00\n100.00|10.00|2,000.00|20,000.00",
        " |MAIZE||||||||PUNGRAIN\nCHANDIGARH|M.Fee\nR.D.F.|501.60\n250.80|12.00|2,090.00|25,080.00",
        "*hline1*",
        "*totals*totalreset* Sub Totals|||||5.00||10,000.00|54,878.00||M.Fee\nR.D.F.\nC.Fund|1,101.60\n550.80\n150.00|"
        "22.00||45,080.00",
        "*headingfonts*blanklinebefore*blanklineafter* SUMMARY",
        " 04-Nov-2024|PADDY||||5.00|2,000.00|10,000.00|||M.Fee\nR.D.F.\nC.Fund|200.00\n100.00\n50.00",
        "*bhline1*hline1*totals*totalreset* Totals|||||5.00||10,000.00|||M.Fee\nR.D.F.\nC.Fund|200.00\n100.00\n50.00",
    }));
}

// The daily return: J-Forms only, numbered, every line under the purchase columns. With both
// markets it goes market by market, each closed by its own totals; the document filters and
// the buyers' order choose and order the lines.
TEST_F(StockFormMTest, DailyReturnMarketByMarketFilteredAndOrdered) {
    SaveTheDay();
    const PrintJob job = kivra::FormMJob(*module.Context(), Day(), Daily());
    EXPECT_EQ(job.title2, "   Daily Return");
    EXPECT_EQ(job.columns.size(), 13u);
    EXPECT_EQ(job.columns[0].caption, "SrNo");
    EXPECT_EQ(Lines(job), (Strings{
        "*headingfonts*blanklineafter* Date: 04/11/2024 (Monday)",
        "*blanklineafter*headingfonts* Market: KHANNA",
        " 1|PADDY|12 / 101|GURMEET SINGH\nRAIPUR||10|5.00|2,000.00|10,000.00|54,878.00|SELF",
        " |PADDY||||20|10.00|2,000.00|20,000.00||PUNGRAIN\nCHANDIGARH",
        " |MAIZE||||24|12.00|2,090.00|25,080.00||PUNGRAIN\nCHANDIGARH",
        "*hline1*",
        "*totals*totalreset* Sub Totals (Market)|||||54|27.00||55,080.00|54,878.00",
        "*blanklineafter*headingfonts* Market: JAGRAON",
        " 2|PADDY|7 / 201|HARPAL SINGH\nBIJA||16|8.00|2,000.00|16,000.00|28,195.00|GOYAL MILLS\nJAGRAON",
        " |MAIZE||||12|6.00|2,050.00|12,300.00||GOYAL MILLS\nJAGRAON",
        "*hline1*",
        "*totals*totalreset* Sub Totals (Market)|||||28|14.00||28,300.00|28,195.00",
    }));

    auto buyers = [&](kivra::FormMOptions options) {
        Strings seen;
        for (const PrintRow& row : kivra::FormMJob(*module.Context(), Day(), options).rows)
            if (row.marks.empty()) seen.push_back(row.cells[10].substr(0, row.cells[10].find('\n')) + " " + row.cells[1]);
        return seen;
    };
    kivra::FormMOptions options = Daily();
    options.filter = kivra::FormMFilter::SelfPurchase;
    EXPECT_EQ(buyers(options), Strings{"SELF PADDY"});
    options.filter = kivra::FormMFilter::IForms;
    EXPECT_EQ(buyers(options), (Strings{"PUNGRAIN PADDY", "PUNGRAIN MAIZE", "GOYAL MILLS PADDY", "GOYAL MILLS MAIZE"}));
    options.filter = kivra::FormMFilter::Buyer;
    options.buyer = 203;
    EXPECT_EQ(buyers(options), (Strings{"GOYAL MILLS PADDY", "GOYAL MILLS MAIZE"}));
    options = Weekly();
    options.order = kivra::FormMOrder::BuyerWise;
    Strings weekly;
    for (const PrintRow& row : kivra::FormMJob(*module.Context(), Day(), options).rows) {
        if (row.cells[0] == "SUMMARY") break;
        if (row.marks.empty()) weekly.push_back(row.cells[9].substr(0, row.cells[9].find('\n')) + " " + row.cells[1]);
    }
    EXPECT_EQ(weekly, (Strings{"PUNGRAIN PADDY", "PUNGRAIN MAIZE", "SELF PADDY", "GOYAL MILLS PADDY", "GOYAL MILLS MAIZE"}))
        << "by market, then buyer, date, form and line";
}

// The weekly return from the menu asks its week, and the market; F6 asks again. A
// Monday-to-Sunday week asks nothing more; a week from Tuesday only says it should start on a
// Monday, whatever the answer; a period of other than seven days asks whether to keep it, and
// only No refuses it, leaving the report as it was. A cancelled first period closes the screen.
TEST_F(StockFormMTest, TheWeekQuestionsOfFormM) {
    SaveTheDay();
    frontend.QueueModal(desk::TypePeriod("04/11/2024", "10/11/2024"));
    ChooseInNextList("KHANNA");
    app.ClickMenu("KvFormM");
    auto formM = std::dynamic_pointer_cast<kivra::frmFormM>(app.OpenScreens().back());
    ASSERT_TRUE(formM);
    EXPECT_TRUE(Messages().empty());
    const auto& heading = formM->Get<ui::Label>("lblPeriod");
    EXPECT_EQ(heading.Text(), "04/11/2024 to 10/11/2024    Market: KHANNA");
    EXPECT_EQ(formM->Report().title2, heading.Text());
    auto period = [&](const char* from, const char* to) {
        frontend.ClearTranscript();
        frontend.QueueModal(desk::TypePeriod(from, to));
        EXPECT_TRUE(formM->KeyDown({.key = ui::Key::F6}));
        return heading.Text();
    };

    frontend.QueueAnswer(kAnswerNo);
    EXPECT_EQ(period("05/11/2024", "11/11/2024"), "05/11/2024 to 11/11/2024    Market: KHANNA");
    EXPECT_EQ(Messages(), Strings{"Starting day of report should be Monday.\r\nDo you want to continue?"});

    frontend.QueueAnswer(kAnswerYes);
    frontend.QueueAnswer(kAnswerNo);
    EXPECT_EQ(period("04/11/2024", "08/11/2024"), "04/11/2024 to 08/11/2024    Market: KHANNA");
    EXPECT_EQ(Messages(), (Strings{"This report should be of one week period ending on Sunday.\r\nDo you want to continue?",
                                   "Ending day of report should be Sunday.\r\nDo you want to continue?"}));

    frontend.QueueAnswer(kAnswerNo);
    EXPECT_EQ(period("05/11/2024", "08/11/2024"), "04/11/2024 to 08/11/2024    Market: KHANNA") << "refused: kept";
    EXPECT_EQ(Messages().size(), 1u) << "a refused period is not questioned further";

    const std::size_t open = app.OpenScreens().size();
    frontend.QueueModal(desk::TypePeriod("04/11/2024", "06/11/2024"));
    frontend.QueueAnswer(kAnswerNo);
    app.ClickMenu("KvFormM");
    EXPECT_EQ(app.OpenScreens().size(), open) << "no week, no report";
}

// The menu keys open the screens, on a day without forms too: the stock register asks its
// period and no market, F4 its items; the daily return its day and market. Form-M's choices
// build the report again, and the seller's address is kept for the next time.
TEST_F(StockFormMTest, TheScreensFromTheMenu) {
    SaveTheDay();
    SaveTheNextDay();
    frontend.QueueModal(desk::TypePeriod("06/11/2024", "06/11/2024"));
    app.ClickMenu("KvStkRegister");
    ASSERT_TRUE(Messages().empty()) << Messages()[0];
    auto stock = std::dynamic_pointer_cast<kivra::frmStockRegister>(app.OpenScreens().back());
    ASSERT_TRUE(stock);
    auto& rows = stock->Get<ui::Grid>("Grid");
    EXPECT_EQ(rows.Rows(), 1) << "nothing moved on 06/11/2024";
    frontend.QueueModal(desk::TypePeriod("04/11/2024", "05/11/2024"));
    ASSERT_TRUE(stock->KeyDown({.key = ui::Key::F6}));
    EXPECT_EQ(stock->Get<ui::Label>("lblPeriod").Text(), "04/11/2024 to 05/11/2024");
    EXPECT_EQ(rows.TextMatrix(6, 0), "MAIZE");
    frontend.QueueModal([](ui::Screen& list) { desk::TakeRows(list, {{"MAIZE"}}); });
    ASSERT_TRUE(stock->KeyDown({.key = ui::Key::F4}));
    EXPECT_EQ(rows.TextMatrix(1, 0), "MAIZE");
    EXPECT_EQ(rows.Rows(), 5) << "only the items chosen";
    ASSERT_TRUE(stock->KeyDown({.key = ui::Key::F4})); // the filter cancelled
    EXPECT_EQ(rows.Rows(), 5) << "the items as they were";
    ASSERT_TRUE(stock->KeyDown({.key = ui::Key::F9}));
    EXPECT_EQ(frontend.Printed().back().first.rows[0].cells[0], "MAIZE");

    frontend.QueueModal(desk::TypeDate("04/11/2024"));
    ChooseInNextList("( All Markets )");
    app.ClickMenu("KvDailyReturn");
    auto daily = std::dynamic_pointer_cast<kivra::frmFormM>(app.OpenScreens().back());
    ASSERT_TRUE(daily);
    EXPECT_EQ(daily->Report().columns[0].caption, "SrNo");
    EXPECT_EQ(daily->Get<ui::Label>("lblPeriod").Text(), "Date: 04/11/2024 (Monday)");
    frontend.QueueModal(desk::TypeDate("05/11/2024"));
    ASSERT_TRUE(daily->KeyDown({.key = ui::Key::F6}));
    EXPECT_EQ(daily->Get<ui::Label>("lblPeriod").Text(), "Date: 05/11/2024 (Tuesday)");

    auto formM = std::make_shared<kivra::frmFormM>(*module.Context());
    Day().ToProperties(formM->Properties());
    formM->Properties().SetValue("MarketID", 1);
    formM->Properties().SetValue("MarketName", "KHANNA");
    module.Context()->Show(formM);
    EXPECT_EQ(formM->Caption(), "Form-M (Daily Sales Purchase Report )");
    EXPECT_EQ(formM->Get<ui::Label>("lblPeriod").Text(), "04/11/2024 to 04/11/2024    Market: KHANNA");
    auto& grid = formM->Get<ui::Grid>("Grid");
    EXPECT_EQ(grid.Rows(), static_cast<int>(formM->Report().rows.size()) + 1);
    auto& filter = formM->Get<ui::ComboBox>("cmbFilter");
    EXPECT_EQ(filter.Items().back().text, "SELF") << "the buyers follow the three choices";
    ASSERT_TRUE(filter.Choose("Self Purchase Only"));
    EXPECT_EQ(grid.TextMatrix(3, 1), "PADDY");
    EXPECT_EQ(grid.TextMatrix(4, 0), "") << "only the agent's own line";
    auto& address = formM->Get<ui::CheckBox>("chkSellerAddress");
    Db().ExecuteSql("UPDATE FAMASTER SET MHDA1='VPO RAIPUR' WHERE MCD=101");
    address.Click();
    EXPECT_EQ(grid.TextMatrix(3, 3), "GURMEET SINGH\nVPO RAIPUR\nRAIPUR");
    EXPECT_TRUE(app.DeskSession().FirmSettings().GetValue("FormM.SellerAddress").AsBool());
}

} // namespace

namespace {

// The weekly return as the firm prints it, a week of forty of Gurmeet Singh's forms: its
// heading and footer from the firm's print designs on every page, and each page's quintals and
// amounts carried to the next under their columns.
TEST_F(StockFormMTest, PrintedWeeklyReturnCarriesTheFirmsDesignsAndItsPageTotals) {
#ifndef QX_WITH_PDF
    GTEST_SKIP() << "a build without Qt makes no PDF";
#endif
    SaveTheDay();
    GiveParticulars();
    faultsPlanted = true; // the copies of the form have no day's voucher
    Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, PARTYCODE, "
                    "FORMBOOKNO, FORMNO, GROSSAMT, GRANDTOTAL, MARKETID, UTRNO, UTRDATE) WITH RECURSIVE n(i) AS "
                    "(SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<39) SELECT 1000+i, DOCSERIES, DOCSERIESID, "
                    "1000+i, DOCDATE, PARTYCODE, FORMBOOKNO, 1000+i, GROSSAMT, GRANDTOTAL, MARKETID, UTRNO, "
                    "UTRDATE FROM DOCMAIN, n WHERE FORMNO='101'");
    Db().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, QUANTITY, FREEQUANTITY, "
                    "NOOFBOXES, RATE, AMOUNT, STOCKFACTOR, JFACTOR) SELECT m.DOCUMENTID, a.REFNO, a.PRODUCTID, "
                    "a.CUSTOMERID, a.QUANTITY, a.FREEQUANTITY, a.NOOFBOXES, a.RATE, a.AMOUNT, a.STOCKFACTOR, "
                    "a.JFACTOR FROM DOCDATA a JOIN DOCMAIN o ON o.DOCUMENTID=a.DOCUMENTID AND o.FORMNO='101', "
                    "DOCMAIN m WHERE m.DOCUMENTID>1000");
    desk::SavePrintDesign(Db(), {"FormM_Head", "MainHeadForm1", "KIRAT TRADING CO.\nCommission Agents, New Grain Market, Khanna"});
    desk::SavePrintDesign(Db(), {"FormM_Head", "MainHeadForm2", "Licence No. KHN/123/2024"});
    desk::SavePrintDesign(Db(), {"FormM_Footer", "BottomLine", "Signature of the Commission Agent"});

    frontend.QueueModal(desk::TypePeriod("04/11/2024", "10/11/2024"));
    ChooseInNextList("KHANNA");
    app.ClickMenu("KvFormM");
    auto formM = std::dynamic_pointer_cast<kivra::frmFormM>(app.OpenScreens().back());
    ASSERT_TRUE(formM);
    ASSERT_TRUE(formM->KeyDown({.key = ui::Key::F8}));
    const auto pdf = test::OutputFolder() / "form-m-weekly.pdf";
    desk::SaveReport(frontend.Printed().back().first, desk::ReportFormat::Pdf, pdf);

    const int pages = test::PdfPages(pdf);
    ASSERT_GE(pages, 2);
    for (int page = 1; page <= pages; ++page) {
        const std::string text = test::PdfPageText(pdf, page);
        for (const char* line : {"KIRAT TRADING CO.", "Licence No. KHN/123/2024", "Signature of the Commission Agent"})
            EXPECT_NE(text.find(line), std::string::npos) << line << " on page " << page;
    }
    // Page 2 brings forward the agent's own 5 quintals of each form on page 1.
    const std::string first = test::PdfPageText(pdf, 1);
    int forms = 0;
    for (auto at = first.find("GURMEET"); at != std::string::npos; at = first.find("GURMEET", at + 1)) ++forms;
    const std::string second = test::PdfPageText(pdf, 2);
    const auto brought = second.find("Brought Forward");
    ASSERT_NE(brought, std::string::npos);
    EXPECT_NE(second.substr(brought, second.find('\n', brought) - brought).find(FormatAmount(Amount::FromInt(5 * forms), "n2")),
              std::string::npos)
        << second;
    test::RunTool("pdftoppm -png -r 60 -f 2 -l 2 '" + pdf.string() + "' '" + (test::OutputFolder() / "form-m-weekly").string() + "'");
}

} // namespace
