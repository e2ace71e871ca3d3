#pragma once
// What the screen holds of a document: as text, to tell whether the user changed it since it
// was shown; and as it stood before a save, to put back when the save fails (extensions change
// the screen while it is saved: lines they add, heads they fill in).

#include "DeskDocument.h"

#include "host/PropertyBag.h"
#include "host/ui/Control.h"
#include "host/ui/Grid.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qx::desk {

// The boxes' texts, every cell of the grids and what is being typed into them.
std::string ContentSnapshot(const std::vector<const ui::TextBox*>& boxes,
                            const std::vector<const ui::Grid*>& grids);

struct ScreenContent {
    static ScreenContent Take(const ui::Grid& itemGrid, const ui::Grid& chargesGrid,
                              DeskDocument& document);
    void PutBack(ui::Grid& itemGrid, ui::Grid& chargesGrid, DeskDocument& document) const;

    std::vector<std::vector<std::string>> items;
    std::vector<std::string> itemMarks;
    std::vector<std::vector<std::string>> charges;
    PropertyBag mainFields;
    std::int32_t documentId = 0;
    bool isNew = true;
};

} // namespace qx::desk
