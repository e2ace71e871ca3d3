#pragma once
// `qx report`: a report of the desk's or of a module's run by name through the same screen a
// user opens, its opening dialogs answered from the command line, and its print job saved to a
// file.

#include "desk/core/DeskApp.h"
#include "desk/core/ReportFile.h"
#include "desk/core/Scripted.h"
#include "host/ReportSource.h"

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {

struct ReportRequest {
    std::string name;                // as the module calls it: "daily-summary"
    std::optional<std::string> from; // dd/MM/yyyy, typed into the period or date dialog
    std::optional<std::string> to;   // the From when not given; alone, the day of a date dialog
    std::optional<std::string> market;                       // "all" or none: every market
    std::vector<std::pair<std::string, std::string>> options; // control name, value, in order
    ReportArguments arguments; // the report's own (--party NAME), by name without the dashes
    desk::ReportFormat format = desk::ReportFormat::Text;
    std::optional<std::filesystem::path> out; // none: text on out
};

// The reports of the loaded modules, each as its name and the menu key that opens it. A name
// "NAME+ARGUMENT" is the variant of NAME made when that argument is given.
std::vector<std::pair<std::string, std::string>> ModuleReports(desk::DeskApp& app);

// Opens the report, answers what it asks, sets its options and saves it. Every message the
// screen shows is written to err as it comes. Throws std::runtime_error with the reason when
// the report cannot be made (an unknown name, a refusal, a file that cannot be written); an
// error the screen shows is such a refusal.
void RunReport(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const ReportRequest& request,
               std::ostream& out, std::ostream& err);

} // namespace qx::cli
