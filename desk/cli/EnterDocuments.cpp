#include "EnterDocuments.h"

#include "ScreenScript.h"

#include "desk/core/SelectDialog.h"
#include "desk/documents/DocumentScreen.h"

#include <ostream>
#include <stdexcept>

namespace qx::cli {
namespace {

// The refusal that ends one document: what the user would have seen.
using Refused = std::runtime_error;

class DocumentTyping {
public:
    DocumentTyping(desk::DeskApp& app, desk::ScriptedFrontend& frontend, desk::DocumentScreen& screen)
        : app_(app), frontend_(frontend), screen_(screen) {}

    void Enter(const nlohmann::ordered_json& document) {
        if (document.contains("date")) TypeInto(screen_.TxpDocDate(), document.at("date").get<std::string>());
        if (document.contains("party")) TypeInto(screen_.TxpCustomer(), document.at("party").get<std::string>());
        const auto boxes = document.value("boxes", nlohmann::ordered_json::object());
        for (const auto& [name, text] : boxes.items()) EnterBox(name, text.get<std::string>());
        int row = 1;
        for (const auto& line : document.value("lines", nlohmann::ordered_json::array())) EnterLine(row++, line);
        const auto charges = document.value("charges", nlohmann::ordered_json::object());
        for (const auto& [key, rate] : charges.items()) EnterChargeRate(key, rate.get<std::string>());
    }

private:
    std::string LastMessage() const {
        const auto& transcript = frontend_.Transcript();
        return transcript.empty() ? std::string("refused") : transcript.back().prompt;
    }

    void TypeInto(ui::TextBox& box, const std::string& text) {
        screen_.Focus(box);
        if (!box.Type(text)) throw Refused(box.Caption() + " does not take \"" + text + "\"");
        bool cancel = false;
        if (box.OnValidate) box.OnValidate(cancel);
        if (cancel) throw Refused(LastMessage());
    }

    void EnterBox(const std::string& name, const std::string& text) {
        for (ui::TextBox* box : screen_.TXPUDI()) {
            if (box->ExtVal().GetValue("Name").AsText() != name) continue;
            if (!box->OnLookup) {
                TypeInto(*box, text);
                return;
            }
            // A box with a look-up is chosen from its list, as with F2; its list is the very
            // next dialog, whatever other dialogs the document expects later.
            frontend_.QueueModalNext([text](ui::Screen& list) { desk::ChooseInList(list, text); });
            screen_.Focus(*box);
            box->OnLookup();
            if (box->Text() != text) throw Refused("there is no " + box->Caption() + " \"" + text + "\"");
            return;
        }
        throw Refused("the series has no box " + name);
    }

    static int ColumnOfKey(const ui::Grid& grid, const std::string& key) {
        for (int col = 1; col < grid.Cols(); ++col)
            if (grid.Column(col).key == key) return col;
        throw Refused("the series' grid has no column " + key);
    }

    void EnterLine(int row, const nlohmann::ordered_json& line) {
        auto& grid = screen_.Grid();
        screen_.Focus(grid);
        int first = 0;
        for (const auto& [key, text] : line.items()) {
            int col = ColumnOfKey(grid, key);
            if (!first) first = col;
            if (!grid.MoveTo(row, col)) throw Refused("line " + std::to_string(row) + ": " + LastMessage());
            grid.Type(text.get<std::string>());
        }
        // Leaving the line for the next one, as Enter at its end does.
        if (first && !grid.MoveTo(std::min(row + 1, grid.Rows() - 1), first))
            throw Refused("line " + std::to_string(row) + ": " + LastMessage());
    }

    void EnterChargeRate(const std::string& key, const std::string& rate) {
        auto& charges = screen_.GridTot2();
        constexpr int kKeyCol = 17;
        constexpr int kRateCol = 3;
        for (int row = 1; row < charges.Rows(); ++row) {
            if (charges.TextMatrix(row, kKeyCol) != key) continue;
            screen_.Focus(charges);
            if (!charges.MoveTo(row, kRateCol)) throw Refused(LastMessage());
            charges.Type(rate);
            if (!charges.Commit()) throw Refused(LastMessage());
            return;
        }
        throw Refused("the series has no charge " + key);
    }

    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
    desk::DocumentScreen& screen_;
};

std::string Describe(const nlohmann::ordered_json& document, int number) {
    std::string text = "document " + std::to_string(number);
    if (document.contains("series")) text += " (" + document.at("series").get<std::string>();
    if (document.contains("date")) text += " of " + document.at("date").get<std::string>();
    if (document.contains("series")) text += ")";
    return text;
}

} // namespace

bool EnterDocuments(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const nlohmann::ordered_json& file,
                    std::ostream& out, std::ostream& err) {
    bool allSaved = true;
    int number = 0;
    for (const auto& document : file.at("documents")) {
        ++number;
        const auto what = Describe(document, number);
        auto messagesBefore = frontend.Transcript().size();
        auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.Forms().CreateForm("Documents"));
        if (!screen) throw std::runtime_error("this QX Desk has no document entry");
        screen->Properties().SetValue("DocSeriesCode", document.at("series").get<std::string>());
        app.ShowForm(screen);
        bool saved = false;
        // Dialogs the typing opens (the set-up of an item's accounts, say), in the order they come.
        for (const auto& steps : document.value("dialogs", nlohmann::ordered_json::array()))
            QueueDialogSteps(app, frontend, steps);
        try {
            DocumentTyping(app, frontend, *screen).Enter(document);
            saved = screen->SaveDocument();
        } catch (const std::exception& refusal) {
            // A refusal while typing, or an error the save raised (and undid).
            err << what << ": " << refusal.what() << '\n';
        }
        if (saved) {
            out << what << ": saved\n";
        } else {
            allSaved = false;
            err << what << ": not saved";
            for (auto i = messagesBefore; i < frontend.Transcript().size(); ++i)
                err << (i == messagesBefore ? ": " : "; ") << frontend.Transcript()[i].prompt;
            err << '\n';
        }
        if (!saved) screen->NewDocument(); // what was refused is dropped, not saved on closing
        app.CloseScreen(*screen);
    }
    return allSaved;
}

} // namespace qx::cli
