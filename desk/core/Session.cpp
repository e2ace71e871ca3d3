#include "Session.h"

#include "desk/db/SqliteCompanyDb.h"

#include <stdexcept>

namespace qx::desk {

Session::Session() = default;
Session::~Session() = default;

void Session::Open(const std::filesystem::path& path) {
    auto db = db::SqliteCompanyDb::Open(path);
    Adopt(std::move(db), path);
}

void Session::Create(const std::filesystem::path& path, const std::string& companyName) {
    Adopt(db::SqliteCompanyDb::Create(path, companyName), path);
}

void Session::Adopt(std::unique_ptr<CompanyDb> db, std::filesystem::path path) {
    db_ = std::move(db);
    path_ = std::move(path);
    LoadSettings();
}

void Session::Close() {
    db_.reset();
    path_.clear();
    settings_ = PropertyBag();
}

CompanyDb& Session::Database() {
    if (!db_) throw std::logic_error("No company is open.");
    return *db_;
}

std::string Session::CompanyName() {
    return Database().LookupValue("QXCOMPANY", "VALUE", "NAME='COMPANYNAME'").AsText();
}

void Session::LoadSettings() {
    settings_ = PropertyBag();
    auto rows = db_->OpenRecordset("SELECT NAME, VALUE FROM FIRMSETTINGS");
    for (; !rows->EndOfRows(); rows->MoveNext())
        settings_.SetValue(rows->Field(0).AsText(), rows->Field(1).AsText());
}

void Session::SetFirmSetting(std::string_view name, Value value) {
    auto rows = Database().OpenRecordset("SELECT * FROM FIRMSETTINGS WHERE NAME=" + SqlQuote(name));
    if (rows->EndOfRows()) {
        rows->AddNew();
        rows->SetField("NAME", std::string(name));
    }
    rows->SetField("VALUE", value.AsText());
    rows->Update();
    settings_.SetValue(name, value.AsText());
}

std::string Session::GetOption(int number) const {
    if (!db_) return {};
    return db_->LookupValue("FIRMOPTIONS", "OPTIONVALUE", "OPTIONNO=" + std::to_string(number))
        .AsText();
}

void Session::SetOption(int number, const std::string& value) {
    auto rows = Database().OpenRecordset("SELECT * FROM FIRMOPTIONS WHERE OPTIONNO=" +
                                         std::to_string(number));
    if (rows->EndOfRows()) {
        rows->AddNew();
        rows->SetField("OPTIONNO", number);
    }
    rows->SetField("OPTIONVALUE", value);
    rows->Update();
}

} // namespace qx::desk
