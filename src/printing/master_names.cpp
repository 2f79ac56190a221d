#include "printing/master_names.h"

namespace kova::printing {

template <typename Table>
std::string MasterNames::NameIn(const Table& table, int result) {
  if (result == 0) return std::string(store::GetText(table.record.name));
  if (failure_ == 0 && result != static_cast<int>(store::Result::kNotFound)) failure_ = result;
  return {};
}

MasterNames::MasterNames(CKovaDBSys* db) {
  // A table that cannot be bound fails at every name.
  (void)categories_.SetAssociatedDB(db);
  (void)doctors_.SetAssociatedDB(db);
  (void)reasons_.SetAssociatedDB(db);
  (void)freeTables_.SetAssociatedDB(db);
}

std::string MasterNames::Category(std::string_view classCode, std::string_view code) {
  if (code.empty()) return {};
  return NameIn(categories_,
                categories_.GetCategoryData(std::string(classCode).c_str(), std::string(code).c_str()));
}

std::string MasterNames::Doctor(std::string_view code) {
  return code.empty() ? std::string() : NameIn(doctors_, doctors_.GetDoctorData(std::string(code).c_str()));
}

std::string MasterNames::Reason(std::string_view code) {
  return code.empty() ? std::string()
                      : NameIn(reasons_, reasons_.GetResReasonData(std::string(code).c_str()));
}

std::string MasterNames::FreeEntry(std::string_view tableId, std::string_view code) {
  if (code.empty()) return {};
  return NameIn(freeTables_,
                freeTables_.GetCustomTblData(std::string(tableId).c_str(), std::string(code).c_str()));
}

}  // namespace kova::printing
