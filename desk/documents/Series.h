#pragma once
// A document series as the company configures it: DOCCONFIG, with the item grid's columns
// (DOCCOLUMNS), the header's own boxes (DOCBOXES) and the charges (DOCCHARGES). The entry
// screen is built from it; nothing about a series is in code.

#include "AccountGroups.h"

#include "host/Amount.h"
#include "host/CompanyDb.h"
#include "host/PropertyBag.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

// What an item-grid column holds, which decides how it is typed, shown and saved.
enum class ColumnRole {
    Item,      // PRODUCT_ID: the item by name; its code is kept in the STK_CODE column
    ItemCode,  // STK_CODE: the item's code
    Party,     // CUSTOMER_ID: the line's party by name
    PartyCode, // the host's hidden column that keeps the code of the line's party
    Number,
    Text,
};

// The figures a number column takes from the user.
enum class FigureRange {
    NotNegative, // 0 or more, or nothing
    Positive,    // more than 0, and every line must have it
    Signed,      // negative as well (kilograms deducted, say)
};

struct SeriesColumn {
    std::string key; // "QUANTITY", or a series' own key ("ADD_LESS_KGS")
    std::string caption;
    int width = 1000;   // twips; 0 hides the column
    std::string format; // FormatAmount format of a number column; empty: plain
    bool editable = true;
    ColumnRole role = ColumnRole::Text;
    std::string field; // the DOCDATA column the cell is saved in; empty: not saved
    FigureRange figures = FigureRange::NotNegative;
    AccountGroups groups; // a party column: the groups its accounts come from; empty: any
    bool computed = false; // worked out from other cells: Enter passes it by
    bool repeats = false;  // a new line proposes the line above's text
};

// DOCCOLUMNS.FIGURES: "positive", "signed", or empty for 0 or more; anything else throws.
FigureRange FigureRangeOf(std::string_view text);
// Why a figure does not fit its column ("Rate must be more than 0."); empty when it does.
std::string FigureRefusal(const SeriesColumn& column, Amount figure);

struct SeriesBox {
    std::string name; // the box's ExtVal "Name", e.g. "FORM_NO"
    std::string caption;
    std::string field; // the DOCMAIN column the box is saved in; empty: not saved
    bool numeric = false;
    bool date = false; // holds a day, typed dd/MM/yyyy and kept as a date
    bool visible = true;
    std::string lookup;     // a module's operation that chooses the box's record
    std::string lookupText; // a module's operation that names a saved record
    bool required = false;  // a document is not saved with the box empty
    bool carried = false;   // a new document starts with what the one before held
    // A new document proposes one more than the highest number its series saved with what the
    // carried and look-up boxes hold (a form number within its book).
    bool numbered = false;
};

enum class ChargeBasis { PerBag, Percent, Fixed };

struct SeriesCharge {
    std::string key; // "LABOUR"
    std::string caption;
    Amount rate;
    ChargeBasis basis = ChargeBasis::Fixed;
    int sign = 1; // +1 adds to the document, -1 deducts
    std::int32_t headCode = 0;
    std::string field; // the DOCMAIN column that keeps the charge's amount
};

struct Series {
    std::int32_t id = 0;
    std::string code;
    std::string name;
    std::string subName;
    std::string docType;    // "Sale", "Purchase", ...
    std::string properties; // tags such as "*JForm*"
    int voucherFactor = 0;  // +1 the party is debited, -1 credited, 0 no voucher of its own
    std::string narration;  // the voucher's narration template
    std::string trnType;
    std::string book;
    AccountGroups partyGroups; // the groups the document's party comes from; empty: any
    // What the status line says of a saved document after its number and before its amount,
    // each {BOXNAME} replaced by what that box held ("form {FORM_BOOK_NO}/{FORM_NO}").
    std::string savedNote;
    // The DOCCONFIG record under the names a document extension reads ("SeriesID",
    // "SubSeriesName", "DocVoucherFactor", ...).
    PropertyBag info;
    std::vector<SeriesColumn> columns;
    std::vector<SeriesBox> boxes;
    std::vector<SeriesCharge> charges;

    std::string Title() const;
    // How a line moves stock unless an extension says otherwise: a purchase receives (+1), a
    // sale issues (-1), anything else leaves stock alone.
    int StockFactor() const;
    // The first column of that key; null when the grid has none.
    const SeriesColumn* Column(std::string_view key) const;
};

// The keys the host itself understands.
inline constexpr std::string_view kItemKey = "PRODUCT_ID";
inline constexpr std::string_view kItemCodeKey = "STK_CODE";
inline constexpr std::string_view kPartyKey = "CUSTOMER_ID";
inline constexpr std::string_view kQuantityKey = "QUANTITY";
inline constexpr std::string_view kRateKey = "RATE";
inline constexpr std::string_view kAmountKey = "AMOUNT";
inline constexpr std::string_view kBagsKey = "NO_OF_BOXES";

// "Sales - Cash": a series as the user knows it.
std::string SeriesTitle(std::string_view name, std::string_view subName);

// The host's hidden item-code column, for a series whose grid does not show the code: every
// line keeps its item's code in the STK_CODE column.
SeriesColumn HiddenItemCodeColumn();
// The hidden column that keeps the code of a line's party, beside a CUSTOMER_ID column.
SeriesColumn HiddenPartyCodeColumn();
// A line record before its cells are read: every DOCDATA field the host fills, numbers 0,
// texts empty, and the series' stock factor.
PropertyBag BlankLine(const Series& series);

// Throws std::runtime_error when the series is not configured.
Series LoadSeries(CompanyDb& db, std::int32_t seriesId);
// The series of that code (DOCCONFIG.SERIESCODE); of several, the one whose name is the
// given name, else the first. 0 when there is none.
std::int32_t FindSeries(CompanyDb& db, std::string_view code, std::string_view name);
// Adds to DOCDATA and DOCMAIN the columns the series saves into and they lack.
void AddSeriesFields(CompanyDb& db, const Series& series);
// The most header boxes any series of the company has.
int MostSeriesBoxes(CompanyDb& db);

} // namespace qx::desk
