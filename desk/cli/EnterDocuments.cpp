#include "EnterDocuments.h"

#include "DocumentFile.h"
#include "ScreenScript.h"

#include "desk/core/SelectDialog.h"
#include "desk/documents/DocumentScreen.h"

#include <ostream>
#include <stdexcept>

namespace qx::cli {
namespace {

// What is being typed, so that every message names it: the document and its field.
struct Place {
    std::string document; // "document 3 (JF of 05/11/2024)"
    std::string field;    // "line 2 QUANTITY"; empty before the first is typed

    std::string Text() const { return field.empty() ? document : document + ", " + field; }
};

class DocumentTyping {
public:
    DocumentTyping(desk::ScriptedFrontend& frontend, desk::DocumentScreen& screen, Place& place)
        : frontend_(frontend), screen_(screen), place_(place) {}

    void Enter(const FileDocument& document) {
        At("date");
        TypeInto(screen_.TxpDocDate(), document.date);
        At("party");
        TypeInto(screen_.TxpCustomer(), document.party);
        for (const auto& [name, text] : document.boxes)
            EnterBox(name, text);
        EnterLines(document.lines);
        for (const auto& [key, rate] : document.charges)
            EnterChargeRate(key, rate);
    }

private:
    void At(std::string field) { place_.field = std::move(field); }

    // The refusal the engine showed the user, for the field being typed.
    [[noreturn]] void Refused() const {
        const auto& transcript = frontend_.Transcript();
        throw Refusal(place_.field,
                      transcript.empty() ? std::string("refused") : transcript.back().prompt);
    }

    void TypeInto(ui::TextBox& box, const std::string& text) {
        screen_.Focus(box);
        if (!box.Type(text))
            throw Refusal(place_.field, box.Caption() + " does not take \"" + text + "\".");
        bool cancel = false;
        if (box.OnValidate)
            box.OnValidate(cancel);
        if (cancel)
            Refused();
    }

    void EnterBox(const std::string& name, const std::string& text) {
        At("box " + name);
        for (ui::TextBox* box : screen_.TXPUDI()) {
            if (!box || box->ExtVal().GetValue("Name").AsText() != name)
                continue;
            if (!box->OnLookup) {
                TypeInto(*box, text);
                return;
            }
            // A box with a look-up is chosen from its list, as with F2; its list is the very
            // next dialog, whatever other dialogs the document expects later.
            frontend_.QueueModalNext([text](ui::Screen& list) { desk::ChooseInList(list, text); });
            screen_.Focus(*box);
            box->OnLookup();
            if (box->Text() != text)
                throw Refusal(place_.field, "there is no " + box->Caption() + " \"" + text + "\".");
            return;
        }
        throw Refusal(place_.field, "the series has no box " + name + ".");
    }

    static int ColumnOfKey(const ui::Grid& grid, const std::string& key, const std::string& field) {
        for (int col = 1; col < grid.Cols(); ++col)
            if (grid.Column(col).key == key)
                return col;
        throw Refusal(field, "the series' lines have no column " + key + ".");
    }

    // The lines fill the grid as a program fills one, with redraw off: the engine brings the
    // totals up to date once, when the grid draws again, not after every cell.
    void EnterLines(const std::vector<NamedTexts>& lines) {
        auto& grid = screen_.Grid();
        screen_.Focus(grid);
        grid.SetRedraw(false);
        int row = 0;
        for (const auto& line : lines)
            EnterLine(++row, line);
        grid.SetRedraw(true);
    }

    void EnterLine(int row, const NamedTexts& line) {
        auto& grid = screen_.Grid();
        const std::string number = "line " + std::to_string(row);
        int first = 0;
        for (const auto& [key, text] : line) {
            const std::string field = number + " " + key;
            const int col = ColumnOfKey(grid, key, field);
            if (!first)
                first = col;
            // Moving on leaves the cell typed before, which is checked then: a refusal is its.
            if (!grid.MoveTo(row, col))
                Refused();
            At(field);
            grid.Type(text);
        }
        // Leaving the line for the next one, as Enter at its end does.
        if (first && !grid.MoveTo(std::min(row + 1, grid.Rows() - 1), first))
            Refused();
    }

