#include "hosts/kovacall/any_table.h"

#include <cstdint>
#include <cstring>
#include <limits>

#include "hosts/console/console.h"
#include "platform/text932/cp932.h"

namespace kova::hosts {

using store::FieldDef;
using store::FieldKind;

std::string ShowField(const FieldDef& field, const char* record) {
  const char* bytes = record + field.offset;
  if (field.kind == FieldKind::kText)
    return ShowControls(text932::ToUtf8(store::GetText(bytes, field.width)));
  if (field.kind == FieldKind::kUInt8) return std::to_string(static_cast<unsigned char>(*bytes));
  std::int32_t number = 0;
  std::memcpy(&number, bytes, sizeof number);
  return std::to_string(number);
}

void AssignField(const FieldDef& field, std::string_view utf8, char* record) {
  char* bytes = record + field.offset;
  if (field.kind == FieldKind::kUInt8) {
    *bytes = static_cast<char>(NumberArgument(utf8, field.name, 0, 255));
  } else if (field.kind == FieldKind::kInt32) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto number =
        static_cast<std::int32_t>(NumberArgument(utf8, field.name, Limits::min(), Limits::max()));
    std::memcpy(bytes, &number, sizeof number);
  } else {
    const std::string text = TextArgument(utf8, field.name);
    if (text.size() >= field.width) {
      throw UsageError(field.name + ": \"" + ShowControls(utf8) + "\" is longer than " +
                       std::to_string(field.width - 1) + " bytes");
    }
    store::PutText(bytes, field.width, text);
  }
}

void AssignArgument(std::span<const FieldDef> fields, std::string_view what, std::string_view argument,
                    char* record) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string_view::npos)
    throw UsageError("\"" + ShowControls(argument) + "\" is not of the form field=value");
  const std::string_view name = argument.substr(0, equals);
  for (const FieldDef& field : fields) {
    if (field.name == name) return AssignField(field, argument.substr(equals + 1), record);
  }
  throw UsageError(std::string(what) + " has no field \"" + ShowControls(name) + "\"");
}

}  // namespace kova::hosts
