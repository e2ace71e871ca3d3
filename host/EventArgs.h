#pragma once
// Argument object of the host application's CustomEvent.

#include "PropertyBag.h"

#include <memory>
#include <string>
#include <vector>

namespace qx {
namespace ui { class Screen; }

class MenuItems {
public:
    void Add(std::string text) { items_.push_back(std::move(text)); }
    const std::vector<std::string>& Items() const { return items_; }

private:
    std::vector<std::string> items_;
};

struct EventArgs {
    std::shared_ptr<ui::Screen> CallingForm;
    MenuItems Items; // the collection a "MiscMenuItems" event fills
    bool Handled = false; // set to stop the host's own handling
    PropertyBag Parameters; // "TrnType", "VchDate", "Key", ...
};

} // namespace qx
