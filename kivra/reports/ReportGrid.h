#pragma once
// A register shown on its screen: the grid holds the print job's columns and rows, each row
// with its print marks, so that the screen shows what preview and paper show.

#include "host/PrintJob.h"
#include "host/ui/Grid.h"

namespace kivra {

void ShowJob(qx::ui::Grid& grid, const qx::PrintJob& job);

} // namespace kivra
