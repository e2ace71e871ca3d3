#include "DocumentVoucher.h"

#include <algorithm>
#include <stdexcept>

namespace qx::desk {
namespace {

std::string HeadName(CompanyDb& db, std::int32_t code, const std::string& what) {
    std::string name =
        code == 0 ? std::string()
                  : db.LookupValue("FAMASTER", "MHD", "MCD=" + std::to_string(code)).AsText();
    if (name.empty())
        throw std::runtime_error("There is no account to post " + what + " to.");
    return name;
}

// The account a line's value goes to: the series' account for the item's VAT category.
std::int32_t LineAccount(CompanyDb& db, const Series& series, std::int32_t productId) {
    auto item = db.OpenRecordset(
        "SELECT C.CTGNAME, R.SALEPOSTINGCODE FROM STKMASTER S LEFT JOIN CTGMASTER C ON "
        "C.CTGNO=S.QVATCTGNO LEFT JOIN VATCATEGORYTAXRATES R ON R.VATCTGNO=S.QVATCTGNO AND "
        "R.SERIESID=" +
        std::to_string(series.id) + " WHERE S.QMCD=" + std::to_string(productId));
    if (item->EndOfRows())
        throw std::runtime_error("There is no item with code " + std::to_string(productId) + ".");
    const std::int32_t account = item->Field(1).AsInt();
    if (account == 0)
        throw std::runtime_error("No account is set for the VAT category " +
                                 item->Field(0).AsText() + " in the series " + series.Title() +
                                 ".");
    return account;
}

} // namespace

std::vector<VoucherRow> BuildVoucherRows(CompanyDb& db, const Series& series,
                                         const VoucherSource& source) {
    std::vector<VoucherRow> rows;
    const std::int64_t factor = series.voucherFactor;
    auto add = [&](std::int32_t account, const std::string& what, Amount amount) {
        if (amount.IsZero())
            return;
        VoucherRow& row = rows.emplace_back();
        row.trnType = series.trnType;
        row.book = series.book;
        row.headName = HeadName(db, account, what);
        row.serialNo = static_cast<int>(rows.size());
        row.voucherDate = source.date;
        row.accountCode = account;
        row.voucherId = source.voucherId;
        row.amount = amount;
        row.documentId = source.documentId;
    };

    add(source.partyCode, "the party", source.partyAmount * factor);
    // One row per account, in the order the lines first reach it.
    std::vector<std::pair<std::int32_t, Amount>> byAccount;
    for (const VoucherSource::Line& line : source.lines) {
        const std::int32_t account = LineAccount(db, series, line.productId);
        auto it = std::find_if(byAccount.begin(), byAccount.end(),
                               [&](const auto& a) { return a.first == account; });
        if (it == byAccount.end())
            byAccount.emplace_back(account, line.amount);
        else
            it->second += line.amount;
    }
    for (const auto& [account, amount] : byAccount)
        add(account, "the lines' value", -(amount * factor));
    for (const VoucherSource::Charge& charge : source.charges)
        add(charge.headCode, "the charge " + charge.caption, -(charge.amount * factor));
    if (!source.roundOff.IsZero()) {
        const std::int32_t roundOffHead =
            db.LookupValue("FAMASTER", "MCD", "MHD='ROUND OFF'").AsInt();
        add(roundOffHead, "the round off (an account ROUND OFF)", -(source.roundOff * factor));
    }
    return rows;
}

PropertyBag RowRecord(const VoucherRow& row) {
    PropertyBag record;
    record.SetValue("VOUCHERID", row.voucherId);
    record.SetValue("DSRNO", row.serialNo);
    record.SetValue("DCD", row.accountCode);
    record.SetValue("HEADNAME", row.headName);
    record.SetValue("DVCHDATE", row.voucherDate);
    record.SetValue("DBOOK", row.book);
    record.SetValue("DTRNTYPE", row.trnType);
    record.SetValue("DAMT", row.amount);
    record.SetValue("DDOCUMENTID", row.documentId);
    return record;
}

void WriteVoucher(CompanyDb& db, VoucherUtil& vouchers, const Series& series,
                  const VoucherSource& source, std::vector<VoucherRow> rows,
                  const std::string& narration) {
    auto ledger = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    for (VoucherRow& row : rows) {
        row.narration = narration;
        vouchers.AddVoucherRow(db, *ledger, row);
    }
    auto registered = db.OpenRecordset("SELECT FIRST 0 * FROM FADOCS");
    registered->AddNew();
    registered->SetField("VOUCHERID", source.voucherId);
    registered->SetField("ISAUTOVOUCHER", -1); // made by the document, not typed
    registered->SetField("VCHDATE", source.date);
    registered->SetField("TRNTYPE", series.trnType);
    registered->Update();
}

} // namespace qx::desk
