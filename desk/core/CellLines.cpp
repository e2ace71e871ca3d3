#include "CellLines.h"

#include <utf8proc.h>

#include <algorithm>
#include <regex>

namespace qx::desk {
namespace {

constexpr std::string_view kEllipsis = "…";

bool IsFigureLine(std::string_view line) {
    static const std::regex figure(R"(^\s*\(?[-+]?\d[\d,]*(\.\d+)?\)?(\s*(Dr|Cr))?\s*$)", std::regex::icase);
    return std::regex_match(line.begin(), line.end(), figure);
}

std::vector<std::string_view> Words(std::string_view line) {
    std::vector<std::string_view> words;
    for (std::size_t at = 0; at < line.size();) {
        const auto start = line.find_first_not_of(' ', at);
        if (start == std::string_view::npos) break;
        const auto end = std::min(line.find(' ', start), line.size());
        words.push_back(line.substr(start, end - start));
        at = end;
    }
    return words;
}

// Where the next letter after `at` starts: a vowel sign or other combining mark stays with the
// letter it sits on.
std::size_t NextLetter(std::string_view text, std::size_t at) {
    auto step = [&](std::size_t from, utf8proc_int32_t& code) {
        const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data() + from),
                                             static_cast<utf8proc_ssize_t>(text.size() - from), &code);
        return length > 0 ? static_cast<std::size_t>(length) : 1;
    };
    utf8proc_int32_t code = 0;
    at += step(at, code);
    while (at < text.size()) {
        const auto length = step(at, code);
        const auto category = utf8proc_category(code);
        if (category != UTF8PROC_CATEGORY_MN && category != UTF8PROC_CATEGORY_MC && category != UTF8PROC_CATEGORY_ME &&
            code != 0x200D) // a joiner binds the letters on both sides
            break;
        at += length;
    }
    return at;
}

// The longest start of a word that fits the room; at least one letter, so that wrapping ends.
std::size_t FittingStart(std::string_view word, double room, const MeasureText& width) {
    std::size_t fits = NextLetter(word, 0);
    for (std::size_t next; fits < word.size() && width(word.substr(0, next = NextLetter(word, fits))) <= room;)
        fits = next;
    return fits;
}

void WrapText(std::string_view line, double room, const MeasureText& width, std::vector<std::string>& out) {
    if (width(line) <= room) {
        out.emplace_back(line);
        return;
    }
    std::string current;
    for (std::string_view word : Words(line)) {
        const std::string joined = current.empty() ? std::string(word) : current + ' ' + std::string(word);
        if (width(joined) <= room) {
            current = joined;
            continue;
        }
        if (!current.empty()) out.push_back(current);
        while (word.size() > 0 && width(word) > room) {
            const std::size_t cut = FittingStart(word, room, width);
            out.emplace_back(word.substr(0, cut));
            word.remove_prefix(cut);
        }
        current = std::string(word);
    }
    if (!current.empty() || out.empty()) out.push_back(current);
}

// The line cut short with "…", as much of it kept as the room allows.
std::string Elided(std::string_view line, double room, const MeasureText& width) {
    std::vector<std::size_t> ends{0};
    for (std::size_t at = 0; at < line.size(); ends.push_back(at = NextLetter(line, at))) {}
    for (auto end = ends.rbegin(); end != ends.rend(); ++end) {
        std::string shown(line.substr(0, *end));
        while (!shown.empty() && shown.back() == ' ') shown.pop_back();
        shown += kEllipsis;
        if (*end == 0 || width(shown) <= room) return shown;
    }
    return std::string(kEllipsis);
}

} // namespace

bool IsFigure(std::string_view text) {
    bool any = false;
    for (std::string_view line : OwnLines(text)) {
        if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
        if (!IsFigureLine(line)) return false;
        any = true;
    }
    return any;
}

std::vector<std::string_view> OwnLines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t start = 0;;) {
        const auto end = text.find('\n', start);
        std::string_view line = text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        if (end == std::string_view::npos) return lines;
        start = end + 1;
    }
}

void Narrowest::Widen(const Narrowest& other) {
    figures = std::max(figures, other.figures);
    words = std::max(words, other.words);
}

Narrowest NarrowestFor(std::string_view text, const MeasureText& width) {
    Narrowest narrowest;
    for (std::string_view line : OwnLines(text)) {
        if (IsFigureLine(line)) {
            narrowest.figures = std::max(narrowest.figures, width(line));
            continue;
        }
        for (std::string_view word : Words(line)) narrowest.words = std::max(narrowest.words, width(word));
    }
    return narrowest;
}

std::size_t WrapLimit(const PrintJob& job) {
    const Value wrap = job.options.GetValue("Wrap");
    if (wrap.IsNull()) return 0;
    try {
        return static_cast<std::size_t>(std::max(0, std::stoi(wrap.AsText())));
    } catch (const std::exception&) { // a word rather than a number: no limit of lines
        return 0;
    }
}

std::vector<std::string> WrapCell(std::string_view text, double room, const MeasureText& width, std::size_t most) {
    std::vector<std::string> printed;
    for (std::string_view line : OwnLines(text)) {
        if (IsFigureLine(line)) {
            printed.emplace_back(line);
            continue;
        }
        std::vector<std::string> wrapped;
        WrapText(line, room, width, wrapped);
        if (most > 0 && wrapped.size() > most) {
            std::string rest = wrapped[most - 1];
            for (std::size_t i = most; i < wrapped.size(); ++i) rest += ' ' + wrapped[i];
            wrapped.resize(most);
            wrapped.back() = Elided(rest, room, width);
        }
        printed.insert(printed.end(), wrapped.begin(), wrapped.end());
    }
    return printed;
}

} // namespace qx::desk
