#pragma once
// QX Desk's screens of the books: the party ledger, the day book, the trial balance and the
// outstanding list. Each shows its print job in a grid under its heading, asks its period (or
// its day) on opening and on F6 through the host's dialog, previews on F8 and prints on F9;
// a cancelled question on opening closes the screen without a report.

#include "LedgerReports.h"

#include "desk/core/DeskApp.h"
#include "host/ReportSource.h"
#include "host/ui/Screen.h"

#include <functional>
#include <optional>

namespace qx::desk {

// Menu keys of the screens, which `qx report` opens by them too.
inline constexpr const char* kPartyLedgerKey = "PartyLedger";
inline constexpr const char* kDayBookKey = "DayBook";
inline constexpr const char* kTrialBalanceKey = "TrialBalance";
inline constexpr const char* kOutstandingKey = "Outstanding";

// The party box of the ledger.
inline constexpr const char* kPartyBox = "txpParty";

class BooksReportScreen : public ui::Screen, public ReportSource {
public:
    // What the report asks: a period (From and To) or a day (as on), kept under the key.
    enum class Asks { Period, Day };
    const PrintJob& Report() const override { return job_; }

protected:
    using OptionsRow = std::function<std::vector<ui::Control*>(ui::Screen&)>;
    BooksReportScreen(DeskApp& app, const std::string& key, std::string title, Asks asks,
                      const OptionsRow& options = {});
    void FirstActivate() override;
    void Unload() override { app_.UnregisterWindow(*this); }

    // The report of the period (a day's report has From and To the same), built again and shown.
    virtual PrintJob Make(const Period& period) = 0;
    void Build();
    DeskApp& Desk() { return app_; }

    ui::Grid& grid_;

private:
    bool AskPeriod();
    void OnCommand(const std::string& key);

    DeskApp& app_;
    std::string key_;
    Asks asks_;
    Period period_;
    ui::Label& heading_;
    ui::ButtonBar& bar_;
    PrintJob job_;
};

// The ledger of one party: its name typed into the party box (or chosen with F2 in the host's
// party picker, which shows the balances) and the period. `qx report ledger` takes the party
// as its argument "party".
class PartyLedgerScreen : public BooksReportScreen {
public:
    explicit PartyLedgerScreen(DeskApp& app);
    std::vector<std::string> ArgumentNames() const override { return {"party"}; }
    void TakeArguments(const ReportArguments& arguments) override;

private:
    PrintJob Make(const Period& period) override;
    void FirstActivate() override;
    std::string TakeTyped();
    void LookUp();

    ui::TextBox* party_;
    std::optional<ChosenAccount> account_;
};

// Registers the screens in the main menu's "Accounts".
void RegisterHostLedgers(DeskApp& app);

// The reports `qx report` makes of them: its name and the menu key ("ledger" -> PartyLedger).
std::vector<std::pair<std::string, std::string>> HostReports();

} // namespace qx::desk
