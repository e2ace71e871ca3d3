#pragma once
// The mandi charge rates of one item, which J-Forms, I-Forms and purchases apply to it by
// default, and its VAT rate; on request also the item's set of ledger heads. The host opens
// it from its item master with the screen properties "ItemCode" and "ItemName" set.

#include "LedgerHeads.h"

#include "kivra/module/ModuleContext.h"

#include "host/ui/Screen.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kivra {

class frmKivraRates : public qx::ui::Screen {
public:
    explicit frmKivraRates(ModuleContext& context);

protected:
    void Load() override;
    void FirstActivate() override;

private:
    std::vector<qx::ui::TextBox*> AddRateInputs();
    void Save();
    void MakeSureOfRateColumns(qx::CompanyDb& db);
    void CreateHeads(qx::CompanyDb& db, const VatRate& rate);

    ModuleContext& context_;
    std::int32_t itemCode_ = 0;
    std::string itemName_;
    qx::ui::Label& itemLabel_;
    std::vector<qx::ui::TextBox*> rates_; // bound to STKMASTER by their "Field"
    qx::ui::ComboBox& vatRate_;
    qx::ui::Label& vatCategory_;
    qx::ui::CheckBox& createAccounts_;
};

} // namespace kivra
