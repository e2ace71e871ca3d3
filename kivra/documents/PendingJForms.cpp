#include "PendingJForms.h"

namespace kivra {
namespace {

const std::string kRow = "MARKETID, DOCDATE, CUSTOMERID, PRODUCTID, BATCHNO, RATE, QUANTITY";
const std::string kColumns = kRow + ", RATEPENDING, ITEMPENDING";

// What the documents leave pending, as the table keeps it, for the lines meeting condition.
std::string Pending(const std::string& condition) {
    const std::string sum = std::string("Sum(") + kLinePending + ")";
    return "Select " + kRow +
           ", (Sum(QUANTITY) Over (Partition by MARKETID, DOCDATE, CUSTOMERID, PRODUCTID, RATE)"
           "<>0) as RATEPENDING, (Sum(QUANTITY) Over (Partition by MARKETID, DOCDATE, "
           "CUSTOMERID, PRODUCTID)<>0) as ITEMPENDING From (Select b.MarketID as MARKETID, "
           "b.DocDate as DOCDATE, a.CustomerID as CUSTOMERID, a.ProductID as PRODUCTID, "
           "a.BatchNo as BATCHNO, a.Rate as RATE, " +
           sum +
           " as QUANTITY From DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID Where "
           "a.JFactor<>0" +
           condition +
           " Group by b.MarketID, b.DocDate, a.CustomerID, a.ProductID, a.BatchNo, a.Rate Having " +
           sum + "<>0) q";
}

std::string Insert(const std::string& condition) {
    return "Insert into JFORMPENDING (" + kColumns + ") " + Pending(condition);
}

} // namespace

void CheckPendingTable(qx::CompanyDb& db) {
    if (db.TableExists("JFORMPENDING")) return;
    // Asked again under the write lock: two programs opening an older company fill it once.
    qx::Transaction unit(db);
    if (!db.TableExists("JFORMPENDING")) {
        // The quantity has no declared type: it keeps the kind the lines' sum gives it (a whole
        // number stays whole), so that a list summing it shows what a sum of the lines shows.
        db.ExecuteSql("CREATE TABLE JFORMPENDING ( MARKETID INT, DOCDATE DATE, CUSTOMERID INT, "
                      "PRODUCTID INT, BATCHNO VARCHAR(30), RATE DECIMAL(16,4), QUANTITY, "
                      "RATEPENDING INT NOT NULL, ITEMPENDING INT NOT NULL )");
        db.ExecuteSql("CREATE INDEX JFORMPENDING_DOCDATE ON JFORMPENDING ( DOCDATE )");
        db.ExecuteSql(
            "CREATE INDEX JFORMPENDING_RATEPENDING ON JFORMPENDING ( RATEPENDING, DOCDATE )");
        db.ExecuteSql(
            "CREATE INDEX JFORMPENDING_ITEMPENDING ON JFORMPENDING ( ITEMPENDING, DOCDATE )");
        db.ExecuteSql(Insert(""));
    }
    unit.Commit();
}

void KeepPendingOf(qx::CompanyDb& db, qx::Date day) {
    const std::string literal = db.DateLiteral(day);
    db.ExecuteSql("Delete from JFORMPENDING Where DOCDATE=" + literal);
    db.ExecuteSql(Insert(" and b.DocDate=" + literal));
}

void KeepPendingOf(qx::CompanyDb& db, qx::Date day, const std::set<std::int32_t>& buyers) {
    if (buyers.empty()) return;
    std::string list;
    for (const std::int32_t buyer : buyers)
        list += (list.empty() ? "" : ",") + std::to_string(buyer);
    const std::string literal = db.DateLiteral(day);
    db.ExecuteSql("Delete from JFORMPENDING Where DOCDATE=" + literal + " and CUSTOMERID in (" +
                  list + ")");
    db.ExecuteSql(Insert(" and b.DocDate=" + literal + " and a.CustomerID in (" + list + ")"));
}

std::set<std::int32_t> BuyersOf(qx::CompanyDb& db, std::int32_t documentId) {
    std::set<std::int32_t> buyers;
    for (auto rows = db.OpenRecordset(
             "Select Distinct CustomerID From DocData Where CustomerID is not null and "
             "DocumentID=" +
             std::to_string(documentId));
         !rows->EndOfRows(); rows->MoveNext())
        buyers.insert(rows->Field(0).AsInt());
    return buyers;
}

std::vector<std::string> PendingDisagreements(ModuleContext& context) {
    qx::CompanyDb& db = context.Db();
    const std::string kept = "Select " + kColumns + " From JFORMPENDING";
    const std::string made = Pending("");
    std::vector<std::string> faults;
    // Each row one side holds and the other does not.
    const auto report = [&](const std::string& from, const std::string& without, bool isKept) {
        auto rows = db.OpenRecordset(
            "Select d.DOCDATE, m.MHD, s.QMHD, d.BATCHNO, d.RATE, d.QUANTITY, d.CUSTOMERID, "
            "d.PRODUCTID From ((" +
            from + " Except " + without +
            ") d Left Join FAMaster m on m.MCD=d.CUSTOMERID) Left Join StkMaster s on "
            "s.QMCD=d.PRODUCTID Order by d.DOCDATE, m.MHD, s.QMHD");
        auto& util = context.Util();
        for (; !rows->EndOfRows(); rows->MoveNext()) {
            const qx::Value& buyer = rows->Field(1);
            const qx::Value& item = rows->Field(2);
            const std::string batch = rows->Field(3).AsText();
            const std::string what =
                util.FormatAmount(rows->Field(5).AsAmount(), "n2") + " quintals of " +
                (item.IsNull() ? "item " + rows->Field(7).AsText() : item.AsText()) +
                (batch.empty() ? "" : ", batch " + batch) +
                (rows->Field(4).IsNull()
                     ? std::string()
                     : " at " + util.FormatAmount(rows->Field(4).AsAmount(), "n2")) +
                " for " +
                (buyer.IsNull() ? "account " + rows->Field(6).AsText() : buyer.AsText());
            const std::string day = rows->Field(0).AsDate().ToDisplay();
            faults.push_back(
                (isKept ? "The pending J-Forms kept for I-Forms hold " + what + " on " + day +
                              ", which the day's forms do not leave"
                        : "The J-Forms of " + day + " leave " + what +
                              " pending, which the pending J-Forms kept for I-Forms do not hold") +
                ": saving a form of that day again puts it right.");
        }
    };
    report(kept, made, true);
    report(made, kept, false);
    return faults;
}

} // namespace kivra
