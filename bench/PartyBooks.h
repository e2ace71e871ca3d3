#pragma once
// A party with many entries in the books, for the benchmarks of what reads one party's ledger
// (its ledger account, its interest statement).

#include "host/Date.h"
#include "host/HostUi.h"

#include <cstdint>
#include <filesystem>

namespace qx::bench {

struct PartyBooks {
    std::filesystem::path company;
    std::int32_t party = 0; // FAMASTER MCD, of the sundry creditors
    Period year;            // the financial year of the entries
};

// A company, made once per run for each count in the run's folder, in which the party has that
// many entries in the financial year 2024-25, some 55 a day for 20,000: an opening balance
// (book and type "0B") on its first day, then payments to him (PYMT, debits) and his goods sold
// (JRNL, credits) in turn, every fiftieth a memorandum (book "MEM"), each its own voucher
// against cash or sales with a narration of its own; and a twentieth as many in the 90 days
// before the year, which make his balance when it opens. Another party has as many entries on
// the same days, so that his rows are a part of the ledger, as in a real company. Every row goes
// through the host's voucher-row operation and every voucher into the register, in one unit of
// work.
const PartyBooks& PartyWithEntries(int entries);

} // namespace qx::bench
