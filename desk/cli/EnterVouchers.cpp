#include "EnterVouchers.h"

#include "DocumentFile.h"
#include "FindDocument.h"

#include "desk/documents/Series.h"
#include "desk/vouchers/HostVouchers.h"
#include "desk/vouchers/VoucherScreen.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace qx::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 8> kParts{"book", "date", "open", "rows", "utrNo", "utrDate", "settles",
                                                 "action"};

struct FileRow {
    std::string account;
    std::string amount;
    std::string side; // "Dr" or "Cr"
    std::optional<std::string> narration;
};

struct FileVoucher {
    std::string open;
    bool remove = false;
    std::string book, date;
    std::optional<std::vector<FileRow>> rows;
    std::optional<std::string> utrNo, utrDate;
    std::optional<std::vector<std::pair<std::string, SavedDocument>>> settles; // series, document
};

std::string Text(const Json& voucher, const char* part) {
    return voucher.contains(part) ? TextOf(voucher.at(part), part) : std::string();
}

FileRow RowOf(const Json& row, const std::string& field) {
    FileRow checked;
    const std::string shape = "a row: write it as {\"account\": \"NAME\", \"debit\": \"100.00\"} or with "
                              "\"credit\"";
    for (const auto& [key, text] : TextsOf(row, field, field + " ", shape)) {
        if (key == "account") checked.account = text;
        else if (key == "debit" || key == "credit") {
            if (!checked.side.empty())
                throw Refusal(field, "a row is a debit or a credit, not both.");
            checked.amount = text;
            checked.side = key == "debit" ? "Dr" : "Cr";
        } else if (key == "narration") checked.narration = text;
        else throw Refusal(field + " " + key, "a row has account, debit or credit, and narration.");
    }
    if (checked.account.empty() || checked.side.empty())
        throw Refusal(field, "a row names its account and its debit or credit.");
    return checked;
}

FileVoucher CheckVoucher(const Json& voucher) {
    if (!voucher.is_object())
        throw Refusal("", Shown(voucher) + " is not a voucher: write each as {\"book\": ..., \"date\": ..., "
                                           "\"rows\": [...]}.");
    for (const auto& [part, value] : voucher.items())
        if (std::ranges::find(kParts, part) == kParts.end())
            throw Refusal(part, "a voucher has no part \"" + part +
                                    "\" (it has book, date, rows, utrNo, utrDate, settles, open and action).");
    FileVoucher checked;
    checked.open = Text(voucher, "open");
    const std::string action = Text(voucher, "action");
    if (!action.empty() && action != "save" && action != "delete")
        throw Refusal("action", "\"" + action + "\" is not an action: a voucher is saved (\"save\", the default) "
                                                "or deleted (\"delete\").");
    checked.remove = action == "delete";
    if (checked.remove && (checked.open.empty() || voucher.size() != 2))
        throw Refusal("action", "a voucher to delete is named by \"open\" alone.");
    checked.book = Text(voucher, "book");
    checked.date = Text(voucher, "date");
    if (checked.open.empty())
        for (const char* part : {"book", "date", "rows"})
            if (!voucher.contains(part))
                throw Refusal(part, std::string("missing: a new voucher has its book, its date (dd/MM/yyyy) and "
                                                "its rows."));
    if (voucher.contains("rows")) {
        const Json& rows = voucher.at("rows");
        if (!rows.is_array())
            throw Refusal("rows", Shown(rows) + " is not a list of rows: write them as [{...}, ...].");
        checked.rows.emplace();
        for (const Json& row : rows)
            checked.rows->push_back(RowOf(row, "row " + std::to_string(checked.rows->size() + 1)));
    }
    if (voucher.contains("utrNo")) checked.utrNo = Text(voucher, "utrNo");
    if (voucher.contains("utrDate")) checked.utrDate = Text(voucher, "utrDate");
    if (voucher.contains("settles")) {
        const Json& settles = voucher.at("settles");
        if (!settles.is_array())
            throw Refusal("settles", Shown(settles) + " is not a list of documents: write them as "
                                                      "[{\"series\": \"JF\", \"number\": \"3\"}, ...].");
        checked.settles.emplace();
        for (const Json& document : settles) {
            const std::string field = "settles " + std::to_string(checked.settles->size() + 1);
            if (!document.is_object() || !document.contains("series"))
                throw Refusal(field, Shown(document) + " does not name a document: write it as {\"series\": "
                                                       "\"JF\", \"number\": \"3\"} or with \"boxes\".");
            Json named = document;
            named.erase("series");
            checked.settles->emplace_back(TextOf(document.at("series"), field), SavedDocumentOf(named, field));
        }
    }
    return checked;
}

