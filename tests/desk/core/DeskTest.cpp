// The desk as a module meets it: the real plug-in loaded from the modules folder, events,
// menus, and errors shown to the user.
#include "support/Desk.h"

#include "desk/core/ModuleLoader.h"
#include "desk/core/ReportText.h"

#include <fstream>
#include <utility>

using namespace qx;

namespace {

TEST(ModuleLoader, LoadsThePlugInAndSkipsFilesThatAreNotModules) {
    test::TempFolder folder;
    std::filesystem::copy_file(desk::DefaultModulesFolder() / "KivraModule11.so",
                               folder.Path() / "KivraModule11.so");
    std::ofstream(folder.Path() / "broken.so") << "not a library";

    desk::ScriptedFrontend frontend;
    desk::DeskApp app(frontend);
    desk::ModuleLoader loader;
    loader.LoadFolder(folder.Path(), app);
    ASSERT_EQ(loader.Modules().size(), 1u);
    EXPECT_EQ(loader.Modules()[0].module->ID(), "KivraModule");
    ASSERT_EQ(loader.Problems().size(), 1u);
    EXPECT_NE(loader.Problems()[0].find("broken.so"), std::string::npos);
    loader.UnloadAll();
    EXPECT_TRUE(loader.Modules().empty());
}

TEST(DeskApp, ThePlugInOpensTheMarketMasterFromItsMenuAndFailuresAreShown) {
    test::TempFolder folder;
    auto path = test::MakeCompany(folder);
    desk::ScriptedFrontend frontend;
    desk::DeskApp app(frontend);
    app.LoadModules(desk::DefaultModulesFolder());
    app.OpenCompany(path);
    ASSERT_EQ(app.SpecialMenus().size(), 1u);
    app.ClickMenu("MarketMaster");
    ASSERT_EQ(app.OpenScreens().size(), 1u);
    EXPECT_EQ(app.OpenScreens()[0]->Name(), "frmMarketMaster");
    EXPECT_TRUE(app.DeskSession().Database().TableExists("MARKETMASTER"));

    // A key nobody serves yet tells the user so instead of doing nothing; a screen that fails
    // to open shows its error.
    app.ClickMenu("KvInterestRegister");
    ASSERT_FALSE(frontend.Transcript().empty());
    EXPECT_EQ(frontend.Transcript().back().prompt, "This function is not available in this version of QX Desk.");
    app.RegisterHostScreen("", "Broken", "Broken", []() -> std::shared_ptr<ui::Screen> {
        throw DbError("no such table: NOWHERE");
    });
    app.ClickMenu("Broken");
    EXPECT_EQ(frontend.Transcript().back().style, "E");
    EXPECT_EQ(frontend.Transcript().back().prompt, "no such table: NOWHERE");

    app.Shutdown();
    EXPECT_TRUE(app.OpenScreens().empty());
}

// A closed screen is released when the user opens the next one, so that a long run of
// `qx enter`, a screen a document, holds only the screen in use.
TEST(DeskApp, AClosedScreenIsReleasedWhenTheUserOpensAnother) {
    desk::ScriptedFrontend frontend;
    desk::DeskApp app(frontend);
    auto screen = std::make_shared<ui::Screen>("first", "First");
    const std::weak_ptr<ui::Screen> first = screen;
    app.OpenScreen(std::exchange(screen, nullptr));
    ASSERT_TRUE(app.CloseScreen(*first.lock()));
    EXPECT_FALSE(first.expired()) << "kept while its own handler may still be running";
    app.OpenScreen(std::make_shared<ui::Screen>("second", "Second"));
    EXPECT_TRUE(first.expired());
}

TEST(ScriptedFrontend, AQuestionWithoutAnAnswerFailsLoudly) {
    desk::ScriptedFrontend frontend;
    EXPECT_THROW(frontend.Message("Do you want to remove this row ?", "2", "W"), desk::UnscriptedQuestion);
    frontend.SetDefaultAnswer(kAnswerNo);
    EXPECT_EQ(frontend.Message("Do you want to remove this row ?", "2", "W"), kAnswerNo);
    EXPECT_EQ(frontend.Message("Saved.", "", "I"), kAnswerYes) << "a notice is not a question";
}

TEST(ReportText, ColumnsLineUpWhateverTheScript) {
    PrintJob job;
    job.title = "Local Mandi Master";
    job.columns = {{"Sr. No.", 600, Align::Right}, {"Market Name", 2500, Align::Default}, {"Form Series", 800, Align::Default}};
    job.rows = {{{"1", "ਖੰਨਾ", "KHN"}, ""}, {{"2", "D'SOUZA, \"NEW\"", "DS"}, ""}};
    auto text = desk::RenderText(job);
    EXPECT_NE(text.find("    1  ਖੰਨਾ              KHN\n    2  D'SOUZA, \"NEW\"  DS\n"), std::string::npos) << text;
    EXPECT_EQ(desk::RenderCsv(job), "Sr. No.,Market Name,Form Series\n1,ਖੰਨਾ,KHN\n2,\"D'SOUZA, \"\"NEW\"\"\",DS\n");
}

// A weekly return's cells in text: the seller's particulars and the fees one a line, the name
// wrapped within its column no further than "Wrap" allows, figures whole however narrow the
// report made their column, a heading running on beside empty cells, the hidden column gone.
TEST(ReportText, CellsOfSeveralLinesWrapAndFiguresStayWhole) {
    PrintJob job;
    job.columns = {{"Seller", 1200, Align::Default}, {"Fee", 300, Align::Default},
                   {"Hidden", 0, Align::Default}, {"Amount", 300, Align::Right}};
    job.options.SetValue("Wrap", "2");
    job.rows = {{{"PADDY AND MAIZE OF THE SEASON"}, "*headingfonts*"},
                {{"GURMEET SINGH S/O HARBANS SINGH\nVPO RAIPUR", "200.00\n100.00\n50.00", "x", "4,00,00,000.00"}, ""}};
    EXPECT_EQ(desk::RenderText(job), "Seller      Fee             Amount\n"
                                     "----------------------------------\n"
                                     "PADDY AND MAIZE OF THE SEASON\n"
                                     "GURMEET     200.00  4,00,00,000.00\n"
                                     "SINGH S/O…  100.00\n"
                                     "VPO RAIPUR   50.00\n");
    EXPECT_EQ(desk::RenderCsv(job), "Seller,Fee,Amount\nPADDY AND MAIZE OF THE SEASON,,\n"
                                    "\"GURMEET SINGH S/O HARBANS SINGH\nVPO RAIPUR\",\"200.00\n100.00\n50.00\",\"4,00,00,000.00\"\n");
}

} // namespace
