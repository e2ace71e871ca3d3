// The item charge-rates screen as the host opens it from its item master, and the ledger
// heads it creates.
#include "ItemMastersFixture.h"

#include "kivra/masters/LedgerHeads.h"
#include "kivra/masters/frmKivraRates.h"

#include "host/Text.h"

using namespace qx;

namespace {

// In the order the rates are entered and saved.
const std::vector<std::string> kRateFields = {
    "qLabourJF",  "qLabourIF",   "qDamiIF", "qStitchIF",   "qDharamIF", "qDami",
    "qMarketFee", "qRDF",        "qLabour", "qStitch",     "qLoading",  "qDamping",
    "qPIDF",      "qCommission", "qPurTax", "qCancerFund", "qLoadingIF"};

class KivraRatesTest : public test::ItemMastersFixture {
protected:
    void SetUp() override {
        ItemMastersFixture::SetUp();
        AddItem(1, "WHEAT");
    }

    bool EditRates(int code, const std::string& name, std::function<void(ui::Screen&)> user) {
        auto screen = std::dynamic_pointer_cast<kivra::frmKivraRates>(module.GetForm("KivraRates"));
        screen->Properties().SetValue("ItemCode", code);
        screen->Properties().SetValue("ItemName", name);
        return ShowModal(*screen, std::move(user));
    }

    bool SaveRates(int code, const std::string& name, const std::string& vatRate, bool heads) {
        return EditRates(code, name, [&](ui::Screen& screen) {
            EXPECT_TRUE(screen.Get<ui::ComboBox>("cmbVATRate").Choose(vatRate));
            if (heads) screen.Get<ui::CheckBox>("chkCreateAc").Click();
            screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
        });
    }

    static ui::TextBox& Rate(ui::Screen& screen, const std::string& field) {
        for (const auto& control : screen.Controls())
            if (auto* box = dynamic_cast<ui::TextBox*>(control.get());
                box && box->ExtVal().GetValue("Field").AsText() == field)
                return *box;
        throw std::invalid_argument("no rate input for " + field);
    }

