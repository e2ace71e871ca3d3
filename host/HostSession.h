#pragma once
// The session: the open company's database, its firm settings and numbered options.

#include "CompanyDb.h"
#include "PropertyBag.h"

#include <string>

namespace qx {

class HostSession {
public:
    virtual ~HostSession() = default;
    virtual bool HasCompany() const = 0;
    // Throws std::logic_error when no company is open.
    virtual CompanyDb& Database() = 0;
    // Firm settings such as "FirmProperties"; changes are kept in the company.
    virtual const PropertyBag& FirmSettings() const = 0;
    virtual void SetFirmSetting(std::string_view name, Value value) = 0;
    // Numbered firm option as text; "" when never set. An option is on when it reads "Yes".
    virtual std::string GetOption(int number) const = 0;
};

} // namespace qx
