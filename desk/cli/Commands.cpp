#include "Commands.h"

#include "EnterDocuments.h"
#include "EnterVouchers.h"
#include "JsonFile.h"
#include "PrintCommand.h"
#include "ReportCommand.h"
#include "ScreenScript.h"

#include "desk/core/DeskApp.h"
#include "desk/core/ReportText.h"
#include "desk/core/Scripted.h"
#include "desk/db/SqliteCompanyDb.h"
#include "desk/db/SqliteStatement.h"
#include "desk/documents/BooksCheck.h"
#include "desk/documents/HostDocuments.h"
#include "desk/documents/SeriesImport.h"
#include "desk/ledgers/LedgerScreens.h"
#include "desk/masters/HostMasters.h"
#include "desk/vouchers/HostVouchers.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace qx::cli {
namespace {

constexpr const char* kUsage = R"(qx: QX Desk from the command line

  qx company create PATH [--name NAME] [--firm-properties TEXT] [--option N=VALUE]...
        create a company file; firm properties such as "*KivraMenu*" turn on a module's
        menu, numbered options such as 676=Yes (several markets) set the firm's options
  qx demo PATH
        create the demo company: a mandi commission agent's firm with its markets
  qx series import PATH FILE
        set up the document series described in a JSON file (columns, boxes, charges)
  qx enter PATH FILE [--answers yes|no|SCRIPT]
        enter the documents of a JSON file through the document engine, as at the keyboard,
        new ones or saved ones it opens (by number, or by its boxes such as the form number)
        to change, cancel or delete; questions are answered yes or no, or in turn from SCRIPT
        (a JSON list of "yes"/"no"); each document is done or refused on its own; every
        message is printed with the document and field it is about; the exit status is 1
        when a document was refused
  qx voucher PATH FILE
        enter the vouchers of a JSON file (receipts, payments, journal and contra vouchers,
        opening balances) through the voucher screen, as at the keyboard, new ones or saved
        ones it opens by number to change or delete; a payment may carry its UTR and name the
        documents it settles; a voucher that does not balance is refused and nothing of it is
        written; the exit status is 1 when a voucher was refused
  qx check PATH
        prove the books of a company (after a power cut, say): every voucher balances, every
        document's totals are its lines and charges, nothing points at what is gone, and each
        module's own rules hold; one line per fault, and the exit status is 1 when there is one
  qx report PATH NAME [--from dd/MM/yyyy] [--to dd/MM/yyyy] [--market NAME]
            [--option NAME=VALUE]... [--ARGUMENT VALUE]... [--format text|csv|xlsx|pdf] [--out FILE]
        make a report by its NAME (ledger, day-book, trial-balance, outstanding, or a module's;
        an unknown NAME lists them) through the report's own screen: the period it asks is
        typed from --from and --to (--to is the --from when not given), the day it asks (as
        on) from --to or --from; the market it asks is chosen by --market (every market when
        "all" or none), questions are answered yes; --option sets a box, a list or a check box
        (yes/no) of the report by its name; --ARGUMENT VALUE gives the report an argument of
        its own (the party of a ledger: --party NAME), which an unknown argument lists; the
        report is written to FILE, or as text or CSV on the standard output; every message of
        the report is printed, and an error it shows ends the command with exit status 1
  qx print PATH SERIES NUMBER [--format text|csv|xlsx|pdf] [--out FILE]
        a saved document's paper as F9 prints it (a J-Form as the farmer's copy, an I-Form
        as the buyer's bill), by its series' code and its number in the series, written to
        FILE (a PDF to send to the farmer's phone), or as text or CSV on the standard output
  qx sql PATH "STATEMENT" [--write]
        run one SQL statement on a company as the modules write them (SELECT FIRST n,
        decimal columns, date literals); rows are printed as CSV with a header line as they
        are read; a statement that would change the company (UPDATE, DELETE, DROP, a PRAGMA
        that sets...) is refused unless --write is given
  qx --help
        this text
)";

// A wrong command line: exit status 2 with the usage.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::filesystem::path DataFolder() {
    if (const char* folder = std::getenv("QX_DATA_DIR"); folder && *folder) return folder;
    return QX_DATA_DIR;
}

