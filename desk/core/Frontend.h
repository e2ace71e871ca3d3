#pragma once
// What the desk shows things with: the Qt desktop, or the scripted front end of tests and
// `qx`, which answers from a script and keeps a transcript.

#include "host/PrintJob.h"
#include "host/ui/Screen.h"

#include <memory>
#include <string>

namespace qx::desk {

class DeskApp;

class Frontend {
public:
    virtual ~Frontend() = default;
    // The application whose screens this front end shows; DeskApp attaches itself.
    void Attach(DeskApp& app) { app_ = &app; }
    // A screen to show as a child window; it has been loaded already.
    virtual void Show(std::shared_ptr<ui::Screen> screen) = 0;
    // Runs a loaded screen modally until it closes.
    virtual void RunModal(ui::Screen& screen) = 0;
    // A screen asked to close (ui::Screen::Close) and agreed to; take it down.
    virtual void Closed(ui::Screen& screen) = 0;
    // As ModuleUtil::ShowMessage: style "E", "W", "Q" or "I"; options kYesNo, kYesNoCancel or
    // none. Returns kAnswerYes (Yes, OK), kAnswerNo or kAnswerCancel (Cancel, Esc).
    virtual int Message(const std::string& prompt, const std::string& options,
                        const std::string& style) = 0;
    virtual void Print(const PrintJob& job, PrintMode mode) = 0;
    // The menus of the main window changed (a module built its special menu).
    virtual void MenusChanged() = 0;
    // The window the user works in (modal screens aside); null when none is shown.
    virtual ui::Screen* ActiveWindow() = 0;
    // Brings a shown screen's window to the front, with the keyboard.
    virtual void Activate(ui::Screen& screen) = 0;
    // Draws and handles what is waiting (a window just shown), as the event loop would.
    virtual void ProcessEvents() {}

protected:
    DeskApp* app_ = nullptr;
};

} // namespace qx::desk
