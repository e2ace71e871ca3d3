#include "ChargeRates.h"

#include "kivra/masters/frmDocAutoPostingItem.h"

#include "host/Text.h"

namespace kivra {
namespace {

// The item-master column that supplies a charge's rate, by series mode; null where the mode
// leaves the rate as the host set it.
struct ChargeRateColumns {
    const char* key;
    const char* jForm;
    const char* iForm;
    const char* other; // purchases and ordinary series
};

constexpr ChargeRateColumns kChargeRates[] = {
    {"LABOUR", "qLabourJF", "qLabourIF", "qLabour"},
    {"DAMI", nullptr, "qDamiIF", "qDami"},
    {"DHARMADA", nullptr, "qDharamIF", nullptr},
    {"LOADING", nullptr, "qLoadingIF", "qLoading"},
    {"STITCHING", nullptr, "qStitchIF", "qStitch"},
    {"MARKET_FEE", nullptr, nullptr, "qMarketFee"},
    {"RDF", nullptr, nullptr, "qRDF"},
    {"CANCER_FUND", nullptr, nullptr, "qCancerFund"},
    {"DAMPING", nullptr, nullptr, "qDamping"},
    {"PIDF", nullptr, nullptr, "qPIDF"},
    {"COMMISSION", nullptr, nullptr, "qCommission"},
};

} // namespace

void LoadChargeRates(MandiForm& form) {
    // The general look-up takes a charge key in any letter case; the J-Form and I-Form
    // look-ups take it only as the series configuration spells it.
    const SeriesMode& mode = form.mode;
    const bool general = !mode.iForm && !mode.jForm;
    const auto modeColumn = mode.iForm   ? &ChargeRateColumns::iForm
                            : mode.jForm ? &ChargeRateColumns::jForm
                                         : &ChargeRateColumns::other;
    std::int32_t itemCode = 0;
    Skipping([&] { itemCode = form.FirstLineItemCode(); });
    std::unique_ptr<qx::Recordset> item;
    Skipping([&] {
        const std::string sql =
            general ? "Select * From StkMaster Where QMCD=" : "Select * from StkMaster where qmcd=";
        item = form.Doc().Database().OpenRecordset(sql + std::to_string(itemCode));
    });
    if (!item) return;
    if (!item->EndOfRows()) {
        auto& charges = form.ChargesGrid();
        for (int row = 1; row < charges.Rows(); ++row) {
            Skipping([&] {
                std::string key = charges.TextMatrix(row, kChargeKeyCol);
                if (general) key = qx::UpperCase(key);
                for (const auto& charge : kChargeRates) {
                    if (key != charge.key) continue;
                    const char* column = charge.*modeColumn;
                    if (!column) break;
                    const qx::Value rate = item->Field(column);
                    if (!rate.IsNull()) charges.SetTextMatrix(row, kChargeRateCol, rate.AsText());
                    break;
                }
            });
        }
    }
    Skipping([&] { item->Close(); });
}

void OfferAccountsSetUp(MandiForm& form, bool flag, const qx::PropertyBag& item) {
    auto& doc = form.Doc();
    auto taxRates =
        doc.Database().OpenRecordset("SELECT FIRST 1 * FROM VATCATEGORYTAXRATES WHERE SERIESID=" +
                                     std::to_string(doc.SeriesID()) + " AND VATCTGNO=" +
                                     std::to_string(item.GetValue("qVATCtgNo").AsLong()));
    const bool accountsSetUp = !taxRates->EndOfRows();
    taxRates->Close();
    if (accountsSetUp || flag) return;

    // Only a series that posts its own vouchers needs the item's accounts.
    const auto& series = doc.SeriesInfo();
    if (!series.GetValue("DocCodeSale").AsAmount().IsZero()) return;
    if (series.GetValue("DocVoucherFactor").AsAmount().IsZero()) return;
    if (series.GetValue("DocProperties").AsText().find("*AutoPostingKivra*") == std::string::npos)
        return;

    frmDocAutoPostingItem setUp(form.Context(), item.GetValue("qmcd").AsInt(),
                                series.GetValue("SeriesID").AsInt());
    form.Context().Ui().ShowModal(setUp);
}

} // namespace kivra
