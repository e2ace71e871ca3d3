// Saving and deleting a document: the host's checks, then one unit of work with the
// extensions' events, and a failure that leaves the company and the screen as they were.
#include "DocumentScreen.h"
#include "ScreenTexts.h"

#include "host/Text.h"

#include <stdexcept>
#include <utility>

namespace qx::desk {
namespace {

// A save refused where the document is written: a figure that could not be computed is never
// written, as 0 or otherwise.
struct SaveRefused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::vector<std::vector<std::string>> CellsOf(const ui::Grid& grid) {
    std::vector<std::vector<std::string>> cells;
    for (int row = 1; row < grid.Rows(); ++row) {
        auto& line = cells.emplace_back();
        for (int col = 0; col < grid.Cols(); ++col)
            line.push_back(grid.TextMatrix(row, col));
    }
    return cells;
}

void PutCells(ui::Grid& grid, const std::vector<std::vector<std::string>>& cells) {
    grid.SetRedraw(false);
    grid.Clear();
    grid.SetRows(static_cast<int>(cells.size()) + 1);
    for (std::size_t i = 0; i < cells.size(); ++i)
        for (std::size_t col = 0; col < cells[i].size(); ++col)
            grid.SetTextMatrix(static_cast<int>(i) + 1, static_cast<int>(col), cells[i][col]);
    grid.SetRedraw(true);
}

} // namespace

// The number the document is saved under, decided inside the save's unit of work. The number
// the screen proposed, left as it was, gives way to the series' next free number now: another
// program may have taken it meanwhile. A number the user typed is his, and must be free.
std::int32_t DocumentScreen::NumberToSave(bool proposed) {
    const auto typed = static_cast<std::int32_t>(TextToAmount(number_.Text()).WholePart());
    return typed > 0 && !proposed ? typed : NextNumber(Db(), seriesId_);
}

bool DocumentScreen::RowHasContent(int row) const {
    for (int col = 1; col < grid_.Cols(); ++col)
        if (!Trim(grid_.TextMatrix(row, col)).empty())
            return true;
    return false;
}

std::string DocumentScreen::UnworkedRefusal(int row) const {
    return IsWorkedOut(row) ? std::string()
                            : "Line " + std::to_string(row) +
                                  " is not worked out: complete its figures before saving.";
}

// A line must be worked out and have every figure its series asks of each line (a quantity,
// a rate).
std::string DocumentScreen::LineRefusal(int row) const {
    if (auto refusal = UnworkedRefusal(row); !refusal.empty())
        return refusal;
    for (int col = 1; col < grid_.Cols(); ++col) {
        const SeriesColumn& column = ColumnAt(col);
        if (column.role != ColumnRole::Number || column.figures != FigureRange::Positive)
            continue;
        if (auto refusal = FigureRefusal(column, TextToAmount(grid_.TextMatrix(row, col)));
            !refusal.empty())
            return "Line " + std::to_string(row) + ": " + refusal;
    }
    return {};
}

// The host's own checks of a document before it is offered to the extensions for saving.
std::string DocumentScreen::Refusal(std::int32_t number) {
    if (!Date::ParseDisplay(date_.Text()))
        return "Enter the date as dd/MM/yyyy.";
    if (document_.PartyID() == 0)
        return "Choose the party.";
    if (std::string refusal = SeriesRefusal(); !refusal.empty())
        return refusal;
    bool anyLine = false;
    for (int row = 1; row < grid_.Rows(); ++row) {
        if (!document_.IsLine(row)) {
            if (RowHasContent(row))
                return "Line " + std::to_string(row) + " has no item.";
            continue;
        }
        anyLine = true;
        if (auto refusal = LineRefusal(row); !refusal.empty())
            return refusal;
    }
    if (!anyLine)
        return "Enter at least one item.";
    if (NumberTaken(Db(), seriesId_, number, document_.DocumentID()))
        return "Document no. " + std::to_string(number) + " already exists.";
    return {};
}

// What is being typed is taken, and checked, before the document is saved; so is a cell whose
// text a check refused, which would otherwise be saved unchecked.
bool DocumentScreen::TakeTyping() {
    for (auto [grid, refused] : {std::pair{&grid_, itemCellRefused_}, {&charges_, rateRefused_}})
        if ((grid->Editing() || refused) && !grid->Commit())
            return false;
    if (auto* box = dynamic_cast<ui::TextBox*>(Focused()); box && box->OnValidate) {
        bool cancel = false;
        box->OnValidate(cancel);
        return !cancel;
    }
    return true;
}

DocumentScreen::Content DocumentScreen::TakeContent() {
    Content content;
    content.items = CellsOf(grid_);
    for (int row = 1; row < grid_.Rows(); ++row)
        content.itemMarks.push_back(grid_.RowMarks(row));
    content.charges = CellsOf(charges_);
    content.mainFields = document_.MainFields();
    content.documentId = document_.DocumentID();
    content.isNew = document_.IsNewDocument();
    return content;
}

void DocumentScreen::PutBack(const Content& content) {
    PutCells(grid_, content.items);
    for (std::size_t i = 0; i < content.itemMarks.size(); ++i)
        grid_.SetRowMarks(static_cast<int>(i) + 1, content.itemMarks[i]);
    PutCells(charges_, content.charges);
    document_.MainFields() = content.mainFields;
    document_.SetIdentity(content.documentId, content.isNew);
}

bool DocumentScreen::SaveDocument() {
    return Save(false);
}

bool DocumentScreen::CancelDocument() {
    if (document_.IsNewDocument()) {
        Warn("Only a saved document can be cancelled.");
        return false;
    }
    return Save(true);
}

bool DocumentScreen::Save(bool cancelled) {
    if (!TakeTyping())
        return false;
    // Extensions change the screen while it is saved (lines they add, heads they fill in); a
    // save that fails leaves the document as the user typed it.
    const Content typed = TakeContent();
    const bool proposed = document_.IsNewDocument() && number_.Text() == proposedNumber_;
    std::string refusal;
    std::int32_t number = 0;
    try {
        // The unit takes the write lock before the first check, so that every check deciding
        // what is written (the number, the extensions' own, such as a form number) runs inside
        // the unit that writes it: no other program can take a number between the two.
        Transaction unit(Db());
        number = NumberToSave(proposed);
        refusal = Refusal(number);
        if (refusal.empty()) {
            if (document_.RaiseCancellable(
                    [](DocumentEvents& l, bool& cancel) { l.BeforeSaveDocument(cancel); }))
                return false;
            WriteDocument(number, cancelled);
            unit.Commit();
        }
    } catch (const SaveRefused& refused) {
        PutBack(typed);
        refusal = refused.what();
    } catch (const DbError& error) {
        PutBack(typed);
        if (error.Problem() != DbProblem::Duplicate)
            throw;
        // Only a writer that skipped the checks can have left it so; the index is the last word.
        refusal = "The company already holds a document with the same number: nothing was "
                  "saved. Check the document's numbers and save again.";
    } catch (...) {
        PutBack(typed);
        throw;
    }
    // Refusals are shown once the company is free again for other programs.
    if (!refusal.empty()) {
        Warn(refusal);
        return false;
    }
    if (proposed && std::to_string(number) != proposedNumber_)
        app_.ShowMessage("Document no. " + proposedNumber_ +
                             " was taken meanwhile: this document is saved as no. " +
                             std::to_string(number) + ".",
                         "", "I");
    lastDate_ = document_.DocDate();
    NewDocument();
    return true;
}

// Inside the save's unit of work: the header, the lines, the charges, the voucher and whatever
// the extensions write in their events; an error anywhere undoes all of it. An edited document
// keeps its id and its voucher's number, and its lines and voucher are written again.
void DocumentScreen::WriteDocument(std::int32_t number, bool cancelled) {
    CompanyDb& db = Db();
    const Series& series = CurrentSeries();
    const bool isNew = document_.IsNewDocument();
    const std::int32_t documentId = isNew ? NewDocumentId(db) : document_.DocumentID();
    std::int32_t voucherId = isNew ? 0 : VoucherOf(db, documentId);
    if (!isNew)
        DeleteContent(db, documentId);
    document_.SetIdentity(documentId, isNew);
    document_.Raise([](DocumentEvents& l) { l.SaveDocumentBegin(); });

    DocumentTotals totals;
    try {
        totals = CurrentTotals();
    } catch (const std::overflow_error&) {
        throw SaveRefused("The document's total is too large to be worked out.");
    }
    PropertyBag main = MainRecord(documentId, number, isNew, totals, cancelled);
    const bool posts = series.voucherFactor != 0 && main.GetValue("CANCELLED").AsLong() == 0;
    if (posts && voucherId == 0)
        voucherId = app_.Vouchers().NextVoucherId(db);
    main.SetValue("VOUCHERID", posts ? voucherId : 0);
    document_.Raise([&](DocumentEvents& l) { l.SaveMain(main); });
    WriteMain(db, main, isNew);

    VoucherSource voucher{.voucherId = voucherId,
                          .documentId = documentId,
                          .date = document_.DocDate(),
                          .partyCode = document_.PartyID(),
                          .partyAmount = totals.grandTotal,
                          .lines = {},
                          .charges = {},
                          .roundOff = totals.roundOff};
    auto lines = db.OpenRecordset("SELECT FIRST 0 * FROM DOCDATA");
    int refNo = 0;
    // Rows() is asked each time: an extension may add lines while they are saved.
    for (int row = 1; row < grid_.Rows(); ++row) {
        if (!document_.IsLine(row))
            continue;
        if (auto refusal = UnworkedRefusal(row); !refusal.empty())
            throw SaveRefused(refusal);
        PropertyBag line = LineRecord(row, documentId, ++refNo);
        document_.Raise([&](DocumentEvents& l) { l.SaveItem(row, line); });
        WriteLine(*lines, line);
        voucher.lines.push_back(
            {line.GetValue("PRODUCTID").AsInt(), line.GetValue("AMOUNT").AsAmount()});
    }
    const std::vector<AppliedCharge> charges = AppliedCharges(totals);
    WriteCharges(db, documentId, charges);
    if (posts) {
        for (std::size_t i = 0; i < charges.size(); ++i)
            voucher.charges.push_back(
                {series.charges[i].caption, charges[i].headCode,
                 series.charges[i].sign < 0 ? -charges[i].amount : charges[i].amount});
        PostVoucher(std::move(voucher), main);
    }
    document_.Raise([](DocumentEvents& l) { l.SaveDocumentEnd(); });
    if (isNew)
        TakeNumber(db, series.id, main.GetValue("DOCNUMBER").AsInt());
    document_.SetIdentity(documentId, false);
}

// The header as saved: an edited document's row as it stands (columns the screen does not
// hold keep their values), the main fields the table has, then the screen's own figures.
PropertyBag DocumentScreen::MainRecord(std::int32_t documentId, std::int32_t number, bool isNew,
                                       const DocumentTotals& totals, bool cancelled) {
    CompanyDb& db = Db();
    const Series& series = CurrentSeries();
    PropertyBag main = isNew ? PropertyBag() : ReadMain(db, documentId);
    const PropertyBag& fields = document_.MainFields();
    for (const std::string& name : fields.Names())
        if (db.FieldExists(name, "DOCMAIN"))
            main.SetValue(name, fields.GetValue(name));
    main.SetValue("DOCUMENTID", documentId);
    main.SetValue("DOCSERIES", series.code);
    main.SetValue("DOCSERIESID", series.id);
    main.SetValue("DOCNUMBER", number);
    main.SetValue("DOCDATE", document_.DocDate());
    main.SetValue("PARTYCODE", document_.PartyID());
    main.SetValue("SALETYPE", TextToAmount(saleType_.Text()).WholePart());
    main.SetValue("GROSSAMT", totals.gross);
    main.SetValue("GRANDTOTAL", totals.grandTotal);
    main.SetValue("ROUNDOFFAMT", totals.roundOff);
    for (std::size_t i = 0; i < series.charges.size(); ++i)
        if (!series.charges[i].field.empty())
            main.SetValue(series.charges[i].field, totals.charges[i]);
    if (cancelled || isNew)
        main.SetValue("CANCELLED", cancelled ? 1 : 0);
    return main;
}

PropertyBag DocumentScreen::LineRecord(int row, std::int32_t documentId, int refNo) {
    PropertyBag line = BlankLine(CurrentSeries());
    line.SetValue("DOCUMENTID", documentId);
    line.SetValue("REFNO", refNo);
    for (int col = 1; col < grid_.Cols(); ++col) {
        const SeriesColumn& column = ColumnAt(col);
        const std::string& text = grid_.TextMatrix(row, col);
        switch (column.role) {
        case ColumnRole::ItemCode:
        case ColumnRole::PartyCode:
            line.SetValue(column.field, CodeIn(grid_, row, col));
            break;
        case ColumnRole::Number:
            if (!column.field.empty())
                line.SetValue(column.field, TextToAmount(text));
            break;
        case ColumnRole::Text:
            if (!column.field.empty())
                line.SetValue(column.field, text);
            break;
        case ColumnRole::Item:
        case ColumnRole::Party:
            break; // names: their codes are saved
        }
    }
    return line;
}

std::vector<AppliedCharge> DocumentScreen::AppliedCharges(const DocumentTotals& totals) {
    std::vector<AppliedCharge> applied;
    const auto& charges = CurrentSeries().charges;
    for (std::size_t i = 0; i < charges.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        applied.push_back({charges[i].key, TextToAmount(charges_.TextMatrix(row, kChargeRateCol)),
                           totals.charges[i], CodeIn(charges_, row, kChargeHeadCol)});
    }
    return applied;
}

// The extensions see the voucher before its rows are written: they may change what the party
// is posted (PostingValue) and the narration, and add rows of their own when it ends.
void DocumentScreen::PostVoucher(VoucherSource source, const PropertyBag& main) {
    const Series& series = CurrentSeries();
    PropertyBag fields;
    fields.SetValue("dTrnType", series.trnType);
    fields.SetValue("dBook", series.book);
    fields.SetValue("DocNarration",
                    series.narration.empty()
                        ? series.Title() + " No. " + main.GetValue("DOCNUMBER").AsText()
                        : series.narration);
    fields.SetValue("VoucherID", source.voucherId);
    fields.SetValue("dVchDate", source.date);
    fields.SetValue("DocumentID", source.documentId);
    document_.BeginVoucher(source.partyAmount, std::move(fields));
    document_.Raise([](DocumentEvents& l) { l.SaveVoucherBegin(); });

    source.partyAmount = document_.PostingValue(HostDocument::kPartyPosting);
    std::vector<VoucherRow> rows = BuildVoucherRows(Db(), series, source);
    for (const VoucherRow& row : rows)
        document_.Raise([&](DocumentEvents& l) { l.SaveVoucherAddRow(RowRecord(row)); });
    // An extension's own rows are numbered after the host's.
    document_.VoucherFields().SetValue("dSrNo", static_cast<int>(rows.size()));
    document_.Raise([](DocumentEvents& l) { l.SaveVoucherEnd(); });
    WriteVoucher(Db(), app_.Vouchers(), series, source, std::move(rows),
                 document_.VoucherFields().GetValue("DocNarration").AsText());
}

bool DocumentScreen::DeleteDocument() {
    if (document_.IsNewDocument())
        return false;
    if (app_.ShowMessage("Do you want to delete document no. " + number_.Text() + "?", "2", "Q") !=
        kAnswerYes)
        return false;
    const std::int32_t documentId = document_.DocumentID();
    CompanyDb& db = Db();
    // What the extensions read of the document before it goes (its day, whose voucher they
    // post again) is read in the unit that deletes it.
    Transaction unit(db);
    if (document_.RaiseCancellable(
            [&](DocumentEvents& l, bool& cancel) { l.DeleteDocument(documentId, cancel); }))
        return false;
    DeleteDocumentRows(db, documentId);
    document_.Raise([](DocumentEvents& l) { l.DeleteDocumentEnd(); });
    unit.Commit();
    NewDocument();
    return true;
}

} // namespace qx::desk
