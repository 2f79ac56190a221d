#include "hosts/reception/patient_map.h"

#include "entry/kova_sub_tools.h"
#include "platform/recordstore/kovadbcall.h"

namespace kova::hosts {

std::string ShowPatientMap(CWnd& window, CKovaDBSys& db) {
  CPatientDB patients(nullptr, 0);
  if (patients.SetAssociatedDB(&db) != 0 || patients.SetFields("postalCode") != 0)
    return "データベースが使えません。";
  CStringArray codes;
  for (int result = patients.GetFIRST(); result == 0 && patients.IsEOF() == 0; result = patients.GetNEXT())
    codes.Add(std::string(store::GetText(patients.record.postalCode)).c_str());
  if (CKovaSubTools::CallPostToMap(&db, &window, &codes) == 0) return "患者分布図は表示されていません。";
  return "患者分布図をブラウザーに表示しました。";
}

}  // namespace kova::hosts
