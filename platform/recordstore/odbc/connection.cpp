#include "platform/recordstore/odbc/connection.h"

#include <algorithm>

namespace kova::store::odbc {
namespace {

SQLWCHAR* Wide(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

}  // namespace

std::u16string Utf16Of(std::string_view utf8) {
  std::u16string text;
  text.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = c < 0x80 ? 1 : c >= 0xC2 && c < 0xE0 ? 2 : c >= 0xE0 && c < 0xF0 ? 3 : 0;
    char32_t value = length == 1 ? c : length == 2 ? c & 0x1Fu : c & 0x0Fu;
    bool isWhole = length != 0 && i + length <= utf8.size();
    for (std::size_t k = 1; isWhole && k < length; ++k) {
      const auto next = static_cast<unsigned char>(utf8[i + k]);
      isWhole = (next & 0xC0u) == 0x80u;
      value = value << 6 | (next & 0x3Fu);
    }
    text += isWhole ? static_cast<char16_t>(value) : u'?';
    i += isWhole ? length : 1;
  }
  return text;
}

std::string Utf8Of(std::u16string_view utf16) {
  std::string text;
  text.reserve(utf16.size());
  for (const char16_t c : utf16) {
    if (c < 0x80) {
      text += static_cast<char>(c);
    } else if (c < 0x800) {
      text += static_cast<char>(0xC0 | c >> 6);
      text += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c >= 0xD800 && c < 0xE000) {
      text += '?';
    } else {
      text += static_cast<char>(0xE0 | c >> 12);
      text += static_cast<char>(0x80 | (c >> 6 & 0x3F));
      text += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return text;
}

Connection::~Connection() {
  if (isOpen_) SQLDisconnect(handle_);
  if (handle_ != nullptr) SQLFreeHandle(SQL_HANDLE_DBC, handle_);
  if (environment_ != nullptr) SQLFreeHandle(SQL_HANDLE_ENV, environment_);
}

bool Connection::Check(SQLRETURN code, SQLSMALLINT kind, SQLHANDLE handle) {
  if (SQL_SUCCEEDED(code) || code == SQL_NO_DATA) return true;
  failure_ = {};
  std::u16string state(6, u'\0'), text(1000, u'\0');
  SQLINTEGER number = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN told = SQLGetDiagRecW(kind, handle, 1, Wide(state), &number, Wide(text),
                                        static_cast<SQLSMALLINT>(text.size()), &length);
  if (SQL_SUCCEEDED(told)) {
    const auto end = static_cast<std::size_t>(std::clamp<int>(length, 0, static_cast<int>(text.size()) - 1));
    failure_ = {Utf8Of(std::u16string_view(state).substr(0, 5)), static_cast<std::int32_t>(number),
                Utf8Of(std::u16string_view(text).substr(0, end))};
  }
  return false;
}

bool Connection::Open(std::string_view connectionString, int seconds) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_))) return false;
  SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  if (!Check(SQLAllocHandle(SQL_HANDLE_DBC, environment_, &handle_), SQL_HANDLE_ENV, environment_)) return false;
  SQLSetConnectAttr(handle_, SQL_ATTR_LOGIN_TIMEOUT,
                    reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(seconds)), 0);
  std::u16string text = Utf16Of(connectionString);
  isOpen_ = Check(SQLDriverConnectW(handle_, nullptr, Wide(text), static_cast<SQLSMALLINT>(text.size()), nullptr,
                                    0, nullptr, SQL_DRIVER_NOPROMPT),
                  SQL_HANDLE_DBC, handle_);
  return isOpen_;
}

std::string Connection::Info(int what) {
  char16_t text[100] = {};
  SQLSMALLINT length = 0;
  const bool worked = Check(SQLGetInfoW(handle_, static_cast<SQLUSMALLINT>(what), text, sizeof text, &length),
                            SQL_HANDLE_DBC, handle_);
  return worked ? Utf8Of(std::u16string_view(text)) : std::string();
}

