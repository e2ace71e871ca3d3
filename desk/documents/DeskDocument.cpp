#include "DeskDocument.h"

#include <algorithm>
#include <stdexcept>

namespace qx::desk {

void DeskDocument::Reset() {
    mainFields_ = PropertyBag();
    documentId_ = 0;
    isNew_ = true;
    partyId_ = 0;
}

void DeskDocument::SetIdentity(std::int32_t documentId, bool isNew) {
    documentId_ = documentId;
    isNew_ = isNew;
}

bool DeskDocument::IsLine(int row) const {
    const int codeCol = form_.Member("COL_STK_CODE");
    return codeCol > 0 && !TextToAmount(form_.Grid().TextMatrix(row, codeCol)).IsZero();
}

bool DeskDocument::IsHiddenLine(int row) const {
    const int markCol = form_.Member("COL_ROW_MARK");
    return markCol > 0 &&
           form_.Grid().TextMatrix(row, markCol).find(kHiddenRowMark) != std::string::npos;
}

// The ids the boxes' modules chose; 0 for none.
std::vector<std::int64_t> DeskDocument::LookupChoices() const {
    std::vector<std::int64_t> choices;
    for (const SeriesBox& box : series_.boxes)
        if (!box.lookup.empty() && !box.field.empty())
            choices.push_back(mainFields_.GetValue(box.field).AsLong());
    return choices;
}

void DeskDocument::SelectSeries() {
    selectedWith_ = LookupChoices();
    Raise([](DocumentEvents& l) { l.SelectSeries(); });
}

void DeskDocument::KeepSeriesSelection() {
    if (LookupChoices() != selectedWith_)
        SelectSeries();
}

Date DeskDocument::DocDate() const {
    return Date::ParseDisplay(form_.TxpDocDate().Text()).value_or(Date());
}

// What the lines' amount cells show is what the document is worth.
Amount DeskDocument::DocumentAmount() const {
    const int amountCol = form_.Member("COL_AMOUNT");
    Amount total;
    if (amountCol == 0)
        return total;
    ui::Grid& grid = form_.Grid();
    for (int row = 1; row < grid.Rows(); ++row)
        if (IsLine(row) && !IsHiddenLine(row))
            total += TextToAmount(grid.TextMatrix(row, amountCol));
    return total;
}

// With no tax of their own, the document's amounts are all there is to compute again.
void DeskDocument::CalcTaxAmt() {
    form_.RecalcGrid();
}

Amount DeskDocument::PostingValue(int index) const {
    auto value = postingValues_.find(index);
    return value == postingValues_.end() ? Amount() : value->second;
}

void DeskDocument::SetPostingValue(int index, Amount value) {
    if (index < 0)
        throw std::out_of_range("no posting value " + std::to_string(index));
    postingValues_[index] = value;
}

void DeskDocument::Subscribe(DocumentEvents& listener) {
    if (std::find(listeners_.begin(), listeners_.end(), &listener) == listeners_.end())
        listeners_.push_back(&listener);
}

void DeskDocument::Unsubscribe(DocumentEvents& listener) {
    std::erase(listeners_, &listener);
}

} // namespace qx::desk
