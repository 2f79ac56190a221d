#pragma once

// The tables as data: what the engine lays out, what `kovacall` prints and what the documents list, derived
// from the field and key lists in tables/.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/field_types.h"
#include "platform/recordstore/kovadbcall_export.h"

namespace kova::store {

/// One field of a record; a list of texts appears as one field for each text, with its number behind the
/// name.
struct FieldDef {
  std::string name;  ///< in code, documents and as column name
  FieldKind kind;
  std::size_t offset;  ///< in the record structure
  std::size_t width;   ///< bytes, a text's terminator included
  std::string_view meaning;
};

/// An index. Key bytes are the fields one behind the other, each at its full width, compared byte by byte.
struct KeyDef {
  int number;                   ///< as SetKey takes it
  std::string_view fieldNames;  ///< separated by blanks
  std::vector<const FieldDef*> fields;
  std::size_t width;  ///< of a full key buffer, in bytes
};

enum class TableId : int;

struct TableDef {
  TableId id;
  std::string_view name;       ///< short name, the table's name in the database
  std::string_view structure;  ///< name of the record structure
  std::string_view meaning;
  std::size_t recordSize;
  std::vector<FieldDef> fields;
  std::vector<KeyDef> keys;  ///< the first is the primary key, number 0
  /// Names a definition that is not a table's own: of PartOfTable, table and fields; of JournalOf, the journal.
  std::string part = {};
  /// The record's bytes that are stored beside its columns, as far as they are; the fields behind have none.
  std::size_t exactSize = recordSize;

  /// The key of that number, as an index into `keys`; -1 when there is none.
  KOVADBCALL_API int FindKey(int number) const;
  /// Null when the record has no such field.
  KOVADBCALL_API const FieldDef* FindField(std::string_view fieldName) const;
};

/// All tables, in the order of their ids.
KOVADBCALL_API std::span<const TableDef> AllTables();
KOVADBCALL_API const TableDef& GetTable(TableId id);
/// By short name; null when there is none.
KOVADBCALL_API const TableDef* FindTable(std::string_view name);

/// The table with some of its fields, by name with blanks between, and those of its keys. Its records are as
/// long, with zeros for the fields that are left out. Nothing when it has no field of a name.
std::optional<TableDef> PartOfTable(const TableDef& table, std::string_view names);

/// The journal of a table: what its records were before each overwriting and deletion. A record of it is the table's
/// and, behind that, the three fields `seconds` (since 1970), `workstation` and `deed` ("u" overwritten, "d" deleted).
/// Its ids count the entries up; it has no keys.
KOVADBCALL_API const TableDef& JournalOf(TableId table);

/// The key bytes of a record: each field up to its terminator, zero-filled to its width; then trailing zeros
/// are dropped, which changes no comparison.
KOVADBCALL_API std::string MakeKey(const KeyDef& key, const char* record);

/// The largest key that begins with these bytes.
std::string LastKeyOf(const KeyDef& key, std::string_view beginning);

/// A text field's bytes up to the terminator; all of them when it has none.
KOVADBCALL_API std::string_view GetText(const char* field, std::size_t width);

/// Puts a text into a field of `width` bytes, cut at a character border so that a terminator fits; the rest
/// is zeros.
KOVADBCALL_API void PutText(char* field, std::size_t width, std::string_view text);

/// The same for a field given as array.
template <std::size_t Width>
std::string_view GetText(const char (&field)[Width]) {
  return GetText(field, Width);
}
template <std::size_t Width>
void PutText(char (&field)[Width], std::string_view text) {
  PutText(field, Width, text);
}

}  // namespace kova::store
