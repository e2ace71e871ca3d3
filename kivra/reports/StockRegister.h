#pragma once
// The stock (food grain) register: item by item and day by day, the quantity the firm held
// at the start of the day, what came in, what went out and what was left, over a period.
// J-Form quintals waiting for their buyer count as held: they came in on the J-Form and go
// out on the I-Form that takes them.

#include "ReportScope.h"

#include "host/PrintJob.h"

namespace kivra {

// items: the host's item filter, a condition on the item master "s" ("s.QMCD IN (1,2)");
// empty for every item. The register counts every market.
qx::PrintJob StockRegisterJob(ModuleContext& context, const ReportScope& scope, const std::string& items);

} // namespace kivra
