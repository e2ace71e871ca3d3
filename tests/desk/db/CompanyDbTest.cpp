// A company in a real SQLite file, driven with the module's own statements.
#include "desk/db/HostSchema.h"
#include "desk/db/SqliteCompanyDb.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <ostream>

namespace qx {
// Readable failures: the kind of value and its text.
void PrintTo(const Value& value, std::ostream* out) {
    static constexpr const char* kKinds[] = {"null",   "bool", "int64", "double",
                                             "Amount", "Date", "text"};
    *out << kKinds[value.Raw().index()] << " " << value.AsText();
}
} // namespace qx

using qx::Amount;
using qx::Date;
using qx::DbError;
using qx::Transaction;
using qx::Value;
using qx::db::SqliteCompanyDb;
using qx::test::FileBytes;
using qx::test::TempFolder;
namespace fs = std::filesystem;

namespace {

// Runs statements on a file through a connection of its own, as another tool would.
void RawSql(const fs::path& path, const char* sql) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
    sqlite3_close(db);
}

Amount Amt(std::string_view text) {
    return *Amount::Parse(text);
}

std::string ThrownMessage(const std::function<void()>& action) {
    try {
        action();
    } catch (const DbError& error) {
        return error.what();
    }
    ADD_FAILURE() << "no DbError";
    return {};
}

class Company : public ::testing::Test {
protected:
    void SetUp() override {
        db_ = SqliteCompanyDb::Create(dir_.Path() / "test.kdb", "Test Company");
    }

    // The market table and the host-table columns, as the module creates them.
    void AddModuleSchema() {
        db_->ExecuteSql("CREATE TABLE MARKETMASTER ( MARKETID INT NOT NULL, MARKETNAME VARCHAR(60) "
                        "NOT NULL, STATION VARCHAR(30), STATE VARCHAR(30), REMARKS VARCHAR(80), "
                        "CONSTRAINT PK_MARKETMASTER PRIMARY KEY (MARKETID) )");
        db_->ExecuteSql("ALTER TABLE MARKETMASTER ADD SERIES VARCHAR(10) NOT NULL");
        db_->AddFields("STKMASTER", "Decimal(8,4)", {"qMarketFee", "qRDF", "qCancerFund"});
        db_->AddFields("DOCMAIN", "Decimal(16,4)", {"DamiAmt"});
        db_->AddFields("DOCMAIN", "Int", {"FormBookNo", "FormNo", "MarketID"});
        db_->AddFields("DOCMAIN", "VarChar(50)", {"UTRNo"});
        db_->AddFields("DOCMAIN", "Date", {"UTRDate"});
        db_->AddFields("DOCDATA", "Decimal(16,4)", {"AddLessKgs", "iMarketFeeAmt"});
    }

    // A day in Khanna: a J-Form of 16.3 quintals of wheat, taken over by an I-Form in two lines
    // of 10 and 6.3 quintals, and the day's voucher.
    void AddSeasonDay() {
        AddModuleSchema();
        for (const char* sql : {
                 "INSERT INTO FANAR (NARRATIONID,NARRATION) VALUES (1,'J-Form No. 101')",
                 "INSERT INTO DOCMAIN (DOCUMENTID,DOCSERIES,DOCSERIESID,DOCNUMBER,DOCDATE,"
                 "GRANDTOTAL) VALUES (1,'JF',1,1,'2024-05-10',32600), (2,'IF',2,1,'2024-05-10',33000)",
                 "INSERT INTO DOCDATA (DOCUMENTID,REFNO,PRODUCTID,QUANTITY,STOCKFACTOR,JFACTOR) "
                 "VALUES (1,1,1,16.3,0,1), (2,1,1,10,1,-1), (2,2,1,6.3,1,-1)",
                 "INSERT INTO FADATA "
                 "(VOUCHERID,DSRNO,DCD,DVCHDATE,DBOOK,DTRNTYPE,DAMT,NARRATIONID) "
                 "VALUES (5,1,10,'2024-05-10','JV','IJF',-32600,1)",
             })
            db_->ExecuteSql(sql);
    }

    std::vector<std::vector<Value>> Rows(std::string_view sql) {
        std::vector<std::vector<Value>> rows;
        for (auto rs = db_->OpenRecordset(sql); !rs->EndOfRows(); rs->MoveNext()) {
            rows.emplace_back();
            for (int i = 0; i < rs->FieldCount(); ++i)
                rows.back().push_back(rs->Field(i));
        }
        return rows;
    }

