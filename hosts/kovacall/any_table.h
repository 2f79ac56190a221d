#pragma once

// One record of any table, by the names of its fields.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

/// The value of a field: UTF-8 on one line (see ShowControls), or a number in decimal.
std::string ShowField(const store::FieldDef& field, const char* record);

/// Puts a value into a field. Throws UsageError when it does not fit: a text longer than the field, text that
/// code page 932 cannot hold, a bad number.
void AssignField(const store::FieldDef& field, std::string_view utf8, char* record);

/// The same for an argument "field=value"; UsageError also when no field of `fields` has that name. `what`
/// names the record.
void AssignArgument(std::span<const store::FieldDef> fields, std::string_view what, std::string_view argument,
                    char* record);

/// A table object whose table is known at run time only.
class AnyTable : private std::vector<char>, public CBaseDBCall {
 public:
  explicit AnyTable(const store::TableDef& table)
      : vector(table.recordSize), CBaseDBCall(table.id, data(), nullptr, 0) {}
  int GetPrimeKeyFromBuffer() override { return PrimeKeyFromBuffer(); }

  char* Record() { return data(); }
  const char* Record() const { return data(); }
};

}  // namespace kova::hosts
