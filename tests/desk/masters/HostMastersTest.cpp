// The desk's own masters (items, accounts, VAT categories and classes, account groups),
// driven through their grids and keys as the user drives them.
#include "MastersFixture.h"

#include <map>

using namespace qx;
using Strings = std::vector<std::string>;

namespace {

class HostMastersTest : public test::MastersFixture {
protected:
    void AddCategories(const Strings& names) {
        auto& categories = Open("VatCategories");
        for (const auto& name : names)
            ASSERT_TRUE(TypeRow(categories, {{"CTGNAME", name}}));
        ASSERT_TRUE(app.CloseScreen(categories));
    }
};

// Items typed in, their category typed or chosen with F2 from a list by name; the list printed
// holds stored items only; an edit still being typed is kept when the company is closed.
TEST_F(HostMastersTest, ItemsTypedInAreStoredPrintedAndSurviveReopeningTheCompany) {
    AddCategories({"tax free", "ਦਾਲਾਂ", "grains"});
    auto& items = Open("StkMaster");
    auto& grid = GridOf(items);
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.Col(), items.ColumnOf("QMHD")) << "the cursor waits in the new row's name";
    ASSERT_TRUE(TypeRow(items, {{"QMHD", " wheat "}, {"QVATCTGNO", "Grains"}, {"QUNIT", "QTL"}}));
    EXPECT_EQ(Cell(items, 1, "QMCD"), "1") << "the code shows once the item is stored";
    EXPECT_EQ(Cell(items, 1, "QMHD"), "WHEAT");
    EXPECT_EQ(Cell(items, 1, "QVATCTGNO"), "GRAINS") << "the category as it is kept";
    ASSERT_TRUE(TypeCell(items, 2, "QMHD", "D'souza basmati"));
    ASSERT_TRUE(grid.MoveTo(2, items.ColumnOf("QVATCTGNO")));
    Strings listed;
    frontend.QueueModal([&](ui::Screen& list) {
        auto& rows = list.Get<ui::Grid>(desk::kSelectListGrid);
        for (int row = 1; row < rows.Rows(); ++row)
            listed.push_back(rows.TextMatrix(row, 0));
        rows.SetCurrent(3, 0);
        list.Get<ui::StdButtons>(desk::kSelectListButtons).Click(0);
    });
    EXPECT_TRUE(items.KeyDown({ui::Key::F2}));
    EXPECT_EQ(listed, (Strings{"GRAINS", "TAX FREE", "ਦਾਲਾਂ"}));
    // Six Gurmukhi characters fit a unit of ten, though they take eighteen bytes.
    ASSERT_TRUE(TypeRow(items, {{"QMHD", "ਕਣਕ"}, {"QUNIT", "ਕੁਇੰਟਲ"}}));
    EXPECT_TRUE(frontend.Transcript().empty());
    EXPECT_EQ(Rows("SELECT QMCD, QMHD, QVATCTGNO, QUNIT FROM STKMASTER ORDER BY QMCD"),
              (Strings{"1|WHEAT|3|QTL", "2|D'SOUZA BASMATI|2|", "3|ਕਣਕ|0|ਕੁਇੰਟਲ"}));

    ASSERT_TRUE(TypeCell(items, 1, "QUNIT", "BAG"));
    app.CloseCompany();
    app.OpenCompany(path);
    auto& again = Open("StkMaster");
    ASSERT_EQ(GridOf(again).Rows(), 5);
    EXPECT_EQ(Cell(again, 1, "QMHD"), "D'SOUZA BASMATI") << "listed by name";
    EXPECT_EQ(Cell(again, 1, "QVATCTGNO"), "ਦਾਲਾਂ");
    EXPECT_EQ(Cell(again, 2, "QUNIT"), "BAG");
    EXPECT_EQ(Cell(again, 4, "QMHD"), "") << "the empty row for a new item comes last";

    ASSERT_TRUE(GridOf(again).MoveTo(4, again.ColumnOf("QMHD")));
    GridOf(again).Type("MAIZE"); // still being typed: not part of the list
    again.KeyDown({ui::Key::F8});
    ASSERT_EQ(frontend.Printed().size(), 1u);
    const auto& [job, mode] = frontend.Printed().back();
    EXPECT_EQ(mode, PrintMode::Preview);
    EXPECT_EQ(job.columns.size(), 4u) << "no bookkeeping columns";
    ASSERT_EQ(job.rows.size(), 3u);
    EXPECT_EQ(job.rows[1].cells, (Strings{"1", "WHEAT", "GRAINS", "BAG"}));
    EXPECT_EQ(job.rows[2].cells, (Strings{"3", "ਕਣਕ", "", "ਕੁਇੰਟਲ"}));
    again.KeyDown({ui::Key::F9});
    EXPECT_EQ(frontend.Printed().back().second, PrintMode::Print);
}

