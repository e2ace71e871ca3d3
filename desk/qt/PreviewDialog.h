#pragma once
// The print preview of a job, with buttons to print it and to save it as PDF, CSV or an Excel
// workbook.

#include "desk/core/ReportFile.h"
#include "host/PrintJob.h"

#include <QDialog>
#include <QPrinter>

class QPrintPreviewWidget;

namespace qx::desk {

class PreviewDialog : public QDialog {
public:
    explicit PreviewDialog(PrintJob job, QWidget* parent = nullptr);
    // Pages of the preview, once it has been shown.
    int PageCount() const;

private:
    struct SaveKind {
        ReportFormat format;
        const char* caption; // the button's
        const char* title;   // the file dialog's
        const char* extension;
        const char* filter;
    };
    static const SaveKind kSaveKinds[3];
    void Save(const SaveKind& kind);

    PrintJob job_;
    QPrinter printer_;
    QPrintPreviewWidget* preview_;
};

// Asks for a printer and prints the job on it; a failure is shown to the user.
void PrintWithDialog(const PrintJob& job, QWidget* parent);

} // namespace qx::desk
