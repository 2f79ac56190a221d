#include "hosts/kovacall/filler_commands.h"

#include <afxwin.h>

#include "entry/kova_com_dlg.h"
#include "hosts/kovacall/declare.h"
#include "pickers/patient_query.h"

namespace kova::hosts {

template <>
struct Taken<unsigned char> : TakenNumber<unsigned char> {
  static constexpr std::string_view kType = "byte";
  using TakenNumber::TakenNumber;
};

namespace {

using T = CKovaComDlg;

std::string Shown(std::string_view text) { return ShowControls(text932::ToUtf8(text)); }

/// Widths of the codes in an item data block; the second is 0 where there is only one.
struct Block {
  std::size_t first = 0, second = 0;
};
constexpr Block kCode{1, 0};  // of any width: it is the only one
constexpr Block kClassAndCode{2, 3};
constexpr Block kCategoryAndItem{3, 4};

std::string ShownBlock(std::uintptr_t data, const Block& block) {
  const auto* bytes = reinterpret_cast<const char*>(data);
  const std::string second = block.second == 0 ? "" : Shown(bytes + block.first);
  return Shown(bytes) + (second.empty() ? "" : " " + second);
}

/// Prints what is in the box, and empties it.
void ShowList(CComboBox& combo, const Block& block, Reply& reply) {
  for (int i = 0; i < combo.GetCount(); ++i) {
    const std::string index = "[" + std::to_string(i) + "]";
    CString text;
    combo.GetLBText(i, text);
    reply.outs.emplace_back("text" + index, Shown(text.GetString()));
    if (const std::uintptr_t data = combo.GetItemData(i); data != 0)
      reply.outs.emplace_back("data" + index, ShownBlock(data, block));
  }
  reply.outs.emplace_back("selected", std::to_string(combo.GetCurSel()));
  T::FreeComboItemData(&combo);
}

/// A filler as a function whose box is printed.
template <auto kFiller, const Block& kBlock>
struct Filled;
template <typename Result, typename... Given, Result (*kFiller)(CKovaDBSys*, CComboBox*, Given...),
          const Block& kBlock>
struct Filled<kFiller, kBlock> {
  static Result Call(CKovaDBSys* db, Given... given, Reply* reply) {
    CComboBox combo;
    if constexpr (std::is_void_v<Result>) {
      kFiller(db, &combo, given...);
      ShowList(combo, kBlock, *reply);
    } else {
      const Result result = kFiller(db, &combo, given...);
      ShowList(combo, kBlock, *reply);
      return result;
    }
  }
};

int CreditItemsOf(const char* category, const char* currentItem, Reply* reply) {
  CComboBox combo;
  const int result = T::EnumCreditItemsOf(&combo, category, currentItem);
  ShowList(combo, kCategoryAndItem, *reply);
  return result;
}

int IntroDoctor(CKovaDBSys* db, const char* current, unsigned char kind, int addBlank, Reply* reply) {
  CComboBox combo;
  CPtrArray doctors;
  const int result = T::EnumIntroDoctor(db, &combo, &doctors, current, kind, addBlank);
  ShowList(combo, kCode, *reply);
  for (int i = 0; i < doctors.GetSize(); ++i) {
    const auto& doctor = *static_cast<const tagINTRODR*>(doctors.GetAt(i));
    reply->outs.emplace_back("doctors[" + std::to_string(i) + "]", Shown(store::GetText(doctor.code)));
  }
  T::FreeIntroDoctors(&doctors);
  return result;
}

void FreeTblItem(CKovaDBSys* db, const char* tableId, const char* current, int addBlank, Reply* reply) {
  CComboBox combo;
  T::EnumFreeTblItem(db, nullptr, &combo, tableId, current, addBlank);
  ShowList(combo, kCode, *reply);
}

void ShowTexts(const char* name, const CStringArray& texts, Reply& reply) {
  for (int i = 0; i < texts.GetSize(); ++i)
    reply.outs.emplace_back(std::string(name) + "[" + std::to_string(i) + "]", ShowResult(texts.GetAt(i)));
}

void FreeTblName(Reply* reply) {
  CStringArray names;
  T::EnumFreeTblName(&names);
  ShowTexts("names", names, *reply);
}

void FreeDateTblName(Reply* reply) {
  CStringArray texts, names;
  T::EnumFreeDateTblName(&texts, &names);
  ShowTexts("texts", texts, *reply);
  ShowTexts("names", names, *reply);
}

/// The rows that the window would list.
int QueryPatients(CKovaDBSys* db, const char* mode, const char* text, Reply* reply) {
  CWinApp* app = AfxGetApp();
  const bool withMaidenName = app != nullptr && app->GetProfileInt("KOVAMENTE", "WithMaidenName", 0) != 0;
  const auto hits = pickers::QueryPatients(db, pickers::SearchModeOf(mode), text, withMaidenName);
  for (std::size_t i = 0; i < hits.size(); ++i) {
    reply->outs.emplace_back("hits[" + std::to_string(i) + "]",
                             Shown(hits[i].patientCode) + "\t" + Shown(hits[i].reading) + "\t" +
                                 Shown(hits[i].name) + "\t" + Shown(pickers::SexText(hits[i])));
  }
  return static_cast<int>(hits.size());
}

using Names = std::initializer_list<const char*>;

template <auto kFiller, const Block& kBlock>
Operation Filler(std::string_view name, Names names) {
  return Declare(name, names, &Filled<kFiller, kBlock>::Call);
}

}  // namespace

const std::vector<Operation>& FillerOperations() {
  static const Names usual = {"current", "addBlank"};
  static const std::vector<Operation> operations = {
      Filler<&T::EnumCategories, kClassAndCode>("EnumCategories", {"current", "addBlank", "class"}),
      Filler<&T::EnumUnit, kClassAndCode>("EnumUnit", usual),
      Filler<&T::EnumInssuranceType, kClassAndCode>("EnumInssuranceType", usual),
      Filler<&T::EnumReservationType, kClassAndCode>("EnumReservationType", usual),
      Filler<&T::EnumNewPatientManagement, kClassAndCode>("EnumNewPatientManagement", usual),
      Filler<&T::EnumPaymentMethod, kCode>("EnumPaymentMethod", usual),
      Filler<&T::EnumDoctor, kCode>("EnumDoctor", usual),
      Filler<&T::EnumStaffData, kCode>("EnumStaffData", {"current"}),
      Filler<&T::EnumCreditData, kCategoryAndItem>("EnumCreditData", {"currentCategory", "currentItem"}),
      Declare("EnumCreditItemsOf", {"category", "currentItem"}, &CreditItemsOf),
      Filler<&T::EnumCreditCategory, kCode>("EnumCreditCategory", {"current", "addBlank", "extraCode"}),
      Filler<&T::EnumCondition, kCode>("EnumCondition", usual),
      Filler<&T::EnumMaterialItemCate, kCode>("EnumMaterialItemCate", {"current"}),
      Filler<&T::EnumRecallGroupData, kCode>("EnumRecallGroupData", {"current"}),
      Declare("EnumIntroDoctor", {"current", "kind", "addBlank"}, &IntroDoctor),
      Declare("EnumFreeTblItem", {"tableId", "current", "addBlank"}, &FreeTblItem),
      Declare("EnumFreeTblName", {}, &FreeTblName),
      Declare("EnumFreeDateTblName", {}, &FreeDateTblName),
      Declare("KCDQueryPatientData", {"mode", "text"}, &QueryPatients),
  };
  return operations;
}

}  // namespace kova::hosts
