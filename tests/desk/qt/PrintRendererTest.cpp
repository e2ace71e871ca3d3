// Print jobs on paper, written as PDF in a program that has no windows (as `qx` writes them)
// and read back with poppler.
#include "QtTestSupport.h"

#include "desk/qt/CellAlignment.h"
#include "desk/qt/PrintRenderer.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <regex>
#include <stdexcept>

using namespace qx;

namespace {

// A daily summary as a report prints it: headings, farmers' names in Punjabi and Hindi,
// figures, rules and totals, long enough for several pages.
PrintJob DailySummary() {
    PrintJob job;
    job.firmName = "ਕਿਰਤ ਟਰੇਡਿੰਗ ਕੰਪਨੀ (Kirat Trading Co.)";
    job.title = "I / J-Form Summary (Daily)";
    job.title2 = "Date: 15/04/2024";
    job.columns = {{"Form No.", 900, Align::Left},
                   {"Seller", 3200, Align::Default},
                   {"Bags", 800, Align::Right},
                   {"Qty (Qtl)", 1100, Align::Right},
                   {"Amount", 1500, Align::Right}};
    job.rows.push_back({{"J-Forms"}, "*headingfonts*blanklinebefore*blanklineafter*"});
    for (int i = 1; i <= 90; ++i) {
        const std::string seller = i % 3 == 0   ? "ਗੁਰਪ੍ਰੀਤ ਸਿੰਘ"
                                   : i % 3 == 1 ? "रामेश्वर प्रसाद"
                                                : "Harbans Lal";
        job.rows.push_back({{std::to_string(100 + i), seller, "50", "25.00", "58,750.00"}, ""});
    }
    job.rows.push_back({{}, "*hline1*"});
    job.rows.push_back({{"", "Totals", "4500", "2250.00", "52,87,500.00"}, "*bhline1*hline1*totals*"});
    return job;
}

// pdfinfo: "Page size:       595 x 842 pts (A4)".
bool IsLandscape(const std::filesystem::path& pdf) {
    const std::string info = test::RunTool("pdfinfo '" + pdf.string() + "'");
    double width = 0, height = 0;
    const auto at = info.find("Page size:");
    EXPECT_NE(at, std::string::npos) << info;
    EXPECT_EQ(std::sscanf(info.c_str() + at, "Page size: %lf x %lf", &width, &height), 2);
    EXPECT_NE(info.find("(A4)", at), std::string::npos) << info;
    return width > height;
}

int Occurrences(const std::string& text, const std::string& part) {
    int found = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
    return found;
}

} // namespace

// Runs first in its own process under CTest: no Qt application exists, as in `qx`.
TEST(QtPrint, PdfWithIndianScriptsIsWrittenWithoutAWindowingApplication) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    const auto pdf = test::OutputFolder() / "daily-summary-gurmukhi.pdf";
    std::filesystem::remove(pdf);

    print::WritePdf(DailySummary(), pdf.string());

    ASSERT_TRUE(std::filesystem::exists(pdf));
    const int pages = test::PdfPages(pdf);
    ASSERT_GE(pages, 2) << "ninety rows do not fit on one page";
    // Every page has the firm, the titles and the column captions, and its number of the total.
    for (int page = 1; page <= pages; ++page) {
        const std::string text = test::PdfPageText(pdf, page);
        EXPECT_NE(text.find("Kirat Trading Co."), std::string::npos) << "page " << page;
        EXPECT_NE(text.find("I / J-Form Summary (Daily)"), std::string::npos) << "page " << page;
        EXPECT_NE(text.find("Qty (Qtl)"), std::string::npos) << "page " << page;
        EXPECT_NE(text.find("Page " + std::to_string(page) + " of " + std::to_string(pages)),
                  std::string::npos)
            << "page " << page;
    }
    EXPECT_NE(test::PdfPageText(pdf, pages).find("52,87,500.00"), std::string::npos);
    // The Indian names are set in faces that have their letters, not in boxes.
    const std::string fonts = test::RunTool("pdffonts '" + pdf.string() + "'");
    EXPECT_NE(fonts.find("Gurmukhi"), std::string::npos) << fonts;
    EXPECT_NE(fonts.find("Devanagari"), std::string::npos) << fonts;
}

// A4, turned to landscape only when the columns need it; an empty report still has one titled
// page; a file that cannot be written is reported, not ignored.
TEST(QtPrint, PageTurnsToLandscapeOnlyWhenTheColumnsNeedIt) {
    PrintJob empty;
    empty.title = "Stock Register";
    empty.columns = {{"Item", 2000, Align::Default}};
    PrintJob wide = DailySummary();
    wide.columns.push_back({"Remarks", 6000, Align::Default});
    const auto emptyPdf = test::OutputFolder() / "empty.pdf";
    const auto widePdf = test::OutputFolder() / "wide.pdf";
    print::WritePdf(empty, emptyPdf.string());
    print::WritePdf(wide, widePdf.string());
    EXPECT_FALSE(IsLandscape(emptyPdf));
    EXPECT_TRUE(IsLandscape(widePdf));
    // Widths designed for a screen give way to the page when what the columns hold fits it.
    wide.options.SetValue("ColumnWidths", "Fit");
    print::WritePdf(wide, widePdf.string());
    EXPECT_FALSE(IsLandscape(widePdf));
    ASSERT_EQ(test::PdfPages(emptyPdf), 1);
    const std::string text = test::PdfPageText(emptyPdf, 1);
    EXPECT_NE(text.find("Stock Register"), std::string::npos);
    EXPECT_NE(text.find("Page 1 of 1"), std::string::npos);
    EXPECT_THROW(print::WritePdf(empty, "/nonexistent-folder/report.pdf"), std::runtime_error);
}

