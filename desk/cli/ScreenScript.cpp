#include "ScreenScript.h"

#include <stdexcept>

namespace qx::cli {
namespace {

ui::Key KeyFromName(const std::string& name) {
    for (int k = static_cast<int>(ui::Key::Enter); k <= static_cast<int>(ui::Key::F12); ++k)
        if (ui::KeyName(static_cast<ui::Key>(k)) == name) return static_cast<ui::Key>(k);
    throw std::runtime_error("unknown key \"" + name + "\"");
}

class StepRunner {
public:
    StepRunner(desk::DeskApp& app, desk::ScriptedFrontend& frontend) : app_(app), frontend_(frontend) {}

    void Run(const nlohmann::json& step) {
        if (step.contains("menu")) OpenMenu(step.at("menu").get<std::string>());
        else if (step.contains("grid")) TypeRows(step);
        else if (step.contains("key")) PressKey(step.at("key").get<std::string>());
        else if (step.contains("answer")) Answer(step.at("answer").get<std::string>());
        else if (step.contains("close")) CloseCurrent();
        else throw std::runtime_error("a step must be one of menu, grid, key, answer, close");
    }

    // The text of the last message shown, to say why an action was refused.
    std::string LastMessage() const {
        const auto& transcript = frontend_.Transcript();
        return transcript.empty() ? std::string("refused") : transcript.back().prompt;
    }

private:
    ui::Screen& Current() {
        if (app_.OpenScreens().empty()) throw std::runtime_error("no screen is open");
        return *app_.OpenScreens().back();
    }

    void OpenMenu(const std::string& key) {
        auto before = app_.OpenScreens().size();
        app_.ClickMenu(key);
        if (app_.OpenScreens().size() == before)
            throw std::runtime_error("the menu entry \"" + key + "\" opened no screen: " + LastMessage());
    }

    void TypeRows(const nlohmann::json& step) {
        auto& grid = Current().Get<ui::Grid>(step.at("grid").get<std::string>());
        int startColumn = step.value("startColumn", 0);
        for (const auto& cells : step.at("rows")) {
            int row = grid.Rows() - 1; // the empty row at the end
            int col = startColumn;
            for (const auto& cell : cells) {
                if (!grid.MoveTo(row, col))
                    throw std::runtime_error("row " + std::to_string(row) + " was refused: " + LastMessage());
                grid.Type(cell.get<std::string>());
                ++col;
            }
            // Leaving the row, as the user does when he goes on to the next one, saves it.
            if (!grid.MoveTo(grid.Rows() - 1, startColumn))
                throw std::runtime_error("row " + std::to_string(row) + " was refused: " + LastMessage());
        }
    }

    void PressKey(const std::string& name) { Current().KeyDown({KeyFromName(name)}); }

    void Answer(const std::string& answer) {
        if (answer != "yes" && answer != "no")
            throw std::runtime_error("an answer is \"yes\" or \"no\"");
        frontend_.QueueAnswer(answer == "yes" ? kAnswerYes : kAnswerNo);
    }

    void CloseCurrent() {
        if (!app_.CloseScreen(Current()))
            throw std::runtime_error("the screen refused to close: " + LastMessage());
    }

    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
};

} // namespace

void RunScreenScript(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const nlohmann::json& steps) {
    StepRunner runner(app, frontend);
    int number = 0;
    for (const auto& step : steps) {
        ++number;
        auto errorsBefore = frontend.Transcript().size();
        try {
            runner.Run(step);
        } catch (const std::exception& error) {
            throw std::runtime_error("step " + std::to_string(number) + " " + step.dump() + ": " + error.what());
        }
        // An error the desk showed instead of raising (a menu entry that failed) ends the script.
        for (auto i = errorsBefore; i < frontend.Transcript().size(); ++i)
            if (frontend.Transcript()[i].style == "E")
                throw std::runtime_error("step " + std::to_string(number) + " " + step.dump() + ": " +
                                         frontend.Transcript()[i].prompt);
    }
}

} // namespace qx::cli
