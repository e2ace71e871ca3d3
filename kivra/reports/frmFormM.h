#pragma once
// The Form-M screen: the weekly return, or the daily return when opened with "DailyReport",
// with its choice of forms (both, the firm's own purchases, the buyers' I-Forms, or one buyer),
// its order (by date, farmer or buyer) and whether the seller's address is printed.
//
// Until the host offers its period and date dialogs and its item filter, whoever opens it
// hands it the period ("FromDate", "ToDate"; the week of today, or today for the daily
// return, when none), the market ("MarketID", "MarketName") and the items ("ItemFilter", a
// condition on the item master "s") in its properties.

#include "FormM.h"
#include "ReportScreen.h"

namespace kivra {

class frmFormM : public ReportScreen {
public:
    explicit frmFormM(ModuleContext& context);
    const qx::PrintJob& Job() const { return job_; }

protected:
    void Load() override;
    void FirstActivate() override;
    std::string Heading() const override { return FormMHeading(scope_, options_.daily); }

private:
    void Build();
    void OnCommand(const std::string& key);

    qx::ui::ComboBox& filter_;
    qx::ui::ComboBox& order_;
    qx::ui::CheckBox& sellerAddress_;
    FormMOptions options_;
    qx::PrintJob job_;
};

} // namespace kivra
