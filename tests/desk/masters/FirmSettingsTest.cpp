// The firm settings screen: the firm's properties, the item screens of modules and the
// numbered options, written on OK only.
#include "MastersFixture.h"

#include "desk/masters/FirmSettingsScreen.h"
#include "desk/masters/PrintDesignsScreen.h"

using namespace qx;
using desk::FirmSettingsScreen;

namespace {

class FirmSettingsTest : public test::MastersFixture {
protected:
    void SetUp() override {
        MastersFixture::SetUp();
        auto& session = app.DeskSession();
        session.SetFirmSetting("FirmProperties", "*TradeMenu*");
        session.SetOption(676, "Yes");
        session.SetOption(632, "Yes");
        session.SetOption(700, ""); // cleared some time ago
    }

    FirmSettingsScreen& OpenSettings() {
        app.ClickMenu("FirmSettings");
        auto screen = std::dynamic_pointer_cast<FirmSettingsScreen>(app.OpenScreens().back());
        if (!screen)
            throw std::logic_error("FirmSettings opened another screen");
        return *screen;
    }
    static ui::Grid& OptionsOf(FirmSettingsScreen& screen) { return screen.Get<ui::Grid>("Grid"); }
    static void Type(ui::Grid& grid, int row, int col, const std::string& text) {
        ASSERT_TRUE(grid.MoveTo(row, col));
        grid.Type(text);
    }
    std::vector<std::string> Options() {
        std::vector<std::string> options;
        for (int number : {632, 637, 676, 700})
            options.push_back(app.DeskSession().GetOption(number));
        return options;
    }
};

TEST_F(FirmSettingsTest, OkStoresPropertiesAndOptionsForTheNextOpening) {
    auto& screen = OpenSettings();
    EXPECT_EQ(screen.Get<ui::TextBox>("txtFirmProperties").Text(), "*TradeMenu*");
    auto& options = OptionsOf(screen);
    ASSERT_EQ(options.Rows(), 4) << "the two options set and an empty row for a new one";
    EXPECT_EQ(options.TextMatrix(1, FirmSettingsScreen::kColNumber), "632");
    EXPECT_EQ(options.TextMatrix(2, FirmSettingsScreen::kColNumber), "676");
    ASSERT_TRUE(screen.Get<ui::TextBox>("txtFirmProperties").Type("*TradeMenu**GST*"));
    ASSERT_TRUE(screen.Get<ui::TextBox>("txtItemForms").Type("rates=Item Rates"));
    Type(options, 2, FirmSettingsScreen::kColValue, "No");
    Type(options, 1, FirmSettingsScreen::kColNumber, ""); // 632 taken out of the list
    Type(options, 1, FirmSettingsScreen::kColValue, "");
    Type(options, 3, FirmSettingsScreen::kColNumber, "637");
    Type(options, 3, FirmSettingsScreen::kColValue, " Yes ");
    screen.Get<ui::StdButtons>("OKCancel").Click(0);
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_TRUE(frontend.Transcript().empty());

    app.CloseCompany();
    app.OpenCompany(path);
    const auto& settings = app.DeskSession().FirmSettings();
    EXPECT_EQ(settings.GetValue("FirmProperties").AsText(), "*TradeMenu**GST*");
    EXPECT_EQ(settings.GetValue("ItemForms").AsText(), "rates=Item Rates");
    EXPECT_EQ(Options(), (std::vector<std::string>{"", "Yes", "No", ""}));
}

// Another program changes the settings while the screen is open: OK writes only what the user
// changed, and what the other program saved stays.
TEST_F(FirmSettingsTest, OkLeavesWhatAnotherProgramSavedMeanwhile) {
    auto& screen = OpenSettings();
    desk::Session other;
    other.Open(path);
    other.SetFirmSetting("FirmProperties", "*TradeMenu**KivraMenu*");
    other.SetOption(676, "No");
    Type(OptionsOf(screen), 1, FirmSettingsScreen::kColValue, "No"); // 632
    screen.Get<ui::StdButtons>("OKCancel").Click(0);
    EXPECT_EQ(Options(), (std::vector<std::string>{"No", "", "No", ""}));
    EXPECT_EQ(Rows("SELECT VALUE FROM FIRMSETTINGS WHERE NAME='FirmProperties'"),
              std::vector<std::string>{"*TradeMenu**KivraMenu*"});
}

TEST_F(FirmSettingsTest, OptionNumbersAreCheckedAndCancelOrEscWriteNothing) {
    auto& screen = OpenSettings();
    auto& options = OptionsOf(screen);
    for (const auto& [text, message] : std::vector<std::pair<std::string, std::string>>{
             {"six", "six is not a number."},
             {"0", "Option numbers start at 1."},
             {"0676", "Option 676 is listed already."}}) {
        Type(options, 3, FirmSettingsScreen::kColNumber, text);
        EXPECT_FALSE(options.Commit()) << text;
        EXPECT_EQ(TakeWarning(), message);
        options.Type("");
        ASSERT_TRUE(options.Commit());
    }
    Type(options, 3, FirmSettingsScreen::kColValue, "Yes");
    screen.Get<ui::StdButtons>("OKCancel").Click(0);
    EXPECT_EQ(TakeWarning(), "Enter the option number.");
    EXPECT_EQ(app.OpenScreens().size(), 1u) << "the screen stays for the number";
    EXPECT_EQ(options.Row(), 3);
    EXPECT_EQ(options.Col(), FirmSettingsScreen::kColNumber);

    ASSERT_TRUE(screen.Get<ui::TextBox>("txtFirmProperties").Type(""));
    Type(options, 1, FirmSettingsScreen::kColValue, "No");
    screen.Get<ui::StdButtons>("OKCancel").Click(1);
    EXPECT_TRUE(app.OpenScreens().empty());
    auto& again = OpenSettings();
    Type(OptionsOf(again), 1, FirmSettingsScreen::kColValue, "No");
    EXPECT_TRUE(again.KeyDown({ui::Key::Escape}));
    EXPECT_TRUE(app.OpenScreens().empty());
    EXPECT_EQ(app.DeskSession().FirmSettings().GetValue("FirmProperties").AsText(), "*TradeMenu*");
    EXPECT_EQ(Options(), (std::vector<std::string>{"Yes", "", "Yes", ""}));
}

// The firm's print designs at the keyboard: a section typed in several lines and saved with
// F10 is in the list and in the company; F5 starts anew; F3 deletes after a Yes.
TEST_F(FirmSettingsTest, PrintDesignsAreWrittenSectionBySection) {
    app.ClickMenu("PrintDesigns");
    auto& screen = dynamic_cast<desk::PrintDesignsScreen&>(*app.OpenScreens().back());
    auto& list = screen.Get<ui::ComboBox>("cmbSection");
    auto& text = screen.Get<ui::TextBox>("txtText");
    screen.Get<ui::TextBox>("txtDesign").Type("FormM_Head");
    screen.Get<ui::TextBox>("txtSection").Type(" MainHeadForm1 ");
    text.SetFocus();
    EXPECT_FALSE(screen.KeyDown({.key = ui::Key::Enter})) << "Enter is a new line in the text";
    EXPECT_EQ(screen.Focused(), &text);
    text.Type("KIRAT TRADING CO.\nLicence No. KHN/123");
    screen.KeyDown({.key = ui::Key::F10});
    screen.KeyDown({.key = ui::Key::F5});
    screen.Get<ui::TextBox>("txtDesign").Type("FormM_Footer");
    screen.Get<ui::TextBox>("txtSection").Type("BottomLine");
    text.Type("Signature");
    screen.KeyDown({.key = ui::Key::F10});
    ASSERT_EQ(list.Items().size(), 2u);
    EXPECT_EQ(list.Items()[0].text, "FormM_Footer / BottomLine");
    ASSERT_TRUE(list.Choose("FormM_Head / MainHeadForm1"));
    EXPECT_EQ(text.Text(), "KIRAT TRADING CO.\nLicence No. KHN/123");

    frontend.QueueAnswer(kAnswerYes);
    screen.KeyDown({.key = ui::Key::F3});
    EXPECT_EQ(Rows("SELECT DESIGNNAME, SECTIONNAME, SECTIONTEXT FROM PRINTDESIGNS"),
              (std::vector<std::string>{"FormM_Footer|BottomLine|Signature"}));
}

} // namespace
