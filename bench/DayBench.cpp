// Saving a J-Form posts its day's consolidated voucher afresh: the cost of a save grows with the
// forms of its day, and must not grow with the season. A J-Form of a mid-season day is opened,
// its rate changed and saved through the entry screen; on another copy of the same company the
// floor of that save is measured in the same run: the same rows written through SQLite's own
// prepared statements in one transaction, nothing checked or worked out.
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <memory>

namespace qx::bench {
namespace {

// What a save writes of a J-Form and its day: header, lines with the module's factors and
// levies, charges, and the day's voucher.
std::string Written(CompanyDb& db, std::int32_t documentId, Date day) {
    const std::string id = std::to_string(documentId);
    return Rows(db, "SELECT * FROM DOCMAIN WHERE DOCUMENTID=" + id) +
           Rows(db, "SELECT * FROM DOCDATA WHERE DOCUMENTID=" + id + " ORDER BY REFNO") +
           Rows(db, "SELECT * FROM DOCCHARGEDATA WHERE DOCUMENTID=" + id + " ORDER BY POSITION") +
           Rows(db, "SELECT VOUCHERID, DSRNO, DCD, DAMT, NARRATIONID, DDOCUMENTID FROM FADATA "
                    "WHERE DTRNTYPE='IJF' AND DVCHDATE=" +
                        db.DateLiteral(day) + " ORDER BY DSRNO");
}

// The statements of one save, on a company of its own, prepared once.
class SaveFloor {
public:
    SaveFloor(const std::filesystem::path& company, std::int32_t documentId, Date day) {
        if (sqlite3_open_v2(company.c_str(), &db_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            throw std::runtime_error("the floor's company did not open");
        const std::string id = std::to_string(documentId);
        const std::string dayText = "'" + day.ToIso() + "'";
        main_ = Capture("SELECT * FROM DOCMAIN WHERE DOCUMENTID=" + id);
        lines_ = Capture("SELECT * FROM DOCDATA WHERE DOCUMENTID=" + id);
        charges_ = Capture("SELECT * FROM DOCCHARGEDATA WHERE DOCUMENTID=" + id);
        voucher_ = Capture("SELECT F.*, N.NARRATION FROM FADATA F JOIN FANAR N ON "
                           "N.NARRATIONID=F.NARRATIONID WHERE F.DTRNTYPE='IJF' AND F.DVCHDATE=" +
                           dayText);
        register_ = Capture("SELECT * FROM FADOCS WHERE VOUCHERID=(SELECT VOUCHERID FROM FADATA "
                            "WHERE DTRNTYPE='IJF' AND DVCHDATE=" +
                            dayText + " LIMIT 1)");
        for (const char* sql :
             {"BEGIN IMMEDIATE", "COMMIT", "DELETE FROM DOCDATA WHERE DOCUMENTID=?1",
              "DELETE FROM DOCCHARGEDATA WHERE DOCUMENTID=?1",
              "DELETE FROM FADATA WHERE DTRNTYPE='IJF' AND DVCHDATE=?1",
              "DELETE FROM FADOCS WHERE VOUCHERID=?1",
              "SELECT NARRATIONID FROM FANAR WHERE NARRATION=?1"})
            statements_.push_back(Prepare(sql));
        updateMain_ = Prepare(Update("DOCMAIN", main_, "DOCUMENTID"));
        insertLine_ = Prepare(Insert("DOCDATA", lines_));
        insertCharge_ = Prepare(Insert("DOCCHARGEDATA", charges_));
        insertLedger_ = Prepare(Insert("FADATA", voucher_, 1));
        insertRegister_ = Prepare(Insert("FADOCS", register_));
        documentId_ = documentId;
        day_ = day.ToIso();
    }
    ~SaveFloor() {
        for (auto* rows : {&main_, &lines_, &charges_, &voucher_, &register_})
            for (auto& row : rows->values)
                for (sqlite3_value* value : row)
                    sqlite3_value_free(value);
        for (sqlite3_stmt* statement : statements_)
            sqlite3_finalize(statement);
        for (sqlite3_stmt* statement :
             {updateMain_, insertLine_, insertCharge_, insertLedger_, insertRegister_})
            sqlite3_finalize(statement);
        sqlite3_close(db_);
    }
    SaveFloor(const SaveFloor&) = delete;
    SaveFloor& operator=(const SaveFloor&) = delete;

    void Run() {
        Step(statements_[0]);
        Step(Bound(statements_[2], documentId_));
        Step(Bound(statements_[3], documentId_));
        Write(updateMain_, main_.values[0], main_.values[0].size());
        sqlite3_bind_int(updateMain_, static_cast<int>(main_.values[0].size()) + 1, documentId_);
        Step(updateMain_);
        for (const auto& line : lines_.values)
            Step(Write(insertLine_, line, line.size()));
        for (const auto& charge : charges_.values)
            Step(Write(insertCharge_, charge, charge.size()));
        sqlite3_stmt* deleteDay = statements_[4];
        sqlite3_bind_text(deleteDay, 1, day_.c_str(), -1, SQLITE_STATIC);
        Step(deleteDay);
        const int voucherId = sqlite3_value_int(register_.values[0][0]);
        Step(Bound(statements_[5], voucherId));
        sqlite3_stmt* narration = statements_[6];
        for (const auto& row : voucher_.values) {
            // Each row's narration is looked up, as every ledger row's is.
            sqlite3_bind_value(narration, 1, row.back());
            sqlite3_step(narration);
            sqlite3_reset(narration);
            Step(Write(insertLedger_, row, row.size() - 1));
        }
        Step(Write(insertRegister_, register_.values[0], register_.values[0].size()));
        Step(statements_[1]);
    }

private:
    struct Captured {
        std::vector<std::string> columns;
        std::vector<std::vector<sqlite3_value*>> values;
    };

    sqlite3_stmt* Prepare(const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(std::string(sqlite3_errmsg(db_)) + " in " + sql);
        return statement;
    }
    Captured Capture(const std::string& sql) {
        Captured captured;
        sqlite3_stmt* statement = Prepare(sql);
        for (int i = 0; i < sqlite3_column_count(statement); ++i)
            captured.columns.emplace_back(sqlite3_column_name(statement, i));
        while (sqlite3_step(statement) == SQLITE_ROW) {
            auto& row = captured.values.emplace_back();
            for (int i = 0; i < sqlite3_column_count(statement); ++i)
                row.push_back(sqlite3_value_dup(sqlite3_column_value(statement, i)));
        }
        sqlite3_finalize(statement);
        if (captured.values.empty())
            throw std::runtime_error("the floor found nothing for " + sql);
        return captured;
    }
    static std::string Insert(const std::string& table, const Captured& rows, std::size_t extra = 0) {
        std::string columns, parameters;
        for (std::size_t i = 0; i + extra < rows.columns.size(); ++i) {
            columns += (i ? "," : "") + rows.columns[i];
            parameters += i ? ",?" : "?";
        }
        return "INSERT INTO " + table + " (" + columns + ") VALUES (" + parameters + ")";
    }
    static std::string Update(const std::string& table, const Captured& rows,
                              const std::string& key) {
        std::string assignments;
        for (std::size_t i = 0; i < rows.columns.size(); ++i)
            assignments += (i ? "," : "") + rows.columns[i] + "=?";
        return "UPDATE " + table + " SET " + assignments + " WHERE " + key + "=?" +
               std::to_string(rows.columns.size() + 1);
    }
    static sqlite3_stmt* Write(sqlite3_stmt* statement, const std::vector<sqlite3_value*>& row,
                               std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            sqlite3_bind_value(statement, static_cast<int>(i) + 1, row[i]);
        return statement;
    }
    static sqlite3_stmt* Bound(sqlite3_stmt* statement, int value) {
        sqlite3_bind_int(statement, 1, value);
        return statement;
    }
    void Step(sqlite3_stmt* statement) {
        if (const int result = sqlite3_step(statement); result != SQLITE_DONE)
            throw std::runtime_error(std::string("the floor failed: ") + sqlite3_errmsg(db_));
        sqlite3_reset(statement);
    }

    sqlite3* db_ = nullptr;
    Captured main_, lines_, charges_, voucher_, register_;
    std::vector<sqlite3_stmt*> statements_;
    sqlite3_stmt* updateMain_ = nullptr;
    sqlite3_stmt* insertLine_ = nullptr;
    sqlite3_stmt* insertCharge_ = nullptr;
    sqlite3_stmt* insertLedger_ = nullptr;
    sqlite3_stmt* insertRegister_ = nullptr;
    int documentId_ = 0;
    std::string day_;
};

// Arguments: J-Forms a day, days of the season.
void SaveJFormWithItsDay(benchmark::State& state) {
    SeasonSize size;
    size.jFormsPerDay = static_cast<int>(state.range(0));
    size.days = static_cast<int>(state.range(1));
    const std::string name = std::to_string(size.jFormsPerDay) + "x" + std::to_string(size.days);
    MandiDesk desk(SeasonCompanyCopy("day-" + name, size));
    CompanyDb& db = desk.Db();
    const Date day = kSeasonStart.AddDays(size.days / 2);
    std::vector<std::int32_t> forms;
    for (auto rows = db.OpenRecordset("SELECT DOCUMENTID FROM DOCMAIN WHERE DOCSERIES='JF' AND "
                                      "DOCDATE=" +
                                      db.DateLiteral(day) + " ORDER BY DOCNUMBER");
         !rows->EndOfRows(); rows->MoveNext())
        forms.push_back(rows->Field(0).AsInt());
    auto& screen = desk.OpenMenu("JForms");
    // A generated form saved unchanged must come out as generated, its day's voucher too:
    // otherwise the season is not what the engine makes, and its figures would mislead.
    const std::string generated = Written(db, forms.front(), day);
    screen.OpenDocument(forms.front());
    if (!screen.SaveDocument() || !desk.frontend.Transcript().empty() ||
        Written(db, forms.front(), day) != generated) {
        state.SkipWithError(("the generated J-Form does not save as generated: " +
                             desk.FirstMessage() + "\n" + generated + "saved as\n" +
                             Written(db, forms.front(), day))
                                .c_str());
        return;
    }
    SaveFloor floor(SeasonCompanyCopy("floor-" + name, size), forms.front(), day);

    std::chrono::duration<double, std::milli> floorTime{};
    std::size_t saves = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const bool up = (saves / forms.size()) % 2 == 0;
        screen.OpenDocument(forms[saves++ % forms.size()]);
        const Amount rate = TextToAmount(screen.Grid().TextMatrix(1, screen.Member("COL_RATE")));
        MandiDesk::TypeLine(screen, 1,
                            {{"RATE", (rate + Amount::FromInt(up ? 1 : -1)).ToPlainString()}});
        desk.frontend.ClearTranscript();
        const auto floorStart = std::chrono::steady_clock::now();
        floor.Run();
        floorTime += std::chrono::steady_clock::now() - floorStart;
        state.ResumeTiming();
        if (!screen.SaveDocument() || !desk.frontend.Transcript().empty()) {
            state.SkipWithError(("the J-Form was not saved quietly: " + desk.FirstMessage()).c_str());
            break;
        }
    }
    state.counters["floor_ms"] = floorTime.count() / static_cast<double>(saves);
    state.counters["day_rows"] = static_cast<double>(
        db.LookupValue("FADATA", "COUNT(*)", "DTRNTYPE='IJF' AND DVCHDATE=" + db.DateLiteral(day))
            .AsLong());
    state.counters["documents"] =
        static_cast<double>(db.LookupValue("DOCMAIN", "COUNT(*)", "").AsLong());
}
// Days of 100, 300 and 1,000 J-Forms; and days of 300 in seasons of 30, 180 and 360 days.
BENCHMARK(SaveJFormWithItsDay)
    ->Args({100, 180})
    ->Args({300, 180})
    ->Args({1000, 60})
    ->Args({300, 30})
    ->Args({300, 360})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
