#pragma once
// A real company file in a temporary folder and the desk with its scripted front end, with
// no module plugged in.

#include "desk/core/DeskApp.h"
#include "desk/core/Scripted.h"
#include "desk/core/SelectDialog.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace qx::test {

// Creates a company file with the given firm properties and options.
inline std::filesystem::path MakeCompany(const TempFolder& folder, const std::string& firmProperties = "*KivraMenu*",
                                         std::vector<std::pair<int, std::string>> options = {},
                                         const std::string& file = "company.kdb") {
    auto path = folder.Path() / file;
    desk::Session session;
    session.Create(path, "Test Trading Company");
    session.SetFirmSetting("FirmProperties", firmProperties);
    for (const auto& [number, value] : options) session.SetOption(number, value);
    return path;
}

class DeskFixtureBase : public ::testing::Test {
protected:
    CompanyDb& Db() { return app.DeskSession().Database(); }

    // The texts of every message shown so far.
    std::vector<std::string> Messages() const {
        std::vector<std::string> texts;
        for (const auto& message : frontend.Transcript()) texts.push_back(message.prompt);
        return texts;
    }

    // Rows of a query, each as its fields joined by "|".
    std::vector<std::string> Rows(const std::string& sql) {
        std::vector<std::string> rows;
        auto set = Db().OpenRecordset(sql);
        for (; !set->EndOfRows(); set->MoveNext()) {
            std::string line;
            for (int i = 0; i < set->FieldCount(); ++i) line += (i ? "|" : "") + set->Field(i).AsText();
            rows.push_back(line);
        }
        return rows;
    }

    // The next selection list: choose the entry with that text (or cancel when empty).
    void ChooseInNextList(const std::string& text) {
        frontend.QueueModal([text](ui::Screen& screen) {
            if (desk::ChooseInList(screen, text)) return;
            ADD_FAILURE() << "no entry " << text << " in the list";
        });
    }

    TempFolder folder;
    std::filesystem::path path;
    desk::ScriptedFrontend frontend;
    desk::DeskApp app{frontend};
};

} // namespace qx::test
