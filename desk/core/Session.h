#pragma once
// The open company: its database, firm settings and numbered options.

#include "host/HostSession.h"

#include <filesystem>
#include <memory>

namespace qx::desk {

class Session : public HostSession {
public:
    Session();
    ~Session() override;

    // Opens a company file, read-only when the user may not write it; throws DbError saying
    // what keeps it from opening (the file is then left untouched).
    void Open(const std::filesystem::path& path);
    // Creates a new company file and opens it; refuses a path that exists.
    void Create(const std::filesystem::path& path, const std::string& companyName);
    // Takes over an already opened database.
    void Adopt(std::unique_ptr<CompanyDb> db, std::filesystem::path path);
    void Close();
    const std::filesystem::path& Path() const { return path_; }
    // The company's name as given when it was created.
    std::string CompanyName();

    bool HasCompany() const override { return db_ != nullptr; }
    CompanyDb& Database() override;
    const PropertyBag& FirmSettings() const override { return settings_; }
    void SetFirmSetting(std::string_view name, Value value) override;
    std::string GetOption(int number) const override;
    void SetOption(int number, const std::string& value);

private:
    void LoadSettings();

    std::unique_ptr<CompanyDb> db_;
    std::filesystem::path path_;
    PropertyBag settings_;
};

} // namespace qx::desk
