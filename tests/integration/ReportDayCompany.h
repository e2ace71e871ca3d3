#pragma once
// A day of forms at two mandis saved through the desk's engine with the demo's series, for the
// registers and returns to report on, and a report's rows as text to compare.
#include "DemoSeriesCompany.h"

#include "support/PrintedReport.h"
#include "kivra/reports/ReportScope.h"

namespace qx::test {

class ReportDayCompany : public DemoSeriesCompany {
protected:
    void SetUp() override {
        DemoSeriesCompany::SetUp();
        Db().ExecuteSql("INSERT INTO FAMASTER (MCD, MHD, MST, MBSHNO) VALUES (203, 'GOYAL MILLS', 'JAGRAON', 40)");
    }
    void Save(desk::DocumentScreen& screen, const Strings& asked = {}) {
        ASSERT_TRUE(Press(screen, ui::Key::F10));
        EXPECT_EQ(Messages(), asked);
        frontend.ClearTranscript();
        app.CloseScreen(screen);
    }
    static Strings Lines(const PrintJob& job) { return JobLines(job); }
    // 04/11/2024. At Khanna Gurmeet Singh sells paddy to the agent himself (5 quintals) and to
    // Pungrain (10), and maize to Pungrain (12); Pungrain's I-Form takes all of it, his
    // weighing finding 50 kg more paddy, and pays 2,100 for the maize he was sold at 2,090. At
    // Jagraon Harpal Singh sells paddy (8) and maize (6) to Goyal Mills, whose I-Form takes
    // the paddy at 1,950 instead of 2,000 and 5 of the 6 quintals of maize.
    void SaveTheDay() {
        auto& jForm = OpenMenu("JForms");
        TypeHeader(jForm, "04/11/2024", "gurmeet singh", "KHANNA", "12", "101");
        ASSERT_TRUE(TypeLine(jForm, 1, JLine("paddy", "self", "50", "5", "2000")));
        ASSERT_TRUE(TypeLine(jForm, 2, JLine("paddy", "pungrain", "50", "10", "2000")));
        ASSERT_TRUE(TypeLine(jForm, 3, JLine("maize", "pungrain", "50", "12", "2090")));
        Save(jForm);
        auto& iForm = NewIForm("KHANNA");
        TypeHeader(iForm, "04/11/2024", "pungrain", "KHANNA", "3", "501");
        // His lines come picked, item by item.
        ASSERT_TRUE(TypeLine(iForm, 1, ILine("maize", "50", "12", "0", "2100")));
        frontend.QueueAnswer(kAnswerYes); // 50 kg more than a bag holds is what he weighed
        ASSERT_TRUE(TypeLine(iForm, 2, ILine("paddy", "50", "10", "50", "2000")));
        Save(iForm, {"Kgs more than Kg./Bag found at row no: 2. Do you want to continue?"});

        auto& jagraon = OpenMenu("JForms");
        TypeHeader(jagraon, "04/11/2024", "harpal singh", "JAGRAON", "7", "201");
        ASSERT_TRUE(TypeLine(jagraon, 1, JLine("paddy", "goyal mills", "50", "8", "2000")));
        ASSERT_TRUE(TypeLine(jagraon, 2, JLine("maize", "goyal mills", "50", "6", "2050")));
        Save(jagraon);
        auto& goyal = NewIForm("JAGRAON");
        TypeHeader(goyal, "04/11/2024", "goyal mills", "JAGRAON", "4", "601");
        Cells maize = ILine("maize", "50", "5", "0", "2050");
        maize.emplace_back("NO_OF_BOXES", "10");
        ASSERT_TRUE(TypeLine(goyal, 1, maize));
        ASSERT_TRUE(TypeLine(goyal, 2, ILine("paddy", "50", "8", "0", "1950")));
        Save(goyal);
    }
    static kivra::ReportScope Day(std::int32_t market = 0, std::string name = {}) {
        return Period("04/11/2024", "04/11/2024", market, std::move(name));
    }
    static kivra::ReportScope Period(const char* from, const char* to, std::int32_t market = 0,
                                     std::string name = {}) {
        return {*Date::ParseDisplay(from), *Date::ParseDisplay(to), market, std::move(name)};
    }
    static std::string Printed(const PrintJob& job, const std::string& name) { return PrintedText(job, name); }
};

} // namespace qx::test
