#include "ReportScreen.h"

#include "kivra/module/mKivraModule.h"

namespace kivra {

ReportScreen::ReportScreen(ModuleContext& context, std::string name, std::string title,
                           const OptionsRow& options)
    : Screen(std::move(name), title), context_(context), heading_(Add<qx::ui::Label>("lblPeriod")),
      grid_(Add<qx::ui::Grid>("Grid")), bar_(Add<qx::ui::ButtonBar>("BtnBar1")) {
    Icon = "FinalAc";
    auto& label = Add<qx::ui::Label>("lblTitle", std::move(title));
    label.Heading = true;
    AddRow({&label});
    AddRow({&heading_});
    if (options) AddRow(options(*this));
    AddRow({&grid_});
    AddRow({&bar_});
}

void ReportScreen::Load() {
    handed_ = !Properties().GetValue("FromDate").IsNull();
    scope_ = ReportScope::FromProperties(Properties());
    // The registers read the columns the forms are saved with; a company that has saved no form
    // yet has an empty register, not a failing one.
    CheckKivraFields(context_.Db());
}

void ReportScreen::FirstActivate() {
    context_.Ui().RegisterWindow(*this, Caption(), Icon);
    if (!handed_) {
        if (!AskPeriod()) {
            Close();
            return;
        }
        if (ByMarket()) AskMarket();
    }
    Build();
    grid_.SetFocus();
}

bool ReportScreen::AskPeriodUnder(const std::string& key) {
    const auto period = context_.Ui().AskPeriod(key);
    if (!period) return false;
    scope_.from = period->from;
    scope_.to = period->to;
    return true;
}

void ReportScreen::ChangePeriod() {
    if (AskPeriod()) Build();
}

void ReportScreen::ChangeItems(std::string& items) {
    auto chosen = context_.Ui().FilterItems("FilterProduct", "s");
    if (!chosen) return;
    items = std::move(*chosen);
    Build();
}

void ReportScreen::AskMarket() {
    if (!MultipleMarketRqr(context_) || !Properties().GetValue("MarketID").IsNull()) return;
    std::int32_t id = 0;
    std::string name;
    if (SelectMarket(context_, id, name, true) && id > 0) {
        scope_.marketId = id;
        scope_.marketName = name;
    }
}

void ReportScreen::AddOutputButtons() {
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Close");
}

bool ReportScreen::Output(const std::string& key) {
    if (key != "Preview" && key != "Print") return false;
    context_.Ui().Print(Report(), key == "Preview" ? qx::PrintMode::Preview : qx::PrintMode::Print);
    return true;
}

void ReportScreen::Show(const qx::PrintJob& job) {
    heading_.SetText(Heading());
    qx::ui::ShowJob(grid_, job);
}

} // namespace kivra
