#pragma once
// JSON files of `qx`: read whole, or value by value as they are read. A file that cannot be
// read, or is not JSON, throws std::runtime_error saying where, in plain words.

#include <nlohmann/json.hpp>

#include <filesystem>

namespace qx::cli {

nlohmann::ordered_json ReadJson(const std::filesystem::path& file);

// Reads the file through the JSON parser's callback, which takes each value as it is read and
// may drop it (return false), so that a long file is never held whole.
void ParseJson(const std::filesystem::path& file,
               const nlohmann::ordered_json::parser_callback_t& callback);

} // namespace qx::cli
