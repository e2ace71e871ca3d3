#pragma once
// A report's floor: the statements it ran, prepared once on a connection of their own to the
// company and stepped through bare, every column of every row read, nothing else; and the host
// that records those statements as the report runs them.

#include "desk/db/DecimalSum.h"
#include "desk/db/SqlAdapter.h"
#include "host/CompanyDb.h"
#include "host/HostApp.h"
#include "host/HostSession.h"
#include "host/PrintJob.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace qx::bench {

// The company's database, keeping the text of every query a report runs through it; a look-up
// is kept as the statement the database runs for it.
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
    Value LookupValue(std::string_view table, std::string_view field, std::string_view condition) override {
        queries.push_back("SELECT " + std::string(field) + " FROM " + std::string(table) +
                          (condition.empty() ? "" : " WHERE " + std::string(condition)) + " LIMIT 1");
        return db_.LookupValue(table, field, condition);
    }
    // Its values are bound: the floor could not run it.
    Value LookupValue(std::string_view, std::string_view, std::string_view,
                      const std::vector<Value>&) override {
        throw std::logic_error("a report looked a value up with bound values, which its floor would leave out");
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

// The statements of a report, prepared once on a connection of their own to the company,
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

// Builds the report in each iteration and, untimed beside it, runs its floor: the statements it
// ran the first time, which it must run again every time. Counts the floor's time, the
// report's ratio to it, the statements, the rows they read and the lines of the report.
inline void BesideItsFloor(benchmark::State& state, const std::filesystem::path& company, RecordingDb& db,
                           const std::function<PrintJob()>& build) {
    const std::size_t lines = build().rows.size();
    const std::vector<std::string> queries = std::move(db.queries);
    Floor floor(company, queries);

    using Ms = std::chrono::duration<double, std::milli>;
    Ms floorTime{}, reportTime{};
    std::int64_t rows = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const auto floorStart = std::chrono::steady_clock::now();
        rows = floor.Run();
        floorTime += std::chrono::steady_clock::now() - floorStart;
        db.queries.clear();
        state.ResumeTiming();
        const auto start = std::chrono::steady_clock::now();
        const PrintJob job = build();
        reportTime += std::chrono::steady_clock::now() - start;
        benchmark::DoNotOptimize(job.rows.data());
    }
    if (db.queries != queries) state.SkipWithError("the report ran other statements than its floor");
    const auto runs = static_cast<double>(state.iterations());
    state.counters["floor_ms"] = floorTime.count() / runs;
    state.counters["ratio"] = reportTime / floorTime;
    state.counters["statements"] = static_cast<double>(queries.size());
    state.counters["rows"] = static_cast<double>(rows);
    state.counters["lines"] = static_cast<double>(lines);
}

} // namespace qx::bench
