#include "frmStockRegister.h"

#include "StockRegister.h"

namespace kivra {

frmStockRegister::frmStockRegister(ModuleContext& context)
    : ReportScreen(context, "frmStockRegister", "Stock Register") {
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmStockRegister::Load() {
    ReportScreen::Load();
    // The item filter and the period dialog are the host's: until it offers them the items
    // and the period are the ones the screen was opened with.
    bar_.AddItem("Filter,F4: Filter,Filter");
    bar_.SetItemEnabled("Filter", false);
    bar_.AddItem("Period,F6: Period,Period");
    bar_.SetItemEnabled("Period", false);
    AddOutputButtons();
    job_ = StockRegisterJob(context_, scope_, Properties().GetValue("ItemFilter").AsText());
    Show(job_);
}

void frmStockRegister::FirstActivate() {
    ReportScreen::FirstActivate();
    grid_.SetFocus();
}

void frmStockRegister::OnCommand(const std::string& key) {
    if (!Output(key, job_) && key == "Exit") Close();
}

} // namespace kivra
