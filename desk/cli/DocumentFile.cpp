#include "DocumentFile.h"

#include "JsonFile.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qx::cli {
namespace {

using Json = nlohmann::ordered_json;
using Event = Json::parse_event_t;

constexpr std::array<std::string_view, 10> kParts{"series",  "open",   "date",    "party",
                                                  "boxes",   "pick",   "lines",   "charges",
                                                  "action",  "dialogs"};

} // namespace

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

namespace {

const std::string& RequiredText(const Json& document, const char* part,
                                const std::string& missing) {
    if (!document.contains(part))
        throw Refusal(part, "missing; " + missing);
    return TextOf(document.at(part), part);
}

} // namespace

NamedTexts TextsOf(const Json& value, const std::string& field, const std::string& prefix,
                   const std::string& shape) {
    if (!value.is_object())
        throw Refusal(field, Shown(value) + " is not " + shape + ".");
    NamedTexts texts;
    for (const auto& [name, text] : value.items())
        texts.emplace_back(name, TextOf(text, prefix + name));
    return texts;
}

namespace {

std::string TextOrNothing(const Json& document, const char* part) {
    if (!document.is_object() || !document.contains(part) || !document.at(part).is_string())
        return {};
    return document.at(part).get<std::string>();
}

} // namespace

SavedDocument SavedDocumentOf(const Json& open, const std::string& field) {
    const std::string how = "write it as {\"number\": \"5\"} or as {\"boxes\": {\"NAME\": "
                            "\"value\", ...}}.";
    if (!open.is_object() || open.size() != 1 || (!open.contains("number") && !open.contains("boxes")))
        throw Refusal(field, Shown(open) + " does not name a saved document: " + how);
    SavedDocument saved;
    if (open.contains("number")) {
        saved.number = TextOf(open.at("number"), field);
        return saved;
    }
    saved.boxes = TextsOf(open.at("boxes"), field, field + " ",
                          "a set of boxes: write them as {\"NAME\": \"value\", ...}");
    if (saved.boxes.empty())
        throw Refusal(field, "no box is given to find the document by: " + how);
    return saved;
}

namespace {

// A line's own "line" (its number) and "remove" ("yes") besides its cells.
FileLine LineOf(const Json& line, const std::string& field) {
    FileLine checked;
    for (auto& [key, text] :
         TextsOf(line, field, field + " ", "a line: write each line as {\"COLUMN_KEY\": \"text\", ...}")) {
        if (key == "line") {
            const bool digits = !text.empty() && text.size() < 6 &&
                                std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
            checked.number = digits ? std::stoi(text) : 0;
            if (checked.number < 1)
                throw Refusal(field + " line", "\"" + text + "\" is not a line number: write it as \"2\".");
        } else if (key == "remove") {
            if (text != "yes")
                throw Refusal(field + " remove", "a line is removed with \"remove\": \"yes\", not \"" + text + "\".");
            checked.remove = true;
        } else {
            checked.cells.emplace_back(key, text);
        }
    }
    if (checked.remove && (checked.number == 0 || !checked.cells.empty()))
        throw Refusal(field, "a line to remove is named by its number alone: {\"line\": \"2\", \"remove\": \"yes\"}.");
    return checked;
}

FileAction ActionOf(const Json& document) {
    if (!document.contains("action"))
        return FileAction::Save;
    const std::string& action = TextOf(document.at("action"), "action");
    if (action == "save")
        return FileAction::Save;
    if (action == "cancel")
        return FileAction::Cancel;
    if (action == "delete")
        return FileAction::Delete;
    throw Refusal("action", "\"" + action + "\" is not an action: a document is saved (\"save\", the "
                            "default), cancelled (\"cancel\") or deleted (\"delete\").");
}

} // namespace