    std::string Stored(const std::string& field) {
        return Db().LookupValue("STKMASTER", field, "QMCD=1").AsText();
    }
};

TEST_F(KivraRatesTest, OpensBeforeTheRateColumnsExistAndSavesNothingWithoutAVatRate) {
    std::vector<std::string> entryOrder;
    EXPECT_FALSE(EditRates(1, "WHEAT", [&](ui::Screen& screen) {
        EXPECT_EQ(screen.Get<ui::Label>("lblVATCategory").Text(), "FOOD GRAINS");
        EXPECT_EQ(screen.Get<ui::ComboBox>("cmbVATRate").SelectedIndex(), -1);
        for (const auto& field : kRateFields) EXPECT_EQ(Rate(screen, field).Text(), "") << field;

        // Enter walks the rates, then goes on to the VAT rate.
        while (auto* box = dynamic_cast<ui::TextBox*>(screen.Focused())) {
            entryOrder.push_back(box->ExtVal().GetValue("Field").AsText());
            if (entryOrder.size() > kRateFields.size()) break;
            screen.KeyDown({ui::Key::Enter});
        }
        EXPECT_EQ(screen.Focused(), screen.Find("cmbVATRate"));
        Rate(screen, "qMarketFee").Type("2");
        screen.Get<ui::StdButtons>("btnOKCancel").Click(1);
    }));
    EXPECT_EQ(entryOrder, kRateFields);
    EXPECT_FALSE(Db().FieldExists("qLabourJF", "STKMASTER")) << "Cancel changes nothing";

    // Without a VAT rate nothing is saved and the screen stays open.
    EXPECT_TRUE(EditRates(1, "WHEAT", [&](ui::Screen& screen) {
        Rate(screen, "qMarketFee").Type("2");
        screen.Get<ui::CheckBox>("chkCreateAc").Click();
        screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
        EXPECT_EQ(Messages(), std::vector<std::string>{"Select VAT rate."});
        EXPECT_EQ(screen.Focused(), screen.Find("cmbVATRate"));
        EXPECT_EQ(Stored("qMarketFee"), "0") << "the columns are made, the rate is not saved";
        EXPECT_EQ(Count("FAMASTER"), 1);
        screen.Get<ui::ComboBox>("cmbVATRate").Choose("VAT 4%");
        screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
    }));
    EXPECT_EQ(Stored("qMarketFee"), "2");
}

TEST_F(KivraRatesTest, SavesEveryRateWithEmptyOnesAsZeroAndShowsThemAgain) {
    // A figure of its own for each rate; qDami left empty, qMarketFee only a point.
    auto typed = [](std::size_t i) {
        return kRateFields[i] == "qDami"        ? ""
               : kRateFields[i] == "qMarketFee" ? "."
                                                : std::to_string(i + 1) + ".25";
    };
    auto stored = [&](std::size_t i) { return typed(i).size() > 1 ? typed(i) : "0"; };
    auto& checked = module.Context()->rateColumnsChecked;
    EXPECT_FALSE(checked);
    ASSERT_TRUE(EditRates(1, "WHEAT", [&](ui::Screen& screen) {
        for (std::size_t i = 0; i < kRateFields.size(); ++i)
            Rate(screen, kRateFields[i]).Type(typed(i));
        screen.Get<ui::ComboBox>("cmbVATRate").Choose("VAT 12.5%");
        screen.Get<ui::StdButtons>("btnOKCancel").Click(0);
    }));
    for (std::size_t i = 0; i < kRateFields.size(); ++i)
        EXPECT_EQ(Stored(kRateFields[i]), stored(i)) << kRateFields[i];
    EXPECT_EQ(Stored("qVATRateCode"), "1125");
    EXPECT_EQ(Count("FAMASTER"), 1) << "no heads unless asked for";
    EXPECT_TRUE(checked) << "set by the first OK";

    EditRates(1, "WHEAT", [&](ui::Screen& screen) {
        for (std::size_t i = 0; i < kRateFields.size(); ++i)
            EXPECT_EQ(Rate(screen, kRateFields[i]).Text(), stored(i)) << kRateFields[i];
        EXPECT_EQ(screen.Get<ui::ComboBox>("cmbVATRate").Selected()->text, "VAT 12.5%");
    });

    // The next company is checked again, and gets its columns.
    app.OpenCompany(test::MakeCompany(folder, "", {}, "other.kdb"));
    EXPECT_FALSE(checked);
    AddItem(1, "PADDY");
    ASSERT_TRUE(SaveRates(1, "PADDY", "Tax-Free", false));
    EXPECT_EQ(Stored("qVATRateCode"), "100");
}

TEST_F(KivraRatesTest, NineteenHeadsTakeConsecutiveCodesGroupsClassesAndLinksOnce) {
    ASSERT_TRUE(SaveRates(1, "WHEAT", "VAT 4%", true));
    struct Expected {
        std::string name;
        long group, vatClass;
        bool linked;
        std::string salePurchase;
    };
    const std::vector<Expected> expected = {
        {"TRADING A/C: WHEAT", 195, 0, false, ""},     {"STOCK: WHEAT", 60, 0, true, ""},
        {"SALES WHEAT", 72, 130, true, "S"},           {"PURCHASE WHEAT", 62, 390, true, "P"},
        {"DAMI : WHEAT", 66, 509, true, ""},           {"LABOUR : WHEAT", 66, 509, true, ""},
        {"MANDI EXPENSES : WHEAT", 66, 509, true, ""}, {"MARKET FEE : WHEAT", 66, 510, true, ""},
        {"R.D.F. : WHEAT", 66, 511, true, ""},         {"P.I.D.F. : WHEAT", 66, 512, true, ""},
        {"PURCHASE TAX : WHEAT", 59, 610, true, ""},   {"WHEAT MAL KHATA", 66, 0, true, ""},
        {"LABOUR (SELF) : WHEAT", 66, 0, true, ""},    {"LABOUR PAYABLE", 190, 0, false, ""},
        {"MARKET FEE PAYABLE", 190, 0, false, ""},     {"R.D.F. PAYABLE", 190, 0, false, ""},
        {"P.I.D.F. PAYABLE", 190, 0, false, ""},       {"PURCHASE TAX PAYABLE", 190, 0, false, ""},
        {"CANCER FUND PAYABLE", 190, 0, false, ""},
    };
    auto heads = Heads();
    ASSERT_EQ(heads.size(), expected.size() + 1) << "the nineteen and CASH";
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].name);
        const auto& head = heads[expected[i].name];
        EXPECT_EQ(head.code, 501 + static_cast<long>(i)) << "after the highest code in use";
        EXPECT_EQ(head.group, expected[i].group);
        EXPECT_EQ(head.tradingLink, expected[i].linked ? 501 : 0);
        EXPECT_EQ(head.salePurchase, expected[i].salePurchase);
        EXPECT_EQ(ClassesOf(head.code), expected[i].vatClass
                                            ? std::vector<long>{expected[i].vatClass}
                                            : std::vector<long>{});
    }
    EXPECT_EQ(Count("FAMASTER", "MLGRNO=7 AND MGRPNO=4"), 19);
    EXPECT_EQ(Count("FAHEADS", "SUBCODE=0"), 19);
    EXPECT_EQ(Db().LookupValue("FAHEADS", "PRESSHEAD", "CODE=501").AsText(), "Trading A/c: Wheat");

    // Saved again, the heads are only regrouped and given missing classes. The user moved a
    // head by hand, and a class of another was lost.
    Db().ExecuteSql("UPDATE FAMASTER SET MBSHNO=66 WHERE MHD='STOCK: WHEAT'");
    Db().ExecuteSql("DELETE FROM VATMASTER WHERE VATCODE=510");

    ASSERT_TRUE(SaveRates(1, "WHEAT", "VAT 5%", true));
    auto after = Heads();
    EXPECT_EQ(after.size(), heads.size());
    EXPECT_EQ(Count("FAHEADS"), 19);
    EXPECT_EQ(after["STOCK: WHEAT"].group, 60);
    EXPECT_EQ(ClassesOf(after["MARKET FEE : WHEAT"].code), std::vector<long>{510});
    EXPECT_EQ(ClassesOf(after["SALES WHEAT"].code), (std::vector<long>{130, 132}));

    // Another item shares the payable heads; its own heads continue the codes.
    AddItem(2, "PADDY PR-126");
    ASSERT_TRUE(SaveRates(2, "PADDY PR-126", "VAT 5%", true));
    after = Heads();
    EXPECT_EQ(after.size(), 1u + 19u + 13u);
    EXPECT_EQ(after["TRADING A/C: PADDY PR-126"].code, 520);
    EXPECT_EQ(after["LABOUR (SELF) : PADDY PR-126"].code, 532);
    EXPECT_EQ(after["STOCK: PADDY PR-126"].tradingLink, 520);
}

