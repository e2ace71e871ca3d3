#pragma once
// The document's header: its date, number, party and sale type, and the series' own boxes (a
// form number, a market a module chooses). What the user types into a box is checked as he
// leaves it; the save checks the header again (SaveChecks).

#include "DeskDocument.h"

#include "desk/core/DeskApp.h"
#include "desk/masters/MasterDefinition.h"
#include "host/ui/Control.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qx::desk {

class DocumentHeader {
public:
    struct Boxes {
        ui::TextBox& date;
        ui::TextBox& number;
        ui::TextBox& party;
        ui::TextBox& saleType;
        // As many as the series with most boxes has; a series uses the first of them.
        const std::vector<ui::TextBox*>& pool;
    };
    DocumentHeader(DeskApp& app, DeskDocument& document, Boxes boxes)
        : app_(app), document_(document), boxes_(boxes) {}

    const Boxes& Controls() const { return boxes_; }
    // The boxes of the document's series: captions and look-ups as it configures them, the
    // pool's others hidden.
    void SetUp();
    // Numbered from 1, as a module addresses them: element 0 holds no box.
    std::vector<ui::TextBox*> SeriesBoxes() const;

    // No party, the series' boxes empty.
    void Clear();
    // What the look-up boxes (the market) and the boxes the series carries (a book number)
    // hold, for the next document to start with.
    struct Choice {
        std::size_t index;
        std::string text;
        Value value;
    };
    std::vector<Choice> Choices() const;
    void Choose(const std::vector<Choice>& choices);
    // Opens the look-up of each box the document cannot be saved without and that holds
    // nothing yet.
    void AskRequiredChoices();
    // Each numbered box that holds nothing gets one more than the highest number its series
    // saved with what the look-up and carried boxes hold now; none while one of them is empty
    // or no document holds them yet.
    void ProposeNumbers();
    // The series' note of a saved document, each {BOXNAME} replaced by the box's text.
    std::string SavedNote() const;
    void ShowSaved(const PropertyBag& main);

    // Leaving a box. The date as typed, shown as dd/MM/yyyy; none when it is refused.
    std::optional<Date> CheckDate();
    void CheckParty(bool& cancel);
    // True when a party was chosen.
    bool LookUpParty();
    // A box that takes a number takes it written as any figure is, and never below 0 (a form
    // number, a book number).
    void CheckNumber(ui::TextBox& box, ColumnKind kind, bool& cancel);
    void CheckSeriesBox(std::size_t index, bool& cancel);
    void SeriesBoxChanged(std::size_t index);
    // The party chosen, from the list or by a program: shown, taken, PartySelected raised.
    void PartyChosen(std::int32_t code, const std::string& name);

private:
    void CheckLookupBox(std::size_t index, bool& cancel);
    void LookUpBox(std::size_t index);

    DeskApp& app_;
    DeskDocument& document_;
    Boxes boxes_;
    std::string partyName_;               // the party chosen, as shown
    std::vector<std::string> boxChoices_; // a look-up box's chosen text
};

} // namespace qx::desk
