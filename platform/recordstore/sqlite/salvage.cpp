// Saving what can be read of a damaged database file into a new one.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "platform/os/files.h"
#include "platform/os/filesystem_path.h"
#include "platform/os/paths.h"
#include "platform/recordstore/sqlite/backup.h"
#include "platform/recordstore/sqlite/database_file.h"
#include "platform/recordstore/sqlite/sqlite_engine.h"
#include "platform/recordstore/table_ids.h"
#include "platform/text932/cp932.h"

namespace kova::store {
namespace {

constexpr std::size_t kAtOnce = 500;
constexpr std::size_t kKeysTold = 100;
constexpr int kBlindSteps = 200000;  // in a table: a second or two
constexpr const char* kNothing = "nothing of the file can be read: the pages that say where its tables lie are damaged";

/// The records' numbers that the primary key's index names, with the keys.
struct Index {
  std::map<RecordId, std::string> keys;
  bool isWhole = false;
};

/// Reads it from both ends, as far as it goes.
Index ReadIndex(sqlite3* connection, const TableDef& table) {
  Index index;
  for (const char* order : {"", " DESC"}) {
    const std::string name(table.name);
    const std::string sql = "SELECT id, key0 FROM " + name + " INDEXED BY " + name + "_key0 ORDER BY key0" + order;
    sqlite3_stmt* raw = nullptr;
    int code = sqlite3_prepare_v2(connection, sql.c_str(), -1, &raw, nullptr);
    const Statement statement(raw);
    while (code == SQLITE_OK || code == SQLITE_ROW) {
      code = sqlite3_step(raw);
      if (code == SQLITE_ROW) index.keys[sqlite3_column_int64(raw, 0)] = ColumnBytes(raw, 1);
    }
    if (code == SQLITE_DONE) {
      index.isWhole = true;
      break;
    }
  }
  return index;
}

std::string UpperHex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    text += kDigits[static_cast<unsigned char>(c) >> 4];
    text += kDigits[static_cast<unsigned char>(c) & 15];
  }
  return text;
}

std::string KeyText(std::string key) {
  std::replace(key.begin(), key.end(), '\0', ' ');
  return text932::ToUtf8(key);
}

class Salvage {
 public:
  Salvage(Connection connection, Engine& to)
      : index_(connection.get()), from_(std::move(connection), false), to_(to) {}

  Result Run(std::vector<SalvagedTable>& tables) {
    lastId_ = LargestId();
    for (const TableDef& table : AllTables()) {
      SalvagedTable& salvaged = tables.emplace_back();
      salvaged.name = table.name;
      const Result result = Save(table, salvaged);
      if (result != Result::kDone) return result;
    }
    const auto isNothing = [](const SalvagedTable& each) { return each.saved == 0 && !each.isWhole; };
    return std::all_of(tables.begin(), tables.end(), isNothing) ? Result::kDamaged : Result::kDone;
  }

  /// Of the sales that were saved, and of the counter where it can be read.
  Result KeepCounting() {
    std::int64_t counted = 0;
    if (from_.LastNumber("saleNumber", counted) != Result::kDone) counted = 0;
    Result result = to_.Begin();
    if (result == Result::kDone) result = to_.SetLastNumber("saleNumber", std::max(counted, lastSale_));
    return result == Result::kDone ? to_.End() : result;
  }

 private:
  /// Behind it there is no record: what the counter says, or what the tables and their indexes name.
  RecordId LargestId() {
    std::int64_t last = 0;
    if (from_.LastNumber(kIdCounter, last) != Result::kDone) last = 0;
    for (const TableDef& table : AllTables()) {
      indexes_.push_back(ReadIndex(index_, table));
      if (!indexes_.back().keys.empty()) last = std::max(last, indexes_.back().keys.rbegin()->first);
    }
    return last;
  }

  Result Save(const TableDef& table, SalvagedTable& salvaged) {
    Index& index = indexes_[static_cast<std::size_t>(table.id)];
    Result result = to_.Begin();
    RecordId behind = 0;
    int blindSteps = 0;
    oneByOne_ = 0;
    RecordBlock block;
    while (result == Result::kDone) {
      const Result read = ReadSome(table, behind, block);
      if (read != Result::kDone) {
        salvaged.isWhole = index.isWhole;
        if (!StepOver(index, behind, blindSteps)) break;
        continue;
      }
      for (std::size_t i = 0; i < block.Size() && result == Result::kDone; ++i)
        result = Put(table, block.Id(i), block.Record(i), index, salvaged);
      if (block.Size() == 0) break;
      behind = block.Id(block.Size() - 1);
    }
    for (const auto& [id, key] : index.keys) {
      ++salvaged.lost;
      if (salvaged.lostKeys.size() < kKeysTold) salvaged.lostKeys.push_back(KeyText(key));
    }
    if (result == Result::kDone) return to_.End();
    (void)to_.Abort();
    return result;
  }

