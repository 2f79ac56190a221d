// The operations that kovacall calls: one entry each. Arguments, their checking and the line in
// `kovacall list` derive from the function's own parameters.

#include <cstddef>

#include "charges/contributions.h"
#include "entry/kova_sub_tools.h"
#include "hosts/kovacall/declare.h"
#include "printing/receipt.h"
#include "reservations/fee_request.h"

namespace kova::hosts {

using charges::tagCONTRIBUTION;
using store::FieldDef;
using store::FieldKind;

#define KOVA_FIELD(Record, kind, name, meaning) \
  { #name, FieldKind::k##kind, offsetof(Record, name), sizeof(Record::name), meaning }

template <>
std::span<const FieldDef> RecordFields<tagFEEREQUEST>() {
  static const FieldDef fields[] = {
      KOVA_FIELD(tagFEEREQUEST, Text, patientCode, "patient"),
      KOVA_FIELD(tagFEEREQUEST, Text, saleDate, "date of the sale"),
      KOVA_FIELD(tagFEEREQUEST, Text, itemCode, "credit item"),
      KOVA_FIELD(tagFEEREQUEST, Text, categoryCode, "credit category"),
      KOVA_FIELD(tagFEEREQUEST, UInt8, noCategory, "1: no credit category"),
      KOVA_FIELD(tagFEEREQUEST, Text, itemText, "free text"),
      KOVA_FIELD(tagFEEREQUEST, Int32, amount, "fee in yen before tax"),
  };
  return fields;
}

template <>
std::span<const FieldDef> RecordFields<tagCONTRIBUTION>() {
  static const FieldDef fields[] = {
      KOVA_FIELD(tagCONTRIBUTION, Int32, points, "insurance points"),
      KOVA_FIELD(tagCONTRIBUTION, Int32, burdenPercent, "patient's share in whole percent"),
      KOVA_FIELD(tagCONTRIBUTION, Int32, publicAmount, "yen borne elsewhere"),
      KOVA_FIELD(tagCONTRIBUTION, UInt8, flatAmountFlag, "1: a flat-amount charge"),
      KOVA_FIELD(tagCONTRIBUTION, Int32, addedAmount, "yen added after rounding"),
  };
  return fields;
}

template <>
std::span<const FieldDef> RecordFields<_TMPSALEITEM>() {
  static const FieldDef fields[] = {
      KOVA_FIELD(_TMPSALEITEM, Text, saleDate, "date of the sale"),
      KOVA_FIELD(_TMPSALEITEM, UInt8, categoryReduced, "1: a category of the reduced rate"),
      KOVA_FIELD(_TMPSALEITEM, UInt8, itemReduced, "1: an item of the reduced rate"),
  };
  return fields;
}

template <>
struct Taken<_TMPSALEITEM*> : TakenRecord<_TMPSALEITEM> {
  using TakenRecord::TakenRecord;
};
template <>
struct Taken<tagFEEREQUEST*> : TakenRecord<tagFEEREQUEST> {
  using TakenRecord::TakenRecord;
};
template <>
struct Taken<tagCONTRIBUTION*> : TakenRecord<tagCONTRIBUTION> {
  using TakenRecord::TakenRecord;
};

namespace {

using T = CKovaSubTools;

int ReservationToSale(CKovaDBSys* db, tagFEEREQUEST* fee, Reply* reply) {
  const int result = T::ReservationToSale(db, fee);
  reply->outs.emplace_back("saleNumber", ShowControls(text932::ToUtf8(store::GetText(fee->saleNumber))));
  return result;
}

void CalcContribution(int roundMode, tagCONTRIBUTION* charge, Reply* reply) {
  long contribution = 0;
  long net = 0;
  T::CalcContribution(&contribution, &net, charge, roundMode);
  reply->outs = {{"contribution", std::to_string(contribution)}, {"net", std::to_string(net)}};
}

long CalcPartialContribution(int roundMode, tagCONTRIBUTION* charge) {
  return T::CalcPartialContribution(charge, roundMode);
}

long CalcPublicContribution(int roundMode, tagCONTRIBUTION* charge) {
  return T::CalcPublicContribution(charge, roundMode);
}

int CheckReduce(int printListSum4, _TMPSALEITEM* item) { return T::CheckReduce(item, printListSum4); }

int CmpRecept(int a, int b) { return T::cmpRecept(&a, &b); }

// There is no window here, so the answer is the one for none.
CString GetFurigana(int kanaMode, int spaceFlag) { return T::GetFurigana(nullptr, kanaMode, spaceFlag); }

int CmpAdd(CStringArray* list, const char* text, Reply* reply) {
  const int index = T::CmpAdd(list, text);
  for (int i = 0; i < list->GetSize(); ++i)
    reply->outs.emplace_back("list[" + std::to_string(i) + "]", ShowResult(list->GetAt(i)));
  return index;
}

CString Text(const char* text) { return CString(text); }

int SetReservationTemplate(int number, const char* name, const char* subject, const char* body) {
  return T::SetReservationTemplate(number, Text(name), Text(subject), Text(body));
}

int GetReservationTemplate(int number, Reply* reply) {
  CString name, subject, body;
  const int result = T::GetReservationTemplate(number, name, subject, body);
  if (result == 0)
    reply->outs = {{"name", ShowResult(name)}, {"subject", ShowResult(subject)}, {"body", ShowResult(body)}};
  return result;
}

int LoadTemplateTree(Reply* reply) {
  CStringArray lines;
  const int count = T::LoadTemplateTree(&lines);
  for (int i = 0; i < lines.GetSize(); ++i)
    reply->outs.emplace_back("lines[" + std::to_string(i) + "]", ShowResult(lines.GetAt(i)));
  return count;
}

int SaveTemplateTree(CStringArray* lines) { return T::SaveTemplateTree(lines); }

tagRESERVATION ReadReservation(CKovaDBSys* db, const char* number) {
  CReservationDB table(nullptr, 0);
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = table.GetReservationData(number);
  if (result != 0) throw UsageError("the reservation: result " + DescribeResult(result));
  return table.record;
}

template <int (*Send)(CKovaDBSys*, tagRESERVATION)>
int SendAbout(CKovaDBSys* db, const char* number) {
  return Send(db, ReadReservation(db, number));
}

int FillTemplate(CKovaDBSys* db, int number, const char* reservation, Reply* reply) {
  CString to, subject, body;
  const int result =
      T::FillReservationTemplate(db, number, ReadReservation(db, reservation), to, subject, body);
  if (result != 0)
    reply->outs = {{"to", ShowResult(to)}, {"subject", ShowResult(subject)}, {"body", ShowResult(body)}};
  return result;
}

int DoCopyEmptyDB(const char* folder) {
  return T::DoCopyEmptyDB(TextArgument(AbsoluteName(text932::ToUtf8(folder)), "folder").c_str());
}

int GetCashlessType() { return static_cast<int>(T::GetCashlessType()); }

int UseCashChanger(CKovaDBSys* db, const char* number) {
  CSaleDB table(nullptr, 0);
  int result = table.SetAssociatedDB(db);
  if (result == 0) result = table.GetSaleData(number);
  if (result != 0) throw UsageError("the sale: result " + DescribeResult(result));
  return T::UseCashChanger(db, &table.record);
}

int CallPostToMap(CKovaDBSys* db, CStringArray* codes) { return T::CallPostToMap(db, nullptr, codes); }

}  // namespace

const std::vector<Operation>& Operations() {
  static const std::vector<Operation> operations = {
      Declare("IsExistGlobalSettingFile", {}, &T::IsExistGlobalSettingFile),
      Declare("GetGlobalSettingString", {"section", "key", "default"}, &T::GetGlobalSettingString),
      Declare("SetGlobalSettingString", {"section", "key", "value"}, &T::SetGlobalSettingString),
      Declare("GetGlobalSettingInt", {"section", "key", "default"}, &T::GetGlobalSettingInt),
      Declare("SetGlobalSettingInt", {"section", "key", "value"}, &T::SetGlobalSettingInt),
      Declare("GetGlobalOptSys", {"fileName"}, &T::GetGlobalOptSys),
      Declare("GetProgramFolder", {}, &T::GetProgramFolder),
      Declare("GetInstallFolder", {}, &T::GetInstallFolder),
      Declare("GetTemporaryFolder", {}, &T::GetTemporaryFolder),
      Declare("GetTemplatesFolder", {}, &T::GetTemplatesFolder),
      Declare("GetPhotoPath", {}, &T::GetPhotoPath),
      Declare("GetPatientPhotoFolder", {"patientId", "create"}, &T::GetPatientPhotoFolder),
      Declare("GetFacePhotoPath", {"patientId", "create"}, &T::GetFacePhotoPath),
      Declare("GetGoogleConnectPath", {}, &T::GetGoogleConnectPath),
      Declare("GetWebConnectPath", {}, &T::GetWebConnectPath),
      Declare("GetCheckInPath", {}, &T::GetCheckInPath),
      Declare("DoCopyEmptyDB", {"folder"}, &DoCopyEmptyDB),
      Declare("IsGoogleConnect", {}, &T::IsGoogleConnect),
      Declare("IsWebConnect", {}, &T::IsWebConnect),
      Declare("IsCheckIn", {}, &T::IsCheckIn),
      Declare("GetTaxRate", {"date", "contractDate", "reduced"}, &T::GetTaxRate),
      Declare("IsTaxReduce", {"date"}, &T::IsTaxReduce),
      Declare("RoundOff", {"mode", "value"}, &T::RoundOff),
      Declare("GetRoundOffLong", {"value"}, &T::GetRoundOffLong),
      Declare("CalcPartialContribution", {"roundMode", "charge"}, &CalcPartialContribution),
      Declare("CalcPublicContribution", {"roundMode", "charge"}, &CalcPublicContribution),
      Declare("CalcContribution", {"roundMode", "charge"}, &CalcContribution),
      Declare("GetReceptRate", {"date"}, &T::GetReceptRate),
      Declare("GetReceptPercent", {"date"}, &T::GetReceptPercent),
      Declare("cmpRecept", {"a", "b"}, &CmpRecept),
      Declare("CheckReduce", {"printListSum4", "item"}, &CheckReduce),
      Declare("ReservationToSale", {"feeRequest"}, &ReservationToSale),
      Declare("SetFinishedDate", {"patientCode", "date", "mode"}, &T::SetFinishedDate),
      Declare("SetReservationTemplate", {"number", "name", "subject", "body"}, &SetReservationTemplate),
      Declare("GetReservationTemplate", {"number"}, &GetReservationTemplate),
      Declare("GetNextTemplateNumber", {}, &T::GetNextTemplateNumber),
      Declare("DeleteReservationTemplate", {"number"}, &T::DeleteReservationTemplate),
      Declare("LoadTemplateTree", {}, &LoadTemplateTree),
      Declare("SaveTemplateTree", {"lines"}, &SaveTemplateTree),
      Declare("SendMail", {"to", "subject", "body", "patientId", "staffId"}, &T::SendMail),
      Declare("DraftMail", {"to", "subject", "body", "patientId", "staffId", "itemId"}, &T::DraftMail),
      Declare("SendEmlFiles", {"path", "doNotKeep"}, &T::SendEmlFiles),
      Declare("SendReservationMail", {"to", "date"}, &T::SendReservationMail),
      Declare("SendVisitMail", {"reservation"}, &SendAbout<&T::SendVisitMail>),
      Declare("SendFinishedMail", {"reservation"}, &SendAbout<&T::SendFinishedMail>),
      Declare("SendChangeConfirmMail", {"reservation"}, &SendAbout<&T::SendChangeConfirmMail>),
      Declare("FillTemplate", {"number", "reservation"}, &FillTemplate),
      Declare("SendNotice", {"folder", "applicationId", "title", "body"}, &T::SendNotice),
      Declare("GetMacAddressTest", {}, &T::GetMacAddressTest),
      Declare("GetCashlessType", {}, &GetCashlessType),
      Declare("UseCashChanger", {"sale"}, &UseCashChanger),
      Declare("CallPostToMap", {"codes"}, &CallPostToMap),
      Declare("IsNumeric", {"text"}, &T::IsNumeric),
      Declare("Str2Long", {"text"}, &T::Str2Long),
      Declare("ChangeFurigana", {"text", "kanaMode", "spaceFlag"}, &T::ChangeFurigana),
      Declare("GetFurigana", {"kanaMode", "spaceFlag"}, &GetFurigana),
      Declare("GetTimeSpan", {"later", "earlier"}, &T::GetTimeSpan),
      Declare("GetDayOfWeekString", {"weekday"}, &T::GetDayOfWeekString),
      Declare("GetPrivilegeName", {"privilege"}, &T::GetPrivilegeName),
      Declare("CmpAdd", {"list", "text"}, &CmpAdd),
  };
  return operations;
}

}  // namespace kova::hosts
