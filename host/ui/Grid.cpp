#include "Grid.h"

#include <algorithm>
#include <stdexcept>

namespace qx::ui {
namespace {

void CheckRow(const Grid& grid, int row) {
    if (row < 0 || row >= grid.Rows())
        throw std::out_of_range("grid " + grid.Name() + " has no row " + std::to_string(row));
}

void CheckColumn(const Grid& grid, int col) {
    if (col < 0 || col >= grid.Cols())
        throw std::out_of_range("grid " + grid.Name() + " has no column " + std::to_string(col));
}

// A cell the user can be in: row 0 holds the captions.
bool IsDataCell(const Grid& grid, int row, int col) {
    return row >= 1 && row < grid.Rows() && col >= 0 && col < grid.Cols();
}

bool Shown(const GridColumn& column) { return column.width > 0; }

bool TakesTyping(const Grid& grid) {
    if (!grid.Editable || !grid.Enabled() || !IsDataCell(grid, grid.Row(), grid.Col()))
        return false;
    const GridColumn& column = grid.Column(grid.Col());
    return column.editable && Shown(column);
}

} // namespace

// Row 0 of cells_ stays empty: the captions live in the columns, so that a column and its
// caption are added and cleared together.
Grid::Grid(std::string name) : Control(ControlKind::Grid, std::move(name)) { SetRows(1); }

void Grid::SetRows(int rows) {
    rows = std::max(rows, 1);
    const int oldRows = Rows();
    cells_.resize(static_cast<std::size_t>(rows));
    for (int row = std::max(oldRows, 1); row < rows; ++row) cells_[row].resize(columns_.size());
    marks_.resize(cells_.size());
    colours_.resize(cells_.size());
    // A cursor in a row that was cut off comes back to the last row, and what was being
    // typed there goes with the row.
    if (row_ >= rows) {
        row_ = std::max(rows - 1, 1);
        editing_.reset();
    }
    ChangedIfDrawing();
}

int Grid::AddColumn(std::string caption, int width, Align align, std::string format) {
    GridColumn& column = columns_.emplace_back();
    column.caption = std::move(caption);
    column.width = width;
    column.align = align;
    column.format = std::move(format);
    for (int row = 1; row < Rows(); ++row) cells_[row].emplace_back();
    ChangedIfDrawing();
    return Cols() - 1;
}

GridColumn& Grid::Column(int col) {
    CheckColumn(*this, col);
    return columns_[col];
}

const GridColumn& Grid::Column(int col) const {
    CheckColumn(*this, col);
    return columns_[col];
}

void Grid::SetColumnFormat(int col, std::string format) { Column(col).format = std::move(format); }

void Grid::ClearColumns() {
    columns_.clear();
    for (auto& cells : cells_) cells.clear();
    col_ = 0;
    editing_.reset();
    ChangedIfDrawing();
}

void Grid::Clear() { SetRows(1); }

void Grid::RemoveRow(int row) {
    if (row < 1 || row >= Rows())
        throw std::out_of_range("grid " + Name() + " has no row " + std::to_string(row) + " to remove");
    cells_.erase(cells_.begin() + row);
    marks_.erase(marks_.begin() + row);
    colours_.erase(colours_.begin() + row);
    // What was being typed into the removed row goes with it; a cursor below it moves up
    // with its row.
    if (row_ == row) editing_.reset();
    if (row_ > row || row_ >= Rows()) row_ = std::max(row_ - 1, 1);
    ChangedIfDrawing();
}

const std::string& Grid::TextMatrix(int row, int col) const {
    CheckRow(*this, row);
    CheckColumn(*this, col);
    return row == 0 ? columns_[col].caption : cells_[row][col];
}

void Grid::SetTextMatrix(int row, int col, std::string text) {
    CheckRow(*this, row);
    CheckColumn(*this, col);
    std::string& cell = row == 0 ? columns_[col].caption : cells_[row][col];
    if (cell == text) return;
    cell = std::move(text);
    ChangedIfDrawing();
}

const std::string& Grid::RowMarks(int row) const {
    CheckRow(*this, row);
    return marks_[row];
}

void Grid::SetRowMarks(int row, std::string marks) {
    CheckRow(*this, row);
    if (marks_[row] == marks) return;
    marks_[row] = std::move(marks);
    ChangedIfDrawing();
}

int Grid::RowColour(int row) const {
    CheckRow(*this, row);
    return colours_[row];
}

void Grid::SetRowColour(int row, int colour) {
    CheckRow(*this, row);
    if (colours_[row] == colour) return;
    colours_[row] = colour;
    ChangedIfDrawing();
}

void Grid::SetRedraw(bool on) {
    if (on == redraw_) return;
    redraw_ = on;
    if (!redraw_) return;
    Changed();
    if (OnRedraw) OnRedraw();
}

void Grid::ChangedIfDrawing() {
    if (redraw_) Changed();
}

// The program may park the cursor on the caption row (a list with nothing to choose), but
// not outside the grid.
void Grid::SetCurrent(int row, int col) {
    CheckRow(*this, row);
    CheckColumn(*this, col);
    if (row == row_ && col == col_) return;
    row_ = row;
    col_ = col;
    editing_.reset();
    ChangedIfDrawing();
}

bool Grid::MoveTo(int row, int col) {
    if (!Enabled() || !IsDataCell(*this, row, col)) return false;
    if (row == row_ && col == col_) return true;
    if (!LeaveCell(row)) return false;
    row_ = row;
    col_ = col;
    ChangedIfDrawing();
    return true;
}

void Grid::Type(std::string_view text) {
    if (!TakesTyping(*this)) return;
    editing_ = std::string(text);
    ChangedIfDrawing();
    // The fresh row is added as soon as the last row is typed into, so that Enter always
    // has a row to move on to.
    if (GrowsRows && row_ == Rows() - 1) {
        const int filledRow = row_;
        SetRows(Rows() + 1);
        if (OnRowAdded) OnRowAdded(filledRow);
    }
}

bool Grid::MoveNext() { return MoveOn(false); }

bool Grid::EnterNext() { return MoveOn(true); }

std::string Grid::Proposal(int row, int col) const {
    if (row < 2 || !IsDataCell(*this, row, col) || !columns_[col].repeats ||
        !cells_[row][col].empty())
        return {};
    return cells_[row - 1][col];
}

bool Grid::MoveOn(bool passComputed) {
    if (!IsDataCell(*this, row_, col_)) return false;
    // Moving on from an empty cell that proposes something takes the proposal, as if typed.
    if (!editing_ && TakesTyping(*this))
        if (std::string proposal = Proposal(row_, col_); !proposal.empty()) Type(proposal);
    for (int row = row_, col = col_ + 1; row < Rows(); ++row, col = 0)
        for (; col < Cols(); ++col) {
            const GridColumn& column = columns_[col];
            if (column.editable && Shown(column) && !(passComputed && column.computed))
                return MoveTo(row, col);
        }
    // Nowhere further to go: Enter still takes what was typed.
    return Commit();
}

std::optional<std::pair<int, int>> Grid::CellBefore() const {
    if (!IsDataCell(*this, row_, col_)) return std::nullopt;
    for (int row = row_, col = col_ - 1; row >= 1; --row, col = Cols() - 1)
        for (; col >= 0; --col)
            if (columns_[col].editable && Shown(columns_[col])) return std::pair(row, col);
    return std::nullopt;
}

bool Grid::MovePrevious() {
    const auto before = CellBefore();
    return before && MoveTo(before->first, before->second);
}

bool Grid::AtFirstCell() const { return !CellBefore(); }

bool Grid::Commit() { return LeaveCell(row_); }

void Grid::DoubleClick(int row, int col) {
    if (!MoveTo(row, col)) return;
    if (OnDoubleClick) OnDoubleClick(row, col);
}

bool Grid::LeaveCell(int nextRow) {
    if (!IsDataCell(*this, row_, col_)) return true;
    const int row = row_;
    const int col = col_;
    // The typed text is taken out of the editor first: the cell gets it whether the check
    // accepts it or not, and a refused value stays in view for the user to correct.
    std::optional<std::string> typed = std::move(editing_);
    editing_.reset();
    const std::string newValue = typed ? *typed : cells_[row][col];
    bool cancel = false;
    if (OnCellBeforeLostFocus) OnCellBeforeLostFocus(row, col, newValue, cancel);
    if (typed) SetTextMatrix(row, col, *typed);
    if (cancel) return false;
    if (OnCellLostFocus) OnCellLostFocus(row, col);
    if (nextRow != row && OnRowLeave) {
        OnRowLeave(row, cancel);
        if (cancel) return false;
    }
    return true;
}

PrintJob Grid::ToPrintJob(std::string title, std::string title2) const {
    PrintJob job;
    job.title = std::move(title);
    job.title2 = std::move(title2);
    for (const GridColumn& column : columns_)
        if (Shown(column)) job.columns.push_back({column.caption, column.width, column.align});
    for (int row = 1; row < Rows(); ++row) {
        PrintRow& printed = job.rows.emplace_back();
        printed.marks = marks_[row];
        for (int col = 0; col < Cols(); ++col)
            if (Shown(columns_[col])) printed.cells.push_back(cells_[row][col]);
    }
    return job;
}

void ShowJob(Grid& grid, const PrintJob& job) {
    grid.SetRedraw(false);
    grid.ClearColumns();
    for (const PrintColumn& column : job.columns) {
        const int col = grid.AddColumn(column.caption, column.width, column.align);
        grid.Column(col).editable = false;
    }
    grid.SetRows(static_cast<int>(job.rows.size()) + 1);
    for (std::size_t r = 0; r < job.rows.size(); ++r) {
        const int row = static_cast<int>(r) + 1;
        const PrintRow& printed = job.rows[r];
        for (std::size_t c = 0; c < printed.cells.size() && c < job.columns.size(); ++c)
            grid.SetTextMatrix(row, static_cast<int>(c), printed.cells[c]);
        grid.SetRowMarks(row, printed.marks);
    }
    // A report without rows shows an empty grid.
    if (!job.rows.empty()) grid.SetCurrent(1, 0);
    grid.SetRedraw(true);
}

} // namespace qx::ui
