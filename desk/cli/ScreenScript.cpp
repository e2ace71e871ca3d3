#include "ScreenScript.h"

#include <stdexcept>

namespace qx::cli {
namespace {

ui::Key KeyFromName(const std::string& name) {
    for (int k = static_cast<int>(ui::Key::Enter); k <= static_cast<int>(ui::Key::F12); ++k)
        if (ui::KeyName(static_cast<ui::Key>(k)) == name) return static_cast<ui::Key>(k);
    throw std::runtime_error("unknown key \"" + name + "\"");
}

// The text of the last message shown, to say why an action was refused.
std::string LastMessage(const desk::ScriptedFrontend& frontend) {
    const auto& transcript = frontend.Transcript();
    return transcript.empty() ? std::string("refused") : transcript.back().prompt;
}

int ColumnOfCaption(const ui::Grid& grid, const std::string& caption) {
    for (int col = 0; col < grid.Cols(); ++col)
        if (grid.TextMatrix(0, col) == caption) return col;
    throw std::runtime_error("the grid " + grid.Name() + " has no column \"" + caption + "\"");
}

class StepRunner {
public:
    // screen: the dialog the steps are for; null for the screen opened last.
    StepRunner(desk::DeskApp& app, desk::ScriptedFrontend& frontend, ui::Screen* screen)
        : app_(app), frontend_(frontend), screen_(screen) {}

    void RunAll(const nlohmann::json& steps) {
        int number = 0;
        for (const auto& step : steps) {
            ++number;
            auto messagesBefore = frontend_.Transcript().size();
            try {
                Run(step);
                if (!step.contains("modal") && frontend_.ModalPending())
                    throw std::runtime_error("no dialog opened for the steps of the step before");
            } catch (const nlohmann::json::exception&) {
                throw std::runtime_error("step " + std::to_string(number) + " " + step.dump() +
                                         ": a value of the wrong kind: texts go in quotes, \"value\" is "
                                         "true or false, \"index\" a number, \"columns\" and \"rows\" lists");
            } catch (const std::exception& error) {
                throw std::runtime_error("step " + std::to_string(number) + " " + step.dump() + ": " +
                                         error.what());
            }
            // An error the desk showed instead of raising (a menu entry that failed) ends the script.
            for (auto i = messagesBefore; i < frontend_.Transcript().size(); ++i)
                if (frontend_.Transcript()[i].style == "E")
                    throw std::runtime_error("step " + std::to_string(number) + " " + step.dump() +
                                             ": " + frontend_.Transcript()[i].prompt);
        }
    }

private:
    void Run(const nlohmann::json& step) {
        if (step.contains("menu")) OpenMenu(step.at("menu").get<std::string>());
        else if (step.contains("grid")) TypeRows(step);
        else if (step.contains("select")) SelectRow(step);
        else if (step.contains("type")) TypeInto(step.at("type").get<std::string>(), step.at("text").get<std::string>());
        else if (step.contains("choose")) Choose(step.at("choose").get<std::string>(), step.at("text").get<std::string>());
        else if (step.contains("check")) Check(step.at("check").get<std::string>(), step.at("value").get<bool>());
        else if (step.contains("click")) Click(step.at("click").get<std::string>(), step.value("index", 0));
        else if (step.contains("modal")) QueueModal(step.at("modal"));
        else if (step.contains("key")) Current().KeyDown({KeyFromName(step.at("key").get<std::string>())});
        else if (step.contains("answer")) Answer(step.at("answer").get<std::string>());
        else if (step.contains("close")) CloseCurrent();
        else throw std::runtime_error("not a step this script knows");
    }

    std::string LastMessage() const { return cli::LastMessage(frontend_); }

