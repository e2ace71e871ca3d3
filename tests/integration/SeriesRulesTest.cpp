// What a series asks of its documents, as data the firm sets up: the account groups its party
// and its buyers come from, and the boxes a form is not saved without. The J-Form series is
// imported as `qx series import` imports it.
#include "MandiCompany.h"

#include "desk/core/SelectDialog.h"
#include "desk/documents/SeriesImport.h"

using namespace qx;
using test::Strings;

namespace {

constexpr const char* kJForms = R"json({"series": [{
    "code": "JF", "name": "J-Forms", "docType": "J-Form", "properties": "*JForm*",
    "partyGroups": ["Sundry Creditors"],
    "columns": [{"key": "PRODUCT_ID", "caption": "Item"},
                {"key": "CUSTOMER_ID", "caption": "Buyer", "groups": ["SUNDRY DEBTORS"]},
                {"key": "QTY_PER_BOX", "caption": "Kg./Bag", "format": "n2"},
                {"key": "QUANTITY", "caption": "Qty (Qtl.)", "format": "n2"},
                {"key": "RATE", "caption": "Rate", "format": "n2"},
                {"key": "AMOUNT", "caption": "Amount"}],
    "boxes": [{"name": "MARKET", "caption": "Mandi", "field": "MarketID", "lookup": "SelectMarket",
               "lookupText": "GetMarketName", "required": true},
              {"name": "FORM_BOOK_NO", "caption": "Book No.", "field": "FormBookNo",
               "numeric": true},
              {"name": "FORM_NO", "caption": "Form No.", "field": "FormNo",
               "numeric": true},
              {"name": "UTR_DATE", "caption": "U.T.R. Date", "field": "UTRDate", "date": true}]}]})json";

class SeriesRulesTest : public test::MandiCompany {
protected:
    void SetUp() override {
        MandiCompany::SetUp();
        // Farmers are creditors, buyers (SELF among them) debtors, the labour head a liability.
        Db().ExecuteSql("UPDATE FAMASTER SET MBSHNO=180 WHERE MCD IN (101, 102)");
        Db().ExecuteSql("UPDATE FAMASTER SET MBSHNO=40 WHERE MCD IN (201, 202)");
        Db().ExecuteSql("UPDATE FAMASTER SET MBSHNO=190 WHERE MCD=301");
        Db().AddFields("DOCMAIN", "Date", {"UTRDate"}); // the day the farmer was paid
        desk::ImportSeries(Db(), nlohmann::ordered_json::parse(kJForms));
    }

    // The next list's entries (in listed), the current one marked, and the entry chosen in it.
    void ListAndChoose(const std::string& entry) {
        listed.clear();
        frontend.QueueModal([this, entry](ui::Screen& list) {
            const auto& grid = list.Get<ui::Grid>(desk::kSelectListGrid);
            for (int row = 1; row < grid.Rows(); ++row)
                listed.push_back(grid.TextMatrix(row, 0) + (row == grid.Row() ? " <" : ""));
            desk::ChooseInList(list, entry);
        });
    }
};

