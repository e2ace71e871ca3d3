#include "ReportCommand.h"

#include "ScreenScript.h"

#include "desk/core/PeriodDialog.h"
#include "desk/core/ReportText.h"
#include "desk/core/SelectDialog.h"
#include "desk/ledgers/LedgerScreens.h"
#include "host/ReportSource.h"
#include "host/Text.h"

#include <algorithm>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace qx::cli {
namespace {

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// The days the command line gives a report that asks a period (From and To, To being From
// when not given) or one day (as on, from --to or else --from); the refusal when they do not fit.
struct GivenDays {
    std::optional<std::string> from, to;
    std::string refusal;
};
GivenDays DaysGiven(const ReportRequest& request, bool oneDay) {
    if (!oneDay) {
        if (request.to && !request.from) return {{}, {}, "The report " + request.name + " asks for a period: --to needs --from."};
        if (!request.from) return {};
        return {request.from, request.to.value_or(*request.from), {}};
    }
    if (request.from && request.to && *request.from != *request.to)
        return {{}, {}, "The report " + request.name + " asks for one day: give it as --to."};
    const auto& day = request.to ? request.to : request.from;
    return {day, day, {}};
}

// What the report asks on opening, answered from the command line: the period or the day, and
// the list it chooses from (the market). Whatever else opens is closed, as Esc closes it.
class OpeningAnswers {
public:
    explicit OpeningAnswers(const ReportRequest& request) : request_(request) {}

    void Answer(ui::Screen& dialog) {
        if (dynamic_cast<desk::PeriodDialog*>(&dialog)) AnswerPeriod(dialog);
        else if (dialog.Name() == desk::kSelectListScreen) AnswerList(dialog);
    }

    bool PeriodAsked() const { return periodAsked_; }

    // What the command line gives that the report cannot take.
    void CheckRefused() const {
        if (!refusal_.empty()) throw std::runtime_error(refusal_);
    }

    // A --from, --to or --market the report never asked for would be silently ignored: refused,
    // unless the report takes its period as arguments.
    void CheckAllAnswered(bool periodTaken) const {
        if ((request_.from || request_.to) && !periodAsked_ && !periodTaken)
            throw std::runtime_error("The report " + request_.name + " asks for no period: --from and --to cannot "
                                     "be given.");
        if (request_.market && !IsAll(*request_.market) && !listAsked_)
            throw std::runtime_error("The report " + request_.name + " asks for no market in this company: --market "
                                     "cannot be given.");
        CheckRefused();
    }

private:
    static bool IsAll(const std::string& market) { return EqualsNoCase(market, "all"); }

    // The days typed as the user types them; a day the dialog refuses leaves it open, and so
    // cancelled, with the dialog's own message shown. A date dialog (a balance as on a day)
    // takes one day.
    void AnswerPeriod(ui::Screen& dialog) {
        periodAsked_ = true;
        auto* to = dynamic_cast<ui::TextBox*>(dialog.Find(desk::kPeriodToBox));
        const GivenDays days = DaysGiven(request_, !to);
        if (!days.refusal.empty()) {
            refusal_ = days.refusal;
            return;
        }
        if (days.from) dialog.Get<ui::TextBox>(desk::kPeriodFromBox).Type(*days.from);
        if (to && days.to) to->Type(*days.to);
        dialog.Get<ui::StdButtons>("OKCancel").Click(0);
    }

    // None, or "all": the list is closed, which counts every market.
    void AnswerList(ui::Screen& list) {
        listAsked_ = true;
        if (!request_.market || IsAll(*request_.market)) return;
        if (desk::ChooseInList(list, *request_.market)) return;
        const auto& grid = list.Get<ui::Grid>(desk::kSelectListGrid);
        std::string entries;
        for (int row = 1; row < grid.Rows(); ++row)
            entries += (entries.empty() ? "" : ", ") + Quoted(grid.TextMatrix(row, 0));
        refusal_ = "There is no market " + Quoted(*request_.market) + " to choose: the list holds " + entries + ".";
    }

    const ReportRequest& request_;
    bool periodAsked_ = false;
    bool listAsked_ = false;
    std::string refusal_;
};

// --option NAME=VALUE: the control of that name set as the user sets it, which builds the
// report again.
void SetOption(ui::Screen& screen, desk::ScriptedFrontend& frontend, const std::string& name,
               const std::string& value) {
    ui::Control* control = screen.Find(name);
    try {
        if (auto* box = dynamic_cast<ui::TextBox*>(control)) return TypeAndLeave(screen, *box, value, frontend);
        if (auto* list = dynamic_cast<ui::ComboBox*>(control)) return ChooseEntry(*list, value);
        if (auto* check = dynamic_cast<ui::CheckBox*>(control)) {
            const bool yes = EqualsNoCase(value, "yes") || EqualsNoCase(value, "true") || value == "1";
            if (!yes && !EqualsNoCase(value, "no") && !EqualsNoCase(value, "false") && value != "0")
                throw std::runtime_error("a check box is ticked with yes or cleared with no, not " + Quoted(value));
            return SetCheck(*check, yes);
        }
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("--option " + name + ": " + error.what() + ".");
    }
    std::string names;
    for (const auto& each : screen.Controls())
        if (dynamic_cast<ui::TextBox*>(each.get()) || dynamic_cast<ui::ComboBox*>(each.get()) ||
            dynamic_cast<ui::CheckBox*>(each.get()))
            names += (names.empty() ? "" : ", ") + each->Name();
    throw std::runtime_error("The report has no option " + Quoted(name) + (names.empty() ? ": it has none." : ": its options are " + names + "."));
}

} // namespace

