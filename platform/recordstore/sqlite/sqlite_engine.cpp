#include "platform/recordstore/sqlite/sqlite_engine.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <new>
#include <utility>

#include "platform/os/clock.h"
#include "platform/recordstore/journal.h"

namespace kova::store {
namespace {

constexpr int kLongestWait = 5000;  // ms
constexpr int kFirstField = 2;      // behind id and exact

}  // namespace

SqliteEngine::SqliteEngine(Connection connection, bool canWrite)
    : connection_(std::move(connection)),
      canWrite_(canWrite),
      workstation_(JournalledWorkstation()),
      statements_(AllTables().size()) {
  sqlite3_busy_handler(connection_.get(), &WaitWhileBusy, this);
  // Plans must not depend on what is bound: SQLite would compile a kept statement anew for every limit.
  sqlite3_db_config(connection_.get(), SQLITE_DBCONFIG_ENABLE_QPSG, 1, nullptr);
}

SqliteEngine::~SqliteEngine() {
  if (sqlite3_get_autocommit(connection_.get()) == 0) Rollback();
}

// The wait is bounded for an operation as a whole, however many locks it needs.
int SqliteEngine::WaitWhileBusy(void* self, int) {
  const auto* engine = static_cast<SqliteEngine*>(self);
  if (os::MonotonicMilliseconds() >= engine->deadline_) return 0;
  os::SleepMilliseconds(2);
  return 1;
}

void SqliteEngine::StartClock() { deadline_ = os::MonotonicMilliseconds() + kLongestWait; }

sqlite3_stmt* SqliteEngine::Prepare(Statement& place, const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v3(connection_.get(), sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  place.reset(statement);
  return statement;
}

sqlite3_stmt* SqliteEngine::ReadStatement(const TableDef& table, std::size_t keyIndex, Range range) {
  std::vector<Statement>& reads = table.part.empty() ? Of(table).reads : partReads_[table.part];
  reads.resize(table.keys.size() * kRanges);
  Statement& place = reads[keyIndex * kRanges + static_cast<std::size_t>(range)];
  return Prepared(place, [&] { return ReadSql(table, table.keys[keyIndex], range); });
}

void SqliteEngine::DecodeRow(sqlite3_stmt* row, const TableDef& table, RecordBlock& block) {
  char* record = block.Add(sqlite3_column_int64(row, 0));
  const std::string_view exact = ColumnBytes(row, 1);
  const char* exactRecord = exact.size() == table.exactSize ? exact.data() : nullptr;
  int column = kFirstField;
  for (const FieldDef& field : table.fields) {
    char* bytes = record + field.offset;
    if (field.kind == FieldKind::kText) {
      const bool hasExact = exactRecord != nullptr && field.offset < table.exactSize;
      const char* exactField = hasExact ? exactRecord + field.offset : nullptr;
      const bool isEmpty = exactField == nullptr && sqlite3_column_bytes(row, column) == 0;
      if (!isEmpty)  // else it is as the block's place for a record begins; most fields of most records are
        TextFromColumn(ColumnText(row, column), exactField, bytes, field.width);
    } else {
      NumberFromColumn(sqlite3_column_int64(row, column), field.kind, bytes);
    }
    ++column;
  }
}

Result SqliteEngine::ReadRange(const TableDef& table, std::size_t keyIndex, Range range, const ReadFrom& from,
                               std::size_t limit, RecordBlock& block) {
  sqlite3_stmt* statement = ReadStatement(table, keyIndex, range);
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  int at = 1;
  if (range != Range::kFirst && range != Range::kLast) BindBytes(statement, at++, from.key);
  if (range == Range::kSameAfter || range == Range::kSameBefore) sqlite3_bind_int64(statement, at++, from.id);
  sqlite3_bind_int64(statement, at, static_cast<sqlite3_int64>(limit));
  int code = SQLITE_OK;
  while ((code = sqlite3_step(statement)) == SQLITE_ROW) DecodeRow(statement, table, block);
  return FromSqlite(code);
}

Result SqliteEngine::Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from,
                          std::size_t limit, RecordBlock& block) {
  if (from.beginnings) return ReadBeginnings(table, keyIndex, from, limit, block);
  StartClock();
  block.Reset(table.recordSize);
  const auto read = [&](Range range) {
    return ReadRange(table, keyIndex, range, from, limit - block.Size(), block);
  };
  const auto readOn = [&](Range same, Range other) {
    if (table.keys[keyIndex].number != 0) {
      const Result result = read(same);
      if (result != Result::kDone || block.Size() == limit) return result;
    }
    return read(other);
  };
  switch (from.place) {
    case ReadFrom::Place::kFirst:
      return read(Range::kFirst);
    case ReadFrom::Place::kLast:
      return read(Range::kLast);
    case ReadFrom::Place::kAtLeast:
      return read(Range::kAtLeast);
    case ReadFrom::Place::kAtMost:
      return read(Range::kAtMost);
    case ReadFrom::Place::kBelow:
      return read(Range::kBelow);
    case ReadFrom::Place::kAfter:
      return readOn(Range::kSameAfter, Range::kAbove);
    case ReadFrom::Place::kBefore:
      return readOn(Range::kSameBefore, Range::kBelow);
  }
  return Result::kBadArgument;
}

Result SqliteEngine::ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) {
  StartClock();
  block.Reset(table.recordSize);
  Statement once;
  Statement& place = table.part.empty() ? Of(table).selectInOrder : once;
  sqlite3_stmt* statement = Prepared(place, [&] { return SelectInOrderSql(SqlForm(), table); });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  sqlite3_bind_int64(statement, 1, behind);
  sqlite3_bind_int64(statement, 2, static_cast<sqlite3_int64>(limit));
  int code = SQLITE_OK;
  while ((code = sqlite3_step(statement)) == SQLITE_ROW) DecodeRow(statement, table, block);
  return FromSqlite(code);
}

