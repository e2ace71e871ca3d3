#include "frmItemSummary.h"

#include "kivra/module/mKivraModule.h"

namespace kivra {

frmItemSummary::frmItemSummary(ModuleContext& context)
    : ReportScreen(context, "frmItemSummary", "Item Summary") {
    grid_.SelectsRows = true;
    grid_.OnDoubleClick = [this](int row, int) { OpenLine(row); };
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmItemSummary::Load() {
    ReportScreen::Load();
    // The period dialog is the host's: until it offers one the period is the one handed over.
    bar_.AddItem("Period,F6: Period,Period");
    bar_.SetItemEnabled("Period", false);
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Close");
}

void frmItemSummary::FirstActivate() {
    ReportScreen::FirstActivate();
    if (MultipleMarketRqr(context_) && Properties().GetValue("MarketID").IsNull()) {
        std::int32_t id = 0;
        std::string name;
        // Closing the list without a choice, or choosing all, counts every market.
        if (SelectMarket(context_, id, name, true) && id > 0) {
            scope_.marketId = id;
            scope_.marketName = name;
        }
    }
    summary_ = ItemSummaryJob(context_, scope_);
    ShowSummary();
    grid_.SetFocus();
}

void frmItemSummary::ShowSummary() {
    detail_.reset();
    Show(summary_.job);
}

void frmItemSummary::OpenLine(int row) {
    if (detail_ || row < 1 || row > static_cast<int>(summary_.keys.size())) return;
    const ItemLineKey key = summary_.keys[static_cast<std::size_t>(row - 1)];
    if (key.section == 0) return; // a heading or a totals line
    detail_ = ItemDetailJob(context_, scope_, key);
    Show(*detail_);
}

bool frmItemSummary::KeyDown(const qx::ui::KeyPress& key) {
    if (key.key == qx::ui::Key::Enter && key.Plain() && Focused() == &grid_ && !detail_) {
        OpenLine(grid_.Row());
        return true;
    }
    return Screen::KeyDown(key);
}

void frmItemSummary::OnCommand(const std::string& key) {
    if (key == "Preview") context_.Ui().Print(Job(), qx::PrintMode::Preview);
    else if (key == "Print") context_.Ui().Print(Job(), qx::PrintMode::Print);
    else if (key == "Exit") {
        if (detail_) ShowSummary();
        else Close();
    }
}

} // namespace kivra
