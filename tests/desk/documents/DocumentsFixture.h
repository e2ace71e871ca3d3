#pragma once
// A company with one sale series configured in SQL (item grid, header boxes, charges, voucher),
// the desk's document screen, and a test module whose document extension records every event
// it is raised and does what a test asks of it in some of them.

#include "support/BooksInOrder.h"
#include "support/DocumentTyping.h"
#include "support/Desk.h"

#include "desk/documents/DocumentScreen.h"
#include "desk/documents/HostDocuments.h"
#include "host/HostDocument.h"
#include "host/IModule.h"
#include "host/Text.h"

#include <functional>
#include <string>
#include <vector>

namespace qx::test {

using Strings = std::vector<std::string>;

// What a test asks the extension to do in an event; unset: nothing.
struct ExtensionBehaviour {
    std::function<void(bool& cancel)> beforeSave;
    std::function<void(int row)> recalc;
    std::function<void(HostDocument&, int row, PropertyBag& line)> saveItem;
    std::function<void(HostDocument&)> saveVoucherBegin;
    std::function<void(std::int32_t id, bool& cancel)> deleteDocument;
};

class RecordingExtension : public IDocExtension, public DocumentEvents {
public:
    RecordingExtension(Strings& log, ExtensionBehaviour& behaviour)
        : log_(log), behaviour_(behaviour) {}

    void Init(HostDocument& document) override {
        document_ = &document;
        document.Subscribe(*this);
        log_.push_back("Init");
    }
    void Terminate() override {
        if (document_)
            document_->Unsubscribe(*this);
        document_ = nullptr;
        log_.push_back("Terminate");
    }

    void SelectSeries() override { log_.push_back("SelectSeries " + document_->SeriesCode()); }
    void MakeGridColumnsBegin() override { log_.push_back("MakeGridColumnsBegin"); }
    void MakeGridColumns(int col, const std::string& key) override {
        log_.push_back("MakeGridColumns " + std::to_string(col) + " " + key);
    }
    void MakeGridColumnsEnd() override { log_.push_back("MakeGridColumnsEnd"); }
    void MakeInputControls() override { log_.push_back("MakeInputControls"); }
    void NewDocumentEnd() override { log_.push_back("NewDocumentEnd"); }
    void EditDocumentBegin() override { log_.push_back("EditDocumentBegin"); }
    void EditMain(const PropertyBag& main) override {
        log_.push_back("EditMain " + main.GetValue("DOCNUMBER").AsText());
    }
    void EditItem(const PropertyBag& line) override {
        log_.push_back("EditItem " + line.GetValue("PRODUCTID").AsText());
    }
    void EditDocumentEnd() override { log_.push_back("EditDocumentEnd"); }
    void DeleteDocument(std::int32_t id, bool& cancel) override {
        log_.push_back("DeleteDocument " + std::to_string(id));
        if (behaviour_.deleteDocument)
            behaviour_.deleteDocument(id, cancel);
    }
    void DeleteDocumentEnd() override { log_.push_back("DeleteDocumentEnd"); }
    void PartySelected() override {
        log_.push_back("PartySelected " + std::to_string(document_->PartyID()));
    }
    void FillStkInfo(int row, bool flag, const PropertyBag& item) override {
        log_.push_back("FillStkInfo " + std::to_string(row) + (flag ? " true " : " false ") +
                       item.GetValue("QMHD").AsText());
    }
    void GridCellBeforeLostFocus(int row, int col, const std::string& value, bool&) override {
        log_.push_back("GridCellBeforeLostFocus " + std::to_string(row) + "," +
                       std::to_string(col) + " " + value);
    }
    void GridCellLostFocus(int row, int col) override {
        log_.push_back("GridCellLostFocus " + std::to_string(row) + "," + std::to_string(col));
    }
    void RecalcGridRow(int& row) override {
        log_.push_back("RecalcGridRow " + std::to_string(row));
        if (behaviour_.recalc)
            behaviour_.recalc(row);
    }
    void UpdateTotals2() override { log_.push_back("UpdateTotals2"); }
    void BeforeSaveDocument(bool& cancel) override {
        log_.push_back("BeforeSaveDocument");
        if (behaviour_.beforeSave)
            behaviour_.beforeSave(cancel);
    }
    void SaveDocumentBegin() override {
        log_.push_back("SaveDocumentBegin " + std::to_string(document_->DocumentID()));
    }
    void SaveMain(PropertyBag& main) override {
        log_.push_back("SaveMain " + main.GetValue("DOCNUMBER").AsText());
    }
    void SaveItem(int row, PropertyBag& line) override {
        log_.push_back("SaveItem " + std::to_string(row));
        if (behaviour_.saveItem)
            behaviour_.saveItem(*document_, row, line);
    }
    void SaveVoucherBegin() override {
        log_.push_back("SaveVoucherBegin");
        if (behaviour_.saveVoucherBegin)
            behaviour_.saveVoucherBegin(*document_);
    }
    void SaveVoucherAddRow(const PropertyBag& row) override {
        log_.push_back("SaveVoucherAddRow " + row.GetValue("DCD").AsText() + " " +
                       row.GetValue("DAMT").AsText());
    }
    void SaveVoucherEnd() override { log_.push_back("SaveVoucherEnd"); }
    void SaveDocumentEnd() override { log_.push_back("SaveDocumentEnd"); }

private:
    Strings& log_;
    ExtensionBehaviour& behaviour_;
    HostDocument* document_ = nullptr;
};

// A module that hands out the recording extension as "recorder", and chooses brokers for the
// series' look-up box.
class ExtensionModule : public IModule {
public:
    void Init(HostApp&) override {}
    void Terminate() override {}
    std::string ID() const override { return "TestDocuments"; }
    std::string Description() const override { return "records document events"; }
    std::shared_ptr<Object> GetForm(const std::string& name) override {
        if (!EqualsNoCase(name, "recorder"))
            return nullptr;
        return std::make_shared<RecordingExtension>(log, behaviour);
    }
    bool RunProc(const std::string&, const std::string&) override { return false; }
    Object& Obj() override { return *this; }
    Value Invoke(std::string_view operation, std::span<Value> args) override {
        if (operation == "SelectBroker") {
            args[0] = 7;
            args[1] = "MEHTA & SONS";
            return true;
        }
        if (operation == "BrokerName")
            return args[0].AsInt() == 7 ? "MEHTA & SONS" : "";
        if (operation == "AutoVoucherTypes" && !vouchedTypes.empty())
            return vouchedTypes;
        if (operation == "CheckBooks" && checkBooks) {
            checkBooks(args[0], args[1]);
            return {};
        }
        return Object::Invoke(operation, args);
    }

