#include <algorithm>

#include "platform/recordstore/odbc/dialect.h"

namespace kova::store {
namespace {

class PostgreSql final : public Dialect {
 public:
  // Quoted, as some of our names are words of the language; in lower case, so that whoever writes them without quotes means
  // the same.
  std::string Name(std::string_view name) const override {
    std::string text = "\"" + std::string(name) + "\"";
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return text;
  }
  std::string IdType() const override { return "bigint PRIMARY KEY"; }
  std::string FieldType(const FieldDef& field) const override {
    if (field.kind == FieldKind::kText) return "varchar(" + std::to_string(field.width) + ")";
    return field.kind == FieldKind::kUInt8 ? "smallint" : "integer";
  }
  std::string KeyType(const KeyDef&) const override { return "bytea"; }
  std::string BytesType() const override { return "bytea"; }
  std::string TextType() const override { return "text"; }
  // A failed statement would end the transaction that it is in.
  std::string OrNothing() const override { return " ON CONFLICT DO NOTHING"; }

  Oldest OldestServer() const override { return {"PostgreSQL", 10, 0}; }  // the first with SCRAM
  std::string DriverName() const override {
#ifdef _WIN32
    return "PostgreSQL Unicode(x64)";
#else
    return "PostgreSQL Unicode";
#endif
  }
  std::string ConnectionString(const ServerSettings& settings, const ServerAddress& address,
                               std::string_view database) const override {
    // The driver gives up a machine that is gone, instead of waiting for the system to do so.
    std::string own =
        "connect_timeout=3 tcp_user_timeout=4000 keepalives=1 keepalives_idle=2 keepalives_interval=1 "
        "keepalives_count=3 application_name=kova";
    std::string mode = Encrypts(settings, address) ? "require" : "allow";
    if (!settings.certificate.empty()) {
      mode = "verify-full";
      own += " sslrootcert='" + CertificatePath(settings) + "'";
    }
    return Keyword("DRIVER", DriverOf(settings)) + Keyword("SERVER", address.host) +
           Keyword("PORT", std::to_string(address.port == 0 ? 5432 : address.port)) +
           Keyword("DATABASE", database.empty() ? "postgres" : database) + Keyword("UID", settings.account) +
           Keyword("PWD", settings.password) + "SSLmode=" + mode + ";" + Keyword("pqopt", own) +
           "UseServerSidePrepare=1;UseDeclareFetch=0;ByteaAsLongVarBinary=1;LFConversion=0;MaxVarcharSize=4000;"
           "Protocol=7.4-0;";
  }
  std::string SessionSql() const override {
    // Who is gone must not go on holding the write lock; SQL texts are UTF-8.
    return "SET lock_timeout = 5000; SET idle_in_transaction_session_timeout = 20000; "
           "SET tcp_keepalives_idle = 5; SET tcp_keepalives_interval = 2; SET tcp_keepalives_count = 3; "
           "SET standard_conforming_strings = on; SET client_min_messages = error; "
           "SELECT pid || ' ' || " + StartedSql() + " FROM pg_stat_activity WHERE pid = pg_backend_pid()";
  }
  std::string EndSessionSql(std::string_view session) const override {
    const std::size_t blank = session.find(' ');
    if (blank == std::string_view::npos) return {};
    // The system gives numbers of processes again.
    return "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid = " + std::string(session.substr(0, blank)) +
           " AND " + StartedSql() + " = '" + std::string(session.substr(blank + 1)) + "'";
  }
  static std::string StartedSql() { return "to_char(backend_start AT TIME ZONE 'UTC', 'YYYYMMDDHH24MISSUS')"; }

  std::string Bytes(std::string_view bytes) const override { return "'\\x" + Hex(bytes) + "'::bytea"; }
  std::string Text(std::string_view utf8) const override { return "convert_from(" + Bytes(utf8) + ", 'UTF8')"; }
  std::string InsertArraysSql(const TableDef& table) const override {
    const std::string insert = InsertSql(*this, table);
    std::string arrays;
    const auto add = [&](const char* type) { arrays.append(", convert_from(?, 'UTF8')::").append(type).append("[]"); };
    add("bigint");
    // Cast to their columns' types on the way in: a text that is too long fails there, instead of being cut.
    for (const FieldDef& field : table.fields) add(field.kind == FieldKind::kText ? "text" : "integer");
    for (std::size_t i = 0; i <= table.keys.size(); ++i) add("bytea");
    return insert.substr(0, insert.find("VALUES")) + "SELECT * FROM unnest(" + arrays.substr(2) + ")";
  }
  std::string BeyondSql(const std::string& column, bool forward, std::string& parameters) const override {
    parameters = "ki";
    return "(" + column + ", id) " + (forward ? ">" : "<") + " (?, ?)";
  }
  std::string NowSql() const override { return "CAST(EXTRACT(EPOCH FROM clock_timestamp()) AS bigint)"; }
  std::string BeginReadsSql() const override { return "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"; }
  std::string CheckSql(const TableDef&) const override { return {}; }

  std::string CreateDatabaseSql(std::string_view database) const override {
    return "CREATE DATABASE " + Name(database) + " ENCODING 'UTF8' TEMPLATE template0";
  }
  std::string RightsSql(const ServerSettings& settings) const override {
    const std::string to = " TO " + Name(settings.account) + ";\n";
    std::string sql = "REVOKE CREATE ON SCHEMA public FROM PUBLIC;\nGRANT CONNECT ON DATABASE " +
                      Name(settings.database) + to + "GRANT USAGE ON SCHEMA public" + to;
    for (const TableDef& table : AllTables())
      sql += "GRANT SELECT, INSERT, UPDATE, DELETE ON " + Name(table.name) + to + "GRANT SELECT, INSERT, DELETE ON " +
             Name(JournalOf(table.id).name) + to;
    return sql + "GRANT SELECT, INSERT, DELETE ON " + Name("store_client") + to + "GRANT SELECT, UPDATE ON " +
           Name("counter") + ", " + Name("change_stamp") + to + "GRANT SELECT ON " + Name("store_info") + to;
  }
  bool LaysOutInTransaction() const override { return true; }

  Result Translate(const odbc::Diagnostic& diagnostic) const override {
    const std::string_view state = diagnostic.state, group = state.substr(0, 2);
    const auto says = [&](std::string_view words) { return diagnostic.text.find(words) != std::string::npos; };
    if (state == "40P01") return Result::kConflict;
    if (state == "55P03") return Result::kBusy;
    if (state == "53100") return Result::kFull;
    if (state == "25006") return Result::kReadOnly;
    if (state == "3D000") return Result::kNoDatabase;
    if (group == "28") return Result::kNoAccess;
    if (state == "42P01" || state == "42703" || group == "XX") return Result::kDamaged;
    if (group == "57" || group == "53" || state == "25P03") return Result::kUnreachable;
    // What goes wrong while connecting is told by the driver in words only, and in the server's language: the rest is told
    // by the names in it. This is the client's own word for a missing password.
    if (says("fe_sendauth") || says("password authentication failed")) return Result::kNoAccess;
    if (says("database \"") && says("does not exist")) return Result::kNoDatabase;
    return TranslateState(diagnostic);
  }
};

}  // namespace

std::unique_ptr<Dialect> MakePostgreSql() { return std::make_unique<PostgreSql>(); }

}  // namespace kova::store
