#pragma once
// The file of documents that `qx enter` reads (see EnterDocuments.h for its form): read one
// document at a time, and each document's parts checked before anything of it is typed, so
// that a document of the wrong shape is refused with words a clerk understands.

#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {

// Texts by name or key, in the order written.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

// A saved document to open: by its number in the series, or by the values of the series' own
// boxes (a form book and form number).
struct SavedDocument {
    std::string number;
    NamedTexts boxes;
};

// What is done with the document once it is typed.
enum class FileAction { Save, Cancel, Delete };

// A line to type: the next after the last one, or the line of that number (an existing one,
// or the one after the last); a line removed takes no cells.
struct FileLine {
    int number = 0; // 0: after the last line
    bool remove = false;
    NamedTexts cells;
};

// A document of the file whose every part has the shape it must have.
struct FileDocument {
    std::string series;
    std::optional<SavedDocument> open; // none: a new document
    std::string date;                  // empty: as opened
    std::string party;                 // empty: as opened
    NamedTexts boxes;
    // Rows to take from the list a new document opens with, each by the texts it shows under
    // its captions; none: the list is closed.
    std::vector<NamedTexts> pick;
    std::vector<FileLine> lines;
    NamedTexts charges;
    FileAction action = FileAction::Save;
    nlohmann::ordered_json dialogs = nlohmann::ordered_json::array(); // a list of steps per dialog
};

// Why a document is refused: the field ("date", "box FORM_NO", "line 2 QUANTITY") and what is
// wrong with it.
class Refusal : public std::runtime_error {
public:
    Refusal(std::string field, const std::string& why)
        : std::runtime_error(why), field_(std::move(field)) {}
    const std::string& Field() const { return field_; }

private:
    std::string field_;
};

// Checks that the file is {"documents": [...]} (or the list named) and JSON throughout (a
// broken file enters nothing), then hands each document to `enter`, with its number in the
// file, as soon as it is read; a document is dropped once entered, so memory does not grow with
// the file.
void ReadDocuments(
    const std::filesystem::path& file,
    const std::function<void(int number, const nlohmann::ordered_json& document)>& enter,
    const std::string& list = "documents");

// A value of the file as a clerk would name it: "a list", "the number 5", "\"text\"".
std::string Shown(const nlohmann::ordered_json& value);
// The value's text; throws Refusal (field) for a value that is not text.
const std::string& TextOf(const nlohmann::ordered_json& value, const std::string& field);
// Named texts of an object such as {"FORM_NO": "101"}; each field is named by prefix + name.
// Throws Refusal (field) when the value is not such an object (shape says what it should be).
NamedTexts TextsOf(const nlohmann::ordered_json& value, const std::string& field,
                   const std::string& prefix, const std::string& shape);
// {"number": "5"}, or {"boxes": {"FORM_BOOK_NO": "12", ...}}; throws Refusal (field).
SavedDocument SavedDocumentOf(const nlohmann::ordered_json& open, const std::string& field = "open");

// "document 3 (JF of 05/11/2024)", "document 4 (JF no. 7)": the number in the file, and the
// series and date, or the saved document opened, as far as the file gives them.
std::string DescribeDocument(int number, const nlohmann::ordered_json& document);

// The document's parts; throws Refusal for the first part of the wrong shape.
FileDocument CheckDocument(const nlohmann::ordered_json& document);

} // namespace qx::cli
