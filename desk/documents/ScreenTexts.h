#pragma once
// How the entry screen shows figures and codes in its cells and boxes, and how it warns.

#include "desk/core/DeskApp.h"
#include "host/Amount.h"
#include "host/ui/Grid.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qx::desk {

// A figure as a cell shows it: nothing for 0, so that an untouched cell and a zero look alike.
inline std::string CellText(Amount value, std::string_view format) {
    return value.IsZero() ? std::string() : FormatAmount(value, format);
}

inline std::string CodeText(std::int64_t code) {
    return code == 0 ? std::string() : std::to_string(code);
}

// The code a cell holds; 0 for an empty cell or column 0 (no such column).
inline std::int32_t CodeIn(const ui::Grid& grid, int row, int col) {
    return col > 0 ? static_cast<std::int32_t>(TextToAmount(grid.TextMatrix(row, col)).WholePart())
                   : 0;
}

inline void Warn(DeskApp& app, const std::string& message) {
    app.ShowMessage(message, "", "W");
}

// Before what a screen holds gives way (another record, closing): what the user changed is
// saved or dropped as he says. False when it stays: he cancelled, or its save was refused.
inline bool LeaveChanged(DeskApp& app, bool changed, const std::string& question,
                         const std::function<bool()>& save) {
    if (!changed)
        return true;
    switch (app.ShowMessage(question, kYesNoCancel, "Q")) {
    case kAnswerYes:
        return save();
    case kAnswerNo:
        return true;
    default:
        return false;
    }
}

} // namespace qx::desk
