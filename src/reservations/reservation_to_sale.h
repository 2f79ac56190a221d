#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/settings.h"
#include "platform/recordstore/kovadbcall.h"
#include "reservations/fee_request.h"

namespace kova::reservations {

/// The practice's tax rules on the day of a sale.
struct FeeTaxRules {
  std::int16_t roundingMode;  ///< of charges::RoundOff
  int taxMode;                ///< 1: tax is put on top of fees; any other value: none is
  double normalRate;          ///< fraction
  double reducedRate;         ///< fraction; 0.0 when the day has none
};

/// What a credit category says of its fees.
struct FeeCategory {
  bool reducedRate;  ///< goods of the reduced rate
  char taxType;      ///< '1' not taxed, '2' taxed, else as the practice's setting says
};

/// What a credit item says.
struct FeeItem {
  bool reducedRate;
  std::string name;
};

struct SaleOfFee {
  tagSALE sale;
  tagSALEITEM item;
};

/// The sale and its one item for a fee, without numbers. Nothing for a category or item that was not found.
/// Amounts are 32-bit and wrap around; fields that say nothing of a fee are zero.
SaleOfFee MakeSaleOfFee(const tagFEEREQUEST& request, const FeeTaxRules& rules,
                        const std::optional<FeeCategory>& category, const std::optional<FeeItem>& item);

FeeTaxRules ReadFeeTaxRules(const foundation::SettingsSnapshot& settings, std::string_view saleDate);

/// Reads category and item, makes the sale and stores it with its item, both or neither. Writes the new
/// sale's number into the request, empty when it was not stored. Gives the record store's result, 0 for
/// success; a failed read of category, item or settings (NoSettings) stores nothing.
int ReservationToSale(const foundation::SettingsSnapshot& settings, CKovaDBSys* db, tagFEEREQUEST& request);

}  // namespace kova::reservations
