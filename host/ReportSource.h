#pragma once
// A screen that shows a report says what it shows: the print job as it would preview or
// print now. The host saves it to a file (`qx report`, the exports) without knowing the report.

#include "PrintJob.h"

#include <string>
#include <utility>
#include <vector>

namespace qx {

// A report's own arguments by name, in the order given ("party" -> "GURMEET SINGH").
using ReportArguments = std::vector<std::pair<std::string, std::string>>;

class ReportSource {
public:
    virtual ~ReportSource() = default;
    // The report as the screen shows it now, for its current period, market and options.
    virtual const PrintJob& Report() const = 0;
    // The arguments the report takes from the command line (`qx report ... --party NAME`):
    // their names ("from" and "to" among them when the screen asks its period only on
    // request), and taking them as the user would enter them, which builds the report again.
    // A value the screen refuses throws std::runtime_error saying why.
    virtual std::vector<std::string> ArgumentNames() const { return {}; }
    virtual void TakeArguments(const ReportArguments& /*arguments*/) {}
};

} // namespace qx
