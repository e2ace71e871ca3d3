#pragma once
// QX Desk's own masters and company settings, as entries of its main menu: under "Masters"
// the items, accounts, VAT categories, VAT classes and account groups; under "Company" the
// firm settings.

#include "desk/core/DeskApp.h"

namespace qx::desk {

void RegisterHostMasters(DeskApp& app);

} // namespace qx::desk