// Binds fields, keys and exact bytes from parameter `at` on; gives the number of the next one.
int SqliteEngine::BindRecord(sqlite3_stmt* statement, int at, const TableDef& table, const char* record) {
  ToColumns(table, record, columns_);
  std::size_t text = 0;
  for (const FieldDef& field : table.fields) {
    if (field.kind == FieldKind::kText) {
      BindText(statement, at++, columns_.texts[text++]);
    } else {
      sqlite3_bind_int64(statement, at++, NumberOfField(field.kind, record + field.offset));
    }
  }
  keys_.resize(table.keys.size());
  for (std::size_t i = 0; i < table.keys.size(); ++i) {
    keys_[i] = MakeKey(table.keys[i], record);
    BindBytes(statement, at++, keys_[i]);
  }
  if (!columns_.exact) BindBytes(statement, at, {record, table.recordSize});
  return at + 1;
}

bool SqliteEngine::HoldsTransaction() const {
  return mode_ == Mode::kHost || mode_ == Mode::kUnit || mode_ == Mode::kUnitInHost;
}

// One write, within the transaction that is open or in one of its own.
template <typename Write>
Result SqliteEngine::WriteWhole(const TableDef& table, Write write) {
  if (!canWrite_) return Result::kReadOnly;
  StartClock();  // a large transaction may need the file for itself before its end
  const bool own = !HoldsTransaction();
  if (own) {
    const Result begun = BeginUnit();
    if (begun != Result::kDone) return begun;
  } else if (sqlite3_get_autocommit(connection_.get()) != 0) {
    return Result::kNoTransaction;  // SQLite gave it up at an earlier failure; nothing more may be written in
                                    // it
  }
  Result result = Result::kFailed;
  try {
    result = write();
  } catch (const std::bad_alloc&) {
    // A failed write like any other: the transaction of its own must not stay open and keep the write lock.
  }
  if (result == Result::kDone) changes_.NoteWrite(table);
  if (!own) return result;
  const Result ended = EndUnit(result == Result::kDone);
  return result == Result::kDone ? ended : result;
}

