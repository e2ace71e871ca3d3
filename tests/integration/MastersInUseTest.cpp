// Accounts and items that saved documents, their vouchers and the series use cannot be deleted
// from the desk's masters; whatever could be deleted leaves nothing pointing at it.
#include "MandiCompany.h"

#include "desk/masters/HostMasters.h"
#include "desk/masters/TableMaster.h"

#include <algorithm>

using namespace qx;
using test::Strings;

namespace {

class MastersInUseTest : public test::MandiCompany {
protected:
    void SetUp() override {
        MandiCompany::SetUp();
        desk::RegisterHostMasters(app);
    }

    // F3 on every stored record of the master, each question answered Yes: the refusals.
    Strings DeleteEverything(const std::string& key, const std::string& nameField) {
        app.ClickMenu(key);
        auto& master = dynamic_cast<desk::TableMaster&>(*app.OpenScreens().back());
        auto& grid = master.Get<ui::Grid>("Grid");
        const int nameCol = master.ColumnOf(nameField);
        frontend.SetDefaultAnswer(kAnswerYes);
        Strings refusals;
        for (int row = 1; row < grid.Rows() - 1;) {
            const std::string name = grid.TextMatrix(row, nameCol);
            frontend.ClearTranscript();
            EXPECT_TRUE(grid.MoveTo(row, nameCol));
            master.KeyDown({ui::Key::F3});
            if (grid.TextMatrix(row, nameCol) != name)
                continue; // deleted: the next record has moved up
            EXPECT_EQ(frontend.Transcript().size(), 1u) << name;
            refusals.push_back(Messages().back());
            ++row;
        }
        EXPECT_TRUE(app.CloseScreen(master));
        return refusals;
    }
};

TEST_F(MastersInUseTest, WhatTheBooksUseIsKeptAndNothingLeftNamesADeletedRecord) {
    // A J-Form and a local purchase, with its voucher, of Gurmeet Singh's wheat.
    ASSERT_TRUE(Press(TypeForm12(), ui::Key::F10));
    ASSERT_TRUE(Press(TypeLocalPurchase(), ui::Key::F10));
    ASSERT_TRUE(Messages().empty()) << Messages().front();

    // The farmer is in the purchase's voucher and in the day's; the purchase's labour and
    // levies are on its category's heads.
    const Strings refusedAccounts = DeleteEverything("AcMaster", "MHD");
    EXPECT_EQ(refusedAccounts.size(), 23u);
    for (const char* refusal :
         {"GURMEET SINGH is used by 2 documents and 2 ledger rows; it cannot be deleted.",
          "BANSAL TRADERS is used by 1 document; it cannot be deleted.",
          "LABOUR A/C is used by 1 document, 3 series and the day's I/J-Form voucher; it cannot "
          "be deleted.",
          "LABOUR : FOOD GRAINS is used by 1 document and 1 ledger row; it cannot be deleted.",
          "J-FORM / I-FORM CONTROL A/C is used by 1 ledger row and the day's I/J-Form voucher; "
          "it cannot be deleted.",
          "DAMI A/C is used by 1 series and the day's I/J-Form voucher; it cannot be deleted.",
          "LABOUR A/C (I-FORMS) is used by the day's I/J-Form voucher; it cannot be deleted.",
          "PURCHASE FOOD GRAINS is used by 1 ledger row and 2 posting set-ups of series; it "
          "cannot be deleted."})
        EXPECT_NE(std::ranges::find(refusedAccounts, refusal), refusedAccounts.end()) << refusal;
    EXPECT_EQ(Rows("SELECT MHD FROM FAMASTER WHERE MCD IN (102, 202) ORDER BY MCD"),
              Strings{}) << "the accounts nothing uses are gone";

    EXPECT_EQ(DeleteEverything("StkMaster", "QMHD"),
              Strings{"WHEAT is used by 2 documents; it cannot be deleted."});
    EXPECT_EQ(Rows("SELECT QMHD FROM STKMASTER"), Strings{"WHEAT"});

    struct Reference {
        const char *table, *column, *master, *key;
    };
    for (const Reference& reference : std::vector<Reference>{
             {"DOCMAIN", "PARTYCODE", "FAMASTER", "MCD"},
             {"DOCDATA", "CUSTOMERID", "FAMASTER", "MCD"},
             {"DOCDATA", "PRODUCTID", "STKMASTER", "QMCD"},
             {"DOCCHARGEDATA", "HEADCODE", "FAMASTER", "MCD"},
             {"DOCCHARGES", "HEADCODE", "FAMASTER", "MCD"},
             {"FADATA", "DCD", "FAMASTER", "MCD"},
             {"VATCATEGORYTAXRATES", "SALEPOSTINGCODE", "FAMASTER", "MCD"},
             {"VATCATEGORYTAXRATES", "TAXPOSTINGCODE", "FAMASTER", "MCD"}})
        EXPECT_EQ(Rows(std::string("SELECT COUNT(*) FROM ") + reference.table + " WHERE " +
                       reference.column + "<>0 AND " + reference.column + " NOT IN (SELECT " +
                       reference.key + " FROM " + reference.master + ")"),
                  Strings{"0"})
            << reference.table << "." << reference.column << " names a record that is gone";
}

} // namespace
