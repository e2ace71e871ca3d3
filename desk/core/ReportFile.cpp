#include "ReportFile.h"

#include "FileReplace.h"
#include "ReportText.h"
#include "ReportXlsx.h"
#include "host/Text.h"

#ifdef QX_WITH_PDF
#include "desk/qt/PrintRenderer.h"
#endif

#include <stdexcept>

namespace qx::desk {

std::optional<ReportFormat> ReportFormatNamed(std::string_view name) {
    auto is = [&](std::string_view known) { return EqualsNoCase(name, known); };
    if (is("text")) return ReportFormat::Text;
    if (is("csv")) return ReportFormat::Csv;
    if (is("xlsx")) return ReportFormat::Xlsx;
    if (is("pdf")) return ReportFormat::Pdf;
    return std::nullopt;
}

void SaveReport(const PrintJob& job, ReportFormat format, const std::filesystem::path& path) {
    switch (format) {
    case ReportFormat::Text:
        ReplaceFile(path, RenderText(job));
        return;
    case ReportFormat::Csv:
        ReplaceFile(path, RenderCsv(job));
        return;
    case ReportFormat::Xlsx:
        ReplaceFile(path, [&](const std::filesystem::path& temporary) { WriteXlsx(job, temporary); });
        return;
    case ReportFormat::Pdf:
#ifdef QX_WITH_PDF
        print::WritePdf(job, path.string());
        return;
#else
        throw std::runtime_error("This QX Desk was built without Qt and cannot write PDF: save the "
                                 "report as text, CSV or XLSX.");
#endif
    }
}

} // namespace qx::desk
