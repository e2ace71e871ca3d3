#include "ModuleContext.h"

#include <algorithm>

namespace kivra {

void ModuleContext::Show(const std::shared_ptr<qx::ui::Screen>& screen) {
    std::erase_if(screens_, [](const auto& s) { return s.expired(); });
    screens_.push_back(screen);
    Ui().ShowForm(screen);
}

void ModuleContext::UnloadScreens() {
    auto screens = std::move(screens_);
    for (auto& weak : screens) {
        // One screen that refuses to unload must not keep the others loaded.
        try {
            if (auto screen = weak.lock(); screen && screen->Loaded()) screen->Close();
        } catch (...) {
        }
    }
}

bool ModuleContext::HostTookShortcut(const qx::ui::KeyPress& key, qx::ui::Screen& screen) {
    const bool withModifier = key.shift || key.ctrl || key.alt;
    const bool shortcutKey = key.key == qx::ui::Key::Tab ||
                             (key.key == qx::ui::Key::Character && key.character >= 48 && key.character <= 105);
    if (!withModifier || !shortcutKey) return false;
    qx::ui::KeyPress passed = key;
    Ui().HandleShortcutKey(passed, screen);
    return passed.key == qx::ui::Key::None;
}

} // namespace kivra