  /// What is right behind a number cannot be read; there may be more behind that. Numbers are tried one by one, and where
  /// that is too long, those that the index names. False when there are no more.
  bool StepOver(const Index& index, RecordId& behind, int& blindSteps) const {
    if (behind >= lastId_) return false;
    if (++blindSteps <= kBlindSteps) return ++behind, true;
    const auto next = index.keys.upper_bound(behind + 1);
    if (next == index.keys.end()) return false;
    behind = next->first - 1;
    return true;
  }

  /// False for what a page of rubbish looks like: the key that is stored beside the fields is not theirs.
  bool IsTrue(const TableDef& table, RecordId id, const std::string& key) const {
    const std::string sql = "SELECT hex(key0) FROM " + std::string(table.name) + " WHERE id = " + std::to_string(id);
    std::string stored;
    return QueryText(index_, sql.c_str(), stored) == Result::kDone && stored == UpperHex(key);
  }

  /// Many at once; where that fails, one by one for a while.
  Result ReadSome(const TableDef& table, RecordId behind, RecordBlock& block) {
    if (oneByOne_ == 0) {
      const Result result = ReadBehind(table, behind, kAtOnce, block);
      if (result == Result::kDone) return result;
      oneByOne_ = kAtOnce;
    }
    --oneByOne_;
    return ReadBehind(table, behind, 1, block);
  }

  /// A damaged tree can lead back to what was read before.
  Result ReadBehind(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) {
    const Result result = from_.ReadInOrder(table, behind, limit, block);
    for (std::size_t i = 0; result == Result::kDone && i < block.Size(); ++i) {
      if (block.Id(i) <= behind) return Result::kDamaged;
      behind = block.Id(i);
    }
    return result;
  }

  /// A record whose primary key was saved already is lost: of two that say the same nobody knows which is right.
  Result Put(const TableDef& table, RecordId id, const char* record, Index& index, SalvagedTable& salvaged) {
    RecordId made = 0;
    const std::string key = MakeKey(table.keys.front(), record);
    if (!IsTrue(table, id, key)) return salvaged.isWhole = index.isWhole, Result::kDone;
    const Result result = to_.Insert(table, record, made);
    if (result == Result::kDuplicate) {
      index.keys[id] = key;
      return Result::kDone;
    }
    if (result != Result::kDone) return result;
    index.keys.erase(id);
    ++salvaged.saved;
    if (table.id == TableId::Sale)
      lastSale_ = std::max<std::int64_t>(lastSale_, std::atoll(key.c_str()));
    return result;
  }

  sqlite3* index_;
  SqliteEngine from_;
  Engine& to_;
  std::vector<Index> indexes_;  // of each table: what is left of it is lost
  RecordId lastId_ = 0;
  std::size_t oneByOne_ = 0;    // reads that are still to be of one record
  std::int64_t lastSale_ = 0;
};

}  // namespace

Result SalvageSqlite(std::string_view damaged, std::string_view to, std::vector<SalvagedTable>& tables, std::string& problem) {
  Result result = CreateSqliteDatabase(to, false);
  if (result != Result::kDone) return result;
  // Opening a file may write to it: that is done to a copy.
  const std::string copies = os::JoinPath(to, "kova.salvaging");
  os::Files& files = os::RealFiles();
  if (files.MakeFolder(copies) != os::FileOutcome::kOk) return Result::kReadOnly;
  for (const char* behind : {"", "-wal", "-journal"}) {
    const std::string name = std::string(kDatabaseFile) + behind;
    const os::FileOutcome copied = files.Copy(os::JoinPath(damaged, name), os::JoinPath(copies, name));
    if (copied != os::FileOutcome::kOk && (behind[0] == '\0' || copied != os::FileOutcome::kNotThere)) {
      problem = "cannot read " + text932::ToUtf8(os::JoinPath(damaged, name));
      result = Result::kNoDatabase;
    }
  }
  if (result == Result::kDone) {
    int code = SQLITE_OK, version = 0;
    Connection connection = Connect(InFolder(copies, kDatabaseFile), SQLITE_OPEN_READWRITE, code);
    result = FromSqlite(code);
    // With this, SQLite reads a file that was cut short as far as it goes.
    if (result == Result::kDone) result = Execute(connection.get(), "PRAGMA writable_schema = ON");
    if (result == Result::kDone) result = CheckVersion(connection.get(), version);
    if (result == Result::kOldVersion) result = Result::kDone;
    if (result != Result::kDone) {
      problem = kNothing;
    } else {
      const std::unique_ptr<Engine> engine = OpenSqliteEngine(to, false, result);
      if (engine != nullptr) {
        Salvage salvage(std::move(connection), *engine);
        result = salvage.Run(tables);
        if (result == Result::kDone) result = salvage.KeepCounting();
        if (result == Result::kDamaged) problem = kNothing;
      }
    }
  }
  std::error_code error;
  std::filesystem::remove_all(os::ToFilesystemPath(copies), error);
  if (result != Result::kDone) {  // an empty database must not be taken for what was saved
    std::filesystem::remove(InFolder(to, kMarkerFile), error);
    std::filesystem::remove(InFolder(to, kDatabaseFile), error);
  }
  return result == Result::kDone ? CopyOtherFiles(damaged, to, problem) : result;
}

}  // namespace kova::store
