#pragma once

#include <string_view>

namespace kova::records {

// Classes of the category table (tagCATEGORY::classCode); stored, do not change.
inline constexpr std::string_view kReservationTypes = "0";
inline constexpr std::string_view kUnits = "1";
inline constexpr std::string_view kPaymentMethods = "2";
inline constexpr std::string_view kInsuranceTypes = "3";
inline constexpr std::string_view kStages = "5";

/// True for a master's record that is no longer chosen, by its marker.
inline bool IsRetired(std::string_view marker) { return marker.starts_with("__"); }

}  // namespace kova::records
