#pragma once
// The voucher a mandi form posts of its own (a purchase; a J-Form or I-Form only where its
// series posts one): the charges the firm bears itself are taken off the party's posting, the
// form number goes into the narration, and a local purchase posts each levy as a pair of rows,
// the category's expense head against the levy's payable head.

#include "MandiForm.h"

namespace kivra {

class FormVoucher {
public:
    explicit FormVoucher(MandiForm& form) : form_(form) {}

    void Begin();
    // The host added a row of its own.
    void RowAdded() { ownCharges_ = {}; }
    void End();

private:
    void TakeOffOwnCharges();
    void PutFormNumber();
    void PostLevyPairs();

    MandiForm& form_;
    // The charges of the voucher being posted that the firm bears.
    qx::Amount ownCharges_;
};

} // namespace kivra
