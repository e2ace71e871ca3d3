#pragma once
// The day's consolidated I/J-Form voucher (transaction type "IJF"): one voucher a day that
// carries every J-Form and I-Form of the day into the ledger: the farmers' credits and the
// buyers' debits, the day's charges, the agent's own purchases with their levies, the goods
// account of each category, and on the control head what the day leaves unsettled.
//
// Invariants, which every save, edit, date change, cancellation and deletion keeps, because
// each of them posts the day (both days when the date moved) again, inside the unit of work
// that writes the document:
//  (1) A day's "IJF" voucher equals what Post builds afresh from that day's documents.
//  (2) A voucher whose heads all exist balances: the round-off and control rows take whatever
//      the rows before them leave, so the voucher adds up to 0 whatever the documents hold.
//  (3) A day with no document that counts (all cancelled or deleted) has no "IJF" voucher.

#include "kivra/module/ModuleContext.h"

#include "host/Date.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kivra {

// The optional document columns a firm may use, each with its ledger head in the day's
// voucher: bardana, additional freight, URS bonus, other amounts.
struct DayColumns {
    bool bardana = false;
    bool addFreight = false;
    bool ursBonus = false;
    bool otherAmount = false;

    // Those the company's DOCMAIN has.
    static DayColumns Of(qx::CompanyDb& db);
};

// Whether the account is one the day's voucher looks up by name (its head table, the round
// off): without it no day can be posted, so it is never deleted.
bool IsDayVoucherHead(std::string_view name);

class DailyVoucher {
public:
    DailyVoucher(ModuleContext& context, qx::CompanyDb& db, bool multipleMarkets,
                 DayColumns columns)
        : context_(context), db_(db), multipleMarkets_(multipleMarkets), columns_(columns) {}

    // Throws the voucher of the day away and builds it again from the day's documents. A
    // missing head of the day's table leaves the day without a voucher, after saying so. An
    // error of the company's database is passed on, naming this posting, for the caller's unit
    // of work to undo everything.
    void Post(qx::Date day);

private:
    struct Posting;
    void Build(qx::Date day);
    bool FillHeadTable(Posting& voucher);
    void PostDocuments(Posting& voucher);
    void PostOwnPurchases(Posting& voucher);
    void PostGoods(const std::string& sql, Posting& voucher);
    void PostDayTotals(Posting& voucher);
    void PostRoundOffAndControl(Posting& voucher);
    // A row on a head of the table or of an account code; nothing for an amount of 0.
    void Add(Posting& voucher, std::int32_t code, const std::string& head, qx::Amount amount,
             const std::string& narration, std::int32_t documentId = 0);
    // A row on a head by its name; a missing head drops the row, after a warning.
    void AddTo(Posting& voucher, const std::string& head, qx::Amount amount,
               const std::string& narration, std::int32_t documentId = 0);
    std::string FormText(const qx::Recordset& document);
    std::int32_t HeadCode(const std::string& name);

    ModuleContext& context_;
    qx::CompanyDb& db_;
    bool multipleMarkets_;
    DayColumns columns_;
    // Looked up once a posting: heads by name, markets' form series by id.
    std::map<std::string, std::int32_t> heads_;
    std::map<std::int32_t, std::string> marketSeries_;
};

} // namespace kivra
