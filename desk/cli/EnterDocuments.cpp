#include "EnterDocuments.h"

#include "DocumentFile.h"
#include "FindDocument.h"
#include "ScreenScript.h"

#include "desk/core/SelectDialog.h"
#include "desk/core/SelectItemScreen.h"
#include "desk/documents/DocumentScreen.h"
#include "desk/documents/Series.h"

#include <algorithm>
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

    // What the file gives is typed; an opened document keeps the rest as it was saved.
    void Enter(const FileDocument& document) {
        if (!document.date.empty()) {
            At("date");
            TypeInto(screen_.TxpDocDate(), document.date);
        }
        if (!document.party.empty()) {
            At("party");
            TypeInto(screen_.TxpCustomer(), document.party);
        }
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
    void EnterLines(const std::vector<FileLine>& lines) {
        auto& grid = screen_.Grid();
        screen_.Focus(grid);
        grid.SetRedraw(false);
        int typed = 0; // a line typed without its item is no line yet, but is not typed over
        for (const FileLine& line : lines) {
            const int last = std::max(LastLine(), typed);
            const int row = line.number == 0 ? last + 1 : line.number;
            const std::string number = "line " + std::to_string(row);
            if (row > last + 1)
                throw Refusal(number, "the document has " + std::to_string(last) +
                                          (last == 1 ? " line" : " lines") + ": a new line is line " +
                                          std::to_string(last + 1) + ".");
            if (line.remove) {
                RemoveLine(row, number, last);
                if (typed >= row)
                    --typed; // the lines after it move up
            } else {
                EnterLine(row, number, line.cells);
                typed = std::max(typed, row);
            }
        }
        grid.SetRedraw(true);
    }

    // The number of the last line that holds an item; 0 for none.
    int LastLine() const {
        int last = 0;
        for (int row = 1; row < screen_.Grid().Rows(); ++row)
            if (screen_.Document().IsLine(row))
                last = row;
        return last;
    }

    void EnterLine(int row, const std::string& number, const NamedTexts& cells) {
        auto& grid = screen_.Grid();
        int first = 0;
        for (const auto& [key, text] : cells) {
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

    // Ctrl+Del on the line, as the clerk removes one.
    void RemoveLine(int row, const std::string& number, int last) {
        At(number);
        if (row > last)
            throw Refusal(number, "there is no line " + std::to_string(row) + " to remove.");
        auto& grid = screen_.Grid();
        if (!grid.MoveTo(row, grid.Col() > 0 ? grid.Col() : 1))
            Refused();
        screen_.KeyDown({.key = ui::Key::Delete, .ctrl = true});
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

// One document of the file, from opening its series (and the saved document) to saving,
// cancelling or deleting it.
class DocumentEntry {
public:
    DocumentEntry(desk::DeskApp& app, desk::ScriptedFrontend& frontend, Place& place)
        : app_(app), frontend_(frontend), place_(place) {}

    // True when done; a refusal throws.
    bool Enter(const FileDocument& document) {
        place_.field = "series";
        auto screen =
            std::dynamic_pointer_cast<desk::DocumentScreen>(app_.Forms().CreateForm("Documents"));
        if (!screen)
            throw std::logic_error("this QX Desk has no document entry");
        screen->Properties().SetValue("DocSeriesCode", document.series);
        if (!document.open)
            AnswerOpeningDialogs(document);
        app_.OpenScreen(screen);
        screen_ = screen;
        if (!document.open) {
            frontend_.DropModals(); // what the new document did not ask
            place_.field = "pick";
            if (!pickRefusal_.empty())
                throw Refusal("pick", pickRefusal_);
            if (!document.pick.empty() && !listOpened_)
                throw Refusal("pick", "the new document opened no list to pick from.");
        }
        if (document.open) {
            place_.field = "open";
            screen->OpenDocument(
                FindDocument(app_, screen->Document().CurrentSeries(), *document.open));
        }
        if (document.action == FileAction::Delete) {
            // The file says to delete it: that is the clerk's answer to "Do you want to delete
            // ...?", whatever the answers given for the documents' own questions.
            place_.field = "deleting";
            frontend_.QueueAnswerNext(kAnswerYes);
            return screen->DeleteDocument();
        }
        // Dialogs the typing opens (the set-up of an item's accounts, say), in the order they come.
        for (const auto& steps : document.dialogs)
            QueueDialogSteps(app_, frontend_, steps);
        DocumentTyping(frontend_, *screen, place_).Enter(document);
        if (document.action == FileAction::Cancel) {
            place_.field = "cancelling";
            return screen->CancelDocument();
        }
        place_.field = "saving";
        return screen->SaveDocument();
    }

    // Closes the document's screen; what was refused is dropped, not saved on closing, and so
    // are the steps of dialogs that never opened.
    void Close(bool done) {
        frontend_.DropModals();
        if (!screen_)
            return;
        if (!done)
            screen_->NewDocument();
        app_.CloseScreen(*screen_);
    }

private:
    // A new document may first ask for the record of each look-up box its series requires
    // (the market), in the series' order, and then open a list to pick from: the file's boxes
    // answer the first, its pick the second. What the file does not answer is closed (Esc).
    void AnswerOpeningDialogs(const FileDocument& document) {
        CompanyDb& db = app_.DeskSession().Database();
        const std::int32_t seriesId = desk::FindSeries(db, document.series, "");
        if (seriesId == 0)
            return; // the document screen says so
        for (const desk::SeriesBox& box : desk::LoadSeries(db, seriesId).boxes) {
            if (!box.required || box.lookup.empty())
                continue;
            const auto given = std::ranges::find(document.boxes, box.name,
                                                 &std::pair<std::string, std::string>::first);
            const std::string text = given == document.boxes.end() ? "" : given->second;
            frontend_.QueueModal([text](ui::Screen& list) {
                if (!text.empty())
                    desk::ChooseInList(list, text); // a name not listed is refused at its box
            });
        }
        frontend_.QueueModal([this, &document](ui::Screen& list) {
            if (!dynamic_cast<desk::SelectItemScreen*>(&list))
                return;
            listOpened_ = true;
            if (!document.pick.empty())
                Pick(list, document.pick);
        });
    }

    // Takes the rows named by caption and text; what the list lacks is kept as the refusal.
    void Pick(ui::Screen& list, const std::vector<NamedTexts>& pick) {
        const auto& grid = list.Get<ui::Grid>(desk::kSelectItemGrid);
        std::vector<std::vector<std::string>> rows;
        for (const NamedTexts& named : pick) {
            std::vector<std::string>& texts = rows.emplace_back();
            for (const auto& [caption, text] : named) {
                int col = 1;
                while (col < grid.Cols() && grid.TextMatrix(0, col) != caption)
                    ++col;
                if (col == grid.Cols()) {
                    pickRefusal_ = "the list has no column \"" + caption + "\".";
                    return;
                }
                texts.push_back(text);
            }
        }
        if (!desk::TakeRows(list, rows))
            pickRefusal_ = "the list does not show every row to pick (" +
                           std::to_string(grid.Rows() - 1) + " rows listed).";
    }

    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
    Place& place_;
    std::shared_ptr<desk::DocumentScreen> screen_;
    bool listOpened_ = false;
    std::string pickRefusal_;
};

// What became of a document, and of one that was refused, as the log says it.
std::pair<std::string, std::string> Outcome(const nlohmann::ordered_json& json) {
    const auto action = json.is_object() && json.contains("action") && json.at("action").is_string()
                            ? json.at("action").get<std::string>()
                            : std::string();
    if (action == "cancel")
        return {"cancelled", "not cancelled"};
    if (action == "delete")
        return {"deleted", "not deleted"};
    return {"saved", "not saved"};
}

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
        bool done = false;
        DocumentEntry entry(app, frontend, place);
        try {
            done = entry.Enter(CheckDocument(json));
        } catch (const Refusal& refusal) {
            addReason(refusal.Field(), refusal.what());
        } catch (const std::exception& error) {
            // An error the engine raised (and undid): a failed write, a question with no answer.
            addReason(place.field, error.what());
        }
        entry.Close(done);
        const auto [did, refused] = Outcome(json);
        if (done) {
            out << place.document << ": " << did
                << std::endl; // flushed: the log keeps up with the company
            return;
        }
        allSaved = false;
        out.flush();
        err << place.document << ": " << refused;
        for (std::size_t i = 0; i < reasons.size(); ++i)
            err << (i ? "; " : ": ") << reasons[i];
        err << std::endl;
    });
    return allSaved;
}

} // namespace qx::cli
