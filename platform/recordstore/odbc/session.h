#pragma once

// A connection to one server: statements in, records out. Used by one thread at a time, which may be given up while a call
// is under way; so a session and what is handed to it own all that they touch.

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/recordstore/odbc/bulk_insert.h"
#include "platform/recordstore/odbc/dialect.h"
#include "platform/recordstore/odbc/record_rows.h"

namespace kova::store::odbc {

/// As ReadFrom, with what it points at.
struct OwnedReadFrom {
  explicit OwnedReadFrom(const ReadFrom& from)
      : place(from.place), key(from.key), id(from.id) {
    if (from.upTo) upTo.emplace(*from.upTo);
    if (from.beginnings) beginnings.emplace(from.beginnings->begin(), from.beginnings->end());
  }
  ReadFrom::Place place;
  std::string key;
  RecordId id;
  std::optional<std::string> upTo;
  std::optional<std::vector<std::string>> beginnings;
};

/// Statements that go before and behind a read in the same round trip; empty for none.
struct Around {
  std::string before, behind;
  bool IsEmpty() const { return before.empty() && behind.empty(); }
};

class Session {
 public:
  explicit Session(std::shared_ptr<const Dialect> dialect);
  ~Session();

  /// Connects and sets the session up; kWrongVersion when the server is another one, or too old.
  Result Open(const ServerSettings& settings, const ServerAddress& address, std::string_view database);
  /// The session's number on its server.
  const std::string& Id() const { return id_; }

  Result Read(const TableDef& table, std::size_t keyIndex, const OwnedReadFrom& from, std::size_t limit,
              const Around& around, RecordBlock& block);
  Result ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, Around around, RecordBlock& block);
  Result ReadById(const TableDef& table, RecordId id, RecordBlock& block);
  Result ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block);
  /// With the ids from `id` on, many a statement.
  Result InsertMany(const TableDef& table, RecordId id, const RecordBlock& block, std::size_t first);
  /// kDuplicate when the primary key exists.
  Result Insert(const TableDef& table, RecordId id, const char* record);
  /// kChanged when there is no such record, or it is no more as `expected` unless that is empty; kDuplicate when another
  /// one has its primary key. The stored record goes into the journal, here and in Delete.
  Result Update(const TableDef& table, RecordId id, const char* record, std::string_view expected);
  Result Delete(const TableDef& table, RecordId id);
  /// The sum of the tables' stored stamps.
  Result SumStamps(std::span<const TableId> tables, std::int64_t& sum);
  /// Runs a statement, or several where it does not matter how many round trips that takes, and collects the rows of the
  /// results.
  Result Run(std::string_view sql, Rows& rows);
  Result Run(std::string_view sql);
  /// The same of several statements, ";" between them.
  Result RunTogether(std::string_view statements, Rows& rows) { return Run(dialect_->Together(statements), rows); }

  /// What Problem says from now on, of a server that answers and cannot be used all the same.
  void Refuse(std::string why) { connection_.Refuse(std::move(why)); }
  /// What the driver said of the last failure, UTF-8.
  const std::string& Problem() const { return connection_.Failure().text; }
  std::uint64_t RoundTrips() const { return connection_.RoundTrips(); }

 private:
  struct PreparedRead;
  struct PreparedWrite;
  struct PreparedNumbers;
  bool IsUsable();
  Result WhyNotOpened(std::string_view account, std::string_view database) const;
  Result Failed() const { return dialect_->Translate(connection_.Failure()); }
  Result ReadText(const TableDef& table, std::string sql, const Around& around, std::size_t rows, RecordBlock& block);
  PreparedWrite* WriteStatement(const TableDef& table, char what);
  Result Write(PreparedWrite& write, RecordId id, Result none);
  Result Overwrite(const TableDef& table, RecordId id, const char* record);
  std::string EnterSql(const TableDef& table, RecordId id, std::string_view deed) const;

  std::shared_ptr<const Dialect> dialect_;
  const std::string workstation_;  // as the journals name it, an expression
  Connection connection_;  // outlives the statements
  std::string id_;
  std::map<std::string, std::unique_ptr<PreparedRead>, std::less<>> reads_;
  std::map<std::string, std::unique_ptr<PreparedWrite>, std::less<>> writes_;
  std::map<std::string, std::unique_ptr<PreparedNumbers>, std::less<>> numbers_;
  std::map<std::string, std::unique_ptr<BulkInsert>, std::less<>> bulkInserts_;
};

}  // namespace kova::store::odbc
