#include "PropertyBag.h"

#include <algorithm>

namespace qx {

// ASCII letters only: other bytes, such as those of a Gurmukhi name in UTF-8, compare as they
// are, so that folding never splits a character.
bool CaseInsensitiveLess::operator()(std::string_view a, std::string_view b) const {
    const auto folded = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c - 'A' + 'a')
                                    : static_cast<unsigned char>(c);
    };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [&](char x, char y) { return folded(x) < folded(y); });
}

Value PropertyBag::GetValue(std::string_view name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? Value() : found->second;
}

// A name set again in other letters keeps the spelling it was first given.
void PropertyBag::SetValue(std::string_view name, Value value) {
    const auto found = values_.find(name);
    if (found == values_.end()) {
        values_.emplace(std::string(name), std::move(value));
    } else {
        found->second = std::move(value);
    }
}

bool PropertyBag::Has(std::string_view name) const {
    return values_.contains(name);
}

void PropertyBag::Remove(std::string_view name) {
    const auto found = values_.find(name);
    if (found != values_.end()) {
        values_.erase(found);
    }
}

std::vector<std::string> PropertyBag::Names() const {
    std::vector<std::string> names;
    names.reserve(values_.size());
    for (const auto& [name, value] : values_) {
        names.push_back(name);
    }
    return names;
}

} // namespace qx
