#pragma once
// `qx print`: a saved document's paper, as F9 prints it from its entry screen (the farmer's
// copy of a J-Form, say), written to a file or as text.

#include "desk/core/DeskApp.h"
#include "desk/core/ReportFile.h"
#include "desk/core/Scripted.h"

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

namespace qx::cli {

struct PrintRequest {
    std::string series; // its code: "JF"
    std::string number; // the document's number in the series
    desk::ReportFormat format = desk::ReportFormat::Text;
    std::optional<std::filesystem::path> out; // none: text on out
};

// Opens the document on its entry screen, takes its paper and saves it. Throws
// std::runtime_error with the reason when there is no such series or document, or the file
// cannot be written.
void PrintDocument(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const PrintRequest& request,
                   std::ostream& out);

} // namespace qx::cli
