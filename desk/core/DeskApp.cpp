#include "DeskApp.h"

#include "PartyPicker.h"
#include "PrintDesigns.h"
#include "ReportDialogs.h"
#include "Scripted.h"
#include "SelectDialog.h"
#include "SelectItemScreen.h"
#include "VoucherRows.h"

#include <algorithm>
#include <utility>

namespace qx::desk {

void SpecialMenu::AddButton(std::string key, std::string caption, std::string icon) {
    pending_.push_back({std::move(key), std::move(caption), std::move(icon)});
}

void SpecialMenu::CreateButtons() {
    created_.insert(created_.end(), pending_.begin(), pending_.end());
    pending_.clear();
}

DeskApp::DeskApp(Frontend& frontend)
    : frontend_(frontend), util_(*this, session_),
      vouchers_(std::make_unique<LedgerVoucherUtil>()) {
    frontend_.Attach(*this);
    // The host's own item selection, which modules create by name; in no menu.
    hostScreens_["SelectItem"] = {"Select", [this] { return std::make_shared<SelectItemScreen>(*this); }};
}

DeskApp::~DeskApp() { Shutdown(); }

void DeskApp::LoadModules(const std::filesystem::path& folder) {
    loader_.LoadFolder(folder, *this);
}

void DeskApp::Shutdown() {
    while (!screens_.empty()) {
        auto screen = screens_.back();
        screen->RunUnload();
        screens_.pop_back();
        frontend_.Closed(*screen);
    }
    // A module's screens go before its code does.
    closed_.clear();
    loader_.UnloadAll();
    listeners_.clear();
    session_.Close();
}

bool DeskApp::OpenCompany(const std::filesystem::path& path) {
    if (!CloseCompany()) return false;
    session_.Open(path);
    Raise([](HostAppEvents& l) { l.SelectCompany(); });
    RefreshMenus();
    return true;
}

bool DeskApp::CloseCompany() {
    // Newest first; a screen that refuses (a row it cannot save) keeps the company open.
    while (!screens_.empty())
        if (!CloseScreen(*screens_.back())) return false;
    session_.Close();
    splMenus_.clear();
    miscMenu_.clear();
    closed_.clear();
    frontend_.MenusChanged();
    return true;
}

void DeskApp::RefreshMenus() {
    splMenus_.clear();
    miscMenu_.clear();
    if (session_.HasCompany()) {
        bool handled = false;
        Raise([&](HostAppEvents& l) { l.SplMenuCreate(Value(), handled); });
        EventArgs items;
        RaiseCustomEvent("MiscMenuItems", items);
        for (const std::string& text : items.Items.Items()) {
            const auto dash = text.find('-');
            if (dash == std::string::npos) miscMenu_.push_back({text, text});
            else miscMenu_.push_back({text.substr(0, dash), text.substr(dash + 1)});
        }
    }
    frontend_.MenusChanged();
}

void DeskApp::ClickMenu(const std::string& key) {
    closed_.clear();
    Guard([&] {
        bool handled = false;
        Raise([&](HostAppEvents& l) {
            if (!handled) l.MainMenuClick(key, handled);
        });
        if (handled) return;
        auto host = hostScreens_.find(key);
        if (host != hostScreens_.end()) {
            ShowForm(host->second.make());
            return;
        }
        if (std::any_of(miscMenu_.begin(), miscMenu_.end(), [&](const auto& e) { return e.key == key; })) {
            EventArgs click;
            click.Parameters.SetValue("Key", key);
            RaiseCustomEvent("MiscMenuClick", click);
            return;
        }
        // Modules may offer keys of screens that this version of the desk does not have yet.
        ShowMessage("This function is not available in this version of QX Desk.", "", "I");
    });
}

void DeskApp::RegisterHostScreen(const std::string& group, const std::string& key,
                                 const std::string& caption,
                                 std::function<std::shared_ptr<ui::Screen>()> make) {
    if (!hostScreens_.contains(key) && !group.empty()) mainMenu_.push_back({group, key, caption});
    hostScreens_[key] = {caption, std::move(make)};
    frontend_.MenusChanged();
}

void DeskApp::RaiseCustomEvent(const std::string& name, EventArgs& args) {
    Raise([&](HostAppEvents& l) { l.CustomEvent(name, args); });
}

bool DeskApp::Guard(const std::function<void()>& action) {
    try {
        action();
        return true;
    } catch (const UnscriptedQuestion&) {
        throw; // a test or a script met a question it has no answer for: let it fail loudly
    } catch (const std::exception& error) {
        frontend_.Message(error.what(), "", "E");
        return false;
    }
}

bool DeskApp::CloseScreen(ui::Screen& screen) {
    auto it = std::find_if(screens_.begin(), screens_.end(),
                           [&](const auto& s) { return s.get() == &screen; });
    if (it == screens_.end()) return true;
    if (!screen.RunQueryUnload()) return false;
    // The screen may be closing from inside one of its own handlers: it is released only
    // when the next user action starts.
    closed_.push_back(*it);
    screens_.erase(it);
    screen.RunUnload();
    UnregisterWindow(screen);
    frontend_.Closed(screen);
    return true;
}

void DeskApp::Subscribe(HostAppEvents& listener) {
    if (std::find(listeners_.begin(), listeners_.end(), &listener) == listeners_.end())
        listeners_.push_back(&listener);
}

void DeskApp::Unsubscribe(HostAppEvents& listener) {
    std::erase(listeners_, &listener);
}

template <class F> void DeskApp::Raise(F&& f) {
    // A copy: a handler may subscribe or unsubscribe while the event runs.
    auto listeners = listeners_;
    for (auto* listener : listeners) f(*listener);
}

VoucherUtil& DeskApp::Vouchers() { return *vouchers_; }

SplMenu& DeskApp::CreateSplMenu(const std::string& key, const std::string& caption) {
    for (auto& menu : splMenus_)
        if (menu->Key() == key) return *menu;
    splMenus_.push_back(std::make_unique<SpecialMenu>(key, caption));
    return *splMenus_.back();
}

void DeskApp::ShowForm(std::shared_ptr<ui::Screen> screen) {
    if (!screen) return;
    screen->RunLoad();
    screens_.push_back(screen);
    frontend_.Show(std::move(screen));
}

void DeskApp::OpenScreen(std::shared_ptr<ui::Screen> screen) {
    closed_.clear();
    ShowForm(std::move(screen));
}

bool DeskApp::ShowModal(ui::Screen& screen) {
    screen.RunLoad();
    modals_.push_back(&screen);
    try {
        frontend_.RunModal(screen);
    } catch (...) {
        modals_.pop_back();
        throw;
    }
    modals_.pop_back();
    screen.RunUnload();
    return screen.Accepted();
}

std::unique_ptr<HostSelectDialog> DeskApp::CreateSelectDialog() {
    auto dialog = std::make_unique<SelectListDialog>(*this);
    dialog->SetStartText(listStart_);
    return dialog;
}

void DeskApp::LookUpFrom(const std::string& typed, const std::function<void()>& lookup) {
    const std::string before = std::exchange(listStart_, typed);
    try {
        lookup();
    } catch (...) {
        listStart_ = before;
        throw;
    }
    listStart_ = before;
}

int DeskApp::ShowMessage(const std::string& prompt, const std::string& options,
                         const std::string& style) {
    return frontend_.Message(prompt, options, style);
}

void DeskApp::HandleShortcutKey(ui::KeyPress& key, ui::Screen& screen) {
    if (key.key != ui::Key::Tab || !key.ctrl || key.alt || screens_.size() < 2) return;
    auto at = std::find_if(screens_.begin(), screens_.end(),
                           [&](const auto& shown) { return shown.get() == &screen; });
    if (at == screens_.end()) return;
    const auto count = static_cast<std::ptrdiff_t>(screens_.size());
    const std::ptrdiff_t next = ((at - screens_.begin()) + (key.shift ? -1 : 1) + count) % count;
    frontend_.Activate(*screens_[static_cast<std::size_t>(next)]);
    key = {};
}

ui::Screen* DeskApp::KeyboardScreen() {
    if (!modals_.empty()) return modals_.back();
    if (ui::Screen* active = frontend_.ActiveWindow()) return active;
    return screens_.empty() ? nullptr : screens_.back().get();
}

void DeskApp::SendKeys(const std::string& keys) {
    for (const ui::KeyPress& key : ui::ParseKeyString(keys)) {
        ui::Screen* screen = KeyboardScreen();
        if (!screen || screen->KeyDown(key)) continue;
        auto* box = dynamic_cast<ui::TextBox*>(screen->Focused());
        if (box && key.key == ui::Key::Character && !key.ctrl && !key.alt)
            box->Type(box->Text() + static_cast<char>(key.character));
    }
}

void DeskApp::RegisterWindow(ui::Screen& screen, const std::string& caption,
                             const std::string& picture) {
    UnregisterWindow(screen);
    registered_.emplace_back(&screen, caption);
    if (screen.Icon.empty()) screen.Icon = picture;
}

void DeskApp::UnregisterWindow(ui::Screen& screen) {
    std::erase_if(registered_, [&](const auto& entry) { return entry.first == &screen; });
}

PrintJob DeskApp::Named(const PrintJob& job) {
    PrintJob named = job;
    if (session_.HasCompany()) {
        if (named.firmName.empty()) named.firmName = session_.CompanyName();
        FillDesignSections(session_.Database(), named);
    }
    return named;
}

void DeskApp::Print(const PrintJob& job, PrintMode mode) { frontend_.Print(Named(job), mode); }

std::optional<Period> DeskApp::AskPeriod(const std::string& key) { return desk::AskPeriod(*this, key); }

std::optional<Date> DeskApp::AskDate(const std::string& key) { return desk::AskDate(*this, key); }

Period DeskApp::LastPeriod(const std::string& key) { return desk::LastPeriod(*this, key); }

std::optional<ChosenAccount> DeskApp::SelectParty(const std::string& typed) {
    return PartyPicker(*this, session_.Database()).Choose(typed);
}

std::optional<std::string> DeskApp::FilterItems(const std::string& key, const std::string& alias) {
    return desk::FilterItems(*this, key, alias);
}

void DeskApp::ShowVoucher(std::int32_t voucherId) { desk::ShowVoucher(*this, voucherId); }

std::shared_ptr<ui::Screen> DeskApp::CreateForm(const std::string& name) {
    auto host = hostScreens_.find(name);
    return host == hostScreens_.end() ? nullptr : host->second.make();
}

} // namespace qx::desk
