#include "frmDocAutoPostingItem.h"

#include "LedgerHeads.h"

#include "host/HostSelectDialog.h"
#include "host/Text.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace kivra {
namespace {

// What the sub-series name and the series' own settings say about its documents.
struct SeriesKind {
    bool interstate = false;
    bool againstHForm = false;
    bool vatBill = false;
};

struct Proposal {
    std::string account; // the sale or purchase account
    std::string taxAccount;
    std::optional<std::int32_t> vatClass; // none: the user picks it
};

constexpr std::int32_t kClassPurchaseInterstate = 301;
constexpr std::int32_t kClassPurchaseInterstateTaxFree = 302;
constexpr std::int32_t kClassPurchaseInterstateHForm = 310;
constexpr std::int32_t kClassPurchaseLocalHForm = 307;
constexpr std::int32_t kClassSaleInterstateTaxFree = 101;
constexpr std::int32_t kClassSaleInterstateHForm = 104;

// Interstate sales are taxed at the series' central rate, each with a class of its own.
std::int32_t CentralSaleClass(qx::Amount seriesRate) {
    struct RateClass {
        qx::Amount rate;
        std::int32_t vatClass;
    };
    static const RateClass kClasses[] = {
        {qx::Amount::FromInt(2), 105},
        {qx::Amount::FromInt(4), 106},
        {*qx::Amount::Parse("5.5"), 805},
        {*qx::Amount::Parse("13.75"), 806},
    };
    auto it = std::ranges::find(kClasses, seriesRate, &RateClass::rate);
    return it == std::end(kClasses) ? 0 : it->vatClass;
}

Proposal ProposePurchase(const std::string& item, const std::string& subSeries, SeriesKind kind,
                         const VatRate& rate) {
    Proposal proposal{"PURCHASE " + item, {}, {}};
    if (qx::ContainsNoCase(subSeries, "Local")) {
        proposal.account += " LOCAL";
    } else if (qx::ContainsNoCase(subSeries, "Out")) {
        // Goods bought outside always come on a VAT bill, whatever the series says.
        proposal.account += " OUTSIDE";
        kind.vatBill = true;
    }
    const bool taxed = !rate.percent.IsZero();
    if (kind.interstate) {
        proposal.account += " INTERSTATE";
        if (kind.againstHForm) {
            proposal.vatClass = kClassPurchaseInterstateHForm;
            proposal.account += " AGST. H-FORM";
        } else if (!taxed) {
            proposal.vatClass = kClassPurchaseInterstateTaxFree;
            proposal.account += " TAX-FREE";
        } else {
            proposal.vatClass = kClassPurchaseInterstate;
        }
    } else if (kind.vatBill) {
        proposal.vatClass = rate.purchaseBillClass;
        if (taxed) {
            proposal.account += " VAT " + rate.percent.ToPlainString();
            proposal.taxAccount = "INPUT VAT";
        }
    } else if (kind.againstHForm) {
        proposal.vatClass = kClassPurchaseLocalHForm;
        proposal.account += " AGST. H-FORM";
    } else {
        proposal.vatClass = IsFarmProduce(item) ? kClassPurchaseFarmProduce
                            : taxed             ? kClassPurchaseTaxable
                                                : kClassPurchaseTaxFree;
    }
    return proposal;
}

Proposal ProposeSale(const std::string& item, SeriesKind kind, qx::Amount seriesRate,
                     const VatRate& rate) {
    Proposal proposal{"SALES " + item, kind.interstate ? "C.S.T." : "OUTPUT VAT", {}};
    if (kind.interstate) {
        if (kind.againstHForm) {
            proposal.account += " I/S AGST. H-FORM";
            proposal.vatClass = kClassSaleInterstateHForm;
        } else if (!seriesRate.IsZero()) {
            proposal.account += " INTERSTATE " + seriesRate.ToPlainString();
            proposal.vatClass = CentralSaleClass(seriesRate);
        } else {
            proposal.account += " INTERSTATE TAX-FREE";
            proposal.vatClass = kClassSaleInterstateTaxFree;
        }
    } else if (!kind.againstHForm) {
        proposal.vatClass = rate.salesClass;
        if (rate.percent.IsZero())
            proposal.account += " TAX-FREE";
        else
            proposal.account +=
                (kind.vatBill ? " VAT " : " RETAIL ") + rate.percent.ToPlainString();
    } else {
        proposal.account += " LOCAL AGST. H-FORM";
    }
    return proposal;
}

// The class of a tax account follows the tax its name says: "C.S.T.", "INPUT VAT", others.
// The name is read as typed, letter case included: "Input Vat" is not INPUT VAT.
std::int32_t TaxAccountClass(const std::string& name) {
    std::string bare;
    std::ranges::copy_if(name, std::back_inserter(bare),
                         [](char c) { return c != ' ' && c != '.'; });
    if (bare == "CST") return 601;
    if (bare == "INPUTVAT") return 602;
    return 603;
}

} // namespace

