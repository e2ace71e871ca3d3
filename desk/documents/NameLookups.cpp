#include "NameLookups.h"

#include "host/HostSelectDialog.h"
#include "host/Text.h"

namespace qx::desk {
namespace {

// Masters keep names in upper case, so a name is found whatever case it is typed in.
std::optional<Named> FindByName(CompanyDb& db, const NameLookup& lookup, std::string_view text) {
    auto rows = db.OpenRecordset(std::string("SELECT ") + lookup.codeField + ", " +
                                 lookup.nameField + " FROM " + lookup.table + " WHERE UPPER(" +
                                 lookup.nameField + ")=" + SqlQuote(UpperCase(text)));
    if (rows->EndOfRows())
        return std::nullopt;
    return Named{rows->Field(0).AsInt(), rows->Field(1).AsText()};
}

} // namespace

NameFound FindNamed(CompanyDb& db, const NameLookup& lookup, std::string_view text,
                    const AccountGroups& groups, std::string_view role) {
    auto found = FindByName(db, lookup, text);
    if (!found)
        return {{},
                "There is no " + std::string(lookup.noun) + " named " + std::string(text) +
                    ". Press F2 to choose one."};
    std::string refusal = OutsideGroups(db, found->code, groups, role);
    return {std::move(*found), std::move(refusal)};
}

std::optional<Named> ChooseByName(DeskApp& app, const NameLookup& lookup,
                                  const std::string& caption, const std::string& typed,
                                  const AccountGroups& groups) {
    auto list = app.CreateSelectDialog();
    list->SetCaption(caption);
    list->SetStartText(Trim(typed));
    const std::string where = groups.empty() ? std::string() : " WHERE " + InGroups(groups);
    list->FillFromQuery(app.DeskSession().Database(),
                        std::string("SELECT ") + lookup.codeField + ", " + lookup.nameField +
                            " FROM " + lookup.table + where + " ORDER BY " + lookup.nameField,
                        lookup.nameField, lookup.codeField);
    if (!list->Show())
        return std::nullopt;
    return Named{static_cast<std::int32_t>(list->SelectedValue()), list->SelectedText()};
}

std::string NameOf(CompanyDb& db, const NameLookup& lookup, std::int64_t code) {
    if (code == 0)
        return {};
    return db
        .LookupValue(lookup.table, lookup.nameField,
                     std::string(lookup.codeField) + "=" + std::to_string(code))
        .AsText();
}

} // namespace qx::desk
