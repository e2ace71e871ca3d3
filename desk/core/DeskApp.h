#pragma once
// QX Desk's application object: the HostApp a module is given. It owns the session, the
// user-interface service and the helpers, keeps the main menu and the modules' special
// menus, loads modules, and raises the application events.

#include "Frontend.h"
#include "ModuleLoader.h"
#include "Session.h"

#include "host/HostApp.h"
#include "host/HostUi.h"
#include "host/ModuleUtil.h"
#include "host/VoucherUtil.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace qx::desk {

struct MenuButton {
    std::string key;
    std::string caption;
    std::string icon;
};

// A module's special menu as the main window shows it.
class SpecialMenu : public SplMenu {
public:
    SpecialMenu(std::string key, std::string caption) : key_(std::move(key)), caption_(std::move(caption)) {}
    int ButtonCount() const override { return static_cast<int>(created_.size()); }
    void AddButton(std::string key, std::string caption, std::string icon) override;
    void CreateButtons() override;
    const std::string& Key() const { return key_; }
    const std::string& Caption() const { return caption_; }
    const std::vector<MenuButton>& Buttons() const { return created_; }

private:
    std::string key_;
    std::string caption_;
    std::vector<MenuButton> pending_;
    std::vector<MenuButton> created_;
};

// An entry of the host's own main menu: a key sent through MainMenuClick.
struct MainMenuEntry {
    std::string group; // "Company", "Masters", ...
    std::string key;
    std::string caption;
};

// An entry the modules add to the host's miscellaneous menu ("KVINT-Interest ..."): the key
// before the first '-', the caption after it; a click raises "MiscMenuClick" with the key.
struct MiscMenuEntry {
    std::string key;
    std::string caption;
};

class DeskApp : public HostApp, public HostMainForm, public HostUi, public FormProvider {
public:
    explicit DeskApp(Frontend& frontend);
    ~DeskApp() override;

    // Modules: every shared library in the folder that exports QXCreateModule.
    void LoadModules(const std::filesystem::path& folder);
    // A module the program made itself; the caller keeps it alive until Shutdown.
    void PlugModule(IModule& module) { loader_.Plug(module, *this); }
    // Unloads the modules (Terminate) and closes the company.
    void Shutdown();
    const std::vector<LoadedModule>& Modules() const { return loader_.Modules(); }

    // Opens a company and tells the modules (SelectCompany, SplMenuCreate). False when an
    // open screen refused to close, so the company open before stays open.
    bool OpenCompany(const std::filesystem::path& path);
    // Closes every screen, newest first, then the company; false when a screen refused.
    bool CloseCompany();
    // Builds the modules' special menus again (after the firm's properties changed).
    void RefreshMenus();
    desk::Session& DeskSession() { return session_; }

    // A click on a main-menu entry, a special-menu button or a miscellaneous entry: the modules
    // are asked first (MainMenuClick), then the host's own screens, then the modules' own
    // miscellaneous entries (MiscMenuClick).
    void ClickMenu(const std::string& key);
    const std::vector<MiscMenuEntry>& MiscMenu() const { return miscMenu_; }
    const std::vector<MainMenuEntry>& MainMenu() const { return mainMenu_; }
    const std::vector<std::unique_ptr<SpecialMenu>>& SpecialMenus() const { return splMenus_; }
    // A host screen of the desk's own, keyed as its menu entry; shown in the main menu
    // under the group unless the group is empty.
    void RegisterHostScreen(const std::string& group, const std::string& key, const std::string& caption,
                            std::function<std::shared_ptr<ui::Screen>()> make);
    // Runs the look-up of a box or cell that holds what the user typed: a list dialog made
    // meanwhile (by a module, say) starts at it.
    void LookUpFrom(const std::string& typed, const std::function<void()>& lookup);
    // Raises CustomEvent on the modules.
    void RaiseCustomEvent(const std::string& name, EventArgs& args);

    // Runs a user action; an error it raises is shown to the user as an error message
    // rather than ending the program. False when it failed.
    bool Guard(const std::function<void()>& action);

