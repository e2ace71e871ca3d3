#include "JsonFile.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace qx::cli {
namespace {

std::ifstream OpenFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::runtime_error(file.string() + " cannot be read.");
    return in;
}

// Where the parser gave up, as an editor shows it: line and column, counted from 1.
std::runtime_error NotJson(const std::filesystem::path& file, std::size_t byte) {
    std::ifstream in(file, std::ios::binary);
    int line = 1;
    std::size_t column = 1;
    std::istreambuf_iterator<char> at(in), end;
    for (std::size_t read = 1; at != end && read < byte; ++at, ++read) {
        if (*at == '\n') {
            ++line;
            column = 1;
        } else {
            ++column;
        }
    }
    return std::runtime_error(file.string() + " is not valid JSON at line " + std::to_string(line) +
                              ", column " + std::to_string(column) +
                              ": look there for a missing or extra comma, quote or bracket.");
}

} // namespace

nlohmann::ordered_json ReadJson(const std::filesystem::path& file) {
    auto in = OpenFile(file);
    try {
        return nlohmann::ordered_json::parse(in);
    } catch (const nlohmann::json::parse_error& error) {
        throw NotJson(file, error.byte);
    }
}

void ParseJson(const std::filesystem::path& file,
               const nlohmann::ordered_json::parser_callback_t& callback) {
    auto in = OpenFile(file);
    try {
        [[maybe_unused]] const auto kept = nlohmann::ordered_json::parse(in, callback);
    } catch (const nlohmann::json::parse_error& error) {
        throw NotJson(file, error.byte);
    }
}

} // namespace qx::cli
