#include "Series.h"

#include "host/Text.h"

#include <array>
#include <stdexcept>

namespace qx::desk {
namespace {

struct StandardColumn {
    std::string_view key;
    ColumnRole role;
    std::string_view field;
    std::string_view format; // when the series gives none
};

// The item grid's columns the host understands, and the DOCDATA column each is saved in.
constexpr std::array kStandardColumns = {
    StandardColumn{kItemKey, ColumnRole::Item, "PRODUCTID", ""},
    StandardColumn{kItemCodeKey, ColumnRole::ItemCode, "PRODUCTID", ""},
    StandardColumn{kPartyKey, ColumnRole::Party, "CUSTOMERID", ""},
    StandardColumn{"QTY_PER_BOX", ColumnRole::Number, "QTYPERBOX", ""},
    StandardColumn{kBagsKey, ColumnRole::Number, "NOOFBOXES", ""},
    StandardColumn{"PCS", ColumnRole::Number, "PCS", ""},
    StandardColumn{kQuantityKey, ColumnRole::Number, "QUANTITY", ""},
    StandardColumn{"FREE_QTY", ColumnRole::Number, "FREEQUANTITY", ""},
    StandardColumn{"TOTAL_WT", ColumnRole::Number, "TOTALWT", ""},
    StandardColumn{kRateKey, ColumnRole::Number, "RATE", ""},
    StandardColumn{kAmountKey, ColumnRole::Number, "AMOUNT", "c2"},
    StandardColumn{"QUALITY_CUT", ColumnRole::Number, "QUALITYCUT", ""},
    StandardColumn{"BATCH_NO", ColumnRole::Text, "BATCHNO", ""},
    StandardColumn{"SALE_AMOUNT", ColumnRole::Number, "SALEAMOUNT", "c2"},
    // What the line differs by from what it settles, as its extension means it, and the mark
    // of a line an extension keeps out of sight (kHiddenRowMark).
    StandardColumn{"DIFF_QTY", ColumnRole::Number, "DIFFQTY", ""},
    StandardColumn{"ROW_MARK", ColumnRole::Text, "ROWMARK", ""},
};

const StandardColumn* FindStandardColumn(std::string_view key) {
    for (const StandardColumn& column : kStandardColumns)
        if (column.key == key)
            return &column;
    return nullptr;
}

ChargeBasis BasisOf(std::string_view code, std::string_view chargeKey) {
    const std::string basis = UpperCase(Trim(code));
    if (basis == "B")
        return ChargeBasis::PerBag;
    if (basis == "P")
        return ChargeBasis::Percent;
    if (basis == "F" || basis.empty())
        return ChargeBasis::Fixed;
    throw std::runtime_error("The charge " + std::string(chargeKey) + " has the basis " + basis +
                             "; it must be B (per bag), P (percent) or F (fixed).");
}

SeriesColumn ColumnOf(const Recordset& row) {
    SeriesColumn column;
    column.key = Trim(row.Field("COLKEY").AsText());
    column.caption = row.Field("CAPTION").AsText();
    column.width = row.Field("WIDTH").AsInt();
    column.format = Trim(row.Field("FORMAT").AsText());
    column.editable = row.Field("EDITABLE").AsBool();
    column.field = Trim(row.Field("FIELD").AsText());
    column.figures = FigureRangeOf(row.Field("FIGURES").AsText());
    column.groups = ParseGroups(row.Field("GROUPS").AsText());
    column.computed = row.Field("COMPUTED").AsBool();
    column.repeats = row.Field("REPEATS").AsBool();
    if (const StandardColumn* standard = FindStandardColumn(column.key)) {
        column.role = standard->role;
        column.field = std::string(standard->field);
        if (column.format.empty())
            column.format = std::string(standard->format);
    } else {
        column.role = column.format.empty() ? ColumnRole::Text : ColumnRole::Number;
    }
    return column;
}

SeriesBox BoxOf(const Recordset& row) {
    return {.name = Trim(row.Field("BOXNAME").AsText()),
            .caption = row.Field("CAPTION").AsText(),
            .field = Trim(row.Field("FIELD").AsText()),
            .numeric = row.Field("NUMERIC").AsBool(),
            .date = row.Field("ISDATE").AsBool(),
            .visible = row.Field("VISIBLE").AsBool(),
            .lookup = Trim(row.Field("LOOKUP").AsText()),
            .lookupText = Trim(row.Field("LOOKUPTEXT").AsText()),
            .required = row.Field("REQUIRED").AsBool(),
            .carried = row.Field("CARRIED").AsBool(),
            .numbered = row.Field("NUMBERED").AsBool()};
}

SeriesCharge ChargeOf(const Recordset& row) {
    SeriesCharge charge{.key = Trim(row.Field("CHARGEKEY").AsText()),
                        .caption = row.Field("CAPTION").AsText(),
                        .rate = row.Field("RATE").AsAmount(),
                        .basis = ChargeBasis::Fixed,
                        .sign = row.Field("SIGN").AsInt() < 0 ? -1 : 1,
                        .headCode = row.Field("HEADCODE").AsInt(),
                        .field = Trim(row.Field("FIELD").AsText())};
    charge.basis = BasisOf(row.Field("BASIS").AsText(), charge.key);
    return charge;
}

// Rows of one of the series' tables, in their order.
template <class Make>
auto ReadRows(CompanyDb& db, std::string_view table, std::int32_t seriesId, Make make) {
    std::vector<decltype(make(std::declval<const Recordset&>()))> items;
    auto rows = db.OpenRecordset("SELECT * FROM " + std::string(table) + " WHERE SERIESID=" +
                                 std::to_string(seriesId) + " ORDER BY POSITION");
    for (; !rows->EndOfRows(); rows->MoveNext())
        items.push_back(make(*rows));
    rows->Close();
    return items;
}

// The series record under the names a document extension reads.
PropertyBag InfoOf(const Recordset& config) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 14> kNames = {{
        {"SeriesID", "SERIESID"},
        {"SeriesCode", "SERIESCODE"},
        {"SeriesName", "SERIESNAME"},
        {"SubSeriesName", "SUBSERIESNAME"},
        {"DocType", "DOCTYPE"},
        {"DocProperties", "DOCPROPERTIES"},
        {"DocTaxRate", "DOCTAXRATE"},
        {"DocVATBill", "DOCVATBILL"},
        {"DocCodeSale", "DOCCODESALE"},
        {"DocVoucherFactor", "DOCVOUCHERFACTOR"},
        {"Narration", "NARRATION"},
        {"NextNumber", "NEXTNUMBER"},
        {"TrnType", "TRNTYPE"},
        {"Book", "BOOK"},
    }};
    PropertyBag info;
    for (const auto& [name, field] : kNames)
        info.SetValue(name, config.Field(field));
    return info;
}

void AddMissing(CompanyDb& db, std::string_view table, std::string_view type,
                const std::string& field) {
    if (!field.empty() && !db.FieldExists(field, table))
        db.AddFields(table, type, {field});
}

} // namespace

