// The report dialogs a module's report screens call through HostUi: the period and date
// dialogs proposing what was accepted last under their key, after a restart too; bad days
// refused with nothing kept; the item filter's choice kept as a condition; a voucher shown.
#include "support/Desk.h"

#include "desk/core/PeriodDialog.h"
#include "desk/core/PrintDesigns.h"
#include "desk/core/ReportDialogs.h"
#include "desk/core/SelectItemScreen.h"

#include <optional>

using namespace qx;

namespace {

using Strings = std::vector<std::string>;

class ReportDialogsTest : public test::DeskFixtureBase {
protected:
    void SetUp() override {
        path = test::MakeCompany(folder, "");
        app.OpenCompany(path);
        Db().ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID, DOCSERIESID, DOCNUMBER, DOCDATE) "
                        "VALUES (1, 1, 1, '2024-11-05'), (2, 1, 2, '2024-11-02')");
        Db().ExecuteSql("INSERT INTO STKMASTER (QMCD, QMHD) VALUES (3, 'WHEAT'), (7, 'PADDY'), (9, 'COTTON')");
    }

    // Opens the period dialog; what the user does is given, and what it proposed is kept.
    std::optional<Period> AskPeriod(std::function<void(ui::Screen&)> user) {
        frontend.QueueModal([this, user](ui::Screen& dialog) {
            proposed_ = dialog.Get<ui::TextBox>(desk::kPeriodFromBox).Text() + " - " +
                        dialog.Get<ui::TextBox>(desk::kPeriodToBox).Text();
            user(dialog);
        });
        return app.AskPeriod("MForm");
    }

    // Reopens the company in a new desk, as after a restart.
    void Restart() {
        app.CloseCompany();
        app.OpenCompany(path);
    }

    std::string proposed_;
};

TEST_F(ReportDialogsTest, PeriodIsProposedAsAcceptedLastUnderItsKeyAfterARestartToo) {
    // Nothing kept yet: the company's latest day.
    EXPECT_EQ(desk::LastPeriod(app, "MForm"), (Period{Date::FromYmd(2024, 11, 5), Date::FromYmd(2024, 11, 5)}));
    const auto period = AskPeriod(desk::TypePeriod("4/11/2024", "10/11/2024"));
    EXPECT_EQ(proposed_, "05/11/2024 - 05/11/2024");
    ASSERT_TRUE(period);
    EXPECT_EQ(*period, (Period{Date::FromYmd(2024, 11, 4), Date::FromYmd(2024, 11, 10)}));

    Restart();
    AskPeriod([](ui::Screen& dialog) { dialog.KeyDown({.key = ui::Key::Escape}); });
    EXPECT_EQ(proposed_, "04/11/2024 - 10/11/2024");
    // Another report's key keeps its own.
    EXPECT_EQ(desk::LastPeriod(app, "ItemSummary").from, Date::FromYmd(2024, 11, 5));

    // The date dialog under the same key does not disturb the period.
    frontend.QueueModal(desk::TypeDate("06/11/2024"));
    EXPECT_EQ(app.AskDate("MForm"), Date::FromYmd(2024, 11, 6));
    frontend.QueueModal([](ui::Screen& dialog) {
        EXPECT_EQ(dialog.Get<ui::TextBox>(desk::kPeriodFromBox).Text(), "06/11/2024");
        EXPECT_EQ(dialog.Find(desk::kPeriodToBox), nullptr);
        dialog.KeyDown({.key = ui::Key::F10});
    });
    EXPECT_EQ(app.AskDate("MForm"), Date::FromYmd(2024, 11, 6));
    EXPECT_EQ(desk::LastPeriod(app, "MForm").to, Date::FromYmd(2024, 11, 10));
}

TEST_F(ReportDialogsTest, BadPeriodIsRefusedWithItsReasonAndNothingKept) {
    ASSERT_TRUE(AskPeriod(desk::TypePeriod("04/11/2024", "10/11/2024")));
    frontend.ClearTranscript();
    EXPECT_FALSE(AskPeriod(desk::TypePeriod("10/11/2024", "04/11/2024")));
    EXPECT_FALSE(AskPeriod(desk::TypePeriod("31/02/2024", "04/11/2024")));
    EXPECT_FALSE(AskPeriod(desk::TypePeriod("01/11/2024", "")));
    EXPECT_EQ(Messages(), (Strings{
        "The period cannot end before it starts: To (04/11/2024) is before From (10/11/2024).",
        "From: 31/02/2024 is not a date: February 2024 has 29 days.",
        "To: Enter the date as dd/MM/yyyy."}));
    EXPECT_EQ(desk::LastPeriod(app, "MForm"), (Period{Date::FromYmd(2024, 11, 4), Date::FromYmd(2024, 11, 10)}));

    // The dialog stays open on a refusal with what was typed: the clerk corrects the one box.
    const auto period = AskPeriod([](ui::Screen& dialog) {
        desk::TypePeriod("10/11/2024", "04/11/2024")(dialog);
        auto& to = dialog.Get<ui::TextBox>(desk::kPeriodToBox);
        EXPECT_EQ(dialog.Focused(), &to);
        to.Type("16/11/2024");
        dialog.KeyDown({.key = ui::Key::Enter}); // Enter in the last box accepts
    });
    EXPECT_EQ(period, (Period{Date::FromYmd(2024, 11, 10), Date::FromYmd(2024, 11, 16)}));
}

