#include "PreviewDialog.h"

#include "FileDialogs.h"
#include "PrintRenderer.h"

#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace qx::desk {
namespace {

void ShowFailure(QWidget* parent, const std::exception& error) {
    QMessageBox::critical(parent, QStringLiteral("QX Desk"), QString::fromUtf8(error.what()));
}

// The print dialog's file to print to: its completer lists by name, and its "..." button opens
// the desk's file dialog in place of Qt's own (which would guess types by content). Should a
// Qt of another make lack the widgets looked for, the button goes rather than Qt's dialog.
void ListOutputFilesByName(QPrintDialog& dialog) {
    ListFilesByName(dialog);
    auto* browse = dialog.findChild<QToolButton*>(QStringLiteral("fileBrowser"));
    auto* file = dialog.findChild<QLineEdit*>(QStringLiteral("filename"));
    auto* printers = dialog.findChild<QComboBox*>(QStringLiteral("printers"));
    if (!browse) return;
    QObject::disconnect(browse, &QAbstractButton::clicked, nullptr, nullptr);
    if (!file || !printers) {
        browse->hide();
        return;
    }
    QObject::connect(browse, &QAbstractButton::clicked, &dialog, [&dialog, file, printers] {
        const QString chosen = AskFileName(
            &dialog, {FileQuestion::Kind::Save, QStringLiteral("Print To File"), file->text(), {}});
        if (chosen.isEmpty()) return;
        file->setText(chosen);
        printers->setCurrentIndex(printers->count() - 1); // the PDF printer comes last
    });
}

} // namespace

const PreviewDialog::SaveKind PreviewDialog::kSaveKinds[3] = {
    {ReportFormat::Pdf, "Save as P&DF...", "Save as PDF", ".pdf", "PDF files (*.pdf)"},
    {ReportFormat::Csv, "Save as &CSV...", "Save as CSV", ".csv", "CSV files (*.csv)"},
    {ReportFormat::Xlsx, "Save as &Excel...", "Save as Excel", ".xlsx", "Excel workbooks (*.xlsx)"},
};

PreviewDialog::PreviewDialog(PrintJob job, QWidget* parent)
    : QDialog(parent), job_(std::move(job)), printer_(QPrinter::HighResolution) {
    setWindowTitle(QStringLiteral("Print Preview - %1").arg(QString::fromStdString(job_.title)));
    print::SetUpPage(job_, printer_);
    preview_ = new QPrintPreviewWidget(&printer_, this);
    connect(preview_, &QPrintPreviewWidget::paintRequested, this, [this](QPrinter* printer) {
        try {
            print::Render(job_, *printer);
        } catch (const std::exception& error) {
            ShowFailure(this, error);
        }
    });

    auto* buttons = new QHBoxLayout;
    auto addButton = [&](const QString& caption, auto action) {
        auto* button = new QPushButton(caption, this);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        buttons->addWidget(button);
    };
    // Each button has its Alt key; Tab reaches them all.
    addButton(QStringLiteral("&Print..."), [this] { PrintWithDialog(job_, this); });
    for (const auto& kind : kSaveKinds)
        addButton(QString::fromUtf8(kind.caption), [this, &kind] { Save(kind); });
    addButton(QStringLiteral("Zoom &In"), [this] { preview_->zoomIn(); });
    addButton(QStringLiteral("Zoom &Out"), [this] { preview_->zoomOut(); });
    buttons->addStretch();
    addButton(QStringLiteral("Close"), [this] { accept(); });

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(preview_, 1);
    // The page's width fills the dialog, which stays on the screen the desk is on.
    preview_->setZoomMode(QPrintPreviewWidget::FitToWidth);
    const QScreen* screen = parent ? parent->screen() : QGuiApplication::primaryScreen();
    const QSize room = screen ? screen->availableGeometry().size() * 9 / 10 : QSize(900, 700);
    resize(std::min(900, room.width()), room.height());
}

int PreviewDialog::PageCount() const { return preview_->pageCount(); }

void PreviewDialog::Save(const SaveKind& kind) {
    const QString suggested = QString::fromStdString(job_.title.empty() ? "report" : job_.title);
    const FileQuestion question{FileQuestion::Kind::Save, QString::fromUtf8(kind.title),
                                suggested + QString::fromUtf8(kind.extension),
                                QString::fromUtf8(kind.filter)};
    const QString path = AskFileName(this, question);
    if (path.isEmpty()) return;
    try {
        SaveReport(job_, kind.format, path.toStdString());
    } catch (const std::exception& error) {
        ShowFailure(this, error);
    }
}

void PrintWithDialog(const PrintJob& job, QWidget* parent) {
    QPrinter printer(QPrinter::HighResolution);
    print::SetUpPage(job, printer);
    QPrintDialog dialog(&printer, parent);
    ListOutputFilesByName(dialog);
    if (dialog.exec() != QDialog::Accepted) return;
    try {
        print::Render(job, printer);
    } catch (const std::exception& error) {
        ShowFailure(parent, error);
    }
}

} // namespace qx::desk
