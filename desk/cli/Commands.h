#pragma once
// The `qx` command line: the desk's engine without windows.

#include <iosfwd>
#include <string>
#include <vector>

namespace qx::cli {

// Runs one command (the arguments after the program name). Returns the exit status:
// 0 done, 1 the command failed (the reason on err), 2 the command line was wrong.
int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

} // namespace qx::cli
