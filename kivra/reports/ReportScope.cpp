#include "ReportScope.h"

namespace kivra {

std::string ReportScope::PeriodHeading() const { return from.ToDisplay() + " to " + to.ToDisplay(); }

std::string ReportScope::DateHeading() const {
    if (from == to) return "Date: " + from.Format("dd/MM/yyyy (dddd)");
    return PeriodHeading();
}

std::string ReportScope::Heading() const {
    if (marketId <= 0) return DateHeading();
    return DateHeading() + "    Market: " + marketName;
}

std::string ReportScope::Condition(ModuleContext& context) const {
    // A cancelled form is kept for the record only: its lines move nothing, and the day's
    // voucher leaves it out as well.
    std::string condition = "b.DocDate between " + context.Util().SqlDate(from, to) +
                            " and (b.Cancelled=0 or b.Cancelled is null)";
    if (marketId > 0) condition += " and b.MarketID=" + std::to_string(marketId);
    return condition;
}

ReportScope ReportScope::FromProperties(const qx::PropertyBag& properties) {
    ReportScope scope;
    const qx::Value from = properties.GetValue("FromDate");
    const qx::Value to = properties.GetValue("ToDate");
    if (!from.IsNull()) scope.from = from.AsDate();
    scope.to = to.IsNull() ? scope.from : to.AsDate();
    scope.marketId = properties.GetValue("MarketID").AsInt();
    scope.marketName = properties.GetValue("MarketName").AsText();
    return scope;
}

void ReportScope::ToProperties(qx::PropertyBag& properties) const {
    properties.SetValue("FromDate", from);
    properties.SetValue("ToDate", to);
    properties.SetValue("MarketID", marketId);
    properties.SetValue("MarketName", marketName);
}

} // namespace kivra
