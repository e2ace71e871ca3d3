#include "JFormPicking.h"

#include "PendingJForms.h"

#include "host/SelectItemForm.h"

#include <stdexcept>

namespace kivra {
namespace {

// Never typed in a batch number, so that the chosen batches stay apart.
constexpr char kBatchSeparator = '\x1f';

std::string QuotedSqlList(const std::string& batches) {
    std::string list;
    for (char c : batches)
        list += c == kBatchSeparator ? std::string("','") : std::string(1, c);
    return list;
}

// The text of a batch number as it stands between the quotes of an SQL list.
std::string QuoteInList(const std::string& batch) {
    const std::string quoted = qx::SqlQuote(batch);
    return quoted.substr(1, quoted.size() - 2);
}

} // namespace

void JFormPicking::Forget() {
    done = false;
    pickedProduct_ = 0;
    pickedBatches_.clear();
}

std::string JFormPicking::MarketCondition(const char* table) const {
    return form_.multipleMarkets
               ? " and " + std::string(table) + ".MarketID=" + std::to_string(form_.MarketId())
               : "";
}

// Without a batch column the list keeps lines of different rates apart only when the firm
// asks for it (option 637); otherwise an item's lines of a day are picked as one, at the
// highest rate.
JFormPicking::Grouping JFormPicking::ListGrouping() const {
    if (form_.columns.batchNo > 0) return Grouping::ByBatch;
    return form_.Context().OptionOn(637) ? Grouping::ByRate : Grouping::ByItem;
}

bool JFormPicking::OfferedForParty() {
    auto& doc = form_.Doc();
    if (qx::TextToAmount(form_.Form().TXPSALETYPE().Text()).IsZero() || !form_.mode.iForm)
        return false;
    if (doc.DocumentID() == 0) return true;
    // A saved I-Form is offered the pending lines only while it has none of its own.
    if (!form_.Number(1, form_.columns.stkCode).IsZero()) return false;
    const bool yes =
        form_.Context().Util().ShowMessage("Do you want to pick items from J-Form?", qx::kYesNo,
                                           "Q") == qx::kAnswerYes;
    done = true;
    return yes;
}

// Read from the kept pending J-Forms whose item is pending: a day's items that are settled add
// nothing to its sum.
bool JFormPicking::OlderDayPending() {
    auto& util = form_.Context().Util();
    auto pending = form_.Doc().Database().OpenRecordset(
        "Select First 1 sum(a.Quantity),a.DocDate from JFormPending a where a.ItemPending=1 and "
        "a.DocDate<" +
        util.SqlDate(form_.Doc().DocDate()) + MarketCondition("a") +
        " group by a.DocDate having sum(a.Quantity)<>0 order by a.DocDate");
    if (pending->EndOfRows()) return false;
    const qx::Date day = pending->Field(1).AsDate();
    form_.Notify("Certain J-Forms are still pending before this Date (" + day.ToDisplay() + ")." +
                 " You should make I-Forms of pending J-Forms before making I-Forms in this " +
                 "date.\r\nCan't continue");
    return true;
}

void JFormPicking::PickJFormItems() {
    auto& doc = form_.Doc();
    if (doc.PartyID() == 0) return;
    if (OlderDayPending()) return;

    auto& util = form_.Context().Util();
    std::string inner = "Select (" + std::string(kLinePending) + ") as Qty,a.BatchNo,a.Rate,a.QualityCut,a.ProductID," +
                        "a.QtyPerBox From DocData a Inner Join DocMain b on " +
                        "a.DocumentID=b.DocumentID Where a.DocumentID<>" +
                        std::to_string(doc.DocumentID()) + " And a.CustomerID=" +
                        std::to_string(doc.PartyID()) + " And a.JFactor<>0 And b.DocDate=" +
                        util.SqlDate(doc.DocDate());
    if (!pickedBatches_.empty())
        inner += " And a.BatchNo in ('" + QuotedSqlList(pickedBatches_) + "')";
    else if (pickedProduct_ != 0)
        inner += " and a.ProductID=" + std::to_string(pickedProduct_);
    inner += MarketCondition("b");

    std::string fields, groups, order;
    switch (ListGrouping()) {
    case Grouping::ByBatch:
        fields = "ProductID,QMHD as Product,Sum(Qty) as Qty,Rate,QualityCut,QtyPerBox,BatchNo";
        groups = "ProductID,QMHD,BatchNo,QtyPerBox,Rate,QualityCut";
        order = " Order by BatchNo,QMHD";
        break;
    case Grouping::ByRate:
        fields = "ProductID,QMHD as Product,Sum(Qty) as Qty,Rate,QualityCut,QtyPerBox";
        groups = "ProductID,QMHD,QtyPerBox,Rate,QualityCut";
        order = " Order by QMHD";
        break;
    case Grouping::ByItem:
        fields = "ProductID,QMHD as Product,Sum(Qty) as Qty,MAX(Rate) AS RATE,Max(QualityCut) as "
                 "QualityCut,QtyPerBox";
        groups = "ProductID,QMHD,QtyPerBox";
        order = " Order by QMHD";
        break;
    }
    auto items = doc.Database().OpenRecordset("Select " + fields + " From (" + inner +
                                              ") q Inner Join StkMaster sm on q.ProductID=sm.qmcd" +
                                              " Group by " + groups + " Having Sum(Qty)<>0 " +
                                              order);
    if (items->EndOfRows()) {
        form_.Notify("No Pending J-Form Items found for\r\nParty: " +
                     form_.Form().TxpCustomer().Text() + "\r\nDate: " + doc.DocDate().ToDisplay());
        return;
    }

    auto& grid = form_.ItemGrid();
    const ItemColumns& c = form_.columns;
    // The grid draws (and the document totals) once, when filled or when a line fails.
    struct DrawWhenDone {
        qx::ui::Grid& grid;
        ~DrawWhenDone() { grid.SetRedraw(true); }
    } drawWhenDone{grid};
    grid.SetRedraw(false);
    grid.Clear();
    grid.SetRows(2);
    for (int row = 1; !items->EndOfRows(); items->MoveNext(), ++row) {
        if (row >= grid.Rows()) grid.SetRows(row + 1);
        form_.SetCell(row, c.stkCode, items->Field("ProductID").AsText());
        form_.Form().FillStkInfo(row);
        form_.SetCell(row, c.productId, items->Field("Product").AsText());
        form_.SetCellInColumnFormat(row, c.quantity, items->Field("Qty").AsAmount());
        form_.SetCellInColumnFormat(row, c.rate, items->Field("Rate").AsAmount());
        // The list has a batch number only where the grid has its column.
        if (c.batchNo > 0) form_.SetCell(row, c.batchNo, items->Field("BatchNo").AsText());
        form_.SetCellInColumnFormat(row, c.qualityCut, items->Field("QualityCut").AsAmount());
        form_.SetCellInColumnFormat(row, c.qtyPerBox, items->Field("QtyPerBox").AsAmount());
        form_.Form().RecalcGridRow(row);
    }
}

// Read from the kept pending J-Forms: by batch every kept row is pending, by rate or by item
// only those whose rate or item is (the others sum to 0 in their group).
void JFormPicking::SelectJForm() {
    const char* innerSelect = "Select a.DocDate,a.CustomerID,a.ProductID,Sum(";
    const char* outerSelect =
        "Select q.DocDate,m.MHD as Party,s.QMHD as Item, q.Qty, q.CustomerID, q.ProductID";
    const char* pending = "a.ItemPending=1";
    const char* group = " Group by a.DocDate,a.CustomerID,a.ProductID Having Sum(";
    const char* order = " Order by q.DocDate,m.MHD,s.QMHD";
    const char* partyJoin = "m.mcd";
    const char* itemJoin = "s.qmcd";
    const Grouping grouping = ListGrouping();
    if (grouping == Grouping::ByBatch) {
        innerSelect = "Select a.DocDate,a.CustomerID,a.ProductID,a.BatchNo,a.Rate,Sum(";
        outerSelect = "Select q.DocDate,m.mhd as Party,s.QMHD as Item,q.BatchNo,q.Rate,q.Qty,"
                      "q.CustomerID,q.ProductID";
        pending = "a.Quantity<>0";
        group = " Group by a.DocDate,a.CustomerID,a.ProductID,a.BatchNo,a.Rate Having Sum(";
        order = " Order by q.DocDate,m.MHD,q.BatchNo,s.QMHD";
        partyJoin = "m.MCD";
        itemJoin = "s.QMCD";
    } else if (grouping == Grouping::ByRate) {
        innerSelect = "Select a.DocDate,a.CustomerID,a.ProductID,a.Rate,Sum(";
        outerSelect = "Select q.DocDate,m.MHD as Party,s.QMHD as Item,q.Rate,q.Qty,q.CustomerID,"
                      "q.ProductID";
        pending = "a.RatePending=1";
        group = " Group by a.DocDate,a.CustomerID,a.ProductID,a.Rate Having Sum(";
        itemJoin = "s.QMCD";
    }
    const std::string inner = innerSelect + std::string("a.Quantity) as Qty") +
                              " From JFormPending a Where " + pending + MarketCondition("a") +
                              group + "a.Quantity)<>0";
    const std::string list = outerSelect + std::string(" From ((") + inner +
                             ") q Inner Join FAMaster m on q.CustomerID=" + partyJoin +
                             ") Inner Join StkMaster s on q.ProductID=" + itemJoin + order;

    auto& forms = form_.Context().Ui().Forms();
    auto screen = forms.CreateForm("SelectItem");
    auto* selection = dynamic_cast<qx::SelectItemForm*>(screen.get());
    if (!selection)
        throw std::runtime_error("This host has no item selection screen to list pending J-Forms.");
    screen->CallingForm = form_.Form().Screen().weak_from_this().lock();
    selection->SetPickPendingMode(true);
    selection->SetSelectFirstRow(true);
    selection->SetListType("J-Form");
    selection->SelectItem(form_.Doc().Database(), list, " Pending Parties of J-Form");
    if (selection->Cancelled() || selection->SelectionCount() == 0) return;

    // The item and batches first: taking the party picks its lines at once.
    pickedProduct_ = selection->Selected(0, "ProductID").AsInt();
    pickedBatches_.clear();
    if (grouping == Grouping::ByBatch)
        for (int i = 0; i < selection->SelectionCount(); ++i) {
            if (i > 0) pickedBatches_ += kBatchSeparator;
            pickedBatches_ += QuoteInList(selection->Selected(i, "BatchNo").AsText());
        }
    auto& documentForm = form_.Form();
    documentForm.TxpDocDate().SetText(selection->Selected(0, "DocDate").AsDate().ToDisplay());
    documentForm.ChooseParty(selection->Selected(0, "CustomerID").AsInt(),
                             selection->Selected(0, "Party").AsText());
    documentForm.SeriesSelected();
    documentForm.SetupMode();
    documentForm.RecalcGrid();
}

} // namespace kivra
