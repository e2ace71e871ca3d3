#include "GridTyping.h"

#include "NameLookups.h"
#include "ScreenTexts.h"

#include "desk/masters/TableMaster.h"
#include "host/Text.h"

#include <stdexcept>
#include <utility>

namespace qx::desk {

void GridTyping::CheckCell(int row, int col, const std::string& typed, bool& cancel) {
    checked_.reset();
    // The text of a cell that was refused is in the cell, but the line was never worked out
    // with it.
    const bool refusedBefore = std::exchange(itemCellRefused_, false);
    if (quiet_)
        return;
    CheckedCell cell{row, col, typed, 0, false};
    std::string refusal;
    const bool ran = app_.Guard([&] {
        refusal = Accept(cell);
        cell.changed = cell.changed || refusedBefore;
        if (refusal.empty())
            cancel = document_.RaiseCancellable([&](DocumentEvents& l, bool& refuse) {
                l.GridCellBeforeLostFocus(row, col, typed, refuse);
            });
        if (refusal.empty() && !cancel && cell.changed &&
            items_.ColumnAt(col).role == ColumnRole::Number)
            refusal = WorkOutWith(cell, Trim(typed));
    });
    if (!refusal.empty())
        Warn(app_, refusal);
    if (!ran || !refusal.empty())
        cancel = true;
    itemCellRefused_ = cancel;
    if (!cancel)
        checked_ = std::move(cell);
}

// The refusal to show, or empty with the cell's text (and code) as it is to be kept.
std::string GridTyping::Accept(CheckedCell& cell) {
    const ui::Grid& grid = items_.Grid();
    const SeriesColumn& column = items_.ColumnAt(cell.col);
    CompanyDb& db = document_.Database();
    std::string text = Trim(cell.text);
    switch (column.role) {
    case ColumnRole::Item:
    case ColumnRole::Party: {
        const bool item = column.role == ColumnRole::Item;
        const NameLookup& lookup = item ? kItems : kAccounts;
        if (!text.empty()) {
            NameFound found =
                FindNamed(db, lookup, text, item ? AccountGroups() : column.groups, column.caption);
            if (!found.refusal.empty())
                return found.refusal;
            cell.code = found.named.code;
            text = std::move(found.named.name);
        }
        cell.changed =
            cell.code !=
            CodeIn(grid, cell.row, item ? items_.Member("COL_STK_CODE") : items_.PartyCodeCol());
        break;
    }
    case ColumnRole::ItemCode:
    case ColumnRole::Number:
        if (!text.empty()) {
            if (auto refusal = AcceptNumber(ColumnKind::Decimal, text); !refusal.empty())
                return refusal;
            if (auto refusal = FigureRefusal(column, TextToAmount(text)); !refusal.empty())
                return refusal;
            if (column.role == ColumnRole::ItemCode &&
                NameOf(db, kItems, TextToAmount(text).WholePart()).empty())
                return "There is no item with code " + text + ". Press F2 to choose one.";
            text = CellText(TextToAmount(text),
                            column.role == ColumnRole::Number ? column.format : "");
        }
        cell.changed = TextToAmount(text) != TextToAmount(grid.TextMatrix(cell.row, cell.col));
        break;
    case ColumnRole::PartyCode:
    case ColumnRole::Text:
        cell.changed = text != grid.TextMatrix(cell.row, cell.col);
        break;
    }
    cell.text = std::move(text);
    return {};
}

// A new figure works its line out before the cell is left, so that a figure the line cannot
// hold is refused while the cursor is still in the cell: one that makes the line's amount or
// the document's total too large is refused and the line keeps what it had. A line that
// cannot be worked out yet (it divides by a figure still 0) takes the figure and stays marked
// until it can be. Returns the refusal; the cell's text is then what the working out left.
std::string GridTyping::WorkOutWith(CheckedCell& cell, const std::string& typed) {
    ui::Grid& grid = items_.Grid();
    std::vector<std::string> before;
    for (int col = 0; col < grid.Cols(); ++col)
        before.push_back(grid.TextMatrix(cell.row, col));
    const auto restore = [&] {
        for (int col = 0; col < grid.Cols(); ++col)
            grid.SetTextMatrix(cell.row, col, before[static_cast<std::size_t>(col)]);
    };
    const std::string where = "Line " + std::to_string(cell.row) + ", " +
                              items_.ColumnAt(cell.col).caption + ": " + typed;
    grid.SetTextMatrix(cell.row, cell.col, cell.text);
    bool lineWorkedOut = false;
    try {
        items_.WorkOut(cell.row);
        lineWorkedOut = true;
        totals_.Current();
    } catch (const std::overflow_error&) {
        restore();
        return where + (lineWorkedOut ? " makes the document's total too large."
                                      : " makes the line's amount too large.");
    } catch (const std::domain_error&) {
        Warn(app_, where + " is kept, but the line cannot be worked out while a figure it "
                           "divides by is 0 or empty. Fill in the rest of the line.");
    } catch (...) {
        restore();
        throw;
    }
    cell.text = grid.TextMatrix(cell.row, cell.col);
    return {};
}

// The checked text goes in; a new figure has worked its line out already.
void GridTyping::TakeCell(int row, int col) {
    if (quiet_)
        return;
    app_.Guard([&] {
        ui::Grid& grid = items_.Grid();
        bool changed = false;
        if (checked_ && checked_->row == row && checked_->col == col) {
            const CheckedCell cell = std::move(*checked_);
            checked_.reset();
            changed = cell.changed;
            grid.SetTextMatrix(row, col, cell.text);
            if (changed) {
                items_.NumberRow(row);
                switch (items_.ColumnAt(col).role) {
                case ColumnRole::Item:
                    grid.SetTextMatrix(row, items_.Member("COL_STK_CODE"), CodeText(cell.code));
                    items_.FillItem(row);
                    break;
                case ColumnRole::ItemCode:
                    items_.FillItem(row);
                    break;
                case ColumnRole::Party:
                    grid.SetTextMatrix(row, items_.PartyCodeCol(), CodeText(cell.code));
                    break;
                case ColumnRole::Number:
                case ColumnRole::PartyCode:
                case ColumnRole::Text:
                    break;
                }
            }
        }
        document_.Raise([&](DocumentEvents& l) { l.GridCellLostFocus(row, col); });
        if (changed)
            totals_.Show();
    });
}

void GridTyping::LookUpCell() {
    ui::Grid& grid = items_.Grid();
    if (grid.Row() < 1 || grid.Row() >= grid.Rows())
        return;
    const SeriesColumn& column = items_.ColumnAt(grid.Col());
    if (column.role != ColumnRole::Item && column.role != ColumnRole::Party)
        return;
    const bool item = column.role == ColumnRole::Item;
    const std::string typed = grid.Editing().value_or(grid.TextMatrix(grid.Row(), grid.Col()));
    if (auto chosen = ChooseByName(app_, item ? kItems : kAccounts, item ? "Items" : column.caption,
                                   typed, column.groups)) {
        grid.Type(chosen->name);
        grid.EnterNext();
    }
}

// The document's total must still be workable with the rate.
void GridTyping::CheckRate(int row, int col, const std::string& typed, bool& cancel) {
    rateTyped_.reset();
    const bool refusedBefore = std::exchange(rateRefused_, false); // its text is in the cell
    std::string text = Trim(typed);
    if (quiet_ || col != ChargesGrid::kRateCol)
        return;
    ui::Grid& grid = charges_.Grid();
    const std::string charge = grid.TextMatrix(row, ChargesGrid::kCaptionCol);
    std::string refusal = text.empty() ? std::string() : AcceptNumber(ColumnKind::Decimal, text);
    if (refusal.empty() && TextToAmount(text) < Amount())
        refusal = charge + " cannot be below 0.";
    if (refusal.empty() &&
        (refusedBefore || TextToAmount(text) != TextToAmount(grid.TextMatrix(row, col)))) {
        const std::string rate = CellText(TextToAmount(text), "");
        const std::string was = grid.TextMatrix(row, col);
        grid.SetTextMatrix(row, col, rate);
        try {
            totals_.Current();
            rateTyped_ = rate;
        } catch (const std::overflow_error&) {
            refusal = charge + ": " + Trim(typed) + " makes the document's total too large.";
        }
        grid.SetTextMatrix(row, col, was);
    }
    if (!refusal.empty()) {
        Warn(app_, refusal);
        cancel = rateRefused_ = true;
    }
}

void GridTyping::TakeRate(int row, int col) {
    if (!rateTyped_)
        return;
    charges_.Grid().SetTextMatrix(row, col, *std::exchange(rateTyped_, std::nullopt));
    app_.Guard([&] { totals_.Show(); });
}

bool GridTyping::CommitTyping() {
    for (auto [grid, refused] :
         {std::pair{&items_.Grid(), itemCellRefused_}, {&charges_.Grid(), rateRefused_}})
        if ((grid->Editing() || refused) && !grid->Commit())
            return false;
    return true;
}

void GridTyping::Forget() {
    checked_.reset();
    itemCellRefused_ = rateRefused_ = false;
}

} // namespace qx::desk
