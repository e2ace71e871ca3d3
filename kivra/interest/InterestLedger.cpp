#include "InterestLedger.h"

#include "host/Text.h"

namespace kivra {
namespace {

// The first screen leaves out opening entries, memoranda and type "zzz", and counts opening
// entries (type "0B") in the opening balance whatever their date. The second reads every row of
// the period and takes only what lies before it as the opening balance.
std::string EntriesSql(ModuleContext& context, InterestScreen screen, const std::string& party,
                       const qx::Period& period) {
    qx::ModuleUtil& util = context.Util();
    if (screen == InterestScreen::First)
        return "SELECT A.*,B.NARRATION FROM FADATA A INNER JOIN FANAR B ON A.NARRATIONID=B.NARRATIONID"
               " WHERE A.DVCHDATE BETWEEN " + util.SqlDate(period.from, period.to) + " AND A.DCD=" + party +
               " AND A.DBOOK NOT IN ('0B','MEM') AND A.DTRNTYPE<>'zzz' ORDER BY A.DVCHDATE";
    return "SELECT A.*,B.NARRATION FROM FADATA A, FANAR B WHERE A.NARRATIONID=B.NARRATIONID AND DCD =" + party +
           " and dvchdate >= " + util.SqlDate(period.from) + " and dvchdate <= " + util.SqlDate(period.to) +
           " ORDER BY DVCHDATE";
}

std::string OpeningCondition(ModuleContext& context, InterestScreen screen, const std::string& party,
                             const qx::Period& period) {
    const std::string from = context.Util().SqlDate(period.from);
    if (screen == InterestScreen::First)
        return "DCD=" + party + " AND DBOOK<>'MEM' AND (DVCHDATE<" + from + " OR DTRNTYPE='0B')";
    return "DBOOK<>'MEM' AND DCD =" + party + "  AND DVCHDATE<" + from;
}

int FieldIndex(const qx::Recordset& rows, std::string_view name) {
    for (int i = rows.FieldCount() - 1; i >= 0; --i)
        if (qx::EqualsNoCase(rows.FieldName(i), name)) return i;
    throw qx::DbError("The ledger rows have no field " + std::string(name) + ".");
}

} // namespace

LedgerExtract ReadLedger(ModuleContext& context, InterestScreen screen, std::int32_t party, const qx::Period& period) {
    const std::string code = std::to_string(party);
    LedgerExtract extract;
    extract.opening = context.Db().LookupValue("FADATA", "SUM(DAMT)", OpeningCondition(context, screen, code, period)).AsAmount();
    auto rows = context.Db().OpenRecordset(EntriesSql(context, screen, code, period));
    const int date = FieldIndex(*rows, "DVCHDATE"), book = FieldIndex(*rows, "DBOOK"),
              narration = FieldIndex(*rows, "NARRATION"), amount = FieldIndex(*rows, "DAMT");
    for (; !rows->EndOfRows(); rows->MoveNext())
        extract.entries.push_back({rows->Field(date).AsDate(), rows->Field(book).AsText(),
                                   rows->Field(narration).AsText(), rows->Field(amount).AsAmount()});
    return extract;
}

} // namespace kivra
