#include "ReportXlsx.h"

#include "ReportText.h"
#include "host/Amount.h"
#include "host/Date.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <tuple>

namespace qx::desk {
namespace {

// Bare digits longer than this are the number of an account, a mobile, an Aadhaar or a
// payment (UTR), not a figure to add up.
constexpr std::size_t kMostDigitsOfABareFigure = 9;
// Widths in characters, as a spreadsheet measures a column.
constexpr double kMostColumnWidth = 100;
constexpr double kWrappedColumnWidth = 30; // the report asks long texts to wrap ("Wrap")

struct Figure {
    Amount amount;
    int decimals = 0;
};

// A figure as a report writes one (58,750.00; -15; 2250.00); nullopt for anything else, and
// for bare digits that name rather than count: a leading zero, or too many of them.
std::optional<Figure> ReadFigure(std::string_view text) {
    const auto amount = Amount::Parse(text);
    if (!amount) return std::nullopt;
    const auto point = text.find('.');
    if (point == std::string_view::npos && text.find(',') == std::string_view::npos) {
        const std::string_view digits = text.substr(text.find_first_not_of("+-"));
        if (digits.size() > kMostDigitsOfABareFigure || (digits.size() > 1 && digits[0] == '0'))
            return std::nullopt;
    }
    const int decimals = point == std::string_view::npos ? 0 : static_cast<int>(text.size() - point - 1);
    return Figure{*amount, decimals};
}

// Rows that are figures and totals, not headings: what says whether a column holds figures.
bool IsHeading(const PrintRow& row) { return row.Has("headingfonts"); }

// A spreadsheet's grouping is the Western one: the Indian one (12,34,567.00) is spelt out for
// the number of digits of the value, with its commas as literal characters.
std::string IndianNumberFormat(Amount value, int decimals) {
    const std::size_t digits = std::to_string(value.Round(decimals).Abs().WholePart()).size();
    std::string pattern = "0";
    for (std::size_t placed = 1; placed < digits; ++placed) {
        if (placed >= 3 && (placed - 3) % 2 == 0) pattern.insert(0, "\\,");
        pattern.insert(0, "#");
    }
    if (decimals > 0) pattern += "." + std::string(static_cast<std::size_t>(decimals), '0');
    return pattern;
}

enum Rule : unsigned { kNoRule = 0, kThinRule = 1, kBoldRule = 2 };

// One row of the sheet below the captions: a report row, or an empty line.
struct SheetLine {
    const std::vector<std::string>* cells = nullptr;
    bool bold = false;
    bool heading = false;
    unsigned rules = kNoRule; // drawn under the line
};

class WorkbookWriter {
public:
    WorkbookWriter(const PrintJob& job, const std::filesystem::path& path)
        : job_(job), book_(workbook_new(path.c_str())) {
        if (!book_) throw std::runtime_error("Not enough memory to make the workbook.");
        sheet_ = workbook_add_worksheet(book_, SheetName().c_str());
        if (!sheet_) sheet_ = workbook_add_worksheet(book_, nullptr);
        const auto wrap = job.options.GetValue("Wrap");
        wrap_ = !wrap.IsNull() && wrap.AsText() != "0" && !wrap.AsText().empty();
        for (std::size_t c = 0; c < job.columns.size(); ++c)
            if (job.columns[c].width > 0) shown_.push_back(c);
        for (const auto& column : job.columns) captions_.push_back(column.caption);
        FindFigureColumns();
    }

    void Write() {
        lxw_row_t row = 0;
        auto title = [&](const std::string& text, double points, bool bold) {
            if (text.empty()) return;
            lxw_format* format = workbook_add_format(book_);
            format_set_font_size(format, points);
            if (bold) format_set_bold(format);
            Check(worksheet_write_string(sheet_, row++, 0, text.c_str(), format));
        };
        title(job_.firmName, 14, true);
        title(job_.title, 12, true);
        title(job_.title2, 11, false);
        if (row > 0) ++row;
        const auto lines = Lines();
        worksheet_freeze_panes(sheet_, row + 1, 0);
        for (const auto& line : lines) WriteLine(row++, line);
        SetWidths(lines);
        errno = 0;
        const lxw_error closed = workbook_close(book_);
        const int systemError = errno;
        if (closed != LXW_NO_ERROR) {
            if (systemError != 0) throw std::system_error(systemError, std::generic_category(), lxw_strerror(closed));
            throw std::runtime_error(std::string("The workbook could not be written: ") + lxw_strerror(closed));
        }
        if (firstError_ != LXW_NO_ERROR)
            throw std::runtime_error(std::string("The workbook could not be written: ") + lxw_strerror(firstError_));
    }

private:
    // A sheet's name has at most 31 characters and none of []:*?/\ .
    std::string SheetName() const {
        std::string name;
        for (char c : job_.title)
            if (std::string_view("[]:*?/\\").find(c) == std::string_view::npos) name += c;
        if (name.size() > 31) {
            std::size_t cut = 31;
            while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80) --cut;
            name.resize(cut);
        }
        return name;
    }

