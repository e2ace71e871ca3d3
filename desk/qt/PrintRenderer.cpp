#include "PrintRenderer.h"

#include "CellAlignment.h"
#include "PageTotals.h"
#include "ReportColumns.h"
#include "desk/core/CellLines.h"
#include "desk/core/FileReplace.h"
#include "desk/core/PrintDesigns.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <optional>
#include <stdexcept>
#include <vector>

namespace qx::print {
namespace {

constexpr qreal kMarginMm = 12;
constexpr qreal kPaddingPoints = 3; // each side of a cell

QString Text(const std::string& utf8) { return QString::fromStdString(utf8); }

enum class LineKind { Row, Blank, Rule, BoldRule };

// A cell's text set in its place: its printed lines, across the columns it takes.
struct PlacedCell {
    qreal x;
    qreal width;
    Qt::Alignment align;
    std::vector<QString> lines;
};

// A row set in its columns, as tall as its tallest cell.
struct PlacedRow {
    const QFont* font = nullptr;
    std::vector<PlacedCell> cells;
    qreal height = 0;
};

struct Line {
    LineKind kind;
    PlacedRow row;
    qreal height = 0;
    std::size_t source = 0; // the job's row the line comes from
};

// Lays a job out on the device's pages and paints them.
class ReportPainter {
public:
    ReportPainter(const PrintJob& job, QPagedPaintDevice& device, QPainter& painter)
        : job_(job), device_(device), painter_(painter), dpi_(device.logicalDpiX()),
          page_(0, 0, device.width(), device.height()),
          table_(ReportColumns(job, totals_, device, Padding()).Across(page_.width())), fonts_(table_.scale) {
        LayOutCaptions();
        LayOutLines();
        Paginate();
    }

    void Paint() {
        std::optional<std::size_t> lastRow; // the last row painted, whose totals run on
        for (std::size_t page = 0; page < pages_.size(); ++page) {
            if (page > 0) device_.newPage();
            qreal y = PaintHeader();
            if (const auto brought = lastRow ? totals_.BroughtAfter(*lastRow) : std::nullopt) {
                PaintRow(PlaceRow(*brought), y);
                y += CarryHeight();
                PaintRule(y + RuleHeight() / 2, 0.5);
                y += RuleHeight();
            }
            for (const auto& line : pages_[page]) {
                PaintLine(line, y);
                if (line.kind == LineKind::Row) lastRow = line.source;
                y += line.height;
            }
            if (page + 1 < pages_.size())
                if (const auto carried = lastRow ? totals_.CarriedAfter(*lastRow) : std::nullopt) {
                    PaintRule(y + RuleHeight() / 2, 0.5);
                    PaintRow(PlaceRow(*carried), y + RuleHeight());
                }
            PaintFooter(page + 1);
        }
    }

private:
    qreal Points(qreal points) const { return points * dpi_ / 72; }
    qreal LineHeight(const QFont& font) const {
        // Gurmukhi and Devanagari carry vowel signs above and below the line: leave room.
        return QFontMetricsF(font, &device_).lineSpacing() * 1.2;
    }
    qreal RuleHeight() const { return Points(4); }
    qreal Padding() const { return Points(kPaddingPoints); }
    qreal CarryHeight() const { return LineHeight(fonts_.totals); }

    void LayOutCaptions() {
        const desk::MeasureText width = Measure(fonts_.caption);
        for (const auto& span : table_.spans) {
            const auto lines = desk::WrapCell(job_.columns[span.index].caption, span.width - 2 * Padding(), width, 0);
            captionLines_ = std::max(captionLines_, lines.size());
        }
        captionHeight_ = static_cast<qreal>(captionLines_) * LineHeight(fonts_.caption);
    }

