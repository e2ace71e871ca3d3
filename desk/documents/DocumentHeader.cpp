#include "DocumentHeader.h"

#include "NameLookups.h"
#include "ScreenTexts.h"

#include "desk/masters/TableMaster.h"
#include "host/Text.h"

#include <array>

namespace qx::desk {

void DocumentHeader::SetUp() {
    const auto& boxes = document_.CurrentSeries().boxes;
    boxChoices_.assign(boxes.size(), {});
    for (std::size_t i = 0; i < boxes_.pool.size(); ++i) {
        ui::TextBox& box = *boxes_.pool[i];
        if (i >= boxes.size()) {
            box.ExtVal().SetValue("Name", "");
            box.OnLookup = nullptr;
            box.SetVisible(false);
            continue;
        }
        const SeriesBox& configured = boxes[i];
        box.SetCaption(configured.caption);
        box.ExtVal().SetValue("Name", configured.name);
        box.NumericOnly = configured.numeric && configured.lookup.empty();
        box.OnLookup = configured.lookup.empty() ? std::function<void()>()
                                                 : [this, i] { app_.Guard([&] { LookUpBox(i); }); };
        box.SetVisible(configured.visible);
    }
}

std::vector<ui::TextBox*> DocumentHeader::SeriesBoxes() const {
    std::vector<ui::TextBox*> numbered{nullptr};
    numbered.insert(numbered.end(), boxes_.pool.begin(),
                    boxes_.pool.begin() +
                        static_cast<std::ptrdiff_t>(document_.CurrentSeries().boxes.size()));
    return numbered;
}

void DocumentHeader::Clear() {
    partyName_.clear();
    boxes_.party.SetText("");
    for (ui::TextBox* box : boxes_.pool)
        box->SetText("");
    boxChoices_.assign(document_.CurrentSeries().boxes.size(), {});
}

std::vector<DocumentHeader::Choice> DocumentHeader::Choices() const {
    std::vector<Choice> choices;
    const auto& boxes = document_.CurrentSeries().boxes;
    for (std::size_t i = 0; i < boxChoices_.size(); ++i) {
        const SeriesBox& box = boxes[i];
        const std::string text =
            !box.lookup.empty() ? boxChoices_[i] : box.carried ? boxes_.pool[i]->Text() : "";
        if (!text.empty() && !box.field.empty())
            choices.push_back({i, text, document_.MainFields().GetValue(box.field)});
    }
    return choices;
}

void DocumentHeader::Choose(const std::vector<Choice>& choices) {
    const auto& boxes = document_.CurrentSeries().boxes;
    for (const Choice& choice : choices) {
        if (!boxes[choice.index].lookup.empty())
            boxChoices_[choice.index] = choice.text;
        boxes_.pool[choice.index]->SetText(choice.text);
        document_.MainFields().SetValue(boxes[choice.index].field, choice.value);
    }
}

void DocumentHeader::ProposeNumbers() {
    const Series& series = document_.CurrentSeries();
    std::string sameAs = "DOCSERIESID=" + std::to_string(series.id);
    for (const SeriesBox& box : series.boxes) {
        if ((box.lookup.empty() && !box.carried) || box.field.empty())
            continue;
        const Value held = document_.MainFields().GetValue(box.field);
        if (held.IsNull() || held.AsText().empty() || held.AsAmount().IsZero())
            return;
        sameAs += " AND " + box.field + "=" +
                  (box.numeric || !box.lookup.empty() ? held.AsAmount().ToPlainString()
                                                      : SqlQuote(held.AsText()));
    }
    for (std::size_t i = 0; i < series.boxes.size(); ++i) {
        const SeriesBox& box = series.boxes[i];
        if (!box.numbered || box.field.empty() || !Trim(boxes_.pool[i]->Text()).empty())
            continue;
        const Amount highest =
            document_.Database().LookupValue("DOCMAIN", "MAX(" + box.field + ")", sameAs).AsAmount();
        if (!highest.IsZero())
            boxes_.pool[i]->SetText(std::to_string(highest.WholePart() + 1));
    }
}

std::string DocumentHeader::SavedNote() const {
    std::string note = document_.CurrentSeries().savedNote;
    const auto& boxes = document_.CurrentSeries().boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        for (std::size_t at; (at = note.find("{" + boxes[i].name + "}")) != std::string::npos;)
            note.replace(at, boxes[i].name.size() + 2, Trim(boxes_.pool[i]->Text()));
    return note;
}

void DocumentHeader::AskRequiredChoices() {
    const auto& boxes = document_.CurrentSeries().boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        if (boxes[i].required && !boxes[i].lookup.empty() && boxChoices_[i].empty())
            LookUpBox(i);
}

void DocumentHeader::ShowSaved(const PropertyBag& main) {
    boxes_.date.SetText(main.GetValue("DOCDATE").AsDate().ToDisplay());
    boxes_.number.SetText(main.GetValue("DOCNUMBER").AsText());
    boxes_.saleType.SetText(main.GetValue("SALETYPE").AsText());
    const std::int32_t partyCode = main.GetValue("PARTYCODE").AsInt();
    partyName_ = NameOf(document_.Database(), kAccounts, partyCode);
    boxes_.party.SetText(partyName_);
    document_.SetParty(partyCode);
    const auto& boxes = document_.CurrentSeries().boxes;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const SeriesBox& box = boxes[i];
        const Value saved = box.field.empty() ? Value() : main.GetValue(box.field);
        if (box.lookup.empty()) {
            boxes_.pool[i]->SetText(box.numeric ? CellText(saved.AsAmount(), "")
                                    : box.date  ? (saved.IsNull() ? "" : saved.AsDate().ToDisplay())
                                                : saved.AsText());
            continue;
        }
        if (!box.field.empty())
            document_.MainFields().SetValue(box.field, saved);
        // The module that chose the record names it; failing one, the box shows its id.
        std::string text = saved.AsText();
        std::array<Value, 1> args{saved};
        if (!box.lookupText.empty() && saved.AsLong() != 0)
            AskModules(app_, box.lookupText, args,
                       [&](const Value& name) { text = name.AsText(); });
        boxChoices_[i] = text;
        boxes_.pool[i]->SetText(text);
    }
}