std::string Describe(int number, const Json& voucher) {
    std::string text = "voucher " + std::to_string(number);
    if (!voucher.is_object())
        return text;
    auto part = [&](const char* name) {
        return voucher.contains(name) && voucher.at(name).is_string() ? voucher.at(name).get<std::string>()
                                                                       : std::string();
    };
    if (!part("open").empty())
        return text + " (no. " + part("open") + ")";
    if (!part("book").empty() && !part("date").empty())
        return text + " (" + part("book") + " of " + part("date") + ")";
    return text;
}

// One voucher of the file on the voucher screen, typed as at the keyboard.
class VoucherTyping {
public:
    VoucherTyping(desk::DeskApp& app, desk::ScriptedFrontend& frontend, desk::VoucherScreen& screen,
                  std::string& field)
        : app_(app), frontend_(frontend), screen_(screen), field_(field) {}

    // True when saved (or deleted); a refusal throws.
    bool Enter(const FileVoucher& voucher) {
        if (!voucher.open.empty()) {
            field_ = "open";
            const auto number = voucher.open.find_first_not_of("0123456789") == std::string::npos &&
                                        !voucher.open.empty() && voucher.open.size() < 10
                                    ? std::stoi(voucher.open)
                                    : 0;
            if (number == 0)
                throw Refusal("open", "\"" + voucher.open + "\" is not a voucher's number.");
            screen_.OpenVoucher(number);
            if (voucher.remove) {
                field_ = "deleting";
                frontend_.QueueAnswerNext(kAnswerYes); // the file's answer to "Do you want to delete ...?"
                return screen_.Delete();
            }
        }
        if (!voucher.date.empty())
            TypeInto("date", screen_.Get<ui::TextBox>("txpDate"), voucher.date);
        if (!voucher.book.empty())
            ChooseBook(voucher.book);
        if (voucher.rows)
            TypeRows(*voucher.rows);
        if (voucher.utrNo)
            TypeInto("utrNo", screen_.Get<ui::TextBox>("txpUtrNo"), *voucher.utrNo);
        if (voucher.utrDate)
            TypeInto("utrDate", screen_.Get<ui::TextBox>("txpUtrDate"), *voucher.utrDate);
        if (voucher.settles)
            Settle(*voucher.settles);
        field_ = "saving";
        return screen_.Save();
    }

private:
    [[noreturn]] void Refused() const {
        const auto& transcript = frontend_.Transcript();
        throw Refusal(field_, transcript.empty() ? std::string("refused") : transcript.back().prompt);
    }

    void TypeInto(const std::string& field, ui::TextBox& box, const std::string& text) {
        field_ = field;
        if (!box.Enabled())
            throw Refusal(field, "a " + screen_.Get<ui::ComboBox>("cmbBook").Selected()->text + " has no " +
                                     box.Caption() + ".");
        screen_.Focus(box);
        box.Type(text);
        bool cancel = false;
        if (box.OnValidate)
            box.OnValidate(cancel);
        if (cancel)
            Refused();
    }

    void ChooseBook(const std::string& text) {
        field_ = "book";
        const desk::VoucherBook* book = desk::FindVoucherBook(text);
        if (!book || !screen_.Get<ui::ComboBox>("cmbBook").Choose(book->caption))
            throw Refusal("book", "there is no book \"" + text +
                                      "\": Receipt, Payment, Journal, Contra or Opening Balance.");
    }

    // An opened voucher's rows are removed first (Ctrl+Del), then the file's typed.
    void TypeRows(const std::vector<FileRow>& rows) {
        auto& grid = screen_.Get<ui::Grid>("Grid");
        screen_.Focus(grid);
        while (grid.Rows() > 2) {
            grid.SetCurrent(1, desk::VoucherScreen::kAccountCol);
            screen_.KeyDown({.key = ui::Key::Delete, .ctrl = true});
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const int row = static_cast<int>(i) + 1;
            const std::string field = "row " + std::to_string(row);
            TypeCell(field + " account", row, desk::VoucherScreen::kAccountCol, rows[i].account);
            TypeCell(field + " amount", row, desk::VoucherScreen::kAmountCol, rows[i].amount);
            TypeCell(field + " " + (rows[i].side == "Dr" ? "debit" : "credit"), row,
                     desk::VoucherScreen::kSideCol, rows[i].side);
            if (rows[i].narration)
                TypeCell(field + " narration", row, desk::VoucherScreen::kNarrationCol, *rows[i].narration);
            if (!grid.MoveTo(row + 1, desk::VoucherScreen::kAccountCol)) // Enter at the row's end
                Refused();
        }
    }

