#include "platform/recordstore/odbc/dialect.h"

namespace kova::store {
namespace {

// CLIENT_MULTI_STATEMENTS, and rows found instead of rows changed as the number of an update's rows.
constexpr int kOptions = 67108864 + 2;

class MariaDb final : public Dialect {
 public:
  std::string Name(std::string_view name) const override { return "`" + std::string(name) + "`"; }
  std::string IdType() const override { return "bigint PRIMARY KEY"; }
  std::string FieldType(const FieldDef& field) const override {
    if (field.kind == FieldKind::kText) return "varchar(" + std::to_string(field.width) + ")";
    return field.kind == FieldKind::kUInt8 ? "tinyint unsigned" : "int";
  }
  std::string KeyType(const KeyDef& key) const override { return "varbinary(" + std::to_string(key.width) + ")"; }
  std::string BytesType() const override { return "blob"; }
  std::string TextType() const override { return "char"; }
  std::string TableOptions() const override {
    return " ENGINE=InnoDB ROW_FORMAT=DYNAMIC DEFAULT CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin";
  }

  Oldest OldestServer() const override { return {"MariaDB", 10, 4}; }  // the fourth Galera
  std::string DriverName() const override {
#ifdef _WIN32
    return "MariaDB ODBC 3.1 Driver";
#else
    return "MariaDB Unicode";
#endif
  }
  std::string ConnectionString(const ServerSettings& settings, const ServerAddress& address,
                               std::string_view database) const override {
    std::string text = Keyword("DRIVER", DriverOf(settings)) + Keyword("SERVER", address.host) +
                       "PORT=" + std::to_string(address.port == 0 ? 3306 : address.port) + ";" +
                       Keyword("UID", settings.account) + Keyword("PWD", settings.password) +
                       "TCPIP=1;CHARSET=utf8mb4;CONN_TIMEOUT=3;READ_TIMEOUT=6;WRITE_TIMEOUT=6;OPTION=" +
                       std::to_string(kOptions) + ";";
    if (!database.empty()) text += Keyword("DATABASE", database);
    if (Encrypts(settings, address)) text += "FORCETLS=1;";
    if (!settings.certificate.empty())
      text += Keyword("SSLCA", CertificatePath(settings)) + "SSLVERIFY=1;";
    return text;
  }
  std::string SessionSql() const override {
    // Reads wait for what other nodes have committed only here, at the beginning: who moves to another node sees there
    // what it wrote. Later a write that another node was faster with is refused as a conflict.
    // Look-ups of many records by key are planned without searching the index for each of them first.
    return "SET SESSION innodb_lock_wait_timeout = 5, lock_wait_timeout = 5, idle_transaction_timeout = 20, "
           "eq_range_index_dive_limit = 1, sql_mode = 'STRICT_ALL_TABLES,NO_BACKSLASH_ESCAPES', wsrep_sync_wait = 1; "
           "SELECT COUNT(*) FROM information_schema.schemata; SET SESSION wsrep_sync_wait = 0; "
           "SELECT CONCAT(CONNECTION_ID(), ' ', " + StartedSql() + ")";
  }
  // Numbers of connections begin anew with the server: that it is still the same one is told by when it was started, which
  // its clocks give to a second.
  std::string EndSessionSql(std::string_view session) const override {
    const std::size_t blank = session.find(' ');
    if (blank == std::string_view::npos) return {};
    const std::string number(session.substr(0, blank)), started(session.substr(blank + 1));
    return Together("IF ABS(" + StartedSql() + " - " + started + ") <= 2 THEN KILL " + number + "; END IF");
  }

  // The driver sends each statement of a text on its own; a block is one.
  std::string Together(std::string_view statements) const override {
    return "BEGIN NOT ATOMIC " + std::string(statements) + "; END";
  }
  // Of texts in UTF-16 the driver (3.1.15) stores some with a character too many.
  odbc::TextForm Texts() const override { return odbc::TextForm::kUtf8Bytes; }
  std::string Bytes(std::string_view bytes) const override { return "x'" + Hex(bytes) + "'"; }
  std::string Text(std::string_view utf8) const override { return "CONVERT(" + Bytes(utf8) + " USING utf8mb4)"; }
  // Of a comparison of rows the server searches no index.
  std::string BeyondSql(const std::string& column, bool forward, std::string& parameters) const override {
    parameters = "kik";
    const std::string beyond = forward ? " > ?" : " < ?";
    return "((" + column + " = ? AND id" + beyond + ") OR " + column + beyond + ")";
  }
  static std::string StartedSql() {
    return "(SELECT UNIX_TIMESTAMP() - CAST(variable_value AS INTEGER) FROM information_schema.global_status "
           "WHERE variable_name = 'UPTIME')";
  }
  std::string NowSql() const override { return "UNIX_TIMESTAMP()"; }
  std::string BeginReadsSql() const override { return "START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"; }
  std::string CheckSql(const TableDef& table) const override { return "CHECK TABLE " + Name(table.name); }

  std::string CreateDatabaseSql(std::string_view database) const override {
    return "CREATE DATABASE " + Name(database) + " CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin";
  }
  std::string RightsSql(const ServerSettings& settings) const override {
    const std::string on = " ON " + Name(settings.database) + ".";
    const std::string to = " TO '" + settings.account + "'@'%';\n";
    std::string sql;
    for (const TableDef& table : AllTables())
      sql += "GRANT SELECT, INSERT, UPDATE, DELETE" + on + Name(table.name) + to + "GRANT SELECT, INSERT, DELETE" + on +
             Name(JournalOf(table.id).name) + to;
    return sql + "GRANT SELECT, INSERT, DELETE" + on + Name("store_client") + to + "GRANT SELECT, UPDATE" + on +
           Name("counter") + to + "GRANT SELECT, UPDATE" + on + Name("change_stamp") + to + "GRANT SELECT" + on +
           Name("store_info") + to;
  }
  bool LaysOutInTransaction() const override { return false; }

  Result Translate(const odbc::Diagnostic& diagnostic) const override {
    switch (diagnostic.number) {
      case 1062:
        return Result::kDuplicate;
      case 1205:
      case 3572:
        return Result::kBusy;
      case 1213:
      case 1180:  // an error during commit: the cluster refused it
      case 1243:  // the statement went with the transaction that it was prepared in
        return Result::kConflict;
      case 1021:
      case 1114:
      case 3675:
        return Result::kFull;
      case 1044:
      case 1142:
      case 1143:
      case 1227:
      case 1290:
      case 1792:
      case 1836:
        return Result::kReadOnly;
      case 1045:
      case 1130:
      case 1698:
        return Result::kNoAccess;
      case 1049:
        return Result::kNoDatabase;
      case 1054:
      case 1146:
        return Result::kDamaged;
      case 1047:  // the node is not in touch with the cluster's majority
      case 1053:
      case 1927:
      case 2002:
      case 2003:
      case 2005:
      case 2006:
      case 2013:
      case 2026:
      case 4031:
        return Result::kUnreachable;
      default:
        break;
    }
    if (diagnostic.text.find("No space left") != std::string::npos) return Result::kFull;
    return TranslateState(diagnostic);
  }
};

}  // namespace

std::unique_ptr<Dialect> MakeMariaDb() { return std::make_unique<MariaDb>(); }

}  // namespace kova::store
