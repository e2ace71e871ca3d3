#pragma once
// The firm's settings: its properties (tags such as "*...Menu*" that turn on a module's menu),
// the screens modules offer for an item ("ItemForms"), and the numbered options. Nothing is
// written until OK.

#include "desk/core/DeskApp.h"
#include "host/ui/Screen.h"

#include <map>
#include <string>

namespace qx::desk {

class FirmSettingsScreen : public ui::Screen {
public:
    explicit FirmSettingsScreen(DeskApp& app);

    // Columns of the options grid.
    static constexpr int kColNumber = 0;
    static constexpr int kColValue = 1;

    bool KeyDown(const ui::KeyPress& key) override;

protected:
    void Load() override;
    void FirstActivate() override;

private:
    void CheckNumber(int row, const std::string& typed, bool& cancel);
    bool Save();
    void Warn(const std::string& message);

    DeskApp& app_;
    ui::TextBox& properties_;
    ui::TextBox& itemForms_;
    ui::Grid& options_;
    ui::StdButtons& buttons_;
    // What the screen showed when it opened: only what the user changed is written.
    std::string loadedProperties_;
    std::string loadedItemForms_;
    std::map<int, std::string> loadedOptions_;
};

} // namespace qx::desk
