#pragma once
// "Interest Calculations" (menu key KVINT): a party's interest statement by Method 1 on a year
// of 365 days or Method 2 on one of 360, its period chosen through the host's period dialog.

#include "InterestForm.h"

namespace kivra {

class frmKivraInterest : public InterestForm {
public:
    explicit frmKivraInterest(ModuleContext& context);

protected:
    void ChoosePeriod() override;
    std::string Heading() const override;
};

} // namespace kivra
