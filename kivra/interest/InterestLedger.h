#pragma once
// The ledger rows an interest statement is worked out from: the party's opening balance and
// its entries of the period, each screen reading them with its own statements.

#include "InterestStatement.h"

#include "kivra/module/ModuleContext.h"

namespace kivra {

LedgerExtract ReadLedger(ModuleContext& context, InterestScreen screen, std::int32_t party, const qx::Period& period);

} // namespace kivra
