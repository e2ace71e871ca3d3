// The module object as the host sees it: objects by name, menus, events, the public
// operations and the schema check.
#include "support/DeskFixture.h"
#include "support/RecordingDb.h"

#include "desk/masters/HostMasters.h"
#include "kivra/documents/CKivraDoc.h"
#include "kivra/masters/frmMarketMaster.h"
#include "kivra/module/frmKivraMain.h"
#include "kivra/module/mKivraModule.h"

using namespace qx;

namespace {

class ModuleTest : public test::DeskFixture {};

const desk::SpecialMenu* KivraMenu(const desk::DeskApp& app) {
    for (const auto& menu : app.SpecialMenus())
        if (menu->Key() == "Kivra") return menu.get();
    return nullptr;
}

TEST_F(ModuleTest, NoSpecialMenuWithoutTheFirmPropertyUntilTheFirmSettingsAskForIt) {
    OpenWithModule("*Retail*");
    EXPECT_EQ(KivraMenu(app), nullptr);
    bool handled = false;
    module.SplMenuCreate(Value(), handled);
    EXPECT_FALSE(handled);

    desk::RegisterHostMasters(app);
    app.ClickMenu("FirmSettings");
    auto& settings = *app.OpenScreens().back();
    settings.Get<ui::TextBox>("txtFirmProperties").Type("*Retail**KivraMenu*");
    settings.Get<ui::StdButtons>("OKCancel").Click(0);
    ASSERT_NE(KivraMenu(app), nullptr) << "the menu comes as soon as the settings are saved";
    EXPECT_EQ(KivraMenu(app)->Buttons().size(), 10u);

    // The property is found whatever its case, and a second build adds no buttons.
    app.DeskSession().SetFirmSetting("FirmProperties", "x*kivramenu*y");
    module.SplMenuCreate(Value(), handled);
    EXPECT_TRUE(handled);
    EXPECT_EQ(KivraMenu(app)->Buttons().size(), 10u);
}

// Menu keys open the module's screens (compared exactly), its menu screen opens only what its
// keys serve, and Terminate unloads what the module opened.
TEST_F(ModuleTest, MenuKeysOpenTheModulesScreensAndLeaveTheRestToTheHost) {
    OpenWithModule();
    bool handled = false;
    module.MainMenuClick("StkMaster", handled);
    EXPECT_FALSE(handled);
    module.MainMenuClick("marketmaster", handled);
    EXPECT_FALSE(handled);
    module.MainMenuClick("MarketMaster", handled);
    EXPECT_TRUE(handled);
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    EXPECT_TRUE(std::dynamic_pointer_cast<kivra::frmMarketMaster>(app.OpenScreens()[0]));
    EXPECT_EQ(app.OpenScreens()[0]->CallingForm, nullptr) << "called from the main window";

    app.ClickMenu("Kivra");
    auto menu = std::dynamic_pointer_cast<kivra::frmKivraMain>(app.OpenScreens().back());
    ASSERT_TRUE(menu);
    auto& cube = menu->Get<ui::ButtonCube>("BtnCube1");
    for (std::size_t button : {4u, 5u, 6u, 8u, 9u}) cube.Click(button);
    menu->KeyDown({ui::Key::Character, U'0'});
    EXPECT_EQ(app.OpenScreens().size(), 2u) << "buttons 5, 6, 7, 9, 10 and the key 0 open nothing";

    module.Terminate();
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_EQ(module.Context(), nullptr);
}

// Objects by name whatever their case, a new one each time; custom events compared exactly;
// several markets only when option 676 reads exactly "Yes".
TEST_F(ModuleTest, HostReachesTheModuleByNamesEventsAndOptions) {
    OpenWithModule("*KivraMenu*", {{676, "yes"}});
    EXPECT_TRUE(std::dynamic_pointer_cast<kivra::CKivraDoc>(module.GetForm("CKIVRADOC")));
    EXPECT_TRUE(std::dynamic_pointer_cast<kivra::CKivraDoc>(module.GetForm("ckivradoc")));
    EXPECT_NE(module.GetForm("ckivradoc"), module.GetForm("ckivradoc")) << "a new one each time";
    EXPECT_EQ(module.GetForm("frmKivraRates"), nullptr);

    EventArgs items;
    app.RaiseCustomEvent("MiscMenuItems", items);
    EXPECT_EQ(items.Items.Items().size(), 2u);
    EventArgs voucher;
    voucher.Parameters.SetValue("TrnType", "SALE");
    app.RaiseCustomEvent("EditVch", voucher);
    EXPECT_FALSE(voucher.Handled);
    EventArgs lowerCase;
    app.RaiseCustomEvent("miscmenuitems", lowerCase);
    EXPECT_TRUE(lowerCase.Items.Items().empty()) << "event names are compared exactly";

    auto* context = module.Context();
    EXPECT_FALSE(kivra::MultipleMarketRqr(*context));
    app.DeskSession().SetOption(676, "Yes");
    EXPECT_TRUE(kivra::MultipleMarketRqr(*context));
    EXPECT_TRUE(module.Invoke("MultipleMarketRqr", {}).AsBool()) << "reachable late-bound";
}

// Late-bound, through its arguments, a market is chosen by the market box of the integration's
// forms.
TEST_F(ModuleTest, SelectingAMarket) {
    OpenWithModule();
    auto& context = *module.Context();
    std::int32_t id = 5;
    std::string name = "unchanged";

    // No market table: the caller carries on with no market.
    EXPECT_TRUE(kivra::SelectMarket(context, id, name, true));
    EXPECT_EQ(id, 0);
    EXPECT_EQ(name, "");
    EXPECT_EQ(Messages(), std::vector<std::string>{"Market Master not found."});
    EXPECT_EQ(frontend.Transcript().back().style, "E");

    kivra::CheckMarketTable(Db());
    Db().ExecuteSql("INSERT INTO MARKETMASTER (MARKETID, MARKETNAME, SERIES) VALUES "
                    "(1, 'SAMRALA', 'SML'), (2, 'ਜਗਰਾਓਂ', 'JGN')");
    EXPECT_EQ(kivra::GetMarketName(context, 2), "ਜਗਰਾਓਂ");
    EXPECT_EQ(kivra::GetMarketName(context, -1), "");
    EXPECT_EQ(kivra::GetMarketSeries(context, 99), "");
    std::vector<Value> byId{Value(1)};
    EXPECT_EQ(module.Invoke("GetMarketSeries", byId).AsText(), "SML");
    EXPECT_THROW(module.Invoke("NoSuchOperation", byId), std::invalid_argument);

    ChooseInNextList("( All Markets )");
    EXPECT_TRUE(kivra::SelectMarket(context, id, name, true));
    EXPECT_EQ(id, kivra::kAllMarkets);
    EXPECT_EQ(name, "( All Markets )");

    // Without "all markets" the list holds the markets alone (integration/SeriesRulesTest).
    ChooseInNextList("SAMRALA");
    EXPECT_TRUE(kivra::SelectMarket(context, id, name, false));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(name, "SAMRALA");

    // Closed without a choice: false, and nothing changes.
    EXPECT_FALSE(kivra::SelectMarket(context, id, name, false));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(name, "SAMRALA");
}

TEST_F(ModuleTest, KivraFieldsAreAddedOnceGroupByGroupEvenWhenOneGroupFails) {
    OpenWithModule();
    test::RecordingDb db(Db());
    db.failAddFieldsOn = "STKMASTER";
    kivra::CheckKivraFields(db);
    EXPECT_EQ(db.added.size(), 5u) << "every group is tried";
    EXPECT_FALSE(Db().FieldExists("qMarketFee", "STKMASTER"));
    for (const char* field : {"DharmadaAmt", "MarketID", "iCancerFundRate", "iCancerFundAmt"})
        EXPECT_TRUE(Db().FieldExists(field, field[0] == 'i' ? "DOCDATA" : "DOCMAIN")) << field;
    db.failAddFieldsOn.clear();
    db.added.clear();
    kivra::CheckKivraFields(db);
    db.added.clear();
    kivra::CheckKivraFields(db);
    for (const auto& call : db.added) EXPECT_EQ(call.back(), ':') << "nothing missing the second time: " << call;
    // Decimal columns keep decimal division (50 kg is half a quintal).
    Db().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, QUANTITY, ADDLESSKGS) VALUES (1, 1, 10, 50)");
    EXPECT_EQ(Db().LookupValue("DOCDATA", "QUANTITY+(ADDLESSKGS/100)", "DOCUMENTID=1").AsAmount(),
              *Amount::Parse("10.5"));
}

