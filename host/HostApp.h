#pragma once
// The running host application: its main window, its events, and the services it hands a
// module (session, user interface, helpers).

#include "EventArgs.h"

#include <string>

namespace qx {

class HostSession;
class HostUi;
class ModuleUtil;
class VoucherUtil;

// A module's menu on the main window: a row of large buttons.
class SplMenu {
public:
    virtual ~SplMenu() = default;
    virtual int ButtonCount() const = 0;
    virtual void AddButton(std::string key, std::string caption, std::string icon) = 0;
    virtual void CreateButtons() = 0;
};

class HostMainForm {
public:
    virtual ~HostMainForm() = default;
    // The special menu of that key, made empty the first time it is asked for.
    virtual SplMenu& CreateSplMenu(const std::string& key, const std::string& caption) = 0;
};

// The events a module listens to. Default handlers do nothing.
class HostAppEvents {
public:
    virtual ~HostAppEvents() = default;
    virtual void CustomEvent(const std::string& /*name*/, EventArgs& /*args*/) {}
    virtual void MainMenuClick(const std::string& /*key*/, bool& /*handled*/) {}
    virtual void SelectCompany() {}
    virtual void SplMenuCreate(const Value& /*ignored*/, bool& /*handled*/) {}
};

class HostApp {
public:
    virtual ~HostApp() = default;
    virtual HostMainForm& MainForm() = 0;
    virtual void Subscribe(HostAppEvents& listener) = 0;
    virtual void Unsubscribe(HostAppEvents& listener) = 0;

    virtual HostSession& Session() = 0;
    virtual HostUi& Ui() = 0;
    virtual ModuleUtil& Util() = 0;
    virtual VoucherUtil& Vouchers() = 0;
};

} // namespace qx
