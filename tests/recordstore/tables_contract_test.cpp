// What the record store promises of single tables, and of the connection.

#include <memory>
#include <utility>
#include <vector>

#include "tests/recordstore/record_store_contract.h"

namespace kova::testing {
namespace {

// Refuses units as a node does when another one was faster.
class RefusingEngine final : public store::testing::DistantEngine {
 public:
  using DistantEngine::DistantEngine;
  int beginnings = 0, ends = 0;  // still to be refused
  int begun = 0;

  Result BeginUnit() override {
    if (beginnings > 0) {
      --beginnings;
      return Result::kConflict;
    }
    ++begun;
    return DistantEngine::BeginUnit();
  }
  Result EndUnit(bool worked) override {
    if (ends == 0 || !worked) return DistantEngine::EndUnit(worked);
    --ends;
    (void)DistantEngine::EndUnit(false);
    return Result::kConflict;
  }
};

TEST_P(RecordStore, InsertAdjustFeeNumbersAndWritesBothOrNeither) {
  On<CSaleDB> sale(db_);
  On<CSaleItemDB> items(db_);
  tagSALEITEM item{};
  CString number;
  PutText(sale.record.saleDate, "20260101");
  ASSERT_EQ(sale.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number, "000000000001");
  EXPECT_STREQ(item.saleNumber, "000000000001");
  ASSERT_EQ(sale.GetSaleData(number), 0);
  ASSERT_EQ(sale.Delete(1), 0);
  EXPECT_EQ(items.GetFIRST(), Code(Result::kEndOfTable)) << "the items went with the sale";

  // The item cannot be written: a record with its key is in the way. The sale must not stay.
  items.record = {};
  PutText(items.record.saleNumber, "000000000002");
  PutText(items.record.lineNumber, "0001");
  ASSERT_EQ(items.Insert(), 0);
  EXPECT_EQ(sale.InsertAdjustFee(number, &item, &items), Code(Result::kDuplicate));
  EXPECT_TRUE(number.IsEmpty());
  EXPECT_EQ(sale.GetFIRST(), Code(Result::kEndOfTable));
  ASSERT_EQ(items.GetFIRST(), 0);
  ASSERT_EQ(items.Delete(), 0);

  // Inside the host's transaction a failed one takes only itself back.
  ASSERT_EQ(sale.BeginTran(), 0);
  ASSERT_EQ(sale.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number, "000000000002") << "a number that was taken back is not lost";
  EXPECT_EQ(sale.InsertAdjustFee(number, nullptr, &items), Code(Result::kBadArgument));
  ASSERT_EQ(sale.EndTran(), 0);
  EXPECT_EQ(sale.GetSaleData("000000000002"), 0);

  CSaleItemDB unbound(nullptr, 0);
  EXPECT_EQ(sale.InsertAdjustFee(number, &item, &unbound), Code(Result::kBadArgument));
}

TEST_P(RecordStore, TheSpecialOperationsOfTables) {
  On<CPatientDB> patient(db_);
  CPatientDB2 second(nullptr, 0);
  PutText(patient.record.patientCode, "P1");
  ASSERT_EQ(patient.Insert(), 0);
  EXPECT_EQ(patient.GetPatientData(&second, "P1"), Code(Result::kNotFound)) << "the second half is missing";
  PutText(second.record.patientCode, "P1");
  ASSERT_EQ(second.Insert(), 0);
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  PutText(patient.record.name, "山田");
  second.record.mailPermission = 1;
  ASSERT_EQ(patient.UpdatePatientData(&second, UPDATE_IF_UNCHANGED), 0);
  second.record = {};
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  EXPECT_EQ(second.record.mailPermission, 1);

  PutReservation(db_, "1", "20260101", "0900");
  On<CReservationStandbyDB> standby(db_);
  for (const char* number : {"S1", "S2"}) {
    PutText(standby.record.standbyNumber, number);
    PutText(standby.record.reservationNumber, "1");
    ASSERT_EQ(standby.Insert(), 0);
  }
  ASSERT_EQ(standby.GetReservationStandbyDataFromReservationKey("1"), 0);
  EXPECT_STREQ(standby.record.standbyNumber, "S1");
  On<CReservationDB> reservation(db_);
  ASSERT_EQ(reservation.GetReservationData("1"), 0);
  ASSERT_EQ(reservation.Delete(), 0);
  EXPECT_EQ(standby.GetFIRST(), Code(Result::kEndOfTable)) << "its places on the waiting list went with it";

  On<CChargeDB> charge(db_);
  PutText(charge.record.chargeNumber, "1");
  charge.record.receipted = 1;
  ASSERT_EQ(charge.Insert(), 0);
  EXPECT_EQ(charge.Delete(0), Code(Result::kReceipted));
  EXPECT_EQ(charge.Delete(1), 0);
}

TEST_P(RecordStore, AUnitIsRetriedButNotInTheHostsTransaction) {
  RefusingEngine* engine = nullptr;
  store::testing::EngineOf::Wrap(db_, [&](std::unique_ptr<store::Engine> wrapped) {
    auto refusing = std::make_unique<RefusingEngine>(std::move(wrapped));
    engine = refusing.get();
    return refusing;
  });
  On<CPatientDB> patient(db_);
  On<CPatientDB2> second(db_);
  PutText(patient.record.patientCode, "P1");
  PutText(second.record.patientCode, "P1");
  ASSERT_EQ(patient.Insert(), 0);
  ASSERT_EQ(second.Insert(), 0);
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  // Each attempt compares with what was read, not with what a refused one wrote.
  second.record.mailPermission = 1;
  engine->beginnings = 2;
  engine->ends = 2;
  EXPECT_EQ(patient.UpdatePatientData(&second, UPDATE_IF_UNCHANGED), 0);
  EXPECT_EQ(engine->begun, 3);

  second.record.mailPermission = 2;
  engine->begun = 0;
  engine->ends = 1;
  ASSERT_EQ(patient.BeginTran(), 0);
  EXPECT_EQ(patient.UpdatePatientData(&second, UPDATE_IF_UNCHANGED), Code(Result::kConflict));
  EXPECT_EQ(engine->begun, 1);
  ASSERT_EQ(patient.AbortTran(), 0);
  ASSERT_EQ(patient.GetPatientData(&second, "P1"), 0);
  EXPECT_EQ(second.record.mailPermission, 1);
}

TEST_P(RecordStore, SumsOfASale) {
  On<CSaleItemDB> items(db_);
  const struct {
    const char* line;
    std::uint8_t insured, reduced;
    std::int32_t unitPrice, quantity, amount;
  } lines[] = {{"0001", 1, 0, 234, 2, 0}, {"0002", 0, 0, 500, 2, 1000}, {"0003", 0, 1, 300, 1, 300}};
  for (const auto& line : lines) {
    items.record = {};
    PutText(items.record.saleNumber, "000000000007");
    PutText(items.record.lineNumber, line.line);
    items.record.insuranceItem = line.insured;
    items.record.reducedRate = line.reduced;
    items.record.unitPrice = line.unitPrice;
    items.record.quantity = line.quantity;
    items.record.amount = line.amount;
    ASSERT_EQ(items.Insert(), 0);
  }
  tagSALE sale{};
  PutText(sale.saleNumber, "000000000007");
  sale.tax = 124;
  sale.insuredAmount = 1400;
  sale.discount = 24;
  long points = -1, selfPaid = -1, reduced = -1, tax = -1, total = -1;
  ASSERT_EQ(CSaleDB::CalcSum(&sale, &items, &points, &selfPaid, &reduced, &tax, &total), 0);
  EXPECT_EQ((std::vector<long>{points, selfPaid, reduced, tax, total}),
            (std::vector<long>{468, 1300, 300, 124, 2800}));
}

TEST_P(RecordStore, WhatAConnectionKeepsLivesUntilItIsClosed) {
  static int alive = 0;
  struct Kept : CKovaKept {
    Kept() { ++alive; }
    ~Kept() override { --alive; }
  };
  auto* first = new Kept;
  db_.SetKept("postal codes", first);
  EXPECT_EQ(db_.GetKept("postal codes"), first);
  EXPECT_EQ(db_.GetKept("categories"), nullptr);
  db_.SetKept("postal codes", new Kept);
  EXPECT_EQ(alive, 1);
  db_.CloseDB();
  EXPECT_EQ(alive, 0);
}

TEST(Schema, KeyWidthsThatHostsRelyOn) {
  const struct {
    const char* table;
    int key;
    std::size_t width;
  } widths[] = {{"saleitem", 0, 18}, {"patient", 0, 21},  {"patient2", 0, 21},    {"patient", 1, 41},
                {"patient", 2, 41},  {"patient", 3, 21},  {"reservation", 6, 14}, {"category", 1, 8},
                {"doctor", 1, 6},    {"customtbl", 1, 13}};
  for (const auto& each : widths) {
    const kova::store::TableDef* table = kova::store::FindTable(each.table);
    ASSERT_NE(table, nullptr) << each.table;
    const int index = table->FindKey(each.key);
    ASSERT_GE(index, 0) << each.table;
    EXPECT_EQ(table->keys[static_cast<std::size_t>(index)].width, each.width)
        << each.table << " key " << each.key;
  }
}

}  // namespace
}  // namespace kova::testing
