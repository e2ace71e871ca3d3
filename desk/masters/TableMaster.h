#pragma once
// The desk's grid master: one editable grid over one table, driven by a MasterDefinition.
// The user edits records in place; a row is saved when he leaves it (or closes the screen),
// and every cell is checked when he leaves it, with the cursor kept on a refused value.
// Keys: F2 look-up in a look-up column, F3 delete, F8 preview, F9 print, Esc exit.

#include "MasterDefinition.h"

#include "desk/core/DeskApp.h"
#include "host/ui/Screen.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

// A typed number in its plain form ("1,200.50" becomes "1200.5"), or the message that
// refuses a text that is not one (of the kind asked for).
std::string AcceptNumber(ColumnKind kind, std::string& text);

class TableMaster : public ui::Screen {
public:
    TableMaster(DeskApp& app, MasterDefinition definition);

    const MasterDefinition& Definition() const { return definition_; }
    // The grid column that shows a field (the key, the name or another column).
    int ColumnOf(std::string_view field) const;
    // Takes what is being typed and saves the current row if it changed; false when refused.
    bool SaveCurrentRow();

protected:
    void Load() override;
    void FirstActivate() override;
    void QueryUnload(bool& cancel) override;

private:
    struct GridField {
        const MasterColumn* column;
        int col;
        int codeCol = -1; // look-ups: the hidden column holding the chosen record's code
    };
    // A cell value that passed its checks, to be written into the cell once it is left.
    struct AcceptedCell {
        int row;
        int col;
        std::string text;
        std::string code;
        bool changed;
    };

    // Asked for each time: a screen never holds on to a company the desk may have closed.
    CompanyDb& Db();
    const GridField* FieldAt(int col) const;
    const GridField& FieldOf(std::string_view field) const;
    std::int64_t SavedKey(int row) const;
    bool RowHasContent(int row) const;

    void FillGrid();
    void KeepEmptyLastRow();
    void CheckCell(int row, int col, const std::string& typed, bool& cancel);
    // The text to keep and, for a look-up, the code; or the message that refuses the text.
    std::string Accept(const GridField& field, int row, const std::string& typed,
                       AcceptedCell& accepted);
    std::string AcceptKey(const MasterColumn& column, int row, std::string& text);
    std::string AcceptText(const MasterColumn& column, std::string& text);
    std::string AcceptLookup(const MasterColumn& column, std::string& text, std::string& code);
    // "NAME already exists." when another record than the row's has the name.
    std::string NameRefusal(int row, const std::string& name);
    void TakeCell(int row, int col);
    bool SaveRow(int row);
    void WriteRow(int row, SavedRecord& record);
    void DeleteRow();
    // The refusal to delete the record, or empty when it was deleted.
    std::string DeleteRecord(const std::string& name, std::int64_t code);
    // The refusal to delete a record that something uses, saying what and how much; empty
    // when nothing uses it.
    std::string InUse(const std::string& name, std::int64_t code);
    void Lookup();
    void PrintList(PrintMode mode);
    void RunAction(const MasterAction& action);
    void OnCommand(const std::string& key);
    void Warn(const std::string& message);

    DeskApp& app_;
    const MasterDefinition definition_;
    ui::Grid& grid_;
    ui::ButtonBar& bar_;
    std::vector<GridField> fields_; // key, name, then the other columns, in grid order
    int savedKeyCol_ = 0;           // hidden: the key of the stored record, empty for a new row
    int changedCol_ = 0;            // hidden: "*" when the row was edited since it was saved
    std::optional<AcceptedCell> accepted_;
};

} // namespace qx::desk
