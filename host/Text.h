#pragma once
// Text operations of the host. Letter case is folded for the Latin letters only: Gurmukhi
// and Devanagari have no case and pass through unchanged.

#include <cstddef>
#include <string>
#include <string_view>

namespace qx {

std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);
bool ContainsNoCase(std::string_view text, std::string_view part);
// Characters (not bytes) of a UTF-8 text.
std::size_t CharacterCount(std::string_view text);
std::string Trim(std::string_view text);
// The printable rendering of a ledger head's name, as the host prints heads: each word
// capitalised ("MARKET FEE : WHEAT" -> "Market Fee : Wheat"); "A/C" stays "A/c".
std::string PrintForm(std::string_view name);

} // namespace qx