Result SqliteEngine::Insert(const TableDef& table, const char* record, RecordId& id) {
  return WriteWhole(table, [&] {
    RecordId next = 0;
    const Result counted = NextId(next);
    if (counted != Result::kDone) return counted;
    sqlite3_stmt* statement = Prepared(Of(table).insert, [&] { return InsertSql(SqlForm(), table); });
    if (statement == nullptr) return LastError();
    const StatementUse use(statement);
    sqlite3_bind_int64(statement, 1, next);
    BindRecord(statement, 2, table, record);
    const Result result = FromSqlite(sqlite3_step(statement));
    if (result != Result::kDone) return result;
    id = next;
    changes_.NoteInsert(table, id);
    return result;
  });
}

// Left to itself, SQLite gives the number of a deleted last record again, and whoever still holds that record would write
// over another. The counter is read once a transaction and written at its end.
Result SqliteEngine::NextId(RecordId& id) {
  if (!lastId_) {
    std::int64_t last = 0;
    const Result result = LastNumber(kIdCounter, last);
    if (result != Result::kDone) return result;
    lastId_ = last;
  }
  id = ++*lastId_;
  return Result::kDone;
}

Result SqliteEngine::ReadUnchanged(const TableDef& table, RecordId id, const char* expected) {
  sqlite3_stmt* statement = Prepared(Of(table).selectById, [&] { return SelectByIdSql(SqlForm(), table); });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  sqlite3_bind_int64(statement, 1, id);
  const int code = sqlite3_step(statement);
  if (code == SQLITE_DONE) return Result::kChanged;
  if (code != SQLITE_ROW) return FromSqlite(code);
  RecordBlock stored;
  stored.Reset(table.recordSize);
  DecodeRow(statement, table, stored);
  return std::memcmp(stored.Record(0), expected, table.recordSize) == 0 ? Result::kDone : Result::kChanged;
}

// Enters the stored record; kChanged when there is none.
Result SqliteEngine::Journal(const TableDef& table, RecordId id, bool isDeleted) {
  TableStatements& kept = Of(table);
  sqlite3_stmt* enter = Prepared(isDeleted ? kept.deleted : kept.overwritten,
                                 [&] { return JournalSql(SqlForm(), table, "?1", "?2", isDeleted ? "d" : "u"); });
  sqlite3_stmt* forget = Prepared(kept.forgetOld, [&] { return ForgetOldSql(SqlForm(), table); });
  if (enter == nullptr || forget == nullptr) return LastError();
  const StatementUse use(enter), other(forget);
  sqlite3_bind_int64(enter, 1, id);
  BindText(enter, 2, workstation_);
  const Result entered = FromSqlite(sqlite3_step(enter));
  if (entered != Result::kDone) return entered;
  return sqlite3_changes(connection_.get()) == 1 ? FromSqlite(sqlite3_step(forget)) : Result::kChanged;
}

// A write over a stored record, which goes into the journal first, and stays there only with the write.
template <typename Write>
Result SqliteEngine::WriteOver(const TableDef& table, RecordId id, bool isDeleted, Write write) {
  const Result entered = Journal(table, id, isDeleted);
  if (entered != Result::kDone) return entered;
  const Result written = write();
  // A transaction that SQLite gave up has taken the entry with it.
  if (written == Result::kDone || sqlite3_get_autocommit(connection_.get()) != 0) return written;
  sqlite3_stmt* takeBack = Prepared(Of(table).forgetLast, [&] { return ForgetLastSql(SqlForm(), table); });
  const StatementUse use(takeBack);
  if (takeBack != nullptr) (void)sqlite3_step(takeBack);
  return written;
}

