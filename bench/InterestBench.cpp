// The interest statement of a party with 20,000 ledger entries (PartyBooks.h), worked out and
// laid out as its grid and print job, beside its floor in the same run: its two statements (the
// opening balance and the entries) run bare through SQLite. It should take at most 1.5 times its
// floor.
#include "Floor.h"
#include "MandiDesk.h"
#include "PartyBooks.h"

#include "kivra/interest/InterestGrid.h"
#include "kivra/interest/InterestLedger.h"

namespace qx::bench {
namespace {

void InterestStatement(benchmark::State& state, kivra::InterestScreen screen) {
    const PartyBooks& books = PartyWithEntries(20000);
    MandiDesk desk(books.company);
    RecordingHost host(desk.module.Context()->App());
    kivra::ModuleContext context(host);
    kivra::InterestTerms terms;
    terms.screen = screen;
    terms.rate = Amount::FromInt(12);
    terms.creditDays = 15;
    terms.totalDays = 365;
    auto build = [&] {
        return kivra::StatementJob(
            kivra::WorkOutInterest(terms, books.year, kivra::ReadLedger(context, screen, books.party, books.year)));
    };
    BesideItsFloor(state, books.company, host.db, build);
}

// The first screen, Method 1, over the year: the memoranda left out.
BENCHMARK_CAPTURE(InterestStatement, first_screen_20000_entries, kivra::InterestScreen::First)
    ->Unit(benchmark::kMillisecond);
// The second screen reads every row of the year.
BENCHMARK_CAPTURE(InterestStatement, second_screen_20000_entries, kivra::InterestScreen::Second)
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
