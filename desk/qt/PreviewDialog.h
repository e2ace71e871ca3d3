#pragma once
// The print preview of a job, with Print and "Save PDF..." buttons.

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
    void SavePdf();

    PrintJob job_;
    QPrinter printer_;
    QPrintPreviewWidget* preview_;
};

// Asks for a printer and prints the job on it; a failure is shown to the user.
void PrintWithDialog(const PrintJob& job, QWidget* parent);

} // namespace qx::desk
