// Saving mandi forms through the desk's engine with the Kivra extension: the questions about
// doubtful bags, the form book and number of each mandi, and a form saved, opened, saved
// again and deleted.
#include "MandiCompany.h"

using namespace qx;
using test::Strings;

namespace {

const char* const kFractionalBags =
    "Fractional bags sale / purchase found. Do you want to continue?";

class SaveTest : public test::MandiCompany {
protected:
    Strings SavedForms() {
        return Rows("SELECT DOCUMENTID, DOCSERIES, DOCNUMBER, FORMBOOKNO, FORMNO, MARKETID "
                    "FROM DOCMAIN ORDER BY DOCUMENTID");
    }
};

TEST_F(SaveTest, AJFormIsSavedOpenedAsSavedSavedAgainOverItselfAndDeletedWhole) {
    auto& screen = TypeForm12();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(SavedForms(), Strings{"1|JF|1|7|12|1"});
    // Labour 6.22 a bag on 21 bags is the farmer's to bear.
    EXPECT_EQ(Rows("SELECT PARTYCODE, DOCDATE, GROSSAMT, LABOUR, ROUNDOFFAMT, GRANDTOTAL FROM "
                   "DOCMAIN"),
              Strings{"101|15/04/2024|22312.5|130.62|0.12|22182"});
    EXPECT_EQ(Rows("SELECT PRODUCTID, CUSTOMERID, NOOFBOXES, QTYPERBOX, PCS, QUANTITY, "
                   "AddLessKgs, TOTALWT, RATE, AMOUNT FROM DOCDATA"),
              Strings{"1|201|21|50|0|10.5|0|10.5|2125|22312.5"});

    // The item's rate changes after the form was made: the form keeps its own.
    Db().ExecuteSql("UPDATE STKMASTER SET qLabourJF=9 WHERE QMCD=1");
    ChooseInNextList(desk::BrowseEntry(Date::FromYmd(2024, 4, 15), 1, "GURMEET SINGH",
                                       Amount::FromInt(22182), false));
    ASSERT_TRUE(Press(screen, ui::Key::F6));
    EXPECT_EQ(Box(screen, "MARKET").Text(), "KHANNA");
    EXPECT_EQ(Box(screen, "FORM_BOOK_NO").Text(), "7");
    EXPECT_EQ(Box(screen, "FORM_NO").Text(), "12");
    EXPECT_EQ(Line(screen, 1,
                   {"PRODUCT_ID", "CUSTOMER_ID", "NO_OF_BOXES", "QUANTITY", "ADD_LESS_KGS",
                    "TOTAL_WT", "AMOUNT"}),
              (Strings{"WHEAT", "BANSAL TRADERS", "21", "10.50", "", "10.50", "22,312.50"}));
    EXPECT_EQ(Charges(screen), Strings{"LABOUR 6.22 130.62"});

    // 10.40 quintals weighed as 21 bags, sold to another buyer; the form is not a duplicate of
    // itself, and what is pending for I-Forms goes to the new buyer.
    Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (203, 'GOYAL MILLS', 'KHANNA')");
    ASSERT_TRUE(TypeLine(screen, 1,
                         {{"CUSTOMER_ID", "goyal mills"}, {"QUANTITY", "10.40"}, {"REV_BAGS2", "21"}}));
    EXPECT_EQ(Line(screen, 1, {"ADD_LESS_KGS", "TOTAL_WT"}), (Strings{"10", "10.50"}));
    EXPECT_EQ(Charges(screen), Strings{"LABOUR 6.22 130.62"});
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(SavedForms(), Strings{"1|JF|1|7|12|1"});
    EXPECT_EQ(Rows("SELECT DOCUMENTID, QUANTITY, AddLessKgs, TOTALWT, AMOUNT FROM DOCDATA"),
              Strings{"1|10.4|10|10.5|22100"});
    EXPECT_EQ(Rows("SELECT LABOUR, GRANDTOTAL FROM DOCMAIN"), Strings{"130.62|21969"});
    EXPECT_EQ(Rows("SELECT CUSTOMERID, QUANTITY FROM JFORMPENDING"), Strings{"203|10.4"});

    // Deleted when the user says so, it leaves nothing behind, and its form number is free.
    screen.OpenDocument(1);
    frontend.QueueAnswer(kAnswerNo);
    ASSERT_TRUE(Press(screen, ui::Key::F3));
    EXPECT_EQ(SavedForms().size(), 1u);
    frontend.QueueAnswer(kAnswerYes);
    ASSERT_TRUE(Press(screen, ui::Key::F3));
    for (const char* table : {"DOCMAIN", "DOCDATA", "DOCCHARGEDATA", "JFORMPENDING"})
        EXPECT_EQ(Rows(std::string("SELECT COUNT(*) FROM ") + table), Strings{"0"}) << table;
    TypeHeader(screen, "15/04/2024", "gurmeet singh", "KHANNA", "7", "12");
    ASSERT_TRUE(TypeLine(screen, 1, JLine("wheat", "self", "50", "1", "2125")));
    frontend.ClearTranscript();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(SavedForms().size(), 1u);
}

TEST_F(SaveTest, DoubtfulBagsAreAskedAboutBeforeTheFormIsSaved) {
    // 10.40 quintals in bags of 50 kg are 20.8 bags.
    auto& screen = TypeForm12("10.40");
    ASSERT_EQ(Cell(screen, 1, "REV_BAGS"), "20.80");
    // 5 quintals and 50 kg more: a whole bag added as loose kilograms.
    ASSERT_TRUE(TypeLine(screen, 2, JLine("wheat", "self", "50", "5")));
    ASSERT_TRUE(TypeLine(screen, 2, {{"ADD_LESS_KGS", "50"}, {"RATE", "2125"}}));
    ASSERT_EQ(Cell(screen, 2, "TOTAL_WT"), "5.50");
    // 60 kg taken off 2.10 quintals, more than a bag, is never asked about.
    ASSERT_TRUE(TypeLine(screen, 3, JLine("wheat", "self", "50", "2.10")));
    ASSERT_TRUE(TypeLine(screen, 3, {{"ADD_LESS_KGS", "-60"}, {"RATE", "2125"}}));

    // After a No the form number is still checked.
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), ""));
    frontend.QueueAnswer(kAnswerYes);
    frontend.QueueAnswer(kAnswerNo);
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(),
              (Strings{kFractionalBags,
                       "Kgs more than Kg./Bag found at row no: 2. Do you want to continue?",
                       "Form no. not specified."}));
    EXPECT_TRUE(SavedForms().empty());
    EXPECT_EQ(Cell(screen, 2, "ADD_LESS_KGS"), "50.00") << "the form stays as typed";

    frontend.ClearTranscript();
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "12"));
    frontend.QueueAnswer(kAnswerYes);
    frontend.QueueAnswer(kAnswerYes);
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages().size(), 2u);
    EXPECT_EQ(SavedForms(), Strings{"1|JF|1|7|12|1"});
    EXPECT_EQ(Rows("SELECT REFNO, AddLessKgs, TOTALWT FROM DOCDATA ORDER BY REFNO"),
              (Strings{"1|0|10.4", "2|50|5.5", "3|-60|1.5"}));
}

