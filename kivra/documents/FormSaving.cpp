#include "FormSaving.h"

#include "JFormLines.h"

#include <string>

namespace kivra {
namespace {

using qx::Amount;

// The ledger head of a local purchase's other charge, by its key; empty for a charge that has
// none.
std::string ChargeHead(const std::string& key, const std::string& category) {
    if (key == "DAMI" || key == "COMMISSION") return "DAMI : " + category;
    if (key == "LABOUR") return "LABOUR : " + category;
    if (key == "LOADING") return "LOADING : " + category;
    if (key == "STITCHING") return "STITCHING : " + category;
    if (key == "MANDI_EXPENSES") return "MANDI EXPENSES : " + category;
    if (key == "CANCER_FUND") return "CANCER FUND : " + category;
    if (key == "FREIGHT") return "FREIGHT A/C";
    return {};
}

std::int32_t HeadCode(qx::CompanyDb& db, qx::ModuleUtil& util, const std::string& head) {
    return db.LookupValue("FAMASTER", "MCD", "MHD=" + util.SqlQuote(head)).AsInt();
}

// The other charges of a local purchase (its charges grid) go to the heads of the first
// item's category; a charge whose head is missing keeps the head it had, with a warning.
void FindChargeHeads(MandiForm& form) {
    const std::int32_t itemCode = form.FirstLineItemCode();
    if (itemCode == 0) return;
    auto& db = form.Doc().Database();
    auto& util = form.Context().Util();
    auto category = db.OpenRecordset("SELECT V.CTGNAME FROM STKMASTER S INNER JOIN CTGMASTER V "
                                     "ON S.QVATCTGNO=V.CTGNO WHERE S.QMCD=" +
                                     std::to_string(itemCode));
    const std::string categoryName = category->EndOfRows() ? "" : category->Field(0).AsText();
    category->Close();
    auto& charges = form.ChargesGrid();
    for (int row = 0; row < charges.Rows(); ++row) {
        std::string head = ChargeHead(charges.TextMatrix(row, kChargeKeyCol), categoryName);
        if (head.empty()) continue;
        std::int32_t code = HeadCode(db, util, head);
        // Stitching is posted as labour where the category has no stitching head.
        if (code == 0 && head.starts_with("STITCHING : ")) {
            head = "LABOUR : " + categoryName;
            code = HeadCode(db, util, head);
        }
        if (code != 0)
            charges.SetTextMatrix(row, kChargeHeadCol, std::to_string(code));
        else
            util.ShowMessage("A/c Head '" + head + "' not found in master", "", "W");
    }
}

// A companion row of the same item holds the difference quantity; it is saved with the
// document and never shown. Its value is in the amount column too, unsigned, so that its
// stock factor alone tells whether the goods came in or went out.
void AppendCompanionRow(MandiForm& form, int row, Amount difference) {
    const ItemColumns& c = form.columns;
    auto& grid = form.ItemGrid();
    const Amount rate = form.Number(row, c.rate);
    const int companion = grid.Rows();
    grid.SetRows(companion + 1);
    form.SetCell(companion, c.stkCode, form.Cell(row, c.stkCode));
    form.SetCell(companion, c.productId, form.Cell(row, c.productId));
    form.SetCell(companion, c.quantity, difference.ToPlainString());
    form.SetCell(companion, c.rate, form.Cell(row, c.rate));
    form.SetCell(companion, c.saleAmount, (rate.Abs() * difference).ToPlainString());
    form.SetCell(companion, c.amount, (rate.Abs() * difference.Abs()).ToPlainString());
    form.SetCell(companion, c.rowMark, std::string(qx::kHiddenRowMark));
}

void SaveIFormLine(MandiForm& form, int row, qx::PropertyBag& item) {
    const ItemColumns& c = form.columns;
    if (!form.IsCompanionRow(row)) {
        if (const Amount difference = form.Number(row, c.diffQty); !difference.IsZero())
            AppendCompanionRow(form, row, difference);
        // The line takes over pending J-Form quintals of its buyer.
        item.SetValue("JFactor", -1);
        item.SetValue("StockFactor", 0);
        item.SetValue("CustomerID", form.Doc().PartyID());
        return;
    }
    if (form.Number(row, c.quantity) < Amount()) {
        // The buyer took less than the J-Forms gave: the rest comes into the agent's stock.
        item.SetValue("StockFactor", 1);
        item.SetValue("Quantity", item.GetValue("Quantity").AsAmount().Abs());
        item.SetValue("FreeQuantity", item.GetValue("FreeQuantity").AsAmount().Abs());
    } else {
        // This host shows no stock columns: the agent is warned whenever his stock is issued.
        item.SetValue("StockFactor", -1);
        CheckNegativeStock(form, item.GetValue("ProductID").AsInt(),
                           item.GetValue("Quantity").AsAmount() +
                               item.GetValue("FreeQuantity").AsAmount());
    }
    item.SetValue("JFactor", 0);
}

// Each line of a local purchase bears the other charges in proportion to its value, on top of
// what it carried.
void ShareOtherCharges(MandiForm& form, qx::PropertyBag& item) {
    auto& charges = form.ChargesGrid();
    Amount otherCharges;
    for (int row = 1; row < charges.Rows(); ++row)
        otherCharges += qx::TextToAmount(charges.TextMatrix(row, kChargeAmountCol));
    const Amount total = form.Doc().DocumentAmount();
    if (total.IsZero()) {
        item.SetValue("OH_Others", Amount());
        return;
    }
    item.SetValue("OH_Others", item.GetValue("OH_Others").AsAmount() +
                                   item.GetValue("Amount").AsAmount() * otherCharges / total);
}

} // namespace

void BeginSavingForm(MandiForm& form) {
    if (form.mode.localPurchase) FindChargeHeads(form);
    auto& doc = form.Doc();
    if (doc.GstApplicable()) doc.CalcTaxAmt();
}

void StampMarket(const MandiForm& form, qx::PropertyBag& main) {
    if (form.multipleMarkets && form.Doc().IsNewDocument())
        main.SetValue("MarketID", form.seriesMarketId);
}

void SaveFormLine(MandiForm& form, const qx::PropertyBag& savedRates, int row,
                  qx::PropertyBag& item) {
    const bool labourInForce = form.Doc().DocDate() >= qx::Date::FromYmd(2011, 4, 1) &&
                               form.Context().OptionOn(632);
    if (form.mode.jForm)
        SaveJFormLine(form, savedRates, labourInForce, row, item);
    else if (form.mode.iForm)
        SaveIFormLine(form, row, item);
    else if (form.mode.localPurchase)
        ShareOtherCharges(form, item);
}

void CheckNegativeStock(MandiForm& form, std::int32_t itemCode, Amount quantity) {
    auto& doc = form.Doc();
    auto& db = doc.Database();
    auto& util = form.Context().Util();
    // Every other document up to the day counts; this one's own rows do not.
    auto stock = db.OpenRecordset(
        "Select sum((a.Quantity+a.FreeQuantity)*a.StockFactor) from DocData a Inner Join DocMain "
        "b on a.DocumentID=b.DocumentID where a.StockFactor<>0 and b.DocDate<=" +
        util.SqlDate(doc.DocDate()) + " and a.DocumentID<>" + std::to_string(doc.DocumentID()) +
        " and a.ProductID=" + std::to_string(itemCode));
    const bool counted = !stock->EndOfRows();
    const Amount inStock = counted ? stock->Field(0).AsAmount() : Amount();
    stock->Close();
    if (!counted || quantity <= inStock) return;
    const std::string name =
        db.LookupValue("STKMASTER", "QMHD", "qmcd=" + std::to_string(itemCode)).AsText();
    util.ShowMessage("Negative stock after issuing item : " + name, "", "W");
}

void NoteWeighedDifference(MandiForm& form, int row) {
    const ItemColumns& c = form.columns;
    if (!form.mode.iForm || c.diffQty <= 0 || c.addLessKgs <= 0) return;
    const Amount difference = form.Number(row, c.addLessKgs) / qx::Amount::FromInt(100);
    form.SetCell(row, c.diffQty, difference.IsZero() ? "" : difference.ToPlainString());
}

} // namespace kivra
