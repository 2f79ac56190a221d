#pragma once

// The baseline of what is measured on a server: prepared statements through plain ODBC. Columns are bound as the record
// store binds them, a block of rows at a time, and what arrives stays as it is.

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/check.h"
#include "platform/recordstore/schema.h"
#include "tests/recordstore/store_server.h"

namespace kova::bench {

class RawServer {
 public:
  explicit RawServer(const std::string& database) : isMariaDb_(testing::Environment("KOVA_SERVER_KIND") == "MariaDB") {
    const std::string hosts = testing::Environment("KOVA_SERVER_HOSTS"), first = hosts.substr(0, hosts.find(','));
    const std::size_t colon = first.rfind(':');
    std::string text = "DRIVER=" + testing::Environment("KOVA_SERVER_KIND") + " Unicode;SERVER=" +
                       first.substr(0, colon) + ";PORT=" + first.substr(colon + 1) + ";DATABASE=" + database +
                       ";UID=" + testing::Environment("KOVA_DB_ACCOUNT") +
                       ";PWD=" + testing::Environment("KOVA_DB_PASSWORD") + ";";
    text += isMariaDb_ ? "TCPIP=1;CHARSET=utf8mb4;OPTION=67108866;"
                       : "UseServerSidePrepare=1;UseDeclareFetch=0;ByteaAsLongVarBinary=1;LFConversion=0;"
                         "MaxVarcharSize=4000;Protocol=7.4-0;";
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
    SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment_, &handle_);
    Check(SQL_SUCCEEDED(SQLDriverConnect(handle_, nullptr, Text(text), SQL_NTS, nullptr, 0, nullptr,
                                         SQL_DRIVER_NOPROMPT)),
          "connect");
    if (isMariaDb_) Run("SET SESSION wsrep_sync_wait = 0");
  }
  ~RawServer() {
    SQLDisconnect(handle_);
    SQLFreeHandle(SQL_HANDLE_DBC, handle_);
    SQLFreeHandle(SQL_HANDLE_ENV, environment_);
  }
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  bool IsMariaDb() const { return isMariaDb_; }
  SQLHDBC Handle() const { return handle_; }
  std::string Name(std::string_view name) const {
    if (isMariaDb_) return "`" + std::string(name) + "`";
    std::string text = "\"" + std::string(name) + "\"";
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
  }
  /// "id, exact, every field"; `prefix` stands before each.
  std::string Columns(const store::TableDef& table, const std::string& prefix = {}) const {
    std::string columns = prefix + "id, " + prefix + "exact";
    for (const store::FieldDef& field : table.fields) columns += ", " + prefix + Name(field.name);
    return columns;
  }