TEST_F(SaveTest, FiguresRefusedInTheirCellsKeepTheFormFromBeingSaved) {
    auto& screen = TypeForm12();
    EXPECT_FALSE(TypeLine(screen, 1, {{"REV_BAGS2", "23"}}));
    auto& charges = screen.GridTot2();
    ASSERT_TRUE(charges.MoveTo(1, desk::DocumentScreen::kChargeRateCol));
    charges.Type("6.2x");
    EXPECT_FALSE(charges.Commit());
    const Strings refusals = {"Bags must be either 21 or 22", "6.2x is not a number."};
    EXPECT_EQ(Messages(), refusals);

    // Each refused figure is checked again when the form is saved.
    frontend.ClearTranscript();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    // 22 bags of 50 kg outweigh 10.50 quintals by a whole bag: the kilograms are left alone.
    screen.Grid().Type("22");
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), refusals);
    EXPECT_TRUE(SavedForms().empty());

    charges.Type("6.5");
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages().size(), 2u);
    EXPECT_EQ(Rows("SELECT LABOUR FROM DOCMAIN"), Strings{"136.5"});
    EXPECT_EQ(Rows("SELECT NOOFBOXES, AddLessKgs, TOTALWT FROM DOCDATA"), Strings{"21|0|10.5"});
}

