#pragma once
// Saves a print job to a file of the kind asked for: plain text, CSV, an Excel workbook or
// PDF. The one way the desk's preview and `qx` save reports. A file is written whole or not
// at all; a failure throws std::runtime_error in words a user is shown (the folder missing,
// no permission, the disk full).

#include "host/PrintJob.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace qx::desk {

enum class ReportFormat { Text, Csv, Xlsx, Pdf };

// "text", "csv", "xlsx" or "pdf", in any letter case; nullopt for any other name.
std::optional<ReportFormat> ReportFormatNamed(std::string_view name);

void SaveReport(const PrintJob& job, ReportFormat format, const std::filesystem::path& path);

} // namespace qx::desk
