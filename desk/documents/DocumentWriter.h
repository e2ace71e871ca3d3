#pragma once
// Writing the document on the screen inside the save's unit of work: the header, the lines, the
// charges, the voucher and whatever the extensions write in their events. An error anywhere
// undoes all of it with the unit.

#include "ChargesGrid.h"
#include "DeskDocument.h"
#include "DocumentVoucher.h"
#include "ItemGrid.h"
#include "TotalBoxes.h"

#include "desk/core/DeskApp.h"

#include <cstdint>
#include <stdexcept>

namespace qx::desk {

// A save refused where the document is written: a figure that could not be computed is never
// written, as 0 or otherwise.
struct SaveRefused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class DocumentWriter {
public:
    DocumentWriter(DeskApp& app, DeskDocument& document, const ItemGrid& items,
                   const ChargesGrid& charges, const TotalBoxes& totals)
        : app_(app), document_(document), items_(items), charges_(charges), totals_(totals) {}

    // An edited document keeps its id and its voucher's number, and its lines and voucher are
    // written again.
    void Write(std::int32_t number, bool cancelled);

private:
    PropertyBag MainRecord(std::int32_t documentId, std::int32_t number, bool isNew,
                           const DocumentTotals& totals, bool cancelled);
    void PostVoucher(VoucherSource source, const PropertyBag& main);

    DeskApp& app_;
    DeskDocument& document_;
    const ItemGrid& items_;
    const ChargesGrid& charges_;
    const TotalBoxes& totals_;
};

} // namespace qx::desk
