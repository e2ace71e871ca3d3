#include "FindDocument.h"

#include "desk/documents/NameLookups.h"
#include "host/Text.h"

#include <array>
#include <string>
#include <vector>

namespace qx::cli {
namespace {

[[noreturn]] void Refuse(const std::string& why) {
    throw Refusal("open", why);
}

// A figure typed into a box or as a number, as exactly as the engine reads one.
Amount Figure(const std::string& text, const std::string& what) {
    const TypedAmount typed = ReadTypedAmount(Trim(text));
    if (!typed.amount)
        Refuse(what + ": " + typed.refusal);
    return *typed.amount;
}

struct Found {
    std::int32_t id = 0;
    std::string number;
};

// A box a module fills (a market) holds an id; the module names it, and the name is compared.
struct NamedBox {
    const desk::SeriesBox* box;
    std::string text;
};

bool SameNames(desk::DeskApp& app, const Recordset& row, const std::vector<NamedBox>& named) {
    for (std::size_t i = 0; i < named.size(); ++i) {
        std::array<Value, 1> saved{row.Field(static_cast<int>(i) + 2)};
        std::string shown = saved[0].AsText();
        if (!named[i].box->lookupText.empty() && saved[0].AsLong() != 0)
            desk::AskModules(app, named[i].box->lookupText, saved,
                             [&](const Value& name) { shown = name.AsText(); });
        if (shown != named[i].text)
            return false;
    }
    return true;
}

} // namespace

std::int32_t FindDocument(desk::DeskApp& app, const desk::Series& series,
                          const SavedDocument& saved) {
    std::string condition = "DOCSERIESID=" + std::to_string(series.id);
    std::string fields = "DOCUMENTID, DOCNUMBER";
    std::string described;
    std::vector<NamedBox> named;
    if (!saved.number.empty()) {
        const Amount number = Figure(saved.number, "the document's number");
        condition += " AND DOCNUMBER=" + number.ToPlainString();
        described = "no. " + saved.number;
    }
    for (const auto& [name, text] : saved.boxes) {
        const desk::SeriesBox* box = nullptr;
        for (const desk::SeriesBox& candidate : series.boxes)
            if (candidate.name == name)
                box = &candidate;
        if (!box)
            Refuse("the series has no box " + name + ".");
        if (box->field.empty())
            Refuse("the box " + name + " is not saved with a document, so it finds none.");
        described += (described.empty() ? "" : " and ") + name + " " + text;
        if (!box->lookup.empty()) {
            named.push_back({box, text});
            fields += ", " + box->field;
        } else {
            condition += " AND " + box->field + "=" +
                         (box->numeric ? Figure(text, "the box " + name).ToPlainString()
                                       : SqlQuote(text));
        }
    }

    std::vector<Found> found;
    CompanyDb& db = app.DeskSession().Database();
    for (auto rows = db.OpenRecordset("SELECT " + fields + " FROM DOCMAIN WHERE " + condition +
                                      " ORDER BY DOCNUMBER");
         !rows->EndOfRows(); rows->MoveNext())
        if (SameNames(app, *rows, named))
            found.push_back({rows->Field(0).AsInt(), rows->Field(1).AsText()});
    if (found.empty())
        Refuse(series.code + " has no document " +
               (saved.number.empty() ? "with " : "") + described + ".");
    if (found.size() > 1) {
        std::string numbers;
        for (std::size_t i = 0; i < found.size(); ++i)
            numbers += (i == 0 ? "no. " : i + 1 == found.size() ? " and no. " : ", no. ") +
                       found[i].number;
        Refuse(series.code + " has " + std::to_string(found.size()) + " documents with " +
               described + " (" + numbers + "): open the one meant by its number.");
    }
    return found.front().id;
}

} // namespace qx::cli