TEST_F(HostMastersTest, BadItemInputIsRefusedWhereItIsTypedAndEscSavesOnlyANamedRow) {
    auto& items = Open("StkMaster");
    auto& grid = GridOf(items);
    ASSERT_TRUE(TypeRow(items, {{"QMHD", "WHEAT"}, {"QUNIT", "QTL"}}));
    const int fresh = 2;
    struct Case {
        std::string field, text, message;
    };
    for (const Case& bad :
         std::vector<Case>{{"QMHD", "Wheat", "WHEAT already exists."},
                           {"QVATCTGNO", "grains",
                            "There is no VAT category named grains. Press F2 to choose one."},
                           {"QUNIT", "QUINTAL-100", "Unit can hold at most 10 characters."}}) {
        EXPECT_FALSE(TypeCell(items, fresh, bad.field, bad.text)) << bad.text;
        EXPECT_EQ(TakeWarning(), bad.message);
        EXPECT_EQ(grid.Row(), fresh);
        EXPECT_EQ(grid.Col(), items.ColumnOf(bad.field)) << "the cursor stays on the refused text";
        grid.Type("");
        ASSERT_TRUE(grid.Commit());
    }

    // A stored item cannot lose its name, and a new row is not left without one.
    EXPECT_FALSE(TypeCell(items, 1, "QMHD", ""));
    EXPECT_EQ(TakeWarning(), "Enter a name.");
    grid.Type("wheat");
    ASSERT_TRUE(grid.Commit()) << "an item keeps its own name in other letters";
    ASSERT_TRUE(TypeCell(items, fresh, "QUNIT", "BAG"));
    EXPECT_FALSE(grid.MoveTo(1, items.ColumnOf("QMHD")));
    EXPECT_EQ(TakeWarning(), "Enter a name.");
    EXPECT_EQ(grid.Row(), fresh);
    EXPECT_EQ(Rows("SELECT QMCD, QMHD, QUNIT FROM STKMASTER"), Strings{"1|WHEAT|QTL"});

    // Esc saves the row being typed, but not one without a name: the screen stays for it.
    EXPECT_TRUE(items.KeyDown({ui::Key::Escape}));
    EXPECT_EQ(TakeWarning(), "Enter a name.");
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    ASSERT_TRUE(grid.MoveTo(fresh, items.ColumnOf("QMHD")));
    grid.Type("maize");
    EXPECT_TRUE(items.KeyDown({ui::Key::Escape}));
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_EQ(Rows("SELECT QMCD, QMHD, QUNIT FROM STKMASTER"), (Strings{"1|WHEAT|QTL", "2|MAIZE|BAG"}));
}

