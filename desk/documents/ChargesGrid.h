#pragma once
// The charges grid (GridTot2): a row a charge of the series, under the columns extensions
// address by number; the user types the rates only, the rest is kept for saving.

#include "DocumentRecords.h"
#include "DocumentTotals.h"
#include "Series.h"

#include "host/ui/Grid.h"

#include <vector>

namespace qx::desk {

class ChargesGrid {
public:
    static constexpr int kCaptionCol = 1;
    static constexpr int kBasisCol = 2;
    static constexpr int kRateCol = 3;
    static constexpr int kAmountCol = 4;
    static constexpr int kKeyCol = 17;
    static constexpr int kHeadCol = 24;

    // Makes the grid's columns.
    explicit ChargesGrid(ui::Grid& grid);
    ui::Grid& Grid() { return grid_; }
    const ui::Grid& Grid() const { return grid_; }

    // The series' charges with their configured rates, or, for a saved document, the rates and
    // heads it was saved with.
    void Fill(const Series& series, const std::vector<AppliedCharge>* applied);
    // The rates as the grid holds them, for the totals.
    std::vector<ChargeLine> Lines(const Series& series) const;
    void ShowAmounts(const DocumentTotals& totals);
    // The charges as they are saved: rate, amount and head of each.
    std::vector<AppliedCharge> Applied(const Series& series, const DocumentTotals& totals) const;

private:
    ui::Grid& grid_;
};

} // namespace qx::desk
