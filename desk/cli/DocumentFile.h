#pragma once
// The file of documents that `qx enter` reads (see EnterDocuments.h for its form): read one
// document at a time, and each document's parts checked before anything of it is typed, so
// that a document of the wrong shape is refused with words a clerk understands.

#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {

// Texts by name or key, in the order written.
using NamedTexts = std::vector<std::pair<std::string, std::string>>;

// A document of the file whose every part has the shape it must have.
struct FileDocument {
    std::string series;
    std::string date;
    std::string party;
    NamedTexts boxes;
    std::vector<NamedTexts> lines;
    NamedTexts charges;
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

// Checks that the file is {"documents": [...]} and JSON throughout (a broken file enters
// nothing), then hands each document to `enter`, with its number in the file, as soon as it
// is read; a document is dropped once entered, so memory does not grow with the file.
void ReadDocuments(
    const std::filesystem::path& file,
    const std::function<void(int number, const nlohmann::ordered_json& document)>& enter);

// "document 3 (JF of 05/11/2024)": the number, series and date as far as the file gives them.
std::string DescribeDocument(int number, const nlohmann::ordered_json& document);

// The document's parts; throws Refusal for the first part of the wrong shape.
FileDocument CheckDocument(const nlohmann::ordered_json& document);

} // namespace qx::cli
