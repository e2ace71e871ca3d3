#pragma once
// The item summary screen: each item's bags, quantity, amount and charges in the firm's own
// purchases, the J-Forms and the I-Forms of a period; Enter or a double click on a product
// line lists the forms behind it, and Esc goes back from the listing to the summary.
//
// The daily summary hands it its market; it asks its period ("ItemSummary") on its first
// activation, as F6 does, and a firm that works in several markets is asked for a market when
// none was handed.

#include "ItemSummary.h"
#include "ReportScreen.h"

namespace kivra {

class frmItemSummary : public ReportScreen {
public:
    explicit frmItemSummary(ModuleContext& context);
    const qx::PrintJob& Report() const override { return detail_ ? *detail_ : summary_.job; }
    bool KeyDown(const qx::ui::KeyPress& key) override;

protected:
    void Load() override;
    bool AskPeriod() override { return AskPeriodUnder("ItemSummary"); }
    void Build() override;

private:
    void ShowSummary();
    void OpenLine(int row);
    void OnCommand(const std::string& key);

    ItemSummary summary_;
    std::optional<qx::PrintJob> detail_; // the listing shown in place of the summary
};

} // namespace kivra
