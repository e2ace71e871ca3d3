#include "ReportGrid.h"

namespace kivra {

void ShowJob(qx::ui::Grid& grid, const qx::PrintJob& job) {
    grid.SetRedraw(false);
    grid.ClearColumns();
    for (const qx::PrintColumn& column : job.columns) {
        const int col = grid.AddColumn(column.caption, column.width, column.align);
        grid.Column(col).editable = false;
    }
    grid.SetRows(static_cast<int>(job.rows.size()) + 1);
    for (std::size_t r = 0; r < job.rows.size(); ++r) {
        const int row = static_cast<int>(r) + 1;
        const qx::PrintRow& printed = job.rows[r];
        for (std::size_t c = 0; c < printed.cells.size() && c < job.columns.size(); ++c)
            grid.SetTextMatrix(row, static_cast<int>(c), printed.cells[c]);
        grid.SetRowMarks(row, printed.marks);
    }
    // A period without forms shows an empty grid.
    if (!job.rows.empty()) grid.SetCurrent(1, 0);
    grid.SetRedraw(true);
}

} // namespace kivra
