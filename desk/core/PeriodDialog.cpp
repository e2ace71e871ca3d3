#include "PeriodDialog.h"


namespace qx::desk {
namespace {

ui::TextBox& DayBox(ui::Screen& screen, const char* name, const char* caption, Date day) {
    auto& box = screen.Add<ui::TextBox>(name, caption);
    box.DateEntry = true;
    box.MaxLength = 10;
    box.SetToolTip("dd/MM/yyyy; F2 opens the calendar");
    box.SetText(day.ToDisplay());
    return box;
}

} // namespace

PeriodDialog::PeriodDialog(HostUi& ui, Kind kind, const Period& proposed)
    : Screen("PeriodDialog", kind == Kind::Period ? "Period" : "Date"), ui_(ui),
      from_(DayBox(*this, kPeriodFromBox, kind == Kind::Period ? "From" : "Date", proposed.from)),
      to_(kind == Kind::Period ? &DayBox(*this, kPeriodToBox, "To", proposed.to) : nullptr),
      buttons_(Add<ui::StdButtons>("OKCancel", std::vector<std::string>{"F10: OK", "Esc: Cancel"})) {
    Icon = "Calendar";
    if (to_) AddRow({&from_, to_});
    else AddRow({&from_});
    AddRow({&buttons_});
    buttons_.OnClick = [this](int index) {
        if (index == 0) Accept();
        else Close(false);
    };
}

void PeriodDialog::FirstActivate() { from_.SetFocus(); }

bool PeriodDialog::KeyDown(const ui::KeyPress& key) {
    if (key.Plain()) {
        ui::TextBox& last = to_ ? *to_ : from_;
        if (key.key == ui::Key::Escape) {
            Close(false);
            return true;
        }
        if (key.key == ui::Key::F10 || (key.key == ui::Key::Enter && Focused() == &last)) {
            Accept();
            return true;
        }
    }
    return Screen::KeyDown(key);
}

std::optional<Date> PeriodDialog::Day(ui::TextBox& box) {
    const std::string refusal = Date::DisplayRefusal(box.Text());
    if (refusal.empty()) return Date::ParseDisplay(box.Text());
    ui_.ShowMessage(box.Caption() + ": " + refusal, "", "E");
    Focus(box);
    return std::nullopt;
}

void PeriodDialog::Accept() {
    const auto from = Day(from_);
    if (!from) return;
    const auto to = to_ ? Day(*to_) : from;
    if (!to) return;
    if (*to < *from) {
        ui_.ShowMessage("The period cannot end before it starts: To (" + to->ToDisplay() +
                            ") is before From (" + from->ToDisplay() + ").",
                        "", "E");
        Focus(*to_);
        return;
    }
    result_ = Period{*from, *to};
    Close(true);
}

std::function<void(ui::Screen&)> TypePeriod(std::string from, std::string to) {
    return [from = std::move(from), to = std::move(to)](ui::Screen& screen) {
        screen.Get<ui::TextBox>(kPeriodFromBox).Type(from);
        screen.Get<ui::TextBox>(kPeriodToBox).Type(to);
        screen.Get<ui::StdButtons>("OKCancel").Click(0);
    };
}

std::function<void(ui::Screen&)> TypeDate(std::string day) {
    return [day = std::move(day)](ui::Screen& screen) {
        screen.Get<ui::TextBox>(kPeriodFromBox).Type(day);
        screen.Get<ui::StdButtons>("OKCancel").Click(0);
    };
}

} // namespace qx::desk
