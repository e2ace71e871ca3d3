#pragma once
// The daily I/J-Form summary screen: the summary of a period's forms for one market or all,
// from which the item-wise summary opens.
//
// Whoever opens it hands it its period and market in its properties ("FromDate", "ToDate",
// "MarketID", "MarketName"), as the day's voucher does when the user asks to edit it.

#include "ReportScreen.h"

namespace kivra {

class frmDailySummary : public ReportScreen {
public:
    explicit frmDailySummary(ModuleContext& context);
    const qx::PrintJob& Job() const { return job_; }

protected:
    void Load() override;
    void FirstActivate() override;

private:
    void OpenItemSummary();
    void OnCommand(const std::string& key);

    qx::PrintJob job_;
};

} // namespace kivra