    void TypeCell(const std::string& field, int row, int col, const std::string& text) {
        auto& grid = screen_.Get<ui::Grid>("Grid");
        if (!grid.MoveTo(row, col)) // leaving the cell before, which is checked then
            Refused();
        field_ = field;
        grid.Type(text);
    }

    void Settle(const std::vector<std::pair<std::string, SavedDocument>>& settles) {
        CompanyDb& db = app_.DeskSession().Database();
        std::vector<std::int32_t> documents;
        for (std::size_t i = 0; i < settles.size(); ++i) {
            field_ = "settles " + std::to_string(i + 1);
            const std::int32_t series = desk::FindSeries(db, settles[i].first, "");
            if (series == 0)
                throw Refusal(field_, "there is no series " + settles[i].first + ".");
            try {
                documents.push_back(FindDocument(app_, desk::LoadSeries(db, series), settles[i].second));
            } catch (const Refusal& refusal) {
                throw Refusal(field_, refusal.what());
            }
        }
        if (!screen_.Get<ui::TextBox>("txpSettles").Enabled())
            throw Refusal(field_, "only a receipt or a payment settles documents.");
        screen_.SettleDocuments(documents);
    }

    desk::DeskApp& app_;
    desk::ScriptedFrontend& frontend_;
    desk::VoucherScreen& screen_;
    std::string& field_;
};

} // namespace

bool EnterVouchers(desk::DeskApp& app, desk::ScriptedFrontend& frontend, const std::filesystem::path& file,
                   std::ostream& out, std::ostream& err) {
    std::string place, field;
    std::vector<std::string> reasons;
    auto addReason = [&](const std::string& text) {
        std::string reason = field.empty() ? text : field + ": " + text;
        if (reasons.empty() || reasons.back() != reason)
            reasons.push_back(std::move(reason));
    };
    frontend.OnMessage = [&](const desk::ShownMessage& message) {
        out << place << (field.empty() ? "" : ", " + field) << ": [" << message.style << "] " << message.prompt
            << '\n';
        addReason(message.prompt);
    };
    struct StopPrinting {
        desk::ScriptedFrontend& frontend;
        ~StopPrinting() { frontend.OnMessage = nullptr; }
    } stopPrinting{frontend};

    bool allDone = true;
    ReadDocuments(
        file,
        [&](int number, const Json& json) {
            place = Describe(number, json);
            field.clear();
            reasons.clear();
            frontend.ClearTranscript();
            auto screen = std::dynamic_pointer_cast<desk::VoucherScreen>(app.Forms().CreateForm(desk::kVoucherEntryKey));
            if (!screen)
                throw std::logic_error("this QX Desk has no voucher entry");
            app.OpenScreen(screen);
            bool done = false;
            bool removing = false;
            try {
                const FileVoucher voucher = CheckVoucher(json);
                removing = voucher.remove;
                done = VoucherTyping(app, frontend, *screen, field).Enter(voucher);
            } catch (const Refusal& refusal) {
                field = refusal.Field();
                addReason(refusal.what());
            } catch (const std::exception& error) {
                addReason(error.what());
            }
            const std::int32_t saved = screen->LastSaved();
            screen->NewVoucher(); // what was refused is dropped, not saved on closing
            app.CloseScreen(*screen);
            if (done) {
                out << place << ": " << (removing ? "deleted" : "saved as no. " + std::to_string(saved))
                    << std::endl;
                return;
            }
            allDone = false;
            out.flush();
            err << place << ": " << (removing ? "not deleted" : "not saved");
            for (std::size_t i = 0; i < reasons.size(); ++i)
                err << (i ? "; " : ": ") << reasons[i];
            err << std::endl;
        },
        "vouchers");
    return allDone;
}

} // namespace qx::cli
