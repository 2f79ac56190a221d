// Credit items, of one category and of all.

#include <algorithm>

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

}  // namespace

ChoiceList CreditItemChoices(CKovaDBSys* db, std::string_view category, std::string_view currentItem) {
  ChoiceList list;
  const Group<&tagCREDITITEM::categoryCode> group{category};
  AddChoices(list, ReadMaster<CCreditItemDB>(db, group, kItem), UnlessRetired(HasCode(currentItem)), HasCode(currentItem));
  return list;
}

ChoiceList CreditDataChoices(CKovaDBSys* db, std::string_view currentCategory, std::string_view currentItem) {
  const CKovaReads reads(db);
  ChoiceList list;
  const auto categories = ReadMaster<CCreditCategoryDB>(db, WholeTable(), kNameAndCode<tagCREDITCATEGORY>);
  list.result = categories->result;
  if (list.result != 0 || categories->records.empty()) return list;
  const auto items = ReadMaster<CCreditItemDB>(db, WholeTable(), kItem);
  list.result = items->result;
  list.sources.push_back(items);
  list.entries.reserve(items->records.size());
  const auto categoryOf = [](const MasterRecord<tagCREDITITEM>& item) { return GetText(item.record.categoryCode); };
  for (const auto& each : categories->records) {
    const tagCREDITCATEGORY& category = each.record;
    const bool isHere = GetText(category.code) == currentCategory;
    const auto isCurrent = [&](const tagCREDITITEM& item) {
      return isHere && GetText(item.code) == currentItem;
    };
    const auto isListed = [&](const tagCREDITITEM& item) {
      return isCurrent(item) || !(IsRetired(category) || IsRetired(item));
    };
    // Items come in the order of their categories' codes.
    AddEntries(list, std::ranges::equal_range(items->records, GetText(category.code), {}, categoryOf), isListed,
               isCurrent);
  }
  return list;
}

}  // namespace kova::pickers
