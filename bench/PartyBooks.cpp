#include "PartyBooks.h"

#include "SeasonCompany.h"

#include "desk/core/Session.h"
#include "desk/core/VoucherRows.h"
#include "host/Amount.h"

#include <map>

namespace qx::bench {
namespace {

constexpr std::int32_t kParty = 101, kOthers = 102, kCash = 201, kSales = 202, kCapital = 203;

PartyBooks Make(int entries) {
    PartyBooks books{RunFolder() / ("party-" + std::to_string(entries) + ".kdb"), kParty,
                     {Date::FromYmd(2024, 4, 1), Date::FromYmd(2025, 3, 31)}};
    desk::Session session;
    session.Create(books.company, "Party Books");
    CompanyDb& db = session.Database();
    for (const auto& [code, name, group] : {std::tuple{kParty, "GURMEET SINGH", 180}, {kOthers, "HARPAL SINGH", 180},
                                            {kCash, "CASH", 10}, {kSales, "SALES", 72}, {kCapital, "CAPITAL", 150}})
        db.ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST, MBSHNO) VALUES (" + std::to_string(code) + ", '" + name +
                      "', '', " + std::to_string(group) + ")");

    desk::LedgerVoucherUtil vouchers;
    Transaction unit(db);
    auto rows = db.OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    std::int32_t id = vouchers.NextVoucherId(db);
    auto post = [&](Date day, const std::string& book, std::int32_t party, std::int32_t against, Amount amount,
                    const std::string& narration) {
        vouchers.AddVoucherRow(db, *rows, {book, book, "", "", 1, day, party, id, amount, narration});
        vouchers.AddVoucherRow(db, *rows, {book, book, "", "", 2, day, against, id, -amount, narration});
        db.ExecuteSql("INSERT INTO FADOCS (VOUCHERID, ISAUTOVOUCHER, VCHDATE, TRNTYPE) VALUES (" + std::to_string(id) +
                      ", 0, " + db.DateLiteral(day) + ", '" + book + "')");
        ++id;
    };
    // The n-th entry of each party on its day: a payment or a bill in turn, or a memorandum.
    auto entry = [&](int n, Date day) {
        const Amount amount = Amount::FromRaw(1000000 + (n % 97) * 12345); // 100.00 to 218.52
        for (std::int32_t party : {kParty, kOthers}) {
            const std::string of = std::to_string(n) + " of " + std::to_string(party);
            if (n % 50 == 7) post(day, "MEM", party, kCash, amount, "Memorandum " + of);
            else if (n % 2) post(day, "PYMT", party, kCash, amount, "Payment " + of);
            else post(day, "JRNL", party, kSales, -amount, "Bill " + of);
        }
    };
    const int before = entries / 20;
    for (int n = 0; n < before; ++n) entry(n, books.year.from.AddDays(-90 + n * 90 / before));
    post(books.year.from, "0B", kParty, kCapital, Amount::FromInt(150000), "Opening balance");
    const int days = books.year.from.DaysUntil(books.year.to) + 1;
    for (int n = 1; n < entries; ++n)
        entry(n, books.year.from.AddDays(static_cast<int>(static_cast<std::int64_t>(n) * days / entries)));
    unit.Commit();
    return books;
}

} // namespace

const PartyBooks& PartyWithEntries(int entries) {
    static std::map<int, PartyBooks> made;
    auto found = made.find(entries);
    if (found == made.end()) found = made.emplace(entries, Make(entries)).first;
    return found->second;
}

} // namespace qx::bench
