#pragma once
// What the register screens share: a title, the heading of their period and market, the
// report's grid and the command bar, and their window registered with the host while open.
//
// A screen handed its period in its properties ("FromDate", "ToDate", "MarketID",
// "MarketName"), as the day's voucher hands the daily summary its day, asks nothing. Opened
// without one it asks its period through the host's dialogs on its first activation, and then
// the market where the firm works in several; a cancelled question closes it without a report.

#include "ReportScope.h"

#include "host/ReportSource.h"
#include "host/ui/Screen.h"

#include <functional>

namespace kivra {

class ReportScreen : public qx::ui::Screen, public qx::ReportSource {
protected:
    // options, when given, makes the report's own controls, shown in a row above the grid.
    using OptionsRow = std::function<std::vector<qx::ui::Control*>(qx::ui::Screen&)>;
    ReportScreen(ModuleContext& context, std::string name, std::string title, const OptionsRow& options = {});
    void Load() override;
    void FirstActivate() override;
    void Unload() override { context_.Ui().UnregisterWindow(*this); }

    // Asks the report's period through the host's dialog into the scope; false when the user
    // cancels or refuses it (the scope is then as it was).
    virtual bool AskPeriod() = 0;
    // Builds the report of the scope and shows it.
    virtual void Build() = 0;
    // Whether the report is of one market or all (the stock register counts every market).
    virtual bool ByMarket() const { return true; }
    // The period through the host's period dialog under the key.
    bool AskPeriodUnder(const std::string& key);
    // "Period": a new period asked, and the report built again.
    void ChangePeriod();
    // "Filter": the items chosen through the host's item filter ("FilterProduct") become the
    // condition on the item master "s" (empty: every item), and the report is built again.
    void ChangeItems(std::string& items);
    // Shows the job in the grid, under the report's heading.
    void Show(const qx::PrintJob& job);
    // The command bar's "F8: Preview", "F9: Print" and "Esc: Exit", after the report's own.
    void AddOutputButtons();
    // Previews or prints the report for "Preview" and "Print"; false for any other key.
    bool Output(const std::string& key);
    // The period (and market) as the report says it: by default the scope's heading.
    virtual std::string Heading() const { return scope_.Heading(); }

    ModuleContext& context_;
    ReportScope scope_;
    qx::ui::Label& heading_;
    qx::ui::Grid& grid_;
    qx::ui::ButtonBar& bar_;

private:
    // A firm that works in several markets is asked for one when none was handed over;
    // closing the list, or choosing all, counts every market.
    void AskMarket();

    bool handed_ = false; // the period came in the properties
};

} // namespace kivra