// The index behind the form-number check holds whoever writes: the same form of a series, book
// and market twice is refused; forms without a number, and a series without a book box or a
// market (NULL or 0 alike), follow the check's rule.
TEST_F(ModuleTest, AFormNumberCannotBeDoubledWhoeverWritesIt) {
    OpenWithModule();
    kivra::CheckKivraFields(Db());
    int documentId = 0;
    auto save = [&](const std::string& series, const std::string& book, const std::string& form,
                    const std::string& market) {
        ++documentId;
        try {
            Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCSERIESID, DOCNUMBER, "
                            "FORMBOOKNO, FORMNO, MARKETID) VALUES (" +
                            std::to_string(documentId) + ", '" + series + "', 1, " +
                            std::to_string(documentId) + ", " + book + ", " + form + ", " +
                            market + ")");
            return std::string("saved");
        } catch (const DbError& error) {
            return std::string(error.Problem() == DbProblem::Duplicate ? "doubled" : error.what());
        }
    };
    EXPECT_EQ(save("JF", "7", "12", "1"), "saved");
    EXPECT_EQ(save("JF", "7", "12", "1"), "doubled");
    EXPECT_EQ(save("JF", "8", "12", "1"), "saved") << "another book";
    EXPECT_EQ(save("JF", "7", "12", "2"), "saved") << "another market";
    EXPECT_EQ(save("IF", "7", "12", "1"), "saved") << "another series";
    EXPECT_EQ(save("PL", "NULL", "41", "NULL"), "saved");
    EXPECT_EQ(save("PL", "0", "41", "0"), "doubled") << "no book and no market are one";
    EXPECT_EQ(save("JF", "7", "0", "1"), "saved");
    EXPECT_EQ(save("JF", "7", "0", "1"), "saved") << "a form without a number is never doubled";
    EXPECT_EQ(save("JF", "7", "NULL", "1"), "saved");
    EXPECT_EQ(save("JF", "7", "NULL", "1"), "saved");

    // The check before each save finds a form through an index, however long the season.
    auto plan = Db().OpenRecordset("EXPLAIN QUERY PLAN SELECT DOCUMENTID FROM DOCMAIN WHERE "
                                   "DocumentID<>0 and FormBookNo=7 and FormNo=12 and "
                                   "DocSeries='JF' and MarketID=1");
    ASSERT_FALSE(plan->EndOfRows());
    EXPECT_NE(plan->Field("detail").AsText().find("INDEX DOCMAIN_FORMNO_CHECK"), std::string::npos)
        << plan->Field("detail").AsText();
}

} // namespace
