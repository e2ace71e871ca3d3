#pragma once
// The pictures that modules name for their buttons and windows ("Wheat", "Books"). The desk
// ships no artwork for them: each name gets a tile of its own colour with its initial, so
// that buttons stay recognisable and the name itself is shown as the tooltip.

#include <QIcon>
#include <string>

namespace qx::desk {

QIcon PictureIcon(const std::string& picture);

} // namespace qx::desk
