#pragma once
// Helpers for messages, amounts, dates and SQL text.

#include "Amount.h"
#include "CompanyDb.h"
#include "Date.h"

#include <optional>
#include <string>

namespace qx {

class HostUi;
class HostSession;

// Options of ShowMessage: kYesNo asks Yes/No, as the module's questions do; kYesNoCancel adds
// Cancel (Esc), for a question whose asker can still go back (the desk's "save this
// document?").
inline constexpr const char* kYesNo = "2";
inline constexpr const char* kYesNoCancel = "3";

// Answers of ShowMessage.
inline constexpr int kAnswerYes = 1;
inline constexpr int kAnswerNo = 2;
inline constexpr int kAnswerCancel = 3;

class ModuleUtil {
public:
    ModuleUtil(HostUi& ui, HostSession& session) : ui_(ui), session_(session) {}

    // style: "E" error, "W" warning, "Q" question, "I" notice; options kYesNo or kYesNoCancel
    // ask. Returns kAnswerYes, kAnswerNo or (asked for) kAnswerCancel; notices return kAnswerYes.
    int ShowMessage(const std::string& prompt, const std::string& options = {},
                    const std::string& style = "I");
    Amount TextToAmount(std::string_view text) const { return qx::TextToAmount(text); }
    Amount RoundAmount(Amount value, std::string_view decimals) const;
    std::string FormatAmount(Amount value, std::string_view format, int = 0) const {
        return qx::FormatAmount(value, format);
    }
    // The day as the company database's SQL literal; with a second day, both literals
    // joined by " AND ", for use after BETWEEN.
    std::string SqlDate(Date date, std::optional<Date> to = std::nullopt) const;
    std::string SqlQuote(std::string_view text) const { return qx::SqlQuote(text); }
    // Keys to the control that has the keyboard ("{TAB}" moves on); see HostUi::SendKeys.
    void SendKeys(const std::string& keys);

private:
    HostUi& ui_;
    HostSession& session_;
};

} // namespace qx
