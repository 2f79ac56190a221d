#include "platform/recordstore/schema.h"

#include <algorithm>
#include <cstring>

#include "platform/recordstore/table_ids.h"
#include "platform/text932/cp932.h"

namespace kova::store {
namespace {

void AddField(std::vector<FieldDef>& fields, const char* name, FieldKind kind, std::size_t offset,
              std::size_t width, std::size_t count, const char* meaning) {
  for (std::size_t i = 0; i < count; ++i) {
    std::string fieldName = name;
    if (count > 1) fieldName += std::to_string(i + 1);
    fields.push_back({std::move(fieldName), kind, offset + i * width, width, meaning});
  }
}

/// The fields of these names; null for one that the table does not have.
std::vector<const FieldDef*> FieldsOf(const TableDef& table, std::string_view names) {
  std::vector<const FieldDef*> fields;
  for (std::size_t from = 0; from < names.size();) {
    const std::size_t to = std::min(names.find(' ', from), names.size());
    fields.push_back(table.FindField(names.substr(from, to - from)));
    from = to + 1;
  }
  return fields;
}

void AddKey(TableDef& table, int number, std::string_view fieldNames) {
  KeyDef key{number, fieldNames, FieldsOf(table, fieldNames), 0};
  for (const FieldDef* field : key.fields) key.width += field->width;
  table.keys.push_back(std::move(key));
}

std::vector<TableDef> MakeTables() {
  std::vector<TableDef> tables;
#define KOVA_ADD_FIELD(kind, name, meaning) \
  AddField(table.fields, #name, kind::kKind, offsetof(Record, name), kind::kWidth, kind::kCount, meaning);
#define KOVA_ADD_KEY(number, name, fieldNames) AddKey(tables.back(), number, fieldNames);
#define KOVA_ADD_TABLE(id, shortName, Tag, FIELDS, KEYS, meaning)               \
  {                                                                             \
    using Record = Tag;                                                         \
    TableDef table{TableId::id, shortName, #Tag, meaning, sizeof(Tag), {}, {}}; \
    FIELDS(KOVA_ADD_FIELD)                                                      \
    tables.push_back(std::move(table));                                         \
    KEYS(KOVA_ADD_KEY)                                                          \
  }
#define KOVA_COUNT_TABLE(...) +1
  tables.reserve(0 KOVA_TABLES(KOVA_COUNT_TABLE));  // keys point at fields: the tables must not move
#undef KOVA_COUNT_TABLE
  KOVA_TABLES(KOVA_ADD_TABLE)
#undef KOVA_ADD_TABLE
#undef KOVA_ADD_KEY
#undef KOVA_ADD_FIELD
  return tables;
}

std::vector<TableDef> MakeJournals() {
  static std::vector<std::string> names;
  names.reserve(AllTables().size());  // the definitions point at them
  std::vector<TableDef> journals;
  for (const TableDef& table : AllTables()) {
    names.push_back("journal_" + std::string(table.name));
    TableDef journal = table;
    journal.name = names.back();
    journal.part = names.back();
    journal.keys.clear();
    journal.exactSize = table.recordSize;
    for (const auto& [name, width] : {std::pair("seconds", 24), {"workstation", 64}, {"deed", 8}}) {
      AddField(journal.fields, name, FieldKind::kText, journal.recordSize, static_cast<std::size_t>(width), 1, "");
      journal.recordSize += static_cast<std::size_t>(width);
    }
    journals.push_back(std::move(journal));
  }
  return journals;
}

}  // namespace

int TableDef::FindKey(int number) const {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i].number == number) return static_cast<int>(i);
  }
  return -1;
}

const FieldDef* TableDef::FindField(std::string_view fieldName) const {
  for (const FieldDef& field : fields) {
    if (field.name == fieldName) return &field;
  }
  return nullptr;
}

std::span<const TableDef> AllTables() {
  static const std::vector<TableDef> tables = MakeTables();
  return tables;
}

const TableDef& GetTable(TableId id) { return AllTables()[static_cast<std::size_t>(id)]; }

const TableDef& JournalOf(TableId table) {
  static const std::vector<TableDef> journals = MakeJournals();
  return journals[static_cast<std::size_t>(table)];
}

const TableDef* FindTable(std::string_view name) {
  for (const TableDef& table : AllTables()) {
    if (table.name == name) return &table;
  }
  return nullptr;
}

std::optional<TableDef> PartOfTable(const TableDef& table, std::string_view names) {
  std::vector<const FieldDef*> wanted = FieldsOf(table, names);
  if (std::count(wanted.begin(), wanted.end(), nullptr) != 0) return std::nullopt;
  for (const KeyDef& key : table.keys) wanted.insert(wanted.end(), key.fields.begin(), key.fields.end());
  TableDef part = table;  // its keys go on pointing at the whole table's fields
  part.fields.clear();
  part.part = table.name;
  for (const FieldDef& field : table.fields) {
    if (std::count(wanted.begin(), wanted.end(), &field) == 0) continue;
    part.fields.push_back(field);
    part.part.append(" ").append(field.name);
  }
  return part;
}

std::string MakeKey(const KeyDef& key, const char* record) {
  std::string bytes;
  bytes.reserve(key.width);
  std::size_t end = 0;
  for (const FieldDef* field : key.fields) {
    bytes += GetText(record + field->offset, field->width);
    end += field->width;
    bytes.resize(end);
  }
  bytes.resize(bytes.find_last_not_of('\0') + 1);
  return bytes;
}

std::string LastKeyOf(const KeyDef& key, std::string_view beginning) {
  std::string last(beginning.substr(0, key.width));
  last.resize(key.width, '\xFF');
  return last;
}

std::string_view GetText(const char* field, std::size_t width) {
  const void* terminator = std::memchr(field, 0, width);
  if (terminator == nullptr) return {field, width};
  return {field, static_cast<std::size_t>(static_cast<const char*>(terminator) - field)};
}

void PutText(char* field, std::size_t width, std::string_view text) {
  const std::string_view cut = text932::CutAtCharacter(text.substr(0, text.find('\0')), width - 1);
  std::memset(field, 0, width);
  std::memcpy(field, cut.data(), cut.size());
}

}  // namespace kova::store
