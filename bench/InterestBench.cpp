// The interest statement of a party with 20,000 ledger entries, worked out and laid out as its
// grid and print job, beside its floor in the same run: its two statements (the opening balance
// and the entries) run bare through SQLite. It should take at most 1.5 times its floor.
#include "Floor.h"
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include "desk/core/VoucherRows.h"
#include "kivra/interest/InterestGrid.h"
#include "kivra/interest/InterestLedger.h"

namespace qx::bench {
namespace {

constexpr int kEntries = 20000;
constexpr std::int32_t kParty = 101;
const qx::Period kYear{Date::FromYmd(2024, 4, 1), Date::FromYmd(2025, 3, 31)};

// A farmer's account: 20,000 entries in the year, some 55 a day, and 1,000 in the 90 days before
// it for its opening balance, each against CASH as the host writes a voucher: loans and payments
// (debits), his produce sold (credits), a few memoranda.
std::filesystem::path BusyPartyCompany() {
    const auto path = RunFolder() / "interest.kdb";
    desk::Session session;
    session.Create(path, "Interest benchmark");
    CompanyDb& db = session.Database();
    db.ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST, MCRDAYS, MINTTRATE) VALUES (1, 'CASH', '', 0, 0), "
                  "(101, 'GURMEET SINGH', 'KHANNA', 15, 12)");
    const char* const narrations[] = {"Cash for diesel", "J-Form paddy", "Seed on credit", "Urea bags",
                                      "J-Form wheat", "Bank payment, UTR", "Tractor hire", "Labour advance"};
    desk::LedgerVoucherUtil vouchers;
    Transaction unit(db);
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    constexpr int kBefore = 1000; // in the 90 days before the year
    for (int i = 0; i < kBefore + kEntries; ++i) {
        const Date day = i < kBefore ? kYear.from.AddDays(-90 + i * 90 / kBefore)
                                     : kYear.from.AddDays((i - kBefore) * 365 / kEntries);
        const bool credit = i % 3 == 1;
        const Amount amount = Amount::FromInt(500 + (i * 37) % 9500) * (credit ? -1 : 1);
        const char* book = i % 50 == 7 ? "MEM" : credit ? "JF" : "CB";
        const std::string narration = narrations[i % 8];
        const std::int32_t voucher = i + 1;
        vouchers.AddVoucherRow(db, *rows, {"PMT", book, "", "", 1, day, kParty, voucher, amount, narration});
        vouchers.AddVoucherRow(db, *rows, {"PMT", book, "CASH", "", 2, day, 1, voucher, -amount, narration});
    }
    unit.Commit();
    return path;
}

void InterestStatement(benchmark::State& state, kivra::InterestScreen screen) {
    static const std::filesystem::path company = BusyPartyCompany();
    MandiDesk desk(company);
    RecordingHost host(desk.module.Context()->App());
    kivra::ModuleContext context(host);
    kivra::InterestTerms terms;
    terms.screen = screen;
    terms.rate = Amount::FromInt(12);
    terms.creditDays = 15;
    terms.totalDays = 365;
    auto build = [&] {
        return kivra::StatementJob(
            kivra::WorkOutInterest(terms, kYear, kivra::ReadLedger(context, screen, kParty, kYear)));
    };
    BesideItsFloor(state, company, host.db, build);
}

// The first screen, Method 1, over the year: the memoranda left out.
BENCHMARK_CAPTURE(InterestStatement, first_screen_20000_entries, kivra::InterestScreen::First)
    ->Unit(benchmark::kMillisecond);
// The second screen reads every row of the year.
BENCHMARK_CAPTURE(InterestStatement, second_screen_20000_entries, kivra::InterestScreen::Second)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