    TempFolder dir_;
    std::unique_ptr<SqliteCompanyDb> db_;
};

} // namespace

// ---- create, open, refuse --------------------------------------------------------------------

TEST_F(Company, CreatedCompanyReopensWithItsMarkerInWalMode) {
    const fs::path path = db_->Path();
    db_->ExecuteSql("INSERT INTO STKMASTER (QMCD,QMHD) VALUES (1,'WHEAT')");
    db_.reset();

    auto db = SqliteCompanyDb::Open(path);
    EXPECT_EQ(db->LookupValue("STKMASTER", "QMHD", "QMCD=1"), Value("WHEAT"));
    EXPECT_EQ(db->LookupValue("QXCOMPANY", "VALUE", "NAME='FORMAT'"), Value("QX Desk company"));
    EXPECT_EQ(db->OpenRecordset("PRAGMA journal_mode")->Field(0), Value("wal"));

    EXPECT_THROW(SqliteCompanyDb::Create(path, "Again"), DbError);
}

TEST(CompanyFile, OpenSaysWhatKeepsAFileFromOpeningAndLeavesItUnchanged) {
    TempFolder dir;
    const fs::path missing = dir.Path() / "missing.kdb";
    EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(missing); }),
              missing.string() + " does not exist");
    EXPECT_FALSE(fs::exists(missing));
    EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(dir.Path()); }),
              dir.Path().string() + " is a folder, not a company file.");

    const fs::path empty = dir.Path() / "empty.kdb";
    const fs::path text = dir.Path() / "notes.kdb";
    const fs::path foreign = dir.Path() / "other.db";
    std::ofstream(empty).close();
    std::ofstream(text) << "Khanna mandi, season 2024\n";
    RawSql(foreign, "CREATE TABLE NOTES (ID INTEGER); INSERT INTO NOTES VALUES (1)");
    for (const fs::path& file : {empty, text, foreign}) {
        const std::string before = FileBytes(file);
        EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(file); }),
                  file.string() + " is not a QX Desk company file");
        EXPECT_EQ(FileBytes(file), before) << file;
    }

    const fs::path newer = dir.Path() / "newer.kdb";
    SqliteCompanyDb::Create(newer, "Newer")
        ->ExecuteSql("UPDATE QXCOMPANY SET VALUE='99' WHERE NAME='SCHEMAVERSION'");
    EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(newer); }),
              newer.string() + " was made by a newer QX Desk (schema version 99)");

    // A company whose first page was overwritten.
    const fs::path damaged = dir.Path() / "damaged.kdb";
    SqliteCompanyDb::Create(damaged, "Damaged");
    std::fstream(damaged, std::ios::in | std::ios::out | std::ios::binary).seekp(100).write(
        std::string(200, '\xff').data(), 200);
    EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(damaged); }),
              damaged.string() + " is damaged: restore it from a backup copy.");

    // A company another program holds for itself (exclusive locking, as some tools do) is
    // waited for a moment, then refused.
    const fs::path held = dir.Path() / "held.kdb";
    SqliteCompanyDb::Create(held, "Held");
    sqlite3* holder = nullptr;
    ASSERT_EQ(sqlite3_open(held.c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; DELETE FROM FAGROUPS;",
                           nullptr, nullptr, nullptr),
              SQLITE_OK)
        << sqlite3_errmsg(holder);
    EXPECT_EQ(ThrownMessage([&] { SqliteCompanyDb::Open(held); }),
              "Another program is saving to " + held.string() + ": try again in a moment.");
    sqlite3_close(holder);

    // Permissions hold for the user who opens, so that part runs without root's privileges.
    const fs::path closed = dir.Path() / "closed.kdb";
    SqliteCompanyDb::Create(closed, "Closed");
    fs::permissions(closed, fs::perms::none);
    EXPECT_EQ(qx::test::AsUnprivileged([&] {
                  return ThrownMessage([&] { SqliteCompanyDb::Open(closed); });
              }),
              "You have no permission to read " + closed.string() + ".");
}