std::optional<Date> DocumentHeader::CheckDate() {
    const std::string typed = Trim(boxes_.date.Text());
    auto date = Date::ParseDisplay(typed);
    if (!date) {
        Warn(app_, Date::DisplayRefusal(typed));
        return std::nullopt;
    }
    boxes_.date.SetText(date->ToDisplay());
    return date;
}

void DocumentHeader::CheckParty(bool& cancel) {
    const std::string text = Trim(boxes_.party.Text());
    if (text == partyName_)
        return;
    if (text.empty()) {
        partyName_.clear();
        document_.SetParty(0);
        return;
    }
    std::string refusal;
    if (!app_.Guard([&] {
            const NameFound party =
                FindNamed(document_.Database(), kAccounts, text,
                          document_.CurrentSeries().partyGroups, boxes_.party.Caption());
            refusal = party.refusal;
            if (refusal.empty())
                PartyChosen(party.named.code, party.named.name);
        }))
        cancel = true;
    else if (!refusal.empty()) {
        Warn(app_, refusal);
        cancel = true;
    }
}

bool DocumentHeader::LookUpParty() {
    auto chosen = ChooseByName(app_, kAccounts, "Party", boxes_.party.Text(),
                               document_.CurrentSeries().partyGroups);
    if (chosen)
        PartyChosen(chosen->code, chosen->name);
    return chosen.has_value();
}

void DocumentHeader::PartyChosen(std::int32_t code, const std::string& name) {
    partyName_ = name;
    boxes_.party.SetText(name);
    document_.SetParty(code);
    document_.Raise([](DocumentEvents& l) { l.PartySelected(); });
}

