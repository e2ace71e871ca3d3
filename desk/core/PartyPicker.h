#pragma once
// The host's party picker: the company's accounts with their station and their balance in the
// books (Dr or Cr; memoranda, book "MEM", are no part of it), to choose one from at the keyboard as any list of the desk. It opens at the
// first account whose name starts with what the user had typed.

#include "ListScreen.h"

#include "host/CompanyDb.h"
#include "host/HostUi.h"

namespace qx::desk {

inline constexpr const char* kPartyPickerScreen = "SelParty";
inline constexpr const char* kPartyPickerGrid = "List";

class PartyPicker : public ListScreen {
public:
    PartyPicker(HostUi& ui, CompanyDb& db);
    std::optional<ChosenAccount> Choose(const std::string& typed);

private:
    void Take() override;

    HostUi& ui_;
    std::vector<ChosenAccount> accounts_;
};

// A balance as the books show it: "12,000.00 Dr", "450.50 Cr", "0.00".
std::string BalanceText(Amount balance);

} // namespace qx::desk
