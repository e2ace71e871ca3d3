#pragma once
// QX Desk's document entry: the host screen "Documents" that modules open preset to a series,
// and the main-menu entry "Documents" that asks for the series first.

#include "desk/core/DeskApp.h"

namespace qx::desk {

void RegisterHostDocuments(DeskApp& app);

} // namespace qx::desk
