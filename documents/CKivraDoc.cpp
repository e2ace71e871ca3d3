#include "CKivraDoc.h"

namespace kivra {

bool CKivraDoc::IsGSTApplicableOn(qx::Date documentDate) {
    return documentDate >= qx::Date::FromYmd(2017, 7, 1);
}

} // namespace kivra
