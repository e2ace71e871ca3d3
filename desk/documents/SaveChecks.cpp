// What a series asks of a document is data of the series: boxes that must be filled (a firm
// with several mandis requires the market of every form), and parties from the series' account
// groups (a J-Form's farmer, its buyers). A name typed into a box or cell is checked as it is
// left; the save checks again what a document opened from the company, or a master changed
// since, may hold.
#include "SaveChecks.h"

#include "DocumentRecords.h"
#include "ScreenTexts.h"

#include "host/Text.h"

namespace qx::desk {
namespace {

std::string HeaderRefusal(const DocumentHeader& header, DeskDocument& document) {
    const DocumentHeader::Boxes& boxes = header.Controls();
    if (!Date::ParseDisplay(boxes.date.Text()))
        return "Enter the date as dd/MM/yyyy.";
    if (document.PartyID() == 0)
        return "Choose the party.";
    const Series& series = document.CurrentSeries();
    for (std::size_t i = 0; i < series.boxes.size(); ++i) {
        const SeriesBox& box = series.boxes[i];
        const std::string text = Trim(boxes.pool[i]->Text());
        if (!box.required || (!text.empty() && !(box.numeric && TextToAmount(text).IsZero())))
            continue;
        boxes.pool[i]->SetFocus();
        return box.lookup.empty()
                   ? "Enter the " + box.caption + ": the document is not saved without it."
                   : "Choose the " + box.caption + " (F2): the document is not saved without it.";
    }
    if (auto refusal = OutsideGroups(document.Database(), document.PartyID(), series.partyGroups,
                                     boxes.party.Caption());
        !refusal.empty()) {
        boxes.party.SetFocus();
        return refusal;
    }
    return {};
}

std::string LinePartiesRefusal(ItemGrid& items, DeskDocument& document) {
    const SeriesColumn* party = document.CurrentSeries().Column(kPartyKey);
    if (!party || party->groups.empty())
        return {};
    ui::Grid& grid = items.Grid();
    for (int row = 1; row < grid.Rows(); ++row) {
        const std::int32_t code = CodeIn(grid, row, items.PartyCodeCol());
        if (!document.IsLine(row) || code == 0)
            continue;
        if (auto refusal = OutsideGroups(document.Database(), code, party->groups, party->caption);
            !refusal.empty()) {
            grid.SetCurrent(row, items.Member("COL_" + party->key));
            grid.SetFocus();
            return "Line " + std::to_string(row) + ": " + refusal;
        }
    }
    return {};
}

// A line must be worked out and have every figure its series asks of each line (a quantity,
// a rate).
std::string LineRefusal(const ItemGrid& items, int row) {
    if (auto refusal = items.UnworkedRefusal(row); !refusal.empty())
        return refusal;
    const ui::Grid& grid = items.Grid();
    for (int col = 1; col < grid.Cols(); ++col) {
        const SeriesColumn& column = items.ColumnAt(col);
        if (column.role != ColumnRole::Number || column.figures != FigureRange::Positive)
            continue;
        if (auto refusal = FigureRefusal(column, TextToAmount(grid.TextMatrix(row, col)));
            !refusal.empty())
            return "Line " + std::to_string(row) + ": " + refusal;
    }
    return {};
}

std::string LinesRefusal(const ItemGrid& items, const DeskDocument& document) {
    bool anyLine = false;
    for (int row = 1; row < items.Grid().Rows(); ++row) {
        if (!document.IsLine(row)) {
            if (items.RowHasContent(row))
                return "Line " + std::to_string(row) + " has no item.";
            continue;
        }
        anyLine = true;
        if (auto refusal = LineRefusal(items, row); !refusal.empty())
            return refusal;
    }
    return anyLine ? std::string() : "Enter at least one item.";
}

} // namespace

std::string SaveRefusal(const DocumentHeader& header, ItemGrid& items, DeskDocument& document,
                        std::int32_t seriesId, std::int32_t number) {
    std::string refusal = HeaderRefusal(header, document);
    if (refusal.empty())
        refusal = LinePartiesRefusal(items, document);
    if (refusal.empty())
        refusal = LinesRefusal(items, document);
    if (refusal.empty() &&
        NumberTaken(document.Database(), seriesId, number, document.DocumentID()))
        refusal = "Document no. " + std::to_string(number) + " already exists.";
    return refusal;
}

} // namespace qx::desk