// A company made by an older QX Desk is brought up to date as it is opened, keeping its data;
// one made when two programs saving at once could double a document's number is refused,
// naming the documents, and left as it was until they are renumbered.
TEST(CompanyFile, OlderCompanyIsBroughtUpToDateUnlessItDoublesANumber) {
    TempFolder dir;
    const fs::path path = dir.Path() / "older.kdb";
    {
        auto older = SqliteCompanyDb::Create(path, "Older");
        older->ExecuteSql("DROP TABLE FAGROUPS");
        older->ExecuteSql("DROP INDEX IX_FADATA_DCD_DVCHDATE");
        older->ExecuteSql("DROP INDEX UX_DOCMAIN_DOCSERIESID_DOCNUMBER");
        older->ExecuteSql("CREATE INDEX IX_DOCMAIN_DOCSERIESID_DOCNUMBER ON DOCMAIN (DOCSERIESID, DOCNUMBER)");
        older->ExecuteSql("INSERT INTO FAMASTER (MCD, MHD) VALUES (1, 'SELF')");
        // A series column of a company made before columns said which figures they take.
        older->ExecuteSql("ALTER TABLE DOCCOLUMNS DROP COLUMN FIGURES");
        older->ExecuteSql("INSERT INTO DOCCOLUMNS (SERIESID, POSITION) VALUES (1, 1)");
        older->ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID,DOCSERIES,DOCSERIESID,DOCNUMBER) VALUES "
                          "(1,'JF',1,5), (2,'JF',1,5), (3,'IF',2,5), (4,'JF',1,6), (5,'JF',1,5), "
                          "(6,'IF',2,9), (7,'IF',2,9)");
        older->ExecuteSql("UPDATE QXCOMPANY SET VALUE='1' WHERE NAME='SCHEMAVERSION'");
    }
    const std::string before = FileBytes(path);
    const std::string refusal = ThrownMessage([&] { SqliteCompanyDb::Open(path); });
    EXPECT_NE(refusal.find("JF no. 5 (documents 1, 2, 5); IF no. 9 (documents 6, 7)"),
              std::string::npos)
        << refusal;
    EXPECT_NE(refusal.find("Nothing was changed."), std::string::npos) << refusal;
    EXPECT_EQ(FileBytes(path), before);

    // Renumbered (here by hand), the company is brought up to date, and a number can no longer
    // be doubled, whoever writes it.
    RawSql(path, "UPDATE DOCMAIN SET DOCNUMBER=DOCUMENTID+10 WHERE DOCUMENTID IN (2,5,7)");
    auto db = SqliteCompanyDb::Open(path);
    EXPECT_EQ(db->LookupValue("QXCOMPANY", "VALUE", "NAME='SCHEMAVERSION'").AsText(),
              std::to_string(qx::db::kHostSchemaVersion));
    EXPECT_EQ(db->LookupValue("FAGROUPS", "GROUPNAME", "GROUPNO=195").AsText(), "TRADING ACCOUNTS");
    EXPECT_EQ(db->LookupValue("sqlite_master", "COUNT(*)", "name='IX_FADATA_DCD_DVCHDATE'").AsLong(), 1);
    EXPECT_EQ(db->LookupValue("FAMASTER", "MHD", "MCD=1").AsText(), "SELF");
    // It took negative figures before, so it still does.
    EXPECT_EQ(db->LookupValue("DOCCOLUMNS", "FIGURES", "SERIESID=1").AsText(), "signed");
    try {
        db->ExecuteSql("INSERT INTO DOCMAIN (DOCUMENTID,DOCSERIES,DOCSERIESID,DOCNUMBER) VALUES "
                       "(8,'JF',1,6)");
        ADD_FAILURE() << "a doubled number was saved";
    } catch (const DbError& error) {
        EXPECT_EQ(error.Problem(), qx::DbProblem::Duplicate);
        EXPECT_STREQ(error.what(), "The company already holds a record with the same "
                                   "DOCMAIN.DOCSERIESID, DOCMAIN.DOCNUMBER: nothing was saved.");
    }
}