TEST_F(HostMastersTest, DeletingAsksForAStoredItemAndKeepsOneUsedInDocuments) {
    auto& items = Open("StkMaster");
    auto& grid = GridOf(items);
    ASSERT_TRUE(TypeRow(items, {{"QMHD", "WHEAT"}}));
    ASSERT_TRUE(TypeRow(items, {{"QMHD", "PADDY"}}));
    // Two lines of one document and a line of another: two documents.
    Db().ExecuteSql(
        "INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID) VALUES (1, 1, 1), (1, 2, 1), (2, 1, 1)");

    // No question is scripted: asking one would fail the test.
    ASSERT_TRUE(grid.MoveTo(1, items.ColumnOf("QMHD")));
    items.KeyDown({ui::Key::F3});
    EXPECT_EQ(TakeWarning(), "WHEAT is used by 2 documents; it cannot be deleted.");

    ASSERT_TRUE(grid.MoveTo(2, items.ColumnOf("QMHD")));
    frontend.QueueAnswer(kAnswerNo);
    items.KeyDown({ui::Key::F3});
    ASSERT_EQ(frontend.Transcript().size(), 1u);
    EXPECT_EQ(frontend.Transcript()[0].prompt, "Do you want to delete PADDY?");
    EXPECT_EQ(frontend.Transcript()[0].style, "Q");
    EXPECT_EQ(grid.RowColour(2), 0) << "the row is shown normally again";
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM STKMASTER"), Strings{"2"});

    frontend.QueueAnswer(kAnswerYes);
    items.KeyDown({ui::Key::F3});
    EXPECT_EQ(Rows("SELECT QMHD FROM STKMASTER"), Strings{"WHEAT"});
    ASSERT_EQ(grid.Rows(), 3);
    EXPECT_EQ(Cell(items, 2, "QMHD"), "") << "the empty row for a new item remains";

    // A row never stored goes without a question.
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeCell(items, 2, "QUNIT", "BAG"));
    items.KeyDown({ui::Key::F3});
    EXPECT_TRUE(frontend.Transcript().empty());
    ASSERT_EQ(grid.Rows(), 3);
    EXPECT_EQ(Cell(items, 2, "QUNIT"), "");

    // Another program saves a document with an item while its deletion is asked about: kept.
    ASSERT_TRUE(TypeRow(items, {{"QMHD", "MAIZE"}}));
    frontend.OnMessage = [this](const desk::ShownMessage& shown) {
        if (shown.style != "Q")
            return;
        desk::Session other;
        other.Open(path);
        other.Database().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID) SELECT 7, "
                                    "1, QMCD FROM STKMASTER WHERE QMHD='MAIZE'");
    };
    frontend.QueueAnswer(kAnswerYes);
    ASSERT_TRUE(grid.MoveTo(2, items.ColumnOf("QMHD")));
    ASSERT_EQ(Cell(items, 2, "QMHD"), "MAIZE");
    items.KeyDown({ui::Key::F3});
    EXPECT_EQ(Messages(), (Strings{"Do you want to delete MAIZE?",
                                   "MAIZE is used by 1 document; it cannot be deleted."}));
    EXPECT_EQ(Rows("SELECT QMHD FROM STKMASTER ORDER BY QMCD"), (Strings{"WHEAT", "MAIZE"}));
}

