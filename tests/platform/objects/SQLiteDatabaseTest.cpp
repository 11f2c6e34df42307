#include "tests/support/Test.h"
#include "zymcore/platform/objects/internal/SQLiteDatabase.h"

namespace zym {
namespace {

TEST(SQLiteDatabase, AStatementIsItsHoldersWhateverElseIsPrepared) {
  SQLiteDatabase database("", SQLiteDatabase::Access::Create, 0);
  database.execute("CREATE TABLE t(a); INSERT INTO t VALUES(1), (2), (3)");
  SQLiteStatement rows = database.statement("SELECT a FROM t ORDER BY a");
  SQLiteStatement insert = database.statement("INSERT INTO t VALUES(?)");
  ASSERT_TRUE(rows.step());
  insert.add(std::int64_t{4});
  for (int i = 0; i < 600; ++i) {
    EXPECT_EQ(database.integer("SELECT " + std::to_string(i)), i);
  }
  // The same again, while the first is at its first row and not run yet.
  EXPECT_EQ(database.integer("SELECT a FROM t ORDER BY a"), 1);
  {
    SQLiteStatement other = database.statement("INSERT INTO t VALUES(?)");
    other.add(std::int64_t{5});
    other.run();
  }
  ASSERT_TRUE(rows.step());
  EXPECT_EQ(rows.integer(0), 2);
  insert.run();
  EXPECT_EQ(database.integer("SELECT sum(a) FROM t"), 15);
}

}  // namespace
}  // namespace zym
