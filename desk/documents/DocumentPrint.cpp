#include "DocumentPrint.h"

#include <utility>
#include <vector>

namespace qx::desk {

PrintJob DocumentPrintJob(const ui::Grid& grid, const DeskDocument& document,
                          const DocumentTotals& totals, std::string title, std::string title2) {
    PrintJob job = grid.ToPrintJob(std::move(title), std::move(title2));
    job.reportName = "Document";
    std::vector<PrintRow> lines;
    for (int row = 1; row < grid.Rows(); ++row)
        if (document.IsLine(row))
            lines.push_back(std::move(job.rows[static_cast<std::size_t>(row - 1)]));
    job.rows = std::move(lines);
    const std::size_t width = job.columns.size();
    auto figure = [&](const std::string& caption, Amount value, std::string marks) {
        PrintRow& row = job.rows.emplace_back();
        row.cells.assign(width, "");
        row.cells[width >= 2 ? width - 2 : 0] = caption;
        row.cells.back() = FormatAmount(value, "c2");
        row.marks = std::move(marks);
    };
    figure("Gross Amount", totals.gross, "*blanklinebefore*");
    const auto& charges = document.CurrentSeries().charges;
    for (std::size_t i = 0; i < charges.size(); ++i)
        if (!totals.charges[i].IsZero())
            figure(charges[i].caption, charges[i].sign < 0 ? -totals.charges[i] : totals.charges[i],
                   "");
    if (!totals.roundOff.IsZero())
        figure("Round Off", totals.roundOff, "");
    figure("Grand Total", totals.grandTotal, "*totals*");
    return job;
}

} // namespace qx::desk
