#include "ReportRows.h"

namespace kivra {
namespace {

bool Totalled(Figure figure) {
    return figure == Figure::Count || figure == Figure::Quantity || figure == Figure::Money;
}

} // namespace

ReportRows::ReportRows(qx::PrintJob& job, const std::vector<ReportColumn>& columns) : job_(job) {
    for (const ReportColumn& column : columns) {
        const bool text = column.figure == Figure::Text;
        job_.columns.push_back({column.caption, column.width, text ? qx::Align::Left : qx::Align::Right});
        figures_.push_back(column.figure);
    }
    line_.resize(figures_.size());
    lineCounts_.resize(figures_.size());
    totals_.resize(figures_.size());
}

std::string ReportRows::Shown(int col, qx::Amount value) const {
    const Figure figure = figures_[static_cast<std::size_t>(col)];
    if (value.IsZero() && figure != Figure::Balance) return {};
    switch (figure) {
    case Figure::Count:
        return qx::FormatAmount(value, value.IsWhole() ? "n0" : "n2");
    case Figure::Quantity:
    case Figure::Balance:
        return qx::FormatAmount(value, "n2");
    default:
        return qx::FormatAmount(value, "c2");
    }
}

ReportRows& ReportRows::Text(int col, std::string text) {
    line_[static_cast<std::size_t>(col)] = std::move(text);
    return *this;
}

ReportRows& ReportRows::Number(int col, qx::Amount value, std::optional<qx::Amount> counted) {
    const auto c = static_cast<std::size_t>(col);
    line_[c] = Shown(col, value);
    if (Totalled(figures_[c])) lineCounts_[c] += counted.value_or(value);
    return *this;
}

void ReportRows::Add(std::string marks) {
    job_.rows.push_back({std::move(line_), std::move(marks)});
    for (std::size_t c = 0; c < totals_.size(); ++c) totals_[c] += lineCounts_[c];
    line_.assign(figures_.size(), {});
    lineCounts_.assign(figures_.size(), {});
}

void ReportRows::Heading(const std::string& text, const std::string& marks) {
    job_.rows.push_back({{text}, marks});
    job_.rows.back().cells.resize(figures_.size());
}

void ReportRows::Rule() { job_.rows.push_back({std::vector<std::string>(figures_.size()), "*hline1*"}); }

void ReportRows::Totals(const std::string& caption, const std::string& marks) {
    std::vector<std::string> cells = std::move(line_);
    cells[0] = caption;
    for (std::size_t c = 1; c < cells.size(); ++c)
        if (Totalled(figures_[c])) cells[c] = Shown(static_cast<int>(c), totals_[c]);
    job_.rows.push_back({std::move(cells), marks});
    totals_.assign(figures_.size(), {});
    line_.assign(figures_.size(), {});
    lineCounts_.assign(figures_.size(), {});
}

void DropColumn(qx::PrintJob& job, std::size_t col) {
    job.columns.erase(job.columns.begin() + static_cast<std::ptrdiff_t>(col));
    for (qx::PrintRow& row : job.rows)
        if (col < row.cells.size()) row.cells.erase(row.cells.begin() + static_cast<std::ptrdiff_t>(col));
}

} // namespace kivra
