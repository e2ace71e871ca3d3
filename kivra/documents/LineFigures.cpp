#include "LineFigures.h"

#include <cmath>
#include <stdexcept>

namespace kivra {
namespace {

using qx::Amount;

const Amount kHundred = Amount::FromInt(100);

// The bags a weight in quintals fills, in double precision as the mandi's rules reckon them,
// from the exact whole numbers of ten-thousandths: 9.20 quintals in bags of 40 kg are 23 bags,
// not 22.999...
double BagsIn(Amount quintals, Amount kgPerBag) {
    return static_cast<double>(quintals.Raw()) * 100.0 / static_cast<double>(kgPerBag.Raw());
}

} // namespace

// A figure of a column the series does not have is unknown, not 0. Bags and kilograms are
// counted exactly, so that 10 quintals in bags of 37.5 kg are 26 bags and 25 kg.
void RecalcLine(MandiForm& form, int row) {
    const ItemColumns& c = form.columns;
    const Amount quantity = form.Number(row, c.quantity);
    const Amount kgPerBag = form.Number(row, c.qtyPerBox);
    const Amount quantityInKg = quantity * 100;

    // Bags weighed against the quantity: the kilograms the whole bags weigh more (or less)
    // than the quantity go into add/less, unless they come to a whole bag or more.
    if (c.addLessKgs > 0 && c.revBags2 > 0 && c.qtyPerBox > 0) {
        Amount revisedBags = form.Number(row, c.revBags2);
        if (!quantity.IsZero() && revisedBags.IsZero()) {
            revisedBags = quantityInKg / kgPerBag;
            form.SetCellInColumnFormat(row, c.revBags2, revisedBags);
        }
        if (!quantity.IsZero() && !revisedBags.IsZero() && revisedBags.IsWhole()) {
            const Amount difference = revisedBags * kgPerBag - quantityInKg;
            if (!difference.IsZero() && difference.Abs() < kgPerBag)
                form.SetCell(row, c.addLessKgs, difference.ToPlainString());
        }
    }

    if (c.addLessKgs > 0 && c.quantity > 0 && c.totalWt > 0) {
        const Amount totalWeight = quantity + form.Number(row, c.addLessKgs) / kHundred;
        form.SetCellInColumnFormat(row, c.totalWt, totalWeight);
    }

    // An I-Form line is valued on its weight; other lines are the host's own calculation.
    if (form.mode.iForm && c.totalWt > 0 && c.rate > 0 && c.amount > 0) {
        const Amount amount = form.Number(row, c.totalWt) * form.Number(row, c.rate);
        form.SetCell(row, c.amount, qx::FormatAmount(amount, "c2"));
    }

    if (c.qtyPerBox > 0 && c.noOfBoxes >= 1 && c.pcs >= 1 &&
        form.Number(row, c.noOfBoxes).IsZero() && !quantity.IsZero() && !kgPerBag.IsZero()) {
        const qx::WholeDivision bags = qx::DivideWhole(quantityInKg, kgPerBag);
        form.SetCell(row, c.noOfBoxes, std::to_string(bags.count));
        if (!bags.remainder.IsZero()) form.SetCell(row, c.pcs, bags.remainder.ToPlainString());
    }

    if (c.revBags > 0 && c.totalWt > 0 && c.qtyPerBox > 0) {
        if (kgPerBag > Amount()) {
            form.SetCellInColumnFormat(
                row, c.revBags, Amount::FromDouble(BagsIn(form.Number(row, c.totalWt), kgPerBag)));
        } else {
            form.SetCell(row, c.revBags, {});
        }
    }
}

void CheckBagsWeighed(MandiForm& form, int row, int col, const std::string& newValue,
                      bool& cancel) {
    const ItemColumns& c = form.columns;
    if (c.revBags2 <= 0 || col != c.revBags2) return;
    const Amount bags = qx::TextToAmount(newValue);
    if (bags.IsZero()) return;
    const Amount quantity = form.Number(row, c.quantity);
    const Amount kgPerBag = form.Number(row, c.qtyPerBox);
    if (kgPerBag.IsZero()) throw std::domain_error("Division by zero: the line has no Kg./Bag.");
    const auto fewest = static_cast<std::int64_t>(std::floor(BagsIn(quantity, kgPerBag)));
    if (bags >= Amount::FromInt(fewest) && bags <= Amount::FromInt(fewest + 1)) return;
    form.Notify("Bags must be either " + std::to_string(fewest) + " or " +
                std::to_string(fewest + 1));
    cancel = true;
}

} // namespace kivra
