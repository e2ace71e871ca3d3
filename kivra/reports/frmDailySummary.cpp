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
    bar_.AddItem("Period,F4: Period,Period", "Calendar");
    bar_.AddItem("Itemwise,F6: Item-wise Summary,Item-wise Summary");
    bar_.AddItem("Voucher,F7: Show Voucher,Show Voucher");
    AddOutputButtons();
}

void frmDailySummary::Build() {
    job_ = DailySummaryJob(context_, scope_);
    Show(job_);
}

// The item summary is of this screen's market; it asks its own period.
void frmDailySummary::OpenItemSummary() {
    auto items = std::make_shared<frmItemSummary>(context_);
    items->Properties().SetValue("MarketID", scope_.marketId);
    items->Properties().SetValue("MarketName", scope_.marketName);
    items->CallingForm = shared_from_this();
    context_.Show(items);
}

// The consolidated voucher of the summary's day; a summary of several days asks which day's.
void frmDailySummary::ShowVoucher() {
    qx::Date day = scope_.from;
    if (scope_.to != scope_.from) {
        const auto asked = context_.Ui().AskDate("DailyVoucher");
        if (!asked) return;
        day = *asked;
    }
    const qx::Value voucher = context_.Db().LookupValue(
        "FADATA", "VOUCHERID", "DVCHDATE=" + context_.Util().SqlDate(day) + " AND DTRNTYPE='IJF'");
    if (voucher.IsNull()) {
        context_.Util().ShowMessage("There is no daily voucher of " + day.ToDisplay() + ".", "", "W");
        return;
    }
    context_.Ui().ShowVoucher(voucher.AsInt());
}

void frmDailySummary::OnCommand(const std::string& key) {
    if (Output(key)) return;
    if (key == "Period") ChangePeriod();
    else if (key == "Itemwise") OpenItemSummary();
    else if (key == "Voucher") ShowVoucher();
    else if (key == "Exit") Close();
}

} // namespace kivra
