#include "FormPaper.h"

#include "kivra/module/mKivraModule.h"

namespace kivra {
namespace {

// The tax summary grid's columns: levy, rate %, charged on, amount.
constexpr int kLevyCol = 0, kRateCol = 1, kChargedOnCol = 2, kAmountCol = 3;

std::string Joined(const std::vector<std::string>& parts) {
    std::string joined;
    for (const std::string& part : parts)
        if (!part.empty()) joined += (joined.empty() ? "" : "    ") + part;
    return joined;
}

void AddLevies(const MandiForm& form, qx::DocumentPaper& paper) {
    auto& screen = form.Form();
    const qx::ui::Grid& summary = screen.GridInfo();
    if (!screen.ShowGridinfo() || summary.Cols() <= kAmountCol) return;
    std::vector<qx::DocumentPaper::Note> levies;
    qx::Amount total;
    for (int row = 1; row < summary.Rows(); ++row) {
        const qx::Amount amount = qx::TextToAmount(summary.TextMatrix(row, kAmountCol));
        if (amount.IsZero()) continue; // a levy at no rate is not owed
        const std::string& rate = summary.TextMatrix(row, kRateCol);
        levies.push_back({summary.TextMatrix(row, kLevyCol) + (rate.empty() ? "" : " @ " + rate + "%") + " on " +
                              summary.TextMatrix(row, kChargedOnCol),
                          summary.TextMatrix(row, kAmountCol)});
        total += amount;
    }
    if (levies.empty()) return;
    paper.notes.push_back({form.mode.jForm ? "Levies on purchases for own account (SELF):" : "Levies:", ""});
    paper.notes.insert(paper.notes.end(), levies.begin(), levies.end());
    paper.notes.push_back({"Total Levies", qx::FormatAmount(total, "c2")});
}

} // namespace

void DressPaper(const MandiForm& form, qx::DocumentPaper& paper) {
    const SeriesMode& mode = form.mode;
    if (!mode.jForm && !mode.iForm && !mode.localPurchase) return;
    auto& doc = form.Doc();
    const std::string kind = mode.jForm ? "J-Form" : mode.iForm ? "I-Form" : "Purchase Form";
    const std::string number = form.FormNoBox() ? form.FormNoBox()->Text() : "";
    paper.title = kind + (number.empty() ? "" : " No. " + number);
    if (mode.jForm) paper.title += " (Farmer's Copy)";
    if (mode.iForm) paper.title += " (Buyer's Bill)";
    const std::int32_t market = form.MarketId();
    paper.particulars = {
        Joined({market != 0 ? "Market: " + GetMarketName(form.Context(), market) : "",
                form.FormBookBox() && !form.FormBookBox()->Text().empty()
                    ? "Book No. " + form.FormBookBox()->Text()
                    : "",
                "Date: " + doc.DocDate().ToDisplay()}),
        (mode.jForm ? "Farmer: " : mode.iForm ? "Buyer: " : "Seller: ") + form.Form().TxpCustomer().Text()};
    paper.totalCaption = mode.jForm ? "Net Payable" : mode.iForm ? "Bill Amount" : paper.totalCaption;
    AddLevies(form, paper);
}

} // namespace kivra
