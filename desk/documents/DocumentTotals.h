#pragma once
// The host's figures of a document: each charge by its basis, and the grand total in whole
// rupees with the difference as round off.

#include "Series.h"

#include "host/Amount.h"

#include <vector>

namespace qx::desk {

// A charge's amount, in paise rounded half to even: rate x bags, rate % of the gross amount,
// or the rate itself.
Amount ChargeAmount(ChargeBasis basis, Amount rate, Amount gross, Amount bags);

struct ChargeLine {
    Amount rate;
    ChargeBasis basis = ChargeBasis::Fixed;
    int sign = 1;
};

struct DocumentTotals {
    Amount gross;
    std::vector<Amount> charges; // unsigned, in the order of the charges given
    Amount chargesNet;           // signed: added charges less deductions
    Amount roundOff;
    Amount grandTotal; // gross + chargesNet + roundOff, in whole rupees
};

DocumentTotals ComputeTotals(Amount gross, Amount bags, const std::vector<ChargeLine>& charges);

} // namespace qx::desk
