#include "frmStockRegister.h"

#include "StockRegister.h"

namespace kivra {

frmStockRegister::frmStockRegister(ModuleContext& context)
    : ReportScreen(context, "frmStockRegister", "Stock Register") {
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmStockRegister::Load() {
    ReportScreen::Load();
    items_ = Properties().GetValue("ItemFilter").AsText();
    bar_.AddItem("Filter,F4: Filter,Filter");
    bar_.AddItem("Period,F6: Period,Period", "Calendar");
    AddOutputButtons();
}

void frmStockRegister::Build() {
    job_ = StockRegisterJob(context_, scope_, items_);
    Show(job_);
}

void frmStockRegister::OnCommand(const std::string& key) {
    if (Output(key)) return;
    if (key == "Filter") ChangeItems(items_);
    else if (key == "Period") ChangePeriod();
    else if (key == "Exit") Close();
}

} // namespace kivra