struct CompanySettings {
    std::string name;
    std::string firmProperties;
    std::vector<std::pair<std::string, std::string>> settings; // further firm settings
    std::vector<std::pair<int, std::string>> options;
};

void CreateCompany(const std::filesystem::path& path, const CompanySettings& settings) {
    desk::Session session;
    session.Create(path, settings.name.empty() ? path.stem().string() : settings.name);
    if (!settings.firmProperties.empty()) session.SetFirmSetting("FirmProperties", settings.firmProperties);
    for (const auto& [name, value] : settings.settings) session.SetFirmSetting(name, value);
    for (const auto& [number, value] : settings.options) session.SetOption(number, value);
}

std::pair<int, std::string> ParseOption(const std::string& text) {
    auto equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw UsageError("--option takes NUMBER=VALUE, not \"" + text + "\"");
    try {
        std::size_t used = 0;
        int number = std::stoi(text.substr(0, equals), &used);
        if (used != equals) throw std::invalid_argument(text);
        return {number, text.substr(equals + 1)};
    } catch (const std::logic_error&) {
        throw UsageError("--option takes NUMBER=VALUE, not \"" + text + "\"");
    }
}

// The desk as `qx` runs it: the host's screens and the modules of the modules folder, a
// company open, questions answered from a script.
struct Desk {
    explicit Desk(const std::filesystem::path& company) {
        desk::RegisterHostMasters(app);
        desk::RegisterHostDocuments(app);
        desk::RegisterHostVouchers(app);
        desk::RegisterHostLedgers(app);
        app.LoadModules(desk::DefaultModulesFolder());
        app.OpenCompany(company);
    }
    ~Desk() { app.Shutdown(); }

    desk::ScriptedFrontend frontend;
    desk::DeskApp app{frontend};
};

int CompanyCreate(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() < 3) throw UsageError("company create needs a PATH");
    std::filesystem::path path = args[2];
    CompanySettings settings;
    for (std::size_t i = 3; i < args.size(); ++i) {
        auto value = [&]() -> const std::string& {
            if (i + 1 >= args.size()) throw UsageError(args[i] + " needs a value");
            return args[++i];
        };
        if (args[i] == "--name") settings.name = value();
        else if (args[i] == "--firm-properties") settings.firmProperties = value();
        else if (args[i] == "--option") settings.options.push_back(ParseOption(value()));
        else throw UsageError("unknown option " + args[i]);
    }
    CreateCompany(path, settings);
    out << "Company created: " << path.string() << '\n';
    return 0;
}

int Demo(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() != 2) throw UsageError("demo needs a PATH");
    std::filesystem::path path = args[1];
    const auto folder = DataFolder() / "demo";
    const auto demo = ReadJson(folder / "demo.json");

    CompanySettings settings;
    const auto& company = demo.at("company");
    settings.name = company.value("name", "");
    settings.firmProperties = company.value("firmProperties", "");
    const auto firmSettings = company.value("settings", nlohmann::ordered_json::object());
    for (const auto& [name, value] : firmSettings.items())
        settings.settings.emplace_back(name, value.get<std::string>());
    const auto options = company.value("options", nlohmann::ordered_json::object());
    for (const auto& [number, value] : options.items())
        settings.options.emplace_back(std::stoi(number), value.get<std::string>());
    CreateCompany(path, settings);

    try {
        {
            Desk desk(path);
            RunScreenScript(desk.app, desk.frontend, demo.at("steps"));
        }
        if (demo.contains("series")) {
            desk::Session session;
            session.Open(path);
            desk::ImportSeries(session.Database(), ReadJson(folder / demo.at("series").get<std::string>()));
        }
        if (demo.contains("documents")) {
            std::ostringstream transcript, refusals;
            Desk desk(path);
            desk.frontend.SetDefaultAnswer(kAnswerYes);
            if (!EnterDocuments(desk.app, desk.frontend, folder / demo.at("documents").get<std::string>(), transcript,
                                refusals))
                throw std::runtime_error("the demo's documents were refused:\n" + refusals.str());
        }
        // The cash and bank accounts, then opening balances, receipts and payments, after the
        // forms they settle.
        if (std::filesystem::exists(folder / "books.json")) {
            const auto books = ReadJson(folder / "books.json");
            std::ostringstream transcript, refusals;
            Desk desk(path);
            RunScreenScript(desk.app, desk.frontend, books.at("steps"));
            if (!EnterVouchers(desk.app, desk.frontend, folder / books.at("vouchers").get<std::string>(), transcript,
                               refusals))
                throw std::runtime_error("the demo's vouchers were refused:\n" + refusals.str());
        }
    } catch (...) {
        // A half-made demo company would only mislead.
        std::error_code ec;
        for (const char* suffix : {"", "-wal", "-shm"})
            std::filesystem::remove(path.string() + suffix, ec);
        throw;
    }
    out << "Demo company written to " << path.string() << '\n';
    return 0;
}

