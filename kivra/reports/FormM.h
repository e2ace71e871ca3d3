#pragma once
// The weekly return Form-M to the market committee, and the daily return it makes in its
// one-day mode: the J-Forms (with the firm's own purchases and the series that bear R.D.F. in
// the weekly return), line by line, with the farmer's particulars and bank details, the buyer,
// the market charges and the UTR of the payment.

#include "ReportScope.h"

#include "host/PrintJob.h"

#include <cstdint>
#include <string>

namespace kivra {

enum class FormMFilter { Both, SelfPurchase, IForms, Buyer };
enum class FormMOrder { DateWise, FarmerWise, BuyerWise };

struct FormMOptions {
    bool daily = false;
    FormMFilter filter = FormMFilter::Both;
    std::int32_t buyer = 0; // the buyer's account, with FormMFilter::Buyer
    FormMOrder order = FormMOrder::DateWise;
    bool sellerAddress = false;
    std::string items; // the host's item filter, a condition on the item master "s"; empty: all
};

// The weekly return covers a week from Monday to Sunday. A period of another length is
// refused when the user says No to keeping it; a week of other days is only pointed out.
bool AcceptWeek(ModuleContext& context, qx::Date from, qx::Date to);

// The payment's UTR number and date on the document, added to a company that lacks them.
void CheckUtrFields(qx::CompanyDb& db);

// "Date: 04/11/2024 (Monday)" for the daily return, the period for the weekly one, and the
// market when one is chosen.
std::string FormMHeading(const ReportScope& scope, bool daily);

qx::PrintJob FormMJob(ModuleContext& context, const ReportScope& scope, const FormMOptions& options);

} // namespace kivra