// How a typed figure is read is tested in host/AmountTest; here, that the cells read it so.
TEST_F(SaveTest, FiguresAreReadExactlyAndALineNeedsItsQuantityBagWeightAndRate) {
    auto& screen = TypeForm12();
    struct Case {
        std::string key, text, message, good;
    };
    const std::string misgrouped = " is not a number: commas group digits as in 1,74,000 or "
                                   "174,000, and decimals follow a point, as in 3.75.";
    for (const Case& bad : std::vector<Case>{
             {"QUANTITY", "12,00", "12,00" + misgrouped, "10.50"},
             {"QUANTITY", "-10.50", "Qty (Qtl.) must be more than 0.", "10.50"},
             {"QTY_PER_BOX", "0", "Kg./Bag must be more than 0.", "50"},
             {"NO_OF_BOXES", "-21", "Bags cannot be below 0.", "21"}}) {
        EXPECT_FALSE(TypeLine(screen, 1, {{bad.key, bad.text}})) << bad.text;
        EXPECT_EQ(Messages(), Strings{bad.message});
        EXPECT_EQ(screen.Grid().Col(), screen.Member("COL_" + bad.key)) << "the cursor stays";
        frontend.ClearTranscript();
        screen.Grid().Type(bad.good);
        ASSERT_TRUE(screen.Grid().Commit());
    }
    // Grouped the Indian or the Western way, a figure is the same; kilograms less are negative.
    ASSERT_TRUE(TypeLine(screen, 1, {{"RATE", "2,125"}, {"ADD_LESS_KGS", "-5"}}));
    EXPECT_EQ(Line(screen, 1, {"RATE", "ADD_LESS_KGS", "TOTAL_WT", "AMOUNT"}),
              (Strings{"2,125.00", "-5.00", "10.45", "22,312.50"}));

    auto& charges = screen.GridTot2();
    ASSERT_TRUE(charges.MoveTo(1, desk::DocumentScreen::kChargeRateCol));
    charges.Type("-6.22");
    EXPECT_FALSE(charges.Commit());
    charges.Type("6.22");
    ASSERT_TRUE(charges.Commit());
    EXPECT_FALSE(TypeBox(screen, Box(screen, "FORM_NO"), "-12"));
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "12"));
    EXPECT_EQ(Messages(), (Strings{"Labour cannot be below 0.", "Form No. cannot be below 0."}));

    // A line without a rate is not a sale: the form is refused, naming the line.
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeLine(screen, 1, {{"RATE", ""}}));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"Line 1: Rate must be more than 0."});
    EXPECT_TRUE(SavedForms().empty());
}

TEST_F(SaveTest, AFigureThatMakesAnAmountTooLargeIsRefusedInItsCell) {
    auto& screen = TypeForm12();
    EXPECT_FALSE(TypeLine(screen, 1, {{"RATE", "99999999999999"}}));
    const std::string tooLarge = "Line 1, Rate: 99999999999999 makes the line's amount too large.";
    EXPECT_EQ(Messages(), Strings{tooLarge});
    EXPECT_EQ(screen.Grid().Col(), screen.Member("COL_RATE")) << "the cursor stays";
    EXPECT_EQ(Cell(screen, 1, "AMOUNT"), "22,312.50") << "the line keeps its figures";
    EXPECT_EQ(screen.Get<ui::TextBox>("txtGross").Text(), "22,312.50");
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), (Strings{tooLarge, tooLarge}));
    screen.Grid().Type("2125");
    ASSERT_TRUE(screen.Grid().Commit());

    // Each line can be worked out, but not their sum.
    frontend.ClearTranscript();
    EXPECT_FALSE(TypeLine(screen, 2, JLine("wheat", "self", "50", "1", "922337203670000")));
    screen.Grid().Type("2125");
    ASSERT_TRUE(screen.Grid().Commit());
    auto& charges = screen.GridTot2();
    ASSERT_TRUE(charges.MoveTo(1, desk::DocumentScreen::kChargeRateCol));
    charges.Type("99999999999999");
    EXPECT_FALSE(charges.Commit());
    EXPECT_EQ(Messages(),
              (Strings{"Line 2, Rate: 922337203670000 makes the document's total too large.",
                       "Labour: 99999999999999 makes the document's total too large."}));
    charges.Type("6.22");
    ASSERT_TRUE(charges.Commit());

    frontend.ClearTranscript();
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(Rows("SELECT GROSSAMT, GRANDTOTAL FROM DOCMAIN"), Strings{"24437.5|24294"});
    EXPECT_EQ(Rows("SELECT AMOUNT FROM DOCDATA ORDER BY REFNO"), (Strings{"22312.5", "2125"}));
}

