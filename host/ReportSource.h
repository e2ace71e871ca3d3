#pragma once
// A screen that shows a report says what it shows: the print job as it would preview or
// print now. The host saves it to a file (`qx report`, the exports) without knowing the report.

#include "PrintJob.h"

namespace qx {

class ReportSource {
public:
    virtual ~ReportSource() = default;
    // The report as the screen shows it now, for its current period, market and options.
    virtual const PrintJob& Report() const = 0;
};

} // namespace qx
