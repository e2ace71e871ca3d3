#include "SelectDialog.h"

#include "ListScreen.h"

namespace qx::desk {
namespace {

class SelectListScreen : public ListScreen {
public:
    SelectListScreen() : ListScreen(kSelectListScreen, "Select", kSelectListGrid, 0) {
        list = &list_;
        list->AddColumn("", 5000);
        buttons = &Add<ui::StdButtons>(kSelectListButtons);
        buttons->OnClick = [this](int index) {
            if (index == 0) Take();
            else Close(false);
        };
    }

    using ListScreen::Find;
    ui::Grid* list;
    ui::StdButtons* buttons;

protected:
    // The keyboard starts in the list, so that Enter takes the entry shown chosen.
    void FirstActivate() override { Focus(*list); }

private:
    void Take() override {
        if (list->Row() >= 1 && list->Row() < list->Rows()) Close(true);
    }
};

} // namespace

SelectListDialog::SelectListDialog(HostUi& ui)
    : ui_(ui), screen_(std::make_shared<SelectListScreen>()) {}

void SelectListDialog::SetCaption(std::string caption) {
    screen_->SetCaption(caption);
    static_cast<SelectListScreen&>(*screen_).list->SetTextMatrix(0, 0, std::move(caption));
}

void SelectListDialog::AddItem(std::string text, std::int64_t value) {
    entries_.push_back({std::move(text), value});
}

void SelectListDialog::FillFromQuery(CompanyDb& db, std::string_view sql,
                                     std::string_view displayField, std::string_view keyField) {
    auto rows = db.OpenRecordset(sql);
    for (; !rows->EndOfRows(); rows->MoveNext())
        entries_.push_back({rows->Field(displayField).AsText(), rows->Field(keyField).AsLong()});
}

bool SelectListDialog::Show() {
    auto& list = *static_cast<SelectListScreen&>(*screen_).list;
    list.SetRedraw(false);
    list.SetRows(static_cast<int>(entries_.size()) + 1);
    for (std::size_t i = 0; i < entries_.size(); ++i)
        list.SetTextMatrix(static_cast<int>(i) + 1, 0, entries_[i].text);
    list.SetRedraw(true);
    static_cast<SelectListScreen&>(*screen_).Find(startText_);
    selected_ = 0;
    if (!ui_.ShowModal(*screen_)) return false;
    selected_ = list.Row();
    return selected_ >= 1;
}

std::string SelectListDialog::SelectedText() const {
    return selected_ >= 1 ? entries_[selected_ - 1].text : std::string();
}

std::int64_t SelectListDialog::SelectedValue() const {
    return selected_ >= 1 ? entries_[selected_ - 1].value : 0;
}

bool ChooseInList(ui::Screen& list, std::string_view text) {
    auto& grid = list.Get<ui::Grid>(kSelectListGrid);
    for (int row = 1; row < grid.Rows(); ++row)
        if (grid.TextMatrix(row, 0) == text) {
            grid.SetCurrent(row, 0);
            list.Get<ui::StdButtons>(kSelectListButtons).Click(0);
            return true;
        }
    return false;
}

} // namespace qx::desk
