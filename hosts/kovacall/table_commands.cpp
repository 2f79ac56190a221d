#include "hosts/kovacall/table_commands.h"

#include <cstring>
#include <ctime>
#include <iostream>
#include <limits>

#include "hosts/console/console.h"
#include "hosts/kovacall/any_table.h"
#include "hosts/kovacall/table_page.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/journal.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {
namespace {

using store::FieldDef;
using store::KeyDef;
using store::Result;
using store::TableDef;
using Arguments = std::vector<std::string>;

constexpr long long kMost = std::numeric_limits<long long>::max();

const TableDef& TableArgument(const Arguments& arguments) {
  if (arguments.empty()) throw UsageError("needs a table name");
  const TableDef* table = store::FindTable(arguments.front());
  if (table == nullptr) throw UsageError("there is no table \"" + ShowControls(arguments.front()) + "\"");
  return *table;
}

void Bind(AnyTable& table, Practice& practice) {
  const int bound = table.SetAssociatedDB(&practice.Database());
  if (bound != 0) throw UsageError("cannot bind the table: result " + DescribeResult(bound));
}

std::string Joined(const std::vector<const FieldDef*>& fields, const char* record) {
  std::string line;
  for (const FieldDef* field : fields) {
    if (field != fields.front()) line += '\t';
    line += record == nullptr ? field->name : ShowField(*field, record);
  }
  return line + '\n';
}

// ---- dump

struct DumpRequest {
  int key = 0;
  Arguments from;  // values of the key's first fields
  long long limit = kMost;
};

DumpRequest ParseDump(const Arguments& arguments) {
  DumpRequest request;
  for (std::size_t i = 1; i < arguments.size(); i += 2) {
    const std::string& option = arguments[i];
    if (option != "--key" && option != "--from" && option != "--limit")
      throw UsageError("there is no option \"" + ShowControls(option) + "\"");
    if (i + 1 == arguments.size()) throw UsageError(option + " needs a value");
    const std::string& value = arguments[i + 1];
    if (option == "--key") request.key = static_cast<int>(NumberArgument(value, option, 0, 99));
    if (option == "--from") request.from.push_back(value);
    if (option == "--limit") request.limit = NumberArgument(value, option, 0, kMost);
  }
  return request;
}

const KeyDef& KeyArgument(const TableDef& table, int number) {
  const int index = table.FindKey(number);
  if (index < 0)
    throw UsageError("table " + std::string(table.name) + " has no key " + std::to_string(number));
  return table.keys[static_cast<std::size_t>(index)];
}

/// The key bytes that begin with the given values of the key's first fields; the last one may be a beginning
/// itself.
std::string KeyPrefix(const KeyDef& key, const Arguments& values) {
  if (values.size() > key.fields.size()) throw UsageError("more --from values than the key has fields");
  std::string bytes;
  std::size_t end = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const FieldDef& field = *key.fields[i];
    const std::string text = TextArgument(values[i], field.name);
    if (text.size() >= field.width) {
      throw UsageError("--from: \"" + ShowControls(values[i]) + "\" is longer than " + field.name +
                       "; give the key's next field by a --from of its own");
    }
    bytes.resize(end);
    bytes += text;
    end += field.width;
  }
  return bytes;
}

int Position(AnyTable& table, int keyNumber, const std::string& prefix) {
  const int chosen = table.SetKey(keyNumber);
  if (chosen != 0) return chosen;
  table.SetKeyBuffer(prefix.data(), static_cast<unsigned long>(prefix.size()));
  return table.GetGREQ();
}

void Dump(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  const DumpRequest request = ParseDump(arguments);
  const std::string prefix = KeyPrefix(KeyArgument(def, request.key), request.from);
  AnyTable table(def);
  Bind(table, practice);
  std::vector<const FieldDef*> fields;
  for (const FieldDef& field : def.fields) fields.push_back(&field);
  int result = Position(table, request.key, prefix);
  Print(Joined(fields, nullptr));
  for (long long printed = 0; result == 0 && printed < request.limit; ++printed) {
    Print(Joined(fields, table.Record()));
    result = table.GetNEXT();
  }
  if (result != 0 && result != static_cast<int>(Result::kEndOfTable)) PrintResult(result);
}

// ---- put, set, delete

void RequireKey(const TableDef& table, const char* record) {
  for (const FieldDef* field : table.keys.front().fields) {
    if (*(record + field->offset) != 0) return;
  }
  throw UsageError("the primary key is missing: " + std::string(table.keys.front().fieldNames));
}

