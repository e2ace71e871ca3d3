#pragma once
// The voucher entry screen: date, book (receipt, payment, journal, contra, opening balance),
// rows of account, balance, amount, Dr/Cr and narration, and for a receipt or payment the
// bank's UTR and the documents it settles. Enter moves on; a new row proposes what balances
// the voucher and the narration of the row above; Enter on the empty last row leaves the rows.
//
// Keys: F2 look-up (an account with its balance, the documents to settle), F3 delete, F5 new,
// F6 browse, F10 save, Esc exit; Ctrl+Del removes the row under the cursor.

#include "Voucher.h"

#include "desk/core/DeskApp.h"
#include "desk/documents/NameLookups.h"
#include "host/ui/Screen.h"

#include <optional>
#include <string>
#include <vector>

namespace qx::desk {

class VoucherScreen : public ui::Screen {
public:
    explicit VoucherScreen(DeskApp& app);

    // The grid's columns.
    static constexpr int kAccountCol = 1;
    static constexpr int kBalanceCol = 2;
    static constexpr int kAmountCol = 3;
    static constexpr int kSideCol = 4;
    static constexpr int kNarrationCol = 5;
    static constexpr int kAccountIdCol = 6;

    // What the user does through the command bar; each refusal has been shown to him.
    bool Save();
    void NewVoucher();
    void OpenVoucher(std::int32_t voucherId);
    bool Delete();
    // The documents to settle, as the look-up takes them.
    void SettleDocuments(const std::vector<std::int32_t>& documents);
    // The number of the voucher saved last; 0 before any.
    std::int32_t LastSaved() const { return lastSaved_; }

    bool KeyDown(const ui::KeyPress& key) override;

protected:
    void FirstActivate() override;
    void QueryUnload(bool& cancel) override;

private:
    CompanyDb& Db() { return app_.DeskSession().Database(); }
    const VoucherBook& Book() const;
    void BookChosen();
    void CheckCell(int row, int col, const std::string& typed, bool& cancel);
    void TakeCell(int row, int col);
    void ProposeRow(int row);
    Amount RowAmount(int row) const; // signed; 0 when the row has none
    Amount Difference(int lastRow) const; // debits less credits of the rows before lastRow
    void ShowTotals();
    void LookUpAccount();
    void LookUpSettled();
    bool CheckSettled();
    std::optional<Voucher> FromScreen();
    std::string ContentNow() const;
    bool LeaveVoucher();
    void Browse();
    void OnCommand(const std::string& key);

    DeskApp& app_;
    ui::TextBox& date_;
    ui::ComboBox& book_;
    ui::TextBox& number_;
    ui::Grid& grid_;
    ui::TextBox& utrNo_;
    ui::TextBox& utrDate_;
    ui::TextBox& settles_;
    ui::TextBox& debits_;
    ui::TextBox& credits_;
    ui::Label& difference_;
    ui::ButtonBar& bar_;

    std::int32_t voucherId_ = 0; // the voucher shown; 0 for a new one
    std::vector<std::int32_t> settled_; // the documents the settles box names
    std::optional<Named> accountFound_; // the account a cell being left names
    std::string shownContent_;
    std::optional<Date> lastDate_;
    std::int32_t lastSaved_ = 0;
};

inline constexpr const char* kVoucherScreen = "frmVoucher";

} // namespace qx::desk
