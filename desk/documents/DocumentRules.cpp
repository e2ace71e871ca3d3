// What a series asks of a document before it is saved, as data of the series: boxes that must
// be filled (a firm with several mandis requires the market of every form), and parties from
// the series' account groups (a J-Form's farmer, its buyers). A name typed into a box or cell
// is checked as it is left; the save checks again what a document opened from the company, or
// a master changed since, may hold.
#include "DocumentScreen.h"
#include "ScreenTexts.h"

#include "host/Text.h"

namespace qx::desk {

std::string DocumentScreen::SeriesRefusal() {
    const Series& series = CurrentSeries();
    for (std::size_t i = 0; i < series.boxes.size(); ++i) {
        const SeriesBox& box = series.boxes[i];
        const std::string text = Trim(boxPool_[i]->Text());
        if (!box.required || (!text.empty() && !(box.numeric && TextToAmount(text).IsZero())))
            continue;
        boxPool_[i]->SetFocus();
        return box.lookup.empty()
                   ? "Enter the " + box.caption + ": the document is not saved without it."
                   : "Choose the " + box.caption + " (F2): the document is not saved without it.";
    }
    if (auto refusal =
            OutsideGroups(Db(), document_.PartyID(), series.partyGroups, party_.Caption());
        !refusal.empty()) {
        party_.SetFocus();
        return refusal;
    }
    const SeriesColumn* party = series.Column(kPartyKey);
    if (!party || party->groups.empty())
        return {};
    for (int row = 1; row < grid_.Rows(); ++row) {
        const std::int32_t code = CodeIn(grid_, row, partyCodeCol_);
        if (!document_.IsLine(row) || code == 0)
            continue;
        if (auto refusal = OutsideGroups(Db(), code, party->groups, party->caption);
            !refusal.empty()) {
            grid_.SetCurrent(row, Member("COL_" + party->key));
            grid_.SetFocus();
            return "Line " + std::to_string(row) + ": " + refusal;
        }
    }
    return {};
}

} // namespace qx::desk
