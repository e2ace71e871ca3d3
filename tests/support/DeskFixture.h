#pragma once
// A real company file in a temporary folder, the desk with its scripted front end, and the
// Kivra module plugged in as the desk would plug it in.

#include "Desk.h"

#include "kivra/module/CQXModule.h"

namespace qx::test {

class DeskFixture : public DeskFixtureBase {
protected:
    // The desk terminates the module when it shuts down, so it goes first.
    ~DeskFixture() override { app.Shutdown(); }

    void OpenWithModule(const std::string& firmProperties = "*KivraMenu*",
                        std::vector<std::pair<int, std::string>> options = {}) {
        path = MakeCompany(folder, firmProperties, std::move(options));
        app.PlugModule(module);
        app.OpenCompany(path);
    }

    kivra::CQXModule module;
};

} // namespace qx::test
