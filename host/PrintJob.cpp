#include "PrintJob.h"

#include <algorithm>

namespace qx {

Align AlignFromCode(int code) {
    switch (code) {
    case 1:
        return Align::Left;
    case 4:
        return Align::Centre;
    case 7:
        return Align::Right;
    default:
        return Align::Default;
    }
}

// Whole words only: "*hline1*totals*" has "totals" but not "total". The word may be given
// with its stars, as marks are written ("*totals*").
bool HasMark(std::string_view marks, std::string_view word) {
    word.remove_prefix(std::min(word.find_first_not_of('*'), word.size()));
    word.remove_suffix(word.size() - (word.find_last_not_of('*') + 1));
    if (word.empty()) {
        return false;
    }
    const CaseInsensitiveLess less;
    while (!marks.empty()) {
        const std::size_t star = marks.find('*');
        const std::string_view candidate = marks.substr(0, star);
        if (!less(candidate, word) && !less(word, candidate)) {
            return true;
        }
        marks.remove_prefix(star == std::string_view::npos ? marks.size() : star + 1);
    }
    return false;
}

bool PrintRow::Has(std::string_view mark) const {
    return HasMark(marks, mark);
}

} // namespace qx
