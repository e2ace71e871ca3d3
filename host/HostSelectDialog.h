#pragma once
// The host's list-selection dialog: a caption, fixed first entries, rows from a query.

#include "CompanyDb.h"

#include <cstdint>
#include <string>

namespace qx {

class HostSelectDialog {
public:
    virtual ~HostSelectDialog() = default;
    virtual void SetCaption(std::string caption) = 0;
    virtual void AddItem(std::string text, std::int64_t value) = 0;
    virtual void FillFromQuery(CompanyDb& db, std::string_view sql, std::string_view displayField,
                               std::string_view keyField) = 0;
    // What the user had typed before asking for the list: it opens at the first entry that
    // starts with it (at none when none does), as if he had typed it into the list.
    virtual void SetStartText(std::string text) = 0;
    // Shows the list modally; true when a row was chosen.
    virtual bool Show() = 0;
    virtual int SelectedIndex() const = 0; // 1-based; 0 when none
    virtual std::string SelectedText() const = 0;
    virtual std::int64_t SelectedValue() const = 0;
};

} // namespace qx
