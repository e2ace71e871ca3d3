#pragma once
// A print job as plain text (columns padded to their widths) and as CSV.

#include "host/PrintJob.h"

#include <string>

namespace qx::desk {

std::string RenderText(const PrintJob& job);
std::string RenderCsv(const PrintJob& job);
// One CSV field, quoted when it holds a comma, a quote or a line break.
std::string CsvField(std::string_view text);
// Columns a text takes on a terminal or in a spreadsheet's cell: combining signs (the vowel
// signs of Gurmukhi and Devanagari) take none.
std::size_t DisplayWidth(std::string_view text);

} // namespace qx::desk
