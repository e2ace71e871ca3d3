#pragma once
// The accounts a document of one series posts one item's value and tax to, with their VAT
// classes: proposed from the series and the item's VAT rate (auto generation), created
// where missing, and kept per series and VAT category in VATCATEGORYTAXRATES.

#include "kivra/module/ModuleContext.h"

#include "host/Amount.h"
#include "host/ui/Screen.h"

#include <cstdint>
#include <string>

namespace kivra {

class frmDocAutoPostingItem : public qx::ui::Screen {
public:
    frmDocAutoPostingItem(ModuleContext& context, std::int32_t itemCode, std::int32_t seriesId);

protected:
    void Load() override;
    void FirstActivate() override;

private:
    void ShowStoredAccounts();
    void AutoGenerate();
    void ShowVatClass(std::int32_t vatClass);
    void PickAccount(qx::ui::TextBox& box, const std::string& caption, const std::string& groups);
    void PickVatClass();
    void Save();

    ModuleContext& context_;
    std::int32_t itemCode_;
    std::int32_t seriesId_;

    // The item.
    std::string itemName_;
    std::int32_t vatCategory_ = 0;
    std::int32_t vatRateCode_ = 0;
    // The series.
    std::string subSeriesName_;
    qx::Amount seriesTaxRate_;
    bool seriesVatBill_ = false;
    bool purchaseSeries_ = false;
    // The sale (or purchase) account's class, chosen from its list or proposed by auto
    // generation; the VAT class box shows its name.
    std::int32_t vatClass_ = 0;

    qx::ui::Label& itemLabel_;
    qx::ui::Label& categoryLabel_;
    qx::ui::Label& seriesLabel_;
    qx::ui::TextBox& saleAc_;
    qx::ui::TextBox& taxAc_;
    qx::ui::TextBox& tradingAc_;
    qx::ui::TextBox& vatClassBox_;
};

} // namespace kivra