void DocumentHeader::CheckNumber(ui::TextBox& box, ColumnKind kind, bool& cancel) {
    std::string text = Trim(box.Text());
    if (!box.NumericOnly || text.empty())
        return;
    std::string refusal = AcceptNumber(kind, text);
    if (refusal.empty() && TextToAmount(text) < Amount())
        refusal = box.Caption() + " cannot be below 0.";
    if (!refusal.empty()) {
        Warn(app_, refusal);
        cancel = true;
    }
}

void DocumentHeader::CheckSeriesBox(std::size_t index, bool& cancel) {
    const auto& boxes = document_.CurrentSeries().boxes;
    ui::TextBox& shown = *boxes_.pool[index];
    if (index < boxes.size() && boxes[index].date) {
        const std::string typed = Trim(shown.Text());
        if (typed.empty()) return;
        if (const auto day = Date::ParseDisplay(typed)) {
            shown.SetText(day->ToDisplay());
        } else {
            Warn(app_, shown.Caption() + ": " + Date::DisplayRefusal(typed));
            cancel = true;
        }
        return;
    }
    CheckNumber(shown, ColumnKind::Decimal, cancel);
    if (!cancel)
        CheckLookupBox(index, cancel);
}

// A box the user types into holds its value in the main fields; a look-up box holds the id
// its module chose there instead.
void DocumentHeader::SeriesBoxChanged(std::size_t index) {
    const auto& boxes = document_.CurrentSeries().boxes;
    if (index >= boxes.size() || !boxes[index].lookup.empty() || boxes[index].field.empty())
        return;
    const SeriesBox& box = boxes[index];
    const std::string& text = boxes_.pool[index]->Text();
    if (box.date) {
        // Kept as a day, or as none while what is typed is not one.
        const auto day = Date::ParseDisplay(Trim(text));
        document_.MainFields().SetValue(box.field, day ? Value(*day) : Value());
        return;
    }
    document_.MainFields().SetValue(box.field,
                                    box.numeric ? Value(TextToAmount(text)) : Value(text));
}

void DocumentHeader::CheckLookupBox(std::size_t index, bool& cancel) {
    const auto& boxes = document_.CurrentSeries().boxes;
    if (index >= boxes.size() || boxes[index].lookup.empty())
        return;
    const SeriesBox& box = boxes[index];
    const std::string& text = boxes_.pool[index]->Text();
    if (text == boxChoices_[index])
        return;
    if (!text.empty()) {
        Warn(app_, "Press F2 to choose the " + box.caption + ".");
        cancel = true;
        return;
    }
    boxChoices_[index].clear();
    if (!box.field.empty())
        document_.MainFields().SetValue(box.field, 0);
    document_.KeepSeriesSelection();
}

// The module whose operation the box names chooses the record: it is given the id and text
// the box holds and a flag (false), and answers whether the user chose one.
void DocumentHeader::LookUpBox(std::size_t index) {
    const SeriesBox& box = document_.CurrentSeries().boxes[index];
    ui::TextBox& shown = *boxes_.pool[index];
    std::array<Value, 3> args{box.field.empty() ? Value(0)
                                                : document_.MainFields().GetValue(box.field),
                              shown.Text(), false};
    bool offered = false;
    app_.LookUpFrom(shown.Text(), [&] {
        offered = AskModules(app_, box.lookup, args, [&](const Value& chosen) {
            if (!chosen.AsBool())
                return;
            boxChoices_[index] = args[1].AsText();
            shown.SetText(args[1].AsText());
            if (!box.field.empty())
                document_.MainFields().SetValue(box.field, args[0].AsInt());
        });
    });
    if (!offered)
        Warn(app_, "No module offers " + box.lookup + ".");
    document_.KeepSeriesSelection();
}

} // namespace qx::desk
