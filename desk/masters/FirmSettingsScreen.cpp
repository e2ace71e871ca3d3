#include "FirmSettingsScreen.h"

#include "TableMaster.h"

#include "host/Text.h"

#include <algorithm>
#include <utility>

namespace qx::desk {
namespace {

constexpr const char* kTitle = "Firm Settings";

} // namespace

FirmSettingsScreen::FirmSettingsScreen(DeskApp& app)
    : Screen("FirmSettings", kTitle), app_(app),
      properties_(Add<ui::TextBox>("txtFirmProperties", "Firm Properties")),
      itemForms_(Add<ui::TextBox>("txtItemForms", "Item Screens of Modules")),
      options_(Add<ui::Grid>("Grid")), buttons_(Add<ui::StdButtons>("OKCancel")) {
    Icon = "Settings";
    itemForms_.SetToolTip("name=Caption;name2=Caption2");
    options_.AddColumn("Option No.", 1000, Align::Right);
    options_.AddColumn("Value", 4000);
    options_.Editable = true;
    options_.GrowsRows = true;
    options_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed,
                                            bool& cancel) {
        if (col == kColNumber)
            CheckNumber(row, typed, cancel);
    };
    buttons_.OnClick = [this](int index) {
        if (index != 0)
            Close(false);
        else if (Save()) {
            // A module's menu follows the firm's properties ("*KivraMenu*").
            app_.RefreshMenus();
            Close(true);
        }
    };
}

bool FirmSettingsScreen::KeyDown(const ui::KeyPress& key) {
    if (key.key == ui::Key::Escape && key.Plain()) {
        Close(false);
        return true;
    }
    return Screen::KeyDown(key);
}

void FirmSettingsScreen::Load() {
    auto& session = app_.DeskSession();
    loadedProperties_ = session.FirmSettings().GetValue("FirmProperties").AsText();
    loadedItemForms_ = session.FirmSettings().GetValue("ItemForms").AsText();
    properties_.SetText(loadedProperties_);
    itemForms_.SetText(loadedItemForms_);
    // An option cleared to nothing reads as never set, so it is not listed.
    auto rows = session.Database().OpenRecordset(
        "SELECT OPTIONNO, OPTIONVALUE FROM FIRMOPTIONS WHERE OPTIONVALUE<>'' ORDER BY OPTIONNO");
    options_.SetRedraw(false);
    int row = 0;
    for (; !rows->EndOfRows(); rows->MoveNext()) {
        options_.SetRows(++row + 1);
        loadedOptions_[rows->Field(0).AsInt()] = rows->Field(1).AsText();
        options_.SetTextMatrix(row, kColNumber, rows->Field(0).AsText());
        options_.SetTextMatrix(row, kColValue, rows->Field(1).AsText());
    }
    rows->Close();
    options_.SetRows(row + 2); // one empty row for a new option
    options_.SetRedraw(true);
}

void FirmSettingsScreen::FirstActivate() {
    properties_.SetFocus();
    app_.RegisterWindow(*this, kTitle, Icon);
}

void FirmSettingsScreen::CheckNumber(int row, const std::string& typed, bool& cancel) {
    std::string number = Trim(typed);
    if (number.empty())
        return;
    std::string refusal = AcceptNumber(ColumnKind::WholeNumber, number);
    if (refusal.empty() && Value(number).AsLong() <= 0)
        refusal = "Option numbers start at 1.";
    for (int other = 1; refusal.empty() && other < options_.Rows(); ++other) {
        const std::string listed = Trim(options_.TextMatrix(other, kColNumber));
        if (other != row && !listed.empty() && Value(listed).AsLong() == Value(number).AsLong())
            refusal = "Option " + number + " is listed already.";
    }
    if (!refusal.empty()) {
        Warn(refusal);
        cancel = true;
    }
}

bool FirmSettingsScreen::Save() {
    if (!options_.Commit())
        return false;
    std::vector<std::pair<int, std::string>> options;
    for (int row = 1; row < options_.Rows(); ++row) {
        const std::string number = Trim(options_.TextMatrix(row, kColNumber));
        const std::string& value = options_.TextMatrix(row, kColValue);
        if (number.empty()) {
            if (Trim(value).empty())
                continue;
            options_.SetCurrent(row, kColNumber);
            Warn("Enter the option number.");
            return false;
        }
        options.emplace_back(Value(number).AsInt(), Trim(value));
    }
    auto& session = app_.DeskSession();
    return app_.Guard([&] {
        // Only what the user changed is written: what another program saved to the settings
        // since the screen opened stays as it left it.
        Transaction unit(session.Database());
        if (properties_.Text() != loadedProperties_)
            session.SetFirmSetting("FirmProperties", properties_.Text());
        if (itemForms_.Text() != loadedItemForms_)
            session.SetFirmSetting("ItemForms", itemForms_.Text());
        // An option taken out of the list is cleared: an empty option reads as never set.
        for (const auto& [number, value] : loadedOptions_)
            if (std::none_of(options.begin(), options.end(),
                             [&](const auto& kept) { return kept.first == number; }))
                session.SetOption(number, "");
        for (const auto& [number, value] : options)
            if (auto loaded = loadedOptions_.find(number);
                loaded == loadedOptions_.end() || loaded->second != value)
                session.SetOption(number, value);
        unit.Commit();
    });
}

void FirmSettingsScreen::Warn(const std::string& message) {
    app_.ShowMessage(message, "", "W");
}

} // namespace qx::desk
