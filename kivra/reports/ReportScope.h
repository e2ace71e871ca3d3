#pragma once
// What a register covers: a period of days and one market or all, and the heading that says
// so.

#include "kivra/module/ModuleContext.h"

#include "host/Date.h"

#include <cstdint>
#include <string>

namespace kivra {

struct ReportScope {
    qx::Date from;
    qx::Date to;
    std::int32_t marketId = 0; // 0: every market, and forms of none
    std::string marketName;

    // "01/11/2024 to 07/11/2024", whatever the length of the period.
    std::string PeriodHeading() const;
    // "Date: 05/11/2024 (Tuesday)" for one day, the period heading for a longer one.
    std::string DateHeading() const;
    // The date heading, and "Market: " with the market's name when one is chosen.
    std::string Heading() const;
    // The forms of the period (cancelled ones left out) and of the market, on DocMain "b".
    std::string Condition(ModuleContext& context) const;
    // The scope a screen was handed in its properties ("FromDate", "ToDate", "MarketID",
    // "MarketName"); a To missing is the From.
    static ReportScope FromProperties(const qx::PropertyBag& properties);
    void ToProperties(qx::PropertyBag& properties) const;
};

} // namespace kivra