void Put(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  AnyTable table(def);
  for (std::size_t i = 1; i < arguments.size(); ++i)
    AssignArgument(def.fields, def.name, arguments[i], table.Record());
  RequireKey(def, table.Record());
  Bind(table, practice);
  const int result = table.Insert();
  if (result != 0) return PrintResult(result);
  Print(Joined(def.keys.front().fields, table.Record()));
}

/// The arguments of set and delete, sorted: the primary key's values, and what else is given.
struct KeyedArguments {
  std::vector<char> record;  // with the key only
  Arguments assignments;
};

bool IsKeyField(const TableDef& table, std::string_view name) {
  for (const FieldDef* field : table.keys.front().fields) {
    if (field->name == name) return true;
  }
  return false;
}

KeyedArguments SplitKey(const TableDef& table, const Arguments& arguments) {
  KeyedArguments split{std::vector<char>(table.recordSize), {}};
  const auto& keyFields = table.keys.front().fields;
  std::size_t given = 0;  // key values, in either form
  std::size_t position = 0;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const std::size_t equals = argument.find('=');
    const bool named = equals != std::string::npos && table.FindField(argument.substr(0, equals)) != nullptr;
    if (named && !IsKeyField(table, argument.substr(0, equals))) {
      split.assignments.push_back(argument);
      continue;
    }
    if (named || equals != std::string::npos || position >= keyFields.size()) {
      AssignArgument(table.fields, table.name, argument, split.record.data());
    } else {
      AssignField(*keyFields[position++], argument, split.record.data());
    }
    ++given;
  }
  if (given != keyFields.size())
    throw UsageError("give the primary key once: " + std::string(table.keys.front().fieldNames));
  return split;
}

int Find(AnyTable& table, const KeyedArguments& wanted) {
  std::memcpy(table.Record(), wanted.record.data(), wanted.record.size());
  const int result = table.GetPrimeKeyFromBuffer();
  return result != 0 ? result : table.GetEQ();
}

void Set(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  const KeyedArguments wanted = SplitKey(def, arguments);
  if (wanted.assignments.empty()) throw UsageError("nothing to set: give field=value");
  std::vector<char> trial(def.recordSize);
  for (const std::string& each : wanted.assignments) AssignArgument(def.fields, def.name, each, trial.data());
  AnyTable table(def);
  Bind(table, practice);
  int result = Find(table, wanted);
  if (result == 0) {
    for (const std::string& each : wanted.assignments)
      AssignArgument(def.fields, def.name, each, table.Record());
    result = table.UpdateIfUnchanged();
  }
  PrintResult(result);
}

void Delete(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  const KeyedArguments wanted = SplitKey(def, arguments);
  if (!wanted.assignments.empty()) throw UsageError("takes the primary key only");
  AnyTable table(def);
  Bind(table, practice);
  const int result = Find(table, wanted);
  PrintResult(result != 0 ? result : table.Delete());
}

// ---- what records were

std::string LocalTimeText(long long seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  char text[32] = "";
  if (const std::tm* local = std::localtime(&time)) std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local);
  return text;
}

void History(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  const KeyedArguments wanted = SplitKey(def, arguments);
  if (!wanted.assignments.empty()) throw UsageError("takes the primary key only");
  std::vector<store::JournalEntry> history;
  AnyTable table(def);
  Bind(table, practice);
  const int now = Find(table, wanted);
  int result = now == static_cast<int>(Result::kNotFound) ? 0 : now;
  if (result == 0) result = store::ReadHistory(practice.Database(), def.id, wanted.record.data(), history);
  if (result != 0) return PrintResult(result);
  std::vector<const FieldDef*> fields;
  for (const FieldDef& field : def.fields) fields.push_back(&field);
  Print("entry\ttime\tworkstation\tdeed\t" + Joined(fields, nullptr));
  for (const store::JournalEntry& entry : history)
    Print(std::to_string(entry.number) + "\t" + LocalTimeText(entry.time) + "\t" +
          ShowControls(text932::ToUtf8(entry.workstation)) + "\t" + (entry.isDeleted ? "deleted" : "overwritten") + "\t" +
          Joined(fields, entry.record.data()));
  if (now == 0) Print("now\t\t\t\t" + Joined(fields, table.Record()));
}

void BringBack(const Arguments& arguments, Practice& practice) {
  const TableDef& def = TableArgument(arguments);
  if (arguments.size() != 2) throw UsageError("takes a table and the number of an entry of its history");
  PrintResult(store::BringBack(practice.Database(), def.id, NumberArgument(arguments[1], "the entry", 1, kMost)));
}

// ---- the database as a whole