void ReadDocuments(const std::filesystem::path& file,
                   const std::function<void(int, const Json&)>& enter, const std::string& list) {
    const std::string notDocuments =
        file.string() + " is not a file of " + list + ": it holds {\"" + list + "\": [...]}";
    bool documentsSeen = false;
    bool inDocuments = false;
    ParseJson(file, [&](int depth, Event event, Json& parsed) {
        if (depth == 0 && event != Event::object_start && event != Event::object_end)
            throw std::runtime_error(notDocuments + ".");
        if (depth == 1 && event == Event::key) {
            inDocuments = parsed == list;
            if (!inDocuments)
                throw std::runtime_error(notDocuments + " and nothing else, not " + parsed.dump() +
                                         ".");
            documentsSeen = true;
        }
        if (depth == 1 && inDocuments && event != Event::key && event != Event::array_start &&
            event != Event::array_end)
            throw std::runtime_error(notDocuments + ": \"" + list + "\" is not a list.");
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
    // A saved document by what names it: "JF no. 7", "JF FORM_BOOK_NO 12, FORM_NO 101".
    if (document.is_object() && document.contains("open") && document.at("open").is_object()) {
        const Json& open = document.at("open");
        std::string saved;
        if (open.contains("number") && open.at("number").is_string())
            saved = " no. " + open.at("number").get<std::string>();
        else if (open.contains("boxes") && open.at("boxes").is_object())
            for (const auto& [name, value] : open.at("boxes").items())
                saved += (saved.empty() ? " " : ", ") + name + " " +
                         (value.is_string() ? value.get<std::string>() : value.dump());
        return text + " (" + series + saved + ")";
    }
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
            throw Refusal(part, "a document has no part \"" + part +
                                    "\" (it has series, open, date, party, boxes, lines, charges, "
                                    "pick, action and dialogs).");
    FileDocument checked;
    checked.series = RequiredText(document, "series", "write the series' code, such as \"JF\".");
    if (document.contains("open"))
        checked.open = SavedDocumentOf(document.at("open"));
    checked.action = ActionOf(document);
    if (checked.action != FileAction::Save && !checked.open)
        throw Refusal("action", "only a saved document can be cancelled or deleted: name it with "
                                "\"open\".");
    if (checked.action == FileAction::Delete)
        for (const char* part : {"date", "party", "boxes", "lines", "charges"})
            if (document.contains(part))
                throw Refusal(part, "a document to delete is deleted as it was saved: give it no " +
                                        std::string(part) + ".");
    if (document.contains("pick")) {
        if (checked.open)
            throw Refusal("pick", "only a new document opens the list to pick from.");
        const Json& pick = document.at("pick");
        if (!pick.is_array() || pick.empty())
            throw Refusal("pick", Shown(pick) + " is not a list of rows: write them as "
                                                "[{\"Caption\": \"text\", ...}, ...].");
        for (const Json& row : pick)
            checked.pick.push_back(TextsOf(row, "pick", "pick ",
                                           "a row: write it as {\"Caption\": \"text\", ...}"));
    }
    // A new document without its date is refused rather than given today's; an opened one
    // keeps its own unless another is given, and a row picked from a list gives its own.
    const bool given = checked.open || !checked.pick.empty();
    if (!given || document.contains("date"))
        checked.date = RequiredText(document, "date", "write the document's date as dd/MM/yyyy.");
    if (!given || document.contains("party"))
        checked.party = RequiredText(document, "party", "write the account's name.");
    if (document.contains("boxes"))
        checked.boxes = TextsOf(document.at("boxes"), "boxes", "box ",
                                "a set of boxes: write them as {\"NAME\": \"text\", ...}");
    if (document.contains("lines")) {
        const Json& lines = document.at("lines");
        if (!lines.is_array())
            throw Refusal("lines",
                          Shown(lines) + " is not a list of lines: write them as [{...}, ...].");
        for (const Json& line : lines)
            checked.lines.push_back(LineOf(line, "line " + std::to_string(checked.lines.size() + 1)));
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
