#include "PrintRenderer.h"

#include "CellAlignment.h"
#include "desk/core/FileReplace.h"
#include "PageTotals.h"

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
constexpr qreal kA4WidthMm = 210;
constexpr qreal kMmPerInch = 25.4;
constexpr qreal kTwipsPerInch = 1440;

QString Text(const std::string& utf8) { return QString::fromStdString(utf8); }

QFont ReportFont(qreal points, bool bold = false) {
    QFont font;
    // Latin first; names written in Punjabi or Hindi fall through to the faces of their script.
    font.setFamilies({QStringLiteral("Noto Sans"), QStringLiteral("Noto Sans Gurmukhi"),
                      QStringLiteral("Noto Sans Devanagari")});
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

int TotalTwips(const PrintJob& job) {
    int twips = 0;
    for (const auto& column : job.columns) twips += std::max(column.width, 0);
    return twips;
}

enum class LineKind { Row, Blank, Rule, BoldRule };

struct Line {
    LineKind kind;
    const PrintRow* row = nullptr;
    qreal height = 0;
    std::size_t source = 0; // the job's row the line comes from
};

struct ColumnSpan {
    std::size_t index; // into the job's columns and a row's cells
    qreal x;
    qreal width;
};

// Lays a job out on the device's pages and paints them.
class ReportPainter {
public:
    ReportPainter(const PrintJob& job, QPagedPaintDevice& device, QPainter& painter)
        : job_(job), device_(device), painter_(painter), dpi_(device.logicalDpiX()),
          page_(0, 0, device.width(), device.height()) {
        LayOutColumns();
        LayOutLines();
        Paginate();
    }

    void Paint() {
        std::optional<std::size_t> lastRow; // the last row painted, whose totals run on
        for (std::size_t page = 0; page < pages_.size(); ++page) {
            if (page > 0) device_.newPage();
            qreal y = PaintHeader();
            if (const auto brought = lastRow ? totals_.BroughtAfter(*lastRow) : std::nullopt) {
                PaintRow(*brought, y, CarryHeight());
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
                    PaintRow(*carried, y + RuleHeight(), CarryHeight());
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
    qreal Padding() const { return Points(3); }
    qreal CarryHeight() const { return LineHeight(totalsFont_); }

    void LayOutColumns() {
        const qreal natural = TotalTwips(job_) * dpi_ / kTwipsPerInch;
        const qreal scale = natural > page_.width() ? page_.width() / natural : 1.0;
        qreal x = 0;
        for (std::size_t i = 0; i < job_.columns.size(); ++i) {
            if (job_.columns[i].width <= 0) continue;
            const qreal width = job_.columns[i].width * dpi_ / kTwipsPerInch * scale;
            spans_.push_back({i, x, width});
            x += width;
        }
        tableWidth_ = x;
        for (const auto& span : spans_) {
            const QRectF box(0, 0, span.width - 2 * Padding(), page_.height());
            const QRectF needed = QFontMetricsF(captionFont_, &device_)
                .boundingRect(box, Qt::TextWordWrap, Text(job_.columns[span.index].caption));
            captionHeight_ = std::max(captionHeight_, needed.height());
        }
    }

    const QFont& RowFont(const PrintRow& row) const {
        if (row.Has("headingfonts")) return headingFont_;
        if (row.Has("totals")) return totalsFont_;
        return bodyFont_;
    }

    static bool IsEmpty(const PrintRow& row) {
        for (const auto& cell : row.cells)
            if (!cell.empty()) return false;
        return true;
    }

    void LayOutLines() {
        const qreal blank = LineHeight(bodyFont_);
        for (std::size_t index = 0; index < job_.rows.size(); ++index) {
            const PrintRow& row = job_.rows[index];
            const bool rule = row.Has("hline1");
            const bool boldRule = row.Has("bhline1");
            if (row.Has("blanklinebefore")) lines_.push_back({LineKind::Blank, nullptr, blank, index});
            // A row that only carries a rule is the rule itself; otherwise the rules underline it.
            if (!IsEmpty(row) || (!rule && !boldRule))
                lines_.push_back({LineKind::Row, &row, LineHeight(RowFont(row)), index});
            if (rule) lines_.push_back({LineKind::Rule, nullptr, RuleHeight(), index});
            if (boldRule) lines_.push_back({LineKind::BoldRule, nullptr, RuleHeight(), index});
            if (row.Has("blanklineafter")) lines_.push_back({LineKind::Blank, nullptr, blank, index});
        }
    }

    // The texts of the named sections, line by line; a design's heading stands in place of the
    // firm's name. The sections that caption the page totals are no text of their own.
    static std::vector<std::string> SectionLines(const PrintJob& job,
                                                 const std::vector<DesignSection>& named) {
        std::vector<std::string> lines;
        for (const DesignSection& section : named) {
            if (section.section == kBroughtForwardSection || section.section == kCarriedForwardSection)
                continue;
            const auto text = job.sections.find(section.section);
            if (text == job.sections.end()) continue;
            std::size_t start = 0;
            for (std::size_t end; (end = text->second.find('\n', start)) != std::string::npos; start = end + 1)
                lines.push_back(text->second.substr(start, end - start));
            lines.push_back(text->second.substr(start));
        }
        for (auto& line : lines)
            if (!line.empty() && line.back() == '\r') line.pop_back();
        return lines;
    }

    qreal HeaderHeight() const {
        qreal height = 0;
        if (!headLines_.empty())
            height += LineHeight(firmFont_) + static_cast<qreal>(headLines_.size() - 1) * LineHeight(title2Font_);
        else if (!job_.firmName.empty()) height += LineHeight(firmFont_);
        if (!job_.title.empty()) height += LineHeight(titleFont_);
        if (!job_.title2.empty()) height += LineHeight(title2Font_);
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

    qreal PaintCentred(const QFont& font, const std::string& text, qreal y) {
        if (text.empty()) return y;
        const qreal height = LineHeight(font);
        painter_.setFont(font);
        painter_.drawText(QRectF(0, y, page_.width(), height), Qt::AlignCenter, Text(text));
        return y + height;
    }

    void PaintRule(qreal y, qreal points) {
        painter_.setPen(QPen(Qt::black, Points(points)));
        painter_.drawLine(QPointF(0, y), QPointF(tableWidth_, y));
    }

    qreal PaintHeader() {
        qreal y = 0;
        if (headLines_.empty()) y = PaintCentred(firmFont_, job_.firmName, y);
        for (std::size_t i = 0; i < headLines_.size(); ++i) {
            const QFont& font = i == 0 ? firmFont_ : title2Font_;
            y = headLines_[i].empty() ? y + LineHeight(font) : PaintCentred(font, headLines_[i], y);
        }
        y = PaintCentred(titleFont_, job_.title, y);
        y = PaintCentred(title2Font_, job_.title2, y);
        y += Points(6);
        painter_.setPen(Qt::black);
        painter_.setFont(captionFont_);
        for (const auto& span : spans_) {
            const auto& column = job_.columns[span.index];
            const QString caption = Text(column.caption);
            painter_.drawText(QRectF(span.x + Padding(), y, span.width - 2 * Padding(),
                                     captionHeight_),
                              CellAlignment(column.align, caption) | Qt::AlignBottom |
                                  Qt::TextWordWrap,
                              caption);
        }
        y += captionHeight_;
        PaintRule(y + RuleHeight() / 2, 0.8);
        return y + RuleHeight();
    }

    void PaintLine(const Line& line, qreal y) {
        switch (line.kind) {
        case LineKind::Blank: return;
        case LineKind::Rule: PaintRule(y + line.height / 2, 0.5); return;
        case LineKind::BoldRule: PaintRule(y + line.height / 2, 1.5); return;
        case LineKind::Row: PaintRow(*line.row, y, line.height); return;
        }
    }

    void PaintRow(const PrintRow& row, qreal y, qreal height) {
        const QFont& font = RowFont(row);
        const QFontMetricsF metrics(font, &device_);
        painter_.setFont(font);
        painter_.setPen(Qt::black);
        // One baseline for the row: names in Gurmukhi or Devanagari come from faces with
        // other heights, and centring each cell by its own face would set them askew.
        const qreal baseline = y + (height - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();
        auto cell = [&](std::size_t span) -> QString {
            const std::size_t index = spans_[span].index;
            return index < row.cells.size() ? Text(row.cells[index]) : QString();
        };
        for (std::size_t i = 0; i < spans_.size(); ++i) {
            const QString text = cell(i);
            if (text.isEmpty()) continue;
            const Qt::Alignment align = CellAlignment(job_.columns[spans_[i].index].align, text);
            qreal width = spans_[i].width;
            // Left-aligned text runs on over the empty cells after it, as a heading does.
            if (align & Qt::AlignLeft)
                for (std::size_t next = i + 1; next < spans_.size() && cell(next).isEmpty(); ++next)
                    width += spans_[next].width;
            const qreal room = width - 2 * Padding();
            const QString shown = metrics.elidedText(text, Qt::ElideRight, room);
            const qreal spare = room - metrics.horizontalAdvance(shown);
            qreal x = spans_[i].x + Padding();
            if (align & Qt::AlignRight) x += spare;
            else if (align & Qt::AlignHCenter) x += spare / 2;
            painter_.drawText(QPointF(x, baseline), shown);
        }
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
    std::vector<std::string> headLines_ = SectionLines(job_, job_.headSections);
    std::vector<std::string> footLines_ = SectionLines(job_, job_.footSections);
    PageTotals totals_{job_};
    QPagedPaintDevice& device_;
    QPainter& painter_;
    qreal dpi_;
    QRectF page_;
    QFont firmFont_ = ReportFont(14, true);
    QFont titleFont_ = ReportFont(12, true);
    QFont title2Font_ = ReportFont(10);
    QFont captionFont_ = ReportFont(9, true);
    QFont bodyFont_ = ReportFont(9);
    QFont totalsFont_ = ReportFont(9, true);
    QFont headingFont_ = ReportFont(11, true);
    QFont footerFont_ = ReportFont(8);
    std::vector<ColumnSpan> spans_;
    qreal tableWidth_ = 0;
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
    const qreal portraitTwips = (kA4WidthMm - 2 * kMarginMm) / kMmPerInch * kTwipsPerInch;
    const auto orientation =
        TotalTwips(job) > portraitTwips ? QPageLayout::Landscape : QPageLayout::Portrait;
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), orientation,
                                     QMarginsF(kMarginMm, kMarginMm, kMarginMm, kMarginMm),
                                     QPageLayout::Millimeter));
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
