// Reports saved to files: the workbook read back from its zip, and files that cannot be
// written said plainly with nothing half-written left behind.
#include "desk/core/ReportFile.h"
#include "desk/qt/QtTestSupport.h"
#include "host/Date.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <minizip/unzip.h>

#include <regex>

using namespace qx;
namespace fs = std::filesystem;

namespace {

// A day's summary as a report writes it: a heading, figures with grouping, days, names in
// Punjabi, an account number, a rule of its own, totals under a bold and a thin rule.
PrintJob Summary() {
    PrintJob job;
    job.firmName = "ਕਿਰਤ ਟਰੇਡਿੰਗ ਕੰਪਨੀ";
    job.title = "I / J-Form Summary";
    job.title2 = "Date: 15/04/2024";
    job.columns = {{"Date", 1100, Align::Left},      {"Form No.", 900, Align::Left},
                   {"Seller", 3000, Align::Default}, {"Account", 1500, Align::Default},
                   {"Hidden", 0, Align::Default},    {"Qty (Qtl)", 1100, Align::Right},
                   {"Amount", 1500, Align::Right}};
    job.rows = {
        {{"J-Forms"}, "*headingfonts*blanklinebefore*blanklineafter*"},
        {{"15/04/2024", "101", "ਗੁਰਪ੍ਰੀਤ ਸਿੰਘ", "012345678901", "x", "10.5", "58,750.00"}, ""},
        {{"15/04/2024", "102", "Harbans Lal", "98765432101", "x", "2239.50", "-1,50,000.00"}, ""},
        {{}, "*hline1*"},
        {{"", "", "Totals", "", "", "2250.00", "52,87,500.00"}, "*bhline1*hline1*totals*"},
    };
    return job;
}

std::string Unzipped(const fs::path& zip, const char* member) {
    unzFile file = unzOpen(zip.c_str());
    if (!file) return "(not a zip)";
    std::string bytes = "(no " + std::string(member) + ")";
    if (unzLocateFile(file, member, 0) == UNZ_OK && unzOpenCurrentFile(file) == UNZ_OK) {
        bytes.clear();
        char buffer[4096];
        for (int got; (got = unzReadCurrentFile(file, buffer, sizeof buffer)) > 0;)
            bytes.append(buffer, static_cast<std::size_t>(got));
        unzCloseCurrentFile(file);
    }
    unzClose(file);
    return bytes;
}

// The XML elements of a kind in order, e.g. every <xf ...> of <cellXfs>.
std::vector<std::string> Elements(const std::string& xml, const std::string& within, const std::string& tag) {
    const auto from = xml.find("<" + within);
    const auto to = xml.find("</" + within + ">", from);
    const std::string part = xml.substr(from, to - from);
    const std::regex element("<" + tag + "(\\s[^>]*)?(/>|>(.*?)</" + tag + ">)");
    std::vector<std::string> found;
    for (std::sregex_iterator at(part.begin(), part.end(), element), end; at != end; ++at)
        found.push_back(at->str());
    return found;
}

std::string Attribute(const std::string& element, const std::string& name) {
    std::smatch match;
    return std::regex_search(element, match, std::regex(" " + name + "=\"([^\"]*)\"")) ? match[1].str() : "";
}

// A cell of the sheet as a spreadsheet shows it: its value, whether it is text, and its style.
struct Cell {
    std::string value; // the number, or the text itself
    bool text = false;
    std::string format; // the number format's code
    bool bold = false;
    std::string ruleBelow; // the bottom border's style
};

class Workbook {
public:
    explicit Workbook(const fs::path& path)
        : sheet_(Unzipped(path, "xl/worksheets/sheet1.xml")), styles_(Unzipped(path, "xl/styles.xml")) {
        for (const auto& item : Elements(Unzipped(path, "xl/sharedStrings.xml"), "sst", "si")) {
            std::smatch text;
            std::regex_search(item, text, std::regex("<t[^>]*>(.*)</t>"));
            strings_.push_back(text[1].str());
        }
    }

