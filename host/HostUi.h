#pragma once
// The host's user-interface service: showing screens, creating the host's own screens by
// name, dialogs, messages and printing.

#include "PrintJob.h"
#include "ui/Screen.h"

#include <memory>
#include <string>

namespace qx {

class HostApp;
class HostSelectDialog;

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
};

} // namespace qx
