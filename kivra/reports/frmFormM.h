#pragma once
// The Form-M screen: the weekly return, or the daily return when opened with "DailyReport",
// with its choice of forms (both, the firm's own purchases, the buyers' I-Forms, or one buyer),
// its order (by date, farmer or buyer) and whether the seller's address is printed.
//
// Opened without a period ("FromDate", "ToDate" in its properties) it asks one under "MForm",
// as F6 does: the weekly return a week through the period dialog and the week questions, the
// daily return a day through the single-date dialog. F4 chooses the items through the host's
// item filter ("FilterProduct"); it starts with every item, or those handed in "ItemFilter".

#include "FormM.h"
#include "ReportScreen.h"

namespace kivra {

class frmFormM : public ReportScreen {
public:
    explicit frmFormM(ModuleContext& context);
    const qx::PrintJob& Report() const override { return job_; }

protected:
    void Load() override;
    bool AskPeriod() override;
    void Build() override;
    std::string Heading() const override { return FormMHeading(scope_, options_.daily); }

private:
    void OnCommand(const std::string& key);

    qx::ui::ComboBox& filter_;
    qx::ui::ComboBox& order_;
    qx::ui::CheckBox& sellerAddress_;
    FormMOptions options_;
    qx::PrintJob job_;
};

} // namespace kivra
