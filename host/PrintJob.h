#pragma once
// A report as the host prints it: titles, columns, rows with marks, named design sections.
// The desk renders a job to the preview, a printer, PDF, CSV or plain text.

#include "PropertyBag.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

enum class Align { Default, Left, Right, Centre };

// The host grid's alignment codes: 1 left, 4 centred, 7 right; others default.
Align AlignFromCode(int code);

struct PrintColumn {
    std::string caption;
    int width = 1000; // twips, as the host grid measures them
    Align align = Align::Default;
};

// Marks are "*"-delimited words: "*headingfonts*", "*blanklinebefore*", "*blanklineafter*",
// "*hline1*", "*bhline1*", "*totals*", "*totalreset*".
struct PrintRow {
    std::vector<std::string> cells;
    std::string marks;
    bool Has(std::string_view mark) const;
};

struct PrintJob {
    std::string reportName; // key of the report, e.g. "MarketMaster"
    std::string firmName;   // the company's name, printed above the titles
    std::string title;
    std::string title2;
    std::vector<PrintColumn> columns;
    std::vector<PrintRow> rows;
    // Named sections of the firm's print designs, e.g. "MainHeadForm1" -> text.
    std::map<std::string, std::string> sections;
    PropertyBag options; // e.g. "Wrap" -> "3"
};

// True when the "*"-delimited word list holds the word (without regard to letter case).
bool HasMark(std::string_view marks, std::string_view word);

enum class PrintMode { Preview, Print };

} // namespace qx
