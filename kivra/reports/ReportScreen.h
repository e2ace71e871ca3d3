#pragma once
// What the register screens share: a title, the heading of their period and market, the
// report's grid and the command bar, the period and market they were handed in their
// properties, and their window registered with the host while open.

#include "ReportScope.h"

#include "host/ui/Screen.h"

#include <functional>

namespace kivra {

class ReportScreen : public qx::ui::Screen {
protected:
    // options, when given, makes the report's own controls, shown in a row above the grid.
    using OptionsRow = std::function<std::vector<qx::ui::Control*>(qx::ui::Screen&)>;
    ReportScreen(ModuleContext& context, std::string name, std::string title, const OptionsRow& options = {});
    void Load() override { scope_ = ReportScope::FromProperties(Properties()); }
    void FirstActivate() override { context_.Ui().RegisterWindow(*this, Caption(), Icon); }
    void Unload() override { context_.Ui().UnregisterWindow(*this); }
    // Shows the job in the grid, under the report's heading.
    void Show(const qx::PrintJob& job);
    // A firm that works in several markets is asked for one when none was handed over;
    // closing the list, or choosing all, counts every market.
    void AskMarket();
    // The command bar's "F8: Preview", "F9: Print" and "Esc: Exit", after the report's own.
    void AddOutputButtons();
    // Previews or prints the job for "Preview" and "Print"; false for any other key.
    bool Output(const std::string& key, const qx::PrintJob& job);
    // The period (and market) as the report says it: by default the scope's heading.
    virtual std::string Heading() const { return scope_.Heading(); }

    ModuleContext& context_;
    ReportScope scope_;
    qx::ui::Label& heading_;
    qx::ui::Grid& grid_;
    qx::ui::ButtonBar& bar_;
};

} // namespace kivra
