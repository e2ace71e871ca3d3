#pragma once
// The document as the entry screen shows it, as its paper.

#include "DeskDocument.h"
#include "DocumentTotals.h"

#include "host/PrintJob.h"
#include "host/ui/Grid.h"

namespace qx::desk {

// The design whose sections head and close every document's paper ("MainHeadForm1" ... the
// firm's name, address and licence; "BottomLine" its signature line). Without them the paper
// is headed by the company's name.
inline constexpr const char* kDocumentHeadDesign = "Document_Head";
inline constexpr const char* kDocumentFootDesign = "Document_Footer";

// The firm's heading, the paper's title with its particulars centred under it, the lines, then
// under the amount column (the item grid's amountCol; the last when it has none shown) the
// gross amount, the charges that come to something, the round off and the grand total, each
// captioned to its left, the grand total in words, and the extension's notes.
PrintJob DocumentPrintJob(const ui::Grid& grid, int amountCol, const DeskDocument& document,
                          const DocumentTotals& totals, const DocumentPaper& paper);

} // namespace qx::desk
