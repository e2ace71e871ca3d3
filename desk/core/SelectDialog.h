#pragma once
// The host's list-selection dialog: a screen with one list and OK/Cancel, shown modally.
// The user chooses a row by moving to it and pressing Enter, double-clicking it, or OK. Letters
// typed on the list find the first entry that starts with them (Backspace takes one back);
// when none does, no row is current and Enter chooses nothing.

#include "host/HostSelectDialog.h"
#include "host/HostUi.h"

#include <memory>
#include <vector>

namespace qx::desk {

class SelectListDialog : public HostSelectDialog {
public:
    explicit SelectListDialog(HostUi& ui);
    void SetCaption(std::string caption) override;
    void AddItem(std::string text, std::int64_t value) override;
    void FillFromQuery(CompanyDb& db, std::string_view sql, std::string_view displayField,
                       std::string_view keyField) override;
    void SetStartText(std::string text) override { startText_ = std::move(text); }
    bool Show() override;
    int SelectedIndex() const override { return selected_; }
    std::string SelectedText() const override;
    std::int64_t SelectedValue() const override;

private:
    HostUi& ui_;
    std::shared_ptr<ui::Screen> screen_;
    std::vector<ui::ListEntry> entries_;
    std::string startText_;
    int selected_ = 0;
};

// What a user does on a list dialog shown without a window (scripts, tests): takes the entry
// of that text with OK. False, the dialog left open, when there is no such entry.
bool ChooseInList(ui::Screen& list, std::string_view text);

// Names of the dialog's controls, for those who drive it (tests, scripts).
inline constexpr const char* kSelectListScreen = "SelectList";
inline constexpr const char* kSelectListGrid = "List";
inline constexpr const char* kSelectListButtons = "OKCancel";

} // namespace qx::desk
