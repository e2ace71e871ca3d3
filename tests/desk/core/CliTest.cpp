// `qx` as support staff and scripts use it.
#include "support/QxRun.h"
#include "support/Desk.h"

#include "desk/cli/Commands.h"

#include <cstdlib>
#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

using namespace qx;
using qx::test::FileBytes;

namespace {

using test::Qx;
using test::QxRun;

// What every test that writes a company ends with: `qx check` finds its books in order (with
// notes, such as what the day vouchers' round off takes).
void ExpectBooksInOrder(const std::string& path) {
    auto check = Qx({"check", path});
    EXPECT_EQ(check.status, 0) << check.out << check.err;
    EXPECT_THAT(check.out, testing::EndsWith("The books of " + path + " are in order.\n"));
}

// `qx sql` prints rows as CSV through the same adaptation as the modules' statements. It
// reads: what would change the company (as SQLite judges the statement) runs only with
// --write, and one statement at a time, so that nothing is changed unseen.
TEST(Qx, SqlReadsAsTheModulesWriteAndChangesTheCompanyOnlyWhenToldTo) {
    test::TempFolder folder;
    auto path = (folder.Path() / "c.kdb").string();
    ASSERT_EQ(Qx({"company", "create", path}).status, 0);
    ASSERT_EQ(Qx({"sql", path, "CREATE TABLE MARKETMASTER (MARKETID INT NOT NULL, MARKETNAME VARCHAR(60))", "--write"}).status, 0);
    ASSERT_EQ(Qx({"sql", path, "INSERT INTO MARKETMASTER VALUES (1, 'D''SOUZA, KHANNA')", "--write"}).status, 0);
    ASSERT_EQ(Qx({"sql", path, "--write", "INSERT INTO MARKETMASTER VALUES (2, 'ਜਗਰਾਉਂ')"}).status, 0);
    auto run = Qx({"sql", path, "SELECT FIRST 1 MARKETID, MARKETNAME FROM MARKETMASTER ORDER BY MARKETID"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "MARKETID,MARKETNAME\n1,\"D'SOUZA, KHANNA\"\n");
    auto all = Qx({"sql", path, "select marketname from marketmaster where marketid=2"});
    EXPECT_EQ(all.out, "MARKETNAME\nਜਗਰਾਉਂ\n");

    auto markets = [&] { return Qx({"sql", path, "SELECT * FROM MARKETMASTER"}).out; };
    const std::string before = markets();
    for (const char* change : {"UPDATE MARKETMASTER SET MARKETNAME='DORAHA'", "DELETE FROM MARKETMASTER",
                               "DROP TABLE MARKETMASTER", "INSERT INTO MARKETMASTER VALUES (2, 'SAMRALA')",
                               "CREATE TABLE NOTES (TEXT VARCHAR(10))", "PRAGMA user_version=7",
                               "  with x as (select 1) delete from marketmaster"}) {
        auto refused = Qx({"sql", path, change});
        EXPECT_EQ(refused.status, 1) << change;
        EXPECT_THAT(refused.err, testing::HasSubstr("--write")) << change;
    }
    for (const char* several : {"SELECT 1; DELETE FROM MARKETMASTER", "SELECT 1;SELECT 2"}) {
        auto refused = Qx({"sql", path, several, "--write"});
        EXPECT_EQ(refused.status, 1) << several;
        EXPECT_THAT(refused.err, testing::HasSubstr("one statement at a time")) << several;
        EXPECT_EQ(refused.out, "") << several;
    }
    EXPECT_EQ(markets(), before);
    EXPECT_EQ(Qx({"sql", path, "SELECT 1; -- the first only\n ;"}).out, "1\n1\n");
    EXPECT_EQ(Qx({"sql", path, "PRAGMA user_version"}).out, "user_version\n0\n");

    // Rows go out as they are read: those before a row that fails are already printed.
    auto failing = Qx({"sql", path, "WITH RECURSIVE N(X) AS (SELECT 1 UNION ALL SELECT X+1 FROM N WHERE X<5) "
                                    "SELECT X, CASE WHEN X=3 THEN ABS(-9223372036854775807-1) ELSE X END AS Y FROM N"});
    EXPECT_EQ(failing.status, 1);
    EXPECT_EQ(failing.out, "X,Y\n1,1\n2,2\n");
    EXPECT_THAT(failing.err, testing::HasSubstr("integer overflow"));
}

// A company is created with its firm's properties and options, and never over another; a
// wrong command line gets the usage, and what is not a company is left alone.
TEST(Qx, CreatesACompanyAndRefusesWrongCommandLines) {
    test::TempFolder folder;
    auto path = (folder.Path() / "firm.kdb").string();
    auto run =
        Qx({"company", "create", path, "--name", "Guru Nanak Trading Co.", "--firm-properties",
            "*KivraMenu*", "--option", "676=Yes", "--option", "637=No"});
    ASSERT_EQ(run.status, 0) << run.err;
    desk::Session session;
    session.Open(path);
    EXPECT_EQ(session.CompanyName(), "Guru Nanak Trading Co.");
    EXPECT_EQ(session.FirmSettings().GetValue("FirmProperties").AsText(), "*KivraMenu*");
    EXPECT_EQ(session.GetOption(676), "Yes");
    EXPECT_EQ(session.GetOption(637), "No");
    EXPECT_EQ(Qx({"company", "create", path}).status, 1)
        << "an existing company is never overwritten";
    ExpectBooksInOrder(path);

    EXPECT_EQ(Qx({}).status, 2);
    EXPECT_EQ(Qx({"check"}).status, 2);
    auto unknown = Qx({"frobnicate"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_NE(unknown.err.find("unknown command"), std::string::npos);
    EXPECT_EQ(Qx({"company", "create", "x.kdb", "--option", "676"}).status, 2);
    auto help = Qx({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("qx demo PATH"), std::string::npos);

    auto notes = folder.Path() / "notes.kdb";
    std::ofstream(notes) << "wheat 52 bags\n";
    auto refused = Qx({"sql", notes.string(), "SELECT 1"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("is not a QX Desk company file"));
    EXPECT_EQ(FileBytes(notes), "wheat 52 bags\n");
}

// The demo company's books hold; a fault planted in them, by the desk's rules or by the Kivra
// module's, is a line of `qx check` and its exit status 1.
TEST(Qx, DemoCompanysBooksAreProvenAndAPlantedFaultIsALineOfCheck) {
    test::TempFolder folder;
    auto path = (folder.Path() / "demo.kdb").string();
    auto run = Qx({"demo", path});
    ASSERT_EQ(run.status, 0) << run.err;
    // Its I-Forms were filled by picking: what the buyers have still to take is the last day's.
    auto pending = Qx({"sql", path, "SELECT F.MHD, SUM(L.QUANTITY*L.JFACTOR) FROM DOCDATA L JOIN FAMASTER F ON "
                                    "F.MCD=L.CUSTOMERID GROUP BY F.MHD HAVING SUM(L.QUANTITY*L.JFACTOR)<>0"});
    EXPECT_EQ(pending.out, "MHD,SUM(L.QUANTITY*L.JFACTOR)\nGURU KRIPA RICE MILLS,18.75\nPUNGRAIN,15\n");
    ExpectBooksInOrder(path);

    // A voucher typed short, and four quintals of cotton that an I-Form takes from FCI's J-Forms
    // of a day when there were none.
    for (const char* plant : {
             "INSERT INTO FADATA (VOUCHERID, DSRNO, DCD, DVCHDATE, DAMT) VALUES (900, 1, 81, "
             "'2024-11-06', 123456), (900, 2, 79, '2024-11-06', -123400)",
             "INSERT INTO FADOCS (VOUCHERID, ISAUTOVOUCHER) VALUES (900, 0)",
             "INSERT INTO DOCDATA (DOCUMENTID, REFNO, PRODUCTID, CUSTOMERID, QUANTITY, JFACTOR) "
             "SELECT MIN(DOCUMENTID), 99, 5, 81, 4, -1 FROM DOCMAIN WHERE DOCSERIES='IF' AND "
             "DOCDATE='2024-11-05'",
         })
        ASSERT_EQ(Qx({"sql", path, plant, "--write"}).status, 0) << plant;
    auto check = Qx({"check", path});
    EXPECT_EQ(check.status, 1);
    EXPECT_THAT(check.out, testing::StartsWith("Voucher 900 of 06/11/2024 does not balance: debits 1,23,456.00, credits 1,23,400.00.\n"
                         "The I-Forms of FOOD CORPORATION OF INDIA take 4.00 quintals more COTTON than the J-Forms "
                         "of 05/11/2024 left pending.\n"));
}

// A J-Form of the demo company's farmer, of one line of paddy in 37.5 kg bags, as `qx enter`
// reads it.
std::string JForm(const std::string& formNo, const std::string& quantity = "30.00", const std::string& bags = "80",
                  const std::string& book = "12") {
    return R"({"series": "JF", "date": "05/11/2024", "party": "BALWINDER SINGH GREWAL",
        "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": ")" + book + R"(", "FORM_NO": ")" + formNo + R"("},
        "lines": [{"PRODUCT_ID": "PADDY", "CUSTOMER_ID": "MARKFED", "QTY_PER_BOX": "37.50",
                   "QUANTITY": ")" + quantity + R"(", "REV_BAGS2": ")" + bags + R"(", "RATE": "2320"}]})";
}

std::filesystem::path DocumentsFile(const test::TempFolder& folder, const std::string& name,
                                    const std::vector<std::string>& documents) {
    auto file = folder.Path() / name;
    std::ofstream out(file);
    out << "{\"documents\": [";
    for (std::size_t i = 0; i < documents.size(); ++i) out << (i ? ",\n" : "") << documents[i];
    out << "]}";
    return file;
}

// J-Forms of Khanna, book 12, one per form number from firstForm on; or local purchases of
// paddy at Doraha, which post a voucher each: a file for `qx enter`.
std::filesystem::path FormsFile(const test::TempFolder& folder, int firstForm, int count,
                                const std::string& series = "JF") {
    std::vector<std::string> documents;
    for (int form = firstForm; form < firstForm + count; ++form)
        documents.push_back(series == "JF" ? JForm(std::to_string(form))
                                           : R"({"series": "PL", "date": "06/11/2024", "party": "JASPAL SINGH D'CRUZ",
                "boxes": {"MARKET": "DORAHA", "FORM_NO": ")" + std::to_string(form) + R"("},
                "lines": [{"PRODUCT_ID": "PADDY", "QTY_PER_BOX": "50", "QUANTITY": "12.00", "RATE": "2300"}]})");
    return DocumentsFile(folder, series + std::to_string(firstForm) + ".json", documents);
}

// The line of a report that starts with the text.
std::string LineStarting(const std::string& report, const std::string& start) {
    std::istringstream lines(report);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(start)) return line;
    return "(no line starts with \"" + start + "\")";
}

// Each document of a file is saved or refused on its own, and a refusal says which document,
// which field and what is wrong, in words a clerk reads.
TEST(Qx, EnterRefusesABadDocumentAloneAndSaysWhereAndWhy) {
    test::TempFolder folder;
    auto path = (folder.Path() / "demo.kdb").string();
    ASSERT_EQ(Qx({"demo", path}).status, 0);

    const std::string header = R"("series": "JF", "date": "05/11/2024", "party": "BALWINDER SINGH GREWAL")";
    auto with = [](std::string document, const std::string& part) { return document.insert(document.size() - 1, ", " + part); };
    auto replaced = [](const std::string& document, const std::string& text, const std::string& by) {
        return std::regex_replace(document, std::regex(text), by);
    };
    auto file = DocumentsFile(folder, "mixed.json", {
        replaced("{" + header + "}", R"("JF")", R"("XX")"),
        replaced("{" + header + "}", R"("JF")", "12"),
        JForm("301"),
        replaced(JForm("302"), R"("date": "05/11/2024",)", ""),
        replaced(JForm("302"), "05/11/2024", "31/02/2024"),
        R"("a J-Form")",
        replaced(JForm("303"), R"("FORM_NO": "303")", R"("FORM_NO": 303)"),
        JForm("304", "abc"),
        with(JForm("305"), R"("charges": {"LABOUR": "x"})"),
        replaced(JForm("306"), "BALWINDER SINGH GREWAL", "NOBODY"),
        "{" + header + R"(, "lines": [["PADDY", "30.00"]]})",
        "{" + header + R"(, "lins": []})",
        JForm("309"),
        R"({"series": "JF", "date": "05/11/2024"})",
        JForm("101"), // the demo's own
        // 30.10 quintals in 80.5 bags of 37.5 kg: 80.27 revised bags, the fractional bags
        // question, answered from the script: no, then yes.
        JForm("108", "30.10", "80.5"),
        JForm("108", "30.10", "80.5"),
        // The demo firm works in several mandis: a J-Form names its market.
        replaced(JForm("318"), R"("MARKET": "KHANNA", )", ""),
        // A line without its item is no line yet: the next is not typed over it.
        replaced(JForm("319"), R"("lines": \[)", R"("lines": [{"QUANTITY": "30.00"}, )"),
        // Punsup's only J-Form at Khanna was cancelled: he has nothing to pick.
        R"({"series": "IF", "boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "3", "FORM_NO": "520"},
            "pick": [{"Party": "PUNSUP"}]})",
    });
    auto answers = folder.Path() / "answers.json";
    std::ofstream(answers) << R"(["no", "yes"])";
    auto run = Qx({"enter", path, file.string(), "--answers", answers.string()});
    EXPECT_EQ(run.status, 1);
    for (const char* saved : {"document 3 (JF of 05/11/2024): ", "document 13 (JF of 05/11/2024): ",
                              "document 17 (JF of 05/11/2024): "})
        EXPECT_EQ(LineStarting(run.out, saved), saved + std::string("saved"));
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"document 1 ", "document 1 (XX of 05/11/2024): not saved: series: The series XX is not set up in this company."},
        {"document 2 ", R"(document 2 (05/11/2024): not saved: series: the number 12 is not text: write it in quotes, "12".)"},
        {"document 4 ", "document 4 (JF): not saved: date: missing; write the document's date as dd/MM/yyyy."},
        {"document 5 ", "document 5 (JF of 31/02/2024): not saved: date: 31/02/2024 is not a date: February 2024 has 29 days."},
        {"document 6:", R"(document 6: not saved: "a J-Form" is not a document: write each document as {"series": ..., "date": ..., "party": ..., "lines": [...]}.)"},
        {"document 7 ", R"(document 7 (JF of 05/11/2024): not saved: box FORM_NO: the number 303 is not text: write it in quotes, "303".)"},
        {"document 8 ", "document 8 (JF of 05/11/2024): not saved: line 1 QUANTITY: "},
        {"document 9 ", "document 9 (JF of 05/11/2024): not saved: charge LABOUR: "},
        {"document 10 ", "document 10 (JF of 05/11/2024): not saved: party: There is no account named NOBODY."},
        {"document 11 ", R"(document 11 (JF of 05/11/2024): not saved: line 1: a list is not a line: write each line as {"COLUMN_KEY": "text", ...}.)"},
        {"document 12 ", "document 12 (JF of 05/11/2024): not saved: lins: a document has no part \"lins\" (it has series, open, date, party, boxes, lines, charges, pick, action and dialogs)."},
        {"document 14 ", "document 14 (JF of 05/11/2024): not saved: party: missing; write the account's name."},
        {"document 15 ", "document 15 (JF of 05/11/2024): not saved: saving: "},
        {"document 16 ", "document 16 (JF of 05/11/2024): not saved: saving: Fractional bags sale / purchase found."},
        {"document 18 ",
         "document 18 (JF of 05/11/2024): not saved: saving: Choose the Market (F2): the "
         "document is not saved without it."},
    };
    for (const auto& [start, refusal] : refusals)
        EXPECT_THAT(LineStarting(run.err, start), testing::StartsWith(refusal));
    EXPECT_THAT(LineStarting(run.err, "document 19 "), testing::EndsWith("; saving: Line 1 has no item."));
    EXPECT_EQ(LineStarting(run.err, "document 20 "),
              "document 20 (IF): not saved: pick: the list does not show every row to pick (3 rows listed).");
    EXPECT_THAT(LineStarting(run.err, "document 8 "), testing::HasSubstr("abc"));
    EXPECT_THAT(LineStarting(run.err, "document 9 "), testing::HasSubstr(" x "));
    EXPECT_THAT(run.err, testing::Not(testing::HasSubstr("json")));
    // The engine's own messages are printed as they are shown, with the field being typed.
    EXPECT_THAT(run.out, testing::HasSubstr("document 8 (JF of 05/11/2024), line 1 QUANTITY: [W] "));
    EXPECT_THAT(run.out, testing::HasSubstr("document 5 (JF of 31/02/2024), date: [W] 31/02/2024 is not a date"));
    EXPECT_THAT(run.out, testing::HasSubstr("document 15 (JF of 05/11/2024), saving: [W] This form no. already exists"));
    EXPECT_THAT(run.out, testing::HasSubstr("document 16 (JF of 05/11/2024), saving: [Q] Fractional bags sale / "
                                            "purchase found. Do you want to continue? -> No"));

    EXPECT_EQ(Qx({"sql", path, "SELECT FORMNO, COUNT(*), MAX(GROSSAMT) FROM DOCMAIN WHERE FORMBOOKNO=12 AND "
                                "(FORMNO IN (101, 108) OR FORMNO>300) GROUP BY FORMNO ORDER BY FORMNO"}).out,
              "FormNo,COUNT(*),MAX(GROSSAMT)\n101,1,198128\n108,1,69832\n301,1,69600\n309,1,69600\n");

    // A file broken after its first document enters nothing, and says where it breaks.
    auto broken = folder.Path() / "broken.json";
    std::ofstream(broken) << "{\"documents\": [" << JForm("310") << ",\n{\"series\": \"JF\",]}";
    auto refused = Qx({"enter", path, broken.string()});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, testing::HasSubstr("broken.json is not valid JSON at line 5, column "));
    EXPECT_EQ(Qx({"sql", path, "SELECT COUNT(*) FROM DOCMAIN WHERE FORMNO=310"}).out, "COUNT(*)\n0\n");
    ExpectBooksInOrder(path);
}

