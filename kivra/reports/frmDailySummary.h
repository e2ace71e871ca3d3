#pragma once
// The daily I/J-Form summary screen: the summary of a period's forms for one market or all,
// from which the item-wise summary and the day's voucher open. The day's voucher hands it its
// day when the user asks to edit the voucher; opened from the menu it asks its period
// ("DailySummary"), as F4 does.

#include "ReportScreen.h"

namespace kivra {

class frmDailySummary : public ReportScreen {
public:
    explicit frmDailySummary(ModuleContext& context);
    const qx::PrintJob& Report() const override { return job_; }

protected:
    void Load() override;
    bool AskPeriod() override { return AskPeriodUnder("DailySummary"); }
    void Build() override;

private:
    void OpenItemSummary();
    void ShowVoucher();
    void OnCommand(const std::string& key);

    qx::PrintJob job_;
};

} // namespace kivra
