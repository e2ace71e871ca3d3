#pragma once
// The J-Form quantities still pending, kept (JFORMPENDING) so that a new I-Form's list of
// pending J-Forms and its check of older pending days read what is pending, not every line of
// the season.
//
// A row holds, for a market, day, buyer, item, batch and rate, the signed sum of the day's
// lines (kLinePending), where it is not 0; RATEPENDING says whether the sum of its rate (the
// same market, day, buyer and item) is not 0 either, ITEMPENDING whether the sum of its item
// is not. A list grouped by rate reads the rows whose rate is pending, one grouped by item or
// by day the rows whose item is: the groups left out sum to 0 and would not be listed.
//
// Invariant, kept by every save, edit, date change, cancellation and deletion of a document,
// each of which keeps its day again (both days when the date moved) inside the unit of work
// that writes it:
//  (1) A day's rows are what KeepPendingOf builds afresh from that day's documents. A save
//      builds those of the buyers of the document's lines, as they were and as they are.
// The books check proves it for every day.

#include "kivra/module/ModuleContext.h"

#include "host/Date.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace kivra {

// A line's quantity still to be picked: J-Form lines add it, the I-Form lines that take them
// over take it away.
inline constexpr const char* kLinePending = "(a.Quantity+a.FreeQuantity)*a.JFactor";

// Creates the table where the company lacks it, filled from every document it holds.
void CheckPendingTable(qx::CompanyDb& db);
// Builds the day's rows afresh from the day's documents.
void KeepPendingOf(qx::CompanyDb& db, qx::Date day);
// The same for the rows of these buyers only: the others' are what they were (a row's sums
// never mix buyers).
void KeepPendingOf(qx::CompanyDb& db, qx::Date day, const std::set<std::int32_t>& buyers);
// The buyers of the document's lines as the company holds them.
std::set<std::int32_t> BuyersOf(qx::CompanyDb& db, std::int32_t documentId);
// How the kept rows differ from what the documents leave pending, one text a row; empty when
// they agree. The company must have the table (CheckPendingTable).
std::vector<std::string> PendingDisagreements(ModuleContext& context);

} // namespace kivra
