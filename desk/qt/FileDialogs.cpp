#include "FileDialogs.h"

#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemModel>

namespace qx::desk {
namespace {

// A file's icon and type told from its name and whether it is a folder, which a stat gives.
class NameOnlyIcons : public QFileIconProvider {
public:
    using QFileIconProvider::icon;
    QIcon icon(const QFileInfo& info) const override {
        return QFileIconProvider::icon(info.isDir() ? Folder : File);
    }
    QString type(const QFileInfo& info) const override {
        if (info.isDir())
            return QStringLiteral("Folder");
        const QString suffix = info.suffix();
        return suffix.isEmpty() ? QStringLiteral("File")
                                : suffix.toUpper() + QStringLiteral(" File");
    }
};

NameOnlyIcons& Icons() {
    static NameOnlyIcons icons; // the listings keep a pointer to it until the program ends
    return icons;
}

} // namespace

void ListFilesByName(QWidget& dialog) {
    if (auto* files = qobject_cast<QFileDialog*>(&dialog))
        files->setIconProvider(&Icons());
    for (auto* model : dialog.findChildren<QFileSystemModel*>())
        model->setIconProvider(&Icons());
}

QString AskFileName(QWidget* parent, const FileQuestion& question) {
    QFileDialog dialog(parent, question.caption, question.suggested, question.filter);
    // A native dialog (GTK's, say) lists the folder in our process with its own type guessing.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    ListFilesByName(dialog);
    const bool save = question.kind == FileQuestion::Kind::Save;
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().front();
}

} // namespace qx::desk