    Cell At(const std::string& ref) const {
        std::smatch match;
        if (!std::regex_search(sheet_, match, std::regex("<c r=\"" + ref + "\"([^>]*?)(/>|>(.*?)</c>)")))
            return {"(no cell)", false, "", false, ""};
        Cell cell;
        const std::string attributes = match[1].str();
        std::smatch value;
        const std::string inner = match[3].str();
        if (std::regex_search(inner, value, std::regex("<v>(.*)</v>"))) cell.value = value[1].str();
        cell.text = Attribute(attributes, "t") == "s";
        if (cell.text) cell.value = strings_.at(std::stoul(cell.value));
        const std::string style = Attribute(attributes, "s");
        if (style.empty()) return cell;
        const auto xf = Elements(styles_, "cellXfs", "xf").at(std::stoul(style));
        for (const auto& format : Elements(styles_, "numFmts", "numFmt"))
            if (Attribute(format, "numFmtId") == Attribute(xf, "numFmtId")) cell.format = Attribute(format, "formatCode");
        if (Attribute(xf, "numFmtId") == "0") cell.format = "General";
        cell.bold = Elements(styles_, "fonts", "font").at(std::stoul(Attribute(xf, "fontId"))).find("<b/>") != std::string::npos;
        const auto border = Elements(styles_, "borders", "border").at(std::stoul(Attribute(xf, "borderId")));
        for (const auto& side : Elements(border, "border", "bottom")) cell.ruleBelow = Attribute(side, "style");
        return cell;
    }

    double Width(int column) const {
        for (const auto& col : Elements(sheet_, "cols", "col"))
            if (Attribute(col, "min") == std::to_string(column)) return std::stod(Attribute(col, "width"));
        return 0;
    }

    const std::string& Sheet() const { return sheet_; }

private:
    std::string sheet_;
    std::string styles_;
    std::vector<std::string> strings_;
};

} // namespace

TEST(ReportFile, WorkbookHoldsFiguresAsNumbersAndDaysAsDatesLaidOutAsOnPaper) {
    const fs::path path = test::OutputFolder() / "summary.xlsx"; // kept for a person to open
    desk::SaveReport(Summary(), desk::ReportFormat::Xlsx, path);
    const Workbook book(path);

    // Firm, titles, a row left free, the captions (the hidden column left out, as on paper).
    EXPECT_EQ(book.At("A1").value, "ਕਿਰਤ ਟਰੇਡਿੰਗ ਕੰਪਨੀ");
    EXPECT_EQ(book.At("A3").value, "Date: 15/04/2024") << "a title stays text";
    EXPECT_EQ(book.At("E5").value, "Qty (Qtl)");
    EXPECT_TRUE(book.At("E5").bold);
    // blanklinebefore and blanklineafter leave rows 6 and 8 empty around the heading.
    EXPECT_EQ(book.At("A7").value, "J-Forms");
    EXPECT_TRUE(book.At("A7").bold);
    EXPECT_EQ(book.Sheet().find("<row r=\"6\""), std::string::npos);
    EXPECT_EQ(book.Sheet().find("<row r=\"8\""), std::string::npos);

    const Cell day = book.At("A9");
    EXPECT_FALSE(day.text);
    EXPECT_EQ(day.value, std::to_string(Date::FromYmd(2024, 4, 15).Serial()));
    EXPECT_EQ(day.format, "dd/mm/yyyy");
    EXPECT_EQ(book.At("B9").value, "101");
    EXPECT_FALSE(book.At("B9").text);
    EXPECT_EQ(book.At("C9").value, "ਗੁਰਪ੍ਰੀਤ ਸਿੰਘ");
    // An account number keeps its leading zero: its column is text, even the number without one.
    EXPECT_EQ(book.At("D9").value, "012345678901");
    EXPECT_TRUE(book.At("D10").text);
    // Figures in the column's decimals (10.5 in a column of two), grouped the Indian way.
    const Cell quantity = book.At("E9");
    EXPECT_FALSE(quantity.text);
    EXPECT_EQ(quantity.value, "10.5");
    EXPECT_EQ(quantity.format, "#0.00");
    EXPECT_EQ(book.At("F9").format, "##\\,##0.00");
    EXPECT_EQ(book.At("F10").value, "-150000");
    EXPECT_EQ(book.At("F10").format, "#\\,##\\,##0.00");
    // The rule of its own underlines the row before it; the totals carry both of theirs.
    EXPECT_EQ(book.At("F10").ruleBelow, "thin");
    const Cell total = book.At("F11");
    EXPECT_EQ(total.value, "5287500");
    EXPECT_EQ(total.format, "##\\,##\\,##0.00");
    EXPECT_TRUE(total.bold);
    EXPECT_EQ(total.ruleBelow, "double");
    EXPECT_EQ(book.At("C11").ruleBelow, "double") << "a rule runs under every column";

    // Each column as wide as its widest text; the heading does not widen the date column.
    EXPECT_NEAR(book.Width(1), 12, 1);  // "15/04/2024"
    EXPECT_NEAR(book.Width(6), 14, 1);  // "52,87,500.00"
    EXPECT_GE(book.Width(3), 13);         // "ਗੁਰਪ੍ਰੀਤ ਸਿੰਘ": vowel signs take no room
}

