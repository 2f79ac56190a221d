#include "hosts/kovacall/table_page.h"

namespace kova::hosts {
namespace {

using store::FieldDef;
using store::FieldKind;
using store::KeyDef;
using store::TableDef;

std::string TypeOf(const FieldDef& field) {
  if (field.kind == FieldKind::kInt32) return "32-bit signed";
  if (field.kind == FieldKind::kUInt8) return "8-bit unsigned";
  return "text, " + std::to_string(field.width - 1) + " bytes";
}

void AppendTable(const TableDef& table, std::string& page) {
  page += "\n## " + std::string(table.name) + "\n\n`" + std::string(table.structure) + "`, " +
          std::to_string(table.recordSize) + " bytes: " + std::string(table.meaning) +
          ".\n\n| Field | Type | Offset | Width | Meaning |\n|---|---|---:|---:|---|\n";
  for (const FieldDef& field : table.fields) {
    page += "| `" + field.name + "` | " + TypeOf(field) + " | " + std::to_string(field.offset) + " | " +
            std::to_string(field.width) + " | " + std::string(field.meaning) + " |\n";
  }
  page += "\n| Key | Fields | Width |\n|---:|---|---:|\n";
  for (const KeyDef& key : table.keys) {
    page += "| " + std::to_string(key.number) + " | `" + std::string(key.fieldNames) + "` | " +
            std::to_string(key.width) + " |\n";
  }
}

}  // namespace

std::string TablePage(std::span<const TableDef> tables) {
  std::string page =
      "# Tables of the record store\n\n"
      "Made by `kovacall tables` from the declarations in `platform/recordstore/tables/`; do not edit.\n\n"
      "Texts are code page 932; a field's width counts its terminator. A key buffer holds the key's fields\n"
      "one behind the other, each at its full width and filled with zeros. Key 0 is the primary key, the "
      "only\n"
      "unique one.\n\n";
  for (const TableDef& table : tables)
    page += "- [" + std::string(table.name) + "](#" + std::string(table.name) +
            "): " + std::string(table.meaning) + "\n";
  for (const TableDef& table : tables) AppendTable(table, page);
  return page;
}

}  // namespace kova::hosts
