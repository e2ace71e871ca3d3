#include "SelectItemScreen.h"

#include "host/Text.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace qx::desk {
namespace {

constexpr int kMarkCol = 0;

// A code the caller reads back, not something for the user to see.
bool IsCode(std::string_view field) {
    return field.size() > 2 && EqualsNoCase(field.substr(field.size() - 2), "ID");
}

// "DocDate" -> "Doc Date", "BatchNo" -> "Batch No".
std::string CaptionOf(const std::string& field) {
    std::string caption;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const auto c = static_cast<unsigned char>(field[i]);
        if (i > 0 && std::isupper(c) && std::islower(static_cast<unsigned char>(field[i - 1])))
            caption += ' ';
        caption += field[i];
    }
    return caption;
}

bool IsFigure(const Value& value) {
    return std::holds_alternative<Amount>(value.Raw()) ||
           std::holds_alternative<double>(value.Raw());
}

std::string Shown(const Value& value) {
    if (value.IsDate()) return value.AsDate().ToDisplay();
    if (IsFigure(value)) return FormatAmount(value.AsAmount(), "n2");
    return value.AsText();
}

} // namespace

SelectItemScreen::SelectItemScreen(HostUi& ui)
    : ListScreen(kSelectItemScreen, "Select", kSelectItemGrid, 1), ui_(ui),
      count_(Add<ui::Label>("Count")), buttons_(Add<ui::StdButtons>("OKCancel")) {
    buttons_.OnClick = [this](int index) {
        if (index == 0) Take();
        else Close(false);
    };
}

void SelectItemScreen::SelectItem(CompanyDb& db, std::string_view sql, std::string caption) {
    SetCaption(Trim(caption));
    auto rows = db.OpenRecordset(sql);
    Fill(*rows);
    rows->Close();
    taken_.clear();
    cancelled_ = true;
    Find({});
    list_.SetCurrent(selectFirstRow_ && list_.Rows() > 1 ? 1 : 0, list_.Cols() > 1 ? 1 : 0);
    ShowCount();
    Focus(list_);
    cancelled_ = !ui_.ShowModal(*this);
}

void SelectItemScreen::Fill(Recordset& rows) {
    fields_.clear();
    rows_.clear();
    for (int i = 0; i < rows.FieldCount(); ++i) fields_.push_back(rows.FieldName(i));
    for (; !rows.EndOfRows(); rows.MoveNext()) {
        std::vector<Value> row;
        for (int i = 0; i < rows.FieldCount(); ++i) row.push_back(rows.Field(i));
        rows_.push_back(std::move(row));
    }
    marked_.assign(rows_.size(), false);

    list_.SetRedraw(false);
    list_.ClearColumns();
    list_.AddColumn("", pickPending_ ? 300 : 0, Align::Centre);
    std::vector<std::size_t> shownFields;
    for (std::size_t f = 0; f < fields_.size(); ++f) {
        if (IsCode(fields_[f])) continue;
        const bool figure = !rows_.empty() && IsFigure(rows_.front()[f]);
        list_.AddColumn(CaptionOf(fields_[f]), figure ? 1200 : 1800,
                        figure ? Align::Right : Align::Default);
        shownFields.push_back(f);
    }
    list_.SetRows(static_cast<int>(rows_.size()) + 1);
    for (std::size_t r = 0; r < rows_.size(); ++r)
        for (std::size_t c = 0; c < shownFields.size(); ++c)
            list_.SetTextMatrix(static_cast<int>(r) + 1, static_cast<int>(c) + 1,
                                Shown(rows_[r][shownFields[c]]));
    MarkChosenBefore();
    list_.SetRedraw(true);
}

bool SelectItemScreen::KeyDown(const ui::KeyPress& key) {
    if (pickPending_ && key.Plain() && key.key == ui::Key::Character && key.character == U' ') {
        ToggleMark();
        return true;
    }
    return ListScreen::KeyDown(key);
}

bool SelectItemScreen::Marked(int row) const {
    return row >= 1 && static_cast<std::size_t>(row) <= marked_.size() &&
           marked_[static_cast<std::size_t>(row) - 1];
}

void SelectItemScreen::SetMark(int row, bool marked) {
    marked_[static_cast<std::size_t>(row) - 1] = marked;
    list_.SetTextMatrix(row, kMarkCol, marked ? "\u2713" : "");
}

void SelectItemScreen::ToggleMark() {
    const int row = list_.Row();
    if (row < 1 || row >= list_.Rows()) return;
    SetMark(row, !Marked(row));
    ShowCount();
}

void SelectItemScreen::MarkChosenBefore() {
    if (!pickPending_ || markCodes_.empty()) return;
    const auto field = std::find_if(fields_.begin(), fields_.end(),
                                    [&](const std::string& name) { return EqualsNoCase(name, markField_); });
    if (field == fields_.end()) throw std::invalid_argument("the list has no field " + markField_);
    const auto f = static_cast<std::size_t>(field - fields_.begin());
    for (std::size_t r = 0; r < rows_.size(); ++r)
        if (std::find(markCodes_.begin(), markCodes_.end(), rows_[r][f].AsLong()) != markCodes_.end())
            SetMark(static_cast<int>(r) + 1, true);
}

void SelectItemScreen::Take() {
    taken_.clear();
    for (std::size_t i = 0; i < marked_.size(); ++i)
        if (marked_[i]) taken_.push_back(i);
    if (taken_.empty() && list_.Row() >= 1 && list_.Row() < list_.Rows())
        taken_.push_back(static_cast<std::size_t>(list_.Row()) - 1);
    if (!taken_.empty()) Close(true);
}

void SelectItemScreen::ShowCount() {
    const std::string kind = listType_.empty() ? "Rows" : listType_ + " rows";
    std::string text = kind + ": " + std::to_string(rows_.size());
    if (pickPending_)
        text += ", marked: " +
                std::to_string(std::count(marked_.begin(), marked_.end(), true)) +
                ". Space marks a row, Enter takes the marked rows, Esc cancels.";
    count_.SetText(std::move(text));
}

Value SelectItemScreen::Selected(int index, std::string_view field) const {
    if (index < 0 || index >= SelectionCount())
        throw std::out_of_range("no row " + std::to_string(index) + " was taken from the list");
    for (std::size_t f = 0; f < fields_.size(); ++f)
        if (EqualsNoCase(fields_[f], field)) return rows_[taken_[static_cast<std::size_t>(index)]][f];
    throw std::invalid_argument("the list has no field " + std::string(field));
}

bool TakeRows(ui::Screen& list, const std::vector<std::vector<std::string>>& rows) {
    auto& screen = dynamic_cast<SelectItemScreen&>(list);
    auto& grid = screen.Get<ui::Grid>(kSelectItemGrid);
    const auto shows = [&](int row, const std::vector<std::string>& texts) {
        return std::all_of(texts.begin(), texts.end(), [&](const std::string& text) {
            for (int col = 1; col < grid.Cols(); ++col)
                if (grid.TextMatrix(row, col) == text) return true;
            return false;
        });
    };
    for (const auto& texts : rows) {
        int found = 0;
        for (int row = 1; row < grid.Rows() && found == 0; ++row)
            if (!screen.Marked(row) && shows(row, texts)) found = row;
        if (found == 0) return false;
        grid.SetCurrent(found, grid.Col());
        if (screen.PickPendingMode()) screen.KeyDown({.key = ui::Key::Character, .character = U' '});
    }
    screen.KeyDown({.key = ui::Key::Enter});
    return true;
}

} // namespace qx::desk
