#pragma once
// A season-sized mandi company for measuring saves and reports: a commission agent's firm in
// four mandis with a few hundred farmers, forty buyers and five items with their charge
// rates, the four mandi series, and a season of J-Forms, the I-Forms that take them over and
// the ledger rows of its days. Only the last day's J-Forms are still pending.

#include "host/Date.h"

#include <filesystem>
#include <string>

namespace qx::bench {

struct SeasonSize {
    int days = 180;
    int jFormsPerDay = 300;
    int linesPerJForm = 2;
    int farmers = 400;
    int buyers = 40; // SELF, the agent buying for his own stock, among them
};

// Account codes: farmers and buyers are numbered from these, SELF has a code of its own.
inline constexpr int kFirstFarmerCode = 1001;
inline constexpr int kFirstBuyerCode = 5001;
inline constexpr int kSelfCode = 5000;

// The season's first day; its last is days - 1 later.
inline const Date kSeasonStart = Date::FromYmd(2024, 10, 1);

// Writes the company at path, which must not exist. The masters and series go in as a user's
// set-up would put them; the season's documents and payments are written directly, in one
// unit of work, as the document engine and the module write them, and each day's consolidated
// voucher is then posted by the module itself. Throws when the company
// made does not add up (a day's voucher that does not balance, pending quantities that are
// not the last day's).
void MakeSeasonCompany(const std::filesystem::path& path, const SeasonSize& size = {});

// The company the benchmarks of a run read: the file named by QX_BENCH_COMPANY (made there
// first when missing, and kept), else one made once per run in a temporary folder and removed
// at exit. Nothing is saved into it.
const std::filesystem::path& SeasonCompany();
// The run's own temporary folder, removed at exit.
const std::filesystem::path& RunFolder();
// A season of another size, made once per run in its temporary folder.
std::filesystem::path SeasonCompany(const SeasonSize& size);
// A fresh copy of such a company for a benchmark that saves, so that what it writes changes
// nothing another benchmark reads; in the run's temporary folder, removed at exit.
std::filesystem::path SeasonCompanyCopy(const std::string& name, const SeasonSize& size = {});

} // namespace qx::bench
