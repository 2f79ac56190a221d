#include "platform/recordstore/sqlite/read_sql.h"

namespace kova::store {

std::string ReadSql(const TableDef& table, const KeyDef& key, Range range) {
  const SqlForm form;
  const std::string select = SelectSql(form, table);
  const std::string forward = OrderSql(form, key, true) + " LIMIT ?";
  const std::string backward = OrderSql(form, key, false) + " LIMIT ?";
  const std::string where = select + " WHERE " + KeyColumn(form, key);
  switch (range) {
    case Range::kFirst:
      return select + forward;
    case Range::kLast:
      return select + backward;
    case Range::kAtLeast:
      return where + " >= ?" + forward;
    case Range::kAbove:
      return where + " > ?" + forward;
    case Range::kAtMost:
      return where + " <= ?" + backward;
    case Range::kBelow:
      return where + " < ?" + backward;
    case Range::kSameAfter:
      return where + " = ? AND id > ? ORDER BY id LIMIT ?";
    case Range::kSameBefore:
      return where + " = ? AND id < ? ORDER BY id DESC LIMIT ?";
  }
  return {};
}

std::string ChangeStampsSql(std::size_t tables) {
  std::string sql = "SELECT 0";
  for (std::size_t i = 0; i < tables; ++i) sql += " + (SELECT stamp FROM change_stamp WHERE tableName = ?)";
  return sql;
}

}  // namespace kova::store