int SeriesImport(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() != 4) throw UsageError("series import needs a PATH and a FILE");
    desk::Session session;
    session.Open(args[2]);
    for (const auto& code : desk::ImportSeries(session.Database(), ReadJson(args[3])))
        out << "Series " << code << " set up\n";
    return 0;
}

int Enter(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 3 && !(args.size() == 5 && args[3] == "--answers"))
        throw UsageError("enter needs a PATH and a FILE, and may take --answers yes|no|SCRIPT");
    Desk desk(args[1]);
    if (args.size() == 5) {
        if (args[4] == "yes") desk.frontend.SetDefaultAnswer(kAnswerYes);
        else if (args[4] == "no") desk.frontend.SetDefaultAnswer(kAnswerNo);
        else {
            const auto answers = ReadJson(args[4]);
            if (!answers.is_array())
                throw std::runtime_error(args[4] + " is not a list of answers: write it as [\"yes\", \"no\", ...].");
            for (const auto& answer : answers) {
                if (answer != "yes" && answer != "no")
                    throw std::runtime_error(args[4] + ": an answer is \"yes\" or \"no\", not " + answer.dump() + ".");
                desk.frontend.QueueAnswer(answer == "yes" ? kAnswerYes : kAnswerNo);
            }
        }
    }
    return EnterDocuments(desk.app, desk.frontend, args[2], out, err) ? 0 : 1;
}

// --format: only text and CSV go to the standard output; the others need --out FILE.
desk::ReportFormat OutputFormat(const std::string& format, bool toFile) {
    const auto named = desk::ReportFormatNamed(format);
    if (!named) throw UsageError("--format is text, csv, xlsx or pdf, not \"" + format + "\"");
    if (!toFile && *named != desk::ReportFormat::Text && *named != desk::ReportFormat::Csv)
        throw UsageError("--format " + format + " needs --out FILE");
    return *named;
}

int Report(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    std::vector<std::string> operands;
    ReportRequest request;
    std::string format = "text";
    for (std::size_t i = 1; i < args.size(); ++i) {
        auto value = [&]() -> const std::string& {
            if (i + 1 >= args.size()) throw UsageError(args[i] + " needs a value");
            return args[++i];
        };
        if (args[i] == "--from") request.from = value();
        else if (args[i] == "--to") request.to = value();
        else if (args[i] == "--market") request.market = value();
        else if (args[i] == "--format") format = value();
        else if (args[i] == "--out") request.out = value();
        else if (args[i] == "--option") {
            const std::string& option = value();
            const auto equals = option.find('=');
            if (equals == std::string::npos || equals == 0)
                throw UsageError("--option takes NAME=VALUE, not \"" + option + "\"");
            request.options.emplace_back(option.substr(0, equals), option.substr(equals + 1));
        } else if (args[i].starts_with("--") && args[i].size() > 2) {
            // The report's own argument (--party NAME), which the report checks.
            const std::string name = args[i].substr(2);
            request.arguments.emplace_back(name, value());
        } else operands.push_back(args[i]);
    }
    if (operands.size() != 2) throw UsageError("report needs a PATH and a report NAME");
    request.name = operands[1];
    request.format = OutputFormat(format, request.out.has_value());
    // A day that is no day is said before the company is opened.
    for (const auto* day : {&request.from, &request.to})
        if (*day && !Date::ParseDisplay(**day))
            throw std::runtime_error((day == &request.from ? "--from: " : "--to: ") + Date::DisplayRefusal(**day));
    Desk desk(operands[0]);
    RunReport(desk.app, desk.frontend, request, out, err);
    return 0;
}