Result SqliteEngine::Update(const TableDef& table, RecordId id, const char* record, const char* expected) {
  return WriteWhole(table, [&] {
    if (expected != nullptr) {
      const Result unchanged = ReadUnchanged(table, id, expected);
      if (unchanged != Result::kDone) return unchanged;
    }
    return WriteOver(table, id, false, [&] {
      sqlite3_stmt* statement = Prepared(Of(table).update, [&] { return UpdateSql(SqlForm(), table); });
      if (statement == nullptr) return LastError();
      const StatementUse use(statement);
      sqlite3_bind_int64(statement, BindRecord(statement, 1, table, record), id);
      return FromSqlite(sqlite3_step(statement));
    });
  });
}

Result SqliteEngine::Delete(const TableDef& table, RecordId id) {
  return WriteWhole(table, [&] {
    return WriteOver(table, id, true, [&] {
      sqlite3_stmt* statement = Prepared(Of(table).remove, [&] { return DeleteSql(SqlForm(), table); });
      if (statement == nullptr) return LastError();
      const StatementUse use(statement);
      sqlite3_bind_int64(statement, 1, id);
      return FromSqlite(sqlite3_step(statement));
    });
  });
}

Result SqliteEngine::BeginTransaction(Mode mode) {
  if (HoldsTransaction()) return Result::kInTransaction;
  if (!canWrite_) return Result::kReadOnly;
  StartClock();
  if (mode_ == Mode::kReading) Rollback();
  const Result result = Execute(connection_.get(), "BEGIN IMMEDIATE");
  mode_ = result == Result::kDone ? mode : Mode::kIdle;
  lastId_.reset();
  // What a host reads in its transaction cannot be changed by others; what was read ahead before could.
  if (result == Result::kDone) changes_.NoteBegin(mode == Mode::kHost);
  return result;
}

Result SqliteEngine::Begin() { return BeginTransaction(Mode::kHost); }

Result SqliteEngine::End() {
  if (mode_ != Mode::kHost) return Result::kNoTransaction;
  return Commit();
}

Result SqliteEngine::Abort() {
  if (mode_ != Mode::kHost) return Result::kNoTransaction;
  Rollback();
  return Result::kDone;
}

Result SqliteEngine::BeginUnit() {
  if (mode_ == Mode::kUnit || mode_ == Mode::kUnitInHost) return Result::kInTransaction;
  if (mode_ == Mode::kHost) {
    if (sqlite3_get_autocommit(connection_.get()) != 0) return Result::kNoTransaction;
    const Result result = Execute(connection_.get(), "SAVEPOINT unit");
    if (result != Result::kDone) return result;
    mode_ = Mode::kUnitInHost;
    changes_.NoteBeginUnit();
    return result;
  }
  return BeginTransaction(Mode::kUnit);
}

Result SqliteEngine::EndUnit(bool worked) {
  if (mode_ == Mode::kUnitInHost) {
    mode_ = Mode::kHost;
    if (worked) return Execute(connection_.get(), "RELEASE unit");
    changes_.NoteUnitTakenBack();
    return Execute(connection_.get(), "ROLLBACK TO unit; RELEASE unit");
  }
  if (mode_ != Mode::kUnit) return Result::kNoTransaction;
  if (worked) return Commit();
  Rollback();
  return Result::kDone;
}

Result SqliteEngine::Commit() {
  StartClock();
  Result result = Result::kNoTransaction;
  if (sqlite3_get_autocommit(connection_.get()) == 0) result = WriteStamps();
  if (result == Result::kDone && lastId_) result = SetLastNumber(kIdCounter, *lastId_);
  if (result == Result::kDone) result = Execute(connection_.get(), "COMMIT");
  if (result != Result::kDone) {
    Rollback();
    return result;
  }
  changes_.NoteCommit();
  mode_ = Mode::kIdle;
  return Result::kDone;
}

void SqliteEngine::Rollback() {
  if (sqlite3_get_autocommit(connection_.get()) == 0) (void)Execute(connection_.get(), "ROLLBACK");
  if (mode_ != Mode::kReading) changes_.NoteRollback();
  mode_ = Mode::kIdle;
}

