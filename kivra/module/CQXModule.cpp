#include "CQXModule.h"

#include "frmKivraMain.h"
#include "mKivraModule.h"

#include "kivra/documents/BooksCheck.h"
#include "kivra/documents/CKivraDoc.h"
#include "kivra/documents/DailyVoucher.h"
#include "kivra/interest/frmKivraInterest.h"
#include "kivra/interest/frmKivraInterest2.h"
#include "kivra/masters/frmKivraRates.h"
#include "kivra/masters/frmMarketMaster.h"
#include "kivra/reports/frmDailySummary.h"
#include "kivra/reports/frmFormM.h"
#include "kivra/reports/frmItemSummary.h"
#include "kivra/reports/frmStockRegister.h"

#include "host/Text.h"

#include <stdexcept>

namespace kivra {
namespace {

struct DocumentPreset {
    const char* key;
    const char* docType;
    const char* seriesCode;
    const char* seriesName;
};

// The four mandi document series, opened on the host's document-entry screen.
constexpr DocumentPreset kDocumentPresets[] = {
    {"JForms", "J-Form", "JF", "J-Forms"},
    {"IForms", "I-Form", "IF", "I-Forms"},
    {"PurchaseLocal", "Purchase", "PL", "Purchase Local"},
    {"PurchaseOut", "Purchase", "POU", "Purchase Outside"},
};

struct MenuButtonDef {
    const char* key;
    const char* caption;
    const char* icon;
};

constexpr MenuButtonDef kSpecialMenu[] = {
    {"JForms", "1. J-Forms", "Wheat"},
    {"IForms", "2. I-Forms", "Truck"},
    {"PurchaseLocal", "3. Local Purchases", "Tractor"},
    {"PurchaseOut", "4. Outside Purchases", "KSlip2"},
    {"StkMaster", "5. Stock       Master", "Item"},
    {"KvStkRegister", "6. Stock Register", "StkAccount"},
    {"KvDailyReturn", "7. Daily Return", "Notes"},
    {"KvFormM", "8. Weekly Return (Form-M)", "Forms"},
    {"KvDailySummary", "9. I / J-Form Summary (Daily)", "FinalAc"},
    {"MarketMaster", "10. Local Mandi Master", "Books"},
};

// The reports the host may run by name (`qx report`), each opened by its menu key as a click
// opens it. A name given twice comes in variants: "interest+total-days" is the variant made
// when the argument total-days is given (the second interest screen).
struct ReportDef {
    const char* name;
    const char* key;
};

constexpr ReportDef kReports[] = {
    {"daily-summary", "KvDailySummary"}, {"item-summary", "KvItemSummary"}, {"stock-register", "KvStkRegister"},
    {"form-m", "KvFormM"},               {"daily-return", "KvDailyReturn"},
    {"interest", "KVINT"},               {"interest+total-days", "KVIN2"},
};

} // namespace

std::shared_ptr<qx::ui::Screen> CreateScreenForKey(ModuleContext& context, const std::string& key) {
    for (const auto& preset : kDocumentPresets) {
        if (key != preset.key) continue;
        auto screen = context.Ui().Forms().CreateForm("Documents");
        if (screen) {
            screen->Properties().SetValue("DocType", preset.docType);
            screen->Properties().SetValue("DocSeriesCode", preset.seriesCode);
            screen->Properties().SetValue("DocSeriesName", preset.seriesName);
        }
        return screen;
    }
    if (key == "Kivra") return std::make_shared<frmKivraMain>(context);
    if (key == "MarketMaster") return std::make_shared<frmMarketMaster>(context);
    if (key == "KvDailySummary") return std::make_shared<frmDailySummary>(context);
    if (key == "KvItemSummary") return std::make_shared<frmItemSummary>(context);
    if (key == "KvStkRegister") return std::make_shared<frmStockRegister>(context);
    if (key == "KvFormM" || key == "KvDailyReturn") {
        auto formM = std::make_shared<frmFormM>(context);
        if (key == "KvDailyReturn") formM->Properties().SetValue("DailyReport", true);
        return formM;
    }
    return nullptr;
}

CQXModule::~CQXModule() { Terminate(); }

void CQXModule::Init(qx::HostApp& app) {
    context_ = std::make_unique<ModuleContext>(app);
    app.Subscribe(*this);
}

void CQXModule::Terminate() {
    if (!context_) return;
    try {
        context_->UnloadScreens();
        context_->App().Unsubscribe(*this);
    } catch (...) {
    }
    context_.reset();
}

std::shared_ptr<qx::Object> CQXModule::GetForm(const std::string& name) {
    auto lower = qx::LowerCase(name);
    // A document extension or a screen needs the host it runs in: none before Init.
    if (!context_) return nullptr;
    if (lower == "ckivradoc") return std::make_shared<CKivraDoc>(*context_);
    if (lower == "kivrarates") return std::make_shared<frmKivraRates>(*context_);
    return nullptr;
}

bool CQXModule::RunProc(const std::string&, const std::string&) { return false; }

qx::Value CQXModule::Invoke(std::string_view operation, std::span<qx::Value> args) {
    if (!context_) throw std::logic_error("The Kivra module is not initialised.");
    auto need = [&](std::size_t count) {
        if (args.size() < count)
            throw std::invalid_argument(std::string(operation) + " needs " + std::to_string(count) +
                                        " arguments");
    };
    if (operation == "MultipleMarketRqr") return MultipleMarketRqr(*context_);
    if (operation == "SelectMarket") {
        need(3);
        std::int32_t id = args[0].AsInt();
        std::string name = args[1].AsText();
        bool chosen = SelectMarket(*context_, id, name, args[2].AsBool());
        args[0] = id;
        args[1] = name;
        return chosen;
    }
    if (operation == "CheckKivraFields") {
        CheckKivraFields(context_->Db());
        return {};
    }
    if (operation == "GetMarketName") {
        need(1);
        return GetMarketName(*context_, args[0].AsInt());
    }
    // The day's consolidated vouchers are checked by CheckBooks, against the day's forms.
    if (operation == "AutoVoucherTypes") return "IJF";
    if (operation == "CheckBooks") {
        // The host's check of the company: faults and notes, one line each.
        need(2);
        const BooksFindings findings = CheckBooks(*context_);
        std::string faults, notes;
        for (const std::string& fault : findings.faults) faults += fault + "\n";
        for (const std::string& note : findings.notes) notes += note + "\n";
        args[0] = faults;
        args[1] = notes;
        return {};
    }
    if (operation == "Reports") {
        // One line a report: its name, "=", the menu key that opens it.
        std::string list;
        for (const auto& report : kReports) list += std::string(report.name) + "=" + report.key + "\n";
        return list;
    }
    if (operation == "RecordInUse") {
        // The masters ask before deleting a record: the heads the day's voucher needs stay.
        need(2);
        if (!qx::EqualsNoCase(args[0].AsText(), "FAMASTER")) return std::string();
        const std::string name =
            context_->Db().LookupValue("FAMASTER", "MHD", "MCD=" + args[1].AsText()).AsText();
        return IsDayVoucherHead(name) ? std::string("the day's I/J-Form voucher") : std::string();
    }
    if (operation == "GetMarketSeries") {
        need(1);
        return GetMarketSeries(*context_, args[0].AsInt());
    }
    return Object::Invoke(operation, args);
}

void CQXModule::CustomEvent(const std::string& name, qx::EventArgs& args) {
    if (name == "EditVch") {
        // The day's consolidated voucher is made from the day's forms: it is edited by way of
        // them, from the daily summary of its day.
        if (args.Parameters.GetValue("TrnType").AsText() != "IJF") return;
        auto summary = std::make_shared<frmDailySummary>(*context_);
        const qx::Value day = args.Parameters.GetValue("VchDate");
        summary->Properties().SetValue("FromDate", day);
        summary->Properties().SetValue("ToDate", day);
        context_->Show(summary);
        args.Handled = true;
        return;
    }
    if (name == "MiscMenuItems") {
        args.Items.Add("KVINT-Interest Calcuations (Kivra)");
        args.Items.Add("KVIN2-Interest Calcuations-2 (Kivra)");
        return;
    }
    if (name == "MiscMenuClick") {
        const std::string key = args.Parameters.GetValue("Key").AsText();
        std::shared_ptr<qx::ui::Screen> screen;
        if (key == "KVINT") screen = std::make_shared<frmKivraInterest>(*context_);
        else if (key == "KVIN2") screen = std::make_shared<frmKivraInterest2>(*context_);
        if (!screen) return;
        screen->CallingForm = args.CallingForm;
        context_->Show(screen);
        return;
    }
    // "MainFormConfig" and any other event need nothing.
}

void CQXModule::MainMenuClick(const std::string& key, bool& handled) {
    auto screen = CreateScreenForKey(*context_, key);
    if (!screen) return;
    handled = true;
    context_->Show(screen); // no calling screen: the host main window

}

void CQXModule::SelectCompany() { context_->rateColumnsChecked = false; }

void CQXModule::SplMenuCreate(const qx::Value&, bool& handled) {
    auto properties = context_->Session().FirmSettings().GetValue("FirmProperties").AsText();
    if (!qx::ContainsNoCase(properties, "*KivraMenu*")) return;
    auto& menu = context_->App().MainForm().CreateSplMenu("Kivra", "Kivra");
    handled = true;
    if (menu.ButtonCount() > 0) return; // the buttons exist already
    for (const auto& button : kSpecialMenu) menu.AddButton(button.key, button.caption, button.icon);
    menu.CreateButtons();
}

} // namespace kivra
