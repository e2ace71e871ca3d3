#pragma once
// "Interest Calculations-2" (menu key KVIN2): the interest statement on a year of the Total
// Days the user gives, over every ledger row of the period, its period entered on a panel of
// the screen ("Enter Period") that takes the keyboard while it is open.

#include "InterestForm.h"

namespace kivra {

class frmKivraInterest2 : public InterestForm {
public:
    explicit frmKivraInterest2(ModuleContext& context);
    bool PeriodPanelOpen() const { return periodBox_.Visible(); }

protected:
    void ChoosePeriod() override { ShowPeriodPanel(true); }
    std::string Heading() const override;
    void QueryUnload(bool& cancel) override;

private:
    void ShowPeriodPanel(bool show);
    void PeriodChosen(int button);

    qx::ui::Button& insertRow_;
    qx::ui::Label& periodTitle_;
    qx::ui::PeriodBox& periodBox_;
    qx::ui::StdButtons& periodButtons_;
    qx::ui::StdButtons& stdButtons_;
};

} // namespace kivra
