#include "ItemGrid.h"

#include "DocumentRecords.h"
#include "NameLookups.h"
#include "ScreenTexts.h"

#include "host/Text.h"

#include <utility>

namespace qx::desk {
namespace {

// A column of the host's own (the serial number, a hidden mark): no series made it, and nobody
// types into it.
SeriesColumn HostColumn(std::string caption, int width) {
    SeriesColumn column;
    column.caption = std::move(caption);
    column.width = width;
    column.editable = false;
    return column;
}

} // namespace

ItemGrid::ItemGrid(ui::Grid& grid, DeskDocument& document) : grid_(grid), document_(document) {}

// Every line keeps its item's code (STK_CODE) and, with a party column, its party's code, in
// hidden columns when the series does not show them.
void ItemGrid::Build() {
    const Series& series = document_.CurrentSeries();
    std::vector<SeriesColumn> columns = series.columns;
    if (!series.Column(kItemCodeKey))
        columns.push_back(HiddenItemCodeColumn());
    if (series.Column(kPartyKey))
        columns.push_back(HiddenPartyCodeColumn());

    grid_.SetRedraw(false);
    grid_.ClearColumns();
    grid_.Clear();
    columns_.clear();
    members_.clear();
    partyCodeCol_ = 0;
    unworkedCol_ = 0;
    // The host works a line's amount out from its quantity and rate (WorkOut).
    const bool amountWorkedOut = series.Column(kQuantityKey) && series.Column(kRateKey);
    auto add = [&](const SeriesColumn& column) {
        const bool figure =
            column.role == ColumnRole::Number || column.role == ColumnRole::ItemCode;
        const int col =
            grid_.AddColumn(column.caption, column.width, figure ? Align::Right : Align::Default,
                            column.role == ColumnRole::Number ? column.format : "");
        ui::GridColumn& shown = grid_.Column(col);
        shown.editable = column.editable;
        shown.key = column.key;
        shown.computed = column.computed || (column.key == kAmountKey && amountWorkedOut);
        shown.repeats = column.repeats;
        columns_.push_back(column);
        return col;
    };
    add(HostColumn("S.No.", 500));
    document_.Raise([](DocumentEvents& l) { l.MakeGridColumnsBegin(); });
    for (const SeriesColumn& column : columns) {
        const int col = add(column);
        if (column.role == ColumnRole::PartyCode) {
            partyCodeCol_ = col;
            continue;
        }
        members_.try_emplace("COL_" + column.key, col);
        document_.Raise([&](DocumentEvents& l) { l.MakeGridColumns(col, column.key); });
    }
    unworkedCol_ = add(HostColumn({}, 0));
    grid_.SetRows(2);
    grid_.SetRedraw(true);
    document_.Raise([](DocumentEvents& l) { l.MakeGridColumnsEnd(); });
}

const SeriesColumn& ItemGrid::ColumnAt(int col) const {
    static const SeriesColumn kUnknown;
    return col >= 0 && static_cast<std::size_t>(col) < columns_.size()
               ? columns_[static_cast<std::size_t>(col)]
               : kUnknown;
}

int ItemGrid::Member(std::string_view name) const {
    auto member = members_.find(name);
    return member == members_.end() ? 0 : member->second;
}

void ItemGrid::Clear() {
    grid_.SetRedraw(false);
    grid_.Clear();
    grid_.SetRows(2);
    for (int col = 1; col < grid_.Cols(); ++col)
        if (grid_.Column(col).editable && grid_.Column(col).width > 0) {
            grid_.SetCurrent(1, col);
            break;
        }
    grid_.SetRedraw(true);
}

// A line an extension keeps out of sight is not shown: the extension writes it again when the
// document is saved.
void ItemGrid::ShowSaved(const std::vector<PropertyBag>& lines) {
    std::vector<const PropertyBag*> shown;
    for (const PropertyBag& line : lines)
        if (line.GetValue("ROWMARK").AsText().find(kHiddenRowMark) == std::string::npos)
            shown.push_back(&line);
    grid_.SetRedraw(false);
    grid_.SetRows(static_cast<int>(shown.size()) + 2);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        ShowSavedLine(static_cast<int>(i) + 1, *shown[i]);
        document_.Raise([&](DocumentEvents& l) { l.EditItem(*shown[i]); });
    }
    grid_.SetRedraw(true);
}

