#include "Text.h"

#include <algorithm>

namespace qx {
namespace {

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

} // namespace

std::string UpperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Upper);
    return result;
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Lower);
    return result;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Upper(x) == Upper(y); });
}

bool ContainsNoCase(std::string_view text, std::string_view part) {
    return UpperCase(text).find(UpperCase(part)) != std::string::npos;
}

std::size_t CharacterCount(std::string_view text) {
    // UTF-8 continuation bytes belong to the character before them.
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string Trim(std::string_view text) {
    auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    auto last = text.find_last_not_of(" \t\r\n");
    return std::string(text.substr(first, last - first + 1));
}

std::string PrintForm(std::string_view name) {
    std::string result(name);
    bool startOfWord = true;
    for (auto& c : result) {
        if (IsLetter(c)) {
            c = startOfWord ? Upper(c) : Lower(c);
            startOfWord = false;
        } else {
            // Points and slashes start a word, so that R.D.F. keeps its capitals; an
            // apostrophe does not ("D'souza").
            startOfWord = c != '\'';
        }
    }
    // "A/C" is written "A/c" in books of account.
    for (std::size_t at = 0; (at = result.find("A/C", at)) != std::string::npos; at += 3) result[at + 2] = 'c';
    return result;
}

} // namespace qx
