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

Master<tagCREDITITEM> ReadItems(CKovaDBSys* db, std::string_view category) {
  return ReadMaster<CCreditItemDB>(db, Group<&tagCREDITITEM::categoryCode>{category}, kItem);
}

}  // namespace

ChoiceList CreditItemChoices(CKovaDBSys* db, std::string_view category, std::string_view currentItem) {
  ChoiceList list;
  AddChoices(list, ReadItems(db, category), UnlessRetired(HasCode(currentItem)), HasCode(currentItem));
  return list;
}

ChoiceList CreditDataChoices(CKovaDBSys* db, std::string_view currentCategory, std::string_view currentItem) {
  const CKovaReads reads(db);
  ChoiceList list;
  const auto categories = ReadMaster<CCreditCategoryDB>(db, WholeTable(), kNameAndCode<tagCREDITCATEGORY>);
  list.result = categories->result;
  for (const auto& each : categories->records) {
    if (list.result != 0) break;
    const tagCREDITCATEGORY& category = each.record;
    const bool isHere = GetText(category.code) == currentCategory;
    const auto isCurrent = [&](const tagCREDITITEM& item) {
      return isHere && GetText(item.code) == currentItem;
    };
    const auto isListed = [&](const tagCREDITITEM& item) {
      return isCurrent(item) || !(IsRetired(category) || IsRetired(item));
    };
    AddChoices(list, ReadItems(db, GetText(category.code)), isListed, isCurrent);
  }
  return list;
}

}  // namespace kova::pickers