    ui::Screen& Current() {
        if (screen_) return *screen_;
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
        std::vector<int> columns;
        for (const auto& caption : step.at("columns")) columns.push_back(ColumnOfCaption(grid, caption));
        for (const auto& cells : step.at("rows")) {
            if (cells.size() > columns.size()) throw std::runtime_error("a row has more cells than columns");
            int row = grid.Rows() - 1; // the empty row at the end
            for (std::size_t i = 0; i < cells.size(); ++i) {
                if (!grid.MoveTo(row, columns[i]))
                    throw std::runtime_error("row " + std::to_string(row) + " was refused: " + LastMessage());
                grid.Type(cells[i].get<std::string>());
            }
            // Leaving the row, as the user does when he goes on to the next one, saves it.
            if (!grid.MoveTo(grid.Rows() - 1, columns.front()))
                throw std::runtime_error("row " + std::to_string(row) + " was refused: " + LastMessage());
        }
    }

    void SelectRow(const nlohmann::json& step) {
        auto& grid = Current().Get<ui::Grid>(step.at("select").get<std::string>());
        int col = ColumnOfCaption(grid, step.at("column").get<std::string>());
        auto text = step.at("text").get<std::string>();
        for (int row = 1; row < grid.Rows(); ++row)
            if (grid.TextMatrix(row, col) == text) {
                if (!grid.MoveTo(row, col)) throw std::runtime_error("refused: " + LastMessage());
                return;
            }
        throw std::runtime_error("no row reads \"" + text + "\"");
    }

    void TypeInto(const std::string& name, const std::string& text) {
        auto& screen = Current();
        TypeAndLeave(screen, screen.Get<ui::TextBox>(name), text, frontend_);
    }

    void Choose(const std::string& name, const std::string& text) { ChooseEntry(Current().Get<ui::ComboBox>(name), text); }

    void Check(const std::string& name, bool value) { SetCheck(Current().Get<ui::CheckBox>(name), value); }

    void Click(const std::string& name, int index) {
        auto* control = Current().Find(name);
        if (auto* button = dynamic_cast<ui::Button*>(control)) button->Click();
        else if (auto* pair = dynamic_cast<ui::StdButtons*>(control)) pair->Click(index);
        else throw std::runtime_error("no button " + name);
    }

public:
    void QueueModal(const nlohmann::json& steps) {
        // The runner may be gone when the dialog opens: the handler keeps what it needs.
        frontend_.QueueModal([&app = app_, &frontend = frontend_, steps](ui::Screen& dialog) {
            StepRunner(app, frontend, &dialog).RunAll(steps);
        });
    }

private:
    void Answer(const std::string& answer) {
        if (answer != "yes" && answer != "no") throw std::runtime_error("an answer is \"yes\" or \"no\"");
        frontend_.QueueAnswer(answer == "yes" ? kAnswerYes : kAnswerNo);
    }

    void CloseCurrent() {
        if (screen_) {
            screen_->Close(false);
            return;
        }
        if (!app_.CloseScreen(Current()))
            throw std::runtime_error("the screen refused to close: " + LastMessage());
    }

    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
    ui::Screen* screen_;
};

} // namespace

void TypeAndLeave(ui::Screen& screen, ui::TextBox& box, const std::string& text, desk::ScriptedFrontend& frontend) {
    screen.Focus(box);
    if (!box.Type(text)) throw std::runtime_error("the box does not take \"" + text + "\"");
    bool cancel = false;
    if (box.OnValidate) box.OnValidate(cancel);
    if (cancel) throw std::runtime_error("refused: " + LastMessage(frontend));
}

void ChooseEntry(ui::ComboBox& list, const std::string& text) {
    if (list.Choose(text)) return;
    std::string entries;
    for (const auto& entry : list.Items()) entries += (entries.empty() ? "\"" : ", \"") + entry.text + "\"";
    throw std::runtime_error("no entry \"" + text + "\"" + (entries.empty() ? "" : " (the entries: " + entries + ")"));
}

void SetCheck(ui::CheckBox& box, bool value) {
    if (box.Checked() != value) box.Click();
}

void RunScreenScript(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const nlohmann::json& steps) {
    StepRunner(app, frontend, nullptr).RunAll(steps);
}

void QueueDialogSteps(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const nlohmann::json& steps) {
    StepRunner(app, frontend, nullptr).QueueModal(steps);
}

} // namespace qx::cli
