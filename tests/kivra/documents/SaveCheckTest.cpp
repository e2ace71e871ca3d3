// Before a mandi form is saved: doubtful bag figures are asked about, and the form book and
// form number must be given and must not be used by another form of the series and market.
#include "KivraDocFixture.h"

using namespace qx;

namespace {

class SaveCheckTest : public test::KivraDocFixture {
protected:
    // A J-Form of market 1, with its form book and form number boxes.
    void OpenJForm(std::vector<std::pair<int, std::string>> options = {},
                   const std::vector<std::string>& boxes = {"FORM_BOOK_NO", "FORM_NO"}) {
        Open(std::move(options));
        doc->mainFields.SetValue("MarketID", "1");
        SelectSeries("Sale", "*JForm*");
        doc->BuildInputBoxes(boxes);
        // Form 12 of book 1 is taken on market 1.
        Db().ExecuteSql(
            "INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIES, DOCDATE, FORMBOOKNO, FORMNO, MARKETID) "
            "VALUES (1, 'JF', '2017-05-10', 1, 12, 1)");
    }
    void Form(const std::string& book, const std::string& form) {
        doc->Box("FORM_BOOK_NO").SetText(book);
        doc->Box("FORM_NO").SetText(form);
    }
};

// Fractional bags and kilograms more than a bag are asked about through the entry screen in
// integration/SaveTest; here, a question for each line, none for a deduction, and the form
// number still checked after a No.
TEST_F(SaveCheckTest, DoubtfulBagsAreAskedLineByLineDeductionsNeverAndFormsCheckedAfterANo) {
    OpenJForm();
    Form("3", "");
    Line(1, {{"REV_BAGS", "20.5"}, {"ADD_LESS_KGS", "-60"}, {"COL_QTY_PER_BOX", "50"}});
    Line(2, {{"REV_BAGS", "20.50"}});
    const std::string fractional =
        "Fractional bags sale / purchase found. Do you want to continue?";
    frontend.QueueAnswer(kAnswerYes);
    frontend.QueueAnswer(kAnswerNo);
    EXPECT_FALSE(Save());
    EXPECT_EQ(Messages(),
              (std::vector<std::string>{fractional, fractional, "Form no. not specified."}));
    EXPECT_EQ(frontend.Transcript()[2].style, "W");
}

TEST_F(SaveCheckTest, ScreenWithoutLooseOrAddLessColumnsChecksNoBags) {
    Open();
    SelectSeries("Sale", "*JForm*", "",
                 {{"COL_STK_CODE", ""}, {"COL_QUANTITY", ""}, {"REV_BAGS", ""}});
    Line(1, {{"REV_BAGS", "20.5"}});
    EXPECT_TRUE(Save()) << "no question: none is scripted";
}

// A form number used twice (in another book, market or series too) is worked through the entry
// screen in integration/SaveTest and integration/BooksTest.
TEST_F(SaveCheckTest, FormNumberIsGivenAndAFailedLookUpStopsTheSave) {
    OpenJForm({{676, "Yes"}});
    // The book is asked for before the form number.
    Form("", "");
    EXPECT_FALSE(Save());
    EXPECT_EQ(Messages(), std::vector<std::string>{"Book no. not specified."});
    EXPECT_EQ(doc->Screen().Focused(), &doc->Box("FORM_BOOK_NO"));

    Form("1", "");
    EXPECT_FALSE(Save());
    EXPECT_EQ(Messages().back(), "Form no. not specified.");
    EXPECT_EQ(doc->Screen().Focused(), &doc->Box("FORM_NO"));

    // A hidden box cannot take the focus; the save is refused all the same.
    doc->Box("FORM_BOOK_NO").SetText("");
    doc->Box("FORM_BOOK_NO").SetVisible(false);
    EXPECT_FALSE(Save());
    EXPECT_EQ(doc->Screen().Focused(), &doc->Box("FORM_NO"));

    // A look-up that fails (the market column gone from under it) is no "not found": the save
    // stops on the error instead of passing a form it could not check.
    Form("1", "12");
    Db().ExecuteSql("ALTER TABLE DOCMAIN RENAME COLUMN MARKETID TO MANDIID");
    EXPECT_THROW(Save(), DbError);
}

TEST_F(SaveCheckTest, WithOneMarketAndNoBookTheFormNumberIsUniqueInTheSeries) {
    OpenJForm({}, {"FORM_NO"});
    doc->mainFields.SetValue("MarketID", "2");
    doc->SeriesSelected();
    doc->Box("FORM_NO").SetText("12");
    EXPECT_FALSE(Save());
    EXPECT_EQ(Messages(), std::vector<std::string>{"This form no. already exists"});
    EXPECT_EQ(doc->Screen().Focused(), &doc->Box("FORM_NO"));
}

} // namespace
