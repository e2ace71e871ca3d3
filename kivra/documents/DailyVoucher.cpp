#include "DailyVoucher.h"

#include "kivra/module/mKivraModule.h"

#include "host/HostApp.h"
#include "host/VoucherUtil.h"

#include <algorithm>
#include <array>
#include <memory>

namespace kivra {
namespace {

using qx::Amount;

// From this day labour is posted to a J-Form head and an I-Form head of its own.
const qx::Date kLabourSplit = qx::Date::FromYmd(2019, 4, 1);

// The heads of the day's table.
enum Slot {
    kDami,
    kLabour,
    kLoading,
    kStitching,
    kDharam,
    kControl,
    kBardana,
    kFreight,
    kOtherCharges,
    kUrsBonus,
    kLabourJForms,
    kLabourIForms,
    kSlots
};
constexpr std::array<const char*, kSlots> kSlotHeads = {"DAMI A/C",
                                                        "LABOUR A/C",
                                                        "LOADING A/C",
                                                        "STITCHING A/C",
                                                        "DHARAM A/C",
                                                        "J-FORM / I-FORM CONTROL A/C",
                                                        "BARDANA A/C",
                                                        "FREIGHT A/C",
                                                        "OTHER CHARGES A/C",
                                                        "URS BONUS RECOVERABLE",
                                                        "LABOUR A/C (J-FORMS)",
                                                        "LABOUR A/C (I-FORMS)"};
constexpr std::int32_t kNotNeeded = -1;

// The levies of the agent's own purchases, each a pair of rows.
struct LevyPair {
    const char* field;
    const char* expense; // + category
    const char* payable;
};
constexpr LevyPair kLevyPairs[] = {
    {"MFee", "MARKET FEE : ", "MARKET FEE PAYABLE"},
    {"RDF", "R.D.F. : ", "R.D.F. PAYABLE"},
    {"CancerFund", "CANCER FUND : ", "CANCER FUND PAYABLE"},
    {"PIDF", "P.I.D.F. : ", "P.I.D.F. PAYABLE"},
    {"PurTax", "PURCHASE TAX : ", "PURCHASE TAX PAYABLE"},
    {"iLabour", "LABOUR (SELF) : ", "LABOUR PAYABLE"},
};

} // namespace

bool IsDayVoucherHead(std::string_view name) {
    return name == "ROUND OFF" || std::ranges::find(kSlotHeads, name) != kSlotHeads.end();
}

DayColumns DayColumns::Of(qx::CompanyDb& db) {
    return {db.FieldExists("BardanaAmt", "DOCMAIN"), db.FieldExists("AddFreight", "DOCMAIN"),
            db.FieldExists("URSBonusAmt", "DOCMAIN"), db.FieldExists("OthAmt", "DOCMAIN")};
}

// The voucher being built: its rows, numbered as they come, the balance they leave, and the
// day's charge totals.
struct DailyVoucher::Posting {
    qx::Date day;
    std::string dayLiteral;
    std::int32_t voucherId = 0;
    std::unique_ptr<qx::Recordset> rows;
    int serialNo = 0;
    Amount balance;
    std::array<std::int32_t, kSlots> slots{};
    Amount labourJForms, labourIForms, loading, dami, dharmada, stitching, roundOff, bardana,
        addFreight, otherAmount;
};

void DailyVoucher::Post(qx::Date day) {
    heads_.clear();
    marketSeries_.clear();
    try {
        Build(day);
    } catch (const qx::DbError& error) {
        throw qx::DbError("PostDailyVoucher: " + std::string(error.what()), error.Problem());
    }
}

void DailyVoucher::Build(qx::Date day) {
    Posting voucher;
    voucher.day = day;
    voucher.dayLiteral = context_.Util().SqlDate(day);
    // The day's voucher keeps its number when it is built again.
    voucher.voucherId = db_.LookupValue("FADATA", "VOUCHERID",
                                        "dTrnType='IJF' and dVchDate=" + voucher.dayLiteral)
                            .AsInt();
    if (voucher.voucherId != 0) {
        db_.ExecuteSql("Delete from FAData where dTrnType='IJF' and dVchDate=" +
                           voucher.dayLiteral,
                       128);
        db_.ExecuteSql("Delete from FADocs where VoucherID=" + std::to_string(voucher.voucherId),
                       128);
    }
    // Without every head of the table the day is left without a voucher, until the head is
    // made and a form of the day is saved again.
    if (!FillHeadTable(voucher)) return;
    if (voucher.voucherId == 0) voucher.voucherId = context_.App().Vouchers().NextVoucherId(db_);
    voucher.rows = db_.OpenRecordset("Select First 0 * from FAData");

    PostDocuments(voucher);
    PostOwnPurchases(voucher);
    PostGoods("Select a.ProductID,s.QMHD,sum(a.Quantity*a.stockfactor) as qty,sum(a.Amount*a."
              "StockFactor) as Amt,v.CtgName as VCtgName,s.qVATRateCode from ((DocData a Inner "
              "Join DocMain b on a.DocumentID=b.DocumentID) Inner Join StkMaster s on "
              "a.ProductID=s.qmcd) Inner Join CtgMaster v on s.qVATCtgNo=v.CtgNo where "
              "a.StockFactor<>0 and b.DocSeries='IF' and b.DocDate=" +
                  voucher.dayLiteral +
                  " group by a.ProductID,s.QMHD,v.CtgName,s.qVATRateCode having "
                  "sum(a.Quantity*a.stockfactor)<>0",
              voucher);
    // Items whose J-Form quintals of the day are all taken over: what the buyers paid differs
    // from what the farmers got.
    PostGoods("Select a.ProductID,s.QMHD,sum(a.Amount*(a.JFactor-a.StockFactor)) as Amt,"
              "v.CtgName as VCtgName,s.qVATRateCode from ((DocData a Inner Join DocMain b on "
              "a.DocumentID=b.DocumentID) Inner Join StkMaster s on a.ProductID=s.qmcd) Inner "
              "Join CtgMaster v on s.qVATCtgNo=v.CtgNo where (a.JFactor<>0 or (a.StockFactor<>0 "
              "and b.DocSeries='IF')) and b.DocSeries in ('JF','IF') and b.DocDate=" +
                  voucher.dayLiteral +
                  " group by a.ProductID,s.QMHD,v.CtgName,s.qVATRateCode having "
                  "sum(a.Quantity*a.Jfactor)=0 and sum(a.Amount*(a.JFactor-a.StockFactor))<>0",
              voucher);
    PostDayTotals(voucher);
    PostRoundOffAndControl(voucher);
    // A day of no rows (its forms all cancelled or deleted) has no voucher at all.
    if (voucher.serialNo > 0)
        db_.ExecuteSql("Insert into FADocs (VoucherID,IsAutoVoucher) values (" +
                           std::to_string(voucher.voucherId) + ",-1)",
                       128);
}

bool DailyVoucher::FillHeadTable(Posting& voucher) {
    const bool split = voucher.day >= kLabourSplit;
    auto needed = [&](int slot) {
        switch (slot) {
        case kLabour:
            return !split;
        case kLabourJForms:
        case kLabourIForms:
            return split;
        case kBardana:
            return columns_.bardana;
        case kFreight:
            return columns_.addFreight;
        // Deliberately both on the other-amount column.
        case kOtherCharges:
        case kUrsBonus:
            return columns_.otherAmount;
        default:
            return true;
        }
    };
    bool complete = true;
    for (int slot = 0; slot < kSlots; ++slot) {
        std::int32_t& code = voucher.slots[static_cast<std::size_t>(slot)];
        code = needed(slot) ? HeadCode(kSlotHeads[slot]) : kNotNeeded;
        if (code != 0) continue;
        complete = false;
        context_.Util().ShowMessage(std::string("A/c Head: '") + kSlotHeads[slot] +
                                        "' not found in master.\r\nCan't pass voucher entry.",
                                    "", "E");
    }
    return complete;
}

void DailyVoucher::PostDocuments(Posting& voucher) {
    std::string sql = "Select b.DocSeries,b.DocNumber,b.PartyCode,b.GrandTotal,b.Labour,"
                      "b.Loading,b.StitchAmt,b.DamiAmt,b.DharmadaAmt, b.RoundOffAmt,b.FormNo,"
                      "b.FormBookNo,b.JFormNoPortal,b.DocumentID,b.MarketID";
    if (columns_.bardana) sql += ",b.BardanaAmt";
    if (columns_.addFreight) sql += ",b.AddFreight";
    if (columns_.ursBonus) sql += ",b.URSBonusAmt";
    if (columns_.otherAmount) sql += ",b.OthAmt";
    sql += " From DocMain b Where b.DocDate=" + voucher.dayLiteral +
           " and b.DocSeries in ('JF','IF') and (b.Cancelled=0 or b.Cancelled is null) Order by "
           "b.DocSeries,b.DocNumber";
    auto amount = [](const qx::Recordset& row, const char* field) {
        return row.Field(field).AsAmount();
    };
    for (auto doc = db_.OpenRecordset(sql); !doc->EndOfRows(); doc->MoveNext()) {
        const bool iForm = doc->Field("DocSeries").AsText() == "IF";
        std::string narration = (iForm ? "I-Form No. " : "J-Form No. ") + FormText(*doc);
        const std::string portal = doc->Field("JFormNoPortal").AsText();
        if (!iForm && !portal.empty()) narration += " ( Portal J.F. No. " + portal + " )";
        const std::int32_t documentId = doc->Field("DocumentID").AsInt();
        // Buyers are debited, farmers credited.
        const Amount grandTotal = amount(*doc, "GrandTotal");
        Add(voucher, doc->Field("PartyCode").AsInt(), "the party",
            iForm ? grandTotal : -grandTotal, narration, documentId);
        (iForm ? voucher.labourIForms : voucher.labourJForms) += amount(*doc, "Labour");
        voucher.loading += amount(*doc, "Loading");
        voucher.dami += amount(*doc, "DamiAmt");
        voucher.dharmada += amount(*doc, "DharmadaAmt");
        voucher.stitching += amount(*doc, "StitchAmt");
        voucher.roundOff += amount(*doc, "RoundOffAmt");
        if (columns_.bardana) voucher.bardana += amount(*doc, "BardanaAmt");
        if (columns_.addFreight) voucher.addFreight += amount(*doc, "AddFreight");
        if (columns_.otherAmount) voucher.otherAmount += amount(*doc, "OthAmt");
        if (columns_.ursBonus)
            Add(voucher, voucher.slots[kUrsBonus], kSlotHeads[kUrsBonus],
                amount(*doc, "URSBonusAmt"), narration, documentId);
    }
}

void DailyVoucher::PostOwnPurchases(Posting& voucher) {
    const std::string purchases =
        "Select a.ProductID,b.DocNumber,sum(a.Amount) as Amt,sum(a.iMarketFeeAmt) as MFee,"
        "sum(a.iRDFAmt) as RDF,sum(a.iCancerFundAmt) as CancerFund,sum(a.iPIDFAmt) as PIDF,"
        "sum(a.iPurTaxAmt) as PurTax,sum(a.iLabourAmtIF) as iLabour,b.RoundOffAmt,a.DocumentID "
        "from DocData a Inner Join DocMain b on a.DocumentID=b.DocumentID where a.StockFactor=1 "
        "and b.DocSeries='JF' and b.DocDate=" +
        voucher.dayLiteral + " group by a.ProductID,a.DocumentID,b.DocNumber,b.RoundOffAmt";
    const std::string sql = "SELECT Q1.*,S.QMHD,v.CtgName as VCtgName FROM (( " + purchases +
                            " ) Q1 INNER JOIN STKMASTER S ON Q1.PRODUCTID=S.QMCD) LEFT JOIN "
                            "CTGMASTER V ON S.QVATCTGNO=V.CTGNO ORDER BY Q1.DOCNUMBER";
    for (auto row = db_.OpenRecordset(sql); !row->EndOfRows(); row->MoveNext()) {
        const std::string narration = "J-Form No. " + row->Field("DocNumber").AsText();
        const std::string category = row->Field("VCtgName").AsText();
        const std::int32_t documentId = row->Field("DocumentID").AsInt();
        AddTo(voucher, "PURCHASE " + category, row->Field("Amt").AsAmount(), narration,
              documentId);
        for (const LevyPair& pair : kLevyPairs) {
            const Amount levy = row->Field(pair.field).AsAmount();
            if (levy.IsZero()) continue;
            AddTo(voucher, pair.expense + category, levy, narration, documentId);
            AddTo(voucher, pair.payable, -levy, narration, documentId);
        }
    }
}

// Each item's goods difference goes to its category's goods head, signed as it comes: goods
// in are debited, goods out credited.
void DailyVoucher::PostGoods(const std::string& sql, Posting& voucher) {
    for (auto row = db_.OpenRecordset(sql); !row->EndOfRows(); row->MoveNext())
        AddTo(voucher, row->Field("VCtgName").AsText() + " MAL KHATA",
              row->Field("Amt").AsAmount(), "As per I-Forms");
}

void DailyVoucher::PostDayTotals(Posting& voucher) {
    auto credit = [&](int slot, Amount total, const char* narration) {
        Add(voucher, voucher.slots[static_cast<std::size_t>(slot)], kSlotHeads[slot], -total,
            narration);
    };
    credit(kDami, voucher.dami, "As per I-Forms");
    if (voucher.day < kLabourSplit) {
        credit(kLabour, voucher.labourJForms + voucher.labourIForms, "As per I/J-Forms");
    } else {
        credit(kLabourJForms, voucher.labourJForms, "As per J-Forms");
        credit(kLabourIForms, voucher.labourIForms, "As per I-Forms");
    }
    credit(kLoading, voucher.loading, "As per I-Forms");
    credit(kStitching, voucher.stitching, "As per I-Forms");
    credit(kDharam, voucher.dharmada, "As per I-Forms");
    if (columns_.bardana) credit(kBardana, voucher.bardana, "As per I-Forms");
    if (columns_.addFreight) credit(kFreight, voucher.addFreight, "As per I-Forms");
    if (columns_.otherAmount) credit(kOtherCharges, voucher.otherAmount, "As per I-Forms");
}

// The round off absorbs a difference below 2.00 whole; what the rows leave beyond it goes to
// the control head, which so carries the J-Form goods still waiting for their I-Forms.
void DailyVoucher::PostRoundOffAndControl(Posting& voucher) {
    Amount roundOff = voucher.roundOff;
    if (!roundOff.IsZero()) {
        if ((roundOff + voucher.balance).Abs() < Amount::FromInt(2)) roundOff = -voucher.balance;
        AddTo(voucher, "ROUND OFF", roundOff, "As per I/J-Forms");
    }
    Add(voucher, voucher.slots[kControl], kSlotHeads[kControl], -voucher.balance,
        "As per I/J-Forms");
}

void DailyVoucher::Add(Posting& voucher, std::int32_t code, const std::string& head,
                       Amount amount, const std::string& narration, std::int32_t documentId) {
    if (amount.IsZero()) return;
    qx::VoucherRow row;
    row.trnType = "IJF";
    row.book = "IJF";
    row.headName = head;
    row.serialNo = ++voucher.serialNo;
    row.voucherDate = voucher.day;
    row.accountCode = code;
    row.voucherId = voucher.voucherId;
    row.amount = amount;
    row.narration = narration;
    row.documentId = documentId;
    context_.App().Vouchers().AddVoucherRow(db_, *voucher.rows, row);
    voucher.balance += amount;
}

void DailyVoucher::AddTo(Posting& voucher, const std::string& head, Amount amount,
                         const std::string& narration, std::int32_t documentId) {
    if (amount.IsZero()) return;
    const std::int32_t code = HeadCode(head);
    if (code == 0) {
        context_.Util().ShowMessage("A/c Head '" + head + "' not found in master", "", "W");
        return;
    }
    Add(voucher, code, head, amount, narration, documentId);
}

// The form as the agent writes it: the market's form series, the book and the form number
// ("KHN 12/101"); a form without a number by its document number.
std::string DailyVoucher::FormText(const qx::Recordset& document) {
    const std::int64_t form = document.Field("FormNo").AsLong();
    if (form == 0) return document.Field("DocNumber").AsText();
    std::string text = std::to_string(form);
    if (const std::int64_t book = document.Field("FormBookNo").AsLong(); book != 0)
        text = std::to_string(book) + "/" + text;
    if (multipleMarkets_) {
        const std::int32_t market = document.Field("MarketID").AsInt();
        auto [series, added] = marketSeries_.try_emplace(market);
        if (added) series->second = GetMarketSeries(context_, market);
        if (!series->second.empty()) text = series->second + " " + text;
    }
    return text;
}

std::int32_t DailyVoucher::HeadCode(const std::string& name) {
    auto [head, added] = heads_.try_emplace(name);
    if (added)
        head->second =
            db_.LookupValue("FAMASTER", "mcd", "mhd=" + context_.Util().SqlQuote(name)).AsInt();
    return head->second;
}

} // namespace kivra
