#include "DocumentFile.h"

#include "JsonFile.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qx::cli {
namespace {

using Json = nlohmann::ordered_json;
using Event = Json::parse_event_t;

constexpr std::array<std::string_view, 7> kParts{"series", "date",    "party",  "boxes",
                                                 "lines",  "charges", "dialogs"};

// A value of the file as a clerk would name it.
std::string Shown(const Json& value) {
    if (value.is_array())
        return "a list";
    if (value.is_object())
        return "an object {...}";
    if (value.is_number())
        return "the number " + value.dump();
    return value.dump(); // text in quotes, true, false or null
}

const std::string& TextOf(const Json& value, const std::string& field) {
    if (value.is_string())
        return value.get_ref<const std::string&>();
    std::string why = Shown(value) + " is not text: write it in quotes";
    if (value.is_number())
        why += ", \"" + value.dump() + "\"";
    throw Refusal(field, why + ".");
}

const std::string& RequiredText(const Json& document, const char* part,
                                const std::string& missing) {
    if (!document.contains(part))
        throw Refusal(part, "missing; " + missing);
    return TextOf(document.at(part), part);
}

// Named texts of an object such as {"FORM_NO": "101"}; each field is named by prefix + name.
NamedTexts TextsOf(const Json& value, const std::string& field, const std::string& prefix,
                   const std::string& shape) {
    if (!value.is_object())
        throw Refusal(field, Shown(value) + " is not " + shape + ".");
    NamedTexts texts;
    for (const auto& [name, text] : value.items())
        texts.emplace_back(name, TextOf(text, prefix + name));
    return texts;
}

std::string TextOrNothing(const Json& document, const char* part) {
    if (!document.is_object() || !document.contains(part) || !document.at(part).is_string())
        return {};
    return document.at(part).get<std::string>();
}

} // namespace

void ReadDocuments(const std::filesystem::path& file,
                   const std::function<void(int, const Json&)>& enter) {
    const std::string notDocuments =
        file.string() + " is not a file of documents: it holds {\"documents\": [...]}";
    bool documentsSeen = false;
    bool inDocuments = false;
    ParseJson(file, [&](int depth, Event event, Json& parsed) {
        if (depth == 0 && event != Event::object_start && event != Event::object_end)
            throw std::runtime_error(notDocuments + ".");
        if (depth == 1 && event == Event::key) {
            inDocuments = parsed == "documents";
            if (!inDocuments)
                throw std::runtime_error(notDocuments + " and nothing else, not " + parsed.dump() +
                                         ".");
            documentsSeen = true;
        }
        if (depth == 1 && inDocuments && event != Event::key && event != Event::array_start &&
            event != Event::array_end)
            throw std::runtime_error(notDocuments + ": \"documents\" is not a list.");
        return depth < 2 || event == Event::object_start || event == Event::array_start ||
               event == Event::key;
    });
    if (!documentsSeen)
        throw std::runtime_error(notDocuments + ".");

    int number = 0;
    ParseJson(file, [&](int depth, Event event, Json& parsed) {
        if (depth != 2 ||
            (event != Event::object_end && event != Event::array_end && event != Event::value))
            return true;
        enter(++number, parsed);
        return false;
    });
}

std::string DescribeDocument(int number, const Json& document) {
    const std::string series = TextOrNothing(document, "series");
    const std::string date = TextOrNothing(document, "date");
    std::string text = "document " + std::to_string(number);
    if (!series.empty() && !date.empty())
        return text + " (" + series + " of " + date + ")";
    if (!series.empty() || !date.empty())
        return text + " (" + series + date + ")";
    return text;
}

FileDocument CheckDocument(const Json& document) {
    if (!document.is_object())
        throw Refusal("",
                      Shown(document) +
                          " is not a document: write each document as {\"series\": ..., \"date\": "
                          "..., \"party\": ..., \"lines\": [...]}.");
    for (const auto& [part, value] : document.items())
        if (std::ranges::find(kParts, part) == kParts.end())
            throw Refusal(
                part, "a document has no part \"" + part +
                          "\" (it has series, date, party, boxes, lines, charges and dialogs).");
    FileDocument checked;
    checked.series = RequiredText(document, "series", "write the series' code, such as \"JF\".");
    // A document without its date is refused rather than given today's.
    checked.date = RequiredText(document, "date", "write the document's date as dd/MM/yyyy.");
    checked.party = RequiredText(document, "party", "write the account's name.");
    if (document.contains("boxes"))
        checked.boxes = TextsOf(document.at("boxes"), "boxes", "box ",
                                "a set of boxes: write them as {\"NAME\": \"text\", ...}");
    if (document.contains("lines")) {
        const Json& lines = document.at("lines");
        if (!lines.is_array())
            throw Refusal("lines",
                          Shown(lines) + " is not a list of lines: write them as [{...}, ...].");
        for (const Json& line : lines) {
            const std::string field = "line " + std::to_string(checked.lines.size() + 1);
            checked.lines.push_back(
                TextsOf(line, field, field + " ",
                        "a line: write each line as {\"COLUMN_KEY\": \"text\", ...}"));
        }
    }
    if (document.contains("charges"))
        checked.charges = TextsOf(document.at("charges"), "charges", "charge ",
                                  "a set of charges: write them as {\"KEY\": \"rate\", ...}");
    if (document.contains("dialogs")) {
        const Json& dialogs = document.at("dialogs");
        if (!dialogs.is_array())
            throw Refusal("dialogs",
                          Shown(dialogs) +
                              " is not a list of dialogs: write them as [[steps], ...].");
        for (std::size_t i = 0; i < dialogs.size(); ++i)
            if (!dialogs[i].is_array())
                throw Refusal("dialog " + std::to_string(i + 1),
                              Shown(dialogs[i]) +
                                  " is not a list of steps: write it as [{\"click\": ...}, ...].");
        checked.dialogs = dialogs;
    }
    return checked;
}

} // namespace qx::cli
