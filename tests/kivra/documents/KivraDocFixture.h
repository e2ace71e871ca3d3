#pragma once
// A company with the Kivra module plugged in, one item with its charge rates, and a document
// of the host's engine with the module's extension bound to it.

#include "FakeDocument.h"

#include "support/DeskFixture.h"

#include "kivra/documents/CKivraDoc.h"

#include <map>
#include <memory>

namespace qx::test {

// A mandi series' item grid with every column the extension looks for.
inline const std::vector<ItemColumn> kMandiGrid = {
    {"COL_STK_CODE", ""},      {"COL_PRODUCT_ID", ""},  {"COL_CUSTOMER_ID", ""},
    {"COL_QTY_PER_BOX", "n2"}, {"COL_NO_OF_BOXES", ""}, {"COL_PCS", ""},
    {"COL_QUANTITY", "n2"},    {"ADD_LESS_KGS", ""},    {"COL_TOTAL_WT", "n2"},
    {"REV_BAGS", "n2"},        {"REV_BAGS2", "n2"},     {"COL_RATE", "n2"},
    {"COL_AMOUNT", "c2"}};

class KivraDocFixture : public DeskFixture {
protected:
    void Open(std::vector<std::pair<int, std::string>> options = {}) {
        OpenWithModule("*KivraMenu*", std::move(options));
        // The rate columns the item charge-rates screen makes sure of.
        Db().AddFields("STKMASTER", "Decimal(12,4)",
                       {"qLabourJF", "qLabour", "qDamiIF", "qDami", "qDharamIF", "qLoadingIF",
                        "qLoading", "qStitchIF", "qStitch", "qDamping", "qCommission"});
        doc = std::make_unique<FakeDocument>(Db());
        kivra = std::make_unique<kivra::CKivraDoc>(*module.Context());
        kivra->Init(*doc);
        Db().ExecuteSql("INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'FOOD GRAINS')");
        Db().ExecuteSql(
            "INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO, qMarketFee, qRDF, qCancerFund, "
            "qPIDF, qPurTax, qLabourJF, qLabourIF, qLabour, qDamiIF, qDami, qDharamIF) "
            "VALUES (1, 'WHEAT', 1, 1.5, 2, 0.5, 1, 4, 11, 12, 13, 14, 15, 16)");
    }

    // The user picks a series: its type, tags and sub-series, then the engine sets it up.
    void SelectSeries(const std::string& docType, const std::string& properties,
                      const std::string& subSeries = "",
                      const std::vector<ItemColumn>& grid = kMandiGrid) {
        doc->docType = docType;
        doc->seriesProperties = properties;
        doc->seriesInfo.SetValue("SubSeriesName", subSeries);
        doc->SeriesSelected();
        doc->BuildItemGrid(grid);
    }

    void Line(int row, const std::map<std::string, std::string>& cells) {
        for (const auto& [member, text] : cells) doc->Set(row, member, text);
    }

    bool Save() {
        bool cancel = false;
        doc->Raise([&](DocumentEvents& e) { e.BeforeSaveDocument(cancel); });
        return !cancel;
    }

    std::unique_ptr<FakeDocument> doc;
    std::unique_ptr<kivra::CKivraDoc> kivra;
};

} // namespace qx::test
