#include "platform/recordstore/record_text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/text932/cp932.h"

namespace kova::store {
namespace {

bool ComesBack(std::string_view utf8, std::string_view bytes) {
  if (utf8.size() == bytes.size()) return true;  // only ASCII keeps its length
  char back[1024];
  if (bytes.size() > sizeof back) return false;
  const std::size_t length = text932::FromUtf8Into(utf8, back, bytes.size());
  return std::string_view(back, length) == bytes;
}

bool ZeroBehind(const char* field, std::size_t textLength, std::size_t width) {
  return std::all_of(field + textLength, field + width, [](char c) { return c == 0; });
}

}  // namespace

void ToColumns(const TableDef& table, const char* record, RecordColumns& columns) {
  columns.exact = true;
  columns.texts.resize(table.fields.size());
  std::size_t used = 0;
  for (const FieldDef& field : table.fields) {
    if (field.kind != FieldKind::kText) continue;
    const char* bytes = record + field.offset;
    const std::string_view text = GetText(bytes, field.width);
    std::string& utf8 = columns.texts[used++];
    utf8.clear();
    text932::AppendUtf8(text, utf8);
    if (!ComesBack(utf8, text) || !ZeroBehind(bytes, text.size(), field.width)) columns.exact = false;
  }
}

void TextFromColumn(std::string_view utf8, const char* exactField, char* field, std::size_t width) {
  if (exactField != nullptr && text932::ToUtf8(GetText(exactField, width)) == utf8) {
    std::memcpy(field, exactField, width);
    return;
  }
  // A column may end in a terminator of its own when another tool wrote it; the field ends there.
  const std::size_t length = text932::FromUtf8Into(utf8.substr(0, utf8.find('\0')), field, width);
  std::memset(field + length, 0, width - length);
}

void TextFromColumn(std::u16string_view utf16, const char* exactField, char* field, std::size_t width) {
  if (exactField != nullptr && text932::ToUtf16(GetText(exactField, width)) == utf16) {
    std::memcpy(field, exactField, width);
    return;
  }
  const std::size_t length = text932::FromUtf16Into(utf16.substr(0, utf16.find(u'\0')), field, width);
  std::memset(field + length, 0, width - length);
}

void NumberFromColumn(long long value, FieldKind kind, char* field) {
  if (kind == FieldKind::kUInt8) {
    *reinterpret_cast<std::uint8_t*>(field) = static_cast<std::uint8_t>(std::clamp(value, 0LL, 255LL));
    return;
  }
  using Limits = std::numeric_limits<std::int32_t>;
  const auto number = static_cast<std::int32_t>(
      std::clamp(value, static_cast<long long>(Limits::min()), static_cast<long long>(Limits::max())));
  std::memcpy(field, &number, sizeof number);
}

long long NumberOfField(FieldKind kind, const char* field) {
  if (kind == FieldKind::kUInt8) return *reinterpret_cast<const std::uint8_t*>(field);
  std::int32_t number = 0;
  std::memcpy(&number, field, sizeof number);
  return number;
}

}  // namespace kova::store
