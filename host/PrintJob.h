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

// A section of the firm's print designs, by its design and its name: "FormM_Head" /
// "MainHeadForm1".
struct DesignSection {
    std::string design;
    std::string section;
};

// Sections of the footer design that are not printed as text: the captions of the lines that
// bring page totals forward and carry them forward ("Brought Forward", "Carried Forward" when
// the design leaves them empty).
inline constexpr const char* kBroughtForwardSection = "BFTotals";
inline constexpr const char* kCarriedForwardSection = "CFTotals";

struct PrintJob {
    std::string reportName; // key of the report, e.g. "MarketMaster"
    std::string firmName;   // the company's name, printed above the titles
    std::string title;
    std::string title2;
    std::vector<PrintColumn> columns;
    std::vector<PrintRow> rows;
    // The sections of the firm's print designs the report prints, in order: the head sections
    // above each page's titles (in place of the firm's name), the foot sections at each page's
    // foot.
    std::vector<DesignSection> headSections;
    std::vector<DesignSection> footSections;
    // Their texts by section name, filled by the host from the company ("MainHeadForm1" -> the
    // firm's heading); a section the company does not hold has none.
    std::map<std::string, std::string> sections;
    PropertyBag options; // e.g. "Wrap" -> "3"
};

// True when the "*"-delimited word list holds the word (without regard to letter case).
bool HasMark(std::string_view marks, std::string_view word);

enum class PrintMode { Preview, Print };

} // namespace qx