TEST_F(HostMastersTest, AnAccountComesWithItsPrintHeadFollowsARenameAndRefusesBadInput) {
    auto& accounts = Open("AcMaster");
    ASSERT_TRUE(TypeRow(accounts, {{"MHD", "ram singh & sons"},
                                   {"MBSHNO", "sundry debtors"},
                                   {"MST", "KHANNA"},
                                   {"MCELLNO", "+91 98140-12345"},
                                   {"MAADHARNO", "4829 1573 6201"},
                                   {"MPANNO", "bkrps4521k"},
                                   {"MIFSCCODE", "punb0036700"},
                                   {"MMICRCODE", "141 024 003"},
                                   {"MCRDAYS", "30"},
                                   {"MINTTRATE", "1.5"}}));
    ASSERT_TRUE(TypeRow(accounts, {{"MHD", "ਗੁਰੂ ਨਾਨਕ ਟਰੇਡਰਜ਼"}, {"MCELLNO", "098720 03344"}}));
    EXPECT_EQ(Rows("SELECT MCD, MHD, MBSHNO, MST, MCELLNO, MAADHARNO, MPANNO, MIFSCCODE, "
                   "MMICRCODE, MCRDAYS, MINTTRATE, MLGRNO, MGRPNO FROM FAMASTER ORDER BY MCD"),
              (Strings{"1|RAM SINGH & SONS|40|KHANNA|9814012345|482915736201|BKRPS4521K|"
                       "PUNB0036700|141024003|30|1.5|7|4",
                       "2|ਗੁਰੂ ਨਾਨਕ ਟਰੇਡਰਜ਼|0||9872003344|||||0|0|7|4"}));
    EXPECT_EQ(
        Rows("SELECT CODE, SUBCODE, HEAD, PRESSHEAD FROM FAHEADS ORDER BY CODE"),
        (Strings{"1|0|RAM SINGH & SONS|Ram Singh & Sons", "2|0|ਗੁਰੂ ਨਾਨਕ ਟਰੇਡਰਜ਼|ਗੁਰੂ ਨਾਨਕ ਟਰੇਡਰਜ਼"}));

    ASSERT_TRUE(TypeCell(accounts, 1, "MHD", "d'souza traders"));
    ASSERT_TRUE(GridOf(accounts).MoveTo(2, accounts.ColumnOf("MHD")));
    EXPECT_EQ(Rows("SELECT MCD, MHD, MBSHNO FROM FAMASTER WHERE MCD=1"),
              Strings{"1|D'SOUZA TRADERS|40"});
    EXPECT_EQ(Rows("SELECT CODE, HEAD, PRESSHEAD FROM FAHEADS WHERE CODE=1"),
              Strings{"1|D'SOUZA TRADERS|D'souza Traders"});

    // Bad input is refused with its own message, and nothing of it is written.
    auto& grid = GridOf(accounts);
    struct Case {
        std::string field, text, message;
    };
    const std::string mobile =
        "Mobile must be a mobile number of 10 digits, starting with 6, 7, 8 or 9.";
    const std::string aadhaar = "Aadhaar No. must have 12 digits, the first from 2 to 9.";
    const std::string pan = "PAN must read like ABCDE1234F: five letters, four digits and a letter.";
    const std::string ifsc =
        "IFSC Code must read like SBIN0001234: four letters, a zero, then six letters or digits.";
    for (const Case& bad : std::vector<Case>{
             {"MCELLNO", "9814O12345", mobile},
             {"MCELLNO", "0161-2345678", mobile}, // a telephone, not a mobile
             {"MAADHARNO", "4829 1573 620", aadhaar},
             {"MAADHARNO", "1234 5678 9012", aadhaar},
             {"MPANNO", "BKRPS4521", pan},
             {"MPANNO", "BKRPS45210", pan},
             {"MIFSCCODE", "PUNB036700", ifsc},
             {"MIFSCCODE", "PUNB1036700", ifsc},
             {"MMICRCODE", "14102400", "MICR Code must have 9 digits."},
             {"MCRDAYS", "thirty", "thirty is not a number."},
             {"MCRDAYS", "7.5", "7.5 is not a whole number."},
             {"MCRDAYS", "-15", "Credit Days must be from 0 to 999."},
             {"MINTTRATE", "1.5%", "1.5% is not a number."},
             {"MINTTRATE", "180", "Interest % must be from 0 to 100."},
             {"MINTTRATE", "1,5", "1,5 is not a number: commas group digits as in 1,74,000 or "
                                  "174,000, and decimals follow a point, as in 3.75."},
             {"MINTTRATE", "1.00001", "1.00001 has more than four decimals."},
             {"MBSHNO", "DEBTORS",
              "There is no account group named DEBTORS. Press F2 to choose one."},
             {"MST", std::string(41, 'K'), "Station can hold at most 40 characters."}}) {
        EXPECT_FALSE(TypeCell(accounts, 3, bad.field, bad.text)) << bad.text;
        EXPECT_EQ(TakeWarning(), bad.message);
        EXPECT_EQ(grid.Col(), accounts.ColumnOf(bad.field));
        grid.Type("");
        ASSERT_TRUE(grid.Commit());
    }
    ASSERT_TRUE(grid.MoveTo(1, accounts.ColumnOf("MHD")));
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM FAMASTER"), Strings{"2"});
    EXPECT_EQ(Rows("SELECT COUNT(*) FROM FAHEADS"), Strings{"2"});
}

