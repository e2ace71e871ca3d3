#include "JFormLines.h"

#include "Levies.h"

#include <array>
#include <cstddef>

namespace kivra {
namespace {

using qx::Amount;

// The rates a line carries, in the order the saved-rates store joins them. Values kept by an
// older program may stop after labour.
constexpr std::array<const char*, 6> kRateFields = {"iMarketFeeRate", "iRDFRate",
                                                    "iPIDFRate",      "iPurTaxRate",
                                                    "iLabourRateIF",  "iCancerFundRate"};
constexpr std::size_t kLabour = 4;
constexpr std::size_t kCancerFund = 5;
constexpr const char* kSeparator = "<||>";

std::string StoreKey(const qx::Value& productId) {
    return "i" + std::to_string(productId.AsLong());
}

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t at; (at = text.find(kSeparator, start)) != std::string::npos;
         start = at + std::string_view(kSeparator).size())
        parts.push_back(text.substr(start, at - start));
    parts.push_back(text.substr(start));
    return parts;
}

// The item master's rates, in the order of kRateFields.
std::array<Amount, 6> MasterRates(MandiForm& form, std::int32_t productId) {
    auto master = form.Doc().Database().OpenRecordset(
        "SELECT S.QMARKETFEE,S.QRDF,S.QPIDF,S.QPURTAX,S.QLABOURIF,S.QCANCERFUND FROM STKMASTER S "
        "WHERE S.QMCD=" +
        std::to_string(productId));
    if (master->EndOfRows())
        throw std::runtime_error("The item of code " + std::to_string(productId) +
                                 " is no longer in the item master: its levies cannot be worked "
                                 "out.");
    std::array<Amount, 6> rates;
    for (std::size_t i = 0; i < rates.size(); ++i)
        rates[i] = master->Field(static_cast<int>(i)).AsAmount();
    master->Close();
    return rates;
}

// The rate differences the user is asked about, in the order asked. Purchase tax is never
// asked: it stays as the form had it.
struct Revision {
    std::size_t rate;
    const char* onForm;
    const char* inMaster;
};
constexpr Revision kRevisions[] = {
    {0, "Market fee as per J-Form is: ", "Market Fee as per master is: "},
    {1, "R.D.F. as per J-Form is: ", "R.D.F. as per master is: "},
    {2, "P.I.D.F. as per J-Form is: ", "P.I.D.F. as per master is: "},
    {kLabour, "Labour rate as per J-Form is: ", "Labour Rate (I-Form) as per master is: "},
    {kCancerFund, "Cancer Fund rate as per J-Form is: ", "Cancer Fund rate as per master is: "},
};

// A form saved before keeps its own rates unless the user takes the master's, rate by rate.
void ReviseRates(MandiForm& form, const qx::PropertyBag& savedRates, bool labourInForce,
                 const std::array<Amount, 6>& master, qx::PropertyBag& item) {
    const auto parts = Split(savedRates.GetValue(StoreKey(item.GetValue("ProductID"))).AsText());
    if (parts.size() >= 5)
        for (std::size_t i = 0; i < kRateFields.size() && i < parts.size(); ++i)
            item.SetValue(kRateFields[i], qx::TextToAmount(parts[i]));
    auto& util = form.Context().Util();
    for (const Revision& revision : kRevisions) {
        if (revision.rate == kLabour && !labourInForce)
            continue;
        const char* field = kRateFields[revision.rate];
        const Amount onForm = item.GetValue(field).AsAmount();
        const Amount inMaster = master[revision.rate];
        if (onForm == inMaster)
            continue;
        const std::string question = revision.onForm + util.FormatAmount(onForm, "") + "\r\n" +
                                     revision.inMaster + util.FormatAmount(inMaster, "") +
                                     "\r\nDo you want to revise as per master?";
        if (util.ShowMessage(question, qx::kYesNo, "W") == qx::kAnswerYes)
            item.SetValue(field, inMaster);
    }
}

void ChargeLevies(MandiForm& form, bool labourInForce, qx::PropertyBag& item) {
    auto rate = [&](std::size_t i) { return item.GetValue(kRateFields[i]).AsAmount(); };
    const Levies levies = LeviesOn(item.GetValue("Amount").AsAmount(),
                                   {rate(0), rate(1), rate(2), rate(3), rate(kCancerFund)},
                                   !form.IsGSTApplicable());
    item.SetValue("iMarketFeeAmt", levies.marketFee);
    item.SetValue("iRDFAmt", levies.rdf);
    item.SetValue("iCancerFundAmt", levies.cancerFund);
    item.SetValue("iPIDFAmt", levies.pidf);
    item.SetValue("iPurTaxAmt", levies.purTax);
    item.SetValue("iLabourAmtIF",
                  labourInForce ? qx::RoundAmount(item.GetValue("NoOfBoxes").AsAmount() *
                                                      rate(kLabour),
                                                  2)
                                : Amount());
}

} // namespace

void KeepSavedRates(qx::PropertyBag& store, const qx::PropertyBag& savedLine) {
    // A line sold to a buyer bears no levy: its rates of 0 are not the form's, and must not
    // replace those of a line of the same item the agent bought himself.
    if (savedLine.GetValue("JFactor").AsInt() == 1) return;
    std::string rates;
    for (std::size_t i = 0; i < kRateFields.size(); ++i)
        rates += (i ? kSeparator : "") + savedLine.GetValue(kRateFields[i]).AsText();
    // A later line of the same item replaces what an earlier one kept.
    store.SetValue(StoreKey(savedLine.GetValue("ProductID")), rates);
}

void SaveJFormLine(MandiForm& form, const qx::PropertyBag& savedRates, bool labourInForce,
                   int row, qx::PropertyBag& item) {
    if (form.Cell(row, form.columns.customerId) != "SELF") {
        // Sold to a buyer: it waits for his I-Form, and the agent owes nothing on it.
        item.SetValue("JFactor", 1);
        item.SetValue("StockFactor", 0);
        return;
    }
    item.SetValue("StockFactor", 1);
    item.SetValue("JFactor", 0);
    const auto master = MasterRates(form, item.GetValue("ProductID").AsInt());
    if (form.Doc().IsNewDocument()) {
        for (std::size_t i = 0; i < kRateFields.size(); ++i)
            item.SetValue(kRateFields[i], master[i]);
    } else {
        ReviseRates(form, savedRates, labourInForce, master, item);
    }
    ChargeLevies(form, labourInForce, item);
}

} // namespace kivra
