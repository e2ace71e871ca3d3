#include "PartyPicker.h"

namespace qx::desk {

std::string BalanceText(Amount balance) {
    // A balance of a fraction of a paisa shows as none, not as "0.00 Dr".
    const Amount shown = balance.Round(2);
    const std::string figure = FormatAmount(shown.Abs(), "c2");
    if (shown.IsZero()) return figure;
    return figure + (shown > Amount() ? " Dr" : " Cr");
}

PartyPicker::PartyPicker(HostUi& ui, CompanyDb& db)
    : ListScreen(kPartyPickerScreen, "Select Party", kPartyPickerGrid, 0), ui_(ui) {
    auto& buttons = Add<ui::StdButtons>("OKCancel");
    buttons.OnClick = [this](int index) {
        if (index == 0) Take();
        else Close(false);
    };
    list_.AddColumn("Name", 3600);
    list_.AddColumn("Station", 1600);
    list_.AddColumn("Balance", 1800, Align::Right);
    auto rows = db.OpenRecordset(
        "SELECT M.MCD, M.MHD, M.MST, SUM(D.DAMT) AS BALANCE FROM FAMASTER M LEFT JOIN FADATA D ON "
        "D.DCD=M.MCD AND COALESCE(D.DBOOK,'')<>'MEM' GROUP BY M.MCD, M.MHD, M.MST ORDER BY M.MHD");
    std::vector<std::vector<std::string>> shown;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        accounts_.push_back({rows->Field(0).AsInt(), rows->Field(1).AsText()});
        shown.push_back({rows->Field(1).AsText(), rows->Field(2).AsText(), BalanceText(rows->Field(3).AsAmount())});
    }
    list_.SetRedraw(false);
    list_.SetRows(static_cast<int>(shown.size()) + 1);
    for (std::size_t r = 0; r < shown.size(); ++r)
        for (std::size_t c = 0; c < shown[r].size(); ++c)
            list_.SetTextMatrix(static_cast<int>(r) + 1, static_cast<int>(c), shown[r][c]);
    list_.SetRedraw(true);
}

std::optional<ChosenAccount> PartyPicker::Choose(const std::string& typed) {
    Find(typed);
    if (typed.empty() && list_.Rows() > 1) list_.SetCurrent(1, 0);
    Focus(list_);
    if (!ui_.ShowModal(*this)) return std::nullopt;
    return accounts_[static_cast<std::size_t>(list_.Row() - 1)];
}

void PartyPicker::Take() {
    if (list_.Row() >= 1 && list_.Row() < list_.Rows()) Close(true);
}

} // namespace qx::desk
