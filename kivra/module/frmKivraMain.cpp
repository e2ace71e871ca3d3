#include "frmKivraMain.h"

#include "CQXModule.h"

#include "host/HostSelectDialog.h"

namespace kivra {

frmKivraMain::frmKivraMain(ModuleContext& context)
    : Screen("frmKivraMain", "Kivra"), context_(context),
      cube_(Add<qx::ui::ButtonCube>("BtnCube1")) {
    auto& title = Add<qx::ui::Label>("lblTitle", "Kivra");
    title.Heading = true;
    // Button 7 repeats the key of button 5, and the captions of 6 to 10 do not all say what
    // their keys open: the keys alone decide what a button does.
    cube_.AddButton("JForms", "1. J-Forms", "Receipt");
    cube_.AddButton("IForms", "2. I-Forms", "Issue");
    cube_.AddButton("PurchaseLocal", "3. Local Purchases", "Graph");
    cube_.AddButton("PurchaseOut", "4. Outside Purchases", "Graph");
    cube_.AddButton("StkMaster", "5. Stock Master", "Item");
    cube_.AddButton("Voucher", "6. Daily Summary", "Voucher");
    cube_.AddButton("StkMaster", "7. Daily Return", "Item");
    cube_.AddButton("KivraReports", "8. Form-M", "Notes");
    cube_.AddButton("Invoice", "9. Sales", "Invoice");
    cube_.AddButton("StockRegister", "10. Stock Register", "Forms");
    cube_.OnClick = [this](const std::string& key) { Dispatch(key); };
    AddRow({&title});
    AddRow({&cube_});
}

bool frmKivraMain::KeyDown(const qx::ui::KeyPress& key) {
    if (key.key == qx::ui::Key::Character && key.Plain() && key.character >= U'1' &&
        key.character <= U'9') {
        cube_.Click(key.character - U'1');
        return true;
    }
    if (context_.HostTookShortcut(key, *this)) return true;
    return Screen::KeyDown(key);
}

void frmKivraMain::FirstActivate() { context_.Ui().RegisterWindow(*this, "Kivra", "Forms1"); }

void frmKivraMain::Unload() { context_.Ui().UnregisterWindow(*this); }

void frmKivraMain::Dispatch(const std::string& key) {
    if (key == "KivraReports") {
        ChooseReport();
        return;
    }
    static const char* const kDocumentKeys[] = {"JForms", "IForms", "PurchaseLocal", "PurchaseOut"};
    for (const char* documentKey : kDocumentKeys) {
        if (key != documentKey) continue;
        if (auto screen = CreateScreenForKey(context_, key)) {
            screen->CallingForm = shared_from_this();
            context_.Show(screen);
        }
        return;
    }
    // "StkMaster", "Voucher", "Invoice" and "StockRegister" open nothing from this menu.
}

void frmKivraMain::ChooseReport() {
    auto dialog = context_.Ui().CreateSelectDialog();
    dialog->SetCaption("Kivra Reports");
    // The entries open the screens of these menu keys, in this order.
    static const char* const kReports[][2] = {{"Daily Return", "KvDailyReturn"},
                                             {"Form (M)", "KvFormM"},
                                             {"Daily Form Summary", "KvDailySummary"},
                                             {"Daily Stock Register", "KvStkRegister"}};
    for (std::size_t i = 0; i < std::size(kReports); ++i)
        dialog->AddItem(kReports[i][0], static_cast<std::int64_t>(i + 1));
    if (!dialog->Show()) return;
    auto screen = CreateScreenForKey(context_, kReports[dialog->SelectedIndex() - 1][1]);
    if (!screen) return;
    screen->CallingForm = shared_from_this();
    context_.Show(screen);
}

} // namespace kivra
