#pragma once

#include <deque>
#include <string_view>
#include <vector>

#include "foundation/settings.h"
#include "platform/recordstore/kovadbcall.h"
#include "printing/receipt.h"

namespace kova::printing {

/// A receipt with the lines that it points to.
class PreparedReceipt {
 public:
  PreparedReceipt() = default;
  PreparedReceipt(const PreparedReceipt&) = delete;
  PreparedReceipt& operator=(const PreparedReceipt&) = delete;

  _TMPSALEITEM& AddLine();
  _TMPRECEIPT receipt{};

 private:
  std::deque<_TMPSALEITEM> lines_;
  std::vector<_TMPSALEITEM*> pointers_;
};

/// The receipt of a sale that is stored, with its items, its charge and its patient. The amounts are those of
/// the items and of the tax that was booked, so that it adds up. Gives the record store's result; other than
/// 0 when there is no such sale or its items cannot be read. What else is missing is empty.
///
/// @param today  YYYYMMDD, the day on which it is issued
[[nodiscard]] int ReadReceiptOfSale(CKovaDBSys* db, const foundation::SettingsSnapshot& settings,
                                    std::string_view saleNumber, std::string_view today,
                                    PreparedReceipt& prepared);

}  // namespace kova::printing
