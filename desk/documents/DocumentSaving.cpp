// The screen's save, cancel and delete: one unit of work around the host's checks, the
// extensions' events and the writing, and a failure that leaves the company and the screen as
// they were.
#include "DocumentScreen.h"

#include "DocumentContent.h"
#include "DocumentRecords.h"
#include "DocumentWriter.h"
#include "SaveChecks.h"
#include "ScreenTexts.h"

#include <stdexcept>

namespace qx::desk {

// The number the document is saved under, decided inside the save's unit of work. The number
// the screen proposed, left as it was, gives way to the series' next free number now: another
// program may have taken it meanwhile. A number the user typed is his, and must be free.
std::int32_t DocumentScreen::NumberToSave(bool proposed) {
    const auto typed = static_cast<std::int32_t>(TextToAmount(number_.Text()).WholePart());
    return typed > 0 && !proposed ? typed : NextNumber(Db(), SeriesId());
}

// What is being typed is taken, and checked, before the document is saved.
bool DocumentScreen::TakeTyping() {
    if (!typing_.CommitTyping())
        return false;
    if (auto* box = dynamic_cast<ui::TextBox*>(Focused()); box && box->OnValidate) {
        bool cancel = false;
        box->OnValidate(cancel);
        return !cancel;
    }
    return true;
}

bool DocumentScreen::SaveDocument() {
    return Save(false);
}

bool DocumentScreen::CancelDocument() {
    if (document_.IsNewDocument()) {
        Warn(app_, "Only a saved document can be cancelled.");
        return false;
    }
    return Save(true);
}

bool DocumentScreen::Save(bool cancelled) {
    if (!TakeTyping())
        return false;
    // A save that fails leaves the document as the user typed it.
    const ScreenContent typed = ScreenContent::Take(grid_, charges_, document_);
    const bool proposed = document_.IsNewDocument() && number_.Text() == proposedNumber_;
    std::string refusal;
    std::int32_t number = 0;
    try {
        // The unit takes the write lock before the first check, so that every check deciding
        // what is written (the number, the extensions' own, such as a form number) runs inside
        // the unit that writes it: no other program can take a number between the two.
        Transaction unit(Db());
        number = NumberToSave(proposed);
        refusal = SaveRefusal(header_, itemGrid_, document_, SeriesId(), number);
        if (refusal.empty()) {
            if (document_.RaiseCancellable(
                    [](DocumentEvents& l, bool& cancel) { l.BeforeSaveDocument(cancel); }))
                return false;
            DocumentWriter(app_, document_, itemGrid_, chargesGrid_, totals_)
                .Write(number, cancelled);
            unit.Commit();
        }
    } catch (const SaveRefused& refused) {
        typed.PutBack(grid_, charges_, document_);
        refusal = refused.what();
    } catch (const DbError& error) {
        typed.PutBack(grid_, charges_, document_);
        if (error.Problem() != DbProblem::Duplicate)
            throw;
        // Only a writer that skipped the checks can have left it so; the index is the last word.
        refusal = "The company already holds a document with the same number: nothing was "
                  "saved. Check the document's numbers and save again.";
    } catch (...) {
        typed.PutBack(grid_, charges_, document_);
        throw;
    }
    // Refusals are shown once the company is free again for other programs.
    if (!refusal.empty()) {
        Warn(app_, refusal);
        return false;
    }
    if (proposed && std::to_string(number) != proposedNumber_)
        app_.ShowMessage("Document no. " + proposedNumber_ +
                             " was taken meanwhile: this document is saved as no. " +
                             std::to_string(number) + ".",
                         "", "I");
    lastDate_ = document_.DocDate();
    status_.SetText(SavedStatus(number));
    NewDocument();
    return true;
}

// "J-Form 150 saved: form 12/108, 1,97,303.00": the clerk glances at it while he starts the
// next form.
std::string DocumentScreen::SavedStatus(std::int32_t number) const {
    const std::string note = header_.SavedNote();
    return CurrentSeries().docType + " " + std::to_string(number) + " saved" +
           (note.empty() ? "" : ": " + note) + ", " +
           FormatAmount(totals_.Current().grandTotal, "c2");
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