// A clerk's corrections from a file: a saved form is opened by its number or by what is
// written on it (its market, book and form number), and changed (its date, a line removed, a
// line added, a cell), cancelled or deleted; each is done or refused on its own.
TEST(Qx, EnterOpensSavedFormsToChangeCancelOrDeleteThem) {
    test::TempFolder folder;
    auto path = (folder.Path() / "demo.kdb").string();
    ASSERT_EQ(Qx({"demo", path}).status, 0);
    // Form 107 is Guru Kripa's, still pending; form 101's paddy is taken over already, but not
    // the agent's own line.
    const std::string form107 = R"({"series": "JF", "open": {"boxes": {"MARKET": "KHANNA", "FORM_BOOK_NO": "12", "FORM_NO": "107"}}, )";
    auto file = DocumentsFile(folder, "corrections.json", {
        form107 + R"("date": "07/11/2024", "lines": [{"line": "1", "RATE": "2400"},
            {"PRODUCT_ID": "WHEAT", "CUSTOMER_ID": "MARKFED", "QTY_PER_BOX": "50", "QUANTITY": "10", "RATE": "2275"}]})",
        R"({"series": "JF", "open": {"number": "1"}, "lines": [{"line": "2", "remove": "yes"}]})",
        R"({"series": "JF", "open": {"number": "5"}, "action": "cancel"})",
        R"({"series": "JF", "open": {"number": "6"}, "action": "delete"})",
        R"({"series": "JF", "open": {"boxes": {"FORM_BOOK_NO": "12"}}, "action": "cancel"})",
        R"({"series": "JF", "open": {"number": "10"}, "action": "delete"})",
        R"({"series": "JF", "open": {"number": "2"}, "action": "delete", "lines": []})",
        R"({"series": "JF", "open": {"number": "2"}, "lines": [{"line": "3", "RATE": "1"}]})",
        R"({"series": "JF", "date": "05/11/2024", "party": "BALWINDER SINGH GREWAL", "action": "cancel"})",
    });
    // The delete question is the file's to answer, whatever the others' answers.
    auto run = Qx({"enter", path, file.string(), "--answers", "no"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "document 1 (JF MARKET KHANNA, FORM_BOOK_NO 12, FORM_NO 107): saved\n"
                       "document 2 (JF no. 1): saved\n"
                       "document 3 (JF no. 5): cancelled\n"
                       "document 4 (JF no. 6), deleting: [Q] Do you want to delete document no. 6?\n"
                       "document 4 (JF no. 6): deleted\n");
    EXPECT_EQ(run.err,
              "document 5 (JF FORM_BOOK_NO 12): not cancelled: open: JF has 6 documents with FORM_BOOK_NO 12 "
              "(no. 1, no. 2, no. 3, no. 5, no. 7 and no. 8): open the one meant by its number.\n"
              "document 6 (JF no. 10): not deleted: open: JF has no document no. 10.\n"
              "document 7 (JF no. 2): not deleted: lines: a document to delete is deleted as it was saved: "
              "give it no lines.\n"
              "document 8 (JF no. 2): not saved: line 3: the document has 1 line: a new line is line 2.\n"
              "document 9 (JF of 05/11/2024): not cancelled: action: only a saved document can be cancelled "
              "or deleted: name it with \"open\".\n");
    EXPECT_EQ(Qx({"sql", path, "SELECT DOCNUMBER, DOCDATE, FORMNO, CANCELLED, COUNT(L.REFNO) FROM DOCMAIN M JOIN "
                                "DOCDATA L ON L.DOCUMENTID=M.DOCUMENTID WHERE DOCSERIES='JF' AND DOCNUMBER IN "
                                "(1, 5, 6, 8) GROUP BY M.DOCUMENTID ORDER BY DOCNUMBER"}).out,
              "DOCNUMBER,DOCDATE,FormNo,CANCELLED,COUNT(L.REFNO)\n1,04/11/2024,101,0,1\n"
              "5,05/11/2024,103,1,1\n8,07/11/2024,107,0,2\n");
    EXPECT_EQ(Qx({"sql", path, "SELECT L.REFNO, I.QMHD, L.QUANTITY, L.RATE FROM DOCDATA L JOIN STKMASTER I ON "
                                "I.QMCD=L.PRODUCTID JOIN DOCMAIN M ON M.DOCUMENTID=L.DOCUMENTID WHERE "
                                "M.DOCSERIES='JF' AND M.FORMNO=107 ORDER BY L.REFNO"}).out,
              "REFNO,QMHD,QUANTITY,RATE\n1,PADDY,18.75,2400\n2,WHEAT,10,2275\n");
    ExpectBooksInOrder(path);
}

