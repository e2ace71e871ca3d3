#pragma once
// What the two interest screens share: the party with its credit days and rate from the
// account, the rate, the method and the side the grace days are allowed on, the statement grid
// with its editing rule, "F7: OK", Recalculate, Preview and Print. Each screen says how its
// period is chosen and what its heading reads.

#include "InterestStatement.h"

#include "kivra/module/ModuleContext.h"

#include "host/ReportSource.h"
#include "host/ui/Screen.h"

namespace kivra {

class InterestForm : public qx::ui::Screen, public qx::ReportSource {
public:
    bool KeyDown(const qx::ui::KeyPress& key) override;
    // The grid as it stands, titled by the heading, with "Party: ..." as its second title.
    const qx::PrintJob& Report() const override;
    std::vector<std::string> ArgumentNames() const override;
    void TakeArguments(const qx::ReportArguments& arguments) override;

    const std::optional<InterestStatement>& Statement() const { return statement_; }
    const qx::Period& Period() const { return period_; }

protected:
    InterestForm(ModuleContext& context, std::string name, std::string caption, InterestScreen screen);
    void Load() override;
    void FirstActivate() override;
    void Unload() override { context_.Ui().UnregisterWindow(*this); }

    // "Period": the user chooses the period, and the statement is worked out for it.
    virtual void ChoosePeriod() = 0;
    // The heading above the grid once a statement is worked out.
    virtual std::string Heading() const = 0;
    // Works the statement out for the party, the terms and the period on the screen, and shows
    // it; nothing without a party.
    void Calculate();
    void SetPeriod(const qx::Period& period) { period_ = period; }
    std::string PartyText() const { return party_.Text(); }
    // Lays the controls out; extra, when given, is a row of the screen's own after the buttons.
    void LayOut(std::vector<qx::ui::Control*> entryRow, std::vector<qx::ui::Control*> buttonsRow,
                std::vector<qx::ui::Control*> extra);
    // Switches the entry controls and the command bar on or off together.
    void EnableEntry(bool on);

    ModuleContext& context_;
    const InterestScreen screen_;
    qx::ui::Label& heading_;
    qx::ui::TextBox& party_;
    qx::ui::Label& partyInfo_;
    qx::ui::TextBox& rate_;
    qx::ui::TextBox& creditDays_;
    qx::ui::TextBox* totalDays_ = nullptr; // the second screen's
    qx::ui::OptionGroup& method_;
    qx::ui::Label& graceLabel_;
    qx::ui::OptionGroup& grace_;
    qx::ui::Label& method1Days_;
    qx::ui::Label& method1Grace_;
    qx::ui::Label& method2_;
    qx::ui::Button& generate_;
    qx::ui::Button& recalculate_;
    qx::ui::Grid& grid_;
    qx::ui::ButtonBar& bar_;

private:
    void PartyChanged();
    void PartyLeft(bool& cancel);
    void LookUpParty();
    void TakeParty(std::int32_t code);
    void MethodChanged();
    void RecalculateShown();
    void OnCommand(const std::string& key);
    // The terms on the screen; nullopt, said to the user, when one cannot be worked with.
    std::optional<InterestTerms> Terms();
    void Show(const InterestStatement& statement);

    std::int32_t partyCode_ = 0;
    qx::Period period_;
    std::optional<InterestStatement> statement_;
    mutable qx::PrintJob report_;
};

} // namespace kivra
