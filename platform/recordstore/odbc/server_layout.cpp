#include "platform/recordstore/odbc/server_layout.h"

#include <charconv>

namespace kova::store {
namespace {

// Stored; a change needs a step in UpgradeServerDatabase. 1 had no store_client, 2 no journals.
constexpr int kLayout = 3;

std::string ClientTableSql(const Dialect& dialect) {
  return "CREATE TABLE store_client (id varchar(32) PRIMARY KEY, commits bigint NOT NULL, used bigint NOT NULL)" +
         dialect.TableOptions() + ";\n";
}

std::string LayoutSql(const Dialect& dialect) {
  const std::string options = dialect.TableOptions() + ";\n", tableName = dialect.Name("tableName");
  // The layout's number is written last: without it the rest is not finished.
  std::string sql = "CREATE TABLE store_info (name varchar(40) PRIMARY KEY, value varchar(200) NOT NULL)" + options +
                    "CREATE TABLE counter (name varchar(40) PRIMARY KEY, value bigint NOT NULL)" + options +
                    "INSERT INTO counter (name, value) VALUES ('saleNumber', 0), ('write', 0);\n" +
                    "CREATE TABLE change_stamp (" + tableName + " varchar(40) PRIMARY KEY, stamp bigint NOT NULL)" +
                    options + ClientTableSql(dialect);
  for (const TableDef& table : AllTables())
    sql += CreateTableSql(dialect, table) + CreateTableSql(dialect, JournalOf(table.id)) + "INSERT INTO change_stamp (" + tableName + ", stamp) VALUES ('" +
           std::string(table.name) + "', 1);\n";
  return sql + "INSERT INTO store_info (name, value) VALUES ('layout', '" + std::to_string(kLayout) + "');\n";
}

std::string DropJournalSql(const Dialect& dialect, const TableDef& table) {
  return "DROP TABLE IF EXISTS " + dialect.Name(JournalOf(table.id).name) + ";\n";
}

std::string DropSql(const Dialect& dialect) {
  std::string sql;
  for (const TableDef& table : AllTables())
    sql += "DROP TABLE IF EXISTS " + dialect.Name(table.name) + ";\n" + DropJournalSql(dialect, table);
  for (const std::string_view table : kOwnTables) sql += "DROP TABLE IF EXISTS " + dialect.Name(table) + ";\n";
  return sql;
}

/// 0 when the tables are there and no number yet; kNoDatabase without the tables.
Result ReadLayout(odbc::Session& session, int& layout) {
  odbc::Rows rows;
  const Result result = session.Run("SELECT value FROM store_info WHERE name = 'layout'", rows);
  layout = 0;
  if (result != Result::kDone) return result == Result::kDamaged ? Result::kNoDatabase : result;
  if (!rows.empty()) {
    const std::string& text = rows.front().front();
    std::from_chars(text.data(), text.data() + text.size(), layout);
  }
  return Result::kDone;
}

/// All of it or nothing, where the server can.
Result RunWhole(odbc::Session& session, const Dialect& dialect, const std::string& sql) {
  if (!dialect.LaysOutInTransaction()) return session.Run(sql);
  const Result result = session.Run("BEGIN; " + sql + "COMMIT");
  if (result != Result::kDone) (void)session.Run("ROLLBACK");
  return result;
}

/// The first answer of a server that gives one, to work on its session.
template <typename Work>
Result OnFirst(const ServerSettings& settings, std::string& problem, Work work) {
  const std::shared_ptr<const Dialect> dialect = MakeDialect(settings.kind);
  Result result = Result::kUnreachable;
  for (const ServerAddress& address : settings.hosts) {
    odbc::Session session(dialect);
    result = session.Open(settings, address, settings.database);
    if (result == Result::kNoDatabase || result == Result::kDone) result = work(session, *dialect, address, result);
    problem = result == Result::kDone ? std::string() : address.Text() + ": " + session.Problem();
    if (result != Result::kUnreachable) break;
  }
  return result;
}

Result LayOut(odbc::Session& session, const Dialect& dialect) {
  int layout = 0;
  const Result result = ReadLayout(session, layout);
  if (result == Result::kDone && layout != 0) return Result::kDuplicate;
  if (result != Result::kDone && result != Result::kNoDatabase) return result;
  // Left over from a layout that was not finished: there is no practice in it.
  const std::string before = result == Result::kDone ? DropSql(dialect) : std::string();
  return RunWhole(session, dialect, before + LayoutSql(dialect));
}

}  // namespace

Result CheckServerLayout(odbc::Session& session, bool wantsUnfinished) {
  int layout = 0;
  const Result result = ReadLayout(session, layout);
  if (result != Result::kDone) return result;
  if (layout == 0) return Result::kNoDatabase;
  if (layout < kLayout) return Result::kOldVersion;
  if (layout > kLayout) return Result::kWrongVersion;
  if (wantsUnfinished) return Result::kDone;
  odbc::Rows rows;
  const Result asked = session.Run("SELECT id FROM store_client WHERE id = 'migration'", rows);
  if (asked != Result::kDone || rows.empty()) return asked;
  session.Refuse("a migration into this database is not finished");
  return Result::kNoDatabase;
}

// Among those who write here, with a date that keeps it from being cleared away: workstations' accounts may write there.
Result MarkServerUnfinished(odbc::Session& session, bool isUnfinished) {
  odbc::Rows none;
  std::string sql = "START TRANSACTION; DELETE FROM store_client WHERE id = 'migration'; ";
  if (isUnfinished) sql += "INSERT INTO store_client (id, commits, used) VALUES ('migration', 0, 9999999999); ";
  const Result result = session.RunTogether(sql + "COMMIT", none);
  if (result != Result::kDone && result != Result::kUnreachable) (void)session.Run("ROLLBACK");
  return result;
}

Result CreateServerDatabase(const ServerSettings& settings, std::string& problem) {
  return OnFirst(settings, problem, [&](odbc::Session& session, const Dialect& dialect, const ServerAddress& address, Result opened) {
    if (opened == Result::kDone) return LayOut(session, dialect);
    odbc::Session anywhere(MakeDialect(settings.kind)), made(MakeDialect(settings.kind));
    Result result = anywhere.Open(settings, address, {});
    if (result == Result::kDone) result = anywhere.Run(dialect.CreateDatabaseSql(settings.database));
    if (result == Result::kDone) result = made.Open(settings, address, settings.database);
    return result == Result::kDone ? LayOut(made, dialect) : result;
  });
}

Result UpgradeServerDatabase(const ServerSettings& settings, std::string& problem) {
  return OnFirst(settings, problem, [&](odbc::Session& session, const Dialect& dialect, const ServerAddress&, Result opened) {
    int layout = 0;
    if (opened != Result::kDone || ReadLayout(session, layout) != Result::kDone || layout == 0)
      return Result::kNoDatabase;
    if (layout == kLayout) return Result::kDone;
    if (layout > kLayout) return Result::kWrongVersion;
    std::string sql;
    if (layout < 2) sql += "DROP TABLE IF EXISTS store_client;\n" + ClientTableSql(dialect);
    for (const TableDef& table : AllTables()) {
      // One that is there is left over from an upgrade that was not finished: nobody has written to it yet.
      if (layout < 3) sql += DropJournalSql(dialect, table) + CreateTableSql(dialect, JournalOf(table.id));
    }
    sql += "UPDATE store_info SET value = '" + std::to_string(kLayout) + "' WHERE name = 'layout';\n";
    return RunWhole(session, dialect, sql);
  });
}

}  // namespace kova::store
