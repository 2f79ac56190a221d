// What is printed of a practice's records.

#include <gtest/gtest.h>

#include "platform/os/testing/temporary_folder.h"
#include "platform/recordstore/administration.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/testing/failing_reads.h"
#include "printing/next_appointments.h"
#include "printing/patient_form.h"
#include "printing/print_data_reader.h"
#include "printing/receipt_of_sale.h"
#include "printing/testing/receipt_builder.h"

namespace kova::printing {
namespace {

using store::PutText;
using store::On;
using testing::Columns;
using testing::Settings;
using Texts = std::vector<std::string>;

std::tm At(int year, int month, int day, int hour, int minute) {
  std::tm time{};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  return time;
}

class PrintedRecords : public ::testing::Test {
 protected:
  PrintedRecords() {
    EXPECT_EQ(KovaCreateDatabase(folder_.Path().c_str()), 0);
    EXPECT_EQ(db_.OpenDB(folder_.Path().c_str()), 0);
    PutText(patient_.patientCode, "P1");
    PutText(patient_.caseNumber, "00042");
    PutText(patient_.name, "山田　能");
    PutText(patient_.doctorCode, "01");
    PutText(patient_.insuranceTypeCode, "99");
    PutText(patient_.extraItems[9], "07");
    PutText(patient_.extraItems[3], "01");
    Insert<CPatientDB>(patient_);
    tagDOCTOR doctor{};
    PutText(doctor.code, "01");
    PutText(doctor.name, "表 一郎");
    Insert<CDoctorDB>(doctor);
    tagCATEGORY type{};
    PutText(type.classCode, "0");
    PutText(type.code, "01");
    PutText(type.name, "治療");
    Insert<CCategoryDB>(type);
    tagCUSTOMTBL entry{};
    PutText(entry.tableId, "09");
    PutText(entry.code, "07");
    PutText(entry.name, "紹介");
    Insert<CCustomTblDB>(entry);
  }

  template <typename Table>
  void Insert(const decltype(Table::record)& record) {
    Table table(nullptr, 0);
    Insert(table, record);
  }
  template <typename Table>
  void Insert(Table& table, const decltype(Table::record)& record) {
    ASSERT_EQ(table.SetAssociatedDB(&db_), 0);
    table.record = record;
    ASSERT_EQ(table.Insert(), 0);
  }

  void Reserve(const char* number, const char* date, const char* time, int status = 0, int visited = 0,
               const char* patient = "P1") {
    tagRESERVATION reservation{};
    PutText(reservation.reservationNumber, number);
    PutText(reservation.patientCode, patient);
    PutText(reservation.reservationDate, date);
    PutText(reservation.startTime, time);
    PutText(reservation.endTime, "1830");
    PutText(reservation.typeCode, "01");
    PutText(reservation.doctorCode, "01");
    PutText(reservation.unitCode, "88");
    reservation.status = static_cast<std::uint8_t>(status);
    reservation.visited = static_cast<std::uint8_t>(visited);
    Insert<CReservationDB>(reservation);
  }

