#include "frmKivraRates.h"

namespace kivra {
namespace {

enum RateGroup { kJForm, kIForm, kSalePurchase, kTaxRates };

// Group captions, as the screen has always shown them (two leading blanks included).
constexpr const char* kRateGroupCaptions[] = {"  J-Form", "  I-Form", "  Sale / Purchase",
                                              "  Tax Rates"};

struct RateInput {
    const char* caption;
    const char* field; // column of STKMASTER
    RateGroup group;
};

// In the order the rates are entered and saved; the groups only place them on the screen.
constexpr RateInput kRateInputs[] = {
    {"Labour Per Bag", "qLabourJF", kJForm},
    {"Labour Per Bag", "qLabourIF", kIForm},
    {"Dami %", "qDamiIF", kIForm},
    {"Stitching Per Bag", "qStitchIF", kIForm},
    {"Dharam %", "qDharamIF", kIForm},
    {"Dami %", "qDami", kSalePurchase},
    {"Market Fee %", "qMarketFee", kTaxRates},
    {"R.D.F. %", "qRDF", kTaxRates},
    {"Labour Per Bag", "qLabour", kSalePurchase},
    {"Stitching Per Bag", "qStitch", kSalePurchase},
    {"Loading Per Bag", "qLoading", kSalePurchase},
    {"Damping Per Bag", "qDamping", kSalePurchase},
    {"P.I.D.F. %", "qPIDF", kTaxRates},
    {"Commission %", "qCommission", kSalePurchase},
    {"Pur. Tax %", "qPurTax", kTaxRates},
    {"Cancer Fund %", "qCancerFund", kTaxRates},
    {"Loading Per Bag", "qLoadingIF", kIForm},
};

// The company-wide heads the charges of every item are posted to.
constexpr const char* kPayableHeads[] = {"LABOUR PAYABLE",       "MARKET FEE PAYABLE",
                                         "R.D.F. PAYABLE",       "P.I.D.F. PAYABLE",
                                         "PURCHASE TAX PAYABLE", "CANCER FUND PAYABLE"};

// VAT classes of the charge heads.
constexpr std::int32_t kClassMandiCharges = 509;
constexpr std::int32_t kClassMarketFee = 510;
constexpr std::int32_t kClassRdf = 511;
constexpr std::int32_t kClassPidf = 512;
constexpr std::int32_t kClassPurchaseTax = 610;

std::string FieldOf(qx::ui::TextBox& box) { return box.ExtVal().GetValue("Field").AsText(); }

} // namespace

frmKivraRates::frmKivraRates(ModuleContext& context)
    : Screen("frmKivraRates", "Kivra Rates"), context_(context),
      itemLabel_(Add<qx::ui::Label>("lblItemName")), rates_(AddRateInputs()),
      vatRate_(Add<qx::ui::ComboBox>("cmbVATRate", "VAT Rate")),
      vatCategory_(Add<qx::ui::Label>("lblVATCategory")),
      createAccounts_(
          Add<qx::ui::CheckBox>("chkCreateAc", "Create Sale / Purchase Accounts for this item ")) {
    itemLabel_.Heading = true;
    auto& okCancel = Add<qx::ui::StdButtons>("btnOKCancel");
    okCancel.OnClick = [this](int index) {
        if (index == 0)
            Save();
        else
            Close(false);
    };

    BeginGroup();
    AddRow({&itemLabel_});
    for (int group = kJForm; group <= kTaxRates; ++group) {
        // Two groups to a line: J-Form beside I-Form, sales beside taxes.
        BeginGroup(kRateGroupCaptions[group], group % 2 == 1);
        for (std::size_t i = 0; i < rates_.size(); ++i)
            if (kRateInputs[i].group == group) AddRow({rates_[i]});
    }
    BeginGroup();
    AddRow({&vatRate_, &vatCategory_});
    AddRow({&createAccounts_});
    AddRow({&okCancel});
}

std::vector<qx::ui::TextBox*> frmKivraRates::AddRateInputs() {
    std::vector<qx::ui::TextBox*> boxes;
    for (const auto& input : kRateInputs) {
        auto& box = Add<qx::ui::TextBox>(std::string("txp") + (input.field + 1), input.caption);
        box.NumericOnly = true;
        box.ExtVal().SetValue("Field", input.field);
        boxes.push_back(&box);
    }
    return boxes;
}

void frmKivraRates::Load() {
    itemCode_ = Properties().GetValue("ItemCode").AsInt();
    itemName_ = Properties().GetValue("ItemName").AsText();
    itemLabel_.SetText(itemName_);
    for (const auto& rate : VatRates()) vatRate_.AddItem(rate.name, rate.code);

    auto& db = context_.Db();
    auto item = db.OpenRecordset("Select * from StkMaster where qmcd=" + std::to_string(itemCode_));
    if (item->EndOfRows()) return;
    vatCategory_.SetText(db.LookupValue("CTGMASTER", "CtgName",
                                        "CtgNo=" + std::to_string(item->Field("qVATCtgNo").AsInt()))
                             .AsText());
    // The rate columns are made sure of only by the first OK in a company, so an item
    // master may not have them yet: such a rate shows empty.
    for (auto* box : rates_)
        if (auto field = FieldOf(*box); item->HasField(field))
            box->SetText(item->Field(field).AsText());
    if (item->HasField("qVATRateCode")) {
        auto code = item->Field("qVATRateCode").AsInt();
        const auto rates = VatRates();
        for (std::size_t i = 0; i < rates.size(); ++i)
            if (rates[i].code == code) vatRate_.SetSelectedIndex(static_cast<int>(i));
    }
    item->Close();
}

void frmKivraRates::FirstActivate() { rates_.front()->SetFocus(); }

void frmKivraRates::Save() {
    auto& db = context_.Db();
    if (!context_.rateColumnsChecked) {
        context_.rateColumnsChecked = true;
        MakeSureOfRateColumns(db);
    }
    if (vatRate_.SelectedIndex() < 0) {
        context_.Util().ShowMessage("Select VAT rate.", "", "W");
        vatRate_.SetFocus();
        return;
    }
    const VatRate& rate = VatRates()[static_cast<std::size_t>(vatRate_.SelectedIndex())];

    auto item = db.OpenRecordset("Select * from StkMaster where qmcd=" + std::to_string(itemCode_));
    for (auto* box : rates_)
        item->SetField(FieldOf(*box), context_.Util().TextToAmount(box->Text()));
    item->SetField("qVATRateCode", rate.code);
    item->Update();
    item->Close();

    if (createAccounts_.Checked()) CreateHeads(db, rate);
    Close(true);
}

void frmKivraRates::MakeSureOfRateColumns(qx::CompanyDb& db) {
    db.AddFields(
        "STKMASTER", "Decimal(8,4)",
        {"qMarketFee", "qRDF", "qPIDF", "qPurTax", "qLabourIF", "qLoadingIF", "qCancerFund"});
    // Columns made just above keep their type; the others are wider.
    for (auto* box : rates_) db.AddFields("STKMASTER", "Decimal(12,4)", {FieldOf(*box)});
    db.AddFields("STKMASTER", "int", {"qVATRateCode"});
}

void frmKivraRates::CreateHeads(qx::CompanyDb& db, const VatRate& rate) {
    const std::int32_t purchaseClass = rate.percent.IsZero()      ? kClassPurchaseTaxFree
                                       : IsFarmProduce(itemName_) ? kClassPurchaseFarmProduce
                                                                  : kClassPurchaseTaxable;
    const std::string& item = itemName_;
    struct ItemHead {
        std::string name;
        std::int32_t group;
        std::int32_t vatClass;
    };
    const ItemHead itemHeads[] = {
        {"STOCK: " + item, kGroupStock, 0},
        {"SALES " + item, kGroupSales, rate.salesClass},
        {"PURCHASE " + item, kGroupPurchase, purchaseClass},
        {"DAMI : " + item, kGroupMandiExpenses, kClassMandiCharges},
        {"LABOUR : " + item, kGroupMandiExpenses, kClassMandiCharges},
        {"MANDI EXPENSES : " + item, kGroupMandiExpenses, kClassMandiCharges},
        {"MARKET FEE : " + item, kGroupMandiExpenses, kClassMarketFee},
        {"R.D.F. : " + item, kGroupMandiExpenses, kClassRdf},
        {"P.I.D.F. : " + item, kGroupMandiExpenses, kClassPidf},
        {"PURCHASE TAX : " + item, kGroupTaxes, kClassPurchaseTax},
        {item + " MAL KHATA", kGroupMandiExpenses, 0},
        {"LABOUR (SELF) : " + item, kGroupMandiExpenses, 0},
    };

    LedgerHeads heads(db);
    const auto trading = heads.Ensure("TRADING A/C: " + item, kGroupTrading, 0, 0);
    for (const auto& head : itemHeads) heads.Ensure(head.name, head.group, head.vatClass, trading);
    for (const char* payable : kPayableHeads) heads.Ensure(payable, kGroupPayable, 0, 0);
}

} // namespace kivra
