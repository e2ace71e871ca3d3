#pragma once
// The module object the host loads: identifies the module, hands out its objects by name,
// builds its special menu and opens its screens from the host's menu keys and events.

#include "ModuleContext.h"

#include "host/IModule.h"

#include <memory>

namespace kivra {

class CQXModule : public qx::IModule, public qx::HostAppEvents {
public:
    CQXModule() = default;
    ~CQXModule() override;

    // IModule
    void Init(qx::HostApp& app) override;
    void Terminate() override;
    std::string ID() const override { return "KivraModule"; }
    std::string Description() const override { return "QX 11 Comm. Agents (Kivra) Module"; }
    std::shared_ptr<qx::Object> GetForm(const std::string& name) override;
    bool RunProc(const std::string& procedure, const std::string& arguments) override;
    qx::Object& Obj() override { return *this; }
    // The public operations, late-bound: MultipleMarketRqr, SelectMarket(id&, name&,
    // allowAll), CheckKivraFields, GetMarketName(id), GetMarketSeries(id), CheckBooks(faults&,
    // notes&), Reports (its reports by name, each with the menu key that opens it).
    qx::Value Invoke(std::string_view operation, std::span<qx::Value> args) override;

    // Host application events
    void CustomEvent(const std::string& name, qx::EventArgs& args) override;
    void MainMenuClick(const std::string& key, bool& handled) override;
    void SelectCompany() override;
    void SplMenuCreate(const qx::Value& ignored, bool& handled) override;

    // Null before Init and after Terminate.
    ModuleContext* Context() { return context_.get(); }

private:
    std::unique_ptr<ModuleContext> context_;
};

// The screen a menu key opens, with its presets set; null for a key the module does not
// serve (or whose screen the host does not have). Shared by the main menu and the module's
// own menu screen.
std::shared_ptr<qx::ui::Screen> CreateScreenForKey(ModuleContext& context, const std::string& key);

} // namespace kivra
