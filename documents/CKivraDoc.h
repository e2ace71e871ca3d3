#pragma once
// The module's extension of the host's document engine. The document events it handles
// come with the document engine; what it already knows is the date rule that every tax
// decision of a document turns on.

#include "host/Date.h"
#include "host/Object.h"

namespace kivra {

class CKivraDoc : public qx::Object {
public:
    // GST replaced purchase tax on 1 July 2017.
    static bool IsGSTApplicableOn(qx::Date documentDate);
};

} // namespace kivra
