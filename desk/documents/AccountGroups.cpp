#include "AccountGroups.h"

#include "host/Text.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace qx::desk {

AccountGroups ParseGroups(std::string_view stored) {
    AccountGroups groups;
    while (!stored.empty()) {
        const auto comma = stored.find(',');
        const std::string part = Trim(stored.substr(0, comma));
        stored = comma == std::string_view::npos ? std::string_view() : stored.substr(comma + 1);
        if (part.empty())
            continue;
        std::int32_t group = 0;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), group);
        if (error != std::errc() || end != part.data() + part.size())
            throw std::runtime_error("The series names the account group \"" + part +
                                     "\", which is not a group number.");
        groups.push_back(group);
    }
    return groups;
}

std::string StoredGroups(const AccountGroups& groups) {
    std::string stored;
    for (std::int32_t group : groups)
        stored += (stored.empty() ? "" : ",") + std::to_string(group);
    return stored;
}

std::string InGroups(const AccountGroups& groups) {
    return groups.empty() ? std::string() : "MBSHNO IN (" + StoredGroups(groups) + ")";
}

std::string OutsideGroups(CompanyDb& db, std::int32_t account, const AccountGroups& groups,
                          std::string_view role) {
    if (groups.empty())
        return {};
    auto found = db.OpenRecordset("SELECT F.MHD, F.MBSHNO, G.GROUPNAME FROM FAMASTER F LEFT JOIN "
                                  "FAGROUPS G ON G.GROUPNO=F.MBSHNO WHERE F.MCD=" +
                                  std::to_string(account));
    if (found->EndOfRows())
        return "There is no account with code " + std::to_string(account) + ".";
    if (std::find(groups.begin(), groups.end(), found->Field(1).AsInt()) != groups.end())
        return {};
    const std::string name = found->Field(0).AsText();
    const std::string own = found->Field(2).AsText();
    found->Close();

    std::string asked;
    auto names = db.OpenRecordset("SELECT GROUPNAME FROM FAGROUPS WHERE GROUPNO IN (" +
                                  StoredGroups(groups) + ") ORDER BY GROUPNAME");
    for (; !names->EndOfRows(); names->MoveNext())
        asked += (asked.empty() ? "" : " or ") + names->Field(0).AsText();
    const std::string the = "the " + std::string(role);
    return name + " cannot be " + the + ": " +
           (own.empty() ? "it belongs to no account group" : "it is an account of " + own) +
           ", and " + the + " is an account of " + asked + ".";
}

} // namespace qx::desk
