#pragma once
// Runs `qx` in the test's own process and keeps what it said.

#include "desk/cli/Commands.h"

#include <sstream>
#include <string>
#include <vector>

namespace qx::test {

struct QxRun {
    int status;
    std::string out;
    std::string err;
};

inline QxRun Qx(std::vector<std::string> args) {
    std::ostringstream out, err;
    int status = cli::Run(args, out, err);
    return {status, out.str(), err.str()};
}

} // namespace qx::test
