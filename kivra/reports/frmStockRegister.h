#pragma once
// The stock register screen: the register of a period for the items chosen.
//
// Until the host offers its period dialog and item filter, whoever opens it hands it the
// period ("FromDate", "ToDate") and the items ("ItemFilter", a condition on the item master
// "s"; none for every item) in its properties.

#include "ReportScreen.h"

namespace kivra {

class frmStockRegister : public ReportScreen {
public:
    explicit frmStockRegister(ModuleContext& context);
    const qx::PrintJob& Job() const { return job_; }

protected:
    void Load() override;
    void FirstActivate() override;
    std::string Heading() const override { return scope_.PeriodHeading(); }

private:
    void OnCommand(const std::string& key);

    qx::PrintJob job_;
};

} // namespace kivra
