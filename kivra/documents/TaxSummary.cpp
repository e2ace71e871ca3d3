#include "TaxSummary.h"

#include <algorithm>
#include <iterator>

namespace kivra {
namespace {

using qx::Amount;

// The levies of the tax summary, with the item-master column of each rate.
struct Levy {
    const char* caption;
    const char* rateColumn;
};

constexpr Levy kLevies[] = {
    {"M.Fee", "QMARKETFEE"},
    {"R.D.F.", "QRDF"},
    {"Cancer Fund", "QCANCERFUND"},
    {"P.I.D.F.", "QPIDF"},
};
constexpr Levy kPurchaseTax = {"Purchase Tax", "QPURTAX"};
constexpr std::size_t kPidfLevy = 3;

// A J-Form bears the levies only on what the agent bought himself; a local purchase on all of
// it.
Amount ChargedOn(MandiForm& form) {
    Amount base;
    Skipping([&] {
        if (!form.mode.jForm) {
            base = form.Doc().DocumentAmount();
            return;
        }
        const ItemColumns& c = form.columns;
        for (int row = 1; row < form.ItemGrid().Rows(); ++row) {
            if (form.Number(row, c.stkCode).IsZero()) continue;
            if (form.Cell(row, c.customerId) == "SELF") base += form.Number(row, c.amount);
        }
    });
    return base;
}

void SetUpSummaryGrid(qx::ui::Grid& summary) {
    summary.SetRedraw(false);
    summary.ClearColumns();
    summary.SetRows(1);
    const int width = summary.Width() > 0 ? summary.Width() : 6000;
    summary.AddColumn("Tax Type", width * 30 / 100, qx::Align::Left);
    summary.AddColumn("Rate %", width * 20 / 100, qx::Align::Right);
    summary.AddColumn("Charged on", width * 25 / 100, qx::Align::Right);
    summary.AddColumn("Tax Amount", width * 25 / 100, qx::Align::Right);
}

} // namespace

void ShowTaxSummary(MandiForm& form) {
    if (!form.mode.localPurchase && !form.mode.jForm) return;
    const std::int32_t itemCode = form.FirstLineItemCode();
    if (itemCode == 0) return;

    // From here a failing step is skipped and the rest of the summary still shows.
    std::unique_ptr<qx::Recordset> item;
    Skipping([&] {
        item = form.Doc().Database().OpenRecordset(
            "SELECT QMARKETFEE,QRDF,QPIDF,QPURTAX,QCANCERFUND FROM STKMASTER WHERE QMCD=" +
            std::to_string(itemCode));
    });
    auto rateOf = [&](const char* column) {
        std::optional<Amount> rate;
        Skipping([&] {
            if (item && !item->EndOfRows()) rate = item->Field(column).AsAmount();
        });
        return rate;
    };

    const Amount base = ChargedOn(form);
    auto& screen = form.Form();
    if (form.mode.jForm) {
        const bool show = !base.IsZero();
        Skipping([&] {
            screen.SetShowGridinfo(show);
            if (screen.PicGridInfo().Visible() != show) screen.PicGridInfo().SetVisible(show);
        });
        if (!show) return;
    }

    auto& summary = screen.GridInfo();
    Skipping([&] { SetUpSummaryGrid(summary); });
    auto writeLevy = [&](int row, const Levy& levy, Amount chargedOn) {
        std::optional<Amount> taxAmount;
        Skipping([&] {
            summary.SetRows(std::max(summary.Rows(), row + 1));
            summary.SetTextMatrix(row, 0, levy.caption);
            summary.SetTextMatrix(row, 2, qx::FormatAmount(chargedOn, "c2"));
            const auto rate = rateOf(levy.rateColumn);
            if (!rate) return;
            taxAmount = qx::RoundAmount(chargedOn * *rate / Amount::FromInt(100), 2);
            summary.SetTextMatrix(row, 1, rate->ToPlainString());
            summary.SetTextMatrix(row, 3, qx::FormatAmount(*taxAmount, "c2"));
        });
        return taxAmount.value_or(Amount());
    };
    Amount pidf;
    for (std::size_t k = 0; k < std::size(kLevies); ++k) {
        const Amount taxAmount = writeLevy(static_cast<int>(k) + 1, kLevies[k], base);
        if (k == kPidfLevy) pidf = taxAmount;
    }
    // Purchase tax is levied on the P.I.D.F. as well.
    bool gst = true;
    Skipping([&] { gst = form.IsGSTApplicable(); });
    if (!gst) writeLevy(static_cast<int>(std::size(kLevies)) + 1, kPurchaseTax, base + pidf);
    Skipping([&] { summary.SetRedraw(true); });
    Skipping([&] {
        if (item) item->Close();
    });
}

} // namespace kivra
