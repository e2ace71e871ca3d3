#pragma once
// The host's item-selection screen ("SelectItem", created by name through the host's
// FormProvider): the rows of a query under a caption, from which the user takes one row or,
// in pick-pending mode, marks several. The screen created by that name implements this.

#include "CompanyDb.h"
#include "Value.h"

#include <string>
#include <string_view>

namespace qx {

class SelectItemForm {
public:
    virtual ~SelectItemForm() = default;
    // Pick-pending mode: the user may mark several rows (Space) and takes them together.
    virtual void SetPickPendingMode(bool on) = 0;
    // The list opens on its first row; otherwise on none until the user moves or types.
    virtual void SetSelectFirstRow(bool on) = 0;
    // What the rows are ("J-Form"), named where the screen counts them.
    virtual void SetListType(std::string type) = 0;
    // Shows the query's rows under the caption, modally, until the user takes rows or cancels.
    // Fields whose names end in "ID" are codes for the caller and are not shown.
    virtual void SelectItem(CompanyDb& db, std::string_view sql, std::string caption) = 0;
    virtual bool Cancelled() const = 0;
    // The rows taken, in the list's order.
    virtual int SelectionCount() const = 0;
    // A field of the taken row at index (0-based), by its name in any letter case.
    virtual Value Selected(int index, std::string_view field) const = 0;
};

} // namespace qx
