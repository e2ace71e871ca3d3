#pragma once
// Records named by what the user types: an item or an account found by its name, chosen from
// a list or named by its code; and a module's late-bound operation, asked of the loaded modules.

#include "AccountGroups.h"

#include "desk/core/DeskApp.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx::desk {

// Names the user types into a box or cell, and the master they name a record of.
struct NameLookup {
    const char* table;
    const char* codeField;
    const char* nameField;
    const char* noun;
};
inline constexpr NameLookup kItems{"STKMASTER", "QMCD", "QMHD", "item"};
inline constexpr NameLookup kAccounts{"FAMASTER", "MCD", "MHD", "account"};

struct Named {
    std::int32_t code = 0;
    std::string name;
};

struct NameFound {
    Named named;
    std::string refusal; // when there is no such record, or it is of another group
};
// The record a typed name names, whatever its case, of the groups when given ("Buyer" is the
// role it is to stand as).
NameFound FindNamed(CompanyDb& db, const NameLookup& lookup, std::string_view text,
                    const AccountGroups& groups, std::string_view role);

// The list of names, of accounts of the groups when given, starting at what the user typed.
std::optional<Named> ChooseByName(DeskApp& app, const NameLookup& lookup,
                                  const std::string& caption, const std::string& typed,
                                  const AccountGroups& groups = {});

// Empty for code 0.
std::string NameOf(CompanyDb& db, const NameLookup& lookup, std::int64_t code);

// Looks a module operation up among the loaded modules: the first that has it answers. A
// module that does not have it says so with std::invalid_argument.
template <class Answer>
bool AskModules(DeskApp& app, const std::string& operation, std::span<Value> args, Answer answer) {
    for (const LoadedModule& loaded : app.Modules()) {
        Value result;
        try {
            result = loaded.module->Obj().Invoke(operation, args);
        } catch (const std::invalid_argument&) {
            continue;
        }
        answer(result);
        return true;
    }
    return false;
}

} // namespace qx::desk
