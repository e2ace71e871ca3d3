#pragma once
// A print job as an Excel workbook (XLSX) of one sheet, so that an accountant can add up and
// sort what the report shows: the firm and the titles above, the column captions, then the
// rows. Figures are numbers (not text) in an Indian-grouped format with the column's
// decimals, days are dates shown dd/MM/yyyy, heading and totals rows are bold, rules are
// borders and blank lines empty rows; each column is as wide as its contents.

#include "host/PrintJob.h"

#include <filesystem>

namespace qx::desk {

// Writes the workbook to path as it stands (ReplaceFile makes that whole or nothing). Throws
// std::system_error with the system's error when a file operation failed, std::runtime_error
// otherwise.
void WriteXlsx(const PrintJob& job, const std::filesystem::path& path);

} // namespace qx::desk
