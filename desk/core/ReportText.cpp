#include "ReportText.h"

#include <utf8proc.h>

#include <algorithm>
#include <sstream>

namespace qx::desk {

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t code = 0;
        auto length = utf8proc_iterate(bytes, left, &code);
        if (length <= 0) { // a broken byte: count it and go on
            length = 1;
            code = '?';
        }
        width += static_cast<std::size_t>(std::max(0, utf8proc_charwidth(code)));
        bytes += length;
        left -= length;
    }
    return width;
}

namespace {

std::string Pad(std::string_view text, std::size_t width, Align align) {
    auto shown = DisplayWidth(text);
    std::string fill(shown < width ? width - shown : 0, ' ');
    return align == Align::Right ? fill + std::string(text) : std::string(text) + fill;
}

} // namespace

std::string RenderText(const PrintJob& job) {
    std::ostringstream out;
    for (const auto* line : {&job.firmName, &job.title, &job.title2})
        if (!line->empty()) out << *line << '\n';
    std::vector<std::size_t> widths;
    for (const auto& column : job.columns) {
        std::size_t width = DisplayWidth(column.caption);
        for (const auto& row : job.rows)
            if (widths.size() < row.cells.size())
                width = std::max(width, DisplayWidth(row.cells[widths.size()]));
        widths.push_back(width);
    }
    auto writeRow = [&](const std::vector<std::string>& cells) {
        std::string line;
        for (std::size_t c = 0; c < job.columns.size(); ++c) {
            if (c) line += "  ";
            line += Pad(c < cells.size() ? cells[c] : "", widths[c], job.columns[c].align);
        }
        while (!line.empty() && line.back() == ' ') line.pop_back();
        out << line << '\n';
    };
    std::size_t total = 0;
    for (auto w : widths) total += w + 2;
    std::string rule(total > 2 ? total - 2 : 0, '-');
    std::vector<std::string> captions;
    for (const auto& column : job.columns) captions.push_back(column.caption);
    writeRow(captions);
    out << rule << '\n';
    for (const auto& row : job.rows) {
        if (row.Has("blanklinebefore")) out << '\n';
        if (row.Has("hline1") || row.Has("bhline1")) {
            bool empty = std::all_of(row.cells.begin(), row.cells.end(),
                                     [](const std::string& c) { return c.empty(); });
            if (empty) {
                out << rule << '\n';
                continue;
            }
        }
        writeRow(row.cells);
        if (row.Has("blanklineafter")) out << '\n';
    }
    return out.str();
}

std::string CsvField(std::string_view text) {
    if (text.find_first_of(",\"\n\r") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string RenderCsv(const PrintJob& job) {
    std::string out;
    auto writeRow = [&](const auto& cells) {
        for (std::size_t c = 0; c < cells.size(); ++c) {
            if (c) out += ',';
            out += CsvField(cells[c]);
        }
        out += '\n';
    };
    std::vector<std::string> captions;
    for (const auto& column : job.columns) captions.push_back(column.caption);
    writeRow(captions);
    for (const auto& row : job.rows) writeRow(row.cells);
    return out;
}

} // namespace qx::desk