// What a user who may not write a company sees of it: a read-only file in a folder anyone may
// write (where SQLite would leave -wal and -shm files with the file's permissions, keeping the
// company unwritable once it is made writable again), and a writable file in a read-only
// folder (where SQLite cannot make them at all).
TEST(CompanyFile, AReadOnlyCompanyIsReadRefusesSavesAndLeavesNoFilesBehind) {
    TempFolder dir;
    const fs::path openFolder = dir.Path() / "open";
    const fs::path lockedFolder = dir.Path() / "locked";
    const fs::path readOnlyFile = openFolder / "firm.kdb";
    const fs::path inLockedFolder = lockedFolder / "firm.kdb";
    for (const fs::path& path : {readOnlyFile, inLockedFolder}) {
        fs::create_directories(path.parent_path());
        SqliteCompanyDb::Create(path, "Firm")
            ->ExecuteSql("INSERT INTO STKMASTER (QMCD,QMHD) VALUES (1,'WHEAT')");
    }
    fs::permissions(openFolder, fs::perms(0777));
    fs::permissions(readOnlyFile, fs::perms(0444));
    fs::permissions(inLockedFolder, fs::perms(0666));
    fs::permissions(lockedFolder, fs::perms(0555));
    auto filesIn = [](const fs::path& folder) {
        std::string names;
        for (const auto& entry : fs::directory_iterator(folder)) names += entry.path().filename().string() + " ";
        return names;
    };
    auto use = [&](const fs::path& path) {
        auto db = SqliteCompanyDb::Open(path);
        std::string seen = db->LookupValue("STKMASTER", "QMHD", "QMCD=1").AsText() + "|";
        seen += ThrownMessage([&] { Transaction unit(*db); }) + "|";
        seen += ThrownMessage([&] { db->ExecuteSql("INSERT INTO STKMASTER (QMCD,QMHD) VALUES (2,'PADDY')"); });
        db.reset();
        return seen + "|" + filesIn(path.parent_path());
    };
    const std::string refused = " is read-only: nothing can be saved to it.";
    EXPECT_EQ(qx::test::AsUnprivileged([&] { return use(readOnlyFile); }),
              "WHEAT|" + readOnlyFile.string() + refused + "|" + readOnlyFile.string() + refused + "|firm.kdb ");
    EXPECT_EQ(qx::test::AsUnprivileged([&] { return use(inLockedFolder); }),
              "WHEAT|" + inLockedFolder.string() + refused + "|" + inLockedFolder.string() + refused + "|firm.kdb ");

    // Made writable again, each opens and saves as any company does.
    fs::permissions(readOnlyFile, fs::perms(0666));
    fs::permissions(lockedFolder, fs::perms(0777));
    for (const fs::path& path : {readOnlyFile, inLockedFolder})
        EXPECT_EQ(qx::test::AsUnprivileged([&] {
                      auto db = SqliteCompanyDb::Open(path);
                      Transaction unit(*db);
                      db->ExecuteSql("INSERT INTO STKMASTER (QMCD,QMHD) VALUES (2,'PADDY')");
                      unit.Commit();
                      return db->LookupValue("STKMASTER", "COUNT(*)", "").AsText();
                  }),
                  "2")
            << path;
}

// A program killed after saving leaves its last saves in the -wal file; a user who may not
// write the company still reads them.
TEST(CompanyFile, AReadOnlyCompanyShowsWhatItsWalFileHolds) {
    TempFolder dir;
    const fs::path path = dir.Path() / "firm.kdb";
    SqliteCompanyDb::Create(path, "Firm");
    qx::test::InChildProcess([&] {
        auto db = SqliteCompanyDb::Open(path);
        db->ExecuteSql("INSERT INTO STKMASTER (QMCD,QMHD) VALUES (1,'WHEAT')");
        _exit(0); // killed: the -wal is never checkpointed into the file
        return std::string();
    });
    for (const char* suffix : {"", "-wal", "-shm"})
        fs::permissions(path.string() + suffix, fs::perms(0444));
    EXPECT_EQ(qx::test::AsUnprivileged([&] {
                  return SqliteCompanyDb::Open(path)->LookupValue("STKMASTER", "QMHD", "QMCD=1").AsText();
              }),
              "WHEAT");
}