  os::testing::TemporaryFolder folder_{"printing"};
  CKovaDBSys db_;
  tagPATIENTDB patient_{};
};

TEST_F(PrintedRecords, TheNextFourAppointments) {
  const std::tm now = At(2026, 11, 23, 10, 30);
  Reserve("1", "20261123", "1030");  // it is that time: no more to come
  Reserve("2", "20261201", "0900");
  Reserve("3", "20261123", "1031");
  Reserve("4", "20261124", "0900", 2);     // cancelled
  Reserve("5", "20261125", "0900", 1, 1);  // has come
  Reserve("6", "20261201", "0830", 1);
  Reserve("7", "20261122", "0900");
  Reserve("8", "20261124", "0800", 0, 0, "P10");
  MasterNames names(&db_);
  _NEXTCARDDATA card{};
  EXPECT_EQ(LoadNextAppointments(&db_, "P1", now, names, card), 3);
  const _NEXTCARD& first = card.appointments[0];
  EXPECT_STREQ(first.date, "2026/11/23");
  EXPECT_STREQ(first.weekday, "月");
  EXPECT_STREQ(first.start, "10:31");
  EXPECT_STREQ(first.end, "18:30");
  EXPECT_STREQ(first.type, "治療");
  EXPECT_STREQ(first.doctor, "表 一郎");
  EXPECT_STREQ(first.unit, "");
  EXPECT_STREQ(card.appointments[1].start, "08:30");
  EXPECT_STREQ(card.appointments[2].start, "09:00");
  EXPECT_STREQ(card.appointments[3].date, "");
  for (int day = 1; day <= 9; ++day)
    Reserve(std::to_string(100 + day).c_str(), ("2027010" + std::to_string(day)).c_str(), "0900");
  EXPECT_EQ(LoadNextAppointments(&db_, "P1", now, names, card), 4);
  EXPECT_STREQ(card.appointments[3].date, "2027/01/01");
  EXPECT_EQ(LoadNextAppointments(&db_, "P", now, names, card), 0);
  db_.CloseDB();
  EXPECT_EQ(LoadNextAppointments(&db_, "P1", now, names, card), -1);
}

TEST_F(PrintedRecords, ThePatientsForm) {
  Reserve("1", "20261201", "0900");
  const std::tm now = At(2026, 1, 5, 10, 30);
  PatientForm form;
  ASSERT_TRUE(ReadPatientForm(&db_, patient_, Settings(), now, form));
  const PrintData data = MakePatientData(form);
  const std::pair<int, const char*> expected[] = {{1, "00042"},
                                                  {2, "山田　能 様"},
                                                  {3, "山田　能"},
                                                  {4, "発行日 2026/ 1/ 5"},
                                                  {5, "2026/12/01"},
                                                  {6, "火"},
                                                  {7, "09:00～18:30"},
                                                  {9, "表 一郎"},
                                                  {10, "表町歯科"},
                                                  {16, "～"},
                                                  {20, "2026"},
                                                  {22, "5"},
                                                  {25, "0"},
                                                  {26, "表 一郎"},
                                                  {27, ""},
                                                  {34, ""},
                                                  {40, "紹介"},
                                                  {43, "～"},
                                                  {51, "P1"},
                                                  {52, "2026/12/01"},
                                                  {54, "09:00～18:30"},
                                                  {55, "治療"},
                                                  {59, ""},
                                                  {61, "～"},
                                                  {75, "～"},
                                                  {79, ""}};
  for (const auto& [key, value] : expected) EXPECT_EQ(data.simple.at(key), value) << key;
  PrintData read;
  EXPECT_FALSE(ReadPrintData(WritePrintData(data), read).has_value());
  EXPECT_EQ(read.simple.size(), 73u);
  EXPECT_EQ(data.simple.size(), 73u) << "every key has its field";

  db_.CloseDB();
  EXPECT_FALSE(ReadPatientForm(&db_, patient_, Settings(), now, form));
}

TEST_F(PrintedRecords, TheReceiptOfASale) {
  tagSALE sale{};
  PutText(sale.saleDate, "20261123");
  PutText(sale.patientCode, "P1");
  sale.insuredAmount = 170;
  sale.tax = 106;
  sale.normalRateTax = 100;
  sale.reducedRateTax = 6;
  sale.discount = 76;
  sale.receivedAmount = 2000;
  tagSALEITEM item{};
  PutText(item.itemName, "再診料");
  PutText(item.receiptCategoryCode, "002");
  item.insuranceItem = 1;
  item.unitPrice = 56;
  item.quantity = 1;
  item.amount = 170;
  On<CSaleDB> sales(db_);
  On<CSaleItemDB> items(db_);
  sales.record = sale;
  CString number;
  ASSERT_EQ(sales.InsertAdjustFee(number, &item, &items), 0);
  tagCREDITCATEGORY taxed{}, notTaxed{};
  PutText(taxed.code, "10");
  PutText(taxed.taxType, "2");
  PutText(notTaxed.code, "11");
  PutText(notTaxed.taxType, "1");
  Insert<CCreditCategoryDB>(taxed);
  Insert<CCreditCategoryDB>(notTaxed);
  const struct {
    const char *category, *name;
    int amount, applied, reduced;
  } lines[] = {{"10", "歯ブラシ", 1000, 0, 0},
               {"10", "ガム", 80, 0, 1},
               {"11", "診断書", 300, 0, 0},
               {"10", "材料", 500, 1, 0}};
  int line = 1;
  for (const auto& each : lines) {
    tagSALEITEM more{};
    PutText(more.saleNumber, number.GetString());
    char text[16];
    std::snprintf(text, sizeof text, "%04d", ++line);
    PutText(more.lineNumber, text);
    PutText(more.categoryCode, each.category);
    PutText(more.itemName, each.name);
    more.insuranceApplied = static_cast<std::uint8_t>(each.applied);
    more.reducedRate = static_cast<std::uint8_t>(each.reduced);
    more.unitPrice = more.amount = each.amount;
    more.quantity = 1;
    Insert(items, more);
  }
  tagCHARGE charge{};
  PutText(charge.chargeNumber, "000000000001");
  PutText(charge.saleNumber, number.GetString());
  charge.burdenPercent = 30;
  CChargeDB charges;
  Insert(charges, charge);

  PreparedReceipt prepared;
  ASSERT_EQ(ReadReceiptOfSale(&db_, Settings(), number.GetString(), "20261124", prepared), 0);
  const PrintData data = testing::DataOf(prepared.receipt);
  EXPECT_EQ(Columns(data),
            (Texts{"再診料: 56点", "歯ブラシ: 1,000", "ガム: 80", "診断書: 300", "材料(保険適用): 500",
                   "■■保険適用分合計■■: 56点 / 負担金:    670", "■■小計■■: 300", "■■10%対象(外税)■■: 1,000",
                   "■■8%対象(外税)■■: 80", "　消費税(10%,8%): 106", "■■10%対象■■: 1,044 (税込)",
                   "　消費税(10%対象): 消費税 95", "■■8%対象■■: 82 (税込)", "　消費税(8%対象): 消費税 6"}));
  EXPECT_EQ(data.simple.at(4), "\\2,080");
  EXPECT_EQ(data.simple.at(3), "山田　能 様");
  EXPECT_EQ(data.simple.at(19), "発行日: 2026.11.24");
  EXPECT_EQ(data.simple.at(39), "30%");
  EXPECT_EQ(data.simple.at(50), "284");
  sales.record = {};
  PutText(sales.record.saleDate, "19880401");  // before there was a tax
  tagSALEITEM brush{};
  PutText(brush.itemName, "歯ブラシ");
  brush.amount = 300;
  ASSERT_EQ(sales.InsertAdjustFee(number, &brush, &items), 0);
  PreparedReceipt taxFree;
  ASSERT_EQ(ReadReceiptOfSale(&db_, Settings(), number.GetString(), "20261124", taxFree), 0);
  EXPECT_EQ(Columns(testing::DataOf(taxFree.receipt)), (Texts{"歯ブラシ: 300", "■■小計■■: 300"}));
  PreparedReceipt missing;
  EXPECT_NE(ReadReceiptOfSale(&db_, Settings(), "999", "20261124", missing), 0);
  EXPECT_NE(ReadReceiptOfSale(nullptr, Settings(), number.GetString(), "20261124", missing), 0);
}

// A table that cannot be read is no receipt with a blank in it, and no shorter list of appointments.
TEST_F(PrintedRecords, AFailedReadIsNoBlank) {
  tagSALE sale{};
  PutText(sale.saleNumber, "000000000001");
  PutText(sale.patientCode, "P1");
  PutText(sale.categoryCode, "02");
  Insert<CSaleDB>(sale);
  tagSALEITEM item{};
  PutText(item.saleNumber, "000000000001");
  PutText(item.lineNumber, "0001");
  PutText(item.categoryCode, "01");
  PutText(item.itemCode, "001");
  Insert<CSaleItemDB>(item);
  Reserve("1", "20261201", "0900");
  const std::tm now = At(2026, 11, 23, 10, 30);
  for (const std::string table :
       {"", "sale", "saleitem", "charge", "patient", "owner", "category", "doctor", "creditcategory", "credititem"}) {
    CKovaDBSys db;
    ASSERT_EQ(db.OpenDB(folder_.Path().c_str()), 0);
    store::testing::FailReads(db, table);
    PreparedReceipt prepared;
    EXPECT_EQ(ReadReceiptOfSale(&db, Settings(), "000000000001", "20261124", prepared),
              table.empty() ? 0 : static_cast<int>(store::Result::kBusy))
        << table;
  }
  for (const std::string table : {"", "reservation", "doctor", "category", "customtbl"}) {
    CKovaDBSys db;
    ASSERT_EQ(db.OpenDB(folder_.Path().c_str()), 0);
    store::testing::FailReads(db, table);
    PatientForm form;
    EXPECT_EQ(ReadPatientForm(&db, patient_, Settings(), now, form), table.empty()) << table;
    if (table == "customtbl") continue;
    MasterNames names(&db);
    _NEXTCARDDATA card{};
    EXPECT_EQ(LoadNextAppointments(&db, "P1", now, names, card), table.empty() ? 1 : -1) << table;
    EXPECT_STREQ(card.appointments[0].start, table.empty() ? "09:00" : "") << table;
  }
}

}  // namespace
}  // namespace kova::printing