// Runs `qx enter` on each file at once, each in a process of its own, as two clerks' scripts
// would; what each printed, in the order of the files.
std::vector<QxRun> EnterAtOnce(const test::TempFolder& folder, const std::string& company,
                               const std::vector<std::filesystem::path>& files) {
    std::string shell;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto run = (folder.Path() / ("run" + std::to_string(i))).string();
        shell += "(" + std::string(QX_PROGRAM) + " enter '" + company + "' '" + files[i].string() +
                 "' > '" + run + ".out' 2> '" + run + ".err'; echo $? > '" + run + ".status') & ";
    }
    EXPECT_EQ(std::system((shell + "wait").c_str()), 0);
    std::vector<QxRun> runs;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto run = folder.Path() / ("run" + std::to_string(i));
        runs.push_back({std::stoi(FileBytes(run.string() + ".status")), FileBytes(run.string() + ".out"),
                        FileBytes(run.string() + ".err")});
    }
    return runs;
}

long Occurrences(const std::string& text, const std::string& what) {
    long count = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

// Two `qx enter` runs on one company at the same moment: every document is saved exactly once,
// no number is doubled, and no valid form is refused as a duplicate of the other run's.
TEST(Qx, TwoEntersAtOnceSaveEveryDocumentExactlyOnce) {
    test::TempFolder folder;
    auto path = (folder.Path() / "demo.kdb").string();
    ASSERT_EQ(Qx({"demo", path}).status, 0);
    // The same files twice, J-Forms and purchases: each form is saved by one run and refused
    // by the other (so none is refused by both), and each purchase posts one voucher.
    const long vouchers = std::stol(Qx({"sql", path, "SELECT COUNT(*) FROM FADOCS"}).out.substr(9));
    const auto jForms = FormsFile(folder, 501, 25);
    const auto purchases = FormsFile(folder, 61, 10, "PL");
    std::string out;
    for (const auto& run : EnterAtOnce(folder, path, {jForms, jForms, purchases, purchases})) out += run.out;
    EXPECT_EQ(Occurrences(out, ": saved\n"), 35);
    EXPECT_EQ(Occurrences(out, "[W] This form no. already exists"), 35);
    EXPECT_EQ(Qx({"sql", path, "SELECT COUNT(*) FROM DOCMAIN WHERE DOCSERIES='JF' AND FORMNO BETWEEN 501 AND "
                               "525 OR DOCSERIES='PL' AND FORMNO BETWEEN 61 AND 70"}).out,
              "COUNT(*)\n35\n");
    EXPECT_EQ(std::stol(Qx({"sql", path, "SELECT COUNT(*) FROM FADOCS"}).out.substr(9)), vouchers + 10);
    EXPECT_EQ(Qx({"sql", path, "SELECT FORMNO FROM DOCMAIN GROUP BY DOCSERIES, FORMBOOKNO, FORMNO, "
                               "MARKETID HAVING COUNT(*)>1"}).out,
              "FormNo\n");
    EXPECT_EQ(Qx({"sql", path, "SELECT DOCNUMBER FROM DOCMAIN GROUP BY DOCSERIESID, DOCNUMBER HAVING COUNT(*)>1"}).out,
              "DOCNUMBER\n");
    ExpectBooksInOrder(path);
}

// The log of a run killed part way names every document that was saved: each outcome is
// written out as it is decided, not held in a buffer that the kill throws away.
TEST(Qx, EnterLogsEachSavedDocumentBeforeGoingOn) {
    test::TempFolder folder;
    auto path = (folder.Path() / "demo.kdb").string();
    ASSERT_EQ(Qx({"demo", path}).status, 0);
    std::vector<std::string> documents;
    for (int formNo = 1001; formNo <= 1400; ++formNo) documents.push_back(JForm(std::to_string(formNo), "30.00", "80", "77"));
    auto file = DocumentsFile(folder, "season.json", documents);
    auto log = folder.Path() / "enter.log";
    auto saved = [&] {
        auto rows = Qx({"sql", path, "SELECT COUNT(*) FROM DOCMAIN WHERE FORMBOOKNO=77"}).out;
        return std::stoi(rows.substr(rows.find('\n') + 1));
    };

    const pid_t qx = fork();
    ASSERT_NE(qx, -1);
    if (qx == 0) {
        std::freopen(log.c_str(), "w", stdout);
        execl(QX_PROGRAM, "qx", "enter", path.c_str(), file.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    bool ended = false;
    while (!ended && saved() < 20) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        ended = waitpid(qx, &status, WNOHANG) == qx;
    }
    ASSERT_FALSE(ended) << "the run ended before it was killed:\n" << FileBytes(log);
    ASSERT_EQ(kill(qx, SIGKILL), 0);
    ASSERT_EQ(waitpid(qx, &status, 0), qx);

    const std::string written = FileBytes(log);
    const long logged = Occurrences(written, ": saved\n");
    // The one document the kill may have caught between its commit and its log line.
    EXPECT_GE(saved(), logged);
    EXPECT_LE(saved(), logged + 1) << written;
    ExpectBooksInOrder(path); // as a user checks after a power cut
}

} // namespace