TEST(CompanyFile, AFullDiskIsSaidSo) {
    TempFolder dir;
    const fs::path made = dir.Path() / "firm.kdb";
    SqliteCompanyDb::Create(made, "Firm");
    const fs::path small = dir.Path() / "small";
    fs::create_directories(small);
    const fs::path path = small / "firm.kdb";
    const auto seen = qx::test::OnSmallDisk(small, 256, [&] {
        fs::copy_file(made, path);
        qx::test::FillDisk(small);
        std::string report = ThrownMessage([&] { SqliteCompanyDb::Open(path); });
        fs::remove(small / "filler");
        auto db = SqliteCompanyDb::Open(path);
        qx::test::FillDisk(small);
        return report + "|" + ThrownMessage([&] {
                   Transaction unit(*db);
                   db->ExecuteSql("INSERT INTO FANAR (NARRATIONID,NARRATION) VALUES (1,'" +
                                  std::string(200, 'x') + "')");
                   db->ExecuteSql("INSERT INTO FANAR SELECT NARRATIONID+1, NARRATION||NARRATION FROM FANAR");
                   unit.Commit();
               });
    });
    if (!seen)
        GTEST_SKIP() << "This system allows no user namespaces, so no small disk can be made "
                        "without privileges to fill.";
    const std::string full = "The disk holding " + path.string() + " is full: free some space and try again.";
    EXPECT_EQ(*seen, full + "|" + full);
}

// ---- a day of the season ---------------------------------------------------------------------------

TEST_F(Company, SumsDaysAndValuesOfADayOfTheSeason) {
    AddSeasonDay();
    // Decimal sums settle exactly: 16.3 on the J-Form, 10 + 6.3 on the I-Form, nothing pending.
    EXPECT_TRUE(Rows("SELECT PRODUCTID FROM DOCDATA GROUP BY PRODUCTID HAVING "
                     "SUM((QUANTITY+FREEQUANTITY)*JFACTOR)<>0")
                    .empty());
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY*STOCKFACTOR), SUM(JFACTOR), SUM(QUANTITY) FROM DOCDATA"),
              (std::vector<std::vector<Value>>{{16.3, -1, 32.6}}));
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY) FROM DOCDATA WHERE 1=0")[0][0], Value());
    // The running total of a window frame, as SQLite's own SUM allows.
    EXPECT_EQ(Rows("SELECT SUM(QUANTITY*JFACTOR) OVER (ORDER BY DOCUMENTID,REFNO) FROM DOCDATA "
                   "ORDER BY DOCUMENTID,REFNO"),
              (std::vector<std::vector<Value>>{{16.3}, {6.3}, {0.0}}));

    // Days compare as days (the literals' forms are SqlAdapterTest's): 01/10 lies after 10/05,
    // wrong if they were compared as dd/MM text.
    db_->ExecuteSql("INSERT INTO FADATA (VOUCHERID,DCD,DVCHDATE,DAMT) VALUES (6,10," +
                    db_->DateLiteral(Date::FromYmd(2024, 10, 1)) + ",100)");
    EXPECT_EQ(db_->LookupValue("FADATA", "COUNT(*)",
                               "DCD=10 AND DVCHDATE BETWEEN '2024-05-09' AND '2024-12-31'"),
              Value(2));

    // Values read back in the form of their column.
    auto row = db_->OpenRecordset("SELECT DOCUMENTID, DOCDATE, GRANDTOTAL, JFORMNOPORTAL, UTRDATE, "
                                  "GRANDTOTAL/3 AS THIRD, DOCSERIES||'-'||DOCNUMBER AS NO FROM "
                                  "DOCMAIN WHERE DOCUMENTID=1");
    EXPECT_EQ(row->Field("DOCUMENTID"), Value(1));
    EXPECT_EQ(row->Field("DOCDATE"), Value(Date::FromYmd(2024, 5, 10)));
    EXPECT_EQ(row->Field("GRANDTOTAL"), Value(Amt("32600")));
    EXPECT_EQ(row->Field("JFORMNOPORTAL"), Value(""));
    EXPECT_TRUE(row->Field("UTRDATE").IsNull());
    EXPECT_TRUE(std::holds_alternative<double>(row->Field("THIRD").Raw()));
    EXPECT_EQ(row->Field("NO"), Value("JF-1"));
    // A line saved without the module's amounts adds up as 0, not NULL.
    db_->ExecuteSql(
        "INSERT INTO DOCDATA (DOCUMENTID,REFNO,PRODUCTID,QUANTITY) VALUES (1,2,1,3.25)");
    EXPECT_EQ(db_->LookupValue("DOCDATA", "Quantity+FreeQuantity+(AddLessKgs/100)",
                               "DOCUMENTID=1 AND REFNO=2"),
              Value(3.25));
}

// ---- row sets ----------------------------------------------------------------------------------

