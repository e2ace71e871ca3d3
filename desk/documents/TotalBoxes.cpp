#include "TotalBoxes.h"

namespace qx::desk {

DocumentTotals TotalBoxes::Current() const {
    const Amount bags = items_.Bags();
    return ComputeTotals(document_.DocumentAmount(), bags,
                         charges_.Lines(document_.CurrentSeries()));
}

// Totals are a sum over every line, and the extensions' summaries after them too: while a
// program fills the item grid with its redraw off they wait, and catch up once when it draws
// again, so that entering n lines costs n steps, not n squared.
void TotalBoxes::Show() {
    waiting_ = !items_.Grid().Redraw();
    if (waiting_)
        return;
    const DocumentTotals totals = Current();
    charges_.ShowAmounts(totals);
    boxes_.gross.SetText(FormatAmount(totals.gross, "c2"));
    boxes_.charges.SetText(FormatAmount(totals.chargesNet, "c2"));
    boxes_.roundOff.SetText(FormatAmount(totals.roundOff, "c2"));
    boxes_.grandTotal.SetText(FormatAmount(totals.grandTotal, "c2"));
    shownFor_ = document_.DocDate();
    document_.Raise([](DocumentEvents& l) { l.UpdateTotals2(); });
}

} // namespace qx::desk
