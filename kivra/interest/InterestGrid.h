#pragma once
// The interest statement as its grid shows it and the printer prints it: twelve columns (Rate
// always hidden; Dr.Intr and Cr.Intr shown for Method 2, Interest for Method 1), a line per
// ledger row, and the footer of totals, grace and closing balance.

#include "InterestStatement.h"

#include "host/PrintJob.h"
#include "host/ui/Grid.h"

namespace kivra {

// The grid's columns by index.
enum StatementCol {
    kSerialCol, kDateCol, kBookCol, kNarrationCol, kDebitCol, kCreditCol, kBalanceCol, kDaysCol,
    kRateCol, kDrInterestCol, kCrInterestCol, kInterestCol, kStatementCols
};

qx::PrintJob StatementJob(const InterestStatement& statement);

// The amount followed by "Dr" when it is not negative, "Cr" otherwise: "1,250.00Dr".
std::string DrCr(qx::Amount amount);

// What the user typed into the grid's entry lines (Days and Rate; in Method 1 also Debit and
// Credit) taken into the statement, for Recalculate.
void ReadEdits(const qx::ui::Grid& grid, InterestStatement& statement);

} // namespace kivra
