#include "InterestForm.h"

#include "InterestGrid.h"
#include "InterestLedger.h"

#include "host/Text.h"
#include "host/ui/Grid.h"

#include <stdexcept>

namespace kivra {
namespace {

using qx::Amount;

bool IsFunctionKey(qx::ui::Key key) {
    return (key >= qx::ui::Key::F1 && key <= qx::ui::Key::F12) || key == qx::ui::Key::Escape;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// A figure given on the command line, as the box would take it when typed.
Amount Figure(const std::string& name, const std::string& value, bool whole) {
    const qx::TypedAmount typed = qx::ReadTypedAmount(value);
    if (!typed.amount) throw std::runtime_error("--" + name + ": " + typed.refusal);
    if (whole && (!typed.amount->IsWhole() || *typed.amount < Amount()))
        throw std::runtime_error("--" + name + " is a whole number of days, not " + Quoted(value) + ".");
    return *typed.amount;
}

// A whole number of days typed into a box, from 0 (or 1) to 9,999; nullopt when it is not.
std::optional<int> DaysIn(const qx::ui::TextBox& box, int least) {
    const Amount days = qx::TextToAmount(box.Text());
    if (!days.IsWhole() || days < Amount::FromInt(least) || days > Amount::FromInt(9999)) return std::nullopt;
    return static_cast<int>(days.WholePart());
}

} // namespace

InterestForm::InterestForm(ModuleContext& context, std::string name, std::string caption, InterestScreen screen)
    : Screen(std::move(name), std::move(caption)), context_(context), screen_(screen),
      heading_(Add<qx::ui::Label>("lblHeading")), party_(Add<qx::ui::TextBox>("txpParty", "A/c Head")),
      partyInfo_(Add<qx::ui::Label>("lblPartyInfo")),
      rate_(Add<qx::ui::TextBox>("txpInterestRate", "Interest Rate")),
      creditDays_(Add<qx::ui::TextBox>("txpCreditDays", "Credit Days")),
      totalDays_(screen == InterestScreen::Second ? &Add<qx::ui::TextBox>("txpTotalDays", "Total Days") : nullptr),
      method_(Add<qx::ui::OptionGroup>("optInterest", std::vector<std::string>{"Method 1", "Method 2(Zimidar)"})),
      graceLabel_(Add<qx::ui::Label>("lblGraceOn")),
      grace_(Add<qx::ui::OptionGroup>("optGrace", std::vector<std::string>{"Cr. Entries", "Dr. Entries"})),
      method1Days_(Add<qx::ui::Label>("lblMethod1")), method1Grace_(Add<qx::ui::Label>("lblMethod1Grace")),
      method2_(Add<qx::ui::Label>("lblMethod2")), generate_(Add<qx::ui::Button>("btnGenerate", "F7: OK")),
      recalculate_(Add<qx::ui::Button>("btnRecalculate", "F8: Recalculate Dr/Cr Total Interest")),
      grid_(Add<qx::ui::Grid>("Grid")), bar_(Add<qx::ui::ButtonBar>("BtnBarTop")) {
    Icon = "Calculator";
    heading_.Heading = true;
    party_.OnLookup = [this] { LookUpParty(); };
    party_.OnChange = [this] { PartyChanged(); };
    party_.OnValidate = [this](bool& cancel) { PartyLeft(cancel); };
    for (qx::ui::TextBox* box : {&rate_, &creditDays_, totalDays_})
        if (box) box->NumericOnly = true;
    method_.OnClick = [this](int) { MethodChanged(); };
    generate_.OnClick = [this] { Calculate(); };
    recalculate_.OnClick = [this] { RecalculateShown(); };
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void InterestForm::LayOut(std::vector<qx::ui::Control*> entryRow, std::vector<qx::ui::Control*> buttonsRow,
                          std::vector<qx::ui::Control*> extra) {
    AddRow({&heading_});
    BeginGroup();
    AddRow({&party_, &partyInfo_});
    AddRow(std::move(entryRow));
    AddRow({&method_, &graceLabel_, &grace_});
    AddRow({&method1Days_});
    AddRow({&method1Grace_});
    AddRow({&method2_});
    AddRow(std::move(buttonsRow));
    if (!extra.empty()) AddRow(std::move(extra));
    BeginGroup();
    AddRow({&grid_});
    AddRow({&bar_});
}

void InterestForm::Load() {
    const qx::Value from = Properties().GetValue("FromDate"), to = Properties().GetValue("ToDate");
    period_ = from.IsNull() || to.IsNull() ? context_.Ui().LastPeriod("KivraInterest")
                                           : qx::Period{from.AsDate(), to.AsDate()};
    MethodChanged();
}

void InterestForm::FirstActivate() {
    context_.Ui().RegisterWindow(*this, Caption(), Icon);
    party_.SetFocus();
}

bool InterestForm::KeyDown(const qx::ui::KeyPress& key) {
    if (context_.HostTookShortcut(key, *this)) return true;
    if (IsFunctionKey(key.key) && !bar_.Enabled()) return true; // the period panel has the keyboard
    if (key.key == qx::ui::Key::F7 && key.Plain()) {
        generate_.Click();
        return true;
    }
    return Screen::KeyDown(key);
}

void InterestForm::EnableEntry(bool on) {
    for (qx::ui::Control* control :
         std::initializer_list<qx::ui::Control*>{&party_, &rate_, &creditDays_, totalDays_, &method_, &grace_,
                                                 &generate_, &recalculate_, &grid_, &bar_})
        if (control) control->SetEnabled(on);
}

// Method 1 offers the grace days and explains its days; Method 2 explains its own.
void InterestForm::MethodChanged() {
    const bool first = method_.SelectedIndex() == 0;
    for (qx::ui::Control* control : {static_cast<qx::ui::Control*>(&graceLabel_), static_cast<qx::ui::Control*>(&grace_),
                                     static_cast<qx::ui::Control*>(&method1Days_),
                                     static_cast<qx::ui::Control*>(&method1Grace_)})
        control->SetVisible(first);
    method2_.SetVisible(!first);
}

void InterestForm::PartyChanged() {
    partyInfo_.SetText({});
    creditDays_.SetText({});
    partyCode_ = 0; // what is typed names no account until the box is left
}

void InterestForm::PartyLeft(bool& cancel) {
    if (partyCode_ != 0 || qx::Trim(party_.Text()).empty()) return;
    const qx::Value code = context_.Db().LookupValue(
        "FAMASTER", "MCD", "UPPER(MHD)=UPPER(" + context_.Util().SqlQuote(qx::Trim(party_.Text())) + ")");
    if (!code.IsNull()) return TakeParty(code.AsInt());
    const auto chosen = context_.Ui().SelectParty(party_.Text());
    if (chosen) TakeParty(chosen->code);
    else cancel = true;
}

void InterestForm::LookUpParty() {
    if (const auto chosen = context_.Ui().SelectParty(party_.Text())) TakeParty(chosen->code);
}

void InterestForm::TakeParty(std::int32_t code) {
    const std::string key = std::to_string(code);
    party_.SetText(context_.Db().LookupValue("Famaster", "Mhd", "mcd=" + key).AsText());
    partyCode_ = code;
    auto terms = context_.Db().OpenRecordset("select Mcrdays,MINTTRATE from famaster where mcd=" + key);
    if (!terms->EndOfRows()) {
        creditDays_.SetText(std::to_string(terms->Field("Mcrdays").AsLong()));
        rate_.SetText(terms->Field("MINTTRATE").AsAmount().ToPlainString());
    }
    const qx::Value balance = context_.Db().LookupValue("FADATA", "SUM(DAMT)", "DCD=" + key + " AND DBOOK<>'MEM'");
    partyInfo_.SetText("Balance: " + DrCr(balance.AsAmount()));
}

std::optional<InterestTerms> InterestForm::Terms() {
    InterestTerms terms;
    terms.screen = screen_;
    terms.method = method_.SelectedIndex() == 1 ? InterestMethod::Zimidar : InterestMethod::RunningBalance;
    terms.rate = qx::TextToAmount(rate_.Text());
    terms.graceOn = grace_.SelectedIndex() == 1 ? GraceOn::Debit : GraceOn::Credit;
    const auto credit = DaysIn(creditDays_, 0);
    if (!credit) {
        context_.Util().ShowMessage("Credit Days must be a whole number from 0 to 9999.", "", "E");
        return std::nullopt;
    }
    terms.creditDays = *credit;
    if (totalDays_) {
        // The year the interest counts: a statement on a year of no days cannot be worked out.
        const auto total = DaysIn(*totalDays_, 1);
        if (!total) {
            context_.Util().ShowMessage("Total Days must be a whole number from 1 to 9999.", "", "E");
            return std::nullopt;
        }
        terms.totalDays = *total;
    }
    return terms;
}

void InterestForm::Calculate() {
    if (partyCode_ == 0) return;
    const auto terms = Terms();
    if (!terms) return;
    heading_.SetText(Heading());
    statement_ = WorkOutInterest(*terms, period_, ReadLedger(context_, screen_, partyCode_, period_));
    Show(*statement_);
}

void InterestForm::Show(const InterestStatement& statement) {
    qx::ui::ShowJob(grid_, StatementJob(statement));
    // Method 2 lets the user change only an entry's Days and Rate, for Recalculate; Method 1
    // leaves the grid to the host's own editing.
    const bool zimidar = statement.terms.method == InterestMethod::Zimidar;
    grid_.Editable = true;
    for (int col = 0; col < grid_.Cols(); ++col)
        grid_.Column(col).editable = !zimidar || col == kDaysCol || col == kRateCol;
    grid_.SetRedraw(false);
    grid_.SetRedraw(true);
}

void InterestForm::RecalculateShown() {
    if (!statement_) return;
    grid_.Commit();
    ReadEdits(grid_, *statement_);
    Recalculate(*statement_);
    const qx::PrintJob job = StatementJob(*statement_);
    grid_.SetRedraw(false);
    for (int row = 1; row < grid_.Rows() && row <= static_cast<int>(job.rows.size()); ++row)
        for (int col : {kDrInterestCol, kCrInterestCol})
            grid_.SetTextMatrix(row, col, job.rows[static_cast<std::size_t>(row - 1)].cells[col]);
    grid_.SetRedraw(true);
}

void InterestForm::OnCommand(const std::string& key) {
    if (key == "Period") ChoosePeriod();
    else if (key == "Preview" || key == "Print")
        context_.Ui().Print(Report(), key == "Preview" ? qx::PrintMode::Preview : qx::PrintMode::Print);
    else if (key == "Exit") Close();
}

const qx::PrintJob& InterestForm::Report() const {
    report_ = grid_.ToPrintJob(heading_.Text(), "Party: " + party_.Text());
    report_.reportName = Name();
    return report_;
}

std::vector<std::string> InterestForm::ArgumentNames() const {
    std::vector<std::string> names{"party", "from", "to", "method", "rate", "credit-days", "grace"};
    if (totalDays_) names.push_back("total-days");
    return names;
}

void InterestForm::TakeArguments(const qx::ReportArguments& arguments) {
    // The party first: choosing it fills its credit days and rate, which the others may change.
    std::string party;
    for (const auto& [name, value] : arguments)
        if (name == "party") party = value;
    if (party.empty()) throw std::runtime_error("An interest statement is of one party: give --party NAME.");
    const qx::Value code = context_.Db().LookupValue(
        "FAMASTER", "MCD", "UPPER(MHD)=UPPER(" + context_.Util().SqlQuote(qx::Trim(party)) + ")");
    if (code.IsNull()) throw std::runtime_error("There is no account " + Quoted(party) + ".");
    TakeParty(code.AsInt());

    std::optional<qx::Date> from, to;
    for (const auto& [name, value] : arguments) {
        if (name == "rate") rate_.SetText(Figure(name, value, false).ToPlainString());
        else if (name == "credit-days") creditDays_.SetText(Figure(name, value, true).ToPlainString());
        else if (name == "total-days" && totalDays_) totalDays_->SetText(Figure(name, value, true).ToPlainString());
        else if (name == "method") {
            if (value != "1" && value != "2") throw std::runtime_error("--method is 1 or 2, not " + Quoted(value) + ".");
            method_.Click(value == "1" ? 0 : 1);
        } else if (name == "grace") {
            if (!qx::EqualsNoCase(value, "cr") && !qx::EqualsNoCase(value, "dr"))
                throw std::runtime_error("--grace is cr or dr, not " + Quoted(value) + ".");
            grace_.Click(qx::EqualsNoCase(value, "cr") ? 0 : 1);
        } else if (name == "from" || name == "to") {
            const auto day = qx::Date::ParseDisplay(value);
            if (!day) throw std::runtime_error("--" + name + ": " + qx::Date::DisplayRefusal(value));
            (name == "from" ? from : to) = day;
        }
    }
    if (from) {
        const qx::Period period{*from, to.value_or(*from)};
        if (period.to < period.from) throw std::runtime_error("--to is before --from.");
        period_ = period;
    }
    Calculate();
}

} // namespace kivra
