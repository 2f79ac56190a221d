#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/recordstore/change_book.h"
#include "platform/recordstore/engine.h"
#include "platform/recordstore/record_text.h"
#include "platform/recordstore/sqlite/statement.h"
#include "platform/recordstore/sqlite/read_sql.h"

namespace kova::store {

/// The counter of record ids in the database.
inline constexpr std::string_view kIdCounter = "write";  // stored; do not change

/// The embedded engine: one SQLite file in the database folder.
class SqliteEngine final : public Engine {
 public:
  /// Takes an open connection to a database of this version. `canWrite` false: every write gives ReadOnly.
  SqliteEngine(Connection connection, bool canWrite);
  ~SqliteEngine() override;

  Result Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
              RecordBlock& block) override;
  Result ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) override;
  Result Insert(const TableDef& table, const char* record, RecordId& id) override;
  Result Update(const TableDef& table, RecordId id, const char* record, const char* expected) override;
  Result Delete(const TableDef& table, RecordId id) override;
  Result Begin() override;
  Result End() override;
  Result Abort() override;
  bool HoldsTransaction() const override;
  Result BeginUnit() override;
  Result EndUnit(bool worked) override;
  void BeginReads() override;
  void EndReads() override;
  std::uint64_t ReadView() const override { return mode_ == Mode::kReading ? view_ : 0; }
  Result ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) override;
  Result NextNumber(std::string_view counter, std::int64_t& number) override;
  Result LastNumber(std::string_view counter, std::int64_t& number) override;
  Result SetLastNumber(std::string_view counter, std::int64_t number) override;
  const ChangeBook& Changes() const override { return changes_; }
  Result CheckIntegrity(std::string& finding) override;

 private:
  struct TableStatements {
    Statement insert, update, remove, selectById, selectInOrder, overwritten, deleted, forgetOld, forgetLast;
    std::vector<Statement> reads;  // keys * kRanges
  };
  enum class Mode { kIdle, kReading, kHost, kUnit, kUnitInHost };

  static int WaitWhileBusy(void* self, int);
  void StartClock();
  sqlite3_stmt* Prepare(Statement& place, const std::string& sql);
  /// The statement kept in `place`, made of `makeSql()` at its first use; null when that fails.
  template <typename MakeSql>
  sqlite3_stmt* Prepared(Statement& place, MakeSql makeSql) {
    return place != nullptr ? place.get() : Prepare(place, makeSql());
  }
  Result LastError() const { return FromSqlite(sqlite3_errcode(connection_.get())); }
  sqlite3_stmt* ReadStatement(const TableDef& table, std::size_t keyIndex, Range range);
  Result ReadRange(const TableDef& table, std::size_t keyIndex, Range range, const ReadFrom& from,
                   std::size_t limit, RecordBlock& block);
  void DecodeRow(sqlite3_stmt* row, const TableDef& table, RecordBlock& block);
  int BindRecord(sqlite3_stmt* statement, int at, const TableDef& table, const char* record);
  Result NextId(RecordId& id);
  Result Journal(const TableDef& table, RecordId id, bool isDeleted);
  template <typename Write>
  Result WriteOver(const TableDef& table, RecordId id, bool isDeleted, Write write);
  Result ReadUnchanged(const TableDef& table, RecordId id, const char* expected);
  template <typename Write>
  Result WriteWhole(const TableDef& table, Write write);
  Result BeginTransaction(Mode mode);
  Result Commit();
  void Rollback();
  Result WriteStamps();
  TableStatements& Of(const TableDef& table) { return statements_[static_cast<std::size_t>(table.id)]; }

  Connection connection_;
  bool canWrite_;
  const std::string workstation_;  // UTF-8; who the journals say it was
  std::vector<TableStatements> statements_;
  std::map<std::string, std::vector<Statement>> partReads_;  // as TableStatements' reads, by TableDef::part
  std::vector<Statement> stampReads_;                        // by the number of tables
  Statement stampWrite_, numberNext_, numberRead_, numberWrite_;
  std::optional<RecordId> lastId_;  // of the open transaction, once it inserted
  ChangeBook changes_;
  Mode mode_ = Mode::kIdle;
  int readDepth_ = 0;
  std::uint64_t view_ = 0;     // views so far
  std::int64_t deadline_ = 0;  // of os::MonotonicMilliseconds
  RecordColumns columns_;      // storage reused from write to write
  std::vector<std::string> keys_;
};

/// As OpenEngine and CreateDatabase, for a folder that holds its records itself.
std::unique_ptr<Engine> OpenSqliteEngine(std::string_view folder, bool overNetwork, Result& result);
Result CreateSqliteDatabase(std::string_view folder, bool overNetwork);

}  // namespace kova::store
