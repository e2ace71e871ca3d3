#include "LedgerScreens.h"

#include <stdexcept>

namespace qx::desk {
namespace {

// The day book, the trial balance and the outstanding list: a report of the company's books
// for the period or day asked, nothing else to choose.
class BooksJobScreen : public BooksReportScreen {
public:
    using Maker = std::function<PrintJob(CompanyDb&, const Period&)>;
    BooksJobScreen(DeskApp& app, const std::string& key, std::string title, Asks asks, Maker make)
        : BooksReportScreen(app, key, std::move(title), asks), make_(std::move(make)) {}

private:
    PrintJob Make(const Period& period) override { return make_(Desk().DeskSession().Database(), period); }
    Maker make_;
};

} // namespace

BooksReportScreen::BooksReportScreen(DeskApp& app, const std::string& key, std::string title, Asks asks,
                                     const OptionsRow& options)
    : Screen("frm" + key, title), grid_(Add<ui::Grid>("Grid")), app_(app), key_(key), asks_(asks),
      heading_(Add<ui::Label>("lblPeriod")), bar_(Add<ui::ButtonBar>("BtnBar1")) {
    Icon = "FinalAc";
    auto& label = Add<ui::Label>("lblTitle", std::move(title));
    label.Heading = true;
    AddRow({&label});
    if (options) AddRow(options(*this));
    AddRow({&heading_});
    AddRow({&grid_});
    AddRow({&bar_});
    bar_.AddItem(asks == Asks::Period ? "Period,F6: Period,Period" : "Period,F6: Date,Date", "Calendar");
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Close");
    bar_.OnClick = [this](const std::string& command) { OnCommand(command); };
}

void BooksReportScreen::FirstActivate() {
    app_.RegisterWindow(*this, Caption(), Icon);
    if (!AskPeriod()) {
        Close();
        return;
    }
    Build();
    grid_.SetFocus();
}

bool BooksReportScreen::AskPeriod() {
    if (asks_ == Asks::Period) {
        const auto period = app_.AskPeriod(key_);
        if (!period) return false;
        period_ = *period;
    } else {
        const auto day = app_.AskDate(key_);
        if (!day) return false;
        period_ = {*day, *day};
    }
    return true;
}

void BooksReportScreen::Build() {
    job_ = Make(period_);
    heading_.SetText(job_.title2);
    ui::ShowJob(grid_, job_);
}

void BooksReportScreen::OnCommand(const std::string& command) {
    if (command == "Period") {
        if (AskPeriod()) Build();
    } else if (command == "Preview" || command == "Print") {
        app_.Print(job_, command == "Preview" ? PrintMode::Preview : PrintMode::Print);
    } else if (command == "Exit") {
        Close();
    }
}

PartyLedgerScreen::PartyLedgerScreen(DeskApp& app)
    : BooksReportScreen(app, kPartyLedgerKey, "Ledger Account", Asks::Period, [](ui::Screen& screen) {
          return std::vector<ui::Control*>{&screen.Add<ui::TextBox>(kPartyBox, "Party")};
      }),
      party_(&Get<ui::TextBox>(kPartyBox)) {
    party_->OnValidate = [this](bool& cancel) { cancel = !TakeTyped().empty(); };
    party_->OnLookup = [this] { Desk().Guard([&] { LookUp(); }); };
}

void PartyLedgerScreen::FirstActivate() {
    BooksReportScreen::FirstActivate();
    if (!account_) Focus(*party_);
}

PrintJob PartyLedgerScreen::Make(const Period& period) {
    if (!account_) return {};
    return PartyLedgerJob(Desk().DeskSession().Database(), *account_, period);
}

// The name typed is the account's, letter case aside; one the books do not hold is refused and
// the box keeps it, to be put right. Returns the refusal shown, empty when taken.
std::string PartyLedgerScreen::TakeTyped() {
    if (party_->Text().empty() || (account_ && party_->Text() == account_->name)) return {};
    try {
        account_ = FindAccount(Desk().DeskSession().Database(), party_->Text());
    } catch (const std::runtime_error& refusal) {
        Desk().ShowMessage(refusal.what(), "", "E");
        return refusal.what();
    }
    party_->SetText(account_->name);
    Build();
    return {};
}

// The host's party picker: every account with its balance, opened at what was typed.
void PartyLedgerScreen::LookUp() {
    const auto chosen = Desk().SelectParty(party_->Text());
    if (!chosen) return;
    account_ = *chosen;
    party_->SetText(account_->name);
    Build();
    grid_.SetFocus();
}

// The party typed into its box as the user types it, and refused as the box refuses it.
void PartyLedgerScreen::TakeArguments(const ReportArguments& arguments) {
    std::string party;
    for (const auto& [name, value] : arguments)
        if (name == "party") party = value;
    if (party.empty()) throw std::runtime_error("A ledger is of one party: give it with --party NAME.");
    Focus(*party_);
    party_->Type(party);
    if (const std::string refusal = TakeTyped(); !refusal.empty()) throw std::runtime_error(refusal);
}

void RegisterHostLedgers(DeskApp& app) {
    app.RegisterHostScreen("Accounts", kPartyLedgerKey, "Party Ledger",
                           [&app] { return std::make_shared<PartyLedgerScreen>(app); });
    app.RegisterHostScreen("Accounts", kDayBookKey, "Day Book", [&app] {
        return std::make_shared<BooksJobScreen>(app, kDayBookKey, "Day Book", BooksReportScreen::Asks::Period,
                                                DayBookJob);
    });
    app.RegisterHostScreen("Accounts", kTrialBalanceKey, "Trial Balance", [&app] {
        return std::make_shared<BooksJobScreen>(app, kTrialBalanceKey, "Trial Balance", BooksReportScreen::Asks::Day,
                                                [](CompanyDb& db, const Period& day) { return TrialBalanceJob(db, day.to); });
    });
    app.RegisterHostScreen("Accounts", kOutstandingKey, "Outstanding List", [&app] {
        return std::make_shared<BooksJobScreen>(app, kOutstandingKey, "Outstanding Balances",
                                                BooksReportScreen::Asks::Day,
                                                [](CompanyDb& db, const Period& day) { return OutstandingJob(db, day.to); });
    });
}

std::vector<std::pair<std::string, std::string>> HostReports() {
    return {{"ledger", kPartyLedgerKey},
            {"day-book", kDayBookKey},
            {"trial-balance", kTrialBalanceKey},
            {"outstanding", kOutstandingKey}};
}

} // namespace qx::desk
