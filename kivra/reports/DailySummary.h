#pragma once
// The daily I/J-Form summary: every J-Form line with its charges, the firm's own purchases,
// every I-Form line, the goods account ("Mal Khata") with its surplus and loss, and the J-Form
// quantities still pending for their buyers, over a period and one market or all.

#include "ReportScope.h"

#include "host/PrintJob.h"

namespace kivra {

qx::PrintJob DailySummaryJob(ModuleContext& context, const ReportScope& scope);

} // namespace kivra
