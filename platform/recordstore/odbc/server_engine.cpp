#include "platform/recordstore/odbc/server_engine.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <random>
#include <utility>

#include "platform/os/retry.h"
#include "platform/recordstore/odbc/server_layout.h"

namespace kova::store {
namespace {

constexpr std::string_view kWrites = "write";

std::string RandomName() {
  std::random_device device;
  std::string bytes;
  for (int i = 0; i < 4; ++i) {
    const unsigned value = device();
    bytes.append(reinterpret_cast<const char*>(&value), 4);
  }
  return Hex(bytes);
}

std::int64_t NumberOf(const std::string& text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

ServerEngine::ServerEngine(const ServerSettings& settings, bool wantsUnfinished)
    : link_(settings, wantsUnfinished), client_(RandomName()) {}

std::unique_ptr<Engine> ServerEngine::Open(const ServerSettings& settings, bool wantsUnfinished, Result& result,
                                           std::string& problem) {
  std::unique_ptr<ServerEngine> engine(new ServerEngine(settings, wantsUnfinished));
  engine->link_.StartClock();
  result = engine->link_.Connect();
  problem = engine->link_.Problem();
  if (result != Result::kDone) return nullptr;
  return engine;
}

// A transaction and an open view are bound to the connection that they began on; everything else is not. A
// failure loses the open transaction, whichever statement met it: the server may have rolled back already,
// and what follows would be kept on its own.
Result ServerEngine::Ask(const ServerLink::Work& work) {
  const bool isBound = HoldsTransaction() || view_ == View::kOpen;
  const Result result = isBound ? link_.Ask(work) : link_.AskAnywhere(work);
  if (HoldsTransaction() && !IsAnswer(result)) NoteLost(result);
  if (!link_.IsConnected() && view_ == View::kOpen) view_ = View::kNone;
  return result;
}

// Nothing of the open transaction will be kept.
void ServerEngine::NoteLost(Result result) {
  if (isLost_) return;
  isLost_ = true;
  lostTo_ = result;
}

// The table for a question that may outlive the caller's.
std::shared_ptr<const TableDef> ServerEngine::Keep(const TableDef& table) {
  if (table.part.empty()) return {std::shared_ptr<const TableDef>(), &GetTable(table.id)};
  std::shared_ptr<const TableDef>& kept = parts_[table.part];
  if (kept == nullptr) kept = std::make_shared<TableDef>(table);
  return kept;
}

// The caller's block for a question that may outlive it: the memory that it has is used again. Leaves an empty one.
std::shared_ptr<RecordBlock> ServerEngine::Lend(const TableDef& table, RecordBlock& block) {
  auto lent = std::make_shared<RecordBlock>(std::move(block));
  block.Reset(table.recordSize);
  return lent;
}

// What begins the view with its first read, and ends it with its last one.
odbc::Around ServerEngine::AroundRead() {
  const bool isLast = std::exchange(isLastRead_, false);
  if (HoldsTransaction() || view_ == View::kNone) return {};
  if (view_ == View::kOver) {  // it was not the last one: this is another view
    view_ = View::kWanted;
    ++viewNumber_;
  }
  return {view_ == View::kWanted ? link_.GetDialect().BeginReadsSql() : std::string(), isLast ? "COMMIT" : ""};
}

void ServerEngine::NoteRead(Result result, const odbc::Around& around) {
  if (result == Result::kDone && !around.before.empty()) view_ = View::kOpen;
  if (result == Result::kDone && !around.behind.empty()) view_ = View::kOver;
}

Result ServerEngine::Read(const TableDef& table, std::size_t keyIndex, const ReadFrom& from, std::size_t limit,
                          RecordBlock& block) {
  link_.StartClock();
  auto read = Lend(table, block);
  if (isLost_) return lostTo_;
  const odbc::Around around = AroundRead();
  const auto work = [read, kept = Keep(table), keyIndex, owned = odbc::OwnedReadFrom(from), limit,
                     around](odbc::Session& session) {
    return session.Read(*kept, keyIndex, owned, limit, around, *read);
  };
  const Result result = Ask(work);
  NoteRead(result, around);
  if (result == Result::kDone) block = std::move(*read);
  return result;
}

Result ServerEngine::ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, RecordBlock& block) {
  link_.StartClock();
  auto read = Lend(table, block);
  if (isLost_) return lostTo_;
  const odbc::Around around = AroundRead();
  const auto work = [read, kept = Keep(table), keys = std::vector<std::string>(primaryKeys.begin(), primaryKeys.end()),
                     around](odbc::Session& session) {
    return session.ReadMany(*kept, keys, around, *read);
  };
  const Result result = Ask(work);
  NoteRead(result, around);
  if (result == Result::kDone) block = std::move(*read);
  return result;
}

// One write, within the transaction that is open or in one of its own. Only its own is retried when another
// node was faster: a conflict loses the open one with all that was written in it, and whoever began that one
// retries it.
template <typename Write>
Result ServerEngine::WriteWhole(const TableDef& table, Write write) {
  if (HoldsTransaction()) {
    if (isLost_) return Result::kNoTransaction;
    link_.StartClock();
    const Result result = write();
    if (result == Result::kDone) changes_.NoteWrite(table);
    return result;
  }
  const auto attempt = [&] {
    const Result begun = BeginUnit();
    if (begun != Result::kDone) return begun;
    const Result written = WriteWhole(table, write);
    const Result ended = EndUnit(written == Result::kDone);
    return written == Result::kDone ? ended : written;
  };
  return os::RetryWhile(attempt, [](Result result) { return result == Result::kConflict; });
}

Result ServerEngine::Insert(const TableDef& table, const char* record, RecordId& id) {
  return WriteWhole(table, [&] {
    const RecordId next = ++counters_.find(kWrites)->second;
    const Result result = Ask([kept = Keep(table), next, bytes = std::string(record, table.recordSize)](
                                  odbc::Session& session) { return session.Insert(*kept, next, bytes.data()); });
    if (result != Result::kDone) return result;
    id = next;
    changes_.NoteInsert(table, id);
    return result;
  });
}

Result ServerEngine::ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) {
  link_.StartClock();
  auto read = Lend(table, block);
  if (isLost_) return lostTo_;
  const Result result = Ask([read, kept = Keep(table), behind, limit](odbc::Session& session) {
    return session.ReadInOrder(*kept, behind, limit, *read);
  });
  NoteRead(result);
  if (result == Result::kDone) block = std::move(*read);
  return result;
}

Result ServerEngine::InsertMany(const TableDef& table, const RecordBlock& block, std::size_t first) {
  if (!HoldsTransaction()) return Result::kNoTransaction;
  if (first >= block.Size()) return Result::kDone;
  return WriteWhole(table, [&] {
    std::int64_t& writes = counters_.find(kWrites)->second;
    const RecordId next = writes + 1;
    writes += static_cast<std::int64_t>(block.Size() - first);
    return Ask([kept = Keep(table), next, copied = std::make_shared<RecordBlock>(block), first](odbc::Session& session) {
      return session.InsertMany(*kept, next, *copied, first);
    });
  });
}

Result ServerEngine::Update(const TableDef& table, RecordId id, const char* record, const char* expected) {
  return WriteWhole(table, [&] {
    const std::size_t size = table.recordSize;
    return Ask([kept = Keep(table), id, bytes = std::string(record, size),
                before = expected == nullptr ? std::string() : std::string(expected, size)](odbc::Session& session) {
      return session.Update(*kept, id, bytes.data(), before);
    });
  });
}

Result ServerEngine::Delete(const TableDef& table, RecordId id) {
  return WriteWhole(table, [&] {
    return Ask([kept = Keep(table), id](odbc::Session& session) { return session.Delete(*kept, id); });
  });
}

Result ServerEngine::BeginTransaction(Mode mode) {
  link_.StartClock();
  if (view_ == View::kOpen) (void)link_.Ask([](odbc::Session& session) { return session.Run("COMMIT"); });
  view_ = View::kNone;
  auto rows = std::make_shared<odbc::Rows>();
  const Result result = Ask([rows](odbc::Session& session) {
    // The counters are what every writer waits for: what is read from here on cannot be changed by others.
    const Result begun = session.RunTogether("START TRANSACTION; SELECT name, value FROM counter FOR UPDATE", *rows);
    if (begun != Result::kDone && begun != Result::kUnreachable) (void)session.Run("ROLLBACK");
    return begun;
  });
  if (result != Result::kDone) return result;
  counters_.clear();
  for (const std::vector<std::string>& row : *rows) counters_[row[0]] = NumberOf(row[1]);
  mode_ = mode;
  changes_.NoteBegin(mode == Mode::kHost);  // as in SqliteEngine
  isLost_ = false;
  const auto writes = counters_.find(kWrites);
  if (writes == counters_.end()) {
    Rollback();
    return Result::kDamaged;
  }
  ++writes->second;  // so that of two nodes' transactions one is refused, even if it inserts nothing
  return Result::kDone;
}

Result ServerEngine::Begin() { return HoldsTransaction() ? Result::kInTransaction : BeginTransaction(Mode::kHost); }

Result ServerEngine::End() { return mode_ == Mode::kHost ? Commit() : Result::kNoTransaction; }

Result ServerEngine::Abort() {
  if (mode_ != Mode::kHost) return Result::kNoTransaction;
  link_.StartClock();
  Rollback();
  return Result::kDone;
}

Result ServerEngine::BeginUnit() {
  if (mode_ == Mode::kUnit || mode_ == Mode::kUnitInHost) return Result::kInTransaction;
  if (mode_ == Mode::kIdle) return BeginTransaction(Mode::kUnit);
  if (isLost_) return Result::kNoTransaction;
  link_.StartClock();
  const Result result = Ask([](odbc::Session& session) { return session.Run("SAVEPOINT unit"); });
  if (result != Result::kDone) return result;
  countersBefore_ = counters_;
  mode_ = Mode::kUnitInHost;
  changes_.NoteBeginUnit();
  return Result::kDone;
}

Result ServerEngine::EndUnit(bool worked) {
  if (mode_ == Mode::kUnitInHost) {
    mode_ = Mode::kHost;
    if (worked) return isLost_ ? lostTo_ : Result::kDone;  // the savepoint goes with the transaction
    changes_.NoteUnitTakenBack();
    counters_ = countersBefore_;
    if (isLost_) return lostTo_;
    link_.StartClock();
    return Ask([](odbc::Session& session) { return session.Run("ROLLBACK TO SAVEPOINT unit"); });
  }
  if (mode_ != Mode::kUnit) return Result::kNoTransaction;
  if (worked) return Commit();
  link_.StartClock();
  Rollback();
  return Result::kDone;
}

std::string ServerEngine::CommitSql(std::int64_t commit) const {
  const std::string now = link_.GetDialect().NowSql(), tableName = link_.GetDialect().Name("tableName");
  std::string sql;
  for (const TableDef& table : AllTables()) {
    const std::int64_t changes = changes_.Changes(table.id);
    if (changes == 0) continue;
    // By the server's clock: those of the workstations differ.
    sql += "UPDATE change_stamp SET stamp = GREATEST(stamp + " + std::to_string(changes) + ", " + now + ") WHERE " +
           tableName + " = '" + std::string(table.name) + "'; ";
  }
  for (const auto& [name, value] : counters_)
    sql += "UPDATE counter SET value = " + std::to_string(value) + " WHERE name = '" + name + "'; ";
  // Tells, should the answer be lost, that this was committed. Who has not been here for a month has no such question.
  sql += "DELETE FROM store_client WHERE id = '" + client_ + "'" +
         (commit == 1 ? " OR used < " + now + " - 2592000" : std::string()) +
         "; INSERT INTO store_client (id, commits, used) VALUES ('" + client_ + "', " + std::to_string(commit) + ", " +
         now + "); ";
  return sql + "COMMIT";
}

Result ServerEngine::Commit() {
  link_.StartClock();
  if (isLost_) {
    const Result lostTo = lostTo_;
    Rollback();
    return lostTo;
  }
  const std::int64_t commit = ++commits_;
  Result result = link_.AskToCommit([sql = CommitSql(commit)](odbc::Session& session) {
    odbc::Rows none;
    return session.RunTogether(sql, none);
  });
  if (result == Result::kUnreachable) result = LookUpCommit(commit);
  if (result != Result::kDone) {
    Rollback();
    return result;
  }
  changes_.NoteCommit();
  mode_ = Mode::kIdle;
  isLost_ = false;
  return Result::kDone;
}

// The answer to a commit was lost. Under the lock that the transaction held, it is over: either its mark is there or
// it never will be.
Result ServerEngine::LookUpCommit(std::int64_t commit) {
  mode_ = Mode::kIdle;  // the transaction is gone; this is one of its own
  isLost_ = false;
  const std::string sql = "START TRANSACTION; SELECT name, value FROM counter FOR UPDATE; SELECT 'commits', commits FROM store_client "
                          "WHERE id = '" + client_ + "'; UPDATE counter SET value = value + 1 WHERE name = 'write'; COMMIT";
  Result result = Result::kUnreachable;
  while (link_.Left() > 0 && result != Result::kDone) {
    auto rows = std::make_shared<odbc::Rows>();
    result = Ask([rows, sql](odbc::Session& session) {
      const Result asked = session.RunTogether(sql, *rows);
      if (asked != Result::kDone && asked != Result::kUnreachable) (void)session.Run("ROLLBACK");
      return asked;
    });
    if (result != Result::kDone) {
      link_.Wait(100);
      continue;
    }
    const bool isThere = std::any_of(rows->begin(), rows->end(), [&](const std::vector<std::string>& row) {
      return row[0] == "commits" && NumberOf(row[1]) >= commit;
    });
    return isThere ? Result::kDone : Result::kUnreachable;
  }
  return Result::kOutcomeUnknown;
}

void ServerEngine::Rollback() {
  (void)link_.Ask([](odbc::Session& session) { return session.Run("ROLLBACK"); });
  changes_.NoteRollback();
  mode_ = Mode::kIdle;
  isLost_ = false;
}

void ServerEngine::BeginReads() {
  if (readDepth_++ > 0 || HoldsTransaction()) return;
  view_ = View::kWanted;
  ++viewNumber_;
}

void ServerEngine::EndReads() {
  if (--readDepth_ > 0) return;
  isLastRead_ = false;
  const bool wasOpen = std::exchange(view_, View::kNone) == View::kOpen;
  if (!wasOpen || HoldsTransaction()) return;
  link_.StartClock();
  (void)link_.Ask([](odbc::Session& session) { return session.Run("COMMIT"); });
}

Result ServerEngine::ChangeStamps(std::span<const TableId> tables, std::int64_t& sum) {
  link_.StartClock();
  if (isLost_) return lostTo_;
  auto stored = std::make_shared<std::int64_t>(0);
  const auto work = [stored, ids = std::vector<TableId>(tables.begin(), tables.end())](odbc::Session& session) {
    return session.SumStamps(ids, *stored);
  };
  const Result result = Ask(work);
  NoteRead(result);
  if (result != Result::kDone) return result;
  sum = *stored;
  for (const TableId table : tables) sum += changes_.Show(table);
  return Result::kDone;
}

Result ServerEngine::NextNumber(std::string_view counter, std::int64_t& number) {
  if (!HoldsTransaction() || isLost_) return Result::kNoTransaction;
  const auto found = counters_.find(counter);
  if (found == counters_.end()) return Result::kDamaged;
  number = ++found->second;
  return Result::kDone;
}

Result ServerEngine::LastNumber(std::string_view counter, std::int64_t& number) {
  if (HoldsTransaction()) {
    const auto counted = counters_.find(counter);
    if (counted == counters_.end()) return Result::kDamaged;
    number = counted->second;
    return Result::kDone;
  }
  link_.StartClock();
  auto rows = std::make_shared<odbc::Rows>();
  const Result result = Ask([rows, sql = "SELECT value FROM counter WHERE name = '" + std::string(counter) + "'"](
                                odbc::Session& session) { return session.Run(sql, *rows); });
  if (result == Result::kDone && rows->empty()) return Result::kDamaged;
  if (result == Result::kDone) number = NumberOf(rows->front().front());
  return result;
}

Result ServerEngine::SetLastNumber(std::string_view counter, std::int64_t number) {
  if (!HoldsTransaction() || isLost_) return Result::kNoTransaction;
  const auto found = counters_.find(counter);
  if (found == counters_.end()) return Result::kDamaged;
  found->second = number;
  return Result::kDone;
}

Result ServerEngine::MarkUnfinished(bool isUnfinished) {
  link_.StartClock();
  return Ask([isUnfinished](odbc::Session& session) { return MarkServerUnfinished(session, isUnfinished); });
}

Result ServerEngine::CheckIntegrity(std::string& finding) {
  finding = "ok";
  for (const TableDef& table : AllTables()) {
    const std::string sql = link_.GetDialect().CheckSql(table);
    if (!sql.empty()) {
      link_.StartClock();
      auto rows = std::make_shared<odbc::Rows>();
      const Result result = Ask([rows, sql](odbc::Session& session) { return session.Run(sql, *rows); });
      if (result != Result::kDone) return result;
      if (!rows->empty() && rows->back().back() == "OK") continue;
      finding = std::string(table.name) + ": " + (rows->empty() ? "no answer" : rows->back().back());
      return Result::kDamaged;
    }
    // Every record once, in the order of the primary key.
    constexpr std::size_t kAtOnce = 1000;
    std::string last;
    RecordBlock block;
    ReadFrom from{ReadFrom::Place::kFirst};
    do {
      const Result result = Read(table, 0, from, kAtOnce, block);
      if (result != Result::kDone) return result;
      for (std::size_t i = 0; i < block.Size(); ++i) {
        std::string key = MakeKey(table.keys.front(), block.Record(i));
        if (from.place != ReadFrom::Place::kFirst && key <= last) {
          finding = std::string(table.name) + ": the order of key 0 is not that of the records";
          return Result::kDamaged;
        }
        last = std::move(key);
        from = {ReadFrom::Place::kAfter, last, block.Id(i)};
      }
    } while (block.Size() == kAtOnce);
  }
  return Result::kDone;
}

}  // namespace kova::store
