#include "SeriesImport.h"

#include "Series.h"
#include "AccountGroups.h"

#include "host/Text.h"

#include <stdexcept>

namespace qx::desk {
namespace {

std::string Text(const nlohmann::ordered_json& object, const char* key, const std::string& fallback = {}) {
    return object.contains(key) ? object.at(key).get<std::string>() : fallback;
}

std::int64_t Number(const nlohmann::ordered_json& object, const char* key, std::int64_t fallback) {
    return object.contains(key) ? object.at(key).get<std::int64_t>() : fallback;
}

bool Flag(const nlohmann::ordered_json& object, const char* key, bool fallback) {
    return object.contains(key) ? object.at(key).get<bool>() : fallback;
}

std::int32_t HeadCode(CompanyDb& db, const std::string& head) {
    if (head.empty()) return 0;
    auto code = db.LookupValue("FAMASTER", "MCD", "MHD=" + SqlQuote(head)).AsInt();
    if (code == 0) throw std::runtime_error("there is no account \"" + head + "\"");
    return code;
}

// Account groups by name, as the file gives them, kept by number.
std::string Groups(CompanyDb& db, const nlohmann::ordered_json& object, const char* key) {
    AccountGroups groups;
    for (const auto& name : object.value(key, nlohmann::ordered_json::array())) {
        const auto text = name.get<std::string>();
        const auto group =
            db.LookupValue("FAGROUPS", "GROUPNO", "UPPER(GROUPNAME)=" + SqlQuote(UpperCase(text)))
                .AsInt();
        if (group == 0) throw std::runtime_error("there is no account group \"" + text + "\"");
        groups.push_back(group);
    }
    return StoredGroups(groups);
}

// The charge basis as the file writes it: "bag", "percent" or "fixed".
std::string Basis(const std::string& basis) {
    if (basis == "bag") return "B";
    if (basis == "percent") return "P";
    if (basis == "fixed" || basis.empty()) return "F";
    throw std::runtime_error("a charge's basis is bag, percent or fixed, not \"" + basis + "\"");
}

// A rate as the file writes it, read as a user's typing is.
Amount Rate(const nlohmann::ordered_json& object, const char* key) {
    const TypedAmount rate = ReadTypedAmount(Text(object, key, "0"));
    if (!rate.amount) throw std::runtime_error(std::string(key) + ": " + rate.refusal);
    return *rate.amount;
}

void WriteSeries(CompanyDb& db, const nlohmann::ordered_json& series) {
    const std::string code = Text(series, "code");
    if (code.empty()) throw std::runtime_error("a series needs its code");
    auto id = db.LookupValue("DOCCONFIG", "SERIESID", "SERIESCODE=" + SqlQuote(code)).AsInt();
    auto config = db.OpenRecordset("SELECT * FROM DOCCONFIG WHERE SERIESID=" + std::to_string(id));
    if (config->EndOfRows()) {
        id = db.LookupValue("DOCCONFIG", "MAX(SERIESID)", "").AsInt() + 1;
        config->AddNew();
        config->SetField("SERIESID", id);
        config->SetField("NEXTNUMBER", 1);
    }
    config->SetField("SERIESCODE", code);
    config->SetField("SERIESNAME", Text(series, "name", code));
    config->SetField("SUBSERIESNAME", Text(series, "subSeriesName"));
    config->SetField("DOCTYPE", Text(series, "docType", "Sale"));
    config->SetField("DOCPROPERTIES", Text(series, "properties"));
    config->SetField("DOCVOUCHERFACTOR", Number(series, "voucherFactor", 0));
    config->SetField("DOCCODESALE", Number(series, "codeSale", 0));
    config->SetField("DOCTAXRATE", Rate(series, "taxRate"));
    config->SetField("DOCVATBILL", Flag(series, "vatBill", false) ? 1 : 0);
    config->SetField("NARRATION", Text(series, "narration"));
    config->SetField("TRNTYPE", Text(series, "trnType", code));
    config->SetField("BOOK", Text(series, "book", code));
    config->SetField("PARTYGROUPS", Groups(db, series, "partyGroups"));
    config->SetField("SAVEDNOTE", Text(series, "savedNote"));
    config->Update();

    const auto where = " WHERE SERIESID=" + std::to_string(id);
    for (const char* table : {"DOCCOLUMNS", "DOCBOXES", "DOCCHARGES"}) db.ExecuteSql(std::string("DELETE FROM ") + table + where);

    int position = 0;
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM DOCCOLUMNS");
    for (const auto& column : series.value("columns", nlohmann::ordered_json::array())) {
        rows->AddNew();
        rows->SetField("SERIESID", id);
        rows->SetField("POSITION", ++position);
        rows->SetField("COLKEY", Text(column, "key"));
        rows->SetField("CAPTION", Text(column, "caption"));
        rows->SetField("WIDTH", Number(column, "width", 1000));
        rows->SetField("FORMAT", Text(column, "format"));
        rows->SetField("EDITABLE", Flag(column, "editable", true) ? 1 : 0);
        rows->SetField("FIELD", Text(column, "field"));
        const std::string figures = Text(column, "figures");
        FigureRangeOf(figures); // refuses what is not a range
        rows->SetField("FIGURES", figures);
        rows->SetField("GROUPS", Groups(db, column, "groups"));
        rows->SetField("COMPUTED", Flag(column, "computed", false) ? 1 : 0);
        rows->SetField("REPEATS", Flag(column, "repeats", false) ? 1 : 0);
        rows->Update();
    }
    position = 0;
    rows = db.OpenRecordset("SELECT FIRST 0 * FROM DOCBOXES");
    for (const auto& box : series.value("boxes", nlohmann::ordered_json::array())) {
        rows->AddNew();
        rows->SetField("SERIESID", id);
        rows->SetField("POSITION", ++position);
        rows->SetField("BOXNAME", Text(box, "name"));
        rows->SetField("CAPTION", Text(box, "caption"));
        rows->SetField("FIELD", Text(box, "field"));
        rows->SetField("NUMERIC", Flag(box, "numeric", false) ? 1 : 0);
        rows->SetField("ISDATE", Flag(box, "date", false) ? 1 : 0);
        rows->SetField("VISIBLE", Flag(box, "visible", true) ? 1 : 0);
        rows->SetField("LOOKUP", Text(box, "lookup"));
        rows->SetField("LOOKUPTEXT", Text(box, "lookupText"));
        rows->SetField("REQUIRED", Flag(box, "required", false) ? 1 : 0);
        rows->SetField("CARRIED", Flag(box, "carried", false) ? 1 : 0);
        rows->SetField("NUMBERED", Flag(box, "numbered", false) ? 1 : 0);
        rows->Update();
    }
    position = 0;
    rows = db.OpenRecordset("SELECT FIRST 0 * FROM DOCCHARGES");
    for (const auto& charge : series.value("charges", nlohmann::ordered_json::array())) {
        rows->AddNew();
        rows->SetField("SERIESID", id);
        rows->SetField("POSITION", ++position);
        rows->SetField("CHARGEKEY", Text(charge, "key"));
        rows->SetField("CAPTION", Text(charge, "caption"));
        rows->SetField("RATE", Rate(charge, "rate"));
        rows->SetField("BASIS", Basis(Text(charge, "basis")));
        rows->SetField("SIGN", Number(charge, "sign", 1));
        rows->SetField("HEADCODE", HeadCode(db, Text(charge, "head")));
        rows->SetField("FIELD", Text(charge, "field"));
        rows->Update();
    }
}

} // namespace

std::vector<std::string> ImportSeries(CompanyDb& db, const nlohmann::ordered_json& file) {
    std::vector<std::string> codes;
    Transaction unit(db);
    for (const auto& series : file.at("series")) {
        try {
            WriteSeries(db, series);
        } catch (const std::exception& error) {
            throw std::runtime_error("series " + Text(series, "code", "?") + ": " + error.what());
        }
        codes.push_back(Text(series, "code"));
    }
    unit.Commit();
    return codes;
}

} // namespace qx::desk
