#include "ReportColumns.h"

#include "PageTotals.h"
#include "desk/core/CellLines.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QStringList>

#include <algorithm>

namespace qx::print {
namespace {

constexpr qreal kTwipsPerInch = 1440;
// The table's type shrinks in steps of a twentieth down to two thirds of its size (6 points
// for the body), the smallest a printed return still reads at.
constexpr qreal kScaleStep = 0.05;
constexpr qreal kSmallestScale = 2.0 / 3.0;

// Type set smaller is not quite in proportion: a little room over what the full size measures.
constexpr qreal kSlack = 1.02;

desk::MeasureText Measure(const QFont& font, const QPaintDevice& device) {
    return [metrics = QFontMetricsF(font, &device)](std::string_view text) {
        return kSlack * metrics.horizontalAdvance(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    };
}

} // namespace

QFont ReportFont(qreal points, bool bold) {
    QFont font;
    // Latin first; names written in Punjabi or Hindi fall through to the faces of their script.
    font.setFamilies({QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Gurmukhi"),
                      QStringLiteral("Noto Sans Devanagari")});
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

TableFonts::TableFonts(qreal scale)
    : caption(ReportFont(9 * scale, true)), body(ReportFont(9 * scale)), totals(ReportFont(9 * scale, true)),
      heading(ReportFont(11 * scale, true)) {}

const QFont& TableFonts::Of(const PrintRow& row) const {
    if (row.Has("headingfonts")) return heading;
    if (row.Has("totals")) return totals;
    return body;
}

ReportColumns::ReportColumns(const PrintJob& job, const PageTotals& totals, const QPaintDevice& device, qreal padding)
    : padding_(padding) {
    const TableFonts fonts;
    const auto caption = Measure(fonts.caption, device);
    const auto body = Measure(fonts.body, device);
    const auto bold = Measure(fonts.totals, device);
    const PrintRow carried = totals.Widest();
    for (std::size_t c = 0; c < job.columns.size(); ++c) {
        if (job.columns[c].width <= 0) continue;
        desk::Narrowest narrowest;
        auto widen = [&](const PrintRow& row) {
            if (c < row.cells.size() && !row.Has("headingfonts")) // a heading runs on beside it
                narrowest.Widen(desk::NarrowestFor(row.cells[c], row.Has("totals") ? bold : body));
        };
        for (const PrintRow& row : job.rows) widen(row);
        widen(carried);
        const bool text = narrowest.words > 0;
        narrowest.Widen(desk::NarrowestFor(job.columns[c].caption, caption));
        columns_.push_back({c, narrowest.figures, narrowest.words,
                            job.columns[c].width * device.logicalDpiX() / kTwipsPerInch, text});
    }
}

qreal ReportColumns::Narrowest(qreal scale, bool words) const {
    qreal sum = 0;
    for (const Column& column : columns_)
        sum += scale * std::max(column.figures, words ? column.words : 0) + 2 * padding_;
    return sum;
}

bool ReportColumns::Overflow(qreal room, bool designed) const {
    qreal wanted = 0;
    if (designed)
        for (const Column& column : columns_) wanted += column.designed;
    return std::max(wanted, Narrowest(1, true)) > room;
}

TableLayout ReportColumns::Across(qreal room) const {
    TableLayout layout;
    bool words = true;
    while (Narrowest(layout.scale, true) > room && layout.scale - kScaleStep >= kSmallestScale - 1e-9)
        layout.scale -= kScaleStep;
    if (Narrowest(layout.scale, true) > room) words = false; // words are broken rather than figures
    // Each column at its narrowest; when the room is short, the texts share the rest of it as
    // the report designed them.
    std::vector<qreal> narrowest, extra;
    qreal wanted = 0, spare = 0;
    for (const Column& column : columns_) {
        narrowest.push_back(layout.scale * std::max(column.figures, words ? column.words : 0) + 2 * padding_);
        extra.push_back(std::max<qreal>(0, layout.scale * column.designed - narrowest.back()));
        wanted += narrowest.back() + extra.back();
        if (column.text) spare += extra.back();
    }
    const bool fits = wanted <= room;
    qreal left = room;
    for (std::size_t i = 0; i < columns_.size(); ++i) left -= narrowest[i];
    const qreal share = left > 0 && spare > 0 ? left / spare : 0;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const qreal width = narrowest[i] + (fits ? extra[i] : columns_[i].text ? extra[i] * share : 0);
        layout.spans.push_back({columns_[i].index, layout.width, width});
        layout.width += width;
    }
    return layout;
}

} // namespace qx::print
