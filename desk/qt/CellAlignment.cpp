#include "CellAlignment.h"

#include "desk/core/CellLines.h"

namespace qx::print {

Qt::Alignment CellAlignment(Align align, const QString& text) {
    switch (align) {
    case Align::Left: return Qt::AlignLeft;
    case Align::Right: return Qt::AlignRight;
    case Align::Centre: return Qt::AlignHCenter;
    case Align::Default: break;
    }
    return desk::IsFigure(text.toStdString()) ? Qt::AlignRight : Qt::AlignLeft;
}

} // namespace qx::print