TEST_F(SeriesRulesTest, PartiesAndBuyersAreAccountsOfTheSeriesGroups) {
    auto& screen = OpenMenu("JForms");
    EXPECT_FALSE(TypeBox(screen, screen.TxpCustomer(), "bansal traders"));
    EXPECT_EQ(Messages(), Strings{"BANSAL TRADERS cannot be the Party: it is an account of SUNDRY "
                                  "DEBTORS, and the Party is an account of SUNDRY CREDITORS."});
    // F2 lists the farmers only, from what was typed.
    ListAndChoose("HARPAL SINGH");
    screen.TxpCustomer().Type("har");
    ASSERT_TRUE(Press(screen, ui::Key::F2));
    EXPECT_EQ(listed, (Strings{"GURMEET SINGH", "HARPAL SINGH <"}));
    EXPECT_EQ(screen.Document().PartyID(), 102);

    frontend.ClearTranscript();
    EXPECT_FALSE(TypeLine(screen, 1, {{"PRODUCT_ID", "wheat"}, {"CUSTOMER_ID", "labour a/c"}}));
    EXPECT_EQ(Messages(), Strings{"LABOUR A/C cannot be the Buyer: it is an account of CURRENT "
                                  "LIABILITIES, and the Buyer is an account of SUNDRY DEBTORS."});
    ListAndChoose("SELF");
    screen.Focus(screen.Grid());
    screen.Grid().Type("s");
    ASSERT_TRUE(Press(screen, ui::Key::F2));
    EXPECT_EQ(listed, (Strings{"BANSAL TRADERS", "SELF <"}));
    EXPECT_EQ(Cell(screen, 1, "CUSTOMER_ID"), "SELF");

    ChooseMarket(screen, "KHANNA");
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_BOOK_NO"), "7"));
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "12"));
    ASSERT_TRUE(
        TypeLine(screen, 1, {{"QTY_PER_BOX", "50"}, {"QUANTITY", "10.50"}, {"RATE", "2125"}}));
    frontend.ClearTranscript();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();

    // A form whose buyer has since been made a ledger head is not saved again as it stands.
    Db().ExecuteSql("UPDATE FAMASTER SET MBSHNO=190 WHERE MCD=202");
    screen.OpenDocument(1);
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"Line 1: SELF cannot be the Buyer: it is an account of CURRENT "
                                  "LIABILITIES, and the Buyer is an account of SUNDRY DEBTORS."});
    EXPECT_EQ(screen.Focused(), &screen.Grid());
}

TEST_F(SeriesRulesTest, AFormIsNotSavedWithoutTheBoxesItsSeriesRequires) {
    auto& screen = OpenMenu("JForms");
    ASSERT_TRUE(TypeBox(screen, screen.TxpDocDate(), "15/04/2024"));
    ASSERT_TRUE(TypeBox(screen, screen.TxpCustomer(), "gurmeet singh"));
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_BOOK_NO"), "7"));
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "12"));
    ASSERT_TRUE(TypeLine(screen, 1, JLine("wheat", "bansal traders", "50", "10.50", "2125")));
    // A box of a day takes a day only, and keeps it as one.
    EXPECT_FALSE(TypeBox(screen, Box(screen, "UTR_DATE"), "31/11/2024"));
    ASSERT_TRUE(TypeBox(screen, Box(screen, "UTR_DATE"), "6/11/2024"));
    EXPECT_EQ(Box(screen, "UTR_DATE").Text(), "06/11/2024");
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), (Strings{"U.T.R. Date: 31/11/2024 is not a date: November 2024 has 30 days.",
                                   "Choose the Mandi (F2): the document is not saved without it."}));
    EXPECT_EQ(screen.Focused(), &Box(screen, "MARKET"));
    EXPECT_TRUE(Rows("SELECT * FROM DOCMAIN").empty());

    // What is typed into the box before F2 opens the list at it.
    ListAndChoose("KHANNA");
    Box(screen, "MARKET").Type("kh");
    ASSERT_TRUE(Press(screen, ui::Key::F2));
    EXPECT_EQ(listed, (Strings{"DORAHA", "KHANNA <"}));
    frontend.ClearTranscript();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    // The day compares as a day in a statement, as the returns select by it.
    EXPECT_EQ(Rows("SELECT FORMNO, MARKETID FROM DOCMAIN WHERE UTRDATE=" + Db().DateLiteral(Date::FromYmd(2024, 11, 6))),
              Strings{"12|1"});

    EXPECT_THROW(desk::ImportSeries(Db(), nlohmann::ordered_json::parse(
                                              R"({"series": [{"code": "JF",
                                                  "partyGroups": ["SUNDRY CREDITOR"]}]})")),
                 std::runtime_error)
        << "a group name that is not a group is refused, never read as any account";
}

} // namespace
