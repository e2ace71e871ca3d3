#pragma once
// The account groups (FAGROUPS) a document's party, or a party column's accounts, come from:
// data of the series, so that a mandi's J-Form takes its farmers from one group and its buyers
// from another while the desk knows nothing of either. No groups: any account.

#include "host/CompanyDb.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx::desk {

using AccountGroups = std::vector<std::int32_t>;

// As the series keeps them: group numbers separated by commas ("180,40").
AccountGroups ParseGroups(std::string_view stored);
std::string StoredGroups(const AccountGroups& groups);

// The condition on FAMASTER that keeps the accounts of the groups; empty for any account.
std::string InGroups(const AccountGroups& groups);

// Why the account may not stand as the role ("Buyer") where the groups are asked for: its own
// group and the ones asked for. Empty when it may.
std::string OutsideGroups(CompanyDb& db, std::int32_t account, const AccountGroups& groups,
                          std::string_view role);

} // namespace qx::desk
