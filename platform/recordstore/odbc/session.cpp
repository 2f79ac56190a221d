#include "platform/recordstore/odbc/session.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

#include "platform/recordstore/journal.h"

namespace kova::store::odbc {
namespace {

constexpr int kConnectSeconds = 3;
constexpr std::size_t kRowsAtOnce = 64;
constexpr std::size_t kLongestKey = 512;
constexpr std::size_t kKeysAtOnce = 1000;

bool IsForward(ReadFrom::Place place) {
  using Place = ReadFrom::Place;
  return place == Place::kFirst || place == Place::kAtLeast || place == Place::kAfter;
}

/// A read's statement with "?" for its parameters, and a letter for each: k the key, i the id, u the upper bound.
struct ReadStatement {
  std::string sql;
  std::string parameters;
};

std::string BeginsWithSql(const Dialect& dialect, const KeyDef& key, std::span<const std::string> beginnings) {
  const std::string column = KeyColumn(dialect, key);
  std::string sql = "1 = 0";
  for (const std::string& each : beginnings)
    sql += " OR " + column + " BETWEEN " + dialect.Bytes(each) + " AND " + dialect.Bytes(LastKeyOf(key, each));
  return sql;
}

ReadStatement MakeRead(const Dialect& dialect, const TableDef& table, const KeyDef& key, const OwnedReadFrom& from,
                       std::size_t limit) {
  using Place = ReadFrom::Place;
  const std::string column = KeyColumn(dialect, key);
  const bool forward = IsForward(from.place);
  ReadStatement read{SelectSql(dialect, table), {}};
  std::string condition;
  const auto compare = [&](const char* with) {
    condition = column + with + "?";
    read.parameters = "k";
  };
  if (from.place == Place::kAtLeast) compare(" >= ");
  if (from.place == Place::kAtMost) compare(" <= ");
  if (from.place == Place::kBelow) compare(" < ");
  if (from.place == Place::kAfter || from.place == Place::kBefore) {
    if (key.number == 0)
      compare(forward ? " > " : " < ");
    else
      condition = dialect.BeyondSql(column, forward, read.parameters);
  }
  if (forward && from.upTo) {
    condition += (condition.empty() ? "" : " AND ") + column + " <= ?";
    read.parameters += 'u';
  }
  if (forward && from.beginnings)
    condition += (condition.empty() ? "(" : " AND (") + BeginsWithSql(dialect, key, *from.beginnings) + ")";
  if (!condition.empty()) read.sql += " WHERE " + condition;
  read.sql += OrderSql(dialect, key, forward) + " LIMIT " + std::to_string(limit);
  return read;
}

std::string WithValues(const Dialect& dialect, const ReadStatement& read, const OwnedReadFrom& from) {
  std::string sql;
  std::size_t parameter = 0;
  for (const char c : read.sql) {
    if (c != '?') {
      sql += c;
      continue;
    }
    const char what = read.parameters[parameter++];
    sql += what == 'i' ? std::to_string(from.id) : dialect.Bytes(what == 'k' ? from.key : *from.upTo);
  }
  return sql;
}

/// Names a statement among those that were prepared.
std::string ReadName(const TableDef& table, std::size_t keyIndex, const OwnedReadFrom& from, std::size_t limit) {
  char text[64];
  char* end = text;
  for (const std::size_t part : {keyIndex, static_cast<std::size_t>(from.place), limit}) {
    end = std::to_chars(end, text + sizeof text, part).ptr;
    *end++ = from.upTo ? 'u' : ' ';
  }
  std::string name(text, end);
  return table.part.empty() ? name.append(table.name) : name += table.part;
}

// A statement that failed is prepared anew next time. A node that rolls a transaction back while it prepares
// a statement in it does not keep the statement, which the driver does not notice.
template <typename Statements, typename Statement>
void Forget(Statements& statements, const Statement& failed) {
  std::erase_if(statements, [&](const auto& each) { return each.second.get() == &failed; });
}

}  // namespace

struct Session::PreparedRead {
  PreparedRead(Connection& connection, const TableDef& table, TextForm texts, std::size_t limit)
      : statement(connection), rows(table, texts, std::min(limit, kRowsAtOnce)) {}
  bool Bind(const std::string& parameters) {
    int at = 1;
    bool worked = rows.Bind(statement);
    for (const char what : parameters) {
      if (what == 'i')
        worked = worked && statement.BindParameter(at++, SQL_C_SBIGINT, SQL_BIGINT, 0, &id, sizeof id, nullptr);
      else
        worked = worked && statement.BindParameter(at++, SQL_C_BINARY, SQL_VARBINARY, kLongestKey,
                                                   what == 'k' ? key : bound, kLongestKey,
                                                   what == 'k' ? &keyLength : &boundLength);
    }
    return worked;
  }
  static void Put(std::string_view bytes, char* place, SQLLEN& length) {
    bytes = bytes.substr(0, kLongestKey);
    length = static_cast<SQLLEN>(bytes.size());
    std::memcpy(place, bytes.data(), bytes.size());
  }

