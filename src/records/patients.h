#pragma once

#include <string_view>

#include "platform/recordstore/kovadbcall.h"

namespace kova::records {

/// The name that a patient is shown with: the other one where the first is empty.
inline std::string_view ShownName(const tagPATIENTDB& patient) {
  const std::string_view name = store::GetText(patient.name);
  return name.empty() ? store::GetText(patient.otherName) : name;
}

}  // namespace kova::records
