#pragma once
// Ledger heads that the item masters create in the host's chart of accounts, and the VAT
// classes they carry. The group and class numbers are the host's; the module only writes
// them.

#include "host/Amount.h"
#include "host/CompanyDb.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kivra {

// Balance-sheet groups (FAMASTER.MBSHNO) of the heads the masters create.
inline constexpr std::int32_t kGroupTaxes = 59;
inline constexpr std::int32_t kGroupStock = 60;
inline constexpr std::int32_t kGroupPurchase = 62;
inline constexpr std::int32_t kGroupMandiExpenses = 66;
inline constexpr std::int32_t kGroupSales = 72;
inline constexpr std::int32_t kGroupPayable = 190;
inline constexpr std::int32_t kGroupTrading = 195;

// Purchase classes that do not follow the item's VAT rate.
inline constexpr std::int32_t kClassPurchaseTaxFree = 305;
inline constexpr std::int32_t kClassPurchaseTaxable = 308;
inline constexpr std::int32_t kClassPurchaseFarmProduce = 390;

// An item's VAT rate as the item master offers it (STKMASTER.qVATRateCode).
struct VatRate {
    const char* name;
    std::int32_t code;
    qx::Amount percent;
    std::int32_t salesClass;        // local sale of the item
    std::int32_t purchaseBillClass; // purchase on a VAT bill
};

// In the order the item master lists them; "Tax-Free" first.
std::span<const VatRate> VatRates();
// Null for a code the list does not have.
const VatRate* FindVatRate(std::int32_t code);

// Paddy, wheat and cotton bought from farmers have a purchase class of their own. The
// commodity is read from the first six characters of the item's name, so that "WHEAT DARA"
// is wheat and "WHEATS" is not; nor is "Wheat Dara", in small letters.
bool IsFarmProduce(std::string_view itemName);

// Finds or creates heads by name, in upper case, among the heads without a sub-type
// (MST=''). A new head takes the code after the highest in use, so that a run of new heads
// gets consecutive codes.
class LedgerHeads {
public:
    explicit LedgerHeads(qx::CompanyDb& db) : db_(db) {}

    // The head's code. A new head is created in the group, with its print head and, for a
    // VAT class, the class's sales/purchase indicator; an existing head is only moved to the
    // group. A VAT class other than 0 is given to the head unless it has it already. Each head
    // is one unit of work: whether it exists and which code is free are decided under the
    // write lock that writes it, so another program creating heads at the same time can take
    // neither its name nor its code, and a failure leaves the heads written before it.
    std::int32_t Ensure(std::string_view name, std::int32_t group, std::int32_t vatClass,
                        std::int32_t tradingLink);

private:
    qx::CompanyDb& db_;
};

} // namespace kivra