  Statement statement;
  RecordRows rows;
  char key[kLongestKey], bound[kLongestKey];
  SQLLEN keyLength = 0, boundLength = 0;
  std::int64_t id = 0;
};

struct Session::PreparedWrite {
  PreparedWrite(Connection& connection, const TableDef& table, TextForm texts)
      : statement(connection), record(table, texts) {}
  bool BindId(int at) {
    return statement.BindParameter(at, SQL_C_SBIGINT, SQL_BIGINT, 0, &id, sizeof id, nullptr);
  }
  Statement statement;
  RecordParameters record;
  std::int64_t id = 0;
};

struct Session::PreparedNumbers {
  explicit PreparedNumbers(Connection& connection) : statement(connection) {}
  Statement statement;
  std::int64_t value = 0;
};

Session::Session(std::shared_ptr<const Dialect> dialect)
    : dialect_(std::move(dialect)), workstation_(dialect_->Text(JournalledWorkstation())) {}

Session::~Session() = default;

Result Session::Open(const ServerSettings& settings, const ServerAddress& address, std::string_view database) {
  if (!connection_.Open(dialect_->ConnectionString(settings, address, database), kConnectSeconds))
    return WhyNotOpened(settings.account, database);
  if (!IsUsable()) return Result::kWrongVersion;
  Rows rows;
  const Result result = Run(dialect_->SessionSql(), rows);
  if (result == Result::kDone && !rows.empty() && !rows.back().empty()) id_ = rows.back().front();
  // A node that waits in vain for the others is of no use now.
  return result == Result::kBusy ? Result::kUnreachable : result;
}

Result Session::WhyNotOpened(std::string_view account, std::string_view database) const {
  const Result result = Failed();
  if (result != Result::kFailed && result != Result::kUnreachable) return result;
  // A server that speaks another language still names whom or what it refuses.
  const auto names = [&](std::string_view name) {
    return !name.empty() && Problem().find('"' + std::string(name) + '"') != std::string::npos;
  };
  if (names(account)) return Result::kNoAccess;
  return names(database) ? Result::kNoDatabase : Result::kUnreachable;
}

bool Session::IsUsable() {
  const Dialect::Oldest oldest = dialect_->OldestServer();
  const std::string product = connection_.Product(), version = connection_.Version();
  int major = 0, minor = 0;
  const char* const end = version.data() + version.size();
  const char* behind = std::from_chars(version.data(), end, major).ptr;
  if (behind != end) std::from_chars(behind + 1, end, minor);
  if (product == oldest.product && std::pair(major, minor) >= std::pair(oldest.major, oldest.minor)) return true;
  connection_.Refuse("the server is " + product + " " + version + "; what is needed is " + std::string(oldest.product) +
                     " " + std::to_string(oldest.major) + "." + std::to_string(oldest.minor) + " or newer");
  return false;
}

Result Session::Run(std::string_view sql, Rows& rows) {
  Statement statement(connection_);
  return statement.Run(sql, rows) ? Result::kDone : Failed();
}

Result Session::Run(std::string_view sql) {
  Rows rows;
  return Run(sql, rows);
}

Result Session::ReadText(const TableDef& table, std::string sql, const Around& around, std::size_t rows,
                         RecordBlock& block) {
  if (!around.before.empty()) sql = around.before + "; " + sql;
  if (!around.behind.empty()) sql += "; " + around.behind;
  if (!around.IsEmpty()) sql = dialect_->Together(sql);
  Statement statement(connection_);
  RecordRows buffer(table, dialect_->Texts(), std::min(rows, kRowsAtOnce));
  bool has = true;
  if (!buffer.Bind(statement) || !statement.ExecuteText(sql)) return Failed();
  while (has) {
    int columns = 0;
    if (!statement.ColumnCount(columns)) return Failed();
    if (columns > 0 && !buffer.FetchAll(statement, block)) return Failed();
    if (!statement.NextResult(has)) return Failed();
  }
  return Result::kDone;
}

Result Session::Read(const TableDef& table, std::size_t keyIndex, const OwnedReadFrom& from, std::size_t limit,
                     const Around& around, RecordBlock& block) {
  block.Reset(table.recordSize);
  const KeyDef& key = table.keys[keyIndex];
  if (!around.IsEmpty() || from.beginnings)
    return ReadText(table, WithValues(*dialect_, MakeRead(*dialect_, table, key, from, limit), from), around, limit, block);
  std::string name = ReadName(table, keyIndex, from, limit);
  auto found = reads_.find(name);
  if (found == reads_.end()) {
    const ReadStatement read = MakeRead(*dialect_, table, key, from, limit);
    auto prepared = std::make_unique<PreparedRead>(connection_, table, dialect_->Texts(), limit);
    if (!prepared->statement.Prepare(read.sql) || !prepared->Bind(read.parameters)) return Failed();
    found = reads_.emplace(std::move(name), std::move(prepared)).first;
  }
  PreparedRead& read = *found->second;
  PreparedRead::Put(from.key, read.key, read.keyLength);
  if (from.upTo) PreparedRead::Put(*from.upTo, read.bound, read.boundLength);
  read.id = from.id;
  const bool worked = read.statement.Execute() && read.rows.FetchAll(read.statement, block);
  read.statement.CloseResult();
  if (!worked) Forget(reads_, read);
  return worked ? Result::kDone : Failed();
}

Result Session::ReadMany(const TableDef& table, std::span<const std::string> primaryKeys, Around around,
                         RecordBlock& block) {
  block.Reset(table.recordSize);
  while (!primaryKeys.empty()) {
    const auto some = primaryKeys.first(std::min(primaryKeys.size(), kKeysAtOnce));
    primaryKeys = primaryKeys.subspan(some.size());
    std::string sql = SelectSql(*dialect_, table) + " WHERE " + KeyColumn(*dialect_, table.keys.front()) +
                      " IN (";
    for (const std::string& key : some) sql += dialect_->Bytes(key) + ",";
    sql.back() = ')';
    const Around here{std::exchange(around.before, {}), primaryKeys.empty() ? around.behind : std::string()};
    const Result result = ReadText(table, std::move(sql), here, some.size(), block);
    if (result != Result::kDone) return result;
  }
  return Result::kDone;
}

Result Session::ReadById(const TableDef& table, RecordId id, RecordBlock& block) {
  block.Reset(table.recordSize);
  std::string name = "id " + std::string(table.name);
  auto found = reads_.find(name);
  if (found == reads_.end()) {
    auto prepared = std::make_unique<PreparedRead>(connection_, table, dialect_->Texts(), 1);
    if (!prepared->statement.Prepare(SelectByIdSql(*dialect_, table)) || !prepared->Bind("i")) return Failed();
    found = reads_.emplace(std::move(name), std::move(prepared)).first;
  }
  PreparedRead& read = *found->second;
  read.id = id;
  const bool worked = read.statement.Execute() && read.rows.FetchAll(read.statement, block);
  read.statement.CloseResult();
  if (!worked) Forget(reads_, read);
  return worked ? Result::kDone : Failed();
}

Result Session::ReadInOrder(const TableDef& table, RecordId behind, std::size_t limit, RecordBlock& block) {
  block.Reset(table.recordSize);
  return ReadText(table,
                  SelectSql(*dialect_, table) + " WHERE id > " + std::to_string(behind) + " ORDER BY id LIMIT " +
                      std::to_string(limit),
                  {}, limit, block);
}

Result Session::InsertMany(const TableDef& table, RecordId id, const RecordBlock& block, std::size_t first) {
  std::unique_ptr<BulkInsert>& insert = bulkInserts_[std::string(table.name)];
  if (insert == nullptr) insert = std::make_unique<BulkInsert>(connection_, *dialect_, table);
  return insert->Insert(id, block, first) ? Result::kDone : Failed();
}

// The statement that inserts ('i') or updates ('u'); null when it cannot be prepared.
Session::PreparedWrite* Session::WriteStatement(const TableDef& table, char what) {
  std::string name = what + std::string(table.name);
  const auto found = writes_.find(name);
  if (found != writes_.end()) return found->second.get();
  auto prepared = std::make_unique<PreparedWrite>(connection_, table, dialect_->Texts());
  int at = 1;
  bool worked = false;
  if (what == 'i') {
    worked = prepared->statement.Prepare(InsertSql(*dialect_, table)) && prepared->BindId(at++) &&
             prepared->record.Bind(prepared->statement, at);
  } else {
    // A primary key that another record has must not fail the statement: that would end the transaction on some servers.
    const std::string name0 = dialect_->Name(table.name), key0 = KeyColumn(*dialect_, table.keys.front());
    worked = prepared->statement.Prepare(UpdateSql(*dialect_, table) + " AND NOT EXISTS (SELECT 1 FROM " + name0 +
                                         " AS other WHERE other." + key0 + " = ? AND other.id <> ?)") &&
             prepared->record.Bind(prepared->statement, at) && prepared->BindId(at) &&
             prepared->record.BindPrimaryKey(prepared->statement, at + 1) && prepared->BindId(at + 2);
  }
  return worked ? writes_.emplace(std::move(name), std::move(prepared)).first->second.get() : nullptr;
}

// `none` where it writes no record.
Result Session::Write(PreparedWrite& write, RecordId id, Result none) {
  write.id = id;
  std::int64_t rows = 0;
  if (!write.statement.Execute() || !write.statement.AffectedRows(rows)) {
    Forget(writes_, write);
    return Failed();
  }
  write.statement.CloseResult();
  return rows == 1 ? Result::kDone : none;
}

Result Session::Insert(const TableDef& table, RecordId id, const char* record) {
  PreparedWrite* write = WriteStatement(table, 'i');
  if (write == nullptr) return Failed();
  write->record.Set(record);
  return Write(*write, id, Result::kDuplicate);
}

std::string Session::EnterSql(const TableDef& table, RecordId id, std::string_view deed) const {
  return JournalSql(*dialect_, table, std::to_string(id), workstation_, deed) + "; " + ForgetOldSql(*dialect_, table);
}

Result Session::Update(const TableDef& table, RecordId id, const char* record, std::string_view expected) {
  // In the round trip that reads the record, where there is one.
  RecordBlock stored;
  stored.Reset(table.recordSize);
  const std::string select = SelectSql(*dialect_, table) + " WHERE id = " + std::to_string(id);
  Rows none;
  const Result entered = expected.empty() ? RunTogether(EnterSql(table, id, "u"), none)
                                          : ReadText(table, select, {EnterSql(table, id, "u"), {}}, 1, stored);
  if (entered != Result::kDone) return entered;
  if (!expected.empty() && stored.Size() == 0) return Result::kChanged;
  const bool isChanged = !expected.empty() && expected != std::string_view(stored.Record(0), table.recordSize);
  const Result written = isChanged ? Result::kChanged : Overwrite(table, id, record);
  // A transaction that goes on must not keep the entry of a record that stayed.
  const bool stayed = isChanged || written == Result::kDuplicate;
  const Result takenBack = stayed ? Run(ForgetLastSql(*dialect_, table)) : Result::kDone;
  return takenBack == Result::kDone ? written : takenBack;
}

Result Session::Overwrite(const TableDef& table, RecordId id, const char* record) {
  PreparedWrite* write = WriteStatement(table, 'u');
  if (write == nullptr) return Failed();
  write->record.Set(record);
  const Result written = Write(*write, id, Result::kChanged);
  if (written != Result::kChanged) return written;
  RecordBlock there;
  const Result read = ReadById(table, id, there);
  if (read != Result::kDone) return read;
  return there.Size() == 0 ? Result::kChanged : Result::kDuplicate;
}

Result Session::Delete(const TableDef& table, RecordId id) {
  const std::string where = " FROM " + dialect_->Name(table.name) + " WHERE id = " + std::to_string(id);
  Rows rows;
  const Result result =
      RunTogether("SELECT COUNT(*)" + where + "; " + EnterSql(table, id, "d") + "; DELETE" + where, rows);
  if (result != Result::kDone) return result;
  return !rows.empty() && rows.front().front() == "1" ? Result::kDone : Result::kChanged;
}

Result Session::SumStamps(std::span<const TableId> tables, std::int64_t& sum) {
  std::string sql = "SELECT stamp FROM change_stamp WHERE " + dialect_->Name("tableName") + " IN (";
  for (const TableId table : tables) sql.append("'").append(GetTable(table).name).append("',");
  sql.back() = ')';
  auto found = numbers_.find(sql);
  if (found == numbers_.end()) {
    auto prepared = std::make_unique<PreparedNumbers>(connection_);
    if (!prepared->statement.Prepare(sql) ||
        !prepared->statement.BindColumn(1, SQL_C_SBIGINT, &prepared->value, sizeof prepared->value, nullptr))
      return Failed();
    found = numbers_.emplace(std::move(sql), std::move(prepared)).first;
  }
  PreparedNumbers& stamps = *found->second;
  sum = 0;
  std::size_t rows = 0;
  bool worked = stamps.statement.Execute(), has = worked;
  while (worked && has) {
    worked = stamps.statement.Fetch(has);
    if (worked && has) {
      sum += stamps.value;
      ++rows;
    }
  }
  stamps.statement.CloseResult();
  if (!worked) Forget(numbers_, stamps);
  if (!worked) return Failed();
  return rows == tables.size() ? Result::kDone : Result::kDamaged;
}

}  // namespace kova::store::odbc
