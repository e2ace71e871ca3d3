#pragma once
// The host's report dialogs behind HostUi: the period and single-date dialogs, the item
// filter and the voucher shown by its id. What the user accepts is kept in the company's firm
// settings under the dialog's key ("Period.MForm", "Date.MForm", "ItemFilter.FilterProduct"),
// so that it is proposed again after a restart.

#include "host/HostUi.h"

#include <optional>
#include <string>

namespace qx::desk {

class DeskApp;

std::optional<Period> AskPeriod(DeskApp& app, const std::string& key);
std::optional<Date> AskDate(DeskApp& app, const std::string& key);
// The period kept under the key; when none is, the day of the company's latest document (or
// today, in a company without documents) as both From and To.
Period LastPeriod(DeskApp& app, const std::string& key);
std::optional<std::string> FilterItems(DeskApp& app, const std::string& key, const std::string& alias);
std::string ItemFilter(DeskApp& app, const std::string& key, const std::string& alias);
// A read-only list of the voucher's rows: date, head, amount, Dr or Cr, narration.
void ShowVoucher(DeskApp& app, std::int32_t voucherId);

} // namespace qx::desk
