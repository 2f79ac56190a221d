#include "hosts/reception/patient_map.h"

#include "entry/kova_sub_tools.h"
#include "platform/recordstore/table.h"
#include "platform/recordstore/walk.h"

namespace kova::hosts {

std::string ShowPatientMap(CWnd& window, CKovaDBSys& db) {
  store::On<CPatientDB> patients(db);
  CStringArray codes;
  int result = patients.SetFields("postalCode");
  if (result == 0) {
    result = store::Walk(patients, CPatientDB::Key::Primary, {}, [&](const tagPATIENTDB& patient) {
      codes.Add(std::string(store::GetText(patient.postalCode)).c_str());
    });
  }
  if (result != 0) return "患者を読み込めません（" + std::to_string(result) + "）。";
  if (CKovaSubTools::CallPostToMap(&db, &window, &codes) == 0) return "患者分布図は表示されていません。";
  return "患者分布図をブラウザーに表示しました。";
}

}  // namespace kova::hosts
