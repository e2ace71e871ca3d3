#include "DocumentTotals.h"

namespace qx::desk {

Amount ChargeAmount(ChargeBasis basis, Amount rate, Amount gross, Amount bags) {
    switch (basis) {
    case ChargeBasis::PerBag:
        return RoundAmount(rate * bags, 2);
    case ChargeBasis::Percent:
        return RoundAmount(gross * rate / Amount::FromInt(100), 2);
    case ChargeBasis::Fixed:
        break;
    }
    return RoundAmount(rate, 2);
}

DocumentTotals ComputeTotals(Amount gross, Amount bags, const std::vector<ChargeLine>& charges) {
    DocumentTotals totals;
    totals.gross = gross;
    for (const ChargeLine& charge : charges) {
        const Amount amount = ChargeAmount(charge.basis, charge.rate, gross, bags);
        totals.charges.push_back(amount);
        totals.chargesNet += charge.sign < 0 ? -amount : amount;
    }
    const Amount beforeRounding = gross + totals.chargesNet;
    totals.grandTotal = RoundAmount(beforeRounding, 0);
    totals.roundOff = totals.grandTotal - beforeRounding;
    return totals;
}

} // namespace qx::desk
