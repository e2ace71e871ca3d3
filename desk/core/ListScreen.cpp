#include "ListScreen.h"

#include "host/Text.h"

#include <algorithm>

#include <utf8proc.h>

namespace qx::desk {
namespace {

constexpr int kPageRows = 10;

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

} // namespace

ListScreen::ListScreen(std::string name, std::string caption, const std::string& listName,
                       int firstSearchedCol)
    : Screen(std::move(name), std::move(caption)), find_(Add<ui::Label>("Find")),
      list_(Add<ui::Grid>(listName)), firstSearchedCol_(firstSearchedCol) {
    list_.SelectsRows = true;
    list_.OnDoubleClick = [this](int row, int) {
        if (row < 1 || row >= list_.Rows()) return;
        list_.SetCurrent(row, list_.Col());
        Take();
    };
}

bool ListScreen::KeyDown(const ui::KeyPress& key) {
    if (!key.ctrl && !key.alt) switch (key.key) {
        case ui::Key::Enter:
            Take();
            return true;
        case ui::Key::Escape:
            Close(false);
            return true;
        case ui::Key::Up:
            MoveBy(-1);
            return true;
        case ui::Key::Down:
            MoveBy(1);
            return true;
        case ui::Key::PageUp:
            MoveBy(-kPageRows);
            return true;
        case ui::Key::PageDown:
            MoveBy(kPageRows);
            return true;
        case ui::Key::Character:
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

void ListScreen::MoveBy(int rows) {
    if (list_.Rows() < 2) return;
    const int from = list_.Row() < 1 ? (rows > 0 ? 0 : list_.Rows()) : list_.Row();
    list_.SetCurrent(std::clamp(from + rows, 1, list_.Rows() - 1), list_.Col());
}

void ListScreen::Find(std::string text) {
    typed_ = std::move(text);
    int found = 0;
    for (int row = 1; row < list_.Rows() && found == 0; ++row)
        for (int col = firstSearchedCol_; col < list_.Cols() && found == 0; ++col)
            if (EqualsNoCase(list_.TextMatrix(row, col).substr(0, typed_.size()), typed_))
                found = row;
    list_.SetCurrent(found, list_.Col());
    find_.SetText(typed_.empty() ? std::string()
                                 : "Find: " + typed_ + (found ? "" : "  (no entry starts so)"));
}

} // namespace qx::desk