    // A column holds figures when every cell of its ordinary rows that is not empty is one.
    void FindFigureColumns() {
        decimals_.assign(job_.columns.size(), -1);
        std::vector<bool> text(job_.columns.size(), false);
        for (const auto& row : job_.rows)
            for (std::size_t c = 0; c < row.cells.size() && c < job_.columns.size(); ++c) {
                if (row.cells[c].empty()) continue;
                const auto figure = ReadFigure(row.cells[c]);
                if (figure) decimals_[c] = std::max(decimals_[c], figure->decimals);
                else if (!IsHeading(row) && !row.Has("totals")) text[c] = true;
            }
        for (std::size_t c = 0; c < text.size(); ++c)
            if (text[c]) decimals_[c] = -1;
    }

    std::vector<SheetLine> Lines() const {
        std::vector<SheetLine> lines{{&captions_, true, false, kThinRule}};
        for (const auto& row : job_.rows) {
            if (row.Has("blanklinebefore")) lines.push_back({});
            const unsigned rules = (row.Has("hline1") ? kThinRule : kNoRule) |
                                   (row.Has("bhline1") ? kBoldRule : kNoRule);
            const bool empty = std::all_of(row.cells.begin(), row.cells.end(),
                                           [](const std::string& cell) { return cell.empty(); });
            // A row that only carries a rule is the rule: it underlines the line before it.
            if (empty && rules != kNoRule) lines.back().rules |= rules;
            else lines.push_back({&row.cells, IsHeading(row) || row.Has("totals"), IsHeading(row), rules});
            if (row.Has("blanklineafter")) lines.push_back({});
        }
        return lines;
    }

    void WriteLine(lxw_row_t row, const SheetLine& line) {
        for (std::size_t at = 0; at < shown_.size(); ++at) {
            const std::size_t c = shown_[at];
            const auto col = static_cast<lxw_col_t>(at);
            const std::string text = line.cells && c < line.cells->size() ? (*line.cells)[c] : "";
            const bool captions = line.cells == &captions_;
            if (text.empty()) {
                if (line.rules != kNoRule) Check(worksheet_write_blank(sheet_, row, col, Format(line, {})));
                continue;
            }
            if (const auto day = Date::ParseDisplay(text); day && !captions) {
                Check(worksheet_write_number(sheet_, row, col, day->Serial(), Format(line, "dd/mm/yyyy")));
                continue;
            }
            const auto figure = captions || decimals_[c] < 0 ? std::nullopt : ReadFigure(text);
            if (figure) {
                Check(worksheet_write_number(sheet_, row, col, figure->amount.ToDouble(),
                                             Format(line, IndianNumberFormat(figure->amount, decimals_[c]))));
                continue;
            }
            Check(worksheet_write_string(sheet_, row, col, text.c_str(), Format(line, {}, !captions)));
        }
    }

    // Formats are the workbook's; each combination is made once.
    lxw_format* Format(const SheetLine& line, const std::string& numberFormat, bool text = false) {
        const bool wrap = text && wrap_;
        auto& format = formats_[{line.bold, line.rules, numberFormat, wrap}];
        if (format) return format;
        format = workbook_add_format(book_);
        if (line.bold) format_set_bold(format);
        if (!numberFormat.empty()) format_set_num_format(format, numberFormat.c_str());
        if (wrap) format_set_text_wrap(format);
        if (line.rules != kNoRule)
            format_set_bottom(format, line.rules == (kThinRule | kBoldRule) ? LXW_BORDER_DOUBLE
                                      : line.rules == kBoldRule             ? LXW_BORDER_MEDIUM
                                                                            : LXW_BORDER_THIN);
        return format;
    }

    // Headings run on over the empty cells beside them, so they do not widen their column.
    void SetWidths(const std::vector<SheetLine>& lines) {
        for (std::size_t at = 0; at < shown_.size(); ++at) {
            const std::size_t c = shown_[at];
            std::size_t widest = 0;
            for (const auto& line : lines)
                if (line.cells && !line.heading && c < line.cells->size())
                    widest = std::max(widest, DisplayWidth((*line.cells)[c]));
            const double most = wrap_ && decimals_[c] < 0 ? kWrappedColumnWidth : kMostColumnWidth;
            const double width = std::min(most, static_cast<double>(widest) + 2);
            Check(worksheet_set_column(sheet_, static_cast<lxw_col_t>(at), static_cast<lxw_col_t>(at), width, nullptr));
        }
    }

    void Check(lxw_error error) {
        if (error != LXW_NO_ERROR && firstError_ == LXW_NO_ERROR) firstError_ = error;
    }

    const PrintJob& job_;
    lxw_workbook* book_;
    lxw_worksheet* sheet_ = nullptr;
    bool wrap_ = false;
    std::vector<std::size_t> shown_; // columns of a width, as on paper
    std::vector<std::string> captions_;
    std::vector<int> decimals_; // of a figures column; -1 for text
    std::map<std::tuple<bool, unsigned, std::string, bool>, lxw_format*> formats_;
    lxw_error firstError_ = LXW_NO_ERROR;
};

} // namespace

void WriteXlsx(const PrintJob& job, const std::filesystem::path& path) {
    WorkbookWriter(job, path).Write();
}

} // namespace qx::desk
