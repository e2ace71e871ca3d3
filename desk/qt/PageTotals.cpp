#include "PageTotals.h"

#include <algorithm>

namespace qx::print {
namespace {

std::optional<Amount> Figure(const PrintRow& row, std::size_t column) {
    if (column >= row.cells.size() || row.cells[column].empty()) return std::nullopt;
    return Amount::Parse(row.cells[column]);
}

bool IsDetail(const PrintRow& row) { return !row.Has("totals") && !row.Has("headingfonts"); }

std::string SectionOr(const PrintJob& job, const char* section, const char* otherwise) {
    auto text = job.sections.find(section);
    return text == job.sections.end() || text->second.empty() ? otherwise : text->second;
}

} // namespace

PageTotals::PageTotals(const PrintJob& job)
    : job_(job), brought_(SectionOr(job, kBroughtForwardSection, "Brought Forward")),
      carriedCaption_(SectionOr(job, kCarriedForwardSection, "Carried Forward")) {
    for (std::size_t column = 0; column < job.columns.size(); ++column)
        if (std::any_of(job.rows.begin(), job.rows.end(), [&](const PrintRow& row) {
                return row.Has("totals") && Figure(row, column);
            }))
            carried_.push_back(column);
    if (carried_.empty()) return;
    whole_.assign(carried_.size(), true);
    std::vector<Amount> running(carried_.size());
    bool any = false; // a row added since the totals started
    for (const PrintRow& row : job.rows) {
        if (IsDetail(row))
            for (std::size_t c = 0; c < carried_.size(); ++c)
                if (const auto figure = Figure(row, carried_[c])) {
                    running[c] += *figure;
                    any = true;
                    if (row.cells[carried_[c]].find('.') != std::string::npos) whole_[c] = false;
                }
        if (row.Has("totalreset")) {
            running.assign(carried_.size(), Amount());
            any = false;
        }
        after_.push_back(any ? running : std::vector<Amount>{});
    }
}

std::string PageTotals::Shown(const std::vector<Amount>& totals, std::size_t c) const {
    return FormatAmount(totals[c], whole_[c] ? "c0" : "c2");
}

PrintRow PageTotals::Widest() const {
    PrintRow widest{std::vector<std::string>(job_.columns.size()), "*totals*"};
    for (const auto& totals : after_)
        for (std::size_t c = 0; c < totals.size(); ++c)
            if (auto shown = Shown(totals, c); shown.size() > widest.cells[carried_[c]].size())
                widest.cells[carried_[c]] = std::move(shown);
    return widest;
}

std::optional<PrintRow> PageTotals::Line(std::size_t row, const std::string& caption) const {
    if (row >= after_.size() || after_[row].empty()) return std::nullopt;
    PrintRow line;
    line.marks = "*totals*";
    line.cells.resize(job_.columns.size());
    // A column nothing was added to since its last totals stays blank, as the report's own do.
    for (std::size_t c = 0; c < carried_.size(); ++c)
        if (!after_[row][c].IsZero()) line.cells[carried_[c]] = Shown(after_[row], c);
    // The caption in the first column that carries no figure.
    for (std::size_t column = 0; column < line.cells.size(); ++column)
        if (line.cells[column].empty() && job_.columns[column].width > 0) {
            line.cells[column] = caption;
            break;
        }
    return line;
}

std::optional<PrintRow> PageTotals::CarriedAfter(std::size_t row) const { return Line(row, carriedCaption_); }

std::optional<PrintRow> PageTotals::BroughtAfter(std::size_t row) const { return Line(row, brought_); }

} // namespace qx::print