    Strings log;
    ExtensionBehaviour behaviour;
    // What the module answers when the books are checked; unset: it checks nothing.
    std::string vouchedTypes;
    std::function<void(Value& faults, Value& notes)> checkBooks;
};

// A module with no operations of its own: asked first, it must be passed over.
class SilentModule : public IModule {
public:
    void Init(HostApp&) override {}
    void Terminate() override {}
    std::string ID() const override { return "Silent"; }
    std::string Description() const override { return "offers nothing"; }
    std::shared_ptr<Object> GetForm(const std::string&) override { return nullptr; }
    bool RunProc(const std::string&, const std::string&) override { return false; }
    Object& Obj() override { return *this; }
};

class DocumentsFixture : public DeskFixtureBase {
protected:
    void SetUp() override {
        path = MakeCompany(folder, "");
        app.PlugModule(silent);
        app.PlugModule(module);
        desk::RegisterHostDocuments(app);
        app.OpenCompany(path);
        app.DeskSession().SetFirmSetting("DocExtensions", "recorder");
        for (const char* sql : {
                 "INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'GRAINS'), (2, 'PULSES')",
                 "INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO) VALUES (1, 'WHEAT', 1), "
                 "(2, 'ਕਣਕ', 1), (3, 'MOONG', 2)",
                 "INSERT INTO FAMASTER (MCD, MHD) VALUES (10, 'RAM D''SOUZA'), "
                 "(11, 'ਗੁਰਮੀਤ ਸਿੰਘ'), (20, 'SALES GRAINS'), (21, 'SALES PULSES'), "
                 "(30, 'LABOUR A/C'), (31, 'DISCOUNT A/C'), (32, 'FREIGHT A/C'), (40, 'ROUND OFF')",
                 "INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO, SALEPOSTINGCODE) VALUES "
                 "(1, 1, 20), (1, 2, 21)",
                 "INSERT INTO DOCCONFIG (SERIESID, SERIESCODE, SERIESNAME, SUBSERIESNAME, DOCTYPE, "
                 "DOCPROPERTIES, DOCVOUCHERFACTOR, NARRATION, NEXTNUMBER, TRNTYPE, BOOK) VALUES "
                 "(1, 'SL', 'Sales', 'Cash', 'Sale', '*Test*', 1, 'Sale bill ##', 1, 'SAL', 'SB')",
                 "INSERT INTO DOCCOLUMNS (SERIESID, POSITION, COLKEY, CAPTION, WIDTH, FORMAT, "
                 "FIELD) VALUES (1, 1, 'PRODUCT_ID', 'Item', 2500, '', ''), "
                 "(1, 2, 'NO_OF_BOXES', 'Bags', 800, '', ''), (1, 3, 'QUANTITY', 'Qty', 900, "
                 "'n2', ''), (1, 4, 'RATE', 'Rate', 900, 'n2', ''), "
                 "(1, 5, 'AMOUNT', 'Amount', 1200, '', ''), "
                 "(1, 6, 'ADD_LESS_KGS', 'Add/Less', 800, 'n2', 'ADDLESSKGS')",
                 "UPDATE DOCCOLUMNS SET FIGURES='signed' WHERE COLKEY='ADD_LESS_KGS'",
                 "INSERT INTO DOCBOXES (SERIESID, POSITION, BOXNAME, CAPTION, FIELD, NUMERIC, "
                 "LOOKUP, LOOKUPTEXT) VALUES (1, 1, 'FORM_NO', 'Form No.', 'FORMNO', 1, '', ''), "
                 "(1, 2, 'BROKER', 'Broker', 'BROKERID', 0, 'SelectBroker', 'BrokerName')",
                 "INSERT INTO DOCCHARGES (SERIESID, POSITION, CHARGEKEY, CAPTION, RATE, BASIS, "
                 "SIGN, HEADCODE, FIELD) VALUES (1, 1, 'LABOUR', 'Labour', 5, 'B', 1, 30, "
                 "'LABOUR'), (1, 2, 'DISCOUNT', 'Discount', 2, 'P', -1, 31, 'DISCOUNTAMT'), "
                 "(1, 3, 'FREIGHT', 'Freight', 100, 'F', 1, 32, '')",
             })
            Db().ExecuteSql(sql);
    }
    // Whatever a test did, the books it leaves hold, but for the faults it planted itself.
    void TearDown() override {
        if (!faultsPlanted)
            ExpectBooksInOrder(app);
        app.Shutdown();
    }

