#include "frmKivraInterest2.h"

namespace kivra {

frmKivraInterest2::frmKivraInterest2(ModuleContext& context)
    : InterestForm(context, "frmKivraInterest2", "Kivra Interest Calculation", InterestScreen::Second),
      insertRow_(Add<qx::ui::Button>("btnInsertRow", "Insert Row On Top")),
      periodTitle_(Add<qx::ui::Label>("lblSearch", "Enter Period")), periodBox_(Add<qx::ui::PeriodBox>("CPeriod1")),
      periodButtons_(Add<qx::ui::StdButtons>("btnOKCancel")),
      stdButtons_(Add<qx::ui::StdButtons>("TarStdButtons1", std::vector<std::string>{"OK", "Cancel", "Close"})) {
    heading_.SetText("Interest Calculation A/c");
    graceLabel_.SetText("Total Grace Days Calculate On :-");
    method1Days_.SetText("Method 1:- Days:-Next Entry Date-Entry Date");
    method1Grace_.SetText(
        "2) Grace Days Interest  Calc:-Total Debit/Credit Amt(Except O.Bal)*Intr Rate/100/TotalDays*Grace Days");
    method2_.SetText("Method 2:- Days=ToDate-Entry Date, Insert Row on Top only for method 2");
    generate_.SetCaption("F7: Ok");
    bar_.AddItem("Period,F2: &Period,Period", "Calendar");
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,&Exit,Exit");
    // "Insert Row On Top" does nothing, whatever its label says of Method 2.
    periodButtons_.OnClick = [this](int button) { PeriodChosen(button); };
    stdButtons_.OnClick = [this](int button) {
        if (button == 0) generate_.Click();
        else Close();
    };
    LayOut({&rate_, &creditDays_, totalDays_}, {&generate_, &recalculate_, &insertRow_},
           {&periodTitle_, &periodBox_, &periodButtons_});
    AddRow({&stdButtons_});
    for (qx::ui::Control* panel : std::initializer_list<qx::ui::Control*>{&periodTitle_, &periodBox_, &periodButtons_})
        panel->SetVisible(false);
}

std::string frmKivraInterest2::Heading() const {
    return "Interest Calculation A/c " + PartyText() + " From " + Period().from.ToDisplay() + " To " +
           Period().to.ToDisplay();
}

// While the panel is open only it takes input: the entry, the command bar and the standard
// buttons wait.
void frmKivraInterest2::ShowPeriodPanel(bool show) {
    if (show) periodBox_.SetPeriod(Period().from, Period().to);
    for (qx::ui::Control* panel : std::initializer_list<qx::ui::Control*>{&periodTitle_, &periodBox_, &periodButtons_})
        panel->SetVisible(show);
    EnableEntry(!show);
    insertRow_.SetEnabled(!show);
    if (show) periodBox_.SetFocus();
    else generate_.SetFocus();
}

void frmKivraInterest2::PeriodChosen(int button) {
    if (button == 0) {
        if (!periodBox_.From() || !periodBox_.To()) {
            context_.Util().ShowMessage("Enter the period's From and To dates.", "", "E");
            return;
        }
        if (*periodBox_.To() < *periodBox_.From()) {
            context_.Util().ShowMessage("The period ends before it begins.", "", "E");
            return;
        }
        SetPeriod({*periodBox_.From(), *periodBox_.To()});
    }
    ShowPeriodPanel(false);
    if (button == 0) Calculate();
}

void frmKivraInterest2::QueryUnload(bool& cancel) {
    if (PeriodPanelOpen()) cancel = true;
}

} // namespace kivra
