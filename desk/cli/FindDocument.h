#pragma once
// The saved document a file of `qx enter` opens: by its number in the series, or by the values
// of the series' own boxes (a form book and form number, a market a module names), as a clerk
// finds a form by what is written on it.

#include "DocumentFile.h"

#include "desk/core/DeskApp.h"
#include "desk/documents/Series.h"

#include <cstdint>

namespace qx::cli {

// The document's id; throws Refusal ("open") when none, or more than one, answers.
std::int32_t FindDocument(desk::DeskApp& app, const desk::Series& series,
                          const SavedDocument& saved);

} // namespace qx::cli
