// The text rewrites on their own; CompanyDbTest runs the same traps against a real company.
#include "desk/db/SqlAdapter.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using qx::db::AdaptSql;
using qx::db::AsWritableQuery;

TEST(SqlAdapter, TheModulesDialectIsRewrittenOutsideQuotes) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        // SELECT FIRST n becomes LIMIT n at the end of its own SELECT
        {"SELECT FIRST 0 * FROM FADATA", "SELECT * FROM FADATA LIMIT 0"},
        {"Select First 1 sum(a.Quantity),b.docdate from DocData a group by b.docdate having "
         "sum(a.Quantity)<>0",
         "Select sum(a.Quantity),b.docdate from DocData a group by b.docdate having "
         "sum(a.Quantity)<>0 LIMIT 1"},
        {"select first 3 * from T order by A; ", "select * from T order by A LIMIT 3; "},
        {"SELECT * FROM (SELECT FIRST 2 A FROM T ORDER BY (A)) q WHERE q.A>0",
         "SELECT * FROM (SELECT A FROM T ORDER BY (A) LIMIT 2) q WHERE q.A>0"},
        {"SELECT FIRST 1 A FROM T -- first row\n", "SELECT A FROM T LIMIT 1 -- first row\n"},
        // not a row limit: a column named FIRST, and text or names in quotes
        {"SELECT FIRST FROM T", "SELECT FIRST FROM T"},
        {"SELECT 'SELECT FIRST 1' FROM T", "SELECT 'SELECT FIRST 1' FROM T"},
        {"SELECT \"FIRST\" FROM [SELECT FIRST 1]", "SELECT \"FIRST\" FROM [SELECT FIRST 1]"},
        // Access and ODBC date literals become ISO outside quotes
        {"WHERE DVCHDATE BETWEEN #4/1/2024# AND #03/31/2025#",
         "WHERE DVCHDATE BETWEEN '2024-04-01' AND '2025-03-31'"},
        {"WHERE DOCDATE={d '2024-05-10'} AND X={ d '2024-05-11' }",
         "WHERE DOCDATE='2024-05-10' AND X='2024-05-11'"},
        {"WHERE NARRATION='Paid #05/10/2024# {d ''2024-05-10''} ਖੰਨਾ'",
         "WHERE NARRATION='Paid #05/10/2024# {d ''2024-05-10''} ਖੰਨਾ'"},
        {"WHERE A=#13/01/2024#", "WHERE A=#13/01/2024#"}, // no month 13: left for SQLite to refuse
        // Decimal column types become REAL in table definitions
        {"CREATE TABLE T (A DECIMAL(16,4) NOT NULL, B Currency, C VARCHAR(10), D Int, E Double "
         "Precision, F Numeric(8, 4) DEFAULT 0, CONSTRAINT PK_T PRIMARY KEY (D))",
         "CREATE TABLE T (A REAL NOT NULL, B REAL, C VARCHAR(10), D Int, E REAL, F REAL DEFAULT "
         "0, CONSTRAINT PK_T PRIMARY KEY (D))"},
        {"ALTER TABLE DOCDATA ADD AddLessKgs Decimal(16,4)",
         "ALTER TABLE DOCDATA ADD AddLessKgs REAL"},
        // only definitions: a DECIMAL word elsewhere is left alone
        {"SELECT CAST(A AS DECIMAL(8,2)) FROM T", "SELECT CAST(A AS DECIMAL(8,2)) FROM T"},
        // An added NOT NULL column gets a default
        {"ALTER TABLE MARKETMASTER ADD SERIES VARCHAR(10) NOT NULL",
         "ALTER TABLE MARKETMASTER ADD SERIES VARCHAR(10) NOT NULL DEFAULT ''"},
        {"ALTER TABLE T ADD COLUMN N Decimal(8,4) NOT NULL;",
         "ALTER TABLE T ADD COLUMN N REAL NOT NULL DEFAULT 0;"},
        {"ALTER TABLE T ADD N INT NOT NULL DEFAULT 7",
         "ALTER TABLE T ADD N INT NOT NULL DEFAULT 7"},
        {"ALTER TABLE T ADD N INT", "ALTER TABLE T ADD N INT"},
    };
    for (const auto& [written, expected] : cases)
        EXPECT_EQ(AdaptSql(written), expected) << written;
}

TEST(SqlAdapter, OnlyASingleTableSelectAllIsWritable) {
    for (const char* sql : {"SELECT * FROM FADATA LIMIT 0", "select * from FADATA where DCD=3",
                            "SELECT * FROM FADATA ORDER BY DCD"})
        EXPECT_EQ(AsWritableQuery(sql).value_or(qx::db::WritableQuery{}).table, "FADATA") << sql;
    for (const char* sql :
         {"SELECT A.*,B.NARRATION FROM FADATA A, FANAR B WHERE A.NARRATIONID=B.NARRATIONID",
          "SELECT * FROM FADATA A INNER JOIN FANAR B ON A.NARRATIONID=B.NARRATIONID",
          "SELECT * FROM FADATA, FANAR", "SELECT DCD FROM FADATA",
          "SELECT * FROM FADATA GROUP BY DCD", "SELECT * FROM (SELECT * FROM FADATA)"})
        EXPECT_FALSE(AsWritableQuery(sql).has_value()) << sql;
}
