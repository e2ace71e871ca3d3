#pragma once
// The rows of a register as a print job: lines of text and figures, section headings, rules,
// and closing lines that carry the column totals of the lines since the last one. A figure of
// 0 is left blank, so that the charges a line does bear stand out.

#include "host/Amount.h"
#include "host/PrintJob.h"

#include <optional>
#include <string>
#include <vector>

namespace kivra {

// How a column shows its figures, and whether a closing line totals them.
enum class Figure {
    Text,
    Count,    // bags: whole numbers, totalled
    Quantity, // quintals, two decimals, totalled
    Money,    // "c2", totalled
    Rate,     // "c2", never totalled
    Balance,  // a running quantity, two decimals, shown even when 0, never totalled
};

struct ReportColumn {
    std::string caption;
    int width;
    Figure figure;
};

class ReportRows {
public:
    ReportRows(qx::PrintJob& job, const std::vector<ReportColumn>& columns);

    // The line being filled; Add puts it into the job.
    ReportRows& Text(int col, std::string text);
    // A figure; counted, when given, is what the line adds to the totals instead of what it
    // shows (a loss shown as a plain figure that the goods account is debited with).
    ReportRows& Number(int col, qx::Amount value, std::optional<qx::Amount> counted = {});
    void Add(std::string marks = {});

    void Heading(const std::string& text, const std::string& marks);
    void Rule(); // "*hline1*"
    // A closing line: the caption and the totals of the lines since the last closing line, with
    // the texts given to the line being filled (totals a register keeps itself).
    void Totals(const std::string& caption, const std::string& marks);
    qx::Amount Total(int col) const { return totals_[static_cast<std::size_t>(col)]; }

    std::string Shown(int col, qx::Amount value) const;

private:
    qx::PrintJob& job_;
    std::vector<Figure> figures_;
    std::vector<std::string> line_;
    std::vector<qx::Amount> lineCounts_;
    std::vector<qx::Amount> totals_;
};

// Drops a column from a job (the market column of a firm that works in one market).
void DropColumn(qx::PrintJob& job, std::size_t col);

} // namespace kivra
