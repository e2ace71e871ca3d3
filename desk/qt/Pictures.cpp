#include "Pictures.h"

#include <QHash>
#include <QPainter>
#include <QPixmap>

namespace qx::desk {

QIcon PictureIcon(const std::string& picture) {
    if (picture.empty()) return {};
    const QString name = QString::fromStdString(picture);
    constexpr int size = 64;
    QPixmap tile(size, size);
    tile.fill(Qt::transparent);
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    // The same name always gets the same colour, so a button looks the same in every menu.
    const int hue = static_cast<int>(qHash(name) % 360);
    painter.setBrush(QColor::fromHsv(hue, 140, 190));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(2, 2, size - 4, size - 4), 12, 12);
    QFont font = painter.font();
    font.setPixelSize(size / 2);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRect(0, 0, size, size), Qt::AlignCenter, name.left(1).toUpper());
    return QIcon(tile);
}

} // namespace qx::desk
