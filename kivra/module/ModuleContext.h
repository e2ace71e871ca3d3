#pragma once
// What all screens of the module share: the host's services and the module-wide state.

#include "host/HostApp.h"
#include "host/HostSession.h"
#include "host/HostUi.h"
#include "host/ModuleUtil.h"

#include <memory>
#include <vector>

namespace kivra {

class ModuleContext {
public:
    explicit ModuleContext(qx::HostApp& app) : app_(app) {}

    qx::HostApp& App() { return app_; }
    qx::HostUi& Ui() { return app_.Ui(); }
    qx::HostSession& Session() { return app_.Session(); }
    qx::CompanyDb& Db() { return app_.Session().Database(); }
    qx::ModuleUtil& Util() { return app_.Util(); }
    // Firm option by number: on when it reads exactly "Yes".
    bool OptionOn(int number) { return app_.Session().GetOption(number) == "Yes"; }

    // Set once the item master's rate columns were made sure of for the open company;
    // cleared when another company is selected.
    bool rateColumnsChecked = false;

    // Shows a screen of the module. The module keeps only a weak reference, so that it can
    // unload the screens still open when it is terminated.
    void Show(const std::shared_ptr<qx::ui::Screen>& screen);
    void UnloadScreens();
    // Tab, and the keys of codes 48 to 105, pressed with Shift, Ctrl or Alt on a screen of the
    // module are first offered to the host's shortcuts; true when the host took the key.
    bool HostTookShortcut(const qx::ui::KeyPress& key, qx::ui::Screen& screen);

private:
    qx::HostApp& app_;
    std::vector<std::weak_ptr<qx::ui::Screen>> screens_;
};

} // namespace kivra
