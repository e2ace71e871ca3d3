#include "Scripted.h"

#include "DeskApp.h"


namespace qx::desk {
namespace {

// The view of a screen shown by the scripted front end: nothing to draw, but a close
// request is carried out as the desktop would.
class ScriptedView : public ui::ScreenView {
public:
    ScriptedView(DeskApp* app, ui::Screen& screen, bool modal)
        : app_(app), screen_(screen), modal_(modal) {}
    void ControlChanged(ui::Control&) override {}
    void FocusChanged(ui::Control&) override {}
    void CloseRequested() override {
        if (modal_) closed = true;
        else if (app_) app_->CloseScreen(screen_);
    }
    bool closed = false;

private:
    DeskApp* app_;
    ui::Screen& screen_;
    bool modal_;
};

} // namespace

void ScriptedFrontend::Show(std::shared_ptr<ui::Screen> screen) {
    auto view = std::make_unique<ScriptedView>(app_, *screen, false);
    screen->SetView(view.get());
    views_[screen.get()] = std::move(view);
    active_ = screen.get();
    screen->RunActivate();
}

void ScriptedFrontend::RunModal(ui::Screen& screen) {
    ScriptedView view(app_, screen, true);
    screen.SetView(&view);
    screen.RunActivate();
    if (!modals_.empty()) {
        auto handler = std::move(modals_.front());
        modals_.pop_front();
        handler(screen);
    }
    if (!view.closed) screen.Close(false); // a dialog nobody answered is cancelled
    screen.SetView(nullptr);
}

void ScriptedFrontend::Closed(ui::Screen& screen) {
    if (active_ == &screen) active_ = nullptr;
    screen.SetView(nullptr);
    views_.erase(&screen);
}

int ScriptedFrontend::Message(const std::string& prompt, const std::string& options,
                              const std::string& style) {
    int answer = kAnswerYes;
    if (options == kYesNo || options == kYesNoCancel) {
        if (!answers_.empty()) {
            answer = answers_.front();
            answers_.pop_front();
        } else if (defaultAnswer_) {
            answer = *defaultAnswer_;
        } else {
            transcript_.push_back({style, prompt, 0});
            throw UnscriptedQuestion("No answer was scripted for the question: " + prompt);
        }
        if (answer == kAnswerCancel && options != kYesNoCancel)
            throw std::logic_error("Cancel was scripted for a Yes/No question: " + prompt);
    }
    transcript_.push_back({style, prompt, answer});
    if (OnMessage) OnMessage(transcript_.back());
    return answer;
}

void ScriptedFrontend::Print(const PrintJob& job, PrintMode mode) {
    printed_.emplace_back(job, mode);
    if (OnPrint) OnPrint(job, mode);
}

} // namespace qx::desk
