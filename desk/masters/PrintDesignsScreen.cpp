#include "PrintDesignsScreen.h"

#include "host/ModuleUtil.h"
#include "host/Text.h"

namespace qx::desk {

PrintDesignsScreen::PrintDesignsScreen(DeskApp& app)
    : Screen("PrintDesigns", "Print Designs"), app_(app), list_(Add<ui::ComboBox>("cmbSection", "Section")),
      design_(Add<ui::TextBox>("txtDesign", "Design")), section_(Add<ui::TextBox>("txtSection", "Section Name")),
      text_(Add<ui::TextBox>("txtText", "Text")), bar_(Add<ui::ButtonBar>("BtnBar1")) {
    Icon = "Ledger";
    text_.MultiLine = true;
    design_.SetToolTip("FormM_Head, FormM_Footer, ...");
    section_.SetToolTip("MainHeadForm1, BottomLine, ...");
    for (auto item : {"New,F5: New,New section", "Save,F10: Save,Save the section",
                      "Delete,F3: Delete,Delete the section", "Exit,Esc: Exit,Close"})
        bar_.AddItem(item);
    bar_.OnClick = [this](const std::string& key) {
        if (key == "New") Fill({}, {});
        else if (key == "Save") Save();
        else if (key == "Delete") Delete();
        else Close();
    };
    list_.OnChange = [this] { ShowChosen(); };
}

void PrintDesignsScreen::Load() { Fill({}, {}); }

void PrintDesignsScreen::FirstActivate() { app_.RegisterWindow(*this, Caption(), Icon); }

// The list again from the company, showing the section named (none: a new one).
void PrintDesignsScreen::Fill(const std::string& design, const std::string& section) {
    designs_ = ReadPrintDesigns(app_.DeskSession().Database());
    list_.ClearItems();
    int chosen = -1;
    for (std::size_t i = 0; i < designs_.size(); ++i) {
        list_.AddItem(designs_[i].design + " / " + designs_[i].section, static_cast<std::int64_t>(i));
        if (designs_[i].design == design && designs_[i].section == section) chosen = static_cast<int>(i);
    }
    list_.SetSelectedIndex(chosen);
    ShowChosen();
    if (chosen < 0) design_.SetFocus();
}

void PrintDesignsScreen::ShowChosen() {
    const ui::ListEntry* chosen = list_.Selected();
    const DesignText shown = chosen ? designs_[static_cast<std::size_t>(chosen->value)] : DesignText{};
    design_.SetText(shown.design);
    section_.SetText(shown.section);
    text_.SetText(shown.text);
}

void PrintDesignsScreen::Save() {
    SavePrintDesign(app_.DeskSession().Database(), {design_.Text(), section_.Text(), text_.Text()});
    Fill(Trim(design_.Text()), Trim(section_.Text()));
}

void PrintDesignsScreen::Delete() {
    const ui::ListEntry* chosen = list_.Selected();
    if (!chosen) return;
    const DesignText& shown = designs_[static_cast<std::size_t>(chosen->value)];
    if (app_.ShowMessage("Do you want to delete the section " + shown.section + " of " + shown.design + "?",
                         kYesNo, "Q") != kAnswerYes)
        return;
    DeletePrintDesign(app_.DeskSession().Database(), shown.design, shown.section);
    Fill({}, {});
}

} // namespace qx::desk
