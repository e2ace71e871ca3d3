#pragma once
// The pictures that screens and menus name for their buttons and windows ("Calendar",
// "Wheat"): drawings in SVG, looked for first in the folders of the loaded modules (a module
// brings the pictures it names, in a folder named after it beside its library), then among
// the desk's own. A name that nobody draws shows the desk's picture of a document.

#include <QIcon>

#include <filesystem>
#include <string>
#include <vector>

namespace qx::desk {

// The folders of the modules' pictures, searched in this order.
void SetPictureFolders(std::vector<std::filesystem::path> folders);
QIcon PictureIcon(const std::string& picture);
// Whether the modules or the desk draw a picture of this name.
bool HasPicture(const std::string& picture);

} // namespace qx::desk
