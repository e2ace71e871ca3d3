#pragma once
// The item grid: a row a line of the document, under the columns its series makes. Column 0
// is the serial number, so that a column number 0 means "absent" to an extension. The item and
// party columns show names; the host keeps their codes in hidden columns, and in another the
// mark of a line not worked out, so that the mark moves with its line.

#include "DeskDocument.h"
#include "Series.h"

#include "host/PropertyBag.h"
#include "host/ui/Grid.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

class ItemGrid {
public:
    ItemGrid(ui::Grid& grid, DeskDocument& document);
    ui::Grid& Grid() { return grid_; }
    const ui::Grid& Grid() const { return grid_; }

    // The columns of the document's series, raising the extensions' events as they are made.
    void Build();
    // What a column holds; a column the series did not make holds text that is not saved.
    const SeriesColumn& ColumnAt(int col) const;
    // A column by its member name ("COL_QUANTITY"); 0 when the grid has none.
    int Member(std::string_view name) const;
    int PartyCodeCol() const { return partyCodeCol_; }

    // No lines, and the cursor in the first cell the user types into.
    void Clear();
    // A saved document's lines, each raised to the extensions as it is shown.
    void ShowSaved(const std::vector<PropertyBag>& lines);
    void NumberRow(int row);
    // The item's name and details, into a line that holds its code.
    void FillItem(int row);
    // The host's line calculation (amount = quantity x rate), then the extensions'. The line
    // stays marked as not worked out when either fails.
    void WorkOut(int row);
    bool IsWorkedOut(int row) const;
    // "Line 3 is not worked out ..."; empty for a line that is.
    std::string UnworkedRefusal(int row) const;

    bool HasLines() const;
    // Whether anything is typed in the row, a line or not.
    bool RowHasContent(int row) const;
    Amount Bags() const;
    // The line as DOCDATA keeps it.
    PropertyBag LineRecord(int row, std::int32_t documentId, int refNo) const;

private:
    void ShowSavedLine(int row, const PropertyBag& line);

    ui::Grid& grid_;
    DeskDocument& document_;
    std::vector<SeriesColumn> columns_;               // by grid column
    std::map<std::string, int, std::less<>> members_; // "COL_QUANTITY" -> column
    int partyCodeCol_ = 0;
    int unworkedCol_ = 0;
};

} // namespace qx::desk
