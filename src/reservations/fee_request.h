#pragma once

#include <cstdint>

#include "platform/recordstore/kovadbcall.h"

/// What a host hands over to have the fee of a reservation turned into a sale. Texts are code page 932,
/// zero-terminated within their fields.
struct tagFEEREQUEST {
  char patientCode[21];     ///< patient, copied into the sale
  char saleDate[9];         ///< YYYYMMDD; date of the sale, selects the tax period
  char itemCode[4];         ///< credit item of the fee
  char categoryCode[3];     ///< credit category of the fee
  char saleNumber[13];      ///< output: number of the sale made, empty when none was
  std::uint8_t noCategory;  ///< non-zero: the fee has no credit category and is not taxed
  char itemText[41];        ///< free text, copied into the sale item
  std::int32_t amount;      ///< fee in yen before tax
};

/// The request for the fee that a reservation carries, without a sale number.
inline tagFEEREQUEST FeeRequestOf(const tagRESERVATION& reservation) {
  using kova::store::GetText;
  using kova::store::PutText;
  tagFEEREQUEST fee{};
  PutText(fee.patientCode, GetText(reservation.patientCode));
  PutText(fee.saleDate, GetText(reservation.reservationDate));
  PutText(fee.categoryCode, GetText(reservation.feeCategoryCode));
  PutText(fee.itemCode, GetText(reservation.feeItemCode));
  PutText(fee.itemText, GetText(reservation.feeText));
  fee.noCategory = reservation.feeNoCategory;
  fee.amount = reservation.feeAmount;
  return fee;
}
