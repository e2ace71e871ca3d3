#include "ReportText.h"

#include "CellLines.h"
#include "PrintDesigns.h"

#include <utf8proc.h>

#include <algorithm>
#include <sstream>

namespace qx::desk {

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t code = 0;
        auto length = utf8proc_iterate(bytes, left, &code);
        if (length <= 0) { // a broken byte: count it and go on
            length = 1;
            code = '?';
        }
        width += static_cast<std::size_t>(std::max(0, utf8proc_charwidth(code)));
        bytes += length;
        left -= length;
    }
    return width;
}

namespace {

// Characters of a column of the report's designed width, as a printer of 12 to the inch sets them.
constexpr int kTwipsPerCharacter = 120;

std::string Pad(std::string_view text, std::size_t width, bool right) {
    auto shown = DisplayWidth(text);
    std::string fill(shown < width ? width - shown : 0, ' ');
    return right ? fill + std::string(text) : std::string(text) + fill;
}

double Characters(std::string_view text) { return static_cast<double>(DisplayWidth(text)); }

// The columns a report shows: those of a width, as on paper.
std::vector<std::size_t> ShownColumns(const PrintJob& job) {
    std::vector<std::size_t> shown;
    for (std::size_t c = 0; c < job.columns.size(); ++c)
        if (job.columns[c].width > 0) shown.push_back(c);
    return shown;
}

std::string_view Cell(const std::vector<std::string>& cells, std::size_t column) {
    return column < cells.size() ? std::string_view(cells[column]) : std::string_view();
}

std::vector<std::string> Captions(const PrintJob& job) {
    std::vector<std::string> captions;
    for (const auto& column : job.columns) captions.push_back(column.caption);
    return captions;
}

class TextTable {
public:
    explicit TextTable(const PrintJob& job) : job_(job), shown_(ShownColumns(job)), wrap_(WrapLimit(job)) {
        for (std::size_t c : shown_) {
            const auto& column = job.columns[c];
            Narrowest narrowest = NarrowestFor(column.caption, Characters);
            double widest = 0;
            for (std::string_view line : OwnLines(column.caption)) widest = std::max(widest, Characters(line));
            for (const auto& row : job.rows) {
                if (row.Has("headingfonts")) continue; // a heading runs on over the cells beside it
                const std::string_view cell = Cell(row.cells, c);
                narrowest.Widen(NarrowestFor(cell, Characters));
                for (std::string_view line : OwnLines(cell)) widest = std::max(widest, Characters(line));
            }
            // Figures and words whole; other text no wider than the report designed its column.
            const double designed = static_cast<double>(column.width / kTwipsPerCharacter);
            widths_.push_back(static_cast<std::size_t>(std::max(narrowest.Both(), std::min(widest, designed))));
        }
        for (auto w : widths_) ruleWidth_ += w + 2;
        ruleWidth_ = ruleWidth_ > 2 ? ruleWidth_ - 2 : 0;
    }

    std::string Rule() const { return std::string(ruleWidth_, '-') + '\n'; }

    // A row on as many lines as its tallest cell takes; a text runs on over the empty cells
    // after it, or, set to the right, over those before it.
    std::string Row(const std::vector<std::string>& cells) const {
        struct Placed {
            std::vector<std::string> lines;
            std::size_t width;
            bool right;
            bool empty;
        };
        std::vector<Placed> placed;
        std::size_t height = 1;
        for (std::size_t at = 0; at < shown_.size();) {
            const std::string_view text = Cell(cells, shown_[at]);
            const Align align = job_.columns[shown_[at]].align;
            const bool right = align == Align::Right || (align == Align::Default && IsFigure(text));
            std::size_t width = widths_[at];
            // A caption set against a figure runs on to the left over the empty cells before it.
            if (right && !text.empty() && !IsFigure(text))
                while (!placed.empty() && placed.back().empty) {
                    width += 2 + placed.back().width;
                    placed.pop_back();
                }
            for (++at; !right && !text.empty() && at < shown_.size() && Cell(cells, shown_[at]).empty(); ++at)
                width += 2 + widths_[at];
            auto lines = WrapCell(text, static_cast<double>(width), Characters, wrap_);
            height = std::max(height, lines.size());
            placed.push_back({std::move(lines), width, right, text.empty()});
        }
        std::string out;
        for (std::size_t l = 0; l < height; ++l) {
            std::string line;
            for (std::size_t p = 0; p < placed.size(); ++p) {
                if (p) line += "  ";
                const auto& cell = placed[p];
                line += Pad(l < cell.lines.size() ? cell.lines[l] : "", cell.width, cell.right);
            }
            while (!line.empty() && line.back() == ' ') line.pop_back();
            out += line + '\n';
        }
        return out;
    }

private:
    const PrintJob& job_;
    std::vector<std::size_t> shown_;
    std::size_t wrap_;
    std::vector<std::size_t> widths_; // of the shown columns, in characters
    std::size_t ruleWidth_ = 0;
};

} // namespace

std::string RenderText(const PrintJob& job) {
    std::ostringstream out;
    // The firm's own heading of its print design stands in place of its name.
    const auto head = SectionLines(job, job.headSections);
    if (head.empty() && !job.firmName.empty()) out << job.firmName << '\n';
    for (const auto& line : head) out << line << '\n';
    for (const auto* line : {&job.title, &job.title2})
        if (!line->empty()) out << *line << '\n';
    const TextTable table(job);
    out << table.Row(Captions(job)) << table.Rule();
    for (const auto& row : job.rows) {
        if (row.Has("blanklinebefore")) out << '\n';
        if (row.Has("hline1") || row.Has("bhline1")) {
            bool empty = std::all_of(row.cells.begin(), row.cells.end(),
                                     [](const std::string& c) { return c.empty(); });
            if (empty) {
                out << table.Rule();
                continue;
            }
        }
        out << table.Row(row.cells);
        if (row.Has("blanklineafter")) out << '\n';
    }
    // Text has no pages: the foot of the design closes the report once.
    const auto foot = SectionLines(job, job.footSections);
    if (!foot.empty()) out << '\n';
    for (const auto& line : foot) out << line << '\n';
    return out.str();
}

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\n\r") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string RenderCsv(const PrintJob& job) {
    std::string out;
    const auto shown = ShownColumns(job);
    auto writeRow = [&](const std::vector<std::string>& cells) {
        for (std::size_t at = 0; at < shown.size(); ++at) {
            if (at) out += ',';
            out += CsvField(Cell(cells, shown[at]));
        }
        out += '\n';
    };
    writeRow(Captions(job));
    for (const auto& row : job.rows) writeRow(row.cells);
    return out;
}

} // namespace qx::desk
