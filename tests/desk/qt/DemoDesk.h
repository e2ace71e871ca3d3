#pragma once
// The demo company on the desk, as a user opens it.

#include "desk/cli/Commands.h"
#include "desk/core/DeskApp.h"
#include "desk/documents/HostDocuments.h"
#include "desk/masters/HostMasters.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

namespace qx::test {

// The demo company, made as `qx demo` makes it, open with the host's screens and the modules
// plugged in.
inline void OpenDemoCompany(desk::DeskApp& app, const TempFolder& folder) {
    const auto company = folder.Path() / "demo.kdb";
    std::ostringstream out, err;
    ASSERT_EQ(cli::Run({"demo", company.string()}, out, err), 0) << err.str();
    desk::RegisterHostMasters(app);
    desk::RegisterHostDocuments(app);
    app.LoadModules(std::getenv("QX_MODULES_DIR"));
    app.OpenCompany(company);
}

} // namespace qx::test