// A paper's particulars: several lines under the title, a long Gurmukhi name wrapped onto the
// next line rather than cut; the captions of its totals stand whole against their figures in a
// narrow column, running on over the empty cells to their left.
TEST(QtPrint, APapersParticularsWrapAndItsCaptionsStandWhole) {
    PrintJob job;
    job.title = "J-Form No. 106 (Farmer's Copy)";
    std::string farmer = "Farmer:";
    for (int i = 0; i < 12; ++i) farmer += " ਕੁਲਵੰਤ ਕੌਰ ਪਤਨੀ ਸੁਖਦੇਵ";
    job.title2 = "Market: KHANNA    Book No. 12    Date: 06/11/2024\n" + farmer + " ਅੰਤ";
    job.columns = {{"Item", 1800, Align::Default}, {"Rate", 600, Align::Right}, {"Amount", 900, Align::Right}};
    job.rows = {{{"PADDY", "2,320.00", "1,04,400.00"}, ""},
                {{"", "Labour (per bag)", "-450.00"}, ""}};
    const auto pdf = test::OutputFolder() / "paper-particulars.pdf";
    print::WritePdf(job, pdf.string());
    ASSERT_EQ(test::PdfPages(pdf), 1);
    const std::string text = test::PdfPageText(pdf, 1);
    EXPECT_NE(text.find("Market: KHANNA"), std::string::npos) << text;
    EXPECT_NE(text.find("ਅੰਤ"), std::string::npos) << "the name's last word is printed: " << text;
    EXPECT_EQ(text.find("…"), std::string::npos) << text;
    EXPECT_TRUE(std::regex_search(text, std::regex(R"(Labour \(per bag\) +-450\.00)"))) << "on one line: " << text;
    test::RunTool("pdftoppm -png -r 60 '" + pdf.string() + "' '" + (test::OutputFolder() / "paper-particulars").string() + "'");
}

TEST(QtPrint, GeneralAlignmentPutsFiguresRightAndTextLeft) {
    for (const char* figure : {"12,34,567.00", "-15", "(250.00)", "1,200.00 Dr", "0.50"})
        EXPECT_EQ(print::CellAlignment(Align::Default, figure), Qt::AlignRight) << figure;
    for (const char* text : {"Wheat", "15/04/2024", "J-Form 12", "", "ਕਣਕ"})
        EXPECT_EQ(print::CellAlignment(Align::Default, QString::fromUtf8(text)), Qt::AlignLeft)
            << text;
    EXPECT_EQ(print::CellAlignment(Align::Centre, "12.00"), Qt::AlignHCenter);
    EXPECT_EQ(print::CellAlignment(Align::Left, "12.00"), Qt::AlignLeft);
    EXPECT_EQ(print::CellAlignment(Align::Right, "Wheat"), Qt::AlignRight);
}

