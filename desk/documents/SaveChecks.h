#pragma once
// The host's own checks of a document before it is offered to the extensions for saving.

#include "DeskDocument.h"
#include "DocumentHeader.h"
#include "ItemGrid.h"

#include <cstdint>
#include <string>

namespace qx::desk {

// In the order the user mends them: the date, the party, the boxes the series requires, the
// parties' account groups, the lines, the number. The refusal, with the cursor put where it is
// to be mended; empty when the document passes.
std::string SaveRefusal(const DocumentHeader& header, ItemGrid& items, DeskDocument& document,
                        std::int32_t seriesId, std::int32_t number);

} // namespace qx::desk
