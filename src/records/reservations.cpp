#include "records/reservations.h"

#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"

namespace kova::records {

int ReadReservationsOfDay(CKovaDBSys* db, std::string_view date, std::vector<tagRESERVATION>& reservations) {
  reservations.clear();
  store::On<CReservationDB> table(db);
  const int result =
      store::Walk(table, CReservationDB::Key::ByDateAndTime, {date}, [&](const tagRESERVATION& reservation) {
        if (TakesPlace(reservation)) reservations.push_back(reservation);
      });
  if (result != 0) reservations.clear();
  return result;
}

}  // namespace kova::records
