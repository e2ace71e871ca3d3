#pragma once
// The host grid: cells of text addressed by row and column, row 0 the caption row. It is
// the item grid of a document, the charges and summary grids, a master's edit grid and a
// report's grid (whose rows carry print marks).
//
// A user edits a grid cell by cell: he moves to a cell, types, and leaves it. Leaving runs,
// in order: OnCellBeforeLostFocus (may cancel: the typed text stays and so does the
// cursor), OnCellLostFocus, and when the row changes OnRowLeave (may cancel). Typing into
// the last row of a grid that grows adds a fresh empty row after it and runs OnRowAdded for
// the row being filled.

#include "Commands.h"
#include "../PrintJob.h"

#include <optional>
#include <string>
#include <vector>

namespace qx::ui {

struct GridColumn {
    std::string caption;
    int width = 1000; // twips; 0 hides the column
    Align align = Align::Default;
    std::string format; // FormatAmount format of the column ("c2"), empty: text
    bool editable = true;
    std::string key;    // the host's key of the column, e.g. "ADD_LESS_KGS"
    // Worked out from other cells (a total, an amount): Enter passes it by, and Tab, the
    // arrows and a click still reach it.
    bool computed = false;
    // An empty cell proposes the text of the cell above (a new line's item, say): Enter or Tab
    // takes the proposal, typing replaces it, and until then the cell holds nothing.
    bool repeats = false;
};

class Grid : public Control {
public:
    explicit Grid(std::string name);

    // Shape and content, as a program sets them.
    int Rows() const { return static_cast<int>(cells_.size()); }
    void SetRows(int rows); // at least 1: the caption row stays
    int Cols() const { return static_cast<int>(columns_.size()); }
    int AddColumn(std::string caption, int width, Align align = Align::Default,
                  std::string format = {});
    GridColumn& Column(int col);
    const GridColumn& Column(int col) const;
    const std::string& ColumnFormat(int col) const { return Column(col).format; }
    void SetColumnFormat(int col, std::string format);
    void ClearColumns();
    void Clear(); // all rows but the caption row
    void RemoveRow(int row); // rows below move up; the caption row cannot be removed

    const std::string& TextMatrix(int row, int col) const;
    void SetTextMatrix(int row, int col, std::string text);
    const std::string& RowMarks(int row) const;
    void SetRowMarks(int row, std::string marks);
    // 0: normal; otherwise an RGB colour value, 255 being red.
    int RowColour(int row) const;
    void SetRowColour(int row, int colour);

    // While redraw is off the view is not told of changes; switching it on tells it once, and
    // runs OnRedraw, so that what follows the grid's content (a document's totals) can wait
    // while a program fills the grid and catch up once.
    bool Redraw() const { return redraw_; }
    void SetRedraw(bool on);
    std::function<void()> OnRedraw;

    bool Editable = false; // cells can be typed into
    bool GrowsRows = false; // typing into the last row adds an empty row after it
    bool SelectsRows = false; // a list to choose from: the cursor shows as its whole row
    // Marks rows for printing: the report grid's row marks are printed as layout.
    int FixedCols = 0; // leading columns shown as row headers

    // The cursor, as a program places it (no events run).
    int Row() const { return row_; }
    int Col() const { return col_; }
    void SetCurrent(int row, int col);

    // What the user does. Each returns false when a handler refused.
    // Moves the cursor to (row, col), leaving the current cell as a user does.
    bool MoveTo(int row, int col);
    // Types text into the current cell (replacing it); it is checked when the cell is left.
    void Type(std::string_view text);
    // The text being typed into the current cell, if any.
    const std::optional<std::string>& Editing() const { return editing_; }
    // Tab: next editable visible column, or the first of the next row.
    bool MoveNext();
    // Enter: as Tab, passing computed columns by.
    bool EnterNext();
    // What an empty cell of a repeating column proposes; empty when it proposes nothing.
    std::string Proposal(int row, int col) const;
    // Shift+Tab: the editable visible column before, or the last of the row above; false when
    // a handler refused or there is no such cell (AtFirstCell).
    bool MovePrevious();
    // Whether no cell the user types into comes before the cursor.
    bool AtFirstCell() const;
    // Leaves the current cell without moving (as when focus leaves the grid).
    bool Commit();
    void DoubleClick(int row, int col);

    std::function<void(int row, int col, const std::string& newValue, bool& cancel)>
        OnCellBeforeLostFocus;
    std::function<void(int row, int col)> OnCellLostFocus;
    std::function<void(int row, bool& cancel)> OnRowLeave;
    std::function<void(int row)> OnRowAdded;
    std::function<void(int row, int col)> OnDoubleClick;

    bool TakesFocus() const override { return Visible() && Enabled(); }

    // The grid as a report: visible columns, rows 1.. with their marks.
    PrintJob ToPrintJob(std::string title, std::string title2 = {}) const;

private:
    std::optional<std::pair<int, int>> CellBefore() const;
    bool MoveOn(bool passComputed);
    bool LeaveCell(int nextRow);
    void ChangedIfDrawing();

    std::vector<GridColumn> columns_;
    std::vector<std::vector<std::string>> cells_;
    std::vector<std::string> marks_;
    std::vector<int> colours_;
    bool redraw_ = true;
    int row_ = 1;
    int col_ = 0;
    std::optional<std::string> editing_;
};

// A report shown on its screen: the grid holds the print job's columns and rows, each row with
// its print marks, so that the screen shows what preview and paper show.
void ShowJob(Grid& grid, const PrintJob& job);

} // namespace qx::ui
