#include "FormVoucher.h"

#include "Levies.h"

#include "host/HostApp.h"
#include "host/VoucherUtil.h"

#include <array>

namespace kivra {
namespace {

using qx::Amount;

void ReplaceAll(std::string& text, std::string_view what, const std::string& with) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

} // namespace

void FormVoucher::Begin() {
    ownCharges_ = {};
    TakeOffOwnCharges();
    PutFormNumber();
}

void FormVoucher::TakeOffOwnCharges() {
    const ItemColumns& c = form_.columns;
    const SeriesMode& mode = form_.mode;
    for (int row = 1; row < form_.ItemGrid().Rows(); ++row) {
        if (mode.jForm && c.customerId > 0) {
            if (form_.Cell(row, c.customerId) == "SELF")
                ownCharges_ += form_.Number(row, c.lineCharges);
        } else if (mode.iForm && c.amount > 0) {
            const Amount amount = form_.Number(row, c.amount);
            if (!amount.IsZero())
                ownCharges_ += amount * form_.Number(row, c.rate) / Amount::FromInt(100);
        }
    }
    auto& doc = form_.Doc();
    doc.SetPostingValue(qx::HostDocument::kPartyPosting,
                        doc.PostingValue(qx::HostDocument::kPartyPosting) - ownCharges_);
}

// "##" in the series' narration stands for the form number (and its book).
void FormVoucher::PutFormNumber() {
    const qx::ui::TextBox* formNo = form_.FormNoBox();
    if (!formNo) return;
    std::string number = formNo->Text();
    if (const qx::ui::TextBox* book = form_.FormBookBox()) number += " / " + book->Text();
    auto& fields = form_.Doc().VoucherFields();
    std::string narration = fields.GetValue("DocNarration").AsText();
    ReplaceAll(narration, "##", number);
    fields.SetValue("DocNarration", narration);
}

void FormVoucher::End() {
    if (form_.mode.localPurchase) PostLevyPairs();
}

void FormVoucher::PostLevyPairs() {
    const std::int32_t itemCode = form_.FirstLineItemCode();
    if (itemCode == 0) return;
    auto& doc = form_.Doc();
    auto& db = doc.Database();
    auto& util = form_.Context().Util();
    auto item = db.OpenRecordset("SELECT S.QMARKETFEE,S.QRDF,S.QPIDF,S.QPURTAX,V.CTGNAME VCTGNAME,"
                                 "S.QCANCERFUND FROM STKMASTER S INNER JOIN CTGMASTER V ON "
                                 "S.QVATCTGNO=V.CTGNO WHERE S.QMCD=" +
                                 std::to_string(itemCode));
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    if (item->EndOfRows()) return;
    const std::string category = item->Field("VCTGNAME").AsText();
    const Levies levies = LeviesOn(doc.DocumentAmount(),
                                   {item->Field("QMARKETFEE").AsAmount(), item->Field("QRDF").AsAmount(),
                                    item->Field("QPIDF").AsAmount(), item->Field("QPURTAX").AsAmount(),
                                    item->Field("QCANCERFUND").AsAmount()},
                                   !form_.IsGSTApplicable());
    struct Pair {
        const char* expense; // + category
        const char* payable;
        Amount amount;
    };
    const std::array<Pair, 5> pairs = {{
        {"MARKET FEE : ", "MARKET FEE PAYABLE", levies.marketFee},
        {"R.D.F. : ", "R.D.F. PAYABLE", levies.rdf},
        {"CANCER FUND : ", "CANCER FUND PAYABLE", levies.cancerFund},
        {"P.I.D.F. : ", "P.I.D.F. PAYABLE", levies.pidf},
        {"PURCHASE TAX : ", "PURCHASE TAX PAYABLE", levies.purTax},
    }};

    auto& fields = doc.VoucherFields();
    auto& vouchers = form_.Context().App().Vouchers();
    int serialNo = fields.GetValue("dSrNo").AsInt();
    // Each side stands alone: a missing head drops its side only, after the warning, and the
    // voucher may then not balance.
    auto post = [&](const std::string& head, Amount amount) {
        const std::int32_t code =
            db.LookupValue("FAMASTER", "mcd", "mhd=" + util.SqlQuote(head)).AsInt();
        if (code == 0) {
            util.ShowMessage("A/c Head '" + head + "' not found in master", "", "W");
            return;
        }
        qx::VoucherRow row;
        row.trnType = fields.GetValue("dTrnType").AsText();
        row.book = fields.GetValue("dBook").AsText();
        row.headName = head;
        row.serialNo = ++serialNo;
        row.voucherDate = doc.DocDate();
        row.accountCode = code;
        row.voucherId = fields.GetValue("VoucherID").AsInt();
        row.amount = amount;
        row.narration = fields.GetValue("DocNarration").AsText();
        row.documentId = doc.DocumentID();
        vouchers.AddVoucherRow(db, *rows, row);
    };
    for (const Pair& pair : pairs) {
        if (pair.amount.IsZero()) continue;
        post(pair.expense + category, pair.amount);
        post(pair.payable, -pair.amount);
    }
    fields.SetValue("dSrNo", serialNo);
    rows->Close();
    item->Close();
}

} // namespace kivra
