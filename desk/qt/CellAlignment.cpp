#include "CellAlignment.h"

#include <QRegularExpression>

namespace qx::print {
namespace {

// Amounts as reports show them: "12,34,567.00", "-15", "(250.00)", "1,200.00 Dr".
bool IsFigure(const QString& text) {
    static const QRegularExpression figure(
        QStringLiteral(R"(^\s*\(?[-+]?\d[\d,]*(\.\d+)?\)?(\s*(Dr|Cr))?\s*$)"),
        QRegularExpression::CaseInsensitiveOption);
    return figure.match(text).hasMatch();
}

} // namespace

Qt::Alignment CellAlignment(Align align, const QString& text) {
    switch (align) {
    case Align::Left: return Qt::AlignLeft;
    case Align::Right: return Qt::AlignRight;
    case Align::Centre: return Qt::AlignHCenter;
    case Align::Default: break;
    }
    return IsFigure(text) ? Qt::AlignRight : Qt::AlignLeft;
}

} // namespace qx::print