TEST_F(SaveTest, AQuantityTypedBeforeItsBagWeightWaitsForItAndTheFormIsNotSavedMeanwhile) {
    auto& screen = OpenMenu("JForms");
    TypeHeader(screen, "15/04/2024", "gurmeet singh", "KHANNA", "7", "12");
    ASSERT_TRUE(TypeLine(
        screen, 1,
        {{"PRODUCT_ID", "wheat"}, {"CUSTOMER_ID", "bansal traders"}, {"QUANTITY", "10.50"}}));
    const std::string waiting = "Line 1, Qty (Qtl.): 10.50 is kept, but the line cannot be "
                                "worked out while a figure it divides by is 0 or empty. Fill "
                                "in the rest of the line.";
    EXPECT_EQ(Messages(), Strings{waiting});
    EXPECT_EQ(Cell(screen, 1, "QUANTITY"), "10.50");
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    const std::string notWorkedOut =
        "Line 1 is not worked out: complete its figures before saving.";
    EXPECT_EQ(Messages(), (Strings{waiting, notWorkedOut}));
    EXPECT_TRUE(SavedForms().empty());

    // Working the form out again, when a line is removed, leaves the line waiting.
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeLine(screen, 2, JLine("wheat", "self", "50", "1")));
    screen.Focus(screen.Grid());
    EXPECT_TRUE(screen.KeyDown({.key = ui::Key::Delete, .ctrl = true}));
    EXPECT_EQ(Messages(), Strings{notWorkedOut});

    frontend.ClearTranscript();
    ASSERT_TRUE(TypeLine(screen, 1, {{"QTY_PER_BOX", "50"}, {"RATE", "2125"}}));
    EXPECT_EQ(Line(screen, 1, {"NO_OF_BOXES", "REV_BAGS2", "TOTAL_WT", "AMOUNT"}),
              (Strings{"21", "21.00", "10.50", "22,312.50"}));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(Rows("SELECT NOOFBOXES, TOTALWT, AMOUNT FROM DOCDATA"), Strings{"21|10.5|22312.5"});
}

TEST_F(SaveTest, AFormNumberIsUsedOnceInABookOfAMandi) {
    auto& first = TypeForm12();
    ASSERT_TRUE(Press(first, ui::Key::F10));
    ASSERT_TRUE(app.CloseScreen(first));

    // Form 12 typed as 0012 is the same form.
    auto& screen = TypeForm12();
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_NO"), "0012"));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"This form no. already exists"});
    EXPECT_EQ(screen.Focused(), &Box(screen, "FORM_NO"));
    EXPECT_EQ(SavedForms().size(), 1u);
    // The book is asked for before the form number.
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_BOOK_NO"), ""));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"Book no. not specified."});
    EXPECT_EQ(screen.Focused(), &Box(screen, "FORM_BOOK_NO"));

    // Form 12 of another book, or of the same book at the other mandi, is another form.
    frontend.ClearTranscript();
    ASSERT_TRUE(TypeBox(screen, Box(screen, "FORM_BOOK_NO"), "8"));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    TypeHeader(screen, "15/04/2024", "harpal singh", "DORAHA", "7", "12");
    ASSERT_TRUE(TypeLine(screen, 1, JLine("paddy", "self", "50", "10", "2203")));
    ASSERT_TRUE(Press(screen, ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    EXPECT_EQ(SavedForms(), (Strings{"1|JF|1|7|12|1", "2|JF|2|8|12|1", "3|JF|3|7|12|2"}));

    // A firm of one mandi has one form 12 in a book (its series read with that option).
    app.DeskSession().SetOption(676, "No");
    auto& oneMandi = OpenMenu("JForms");
    TypeHeader(oneMandi, "15/04/2024", "harpal singh", "DORAHA", "8", "12");
    ASSERT_TRUE(TypeLine(oneMandi, 1, JLine("paddy", "self", "50", "10", "2203")));
    ASSERT_TRUE(Press(oneMandi, ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"This form no. already exists"});
    app.DeskSession().SetOption(676, "Yes");
}

// A local purchase's other charges go to the heads of its item's category (labour to "LABOUR :
// FOOD GRAINS", not the series' own head), said when one is missing; each line bears its share.
TEST_F(SaveTest, ALocalPurchasesChargesGoToTheHeadsOfItsCategory) {
    Db().ExecuteSql("DELETE FROM FAMASTER WHERE MHD='LABOUR : FOOD GRAINS'");
    ASSERT_TRUE(Press(TypeLocalPurchase(), ui::Key::F10));
    EXPECT_EQ(Messages(), Strings{"A/c Head 'LABOUR : FOOD GRAINS' not found in master"});
    Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST) VALUES (335, 'LABOUR : FOOD GRAINS', "
                    "'')");
    frontend.ClearTranscript();
    ASSERT_TRUE(Press(TypeLocalPurchase(), ui::Key::F10));
    EXPECT_TRUE(Messages().empty()) << Messages().front();
    // The purchase's labour is wheat's purchase rate, 4 a bag.
    EXPECT_EQ(Rows("SELECT VOUCHERID, DCD, DAMT FROM FADATA WHERE DCD IN (301, 335) ORDER BY "
                   "VOUCHERID"),
              (Strings{"1|301|-40", "2|335|-40"}));
    EXPECT_EQ(Rows("SELECT STOCKFACTOR, OH_OTHERS FROM DOCDATA"), (Strings{"1|40", "1|40"}));
}

} // namespace