std::vector<std::pair<std::string, std::string>> ModuleReports(desk::DeskApp& app) {
    std::vector<std::pair<std::string, std::string>> reports;
    for (const desk::LoadedModule& loaded : app.Modules()) {
        std::string list;
        try {
            list = loaded.module->Obj().Invoke("Reports", {}).AsText();
        } catch (const std::invalid_argument&) {
            continue; // a module without reports
        }
        std::istringstream lines(list);
        for (std::string line; std::getline(lines, line);)
            if (const auto equals = line.find('='); equals != std::string::npos)
                reports.emplace_back(line.substr(0, equals), line.substr(equals + 1));
    }
    return reports;
}

void RunReport(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const ReportRequest& request,
               std::ostream& out, std::ostream& err) {
    auto reports = desk::HostReports();
    for (auto& report : ModuleReports(app)) reports.push_back(std::move(report));
    std::string key, names;
    for (const auto& [name, menuKey] : reports) {
        const auto plus = name.find('+');
        if (plus != std::string::npos) {
            // The variant of the report made when its argument is given.
            const bool given = std::any_of(request.arguments.begin(), request.arguments.end(),
                                           [&](const auto& argument) { return argument.first == name.substr(plus + 1); });
            if (name.substr(0, plus) == request.name && given) key = menuKey;
            continue;
        }
        if (name == request.name && key.empty()) key = menuKey;
        names += (names.empty() ? "" : ", ") + name;
    }
    if (key.empty())
        throw std::runtime_error("There is no report " + Quoted(request.name) +
                                 (names.empty() ? ": no module loaded has reports." : ": the reports are " + names + "."));

    // Every message is the user's to read; an error is the screen refusing the report.
    std::string error;
    frontend.SetDefaultAnswer(kAnswerYes); // the questions of a period that is no full week
    frontend.OnMessage = [&](const desk::ShownMessage& message) {
        err << request.name << ": [" << message.style << "] " << message.prompt << '\n';
        if (message.style == "E" && error.empty()) error = message.prompt;
    };
    struct StopPrinting {
        desk::ScriptedFrontend& frontend;
        ~StopPrinting() { frontend.OnMessage = nullptr; }
    } stopPrinting{frontend};
    auto refuseOnError = [&] {
        if (!error.empty()) throw std::runtime_error("The report " + request.name + " was not made: " + error);
    };

    OpeningAnswers answers(request);
    for (int dialog = 0; dialog < 4; ++dialog) // more than any report asks on opening
        frontend.QueueModal([&answers](ui::Screen& screen) { answers.Answer(screen); });
    const auto before = app.OpenScreens().size();
    app.ClickMenu(key);
    frontend.DropModals();
    refuseOnError();
    answers.CheckRefused();
    if (app.OpenScreens().size() <= before)
        throw std::runtime_error("The report " + request.name + " opened no screen.");
    ui::Screen& screen = *app.OpenScreens().back();
    auto* source = dynamic_cast<ReportSource*>(&screen);
    if (!source) throw std::runtime_error("The screen of the report " + request.name + " does not say its report.");
    const auto takes = source->ArgumentNames();
    auto taken = [&takes](const std::string& name) { return std::find(takes.begin(), takes.end(), name) != takes.end(); };
    answers.CheckAllAnswered(taken("from") || taken("to"));

    // The report's own arguments, and the days of a report that takes them as arguments rather
    // than asking on opening: a period when it takes both --from and --to, else one day.
    ReportArguments arguments = request.arguments;
    if ((request.from || request.to) && !answers.PeriodAsked()) {
        const GivenDays days = DaysGiven(request, !(taken("from") && taken("to")));
        if (!days.refusal.empty()) throw std::runtime_error(days.refusal);
        if (taken("from")) arguments.emplace_back("from", *days.from);
        if (taken("to")) arguments.emplace_back("to", *days.to);
    }
    for (const auto& [name, value] : arguments)
        if (!taken(name)) {
            std::string list;
            for (const std::string& each : takes) list += (list.empty() ? "--" : ", --") + each;
            throw std::runtime_error("The report " + request.name + " takes no --" + name +
                                     (list.empty() ? "." : ": it takes " + list + "."));
        }
    // Taken even when none is given, so that a report of one party can ask for it; a refusal the
    // screen shows is the report not made.
    if (!takes.empty()) {
        try {
            source->TakeArguments(arguments);
        } catch (const std::runtime_error&) {
            refuseOnError();
            throw;
        }
        refuseOnError();
    }

    for (const auto& [name, value] : request.options) {
        SetOption(screen, frontend, name, value);
        refuseOnError();
    }
    const PrintJob job = app.Named(source->Report());
    if (request.out) desk::SaveReport(job, request.format, *request.out);
    else out << (request.format == desk::ReportFormat::Csv ? desk::RenderCsv(job) : desk::RenderText(job));
}

} // namespace qx::cli
