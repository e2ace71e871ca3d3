#pragma once
// The document as the entry screen shows it, as a print job.

#include "DeskDocument.h"
#include "DocumentTotals.h"

#include "host/PrintJob.h"
#include "host/ui/Grid.h"

#include <string>

namespace qx::desk {

// Its lines, then the gross amount, the charges that come to something, the round off and
// the grand total under the last two columns.
PrintJob DocumentPrintJob(const ui::Grid& grid, const DeskDocument& document,
                          const DocumentTotals& totals, std::string title, std::string title2);

} // namespace qx::desk
