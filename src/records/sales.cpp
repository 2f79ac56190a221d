#include "records/sales.h"

#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"

namespace kova::records {

int ReadSalesOfDay(CKovaDBSys* db, std::string_view date, std::vector<tagSALE>& sales) {
  sales.clear();
  store::On<CSaleDB> table(db);
  const int result =
      store::Walk(table, CSaleDB::Key::ByDate, {date}, [&](const tagSALE& sale) { sales.push_back(sale); });
  if (result != 0) sales.clear();
  return result;
}

}  // namespace kova::records
