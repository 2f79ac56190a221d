#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hosts/sample_practice/batch.h"
#include "hosts/sample_practice/masters.h"
#include "hosts/sample_practice/random.h"

namespace kova::sample {

/// Writes the sale of a visit that lies behind.
class SaleWriter {
 public:
  explicit SaleWriter(CKovaDBSys& db) : sales_(db), items_(db), charges_(db) {}

  /// A visit with a fee becomes a sale of that fee, as ReservationToSale would make it; one without a sale of
  /// insured treatment, most of them with a charge. Puts the sale's number into the reservation.
  void Write(tagRESERVATION& reservation, Random& random);

 private:
  /// Insured treatment of one visit.
  struct Treatment {
    std::vector<const FeeItem*> items;
    int burdenPercent;
  };
  static Treatment PickTreatment(Random& random);
  void StartSale(const tagRESERVATION& reservation, Random& random);
  void FillFee(const tagRESERVATION& reservation, tagSALEITEM& item);
  void FillInsured(const Treatment& treatment, tagSALEITEM& item);
  void AddItem(const FeeItem& insured, int burdenPercent, int line);
  void WriteCharge(const Treatment& treatment, Random& random);
  void ReadRates(std::string_view date);

  Bound<CSaleDB> sales_;
  Bound<CSaleItemDB> items_;
  Bound<CChargeDB> charges_;
  long long chargeNumber_ = 0;
  std::string ratesOf_;  // the day that the rates below are of
  double normalRate_ = 0;
  double reducedRate_ = 0;
};

}  // namespace kova::sample
