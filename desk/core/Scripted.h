#pragma once
// The front end of tests and `qx`: no windows. Questions are answered from a script, every
// message is kept in a transcript, modal screens are handed to scripted handlers, and
// print jobs are kept for the caller.

#include "Frontend.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <vector>

namespace qx::desk {

struct ShownMessage {
    std::string style;
    std::string prompt;
    int answer = 1;
};

// Thrown when a question comes that the script has no answer for.
class UnscriptedQuestion : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

class ScriptedFrontend : public Frontend {
public:
    // Answers for the next questions, in order: kAnswerYes, kAnswerNo, or kAnswerCancel for a
    // question that offers Cancel.
    void QueueAnswer(int answer) { answers_.push_back(answer); }
    // The answer for the very next question, before any queued earlier.
    void QueueAnswerNext(int answer) { answers_.push_front(answer); }
    // The answer for questions once the queue is empty; none: such a question throws.
    void SetDefaultAnswer(std::optional<int> answer) { defaultAnswer_ = answer; }
    // What the user does on the next modal screen (choose a row, click OK...). A modal
    // screen with no handler queued is closed as cancelled.
    void QueueModal(std::function<void(ui::Screen&)> handler) { modals_.push_back(std::move(handler)); }
    // What the user does on the very next modal screen, before any queued earlier.
    void QueueModalNext(std::function<void(ui::Screen&)> handler) { modals_.push_front(std::move(handler)); }
    bool ModalPending() const { return !modals_.empty(); }
    // Forgets what was queued for dialogs that never opened.
    void DropModals() { modals_.clear(); }

    const std::vector<ShownMessage>& Transcript() const { return transcript_; }
    void ClearTranscript() { transcript_.clear(); }
    const std::vector<std::pair<PrintJob, PrintMode>>& Printed() const { return printed_; }
    // Called for every message as it is shown (qx prints them as they come).
    std::function<void(const ShownMessage&)> OnMessage;
    // Called for every print job (qx writes it out).
    std::function<void(const PrintJob&, PrintMode)> OnPrint;

    void Show(std::shared_ptr<ui::Screen> screen) override;
    void RunModal(ui::Screen& screen) override;
    void Closed(ui::Screen& screen) override;
    int Message(const std::string& prompt, const std::string& options,
                const std::string& style) override;
    void Print(const PrintJob& job, PrintMode mode) override;
    void MenusChanged() override {}
    ui::Screen* ActiveWindow() override { return active_; }
    void Activate(ui::Screen& screen) override { active_ = &screen; }

private:
    std::deque<int> answers_;
    std::optional<int> defaultAnswer_;
    std::deque<std::function<void(ui::Screen&)>> modals_;
    std::vector<ShownMessage> transcript_;
    std::vector<std::pair<PrintJob, PrintMode>> printed_;
    std::map<const ui::Screen*, std::unique_ptr<ui::ScreenView>> views_;
    ui::Screen* active_ = nullptr; // the window shown or activated last
};

} // namespace qx::desk
