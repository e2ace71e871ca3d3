#pragma once
// The host's item-selection screen "SelectItem": the rows of a query in a list of several
// columns, shown modally and worked as every list of the desk is (ListScreen). In pick-pending
// mode Space marks and unmarks rows (a tick in the first column) and Enter takes the marked
// rows, or the current one when none is marked.

#include "ListScreen.h"

#include "host/HostUi.h"
#include "host/SelectItemForm.h"

#include <string>
#include <vector>

namespace qx::desk {

class SelectItemScreen : public ListScreen, public SelectItemForm {
public:
    explicit SelectItemScreen(HostUi& ui);

    // SelectItemForm
    void SetPickPendingMode(bool on) override { pickPending_ = on; }
    void SetSelectFirstRow(bool on) override { selectFirstRow_ = on; }
    void SetListType(std::string type) override { listType_ = std::move(type); }
    void SelectItem(CompanyDb& db, std::string_view sql, std::string caption) override;
    bool Cancelled() const override { return cancelled_; }
    int SelectionCount() const override { return static_cast<int>(taken_.size()); }
    Value Selected(int index, std::string_view field) const override;

    bool KeyDown(const ui::KeyPress& key) override;
    bool PickPendingMode() const { return pickPending_; }
    // In pick-pending mode, the rows whose code field holds one of the codes open marked (a
    // choice made before).
    void MarkCodes(std::string field, std::vector<std::int64_t> codes) {
        markField_ = std::move(field);
        markCodes_ = std::move(codes);
    }
    // Whether a row of the list (1-based, as the grid counts) is marked.
    bool Marked(int row) const;

private:
    void Fill(Recordset& rows);
    void ToggleMark();
    void SetMark(int row, bool marked);
    void MarkChosenBefore();
    void Take() override;
    void ShowCount();

    HostUi& ui_;
    ui::Label& count_;
    ui::StdButtons& buttons_;
    bool pickPending_ = false;
    bool selectFirstRow_ = false;
    std::string listType_;
    std::vector<std::string> fields_;
    std::vector<std::vector<Value>> rows_;
    std::vector<bool> marked_;
    std::string markField_;
    std::vector<std::int64_t> markCodes_;
    std::vector<std::size_t> taken_; // indices into rows_
    bool cancelled_ = true;
};

// What a user does on the item selection shown without a window (scripts, tests): for each
// entry of rows, the first row not yet marked whose shown cells include every text of it is
// marked (made current outside pick-pending mode), then the rows are taken. False, the list
// left open, when a row is not there.
bool TakeRows(ui::Screen& list, const std::vector<std::vector<std::string>>& rows);

// Names of the screen's controls, for those who drive it (tests, scripts).
inline constexpr const char* kSelectItemScreen = "SelectItem";
inline constexpr const char* kSelectItemGrid = "List";

} // namespace qx::desk
