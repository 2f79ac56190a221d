#pragma once

// A practice of two patients and one day, in a real database, for tests.

#include <string>

#include "platform/recordstore/kovadbcall.h"
#include "platform/recordstore/table.h"

namespace kova::visitflow::testing {

using store::On;

inline constexpr const char* kDay = "20261122";

inline int PutReservation(CKovaDBSys& db, const char* key, const char* date, const char* time,
                          const char* patient, const char* stageCode = "", bool fee = false, int status = 0) {
  On<CReservationDB> table(db);
  store::PutText(table.record.reservationNumber, key);
  store::PutText(table.record.reservationDate, date);
  store::PutText(table.record.startTime, time);
  store::PutText(table.record.patientCode, patient);
  store::PutText(table.record.stageCode, stageCode);
  table.record.visited = stageCode[0] != 0;
  table.record.status = static_cast<std::uint8_t>(status);
  table.record.hasFee = fee ? 1 : 0;
  table.record.feeNoCategory = 1;
  table.record.feeAmount = 1080;
  return table.Insert();
}

/// Stages A10 and B20 and a retired one; patients 0001 and 0002. On the day, in order of time: 1 with a fee,
/// 2 without, both of patient 0001; 3 of patient 0002 and in stage 20; 4 cancelled; 5 of a patient who does
/// not exist. Patient 0001 was finished on 20261005 and, says the record, on 20261101.
inline int FillPractice(CKovaDBSys& db) {
  int result = 0;
  for (const char* stage : {"10A", "20B", "15_"}) {
    On<CCategoryDB> table(db);
    store::PutText(table.record.classCode, "5");
    store::PutText(table.record.code, std::string(stage, 2));
    store::PutText(table.record.sortOrder, std::string(stage, 2));
    store::PutText(table.record.name, stage + 2);
    store::PutText(table.record.marker, stage[2] == '_' ? "__" : "");
    result |= table.Insert();
  }
  for (const char* code : {"0001", "0002"}) {
    On<CPatientDB> table(db);
    store::PutText(table.record.patientCode, code);
    store::PutText(table.record.caseNumber, code + 3);
    store::PutText(code[3] == '1' ? table.record.name : table.record.otherName, "山田");
    store::PutText(table.record.finishedDate, "20261101");
    result |= table.Insert();
  }
  result |= PutReservation(db, "90", "20261005", "0900", "0001", "01");
  result |= PutReservation(db, "91", "20261101", "0900", "0001", "20");
  result |= PutReservation(db, "92", "20261105", "0900", "0001", "01", false, 2);
  result |= PutReservation(db, "3", kDay, "1000", "0002", "20");
  result |= PutReservation(db, "2", kDay, "0930", "0001");
  result |= PutReservation(db, "1", kDay, "0900", "0001", "", true);
  result |= PutReservation(db, "4", kDay, "1030", "0001", "", false, 2);
  result |= PutReservation(db, "5", kDay, "1100", "0003");
  result |= PutReservation(db, "6", "20261123", "0900", "0001");
  return result;
}

template <typename Table>
int Count(CKovaDBSys& db) {
  On<Table> table(db);
  int count = 0;
  for (int result = table.GetFIRST(); result == 0; result = table.GetNEXT()) ++count;
  return count;
}

/// "10 0905 - v s1 1/1/0 20261101": stage code, stage time, finish time ("-" where empty), v when visited and
/// the number of the sale; how many sales, items and charges there are in all; the patient's finished date.
inline std::string StateOf(CKovaDBSys& db, const char* key) {
  On<CReservationDB> table(db);
  On<CPatientDB> patient(db);
  if (table.GetReservationData(key) != 0) return "gone";
  (void)patient.GetPatient1Data(table.record.patientCode);
  std::string state;
  for (const std::string_view value :
       {store::GetText(table.record.stageCode), store::GetText(table.record.stageTime),
        store::GetText(table.record.finishTime)})
    state.append(value.empty() ? "-" : value).append(" ");
  std::string sale(store::GetText(table.record.saleNumber));
  sale.erase(0, sale.find_first_not_of('0'));
  state += (table.record.visited != 0 ? "v s" : "s") + sale;
  state += " " + std::to_string(Count<CSaleDB>(db)) + "/" +
           std::to_string(Count<CSaleItemDB>(db)) + "/" + std::to_string(Count<CChargeDB>(db));
  return state.append(" ").append(store::GetText(patient.record.finishedDate));
}

}  // namespace kova::visitflow::testing
