#include "HostVouchers.h"

#include "VoucherScreen.h"

namespace qx::desk {

void RegisterHostVouchers(DeskApp& app) {
    app.RegisterHostScreen("Accounts", kVoucherEntryKey, "Vouchers",
                           [&app] { return std::make_shared<VoucherScreen>(app); });
}

} // namespace qx::desk