    // Windows registered by their screens (caption), for the main window's window list.
    const std::vector<std::pair<ui::Screen*, std::string>>& RegisteredWindows() const {
        return registered_;
    }

    // A screen the user opens himself (a document `qx` enters): as at every user action, the
    // screens closed before are released first; then it is shown.
    void OpenScreen(std::shared_ptr<ui::Screen> screen);
    // Windows shown and not yet closed, oldest first.
    const std::vector<std::shared_ptr<ui::Screen>>& OpenScreens() const { return screens_; }
    // Closes a screen as its window's close button does; false when it refused.
    bool CloseScreen(ui::Screen& screen);

    // HostApp
    HostMainForm& MainForm() override { return *this; }
    void Subscribe(HostAppEvents& listener) override;
    void Unsubscribe(HostAppEvents& listener) override;
    HostSession& Session() override { return session_; }
    HostUi& Ui() override { return *this; }
    ModuleUtil& Util() override { return util_; }
    VoucherUtil& Vouchers() override;

    // HostMainForm
    SplMenu& CreateSplMenu(const std::string& key, const std::string& caption) override;

    // HostUi
    HostApp& App() override { return *this; }
    void ShowForm(std::shared_ptr<ui::Screen> screen) override;
    bool ShowModal(ui::Screen& screen) override;
    FormProvider& Forms() override { return *this; }
    std::unique_ptr<HostSelectDialog> CreateSelectDialog() override;
    int ShowMessage(const std::string& prompt, const std::string& options,
                    const std::string& style) override;
    // Ctrl+Tab and Ctrl+Shift+Tab: the next and the previous open window.
    void HandleShortcutKey(ui::KeyPress& key, ui::Screen& screen) override;
    // To the modal screen on top, else to the active window; a key the screen leaves alone
    // types into its focused box.
    void SendKeys(const std::string& keys) override;
    void DoEvents() override { frontend_.ProcessEvents(); }
    // The screen that has the keyboard: the modal screen on top, else the active window.
    ui::Screen* KeyboardScreen();
    void RegisterWindow(ui::Screen& screen, const std::string& caption,
                        const std::string& picture) override;
    void UnregisterWindow(ui::Screen& screen) override;
    void Print(const PrintJob& job, PrintMode mode) override;
    // The job as the firm prints it: with its name, and the texts of the design sections the
    // job names, from the company.
    PrintJob Named(const PrintJob& job);
    std::optional<Period> AskPeriod(const std::string& key) override;
    std::optional<Date> AskDate(const std::string& key) override;
    Period LastPeriod(const std::string& key) override;
    std::optional<ChosenAccount> SelectParty(const std::string& typed) override;
    std::optional<std::string> FilterItems(const std::string& key, const std::string& alias) override;
    void ShowVoucher(std::int32_t voucherId) override;

    // FormProvider
    std::shared_ptr<ui::Screen> CreateForm(const std::string& name) override;

private:
    struct HostScreen {
        std::string caption;
        std::function<std::shared_ptr<ui::Screen>()> make;
    };
    template <class F> void Raise(F&& f);

    Frontend& frontend_;
    desk::Session session_;
    ModuleUtil util_;
    std::unique_ptr<VoucherUtil> vouchers_;
    ModuleLoader loader_;
    std::vector<HostAppEvents*> listeners_;
    std::vector<std::unique_ptr<SpecialMenu>> splMenus_;
    std::vector<MainMenuEntry> mainMenu_;
    std::vector<MiscMenuEntry> miscMenu_;
    std::map<std::string, HostScreen> hostScreens_;
    std::vector<std::shared_ptr<ui::Screen>> screens_;
    std::vector<std::shared_ptr<ui::Screen>> closed_; // released at the next user action
    std::vector<ui::Screen*> modals_;                 // running, the newest last
    std::vector<std::pair<ui::Screen*, std::string>> registered_;
    std::string listStart_; // see LookUpFrom
};

} // namespace qx::desk