// SELECT FIRST 0 opens an empty row set to append to; a row of a single-table query is
// updated in place, and the row written by AddNew stays the current row. Names of tables and
// fields ignore letter case.
TEST_F(Company, RowSetsOfASingleTableAreWritable) {
    auto rows = db_->OpenRecordset("SELECT FIRST 0 * FROM FADATA");
    EXPECT_TRUE(rows->EndOfRows());
    EXPECT_TRUE(rows->HasField("DAMT"));
    for (int serial = 1; serial <= 2; ++serial) {
        rows->AddNew();
        rows->SetField("VoucherID", 7);
        rows->SetField("dSrNo", serial);
        rows->SetField("dVchDate", Date::FromYmd(2024, 5, 10));
        rows->SetField("dAmt", serial == 1 ? Amt("1250.75") : Amt("-1250.75"));
        rows->Update();
    }
    EXPECT_EQ(Rows("SELECT DSRNO,DAMT,DVCHDATE FROM FADATA WHERE VOUCHERID=7 ORDER BY DSRNO"),
              (std::vector<std::vector<Value>>{{1, Amt("1250.75"), Date::FromYmd(2024, 5, 10)},
                                               {2, Amt("-1250.75"), Date::FromYmd(2024, 5, 10)}}));

    AddModuleSchema();
    db_->ExecuteSql("INSERT INTO MARKETMASTER (MARKETID,MARKETNAME) VALUES (1,'KHANNA')");
    db_->ExecuteSql("INSERT INTO MARKETMASTER (MARKETID,MARKETNAME) VALUES (2,'RAJPURA')");
    EXPECT_TRUE(db_->TableExists("marketmaster"));
    EXPECT_TRUE(db_->FieldExists("series", "MarketMaster"));
    auto market = db_->OpenRecordset("SELECT * FROM MARKETMASTER WHERE MARKETID=2");
    EXPECT_EQ(market->Field("marketname"), Value("RAJPURA"));
    EXPECT_TRUE(market->HasField("Series"));
    EXPECT_FALSE(market->HasField("SERIE"));
    market->SetField("station", "PATIALA");
    market->SetField("SERIES", "JF");
    market->Update();
    EXPECT_EQ(market->Field("STATION"), Value("PATIALA"));
    EXPECT_EQ(Rows("SELECT MARKETID,STATION,SERIES FROM MARKETMASTER ORDER BY MARKETID"),
              (std::vector<std::vector<Value>>{{1, Value(), ""}, {2, "PATIALA", "JF"}}));
    market->AddNew();
    market->SetField("MARKETID", 3);
    market->SetField("MARKETNAME", "ਸਮਰਾਲਾ");
    market->Update();
    market->SetField("REMARKS", "new yard");
    market->Update();
    EXPECT_EQ(db_->LookupValue("MARKETMASTER", "COUNT(*)", ""), Value(3));
    EXPECT_EQ(Rows("SELECT MARKETNAME, REMARKS FROM MARKETMASTER WHERE MARKETID=3"),
              (std::vector<std::vector<Value>>{{"ਸਮਰਾਲਾ", "new yard"}}));
}

TEST_F(Company, RowSetMisuseThrowsNamingWhatIsWrong) {
    AddSeasonDay();
    auto joined = db_->OpenRecordset(
        "SELECT A.*,B.NARRATION FROM FADATA A, FANAR B WHERE A.NARRATIONID=B.NARRATIONID");
    EXPECT_EQ(joined->Field("NARRATION"), Value("J-Form No. 101")); // the old join style
    EXPECT_NE(ThrownMessage([&] { joined->Field("NARATION"); }).find("NARATION"),
              std::string::npos);
    EXPECT_THROW(joined->Field(99), DbError);
    EXPECT_THROW(joined->SetField("NARRATION", "x"), DbError);
    EXPECT_THROW(joined->AddNew(), DbError);
    joined->MoveNext();
    EXPECT_TRUE(joined->EndOfRows());
    EXPECT_THROW(joined->Field("DAMT"), DbError);

    auto table = db_->OpenRecordset("SELECT * FROM FANAR");
    table->SetField("NARRATION", "changed");
    EXPECT_THROW(table->MoveNext(), DbError); // a change left without Update is not dropped
    EXPECT_THROW(table->SetField("NOSUCH", 1), DbError);

    // A row refused stays to be mended, and is written once it is.
    auto appended = db_->OpenRecordset("SELECT FIRST 0 * FROM FANAR");
    appended->AddNew();
    appended->SetField("NARRATIONID", 1);
    appended->SetField("NARRATION", "As per I-Forms");
    EXPECT_THROW(appended->Update(), DbError) << "the narration 1 exists";
    appended->SetField("NARRATIONID", 2);
    appended->Update();
    EXPECT_EQ(appended->Field("NARRATION"), Value("As per I-Forms"));
}

