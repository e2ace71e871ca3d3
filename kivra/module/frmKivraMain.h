#pragma once
// The module's own menu: a cube of ten large buttons that open its documents and reports.

#include "ModuleContext.h"

#include "host/ui/Screen.h"

namespace kivra {

class frmKivraMain : public qx::ui::Screen {
public:
    explicit frmKivraMain(ModuleContext& context);
    bool KeyDown(const qx::ui::KeyPress& key) override;

protected:
    void FirstActivate() override;
    void Unload() override;

private:
    void Dispatch(const std::string& key);
    void ChooseReport();

    ModuleContext& context_;
    qx::ui::ButtonCube& cube_;
};

} // namespace kivra
