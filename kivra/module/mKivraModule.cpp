#include "mKivraModule.h"

#include "kivra/documents/PendingJForms.h"

#include "host/HostSelectDialog.h"

namespace kivra {

void CheckMarketTable(qx::CompanyDb& db) {
    auto complete = [&] {
        return db.TableExists("MARKETMASTER") && db.FieldExists("SERIES", "MARKETMASTER");
    };
    if (complete()) return;
    // Asked again under the write lock, so that two programs opening the market master of a
    // new company do not both create the table.
    qx::Transaction unit(db);
    if (!db.TableExists("MARKETMASTER")) {
        db.ExecuteSql("CREATE TABLE MARKETMASTER ( MARKETID INT NOT NULL, MARKETNAME VARCHAR(60) "
                      "NOT NULL, STATION VARCHAR(30), STATE VARCHAR(30), REMARKS VARCHAR(80), "
                      "CONSTRAINT PK_MARKETMASTER PRIMARY KEY (MARKETID) )",
                      128);
        db.ExecuteSql("CREATE INDEX MARKETMASTER_MARKETNAME ON MARKETMASTER ( MARKETNAME )", 128);
    }
    // Tables of older versions lack the form series; a new table gets it here too.
    if (!db.FieldExists("SERIES", "MARKETMASTER")) {
        db.ExecuteSql("ALTER TABLE MARKETMASTER ADD SERIES VARCHAR(10) NOT NULL", 128);
        db.ExecuteSql("UPDATE MARKETMASTER SET SERIES='' WHERE SERIES IS NULL", 128);
    }
    unit.Commit();
}

void CheckKivraFields(qx::CompanyDb& db) {
    struct Group {
        const char* table;
        const char* type;
        std::vector<std::string> fields;
    };
    const Group groups[] = {
        {"STKMASTER", "Decimal(8,4)", {"qMarketFee", "qRDF", "qPIDF", "qPurTax", "qLabourIF", "qCancerFund"}},
        {"DOCMAIN", "Decimal(16,4)", {"LabourAmt", "DamiAmt", "StitchAmt", "DharmadaAmt"}},
        {"DOCMAIN", "Int", {"FormBookNo", "FormNo", "MarketID"}},
        {"DOCDATA", "Decimal(8,4)", {"iMarketFeeRate", "iRDFRate", "iPIDFRate", "iPurTaxRate", "iLabourRateIF", "iCancerFundRate"}},
        {"DOCDATA", "Decimal(16,4)", {"AddLessKgs", "iMarketFeeAmt", "iRDFAmt", "iPIDFAmt", "iPurTaxAmt", "iLabourAmtIF", "iCancerFundAmt"}},
    };
    // A group the database refuses must not keep the next from being added.
    for (const auto& group : groups) {
        try {
            db.AddFields(group.table, group.type, group.fields);
        } catch (const std::exception&) {
        }
    }
    // The form number is used once in its series, book and market, whatever program saves the
    // form: the index is the last word behind the check before each save. It counts the forms
    // that have a number, as the check does; a form of a series without a book box, or without
    // a market, counts as book or market 0, since the index would hold every NULL distinct. A
    // company that already holds a doubled form gets no index until the user renumbers it.
    try {
        db.ExecuteSql("CREATE UNIQUE INDEX IF NOT EXISTS DOCMAIN_FORMNO ON DOCMAIN (DOCSERIES, "
                      "COALESCE(FORMBOOKNO,0), FORMNO, COALESCE(MARKETID,0)) WHERE FORMNO<>0",
                      128);
    } catch (const std::exception&) {
    }
    // The check before every save looks a form up by its plain columns, which the unique index
    // above (of expressions, over the numbered forms only) cannot serve: without this one each
    // save would read every document of the season.
    try {
        db.ExecuteSql("CREATE INDEX IF NOT EXISTS DOCMAIN_FORMNO_CHECK ON DOCMAIN (FORMNO, "
                      "DOCSERIES, FORMBOOKNO, MARKETID)",
                      128);
    } catch (const std::exception&) {
    }
    // A company of an older version gets the pending J-Forms kept for its I-Forms.
    try {
        CheckPendingTable(db);
    } catch (const std::exception&) {
    }
}

bool MultipleMarketRqr(ModuleContext& context) {
    return context.Session().GetOption(676) == "Yes";
}

bool SelectMarket(ModuleContext& context, std::int32_t& id, std::string& name, bool allowAll) {
    auto& db = context.Db();
    if (!db.TableExists("MARKETMASTER")) {
        // The caller carries on with no market, as if the user had chosen none.
        id = 0;
        name.clear();
        context.Util().ShowMessage("Market Master not found.", "", "E");
        return true;
    }
    auto dialog = context.Ui().CreateSelectDialog();
    dialog->SetCaption("Select Local Market");
    if (allowAll) dialog->AddItem("( All Markets )", kAllMarkets);
    dialog->FillFromQuery(db, "SELECT MARKETID,MARKETNAME FROM MARKETMASTER ORDER BY MARKETNAME",
                          "MARKETNAME", "MARKETID");
    if (!dialog->Show()) return false;
    id = static_cast<std::int32_t>(dialog->SelectedValue());
    name = dialog->SelectedText();
    return true;
}

namespace {

std::string FirstFieldOf(ModuleContext& context, const std::string& sql) {
    auto rows = context.Db().OpenRecordset(sql);
    std::string text = rows->EndOfRows() ? std::string() : rows->Field(0).AsText();
    rows->Close();
    return text;
}

} // namespace

std::string GetMarketName(ModuleContext& context, std::int32_t id) {
    return FirstFieldOf(context, "SELECT MARKETNAME FROM MARKETMASTER WHERE MARKETID=" + std::to_string(id));
}

std::string GetMarketSeries(ModuleContext& context, std::int32_t id) {
    return FirstFieldOf(context, "SELECT SERIES FROM MARKETMASTER WHERE MARKETID=" + std::to_string(id));
}

} // namespace kivra
