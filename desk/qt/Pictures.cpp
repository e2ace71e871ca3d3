#include "Pictures.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace qx::desk {

namespace {

std::vector<std::filesystem::path>& Folders() {
    static std::vector<std::filesystem::path> folders;
    return folders;
}

// The file that draws a picture, or empty.
QString PictureFile(const std::string& picture) {
    for (const auto& folder : Folders()) {
        const QString file = QString::fromStdString((folder / (picture + ".svg")).string());
        if (QFile::exists(file)) return file;
    }
    const QString own = QStringLiteral(":/pictures/%1.svg").arg(QString::fromStdString(picture));
    return QFile::exists(own) ? own : QString();
}

// Drawn at the sizes the desk shows: window icons, bar buttons, the big menu buttons.
QIcon Render(const QString& file) {
    QSvgRenderer renderer(file);
    if (!renderer.isValid()) return {};
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

void SetPictureFolders(std::vector<std::filesystem::path> folders) { Folders() = std::move(folders); }

bool HasPicture(const std::string& picture) { return !picture.empty() && !PictureFile(picture).isEmpty(); }

QIcon PictureIcon(const std::string& picture) {
    if (picture.empty()) return {};
    const QString file = PictureFile(picture);
    return Render(file.isEmpty() ? QStringLiteral(":/pictures/Documents.svg") : file);
}

} // namespace qx::desk
