// The ledger of a party with many entries, built as its print job as its screen builds it,
// beside its floor in the same run (Floor.h). It should take at most 1.5 times its floor.
#include "Floor.h"
#include "PartyBooks.h"

#include "desk/core/Session.h"
#include "desk/ledgers/LedgerReports.h"

namespace qx::bench {
namespace {

void PartyLedger(benchmark::State& state) {
    const PartyBooks& books = PartyWithEntries(static_cast<int>(state.range(0)));
    desk::Session session;
    session.Open(books.company);
    RecordingDb db(session.Database());
    const ChosenAccount party{books.party, "GURMEET SINGH"};
    BesideItsFloor(state, books.company, db, [&] { return desk::PartyLedgerJob(db, party, books.year); });
}

// The whole year of a party with 20,000 entries.
BENCHMARK(PartyLedger)->Arg(20000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