frmDocAutoPostingItem::frmDocAutoPostingItem(ModuleContext& context, std::int32_t itemCode,
                                             std::int32_t seriesId)
    : Screen("frmDocAutoPostingItem", "Auto Posting Accounts of Item"), context_(context),
      itemCode_(itemCode), seriesId_(seriesId), itemLabel_(Add<qx::ui::Label>("lblItem")),
      categoryLabel_(Add<qx::ui::Label>("lblVATCategory")),
      seriesLabel_(Add<qx::ui::Label>("lblSeries")),
      saleAc_(Add<qx::ui::TextBox>("txpSaleAc", "Sale A/c")),
      taxAc_(Add<qx::ui::TextBox>("txpTaxAc", "Tax A/c")),
      tradingAc_(Add<qx::ui::TextBox>("txpTradingAc", "Trading A/c")),
      vatClassBox_(Add<qx::ui::TextBox>("txpVATClass", "VAT Class")) {
    itemLabel_.Heading = true;
    saleAc_.OnLookup = [this] { PickAccount(saleAc_, "Select Account", "74,72,64,62"); };
    taxAc_.OnLookup = [this] { PickAccount(taxAc_, "Select Tax Account", "59,190,89,99"); };
    tradingAc_.OnLookup = [this] { PickAccount(tradingAc_, "Select Trading Account", "195"); };
    vatClassBox_.OnLookup = [this] { PickVatClass(); };
    auto& autoGen = Add<qx::ui::Button>("btnAutoGen", "Auto Generate");
    autoGen.OnClick = [this] { AutoGenerate(); };
    auto& okCancel = Add<qx::ui::StdButtons>("btnOKCancel");
    okCancel.OnClick = [this](int index) {
        if (index == 0)
            Save();
        else
            Close(false);
    };

    BeginGroup();
    AddRow({&itemLabel_, &categoryLabel_});
    AddRow({&seriesLabel_});
    BeginGroup("Accounts");
    AddRow({&saleAc_});
    AddRow({&taxAc_});
    AddRow({&tradingAc_});
    AddRow({&vatClassBox_});
    BeginGroup();
    AddRow({&autoGen, &okCancel});
}

void frmDocAutoPostingItem::Load() {
    auto& db = context_.Db();
    auto item = db.OpenRecordset("SELECT A.*,V.CTGNAME AS QVATCTG FROM STKMASTER A INNER JOIN "
                                 "CTGMASTER V ON A.QVATCTGNO=V.CTGNO WHERE A.QMCD=" +
                                 std::to_string(itemCode_));
    if (!item->EndOfRows()) {
        itemName_ = item->Field("QMHD").AsText();
        vatCategory_ = item->Field("QVATCtgNo").AsInt();
        categoryLabel_.SetText(item->Field("QVATCTG").AsText());
        // An item whose rates were never saved has no rate code yet: tax-free.
        if (item->HasField("qVATRateCode")) vatRateCode_ = item->Field("qVATRateCode").AsInt();
    }
    item->Close();
    itemLabel_.SetText(itemName_);

    auto series = db.OpenRecordset("SELECT SERIESNAME,SUBSERIESNAME,DOCTAXRATE,DOCVATBILL,DOCTYPE "
                                   "FROM DOCCONFIG WHERE SERIESID=" +
                                   std::to_string(seriesId_));
    if (!series->EndOfRows()) {
        subSeriesName_ = series->Field("SUBSERIESNAME").AsText();
        seriesTaxRate_ = series->Field("DOCTAXRATE").AsAmount();
        seriesVatBill_ = series->Field("DOCVATBILL").AsBool();
        purchaseSeries_ = series->Field("DOCTYPE").AsText() == "Purchase";
        seriesLabel_.SetText(series->Field("SERIESNAME").AsText() + " - " + subSeriesName_);
    }
    series->Close();
    saleAc_.SetCaption(purchaseSeries_ ? "Purchase A/c" : "Sale A/c");

    ShowStoredAccounts();
}

void frmDocAutoPostingItem::FirstActivate() { saleAc_.SetFocus(); }

// What was saved for this series and category before, so that the user sees it and changes
// only what he must.
void frmDocAutoPostingItem::ShowStoredAccounts() {
    auto& db = context_.Db();
    auto stored = db.OpenRecordset(
        "SELECT * FROM VATCATEGORYTAXRATES WHERE SERIESID=" + std::to_string(seriesId_) +
        " AND VATCTGNO=" + std::to_string(vatCategory_));
    if (!stored->EndOfRows()) {
        auto headName = [&](const qx::Value& code) {
            return db.LookupValue("FAMASTER", "MHD", "MCD=" + std::to_string(code.AsInt()))
                .AsText();
        };
        const auto sale = stored->Field("SalePostingCode");
        saleAc_.SetText(headName(sale));
        taxAc_.SetText(headName(stored->Field("TaxPostingCode")));
        tradingAc_.SetText(
            headName(db.LookupValue("FAMASTER", "mTrdNo", "MCD=" + std::to_string(sale.AsInt()))));
        ShowVatClass(stored->Field("SaleVATClassCode").AsInt());
    }
    stored->Close();
}

