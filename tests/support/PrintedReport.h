#pragma once
// A report's rows as text to compare, and the report printed as PDF for a person to look at.

#include "desk/core/ReportFile.h"
#include "desk/qt/QtTestSupport.h"
#include "host/PrintJob.h"

#include <string>
#include <vector>

namespace qx::test {

// A report's rows as "marks cells", the cells joined by "|" up to the last one filled.
inline std::vector<std::string> JobLines(const PrintJob& job) {
    std::vector<std::string> lines;
    for (const PrintRow& row : job.rows) {
        std::size_t filled = row.cells.size();
        while (filled > 0 && row.cells[filled - 1].empty()) --filled;
        std::string line = row.marks;
        for (std::size_t c = 0; c < filled; ++c) line += (c ? "|" : " ") + row.cells[c];
        lines.push_back(line);
    }
    return lines;
}

// The report printed as PDF (NAME.pdf), its first page kept as NAME-1.png for a person to look
// at; the text of its pages as poppler reads it back.
inline std::string PrintedText(const PrintJob& job, const std::string& name) {
    const auto pdf = OutputFolder() / (name + ".pdf");
    desk::SaveReport(job, desk::ReportFormat::Pdf, pdf);
    std::string text;
    for (int page = 1, pages = PdfPages(pdf); page <= pages; ++page) text += PdfPageText(pdf, page);
    RunTool("pdftoppm -png -r 60 -f 1 -l 1 '" + pdf.string() + "' '" + (OutputFolder() / name).string() + "'");
    return text;
}

} // namespace qx::test
