#include "frmItemSummary.h"

namespace kivra {

frmItemSummary::frmItemSummary(ModuleContext& context)
    : ReportScreen(context, "frmItemSummary", "Item Summary") {
    grid_.SelectsRows = true;
    grid_.OnDoubleClick = [this](int row, int) { OpenLine(row); };
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };
}

void frmItemSummary::Load() {
    ReportScreen::Load();
    bar_.AddItem("Period,F6: Period,Period", "Calendar");
    AddOutputButtons();
}

void frmItemSummary::Build() {
    summary_ = ItemSummaryJob(context_, scope_);
    ShowSummary();
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
    if (Output(key)) return;
    if (key == "Period") ChangePeriod();
    else if (key == "Exit") {
        if (detail_) ShowSummary();
        else Close();
    }
}

} // namespace kivra
