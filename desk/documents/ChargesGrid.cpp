#include "ChargesGrid.h"

#include "ScreenTexts.h"

#include <array>

namespace qx::desk {
namespace {

std::string BasisText(ChargeBasis basis) {
    switch (basis) {
    case ChargeBasis::PerBag:
        return "Per Bag";
    case ChargeBasis::Percent:
        return "%";
    case ChargeBasis::Fixed:
        break;
    }
    return "Fixed";
}

} // namespace

// The bookkeeping columns are hidden.
ChargesGrid::ChargesGrid(ui::Grid& grid) : grid_(grid) {
    grid_.Editable = true;
    struct Shown {
        int col;
        const char* caption;
        int width;
    };
    constexpr std::array kShown = {Shown{0, "", 300}, // + or -
                                   Shown{kCaptionCol, "Charge", 2000},
                                   Shown{kBasisCol, "Basis", 900}, Shown{kRateCol, "Rate", 900},
                                   Shown{kAmountCol, "Amount", 1200}};
    for (int col = 0; col <= kHeadCol; ++col) {
        grid_.AddColumn("", 0);
        grid_.Column(col).editable = col == kRateCol;
    }
    for (const Shown& shown : kShown) {
        ui::GridColumn& column = grid_.Column(shown.col);
        column.caption = shown.caption;
        column.width = shown.width;
    }
    for (int figure : {kRateCol, kAmountCol})
        grid_.Column(figure).align = Align::Right;
    grid_.SetColumnFormat(kAmountCol, "c2");
}

void ChargesGrid::Fill(const Series& series, const std::vector<AppliedCharge>* applied) {
    const auto& charges = series.charges;
    grid_.SetRedraw(false);
    grid_.Clear();
    grid_.SetRows(static_cast<int>(charges.size()) + 1);
    for (std::size_t i = 0; i < charges.size(); ++i) {
        const SeriesCharge& charge = charges[i];
        Amount rate = charge.rate;
        std::int32_t head = charge.headCode;
        if (applied)
            for (const AppliedCharge& saved : *applied)
                if (saved.key == charge.key) {
                    rate = saved.rate;
                    head = saved.headCode;
                }
        const int row = static_cast<int>(i) + 1;
        grid_.SetTextMatrix(row, 0, charge.sign < 0 ? "-" : "+");
        grid_.SetTextMatrix(row, kCaptionCol, charge.caption);
        grid_.SetTextMatrix(row, kBasisCol, BasisText(charge.basis));
        grid_.SetTextMatrix(row, kRateCol, CellText(rate, ""));
        grid_.SetTextMatrix(row, kKeyCol, charge.key);
        grid_.SetTextMatrix(row, kHeadCol, CodeText(head));
    }
    grid_.SetRedraw(true);
}

std::vector<ChargeLine> ChargesGrid::Lines(const Series& series) const {
    std::vector<ChargeLine> lines;
    const auto& charges = series.charges;
    for (std::size_t i = 0; i < charges.size(); ++i)
        lines.push_back({TextToAmount(grid_.TextMatrix(static_cast<int>(i) + 1, kRateCol)),
                         charges[i].basis, charges[i].sign});
    return lines;
}

void ChargesGrid::ShowAmounts(const DocumentTotals& totals) {
    for (std::size_t i = 0; i < totals.charges.size(); ++i)
        grid_.SetTextMatrix(static_cast<int>(i) + 1, kAmountCol, CellText(totals.charges[i], "c2"));
}

std::vector<AppliedCharge> ChargesGrid::Applied(const Series& series,
                                                const DocumentTotals& totals) const {
    std::vector<AppliedCharge> applied;
    const auto& charges = series.charges;
    for (std::size_t i = 0; i < charges.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        applied.push_back({charges[i].key, TextToAmount(grid_.TextMatrix(row, kRateCol)),
                           totals.charges[i], CodeIn(grid_, row, kHeadCol)});
    }
    return applied;
}

} // namespace qx::desk
