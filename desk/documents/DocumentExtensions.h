#pragma once
// The modules' extensions of the entry screen's documents (firm setting "DocExtensions").

#include "DeskDocument.h"

#include "desk/core/DeskApp.h"
#include "host/HostDocument.h"

#include <memory>
#include <vector>

namespace qx::desk {

class DocumentExtensions {
public:
    // Every loaded module is asked for every extension the firm names; each one found extends
    // the document until Terminate.
    void Make(DeskApp& app, DeskDocument& document);
    void Terminate();

private:
    std::vector<std::shared_ptr<IDocExtension>> extensions_;
};

} // namespace qx::desk
