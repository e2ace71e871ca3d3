#pragma once
// The host's period dialog (From and To) and its single-date dialog. Days are typed as
// dd/MM/yyyy (the desktop opens a calendar on F2); Enter moves on and, in the last box, accepts,
// as F10 does; Esc cancels. A day that is not one, or a To before the From, is refused with a
// message, and the dialog stays open with what was typed.

#include "host/HostUi.h"

#include <functional>
#include <optional>
#include <string>

namespace qx::desk {

class PeriodDialog : public ui::Screen {
public:
    enum class Kind { Period, SingleDate };
    PeriodDialog(HostUi& ui, Kind kind, const Period& proposed);
    // What the user accepted; nullopt until then.
    const std::optional<Period>& Result() const { return result_; }
    bool KeyDown(const ui::KeyPress& key) override;

private:
    void FirstActivate() override;
    std::optional<Date> Day(ui::TextBox& box);
    void Accept();

    HostUi& ui_;
    ui::TextBox& from_;
    ui::TextBox* to_ = nullptr; // none in the single-date dialog
    ui::StdButtons& buttons_;
    std::optional<Period> result_;
};

// Names of the dialog's controls, for those who drive it (tests, scripts).
inline constexpr const char* kPeriodFromBox = "txpFrom";
inline constexpr const char* kPeriodToBox = "txpTo";

// What a user does on the next period dialog shown without a window (tests, `qx`): types the
// days as given and accepts. A day refused leaves the dialog open, so it ends as cancelled.
std::function<void(ui::Screen&)> TypePeriod(std::string from, std::string to);
std::function<void(ui::Screen&)> TypeDate(std::string day);

} // namespace qx::desk
