#pragma once
// Choosing what the entry screen shows: a series, or one of a series' saved documents.

#include "desk/core/DeskApp.h"
#include "host/Amount.h"
#include "host/Date.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx::desk {

// The series the user chooses from the list (of one document type when given); 0 when he
// chooses none.
std::int32_t ChooseSeries(DeskApp& app, std::string_view docType);
// The document of the series the user chooses, in the order of their dates; 0 when he
// chooses none.
std::int32_t ChooseDocument(DeskApp& app, std::int32_t seriesId, const std::string& caption);
// A document as the browse list shows it: "05/05/2024  No. 3  RAM DAS  1,130.00".
std::string BrowseEntry(Date date, std::int32_t number, const std::string& party, Amount total,
                        bool cancelled);

} // namespace qx::desk
