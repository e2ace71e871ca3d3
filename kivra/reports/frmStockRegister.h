#pragma once
// The stock register screen: the register of a period for the items chosen. Opened without a
// period ("FromDate", "ToDate" in its properties) it asks one ("StockRegister"), as F6 does;
// F4 chooses the items through the host's item filter ("FilterProduct"). It starts with every
// item, or with those handed in "ItemFilter" (a condition on the item master "s").

#include "ReportScreen.h"

namespace kivra {

class frmStockRegister : public ReportScreen {
public:
    explicit frmStockRegister(ModuleContext& context);
    const qx::PrintJob& Report() const override { return job_; }

protected:
    void Load() override;
    bool AskPeriod() override { return AskPeriodUnder("StockRegister"); }
    void Build() override;
    bool ByMarket() const override { return false; }
    std::string Heading() const override { return scope_.PeriodHeading(); }

private:
    void OnCommand(const std::string& key);

    std::string items_;
    qx::PrintJob job_;
};

} // namespace kivra