// A query other than "SELECT * FROM T" is read as it is moved through; what is written through
// the company while it is open (a statement, a unit of work, a column added, a row set's row)
// changes none of its rows, nor a field already given, and closing the company keeps them.
TEST_F(Company, RowSetReadAsMovedKeepsTheRowsItsQueryFound) {
    AddSeasonDay();
    const std::string lines = "SELECT D.DOCUMENTID, D.QUANTITY, M.DOCSERIES FROM DOCDATA D "
                              "JOIN DOCMAIN M ON M.DOCUMENTID=D.DOCUMENTID ORDER BY D.DOCUMENTID, D.REFNO";
    const std::vector<std::vector<Value>> found = {
        {1, Amt("16.3"), "JF"}, {2, Amt("10"), "IF"}, {2, Amt("6.3"), "IF"}};
    ASSERT_EQ(Rows(lines), found);
    std::vector<std::function<void()>> writes = {
        [&] { db_->ExecuteSql("UPDATE DOCDATA SET QUANTITY=QUANTITY+1"); },
        [&] {
            Transaction save(*db_);
            db_->ExecuteSql("DELETE FROM DOCDATA WHERE DOCUMENTID=2 AND REFNO=2");
            save.Commit();
        },
        [&] { db_->AddFields("DOCDATA", "Decimal(16,4)", {"iRDFAmt"}); },
        [&] {
            auto market = db_->OpenRecordset("SELECT * FROM DOCMAIN WHERE DOCUMENTID=2");
            market->SetField("DOCSERIES", "XX");
            market->Update();
        },
        [&] { db_.reset(); },
    };
    for (const auto& write : writes) {
        SCOPED_TRACE(&write - writes.data());
        if (!db_) break;
        db_->ExecuteSql("DELETE FROM DOCDATA");
        db_->ExecuteSql("INSERT INTO DOCDATA (DOCUMENTID,REFNO,QUANTITY) VALUES (1,1,16.3), (2,1,10), (2,2,6.3)");
        db_->ExecuteSql("UPDATE DOCMAIN SET DOCSERIES=CASE DOCUMENTID WHEN 1 THEN 'JF' ELSE 'IF' END");
        auto rows = db_->OpenRecordset(lines);
        const int quantity = rows->FieldIndex("quantity");
        std::vector<std::vector<Value>> read;
        auto readRow = [&] { read.push_back({rows->Field(0), rows->Field(quantity), rows->Field("DocSeries")}); };
        readRow();
        rows->MoveNext();
        const Value& given = rows->Field(quantity);
        write();
        EXPECT_EQ(given, Amt("10"));
        for (; !rows->EndOfRows(); rows->MoveNext())
            readRow();
        EXPECT_EQ(read, found);
    }
}

// ---- lookups, schema changes, errors, transactions ---------------------------------------------