// Another program (a second desk) adds an account while the heads are made: each head takes a
// code that is free when it is written.
TEST_F(KivraRatesTest, EachHeadTakesACodeFreeWhenItIsWritten) {
    kivra::LedgerHeads heads(Db());
    const auto trading = heads.Ensure("TRADING A/C: WHEAT", kivra::kGroupTrading, 0, 0);
    desk::Session other;
    other.Open(path);
    other.Database().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (" +
                                std::to_string(trading + 1) + ", 'GURMEET SINGH', '')");
    EXPECT_EQ(heads.Ensure("STOCK: WHEAT", kivra::kGroupStock, 0, trading), trading + 2);
    EXPECT_EQ(Heads()["GURMEET SINGH"].code, trading + 1);
}

// Names are kept in upper case and found again, a quote included; the commodity is the name as
// typed, letter case included.
TEST_F(KivraRatesTest, PurchaseClassFollowsTheCommodityUnlessTaxFreeAndNamesAreFoundAgain) {
    struct Case {
        std::string item, vatRate;
        long salesClass, purchaseClass;
    };
    int code = 10;
    for (const auto& c : std::vector<Case>{{"WHEAT DARA", "VAT 4%", 130, 390},
                                           {"WHEATS", "VAT 4%", 130, 308},
                                           {"Wheat Desi", "VAT 4%", 130, 308},
                                           {"COTTON SEED", "VAT 8%", 137, 390},
                                           {"PADDY", "Tax-Free", 111, 305}}) {
        SCOPED_TRACE(c.item);
        AddItem(++code, c.item);
        ASSERT_TRUE(SaveRates(code, c.item, c.vatRate, true));
        auto heads = Heads(); // named in upper case
        EXPECT_EQ(ClassesOf(heads["SALES " + UpperCase(c.item)].code),
                  std::vector<long>{c.salesClass});
        EXPECT_EQ(ClassesOf(heads["PURCHASE " + UpperCase(c.item)].code),
                  std::vector<long>{c.purchaseClass});
    }
    AddItem(3, "D'Souza Basmati");
    ASSERT_TRUE(SaveRates(3, "D'Souza Basmati", "VAT 5%", true));
    const auto heads = Heads().size();
    ASSERT_TRUE(SaveRates(3, "D'Souza Basmati", "VAT 5%", true));
    EXPECT_EQ(Heads().size(), heads);
    EXPECT_EQ(Count("FAMASTER", "MHD='D''SOUZA BASMATI MAL KHATA'"), 1) << "kept in upper case";
    EXPECT_EQ(Db().LookupValue("FAHEADS", "PRESSHEAD", "HEAD='SALES D''SOUZA BASMATI'").AsText(),
              "Sales D'souza Basmati");
}

} // namespace
