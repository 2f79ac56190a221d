// What the record store promises to two workstations: no write hits a record that it was not meant for.

#include <cstdint>
#include <string>

#include "tests/recordstore/record_store_contract.h"

namespace kova::testing {
namespace {

class Desks : public RecordStore {
 protected:
  void SetUp() override {
    RecordStore::SetUp();
    ASSERT_EQ(other_.OpenDB(folder_.Path().c_str()), 0) << other_.GetProblem();
  }
  static std::string NameOf(CKovaDBSys& db, const char* code) {
    On<CCategoryDB> table(db);
    const int found = table.GetCategoryData("1", code);
    return found == 0 ? std::string(GetText(table.record.name)) : "result " + std::to_string(found);
  }

  CKovaDBSys other_;
};

TEST_P(Desks, ADeletedRecordsPlaceIsNeverAnothers) {
  On<CCategoryDB> mine(db_), theirs(other_);
  for (const bool deletes : {false, true}) {
    PutCategory(db_, "1", "09", "mine");
    ASSERT_EQ(mine.GetCategoryData("1", "09"), 0);
    ASSERT_EQ(theirs.GetCategoryData("1", "09"), 0);
    ASSERT_EQ(theirs.Delete(), 0);
    PutCategory(other_, "1", "10", "theirs");
    PutText(mine.record.name, "late");
    EXPECT_EQ(deletes ? mine.Delete() : mine.Update(), Code(Result::kChanged));
    EXPECT_EQ(NameOf(db_, "10"), "theirs");
    ASSERT_EQ(theirs.GetCategoryData("1", "10"), 0);
    ASSERT_EQ(theirs.Delete(), 0);
  }
}

TEST_P(Desks, AWalkFromADeletedRecordMeetsTheNextOneOfItsKey) {
  PutReservation(db_, "1", "20260102", "0900");
  PutReservation(db_, "2", "20260102", "0900");
  On<CReservationDB> mine(db_), theirs(other_);
  ASSERT_EQ(mine.SetKey(6), 0);
  mine.SetKeyBuffer("20260102", 8);
  ASSERT_EQ(mine.GetEQ(), 0);
  ASSERT_EQ(mine.GetNEXT(), 0);
  ASSERT_EQ(theirs.GetReservationData("2"), 0);
  ASSERT_EQ(theirs.Delete(), 0);
  PutReservation(other_, "3", "20260102", "0900");
  (void)mine.SetKey(0);  // what was read ahead is dropped, the place is kept
  (void)mine.SetKey(6);
  ASSERT_EQ(mine.GetNEXT(), 0);
  EXPECT_STREQ(mine.record.reservationNumber, "3");
}

TEST_P(Desks, ATransactionReadsNothingOlderThanItsBeginning) {
  for (const char* code : {"10", "11", "12", "13", "14", "15"}) PutCategory(db_, "1", code, "old");
  On<CCategoryDB> mine(db_), theirs(other_);
  ASSERT_EQ(mine.GetFIRST(), 0);
  ASSERT_EQ(mine.GetNEXT(), 0);  // from here on records are read ahead
  ASSERT_EQ(theirs.GetCategoryData("1", "12"), 0);
  PutText(theirs.record.name, "theirs");
  ASSERT_EQ(theirs.Update(), 0);
  ASSERT_EQ(theirs.GetCategoryData("1", "13"), 0);
  ASSERT_EQ(theirs.Delete(), 0);
  ASSERT_EQ(mine.BeginTran(), 0);
  ASSERT_EQ(mine.GetNEXT(), 0);
  EXPECT_STREQ(mine.record.name, "theirs");
  ASSERT_EQ(mine.GetNEXT(), 0);
  EXPECT_STREQ(mine.record.code, "14");
  ASSERT_EQ(mine.EndTran(), 0);
}

TEST_P(Desks, ARecordThatWasNotKeptIsNoCurrentRecord) {
  On<CCategoryDB> inserted(db_), read(db_), kept(db_);
  PutText(kept.record.classCode, "1");
  PutText(kept.record.code, "05");
  PutText(kept.record.name, "kept");
  ASSERT_EQ(kept.Insert(), 0);
  ASSERT_EQ(inserted.BeginTran(), 0);
  PutText(inserted.record.classCode, "1");
  PutText(inserted.record.code, "10");
  ASSERT_EQ(inserted.Insert(), 0);
  ASSERT_EQ(read.GetCategoryData("1", "10"), 0);
  ASSERT_EQ(inserted.AbortTran(), 0);
  PutCategory(other_, "1", "11", "theirs");
  PutText(inserted.record.name, "mine");
  PutText(read.record.name, "mine");
  EXPECT_EQ(inserted.Update(), Code(Result::kNoRecord));
  EXPECT_EQ(read.Delete(), Code(Result::kNoRecord));
  EXPECT_EQ(NameOf(db_, "11"), "theirs");
  EXPECT_EQ(kept.Update(), 0) << "one that was there before is";
}

// Of a unit that was taken back within a host's transaction; what the host inserted before it stays.
TEST_P(Desks, AFailedSaleIsNoCurrentRecord) {
  On<CSaleDB> sale(db_), first(db_);
  On<CSaleItemDB> items(db_);
  CString number;
  tagSALEITEM item{};
  PutText(items.record.saleNumber, "000000000002");  // in the way of the second sale's item
  PutText(items.record.lineNumber, "0001");
  ASSERT_EQ(items.Insert(), 0);
  ASSERT_EQ(sale.BeginTran(), 0);
  ASSERT_EQ(first.InsertAdjustFee(number, &item, &items), 0);
  ASSERT_EQ(sale.InsertAdjustFee(number, &item, &items), Code(Result::kDuplicate));
  EXPECT_STREQ(number.GetString(), "");
  PutText(sale.record.patientCode, "never");
  EXPECT_EQ(sale.Update(UPDATE_ALWAYS), Code(Result::kNoRecord));
  PutText(first.record.patientCode, "first");
  EXPECT_EQ(first.Update(UPDATE_ALWAYS), 0);
  ASSERT_EQ(sale.EndTran(), 0);
  ASSERT_EQ(sale.GetSaleData("000000000001"), 0);
  EXPECT_STREQ(sale.record.patientCode, "first");
}

TEST_P(Desks, DeletionsGoByTheStoredRecordNotByTheBuffer) {
  On<CSaleDB> sales(db_);
  On<CSaleItemDB> items(db_);
  CString numbers[2];
  tagSALEITEM item{};
  for (CString& number : numbers) ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  ASSERT_EQ(sales.GetSaleData("000000000001"), 0);
  PutText(sales.record.saleNumber, "000000000002");
  ASSERT_EQ(sales.Delete(1), 0);
  ASSERT_EQ(items.GetFIRST(), 0);
  EXPECT_STREQ(items.record.saleNumber, "000000000002");
  EXPECT_EQ(items.GetNEXT(), Code(Result::kEndOfTable));
  EXPECT_EQ(sales.GetSaleData("000000000002"), 0);

  On<CReservationDB> reservations(db_);
  On<CReservationStandbyDB> standbys(db_);
  for (const char* number : {"7", "8"}) {
    PutReservation(db_, number, "20260102", "0900");
    PutText(standbys.record.standbyNumber, number);
    PutText(standbys.record.reservationNumber, number);
    ASSERT_EQ(standbys.Insert(), 0);
  }
  ASSERT_EQ(reservations.GetReservationData("7"), 0);
  PutText(reservations.record.reservationNumber, "8");
  ASSERT_EQ(reservations.Delete(), 0);
  EXPECT_NE(standbys.GetReservationStandbyDataFromReservationKey("7"), 0);
  EXPECT_EQ(standbys.GetReservationStandbyDataFromReservationKey("8"), 0);

  // A charge that another workstation gave a receipt for meanwhile, whatever the buffer says.
  On<CChargeDB> charge(db_), theirs(other_);
  PutText(charge.record.chargeNumber, "1");
  ASSERT_EQ(charge.Insert(), 0);
  ASSERT_EQ(theirs.GetFIRST(), 0);
  theirs.record.receipted = 1;
  ASSERT_EQ(theirs.Update(), 0);
  EXPECT_EQ(charge.Delete(0), Code(Result::kReceipted));
  EXPECT_EQ(theirs.GetFIRST(), 0);
  EXPECT_EQ(charge.Delete(1), 0);
}

TEST_P(Desks, SaleNumbersGoOnBehindThoseThatAHostGave) {
  On<CSaleDB> sales(db_), host(other_);
  On<CSaleItemDB> items(db_);
  CString number;
  tagSALEITEM item{};
  const auto put = [&](const char* taken) {
    PutText(host.record.saleNumber, taken);
    ASSERT_EQ(host.Insert(), 0);
  };
  for (const char* taken : {"000000000001", "000000000002", "000000000041", "S-7"}) put(taken);
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number.GetString(), "000000000042");
  // The largest by its bytes says nothing: they are counted through.
  for (const char* taken : {"000000000043", "000000000044", "7"}) put(taken);
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number.GetString(), "000000000045");
  // Within a transaction, too.
  ASSERT_EQ(host.GetSaleData("7"), 0);
  ASSERT_EQ(host.Delete(0), 0);
  put("000000000046");
  put("000000000090");
  ASSERT_EQ(sales.BeginTran(), 0);
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number.GetString(), "000000000091");
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  EXPECT_STREQ(number.GetString(), "000000000092");
  ASSERT_EQ(sales.EndTran(), 0);
}

INSTANTIATE_TEST_SUITE_P(Stores, Desks, ::testing::Values(false, true),
                         [](const auto& far) { return far.param ? "Far" : "Near"; });

}  // namespace
}  // namespace kova::testing
