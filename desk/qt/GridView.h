#pragma once
// The host grid as a table: the caption row is the header, cells are edited in place, and
// the cursor is the model's. A committed edit is typed into the model's current cell; moving
// the current cell is asked of the model, and when the model refuses the cursor goes back and
// the refused text stays in view for the user to correct.

#include "ControlViews.h"

#include "host/ui/Grid.h"

class QTableWidget;
class QTableWidgetItem;

namespace qx::desk {

class GridEditing;

class GridView : public ControlView {
public:
    GridView(ui::Grid& grid, ScreenWidget& screen, QWidget* parent);
    ~GridView() override;
    QWidget* Widget() const override;
    bool Expands() const override { return true; }
    void CommitTyping() override;

protected:
    void RefreshContent() override;

private:
    void CellCommitted(QTableWidgetItem& item);
    void CurrentCellMoved(int row, int col);
    void ShowModelCursor();
    void SpanHeadings();
    void ReopenEditor();

    ui::Grid& grid_;
    QTableWidget* table_;
    GridEditing* editing_; // owned by the table
};

} // namespace qx::desk
