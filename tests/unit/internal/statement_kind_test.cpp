#include "corvane/session/internal/statement_kind.h"

#include <gtest/gtest.h>

namespace corvane::internal {
namespace {

class CannotChange : public testing::TestWithParam<char const*> {};

TEST_P(CannotChange, Data) { EXPECT_TRUE(CannotChangeData(GetParam())); }

INSTANTIATE_TEST_SUITE_P(
    , CannotChange,
    testing::Values("SELECT 1", "select a from t", " \t\n(SELECT 1)", "((SELECT 1) UNION (SELECT 2)) LIMIT 1",
                    "SELECT `id`, `a` FROM `t` WHERE `id`='1' FOR UPDATE",
                    "SELECT DISTINCT t1.`a`, COUNT(t1.`b`) FROM (`t` t1 JOIN `u` t2 ON (t1.`a`=t2.`b`)) "
                    "WHERE ((t1.`a` IN ('1','2')) AND NOT (t2.`c` LIKE '%x%')) GROUP BY t1.`a` HAVING SUM(t1.`b`) > 3 "
                    "ORDER BY t1.`a` LIMIT 3 OFFSET 4",
                    "SELECT /*+ NO_INDEX(t) */ a FROM t", "SELECT COUNT( DISTINCT a) FROM t",
                    "SELECT IFNULL(a, 'INTO :=; /* -- # @x f(1)') FROM t", "SELECT 'it''s', 'it\\'s INTO' FROM t",
                    "SELECT `INTO` FROM `next`", "SELECT \"NEXT VALUE\"", "SELECT 'it\\'s'", "SELECT '\xC3\xA9'",
                    "SELECT CAST(a AS DECIMAL(10,2)) FROM t", "SELECT a-1, -(a) FROM t",
                    "SELECT a FROM t LOCK IN SHARE MODE", "SHOW TABLES", "SHOW VARIABLES LIKE 'x'", "DESCRIBE t",
                    "DESC t", "EXPLAIN SELECT 1", "EXPLAIN DELETE FROM t", "SELECT EXISTS (SELECT 1)",
                    "SELECT a FROM t WHERE a BETWEEN (1) AND (2)", "SELECT 1 UNION ALL (SELECT 2)"));

class MayChange : public testing::TestWithParam<char const*> {};

TEST_P(MayChange, Data) { EXPECT_FALSE(CannotChangeData(GetParam())); }

INSTANTIATE_TEST_SUITE_P(
    , MayChange,
    testing::Values("", " ", "(", "INSERT INTO t VALUES (1)", "UPDATE t SET a=1", "DELETE FROM t",
                    "REPLACE t VALUES (1)", "TRUNCATE t", "CREATE TABLE t (a INT)", "DROP TABLE t", "COMMIT", "BEGIN",
                    "SET a=1", "CALL p()", "DO f()", "LOAD DATA INFILE 'x' INTO TABLE t",
                    "WITH x AS (SELECT 1) DELETE FROM t", "/* SELECT */ DELETE FROM t", "/*!50000 DELETE FROM t */",
                    "SELECTED", "SELECT f(1)", "SELECT db.f(1)", "SELECT db.count(1)", "SELECT db . count(1)",
                    "SELECT `f`(1)", "SELECT `f` (1)", "SELECT \"f\"(1)", "SELECT f (1)",
                    "SELECT 1 INTO OUTFILE '/tmp/x'", "SELECT a into @x FROM t", "SELECT @x:=1", "SELECT @x",
                    "SELECT a:=1", "SELECT 1; DELETE FROM t", "SELECT 1;", "SELECT /*! f */ 1", "SELECT /* f */ 1",
                    "SELECT 1 -- x", "SELECT 1 # x", "SELECT 1--1", "SELECT NEXT VALUE FOR s", "SELECT nextval(s)",
                    "SELECT GET_LOCK('a', 1)", "SELECT SLEEP(1)", "SELECT LAST_INSERT_ID()",
                    "EXPLAIN ANALYZE UPDATE t SET a=1", "ANALYZE SELECT 1", "SELECT \xC3\xA9(1)",
                    "SELECT * FROM t PROCEDURE ANALYSE()", "SELECT 2 /*+ a */*+f(1) /*+ */", "SELECT 2 /*+ a",
                    "SELECT MAX (1)", "SELECT COUNT\n(1)", "SELECT MINUS(1)", "SELECT EXCEPT(1)", "SELECT INTERSECT(1)",
                    "SELECT OVER(1)", "SELECT NEXT\xA0VALUE FOR s", "SELECT 1\xA0INTO\xA0OUTFILE 'x'",
                    "SELECT s.nextval", "SELECT 1 AS \"a\\\", f(1) AS \"b\""));

TEST(CannotCommitOf, StatementsThatLeaveTheTransactionOpen) {
  for (char const* const statement :
       {"SELECT f(1)", "INSERT INTO t VALUES (1)", "update t set a=1", " DELETE FROM t", "REPLACE t VALUES (1)",
        "(SELECT 1)", "SHOW TABLES", "DO 0", "ROLLBACK", "SAVEPOINT a", "EXPLAIN SELECT 1"}) {
    EXPECT_TRUE(CannotCommit(statement)) << statement;
  }
}

TEST(CannotCommitOf, NoOthers) {
  for (char const* const statement :
       {"", "COMMIT", "commit", "CREATE TABLE t (a INT)", "DROP TABLE t", "ALTER TABLE t ADD a INT", "TRUNCATE t",
        "SET AUTOCOMMIT=1", "BEGIN", "START TRANSACTION", "LOCK TABLES t READ", "CALL p()", "XA COMMIT 'x'",
        "/* INSERT */ COMMIT", "INSERTED", "SELECT 1 INTO OUTFILE 'x'", "SELECT s.nextval",
        "SELECT NEXT VALUE FOR s"}) {
    EXPECT_FALSE(CannotCommit(statement)) << statement;
  }
}

}  // namespace
}  // namespace corvane::internal