std::string FolderArgument(const Arguments& arguments) {
  if (arguments.size() != 1 || arguments.front().empty()) throw UsageError("takes one folder");
  return TextArgument(arguments.front(), "the folder");
}

void CreateDb(const Arguments& arguments, Practice&) {
  std::string problem;
  const int result = KovaCreateDatabase(FolderArgument(arguments).c_str(), &problem);
  PrintOutcome(result, problem);
}

void UpgradeDb(const Arguments& arguments, Practice&) {
  std::string problem;
  const int result = KovaUpgradeDatabase(FolderArgument(arguments).c_str(), &problem);
  PrintOutcome(result, problem);
}

void ServerRights(const Arguments& arguments, Practice&) {
  std::string sql;
  const int result = KovaServerRights(FolderArgument(arguments).c_str(), sql);
  if (result != 0) return PrintResult(result);
  Print(sql);
}

void ServerPassword(const Arguments& arguments, Practice&) {
  // Not an argument: those of a running program can be seen by others.
  std::string password;
  std::getline(std::cin, password);
  while (password.ends_with('\r')) password.pop_back();
  PrintResult(KovaStoreServerPassword(FolderArgument(arguments).c_str(), password.c_str()));
}

void Migrate(const Arguments& arguments, Practice&) {
  if (arguments.size() != 2) throw UsageError("takes the folder to copy from and the one to copy to");
  const std::string from = TextArgument(arguments[0], "the source's folder");
  const std::string to = TextArgument(arguments[1], "the target's folder");
  std::string last, problem;
  const int result = KovaMigrate(
      from.c_str(), to.c_str(),
      [&](const char* what, const char* table, long long records) {
        const std::string line = std::string(what) + " " + table;
        std::cerr << (line == last ? "\r" : last.empty() ? "" : "\n") << line << ": " << records << std::flush;
        last = line;
        return true;
      },
      problem);
  if (!last.empty()) std::cerr << "\n";
  PrintOutcome(result, problem);
}

void ShareDb(const Arguments& arguments, Practice&) {
  PrintResult(KovaShareDatabase(FolderArgument(arguments).c_str()));
}

void CheckDb(const Arguments& arguments, Practice& practice) {
  if (!arguments.empty()) throw UsageError("takes no arguments");
  std::string finding;
  const int result = practice.Database().CheckIntegrity(finding);
  PrintResult(result);
  if (result != 0) Print("finding=" + ShowControls(finding) + "\n");
}

void Tables(const Arguments& arguments, Practice&) {
  if (!arguments.empty()) throw UsageError("takes no arguments");
  Print(TablePage(store::AllTables()));
}

}  // namespace

void PrintResult(int result) {
  Print(std::to_string(result) + "\n");
  if (result != 0) PrintError("result " + DescribeResult(result) + "\n");
}

void PrintOutcome(int result, const std::string& problem) {
  PrintResult(result);
  if (result != 0 && !problem.empty()) Print("problem=" + ShowControls(problem) + "\n");
}

const std::vector<TableCommand>& TableCommands() {
  static const std::vector<TableCommand> commands = {
      {"dump", "TABLE [--key N] [--from TEXT]... [--limit N]",
       "records in the order of key N (0), tab-separated under a line of field names; from the first whose "
       "key is TEXT or behind it (one --from for each field of the key)",
       &Dump},
      {"put", "TABLE field=value...", "inserts a record; prints its primary key", &Put},
      {"set", "TABLE KEY... field=value...", "changes fields of the record with that primary key", &Set},
      {"delete", "TABLE KEY...", "deletes the one record with that primary key", &Delete},
      {"history", "TABLE KEY...",
       "what the record with that primary key was before each overwriting and deletion of the last month, and what it is now",
       &History},
      {"bring-back", "TABLE ENTRY", "makes a record again what it was at an entry of its history", &BringBack},
      {"create-db", "FOLDER", "lays out an empty database", &CreateDb},
      {"upgrade-db", "FOLDER", "brings the tables of an older program on a server to this one's layout", &UpgradeDb},
      {"server-rights", "FOLDER", "prints the script of the rights that workstations need on the server", &ServerRights},
      {"server-password", "FOLDER", "keeps the server's password, a line of standard input, for this user", &ServerPassword},
      {"migrate", "FROM TO", "copies all records to another database folder, on whatever engine, and compares them", &Migrate},
      {"share-db", "FOLDER", "prepares a database for use from other machines, once and for good", &ShareDb},
      {"check-db", "", "checks every page and index of the database", &CheckDb},
      {"tables", "", "describes all tables, as a Markdown page", &Tables},
  };
  return commands;
}

}  // namespace kova::hosts
