#include "BooksCheck.h"

namespace kivra {
namespace {

constexpr const char* kPending = "(a.Quantity+a.FreeQuantity)*a.JFactor";

// (1) The I-Forms of a buyer never take more of a day's item than his J-Forms left pending.
void CheckPendingQuantities(ModuleContext& context, BooksFindings& findings) {
    auto rows = context.Db().OpenRecordset(
        std::string("Select m.MHD, b.DocDate, s.QMHD, Sum(") + kPending +
        ") as Qty, a.CustomerID, a.ProductID From ((DocData a Inner Join DocMain b on "
        "a.DocumentID=b.DocumentID) Left Join FAMaster m on m.MCD=a.CustomerID) Left Join "
        "StkMaster s on s.QMCD=a.ProductID Where a.JFactor<>0 Group by a.CustomerID, b.DocDate, "
        "a.ProductID, m.MHD, s.QMHD Having Sum(" +
        kPending + ")<0 Order by b.DocDate, m.MHD, s.QMHD");
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        const qx::Value buyer = rows->Field(0);
        const qx::Value item = rows->Field(2);
        findings.faults.push_back(
            "The I-Forms of " +
            (buyer.IsNull() ? "account " + rows->Field(4).AsText() : buyer.AsText()) + " take " +
            context.Util().FormatAmount(-rows->Field(3).AsAmount(), "n2") + " quintals more " +
            (item.IsNull() ? "of item " + rows->Field(5).AsText() : item.AsText()) +
            " than the J-Forms of " + rows->Field(1).AsDate().ToDisplay() + " left pending.");
    }
}

} // namespace

BooksFindings CheckBooks(ModuleContext& context) {
    BooksFindings findings;
    CheckPendingQuantities(context, findings);
    return findings;
}

} // namespace kivra
