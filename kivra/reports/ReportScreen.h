#pragma once
// What the register screens share: a title, the heading of their period and market, the
// report's grid and the command bar, the period and market they were handed in their
// properties, and their window registered with the host while open.

#include "ReportScope.h"

#include "host/ui/Screen.h"

namespace kivra {

class ReportScreen : public qx::ui::Screen {
protected:
    ReportScreen(ModuleContext& context, std::string name, std::string title);
    void Load() override { scope_ = ReportScope::FromProperties(Properties()); }
    void FirstActivate() override { context_.Ui().RegisterWindow(*this, Caption(), Icon); }
    void Unload() override { context_.Ui().UnregisterWindow(*this); }
    // Shows the job in the grid, under the scope's heading.
    void Show(const qx::PrintJob& job);

    ModuleContext& context_;
    ReportScope scope_;
    qx::ui::Label& heading_;
    qx::ui::Grid& grid_;
    qx::ui::ButtonBar& bar_;
};

} // namespace kivra
