#pragma once
// How a report's cell is set in its column, on paper and in text alike: each of the cell's own
// lines on a line of its own, text wrapped at spaces within the column, figures never broken.

#include "host/PrintJob.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

// The width of a text as the output measures it: points on paper, characters in text.
using MeasureText = std::function<double(std::string_view)>;

// A figure as reports write them, "12,34,567.00", "-15", "(250.00)", "1,200.00 Dr"; a cell of
// several lines is a figure when each of its lines that says something is one.
bool IsFigure(std::string_view text);

// A cell's own lines (a line break of "\r\n" counts once).
std::vector<std::string_view> OwnLines(std::string_view text);

// The narrowest a column may be for the cell not to be cut: the width of its widest figure
// line, which must never be broken, and of its widest word, which is broken only when nothing
// else will do.
struct Narrowest {
    double figures = 0;
    double words = 0;
    double Both() const { return figures > words ? figures : words; }
    void Widen(const Narrowest& other);
};
Narrowest NarrowestFor(std::string_view text, const MeasureText& width);

// How many printed lines one of a cell's own lines may wrap onto: the job's "Wrap" option;
// 0 when the report sets none and a text wraps as far as it needs.
std::size_t WrapLimit(const PrintJob& job);

// The printed lines of a cell in a column `room` wide. A text line wraps at spaces (a word
// wider than the column is broken where it must be); past `most` lines (0: no limit) its last
// line ends in "…". A figure line stands whole, whatever the room.
std::vector<std::string> WrapCell(std::string_view text, double room, const MeasureText& width, std::size_t most);

} // namespace qx::desk