TEST_F(HostMastersTest, AnAccountInTheBooksIsNotDeletedAndAnUnusedOneGoesWithItsHeads) {
    auto& accounts = Open("AcMaster");
    for (const char* name :
         {"IN THE BOOKS", "A CHARGE HEAD", "A TRADING HEAD", "A POSTING ACCOUNT", "UNUSED"})
        ASSERT_TRUE(TypeRow(accounts, {{"MHD", name}}));
    // Party of one document and buyer on it and on another, with two ledger rows.
    Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCNUMBER, PARTYCODE) VALUES (1, 1, 1), (2, 2, 9)");
    Db().ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID, REFNO, CUSTOMERID) VALUES (1, 1, 1), "
                    "(2, 1, 1)");
    Db().ExecuteSql("INSERT INTO FADATA (VOUCHERID, DSRNO, DCD, DAMT) VALUES (1, 1, 1, 100), "
                    "(1, 2, 1, -100)");
    // A series' charge and its sale account, and a charge applied on a document.
    Db().ExecuteSql("INSERT INTO DOCCONFIG (SERIESID, DOCCODESALE) VALUES (1, 2)");
    Db().ExecuteSql("INSERT INTO DOCCHARGES (SERIESID, POSITION, HEADCODE) VALUES (1, 1, 2)");
    Db().ExecuteSql(
        "INSERT INTO DOCCHARGEDATA (DOCUMENTID, POSITION, HEADCODE) VALUES (3, 1, 2)");
    Db().ExecuteSql("UPDATE FAMASTER SET MTRDNO=3 WHERE MCD=5");
    Db().ExecuteSql("INSERT INTO VATCATEGORYTAXRATES (SERIESID, VATCTGNO, SALEPOSTINGCODE, "
                    "TAXPOSTINGCODE) VALUES (1, 1, 4, 4)");
    Db().ExecuteSql("INSERT INTO VATMASTER (CODE, VATCODE) VALUES (5, 509)");

    auto& grid = GridOf(accounts);
    const std::map<std::string, std::string> refusals{
        {"IN THE BOOKS", "IN THE BOOKS is used by 2 documents and 2 ledger rows; it cannot be "
                         "deleted."},
        {"A CHARGE HEAD", "A CHARGE HEAD is used by 1 document and 1 series; it cannot be "
                          "deleted."},
        {"A TRADING HEAD", "A TRADING HEAD is used by 1 account; it cannot be deleted."},
        {"A POSTING ACCOUNT",
         "A POSTING ACCOUNT is used by 1 posting set-up of a series; it cannot be deleted."}};
    for (int row = 1; row <= 5; ++row) {
        const std::string name = Cell(accounts, row, "MHD");
        if (name == "UNUSED")
            continue;
        ASSERT_TRUE(grid.MoveTo(row, accounts.ColumnOf("MHD")));
        accounts.KeyDown({ui::Key::F3});
        EXPECT_EQ(TakeWarning(), refusals.at(name));
    }
    Db().ExecuteSql("UPDATE FAMASTER SET MTRDNO=0 WHERE MCD=5"); // the link would keep head 3

    ASSERT_TRUE(grid.MoveTo(5, accounts.ColumnOf("MHD")));
    ASSERT_EQ(Cell(accounts, 5, "MHD"), "UNUSED");
    frontend.QueueAnswer(kAnswerYes);
    accounts.KeyDown({ui::Key::F3});
    EXPECT_EQ(Rows("SELECT MCD FROM FAMASTER ORDER BY MCD"), (Strings{"1", "2", "3", "4"}));
    EXPECT_EQ(Rows("SELECT CODE FROM FAHEADS ORDER BY CODE"), (Strings{"1", "2", "3", "4"}));
    EXPECT_TRUE(Rows("SELECT CODE FROM VATMASTER").empty());
}

TEST_F(HostMastersTest, VatClassesKeepTheNumbersTheUserGives) {
    auto& classes = Open("VatClasses");
    auto& grid = GridOf(classes);
    EXPECT_EQ(grid.Col(), classes.ColumnOf("VATCLASSNO")) << "a new class starts with its number";
    ASSERT_TRUE(TypeRow(classes, {{"VATCLASSNO", "111"},
                                  {"VATCLASSNAME", "Sales tax-free"},
                                  {"PRESSHEAD", "Sales Tax-Free"},
                                  {"SPO", "s"}}));
    ASSERT_TRUE(TypeRow(
        classes, {{"VATCLASSNO", "0305"}, {"VATCLASSNAME", "Purchase tax-free"}, {"SPO", "P"}}));
    EXPECT_EQ(Cell(classes, 2, "VATCLASSNO"), "305");

    const int fresh = 3;
    struct Case {
        std::string field, text, message;
    };
    for (const Case& bad :
         std::vector<Case>{{"VATCLASSNO", "111", "Class No. 111 already exists."},
                           {"VATCLASSNO", "0", "Class No. must be above 0."},
                           {"SPO", "X", "Sale/Purchase must be S, P or O."}}) {
        EXPECT_FALSE(TypeCell(classes, fresh, bad.field, bad.text)) << bad.text;
        EXPECT_EQ(TakeWarning(), bad.message);
        grid.Type("");
        ASSERT_TRUE(grid.Commit());
    }
    ASSERT_TRUE(TypeCell(classes, fresh, "VATCLASSNAME", "Input VAT"));
    EXPECT_FALSE(grid.MoveTo(1, classes.ColumnOf("VATCLASSNO")));
    EXPECT_EQ(TakeWarning(), "Class No. is required.");
    ASSERT_TRUE(TypeCell(classes, fresh, "VATCLASSNO", "602"));

    // Accounts file their VAT class by its number: a stored class keeps it.
    EXPECT_FALSE(TypeCell(classes, 1, "VATCLASSNO", "112"));
    EXPECT_EQ(TakeWarning(), "The Class No. of a saved VAT class cannot be changed.");
    grid.Type("111");
    ASSERT_TRUE(grid.Commit());
    EXPECT_EQ(
        Rows("SELECT VATCLASSNO, VATCLASSNAME, PRESSHEAD, SPO FROM VATCLASSES ORDER BY VATCLASSNO"),
        (Strings{"111|SALES TAX-FREE|Sales Tax-Free|S", "305|PURCHASE TAX-FREE||P",
                 "602|INPUT VAT||"}));

    Db().ExecuteSql("INSERT INTO VATMASTER (CODE, VATCODE) VALUES (9, 111)");
    classes.KeyDown({ui::Key::F3});
    EXPECT_EQ(TakeWarning(), "SALES TAX-FREE is used by 1 account; it cannot be deleted.");
}

