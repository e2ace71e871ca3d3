// Saving on a season's data through the real entry screen with the Kivra module plugged in: a
// new J-Form typed and saved, a local purchase with its own voucher, a saved I-Form opened, its
// rate changed and saved again, and the browse list a user opens a saved form from. Each works
// on its own copy of the season company.
#include "MandiDesk.h"
#include "SeasonCompany.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>

namespace qx::bench {
namespace {

// What the engine writes of a document from the screen: the header's figures, the lines'
// cells and the charges as applied. The lines' stock and J-Form factors and levies are left
// out: the module's saving of its rows will set them.
std::string Written(CompanyDb& db, std::int32_t documentId, const std::string& lineFields) {
    const std::string id = std::to_string(documentId);
    return Rows(db, "SELECT DOCSERIES, DOCSERIESID, DOCNUMBER, DOCDATE, PARTYCODE, GROSSAMT, "
                    "GRANDTOTAL, LABOUR, "
                    "LOADING, ROUNDOFFAMT, CANCELLED, SALETYPE, VOUCHERID, MarketID, FormBookNo, "
                    "FormNo, DamiAmt, "
                    "StitchAmt, DharmadaAmt FROM DOCMAIN WHERE DOCUMENTID=" +
                        id) +
           Rows(db, "SELECT " + lineFields + " FROM DOCDATA WHERE DOCUMENTID=" + id +
                        " ORDER BY REFNO") +
           Rows(db, "SELECT POSITION, CHARGEKEY, RATE, AMOUNT, HEADCODE FROM DOCCHARGEDATA WHERE "
                    "DOCUMENTID=" +
                        id + " ORDER BY POSITION");
}
const std::string kHostLineFields = "REFNO, PRODUCTID, QUANTITY, FREEQUANTITY, QTYPERBOX, "
                                    "NOOFBOXES, PCS, TOTALWT, RATE, AMOUNT, AddLessKgs";

// A generated form opened and saved unchanged must come out as it was written: otherwise the
// season is not what the engine would have made, and its figures would mislead. Empty when it
// does; else what differs.
std::string Disagreement(MandiDesk& desk, desk::DocumentScreen& screen, std::int32_t documentId,
                         const std::string& lineFields) {
    const std::string generated = Written(desk.Db(), documentId, lineFields);
    desk.frontend.ClearTranscript();
    screen.OpenDocument(documentId);
    if (!screen.SaveDocument())
        return "document " + std::to_string(documentId) + " was refused: " + desk.FirstMessage();
    const std::string saved = Written(desk.Db(), documentId, lineFields);
    if (saved != generated)
        return "document " + std::to_string(documentId) + " generated as\n" + generated +
               "saved as\n" + saved;
    if (!desk.frontend.Transcript().empty())
        return "document " + std::to_string(documentId) +
               " was saved with the message: " + desk.FirstMessage();
    return {};
}

std::string Name(CompanyDb& db, int code) {
    return db.LookupValue("FAMASTER", "MHD", "MCD=" + std::to_string(code)).AsText();
}

// A new J-Form of two lines on the season's last day, at Khanna: the date, the farmer, the
// mandi from its list, a book and form number of its own, and each line's cells as a user
// types them. Without timeTyping only the save is timed.
void NewJForm(benchmark::State& state, bool timeTyping) {
    MandiDesk desk(SeasonCompanyCopy("new-jform"));
    CompanyDb& db = desk.Db();
    const std::string day =
        db.LookupValue("DOCMAIN", "MAX(DOCDATE)", "DOCSERIES='JF'").AsDate().ToDisplay();
    const std::string farmer = Name(db, kFirstFarmerCode);
    const std::string buyer = Name(db, kFirstBuyerCode);
    auto& screen = desk.OpenMenu("JForms");
    const auto generated = db.LookupValue("DOCMAIN", "DOCUMENTID", "DOCSERIES='JF'").AsInt();
    if (const auto wrong = Disagreement(desk, screen, generated, "CUSTOMERID, " + kHostLineFields);
        !wrong.empty()) {
        state.SkipWithError(wrong.c_str());
        return;
    }
    int form = 0;
    for (auto _ : state) {
        if (!timeTyping)
            state.PauseTiming();
        desk.frontend.ClearTranscript();
        MandiDesk::Type(screen, screen.TxpDocDate(), day);
        MandiDesk::Type(screen, screen.TxpCustomer(), farmer);
        desk.Choose(screen, test::Box(screen, "MARKET"), "KHANNA");
        MandiDesk::Type(screen, test::Box(screen, "FORM_BOOK_NO"), "9001");
        MandiDesk::Type(screen, test::Box(screen, "FORM_NO"), std::to_string(++form));
        MandiDesk::TypeLine(screen, 1,
                            {{"PRODUCT_ID", "paddy"},
                             {"CUSTOMER_ID", buyer},
                             {"QTY_PER_BOX", "37.50"},
                             {"QUANTITY", "75.00"},
                             {"REV_BAGS2", "200"},
                             {"RATE", "2320"}});
        MandiDesk::TypeLine(screen, 2,
                            {{"PRODUCT_ID", "paddy"},
                             {"CUSTOMER_ID", "self"},
                             {"QTY_PER_BOX", "37.50"},
                             {"QUANTITY", "30.00"},
                             {"REV_BAGS2", "80"},
                             {"RATE", "2350"}});
        if (!timeTyping)
            state.ResumeTiming();
        if (!screen.SaveDocument() || !desk.frontend.Transcript().empty()) {
            state.SkipWithError(
                ("the J-Form was not saved quietly: " + desk.FirstMessage()).c_str());
            break;
        }
    }
    state.counters["documents"] =
        static_cast<double>(db.LookupValue("DOCMAIN", "COUNT(*)", "").AsLong());
    state.counters["lines"] =
        static_cast<double>(db.LookupValue("DOCDATA", "COUNT(*)", "").AsLong());
}
BENCHMARK_CAPTURE(NewJForm, typed_and_saved, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(NewJForm, saved, false)->Unit(benchmark::kMillisecond);

// A local purchase from a farmer on the season's last day: unlike the mandi forms it posts a
// voucher of its own as it is saved.
void NewLocalPurchase(benchmark::State& state) {
    MandiDesk desk(SeasonCompanyCopy("new-local-purchase"));
    CompanyDb& db = desk.Db();
    const std::string day = db.LookupValue("DOCMAIN", "MAX(DOCDATE)", "").AsDate().ToDisplay();
    const std::string farmer = Name(db, kFirstFarmerCode);
    auto& screen = desk.OpenMenu("PurchaseLocal");
    int form = 0;
    for (auto _ : state) {
        desk.frontend.ClearTranscript();
        MandiDesk::Type(screen, screen.TxpDocDate(), day);
        MandiDesk::Type(screen, screen.TxpCustomer(), farmer);
        desk.Choose(screen, test::Box(screen, "MARKET"), "KHANNA");
        MandiDesk::Type(screen, test::Box(screen, "FORM_NO"), std::to_string(++form));
        MandiDesk::TypeLine(
            screen, 1,
            {{"PRODUCT_ID", "wheat"}, {"QTY_PER_BOX", "50"}, {"QUANTITY", "10"}, {"RATE", "2275"}});
        if (!screen.SaveDocument() || !desk.frontend.Transcript().empty()) {
            state.SkipWithError(
                ("the purchase was not saved quietly: " + desk.FirstMessage()).c_str());
            break;
        }
    }
    state.counters["ledger rows"] =
        static_cast<double>(db.LookupValue("FADATA", "COUNT(*)", "").AsLong());
    state.counters["narrations"] =
        static_cast<double>(db.LookupValue("FANAR", "COUNT(*)", "").AsLong());
}
BENCHMARK(NewLocalPurchase)->Unit(benchmark::kMillisecond);

// The I-Forms of a mid-season day, opened one after another; the first line's rate goes up a
// rupee on one pass over them and back down on the next, and each is saved again (F10), which
// opens the next new I-Form with its list of pending J-Forms (the user presses Esc). The time
// is the save alone: each iteration opens a new I-Form once more, timed apart, and takes that
// time off the F10's. Counters: f10_ms, the save with the next new I-Form as the user waits
// for them, and new_iform_ms, the new I-Form alone.
void EditIForm(benchmark::State& state) {
    MandiDesk desk(SeasonCompanyCopy("edit-iform"));
    CompanyDb& db = desk.Db();
    const auto firstDay = db.LookupValue("DOCMAIN", "MIN(DOCDATE)", "").AsDate();
    const auto lastDay = db.LookupValue("DOCMAIN", "MAX(DOCDATE)", "").AsDate();
    const Date midSeason = firstDay.AddDays((lastDay.Serial() - firstDay.Serial()) / 2);
    std::vector<std::int32_t> forms;
    for (auto rows =
             db.OpenRecordset("SELECT DOCUMENTID FROM DOCMAIN WHERE DOCSERIES='IF' AND DOCDATE=" +
                              db.DateLiteral(midSeason) + " ORDER BY DOCNUMBER");
         !rows->EndOfRows(); rows->MoveNext())
        forms.push_back(rows->Field(0).AsInt());
    if (forms.empty()) {
        state.SkipWithError("the season has no I-Forms");
        return;
    }
    auto& screen = desk.OpenMenu("IForms");
    if (const auto wrong = Disagreement(desk, screen, forms.front(), kHostLineFields);
        !wrong.empty()) {
        state.SkipWithError(wrong.c_str());
        return;
    }
    using Clock = std::chrono::steady_clock;
    std::size_t edits = 0;
    Clock::duration f10{}, newIForm{};
    for (auto _ : state) {
        const bool up = (edits / forms.size()) % 2 == 0;
        const std::int32_t form = forms[edits++ % forms.size()];
        desk.frontend.ClearTranscript();
        screen.OpenDocument(form);
        const Amount rate = TextToAmount(screen.Grid().TextMatrix(1, screen.Member("COL_RATE")));
        MandiDesk::TypeLine(screen, 1,
                            {{"RATE", (rate + Amount::FromInt(up ? 1 : -1)).ToPlainString()}});
        const auto start = Clock::now();
        if (!screen.SaveDocument() || !desk.frontend.Transcript().empty()) {
            state.SkipWithError(
                ("the I-Form was not saved quietly: " + desk.FirstMessage()).c_str());
            break;
        }
        const auto saved = Clock::now();
        screen.NewDocument();
        const auto opened = Clock::now();
        f10 += saved - start;
        newIForm += opened - saved;
        state.SetIterationTime(std::chrono::duration<double>((saved - start) - (opened - saved))
                                   .count());
    }
    const auto perEdit = [&](Clock::duration total) {
        return std::chrono::duration<double, std::milli>(total).count() /
               static_cast<double>(std::max<std::size_t>(edits, 1));
    };
    state.counters["f10_ms"] = perEdit(f10);
    state.counters["new_iform_ms"] = perEdit(newIForm);
}
BENCHMARK(EditIForm)->UseManualTime()->Unit(benchmark::kMillisecond);

// F6 on the I-Form screen: the season's I-Forms listed, the user takes the first.
void BrowseIForms(benchmark::State& state) {
    MandiDesk desk(SeasonCompanyCopy("browse-iforms"));
    auto& screen = desk.OpenMenu("IForms");
    for (auto _ : state) {
        desk.frontend.QueueModal([](ui::Screen& list) {
            list.Get<ui::Grid>(desk::kSelectListGrid).SetCurrent(1, 0);
            list.Get<ui::StdButtons>(desk::kSelectListButtons).Click(0);
        });
        screen.KeyDown({.key = ui::Key::F6});
        if (screen.Document().DocumentID() == 0) {
            state.SkipWithError("no I-Form was opened from the list");
            break;
        }
        screen.NewDocument();
    }
    state.counters["listed"] = static_cast<double>(
        desk.Db().LookupValue("DOCMAIN", "COUNT(*)", "DOCSERIES='IF'").AsLong());
}
BENCHMARK(BrowseIForms)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace qx::bench