    void EnterChargeRate(const std::string& key, const std::string& rate) {
        At("charge " + key);
        auto& charges = screen_.GridTot2();
        for (int row = 1; row < charges.Rows(); ++row) {
            if (charges.TextMatrix(row, desk::DocumentScreen::kChargeKeyCol) != key)
                continue;
            screen_.Focus(charges);
            if (!charges.MoveTo(row, desk::DocumentScreen::kChargeRateCol))
                Refused();
            charges.Type(rate);
            if (!charges.Commit())
                Refused();
            return;
        }
        throw Refusal(place_.field, "the series has no charge " + key + ".");
    }

    desk::ScriptedFrontend& frontend_;
    desk::DocumentScreen& screen_;
    Place& place_;
};

// One document of the file, from opening its series to saving it.
class DocumentEntry {
public:
    DocumentEntry(desk::DeskApp& app, desk::ScriptedFrontend& frontend, Place& place)
        : app_(app), frontend_(frontend), place_(place) {}

    // True when saved; a refusal throws.
    bool Enter(const FileDocument& document) {
        place_.field = "series";
        auto screen =
            std::dynamic_pointer_cast<desk::DocumentScreen>(app_.Forms().CreateForm("Documents"));
        if (!screen)
            throw std::logic_error("this QX Desk has no document entry");
        screen->Properties().SetValue("DocSeriesCode", document.series);
        app_.OpenScreen(screen);
        screen_ = screen;
        // Dialogs the typing opens (the set-up of an item's accounts, say), in the order they come.
        for (const auto& steps : document.dialogs)
            QueueDialogSteps(app_, frontend_, steps);
        DocumentTyping(frontend_, *screen, place_).Enter(document);
        place_.field = "saving";
        return screen->SaveDocument();
    }

    // Closes the document's screen; what was refused is dropped, not saved on closing, and so
    // are the steps of dialogs that never opened.
    void Close(bool saved) {
        frontend_.DropModals();
        if (!screen_)
            return;
        if (!saved)
            screen_->NewDocument();
        app_.CloseScreen(*screen_);
    }

private:
    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
    Place& place_;
    std::shared_ptr<desk::DocumentScreen> screen_;
};

} // namespace

bool EnterDocuments(desk::DeskApp& app, desk::ScriptedFrontend& frontend,
                    const std::filesystem::path& file, std::ostream& out, std::ostream& err) {
    Place place;
    std::vector<std::string> reasons; // the messages of the document being entered, by field
    auto addReason = [&](const std::string& field, const std::string& text) {
        std::string reason = field.empty() ? text : field + ": " + text;
        if (reasons.empty() || reasons.back() != reason)
            reasons.push_back(std::move(reason));
    };
    frontend.OnMessage = [&](const desk::ShownMessage& message) {
        out << place.Text() << ": [" << message.style << "] " << message.prompt
            << (message.answer == kAnswerNo ? " -> No" : "") << '\n';
        addReason(place.field, message.prompt);
    };
    // Messages shown after the file (closing the desk after an error) are not the file's.
    struct StopPrinting {
        desk::ScriptedFrontend& frontend;
        ~StopPrinting() { frontend.OnMessage = nullptr; }
    } stopPrinting{frontend};

    bool allSaved = true;
    ReadDocuments(file, [&](int number, const nlohmann::ordered_json& json) {
        place = {DescribeDocument(number, json), {}};
        reasons.clear();
        frontend.ClearTranscript(); // printed as they came: only this document's are kept
        bool saved = false;
        DocumentEntry entry(app, frontend, place);
        try {
            saved = entry.Enter(CheckDocument(json));
        } catch (const Refusal& refusal) {
            addReason(refusal.Field(), refusal.what());
        } catch (const std::exception& error) {
            // An error the engine raised (and undid): a failed write, a question with no answer.
            addReason(place.field, error.what());
        }
        entry.Close(saved);
        if (saved) {
            out << place.document << ": saved"
                << std::endl; // flushed: the log keeps up with the company
            return;
        }
        allSaved = false;
        out.flush();
        err << place.document << ": not saved";
        for (std::size_t i = 0; i < reasons.size(); ++i)
            err << (i ? "; " : ": ") << reasons[i];
        err << std::endl;
    });
    return allSaved;
}

} // namespace qx::cli
