#pragma once

// The master tables of the sample practice.

#include <span>

#include "hosts/console/practice.h"

namespace kova::sample {

struct FeeCategory {
  const char* code;
  const char* name;
  bool reducedRate;
  const char* taxType;  // "1" not taxed, "2" taxed, "" as the practice's setting says
  const char* receiptCategory;
};

struct FeeItem {
  const char* category;
  const char* code;
  const char* name;
  int price;  // yen, or points of an insured item
  bool reducedRate;
};

inline constexpr const char* kInsuredCategory = "03";

std::span<const FeeCategory> FeeCategories();
/// What a fee is taken for at a visit: everything but insured treatment.
std::span<const FeeItem> FeeItems();
/// Insured treatment, priced in points.
std::span<const FeeItem> InsuredItems();
const FeeCategory& CategoryOf(const FeeItem& item);

inline constexpr int kDoctors = 5;
inline constexpr int kStaff = 12;
inline constexpr int kReservationTypes = 6;
inline constexpr int kReasons = 8;
/// Stages of class 5, in their order on the board.
inline constexpr const char* kStages[] = {"10", "20", "30"};

void WriteMasters(CKovaDBSys& db, int units);

}  // namespace kova::sample
