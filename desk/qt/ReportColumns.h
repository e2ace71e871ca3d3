#pragma once
// The columns of a report across its page: each figure as wide as it is, whole, and the texts
// sharing what is left, to wrap in it. When the columns need more than the page, the page
// turns to landscape, then the table's type shrinks down to a size that still reads.

#include "host/PrintJob.h"

#include <QFont>

#include <vector>

class QPaintDevice;

namespace qx::print {

class PageTotals;

QFont ReportFont(qreal points, bool bold = false);

// The faces of a report's table, at a share of their full size.
struct TableFonts {
    explicit TableFonts(qreal scale = 1);
    const QFont& Of(const PrintRow& row) const;
    QFont caption, body, totals, heading;
};

struct ColumnSpan {
    std::size_t index; // into the job's columns and a row's cells
    qreal x;
    qreal width;
};

struct TableLayout {
    qreal scale = 1; // of the table's type
    std::vector<ColumnSpan> spans;
    qreal width = 0;
};

class ReportColumns {
public:
    // Measures the job's cells on the device, at full size; `padding` is each side of a cell.
    ReportColumns(const PrintJob& job, const PageTotals& totals, const QPaintDevice& device, qreal padding);
    // Whether the columns need more than `room` at full size: as the report designed them, or,
    // when `designed` is false, as narrow as their figures and words allow.
    bool Overflow(qreal room, bool designed = true) const;
    TableLayout Across(qreal room) const;

private:
    struct Column {
        std::size_t index;
        qreal figures; // the widest figure, never to be broken
        qreal words;   // the widest word, broken only when nothing else will do
        qreal designed;
        bool text;     // holds text, to wrap in what the figures leave
    };
    qreal Narrowest(qreal scale, bool words) const;

    std::vector<Column> columns_;
    qreal padding_;
};

} // namespace qx::print
