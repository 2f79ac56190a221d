// The fillers of the exported class: a list of the pickers into the host's combo box.

#include <memory>

#include "entry/host_combo.h"
#include "entry/kova_com_dlg.h"
#include "entry/session.h"
#include "foundation/folders.h"
#include "pickers/master_choices.h"
#include "pickers/name_files.h"
#include "platform/recordstore/kovadbcall.h"

using namespace kova;
using entry::Guarded;
using entry::Session;
using entry::View;
using pickers::ChoiceList;
using pickers::Wanted;
using store::Result;

namespace {

constexpr int kFailed = static_cast<int>(Result::kFailed);
constexpr int kBadArgument = static_cast<int>(Result::kBadArgument);

/// Fills the box with what `list` gives; the record store's result.
template <typename List>
int Fill(CComboBox* combo, List list) {
  if (combo == nullptr) return kBadArgument;
  return Guarded(kFailed, [&] {
    const ChoiceList choices = list();
    entry::HostComboOf(*combo)->Fill(choices);
    return choices.result;
  });
}

Wanted WantedOf(const char* current, int addBlank) { return {View(current), addBlank != 0}; }

void AddCopies(CPtrArray& array, const std::vector<tagINTRODR>& doctors) {
  for (const tagINTRODR& doctor : doctors) {
    auto copy = std::make_unique<tagINTRODR>(doctor);
    array.Add(copy.get());
    (void)copy.release();
  }
}

std::vector<pickers::NumberedName> ReadNames(std::string_view fileName) {
  const Session session;
  return pickers::ReadNameFile(session.files, foundation::DatabaseFolder(session.profile), fileName);
}

}  // namespace

int CKovaComDlg::EnumCategories(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank,
                                const char* classCode) {
  return Fill(combo,
              [&] { return pickers::CategoryChoices(db, View(classCode), WantedOf(current, addBlank)); });
}

int CKovaComDlg::EnumUnit(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  return EnumCategories(db, combo, current, addBlank, "1");
}

int CKovaComDlg::EnumInssuranceType(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  return EnumCategories(db, combo, current, addBlank, "3");
}

int CKovaComDlg::EnumReservationType(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  return EnumCategories(db, combo, current, addBlank, "0");
}

int CKovaComDlg::EnumNewPatientManagement(CKovaDBSys* db, CComboBox* combo, const char* current,
                                          int addBlank) {
  return EnumCategories(db, combo, current, addBlank, "E");
}

void CKovaComDlg::EnumPaymentMethod(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  Fill(combo, [&] { return pickers::PaymentMethodChoices(db, WantedOf(current, addBlank)); });
}

int CKovaComDlg::EnumDoctor(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  return Fill(combo, [&] { return pickers::DoctorChoices(db, WantedOf(current, addBlank)); });
}

int CKovaComDlg::EnumStaffData(CKovaDBSys* db, CComboBox* combo, const char* current) {
  return Fill(combo, [&] { return pickers::StaffChoices(db, WantedOf(current, 0)); });
}

int CKovaComDlg::EnumCreditData(CKovaDBSys* db, CComboBox* combo, const char* currentCategory,
                                const char* currentItem) {
  return Fill(combo,
              [&] { return pickers::CreditDataChoices(db, View(currentCategory), View(currentItem)); });
}

int CKovaComDlg::EnumCreditItemsOf(CComboBox* combo, const char* category, const char* currentItem) {
  return Fill(combo, [&] {
    CKovaDBSys db;
    const int opened = db.OpenDB(foundation::DatabaseFolder(Session().profile).c_str());
    ChoiceList choices = pickers::CreditItemChoices(&db, View(category), View(currentItem));
    if (opened != 0) choices.result = opened;
    return choices;
  });
}

int CKovaComDlg::EnumCreditCategory(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank,
                                    const char* extraCode) {
  return Fill(combo, [&] {
    return pickers::CreditCategoryChoices(db, WantedOf(current, addBlank), View(extraCode));
  });
}

int CKovaComDlg::EnumCondition(CKovaDBSys* db, CComboBox* combo, const char* current, int addBlank) {
  return Fill(combo, [&] { return pickers::ConditionChoices(db, WantedOf(current, addBlank)); });
}

void CKovaComDlg::EnumMaterialItemCate(CKovaDBSys* db, CComboBox* combo, const char* current) {
  Fill(combo, [&] { return pickers::MaterialItemCategoryChoices(db, WantedOf(current, 0)); });
}

int CKovaComDlg::EnumRecallGroupData(CKovaDBSys* db, CComboBox* combo, const char* current) {
  return Fill(combo, [&] { return pickers::RecallGroupChoices(db, WantedOf(current, 0)); });
}

int CKovaComDlg::EnumIntroDoctor(CKovaDBSys* db, CComboBox* combo, CPtrArray* doctors, const char* current,
                                 unsigned char kind, int addBlank) {
  return Fill(combo, [&] {
    if (doctors != nullptr) doctors->RemoveAll();
    pickers::IntroDoctorChoices choices =
        pickers::IntroducingDoctorChoices(db, kind, WantedOf(current, addBlank));
    if (doctors != nullptr) AddCopies(*doctors, choices.doctors);
    return std::move(choices.list);
  });
}

void CKovaComDlg::EnumFreeTblItem(CKovaDBSys* db, CCustomTblDB* table, CComboBox* combo, const char* tableId,
                                  const char* current, int addBlank) {
  Fill(combo, [&] {
    CCustomTblDB own(nullptr, 0);
    return pickers::FreeTableChoices(db, table == nullptr ? own : *table, View(tableId),
                                     WantedOf(current, addBlank));
  });
}

void CKovaComDlg::EnumFreeTblName(CStringArray* names) {
  if (names == nullptr) return;
  names->RemoveAll();
  Guarded(0, [&] {
    for (const pickers::NumberedName& each : ReadNames(pickers::kFreeTableNames))
      names->Add(pickers::ListText(each).c_str());
    return 0;
  });
}

void CKovaComDlg::EnumFreeDateTblName(CStringArray* texts, CStringArray* names) {
  if (texts != nullptr) texts->RemoveAll();
  if (names != nullptr) names->RemoveAll();
  Guarded(0, [&] {
    for (const pickers::NumberedName& each : ReadNames(pickers::kFreeDateNames)) {
      if (texts != nullptr) texts->Add(pickers::ListText(each).c_str());
      if (names != nullptr) names->Add(each.name.c_str());
    }
    return 0;
  });
}

void CKovaComDlg::FreeComboItemData(CComboBox* combo) {
  if (combo == nullptr) return;
  Guarded(0, [&] {
    entry::HostComboOf(*combo)->Free();
    return 0;
  });
}

void CKovaComDlg::FreeIntroDoctors(CPtrArray* doctors) {
  if (doctors == nullptr) return;
  for (std::intptr_t i = 0; i < doctors->GetSize(); ++i) delete static_cast<tagINTRODR*>(doctors->GetAt(i));
  doctors->RemoveAll();
}
