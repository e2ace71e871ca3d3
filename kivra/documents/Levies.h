#pragma once
// The statutory levies on produce the agent buys for himself: market fee, R.D.F. and cancer
// fund on its value, P.I.D.F. on the value with those three, and, before GST, purchase tax on
// the value with all four. A J-Form line bought by SELF bears them line by line; a local
// purchase on its whole value.

#include "host/Amount.h"

namespace kivra {

// Percent rates, as the item master and the document's lines keep them.
struct LevyRates {
    qx::Amount marketFee, rdf, pidf, purTax, cancerFund;
};

// Each rounded to two decimals.
struct Levies {
    qx::Amount marketFee, rdf, cancerFund, pidf, purTax;
};

// purchaseTaxDue: the purchase is dated before GST replaced purchase tax.
Levies LeviesOn(qx::Amount base, const LevyRates& rates, bool purchaseTaxDue);

} // namespace kivra
