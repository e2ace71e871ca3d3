// What a typed voucher must be before it is written. Every check runs inside the unit of work
// that writes the voucher, so that what it decided on cannot change before the write.
#include "Voucher.h"

#include "host/Text.h"

#include <algorithm>

namespace qx::desk {
namespace {

// The chart's groups of money in hand: CASH-IN-HAND and BANK ACCOUNTS.
bool IsCashOrBank(CompanyDb& db, std::int32_t account) {
    const auto group = db.LookupValue("FAMASTER", "MBSHNO", "MCD=" + std::to_string(account)).AsInt();
    return group == 10 || group == 20;
}

std::string RowName(std::size_t index, const VoucherLine& line) {
    return "Row " + std::to_string(index + 1) +
           (line.accountName.empty() ? std::string() : " (" + line.accountName + ")");
}

std::string LinesRefusal(CompanyDb& db, const Voucher& voucher) {
    if (voucher.lines.empty())
        return "The voucher has no rows: give each account its amount, Dr or Cr.";
    Amount debits, credits;
    for (std::size_t i = 0; i < voucher.lines.size(); ++i) {
        const VoucherLine& line = voucher.lines[i];
        if (line.account == 0)
            return RowName(i, line) + " has no account.";
        if (db.LookupValue("FAMASTER", "MCD", "MCD=" + std::to_string(line.account)).IsNull())
            return RowName(i, line) + ": the account is not in the masters.";
        if (line.amount.IsZero())
            return RowName(i, line) + " has no amount.";
        (line.amount > Amount() ? debits : credits) += line.amount.Abs();
    }
    if (debits != credits)
        return "The voucher does not balance: debits " + FormatAmount(debits, "c2") + ", credits " +
               FormatAmount(credits, "c2") + ", a difference of " +
               FormatAmount((debits - credits).Abs(), "c2") + (debits > credits ? " Dr" : " Cr") +
               ". Nothing was saved.";
    return {};
}

// Money comes into a cash or bank account on a receipt and goes out of one on a payment; a
// contra moves it between them.
std::string MoneyRefusal(CompanyDb& db, const Voucher& voucher) {
    const bool contra = voucher.book == "CNTR";
    const int side = voucher.book == "RCPT" ? 1 : voucher.book == "PYMT" ? -1 : 0;
    if (!contra && side == 0)
        return {};
    bool moved = false;
    for (std::size_t i = 0; i < voucher.lines.size(); ++i) {
        const VoucherLine& line = voucher.lines[i];
        const bool money = IsCashOrBank(db, line.account);
        if (contra && !money)
            return "A contra voucher moves money between cash and bank accounts: " +
                   RowName(i, line) + " is neither.";
        if (money && (line.amount > Amount() ? 1 : -1) == side)
            moved = true;
    }
    if (side == 1 && !moved)
        return "A receipt brings money in: debit a cash or bank account.";
    if (side == -1 && !moved)
        return "A payment pays money out: credit a cash or bank account.";
    return {};
}

std::string SettlementRefusal(CompanyDb& db, const Voucher& voucher) {
    for (std::int32_t document : voucher.settles) {
        const std::string id = std::to_string(document);
        auto row = db.OpenRecordset("SELECT DOCSERIES, DOCNUMBER, PARTYCODE FROM DOCMAIN WHERE DOCUMENTID=" + id);
        if (row->EndOfRows())
            return "Document " + id + " is not in the company.";
        const std::string name = row->Field(0).AsText() + " " + row->Field(1).AsText();
        const std::int32_t party = row->Field(2).AsInt();
        if (std::ranges::none_of(voucher.lines, [&](const VoucherLine& l) { return l.account == party; }))
            return name + " is of " +
                   db.LookupValue("FAMASTER", "MHD", "MCD=" + std::to_string(party)).AsText() +
                   ", who is not on this voucher.";
        const auto other = db.LookupValue("FASETTLED", "VOUCHERID",
                                          "DOCUMENTID=" + id + " AND VOUCHERID<>" + std::to_string(voucher.id));
        if (!other.IsNull())
            return name + " is settled by voucher " + other.AsText() + " already.";
        if (!db.FieldExists("UTRNO", "DOCMAIN"))
            continue;
        // A reference written on the document itself is kept, not overwritten by another.
        auto utr = db.OpenRecordset("SELECT UTRNO, UTRDATE FROM DOCMAIN WHERE DOCUMENTID=" + id);
        const std::string shown = Trim(utr->Field(0).AsText());
        if (!shown.empty() && shown != voucher.utrNo &&
            db.LookupValue("FASETTLED", "VOUCHERID", "DOCUMENTID=" + id).IsNull())
            return name + " shows UTR " + shown +
                   (utr->Field(1).IsNull() ? std::string() : " of " + utr->Field(1).AsDate().ToDisplay()) +
                   " already.";
    }
    return {};
}

std::string ReferenceRefusal(CompanyDb& db, const Voucher& voucher, const VoucherBook& book) {
    if (!book.bankReference) {
        if (!voucher.utrNo.empty() || voucher.utrDate || !voucher.settles.empty())
            return "Only a receipt or a payment carries a UTR or settles documents.";
        return {};
    }
    if (!voucher.utrNo.empty() && !voucher.utrDate)
        return "The UTR no. " + voucher.utrNo + " needs its date.";
    if (voucher.utrNo.empty() && voucher.utrDate)
        return "The UTR date needs its UTR no.";
    if (voucher.utrNo.size() > 50)
        return "A UTR no. has at most 50 characters.";
    return SettlementRefusal(db, voucher);
}

} // namespace

const VoucherBook* FindVoucherBook(std::string_view codeOrCaption) {
    const std::string wanted = Trim(codeOrCaption);
    for (const VoucherBook& book : kVoucherBooks)
        if (EqualsNoCase(book.code, wanted) || EqualsNoCase(book.caption, wanted))
            return &book;
    return nullptr;
}

std::string VoucherRefusal(CompanyDb& db, const Voucher& voucher) {
    const VoucherBook* book = FindVoucherBook(voucher.book);
    if (!book)
        return "Choose the voucher's book: Receipt, Payment, Journal, Contra or Opening Balance.";
    if (!voucher.date)
        return "Give the voucher's date.";
    if (std::string refusal = LinesRefusal(db, voucher); !refusal.empty())
        return refusal;
    if (std::string refusal = MoneyRefusal(db, voucher); !refusal.empty())
        return refusal;
    return ReferenceRefusal(db, voucher, *book);
}

} // namespace qx::desk