    // The screen as a module opens it: the host's "Documents" preset to a series code.
    desk::DocumentScreen& OpenSeries(const std::string& code = "SL") {
        auto screen = app.Forms().CreateForm("Documents");
        screen->Properties().SetValue("DocSeriesCode", code);
        app.ShowForm(screen);
        auto* documents = dynamic_cast<desk::DocumentScreen*>(app.OpenScreens().back().get());
        if (!documents)
            throw std::logic_error("no document screen opened");
        return *documents;
    }

    // The first document of the tests: two items of two categories, in bags.
    void TypeWheatAndMoong(desk::DocumentScreen& screen) {
        ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "05/05/2024"));
        ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "ram d'souza"));
        ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "12"));
        ASSERT_TRUE(TypeLine(screen, 1,
                             {{"PRODUCT_ID", "wheat"},
                              {"NO_OF_BOXES", "10"},
                              {"QUANTITY", "5"},
                              {"RATE", "2000.25"}}));
        ASSERT_TRUE(TypeLine(screen, 2,
                             {{"PRODUCT_ID", "moong"},
                              {"NO_OF_BOXES", "4"},
                              {"QUANTITY", "2"},
                              {"RATE", "1500.35"},
                              {"ADD_LESS_KGS", "-1.5"}}));
    }

    bool Press(desk::DocumentScreen& screen, ui::Key key) { return screen.KeyDown({.key = key}); }

    // Everything a save or a delete writes, whole.
    Strings Company() {
        Strings all;
        for (const char* table :
             {"DOCMAIN", "DOCDATA", "DOCCHARGEDATA", "FADATA", "FADOCS", "FANAR", "DOCCONFIG"})
            for (const std::string& row :
                 Rows(std::string("SELECT * FROM ") + table + " ORDER BY 1, 2"))
                all.push_back(std::string(table) + ": " + row);
        return all;
    }

    // The events recorded since the last call.
    Strings TakeLog() { return std::exchange(module.log, {}); }

    SilentModule silent;
    ExtensionModule module;
    bool faultsPlanted = false;
};

} // namespace qx::test
