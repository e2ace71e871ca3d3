#include "HostMasters.h"

#include "FirmSettingsScreen.h"
#include "PrintDesignsScreen.h"
#include "TableMaster.h"

#include "host/Text.h"

#include <memory>
#include <string_view>

namespace qx::desk {
namespace {

MasterColumn CodeColumn(std::string field, std::string caption = "Code") {
    return {.field = std::move(field),
            .caption = std::move(caption),
            .width = 800,
            .kind = ColumnKind::WholeNumber};
}

MasterColumn NameColumn(std::string field, std::string caption, int maxLength) {
    return {.field = std::move(field),
            .caption = std::move(caption),
            .width = 3500,
            .maxLength = maxLength};
}

// What names the desk's records, as a refusal to delete one counts it.
const UseKind kDocuments{"document", "documents"};
const UseKind kLedgerRows{"ledger row", "ledger rows"};
const UseKind kSeries{"series", "series"};
const UseKind kAccounts{"account", "accounts"};
const UseKind kItems{"item", "items"};
// A series set up to post a VAT category's goods to chosen accounts with chosen VAT classes.
const UseKind kPostingSetUps{"posting set-up of a series", "posting set-ups of series"};

MasterReference InDocuments(std::string table, std::string field) {
    return {std::move(table), std::move(field), "DOCUMENTID", kDocuments};
}
MasterReference InSeries(std::string table, std::string field) {
    return {std::move(table), std::move(field), "SERIESID", kSeries};
}
MasterReference InPostingSetUps(std::string field) {
    return {"VATCATEGORYTAXRATES", std::move(field), "SERIESID, VATCTGNO", kPostingSetUps};
}
MasterReference InAccounts(std::string field, std::string code = "MCD",
                           std::string table = "FAMASTER") {
    return {std::move(table), std::move(field), std::move(code), kAccounts};
}

MasterDefinition VatCategories() {
    return {.key = "VatCategories",
            .title = "VAT Categories",
            .table = "CTGMASTER",
            .noun = "VAT category",
            .keyColumn = CodeColumn("CTGNO"),
            .nameColumn = NameColumn("CTGNAME", "Category Name", 60),
            .references = {{"STKMASTER", "QVATCTGNO", "QMCD", kItems},
                           InPostingSetUps("VATCTGNO")}};
}

// The numbers of VAT classes are the chart's own (111 tax-free sales, 305 tax-free
// purchases...): the user types them.
MasterDefinition VatClasses() {
    return {
        .key = "VatClasses",
        .title = "VAT Classes",
        .table = "VATCLASSES",
        .noun = "VAT class",
        .keyColumn = CodeColumn("VATCLASSNO", "Class No."),
        .keyTyped = true,
        .nameColumn = NameColumn("VATCLASSNAME", "Class Name", 60),
        .columns = {{.field = "PRESSHEAD", .caption = "Print Head", .width = 3500, .maxLength = 80},
                    // S sale, P purchase, O other
                    {.field = "SPO",
                     .caption = "Sale/Purchase",
                     .width = 1000,
                     .maxLength = 4,
                     .choices = {"S", "P", "O"}}},
        .references = {InAccounts("VATCODE", "CODE", "VATMASTER"),
                       InPostingSetUps("SALEVATCLASSCODE"), InPostingSetUps("TAXVATCLASSCODE")}};
}

MasterDefinition AccountGroups() {
    return {.key = "AcGroups",
            .title = "Account Groups",
            .table = "FAGROUPS",
            .noun = "account group",
            .keyColumn = CodeColumn("GROUPNO", "Group No."),
            .nameColumn = NameColumn("GROUPNAME", "Group Name", 60),
            // A asset, L liability, I income, E expense
            .columns = {{.field = "NATURE",
                         .caption = "Nature",
                         .width = 800,
                         .maxLength = 1,
                         .choices = {"A", "L", "I", "E"}}},
            .references = {InAccounts("MBSHNO")}};
}

// An account's print head goes with it: ledgers and vouchers print an account under its
// FAHEADS head, the print form of its name.
void KeepPrintHead(CompanyDb& db, const SavedRecord& account) {
    auto head = db.OpenRecordset(
        "SELECT * FROM FAHEADS WHERE CODE=" + std::to_string(account.code) + " AND SUBCODE=0");
    if (head->EndOfRows()) {
        head->AddNew();
        head->SetField("CODE", account.code);
        head->SetField("SUBCODE", 0);
    }
    head->SetField("HEAD", account.name);
    head->SetField("PRESSHEAD", PrintForm(account.name));
    head->Update();
    head->Close();
}

void DropPrintHeadAndVatClasses(CompanyDb& db, std::int64_t code) {
    db.ExecuteSql("DELETE FROM FAHEADS WHERE CODE=" + std::to_string(code));
    db.ExecuteSql("DELETE FROM VATMASTER WHERE CODE=" + std::to_string(code));
}

MasterDefinition Accounts() {
    auto text = [](std::string field, std::string caption, int width, int maxLength) {
        return MasterColumn{.field = std::move(field),
                            .caption = std::move(caption),
                            .width = width,
                            .maxLength = maxLength};
    };
    // Identity, bank and telephone numbers have a fixed form when they are given at all.
    auto fixed = [](std::string field, std::string caption, TextForm form) {
        return MasterColumn{.field = std::move(field),
                            .caption = std::move(caption),
                            .width = 1500,
                            .upperCase = true,
                            .form = std::move(form)};
    };
    auto number = [](std::string field, std::string caption, ColumnKind kind, int highest) {
        return MasterColumn{.field = std::move(field),
                            .caption = std::move(caption),
                            .width = 1000,
                            .kind = kind,
                            .range = NumberRange{Amount(), Amount::FromInt(highest)}};
    };
    return {.key = "AcMaster",
            .title = "Accounts",
            .table = "FAMASTER",
            .noun = "account",
            .keyColumn = CodeColumn("MCD"),
            .nameColumn = NameColumn("MHD", "Account Name", 80),
            .columns = {{.field = "MBSHNO",
                         .caption = "Group",
                         .width = 2200,
                         .kind = ColumnKind::Lookup,
                         .lookup = LookupInto(AccountGroups())},
                        text("MST", "Station", 1500, 40),
                        text("MHDA1", "Address", 3000, 80),
                        // An Indian mobile number, kept as its ten digits.
                        fixed("MCELLNO", "Mobile",
                              {R"((?:\+?91|0)?([6-9][0-9]{9}))",
                               "Mobile must be a mobile number of 10 digits, starting with 6, 7, "
                               "8 or 9."}),
                        // No Aadhaar number begins with 0 or 1.
                        fixed("MAADHARNO", "Aadhaar No.",
                              {"[2-9][0-9]{11}",
                               "Aadhaar No. must have 12 digits, the first from 2 to 9."}),
                        fixed("MPANNO", "PAN",
                              {"[A-Z]{5}[0-9]{4}[A-Z]",
                               "PAN must read like ABCDE1234F: five letters, four digits and a "
                               "letter."}),
                        text("MBANKACNO", "Bank A/c No.", 1800, 30),
                        // The bank, a zero kept for later use, the branch.
                        fixed("MIFSCCODE", "IFSC Code",
                              {"[A-Z]{4}0[A-Z0-9]{6}",
                               "IFSC Code must read like SBIN0001234: four letters, a zero, then "
                               "six letters or digits."}),
                        // The city, the bank and the branch, three digits each.
                        fixed("MMICRCODE", "MICR Code",
                              {"[0-9]{9}", "MICR Code must have 9 digits."}),
                        text("MBANKNAME", "Bank Name", 2500, 60),
                        number("MCRDAYS", "Credit Days", ColumnKind::WholeNumber, 999),
                        // Percent a year
                        number("MINTTRATE", "Interest %", ColumnKind::Decimal, 100)},
            // Ledger 7, group 4: where the chart files every account, as modules file the heads
            // they create.
            .newRecordValues = {{"MLGRNO", 7}, {"MGRPNO", 4}},
            // A document's party, its lines' parties, the heads of its charges; the series'
            // sale account and charge heads; heads filed under a trading account.
            .references = {InDocuments("DOCMAIN", "PARTYCODE"),
                           InDocuments("DOCDATA", "CUSTOMERID"),
                           InDocuments("DOCCHARGEDATA", "HEADCODE"),
                           {"FADATA", "DCD", "VOUCHERID, DSRNO", kLedgerRows},
                           InSeries("DOCCONFIG", "DOCCODESALE"),
                           InSeries("DOCCHARGES", "HEADCODE"),
                           InAccounts("MTRDNO"),
                           InPostingSetUps("SALEPOSTINGCODE"),
                           InPostingSetUps("TAXPOSTINGCODE")},
            .afterSave = KeepPrintHead,
            .afterDelete = DropPrintHeadAndVatClasses};
}

struct ItemForm {
    std::string name; // asked of the modules with GetForm
    std::string caption;
};

// The firm setting "ItemForms": "rates=Item Rates;name2=Caption2". An entry without a
// caption shows its name.
std::vector<ItemForm> ItemForms(std::string_view setting) {
    std::vector<ItemForm> forms;
    for (std::size_t start = 0; start <= setting.size();) {
        auto end = setting.find(';', start);
        if (end == std::string_view::npos)
            end = setting.size();
        const auto entry = setting.substr(start, end - start);
        const auto equals = entry.find('=');
        std::string name = Trim(entry.substr(0, equals));
        std::string caption =
            equals == std::string_view::npos ? std::string() : Trim(entry.substr(equals + 1));
        if (!name.empty())
            forms.push_back({name, caption.empty() ? name : caption});
        start = end + 1;
    }
    return forms;
}

// The first loaded module that offers the screen shows it for the item, modally over the item
// master; the desk itself knows nothing of what the screen does.
MasterAction ItemFormAction(DeskApp& app, ItemForm form) {
    return {"btn" + form.name, form.caption,
            [&app, form](TableMaster& master, const SavedRecord& item) {
                for (const LoadedModule& loaded : app.Modules()) {
                    auto screen =
                        std::dynamic_pointer_cast<ui::Screen>(loaded.module->GetForm(form.name));
                    if (!screen)
                        continue;
                    screen->Properties().SetValue("ItemCode", item.code);
                    screen->Properties().SetValue("ItemName", item.name);
                    screen->CallingForm = master.shared_from_this();
                    app.ShowModal(*screen);
                    return;
                }
                app.ShowMessage("No module offers " + form.caption + ".", "", "W");
            }};
}

MasterDefinition Items(DeskApp& app) {
    MasterDefinition items{
        .key = "StkMaster",
        .title = "Items",
        .table = "STKMASTER",
        .noun = "item",
        .keyColumn = CodeColumn("QMCD"),
        .nameColumn = NameColumn("QMHD", "Item Name", 60),
        .columns = {{.field = "QVATCTGNO",
                     .caption = "VAT Category",
                     .width = 2500,
                     .kind = ColumnKind::Lookup,
                     .lookup = LookupInto(VatCategories())},
                    {.field = "QUNIT", .caption = "Unit", .width = 1000, .maxLength = 10}},
        .references = {InDocuments("DOCDATA", "PRODUCTID")}};
    // Read when the screen is made, so that a change of the setting shows on the next opening.
    const auto setting = app.DeskSession().FirmSettings().GetValue("ItemForms").AsText();
    for (ItemForm& form : ItemForms(setting))
        items.actions.push_back(ItemFormAction(app, std::move(form)));
    return items;
}

} // namespace

void RegisterHostMasters(DeskApp& app) {
    // The menu entry takes its key and caption from the definition itself.
    auto registerMaster = [&app](std::function<MasterDefinition()> define) {
        const MasterDefinition shown = define();
        app.RegisterHostScreen("Masters", shown.key, shown.title, [&app, define] {
            return std::make_shared<TableMaster>(app, define());
        });
    };
    registerMaster([&app] { return Items(app); });
    registerMaster(Accounts);
    registerMaster(VatCategories);
    registerMaster(VatClasses);
    registerMaster(AccountGroups);
    app.RegisterHostScreen("Company", "FirmSettings", "Firm Settings",
                           [&app] { return std::make_shared<FirmSettingsScreen>(app); });
    app.RegisterHostScreen("Masters", "PrintDesigns", "Print Designs",
                           [&app] { return std::make_shared<PrintDesignsScreen>(app); });
}

} // namespace qx::desk