// The weekly Form-M as the firm prints it: its own heading and footer from its print designs on
// every page, and the totals of every page carried to the next, under their columns.
TEST(QtPrint, PagesCarryTheirTotalsForwardUnderTheFirmsHeadingAndFooter) {
    PrintJob job;
    job.title = "Form M";
    job.title2 = "04/11/2024 to 10/11/2024";
    job.columns = {{"Date", 1400, Align::Left},   {"Name of farmer / seller", 4000, Align::Default},
                   {"Bags", 1100, Align::Right},  {"Rate", 1200, Align::Right},
                   {"Amount", 1600, Align::Right}};
    job.headSections = {{"FormM_Head", "MainHeadForm1"}, {"FormM_Head", "MainHeadForm2"}};
    job.footSections = {{"FormM_Footer", "BFTotals"}, {"FormM_Footer", "CFTotals"}, {"FormM_Footer", "BottomLine"}};
    job.sections = {{"MainHeadForm1", "KIRAT TRADING CO.\nCommission Agents, New Grain Market, Khanna"},
                    {"MainHeadForm2", "Licence No. KHN/123/2024"},
                    {"CFTotals", "Carried Forward"},
                    {"BottomLine", "Signature of the Commission Agent"}};
    for (int i = 1; i <= 120; ++i)
        job.rows.push_back({{"05-Nov-2024", "FARMER " + std::to_string(i), "50", "2,320.00", "1,16,000.00"}, ""});
    job.rows.push_back({{"", "Totals", "6000", "", "1,39,20,000.00"}, "*bhline1*hline1*totals*totalreset*"});
    const auto pdf = test::OutputFolder() / "form-m-page-totals.pdf";
    print::WritePdf(job, pdf.string());

    const int pages = test::PdfPages(pdf);
    ASSERT_GE(pages, 3);
    int lastFarmer = 0;
    for (int page = 1; page <= pages; ++page) {
        const std::string text = test::PdfPageText(pdf, page);
        for (const char* line : {"KIRAT TRADING CO.", "New Grain Market, Khanna", "Licence No. KHN/123/2024",
                                 "Signature of the Commission Agent"})
            EXPECT_NE(text.find(line), std::string::npos) << line << " on page " << page;
        const auto brought = text.find("Brought Forward");
        EXPECT_EQ(brought == std::string::npos, page == 1) << "page " << page;
        if (page > 1) {
            // What the page before carried: its farmers at 50 bags and 1,16,000.00 each.
            const std::string figures = text.substr(brought, text.find('\n', brought) - brought);
            EXPECT_NE(figures.find(FormatAmount(Amount::FromInt(50 * lastFarmer), "c0")), std::string::npos) << figures;
            EXPECT_NE(figures.find(FormatAmount(Amount::FromInt(116000LL * lastFarmer), "c2")), std::string::npos)
                << figures;
            EXPECT_EQ(figures.find("2,320"), std::string::npos) << "the rate is no total: " << figures;
        }
        for (std::size_t at = text.find("FARMER "); at != std::string::npos; at = text.find("FARMER ", at + 1))
            lastFarmer = std::max(lastFarmer, std::stoi(text.substr(at + 7)));
        const auto carried = text.find("Carried Forward");
        EXPECT_EQ(carried == std::string::npos, page == pages) << "page " << page;
        if (carried != std::string::npos) {
            const std::string figures = text.substr(carried, text.find('\n', carried) - carried);
            EXPECT_NE(figures.find(FormatAmount(Amount::FromInt(116000LL * lastFarmer), "c2")), std::string::npos)
                << figures;
        }
    }
    EXPECT_EQ(lastFarmer, 120);
    test::RunTool("pdftoppm -png -r 60 '" + pdf.string() + "' '" + (test::OutputFolder() / "form-m-page-totals").string() + "'");
}

// Cells of several lines and figures wider than the report designed their columns, more of
// them than a landscape page holds at full size: every line prints on its own line, every
// figure whole, and a name too long for "Wrap" ends in "…" rather than running into its
// neighbour.
TEST(QtPrint, CellsOfSeveralLinesPrintEveryLineAndFiguresWhole) {
    PrintJob job;
    job.title = "Form M";
    job.columns = {{"Name of farmer / seller", 2000, Align::Default}, {"Buyer", 1500, Align::Default},
                   {"Fee Amount", 400, Align::Default}};
    for (int c = 1; c <= 9; ++c) job.columns.push_back({"Amount " + std::to_string(c), 400, Align::Right});
    job.options.SetValue("Wrap", "2");
    constexpr int kRows = 30;
    for (int i = 1; i <= kRows; ++i) {
        PrintRow row{{"GURMEET SINGH\nVPO RAIPUR\nPAN: ABCPS1234K", "PUNGRAIN\nCHANDIGARH", "200.00\n100.00\n50.00"}, ""};
        if (i == 1) row.cells[0] = "HARBANS SINGH SON OF GURDIAL SINGH OF VILLAGE RAIPUR KALAN NEAR KHANNA";
        row.cells.resize(job.columns.size(), "9,99,99,999.99");
        job.rows.push_back(row);
    }
    PrintRow totals{{"Totals", "", ""}, "*bhline1*totals*"};
    totals.cells.resize(job.columns.size(), "1,20,00,00,000.00");
    job.rows.push_back(totals);
    const auto pdf = test::OutputFolder() / "multi-line-cells.pdf";
    print::WritePdf(job, pdf.string());

    EXPECT_TRUE(IsLandscape(pdf));
    std::string all;
    for (int page = 1, pages = test::PdfPages(pdf); page <= pages; ++page) all += test::PdfPageText(pdf, page);
    EXPECT_EQ(Occurrences(all, "9,99,99,999.99"), 9 * kRows) << all;
    EXPECT_EQ(Occurrences(all, "1,20,00,00,000.00"), 9) << all;
    for (const char* line : {"VPO RAIPUR", "ABCPS1234K"}) EXPECT_EQ(Occurrences(all, line), kRows - 1) << line;
    for (const char* line : {"PUNGRAIN", "CHANDIGARH", "200.00", "100.00", "50.00"})
        EXPECT_EQ(Occurrences(all, line), kRows) << line;
    for (const char* runTogether : {"PUNGRAINCHANDIGARH", "200.00100.00", "RAIPURPAN"})
        EXPECT_EQ(all.find(runTogether), std::string::npos) << runTogether;
    EXPECT_NE(all.find("…"), std::string::npos) << "the long name is cut short where Wrap ends it";
    EXPECT_EQ(all.find("KHANNA"), std::string::npos);
    test::RunTool("pdftoppm -png -r 60 -f 1 -l 1 '" + pdf.string() + "' '" + (test::OutputFolder() / "multi-line-cells").string() + "'");
}
