#pragma once
// The agent's company with the demo's own four mandi series (data/demo/series.json), set up as
// his "Kivra Rates" screen would leave it: paddy and maize with their rates and each category's
// heads, the heads of the day's consolidated voucher, farmers, buyers and SELF. Labour is
// charged on I-Forms (option 632).

#include "MandiCompany.h"

#include "desk/documents/Series.h"
#include "desk/documents/SeriesImport.h"
#include "kivra/documents/DailyVoucher.h"

#include <cstdlib>
#include <fstream>

namespace qx::test {

class DemoSeriesCompany : public MandiCompany {
protected:
    void MakeCompany() override {
        app.DeskSession().SetOption(632, "Yes");
        for (const char* sql : kMasters)
            Db().ExecuteSql(sql);
        int code = 400;
        auto head = [&](const std::string& name) {
            Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (" +
                            std::to_string(++code) + ", " + SqlQuote(name) + ", '')");
        };
        for (const char* name :
             {"DAMI A/C", "LABOUR A/C", "LABOUR A/C (J-FORMS)", "LABOUR A/C (I-FORMS)",
              "LOADING A/C", "STITCHING A/C", "DHARAM A/C", "J-FORM / I-FORM CONTROL A/C",
              "ROUND OFF", "FREIGHT A/C", "MARKET FEE PAYABLE", "R.D.F. PAYABLE",
              "P.I.D.F. PAYABLE", "PURCHASE TAX PAYABLE", "CANCER FUND PAYABLE",
              "LABOUR PAYABLE"})
            head(name);
        for (const std::string category : {"PADDY", "MAIZE"}) {
            for (const char* prefix : {"PURCHASE ", "MARKET FEE : ", "R.D.F. : ", "P.I.D.F. : ",
                                       "PURCHASE TAX : ", "CANCER FUND : ", "LABOUR (SELF) : "})
                head(prefix + category);
            head(category + " MAL KHATA");
        }
        const char* seriesPath = std::getenv("QX_SOURCE_DIR");
        std::ifstream file(std::string(seriesPath ? seriesPath : ".") + "/data/demo/series.json");
        ASSERT_TRUE(file) << "data/demo/series.json";
        desk::ImportSeries(Db(), nlohmann::ordered_json::parse(file));
        // The purchases post each category's value to its purchase head.
        for (const char* series : {"PL", "POU"})
            Db().ExecuteSql("INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO, SALEPOSTINGCODE) "
                            "SELECT " +
                            std::to_string(desk::FindSeries(Db(), series, "")) +
                            ", C.CTGNO, F.MCD FROM CTGMASTER C JOIN FAMASTER F ON "
                            "F.MHD='PURCHASE '||C.CTGNAME");
    }

    // Ledger rows (D) on their heads (F) as posted: each row's head, amount and narration.
    Strings Ledger(const std::string& condition) {
        return Rows("SELECT F.MHD, D.DAMT, N.NARRATION FROM FADATA D JOIN FAMASTER F ON "
                    "F.MCD=D.DCD JOIN FANAR N ON N.NARRATIONID=D.NARRATIONID WHERE " +
                    condition + " ORDER BY D.DVCHDATE, D.VOUCHERID, D.DSRNO");
    }
    // The day's consolidated voucher.
    Strings DayVoucher(const std::string& isoDay) {
        return Ledger("D.DTRNTYPE='IJF' AND D.DVCHDATE='" + isoDay + "'");
    }
    // Every row of the day's voucher is what a rebuild from the day's documents makes (in a
    // unit of work that is then undone).
    void ExpectRebuildsTheSame(const std::string& isoDay) {
        const std::string rows = "SELECT VOUCHERID, DSRNO, DCD, DAMT, NARRATIONID, DDOCUMENTID "
                                 "FROM FADATA WHERE DTRNTYPE='IJF' AND DVCHDATE='" +
                                 isoDay + "' ORDER BY DSRNO";
        const Strings posted = Rows(rows);
        Transaction unit(Db());
        kivra::DailyVoucher(*module.Context(), Db(), true, kivra::DayColumns::Of(Db()))
            .Post(*Date::ParseIso(isoDay));
        EXPECT_EQ(posted, Rows(rows)) << isoDay;
    }

    // An I-Form line: the item, bags of kg, quintals, kilograms more (or less) the buyer's
    // weighing found, and the rate.
    static Cells ILine(const std::string& item, const std::string& kg, const std::string& quantity,
                       const std::string& addLessKgs, const std::string& rate) {
        return {{"PRODUCT_ID", item},
                {"QTY_PER_BOX", kg},
                {"QUANTITY", quantity},
                {"ADD_LESS_KGS", addLessKgs},
                {"RATE", rate}};
    }

private:
    static constexpr const char* kMasters[] = {
        "INSERT INTO MARKETMASTER (MARKETID, MARKETNAME, STATION, STATE, SERIES) VALUES "
        "(1, 'KHANNA', 'KHANNA', 'PUNJAB', 'KHN'), (2, 'JAGRAON', 'JAGRAON', 'PUNJAB', 'JGN')",
        "INSERT INTO CTGMASTER (CTGNO, CTGNAME) VALUES (1, 'PADDY'), (2, 'MAIZE')",
        "INSERT INTO STKMASTER (QMCD, QMHD, QVATCTGNO, qLabourJF, qLabourIF, qDamiIF, qStitchIF, "
        "qDharamIF, qLoadingIF, qLabour, qDami, qLoading, qStitch, qMarketFee, qRDF, qPIDF, "
        "qPurTax, qCancerFund, qVATRateCode) VALUES "
        "(1, 'PADDY', 1, 3.75, 4.5, 2.5, 1.1, 0.05, 1.6, 3.75, 2.5, 1.6, 1.1, 2, 1, 1, 4, 0.5, "
        "100), "
        "(2, 'MAIZE', 2, 3.25, 4, 2.5, 1, 0.05, 1.4, 3.25, 2.5, 1.4, 1, 2, 1, 1, 4, 0, 100)",
        "INSERT INTO FAMASTER (MCD, MHD, MST, MBSHNO) VALUES "
        "(101, 'GURMEET SINGH', 'RAIPUR', 180), (102, 'HARPAL SINGH', 'BIJA', 180), "
        "(201, 'PUNGRAIN', 'CHANDIGARH', 40), (202, 'SELF', '', 40)",
    };
};

} // namespace qx::test
