// The module's registers built as their print jobs on the season company, each beside its
// floor in the same run: the statements the register ran, prepared once on a connection of
// their own and stepped through bare, every column of every row read, nothing else. A
// register should take at most 1.5 times its floor.
#include "Floor.h"
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include "kivra/reports/DailySummary.h"
#include "kivra/reports/FormM.h"
#include "kivra/reports/StockRegister.h"

#include <benchmark/benchmark.h>

#include <functional>

namespace qx::bench {
namespace {

using Builder = std::function<PrintJob(kivra::ModuleContext&)>;

void Register(benchmark::State& state, const Builder& build) {
    // Form-M adds its UTR fields to a company that lacks them: not to the company of the run.
    static const std::filesystem::path company = SeasonCompanyCopy("registers");
    MandiDesk desk(company);
    RecordingHost host(desk.module.Context()->App());
    kivra::ModuleContext context(host);
    BesideItsFloor(state, company, host.db, [&] { return build(context); });
}

kivra::ReportScope Scope(Date from, Date to) { return {from, to, 0, ""}; }

// A mid-season day: J-Forms, the I-Forms that take their lines over, self purchases, the
// goods account, every market.
BENCHMARK_CAPTURE(Register, daily_summary_of_a_day, [](kivra::ModuleContext& context) {
    const Date day = kSeasonStart.AddDays(SeasonSize{}.days / 2);
    return kivra::DailySummaryJob(context, Scope(day, day));
})->Unit(benchmark::kMillisecond);

// The weekly return of Monday 04/11/2024 to Sunday 10/11/2024, every market, line by line.
BENCHMARK_CAPTURE(Register, form_m_of_a_week, [](kivra::ModuleContext& context) {
    return kivra::FormMJob(context, Scope(Date::FromYmd(2024, 11, 4), Date::FromYmd(2024, 11, 10)),
                           kivra::FormMOptions{});
})->Unit(benchmark::kMillisecond);

// Every item, day by day through the season.
BENCHMARK_CAPTURE(Register, stock_register_of_the_season, [](kivra::ModuleContext& context) {
    return kivra::StockRegisterJob(
        context, Scope(kSeasonStart, kSeasonStart.AddDays(SeasonSize{}.days - 1)), "");
})->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
