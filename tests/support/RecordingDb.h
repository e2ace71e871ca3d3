#pragma once
// A company database that keeps the statements run through it, in order, and passes them on.

#include "host/CompanyDb.h"

#include <string>
#include <vector>

namespace qx::test {

class RecordingDb : public CompanyDb {
public:
    explicit RecordingDb(CompanyDb& inner) : inner_(inner) {}

    void ExecuteSql(std::string_view sql, int options) override {
        executed.emplace_back(sql);
        inner_.ExecuteSql(sql, options);
    }
    std::unique_ptr<Recordset> OpenRecordset(std::string_view sql) override { return inner_.OpenRecordset(sql); }
    bool TableExists(std::string_view table) override { return inner_.TableExists(table); }
    bool FieldExists(std::string_view field, std::string_view table) override {
        return inner_.FieldExists(field, table);
    }
    void AddFields(std::string_view table, std::string_view sqlType, const std::vector<std::string>& fields) override {
        std::string call = std::string(table) + " " + std::string(sqlType) + ":";
        for (const auto& field : fields)
            if (!inner_.FieldExists(field, table)) call += " " + field;
        added.push_back(call);
        if (failAddFieldsOn == table) throw DbError("refused by the test");
        inner_.AddFields(table, sqlType, fields);
    }
    Value LookupValue(std::string_view table, std::string_view field, std::string_view condition) override {
        return inner_.LookupValue(table, field, condition);
    }
    Value LookupValue(std::string_view table, std::string_view field, std::string_view condition,
                      const std::vector<Value>& values) override {
        return inner_.LookupValue(table, field, condition, values);
    }
    std::string DateLiteral(Date date) const override { return inner_.DateLiteral(date); }
    void BeginTransaction() override { inner_.BeginTransaction(); }
    void Commit() override { inner_.Commit(); }
    void Rollback() override { inner_.Rollback(); }

    std::vector<std::string> executed;
    // Per AddFields call: "TABLE TYPE: the fields that were missing".
    std::vector<std::string> added;
    std::string failAddFieldsOn;

private:
    CompanyDb& inner_;
};

} // namespace qx::test
