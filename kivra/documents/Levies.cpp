#include "Levies.h"

namespace kivra {
namespace {

qx::Amount Percent(qx::Amount base, qx::Amount rate) {
    return qx::RoundAmount(base * rate / qx::Amount::FromInt(100), 2);
}

} // namespace

// Each levy feeds the next in this order, so the order is the rule.
Levies LeviesOn(qx::Amount base, const LevyRates& rates, bool purchaseTaxDue) {
    Levies levies;
    levies.marketFee = Percent(base, rates.marketFee);
    levies.rdf = Percent(base, rates.rdf);
    levies.cancerFund = Percent(base, rates.cancerFund);
    levies.pidf = Percent(base + levies.marketFee + levies.rdf + levies.cancerFund, rates.pidf);
    if (purchaseTaxDue)
        levies.purTax = Percent(base + levies.marketFee + levies.rdf + levies.pidf +
                                    levies.cancerFund,
                                rates.purTax);
    return levies;
}

} // namespace kivra