TEST_F(Company, AbsenceIsAResultAndAnErrorIsAnError) {
    AddModuleSchema();
    EXPECT_TRUE(db_->LookupValue("MARKETMASTER", "MAX(MARKETID)", "").IsNull());
    EXPECT_TRUE(db_->LookupValue("FAMASTER", "MCD", "MHD='NOBODY'").IsNull());
    db_->ExecuteSql("INSERT INTO FAMASTER (MCD, MHD) VALUES (7, 'RAM D''SOUZA')");
    for (const char* name : {"RAM D'SOUZA", "NOBODY", "RAM D'SOUZA"})
        EXPECT_EQ(db_->LookupValue("FAMASTER", "MCD", "MHD=?", {name}).AsInt(),
                  name[0] == 'R' ? 7 : 0)
            << name;
    EXPECT_FALSE(db_->FieldExists("NOSUCHFIELD", "MARKETMASTER"));

    // A wrong column, a wrong table or a broken condition is an error, never "nothing found";
    // a fault of the statement itself keeps SQLite's words, with the statement.
    EXPECT_EQ(ThrownMessage([&] { db_->LookupValue("FAMASTER", "NOSUCHFIELD", "MCD=1"); }),
              "no such column: NOSUCHFIELD in: SELECT NOSUCHFIELD FROM FAMASTER WHERE MCD=1");
    EXPECT_EQ(ThrownMessage([&] { db_->ExecuteSql("UPDATE NOSUCHTABLE SET A=1"); }),
              "no such table: NOSUCHTABLE in: UPDATE NOSUCHTABLE SET A=1");
    EXPECT_THROW(db_->LookupValue("DOCMAIN", "DOCUMENTID", "NOSUCHFIELD=1"), DbError);
    EXPECT_THROW(db_->LookupValue("NOSUCHTABLE", "MCD", "MHD='X'"), DbError);
    EXPECT_THROW(db_->LookupValue("FAMASTER", "MCD", "MHD="), DbError);

    // So is a damaged company (the new schema version makes every connection read it again).
    RawSql(db_->Path(), "PRAGMA writable_schema=ON; UPDATE sqlite_master SET sql='CREATE TABLE "
                        "FAMASTER (' WHERE name='FAMASTER'; PRAGMA schema_version=99999;");
    const std::string damaged = db_->Path().string() + " is damaged: restore it from a backup copy.";
    EXPECT_EQ(ThrownMessage([&] { db_->TableExists("FAMASTER"); }), damaged);
    EXPECT_EQ(ThrownMessage([&] { db_->FieldExists("MCD", "FAMASTER"); }), damaged);
    EXPECT_EQ(ThrownMessage([&] { db_->LookupValue("STKMASTER", "QMCD", "QMCD=1"); }), damaged);
}

// Columns are added only when missing, the first type stays, and decimals divide as decimals.
TEST_F(Company, ColumnsAreAddedOnlyWhenMissing) {
    db_->AddFields("STKMASTER", "Decimal(8,4)", {"qMarketFee", "qRDF"});
    db_->AddFields("STKMASTER", "Decimal(12,4)", {"qRDF", "qLabourJF"});
    db_->AddFields("STKMASTER", "int", {"qVATRateCode", "QMHD"});
    auto types = Rows("SELECT name, type FROM pragma_table_info('STKMASTER') WHERE name IN "
                      "('qMarketFee','qRDF','qLabourJF','qVATRateCode','QMHD') ORDER BY cid");
    EXPECT_EQ(types, (std::vector<std::vector<Value>>{{"QMHD", "VARCHAR(60)"},
                                                      {"qMarketFee", "REAL"},
                                                      {"qRDF", "REAL"},
                                                      {"qLabourJF", "REAL"},
                                                      {"qVATRateCode", "INT"}}));
    db_->ExecuteSql("INSERT INTO STKMASTER (QMCD,qMarketFee) VALUES (1,2)");
    EXPECT_EQ(db_->LookupValue("STKMASTER", "qMarketFee/4", "QMCD=1"), Value(0.5));
    // Statements are kept to be run again: one kept from before a column was added sees it.
    EXPECT_FALSE(db_->OpenRecordset("SELECT * FROM STKMASTER")->HasField("qPIDF"));
    db_->AddFields("STKMASTER", "Decimal(8,4)", {"qPIDF"});
    EXPECT_TRUE(db_->OpenRecordset("SELECT * FROM STKMASTER")->HasField("qPIDF"));
}

TEST_F(Company, TransactionIsAllOrNothing) {
    {
        Transaction save(*db_);
        db_->ExecuteSql("INSERT INTO FADOCS (VoucherID,IsAutoVoucher) values (7,-1)");
        EXPECT_THROW(db_->BeginTransaction(), DbError); // no unit of work inside another
        // leaves the scope without Commit, as a save that failed half way
    }
    EXPECT_TRUE(db_->LookupValue("FADOCS", "VOUCHERID", "VOUCHERID=7").IsNull());
    {
        Transaction save(*db_);
        db_->ExecuteSql("Insert into FADocs (VoucherID,IsAutoVoucher) values (7,-1)");
        save.Commit();
    }
    EXPECT_EQ(db_->LookupValue("FADOCS", "ISAUTOVOUCHER", "VOUCHERID=7"), Value(-1));
    for (int twice = 0; twice < 2; ++twice) // the same text, run again from its kept statement
        db_->ExecuteSql("DELETE FROM FADOCS WHERE VOUCHERID=7");
    EXPECT_TRUE(db_->LookupValue("FADOCS", "VOUCHERID", "VOUCHERID=7").IsNull());
    EXPECT_THROW(db_->Commit(), DbError);
}
