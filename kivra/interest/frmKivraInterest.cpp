#include "frmKivraInterest.h"

namespace kivra {

frmKivraInterest::frmKivraInterest(ModuleContext& context)
    : InterestForm(context, "frmKivraInterest", "Kivra Interest Calc.", InterestScreen::First) {
    heading_.SetText("Interest Calculation (Kivra)");
    graceLabel_.SetText("Calculate grace days on:");
    method1Days_.SetText("Method 1: 1) Days: Next Entry Date-Entry Date");
    method1Grace_.SetText("2) Grace Days Interest  Calc: Total Debit/Credit Amt(Except O.Bal)*Intr Rate/100/365*Grace Days");
    method2_.SetText("Method 2: Days=ToDate-Entry Date,and Toatl Days=360 Fix");
    bar_.AddItem("Period,F6: &Period,Period", "Calendar");
    bar_.AddItem("Preview,F8: Preview,Preview");
    bar_.AddItem("Print,F9: Print,Print");
    bar_.AddItem("Exit,Esc: Exit,Exit");
    LayOut({&rate_, &creditDays_}, {&generate_, &recalculate_}, {});
}

void frmKivraInterest::ChoosePeriod() {
    const auto period = context_.Ui().AskPeriod("KivraInterest");
    if (!period) return;
    SetPeriod(*period);
    Calculate();
}

std::string frmKivraInterest::Heading() const {
    return "Period: " + Period().from.ToDisplay() + " to " + Period().to.ToDisplay();
}

} // namespace kivra
