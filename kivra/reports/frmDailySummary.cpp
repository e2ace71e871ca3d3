#include "frmDailySummary.h"

#include "DailySummary.h"
#include "frmItemSummary.h"

namespace kivra {

frmDailySummary::frmDailySummary(ModuleContext& context)
    : ReportScreen(context, "frmDailySummary", "Daily Summary") {
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmDailySummary::Load() {
    ReportScreen::Load();
    // The period dialog and the voucher are the host's: until it offers them the period is
    // the one the screen was opened with.
    bar_.AddItem("Period,F4: Period,Period");
    bar_.SetItemEnabled("Period", false);
    bar_.AddItem("Itemwise,F6: Item-wise Summary,Item-wise Summary");
    bar_.AddItem("Voucher,F7: Show Voucher,Show Voucher");
    bar_.SetItemEnabled("Voucher", false);
    AddOutputButtons();
    job_ = DailySummaryJob(context_, scope_);
    Show(job_);
}

void frmDailySummary::FirstActivate() {
    ReportScreen::FirstActivate();
    grid_.SetFocus();
}

void frmDailySummary::OpenItemSummary() {
    auto items = std::make_shared<frmItemSummary>(context_);
    scope_.ToProperties(items->Properties());
    items->CallingForm = shared_from_this();
    context_.Show(items);
}

void frmDailySummary::OnCommand(const std::string& key) {
    if (key == "Itemwise") OpenItemSummary();
    else if (!Output(key, job_) && key == "Exit") Close();
}

} // namespace kivra
