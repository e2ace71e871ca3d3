#pragma once
// The desk's voucher entry in its main menu ("Accounts", "Vouchers").

#include "desk/core/DeskApp.h"

namespace qx::desk {

inline constexpr const char* kVoucherEntryKey = "VoucherEntry";

void RegisterHostVouchers(DeskApp& app);

} // namespace qx::desk