void frmDocAutoPostingItem::AutoGenerate() {
    SeriesKind kind;
    kind.interstate = qx::ContainsNoCase(subSeriesName_, "Interstate") ||
                      qx::ContainsNoCase(subSeriesName_, " Centre") ||
                      qx::ContainsNoCase(subSeriesName_, " Center");
    kind.againstHForm = qx::ContainsNoCase(subSeriesName_, "H-Form");
    kind.vatBill = seriesVatBill_ || qx::ContainsNoCase(subSeriesName_, " VAT ");
    // A rate code the list does not know counts as tax-free.
    const VatRate* known = FindVatRate(vatRateCode_);
    const VatRate& rate = known ? *known : VatRates().front();

    const auto proposal = purchaseSeries_ ? ProposePurchase(itemName_, subSeriesName_, kind, rate)
                                          : ProposeSale(itemName_, kind, seriesTaxRate_, rate);
    saleAc_.SetText(proposal.account);
    taxAc_.SetText(proposal.taxAccount);
    tradingAc_.SetText("TRADING A/C: " + itemName_);
    if (proposal.vatClass) ShowVatClass(*proposal.vatClass);
}

void frmDocAutoPostingItem::ShowVatClass(std::int32_t vatClass) {
    vatClass_ = vatClass;
    vatClassBox_.SetText(
        context_.Db()
            .LookupValue("VATCLASSES", "VATCLASSNAME", "VATCLASSNO=" + std::to_string(vatClass))
            .AsText());
}

void frmDocAutoPostingItem::PickAccount(qx::ui::TextBox& box, const std::string& caption,
                                        const std::string& groups) {
    auto list = context_.Ui().CreateSelectDialog();
    list->SetCaption(caption);
    list->FillFromQuery(
        context_.Db(), "SELECT MHD,MCD FROM FAMASTER WHERE MBSHNO IN (" + groups + ") ORDER BY MHD",
        "MHD", "MCD");
    if (list->Show()) box.SetText(list->SelectedText());
}

void frmDocAutoPostingItem::PickVatClass() {
    auto list = context_.Ui().CreateSelectDialog();
    list->SetCaption("Select VAT Class");
    list->FillFromQuery(
        context_.Db(),
        "SELECT VATCLASSNAME,VATCLASSNO,PRESSHEAD FROM VATCLASSES ORDER BY PRESSHEAD",
        "VATCLASSNAME", "VATCLASSNO");
    if (!list->Show()) return;
    vatClass_ = static_cast<std::int32_t>(list->SelectedValue());
    vatClassBox_.SetText(list->SelectedText());
}

void frmDocAutoPostingItem::Save() {
    auto& db = context_.Db();
    const auto taxName = qx::Trim(taxAc_.Text());
    const std::int32_t taxClass = taxName.empty() ? 0 : TaxAccountClass(taxName);

    LedgerHeads heads(db);
    // A box left empty names no account: none is made, and its code is stored as 0.
    auto account = [&](const qx::ui::TextBox& box, std::int32_t group, std::int32_t vatClass,
                       std::int32_t link) {
        const auto name = qx::Trim(box.Text());
        return name.empty() ? 0 : heads.Ensure(name, group, vatClass, link);
    };
    const auto trading = account(tradingAc_, kGroupTrading, 0, 0);
    const auto sale =
        account(saleAc_, purchaseSeries_ ? kGroupPurchase : kGroupSales, vatClass_, trading);
    const auto tax =
        account(taxAc_, purchaseSeries_ ? kGroupTaxes : kGroupPayable, taxClass, trading);

    // Whether the series and category have their row is decided under the lock that writes it.
    qx::Transaction unit(db);
    auto row = db.OpenRecordset(
        "SELECT * FROM VATCATEGORYTAXRATES WHERE SERIESID=" + std::to_string(seriesId_) +
        " AND VATCTGNO=" + std::to_string(vatCategory_));
    if (row->EndOfRows()) {
        row->AddNew();
        row->SetField("SeriesID", seriesId_);
        row->SetField("VATCtgNo", vatCategory_);
    }
    row->SetField("SalePostingCode", sale);
    row->SetField("SaleVATClassCode", vatClass_);
    row->SetField("TaxPostingCode", tax);
    row->SetField("TaxVATClassCode", taxClass);
    row->Update();
    row->Close();
    unit.Commit();
    Close(true);
}

} // namespace kivra
