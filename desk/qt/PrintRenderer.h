#pragma once
// Puts a print job on paper: the preview, a printer or a PDF file. Each page carries the firm
// name and the titles, the column captions under them and "Page n of m" at the foot; rows
// follow their print marks.

#include "host/PrintJob.h"

#include <string>

class QPagedPaintDevice;

namespace qx::print {

// A4, portrait unless the job's columns need the width of a landscape page (the width they
// hold when the job's option "ColumnWidths" is "Fit", else the width designed).
void SetUpPage(const PrintJob& job, QPagedPaintDevice& device);
// Paints the job onto the device's pages as they are set up (by SetUpPage, or by the user in
// a print dialog). Throws std::runtime_error when the device cannot be painted on.
void Render(const PrintJob& job, QPagedPaintDevice& device);
// The job as a PDF file's content; works in a program without windows, such as `qx`.
std::string PdfBytes(const PrintJob& job);
// Writes the job as a PDF file, whole or not at all (desk::ReplaceFile says why not).
void WritePdf(const PrintJob& job, const std::string& path);

} // namespace qx::print
