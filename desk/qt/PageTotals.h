#pragma once
// Page totals of a report whose rows are marked for totals: each page after the first opens
// with the figures brought forward, each page but the last closes with those carried forward.
// The columns carried are those the report's totals rows ("*totals*") fill with figures; the
// running totals add up the rows in between (not the headings, not the totals rows) and start
// again after a "*totalreset*" row, as the report's own sub totals do. A page that breaks
// where a block of totals has just ended carries nothing.

#include "host/Amount.h"
#include "host/PrintJob.h"

#include <optional>
#include <vector>

namespace qx::print {

class PageTotals {
public:
    explicit PageTotals(const PrintJob& job);
    // Whether the report carries totals from page to page at all.
    bool Carries() const { return !carried_.empty(); }
    // The line that carries the totals after the row (an index into the job's rows) forward,
    // or brings them forward onto the next page; nullopt when there is nothing to carry.
    std::optional<PrintRow> CarriedAfter(std::size_t row) const;
    std::optional<PrintRow> BroughtAfter(std::size_t row) const;
    // A line of the longest figures any page may carry, for the columns to be wide enough.
    PrintRow Widest() const;

private:
    std::string Shown(const std::vector<Amount>& totals, std::size_t c) const;
    std::optional<PrintRow> Line(std::size_t row, const std::string& caption) const;

    const PrintJob& job_;
    std::vector<std::size_t> carried_;      // columns
    std::vector<bool> whole_;               // per carried column: no figure has decimals
    std::vector<std::vector<Amount>> after_; // running totals after each row; empty: none
    std::string brought_;
    std::string carriedCaption_;
};

} // namespace qx::print