    desk::MeasureText Measure(const QFont& font) const {
        return [metrics = QFontMetricsF(font, &device_)](std::string_view text) {
            return metrics.horizontalAdvance(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        };
    }

    // The row's cells wrapped in their columns. A text runs on over the empty cells after it,
    // as a heading does, or, set to the right, over those before it; "Wrap" bounds how far each
    // of its lines wraps.
    PlacedRow PlaceRow(const std::vector<std::string>& cells, const QFont& font, std::size_t most) const {
        PlacedRow placed{&font, {}, 0};
        const desk::MeasureText width = Measure(font);
        auto cell = [&](std::size_t span) -> std::string_view {
            const std::size_t index = table_.spans[span].index;
            return index < cells.size() ? std::string_view(cells[index]) : std::string_view();
        };
        std::size_t lines = 1;
        std::optional<qreal> free; // where the empty cells before the next text begin
        for (std::size_t i = 0; i < table_.spans.size();) {
            const std::string_view text = cell(i);
            const ColumnSpan& span = table_.spans[i];
            if (text.empty()) {
                if (!free) free = span.x;
                ++i;
                continue;
            }
            const Qt::Alignment align = CellAlignment(job_.columns[span.index].align, Text(std::string(text)));
            qreal x = span.x;
            qreal room = span.width;
            // A caption set against a figure runs on to the left, as a heading runs on to the right.
            if ((align & Qt::AlignRight) && free && !desk::IsFigure(text)) {
                room += x - *free;
                x = *free;
            }
            free.reset();
            for (++i; (align & Qt::AlignLeft) && i < table_.spans.size() && cell(i).empty(); ++i)
                room += table_.spans[i].width;
            PlacedCell set{x + Padding(), room - 2 * Padding(), align, {}};
            for (const auto& line : desk::WrapCell(text, set.width, width, most)) set.lines.push_back(Text(line));
            lines = std::max(lines, set.lines.size());
            placed.cells.push_back(std::move(set));
        }
        placed.height = static_cast<qreal>(lines) * LineHeight(font);
        return placed;
    }
    PlacedRow PlaceRow(const PrintRow& row) const { return PlaceRow(row.cells, fonts_.Of(row), wrap_); }

    static bool IsEmpty(const PrintRow& row) {
        for (const auto& cell : row.cells)
            if (!cell.empty()) return false;
        return true;
    }

    void LayOutLines() {
        const qreal blank = LineHeight(fonts_.body);
        for (std::size_t index = 0; index < job_.rows.size(); ++index) {
            const PrintRow& row = job_.rows[index];
            const bool rule = row.Has("hline1");
            const bool boldRule = row.Has("bhline1");
            if (row.Has("blanklinebefore")) lines_.push_back({LineKind::Blank, {}, blank, index});
            // A row that only carries a rule is the rule itself; otherwise the rules underline it.
            if (!IsEmpty(row) || (!rule && !boldRule)) {
                PlacedRow placed = PlaceRow(row);
                const qreal height = placed.height;
                lines_.push_back({LineKind::Row, std::move(placed), height, index});
            }
            if (rule) lines_.push_back({LineKind::Rule, {}, RuleHeight(), index});
            if (boldRule) lines_.push_back({LineKind::BoldRule, {}, RuleHeight(), index});
            if (row.Has("blanklineafter")) lines_.push_back({LineKind::Blank, {}, blank, index});
        }
    }

    qreal HeaderHeight() const {
        qreal height = 0;
        if (!headLines_.empty())
            height += LineHeight(firmFont_) + static_cast<qreal>(headLines_.size() - 1) * LineHeight(title2Font_);
        else if (!job_.firmName.empty()) height += LineHeight(firmFont_);
        height += static_cast<qreal>(Centred(titleFont_, job_.title).size()) * LineHeight(titleFont_);
        height += static_cast<qreal>(Centred(title2Font_, job_.title2).size()) * LineHeight(title2Font_);
        return height + Points(6) + captionHeight_ + RuleHeight();
    }
    qreal FooterHeight() const {
        return static_cast<qreal>(footLines_.size() + 1) * LineHeight(footerFont_) + Points(6);
    }

    void Paginate() {
        qreal room = page_.height() - HeaderHeight() - FooterHeight();
        // Room on every page for the totals brought forward and carried forward, each with its rule.
        if (totals_.Carries()) room -= 2 * (CarryHeight() + RuleHeight());
        pages_.emplace_back();
        qreal used = 0;
        for (const auto& line : lines_) {
            if (used + line.height > room && !pages_.back().empty()) {
                pages_.emplace_back();
                used = 0;
            }
            // A page does not start with a blank line.
            if (line.kind == LineKind::Blank && pages_.back().empty()) continue;
            pages_.back().push_back(line);
            used += line.height;
        }
    }

    // A title's own lines (a second title may have several), each wrapped at spaces to the
    // page's width.
    std::vector<std::string> Centred(const QFont& font, const std::string& text) const {
        std::vector<std::string> lines;
        if (text.empty()) return lines;
        for (std::string_view line : desk::OwnLines(text))
            for (auto& part : desk::WrapCell(line, page_.width(), Measure(font), 0)) lines.push_back(std::move(part));
        return lines;
    }

    qreal PaintCentred(const QFont& font, const std::string& text, qreal y) {
        if (text.empty()) return y;
        const qreal height = LineHeight(font);
        painter_.setFont(font);
        painter_.drawText(QRectF(0, y, page_.width(), height), Qt::AlignCenter, Text(text));
        return y + height;
    }
    qreal PaintTitle(const QFont& font, const std::string& text, qreal y) {
        for (const auto& line : Centred(font, text)) y = PaintCentred(font, line, y);
        return y;
    }

    void PaintRule(qreal y, qreal points) {
        painter_.setPen(QPen(Qt::black, Points(points)));
        painter_.drawLine(QPointF(0, y), QPointF(table_.width, y));
    }

    qreal PaintHeader() {
        qreal y = 0;
        if (headLines_.empty()) y = PaintCentred(firmFont_, job_.firmName, y);
        for (std::size_t i = 0; i < headLines_.size(); ++i) {
            const QFont& font = i == 0 ? firmFont_ : title2Font_;
            y = headLines_[i].empty() ? y + LineHeight(font) : PaintCentred(font, headLines_[i], y);
        }
        y = PaintTitle(titleFont_, job_.title, y);
        y = PaintTitle(title2Font_, job_.title2, y);
        y += Points(6);
        painter_.setPen(Qt::black);
        PlacedRow captions = PlaceRow(Captions(), fonts_.caption, 0);
        // Captions stand on the rule under them, each as low as its column's last line.
        for (auto& cell : captions.cells)
            cell.lines.insert(cell.lines.begin(), captionLines_ - std::min(captionLines_, cell.lines.size()), QString());
        PaintRow(captions, y);
        y += captionHeight_;
        PaintRule(y + RuleHeight() / 2, 0.8);
        return y + RuleHeight();
    }

    void PaintLine(const Line& line, qreal y) {
        switch (line.kind) {
        case LineKind::Blank: return;
        case LineKind::Rule: PaintRule(y + line.height / 2, 0.5); return;
        case LineKind::BoldRule: PaintRule(y + line.height / 2, 1.5); return;
        case LineKind::Row: PaintRow(line.row, y); return;
        }
    }

    void PaintRow(const PlacedRow& row, qreal y) {
        const QFontMetricsF metrics(*row.font, &device_);
        const qreal height = LineHeight(*row.font);
        painter_.setFont(*row.font);
        painter_.setPen(Qt::black);
        // One baseline a line: names in Gurmukhi or Devanagari come from faces with other
        // heights, and centring each cell by its own face would set them askew.
        const qreal baseline = (height - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
        for (const PlacedCell& cell : row.cells)
            for (std::size_t line = 0; line < cell.lines.size(); ++line) {
                const qreal spare = cell.width - metrics.horizontalAdvance(cell.lines[line]);
                qreal x = cell.x;
                if (cell.align & Qt::AlignRight) x += spare;
                else if (cell.align & Qt::AlignHCenter) x += spare / 2;
                painter_.drawText(QPointF(x, y + static_cast<qreal>(line) * height + baseline), cell.lines[line]);
            }
    }

    std::vector<std::string> Captions() const {
        std::vector<std::string> captions;
        for (const auto& column : job_.columns) captions.push_back(column.caption);
        return captions;
    }

    void PaintFooter(std::size_t page) {
        const qreal height = LineHeight(footerFont_);
        qreal y = page_.height() - static_cast<qreal>(footLines_.size() + 1) * height;
        for (const auto& line : footLines_)
            y = line.empty() ? y + height : PaintCentred(footerFont_, line, y);
        painter_.setFont(footerFont_);
        painter_.setPen(Qt::black);
        painter_.drawText(QRectF(0, page_.height() - height, page_.width(), height),
                          Qt::AlignCenter,
                          QStringLiteral("Page %1 of %2").arg(page).arg(pages_.size()));
    }

    const PrintJob& job_;
    std::vector<std::string> headLines_ = desk::SectionLines(job_, job_.headSections);
    std::vector<std::string> footLines_ = desk::SectionLines(job_, job_.footSections);
    PageTotals totals_{job_};
    std::size_t wrap_ = desk::WrapLimit(job_);
    QPagedPaintDevice& device_;
    QPainter& painter_;
    qreal dpi_;
    QRectF page_;
    TableLayout table_;
    TableFonts fonts_;
    QFont firmFont_ = ReportFont(14, true);
    QFont titleFont_ = ReportFont(12, true);
    QFont title2Font_ = ReportFont(10);
    QFont footerFont_ = ReportFont(8);
    std::size_t captionLines_ = 1;
    qreal captionHeight_ = 0;
    std::vector<Line> lines_;
    std::vector<std::vector<Line>> pages_;
};

// `qx` has no windows: fonts and painting still need a GUI application, so one is made on
// the offscreen platform. It lives as long as the program; Qt must not be torn down while
// static objects are destroyed.
void EnsureGuiApplication() {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return;
    if (QCoreApplication::instance())
        throw std::logic_error("PDF output needs a QGuiApplication, not a console application");
    static int argc = 3;
    static char program[] = "qx";
    static char platformOption[] = "-platform";
    static char platform[] = "offscreen";
    static char* argv[] = {program, platformOption, platform, nullptr};
    new QGuiApplication(argc, argv);
}

void PaintOn(const PrintJob& job, QPagedPaintDevice& device, const std::string& failure) {
    QPainter painter;
    if (!painter.begin(&device)) throw std::runtime_error(failure);
    ReportPainter(job, device, painter).Paint();
}

} // namespace

void SetUpPage(const PrintJob& job, QPagedPaintDevice& device) {
    auto layout = [&](QPageLayout::Orientation orientation) {
        device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), orientation,
                                         QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
                                         QPageLayout::Millimeter));
    };
    layout(QPageLayout::Portrait);
    const PageTotals totals(job);
    const qreal padding = kPaddingPoints * device.logicalDpiX() / 72;
    // A document's columns are designed for its screen: on paper they give way to the page.
    const bool designed = job.options.GetValue("ColumnWidths").AsText() != "Fit";
    if (ReportColumns(job, totals, device, padding).Overflow(device.width(), designed))
        layout(QPageLayout::Landscape);
}

void Render(const PrintJob& job, QPagedPaintDevice& device) {
    PaintOn(job, device, "The report cannot be printed: the printer is not available.");
}

std::string PdfBytes(const PrintJob& job) {
    EnsureGuiApplication();
    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
        QPdfWriter writer(&pdf);
        writer.setTitle(Text(job.title));
        writer.setCreator(QStringLiteral("QX Desk"));
        SetUpPage(job, writer);
        PaintOn(job, writer, "The PDF of " + job.title + " cannot be made.");
    } // the writer finishes the file as it goes
    return pdf.data().toStdString();
}

void WritePdf(const PrintJob& job, const std::string& path) {
    desk::ReplaceFile(path, PdfBytes(job));
}

} // namespace qx::print