const SeriesColumn* Series::Column(std::string_view key) const {
    for (const SeriesColumn& column : columns)
        if (column.key == key)
            return &column;
    return nullptr;
}

std::string Series::Title() const {
    return SeriesTitle(name, subName);
}

int Series::StockFactor() const {
    if (EqualsNoCase(docType, "Purchase"))
        return 1;
    return EqualsNoCase(docType, "Sale") ? -1 : 0;
}

FigureRange FigureRangeOf(std::string_view text) {
    const std::string figures = Trim(text);
    if (figures.empty())
        return FigureRange::NotNegative;
    if (figures == "positive")
        return FigureRange::Positive;
    if (figures == "signed")
        return FigureRange::Signed;
    throw std::runtime_error("A column's figures are positive or signed (or left out), not \"" +
                             figures + "\".");
}

std::string FigureRefusal(const SeriesColumn& column, Amount figure) {
    switch (column.figures) {
    case FigureRange::Positive:
        return figure > Amount() ? "" : column.caption + " must be more than 0.";
    case FigureRange::NotNegative:
        return figure < Amount() ? column.caption + " cannot be below 0." : "";
    case FigureRange::Signed:
        break;
    }
    return {};
}

std::string SeriesTitle(std::string_view name, std::string_view subName) {
    // A series whose one kind is named twice ("J-Forms", "J-Forms") is named once.
    return subName.empty() || subName == name ? std::string(name)
                                              : std::string(name) + " - " + std::string(subName);
}