TEST_F(ReportDialogsTest, ItemFilterKeepsItsChoiceAsAConditionAndShowsItMarked) {
    EXPECT_EQ(desk::ItemFilter(app, "FilterProduct", "s"), "");
    frontend.QueueModal([](ui::Screen& list) { desk::TakeRows(list, {{"WHEAT"}, {"COTTON"}}); });
    EXPECT_EQ(app.FilterItems("FilterProduct", "s"), "s.QMCD IN (9,3)");

    Restart();
    EXPECT_EQ(desk::ItemFilter(app, "FilterProduct", "x"), "x.QMCD IN (9,3)");
    Strings marked;
    frontend.QueueModal([&](ui::Screen& list) {
        auto& screen = dynamic_cast<desk::SelectItemScreen&>(list);
        const auto& grid = list.Get<ui::Grid>(desk::kSelectItemGrid);
        for (int row = 1; row < grid.Rows(); ++row)
            if (screen.Marked(row)) marked.push_back(grid.TextMatrix(row, 1));
    });
    EXPECT_EQ(app.FilterItems("FilterProduct", "s"), std::nullopt); // cancelled: kept as it was
    EXPECT_EQ(marked, (Strings{"COTTON", "WHEAT"}));
    EXPECT_EQ(desk::ItemFilter(app, "FilterProduct", "s"), "s.QMCD IN (9,3)");

    // "(All Items)", even with items marked, is every item.
    frontend.QueueModal([](ui::Screen& list) { desk::TakeRows(list, {{"(All Items)"}}); });
    EXPECT_EQ(app.FilterItems("FilterProduct", "s"), "");
    EXPECT_EQ(desk::ItemFilter(app, "FilterProduct", "s"), "");

    // What cannot be a list of codes is refused, never read as every item.
    app.DeskSession().SetFirmSetting("ItemFilter.FilterProduct", "3; DROP TABLE STKMASTER");
    EXPECT_THROW(desk::ItemFilter(app, "FilterProduct", "s"), std::runtime_error);
}

TEST_F(ReportDialogsTest, VoucherShowsItsRowsWithHeadsAmountsAndNarrations) {
    Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD) VALUES (11, 'GURMEET SINGH'), (12, 'DAMI A/C')");
    Db().ExecuteSql("INSERT INTO FANAR (NARRATIONID, NARRATION) VALUES (1, 'As per I/J-Forms')");
    Db().ExecuteSql("INSERT INTO FADATA (VOUCHERID, DSRNO, DCD, DVCHDATE, DAMT, NARRATIONID) VALUES "
                    "(12, 2, 12, '2024-11-05', -1234.5, 1), (12, 1, 11, '2024-11-05', 123456.5, 1)");
    Strings shown;
    std::string caption;
    frontend.QueueModal([&](ui::Screen& list) {
        caption = list.Caption();
        const auto& grid = list.Get<ui::Grid>(desk::kSelectItemGrid);
        for (int row = 0; row < grid.Rows(); ++row) {
            std::string line;
            for (int col = 1; col < grid.Cols(); ++col) line += (col > 1 ? "|" : "") + grid.TextMatrix(row, col);
            shown.push_back(line);
        }
    });
    app.ShowVoucher(12);
    EXPECT_EQ(caption, "Voucher 12 of 05/11/2024");
    EXPECT_EQ(shown, (Strings{"Head|Amount|Dr Cr|Narration",
                              "GURMEET SINGH|1,23,456.50|Dr|As per I/J-Forms",
                              "DAMI A/C|1,234.50|Cr|As per I/J-Forms"}));
    app.ShowVoucher(13);
    EXPECT_EQ(Messages(), (Strings{"Voucher 13 is not in the books."}));
}

// The sections a report names are filled from the firm's designs in the company as it prints;
// a section the firm has not written is left out, and a section saved again replaces its text.
TEST_F(ReportDialogsTest, PrintJobTakesTheSectionsItNamesFromTheFirmsDesigns) {
    desk::SavePrintDesign(Db(), {"FormM_Head", "MainHeadForm1", "KIRAT TRADING CO.\nKhanna"});
    desk::SavePrintDesign(Db(), {"FormM_Head", "MainHeadForm1", "ਕਿਰਤ ਟਰੇਡਿੰਗ ਕੰਪਨੀ\nKhanna"});
    desk::SavePrintDesign(Db(), {"FormM_Footer", "BottomLine", "Signature"});
    desk::SavePrintDesign(Db(), {"Other_Head", "BottomLine", "not this design's"});
    EXPECT_THROW(desk::SavePrintDesign(Db(), {"FormM_Head", " ", "x"}), std::invalid_argument);
    PrintJob job;
    job.headSections = {{"FormM_Head", "MainHeadForm1"}, {"FormM_Head", "MainHeadForm2"}};
    job.footSections = {{"FormM_Footer", "BottomLine"}};
    app.Print(job, PrintMode::Preview);
    ASSERT_EQ(frontend.Printed().size(), 1u);
    EXPECT_EQ(frontend.Printed()[0].first.sections,
              (std::map<std::string, std::string>{{"MainHeadForm1", "ਕਿਰਤ ਟਰੇਡਿੰਗ ਕੰਪਨੀ\nKhanna"},
                                                  {"BottomLine", "Signature"}}));
}

} // namespace
