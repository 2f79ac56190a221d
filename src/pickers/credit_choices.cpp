// Credit items, of one category and of all.

#include "pickers/choice_making.h"
#include "pickers/master_reading.h"

namespace kova::pickers {
namespace {

using store::GetText;

// Callers read both codes back from behind a name of this width.
constexpr std::size_t kNameWidth = 100;

constexpr Appearance<tagCREDITITEM> kItem{
    [](const tagCREDITITEM& record) {
      return LeftAligned(GetText(record.name), kNameWidth) + " " +
             RightAligned(GetText(record.categoryCode), 3) + RightAligned(GetText(record.code), 3);
    },
    [](const tagCREDITITEM& record) { return CodeBlock(record.categoryCode, record.code); }};

MasterRecords<tagCREDITITEM> ReadItems(CKovaDBSys* db, std::string_view category) {
  return ReadMaster<CCreditItemDB>(db, Group<&tagCREDITITEM::categoryCode>{category});
}

}  // namespace

ChoiceList CreditItemChoices(CKovaDBSys* db, std::string_view category, std::string_view currentItem) {
  ChoiceList list;
  const MasterRecords<tagCREDITITEM> items = ReadItems(db, category);
  AddChoices(list, items.records, kItem, UnlessRetired(HasCode(currentItem)), HasCode(currentItem));
  list.result = items.result;
  return list;
}

ChoiceList CreditDataChoices(CKovaDBSys* db, std::string_view currentCategory, std::string_view currentItem) {
  const CKovaReads reads(db);
  ChoiceList list;
  const MasterRecords<tagCREDITCATEGORY> categories = ReadMaster<CCreditCategoryDB>(db, WholeTable());
  list.result = categories.result;
  for (const tagCREDITCATEGORY& category : categories.records) {
    if (list.result != 0) break;
    const MasterRecords<tagCREDITITEM> items = ReadItems(db, GetText(category.code));
    const bool isHere = GetText(category.code) == currentCategory;
    const auto isCurrent = [&](const tagCREDITITEM& item) {
      return isHere && GetText(item.code) == currentItem;
    };
    const auto isListed = [&](const tagCREDITITEM& item) {
      return isCurrent(item) || !(IsRetired(category) || IsRetired(item));
    };
    AddChoices(list, items.records, kItem, isListed, isCurrent);
    list.result = items.result;
  }
  return list;
}

}  // namespace kova::pickers
