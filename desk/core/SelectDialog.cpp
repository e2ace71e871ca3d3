#include "SelectDialog.h"

#include "host/Text.h"

#include <utf8proc.h>

namespace qx::desk {
namespace {

std::string Utf8(char32_t character) {
    utf8proc_uint8_t bytes[4];
    const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes);
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

void DropLastCharacter(std::string& text) {
    // UTF-8 continuation bytes belong to the character before them.
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
        text.pop_back();
    if (!text.empty()) text.pop_back();
}

class SelectListScreen : public ui::Screen {
public:
    SelectListScreen() : Screen(kSelectListScreen, "Select") {
        find = &Add<ui::Label>("Find");
        list = &Add<ui::Grid>(kSelectListGrid);
        list->AddColumn("", 5000);
        buttons = &Add<ui::StdButtons>(kSelectListButtons);
        list->OnDoubleClick = [this](int, int) { Choose(); };
        buttons->OnClick = [this](int index) {
            if (index == 0) Choose();
            else Close(false);
        };
    }

    bool KeyDown(const ui::KeyPress& key) override {
        switch (key.key) {
        case ui::Key::Enter:
            Choose();
            return true;
        case ui::Key::Escape:
            Close(false);
            return true;
        case ui::Key::Character:
            if (key.ctrl || key.alt) break;
            Find(typed_ + Utf8(key.character));
            return true;
        case ui::Key::Backspace: {
            std::string shorter = typed_;
            DropLastCharacter(shorter);
            Find(shorter);
            return true;
        }
        default:
            break;
        }
        return Screen::KeyDown(key);
    }

    // Moves to the first entry that starts with the text (letter case aside); to the first
    // entry when the text is empty, to none when no entry does.
    void Find(std::string text) {
        typed_ = std::move(text);
        int found = 0;
        for (int row = 1; row < list->Rows() && found == 0; ++row) {
            const std::string_view entry = list->TextMatrix(row, 0);
            if (EqualsNoCase(entry.substr(0, typed_.size()), typed_)) found = row;
        }
        list->SetCurrent(found, 0);
        find->SetText(typed_.empty() ? std::string()
                                     : "Find: " + typed_ + (found ? "" : "  (no entry starts so)"));
    }

    ui::Label* find;
    ui::Grid* list;
    ui::StdButtons* buttons;

private:
    void Choose() {
        if (list->Row() >= 1 && list->Row() < list->Rows()) Close(true);
    }

    std::string typed_;
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