TEST(ReportFile, EachKindIsWrittenWholeOrNotAtAll) {
    test::TempFolder dir;
    const PrintJob job = Summary();
    for (const auto& [name, start] : std::vector<std::pair<std::string, std::string>>{
             {"text", "ਕਿਰਤ"}, {"csv", "Date,Form No."}, {"xlsx", "PK"}}) {
        const fs::path path = dir.Path() / ("summary." + name);
        desk::SaveReport(job, *desk::ReportFormatNamed(name), path);
        EXPECT_EQ(test::FileBytes(path).substr(0, start.size()), start) << name;
    }
    EXPECT_FALSE(desk::ReportFormatNamed("doc"));
    // `qx` makes PDF with the Qt renderer on the offscreen platform; without Qt it says so.
    const fs::path pdf = dir.Path() / "summary.pdf";
#ifdef QX_WITH_PDF
    desk::SaveReport(job, desk::ReportFormat::Pdf, pdf);
    EXPECT_EQ(test::FileBytes(pdf).substr(0, 5), "%PDF-");
#else
    EXPECT_THROW(desk::SaveReport(job, desk::ReportFormat::Pdf, pdf), std::runtime_error);
    EXPECT_FALSE(fs::exists(pdf));
#endif

    const fs::path missing = dir.Path() / "no-such-folder" / "summary.csv";
    try {
        desk::SaveReport(job, desk::ReportFormat::Csv, missing);
        ADD_FAILURE() << "saved into a missing folder";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(error.what(), missing.string() + " cannot be written: the folder " +
                                    missing.parent_path().string() + " does not exist.");
    }

    // A folder the user may not write in: the old report stays as it was.
    const fs::path locked = dir.Path() / "locked";
    fs::create_directories(locked);
    const fs::path old = locked / "summary.xlsx";
    desk::SaveReport(job, desk::ReportFormat::Csv, old);
    fs::permissions(locked, fs::perms(0555));
    const std::string refused = test::AsUnprivileged([&]() -> std::string {
        try {
            desk::SaveReport(job, desk::ReportFormat::Xlsx, old);
            return "saved";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    });
    EXPECT_EQ(refused, old.string() + " cannot be written: you have no permission to write in the folder " +
                           locked.string() + ".");
    EXPECT_EQ(test::FileBytes(old).substr(0, 4), "Date");

    // A disk that fills while the workbook is written: said so, and nothing left of it.
    const fs::path small = dir.Path() / "small";
    fs::create_directories(small);
    PrintJob season = job;
    for (int i = 0; i < 8000; ++i) season.rows.push_back(job.rows[1]);
    const auto seen = test::OnSmallDisk(small, 64, [&]() -> std::string {
        std::string said;
        for (const auto format : {desk::ReportFormat::Xlsx, desk::ReportFormat::Text}) {
            try {
                desk::SaveReport(season, format, small / "season");
                said += "saved|";
            } catch (const std::runtime_error& error) {
                said += std::string(error.what()) + "|";
            }
        }
        for (const auto& entry : fs::directory_iterator(small)) said += entry.path().filename().string();
        return said;
    });
    if (!seen) GTEST_SKIP() << "This system allows no user namespaces, so no small disk can be made.";
    const std::string full = "The disk holding " + (small / "season").string() +
                             " is full: free some space and try again.|";
    EXPECT_EQ(*seen, full + full);
}
