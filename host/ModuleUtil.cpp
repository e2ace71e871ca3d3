#include "ModuleUtil.h"

#include "HostSession.h"
#include "HostUi.h"
#include "Value.h"

namespace qx {

int ModuleUtil::ShowMessage(const std::string& prompt, const std::string& options,
                            const std::string& style) {
    return ui_.ShowMessage(prompt, options, style);
}

void ModuleUtil::SendKeys(const std::string& keys) {
    ui_.SendKeys(keys);
}

// The module passes the decimals as text ("2"), read as the host reads any number.
Amount ModuleUtil::RoundAmount(Amount value, std::string_view decimals) const {
    return qx::RoundAmount(value, Value(decimals).AsInt());
}

std::string ModuleUtil::SqlDate(Date date, std::optional<Date> to) const {
    CompanyDb& db = session_.Database();
    std::string literal = db.DateLiteral(date);
    if (to) {
        literal += " AND " + db.DateLiteral(*to);
    }
    return literal;
}

} // namespace qx
