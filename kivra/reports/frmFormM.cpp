#include "frmFormM.h"

namespace kivra {
namespace {

constexpr const char* kSellerAddress = "FormM.SellerAddress";

std::vector<qx::ui::Control*> Options(qx::ui::Screen& screen) {
    return {&screen.Add<qx::ui::ComboBox>("cmbFilter", "Show"), &screen.Add<qx::ui::ComboBox>("cmbOrder", "Order"),
            &screen.Add<qx::ui::CheckBox>("chkSellerAddress", "Seller's address")};
}

} // namespace

frmFormM::frmFormM(ModuleContext& context)
    : ReportScreen(context, "frmFormM", "Form-M (Daily Sales Purchase Report )", Options),
      filter_(Get<qx::ui::ComboBox>("cmbFilter")), order_(Get<qx::ui::ComboBox>("cmbOrder")),
      sellerAddress_(Get<qx::ui::CheckBox>("chkSellerAddress")) {
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmFormM::Load() {
    ReportScreen::Load();
    options_.daily = Properties().GetValue("DailyReport").AsBool();
    options_.items = Properties().GetValue("ItemFilter").AsText();
    if (options_.daily) scope_.to = scope_.from;
    CheckUtrFields(context_.Db());

    for (const char* entry : {"Both (Self Purchase + I-Forms)", "Self Purchase Only", "I-Forms Only"})
        filter_.AddItem(entry);
    auto buyers = context_.Db().OpenRecordset(
        "SELECT DISTINCT C.MCD,C.MHD FROM DOCDATA A INNER JOIN DOCMAIN B ON A.DOCUMENTID=B.DOCUMENTID "
        "INNER JOIN FAMASTER C ON A.CUSTOMERID=C.MCD ORDER BY C.MHD");
    for (; !buyers->EndOfRows(); buyers->MoveNext())
        filter_.AddItem(buyers->Field("mhd").AsText(), buyers->Field("MCD").AsLong());
    buyers->Close();
    filter_.SetSelectedIndex(0);
    for (const char* entry : {"Date-wise", "Farmer wise", "Buyer wise"}) order_.AddItem(entry);
    order_.SetSelectedIndex(0);
    sellerAddress_.SetChecked(context_.Session().FirmSettings().GetValue(kSellerAddress).AsBool());
    filter_.OnChange = [this] { Build(); };
    order_.OnChange = [this] { Build(); };
    sellerAddress_.OnClick = [this] {
        context_.Session().SetFirmSetting(kSellerAddress, sellerAddress_.Checked());
        Build();
    };

    bar_.AddItem("Filter,F4: Filter,Filter");
    bar_.AddItem("Period,F6: Period,Period", "Calendar");
    AddOutputButtons();
}

bool frmFormM::AskPeriod() {
    if (options_.daily) {
        const auto day = context_.Ui().AskDate("MForm");
        if (!day) return false;
        scope_.from = scope_.to = *day;
        return true;
    }
    const auto week = context_.Ui().AskPeriod("MForm");
    if (!week || !AcceptWeek(context_, week->from, week->to)) return false;
    scope_.from = week->from;
    scope_.to = week->to;
    return true;
}

void frmFormM::Build() {
    const int filter = filter_.SelectedIndex();
    options_.filter = filter <= 0   ? FormMFilter::Both
                      : filter == 1 ? FormMFilter::SelfPurchase
                      : filter == 2 ? FormMFilter::IForms
                                    : FormMFilter::Buyer;
    options_.buyer = options_.filter == FormMFilter::Buyer ? static_cast<std::int32_t>(filter_.Selected()->value) : 0;
    options_.order = static_cast<FormMOrder>(std::max(order_.SelectedIndex(), 0));
    options_.sellerAddress = sellerAddress_.Checked();
    job_ = FormMJob(context_, scope_, options_);
    Show(job_);
}

void frmFormM::OnCommand(const std::string& key) {
    if (Output(key)) return;
    if (key == "Filter") ChangeItems(options_.items);
    else if (key == "Period") ChangePeriod();
    else if (key == "Exit") Close();
}

} // namespace kivra