TEST_F(HostMastersTest, ACompanyStartsWithTheChartsGroupsAndANewGroupTakesTheNextNumber) {
    auto& groups = Open("AcGroups");
    auto& grid = GridOf(groups);
    ASSERT_EQ(grid.Rows(), 16 + 2);

    EXPECT_FALSE(TypeCell(groups, 17, "NATURE", "X"));
    EXPECT_EQ(TakeWarning(), "Nature must be A, L, I or E.");
    grid.Type("l");
    ASSERT_TRUE(TypeCell(groups, 17, "GROUPNAME", "Secured loans"));
    ASSERT_TRUE(grid.MoveTo(18, groups.ColumnOf("GROUPNAME")));
    EXPECT_EQ(Rows("SELECT GROUPNO, GROUPNAME, NATURE FROM FAGROUPS WHERE GROUPNO>195"),
              Strings{"196|SECURED LOANS|L"});

    Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MBSHNO) VALUES (1, 'RAM SINGH', 40)");
    int debtors = 1;
    while (debtors < grid.Rows() && Cell(groups, debtors, "GROUPNO") != "40")
        ++debtors;
    ASSERT_TRUE(grid.MoveTo(debtors, groups.ColumnOf("GROUPNAME")));
    groups.KeyDown({ui::Key::F3});
    EXPECT_EQ(TakeWarning(), "SUNDRY DEBTORS is used by 1 account; it cannot be deleted.");
}

TEST_F(HostMastersTest, ItemScreensOfModulesOpenOnTheStoredItem) {
    app.DeskSession().SetFirmSetting("ItemForms",
                                     "itemrates=Item Rates; missing = Missing Screen ;");
    auto& items = Open("StkMaster");
    auto& rateButton = items.Get<ui::Button>("btnitemrates");
    auto& missingButton = items.Get<ui::Button>("btnmissing");

    rateButton.Click();
    EXPECT_EQ(TakeWarning(), "Choose a saved item first.") << "the empty row holds no item";

    // The item being typed is stored first; the first module that offers the screen shows it.
    ASSERT_TRUE(TypeCell(items, 1, "QMHD", "ਕਣਕ"));
    ui::Screen* modal = nullptr;
    frontend.QueueModal([&](ui::Screen& screen) { modal = &screen; });
    rateButton.Click();
    EXPECT_EQ(Rows("SELECT QMCD, QMHD FROM STKMASTER"), Strings{"1|ਕਣਕ"});
    ASSERT_EQ(rates.handedOut.size(), 1u);
    auto& shown = *rates.handedOut[0];
    EXPECT_EQ(modal, &shown);
    EXPECT_EQ(shown.Properties().GetValue("ItemCode").AsLong(), 1);
    EXPECT_EQ(shown.Properties().GetValue("ItemName").AsText(), "ਕਣਕ");
    EXPECT_EQ(shown.CallingForm.get(), &items);

    // A row that cannot be stored opens nothing.
    ASSERT_TRUE(TypeCell(items, 2, "QUNIT", "BAG"));
    rateButton.Click();
    EXPECT_EQ(TakeWarning(), "Enter a name.");
    EXPECT_EQ(rates.handedOut.size(), 1u);

    ASSERT_TRUE(GridOf(items).MoveTo(2, items.ColumnOf("QMHD")));
    GridOf(items).Type("PADDY");
    missingButton.Click();
    EXPECT_EQ(TakeWarning(), "No module offers Missing Screen.");
    EXPECT_EQ(Rows("SELECT QMHD FROM STKMASTER ORDER BY QMCD"), (Strings{"ਕਣਕ", "PADDY"}));
}

} // namespace
