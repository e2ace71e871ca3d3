#include "PrintCommand.h"

#include "FindDocument.h"

#include "desk/core/ReportText.h"
#include "desk/documents/DocumentScreen.h"
#include "desk/documents/Series.h"

#include <ostream>
#include <stdexcept>

namespace qx::cli {

void PrintDocument(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const PrintRequest& request,
                   std::ostream& out) {
    CompanyDb& db = app.DeskSession().Database();
    const std::int32_t seriesId = desk::FindSeries(db, request.series, "");
    if (seriesId == 0)
        throw std::runtime_error("The series " + request.series + " is not set up in this company.");
    std::int32_t documentId = 0;
    try {
        documentId = FindDocument(app, desk::LoadSeries(db, seriesId), SavedDocument{request.number, {}});
    } catch (const Refusal& refusal) {
        throw std::runtime_error(refusal.what());
    }
    auto screen = std::dynamic_pointer_cast<desk::DocumentScreen>(app.Forms().CreateForm("Documents"));
    if (!screen) throw std::logic_error("this QX Desk has no document entry");
    screen->Properties().SetValue("DocSeriesID", seriesId);
    // The new document the screen opens with is left at once: what it asks is closed unanswered.
    frontend.SetDefaultAnswer(kAnswerNo);
    app.OpenScreen(screen);
    frontend.DropModals();
    const PrintJob paper = [&] {
        try {
            screen->OpenDocument(documentId);
            return app.Named(screen->Paper());
        } catch (...) {
            app.CloseScreen(*screen);
            throw;
        }
    }();
    app.CloseScreen(*screen);
    if (request.out) desk::SaveReport(paper, request.format, *request.out);
    else if (request.format == desk::ReportFormat::Csv) out << desk::RenderCsv(paper);
    else out << desk::RenderText(paper);
}

} // namespace qx::cli
