#include "VoucherScreen.h"

#include "desk/core/PartyPicker.h"
#include "desk/core/SelectItemScreen.h"
#include "desk/documents/DocumentContent.h"
#include "desk/documents/ScreenTexts.h"
#include "host/Text.h"

#include <ctime>

namespace qx::desk {
namespace {

Date Today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return Date::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

// "Dr" or "Cr" from what is typed ("d", "CR"); empty for anything else.
std::string SideOf(std::string_view typed) {
    const std::string side = UpperCase(Trim(typed));
    if (side == "D" || side == "DR")
        return "Dr";
    if (side == "C" || side == "CR")
        return "Cr";
    return {};
}

// Why a typed amount is no voucher amount; empty when it is one.
std::string AmountRefusal(const std::string& text) {
    const TypedAmount typed = ReadTypedAmount(text);
    if (!typed.amount)
        return typed.refusal;
    if (*typed.amount <= Amount())
        return "An amount is more than 0: its side is Dr or Cr in the next column.";
    if (typed.amount->Round(2) != *typed.amount)
        return "Amounts are in rupees and paise: at most two decimals.";
    return {};
}

// A day box left: shown as dd/MM/yyyy, or refused with why; an empty one only where allowed.
void CheckDayBox(DeskApp& app, ui::TextBox& box, bool emptyAllowed, bool& cancel) {
    const std::string typed = Trim(box.Text());
    if (typed.empty() && emptyAllowed)
        return;
    const auto date = Date::ParseDisplay(typed);
    if (!date) {
        Warn(app, Date::DisplayRefusal(typed));
        cancel = true;
        return;
    }
    box.SetText(date->ToDisplay());
}

std::string SettledNames(CompanyDb& db, const std::vector<std::int32_t>& documents) {
    std::string names;
    for (std::int32_t document : documents)
        names += (names.empty() ? "" : ", ") + SettledName(db, document);
    return names;
}

} // namespace

VoucherScreen::VoucherScreen(DeskApp& app)
    : ui::Screen(kVoucherScreen, "Vouchers"), app_(app), date_(Add<ui::TextBox>("txpDate", "Date")),
      book_(Add<ui::ComboBox>("cmbBook", "Book")), number_(Add<ui::TextBox>("txpNumber", "No.")),
      grid_(Add<ui::Grid>("Grid")), utrNo_(Add<ui::TextBox>("txpUtrNo", "UTR No.")),
      utrDate_(Add<ui::TextBox>("txpUtrDate", "UTR Date")),
      settles_(Add<ui::TextBox>("txpSettles", "Settles")),
      debits_(Add<ui::TextBox>("txtDebits", "Debits")), credits_(Add<ui::TextBox>("txtCredits", "Credits")),
      difference_(Add<ui::Label>("lblDifference")), bar_(Add<ui::ButtonBar>("BtnBar1")) {
    Icon = "Ledger";
    date_.DateEntry = true;
    date_.OnValidate = [this](bool& cancel) { CheckDayBox(app_, date_, false, cancel); };
    for (const VoucherBook& book : kVoucherBooks)
        book_.AddItem(std::string(book.caption));
    book_.SetSelectedIndex(1); // payments are what a clerk types most
    book_.OnChange = [this] { BookChosen(); };
    number_.SetEnabled(false);
    number_.SetWidth(900);

    grid_.Editable = true;
    grid_.GrowsRows = true;
    grid_.AddColumn("Sr.", 500, Align::Right);
    grid_.AddColumn("Account", 3800);
    grid_.AddColumn("Balance", 1800, Align::Right);
    grid_.AddColumn("Amount", 1600, Align::Right, "n2");
    grid_.AddColumn("Dr/Cr", 700, Align::Centre);
    grid_.AddColumn("Narration", 4200);
    grid_.AddColumn("AccountID", 0);
    for (int col : {0, kBalanceCol, kAccountIdCol})
        grid_.Column(col).editable = false;
    grid_.OnCellBeforeLostFocus = [this](int row, int col, const std::string& typed, bool& cancel) {
        CheckCell(row, col, typed, cancel);
    };
    grid_.OnCellLostFocus = [this](int row, int col) { app_.Guard([&] { TakeCell(row, col); }); };
    grid_.OnRowAdded = [this](int row) { app_.Guard([&] { ProposeRow(row); }); };

    utrNo_.MaxLength = 50;
    utrNo_.OnValidate = [this](bool&) {
        // A transfer is mostly made the day it is paid.
        if (!Trim(utrNo_.Text()).empty() && Trim(utrDate_.Text()).empty())
            utrDate_.SetText(date_.Text());
    };
    utrDate_.DateEntry = true;
    utrDate_.OnValidate = [this](bool& cancel) { CheckDayBox(app_, utrDate_, true, cancel); };
    settles_.SetWidth(4000);
    settles_.OnLookup = [this] { app_.Guard([&] { LookUpSettled(); }); };
    settles_.OnValidate = [this](bool& cancel) { cancel = !CheckSettled(); };
    for (ui::TextBox* total : {&debits_, &credits_})
        total->SetEnabled(false);

    bar_.AddItem("Lookup,F2: Look-up,Choose from the list");
    bar_.AddItem("Delete,F3: Delete,Delete the voucher");
    bar_.AddItem("New,F5: New,A new voucher");
    bar_.AddItem("Browse,F6: Browse,The vouchers typed");
    bar_.AddItem("Save,F10: Save,Save the voucher");
    bar_.AddItem("Exit,Esc: Exit,Close");
    bar_.OnClick = [this](const std::string& key) { OnCommand(key); };

    BeginGroup();
    AddRow({&date_, &book_, &number_});
    AddRow({&grid_});
    BeginGroup("Bank reference");
    AddRow({&utrNo_, &utrDate_});
    AddRow({&settles_});
    BeginGroup("Totals", true);
    AddRow({&debits_, &credits_});
    AddRow({&difference_});
    BeginGroup();
    AddRow({&bar_});
    NewVoucher();
}

void VoucherScreen::FirstActivate() {
    app_.RegisterWindow(*this, Caption(), Icon);
    date_.SetFocus();
}

const VoucherBook& VoucherScreen::Book() const {
    const int index = book_.SelectedIndex();
    return kVoucherBooks[static_cast<std::size_t>(index < 0 ? 0 : index)];
}

// Only a receipt or a payment carries a bank reference.
void VoucherScreen::BookChosen() {
    const bool bank = Book().bankReference;
    for (ui::TextBox* box : {&utrNo_, &utrDate_, &settles_}) {
        if (!bank)
            box->SetText({});
        box->SetEnabled(bank);
    }
    if (!bank)
        settled_.clear();
    SetCaption(std::string(Book().caption) + (voucherId_ ? " - No. " + std::to_string(voucherId_) : " - New"));
}

void VoucherScreen::CheckCell(int row, int col, const std::string& typed, bool& cancel) {
    const std::string text = Trim(typed);
    accountFound_.reset();
    std::string refusal;
    if (col == kAccountCol && !text.empty()) {
        if (!app_.Guard([&] {
                NameFound found = FindNamed(Db(), kAccounts, text, {}, "Account");
                refusal = found.refusal;
                if (refusal.empty())
                    accountFound_ = found.named;
            }))
            cancel = true;
    } else if (col == kAmountCol && !text.empty()) {
        refusal = AmountRefusal(text);
    } else if (col == kSideCol && !text.empty() && SideOf(text).empty()) {
        refusal = "Type Dr or Cr.";
    }
    if (!refusal.empty()) {
        Warn(app_, "Row " + std::to_string(row) + ", " + grid_.Column(col).caption + ": " + refusal);
        cancel = true;
    }
}

void VoucherScreen::TakeCell(int row, int col) {
    const std::string text = Trim(grid_.TextMatrix(row, col));
    if (col == kAccountCol) {
        const std::int32_t code = accountFound_ ? accountFound_->code : 0;
        grid_.SetTextMatrix(row, kAccountCol, accountFound_ ? accountFound_->name : std::string());
        grid_.SetTextMatrix(row, kAccountIdCol, CodeText(code));
        grid_.SetTextMatrix(row, kBalanceCol, code ? BalanceText(AccountBalance(Db(), code)) : std::string());
    } else if (col == kAmountCol) {
        grid_.SetTextMatrix(row, col, CellText(TextToAmount(text), "n2"));
    } else if (col == kSideCol) {
        grid_.SetTextMatrix(row, col, SideOf(text));
    }
    ShowTotals();
}

// A row begun proposes what balances the rows above (or the book's first side), and the
// narration of the row above.
void VoucherScreen::ProposeRow(int row) {
    grid_.SetTextMatrix(row, 0, std::to_string(row));
    const Amount difference = Difference(row);
    if (grid_.TextMatrix(row, kAmountCol).empty() && !difference.IsZero())
        grid_.SetTextMatrix(row, kAmountCol, FormatAmount(difference.Abs(), "n2"));
    if (grid_.TextMatrix(row, kSideCol).empty()) {
        const int side = difference.IsZero() ? Book().firstSide : difference > Amount() ? -1 : 1;
        grid_.SetTextMatrix(row, kSideCol, side > 0 ? "Dr" : "Cr");
    }
    if (row > 1 && grid_.TextMatrix(row, kNarrationCol).empty())
        grid_.SetTextMatrix(row, kNarrationCol, grid_.TextMatrix(row - 1, kNarrationCol));
}

Amount VoucherScreen::RowAmount(int row) const {
    const Amount amount = TextToAmount(grid_.TextMatrix(row, kAmountCol));
    return grid_.TextMatrix(row, kSideCol) == "Cr" ? -amount : amount;
}

Amount VoucherScreen::Difference(int lastRow) const {
    Amount difference;
    for (int row = 1; row < lastRow && row < grid_.Rows(); ++row)
        difference += RowAmount(row);
    return difference;
}

void VoucherScreen::ShowTotals() {
    Amount debits, credits;
    for (int row = 1; row < grid_.Rows(); ++row)
        (RowAmount(row) > Amount() ? debits : credits) += RowAmount(row).Abs();
    debits_.SetText(FormatAmount(debits, "c2"));
    credits_.SetText(FormatAmount(credits, "c2"));
    difference_.SetText(debits == credits ? std::string()
                                          : "Difference: " + BalanceText(debits - credits));
}

void VoucherScreen::LookUpAccount() {
    const int row = grid_.Row();
    if (row < 1 || grid_.Col() != kAccountCol)
        return;
    // The host's party picker: every account with its balance, opened at what was typed.
    const auto chosen = app_.SelectParty(grid_.TextMatrix(row, kAccountCol));
    if (!chosen)
        return;
    grid_.Type(chosen->name);
    grid_.Commit();
}

// The documents of the voucher's accounts that no other voucher settles.
void VoucherScreen::LookUpSettled() {
    std::string accounts;
    for (int row = 1; row < grid_.Rows(); ++row)
        if (const std::int32_t code = CodeIn(grid_, row, kAccountIdCol))
            accounts += (accounts.empty() ? "" : ",") + std::to_string(code);
    if (accounts.empty()) {
        Warn(app_, "Name the party in the rows first: the documents settled are his.");
        return;
    }
    SelectItemScreen list(app_);
    list.SetPickPendingMode(true);
    list.SetSelectFirstRow(true);
    list.SetListType("Document");
    std::vector<std::int64_t> marked(settled_.begin(), settled_.end());
    list.MarkCodes("DocumentID", marked);
    list.SelectItem(Db(),
                    "SELECT M.DOCUMENTID AS DocumentID, M.DOCSERIES AS Series, M.DOCNUMBER AS No, "
                    "M.DOCDATE AS Date, A.MHD AS Party, M.GRANDTOTAL AS Amount FROM DOCMAIN M INNER "
                    "JOIN FAMASTER A ON A.MCD=M.PARTYCODE WHERE M.PARTYCODE IN (" + accounts +
                        ") AND M.CANCELLED=0 AND NOT EXISTS (SELECT 1 FROM FASETTLED S WHERE "
                        "S.DOCUMENTID=M.DOCUMENTID AND S.VOUCHERID<>" + std::to_string(voucherId_) +
                        ") ORDER BY M.DOCDATE, M.DOCSERIES, M.DOCNUMBER",
                    "Documents Settled");
    if (list.Cancelled())
        return;
    std::vector<std::int32_t> chosen;
    for (int i = 0; i < list.SelectionCount(); ++i)
        chosen.push_back(list.Selected(i, "DocumentID").AsInt());
    SettleDocuments(chosen);
}

void VoucherScreen::SettleDocuments(const std::vector<std::int32_t>& documents) {
    settled_ = documents;
    settles_.SetText(SettledNames(Db(), settled_));
}

// What the settles box names, when typed: "JF 3, JF 5".
bool VoucherScreen::CheckSettled() {
    bool taken = false;
    app_.Guard([&] {
        if (settles_.Text() == SettledNames(Db(), settled_)) {
            taken = true;
            return;
        }
        SettledFound found = FindSettled(Db(), settles_.Text());
        if (!found.refusal.empty()) {
            Warn(app_, found.refusal);
            return;
        }
        settled_ = std::move(found.documents);
        taken = true;
    });
    return taken;
}

// The voucher as the screen holds it; nullopt when what is typed cannot be taken (said).
std::optional<Voucher> VoucherScreen::FromScreen() {
    if (!grid_.Commit())
        return std::nullopt;
    if (auto* box = dynamic_cast<ui::TextBox*>(Focused()); box && box->OnValidate) {
        bool cancel = false;
        box->OnValidate(cancel);
        if (cancel)
            return std::nullopt;
    }
    if (!CheckSettled())
        return std::nullopt;
    Voucher voucher;
    voucher.id = voucherId_;
    voucher.date = Date::ParseDisplay(Trim(date_.Text()));
    voucher.book = std::string(Book().code);
    for (int row = 1; row < grid_.Rows(); ++row) {
        const std::int32_t code = CodeIn(grid_, row, kAccountIdCol);
        const Amount amount = RowAmount(row);
        if (code == 0 && amount.IsZero())
            continue; // an empty row
        voucher.lines.push_back({code, grid_.TextMatrix(row, kAccountCol), amount,
                                 Trim(grid_.TextMatrix(row, kNarrationCol))});
    }
    voucher.utrNo = Trim(utrNo_.Text());
    voucher.utrDate = Date::ParseDisplay(Trim(utrDate_.Text()));
    voucher.settles = settled_;
    return voucher;
}

bool VoucherScreen::Save() {
    const auto voucher = FromScreen();
    if (!voucher)
        return false;
    const VoucherSaved saved = SaveVoucher(Db(), app_.Vouchers(), *voucher);
    if (!saved.refusal.empty()) {
        Warn(app_, saved.refusal);
        return false;
    }
    lastSaved_ = saved.id;
    lastDate_ = voucher->date;
    NewVoucher();
    return true;
}

void VoucherScreen::NewVoucher() {
    voucherId_ = 0;
    grid_.Clear();
    grid_.SetRows(2);
    grid_.SetCurrent(1, kAccountCol);
    date_.SetText(lastDate_.value_or(Today()).ToDisplay());
    number_.SetText("New");
    for (ui::TextBox* box : {&utrNo_, &utrDate_, &settles_})
        box->SetText({});
    settled_.clear();
    BookChosen();
    ShowTotals();
    bar_.SetItemEnabled("Delete", false);
    if (Loaded())
        date_.SetFocus();
    shownContent_ = ContentNow();
}

void VoucherScreen::OpenVoucher(std::int32_t voucherId) {
    const Voucher voucher = ReadVoucher(Db(), voucherId);
    NewVoucher();
    voucherId_ = voucher.id;
    date_.SetText(voucher.date->ToDisplay());
    book_.SetSelectedIndex(static_cast<int>(FindVoucherBook(voucher.book) - kVoucherBooks.data()));
    BookChosen();
    number_.SetText(std::to_string(voucher.id));
    grid_.SetRows(static_cast<int>(voucher.lines.size()) + 2);
    for (std::size_t i = 0; i < voucher.lines.size(); ++i) {
        const VoucherLine& line = voucher.lines[i];
        const int row = static_cast<int>(i) + 1;
        grid_.SetTextMatrix(row, 0, std::to_string(row));
        grid_.SetTextMatrix(row, kAccountCol, line.accountName);
        grid_.SetTextMatrix(row, kAccountIdCol, CodeText(line.account));
        grid_.SetTextMatrix(row, kBalanceCol, BalanceText(AccountBalance(Db(), line.account)));
        grid_.SetTextMatrix(row, kAmountCol, FormatAmount(line.amount.Abs(), "n2"));
        grid_.SetTextMatrix(row, kSideCol, line.amount > Amount() ? "Dr" : "Cr");
        grid_.SetTextMatrix(row, kNarrationCol, line.narration);
    }
    utrNo_.SetText(voucher.utrNo);
    utrDate_.SetText(voucher.utrDate ? voucher.utrDate->ToDisplay() : std::string());
    SettleDocuments(voucher.settles);
    ShowTotals();
    bar_.SetItemEnabled("Delete", true);
    shownContent_ = ContentNow();
}

bool VoucherScreen::Delete() {
    if (voucherId_ == 0)
        return false;
    if (app_.ShowMessage("Do you want to delete voucher no. " + std::to_string(voucherId_) + "?", "2", "Q") !=
        kAnswerYes)
        return false;
    DeleteTypedVoucher(Db(), voucherId_);
    NewVoucher();
    return true;
}

void VoucherScreen::Browse() {
    SelectItemScreen list(app_);
    list.SetSelectFirstRow(true);
    list.SetListType("Voucher");
    list.SelectItem(Db(),
                    "SELECT F.VOUCHERID AS VoucherID, F.VOUCHERID AS No, F.VCHDATE AS Date, F.TRNTYPE "
                    "AS Book, (SELECT SUM(D.DAMT) FROM FADATA D WHERE D.VOUCHERID=F.VOUCHERID AND "
                    "D.DAMT>0) AS Amount, F.UTRNO AS UTR FROM FADOCS F WHERE F.ISAUTOVOUCHER=0 ORDER "
                    "BY F.VCHDATE DESC, F.VOUCHERID DESC",
                    "Vouchers");
    if (!list.Cancelled() && list.SelectionCount() > 0)
        OpenVoucher(list.Selected(0, "VoucherID").AsInt());
}

std::string VoucherScreen::ContentNow() const {
    return std::to_string(book_.SelectedIndex()) + ContentSnapshot({&date_, &utrNo_, &utrDate_, &settles_}, {&grid_});
}

bool VoucherScreen::LeaveVoucher() {
    return LeaveChanged(app_, ContentNow() != shownContent_, "Do you want to save this voucher?",
                        [this] { return Save(); });
}

void VoucherScreen::QueryUnload(bool& cancel) {
    if (!app_.Guard([&] { cancel = !LeaveVoucher(); }))
        cancel = true;
}

bool VoucherScreen::KeyDown(const ui::KeyPress& key) {
    if (Focused() == &grid_ && key.Plain() && key.key == ui::Key::Enter && !grid_.Editing() &&
        grid_.Row() == grid_.Rows() - 1 && grid_.Col() == kAccountCol &&
        grid_.TextMatrix(grid_.Row(), kAccountCol).empty()) {
        FocusNext(); // the empty last row: the rows are done
        return true;
    }
    if (Focused() == &grid_ && key.key == ui::Key::Delete && key.ctrl && !key.shift && !key.alt) {
        const int row = grid_.Row();
        if (row >= 1 && row < grid_.Rows() - 1) {
            grid_.RemoveRow(row);
            for (int r = 1; r < grid_.Rows() - 1; ++r)
                grid_.SetTextMatrix(r, 0, std::to_string(r));
            ShowTotals();
        }
        return true;
    }
    return ui::Screen::KeyDown(key);
}

void VoucherScreen::OnCommand(const std::string& key) {
    app_.Guard([&] {
        if (key == "Lookup") {
            if (Focused() == &grid_)
                LookUpAccount();
        } else if (key == "New") {
            if (LeaveVoucher())
                NewVoucher();
        } else if (key == "Browse") {
            if (LeaveVoucher())
                Browse();
        } else if (key == "Delete") {
            Delete();
        } else if (key == "Save") {
            Save();
        } else if (key == "Exit") {
            Close();
        }
    });
}

} // namespace qx::desk