SeriesColumn HiddenPartyCodeColumn() {
    return {.key = {},
            .caption = {},
            .width = 0,
            .format = {},
            .editable = false,
            .role = ColumnRole::PartyCode,
            .field = "CUSTOMERID",
            .groups = {}};
}

PropertyBag BlankLine(const Series& series) {
    PropertyBag line;
    for (const StandardColumn& column : kStandardColumns)
        line.SetValue(column.field,
                      column.role == ColumnRole::Text ? Value(std::string()) : Value(0));
    for (std::string_view number : {"OH_OTHERS", "JFACTOR"})
        line.SetValue(number, 0);
    line.SetValue("STOCKFACTOR", series.StockFactor());
    return line;
}

SeriesColumn HiddenItemCodeColumn() {
    return {.key = std::string(kItemCodeKey),
            .caption = "Code",
            .width = 0,
            .format = {},
            .editable = false,
            .role = ColumnRole::ItemCode,
            .field = "PRODUCTID",
            .groups = {}};
}

Series LoadSeries(CompanyDb& db, std::int32_t seriesId) {
    auto config =
        db.OpenRecordset("SELECT * FROM DOCCONFIG WHERE SERIESID=" + std::to_string(seriesId));
    if (config->EndOfRows())
        throw std::runtime_error("There is no series " + std::to_string(seriesId) +
                                 " in this company.");
    Series series;
    series.id = seriesId;
    series.code = Trim(config->Field("SERIESCODE").AsText());
    series.name = config->Field("SERIESNAME").AsText();
    series.subName = config->Field("SUBSERIESNAME").AsText();
    series.docType = config->Field("DOCTYPE").AsText();
    series.properties = config->Field("DOCPROPERTIES").AsText();
    series.savedNote = config->Field("SAVEDNOTE").AsText();
    series.voucherFactor = static_cast<int>(config->Field("DOCVOUCHERFACTOR").AsLong());
    series.narration = config->Field("NARRATION").AsText();
    series.trnType = config->Field("TRNTYPE").AsText();
    series.book = config->Field("BOOK").AsText();
    series.partyGroups = ParseGroups(config->Field("PARTYGROUPS").AsText());
    series.info = InfoOf(*config);
    config->Close();

    series.columns = ReadRows(db, "DOCCOLUMNS", seriesId, ColumnOf);
    series.boxes = ReadRows(db, "DOCBOXES", seriesId, BoxOf);
    series.charges = ReadRows(db, "DOCCHARGES", seriesId, ChargeOf);
    return series;
}

std::int32_t FindSeries(CompanyDb& db, std::string_view code, std::string_view name) {
    auto rows = db.OpenRecordset("SELECT SERIESID, SERIESNAME FROM DOCCONFIG WHERE SERIESCODE=" +
                                 SqlQuote(code) + " ORDER BY SERIESID");
    std::int32_t first = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const std::int32_t id = rows->Field(0).AsInt();
        if (EqualsNoCase(rows->Field(1).AsText(), name))
            return id;
        if (first == 0)
            first = id;
    }
    return first;
}

void AddSeriesFields(CompanyDb& db, const Series& series) {
    for (const SeriesColumn& column : series.columns)
        AddMissing(db, "DOCDATA",
                   column.role == ColumnRole::Number ? "Decimal(16,4)" : "Varchar(60)",
                   column.field);
    for (const SeriesBox& box : series.boxes)
        AddMissing(db, "DOCMAIN",
                   box.numeric || !box.lookup.empty() ? "Decimal(16,4)" : "Varchar(60)", box.field);
    for (const SeriesCharge& charge : series.charges)
        AddMissing(db, "DOCMAIN", "Decimal(16,4)", charge.field);
}

int MostSeriesBoxes(CompanyDb& db) {
    auto rows = db.OpenRecordset("SELECT COUNT(*) FROM DOCBOXES GROUP BY SERIESID ORDER BY 1 DESC");
    const int most = rows->EndOfRows() ? 0 : rows->Field(0).AsInt();
    rows->Close();
    return most;
}

} // namespace qx::desk
