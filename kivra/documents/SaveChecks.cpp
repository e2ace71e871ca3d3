#include "SaveChecks.h"

namespace kivra {
namespace {

using qx::Amount;

void CheckBagFigures(MandiForm& form, bool& cancel) {
    const ItemColumns& c = form.columns;
    if (c.pcs < 1 && c.addLessKgs < 1) return;
    const auto& grid = form.ItemGrid();
    for (int row = 1; row < grid.Rows(); ++row) {
        if (c.revBags > 0 && c.pcs > 0) {
            const Amount revisedBags = form.Number(row, c.revBags);
            if (!revisedBags.IsZero() && !revisedBags.IsWhole() &&
                form.AnsweredNo("Fractional bags sale / purchase found. Do you want to continue?")) {
                cancel = true;
                return;
            }
        }
        if (c.addLessKgs > 0) {
            // Deductions are never questioned.
            const Amount addLess = form.Number(row, c.addLessKgs);
            if (addLess > Amount() && addLess >= form.Number(row, c.qtyPerBox) &&
                form.AnsweredNo("Kgs more than Kg./Bag found at row no: " + std::to_string(row) +
                                ". Do you want to continue?")) {
                cancel = true;
                return;
            }
        }
    }
}

void CheckFormNumbers(MandiForm& form, bool& cancel) {
    if (form.FormNoBoxNumber() <= 0) return;
    qx::ui::TextBox& formNoBox = form.InputBox(form.FormNoBoxNumber());
    auto& doc = form.Doc();
    const Amount formNo = qx::TextToAmount(formNoBox.Text());

    std::string duplicate = "DocumentID<>" + std::to_string(doc.DocumentID());
    if (form.FormBookBoxNumber() >= 1) {
        qx::ui::TextBox& formBookBox = form.InputBox(form.FormBookBoxNumber());
        const Amount bookNo = qx::TextToAmount(formBookBox.Text());
        if (bookNo.IsZero()) {
            form.Notify("Book no. not specified.");
            if (formBookBox.Visible()) formBookBox.SetFocus();
            cancel = true;
            return;
        }
        duplicate += " and FormBookNo=" + bookNo.ToPlainString();
    }
    duplicate += " and FormNo=" + formNo.ToPlainString() +
                 " and DocSeries=" + form.Context().Util().SqlQuote(doc.SeriesCode());
    if (form.multipleMarkets) duplicate += " and MarketID=" + std::to_string(form.MarketId());
    const std::int32_t duplicateId =
        doc.Database().LookupValue("DOCMAIN", "DOCUMENTID", duplicate).AsInt();

    if (formNo.IsZero()) {
        form.Notify("Form no. not specified.");
        if (formNoBox.Visible()) formNoBox.SetFocus();
        cancel = true;
        return;
    }
    if (duplicateId != 0) {
        form.Notify("This form no. already exists");
        if (formNoBox.Visible()) formNoBox.SetFocus();
        cancel = true;
    }
}

} // namespace

void CheckBeforeSave(MandiForm& form, bool& cancel) {
    CheckBagFigures(form, cancel);
    // The form numbers are checked even when the user stopped at a bag question.
    CheckFormNumbers(form, cancel);
}

} // namespace kivra
