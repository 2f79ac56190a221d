#pragma once

// Records as database columns: texts in Unicode, and the exact bytes beside them where Unicode does not give
// them back. The same for every engine.

#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/schema.h"

namespace kova::store {

/// A record's text fields as UTF-8, in the order of its fields (integers are skipped).
struct RecordColumns {
  std::vector<std::string> texts;
  /// False when a text does not come back byte for byte: bytes behind the terminator, or characters that the
  /// code page holds twice. The record's own bytes are then stored too.
  bool exact = true;
};

/// Fills `columns`, reusing its storage.
void ToColumns(const TableDef& table, const char* record, RecordColumns& columns);

/// Puts a column's text into a field. `exactField` is the field in the stored bytes, or null: its bytes are
/// taken when they still say what the column says, so that a column edited with another tool wins.
void TextFromColumn(std::string_view utf8, const char* exactField, char* field, std::size_t width);
/// The same from UTF-16.
void TextFromColumn(std::u16string_view utf16, const char* exactField, char* field, std::size_t width);

/// Puts a column's number into a field, limited to what the field holds.
void NumberFromColumn(long long value, FieldKind kind, char* field);
long long NumberOfField(FieldKind kind, const char* field);

}  // namespace kova::store
