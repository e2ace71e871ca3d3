#include "DocumentPrint.h"

#include "host/AmountWords.h"

#include <utility>
#include <vector>

namespace qx::desk {
namespace {

// Where a grid column stands among the columns printed, which are only those shown.
std::size_t PrintedIndex(const ui::Grid& grid, int col, std::size_t printed) {
    if (col <= 0 || col >= grid.Cols() || grid.Column(col).width <= 0) return printed - 1;
    std::size_t index = 0;
    for (int c = 0; c < col; ++c)
        if (grid.Column(c).width > 0) ++index;
    return index;
}

// A column that no line fills (revised bags never revised) is left off the paper, for the
// others to have its room. The amount column stays; its new place is returned.
std::size_t DropEmptyColumns(PrintJob& job, std::size_t amount) {
    std::vector<bool> keep(job.columns.size(), false);
    keep[amount] = true;
    for (const PrintRow& row : job.rows)
        for (std::size_t c = 0; c < keep.size() && c < row.cells.size(); ++c)
            if (row.cells[c].find_first_not_of(' ') != std::string::npos) keep[c] = true;
    std::size_t kept = 0, amountKept = 0;
    for (std::size_t c = 0; c < keep.size(); ++c) {
        if (!keep[c]) continue;
        if (c == amount) amountKept = kept;
        if (kept != c) {
            job.columns[kept] = std::move(job.columns[c]);
            for (PrintRow& row : job.rows)
                if (c < row.cells.size()) row.cells[kept] = std::move(row.cells[c]);
        }
        ++kept;
    }
    job.columns.resize(kept);
    for (PrintRow& row : job.rows) row.cells.resize(kept);
    return amountKept;
}

} // namespace

PrintJob DocumentPrintJob(const ui::Grid& grid, int amountCol, const DeskDocument& document,
                          const DocumentTotals& totals, const DocumentPaper& paper) {
    std::string particulars;
    for (const std::string& line : paper.particulars)
        particulars += (particulars.empty() ? "" : "\n") + line;
    PrintJob job = grid.ToPrintJob(paper.title, particulars);
    job.reportName = "Document";
    job.options.SetValue("ColumnWidths", "Fit"); // the screen's widths, not the paper's
    for (const char* section : {"MainHeadForm1", "MainHeadForm2", "MainHeadForm3"})
        job.headSections.push_back({kDocumentHeadDesign, section});
    job.footSections.push_back({kDocumentFootDesign, "BottomLine"});
    std::vector<PrintRow> lines;
    for (int row = 1; row < grid.Rows(); ++row)
        if (document.IsLine(row))
            lines.push_back(std::move(job.rows[static_cast<std::size_t>(row - 1)]));
    job.rows = std::move(lines);
    const std::size_t amount = DropEmptyColumns(job, PrintedIndex(grid, amountCol, job.columns.size()));
    const std::size_t width = job.columns.size();
    // A caption stands right against its figure, running on to the left over the empty cells.
    auto figure = [&](const std::string& caption, std::string value, std::string marks) {
        PrintRow& row = job.rows.emplace_back();
        row.cells.assign(width, "");
        if (amount > 0) row.cells[amount - 1] = caption;
        row.cells[amount] = std::move(value);
        row.marks = std::move(marks);
    };
    figure("Gross Amount", FormatAmount(totals.gross, "c2"), "*blanklinebefore*");
    const auto& charges = document.CurrentSeries().charges;
    for (std::size_t i = 0; i < charges.size(); ++i)
        if (!totals.charges[i].IsZero())
            figure(charges[i].caption,
                   FormatAmount(charges[i].sign < 0 ? -totals.charges[i] : totals.charges[i], "c2"), "");
    if (!totals.roundOff.IsZero())
        figure("Round Off", FormatAmount(totals.roundOff, "c2"), "");
    figure(paper.totalCaption, FormatAmount(totals.grandTotal, "c2"), "*totals*");
    PrintRow& words = job.rows.emplace_back();
    words.cells.assign(width, "");
    words.cells[0] = AmountInWords(totals.grandTotal);
    words.marks = "*totals*";
    for (std::size_t i = 0; i < paper.notes.size(); ++i)
        figure(paper.notes[i].caption, paper.notes[i].figure, i == 0 ? "*blanklinebefore*" : "");
    return job;
}

} // namespace qx::desk