  void Run(std::string sql) {
    SQLHSTMT statement = nullptr;
    SQLAllocHandle(SQL_HANDLE_STMT, handle_, &statement);
    Check(SQL_SUCCEEDED(SQLExecDirect(statement, Text(sql), SQL_NTS)), sql.c_str());
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
  }
  void BeginReads() {
    Run(isMariaDb_ ? "START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"
                   : "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
  }
  void EndReads() { Run("COMMIT"); }

  static SQLCHAR* Text(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

 private:
  bool isMariaDb_;
  SQLHENV environment_ = nullptr;
  SQLHDBC handle_ = nullptr;
};

/// A prepared statement with bytes and ids as parameters.
class RawQuery {
 public:
  /// `parameters`: a letter each, k bytes, i a number. `capacity`: rows of a fetch.
  RawQuery(RawServer& server, std::string sql, std::string_view parameters, std::size_t capacity)
      : server_(server), capacity_(capacity), values_(parameters.size()) {
    SQLAllocHandle(SQL_HANDLE_STMT, server.Handle(), &statement_);
    Check(SQL_SUCCEEDED(SQLPrepare(statement_, RawServer::Text(sql), SQL_NTS)), sql.c_str());
    SQLUSMALLINT at = 0;
    for (const char what : parameters) {
      Value& value = values_[at++];
      if (what == 'i') {
        SQLBindParameter(statement_, at, SQL_PARAM_INPUT, SQL_C_SBIGINT, SQL_BIGINT, 0, 0, &value.number, 8, nullptr);
      } else {
        SQLBindParameter(statement_, at, SQL_PARAM_INPUT, SQL_C_BINARY, SQL_VARBINARY, sizeof value.bytes, 0,
                         value.bytes, sizeof value.bytes, &value.length);
      }
    }
  }
  ~RawQuery() { SQLFreeHandle(SQL_HANDLE_STMT, statement_); }
  RawQuery(const RawQuery&) = delete;
  RawQuery& operator=(const RawQuery&) = delete;

  /// The columns of the result in their order: an id, bytes of `exact`, fields.
  void AddNumber() { columns_.push_back({SQL_C_SBIGINT, 8}); }
  void AddBytes(std::size_t size) { columns_.push_back({SQL_C_BINARY, size}); }
  void AddText(std::size_t width) {
    if (server_.IsMariaDb())
      columns_.push_back({SQL_C_BINARY, width * 3 + 1});
    else
      columns_.push_back({SQL_C_WCHAR, (width + 1) * 2});
  }
  void AddRecord(const store::TableDef& table) {
    AddNumber();
    AddBytes(table.recordSize);
    for (const store::FieldDef& field : table.fields) {
      if (field.kind == store::FieldKind::kText)
        AddText(field.width);
      else
        columns_.push_back({SQL_C_SLONG, 4});
    }
  }
  /// Once, behind the columns.
  void Bind() {
    std::size_t stride = 0;
    for (const Column& column : columns_) stride += sizeof(SQLLEN) + (column.size + 7) / 8 * 8;
    rows_.resize(stride * capacity_);
    SQLSetStmtAttr(statement_, SQL_ATTR_ROW_BIND_TYPE, reinterpret_cast<SQLPOINTER>(stride), 0);
    SQLSetStmtAttr(statement_, SQL_ATTR_ROW_ARRAY_SIZE, reinterpret_cast<SQLPOINTER>(capacity_), 0);
    SQLSetStmtAttr(statement_, SQL_ATTR_ROWS_FETCHED_PTR, &fetched_, 0);
    char* place = rows_.data();
    SQLUSMALLINT at = 1;
    for (const Column& column : columns_) {
      auto* length = reinterpret_cast<SQLLEN*>(place);
      Check(SQL_SUCCEEDED(SQLBindCol(statement_, at++, column.type, place + sizeof(SQLLEN),
                                     static_cast<SQLLEN>(column.size), length)),
            "bind");
      place += sizeof(SQLLEN) + (column.size + 7) / 8 * 8;
    }
  }

  void Set(std::size_t parameter, std::string_view bytes) {
    Value& value = values_[parameter];
    value.length = static_cast<SQLLEN>(std::min(bytes.size(), sizeof value.bytes));
    std::memcpy(value.bytes, bytes.data(), static_cast<std::size_t>(value.length));
  }
  void SetNumber(std::size_t parameter, std::int64_t number) { values_[parameter].number = number; }

  /// Executes it and fetches every row; their number. The last block's rows stay.
  std::size_t Run() {
    Check(SQL_SUCCEEDED(SQLExecute(statement_)), "execute");
    std::size_t rows = 0;
    do {
      fetched_ = 0;
      const SQLRETURN code = SQLFetch(statement_);
      Check(SQL_SUCCEEDED(code) || code == SQL_NO_DATA, "fetch");
      rows += fetched_;
      if (fetched_ > 0) lastBlock_ = fetched_;
    } while (fetched_ == capacity_);
    SQLFreeStmt(statement_, SQL_CLOSE);
    return rows;
  }
  /// The id of the last row, where the first column is one.
  std::int64_t LastId() const {
    std::int64_t id = 0;
    std::memcpy(&id, rows_.data() + (lastBlock_ - 1) * (rows_.size() / capacity_) + sizeof(SQLLEN), sizeof id);
    return id;
  }

 private:
  struct Value {
    char bytes[512];
    SQLLEN length = 0;
    std::int64_t number = 0;
  };
  struct Column {
    SQLSMALLINT type;
    std::size_t size;
  };
  RawServer& server_;
  SQLHSTMT statement_ = nullptr;
  std::size_t capacity_;
  std::vector<Value> values_;
  std::vector<Column> columns_;
  std::vector<char> rows_;
  SQLULEN fetched_ = 0;
  std::size_t lastBlock_ = 1;
};

}  // namespace kova::bench
