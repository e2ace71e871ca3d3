#pragma once
// The host's user-interface service: showing screens, creating the host's own screens by
// name, dialogs, messages and printing.

#include "Date.h"
#include "PrintJob.h"
#include "ui/Screen.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace qx {

class HostApp;
class HostSelectDialog;

// A period of days, both ends included.
struct Period {
    Date from;
    Date to;
    bool operator==(const Period&) const = default;
};

// An account of the books as the user chose it.
struct ChosenAccount {
    std::int32_t code = 0; // FAMASTER.MCD
    std::string name;
};

class FormProvider {
public:
    virtual ~FormProvider() = default;
    // A host screen by name ("Documents"); null for a name the host does not have.
    virtual std::shared_ptr<ui::Screen> CreateForm(const std::string& name) = 0;
};

class HostUi {
public:
    virtual ~HostUi() = default;
    virtual HostApp& App() = 0;
    // Shows a screen as a child window of the main window; it runs by itself until closed.
    virtual void ShowForm(std::shared_ptr<ui::Screen> screen) = 0;
    // Shows a screen modally; returns when it closes, with whether it was accepted.
    virtual bool ShowModal(ui::Screen& screen) = 0;
    virtual FormProvider& Forms() = 0;
    virtual std::unique_ptr<HostSelectDialog> CreateSelectDialog() = 0;
    // Messages and questions; see ModuleUtil::ShowMessage for the arguments.
    virtual int ShowMessage(const std::string& prompt, const std::string& options,
                            const std::string& style) = 0;
    // Lets the host act on a key pressed on a module screen; a consumed key comes back None.
    virtual void HandleShortcutKey(ui::KeyPress& key, ui::Screen& screen) = 0;
    // Sends keys (ui::ParseKeyString: "{TAB}" moves on) to the control that has the keyboard,
    // as if the user pressed them.
    virtual void SendKeys(const std::string& keys) = 0;
    // Lets the user interface draw and handle what is waiting (a window just shown).
    virtual void DoEvents() = 0;
    virtual void RegisterWindow(ui::Screen& screen, const std::string& caption,
                                const std::string& picture) = 0;
    virtual void UnregisterWindow(ui::Screen& screen) = 0;
    virtual void Print(const PrintJob& job, PrintMode mode) = 0;

    // Report dialogs. Each proposes what was last accepted under its key (a report's, such as
    // "MForm") and keeps what is accepted in the company; nullopt when the user cancels.
    // The period dialog: From and To, with a calendar on the desktop.
    virtual std::optional<Period> AskPeriod(const std::string& key) = 0;
    // The single-date dialog.
    virtual std::optional<Date> AskDate(const std::string& key) = 0;
    // The period AskPeriod would propose under the key, without asking (the period a screen
    // starts with before the user chooses one).
    virtual Period LastPeriod(const std::string& key) = 0;
    // The party picker: the accounts with their balances, opening at the first whose name
    // starts with what the user typed; nullopt when he cancels.
    virtual std::optional<ChosenAccount> SelectParty(const std::string& typed) = 0;
    // The item filter ("FilterProduct"): the user chooses items; the choice is kept under the
    // key. Returns the condition on the item table's alias ("s.QMCD IN (3,7)"), empty for every
    // item; nullopt when the user cancels (the choice kept stays as it was).
    virtual std::optional<std::string> FilterItems(const std::string& key, const std::string& alias) = 0;
    // Shows a voucher of the books by its id (FADATA.VOUCHERID).
    virtual void ShowVoucher(std::int32_t voucherId) = 0;
};

} // namespace qx
