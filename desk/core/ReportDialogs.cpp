#include "ReportDialogs.h"

#include "DeskApp.h"
#include "PeriodDialog.h"
#include "SelectItemScreen.h"

#include "host/Text.h"

#include <algorithm>
#include <ctime>

namespace qx::desk {
namespace {

constexpr std::string_view kPeriodJoint = " to ";

Date Today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

std::string Setting(DeskApp& app, const std::string& name) {
    return app.DeskSession().FirmSettings().GetValue(name).AsText();
}

// Keeping the choice is a convenience: a company that cannot be written to (read-only, or
// another program saving) still gives its reports, and the choice is then not kept.
void Keep(DeskApp& app, const std::string& name, const std::string& value) {
    try {
        app.DeskSession().SetFirmSetting(name, value);
    } catch (const DbError&) {
    }
}

std::optional<Period> ReadPeriod(const std::string& text) {
    const auto joint = text.find(kPeriodJoint);
    if (joint == std::string::npos) return std::nullopt;
    const auto from = Date::ParseDisplay(text.substr(0, joint));
    const auto to = Date::ParseDisplay(text.substr(joint + kPeriodJoint.size()));
    if (!from || !to || *to < *from) return std::nullopt;
    return Period{*from, *to};
}

Date LatestDay(DeskApp& app) {
    const Value latest = app.DeskSession().Database().LookupValue("DOCMAIN", "MAX(DOCDATE)", "");
    return latest.IsNull() ? Today() : latest.AsDate();
}

std::optional<Period> RunDialog(DeskApp& app, PeriodDialog::Kind kind, const Period& proposed) {
    PeriodDialog dialog(app, kind, proposed);
    if (!app.ShowModal(dialog)) return std::nullopt;
    return dialog.Result();
}

// Item codes kept as "3,7"; anything else kept there (typed into the settings by hand) is
// refused rather than read as every item.
std::vector<std::int64_t> KeptItems(DeskApp& app, const std::string& key) {
    const std::string kept = Setting(app, "ItemFilter." + key);
    std::vector<std::int64_t> codes;
    for (std::size_t start = 0; !kept.empty() && start <= kept.size();) {
        const std::size_t comma = std::min(kept.find(',', start), kept.size());
        const std::string code = Trim(std::string_view(kept).substr(start, comma - start));
        if (code.empty() || code.size() > 9 || code.find_first_not_of("0123456789") != std::string::npos)
            throw std::runtime_error("The item filter kept under " + key + " (" + kept +
                                     ") is not a list of item codes; choose the items again.");
        codes.push_back(std::stoll(code));
        start = comma + 1;
    }
    return codes;
}

std::string Condition(const std::vector<std::int64_t>& codes, const std::string& alias) {
    if (codes.empty()) return {};
    std::string list;
    for (auto code : codes) list += (list.empty() ? "" : ",") + std::to_string(code);
    return alias + ".QMCD IN (" + list + ")";
}

} // namespace

Period LastPeriod(DeskApp& app, const std::string& key) {
    if (auto kept = ReadPeriod(Setting(app, "Period." + key))) return *kept;
    const Date day = LatestDay(app);
    return {day, day};
}

std::optional<Period> AskPeriod(DeskApp& app, const std::string& key) {
    auto period = RunDialog(app, PeriodDialog::Kind::Period, LastPeriod(app, key));
    if (period)
        Keep(app, "Period." + key,
             period->from.ToDisplay() + std::string(kPeriodJoint) + period->to.ToDisplay());
    return period;
}

std::optional<Date> AskDate(DeskApp& app, const std::string& key) {
    const auto kept = Date::ParseDisplay(Setting(app, "Date." + key));
    const Date proposed = kept ? *kept : LatestDay(app);
    auto period = RunDialog(app, PeriodDialog::Kind::SingleDate, {proposed, proposed});
    if (!period) return std::nullopt;
    Keep(app, "Date." + key, period->from.ToDisplay());
    return period->from;
}

std::string ItemFilter(DeskApp& app, const std::string& key, const std::string& alias) {
    return Condition(KeptItems(app, key), alias);
}

std::optional<std::string> FilterItems(DeskApp& app, const std::string& key, const std::string& alias) {
    SelectItemScreen list(app);
    list.SetPickPendingMode(true);
    list.SetSelectFirstRow(true);
    list.SetListType("Item");
    list.MarkCodes("ItemID", KeptItems(app, key));
    // "(All Items)" first: taken, or taken with others, it means every item.
    list.SelectItem(app.DeskSession().Database(),
                    "SELECT 0 AS ItemID, '(All Items)' AS Item, 0 AS SortID UNION ALL "
                    "SELECT QMCD, QMHD, 1 FROM STKMASTER ORDER BY 3, 2",
                    "Items of the Report");
    if (list.Cancelled()) return std::nullopt;
    std::vector<std::int64_t> codes;
    for (int i = 0; i < list.SelectionCount(); ++i) {
        const auto code = list.Selected(i, "ItemID").AsLong();
        if (code == 0) {
            codes.clear();
            break;
        }
        codes.push_back(code);
    }
    std::string kept;
    for (auto code : codes) kept += (kept.empty() ? "" : ",") + std::to_string(code);
    Keep(app, "ItemFilter." + key, kept);
    return Condition(codes, alias);
}

void ShowVoucher(DeskApp& app, std::int32_t voucherId) {
    CompanyDb& db = app.DeskSession().Database();
    const std::string id = std::to_string(voucherId);
    const Value day = db.LookupValue("FADATA", "MIN(DVCHDATE)", "VOUCHERID=" + id);
    if (day.IsNull()) {
        app.ShowMessage("Voucher " + id + " is not in the books.", "", "I");
        return;
    }
    SelectItemScreen list(app);
    list.SetSelectFirstRow(true);
    list.SetListType("Voucher");
    list.SelectItem(db,
                    "SELECT M.MHD AS Head, ABS(F.DAMT) AS Amount, CASE WHEN F.DAMT<0 THEN 'Cr' "
                    "ELSE 'Dr' END AS DrCr, N.NARRATION AS Narration FROM FADATA F LEFT JOIN "
                    "FAMASTER M ON M.MCD=F.DCD LEFT JOIN FANAR N ON N.NARRATIONID=F.NARRATIONID "
                    "WHERE F.VOUCHERID=" + id + " ORDER BY F.DSRNO",
                    "Voucher " + id + " of " + day.AsDate().ToDisplay());
}

} // namespace qx::desk
