#pragma once

// What differs between the database servers: names and types, a few expressions, the driver's connection string, what
// an error means. Each has one file.

#include <memory>

#include "platform/recordstore/odbc/connection.h"
#include "platform/recordstore/odbc/server_settings.h"
#include "platform/recordstore/table_sql.h"

namespace kova::store {

class Dialect : public SqlForm {
 public:
  bool IndexesHoldIds() const override { return false; }

  /// The server's product as its driver tells it, and the first version that has all that is asked of it.
  struct Oldest {
    std::string_view product;
    int major, minor;
  };
  virtual Oldest OldestServer() const = 0;
  virtual std::string DriverName() const = 0;
  /// The driver's keywords for one server. `database` empty: the one that every server has.
  virtual std::string ConnectionString(const ServerSettings& settings, const ServerAddress& address,
                                       std::string_view database) const = 0;
  /// Statements that a new connection begins with; the last one gives what names the session on its server, also
  /// after the server's numbers have begun anew: its number and, behind a blank, when it or its server was started.
  virtual std::string SessionSql() const = 0;
  /// Ends that session when it is still there.
  virtual std::string EndSessionSql(std::string_view session) const = 0;

  /// Statements, separated by ";", so that they take one round trip together.
  virtual std::string Together(std::string_view statements) const { return std::string(statements); }
  /// How texts go through the driver.
  virtual odbc::TextForm Texts() const { return odbc::TextForm::kUtf16; }
  virtual std::string Bytes(std::string_view bytes) const = 0;
  virtual std::string Text(std::string_view utf8) const = 0;
  /// Inserts records whose columns come as a parameter each, in the order of InsertSql: an array in the server's text form, as
  /// UTF-8 bytes. Empty where the server has no arrays.
  virtual std::string InsertArraysSql(const TableDef&) const { return {}; }
  /// A condition for the records behind or before (key, id) in the order of the key. `parameters` gets a letter for each
  /// of its parameters: k the key, i the id.
  virtual std::string BeyondSql(const std::string& column, bool forward, std::string& parameters) const = 0;
  /// Begins a transaction in which every read sees the same moment.
  virtual std::string BeginReadsSql() const = 0;
  /// A full check of a table, which gives a row whose last column is "OK" when it is sound; empty when the server has none.
  virtual std::string CheckSql(const TableDef& table) const = 0;

  virtual std::string CreateDatabaseSql(std::string_view database) const = 0;
  /// The rights of the workstations' account, as a script for the administrator.
  virtual std::string RightsSql(const ServerSettings& settings) const = 0;
  /// False where laying out a table ends the transaction that it is in.
  virtual bool LaysOutInTransaction() const = 0;

  virtual Result Translate(const odbc::Diagnostic& diagnostic) const = 0;

 protected:
  /// The driver of the settings, or the usual one.
  std::string DriverOf(const ServerSettings& settings) const {
    return settings.driver.empty() ? DriverName() : settings.driver;
  }
};

std::unique_ptr<Dialect> MakePostgreSql();
std::unique_ptr<Dialect> MakeMariaDb();
/// Of the kind that settings name.
std::unique_ptr<Dialect> MakeDialect(std::string_view kind);

/// "KEYWORD=value;", the value in braces where one of its characters could end it.
std::string Keyword(std::string_view keyword, std::string_view value);
/// Lower-case hexadecimal digits.
std::string Hex(std::string_view bytes);
void AppendHex(std::string_view bytes, std::string& text);
/// True when the connection needs encryption by these settings.
bool Encrypts(const ServerSettings& settings, const ServerAddress& address);
/// The authority's file as drivers take it: UTF-8, with "/" between the folders.
std::string CertificatePath(const ServerSettings& settings);
/// The meaning of the SQLSTATEs that every server gives alike; kFailed for others.
Result TranslateState(const odbc::Diagnostic& diagnostic);

/// The tables beside those of the records.
inline constexpr std::string_view kOwnTables[] = {"store_info", "counter", "change_stamp", "store_client"};

}  // namespace kova::store
