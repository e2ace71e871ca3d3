#include "host/HostApp.h"
#include "host/HostSelectDialog.h"
#include "host/HostSession.h"
#include "host/HostUi.h"
#include "host/ModuleUtil.h"
#include "host/PrintJob.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace qx {
namespace {

using ::testing::Return;
using ::testing::ReturnRef;

TEST(PrintJob, AlignmentCodesOfTheHostGrid) {
    EXPECT_EQ(AlignFromCode(1), Align::Left);
    EXPECT_EQ(AlignFromCode(4), Align::Centre);
    EXPECT_EQ(AlignFromCode(7), Align::Right);
    for (int code : {0, 2, 3, 5, 6, 8, 9, -1}) {
        EXPECT_EQ(AlignFromCode(code), Align::Default) << code;
    }
}

TEST(PrintJob, MarksMatchWholeWordsInAnyCase) {
    EXPECT_TRUE(HasMark("*hline1*totals*", "totals"));
    EXPECT_FALSE(HasMark("*hline1*totals*", "total"));
    EXPECT_FALSE(HasMark("*hline1*totals*", "line1"));
    EXPECT_TRUE(HasMark("*hline1*totals*", "hline1"));
    EXPECT_TRUE(HasMark("*HeadingFonts*", "headingfonts"));
    EXPECT_TRUE(HasMark("*totals*totalreset*", "TotalReset"));
    EXPECT_FALSE(HasMark("*bhline1*", "hline1"));
    EXPECT_TRUE(HasMark("*blanklineafter*headingfonts*", "*headingfonts*"));
    EXPECT_TRUE(HasMark("totals", "totals"));
    EXPECT_FALSE(HasMark("", "totals"));
    EXPECT_FALSE(HasMark("*totals*", ""));
    EXPECT_FALSE(HasMark("**", "*"));

    const PrintRow row{.cells = {"Sub Totals (Market)"}, .marks = "*totals*totalreset*hline1*"};
    EXPECT_TRUE(row.Has("totalreset"));
    EXPECT_FALSE(row.Has("blanklinebefore"));
}

TEST(SqlQuote, DoublesQuotesAndKeepsEverythingElse) {
    EXPECT_EQ(SqlQuote("D'SOUZA"), "'D''SOUZA'");
    EXPECT_EQ(SqlQuote("''"), "''''''");
    EXPECT_EQ(SqlQuote(""), "''");
    EXPECT_EQ(SqlQuote("ਖੰਨਾ"), "'ਖੰਨਾ'");
    EXPECT_EQ(SqlQuote("राम's"), "'राम''s'");
}

class MockUi : public HostUi {
public:
    MOCK_METHOD(HostApp&, App, (), (override));
    MOCK_METHOD(void, ShowForm, (std::shared_ptr<ui::Screen>), (override));
    MOCK_METHOD(bool, ShowModal, (ui::Screen&), (override));
    MOCK_METHOD(FormProvider&, Forms, (), (override));
    MOCK_METHOD(std::unique_ptr<HostSelectDialog>, CreateSelectDialog, (), (override));
    MOCK_METHOD(int, ShowMessage, (const std::string&, const std::string&, const std::string&),
                (override));
    MOCK_METHOD(void, HandleShortcutKey, (ui::KeyPress&, ui::Screen&), (override));
    MOCK_METHOD(void, RegisterWindow, (ui::Screen&, const std::string&, const std::string&),
                (override));
    MOCK_METHOD(void, UnregisterWindow, (ui::Screen&), (override));
    MOCK_METHOD(void, Print, (const PrintJob&, PrintMode), (override));
};

class MockDb : public CompanyDb {
public:
    MOCK_METHOD(void, ExecuteSql, (std::string_view, int), (override));
    MOCK_METHOD(std::unique_ptr<Recordset>, OpenRecordset, (std::string_view), (override));
    MOCK_METHOD(bool, TableExists, (std::string_view), (override));
    MOCK_METHOD(bool, FieldExists, (std::string_view, std::string_view), (override));
    MOCK_METHOD(void, AddFields,
                (std::string_view, std::string_view, const std::vector<std::string>&), (override));
    MOCK_METHOD(Value, LookupValue, (std::string_view, std::string_view, std::string_view),
                (override));
    MOCK_METHOD(std::string, DateLiteral, (Date), (const, override));
    MOCK_METHOD(void, BeginTransaction, (), (override));
    MOCK_METHOD(void, Commit, (), (override));
    MOCK_METHOD(void, Rollback, (), (override));
};

class MockSession : public HostSession {
public:
    MOCK_METHOD(bool, HasCompany, (), (const, override));
    MOCK_METHOD(CompanyDb&, Database, (), (override));
    MOCK_METHOD(const PropertyBag&, FirmSettings, (), (const, override));
    MOCK_METHOD(void, SetFirmSetting, (std::string_view, Value), (override));
    MOCK_METHOD(std::string, GetOption, (int), (const, override));
};

class ModuleUtilTest : public ::testing::Test {
protected:
    ModuleUtilTest() {
        ON_CALL(session_, Database()).WillByDefault(ReturnRef(db_));
        ON_CALL(db_, DateLiteral).WillByDefault([](Date date) { return "'" + date.ToIso() + "'"; });
    }

    ::testing::NiceMock<MockUi> ui_;
    ::testing::NiceMock<MockDb> db_;
    ::testing::NiceMock<MockSession> session_;
    ModuleUtil util_{ui_, session_};
};

TEST_F(ModuleUtilTest, MessagesGoToTheHostWithTheirStyle) {
    EXPECT_CALL(ui_, ShowMessage("Save changes?", "2", "Q")).WillOnce(Return(kAnswerNo));
    EXPECT_EQ(util_.ShowMessage("Save changes?", "2", "Q"), kAnswerNo);
    EXPECT_CALL(ui_, ShowMessage("Saved.", "", "I")).WillOnce(Return(kAnswerYes));
    EXPECT_EQ(util_.ShowMessage("Saved."), kAnswerYes);
}

TEST_F(ModuleUtilTest, RoundAmountReadsTheDecimalsFromText) {
    const Amount charge = *Amount::Parse("637.185");
    EXPECT_EQ(util_.RoundAmount(charge, "2"), *Amount::Parse("637.18"));
    EXPECT_EQ(util_.RoundAmount(*Amount::Parse("0.125"), "2"), *Amount::Parse("0.12"));
    EXPECT_EQ(util_.RoundAmount(charge, "0"), *Amount::Parse("637"));
    EXPECT_EQ(util_.RoundAmount(charge, ""), *Amount::Parse("637"));
    EXPECT_EQ(util_.RoundAmount(charge, "4"), charge);
}

TEST_F(ModuleUtilTest, SqlDateUsesTheDatabaseLiteral) {
    const Date from = Date::FromYmd(2024, 4, 1);
    const Date to = Date::FromYmd(2025, 3, 31);
    EXPECT_EQ(util_.SqlDate(from), "'2024-04-01'");
    EXPECT_EQ(util_.SqlDate(from, to), "'2024-04-01' AND '2025-03-31'");
}

} // namespace
} // namespace qx