int Print(const std::vector<std::string>& args, std::ostream& out) {
    std::vector<std::string> operands;
    PrintRequest request;
    std::string format = "text";
    for (std::size_t i = 1; i < args.size(); ++i) {
        auto value = [&]() -> const std::string& {
            if (i + 1 >= args.size()) throw UsageError(args[i] + " needs a value");
            return args[++i];
        };
        if (args[i] == "--format") format = value();
        else if (args[i] == "--out") request.out = value();
        else if (args[i].starts_with("--")) throw UsageError("unknown option " + args[i]);
        else operands.push_back(args[i]);
    }
    if (operands.size() != 3) throw UsageError("print needs a PATH, a SERIES and a document NUMBER");
    request.series = operands[1];
    request.number = operands[2];
    request.format = OutputFormat(format, request.out.has_value());
    Desk desk(operands[0]);
    PrintDocument(desk.app, desk.frontend, request, out);
    if (request.out) out << "Written to " << request.out->string() << '\n';
    return 0;
}

int Voucher(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.size() != 3) throw UsageError("voucher needs a PATH and a FILE");
    Desk desk(args[1]);
    return EnterVouchers(desk.app, desk.frontend, args[2], out, err) ? 0 : 1;
}

// One line per fault, then the notes; the exit status tells a script whether the books hold.
int Check(const std::vector<std::string>& args, std::ostream& out) {
    if (args.size() != 2) throw UsageError("check needs a PATH");
    Desk desk(args[1]);
    const desk::BooksReport report = desk::CheckBooks(desk.app);
    for (const std::string& fault : report.faults) out << fault << '\n';
    for (const std::string& note : report.notes) out << "Note: " << note << '\n';
    if (report.faults.empty()) out << "The books of " << args[1] << " are in order.\n";
    return report.faults.empty() ? 0 : 1;
}

// One statement, its rows written out as they are read. Reading is the default: a statement
// that would change the company (as SQLite judges it) runs only with --write.
int Sql(const std::vector<std::string>& args, std::ostream& out) {
    std::vector<std::string> operands;
    bool write = false;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--write") write = true;
        else operands.push_back(args[i]);
    }
    if (operands.size() != 2) throw UsageError("sql needs a PATH and one STATEMENT, and may take --write");
    auto db = db::SqliteCompanyDb::Open(operands[0]);
    auto query = db->Query(operands[1]);
    if (!write && !query->ReadOnly())
        throw std::runtime_error("This statement would change the company; qx sql only reads unless it is given "
                                 "--write.");
    const int fields = query->ColumnCount();
    auto writeField = [&](int i, const std::string& text) { out << (i ? "," : "") << desk::CsvField(text); };
    for (int i = 0; i < fields; ++i) writeField(i, query->ColumnName(i));
    if (fields > 0) out << '\n';
    while (query->Step()) {
        for (int i = 0; i < fields; ++i) writeField(i, query->Column(i).AsText());
        if (fields > 0) out << '\n';
    }
    return 0;
}

} // namespace

int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    try {
        if (args.empty() || args[0] == "--help" || args[0] == "-h" || args[0] == "help") {
            (args.empty() ? err : out) << kUsage;
            return args.empty() ? 2 : 0;
        }
        if (args[0] == "company" && args.size() >= 2 && args[1] == "create") return CompanyCreate(args, out);
        if (args[0] == "demo") return Demo(args, out);
        if (args[0] == "sql") return Sql(args, out);
        if (args[0] == "series" && args.size() >= 2 && args[1] == "import") return SeriesImport(args, out);
        if (args[0] == "enter") return Enter(args, out, err);
        if (args[0] == "voucher") return Voucher(args, out, err);
        if (args[0] == "check") return Check(args, out);
        if (args[0] == "report") return Report(args, out, err);
        if (args[0] == "print") return Print(args, out);
        throw UsageError("unknown command \"" + args[0] + "\"");
    } catch (const UsageError& error) {
        err << "qx: " << error.what() << "\n\n" << kUsage;
        return 2;
    } catch (const std::exception& error) {
        err << "qx: " << error.what() << '\n';
        return 1;
    }
}

} // namespace qx::cli
