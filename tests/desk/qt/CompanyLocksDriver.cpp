// A desk on a company, driven for CompanyLocksTest: its print dialog and its "Save as PDF..."
// dialog are worked in the company's own folder as a user works them, with paths typed and
// the folder browsed. Another program then opens and closes the company; the desk saves a
// J-Form, says "saved", and is killed, as by a power cut: nothing of its own runs after.
#include "WidgetTestSupport.h"

#include "desk/core/DeskApp.h"
#include "desk/documents/HostDocuments.h"
#include "desk/masters/HostMasters.h"
#include "desk/qt/PreviewDialog.h"
#include "desk/qt/QtFrontend.h"
#include "support/DocumentTyping.h"

#include <QComboBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include <signal.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

using namespace qx;

namespace {

// Waits until a listing of files has taken in the folder, as it does while the user looks.
void WaitForTheList(QFileSystemModel* model, const QString& folder) {
    if (!model || !QTest::qWaitFor([&] { return model->rowCount(model->index(folder)) > 0; }, 5000))
        std::cerr << "the folder " << folder.toStdString() << " was never listed\n";
    QTest::qWait(200);
}

// Types a path into a box, whose completer lists the folder as the user types.
void TypePath(QLineEdit& box, const QString& folder) {
    box.setFocus();
    box.clear();
    QTest::keyClicks(&box, folder);
    WaitForTheList(box.completer() ? qobject_cast<QFileSystemModel*>(box.completer()->model())
                                   : nullptr,
                   folder);
}

// The file dialog lists the folder, whose path is typed into its name box, then a file of the
// folder is chosen (or, with no file given, the dialog is left).
void BrowseTheFolder(QFileDialog& dialog, const QString& folder, const QString& file) {
    auto* name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (!name) {
        std::cerr << "the file dialog has no name box\n";
        dialog.reject();
        return;
    }
    TypePath(*name, folder);
    dialog.setDirectory(folder);
    WaitForTheList(dialog.findChild<QFileSystemModel*>(), folder);
    if (file.isEmpty()) {
        dialog.reject();
        return;
    }
    name->setText(folder + file);
    QTest::keyClick(name, Qt::Key_Return);
}

// F9's print dialog: the PDF printer chosen, its file typed into the company's folder, the
// folder browsed, and a PDF printed there.
void PrintInTheFolder(QWidget& parent, const QString& folder, const PrintJob& job) {
    test::WhenOpens<QPrintDialog>([folder](QPrintDialog& dialog) {
        auto* printers = dialog.findChild<QComboBox*>("printers");
        auto* file = dialog.findChild<QLineEdit*>("filename");
        auto* browse = dialog.findChild<QToolButton*>("fileBrowser");
        if (!printers || !file || !browse) {
            std::cerr << "the print dialog has no file to print to\n";
            dialog.reject();
            return;
        }
        printers->setCurrentIndex(printers->count() - 1); // Print to File (PDF)
        TypePath(*file, folder);
        test::WhenOpens<QFileDialog>(
            [folder](QFileDialog& browsing) { BrowseTheFolder(browsing, folder, {}); });
        browse->click();
        file->setText(folder + "printed.pdf");
        dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
    desk::PrintWithDialog(job, &parent);
}

// The preview's "Save as PDF...", its file in the company's folder.
void SavePdfInTheFolder(QWidget& parent, const QString& folder, const PrintJob& job) {
    desk::PreviewDialog preview(job, &parent);
    preview.show();
    QPushButton* save = nullptr;
    for (auto* button : preview.findChildren<QPushButton*>())
        if (button->text() == "Save as P&DF...")
            save = button;
    test::WhenOpens<QFileDialog>(
        [folder](QFileDialog& dialog) { BrowseTheFolder(dialog, folder, "saved.pdf"); });
    if (save)
        save->click();
    preview.accept();
}

// A J-Form typed and saved on the entry screen; false when it was not saved.
bool SaveJForm(desk::DeskApp& app) {
    // A new J-Form asks for its market first.
    test::WhenModalOpens([](QWidget& list) {
        auto* table = list.findChild<QTableWidget*>("List");
        if (!table)
            return list.close(), void();
        QTest::keyClicks(table, "KHANNA");
        QTest::keyClick(table, Qt::Key_Return);
    });
    app.ClickMenu("JForms");
    auto* screen = dynamic_cast<desk::DocumentScreen*>(app.OpenScreens().back().get());
    if (!screen)
        return false;
    using test::Box;
    using test::TypeBox;
    if (!TypeBox(*screen, screen->TxpDocDate(), "07/11/2024") ||
        !TypeBox(*screen, screen->TxpCustomer(), "HARJINDER KAUR") ||
        !TypeBox(*screen, Box(*screen, "FORM_BOOK_NO"), "12") ||
        !TypeBox(*screen, Box(*screen, "FORM_NO"), "150"))
        return false;
    if (!test::TypeLine(*screen, 1,
                        {{"PRODUCT_ID", "PADDY"},
                         {"CUSTOMER_ID", "SELF"},
                         {"QTY_PER_BOX", "50"},
                         {"QUANTITY", "10.40"},
                         {"REV_BAGS2", "21"},
                         {"RATE", "2320"}}))
        return false;
    // A message the save shows is written out and answered, so that the test is not kept
    // waiting on it.
    test::WhenOpens<QMessageBox>([](QMessageBox& box) {
        std::cerr << box.text().toStdString() << "\n";
        box.close();
    });
    return screen->SaveDocument();
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: qt_company_locks_driver COMPANY\n";
        return 2;
    }
    const std::filesystem::path company = argv[1];
    desk::QtFrontend frontend;
    desk::DeskApp app(frontend);
    desk::RegisterHostMasters(app);
    desk::RegisterHostDocuments(app);
    app.LoadModules(std::getenv("QX_MODULES_DIR"));
    app.OpenCompany(company);
    frontend.Window().show();

    const QString folder = QString::fromStdString(company.parent_path().string()) + "/";
    PrintJob job;
    job.title = "Market List";
    job.columns = {{"Market", 3000}};
    job.rows = {{{"KHANNA"}, ""}, {{"DORAHA"}, ""}};
    PrintInTheFolder(frontend.Window(), folder, job);
    SavePdfInTheFolder(frontend.Window(), folder, job);
    const std::string other = std::string("'") + QX_PROGRAM + "' sql '" + company.string() +
                              "' 'SELECT COUNT(*) FROM DOCMAIN' > /dev/null";
    if (std::system(other.c_str()) != 0)
        std::cout << "the other program failed" << std::endl;
    std::cout << (SaveJForm(app) ? "saved" : "not saved") << std::endl;
    raise(SIGKILL);
}
