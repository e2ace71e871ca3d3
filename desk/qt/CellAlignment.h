#pragma once
// How a grid or report cell is aligned, on the screen and on paper alike.

#include "host/PrintJob.h"

#include <QString>
#include <Qt>

namespace qx::print {

// A column without an alignment of its own aligns as the host grid's "general" alignment
// does: figures to the right, text to the left.
Qt::Alignment CellAlignment(Align align, const QString& text);

} // namespace qx::print
