#include "pickers/master_choices.h"

#include "foundation/number_text.h"
#include "pickers/choice_making.h"
#include "pickers/master_reading.h"

namespace kova::pickers {
namespace {

using store::GetText;
using store::PutText;
using store::Result;
using store::TableId;

constexpr std::string_view kPaymentMethods = "2";
constexpr std::string_view kStaffTable = "AA";
// Callers read the code back from behind a name of this width.
constexpr std::size_t kNameWidth = 100;
constexpr std::size_t kDoctorNameWidth = 20;

/// The list of what was read; `isKept` says which retired records are in it.
template <typename Record, typename IsKept, typename IsCurrent>
ChoiceList ListOf(const Master<Record>& read, bool addBlank, IsKept isKept, IsCurrent isCurrent) {
  ChoiceList list;
  list.entries.reserve(read->records.size() + 1);
  if (addBlank) list.entries.emplace_back("", read->blankData);
  AddChoices(list, read, UnlessRetired(isKept), isCurrent);
  return list;
}

/// The usual list: a retired record stays while it is the current one.
template <typename Record>
ChoiceList ListOf(const Master<Record>& read, const Wanted& wanted) {
  return ListOf(read, wanted.addBlank, HasCode(wanted.current), HasCode(wanted.current));
}

template <typename Record>
constexpr Appearance<Record> kCodeBeforeName{
    [](const Record& record) { return RightAligned(GetText(record.code), 2) += GetText(record.name); },
    kNameAndCode<Record>.data};

constexpr Appearance<tagCATEGORY> kCategory{kNameAndCode<tagCATEGORY>.text, [](const tagCATEGORY& record) {
                                              return CodeBlock(record.classCode, record.code);
                                            }};

constexpr Appearance<tagCATEGORY> kPaymentMethod{[](const tagCATEGORY& record) {
                                                   return LeftAligned(GetText(record.name), kNameWidth) +
                                                          " " + RightAligned(GetText(record.code), 2);
                                                 },
                                                 [](const tagCATEGORY&) { return std::string(); }};

constexpr Appearance<tagCUSTOMTBL> kFreeItem{
    [](const tagCUSTOMTBL& record) { return RightAligned(GetText(record.code), 4) += GetText(record.name); },
    kNameAndCode<tagCUSTOMTBL>.data};

std::string DoctorAndHospital(const tagINTRODR& record) {
  return LeftAligned(GetText(record.name), kDoctorNameWidth) + " " + std::string(GetText(record.hospital));
}

constexpr Appearance<tagINTRODR> kIntroDoctor{&DoctorAndHospital, kNameAndCode<tagINTRODR>.data};
constexpr Appearance<tagINTRODR> kIntroDoctorOfAnyKind{[](const tagINTRODR& record) {
                                                         return RightAligned(GetText(record.code), 3) +
                                                                DoctorAndHospital(record);
                                                       },
                                                       kNameAndCode<tagINTRODR>.data};

Master<tagCATEGORY> ReadCategories(CKovaDBSys* db, std::string_view classCode) {
  const Group<&tagCATEGORY::classCode> group{classCode};
  if (classCode != "0" && classCode != "1" && classCode != "3")
    return ReadMaster<CCategoryDB>(db, group, kCategory);
  return ReadMasterCached<CCategoryDB>(db, TableId::Category, "pickers.category." + std::string(classCode),
                                       group, kCategory);
}

/// Puts the one category in that every material item can have; nothing when another workstation was faster.
int InsertOtherCategory(CKovaDBSys* db) {
  CMaterialItemCateDB table(nullptr, 0);
  const int bound = table.SetAssociatedDB(db);
  if (bound != 0) return bound;
  PutText(table.record.code, "0000");
  PutText(table.record.sortOrder, "0000");
  PutText(table.record.name, "その他");
  const int result = table.Insert();
  return result == static_cast<int>(Result::kDuplicate) ? 0 : result;
}

}  // namespace

ChoiceList CategoryChoices(CKovaDBSys* db, std::string_view classCode, const Wanted& wanted) {
  return ListOf(ReadCategories(db, classCode), wanted);
}

ChoiceList PaymentMethodChoices(CKovaDBSys* db, const Wanted& wanted) {
  const Group<&tagCATEGORY::classCode> group{kPaymentMethods};
  ChoiceList list = ListOf(ReadMaster<CCategoryDB>(db, group, kPaymentMethod), wanted.addBlank, kNever,
                           HasCode(wanted.current));
  if (list.result != 0) list.selected = -1;
  return list;
}

ChoiceList DoctorChoices(CKovaDBSys* db, const Wanted& wanted) {
  return ListOf(ReadMasterCached<CDoctorDB>(db, TableId::Doctor, "pickers.doctor", WholeTable(),
                                            kNameAndCode<tagDOCTOR>),
                wanted);
}

ChoiceList StaffChoices(CKovaDBSys* db, const Wanted& wanted) {
  const Group<&tagCUSTOMTBL::tableId> group{kStaffTable};
  return ListOf(ReadMaster<CCustomTblDB>(db, group, kNameAndCode<tagCUSTOMTBL>), wanted.addBlank, kNever,
                HasCode(wanted.current));
}

ChoiceList CreditCategoryChoices(CKovaDBSys* db, const Wanted& wanted, std::string_view extraCode) {
  const auto isKept = [&](const tagCREDITCATEGORY& record) {
    const std::string_view code = GetText(record.code);
    return code == wanted.current || code == extraCode;
  };
  return ListOf(ReadMasterCached<CCreditCategoryDB>(db, TableId::CreditCategory, "pickers.creditcategory",
                                                    WholeTable(), kCodeBeforeName<tagCREDITCATEGORY>),
                wanted.addBlank, isKept, HasCode(wanted.current));
}

ChoiceList ConditionChoices(CKovaDBSys* db, const Wanted& wanted) {
  return ListOf(ReadMasterCached<CConditionDB>(db, TableId::Condition, "pickers.condition", WholeTable(),
                                               kCodeBeforeName<tagCONDITION>),
                wanted);
}

ChoiceList MaterialItemCategoryChoices(CKovaDBSys* db, const Wanted& wanted) {
  const auto read = [&] {
    return ReadMaster<CMaterialItemCateDB>(db, WholeTable(), kNameAndCode<tagMATERIALITEMCATE>);
  };
  const Master<tagMATERIALITEMCATE> categories = read();
  if (categories->result != 0 || !categories->records.empty()) return ListOf(categories, wanted);
  const int inserted = InsertOtherCategory(db);
  ChoiceList list = ListOf(read(), wanted);
  if (inserted != 0) list.result = inserted;
  return list;
}

ChoiceList RecallGroupChoices(CKovaDBSys* db, const Wanted& wanted) {
  return ListOf(ReadMaster<CRecallGroupDB>(db, WholeTable(), kNameAndCode<tagRECALLGROUP>), wanted);
}

IntroDoctorChoices IntroducingDoctorChoices(CKovaDBSys* db, std::uint8_t kind, const Wanted& wanted) {
  const bool oneKind = kind <= 2;
  const char digit = static_cast<char>('0' + kind % 3);
  const std::string name = std::string("pickers.introdr.") + (oneKind ? digit : '*');
  const Group<&tagINTRODR::kind> group{std::string_view(&digit, 1)};
  const Master<tagINTRODR> read =
      oneKind ? ReadMasterCached<CIntroDrDB>(db, TableId::IntroDr, name, group, kIntroDoctor)
              : ReadMasterCached<CIntroDrDB>(db, TableId::IntroDr, name, WholeTable(), kIntroDoctorOfAnyKind);
  IntroDoctorChoices choices{ListOf(read, wanted), {}};
  const auto isListed = UnlessRetired(HasCode(wanted.current));
  for (const auto& each : read->records)
    if (isListed(each.record)) choices.doctors.push_back(each.record);
  return choices;
}

ChoiceList FreeTableChoices(CKovaDBSys* db, CCustomTblDB& table, std::string_view tableId,
                            const Wanted& wanted) {
  const auto isCurrent = [&](const tagCUSTOMTBL& record) {
    return !wanted.current.empty() &&
           foundation::ReadInteger(GetText(record.code)) == foundation::ReadInteger(wanted.current);
  };
  return ListOf(ReadMaster(db, table, Group<&tagCUSTOMTBL::tableId>{tableId}, kFreeItem), wanted.addBlank,
                isCurrent, isCurrent);
}

}  // namespace kova::pickers