Statement::Statement(Connection& connection) : connection_(connection) {
  if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection.handle_, &handle_))) handle_ = nullptr;
}

Statement::~Statement() {
  if (handle_ != nullptr) SQLFreeHandle(SQL_HANDLE_STMT, handle_);
}

bool Statement::Prepare(std::string_view sql) {
  std::u16string text = Utf16Of(sql);
  return Check(SQLPrepareW(handle_, Wide(text), static_cast<SQLINTEGER>(text.size())));
}

bool Statement::Execute() {
  ++connection_.roundTrips_;
  return Check(SQLExecute(handle_));
}

bool Statement::ExecuteText(std::string_view sql) {
  ++connection_.roundTrips_;
  std::u16string text = Utf16Of(sql);
  return Check(SQLExecDirectW(handle_, Wide(text), static_cast<SQLINTEGER>(text.size())));
}

bool Statement::NextResult(bool& has) {
  const SQLRETURN code = SQLMoreResults(handle_);
  has = SQL_SUCCEEDED(code);
  return Check(code);
}

bool Statement::ColumnCount(int& columns) {
  SQLSMALLINT count = 0;
  const bool worked = Check(SQLNumResultCols(handle_, &count));
  columns = count;
  return worked;
}

bool Statement::AffectedRows(std::int64_t& rows) {
  SQLLEN count = 0;
  const bool worked = Check(SQLRowCount(handle_, &count));
  rows = count;
  return worked;
}

bool Statement::Fetch(bool& has) {
  const SQLRETURN code = SQLFetch(handle_);
  has = SQL_SUCCEEDED(code);
  return Check(code);
}

bool Statement::SetAttribute(int attribute, SQLULEN value) {
  return Check(SQLSetStmtAttr(handle_, attribute, reinterpret_cast<SQLPOINTER>(value), 0));
}

bool Statement::SetPointer(int attribute, void* place) {
  return Check(SQLSetStmtAttr(handle_, attribute, place, 0));
}

bool Statement::BindColumn(int column, int type, void* place, std::size_t size, SQLLEN* length) {
  return Check(SQLBindCol(handle_, static_cast<SQLUSMALLINT>(column), static_cast<SQLSMALLINT>(type), place,
                          static_cast<SQLLEN>(size), length));
}

bool Statement::BindParameter(int at, int type, int sqlType, std::size_t columnSize, void* place, std::size_t size,
                              SQLLEN* length) {
  return Check(SQLBindParameter(handle_, static_cast<SQLUSMALLINT>(at), SQL_PARAM_INPUT,
                                static_cast<SQLSMALLINT>(type), static_cast<SQLSMALLINT>(sqlType), columnSize, 0,
                                place, static_cast<SQLLEN>(size), length));
}

void Statement::CloseResult() { SQLFreeStmt(handle_, SQL_CLOSE); }

bool Statement::Run(std::string_view sql, Rows& rows) {
  rows.clear();
  bool has = ExecuteText(sql), worked = has;
  while (worked && has) {
    int columns = 0;
    worked = ColumnCount(columns);
    while (worked && columns > 0) {
      bool hasRow = false;
      worked = Fetch(hasRow);
      if (!worked || !hasRow) break;
      std::vector<std::string>& row = rows.emplace_back();
      for (int column = 1; column <= columns; ++column) {
        char16_t text[2000];
        SQLLEN length = 0;
        worked = worked && Check(SQLGetData(handle_, static_cast<SQLUSMALLINT>(column), SQL_C_WCHAR, text,
                                            sizeof text, &length));
        row.push_back(!worked || length < 0 ? std::string() : Utf8Of(std::u16string_view(text)));
      }
    }
    if (worked) worked = NextResult(has);
  }
  CloseResult();
  return worked;
}

}  // namespace kova::store::odbc
