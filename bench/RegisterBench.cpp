// The module's registers built as their print jobs on the season company, each beside its
// floor in the same run: the statements the register ran, prepared once on a connection of
// their own and stepped through bare, every column of every row read, nothing else. A
// register should take at most 1.5 times its floor.
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include "desk/db/DecimalSum.h"
#include "desk/db/SqlAdapter.h"
#include "host/HostApp.h"
#include "kivra/reports/DailySummary.h"
#include "kivra/reports/FormM.h"
#include "kivra/reports/StockRegister.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <functional>
#include <stdexcept>

namespace qx::bench {
namespace {

// The company's database, keeping the text of every query a register runs through it.
class RecordingDb final : public CompanyDb {
public:
    explicit RecordingDb(CompanyDb& db) : db_(db) {}
    std::vector<std::string> queries;

    void ExecuteSql(std::string_view sql, int options) override { db_.ExecuteSql(sql, options); }
    std::unique_ptr<Recordset> OpenRecordset(std::string_view sql) override {
        queries.emplace_back(sql);
        return db_.OpenRecordset(sql);
    }
    bool TableExists(std::string_view table) override { return db_.TableExists(table); }
    bool FieldExists(std::string_view field, std::string_view table) override {
        return db_.FieldExists(field, table);
    }
    void AddFields(std::string_view table, std::string_view sqlType,
                   const std::vector<std::string>& fields) override {
        db_.AddFields(table, sqlType, fields);
    }
    // Its statement is the database's own: the floor could not run it.
    Value LookupValue(std::string_view, std::string_view, std::string_view) override {
        throw std::logic_error("a register looked a value up, which its floor would leave out");
    }
    Value LookupValue(std::string_view, std::string_view, std::string_view,
                      const std::vector<Value>&) override {
        throw std::logic_error("a register looked a value up, which its floor would leave out");
    }
    std::string DateLiteral(Date date) const override { return db_.DateLiteral(date); }
    void BeginTransaction() override { db_.BeginTransaction(); }
    void Commit() override { db_.Commit(); }
    void Rollback() override { db_.Rollback(); }

private:
    CompanyDb& db_;
};

// The host as the module sees it, with the company's database recording.
class RecordingHost final : public HostApp, public HostSession {
    HostApp& app_;

public:
    explicit RecordingHost(HostApp& app) : app_(app), db(app.Session().Database()) {}
    RecordingDb db;

    HostMainForm& MainForm() override { return app_.MainForm(); }
    void Subscribe(HostAppEvents& listener) override { app_.Subscribe(listener); }
    void Unsubscribe(HostAppEvents& listener) override { app_.Unsubscribe(listener); }
    HostSession& Session() override { return *this; }
    HostUi& Ui() override { return app_.Ui(); }
    ModuleUtil& Util() override { return app_.Util(); }
    VoucherUtil& Vouchers() override { return app_.Vouchers(); }

    bool HasCompany() const override { return app_.Session().HasCompany(); }
    CompanyDb& Database() override { return db; }
    const PropertyBag& FirmSettings() const override { return app_.Session().FirmSettings(); }
    void SetFirmSetting(std::string_view name, Value value) override {
        app_.Session().SetFirmSetting(name, std::move(value));
    }
    std::string GetOption(int number) const override { return app_.Session().GetOption(number); }
};

// The statements of a register, prepared once on a connection of their own to the company,
// with the company's exact SUM, without which a settled quantity would not sum to 0.
class Floor {
public:
    Floor(const std::filesystem::path& company, const std::vector<std::string>& queries) {
        if (sqlite3_open_v2(company.c_str(), &db_, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
            throw std::runtime_error("the floor's company did not open");
        db::RegisterDecimalSum(db_);
        for (const std::string& query : queries) {
            const std::string sql = db::AdaptSql(query);
            sqlite3_stmt* statement = nullptr;
            if (sqlite3_prepare_v2(db_, sql.c_str(), static_cast<int>(sql.size()), &statement,
                                   nullptr) != SQLITE_OK)
                throw std::runtime_error(std::string("the floor refused: ") + sqlite3_errmsg(db_));
            statements_.push_back(statement);
        }
    }
    ~Floor() {
        for (sqlite3_stmt* statement : statements_)
            sqlite3_finalize(statement);
        sqlite3_close(db_);
    }
    Floor(const Floor&) = delete;
    Floor& operator=(const Floor&) = delete;

    // Every statement stepped through, every column read as SQLite holds it; the rows read.
    std::int64_t Run() {
        std::int64_t rows = 0;
        for (sqlite3_stmt* statement : statements_) {
            const int columns = sqlite3_column_count(statement);
            int result = SQLITE_ROW;
            while ((result = sqlite3_step(statement)) == SQLITE_ROW) {
                ++rows;
                for (int i = 0; i < columns; ++i)
                    Read(statement, i);
            }
            if (result != SQLITE_DONE)
                throw std::runtime_error(std::string("the floor failed: ") + sqlite3_errmsg(db_));
            sqlite3_reset(statement);
        }
        return rows;
    }

private:
    static void Read(sqlite3_stmt* statement, int i) {
        switch (sqlite3_column_type(statement, i)) {
        case SQLITE_INTEGER:
            benchmark::DoNotOptimize(sqlite3_column_int64(statement, i));
            break;
        case SQLITE_FLOAT:
            benchmark::DoNotOptimize(sqlite3_column_double(statement, i));
            break;
        case SQLITE_TEXT:
            benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
            benchmark::DoNotOptimize(sqlite3_column_bytes(statement, i));
            break;
        default:
            break;
        }
    }

    sqlite3* db_ = nullptr;
    std::vector<sqlite3_stmt*> statements_;
};

using Builder = std::function<PrintJob(kivra::ModuleContext&)>;

void Register(benchmark::State& state, const Builder& build) {
    // Form-M adds its UTR fields to a company that lacks them: not to the company of the run.
    static const std::filesystem::path company = SeasonCompanyCopy("registers");
    MandiDesk desk(company);
    RecordingHost host(desk.module.Context()->App());
    kivra::ModuleContext context(host);
    const std::size_t lines = build(context).rows.size();
    const std::vector<std::string> queries = std::move(host.db.queries);
    Floor floor(company, queries);

    using Ms = std::chrono::duration<double, std::milli>;
    Ms floorTime{}, reportTime{};
    std::int64_t rows = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const auto floorStart = std::chrono::steady_clock::now();
        rows = floor.Run();
        floorTime += std::chrono::steady_clock::now() - floorStart;
        host.db.queries.clear();
        state.ResumeTiming();
        const auto start = std::chrono::steady_clock::now();
        const PrintJob job = build(context);
        reportTime += std::chrono::steady_clock::now() - start;
        benchmark::DoNotOptimize(job.rows.data());
    }
    // The floor must be the statements the register ran this time too.
    if (host.db.queries != queries)
        state.SkipWithError("the register ran other statements than its floor");
    const auto runs = static_cast<double>(state.iterations());
    state.counters["floor_ms"] = floorTime.count() / runs;
    state.counters["ratio"] = reportTime / floorTime;
    state.counters["statements"] = static_cast<double>(queries.size());
    state.counters["rows"] = static_cast<double>(rows);
    state.counters["lines"] = static_cast<double>(lines);
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
