#include "DocumentContent.h"

namespace qx::desk {
namespace {

std::vector<std::vector<std::string>> CellsOf(const ui::Grid& grid) {
    std::vector<std::vector<std::string>> cells;
    for (int row = 1; row < grid.Rows(); ++row) {
        auto& line = cells.emplace_back();
        for (int col = 0; col < grid.Cols(); ++col)
            line.push_back(grid.TextMatrix(row, col));
    }
    return cells;
}

void PutCells(ui::Grid& grid, const std::vector<std::vector<std::string>>& cells) {
    grid.SetRedraw(false);
    grid.Clear();
    grid.SetRows(static_cast<int>(cells.size()) + 1);
    for (std::size_t i = 0; i < cells.size(); ++i)
        for (std::size_t col = 0; col < cells[i].size(); ++col)
            grid.SetTextMatrix(static_cast<int>(i) + 1, static_cast<int>(col), cells[i][col]);
    grid.SetRedraw(true);
}

} // namespace

std::string ContentSnapshot(const std::vector<const ui::TextBox*>& boxes,
                            const std::vector<const ui::Grid*>& grids) {
    std::string content;
    auto add = [&](const std::string& text) { content += text + '\x1f'; };
    for (const ui::TextBox* box : boxes)
        add(box->Text());
    for (const ui::Grid* grid : grids)
        for (int row = 1; row < grid->Rows(); ++row)
            for (int col = 0; col < grid->Cols(); ++col)
                add(grid->TextMatrix(row, col));
    for (const ui::Grid* grid : grids)
        if (grid->Editing())
            add(*grid->Editing());
    return content;
}

ScreenContent ScreenContent::Take(const ui::Grid& itemGrid, const ui::Grid& chargesGrid,
                                  DeskDocument& document) {
    ScreenContent content;
    content.items = CellsOf(itemGrid);
    for (int row = 1; row < itemGrid.Rows(); ++row)
        content.itemMarks.push_back(itemGrid.RowMarks(row));
    content.charges = CellsOf(chargesGrid);
    content.mainFields = document.MainFields();
    content.documentId = document.DocumentID();
    content.isNew = document.IsNewDocument();
    return content;
}

void ScreenContent::PutBack(ui::Grid& itemGrid, ui::Grid& chargesGrid,
                            DeskDocument& document) const {
    PutCells(itemGrid, items);
    for (std::size_t i = 0; i < itemMarks.size(); ++i)
        itemGrid.SetRowMarks(static_cast<int>(i) + 1, itemMarks[i]);
    PutCells(chargesGrid, charges);
    document.MainFields() = mainFields;
    document.SetIdentity(documentId, isNew);
}

} // namespace qx::desk