void ItemGrid::ShowSavedLine(int row, const PropertyBag& line) {
    NumberRow(row);
    CompanyDb& db = document_.Database();
    for (int col = 1; col < grid_.Cols(); ++col) {
        const SeriesColumn& column = ColumnAt(col);
        const Value saved = column.field.empty() ? Value() : line.GetValue(column.field);
        std::string text;
        switch (column.role) {
        case ColumnRole::Item:
            text = NameOf(db, kItems, saved.AsLong());
            break;
        case ColumnRole::Party:
            text = NameOf(db, kAccounts, saved.AsLong());
            break;
        case ColumnRole::ItemCode:
        case ColumnRole::PartyCode:
            text = CodeText(saved.AsLong());
            break;
        case ColumnRole::Number:
            text = CellText(saved.AsAmount(), column.format);
            break;
        case ColumnRole::Text:
            text = saved.AsText();
            break;
        }
        grid_.SetTextMatrix(row, col, text);
    }
}

void ItemGrid::NumberRow(int row) {
    grid_.SetTextMatrix(row, 0, std::to_string(row));
}

void ItemGrid::FillItem(int row) {
    const std::int32_t code = CodeIn(grid_, row, Member("COL_STK_CODE"));
    auto item = document_.Database().OpenRecordset("SELECT * FROM STKMASTER WHERE QMCD=" +
                                                   std::to_string(code));
    if (item->EndOfRows())
        return;
    const PropertyBag record = RecordOf(*item);
    if (const int itemCol = Member("COL_PRODUCT_ID"))
        grid_.SetTextMatrix(row, itemCol, record.GetValue("QMHD").AsText());
    NumberRow(row);
    document_.Raise([&](DocumentEvents& l) { l.FillStkInfo(row, false, record); });
}

// An extension may override the host's amount in the event that follows it.
void ItemGrid::WorkOut(int row) {
    grid_.SetTextMatrix(row, unworkedCol_, "*");
    const int quantityCol = Member("COL_QUANTITY");
    const int rateCol = Member("COL_RATE");
    const int amountCol = Member("COL_AMOUNT");
    if (quantityCol && rateCol && amountCol) {
        const Amount amount = TextToAmount(grid_.TextMatrix(row, quantityCol)) *
                              TextToAmount(grid_.TextMatrix(row, rateCol));
        grid_.SetTextMatrix(row, amountCol, CellText(amount, grid_.ColumnFormat(amountCol)));
    }
    int raisedRow = row;
    document_.Raise([&](DocumentEvents& l) { l.RecalcGridRow(raisedRow); });
    grid_.SetTextMatrix(row, unworkedCol_, "");
    // A line a program filled on the last row gets the empty row for the next one after it,
    // as a line typed there does.
    if (row == grid_.Rows() - 1 && document_.IsLine(row))
        grid_.SetRows(row + 2);
}

bool ItemGrid::IsWorkedOut(int row) const {
    return grid_.TextMatrix(row, unworkedCol_).empty();
}

std::string ItemGrid::UnworkedRefusal(int row) const {
    return IsWorkedOut(row) ? std::string()
                            : "Line " + std::to_string(row) +
                                  " is not worked out: complete its figures before saving.";
}

bool ItemGrid::HasLines() const {
    for (int row = 1; row < grid_.Rows(); ++row)
        if (document_.IsLine(row))
            return true;
    return false;
}

bool ItemGrid::RowHasContent(int row) const {
    for (int col = 1; col < grid_.Cols(); ++col)
        if (!Trim(grid_.TextMatrix(row, col)).empty())
            return true;
    return false;
}

Amount ItemGrid::Bags() const {
    Amount bags;
    if (const int bagsCol = Member("COL_NO_OF_BOXES"))
        for (int row = 1; row < grid_.Rows(); ++row)
            if (document_.IsLine(row) && !document_.IsHiddenLine(row))
                bags += TextToAmount(grid_.TextMatrix(row, bagsCol));
    return bags;
}

PropertyBag ItemGrid::LineRecord(int row, std::int32_t documentId, int refNo) const {
    PropertyBag line = BlankLine(document_.CurrentSeries());
    line.SetValue("DOCUMENTID", documentId);
    line.SetValue("REFNO", refNo);
    for (int col = 1; col < grid_.Cols(); ++col) {
        const SeriesColumn& column = ColumnAt(col);
        const std::string& text = grid_.TextMatrix(row, col);
        switch (column.role) {
        case ColumnRole::ItemCode:
        case ColumnRole::PartyCode:
            line.SetValue(column.field, CodeIn(grid_, row, col));
            break;
        case ColumnRole::Number:
            if (!column.field.empty())
                line.SetValue(column.field, TextToAmount(text));
            break;
        case ColumnRole::Text:
            if (!column.field.empty())
                line.SetValue(column.field, text);
            break;
        case ColumnRole::Item:
        case ColumnRole::Party:
            break; // names: their codes are saved
        }
    }
    return line;
}

} // namespace qx::desk
