#pragma once
// The module's schema additions and the market (mandi) look-ups that the screens and the
// document extension share.

#include "ModuleContext.h"

#include <cstdint>
#include <string>

namespace kivra {

// Market id meaning every market in a selection; never stored.
inline constexpr std::int32_t kAllMarkets = -1;

// Creates MARKETMASTER, its name index and its SERIES column where they are missing.
void CheckMarketTable(qx::CompanyDb& db);
// Adds the module's columns to the host's item master and document tables where missing, the
// unique index of form numbers and the table of pending J-Forms.
void CheckKivraFields(qx::CompanyDb& db);

bool MultipleMarketRqr(ModuleContext& context);
// The market selection dialog. False when the user closed it without a choice (id and
// name then stay as they were).
bool SelectMarket(ModuleContext& context, std::int32_t& id, std::string& name, bool allowAll);
std::string GetMarketName(ModuleContext& context, std::int32_t id);
std::string GetMarketSeries(ModuleContext& context, std::int32_t id);

} // namespace kivra
