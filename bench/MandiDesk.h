#pragma once
// The desk as a user runs it on a company, with no windows: the host's masters and document
// entry, the Kivra module plugged in, questions answered from a script and every message kept.
// A benchmark types into its screens as the integration tests do.

#include "support/DocumentTyping.h"

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"
#include "desk/core/SelectDialog.h"
#include "desk/documents/DocumentScreen.h"
#include "desk/documents/HostDocuments.h"
#include "desk/masters/HostMasters.h"
#include "kivra/module/CQXModule.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx::bench {

// Rows of a query, each as its fields joined by "|", all rows joined by "\n".
inline std::string Rows(CompanyDb& db, const std::string& sql) {
    std::string text;
    for (auto rows = db.OpenRecordset(sql); !rows->EndOfRows(); rows->MoveNext()) {
        for (int i = 0; i < rows->FieldCount(); ++i)
            text += (i ? "|" : "") + rows->Field(i).AsText();
        text += "\n";
    }
    return text;
}

class MandiDesk {
public:
    explicit MandiDesk(const std::filesystem::path& company) {
        desk::RegisterHostMasters(app);
        desk::RegisterHostDocuments(app);
        app.PlugModule(module);
        if (!app.OpenCompany(company))
            throw std::runtime_error("the company did not open");
    }
    // The desk terminates the module when it shuts down, so it goes first.
    ~MandiDesk() { app.Shutdown(); }
    MandiDesk(const MandiDesk&) = delete;
    MandiDesk& operator=(const MandiDesk&) = delete;

    CompanyDb& Db() { return app.DeskSession().Database(); }

    // The document screen a menu key of the module opens.
    desk::DocumentScreen& OpenMenu(const std::string& key) {
        app.ClickMenu(key);
        auto* screen = dynamic_cast<desk::DocumentScreen*>(app.OpenScreens().back().get());
        if (!screen)
            throw std::logic_error("the menu key " + key + " opened no document screen");
        return *screen;
    }

    // A look-up box: F2 lists its choices and the user takes the one of that text.
    void Choose(desk::DocumentScreen& screen, ui::TextBox& box, const std::string& text) {
        frontend.QueueModal([text](ui::Screen& list) { desk::ChooseInList(list, text); });
        screen.Focus(box);
        screen.KeyDown({.key = ui::Key::F2});
        if (box.Text() != text)
            throw std::runtime_error("there is no " + box.Caption() + " " + text);
    }

    // Types a line cell by cell, by column key, leaving each cell as Enter does.
    static void TypeLine(desk::DocumentScreen& screen, int row,
                         const std::vector<std::pair<std::string, std::string>>& cells) {
        auto& grid = screen.Grid();
        for (const auto& [key, text] : cells) {
            if (!grid.MoveTo(row, screen.Member("COL_" + key)))
                throw std::runtime_error("line " + std::to_string(row) + " refused " + key);
            grid.Type(text);
        }
        if (!grid.Commit())
            throw std::runtime_error("line " + std::to_string(row) + " refused its last cell");
    }

    static void Type(desk::DocumentScreen& screen, ui::TextBox& box, const std::string& text) {
        if (!test::TypeBox(screen, box, text))
            throw std::runtime_error(box.Caption() + " refused " + text);
    }

    // The first message shown since the transcript was last cleared; empty when none was.
    std::string FirstMessage() const {
        return frontend.Transcript().empty() ? std::string() : frontend.Transcript().front().prompt;
    }

    desk::ScriptedFrontend frontend;
    kivra::CQXModule module;
    desk::DeskApp app{frontend};
};

} // namespace qx::bench