Result SqliteEngine::WriteStamps() {
  for (const TableDef& table : AllTables()) {
    const std::int64_t changes = changes_.Changes(table.id);
    if (changes == 0) continue;
    sqlite3_stmt* statement = Prepared(
        stampWrite_, [] { return "UPDATE change_stamp SET stamp = MAX(stamp + ?, ?) WHERE tableName = ?"; });
    if (statement == nullptr) return LastError();
    const StatementUse use(statement);
    sqlite3_bind_int64(statement, 1, changes);
    sqlite3_bind_int64(statement, 2, std::time(nullptr));
    BindText(statement, 3, table.name);
    const Result result = FromSqlite(sqlite3_step(statement));
    if (result != Result::kDone) return result;
  }
  return Result::kDone;
}

void SqliteEngine::BeginReads() {
  if (readDepth_++ > 0 || mode_ != Mode::kIdle) return;
  if (Execute(connection_.get(), "BEGIN") != Result::kDone) return;
  mode_ = Mode::kReading;
  ++view_;
}

void SqliteEngine::EndReads() {
  if (--readDepth_ == 0 && mode_ == Mode::kReading) Rollback();
}

Result SqliteEngine::ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) {
  StartClock();
  if (stampReads_.size() <= tables.size()) stampReads_.resize(tables.size() + 1);
  sqlite3_stmt* statement =
      Prepared(stampReads_[tables.size()], [&] { return ChangeStampsSql(tables.size()); });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  int at = 1;
  for (const TableId table : tables) BindText(statement, at++, GetTable(table).name);
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW) return FromSqlite(code);
  if (sqlite3_column_type(statement, 0) != SQLITE_INTEGER) return Result::kDamaged;
  sum = sqlite3_column_int64(statement, 0);
  for (const TableId table : tables) sum += changes_.Show(table);
  return Result::kDone;
}

Result SqliteEngine::NextNumber(std::string_view counter, std::int64_t& number) {
  if (!HoldsTransaction()) return Result::kNoTransaction;
  sqlite3_stmt* statement = Prepared(
      numberNext_, [] { return "UPDATE counter SET value = value + 1 WHERE name = ? RETURNING value"; });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  BindText(statement, 1, counter);
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW) return code == SQLITE_DONE ? Result::kDamaged : FromSqlite(code);
  number = sqlite3_column_int64(statement, 0);
  return FromSqlite(sqlite3_step(statement));
}

Result SqliteEngine::LastNumber(std::string_view counter, std::int64_t& number) {
  StartClock();
  sqlite3_stmt* statement = Prepared(numberRead_, [] { return "SELECT value FROM counter WHERE name = ?"; });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  BindText(statement, 1, counter);
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW) return code == SQLITE_DONE ? Result::kDamaged : FromSqlite(code);
  number = sqlite3_column_int64(statement, 0);
  return Result::kDone;
}

Result SqliteEngine::SetLastNumber(std::string_view counter, std::int64_t number) {
  if (!HoldsTransaction()) return Result::kNoTransaction;
  sqlite3_stmt* statement = Prepared(numberWrite_, [] { return "UPDATE counter SET value = ? WHERE name = ?"; });
  if (statement == nullptr) return LastError();
  const StatementUse use(statement);
  sqlite3_bind_int64(statement, 1, number);
  BindText(statement, 2, counter);
  return FromSqlite(sqlite3_step(statement));
}

Result SqliteEngine::CheckIntegrity(std::string& finding) {
  StartClock();
  Statement check;
  sqlite3_stmt* statement = Prepared(check, [] { return "PRAGMA integrity_check(1)"; });
  if (statement == nullptr || sqlite3_step(statement) != SQLITE_ROW) return Result::kDamaged;
  finding = ColumnText(statement, 0);
  return finding == "ok" ? Result::kDone : Result::kDamaged;
}

}  // namespace kova::store
