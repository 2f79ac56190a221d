#pragma once

// ODBC handles as objects. Only the wide functions are used: the others would go through the system's own code page.

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/recordstore/odbc/odbc_api.h"

namespace kova::store::odbc {

/// What the driver said first of a call that failed.
struct Diagnostic {
  std::string state;        ///< five characters, SQLSTATE
  std::int32_t number = 0;  ///< the server's own error number
  std::string text;         ///< UTF-8
};

class Connection {
 public:
  Connection() = default;
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// `seconds`: how long the driver may try; not every driver keeps to it.
  [[nodiscard]] bool Open(std::string_view connectionString, int seconds);

  /// Which server this is: its product's name, and its version as "15.0.4".
  std::string Product() { return Info(SQL_DBMS_NAME); }
  std::string Version() { return Info(SQL_DBMS_VER); }
  /// What Failure says from now on, of a connection that works and cannot be used all the same.
  void Refuse(std::string why) { failure_ = {{}, 0, std::move(why)}; }

  const Diagnostic& Failure() const { return failure_; }
  std::uint64_t RoundTrips() const { return roundTrips_; }

 private:
  friend class Statement;
  bool Check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle);
  std::string Info(int what);

  SQLHENV environment_ = nullptr;
  SQLHDBC handle_ = nullptr;
  bool isOpen_ = false;
  Diagnostic failure_;
  std::uint64_t roundTrips_ = 0;
};

/// How a column's text is handed over.
enum class TextForm { kUtf16, kUtf8Bytes };

/// A result as texts, UTF-8.
using Rows = std::vector<std::vector<std::string>>;

class Statement {
 public:
  explicit Statement(Connection& connection);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // Each gives false and leaves the reason in the connection.
  [[nodiscard]] bool Prepare(std::string_view sql);
  [[nodiscard]] bool Execute();
  /// One statement, or several separated by ";", in one round trip.
  [[nodiscard]] bool ExecuteText(std::string_view sql);
  /// Goes on to the next result; true in `has` when there is one.
  [[nodiscard]] bool NextResult(bool& has);
  [[nodiscard]] bool ColumnCount(int& columns);
  [[nodiscard]] bool AffectedRows(std::int64_t& rows);
  /// Fetches the next rows into what is bound; false in `has` behind the last ones.
  [[nodiscard]] bool Fetch(bool& has);
  [[nodiscard]] bool SetAttribute(int attribute, SQLULEN value);
  [[nodiscard]] bool SetPointer(int attribute, void* place);
  [[nodiscard]] bool BindColumn(int column, int type, void* place, std::size_t size, SQLLEN* length);
  [[nodiscard]] bool BindParameter(int at, int type, int sqlType, std::size_t columnSize, void* place,
                                   std::size_t size, SQLLEN* length);
  /// Gives up what is left of the result; the statement can be executed again.
  void CloseResult();

  /// Executes statements in one round trip and collects the rows of all their results.
  [[nodiscard]] bool Run(std::string_view sql, Rows& rows);

 private:
  bool Check(SQLRETURN code) { return connection_.Check(code, SQL_HANDLE_STMT, handle_); }

  Connection& connection_;
  SQLHSTMT handle_ = nullptr;
};

/// UTF-8 as UTF-16 and back, for SQL and messages; what is not UTF-8 becomes "?".
std::u16string Utf16Of(std::string_view utf8);
std::string Utf8Of(std::u16string_view utf16);

}  // namespace kova::store::odbc
