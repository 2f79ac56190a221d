// Records to database columns and back, and columns that another tool wrote. The first byte chooses the
// table, the rest is the record's bytes or the column's text.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/recordstore/record_text.h"
#include "platform/text932/cp932.h"

namespace {

using namespace kova::store;

void Require(bool holds) {
  if (!holds) std::abort();
}

// A record comes back byte for byte, with its own bytes stored where its texts alone do not say all.
void RecordComesBack(const TableDef& table, const std::string& record) {
  RecordColumns columns;
  ToColumns(table, record.data(), columns);
  std::string back(table.recordSize, '\0');
  std::size_t text = 0;
  for (const FieldDef& field : table.fields) {
    char* to = back.data() + field.offset;
    const char* exact = columns.exact ? nullptr : record.data() + field.offset;
    if (field.kind == FieldKind::kText) {
      TextFromColumn(columns.texts[text++], exact, to, field.width);
    } else {
      NumberFromColumn(NumberOfField(field.kind, record.data() + field.offset), field.kind, to);
    }
    Require(std::memcmp(to, record.data() + field.offset, field.width) == 0);
  }
  for (const KeyDef& key : table.keys) Require(MakeKey(key, record.data()).size() <= key.width);
}

// Whatever another tool wrote into a column fits the field, and no character of it is cut.
void ForeignTextFits(std::string_view utf8) {
  for (std::size_t width : {2u, 3u, 9u, 41u}) {
    std::string field(width + 1, '#');
    TextFromColumn(utf8, nullptr, field.data(), width);
    Require(field[width] == '#');
    const std::string_view text = GetText(field.data(), width);
    std::string again;
    Require(kova::text932::FromUtf8(kova::text932::ToUtf8(text), again));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto tables = AllTables();
  const TableDef& table = tables[data[0] % tables.size()];
  const std::string_view rest(reinterpret_cast<const char*>(data) + 1, size - 1);
  std::string record(rest.substr(0, table.recordSize));
  record.resize(table.recordSize);
  RecordComesBack(table, record);
  ForeignTextFits(rest);
  return 0;
}
